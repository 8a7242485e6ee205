// A timed list of commands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zrhost {

struct ScenarioStep
{
    int timeMs = 0;      ///< after the start of the scenario
    int line = 0;        ///< counted from 1
    std::string command; ///< for bindCommand; an hour's recorded calls are many
};

/// Reads a scenario and checks every command of it. One command a line, before it its time:
///
///     at 1.5 add alice     1.5 seconds after the start; "at" may be left out
///     +0.5 mute alice on   half a second after the line before it
///     hand alice on        at the time of the line before it
///     wait 2               moves the time of the lines after it
///
/// `#` begins a comment.
/// @param name of the file, for failures
/// @return the steps by time; those of the same time in the order of their lines
/// @throws HostError that begins with "name:line: "
[[nodiscard]] std::vector<ScenarioStep> parseScenario(std::string_view text,
                                                      const std::string& name);

/// The way back: each step with its time in seconds.
[[nodiscard]] std::string scenarioText(const std::vector<ScenarioStep>& steps);

/// Reads a scenario file. @throws HostError
[[nodiscard]] std::vector<ScenarioStep> readScenario(const std::string& file);

} // namespace zrhost
