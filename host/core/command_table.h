// The commands of scenario files and of the terminal: one table drives reading, help and
// execution. They are what people type; any other export is reached with "call".
#pragma once

#include <string>
#include <vector>

namespace zrhost {

class Session;

enum class ArgKind
{
    Person, ///< id, number or name of a participant; looked up when the command runs
    Text,
    Integer, ///< min to max
    OnOff,
    Choice, ///< one of several words; its number is its position
    Size,
    Source,
    Seconds,
    Call ///< an export and its arguments: the rest of the line
};

struct ArgSpec
{
    std::string name;
    ArgKind kind = ArgKind::Text;
    bool optional = false; ///< only optional ones may follow
    int min = 0;
    int max = 0;
    std::vector<std::string> choices{};
};

/// The checked arguments of one command.
class Args
{
public:
    [[nodiscard]] bool has(std::size_t index) const { return index < m_values.size(); }
    [[nodiscard]] const std::string& text(std::size_t index) const
    {
        return m_values.at(index).text;
    }
    /// Integer: the number; OnOff: 1 or 0; Choice: its number; Seconds: milliseconds. For one that
    /// was left out, `other`.
    [[nodiscard]] int number(std::size_t index, int other = 0) const
    {
        return has(index) ? m_values[index].number : other;
    }
    /// All as they were written.
    [[nodiscard]] std::vector<std::string> words() const
    {
        std::vector<std::string> words;
        for (const Value& value : m_values)
            words.push_back(value.text);
        return words;
    }

    void add(std::string text, int number) { m_values.push_back({std::move(text), number}); }

private:
    struct Value
    {
        std::string text;
        int number = 0;
    };
    std::vector<Value> m_values;
};

struct Command
{
    std::string name;
    std::vector<ArgSpec> arguments;
    std::string help;
    void (*run)(Session&, const Args&); ///< @throws HostError
};

/// A command with its arguments, ready to run.
struct BoundCommand
{
    const Command* command = nullptr;
    Args arguments;
    int waitMs = 0; ///< of "wait": when the commands after it run

    void run(Session& session) const { command->run(session, arguments); }
};

/// All commands, in the order of the help text.
[[nodiscard]] const std::vector<Command>& commandTable();

/// Finds the command of a line and checks its arguments. @param words not empty
/// @throws HostError
[[nodiscard]] BoundCommand bindCommand(const std::vector<std::string>& words);

/// "mute WHO on|off": how a command is written.
[[nodiscard]] std::string commandUsage(const Command& command);
/// A line for each command, and for each call.
[[nodiscard]] std::string commandHelp();

} // namespace zrhost
