// The module's messages in words.
#pragma once

#include <functional>
#include <string>

namespace zrhost {

/// Gives the participant that a host value stands for; an empty text for none.
using HostValueName = std::function<std::string(long long)>;

/// A message in words for people.
struct MessageWords
{
    unsigned long number = 0;
    std::string name; ///< "ZRMSG_CLICK_MORE", "stream request"; a number that is not known as it is
    std::string values; ///< "right=250 hostValue=alice", "grade=3 for alice"

    /// "message ZRMSG_CLICK_MORE right=250 hostValue=alice"
    [[nodiscard]] std::string line() const;
};

/// Reads what ZRMSG_FOCUS_STREAM and ZRDATE_CHOSEN point to.
[[nodiscard]] MessageWords describeMessage(unsigned long message, unsigned long long wParam,
                                           long long lParam, bool ofDatePicker,
                                           const HostValueName& nameOf);

/// The message in words that are the same in every run: participants and handles are not told
/// apart.
[[nodiscard]] std::string lastingWords(unsigned long message, unsigned long long wParam,
                                       long long lParam, bool ofDatePicker);

} // namespace zrhost
