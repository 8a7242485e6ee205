// The commands of scenario files and of the terminal: one table drives reading, help and
// execution.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct tagRECT;

namespace zrhost {

class Session;

enum class ArgKind
{
    Person, ///< id, number or name of a participant; looked up when the command runs
    Text,
    Integer, ///< min to max
    OnOff,
    Choice, ///< one of several words; its number is min + its position
    Size,
    Source,
    Seconds,
    Order, ///< POSITION=ID, any number of them; always the last argument
};

struct ArgSpec
{
    std::string name;
    ArgKind kind = ArgKind::Text;
    bool optional = false; ///< only optional ones may follow
    long long min = 0;
    long long max = 0;
    std::vector<std::string> choices;
};

/// The checked arguments of one command.
class Args
{
public:
    Args() = default;
    explicit Args(std::string command)
        : m_command(std::move(command))
    {
    }

    /// The command's name, for what it prints.
    [[nodiscard]] const std::string& command() const { return m_command; }
    [[nodiscard]] bool has(std::size_t index) const { return index < m_values.size(); }
    [[nodiscard]] std::size_t count() const { return m_values.size(); }
    [[nodiscard]] const std::string& text(std::size_t index) const
    {
        return m_values.at(index).text;
    }
    /// Integer: the number; OnOff: 1 or 0; Choice: its number; Seconds: milliseconds.
    [[nodiscard]] int number(std::size_t index) const { return m_values.at(index).number; }
    [[nodiscard]] bool flag(std::size_t index) const { return number(index) != 0; }
    /// As flag(), false when the optional argument was left out.
    [[nodiscard]] bool flagOr(std::size_t index, bool other) const
    {
        return has(index) ? flag(index) : other;
    }

    void add(std::string text, int number) { m_values.push_back({std::move(text), number}); }

private:
    struct Value
    {
        std::string text;
        int number = 0;
    };
    std::string m_command;
    std::vector<Value> m_values;
};

struct Command
{
    std::string name; ///< one word or two
    std::vector<ArgSpec> arguments;
    std::string help;
    void (*run)(Session&, const Args&); ///< @throws HostError
    /// A complete line that a meeting with the participants alice and bob can execute.
    std::string example;
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
/// A line for each command.
[[nodiscard]] std::string commandHelp();

/// The rectangle of an arg::rectangle() whose X is the argument `first`.
[[nodiscard]] tagRECT readRectangle(const Args& args, std::size_t first = 0);

/// Prints that an export refused a command: `result` is what it returned, 0 for a refusal.
void printRefusal(Session& session, const Args& args, int result);
/// Prints the answer of a query: the command, its arguments and the number.
void printAnswer(Session& session, const Args& args, int answer);

/// The parts of the table.
void addMeetingCommands(std::vector<Command>& table);
void addScreenCommands(std::vector<Command>& table);
void addControlCommands(std::vector<Command>& table);
void addExtCommands(std::vector<Command>& table);

namespace arg {

ArgSpec who();
ArgSpec text(std::string name);
ArgSpec integer(std::string name, long long min, long long max);
/// A coordinate or length of the window system.
ArgSpec pixels(std::string name);
/// X, Y, WIDTH and HEIGHT.
std::vector<ArgSpec> rectangle();
ArgSpec onOff(std::string name = {});
ArgSpec choice(std::vector<std::string> words, long long first = 0);
ArgSpec kind(std::string name, ArgKind kind);
ArgSpec optional(ArgSpec spec);

} // namespace arg

} // namespace zrhost
