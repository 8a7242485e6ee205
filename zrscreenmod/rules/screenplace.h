// Where a floating window can be seen.
#pragma once

#include <QPoint>
#include <QRect>

#include <vector>

namespace zr {

/// The place nearest to the wanted one at which all of a window is seen. A window may lie across
/// the border of two screens; otherwise it goes into the screen that has most of it, or, when it is
/// on none, into the nearest one. One that is larger than the screen begins at its left and upper
/// edge.
/// @param screens what is available of each; without any, the window stays where it is
[[nodiscard]] QPoint visiblePlace(const QRect& window, const std::vector<QRect>& screens);

} // namespace zr
