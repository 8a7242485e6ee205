#include "options.h"

#include "host_error.h"

#include <algorithm>

namespace zrhost {

namespace {

constexpr int kMaxParticipants = 500;

struct Option
{
    const char* name;
    const char* value; ///< how the help calls it; null for an option without a value
    const char* help;
    void (*apply)(Options&, const std::string& text);
};

void applySource(Options& options, const std::string& text)
{
    const std::size_t equals = text.find('=');
    // "=" may also belong to a file name: a number or nothing must stand before it.
    const bool numbered =
        equals != std::string::npos && text.find_first_not_of("0123456789") == equals && equals > 0;
    const int number = numbered ? static_cast<int>(
                           parseInteger(text.substr(0, equals), 1, kMaxParticipants, "--source"))
                                : kAllParticipants;
    options.sources[number] = SourceSpec::parse(numbered ? text.substr(equals + 1) : text);
}

const Option kOptions[] = {
    {"help", nullptr, "print this text and the commands",
     [](Options& o, const std::string&) { o.help = true; }},
    {"participants", "N", "participants at the start (default: 4, none with a scenario)",
     [](Options& o, const std::string& text) {
         o.participants =
             static_cast<int>(parseInteger(text, 0, kMaxParticipants, "--participants"));
     }},
    {"names", "A,B,...", "their names, in UTF-8",
     [](Options& o, const std::string& text) { o.names = splitList(text); }},
    {"source", "[N=]SOURCE", "pictures of participant N, or of all; may be repeated", applySource},
    {"picture", "WxH", "size of synthetic pictures (default: 640x360)",
     [](Options& o, const std::string& text) { o.pictureSize = parseSize(text, "--picture"); }},
    {"fps", "F", "pictures a second of synthetic sources (default: 25)",
     [](Options& o, const std::string& text) { o.fps = parseNumber(text, 0.1, 240, "--fps"); }},
    {"follow-streams", nullptr, "deliver pictures only where the module asks for them",
     [](Options& o, const std::string&) { o.followStreams = true; }},
    {"seed", "S", "decides the colours and when each video begins (default: 1)",
     [](Options& o, const std::string& text) {
         o.seed = static_cast<unsigned>(parseInteger(text, 0, 4294967295LL, "--seed"));
     }},
    {"mode", "M", "meeting mode at the start, 1 to 14 (default: 1)",
     [](Options& o, const std::string& text) {
         o.mode = static_cast<int>(parseInteger(text, 1, 14, "--mode"));
     }},
    {"size", "WxH", "size of the window (default: 1280x720)",
     [](Options& o, const std::string& text) { o.windowSize = parseSize(text, "--size"); }},
    {"scenario", "FILE", "timed commands, one a line: \"1.5 mute alice on\"",
     [](Options& o, const std::string& text) { o.scenario = text; }},
    {"speed", "real|fast", "of the scenario: at its times, or one command after the other",
     [](Options& o, const std::string& text) {
         if (text != "real" && text != "fast")
             throw HostError("--speed: '" + text + "' is neither real nor fast");
         o.fast = text == "fast";
     }},
    {"until", "S", "leave out the scenario's commands after so many seconds",
     [](Options& o, const std::string& text) { o.untilMs = parseSecondsMs(text, "--until"); }},
    {"linger", "S", "end so many seconds after the scenario's last command",
     [](Options& o, const std::string& text) { o.lingerMs = parseSecondsMs(text, "--linger"); }},
    {"check-messages", nullptr, "tell which messages a replayed trace has more or less of",
     [](Options& o, const std::string&) { o.checkMessages = true; }},
    {"interactive", nullptr, "read commands from the input although it is no terminal",
     [](Options& o, const std::string&) { o.interactive = true; }},
    {"duration", "S", "end after so many seconds (default: when the window is closed)",
     [](Options& o, const std::string& text) {
         o.durationMs = parseSecondsMs(text, "--duration");
     }},
    {"screenshot", "FILE.png", "save what the window shows just before the end",
     [](Options& o, const std::string& text) { o.screenshot = text; }},
    {"headless", nullptr, "open no window: the screen is a window of its own",
     [](Options& o, const std::string&) { o.headless = true; }},
    {"library", "FILE", "the module (default: beside the program, or where it is installed)",
     [](Options& o, const std::string& text) { o.library = text; }},
};

const Option& findOption(const std::string& name)
{
    for (const Option& option : kOptions) {
        if (name == option.name)
            return option;
    }
    throw HostError("unknown option '--" + name + "'");
}

void checkTogether(const Options& options)
{
    const int count = options.participantCount();
    if (!options.sources.empty() && options.sources.rbegin()->first > count)
        throw HostError("--source names participant "
                        + std::to_string(options.sources.rbegin()->first) + " of "
                        + std::to_string(count));
    if (options.headless && !options.screenshot.empty())
        throw HostError("--screenshot needs a window, and --headless opens none");
}

} // namespace

int Options::participantCount() const
{
    if (participants >= 0)
        return participants;
    const int named = static_cast<int>(names.size());
    const int sourced = sources.empty() ? 0 : sources.rbegin()->first;
    if (named > 0 || sourced > 0)
        return std::max(named, sourced);
    return scenario.empty() ? 4 : 0;
}

SourceSpec Options::sourceOf(int number) const
{
    auto found = sources.find(number);
    if (found == sources.end())
        found = sources.find(kAllParticipants);
    return found == sources.end() ? SourceSpec() : found->second;
}

std::string Options::nameOf(int number) const
{
    const auto index = static_cast<std::size_t>(number - 1);
    return index < names.size() ? names[index] : "Participant " + std::to_string(number);
}

Options parseOptions(const std::vector<std::string>& arguments)
{
    Options options;
    try {
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const std::string& argument = arguments[i];
            if (argument.compare(0, 2, "--") != 0)
                throw HostError("'" + argument + "' is not an option");
            const std::size_t equals = std::min(argument.find('='), argument.size());
            const Option& option = findOption(argument.substr(2, equals - 2));
            const bool attached = equals != argument.size();
            if (attached && !option.value)
                throw HostError("--" + std::string(option.name) + " takes no value");
            std::string value = attached ? argument.substr(equals + 1) : std::string();
            if (option.value && !attached) {
                if (++i == arguments.size())
                    throw HostError("--" + std::string(option.name) + " needs a value");
                value = arguments[i];
            }
            option.apply(options, value);
        }
        checkTogether(options);
    } catch (const HostError& error) {
        throw UsageError(error.what());
    }
    return options;
}

std::string optionHelp()
{
    constexpr std::size_t kColumn = 26;
    std::string help = "Usage: zrhost [OPTION]...\n"
                       "Shows a meeting with the module ZRScreenMod.\n\nOptions:\n";
    for (const Option& option : kOptions) {
        std::string line = "  --" + std::string(option.name);
        if (option.value)
            line += " " + std::string(option.value);
        line.resize(std::max(line.size() + 1, kColumn), ' ');
        help += line + option.help + "\n";
    }
    help += "\nA SOURCE is KIND[@WIDTHxHEIGHT][/FPS][:FILE]:\n"
            "  synthetic               a drawn picture with the participant's number\n"
            "  y4m:FILE                a YUV4MPEG2 file, played in a loop, or named pipe\n"
            "  none                    no pictures\n"
            "ffmpeg makes a YUV4MPEG2 file of any video:\n"
            "  ffmpeg -i talk.mp4 -vf scale=960:540:out_color_matrix=bt709:out_range=tv \\\n"
            "    -pix_fmt yuv420p talk.y4m\n";
    return help;
}

} // namespace zrhost
