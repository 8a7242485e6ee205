#include "host_error.h"
#include "host_window.h"
#include "wide_text.h"

#include <algorithm>
#include <utility>
#include <windows.h>

namespace zrhost {

namespace {

constexpr wchar_t kClassName[] = L"ZRHostWindow";
constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

HostError failed(const char* what)
{
    return HostError(std::string(what) + ": " + windowsErrorText(GetLastError()));
}

/// Sizes are in physical pixels here and in the module. It fails where a manifest decides.
void usePhysicalPixels()
{
    // There since Windows 10.
    using SetAwareness = BOOL(WINAPI*)(HANDLE);
    const auto setAwareness = reinterpret_cast<SetAwareness>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetProcessDpiAwarenessContext")));
    constexpr LONG_PTR kPerMonitorVersion2 = -4; // DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2
    if (!setAwareness || !setAwareness(reinterpret_cast<HANDLE>(kPerMonitorVersion2)))
        SetProcessDPIAware();
}

/// Size of a window with an inside of this size.
Size withFrame(Size inside, DWORD style)
{
    RECT rect{0, 0, inside.width, inside.height};
    AdjustWindowRectEx(&rect, style, FALSE, 0);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

class Win32Window : public HostWindow
{
public:
    Win32Window(const std::string& title, Size size, Events events);
    ~Win32Window() override;

    HWND handle() const override { return m_window; }
    Size size() const override;
    void resize(Size size) override;
    void raise() override;
    void click(Point at, int times) override;
    void turnWheel(Point at, int steps) override;
    RgbImage grab() const override;

    static LRESULT CALLBACK onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    [[nodiscard]] Point onScreen(Point at) const;

    HWND m_window = nullptr;
    Events m_events;
};

class Win32Display : public HostDisplay
{
public:
    Win32Display();
    std::unique_ptr<HostWindow> makeWindow(const std::string& title, Size size,
                                           HostWindow::Events events) override
    {
        return std::make_unique<Win32Window>(title, size, std::move(events));
    }
};

Win32Display::Win32Display()
{
    usePhysicalPixels();
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &Win32Window::onMessage;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // IDC_ARROW
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kClassName;
    if (RegisterClassExW(&windowClass) == 0 && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
        throw failed("cannot prepare windows");
}

Win32Window::Win32Window(const std::string& title, Size size, Events events)
    : m_events(std::move(events))
{
    const Size outside = withFrame(size, kStyle);
    m_window = CreateWindowExW(0, kClassName, toWide(title).c_str(), kStyle, CW_USEDEFAULT,
                               CW_USEDEFAULT, outside.width, outside.height, nullptr, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
    if (!m_window)
        throw failed("cannot make a window");
    // Not ShowWindow(), whose first call shows what the program's starter wants.
    SetWindowPos(m_window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    UpdateWindow(m_window);
    // From here on events are reported.
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

Win32Window::~Win32Window()
{
    SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
    DestroyWindow(m_window);
}

LRESULT CALLBACK Win32Window::onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_GETMINMAXINFO) {
        // The system would cut the window to the screen.
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMaxTrackSize = {2 * kMaxEdgePx, 2 * kMaxEdgePx};
        return 0;
    }
    auto* const self = reinterpret_cast<Win32Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self && message == WM_SIZE && wParam != SIZE_MINIMIZED) {
        if (self->m_events.resized)
            self->m_events.resized(self->size());
        return 0;
    }
    if (self && message == WM_CLOSE) {
        if (self->m_events.closed)
            self->m_events.closed();
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

Size Win32Window::size() const
{
    RECT inside{};
    GetClientRect(m_window, &inside);
    return {inside.right, inside.bottom};
}

void Win32Window::resize(Size size)
{
    const Size outside = withFrame(size, static_cast<DWORD>(GetWindowLongW(m_window, GWL_STYLE)));
    SetWindowPos(m_window, nullptr, 0, 0, outside.width, outside.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Win32Window::raise()
{
    SetWindowPos(m_window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

Point Win32Window::onScreen(Point at) const
{
    POINT point{at.x, at.y};
    ClientToScreen(m_window, &point);
    return {point.x, point.y};
}

void Win32Window::click(Point at, int times)
{
    desktop::click(onScreen(at), times);
}

void Win32Window::turnWheel(Point at, int steps)
{
    desktop::turnWheel(onScreen(at), steps);
}

RgbImage Win32Window::grab() const
{
    if (!IsWindowVisible(m_window) || IsIconic(m_window))
        throw HostError("cannot grab the window: it is not visible");
    return desktop::grab(onScreen({0, 0}), size());
}

} // namespace

std::unique_ptr<HostDisplay> openDisplay()
{
    return std::make_unique<Win32Display>();
}

} // namespace zrhost
