#include "nativehost.h"

#include <windows.h>

namespace {

HWND toHwnd(NativeWindow window)
{
    return reinterpret_cast<HWND>(window);
}

std::size_t pageSize()
{
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    return system.dwPageSize;
}

} // namespace

NativeWindow nativehost::makeWindow(const QRect& r, NativeWindow parent)
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"ZRPlatformTest";
    RegisterClassW(&windowClass); // a second time fails, and that is fine
    return platform::toNative(CreateWindowExW(
        0, windowClass.lpszClassName, L"", WS_VISIBLE | (parent ? WS_CHILD : WS_POPUP), r.x(),
        r.y(), r.width(), r.height(), toHwnd(parent), nullptr, windowClass.hInstance, nullptr));
}

void nativehost::moveWindow(NativeWindow window, const QPoint& to)
{
    SetWindowPos(toHwnd(window), nullptr, to.x(), to.y(), 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void nativehost::destroyWindow(NativeWindow window)
{
    DestroyWindow(toHwnd(window));
}

NativeWindow nativehost::parentOf(NativeWindow window)
{
    return platform::toNative(GetAncestor(toHwnd(window), GA_PARENT));
}

NativeWindow nativehost::topChildOf(NativeWindow window)
{
    return platform::toNative(GetWindow(toHwnd(window), GW_CHILD));
}

QRect nativehost::geometryOf(NativeWindow window)
{
    RECT rect{};
    GetWindowRect(toHwnd(window), &rect);
    MapWindowPoints(nullptr, GetAncestor(toHwnd(window), GA_PARENT),
                    reinterpret_cast<POINT*>(&rect), 2);
    return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

bool nativehost::isViewable(NativeWindow window)
{
    return IsWindowVisible(toHwnd(window)) != FALSE;
}

NativeWindow nativehost::desktop()
{
    return platform::toNative(GetDesktopWindow());
}

QSize nativehost::screenSize()
{
    return {GetSystemMetrics(SM_CXVIRTUALSCREEN), GetSystemMetrics(SM_CYVIRTUALSCREEN)};
}

void nativehost::waitForQtsRequests() {}

PatchyMemory::PatchyMemory()
    : page(pageSize())
    , begin(static_cast<char*>(
          VirtualAlloc(nullptr, kPages * page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE)))
{
    for (std::size_t i = 1; i < kPages; i += 2)
        open(i, false);
}

PatchyMemory::~PatchyMemory()
{
    VirtualFree(begin, 0, MEM_RELEASE);
}

void PatchyMemory::open(std::size_t index, bool isOpen) const
{
    DWORD before = 0;
    VirtualProtect(begin + index * page, page, isOpen ? PAGE_READWRITE : PAGE_NOACCESS, &before);
}
