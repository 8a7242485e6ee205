// What must hold inside the module whatever its host does.
#pragma once

#include "zrscreenmod.h"

#include <map>
#include <string>
#include <vector>

struct HostMessage
{
    unsigned long id;
    unsigned long long wParam;
    long long lParam;
    bool isOfDatePicker;
};

/// What the host was told last.
struct Told
{
    /// Of each participant: true shown, false hidden. By serial number.
    std::map<unsigned long long, bool> streams;
    int mode = -1; ///< while it was told of none
};

/// Ends the program with a line that says what does not hold.
void require(bool holds, const std::string& what);
/// What require prints beside.
void onFinding(void (*print)());

/// Takes down what a message tells, and whether it may. GUI thread, as all of it.
void noteMessage(Told& told, const HostMessage& message);

/// On all screens, also those that are about to go: who is alive, the tiles and their places agree,
/// and so do the streams and the mode that the host was told of.
void checkGalleries(const Told& told);
/// Where tiles do not stand in the order; empty for nowhere. It may be that they are still to be
/// arranged.
[[nodiscard]] std::string disorder();
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
