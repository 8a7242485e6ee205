// The module's messages in words.
#pragma once

#include <functional>
#include <string>

namespace zrhost {

/// Gives the participant that a host value stands for; an empty text for none.
using HostValueName = std::function<std::string(long long)>;

/// One line for a message, with its name and its arguments. A stream request reads
/// "stream request grade=3 for alice"; a number that is not known is printed as it is.
/// Reads the text that ZRMSG_FOCUS_STREAM points to.
[[nodiscard]] std::string describeMessage(unsigned long message, unsigned long long wParam,
                                          long long lParam, const HostValueName& nameOf);

/// The message in words that are the same in every run: participants and handles are not told
/// apart.
[[nodiscard]] std::string lastingWords(unsigned long message, unsigned long long wParam,
                                       long long lParam, bool ofDatePicker);

} // namespace zrhost
