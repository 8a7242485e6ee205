// What painting costs: nine tiles at 25 frames per second.
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

constexpr int kTiles = 9;
constexpr auto kFramePeriod = 40ms;
constexpr int kPeriods = 100;

/// Counts the paint events of the tiles, and of the window that all of them are composed into.
/// Belongs to the GUI thread, as every filter of the application does.
class PaintCounter : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && watched->inherits("CPlayWidget"))
            ++tiles;
        else if (event->type() == QEvent::UpdateRequest && watched->isWidgetType()
                 && static_cast<QWidget*>(watched)->isWindow())
            ++windows;
        return false;
    }
    int tiles = 0;
    int windows = 0;
};

/// Nine participants send 640 x 360 at 25 frames per second for four seconds, all at the same
/// instant (range 0) or evenly spread over the period (range 1).
void paintNineTiles(benchmark::State& state)
{
    const auto offset = state.range(0) != 0 ? kFramePeriod / kTiles : 0ms;
    Meeting meeting(1920, 1080);
    ZRScreen_SetSupport9EqualCut(meeting.screen(), true);
    std::vector<Frame> frames;
    std::vector<void*> plays;
    onGui([&] {
        for (int number = 1; number <= kTiles; ++number)
            plays.push_back(meeting.add(number));
        drainEvents();
    });
    for (int number = 1; number <= kTiles; ++number) {
        frames.emplace_back(640, 360, static_cast<unsigned char>(20 * number));
        meeting.waitUntilShown(number);
        meeting.play(plays.back(), frames.back());
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

    std::unique_ptr<PaintCounter> counter;
    while (state.KeepRunning()) {
        onGui([&] {
            counter = std::make_unique<PaintCounter>();
            qApp->installEventFilter(counter.get());
        });
        const auto gui = guiCpuTime();
        const auto process = processCpuTime();
        const auto start = Clock::now();
        for (int period = 0; period < kPeriods; ++period)
            playAllOnce(start + kFramePeriod * period);
        using Ms = std::chrono::duration<double, std::milli>;
        const double guiMs = Ms(guiCpuTime() - gui).count();
        const double processMs = Ms(processCpuTime() - process).count();
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
        state.counters["sent"] = kTiles * kPeriods;
        onGui([&] {
            state.counters["painted"] = counter->tiles;
            state.counters["composed"] = counter->windows;
            state.counters["gui_ms_per_paint"] = guiMs / counter->tiles;
            state.counters["cpu_ms_per_paint"] = processMs / counter->tiles;
            counter.reset();
        });
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
