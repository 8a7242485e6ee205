// What painting costs: nine tiles at 25 frames per second.
#include "paintcounter.h"

#include <benchmark/benchmark.h>

#include <thread>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kTiles = 9;
constexpr auto kFramePeriod = 40ms;
constexpr int kPeriods = 100;

/// Nine participants send 640 x 360 at 25 frames per second for four seconds, all at the same
/// instant (range 0) or evenly spread over the period (range 1).
void paintNineTiles(benchmark::State& state)
{
    const auto offset = state.range(0) != 0 ? kFramePeriod / kTiles : 0ms;
    Meeting meeting(1920, 1080);
    ZRScreen_SetSupport9EqualCut(meeting.screen(), true);
    const std::vector<void*> plays = meeting.addShown(kTiles);
    std::vector<Picture> frames;
    for (int number = 1; number <= kTiles; ++number) {
        frames.emplace_back(640, 360, Rgb{20 * number, 128, 128});
        meeting.play(plays[frames.size() - 1], frames.back());
    }
    const auto playAllOnce = [&](Clock::time_point start) {
        for (std::size_t i = 0; i < plays.size(); ++i) {
            std::this_thread::sleep_until(start + offset * static_cast<int>(i));
            meeting.play(plays[i], frames[i]);
        }
        std::this_thread::sleep_until(start + kFramePeriod);
    };
    for (int i = 0; i < 10; ++i)
        playAllOnce(Clock::now());

    while (state.KeepRunning()) {
        const PaintCounter paints("CPlayWidget");
        const auto start = Clock::now();
        for (int period = 0; period < kPeriods; ++period)
            playAllOnce(start + kFramePeriod * period);
        const double guiMs = 1000 * paints.gui().count();
        const double processMs = 1000 * paints.process().count();
        const int painted = paints.widgets();
        state.SetIterationTime(paints.wall().count());
        state.counters["sent"] = kTiles * kPeriods;
        state.counters["painted"] = painted;
        state.counters["composed"] = paints.windows();
        state.counters["gui_ms_per_paint"] = guiMs / painted;
        state.counters["cpu_ms_per_paint"] = processMs / painted;
    }
}
BENCHMARK(paintNineTiles)
    ->ArgName("staggered")
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
