// Runs the steps of a scenario.
#pragma once

#include "scenario.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace zrhost {

/// What comes many times a second and arranges nothing: pictures, volumes, levels.
[[nodiscard]] bool isFrequent(const ScenarioStep& step);

/// By the clock, as fast as it goes, or one at a time; what is done by hand becomes a step as well.
/// GUI thread.
class ScenarioPlayer
{
public:
    enum class Speed
    {
        Real,
        Fast ///< one step after the other, with a look at the window where much changes
    };
    struct Hooks
    {
        /// Runs a step; it may pause the player.
        std::function<void(const ScenarioStep&)> run;
        /// Calls a function from the event loop, not before so many milliseconds.
        std::function<void(int, std::function<void()>)> after;
        /// The last step has run, of those that are played or by itself.
        std::function<void()> ended;
    };

    explicit ScenarioPlayer(Hooks hooks);

    /// @param steps by time; the first one is next
    void load(std::vector<ScenarioStep> steps);
    /// The first step is next again.
    void rewind();
    void play(Speed speed);
    void pause();
    [[nodiscard]] bool isPlaying() const { return m_playing != nullptr; }
    /// Runs the next step; nothing behind the last one.
    void step();
    /// Runs the next step that may change the arrangement, and the pictures and volumes before it.
    void stepToChange();
    /// Adds a command that has been run by hand, as the last step that was run.
    void record(std::string command);

    [[nodiscard]] const std::vector<ScenarioStep>& steps() const { return m_steps; }
    /// The place of the step that is run next.
    [[nodiscard]] std::size_t next() const { return m_next; }
    /// Whether the scenario is a trace, which brings its screen and participants along.
    [[nodiscard]] bool isReplay() const
    {
        return !m_steps.empty() && m_steps.front().command == "trace";
    }
    /// Milliseconds after the scenario's start. It goes on while the scenario is played, and while
    /// no step is left.
    [[nodiscard]] int now() const;

private:
    using Clock = std::chrono::steady_clock;
    void setClock(int timeMs);
    void runNext();
    void runDue();
    void runDueLater(int ms);

    const Hooks m_hooks;
    std::vector<ScenarioStep> m_steps;
    std::size_t m_next = 0;
    Speed m_speed = Speed::Real;
    /// While the scenario is played; what waits in the event loop asks whether it is the same.
    std::shared_ptr<int> m_playing;
    int m_clockMs = 0;
    Clock::time_point m_clockSet = Clock::now();
};

} // namespace zrhost
