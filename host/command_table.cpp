#include "command_table.h"

#include "host_error.h"
#include "native_rect.h"
#include "session.h"
#include "source_spec.h"
#include "text.h"

#include <algorithm>

namespace zrhost {

namespace {

const Command* findCommand(const std::vector<std::string>& words, std::size_t& used)
{
    const auto find = [](const std::string& name) -> const Command* {
        for (const Command& command : commandTable()) {
            if (command.name == name)
                return &command;
        }
        return nullptr;
    };
    used = 2;
    if (words.size() > 1) {
        if (const Command* const command = find(words[0] + " " + words[1]))
            return command;
    }
    used = 1;
    return find(words[0]);
}

int choiceNumber(const ArgSpec& spec, const std::string& word, const std::string& what)
{
    const auto found = std::find(spec.choices.begin(), spec.choices.end(), word);
    if (found != spec.choices.end())
        return static_cast<int>(spec.min + (found - spec.choices.begin()));
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
    case ArgKind::Order: {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos)
            throw HostError(what + ": '" + word + "' is not POSITION=ID");
        number = static_cast<int>(parseInteger(word.substr(0, equals), 0, 9999, what));
        arguments.add(word.substr(equals + 1), number);
        return;
    }
    case ArgKind::Person:
    case ArgKind::Text:
        break;
    }
    arguments.add(word, number);
}

std::string argUsage(const ArgSpec& spec)
{
    std::string text = spec.name;
    if (spec.kind == ArgKind::OnOff)
        text += text.empty() ? "on|off" : ":on|off";
    if (spec.kind == ArgKind::Choice) {
        text.clear();
        for (const std::string& choice : spec.choices)
            text += (text.empty() ? "" : "|") + choice;
    }
    if (spec.kind == ArgKind::Order)
        text += "...";
    return spec.optional ? "[" + text + "]" : text;
}

} // namespace

const std::vector<Command>& commandTable()
{
    static const std::vector<Command> table = [] {
        std::vector<Command> commands;
        addMeetingCommands(commands);
        addScreenCommands(commands);
        addControlCommands(commands);
        addExtCommands(commands);
        return commands;
    }();
    return table;
}

BoundCommand bindCommand(const std::vector<std::string>& words)
{
    std::size_t at = 0;
    BoundCommand bound;
    bound.command = findCommand(words, at);
    if (!bound.command)
        throw HostError("unknown command '" + words[0] + "'");
    const Command& command = *bound.command;
    bound.arguments = Args(command.name);
    for (const ArgSpec& spec : command.arguments) {
        if (at == words.size()) {
            if (spec.optional)
                break;
            throw HostError("too few arguments: " + commandUsage(command));
        }
        do
            addValue(bound.arguments, spec, words[at++], command.name);
        while (spec.kind == ArgKind::Order && at < words.size());
    }
    if (at < words.size())
        throw HostError("too many arguments: " + commandUsage(command));
    if (command.name == "wait")
        bound.waitMs = bound.arguments.number(0);
    return bound;
}

tagRECT readRectangle(const Args& args, std::size_t first)
{
    tagRECT rect{};
    rect.left = args.number(first);
    rect.top = args.number(first + 1);
    rect.right = rect.left + args.number(first + 2);
    rect.bottom = rect.top + args.number(first + 3);
    return rect;
}

void printRefusal(Session& session, const Args& args, int result)
{
    if (result == 0)
        session.stage().print(args.command() + " was refused");
}

void printAnswer(Session& session, const Args& args, int answer)
{
    std::string line = args.command();
    for (std::size_t i = 0; i < args.count(); ++i)
        line += " " + args.text(i);
    session.stage().print(line + " = " + std::to_string(answer));
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
    return help;
}

namespace arg {

ArgSpec who()
{
    return kind("WHO", ArgKind::Person);
}

ArgSpec text(std::string name)
{
    return kind(std::move(name), ArgKind::Text);
}

ArgSpec integer(std::string name, long long min, long long max)
{
    ArgSpec spec = kind(std::move(name), ArgKind::Integer);
    spec.min = min;
    spec.max = max;
    return spec;
}

ArgSpec pixels(std::string name)
{
    constexpr long long kMinPx = -32768;
    constexpr long long kMaxPx = 32767;
    return integer(std::move(name), kMinPx, kMaxPx);
}

std::vector<ArgSpec> rectangle()
{
    return {pixels("X"), pixels("Y"), pixels("WIDTH"), pixels("HEIGHT")};
}

ArgSpec onOff(std::string name)
{
    return kind(std::move(name), ArgKind::OnOff);
}

ArgSpec choice(std::vector<std::string> words, long long first)
{
    ArgSpec spec = kind({}, ArgKind::Choice);
    spec.choices = std::move(words);
    spec.min = first;
    return spec;
}

ArgSpec kind(std::string name, ArgKind kind)
{
    ArgSpec spec;
    spec.name = std::move(name);
    spec.kind = kind;
    return spec;
}

ArgSpec optional(ArgSpec spec)
{
    spec.optional = true;
    return spec;
}

} // namespace arg

} // namespace zrhost
