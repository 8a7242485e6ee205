#include "letterbox.h"

#include <algorithm>

namespace zr {

namespace {

/// Truncated; kept in range for a strip of a picture in a huge widget.
int scaledLength(int length, double ratio)
{
    return static_cast<int>(std::min(length * ratio, 1e9));
}

} // namespace

QRect letterboxRect(const QSize& video, const QSize& widget)
{
    if (video.isEmpty() || widget.isEmpty())
        return {};
    // The "+ 1" is intended: truncation would otherwise leave a line at the edge.
    const double heightByWidth = (video.height() + 1) * 1.0 / video.width();
    const double widthByHeight = (video.width() + 1) * 1.0 / video.height();

    int width = widget.width();
    int height = widget.height();
    if (video.height() <= video.width()) {
        height = scaledLength(width, heightByWidth);
        if (height > widget.height()) {
            height = widget.height();
            width = scaledLength(height, widthByHeight);
        }
    } else {
        width = scaledLength(height, widthByHeight);
        if (width > widget.width()) {
            width = widget.width();
            height = scaledLength(width, heightByWidth);
        }
    }
    // Also cuts what the longer ratio put over the edge.
    if (widget.height() - height < 2)
        height = widget.height();
    if (widget.width() - width < 2)
        width = widget.width();
    return {(widget.width() - width) / 2, (widget.height() - height) / 2, width, height};
}

} // namespace zr
