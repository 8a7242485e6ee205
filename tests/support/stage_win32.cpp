// The stage on Windows.
#include "check.h"
#include "hostprocess.h"
#include "hostwindow.h"

#include <windows.h>

#include <tlhelp32.h>

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

namespace native {

bool runEventLoopOnce()
{
    MSG message{};
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        return false;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
}

bool isLoaded(const std::string& name)
{
    return GetModuleHandleA((name + ".dll").c_str()) != nullptr;
}

Range rangeOf(const std::string& library)
{
    const HMODULE module = GetModuleHandleA((library + ".dll").c_str());
    const auto begin = reinterpret_cast<std::uintptr_t>(module);
    if (begin == 0)
        return {};
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(begin);
    const auto* const image =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(begin + static_cast<unsigned>(dos->e_lfanew));
    return {begin, begin + image->OptionalHeader.SizeOfImage};
}

bool closeOff(const Range& range)
{
    void* const begin = reinterpret_cast<void*>(range.begin);
    return VirtualAlloc(begin, range.end - range.begin, MEM_RESERVE, PAGE_NOACCESS) == begin;
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

bool protectPages(void* pages, std::size_t bytes, bool isOpen)
{
    DWORD before = 0;
    return VirtualProtect(pages, bytes, isOpen ? PAGE_READWRITE : PAGE_NOACCESS, &before) != FALSE;
}

} // namespace native
