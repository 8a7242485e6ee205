#include "scenario.h"

#include "command_table.h"
#include "host_error.h"
#include "host_platform.h"
#include "text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace zrhost {

namespace {

bool isTime(const std::string& word)
{
    return std::isdigit(static_cast<unsigned char>(word.front())) != 0 || word.front() == '+';
}

/// Takes the time off the front of a line. @return the time of the line's command
int takeTime(std::vector<std::string>& words, int previousMs)
{
    const bool at = words.front() == "at";
    if (at)
        words.erase(words.begin());
    if (words.empty() || words.front().empty() || !isTime(words.front())) {
        if (at)
            throw HostError("no time after 'at'");
        return previousMs;
    }
    const std::string time = words.front();
    words.erase(words.begin());
    if (time.front() == '+')
        return previousMs + parseSecondsMs(std::string_view(time).substr(1), "time");
    return parseSecondsMs(time, "time");
}

void addStep(std::vector<ScenarioStep>& steps, std::string_view text, int line, int& timeMs)
{
    std::vector<std::string> words = splitWords(text);
    if (words.empty())
        return;
    timeMs = takeTime(words, timeMs);
    if (words.empty())
        throw HostError("no command after the time");
    const BoundCommand command = bindCommand(words);
    if (command.waitMs > 0)
        timeMs += command.waitMs;
    else
        steps.push_back({timeMs, line, joinWords(words)});
}

} // namespace

std::vector<ScenarioStep> parseScenario(std::string_view text, const std::string& name)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark)
        text.remove_prefix(kByteOrderMark.size());
    std::vector<ScenarioStep> steps;
    int timeMs = 0;
    for (int line = 1; !text.empty(); ++line) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        try {
            addStep(steps, text.substr(0, end), line, timeMs);
        } catch (const HostError& error) {
            throw HostError(name + ":" + std::to_string(line) + ": " + error.what());
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    std::stable_sort(steps.begin(), steps.end(),
                     [](const auto& a, const auto& b) { return a.timeMs < b.timeMs; });
    return steps;
}

std::string scenarioText(const std::vector<ScenarioStep>& steps)
{
    std::string text;
    for (const ScenarioStep& step : steps) {
        char time[32];
        std::snprintf(time, sizeof time, "%d.%03d ", step.timeMs / 1000, step.timeMs % 1000);
        text += time + step.command + '\n';
    }
    return text;
}

std::vector<ScenarioStep> readScenario(const std::string& file)
{
    if (const std::string problem = whyUnreadable(file); !problem.empty())
        throw HostError("cannot read '" + file + "': " + problem);
    std::ifstream stream(std::filesystem::u8path(file), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(stream)),
                           std::istreambuf_iterator<char>());
    if (stream.bad())
        throw HostError("cannot read '" + file + "'");
    return parseScenario(text, file);
}

} // namespace zrhost
