// The rules of the watermark over shared screens: what it says, and where it is repeated.
#pragma once

#include <QPoint>
#include <QSize>
#include <QString>
#include <QVector>

namespace zr {

/// What the host tells about the local user.
struct WatermarkInfo
{
    bool enabled = false;
    int kind = 0; ///< what follows the name: 1 the phone number, 2 the address, else nothing
    QString name;
    QString phone;
    QString email;
};

/// The text of the watermark, in one line; empty for none. The fourth to seventh character of a
/// phone number become asterisks; one of fewer than seven characters is shown as it is. Beyond
/// 20,000 code units the text is cut: no window shows more of it.
QString watermarkText(const WatermarkInfo& info);

/// Sizes of the watermark's text, in pixels.
struct WatermarkMetrics
{
    int textWidthPx = 0;
    int lineHeightPx = 0; ///< ascent and descent
    int averageCharPx = 0;
};

/// The text rises to the right.
constexpr int kWatermarkDegrees = -30;

/// Where the baselines begin of the texts that can be seen in the tile, in a system of coordinates
/// whose origin is the centre of the tile and which is turned by kWatermarkDegrees. The columns
/// begin a tile's width left of the centre, the rows a tile's height above it. A tile so small that
/// no baseline crosses it has one more text at its centre.
QVector<QPoint> watermarkGrid(const QSize& tile, const WatermarkMetrics& metrics);

/// How much of a text that is longer than the tile can be seen at most, from its beginning.
int visibleWatermarkPx(const QSize& tile);

} // namespace zr
