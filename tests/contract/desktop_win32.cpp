#include "desktop.h"

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

Screenshot desktop::grab(int widthPx, int heightPx)
{
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, widthPx, heightPx);
    const HGDIOBJ previous = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, widthPx, heightPx, screen, 0, 0, SRCCOPY | CAPTUREBLT);
    Screenshot shot;
    shot.widthPx = widthPx;
    shot.heightPx = heightPx;
    for (int y = 0; y < heightPx; ++y) {
        for (int x = 0; x < widthPx; ++x) {
            const COLORREF pixel = GetPixel(memory, x, y);
            shot.pixels.push_back({GetRValue(pixel), GetGValue(pixel), GetBValue(pixel)});
        }
    }
    SelectObject(memory, previous);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return shot;
}

void desktop::moveTo(int x, int y)
{
    SetCursorPos(x, y);
}

void desktop::click(int x, int y)
{
    moveTo(x, y);
    send(MOUSEEVENTF_LEFTDOWN);
    send(MOUSEEVENTF_LEFTUP);
}

void desktop::turnWheel(int x, int y, int steps)
{
    moveTo(x, y);
    send(MOUSEEVENTF_WHEEL, steps * WHEEL_DELTA);
}
