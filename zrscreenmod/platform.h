// Every service of the operating system that the module needs. One implementation per system:
// platform_x11.cpp and platform_win32.cpp.
#pragma once

#include "zrscreenmod.h"

#include <QRect>
#include <QtGlobal>

#include <cstddef>

namespace platform {

/// Identifies a native window: an X11 window id, or the value of a Win32 HWND. 0 is no window.
using NativeWindow = quintptr;

inline NativeWindow toNative(HWND window)
{
    return reinterpret_cast<NativeWindow>(window);
}

/// What setThreadPriorityTimeCritical did; the values are the system's own numbers.
struct PriorityChange
{
    bool ok;
    int before;
    int after;
};

/// Prepares the process for a QApplication (called once, before it is created): on X11 chooses
/// the xcb platform, or the offscreen one when no display can be opened, unless the environment
/// names a platform.
void prepareApplication();

/// Keeps the Qt libraries mapped when the module is unloaded: their exit handlers and threads
/// may outlive it. A no-op on Windows.
void keepQtLoaded();

/// Makes `child` a child of `parent`, at (0, 0); with parent 0 detaches it to the top level.
/// @return false when the system refuses or the platform has no such windows. GUI thread.
[[nodiscard]] bool setParentWindow(NativeWindow child, NativeWindow parent);

/// Gives a window the style of a plain child that clips its own children. GUI thread.
void setChildStyle(NativeWindow window);

/// Places a window in its parent, on top of its siblings, and shows it. Coordinates are the
/// parent's pixels; the system decides what a size below 1 means (X11: 1). GUI thread.
void placeWindow(NativeWindow window, const QRect& rect);

/// True when every probed byte of [p, p + size) can be read. The memory is not touched by this
/// process in a way that could fault. Probes the first and the last byte, and every page between
/// them when the range is at most 64 KiB long. False for null and for ranges that wrap around.
/// Any thread.
[[nodiscard]] bool isReadable(const void* p, std::size_t size);

/// Length of the zero-terminated string at `text`, found without touching unreadable memory.
/// @return -1 when `text` is null, or memory ends before a terminator is found. Any thread.
[[nodiscard]] qptrdiff readableStringLength(const char* text);

/// Milliseconds since an arbitrary start, wrapping around after 49.7 days. Any thread.
[[nodiscard]] quint32 tickMs();

/// Primary screen's size in physical pixels; 0 where there is no screen. GUI thread.
[[nodiscard]] int screenWidthPx();
[[nodiscard]] int screenHeightPx();

/// Raises the calling thread to the highest priority that the system grants without privileges.
PriorityChange setThreadPriorityTimeCritical();

} // namespace platform
