// Compares the messages of a run with those that a scenario expects.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace zrhost {

/// GUI thread. In which order they come is not compared: the timers of two runs are never in step.
class MessageCheck
{
public:
    /// @param words RECEIVER MESSAGE WPARAM LPARAM, as traces have them
    void expect(const std::vector<std::string>& words);
    /// @param words of lastingWords()
    void seen(const std::string& words) { --m_missing[words]; }
    /// A line for each message that came more or less often than expected.
    [[nodiscard]] std::vector<std::string> differences() const;

private:
    std::map<std::string, int> m_missing; ///< how often; below 0 what came without being expected
};

} // namespace zrhost
