// A host's meeting: the library, a screen in it, and an inbox for messages.
#pragma once

#include "hostprocess.h"
#include "hostwindow.h"
#include "module.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

struct Message
{
    unsigned long id;
    unsigned long long wParam;
    long long lParam;
    std::thread::id thread;
};

/// Receives the messages of one screen; the interface leaves no room for a context pointer, so
/// there are two fixed ones, reset for every case.
class Inbox
{
public:
    static Inbox& first() { return inbox<1>(); }
    static Inbox& second() { return inbox<2>(); }

    [[nodiscard]] ZRNotify notify() const { return m_notify; }
    /// Forgets the messages and the handler.
    void reset();
    /// Forgets the messages.
    void clear();
    [[nodiscard]] std::vector<Message> all() const;
    [[nodiscard]] int count(unsigned long id, std::optional<long long> lParam = {}) const;
    [[nodiscard]] int count() const { return static_cast<int>(all().size()); }

    /// Called with every message after it has been recorded.
    std::function<void(const Message&)> onMessage;

private:
    explicit Inbox(ZRNotify notify)
        : m_notify(notify)
    {
    }
    template<int number>
    static Inbox& inbox()
    {
        static Inbox one([](unsigned long id, unsigned long long wParam, long long lParam) {
            return inbox<number>().receive(id, wParam, lParam);
        });
        return one;
    }
    int receive(unsigned long id, unsigned long long wParam, long long lParam);

    ZRNotify m_notify;
    mutable std::mutex m_lock;
    std::vector<Message> m_messages;
};

/// A host value that messages can be told apart by.
inline void* hostValue(long long value)
{
    return reinterpret_cast<void*>(static_cast<intptr_t>(value));
}

/// The usual start of a case: the library, a window of 1280 x 720 with a screen in it, joined.
/// `parent` null makes a screen without a native parent.
class Meeting
{
public:
    explicit Meeting(const HostWindow* parent, int widthPx = 1280, int heightPx = 720);
    ~Meeting();
    /// Releases the screen and makes another one.
    void renewScreen();
    Meeting(const Meeting&) = delete;
    Meeting& operator=(const Meeting&) = delete;

    /// Adds a participant whose stream is open. The host value is `number`, the id "u<number>" and
    /// the join time `number` too. @return the play handle
    void* join(int number);
    void moveTo(int widthPx, int heightPx);
    /// Delivers pictures of a colour until it is seen at a point of the window, or is not any more.
    [[nodiscard]] bool shows(void* play, const Rgb& colour, const HostWindow& window,
                             zrhost::Point at, bool seen = true);
    /// Changes the mode and waits for the message that reports it.
    [[nodiscard]] bool changeMode(int mode);

    Module zr;
    Inbox& inbox = Inbox::first();
    void* screen = nullptr;

private:
    void openScreen();

    const HWND m_parent;
    const int m_widthPx;
    const int m_heightPx;
};
