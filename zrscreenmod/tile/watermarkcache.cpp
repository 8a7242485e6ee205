#include "watermarkcache.h"

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QPaintDevice>
#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

constexpr qreal kPointSize = 24;
constexpr QRgb kColor = qRgba(185, 185, 185, 0x53);
constexpr int kSliceWidthPx = 128;
/// Glyphs may reach beyond the metrics of their font.
constexpr int kMarginPx = 12;
/// Tiles that are resized do not need another length with every pixel.
constexpr int kLengthStepPx = 512;
constexpr int kPointsPerInch = 72;

QFont watermarkFont(int pixelSize)
{
    QFont font(QStringLiteral("微软雅黑"));
    font.setPixelSize(pixelSize);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    return font;
}

/// The beginning of a text that is at least so long, or all of it.
QString beginning(const QString& text, int lengthPx, const QFontMetrics& font)
{
    int tooShort = 0;
    int enough = text.size();
    while (tooShort + 1 < enough) {
        const int middle = (tooShort + enough) / 2;
        (font.horizontalAdvance(text, middle) < lengthPx ? tooShort : enough) = middle;
    }
    return text.left(enough);
}

} // namespace

void WatermarkCache::paint(QPainter& painter, const QSize& tile, const QString& text)
{
    if (text.isEmpty() || tile.isEmpty())
        return;
    const QPaintDevice* device = painter.device();
    const int fontPx = std::max(1, qRound(kPointSize * device->logicalDpiY() / kPointsPerInch));
    const qreal ratio = device->devicePixelRatioF();
    const QFont font = watermarkFont(fontPx);
    if (text != m_text || fontPx != m_iFontPx || !qFuzzyCompare(ratio, m_devicePixelRatio)) {
        const QFontMetrics metrics(font);
        m_text = text;
        m_iFontPx = fontPx;
        m_devicePixelRatio = ratio;
        m_metrics = {metrics.horizontalAdvance(text), metrics.ascent() + metrics.descent(),
                     metrics.averageCharWidth()};
        m_iAscentPx = metrics.ascent();
        m_iDrawnPx = -1;
    }
    const int visible =
        (zr::visibleWatermarkPx(tile) + kLengthStepPx - 1) / kLengthStepPx * kLengthStepPx;
    const int length = std::min(m_metrics.textWidthPx, visible);
    if (length != m_iDrawnPx) {
        m_iDrawnPx = length;
        draw(font, ratio);
    }
    const qreal angle = qDegreesToRadians(qreal(zr::kWatermarkDegrees));
    const qreal cosine = std::cos(angle);
    const qreal sine = std::sin(angle);
    const QPoint center(tile.width() / 2, tile.height() / 2);
    const QRect clip = (painter.hasClipping() ? painter.clipBoundingRect().toAlignedRect()
                                              : QRect(QPoint(0, 0), tile))
                           .intersected(QRect(QPoint(0, 0), tile));
    const QVector<QPoint> grid = zr::watermarkGrid(tile, m_metrics);
    for (const QPoint& at : grid) {
        const QPoint origin = center
                              + QPoint(qRound(at.x() * cosine - at.y() * sine),
                                       qRound(at.x() * sine + at.y() * cosine));
        for (const Slice& slice : std::as_const(m_slices)) {
            const QRect place(origin + slice.offset, slice.pixmap.size() / ratio);
            if (clip.intersects(place))
                painter.drawPixmap(place.topLeft(), slice.pixmap);
        }
    }
}

void WatermarkCache::draw(const QFont& font, qreal devicePixelRatio)
{
    ++m_iDrawings;
    m_slices.clear();
    const qreal slope = std::tan(qDegreesToRadians(qreal(-zr::kWatermarkDegrees)));
    const qreal cosine = std::cos(qDegreesToRadians(qreal(zr::kWatermarkDegrees)));
    const QString text = beginning(m_text, m_iDrawnPx + kMarginPx, QFontMetrics(font));
    const int descent = m_metrics.lineHeightPx - m_iAscentPx;
    // The line leans to the left above its baseline, and to the right below it.
    const int left = -(m_iAscentPx + kMarginPx) / 2 - kMarginPx;
    const int right =
        static_cast<int>(std::ceil(m_iDrawnPx * cosine)) + (descent + kMarginPx) / 2 + kMarginPx;
    for (int x = left; x < right; x += kSliceWidthPx) {
        const int width = std::min(kSliceWidthPx, right - x);
        const int top =
            static_cast<int>(std::floor(-(x + width) * slope - (m_iAscentPx + kMarginPx) / cosine));
        const int bottom = static_cast<int>(std::ceil(-x * slope + (descent + kMarginPx) / cosine));
        Slice slice{{x, top}, QPixmap(QSize(width, bottom - top) * devicePixelRatio)};
        slice.pixmap.setDevicePixelRatio(devicePixelRatio);
        slice.pixmap.fill(Qt::transparent);
        QPainter painter(&slice.pixmap);
        painter.setFont(font);
        painter.setPen(QColor::fromRgba(kColor));
        painter.translate(-slice.offset);
        painter.rotate(zr::kWatermarkDegrees);
        painter.drawText(0, 0, text);
        painter.end();
        m_slices.append(slice);
    }
}

qint64 WatermarkCache::bytes() const
{
    qint64 sum = 0;
    for (const Slice& slice : m_slices)
        sum += qint64(slice.pixmap.width()) * slice.pixmap.height() * slice.pixmap.depth() / 8;
    return sum;
}
