#include "desktop.h"

#include "check.h"

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

Screenshot desktop::grab(int x, int y, int widthPx, int heightPx)
{
    Screenshot shot;
    shot.widthPx = widthPx;
    shot.heightPx = heightPx;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = widthPx;
    info.bmiHeader.biHeight = -heightPx; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    const bool copied =
        BitBlt(memory, 0, 0, widthPx, heightPx, screen, x, y, SRCCOPY | CAPTUREBLT) != FALSE;
    GdiFlush();
    const auto* pixel = static_cast<const unsigned char*>(bits);
    for (int i = 0; pixel && i < widthPx * heightPx; ++i, pixel += 4)
        shot.pixels.push_back({pixel[2], pixel[1], pixel[0]});
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    REQUIRE(copied && bits);
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
