// The user: what he sees, the mouse and the keyboard.
#pragma once

#include "picture.h"

#include <string>

/// The whole screen, in its pixels.
namespace desktop {

[[nodiscard]] int widthPx();
[[nodiscard]] int heightPx();
/// A part of the screen, whatever windows lie there.
[[nodiscard]] Screenshot grab(int left, int top, int widthPx, int heightPx);

void moveTo(int x, int y);
/// Presses the left button and releases it.
void click(int x, int y);
/// Turns the wheel by steps: away from the user for positive ones.
void turnWheel(int x, int y, int steps);

} // namespace desktop

/// Keys go wherever the system sends them.
namespace keyboard {

/// Types lower-case letters, digits, blanks and tabs.
void type(const std::string& text);
/// Presses a letter with the control key held.
void pressWithControl(char letter);

} // namespace keyboard
