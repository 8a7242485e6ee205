#include "traced_words.h"

#include "host_error.h"
#include "host_platform.h"
#include "text.h"

#include <charconv>
#include <cstdint>

namespace zrhost {

namespace {

/// What is behind the prefix, if the word begins with it.
std::optional<std::string> behind(const std::string& prefix, const std::string& word)
{
    if (word.compare(0, prefix.size(), prefix) != 0)
        return {};
    return word.substr(prefix.size());
}

/// Turns each "%0A" into its byte.
std::string decodePercent(const std::string& text)
{
    constexpr int kHexadecimal = 16;
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned value = 0;
        const char* const digits = text.data() + at + 1;
        if (text[at] == '%' && at + 2 < text.size()
            && std::from_chars(digits, digits + 2, value, kHexadecimal).ptr == digits + 2) {
            bytes += static_cast<char>(value);
            at += 2;
        } else {
            bytes += text[at];
        }
    }
    return bytes;
}

} // namespace

std::optional<void*> wrongAddress(const std::string& word)
{
    static std::uint64_t foreign[64] = {}; // as large as what is behind any handle
    if (word == "!null")
        return nullptr;
    if (word == "!unreadable")
        return reinterpret_cast<void*>(std::uintptr_t{0x10});
    if (word == "!unknown")
        return foreign;
    return {};
}

std::string decodeText(const std::string& word, bool toLocal)
{
    if (const auto bytes = behind("!bytes:", word))
        return decodePercent(*bytes);
    const auto encoded = behind("!text:", word);
    if (!encoded && !word.empty() && word.front() == '!')
        throw HostError("call: '" + word + "' is no word for a text");
    const std::string text = encoded ? decodePercent(*encoded) : word;
    return toLocal ? toLocal8Bit(text) : text;
}

std::vector<std::string> decodeList(const std::string& word)
{
    const auto encoded = behind("!list:", word);
    std::vector<std::string> parts = splitList(encoded ? *encoded : word);
    for (std::string& part : parts)
        part = encoded ? decodePercent(part) : part;
    return parts;
}

} // namespace zrhost
