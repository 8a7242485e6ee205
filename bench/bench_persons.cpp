// What one more participant costs in a meeting that is large already.
#include "benchhost.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

using Clock = std::chrono::steady_clock;

double medianUs(std::vector<double> seconds)
{
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::nth_element(seconds.begin(), middle, seconds.end());
    return *middle * 1e6;
}

/// Adds the n-th participant, the latest to join, and removes him again. The call and the events
/// that follow from it are measured apart; the iteration's time is their sum.
void addNthPerson(benchmark::State& state)
{
    const int nth = static_cast<int>(state.range(0));
    Meeting meeting(1280, 720);
    onGui([&] {
        for (int number = 1; number < nth; ++number)
            meeting.add(number);
        drainEvents();
    });
    std::vector<double> calls;
    std::vector<double> events;
    while (state.KeepRunning()) {
        onGui([&] {
            drainEvents();
            const auto start = Clock::now();
            void* const play = meeting.add(nth);
            const auto called = Clock::now();
            drainEvents();
            const auto handled = Clock::now();
            meeting.remove(play);
            drainEvents();
            calls.push_back(std::chrono::duration<double>(called - start).count());
            events.push_back(std::chrono::duration<double>(handled - called).count());
        });
        state.SetIterationTime(calls.back() + events.back());
    }
    state.counters["call_us"] = medianUs(calls);
    state.counters["events_us"] = medianUs(events);
}
BENCHMARK(addNthPerson)->ArgName("n")->Arg(100)->Arg(1000)->UseManualTime()->Iterations(100);

} // namespace
