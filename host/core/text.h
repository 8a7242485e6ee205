// Words and numbers of options, scenario files and typed commands. Text is UTF-8.
#pragma once

#include "zrscreenmod/zrtypes.h"

#include <string>
#include <string_view>
#include <vector>

namespace zrhost {

/// Width and height in pixels; 0 x 0 stands for "not given".
struct Size
{
    int width = 0;
    int height = 0;
};

/// Largest picture or window edge in pixels: the limit of the module's frames.
constexpr int kMaxEdgePx = ZR_MAX_FRAME_SIDE_PX;

/// Splits a line at blanks. Double quotes keep blanks in a word; inside them `\"` and `\\` stand
/// for the second character. A `#` at the start of a word begins a comment.
/// @throws HostError for a quote that is not closed
[[nodiscard]] std::vector<std::string> splitWords(std::string_view line);

/// The way back for one word: in quotes where it needs them.
[[nodiscard]] std::string quotedWord(const std::string& word);

/// The words again as a line.
[[nodiscard]] std::string joinWords(const std::vector<std::string>& words);

/// Splits at commas; an empty text is one empty part.
[[nodiscard]] std::vector<std::string> splitList(const std::string& text);

/// Each throws HostError that begins with `what` when `text` is not such a value.
[[nodiscard]] long long parseInteger(std::string_view text, long long min, long long max,
                                     std::string_view what);
[[nodiscard]] double parseNumber(std::string_view text, double min, double max,
                                 std::string_view what);
/// "WIDTHxHEIGHT", each 1 to kMaxEdgePx.
[[nodiscard]] Size parseSize(std::string_view text, std::string_view what);
/// "on" or "1", "off" or "0".
[[nodiscard]] bool parseOnOff(std::string_view text, std::string_view what);
/// Seconds with a fraction, 0 to 2,000,000. @return milliseconds
[[nodiscard]] int parseSecondsMs(std::string_view text, std::string_view what);

/// Collects bytes into lines. A line longer than kMaxLineBytes is cut there.
class LineBuffer
{
public:
    static constexpr std::size_t kMaxLineBytes = 4096;

    /// @return the lines that `bytes` completes, without their line ends
    [[nodiscard]] std::vector<std::string> add(std::string_view bytes);
    /// @return what was left without a line end, and forgets it
    [[nodiscard]] std::string takeRest();

private:
    std::string m_rest;
};

} // namespace zrhost
