#include "statistics.h"

#include "host_platform.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

namespace zrhost {

namespace {

namespace fs = std::filesystem;

/// With this line each run of the module begins.
constexpr std::string_view kRunBegins = "\n Init sys";

std::optional<MeetingStatistics> readMeeting(const std::string& message, std::size_t& tiles)
{
    MeetingStatistics all;
    const int read =
        std::sscanf(message.c_str(),
                    "stats: %zu participants, %lf compositions/s, "
                    "longest paint %lf ms, longest stall %d ms",
                    &tiles, &all.compositionsPerS, &all.longestPaintMs, &all.longestStallMs);
    return read == 4 ? std::optional(all) : std::nullopt;
}

std::optional<TileStatistics> readTile(const std::string& message)
{
    constexpr std::string_view kBegin = "stats ";
    const std::size_t figures = message.rfind(": in "); // an id may hold anything
    if (figures == std::string::npos || message.compare(0, kBegin.size(), kBegin) != 0)
        return std::nullopt;
    TileStatistics tile;
    tile.userId = message.substr(kBegin.size(), figures - kBegin.size());
    char stream[7] = {};
    const int read =
        std::sscanf(message.c_str() + figures,
                    ": in %lf/s, refused %d, painted %lf/s, %dx%d, grade %d, stream %6[a-z], "
                    "opened %d times, told shown %d, hidden %d times",
                    &tile.framesPerS, &tile.refused, &tile.paintedPerS, &tile.picture.width,
                    &tile.picture.height, &tile.grade, stream, &tile.timesOpened, &tile.timesShown,
                    &tile.timesHidden);
    tile.isOpen = std::string_view(stream) == "open";
    return read == 10 ? std::optional(tile) : std::nullopt;
}

/// The folders that the module may have chosen, those first that it prefers.
std::vector<fs::path> logFolders()
{
    std::vector<fs::path> folders;
    const auto add = [&folders](const char* variable, const fs::path& below) {
        if (const char* const value = std::getenv(variable))
            folders.push_back(value / below);
    };
    const fs::path program = fs::u8path(programFile());
    const std::string name = program.filename().u8string(); // of which endings are no part
    const fs::path ours = fs::path("ZRScreenMod") / fs::u8path(name.substr(0, name.find('.')));
    add("ZRSCREEN_LOG_DIR", {});
    folders.push_back(program.parent_path() / "log");
    add("XDG_STATE_HOME", ours);
    add("HOME", fs::path(".local/state") / ours);
    add("LOCALAPPDATA", ours);
    return folders;
}

/// The log file of a folder that was written to last; empty without one.
fs::path newestLog(const fs::path& folder)
{
    fs::path newest;
    fs::file_time_type when{};
    std::error_code none;
    for (const auto& file : fs::directory_iterator(folder, none)) {
        if (file.path().filename().u8string().find("zrscreenLog") != 0)
            continue;
        const fs::file_time_type written = fs::last_write_time(file, none);
        if (newest.empty() || written > when) {
            newest = file.path();
            when = written;
        }
    }
    return newest;
}

std::string formatted(const char* form, double a, double b, double c)
{
    char text[96];
    std::snprintf(text, sizeof text, form, a, b, c);
    return text;
}

} // namespace

std::optional<MeetingStatistics> StatisticsReader::take(const std::string& message)
{
    std::size_t participants = 0;
    if (auto meeting = readMeeting(message, participants)) {
        m_begun = std::move(meeting);
        m_participants = participants;
    } else if (auto tile = m_begun ? readTile(message) : std::nullopt) {
        m_begun->tiles.push_back(*std::move(tile));
    } else {
        return std::nullopt;
    }
    return m_begun->tiles.size() == m_participants ? std::exchange(m_begun, std::nullopt)
                                                   : std::nullopt;
}

std::optional<MeetingStatistics> newestStatistics(std::string_view log)
{
    if (const std::size_t run = log.rfind(kRunBegins); run != std::string_view::npos)
        log.remove_prefix(run);
    std::optional<MeetingStatistics> newest;
    StatisticsReader reader;
    constexpr std::string_view kMark = "]  stats";
    for (std::size_t at = log.find(kMark); at != std::string_view::npos; at = log.find(kMark, at)) {
        at += kMark.find('s');
        const std::string message(log.substr(at, log.find_first_of("\r\n", at) - at));
        if (auto figures = reader.take(message))
            newest = std::move(figures);
    }
    return newest;
}

std::string readModuleLog()
{
    for (const fs::path& folder : logFolders()) {
        std::ifstream stream(newestLog(folder), std::ios::binary);
        if (stream)
            return fromLocal8Bit(
                {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
    }
    return {};
}

std::string statisticsTable(const MeetingStatistics& statistics)
{
    std::string table = formatted(
        "%.1f compositions/s, longest paint %.1f ms, longest stall %.0f ms",
        statistics.compositionsPerS, statistics.longestPaintMs, statistics.longestStallMs);
    for (const TileStatistics& tile : statistics.tiles) {
        const Size& picture = tile.picture;
        table += "\n" + tile.userId + ": "
                 + formatted("%.1f frames/s, %.1f coalesced, %.1f painted", tile.framesPerS,
                             tile.coalescedPerS(), tile.paintedPerS)
                 + ", refused " + std::to_string(tile.refused) + ", "
                 + std::to_string(picture.width) + "x" + std::to_string(picture.height) + ", grade "
                 + std::to_string(tile.grade) + ", stream " + (tile.isOpen ? "open" : "closed")
                 + ", opened " + std::to_string(tile.timesOpened) + ", shown "
                 + std::to_string(tile.timesShown) + ", hidden " + std::to_string(tile.timesHidden)
                 + " times";
    }
    return table;
}

} // namespace zrhost
