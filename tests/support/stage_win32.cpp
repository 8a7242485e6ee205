// The stage on Windows.
#include "check.h"
#include "desktop.h"
#include "hostprocess.h"
#include "hostwindow.h"

#ifndef NOMINMAX
#    define NOMINMAX
#endif
#include <windows.h>

#include <cctype>
#include <tlhelp32.h>

// --- Windows ----------------------------------------------------------------------------------

namespace {

HWND toHwnd(WindowId window)
{
    return reinterpret_cast<HWND>(window);
}

WindowId toId(HWND window)
{
    return reinterpret_cast<WindowId>(window);
}

} // namespace

WindowId nativehost::makeWindow(const Box& box, WindowId parent)
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = L"ZRTestHost";
    RegisterClassW(&windowClass); // a second time fails, and that is fine
    const DWORD style = WS_VISIBLE | WS_CLIPCHILDREN | (parent ? WS_CHILD : WS_POPUP);
    const HWND window =
        CreateWindowExW(0, windowClass.lpszClassName, L"", style, box.x, box.y, box.w, box.h,
                        toHwnd(parent), nullptr, windowClass.hInstance, nullptr);
    REQUIRE(window != nullptr);
    UpdateWindow(window);
    return toId(window);
}

void nativehost::moveWindow(WindowId window, int x, int y)
{
    SetWindowPos(toHwnd(window), nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void nativehost::destroyWindow(WindowId window)
{
    DestroyWindow(toHwnd(window));
}

WindowId nativehost::parentOf(WindowId window)
{
    return toId(GetAncestor(toHwnd(window), GA_PARENT));
}

int nativehost::childCountOf(WindowId window)
{
    int count = 0;
    HWND child = GetWindow(toHwnd(window), GW_CHILD);
    for (; child; child = GetWindow(child, GW_HWNDNEXT))
        ++count;
    return count;
}

WindowId nativehost::topChildOf(WindowId window)
{
    return toId(GetWindow(toHwnd(window), GW_CHILD));
}

Box nativehost::geometryOf(WindowId window)
{
    RECT rect{};
    GetWindowRect(toHwnd(window), &rect);
    MapWindowPoints(nullptr, toHwnd(parentOf(window)), reinterpret_cast<POINT*>(&rect), 2);
    return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

bool nativehost::isViewable(WindowId window)
{
    return IsWindowVisible(toHwnd(window)) != FALSE;
}

WindowId nativehost::desktop()
{
    return toId(GetDesktopWindow());
}

Screenshot HostWindow::grab() const
{
    const Box box = nativehost::geometryOf(m_id); // it is at the top level and has no frame
    return desktop::grab(box.x, box.y, box.w, box.h);
}

// --- The user ---------------------------------------------------------------------------------

namespace {

void sendMouse(DWORD flags, int wheel = 0)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = static_cast<DWORD>(wheel);
    SendInput(1, &input, sizeof input);
}

/// The codes of letters, digits, the blank and the tabulator are their upper-case characters.
void moveKey(int key, bool down)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key);
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

} // namespace

int desktop::widthPx()
{
    return GetSystemMetrics(SM_CXVIRTUALSCREEN);
}

int desktop::heightPx()
{
    return GetSystemMetrics(SM_CYVIRTUALSCREEN);
}

Screenshot desktop::grab(int left, int top, int widthPx, int heightPx)
{
    Screenshot shot{widthPx, heightPx, {}};
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
        BitBlt(memory, 0, 0, widthPx, heightPx, screen, left, top, SRCCOPY | CAPTUREBLT) != FALSE;
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
    sendMouse(MOUSEEVENTF_LEFTDOWN);
    sendMouse(MOUSEEVENTF_LEFTUP);
}

void desktop::turnWheel(int x, int y, int steps)
{
    moveTo(x, y);
    sendMouse(MOUSEEVENTF_WHEEL, steps * WHEEL_DELTA);
}

void keyboard::type(const std::string& text)
{
    for (const char character : text) {
        const int key = std::toupper(static_cast<unsigned char>(character));
        moveKey(key, true);
        moveKey(key, false);
    }
}

void keyboard::pressWithControl(char letter)
{
    moveKey(VK_CONTROL, true);
    type({letter});
    moveKey(VK_CONTROL, false);
}

// --- The process ------------------------------------------------------------------------------

namespace native {

const char* const kLibraryFile = "ZRScreenMod.dll";

bool runEventLoopOnce()
{
    MSG message{};
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        return false;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
}

void* loadLibrary(const char* path)
{
    // The system looks for the libraries that the library needs beside it, where packages put
    // them, only when it is named in full.
    const std::wstring full = std::filesystem::absolute(path).make_preferred().wstring();
    void* const library = LoadLibraryExW(full.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library)
        check::fail(__FILE__, __LINE__,
                    std::string(path) + ": error " + std::to_string(GetLastError()));
    return library;
}

void* findSymbol(void* library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

bool unloadLibrary(void* library)
{
    return FreeLibrary(static_cast<HMODULE>(library)) != FALSE;
}

bool isLoaded(const std::string& name)
{
    return GetModuleHandleA((name + ".dll").c_str()) != nullptr;
}

int threadCount()
{
    const HANDLE threads = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    REQUIRE(threads != INVALID_HANDLE_VALUE);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = Thread32First(threads, &entry); more; more = Thread32Next(threads, &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    CloseHandle(threads);
    return count;
}

std::size_t pageSize()
{
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    return system.dwPageSize;
}

void* makePages(std::size_t bytes)
{
    return VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void freePages(void* pages, std::size_t)
{
    VirtualFree(pages, 0, MEM_RELEASE);
}

bool protectPages(void* pages, std::size_t bytes, bool isOpen)
{
    DWORD before = 0;
    return VirtualProtect(pages, bytes, isOpen ? PAGE_READWRITE : PAGE_NOACCESS, &before) != FALSE;
}

} // namespace native
