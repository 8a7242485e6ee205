#include "desktop.h"

#include "host_error.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace zrhost {

namespace {

/// The user's own connection. It stays until the process ends.
Display* display()
{
    static Display* const opened = XOpenDisplay(nullptr);
    if (!opened)
        throw HostError("cannot open the display for the mouse");
    return opened;
}

void press(unsigned button, int times)
{
    for (int i = 0; i < times; ++i) {
        XTestFakeButtonEvent(display(), button, True, CurrentTime);
        XTestFakeButtonEvent(display(), button, False, CurrentTime);
    }
    XSync(display(), False);
}

/// Moves a channel's bits, wherever the visual has them, to the range 0 to 255.
std::uint8_t channel(unsigned long pixel, unsigned long mask)
{
    return static_cast<std::uint8_t>((pixel & mask) * 255 / mask);
}

} // namespace

Size desktop::size()
{
    const int screen = DefaultScreen(display());
    return {DisplayWidth(display(), screen), DisplayHeight(display(), screen)};
}

RgbImage desktop::grab(Point at, Size size)
{
    // The server refuses to read what lies off the screen.
    const Size screen = desktop::size();
    const int left = std::max(0, at.x);
    const int top = std::max(0, at.y);
    const int right = std::min(screen.width, at.x + size.width);
    const int bottom = std::min(screen.height, at.y + size.height);
    if (left >= right || top >= bottom)
        throw HostError("cannot grab what lies off the screen");
    const std::unique_ptr<XImage, int (*)(XImage*)> image(
        XGetImage(display(), DefaultRootWindow(display()), left, top,
                  static_cast<unsigned>(right - left), static_cast<unsigned>(bottom - top),
                  AllPlanes, ZPixmap),
        [](XImage* read) { return XDestroyImage(read); });
    if (!image || image->red_mask == 0 || image->green_mask == 0 || image->blue_mask == 0)
        throw HostError("cannot grab the screen");
    RgbImage result{right - left, bottom - top, {}};
    result.data.reserve(static_cast<std::size_t>(result.width)
                        * static_cast<std::size_t>(result.height) * 3);
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            const unsigned long pixel = XGetPixel(image.get(), x, y);
            for (const unsigned long mask : {image->red_mask, image->green_mask, image->blue_mask})
                result.data.push_back(channel(pixel, mask));
        }
    }
    return result;
}

void desktop::moveTo(Point at)
{
    XTestFakeMotionEvent(display(), -1, at.x, at.y, CurrentTime);
    XSync(display(), False);
}

void desktop::click(Point at, int times)
{
    moveTo(at);
    press(Button1, times);
}

void desktop::turnWheel(Point at, int steps)
{
    moveTo(at);
    press(steps > 0 ? Button4 : Button5, std::abs(steps));
}

} // namespace zrhost
