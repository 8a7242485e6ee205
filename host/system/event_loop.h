// The event loop of the GUI thread. It also drives the module's Qt, which runs no loop of its
// own. One implementation per system: event_loop_glib.cpp and
// event_loop_win32.cpp.
#pragma once

#include <functional>
#include <string>

namespace zrhost {

class EventLoop
{
public:
    using Task = std::function<void()>;

    EventLoop();
    ~EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    /// Runs until quit().
    void run();
    /// Ends run() after the present event. GUI thread.
    void quit();
    /// Runs a task once, not before `delayMs` have passed. GUI thread.
    void after(int delayMs, Task task);
    /// Runs a task on the GUI thread. Any thread.
    void post(Task task);
    /// Hands over each line of the program's input, and once its end. GUI thread.
    void watchInput(std::function<void(const std::string& line)> onLine, Task onEnd);
    /// Calls `task` when the system asks the program to end (Ctrl-C, SIGTERM). GUI thread.
    void watchTermination(Task task);

private:
    struct Impl;
    Impl* m_impl;
};

} // namespace zrhost
