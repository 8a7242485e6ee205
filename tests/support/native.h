// What the tests need of the system: a window of the host's, its event loop, loaded libraries and
// unreadable memory. One implementation per system: native_x11.cpp and native_win32.cpp.
#pragma once

#include "zrscreenmod.h"

#include <cstddef>
#include <filesystem>
#include <ios>
#include <string>
#include <vector>

#ifdef _WIN32
#    ifndef NOMINMAX
#        define NOMINMAX
#    endif
#    include <windows.h> // tagRECT
#endif

struct Rgb
{
    int r;
    int g;
    int b;
};

/// A screenshot of a native window with everything in it.
class Screenshot
{
public:
    [[nodiscard]] Rgb at(int x, int y) const;
    int widthPx = 0;
    int heightPx = 0;
    std::vector<Rgb> pixels;
};

/// A plain window of the host.
class NativeWindow
{
public:
    NativeWindow(int widthPx, int heightPx, int x = 0, int y = 0);
    ~NativeWindow();
    NativeWindow(const NativeWindow&) = delete;
    NativeWindow& operator=(const NativeWindow&) = delete;

    [[nodiscard]] HWND hwnd() const;
    [[nodiscard]] Screenshot grab() const;
    /// Native windows directly inside this one.
    [[nodiscard]] int childCount() const;

private:
    void* m_display = nullptr; ///< the X11 connection; unused on Windows
    HWND m_window = nullptr;
};

/// Collects what the process writes to stderr, where the library's log goes, while it lives.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    /// What was written since the last call.
    [[nodiscard]] std::string take();

private:
    std::filesystem::path m_path;
    int m_stderr;
    std::streamoff m_readTo = 0;
};

/// Whether a line of the log names the export.
inline bool isNamed(const std::string& log, const std::string& name)
{
    return log.find("][" + name + ":") != std::string::npos;
}

/// A page of 'a' without a terminator, right before memory that cannot be read.
class EndlessText
{
public:
    EndlessText();
    ~EndlessText();
    EndlessText(const EndlessText&) = delete;
    EndlessText& operator=(const EndlessText&) = delete;
    [[nodiscard]] char* text() const { return m_pages; }
    [[nodiscard]] std::size_t size() const { return m_size; }

private:
    std::size_t m_size;
    char* m_pages;
};

namespace native {

/// The library's file where nothing else is said.
extern const char* const kLibraryFile;

/// Lets the event loop of this thread do what is due. @return false when nothing was
bool runEventLoopOnce();

/// True when a display is there to show windows on.
bool hasDisplay();

/// Loads a library as hosts do. @return null, and a failed check, when that is impossible
void* loadLibrary(const char* path);
void* findSymbol(void* library, const char* name);
bool unloadLibrary(void* library);
/// Whether the module is still in the process.
bool isModuleLoaded();
/// Whether all of Qt that the module uses is in the process.
bool isQtLoaded();

/// Threads of this process.
int threadCount();

} // namespace native
