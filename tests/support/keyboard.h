// The user's keyboard. One implementation per system: keyboard_x11.cpp and keyboard_win32.cpp.
#pragma once

#include <string>

/// Keys go wherever the system sends them.
namespace keyboard {

/// Types lower-case letters, digits and blanks.
void type(const std::string& text);
void pressTab();
/// Presses a letter with the control key held.
void pressWithControl(char letter);

} // namespace keyboard
