// The frame path: how fast a media thread can hand pictures to the library.
#include "allocationcount.h"
#include "benchhost.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <thread>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned kWindowWidthPx = 1280;
constexpr unsigned kWindowHeightPx = 720;
constexpr int kWarmUpFrames = 5;

/// The pictures that a decoder's pool hands out in turn: enough of them that, as in a meeting, a
/// picture comes from another buffer than the last ones and does not lie in the core's own cache.
class FramePool
{
public:
    FramePool(unsigned width, unsigned height)
    {
        constexpr int kFrames = 8;
        for (int i = 0; i < kFrames; ++i)
            m_frames.emplace_back(width, height, Rgb{40 + 20 * i, 128, 128});
    }
    Picture& next() { return m_frames[m_next++ % m_frames.size()]; }

private:
    std::vector<Picture> m_frames;
    std::size_t m_next = 0;
};

/// A meeting with one participant whose tile is shown and has drawn pictures of the pool's size.
class OneTile
{
public:
    explicit OneTile(FramePool& pool)
        : m_meeting(kWindowWidthPx, kWindowHeightPx)
    {
        onGui([this] { m_play = m_meeting.add(1); });
        m_meeting.waitUntilShown(1);
        for (int i = 0; i < kWarmUpFrames; ++i) {
            play(pool.next());
            std::this_thread::sleep_for(50ms);
            onGui(drainEvents);
        }
    }
    void play(Picture& frame) { m_meeting.play(m_play, frame); }

private:
    Meeting m_meeting;
    void* m_play = nullptr;
};

double median(std::vector<double>& values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template<typename Work>
double secondsOf(Work work)
{
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Bytes per second that ZRScreen_PlayFrame takes while the GUI thread handles nothing, beside a
/// plain memcpy of the same pictures. The two take turns, so that what disturbs the machine
/// disturbs both; the ratio is that of the medians.
void playFrameBesideMemcpy(benchmark::State& state)
{
    constexpr int kFramesPerTurn = 8;
    FramePool pool(static_cast<unsigned>(state.range(0)), static_cast<unsigned>(state.range(1)));
    OneTile tile(pool);
    std::vector<unsigned char> copy(pool.next().bytes().size());
    std::vector<double> played;
    std::vector<double> copied;
    std::uint64_t allocations = 0;
    std::uint64_t frames = 0;
    {
        const GuiHold hold;
        tile.play(pool.next()); // the one frame whose signal is queued
        while (state.KeepRunning()) {
            const std::uint64_t before = allocationsOfThisThread();
            const double seconds = secondsOf([&] {
                for (int i = 0; i < kFramesPerTurn; ++i)
                    tile.play(pool.next());
            });
            allocations += allocationsOfThisThread() - before;
            frames += kFramesPerTurn;
            state.SetIterationTime(seconds);
            played.push_back(seconds);
            copied.push_back(secondsOf([&] {
                for (int i = 0; i < kFramesPerTurn; ++i) {
                    std::memcpy(copy.data(), pool.next().bytes().data(), copy.size());
                    benchmark::DoNotOptimize(copy.data());
                    benchmark::ClobberMemory();
                }
            }));
        }
    }
    const double bytes = static_cast<double>(copy.size()) * kFramesPerTurn;
    const double playSeconds = median(played);
    const double copySeconds = median(copied);
    state.counters["PlayFrame_GBps"] = bytes / playSeconds / 1e9;
    state.counters["memcpy_GBps"] = bytes / copySeconds / 1e9;
    state.counters["ratio"] = copySeconds / playSeconds;
    state.counters["allocs_per_frame"] =
        static_cast<double>(allocations) / static_cast<double>(frames);
}
BENCHMARK(playFrameBesideMemcpy)
    ->ArgNames({"w", "h"})
    ->Args({320, 180})
    ->Args({640, 360})
    ->Args({1280, 720})
    ->Args({1920, 1080})
    ->UseManualTime()
    ->MinTime(1.0);

/// What a frame costs besides its copy: a picture of 16 x 16. With range 0 the GUI thread handles
/// nothing, so only the first frame is signalled; with 1 it has come to rest before each frame, so
/// every frame queues its signal and its repaint.
void playTinyFrame(benchmark::State& state)
{
    const bool signalled = state.range(0) != 0;
    FramePool pool(16, 16);
    OneTile tile(pool);
    std::vector<double> times;
    std::uint64_t allocations = 0;
    const auto guiBefore = guiCpuTime();
    const auto playOnce = [&] {
        const std::uint64_t before = allocationsOfThisThread();
        const double seconds = secondsOf([&] { tile.play(pool.next()); });
        allocations += allocationsOfThisThread() - before;
        state.SetIterationTime(seconds);
        times.push_back(seconds);
    };
    if (signalled) {
        while (state.KeepRunning()) {
            playOnce();
            onGui(drainEvents);
        }
    } else {
        const GuiHold hold;
        tile.play(pool.next());
        while (state.KeepRunning())
            playOnce();
    }
    const std::chrono::duration<double, std::micro> gui = guiCpuTime() - guiBefore;
    const auto frames = static_cast<double>(state.iterations());
    state.counters["median_us"] = median(times) * 1e6;
    state.counters["gui_cpu_us"] = gui.count() / frames;
    state.counters["allocs_per_frame"] = static_cast<double>(allocations) / frames;
}
BENCHMARK(playTinyFrame)->ArgName("signalled")->Arg(0)->Arg(1)->UseManualTime()->Iterations(5000);

} // namespace
