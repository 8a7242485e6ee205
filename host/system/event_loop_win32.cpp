#include "event_loop.h"

#include "host_error.h"
#include "text.h"
#include "wide_text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <windows.h>

namespace zrhost {

using std::chrono::steady_clock;

namespace {

constexpr UINT kPosted = WM_APP;
constexpr UINT_PTR kTimerId = 1;
constexpr wchar_t kClassName[] = L"ZRHostEventLoop";

/// What other threads hand to the loop. It outlives the loop where one of them still reads input.
class Mailbox
{
public:
    explicit Mailbox(HWND window)
        : m_window(window)
    {
    }

    /// Any thread.
    void post(EventLoop::Task task)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_window)
            return;
        m_tasks.push_back(std::move(task));
        PostMessageW(m_window, kPosted, 0, 0);
    }

    /// @return the oldest task, empty without one
    [[nodiscard]] EventLoop::Task take()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_tasks.empty())
            return {};
        EventLoop::Task task = std::move(m_tasks.front());
        m_tasks.pop_front();
        return task;
    }

    void close()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_window = nullptr;
        m_tasks.clear();
    }

private:
    std::mutex m_mutex;
    HWND m_window;
    std::deque<EventLoop::Task> m_tasks;
};

/// Where the system's request to end goes; it comes on a thread of its own.
std::mutex g_terminationMutex;
std::shared_ptr<Mailbox> g_terminationMailbox;
EventLoop::Task g_onTermination;

BOOL WINAPI onConsoleEvent(DWORD event)
{
    {
        const std::lock_guard<std::mutex> lock(g_terminationMutex);
        if (!g_terminationMailbox)
            return FALSE;
        g_terminationMailbox->post(g_onTermination);
    }
    // The system ends the process when this returns; the orderly end comes first, or the system's
    // patience ends.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

/// @return UTF-8, empty at the end of the input
std::string readInput(HANDLE input, bool console)
{
    DWORD got = 0;
    if (console) {
        std::array<wchar_t, 2048> text{};
        const bool read =
            ReadConsoleW(input, text.data(), static_cast<DWORD>(text.size()), &got, nullptr)
            != FALSE;
        constexpr wchar_t kEndOfInput = L'\x1a'; // Ctrl-Z
        return read && got > 0 && text[0] != kEndOfInput ? fromWide({text.data(), got})
                                                         : std::string();
    }
    std::array<char, 4096> bytes{};
    const bool read =
        ReadFile(input, bytes.data(), static_cast<DWORD>(bytes.size()), &got, nullptr) != FALSE;
    return {bytes.data(), read ? got : 0};
}

} // namespace

struct EventLoop::Impl
{
    HWND window = nullptr;
    std::shared_ptr<Mailbox> mailbox;
    std::multimap<steady_clock::time_point, Task> timed; ///< equal times: in the order of asking
    bool ended = false;
    LineBuffer input;
    std::function<void(const std::string&)> onLine;
    Task onInputEnd;

    void startTimer() const;
    void runDue();
    void takeInput(const std::string& bytes);
    static LRESULT CALLBACK onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
};

/// The system's timer wakes the loop, and runs the tasks while a window is moved or sized.
void EventLoop::Impl::startTimer() const
{
    if (timed.empty()) {
        KillTimer(window, kTimerId);
        return;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(timed.begin()->first - steady_clock::now());
    const auto limited = std::clamp<long long>(left.count(), 0, USER_TIMER_MAXIMUM);
    SetTimer(window, kTimerId, static_cast<UINT>(limited), nullptr);
}

void EventLoop::Impl::runDue()
{
    bool changed = false;
    while (!ended && !timed.empty() && timed.begin()->first <= steady_clock::now()) {
        const Task task = std::move(timed.begin()->second);
        timed.erase(timed.begin());
        changed = true;
        task();
    }
    if (changed)
        startTimer();
}

void EventLoop::Impl::takeInput(const std::string& bytes)
{
    for (const std::string& line : input.add(bytes))
        onLine(line);
    if (!bytes.empty())
        return;
    if (const std::string rest = input.takeRest(); !rest.empty())
        onLine(rest);
    onInputEnd();
}

LRESULT CALLBACK EventLoop::Impl::onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* const impl = reinterpret_cast<Impl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (impl && message == kPosted) {
        if (const Task task = impl->mailbox->take())
            task();
        return 0;
    }
    if (impl && message == WM_TIMER && wParam == kTimerId) {
        impl->runDue();
        // A timer that fired too early fires again.
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

EventLoop::EventLoop()
    : m_impl(new Impl)
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &Impl::onMessage;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kClassName;
    RegisterClassW(&windowClass); // fails for a second loop, which uses the first one's
    m_impl->window = CreateWindowExW(0, kClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                     windowClass.hInstance, nullptr);
    if (!m_impl->window) {
        delete m_impl;
        throw HostError("cannot make the event loop: " + windowsErrorText(GetLastError()));
    }
    SetWindowLongPtrW(m_impl->window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(m_impl));
    m_impl->mailbox = std::make_shared<Mailbox>(m_impl->window);
}

EventLoop::~EventLoop()
{
    {
        const std::lock_guard<std::mutex> lock(g_terminationMutex);
        g_terminationMailbox.reset();
        g_onTermination = {};
    }
    m_impl->mailbox->close();
    DestroyWindow(m_impl->window);
    delete m_impl;
}

void EventLoop::run()
{
    MSG message{};
    while (!m_impl->ended && GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
        // Timers come last of all messages, and a busy meeting may keep them waiting for ever.
        m_impl->runDue();
    }
}

void EventLoop::quit()
{
    m_impl->ended = true;
    m_impl->mailbox->post([] {}); // wakes the loop
}

void EventLoop::after(int delayMs, Task task)
{
    m_impl->timed.emplace(steady_clock::now() + std::chrono::milliseconds(delayMs),
                          std::move(task));
    m_impl->startTimer();
}

void EventLoop::post(Task task)
{
    m_impl->mailbox->post(std::move(task));
}

void EventLoop::watchInput(std::function<void(const std::string&)> onLine, Task onEnd)
{
    m_impl->onLine = std::move(onLine);
    m_impl->onInputEnd = std::move(onEnd);
    // A read of the console cannot be waited for together with messages, nor be ended reliably:
    // the thread is left behind, and what it reads after the loop's end is dropped.
    std::thread([impl = m_impl, mailbox = m_impl->mailbox] {
        const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
        DWORD mode = 0;
        const bool console = GetConsoleMode(input, &mode) != FALSE;
        std::string bytes;
        do {
            bytes = readInput(input, console);
            // `impl` is there when the task runs: the mailbox is closed before it goes.
            mailbox->post([impl, bytes] { impl->takeInput(bytes); });
        } while (!bytes.empty());
    }).detach();
}

void EventLoop::watchTermination(Task task)
{
    {
        const std::lock_guard<std::mutex> lock(g_terminationMutex);
        g_terminationMailbox = m_impl->mailbox;
        g_onTermination = std::move(task);
    }
    SetConsoleCtrlHandler(&onConsoleEvent, TRUE);
}

} // namespace zrhost
