// The user's mouse. One implementation per system: pointer_x11.cpp and pointer_win32.cpp.
#pragma once

/// Works on whatever lies at a point of the screen; the host's windows lie at its top left corner.
namespace pointer {

void moveTo(int x, int y);
/// Presses the left button and releases it.
void click(int x, int y);
/// Turns the wheel by steps: away from the user for positive ones.
void turnWheel(int x, int y, int steps);

} // namespace pointer
