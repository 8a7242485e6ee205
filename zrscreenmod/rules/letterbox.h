// Where a picture lies in a widget that has other proportions.
#pragma once

#include <QRect>
#include <QSize>

namespace zr {

/// The centred rectangle that a picture of `video` pixels fills in a widget of `widget` pixels.
/// It has the picture's proportions, but the computed side is a little long: the ratio is taken
/// with one pixel more on the side in question. A gap of one pixel to the widget's edge is closed.
/// The result lies inside the widget. It is empty when either size is.
QRect letterboxRect(const QSize& video, const QSize& widget);

} // namespace zr
