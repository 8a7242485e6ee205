// A stand-in for the module: exports the whole interface, and records what is asked of it.
#pragma once

#include "screen_api.h"

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
/// Notes a call that was made.
void recordFakeCall(const std::string& call);
/// The function that the host gave to ZRScreenDate_Init.
[[nodiscard]] ZRNotify fakeDateNotify();
/// The function that the host gave to ZRScreen_Init.
[[nodiscard]] ZRNotify fakeNotify();
