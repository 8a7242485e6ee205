// What the user sees and the mouse he holds. One implementation per system: desktop_x11.cpp and
// desktop_win32.cpp.
#pragma once

#include "native.h"

/// Of the whole screen, at whose top left corner the host's windows lie.
namespace desktop {

/// A part of the screen, whatever windows lie there.
[[nodiscard]] Screenshot grab(int left, int top, int widthPx, int heightPx);

void moveTo(int x, int y);
/// Presses the left button and releases it.
void click(int x, int y);
/// Turns the wheel by steps: away from the user for positive ones.
void turnWheel(int x, int y, int steps);

} // namespace desktop
