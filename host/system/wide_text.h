// UTF-8 at the edge to the functions of Windows. Only for the units that implement the host there.
#pragma once

#include <string>
#include <string_view>

namespace zrhost {

/// Bytes that are no UTF-8 become U+FFFD, and half a surrogate pair too.
[[nodiscard]] std::wstring toWide(std::string_view utf8);
[[nodiscard]] std::string fromWide(std::wstring_view wide);
/// What Windows says about an error code (GetLastError()), without the full stop.
[[nodiscard]] std::string windowsErrorText(unsigned long error);

} // namespace zrhost
