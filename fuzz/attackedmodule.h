// What must hold inside the module whatever its host does.
#pragma once

#include "zrscreenmod.h"

#include <map>
#include <string>
#include <vector>

/// What the host was told last of each participant: true shown, false hidden. By serial number.
using ToldStreams = std::map<unsigned long long, bool>;

/// Ends the program with a line that says what does not hold.
void require(bool holds, const std::string& what);

/// Takes down what a message tells, and whether it may. GUI thread, as all of it.
void noteMessage(ToldStreams& told, unsigned long message, unsigned long long wParam);

/// On all screens, also those that are about to go: who is alive, the tiles, their places, and the
/// streams that the host was told of agree.
void checkGalleries(const ToldStreams& told);
/// What is left of what the host has released: its classes; empty for nothing.
[[nodiscard]] std::string remains();

/// Runs what is due in the event loop.
void turnEventLoop();
/// The module's clock jumps ahead; it never goes back.
void advanceClock(long long ms);
/// As though time had passed: a timer of an object of the module's fires.
void fireTimer(int choice);
/// Windows that the module shows, for hosts that put one into another.
[[nodiscard]] std::vector<void*> nativeWindows();
