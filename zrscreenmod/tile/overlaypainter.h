// Paints the overlay of a tile from its layout.
#pragma once

#include "overlaylayout.h"

#include <QColor>
#include <QPainterPath>

class OverlayImages;
class WatermarkCache;
class QPainter;

/// What the layout does not tell.
struct OverlayPaint
{
    const zr::OverlayLayout& layout;
    const OverlayImages& images;
    const QPainterPath& bars; ///< what the picture leaves of the tile
    int iSpinnerAngle;        ///< degrees
    WatermarkCache& watermark;
};

/// What a tile is laid out with: the sizes of the images and the widths of texts in the overlay's
/// font.
zr::OverlayMetrics overlayMetrics(const QSize& tile, const OverlayImages& images);

/// Paints the elements, in their order, that touch the painter's clip.
void paintOverlay(QPainter& painter, const OverlayPaint& paint);

/// The colour of an avatar, wherever it is painted. @param index 0 to 3; beyond, the four repeat
QColor avatarColor(int index);
