// The thread that delivers one participant's pictures.
#pragma once

#include "host_platform.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace zrhost {

/// Runs from construction to destruction; the destructor waits for the thread. The functions are
/// called on the thread.
class MediaThread
{
public:
    struct Work
    {
        int delayMs = 0; ///< before the source is opened
        std::function<std::unique_ptr<PictureSource>(const StopSignal&)> open;
        std::function<bool(const Picture&)> deliver; ///< @return false when the picture was refused
        /// The source has ended by itself. @param problem empty for a regular end
        std::function<void(const std::string& problem)> ended;
    };

    MediaThread(Work work, bool paused);
    ~MediaThread();
    MediaThread(const MediaThread&) = delete;
    MediaThread& operator=(const MediaThread&) = delete;

    /// A paused thread goes on reading its source and delivers nothing. Any thread.
    void setPaused(bool paused) { m_paused = paused; }

    [[nodiscard]] long long delivered() const { return m_delivered; }
    [[nodiscard]] long long refused() const { return m_refused; }

private:
    void run() noexcept;
    void play();

    Work m_work;
    StopSignal m_stop;
    std::atomic<bool> m_paused;
    std::atomic<long long> m_delivered{0};
    std::atomic<long long> m_refused{0};
    std::thread m_thread; // last: it uses the other members
};

} // namespace zrhost
