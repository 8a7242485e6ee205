#include "check.h"
#include "native.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
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
    Screenshot shot;
    shot.widthPx = area.right;
    shot.heightPx = area.bottom;
    POINT origin{};
    ClientToScreen(m_window, &origin);
    // From the screen: what OpenGL draws does not belong to the window's own device context.
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = shot.widthPx;
    info.bmiHeader.biHeight = -shot.heightPx; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    const bool copied =
        BitBlt(memory, 0, 0, shot.widthPx, shot.heightPx, screen, origin.x, origin.y, SRCCOPY)
        != FALSE;
    GdiFlush();
    const size_t count = static_cast<size_t>(shot.widthPx) * static_cast<size_t>(shot.heightPx);
    shot.pixels.reserve(count);
    for (size_t i = 0; bits && i < count; ++i) {
        const auto* const pixel = static_cast<const unsigned char*>(bits) + 4 * i;
        shot.pixels.push_back({pixel[2], pixel[1], pixel[0]});
    }
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    REQUIRE(copied && shot.pixels.size() == count);
    return shot;
}

int NativeWindow::childCount() const
{
    int count = 0;
    for (HWND child = GetWindow(m_window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        ++count;
    return count;
}

LogCapture::LogCapture()
    : m_stderr(_dup(_fileno(stderr)))
{
    char folder[MAX_PATH + 1] = "";
    char name[MAX_PATH + 1] = "";
    REQUIRE(GetTempPathA(sizeof folder, folder) != 0);
    REQUIRE(GetTempFileNameA(folder, "zrc", 0, name) != 0);
    m_name = name;
    const int writing = _open(name, _O_WRONLY | _O_BINARY | _O_APPEND, _S_IWRITE);
    m_file = _open(name, _O_RDONLY | _O_BINARY);
    REQUIRE(writing >= 0 && m_file >= 0 && m_stderr >= 0);
    std::fflush(stderr);
    _dup2(writing, _fileno(stderr));
    _close(writing);
}

LogCapture::~LogCapture()
{
    std::fflush(stderr);
    _dup2(m_stderr, _fileno(stderr));
    _close(m_stderr);
    _close(m_file);
    DeleteFileA(m_name.c_str());
}

std::string LogCapture::take()
{
    std::fflush(stderr);
    std::string log;
    char buffer[4096];
    _lseek(m_file, m_readTo, SEEK_SET); // once at its end, a file is read no further without
    for (;;) {
        const int got = _read(m_file, buffer, sizeof buffer);
        if (got <= 0)
            return log;
        log.append(buffer, static_cast<size_t>(got));
        m_readTo += got;
    }
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
