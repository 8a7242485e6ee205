// The figures of a meeting, which the module writes into its log where ZRSCREEN_STATS asks for
// them: no export tells them.
#pragma once

#include "text.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrhost {

/// One participant, over the last interval.
struct TileStatistics
{
    std::string userId;
    double framesPerS = 0;
    int refused = 0;
    double paintedPerS = 0;
    Size picture; ///< of the last frame
    int grade = 0;
    bool isOpen = false; ///< the stream, as the host has reported it
    int timesOpened = 0; ///< since the participant came, as those below
    int timesShown = 0;  ///< reports to the host
    int timesHidden = 0; ///< as before

    /// Frames that a later one replaced before they were painted, or whose tile is not to be seen.
    [[nodiscard]] double coalescedPerS() const
    {
        return framesPerS > paintedPerS ? framesPerS - paintedPerS : 0;
    }
};

/// All screens of the process, over the last interval.
struct MeetingStatistics
{
    double compositionsPerS = 0;
    double longestPaintMs = 0;
    int longestStallMs = 0; ///< that the GUI thread did not come to its loop
    std::vector<TileStatistics> tiles;
};

/// Puts the figures together from the module's messages: first one for all, then one for each
/// participant.
class StatisticsReader
{
public:
    /// @return the figures that are complete with this message, if any are; messages of another
    ///         kind are passed over
    std::optional<MeetingStatistics> take(const std::string& message);

private:
    std::optional<MeetingStatistics> m_begun;
    std::size_t m_participants = 0; ///< that it will have
};

/// The newest figures in a log, in its last run; nothing where there are none, or not all yet.
[[nodiscard]] std::optional<MeetingStatistics> newestStatistics(std::string_view log);

/// What the module logs in this process: the newest file of the first folder, of those that it
/// chooses from, that has one. @return UTF-8; empty without a file
[[nodiscard]] std::string readModuleLog();

/// As lines for a terminal, the last one without its end.
[[nodiscard]] std::string statisticsTable(const MeetingStatistics& statistics);

} // namespace zrhost
