#include "check.h"
#include "desktop.h"
#include "native.h"

#include <algorithm>
#include <cstring>
#include <tlhelp32.h>

namespace {

constexpr wchar_t kClassName[] = L"ZRContractWindow";

void registerWindowClass()
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = kClassName;
    RegisterClassW(&windowClass); // a second time fails, and that is fine
}

std::wstring toWide(const char* text)
{
    const int length = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    std::wstring wide(static_cast<size_t>(std::max(length, 1)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), length);
    wide.resize(wide.size() - 1);
    return wide;
}

} // namespace

NativeWindow::NativeWindow(int widthPx, int heightPx, int x, int y)
{
    registerWindowClass();
    m_window =
        CreateWindowExW(0, kClassName, L"contract", WS_POPUP | WS_CLIPCHILDREN, x, y, widthPx,
                        heightPx, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    REQUIRE(m_window != nullptr);
    ShowWindow(m_window, SW_SHOW);
    UpdateWindow(m_window);
}

NativeWindow::~NativeWindow()
{
    DestroyWindow(m_window);
}

HWND NativeWindow::hwnd() const
{
    return m_window;
}

Screenshot NativeWindow::grab() const
{
    RECT area{};
    GetClientRect(m_window, &area);
    POINT origin{};
    ClientToScreen(m_window, &origin);
    return desktop::grab(origin.x, origin.y, area.right, area.bottom);
}

int NativeWindow::childCount() const
{
    int count = 0;
    for (HWND child = GetWindow(m_window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        ++count;
    return count;
}

EndlessText::EndlessText()
    : m_size(0)
    , m_pages(nullptr)
{
    SYSTEM_INFO system{};
    GetSystemInfo(&system);
    m_size = system.dwPageSize;
    m_pages = static_cast<char*>(
        VirtualAlloc(nullptr, 2 * m_size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    REQUIRE(m_pages != nullptr);
    DWORD before = 0;
    REQUIRE(VirtualProtect(m_pages + m_size, m_size, PAGE_NOACCESS, &before) != FALSE);
    std::memset(m_pages, 'a', m_size);
}

EndlessText::~EndlessText()
{
    VirtualFree(m_pages, 0, MEM_RELEASE);
}

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

bool hasDisplay()
{
    return true;
}

void* loadLibrary(const char* path)
{
    // The system looks for the libraries that the library needs beside it, where packages put
    // them, only when it is named in full.
    const std::wstring given = toWide(path);
    wchar_t full[MAX_PATH] = L"";
    GetFullPathNameW(given.c_str(), MAX_PATH, full, nullptr);
    void* const library = LoadLibraryExW(full, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
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

bool isModuleLoaded()
{
    return GetModuleHandleW(L"ZRScreenMod.dll") != nullptr;
}

bool isQtLoaded()
{
    return GetModuleHandleW(L"Qt5Core.dll") && GetModuleHandleW(L"Qt5Gui.dll")
           && GetModuleHandleW(L"Qt5Widgets.dll");
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

} // namespace native
