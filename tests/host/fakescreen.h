// A stand-in for the module: exports the whole interface, and records what is asked of it.
#pragma once

#include "native_rect.h"
#include "screen_api.h"

#include <sstream>
#include <string>
#include <vector>

/// The exports that were called since the last look, frames left out, as "SetMute(alice, 1)".
[[nodiscard]] std::vector<std::string> takeFakeCalls();
/// Size and first byte of each frame since the last look, as "alice 640x360 235".
[[nodiscard]] std::vector<std::string> takeFakeFrames();
[[nodiscard]] std::size_t fakeFrameCount();
/// The stand-in's exports; null for an unknown name.
[[nodiscard]] void* fakeExport(const std::string& name);
/// As fakeExport, for the embedded controls, of which there is one of each kind.
[[nodiscard]] void* fakeControlExport(const std::string& name);

/// Notes a call that was made, as text. Any thread.
void recordFakeCall(const std::string& call);

template<typename T>
const T& shown(const T& value)
{
    return value;
}
inline std::string shown(const tagRECT* rect)
{
    std::ostringstream text;
    text << rect->left << ' ' << rect->top << ' ' << rect->right << ' ' << rect->bottom;
    return text.str();
}
inline std::string shown(tagRECT* rect)
{
    return shown(static_cast<const tagRECT*>(rect));
}

/// Notes a call with its arguments. @return 1 when it came with the handle that it should
template<typename... Args>
int recordFake(const char* name, const void* handle, const void* expected, const Args&... args)
{
    std::ostringstream call;
    call << name << '(';
    [[maybe_unused]] const char* separator = ""; // not used without arguments
    ((call << separator << shown(args), separator = ", "), ...);
    call << ')' << (handle == expected ? "" : " with a wrong handle");
    recordFakeCall(call.str());
    return handle == expected ? 1 : 0;
}

// Parameters of a macro that are a list themselves.
#define FAKE_LIST(...) __VA_ARGS__

/// The function that the host gave to ZRScreenDate_Init.
[[nodiscard]] ZRNotify fakeDateNotify();
/// The function that the host gave to ZRScreen_Init.
[[nodiscard]] ZRNotify fakeNotify();
