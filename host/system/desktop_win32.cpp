#include "desktop.h"

#include "host_error.h"

#include <windows.h>

namespace zrhost {

namespace {

void sendMouse(DWORD flags, int wheel = 0)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = static_cast<DWORD>(wheel);
    SendInput(1, &input, sizeof input);
}

/// A bitmap whose pixels are read as 4 bytes: blue, green, red, unused; rows from the top.
class ScreenCopy
{
public:
    explicit ScreenCopy(const RECT& area);
    ~ScreenCopy();
    ScreenCopy(const ScreenCopy&) = delete;
    ScreenCopy& operator=(const ScreenCopy&) = delete;

    /// Null when the screen could not be read.
    [[nodiscard]] const std::uint8_t* pixels() const { return m_copied ? m_pixels : nullptr; }

private:
    HDC m_screen;
    HDC m_memory;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_previous = nullptr;
    const std::uint8_t* m_pixels = nullptr;
    bool m_copied = false;
};

// From the screen: what OpenGL draws does not belong to the window's own device context.
ScreenCopy::ScreenCopy(const RECT& area)
    : m_screen(GetDC(nullptr))
    , m_memory(CreateCompatibleDC(m_screen))
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = area.right - area.left;
    info.bmiHeader.biHeight = -(area.bottom - area.top);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    m_bitmap = CreateDIBSection(m_screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!m_bitmap)
        return;
    m_pixels = static_cast<const std::uint8_t*>(bits);
    m_previous = SelectObject(m_memory, m_bitmap);
    m_copied = BitBlt(m_memory, 0, 0, area.right - area.left, area.bottom - area.top, m_screen,
                      area.left, area.top, SRCCOPY | CAPTUREBLT)
               != FALSE;
    GdiFlush();
}

ScreenCopy::~ScreenCopy()
{
    if (m_bitmap) {
        SelectObject(m_memory, m_previous);
        DeleteObject(m_bitmap);
    }
    DeleteDC(m_memory);
    ReleaseDC(nullptr, m_screen);
}

} // namespace

Size desktop::size()
{
    return {GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN)};
}

RgbImage desktop::grab(Point at, Size size)
{
    const RECT area{at.x, at.y, at.x + size.width, at.y + size.height};
    const int left = GetSystemMetrics(SM_XVIRTUALSCREEN);
    const int top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    const Size all = desktop::size();
    const RECT screen{left, top, left + all.width, top + all.height};
    RECT visible{};
    if (!IntersectRect(&visible, &area, &screen))
        throw HostError("cannot grab what lies off the screen");
    const ScreenCopy copy(visible);
    const std::uint8_t* const pixels = copy.pixels();
    if (!pixels)
        throw HostError("cannot grab the screen");
    RgbImage image{visible.right - visible.left, visible.bottom - visible.top, {}};
    const std::size_t count =
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    image.data.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i) {
        for (const std::size_t channel : {2U, 1U, 0U})
            image.data.push_back(pixels[4 * i + channel]);
    }
    return image;
}

void desktop::moveTo(Point at)
{
    SetCursorPos(at.x, at.y);
}

void desktop::click(Point at, int times)
{
    moveTo(at);
    for (int i = 0; i < times; ++i) {
        sendMouse(MOUSEEVENTF_LEFTDOWN);
        sendMouse(MOUSEEVENTF_LEFTUP);
    }
}

void desktop::turnWheel(Point at, int steps)
{
    moveTo(at);
    sendMouse(MOUSEEVENTF_WHEEL, steps * WHEEL_DELTA);
}

} // namespace zrhost
