#include "host_keyboard.h"
#include "wide_text.h"

#include <cctype>
#include <windows.h>

namespace zrhost {

namespace {

void send(WORD key, WORD unit, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = unit;
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

void press(WORD key, WORD unit, DWORD flags)
{
    send(key, unit, flags);
    send(key, unit, flags | KEYEVENTF_KEYUP);
}

} // namespace

void typeText(const std::string& utf8)
{
    for (const wchar_t unit : toWide(utf8))
        press(0, static_cast<WORD>(unit), KEYEVENTF_UNICODE);
}

void pressKey(Key key)
{
    constexpr WORD kKeys[] = {VK_TAB, VK_RETURN, VK_ESCAPE, VK_BACK};
    press(kKeys[static_cast<int>(key)], 0, 0);
}

void pressWithControl(char letter)
{
    send(VK_CONTROL, 0, 0);
    press(static_cast<WORD>(std::toupper(static_cast<unsigned char>(letter))), 0, 0);
    send(VK_CONTROL, 0, KEYEVENTF_KEYUP);
}

} // namespace zrhost
