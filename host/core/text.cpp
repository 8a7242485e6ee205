#include "text.h"

#include "host_error.h"

#include <charconv>
#include <cmath>
#include <utility>

namespace zrhost {

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

[[noreturn]] void refuse(std::string_view what, std::string_view text, const std::string& wanted)
{
    throw HostError(std::string(what) + ": '" + std::string(text) + "' is not " + wanted);
}

std::string shortNumber(double value)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return {buffer, result.ptr};
}

/// Reads a quoted part that begins after its opening quote. @return the index after its end
std::size_t readQuoted(std::string_view line, std::size_t at, std::string& word)
{
    while (at < line.size() && line[at] != '"') {
        if (line[at] == '\\' && at + 1 < line.size()
            && (line[at + 1] == '"' || line[at + 1] == '\\'))
            ++at;
        word += line[at++];
    }
    if (at == line.size())
        throw HostError("a quote is not closed");
    return at + 1;
}

} // namespace

std::vector<std::string> splitWords(std::string_view line)
{
    std::vector<std::string> words;
    std::size_t at = 0;
    while (true) {
        while (at < line.size() && isBlank(line[at]))
            ++at;
        if (at == line.size() || line[at] == '#')
            return words;
        std::string word;
        while (at < line.size() && !isBlank(line[at])) {
            if (line[at] == '"')
                at = readQuoted(line, at + 1, word);
            else
                word += line[at++];
        }
        words.push_back(std::move(word));
    }
}

std::string quotedWord(const std::string& word)
{
    if (!word.empty() && word.front() != '#'
        && word.find_first_of(" \t\r\n\"") == std::string::npos)
        return word;
    std::string quoted = "\"";
    for (const char c : word)
        quoted += (c == '"' || c == '\\' ? "\\" : "") + std::string(1, c);
    return quoted + '"';
}

std::string joinWords(const std::vector<std::string>& words)
{
    std::string line;
    for (const std::string& word : words)
        line += (line.empty() ? "" : " ") + quotedWord(word);
    return line;
}

long long parseInteger(std::string_view text, long long min, long long max, std::string_view what)
{
    long long value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value < min || value > max)
        refuse(what, text,
               "a whole number from " + std::to_string(min) + " to " + std::to_string(max));
    return value;
}

double parseNumber(std::string_view text, double min, double max, std::string_view what)
{
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    // Negated, so that a NaN is refused too.
    if (error != std::errc() || stop != end || !(value >= min && value <= max))
        refuse(what, text, "a number from " + shortNumber(min) + " to " + shortNumber(max));
    return value;
}

Size parseSize(std::string_view text, std::string_view what)
{
    const std::size_t x = text.find('x');
    if (x == std::string_view::npos)
        refuse(what, text, "a size such as 640x360");
    return {static_cast<int>(parseInteger(text.substr(0, x), 1, kMaxEdgePx, what)),
            static_cast<int>(parseInteger(text.substr(x + 1), 1, kMaxEdgePx, what))};
}

bool parseOnOff(std::string_view text, std::string_view what)
{
    if (text == "on" || text == "1")
        return true;
    if (text == "off" || text == "0")
        return false;
    refuse(what, text, "'on' or 'off'");
}

int parseSecondsMs(std::string_view text, std::string_view what)
{
    constexpr double kMostSeconds = 2000000; // what a client runs for, and an int has milliseconds
    return static_cast<int>(std::lround(parseNumber(text, 0, kMostSeconds, what) * 1000));
}

std::vector<std::string> splitList(const std::string& text)
{
    std::vector<std::string> parts;
    std::size_t at = 0;
    while (true) {
        const std::size_t comma = std::min(text.find(',', at), text.size());
        parts.push_back(text.substr(at, comma - at));
        if (comma == text.size())
            return parts;
        at = comma + 1;
    }
}

std::vector<std::string> LineBuffer::add(std::string_view bytes)
{
    std::vector<std::string> lines;
    for (const char c : bytes) {
        if (c == '\n')
            lines.push_back(takeRest());
        else if (m_rest.size() < kMaxLineBytes)
            m_rest += c;
    }
    return lines;
}

std::string LineBuffer::takeRest()
{
    if (!m_rest.empty() && m_rest.back() == '\r')
        m_rest.pop_back();
    return std::exchange(m_rest, {});
}

} // namespace zrhost
