// The decoders of a host: threads that deliver pictures whenever they have some.
#pragma once

#include "pictures.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// Eight threads share the targets and deliver a picture to each 25 times a second, of sizes that
/// change now and then. Nothing is delivered while there are no targets.
class FrameThreads
{
public:
    /// Delivers to one; may be called on any thread, and once more after another setTargets.
    using Target = std::function<void(VantrelRTCVideoFrameQT& frame)>;

    FrameThreads();
    ~FrameThreads();
    FrameThreads(const FrameThreads&) = delete;
    FrameThreads& operator=(const FrameThreads&) = delete;

    void setTargets(std::vector<Target> targets);
    [[nodiscard]] long long delivered() const { return m_delivered; }

private:
    void work(std::size_t thread);
    std::vector<Target> targetsOf(std::size_t thread);

    static constexpr std::size_t kThreads = 8;
    std::mutex m_lock;
    std::vector<Target> m_targets;
    std::atomic<bool> m_ended{false};
    std::atomic<long long> m_delivered{0};
    std::vector<std::thread> m_threads;
};
