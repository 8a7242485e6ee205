// What the overlays cost while nothing of the pictures changes: volume reports for 16 tiles.
#include "benchhost.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kTiles = 16;
constexpr auto kReportPeriod = 100ms;
constexpr int kPeriods = 100;

/// Counts the paint events of the overlays. Belongs to the GUI thread.
class OverlayPaints : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && watched->inherits("QDlgPlayInfo"))
            ++count;
        return false;
    }
    int count = 0;
};

/// Ten reports a second for each of 16 participants, for ten seconds, evenly spread. Range -1:
/// none, to compare with; 0: the same volume again and again; 1: one that wavers within a level; 2:
/// one that changes its level every time.
void reportVolumes(benchmark::State& state)
{
    Meeting meeting(1920, 1080);
    ZRScreen_ChangeLayout(meeting.screen(), eLayoutGrid16, {});
    std::vector<void*> plays;
    onGui([&] {
        for (int number = 1; number <= kTiles; ++number)
            plays.push_back(meeting.add(number));
        drainEvents();
        for (void* play : plays)
            ZRScreen_SetMute(meeting.screen(), play, 0);
    });
    for (int number = 1; number <= kTiles; ++number)
        meeting.waitUntilShown(number);
    std::this_thread::sleep_for(1500ms); // what follows an arrangement

    const auto volume = [&](int period) {
        if (state.range(0) == 0)
            return 30;
        return state.range(0) == 1 ? 30 + period % 5 : period % 7 * 15;
    };
    std::unique_ptr<OverlayPaints> paints;
    while (state.KeepRunning()) {
        onGui([&] {
            paints = std::make_unique<OverlayPaints>();
            qApp->installEventFilter(paints.get());
        });
        const auto process = processCpuTime();
        const auto gui = guiCpuTime();
        const auto start = Clock::now();
        for (int period = 0; period < kPeriods; ++period) {
            for (std::size_t i = 0; i < plays.size(); ++i) {
                std::this_thread::sleep_until(start + kReportPeriod * period
                                              + kReportPeriod / kTiles * static_cast<int>(i));
                if (state.range(0) >= 0)
                    ZRScreen_SetVolume(meeting.screen(), plays[i], volume(period));
            }
        }
        std::this_thread::sleep_until(start + kReportPeriod * kPeriods);
        const std::chrono::duration<double> wall = Clock::now() - start;
        const auto percent = [&wall](std::chrono::nanoseconds cpu) {
            return 100 * std::chrono::duration<double>(cpu) / wall;
        };
        state.SetIterationTime(wall.count());
        state.counters["reports"] = state.range(0) >= 0 ? kTiles * kPeriods : 0;
        state.counters["gui_percent_of_core"] = percent(guiCpuTime() - gui);
        state.counters["percent_of_core"] = percent(processCpuTime() - process);
        onGui([&] {
            state.counters["overlay_paints"] = paints->count;
            paints.reset();
        });
    }
}
BENCHMARK(reportVolumes)
    ->ArgName("changes")
    ->DenseRange(-1, 2)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
