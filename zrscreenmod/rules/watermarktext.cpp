#include "watermarktext.h"

#include <algorithm>
#include <cmath>

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

/// Narrows the stretch from `from` to `to` to where `start + t * slope` is within `reach` of 0.
void narrow(double start, double slope, double reach, double* from, double* to)
{
    const double a = (-reach - start) / slope;
    const double b = (reach - start) / slope;
    *from = std::max(*from, std::min(a, b));
    *to = std::min(*to, std::max(a, b));
}

/// Whether the baseline of a text comes nearer to the tile than that.
bool isNearTile(const QPoint& origin, int textWidthPx, const QSize& tile, int distancePx)
{
    constexpr double kRadians = kWatermarkDegrees * 3.14159265358979323846 / 180;
    const double c = std::cos(kRadians);
    const double s = std::sin(kRadians);
    double from = 0;
    double to = textWidthPx;
    narrow(origin.x() * c - origin.y() * s, c, tile.width() / 2.0 + distancePx, &from, &to);
    narrow(origin.x() * s + origin.y() * c, s, tile.height() / 2.0 + distancePx, &from, &to);
    return from < to;
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
    if (tile.isEmpty())
        return grid;
    bool crossed = false;
    for (int x = -w; x < w; x += columnStep) {
        for (int y = -h; y <= h; y += rowStep) {
            // The letters of a line that passes the tile by may still reach into it.
            if (isNearTile({x, y}, metrics.textWidthPx, tile, 2 * metrics.lineHeightPx))
                grid.append({x, y});
            crossed = crossed || isNearTile({x, y}, metrics.textWidthPx, tile, 0);
        }
    }
    if (!crossed)
        grid.append({std::max(-w, -metrics.textWidthPx / 2), metrics.lineHeightPx / 3});
    return grid;
}

int visibleWatermarkPx(const QSize& tile)
{
    // The first column begins a tile's width left of the centre; the tile's furthest corner is as
    // far to the right of it as half of both sides together.
    return tile.width() + (tile.width() + tile.height()) / 2;
}

} // namespace zr
