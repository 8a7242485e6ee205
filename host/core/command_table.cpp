#include "command_table.h"

#include "call_desk.h"
#include "host_error.h"
#include "source_spec.h"
#include "text.h"

#include <algorithm>

namespace zrhost {

namespace {

int choiceNumber(const ArgSpec& spec, const std::string& word, const std::string& what)
{
    const auto found = std::find(spec.choices.begin(), spec.choices.end(), word);
    if (found != spec.choices.end())
        return static_cast<int>(found - spec.choices.begin());
    std::string known;
    for (const std::string& choice : spec.choices)
        known += (known.empty() ? "" : ", ") + choice;
    throw HostError(what + ": '" + word + "' is none of " + known);
}

void addValue(Args& arguments, const ArgSpec& spec, const std::string& word,
              const std::string& command)
{
    const std::string what = command + (spec.name.empty() ? "" : ": " + spec.name);
    int number = 0;
    switch (spec.kind) {
    case ArgKind::Integer:
        number = static_cast<int>(parseInteger(word, spec.min, spec.max, what));
        break;
    case ArgKind::OnOff:
        number = parseOnOff(word, what) ? 1 : 0;
        break;
    case ArgKind::Choice:
        number = choiceNumber(spec, word, what);
        break;
    case ArgKind::Seconds:
        number = parseSecondsMs(word, what);
        break;
    case ArgKind::Size:
        (void)parseSize(word, what);
        break;
    case ArgKind::Source:
        (void)SourceSpec::parse(word);
        break;
    case ArgKind::Person:
    case ArgKind::Text:
    case ArgKind::Call:
        break;
    }
    arguments.add(word, number);
}

std::string argUsage(const ArgSpec& spec)
{
    std::string text = spec.kind == ArgKind::OnOff ? "on|off" : spec.name;
    for (const std::string& choice : spec.choices)
        text += (text.empty() ? "" : "|") + choice;
    return spec.optional ? "[" + text + "]" : text;
}

} // namespace

BoundCommand bindCommand(const std::vector<std::string>& words)
{
    BoundCommand bound;
    for (const Command& command : commandTable()) {
        if (command.name == words[0])
            bound.command = &command;
    }
    if (!bound.command)
        throw HostError("unknown command '" + words[0] + "'");
    const Command& command = *bound.command;
    std::size_t at = 1;
    for (const ArgSpec& spec : command.arguments) {
        if (at == words.size()) {
            if (spec.optional)
                break;
            throw HostError("too few arguments: " + commandUsage(command));
        }
        do
            addValue(bound.arguments, spec, words[at++], command.name);
        while (spec.kind == ArgKind::Call && at < words.size());
        if (spec.kind == ArgKind::Call)
            CallDesk::check(bound.arguments.words());
    }
    if (at < words.size())
        throw HostError("too many arguments: " + commandUsage(command));
    if (command.name == "wait")
        bound.waitMs = bound.arguments.number(0);
    return bound;
}

std::string commandUsage(const Command& command)
{
    std::string usage = command.name;
    for (const ArgSpec& spec : command.arguments)
        usage += " " + argUsage(spec);
    return usage;
}

std::string commandHelp()
{
    constexpr std::size_t kColumn = 44;
    std::string help;
    for (const Command& command : commandTable()) {
        std::string line = "  " + commandUsage(command) + " ";
        line.resize(std::max(line.size(), kColumn), ' ');
        help += line + " " + command.help + "\n";
    }
    return help + "\nEvery export can be called:\n" + CallDesk::help();
}

} // namespace zrhost
