// Words of recorded calls that stand for what a line cannot have.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zrhost {

/// "!null", "!unreadable" and "!unknown": an address to be refused, of the last one that can be
/// read. @return nothing for other words
[[nodiscard]] std::optional<void*> wrongAddress(const std::string& word);

/// A text in UTF-8, or in the local encoding: as it is, from "!text:", or the bytes of "!bytes:".
/// @throws HostError for other words that begin with "!"
[[nodiscard]] std::string decodeText(const std::string& word, bool toLocal);

/// The parts between the commas, also those of "!list:".
[[nodiscard]] std::vector<std::string> decodeList(const std::string& word);

} // namespace zrhost
