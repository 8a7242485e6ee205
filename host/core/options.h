// The command line.
#pragma once

#include "source_spec.h"

#include <map>
#include <string>
#include <vector>

namespace zrhost {

struct Options
{
    bool help = false;
    int participants = -1; ///< -1: see participantCount()
    std::vector<std::string> names;
    std::map<int, SourceSpec> sources; ///< by the participant's number
    int mode = 1;
    Size windowSize{1280, 720};
    Size pictureSize{640, 360};
    double fps = 25;
    int durationMs = 0; ///< 0: until the user ends the program
    std::string screenshot;
    unsigned seed = 1;
    std::string scenario;
    bool fast = false; ///< the scenario's commands run one after the other
    int untilMs = -1;  ///< of the scenario's commands those up to there; -1: all
    int lingerMs = -1; ///< after the last one; -1: until the user ends the program
    bool checkMessages = false;
    std::string library;
    bool followStreams = false;
    bool headless = false;
    bool interactive = false;

    /// How many participants are there from the beginning: as given, else as many as names or
    /// sources are, else none with a scenario and four without.
    [[nodiscard]] int participantCount() const;
    /// The source of a participant: as given for it, else as given for all, else synthetic.
    [[nodiscard]] SourceSpec sourceOf(int number) const;
    [[nodiscard]] std::string nameOf(int number) const;
};

/// Key of Options::sources for the participants that have no source of their own.
constexpr int kAllParticipants = 0;

/// @param arguments without the program's name @throws UsageError
[[nodiscard]] Options parseOptions(const std::vector<std::string>& arguments);

/// The text of --help, without the commands.
[[nodiscard]] std::string optionHelp();

} // namespace zrhost
