#include "event_loop.h"

#include "text.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <glib-unix.h>
#include <glib.h>
#include <unistd.h>
#include <utility>

namespace zrhost {

struct EventLoop::Impl
{
    GMainLoop* loop = nullptr;
    guint inputId = 0;
    std::array<guint, 2> signalIds{};
    LineBuffer input;
    std::function<void(const std::string&)> onLine;
    Task onInputEnd;
    Task onTermination;
};

namespace {

gboolean runOnce(gpointer task)
{
    (*static_cast<EventLoop::Task*>(task))();
    return G_SOURCE_REMOVE;
}

void freeTask(gpointer task)
{
    delete static_cast<EventLoop::Task*>(task);
}

} // namespace

// The default context, on which the module's Qt runs too.
EventLoop::EventLoop()
    : m_impl(new Impl)
{
    m_impl->loop = g_main_loop_new(nullptr, FALSE);
}

EventLoop::~EventLoop()
{
    if (m_impl->inputId != 0)
        g_source_remove(m_impl->inputId);
    for (const guint id : m_impl->signalIds) {
        if (id != 0)
            g_source_remove(id);
    }
    g_main_loop_unref(m_impl->loop);
    delete m_impl;
}

void EventLoop::run()
{
    g_main_loop_run(m_impl->loop);
}

void EventLoop::quit()
{
    g_main_loop_quit(m_impl->loop);
}

void EventLoop::after(int delayMs, Task task)
{
    g_timeout_add_full(G_PRIORITY_DEFAULT, static_cast<guint>(delayMs), &runOnce,
                       new Task(std::move(task)), &freeTask);
}

void EventLoop::post(Task task)
{
    g_idle_add_full(G_PRIORITY_DEFAULT, &runOnce, new Task(std::move(task)), &freeTask);
}

void EventLoop::watchInput(std::function<void(const std::string&)> onLine, Task onEnd)
{
    m_impl->onLine = std::move(onLine);
    m_impl->onInputEnd = std::move(onEnd);
    const auto readable = [](gint fd, GIOCondition, gpointer data) -> gboolean {
        Impl& impl = *static_cast<Impl*>(data);
        std::array<char, 4096> bytes{};
        const ssize_t got = read(fd, bytes.data(), bytes.size());
        if (got < 0 && (errno == EINTR || errno == EAGAIN))
            return G_SOURCE_CONTINUE;
        if (got > 0) {
            for (const std::string& line :
                 impl.input.add({bytes.data(), static_cast<std::size_t>(got)}))
                impl.onLine(line);
            return G_SOURCE_CONTINUE;
        }
        impl.inputId = 0;
        if (const std::string rest = impl.input.takeRest(); !rest.empty())
            impl.onLine(rest);
        impl.onInputEnd();
        return G_SOURCE_REMOVE;
    };
    m_impl->inputId = g_unix_fd_add(
        STDIN_FILENO, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), readable, m_impl);
}

void EventLoop::watchTermination(Task task)
{
    m_impl->onTermination = std::move(task);
    const auto ended = [](gpointer data) -> gboolean {
        static_cast<Impl*>(data)->onTermination();
        return G_SOURCE_CONTINUE;
    };
    m_impl->signalIds = {g_unix_signal_add(SIGINT, ended, m_impl),
                         g_unix_signal_add(SIGTERM, ended, m_impl)};
}

} // namespace zrhost
