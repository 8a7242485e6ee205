#include "watermarktext.h"

#include <algorithm>

namespace zr {

namespace {

constexpr int kMaskFrom = 3;
constexpr int kMaskLength = 4;
constexpr int kMaxUnits = 20000;
constexpr int kGapCharacters = 20;
constexpr int kGapLines = 8;

QString masked(const QString& phone)
{
    QString result = phone;
    if (result.size() >= kMaskFrom + kMaskLength)
        result.replace(kMaskFrom, kMaskLength, QString(kMaskLength, QLatin1Char('*')));
    return result;
}

} // namespace

QString watermarkText(const WatermarkInfo& info)
{
    if (!info.enabled || info.name.isEmpty())
        return {};
    QString second;
    if (info.kind == 1)
        second = masked(info.phone);
    else if (info.kind == 2)
        second = info.email;
    QString text = info.name;
    if (!second.isEmpty())
        text += QLatin1Char('-') + second;
    text.truncate(kMaxUnits);
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    return text;
}

QVector<QPoint> watermarkGrid(const QSize& tile, const WatermarkMetrics& metrics)
{
    const int w = tile.width();
    const int h = tile.height();
    const int columnStep =
        std::max(1, metrics.textWidthPx + metrics.averageCharPx * kGapCharacters);
    const int rowStep = std::max(1, metrics.lineHeightPx * (1 + kGapLines));
    QVector<QPoint> grid;
    for (int x = -w; x < w; x += columnStep) {
        for (int y = -h; y <= h; y += rowStep)
            grid.append({x, y});
    }
    return grid;
}

int visibleWatermarkPx(const QSize& tile)
{
    // The first column begins a tile's width left of the centre; the tile's furthest corner is as
    // far to the right of it as half of both sides together.
    return tile.width() + (tile.width() + tile.height()) / 2;
}

} // namespace zr
