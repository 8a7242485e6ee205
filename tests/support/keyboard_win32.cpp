#include "keyboard.h"

#ifndef NOMINMAX
#    define NOMINMAX
#endif
#include <windows.h>

#include <cctype>

namespace {

void move(int key, bool down)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key);
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

void press(int key)
{
    move(key, true);
    move(key, false);
}

/// The codes of letters, digits and the blank are their upper-case characters.
int keyOf(char character)
{
    return std::toupper(static_cast<unsigned char>(character));
}

} // namespace

void keyboard::type(const std::string& text)
{
    for (const char character : text)
        press(keyOf(character));
}

void keyboard::pressTab()
{
    press(VK_TAB);
}

void keyboard::pressWithControl(char letter)
{
    move(VK_CONTROL, true);
    press(keyOf(letter));
    move(VK_CONTROL, false);
}
