// What the overlays cost while nothing of the pictures changes: volume reports for 16 tiles.
#include "paintcounter.h"

#include <benchmark/benchmark.h>

#include <thread>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kTiles = 16;
constexpr auto kReportPeriod = 100ms;
constexpr int kPeriods = 100;

/// Ten reports a second for each of 16 participants, for ten seconds, evenly spread. Range -1:
/// none, to compare with; 0: the same volume again and again; 1: one that wavers within a level; 2:
/// one that changes its level every time.
void reportVolumes(benchmark::State& state)
{
    Meeting meeting(1920, 1080);
    ZRScreen_ChangeLayout(meeting.screen(), eLayoutGrid16, {});
    const std::vector<void*> plays = meeting.addShown(kTiles);
    for (void* play : plays)
        ZRScreen_SetMute(meeting.screen(), play, 0);
    std::this_thread::sleep_for(1500ms); // what follows an arrangement

    const auto volume = [&](int period) {
        if (state.range(0) == 0)
            return 30;
        return state.range(0) == 1 ? 30 + period % 5 : period % 7 * 15;
    };
    const auto report = [&](int period, std::size_t i) {
        if (state.range(0) >= 0)
            ZRScreen_SetVolume(meeting.screen(), plays[i], volume(period));
    };
    for (std::size_t i = 0; i < plays.size(); ++i) // the first one changes the level
        report(0, i);
    std::this_thread::sleep_for(500ms);
    while (state.KeepRunning()) {
        const PaintCounter paints("QDlgPlayInfo");
        const auto start = Clock::now();
        for (int period = 0; period < kPeriods; ++period) {
            for (std::size_t i = 0; i < plays.size(); ++i) {
                std::this_thread::sleep_until(start + kReportPeriod * period
                                              + kReportPeriod / kTiles * static_cast<int>(i));
                report(period, i);
            }
        }
        std::this_thread::sleep_until(start + kReportPeriod * kPeriods);
        const PaintCounter::Seconds wall = paints.wall();
        state.SetIterationTime(wall.count());
        state.counters["reports"] = state.range(0) >= 0 ? kTiles * kPeriods : 0;
        state.counters["gui_percent_of_core"] = 100 * (paints.gui() / wall);
        state.counters["percent_of_core"] = 100 * (paints.process() / wall);
        state.counters["overlay_paints"] = paints.widgets();
    }
}
BENCHMARK(reportVolumes)
    ->ArgName("changes")
    ->DenseRange(-1, 2)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
