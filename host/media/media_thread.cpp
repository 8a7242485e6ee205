#include "media_thread.h"

#include "host_error.h"

#include <chrono>
#include <exception>

namespace zrhost {

using std::chrono::steady_clock;

MediaThread::MediaThread(Work work, bool paused)
    : m_work(std::move(work))
    , m_paused(paused)
    , m_thread([this] { run(); })
{
}

MediaThread::~MediaThread()
{
    m_stop.raise();
    m_thread.join();
}

void MediaThread::run() noexcept
{
    restoreStartPriority();
    try {
        play();
    } catch (const Stopped&) {
        // the destructor waits for this
    } catch (const std::exception& error) {
        m_work.ended(error.what());
    }
}

void MediaThread::play()
{
    auto due = steady_clock::now() + std::chrono::milliseconds(m_work.delayMs);
    if (!m_stop.sleepUntil(due))
        return;
    const std::unique_ptr<PictureSource> source = m_work.open(m_stop);
    if (!source)
        return;
    const auto period = std::chrono::duration_cast<steady_clock::duration>(
        std::chrono::duration<double>(1 / source->fps()));
    Picture picture;
    due = steady_clock::now();
    while (source->next(picture)) {
        if (!m_stop.sleepUntil(due))
            return;
        if (!m_paused)
            ++(m_work.deliver(picture) ? m_delivered : m_refused);
        due += period;
        // A source that fell behind goes on from now, instead of catching up in a burst.
        const auto now = steady_clock::now();
        if (due + period < now)
            due = now;
    }
    m_work.ended({});
}

} // namespace zrhost
