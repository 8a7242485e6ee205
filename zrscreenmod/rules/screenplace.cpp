#include "screenplace.h"

#include <algorithm>

namespace zr {

namespace {

qint64 areaOf(const QRect& rect)
{
    return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

/// Square of the distance between a window and a screen that it does not meet.
qint64 distance(const QRect& window, const QRect& screen)
{
    const qint64 dx = std::max({0, screen.left() - window.right(), window.left() - screen.right()});
    const qint64 dy = std::max({0, screen.top() - window.bottom(), window.top() - screen.bottom()});
    return dx * dx + dy * dy;
}

bool isCornerSeen(const QPoint& corner, const std::vector<QRect>& screens)
{
    return std::any_of(screens.begin(), screens.end(),
                       [&corner](const QRect& screen) { return screen.contains(corner); });
}

} // namespace

QPoint visiblePlace(const QRect& window, const std::vector<QRect>& screens)
{
    const QRect* best = nullptr;
    for (const QRect& screen : screens) {
        if (screen.isEmpty())
            continue;
        const qint64 most = best ? areaOf(best->intersected(window)) : 0;
        const qint64 area = areaOf(screen.intersected(window));
        if (!best || area > most
            || (area == most && area == 0 && distance(window, screen) < distance(window, *best)))
            best = &screen;
    }
    if (!best)
        return window.topLeft();
    if (isCornerSeen(window.topLeft(), screens) && isCornerSeen(window.topRight(), screens)
        && isCornerSeen(window.bottomLeft(), screens)
        && isCornerSeen(window.bottomRight(), screens))
        return window.topLeft();
    const int x = std::min(window.left(), best->right() - window.width() + 1);
    const int y = std::min(window.top(), best->bottom() - window.height() + 1);
    return {std::max(x, best->left()), std::max(y, best->top())};
}

} // namespace zr
