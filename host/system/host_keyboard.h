// The user's keyboard. One implementation per system: keyboard_x11.cpp and keyboard_win32.cpp.
#pragma once

#include "stage.h"

#include <string>

namespace zrhost {

/// Keys go wherever the system sends them. All of them @throws HostError.

/// Types a text. What has no key on the keyboard (on X11) is refused.
void typeText(const std::string& utf8);
void pressKey(Key key);
/// Presses the key of an ASCII letter while the control key is held.
void pressWithControl(char letter);

} // namespace zrhost
