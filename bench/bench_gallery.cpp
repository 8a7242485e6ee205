// What arranging costs in a large meeting, drawing aside.
#include "benchhost.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <stdexcept>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kBetweenPageTurns = 420ms; ///< closer ones are refused

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void join(Meeting& meeting, int count)
{
    onGui([&] {
        for (int number = 1; number <= count; ++number)
            meeting.add(number);
        drainEvents();
    });
    meeting.waitUntilShown(1);
}

void changeMode(Meeting& meeting, eLayoutType mode)
{
    onGui([&] {
        ZRScreen_ChangeLayout(meeting.screen(), mode, {});
        drainEvents();
    });
}

/// Orders and arranges everybody anew while nothing changes in what is visible.
void arrangeAgain(benchmark::State& state)
{
    Meeting meeting(1280, 720);
    join(meeting, static_cast<int>(state.range(0)));
    std::string nobody = "nobody";
    std::vector<double> times;
    while (state.KeepRunning()) {
        onGui([&] {
            drainEvents();
            const auto start = Clock::now();
            ZRScreen_ReOrder(meeting.screen(), true);
            // The question has the scheduled arrangement carried out first.
            ZRScreen_IsPersonVisible(meeting.screen(), nobody.data());
            times.push_back(secondsSince(start));
        });
        state.SetIterationTime(times.back());
    }
    state.counters["ms"] = median(times) * 1e3;
}
BENCHMARK(arrangeAgain)->ArgName("n")->Arg(1000)->Arg(2000)->UseManualTime()->Iterations(200);

QWidget* galleryWidget()
{
    for (QWidget* widget : QApplication::allWidgets()) {
        if (widget->inherits("QDlgScreen"))
            return widget;
    }
    throw std::runtime_error("there is no gallery");
}

/// Turns to the next page or back, with sixteen tiles on each.
void turnPage(benchmark::State& state)
{
    Meeting meeting(1280, 720);
    join(meeting, 64);
    changeMode(meeting, eLayoutGrid16);
    std::vector<double> times;
    int step = -1;
    while (state.KeepRunning()) {
        std::this_thread::sleep_for(kBetweenPageTurns);
        onGui([&] {
            QWidget* const gallery = galleryWidget();
            const QPointF middle(gallery->rect().center());
            QWheelEvent turn(middle, gallery->mapToGlobal(middle.toPoint()), {}, {0, 120 * step},
                             Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            const auto start = Clock::now();
            QApplication::sendEvent(gallery, &turn);
            times.push_back(secondsSince(start));
        });
        step = -step;
        state.SetIterationTime(times.back());
    }
    state.counters["ms"] = median(times) * 1e3;
}
BENCHMARK(turnPage)->UseManualTime()->Iterations(16);

/// A thousand join, one after the other, each with the events that follow.
void joinOneByOne(benchmark::State& state)
{
    constexpr int kPeople = 1000;
    constexpr std::size_t kGroup = 100;
    while (state.KeepRunning()) {
        Meeting meeting(1280, 720);
        std::vector<double> times;
        onGui([&] {
            for (int number = 1; number <= kPeople; ++number) {
                const auto start = Clock::now();
                meeting.add(number);
                drainEvents();
                times.push_back(secondsSince(start));
            }
        });
        const double first = median({times.begin(), times.begin() + kGroup});
        const double last = median({times.end() - kGroup, times.end()});
        state.counters["first_ms"] = first * 1e3;
        state.counters["last_ms"] = last * 1e3;
        state.counters["ratio"] = last / first;
        state.SetIterationTime(std::max(last, 1e-9));
    }
}
BENCHMARK(joinOneByOne)->UseManualTime()->Iterations(1);

} // namespace
