#include "wide_text.h"

#include <array>
#include <cstddef>
#include <windows.h>

namespace zrhost {

std::wstring toWide(std::string_view utf8)
{
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string fromWide(std::wstring_view wide)
{
    const int size = static_cast<int>(wide.size());
    std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), size,
                                                                  nullptr, 0, nullptr, nullptr)),
                     '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), static_cast<int>(utf8.size()),
                        nullptr, nullptr);
    return utf8;
}

std::string windowsErrorText(unsigned long error)
{
    std::array<wchar_t, 512> text{};
    DWORD size =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS
                           | FORMAT_MESSAGE_MAX_WIDTH_MASK, // no line breaks
                       nullptr, error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    while (size > 0 && (text[size - 1] == L' ' || text[size - 1] == L'.'))
        --size;
    if (size == 0)
        return "error " + std::to_string(error);
    return fromWide({text.data(), size});
}

} // namespace zrhost
