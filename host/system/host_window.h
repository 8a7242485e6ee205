// The host's native windows. One implementation per system: window_x11.cpp and window_win32.cpp.
#pragma once

#include "desktop.h"

#include <functional>
#include <memory>
#include <string>

namespace zrhost {

/// A top-level window. GUI thread; its functions are called from the event loop.
class HostWindow
{
public:
    struct Events
    {
        std::function<void(Size)> resized; ///< after the size has changed
        std::function<void()> closed;      ///< the user asks to close it; nothing happens by itself
    };

    virtual ~HostWindow() = default;
    [[nodiscard]] virtual HWND handle() const = 0;
    [[nodiscard]] virtual Size size() const = 0;
    virtual void resize(Size size) = 0;
    /// Brings the window before the others: what is covered cannot be grabbed.
    virtual void raise() = 0;
    /// Moves the mouse to a point of the window and clicks so many times.
    virtual void click(Point at, int times) = 0;
    /// Turns the wheel there: away from the user for positive steps.
    virtual void turnWheel(Point at, int steps) = 0;
    /// Reads the part of the screen where the window lies, as the user sees it.
    /// @throws HostError
    [[nodiscard]] virtual RgbImage grab() const = 0;
};

/// The connection to the system's windows, served by the event loop of the GUI thread.
class HostDisplay
{
public:
    virtual ~HostDisplay() = default;
    /// Makes a window and waits until it is visible. The display must outlive it.
    /// @param title UTF-8 @throws HostError
    [[nodiscard]] virtual std::unique_ptr<HostWindow>
    makeWindow(const std::string& title, Size size, HostWindow::Events events) = 0;
};

/// Make it before the module is loaded. @throws HostError
[[nodiscard]] std::unique_ptr<HostDisplay> openDisplay();

} // namespace zrhost
