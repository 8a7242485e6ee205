#include "pointer.h"

#ifndef NOMINMAX
#    define NOMINMAX
#endif
#include <windows.h>

namespace {

void send(DWORD flags, int wheel = 0)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = static_cast<DWORD>(wheel);
    SendInput(1, &input, sizeof input);
}

} // namespace

void pointer::moveTo(int x, int y)
{
    SetCursorPos(x, y);
}

void pointer::click(int x, int y)
{
    moveTo(x, y);
    send(MOUSEEVENTF_LEFTDOWN);
    send(MOUSEEVENTF_LEFTUP);
}

void pointer::turnWheel(int x, int y, int steps)
{
    moveTo(x, y);
    send(MOUSEEVENTF_WHEEL, steps * WHEEL_DELTA);
}
