// What the session needs of the program around it: windows, the event loop, output. The program
// implements it, and so do the tests, without either.
#pragma once

#include "messages.h"
#include "text.h"
#include "zrscreenmod/zrscreenmod.h"

#include <functional>
#include <string>

namespace zrhost {

enum class WindowId
{
    None, ///< the screen is a window of its own
    Main,
    Second
};

/// In a window, pixels from its top left corner.
struct Point
{
    int x = 0;
    int y = 0;
};

/// A key that types no text.
enum class Key
{
    Tab,
    Enter,
    Escape,
    Backspace
};

class Stage
{
public:
    virtual ~Stage() = default;

    /// The native window, made where it does not exist yet, before the others; null for
    /// WindowId::None.
    [[nodiscard]] virtual HWND nativeWindow(WindowId id) = 0;
    /// Pixels of the window's inside.
    [[nodiscard]] virtual Size windowSize(WindowId id) = 0;
    virtual void resizeWindow(WindowId id, Size size) = 0;
    /// Writes what the window shows to a PNG file. @throws HostError
    virtual void saveWindow(WindowId id, const std::string& file) = 0;

    /// Moves the mouse to a point of the window and clicks so many times; 0 only moves it.
    virtual void click(WindowId id, Point at, int times) = 0;
    /// Turns the wheel there: away from the user for positive steps.
    virtual void turnWheel(WindowId id, Point at, int steps) = 0;
    /// Types at the keyboard, wherever the system sends the keys. @throws HostError
    virtual void typeText(const std::string& utf8) = 0;
    virtual void pressKey(Key key) = 0;

    /// Prints one line for the user.
    virtual void print(const std::string& line) = 0;
    /// Tells the user of a message that the module has sent.
    virtual void hear(const MessageWords& message) = 0;
    /// Reports a failure that happened outside a command. May end the program.
    virtual void fail(const std::string& line) = 0;
    /// Ends the program in order, after the present event.
    virtual void quit() = 0;
    /// Runs `task` later on the GUI thread. Any thread.
    virtual void post(std::function<void()> task) = 0;
    /// Holds back commands that are still to come.
    virtual void holdCommands(int ms) = 0;
};

} // namespace zrhost
