#include "framethreads.h"

#include <chrono>

FrameThreads::FrameThreads()
{
    for (std::size_t thread = 0; thread < kThreads; ++thread)
        m_threads.emplace_back([this, thread] { work(thread); });
}

FrameThreads::~FrameThreads()
{
    m_ended = true;
    for (std::thread& thread : m_threads)
        thread.join();
}

void FrameThreads::setTargets(std::vector<Target> targets)
{
    const std::lock_guard lock(m_lock);
    m_targets = std::move(targets);
}

std::vector<FrameThreads::Target> FrameThreads::targetsOf(std::size_t thread)
{
    const std::lock_guard lock(m_lock);
    std::vector<Target> mine;
    for (std::size_t i = thread; i < m_targets.size(); i += kThreads)
        mine.push_back(m_targets[i]);
    return mine;
}

void FrameThreads::work(std::size_t thread)
{
    constexpr int kFramesOfASize = 50;
    const Rgb colour{30 * static_cast<int>(thread), 120, 160};
    std::vector<Picture> pictures;
    pictures.emplace_back(160, 90, colour);
    pictures.emplace_back(320, 180, colour);
    pictures.emplace_back(320, 240, colour);
    for (std::size_t frame = thread; !m_ended; ++frame) {
        Picture& picture = pictures[frame / kFramesOfASize % pictures.size()];
        for (const Target& deliver : targetsOf(thread)) {
            deliver(picture.frame);
            ++m_delivered;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(40));
    }
}
