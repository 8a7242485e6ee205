#include "scenario_player.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zrhost {

namespace {

using std::chrono::milliseconds;

/// Takes the first word away from `text`.
std::string_view takeWord(std::string_view& text)
{
    constexpr std::string_view kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    return word;
}

} // namespace

bool isFrequent(const ScenarioStep& step)
{
    std::string_view rest = step.command;
    std::string_view name = takeWord(rest);
    if (name == "call") {
        name = takeWord(rest);
        name.remove_prefix(name.rfind('_') + 1); // the family; none of these has another "_"
    }
    for (const std::string_view frequent :
         {"PlayFrame", "SetVolume", "UpdateUserNetStatus", "expect", "volume", "network"}) {
        if (name == frequent)
            return true;
    }
    return false;
}

ScenarioPlayer::ScenarioPlayer(Hooks hooks)
    : m_hooks(std::move(hooks))
{
}

void ScenarioPlayer::load(std::vector<ScenarioStep> steps)
{
    m_steps = std::move(steps);
    rewind();
}

void ScenarioPlayer::rewind()
{
    m_playing.reset();
    m_next = 0;
    setClock(0);
}

void ScenarioPlayer::play(Speed speed)
{
    setClock(now());
    m_speed = speed;
    m_playing = std::make_shared<int>();
    runDueLater(0);
}

void ScenarioPlayer::pause()
{
    setClock(now());
    m_playing.reset();
}

void ScenarioPlayer::step()
{
    if (m_next == m_steps.size())
        return;
    setClock(m_steps[m_next].timeMs);
    runNext();
    if (m_next == m_steps.size())
        m_hooks.ended();
}

void ScenarioPlayer::stepToChange()
{
    while (m_next + 1 < m_steps.size() && isFrequent(m_steps[m_next]))
        runNext();
    step();
}

void ScenarioPlayer::record(std::string command)
{
    if (m_next == 0 && isReplay())
        runNext(); // a trace says so before all else
    int timeMs = now();
    if (m_next > 0)
        timeMs = std::max(timeMs, m_steps[m_next - 1].timeMs);
    if (m_next < m_steps.size())
        timeMs = std::min(timeMs, m_steps[m_next].timeMs);
    setClock(timeMs);
    m_steps.insert(m_steps.begin() + static_cast<std::ptrdiff_t>(m_next),
                   {timeMs, 0, std::move(command)});
    ++m_next;
}

int ScenarioPlayer::now() const
{
    if (!isPlaying() && m_next < m_steps.size())
        return m_clockMs;
    const auto passed = std::chrono::duration_cast<milliseconds>(Clock::now() - m_clockSet);
    return m_clockMs + static_cast<int>(passed.count());
}

void ScenarioPlayer::setClock(int timeMs)
{
    m_clockMs = timeMs;
    m_clockSet = Clock::now();
}

void ScenarioPlayer::runNext()
{
    const ScenarioStep step = m_steps[m_next++]; // a copy: the step may record others
    m_hooks.run(step);
}

/// Runs steps, and comes back for the next ones.
void ScenarioPlayer::runDue()
{
    constexpr milliseconds kStretch(50); // of what comes often, between two looks at the window
    const auto begin = Clock::now();
    const auto playing = m_playing;
    int timeMs = -1; // of the last step that may change the arrangement
    while (m_next < m_steps.size()) {
        const ScenarioStep& step = m_steps[m_next];
        const int leftMs = step.timeMs - now();
        const bool isOther = timeMs >= 0 && step.timeMs != timeMs;
        const bool isFast = m_speed == Speed::Fast;
        if (isFast ? isOther || Clock::now() > begin + kStretch : leftMs > 0) {
            runDueLater(isFast ? 0 : leftMs);
            return;
        }
        if (!isFrequent(step))
            timeMs = step.timeMs;
        if (isFast)
            setClock(step.timeMs);
        runNext();
        if (m_playing != playing)
            return; // it was paused
    }
    pause();
    m_hooks.ended();
}

void ScenarioPlayer::runDueLater(int ms)
{
    m_hooks.after(ms, [this, asked = std::weak_ptr<int>(m_playing)] {
        if (const auto playing = asked.lock(); playing && playing == m_playing)
            runDue();
    });
}

} // namespace zrhost
