// The program around the example of the README: a window, an event loop, and a look at the result.
#include "readme_example.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <glib.h>

namespace {

Display* g_display = nullptr;
Window g_window = 0;
bool g_seen = false;

/// The example's picture is of mid grey: Y, U and V are all 128, which is (130, 130, 130).
bool pictureIsShown()
{
    XSync(g_display, False);
    XImage* image = XGetImage(g_display, g_window, 640, 200, 1, 1, AllPlanes, ZPixmap);
    const unsigned long pixel = image ? XGetPixel(image, 0, 0) : 0;
    if (image)
        XDestroyImage(image);
    const auto isGrey = [](unsigned long channel) { return channel > 124 && channel < 136; };
    return isGrey(pixel >> 16 & 0xFF) && isGrey(pixel >> 8 & 0xFF) && isGrey(pixel & 0xFF);
}

void runLoop()
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!g_seen && std::chrono::steady_clock::now() < deadline) {
        g_main_context_iteration(nullptr, FALSE);
        g_seen = pictureIsShown();
    }
}

} // namespace

int main()
{
    g_display = XOpenDisplay(nullptr);
    if (!g_display)
        return 2;
    g_window =
        XCreateSimpleWindow(g_display, DefaultRootWindow(g_display), 0, 0, 1280, 720, 0, 0, 0);
    XMapWindow(g_display, g_window);
    XSync(g_display, False);
    showMeeting(reinterpret_cast<HWND>(static_cast<uintptr_t>(g_window)), runLoop);
    XCloseDisplay(g_display);
    std::printf("%s\n", g_seen ? "the picture is on the screen" : "the picture did not appear");
    return g_seen ? 0 : 1;
}
