#include "desktop.h"

#include "check.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <cstdlib>

namespace {

constexpr unsigned kLeft = 1;
constexpr unsigned kWheelAway = 4;
constexpr unsigned kWheelTowards = 5;

/// A connection for the time of one gesture, so that it has arrived when the gesture is over.
class Gesture
{
public:
    Gesture(int x, int y)
        : m_display(XOpenDisplay(nullptr))
    {
        REQUIRE(m_display != nullptr);
        XTestFakeMotionEvent(m_display, -1, x, y, CurrentTime);
    }
    ~Gesture()
    {
        XSync(m_display, False);
        XCloseDisplay(m_display);
    }
    Gesture(const Gesture&) = delete;
    Gesture& operator=(const Gesture&) = delete;

    void press(unsigned button)
    {
        XTestFakeButtonEvent(m_display, button, True, CurrentTime);
        XTestFakeButtonEvent(m_display, button, False, CurrentTime);
    }

private:
    Display* m_display;
};

} // namespace

Screenshot desktop::grab(int left, int top, int widthPx, int heightPx)
{
    Display* const display = XOpenDisplay(nullptr);
    REQUIRE(display != nullptr);
    XImage* const image =
        XGetImage(display, DefaultRootWindow(display), left, top, static_cast<unsigned>(widthPx),
                  static_cast<unsigned>(heightPx), AllPlanes, ZPixmap);
    REQUIRE(image != nullptr);
    Screenshot shot;
    shot.widthPx = widthPx;
    shot.heightPx = heightPx;
    for (int y = 0; y < heightPx; ++y) {
        for (int x = 0; x < widthPx; ++x) {
            const auto pixel = static_cast<unsigned>(XGetPixel(image, x, y));
            const auto channel = [pixel](unsigned shift) {
                return static_cast<int>(pixel >> shift & 0xFF);
            };
            shot.pixels.push_back({channel(16), channel(8), channel(0)});
        }
    }
    XDestroyImage(image);
    XCloseDisplay(display);
    return shot;
}

void desktop::moveTo(int x, int y)
{
    const Gesture gesture(x, y);
}

void desktop::click(int x, int y)
{
    Gesture(x, y).press(kLeft);
}

void desktop::turnWheel(int x, int y, int steps)
{
    Gesture gesture(x, y);
    for (int i = 0; i < std::abs(steps); ++i)
        gesture.press(steps > 0 ? kWheelAway : kWheelTowards);
}
