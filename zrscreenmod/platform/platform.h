// Every service of the operating system that the module needs. One implementation per system:
// platform_x11.cpp and platform_win32.cpp.
#pragma once

#include "hostmemory.h"
#include "zrtypes.h"

#include <QPoint>
#include <QRect>
#include <QString>
#include <QtGlobal>

#include <chrono>

class QApplication;

namespace platform {

/// Identifies a native window: an X11 window id, or the value of a Win32 HWND. 0 is no window.
using NativeWindow = quintptr;

inline NativeWindow toNative(HWND window)
{
    return reinterpret_cast<NativeWindow>(window);
}

/// What setThreadPriorityTimeCritical did. The values are the system's own numbers: thread
/// priorities on Windows (higher is sooner), nice values on Linux (lower is sooner).
struct PriorityChange
{
    bool ok; ///< the thread has the wanted priority now
    int before;
    int after;
};

/// Creates the process's QApplication; the caller owns it. `argc` and `argv` must outlive it. What
/// the environment says of scaling does not reach it. On X11 it runs on the xcb platform, or draws
/// off screen when no display can be opened, unless the environment names another platform than
/// Wayland, and on GLib's event loop. The environment is the same afterwards, and so is the locale
/// but for its character set, which Qt needs. The calling thread becomes the GUI thread. Null when
/// Qt's platform plug-in is not found, for which Qt would end the process.
[[nodiscard]] QApplication* createApplication(int& argc, char** argv);

/// Whether the program has widgets of Qt's without the module, and so is going to make an
/// application object. On X11 what is loaded with it counts as well. GUI thread.
[[nodiscard]] bool programUsesWidgets();

/// Keeps the libraries of Qt, and on X11 of the window and drawing system below it, in memory when
/// the module is unloaded: their exit handlers, threads and thread-local data outlive it. Call it
/// once they are all loaded, again when more may have come. Any thread.
void keepQtLoaded();

/// Keeps the module itself in memory, even when it is unloaded; for the end of the process. A no-op
/// on Windows. Any thread.
void keepModuleLoaded();

/// Whether the system still has this window. GUI thread.
[[nodiscard]] bool windowExists(NativeWindow window);

// All that puts a native window somewhere goes through setParentWindow and placeWindow: they have
// the system do it and tell Qt in the same step. A position or a size that is asked for in the same
// turn of the event loop is right, and Qt never takes a place for the present one that it is not.

/// Makes `child` a child of `parent`, whatever it belonged to before, and keeps its size; with
/// parent 0 detaches it to the top level. To move a window from one parent to another, one call is
/// enough, and better: a window manager may grab a window that is at the top level in between.
/// @param at of the upper left corner, in the parent's pixels; not used for a window that is at the
///           top level and to stay there
/// @return false when the system refuses or the platform has no such windows; the window then
/// stays where it was. GUI thread.
[[nodiscard]] bool setParentWindow(NativeWindow child, NativeWindow parent, const QPoint& at = {});

/// Whether windows can go into one another here: not where the module draws off screen. GUI thread.
[[nodiscard]] bool canEmbed();

/// Whether a window at the top level is where it was placed when the call has returned: on X11 a
/// window manager decides, some time later.
[[nodiscard]] bool placesAtOnce();

/// Gives a window the style of a plain child that clips its own children: no frame, no border.
/// GUI thread.
void setChildStyle(NativeWindow window);

/// Places a window in its parent, in the parent's pixels; a hidden one stays hidden. Positions
/// beyond +-32767 and sides beyond 1 to 16384 are brought there: window systems and GL drivers take
/// no more. The widget has had its resize event when this returns, unless it is hidden. GUI thread.
void placeWindow(NativeWindow window, const QRect& rect);

/// Raises a window above its siblings and shows it. GUI thread.
void showOnTop(NativeWindow window);

/// Directs the keyboard to a window. Needed for one inside a window of the host's, to which neither
/// Qt nor a window manager gives it. @return false when the system refuses: X11 does for a window
/// that is not visible with all its parents. GUI thread.
bool takeKeyboardFocus(NativeWindow window);

/// True while the system sends the keys to this window. GUI thread.
[[nodiscard]] bool hasKeyboardFocus(NativeWindow window);

/// Hands the keyboard to the parent of a window, if the window has it. @return whether it did. GUI
/// thread.
bool returnKeyboardFocus(NativeWindow window);

/// The inside of a window, in screen pixels; unset when there is no such window. GUI thread.
[[nodiscard]] QRect clientRectOnScreen(NativeWindow window);

/// Where programs keep what they have noted, for the user: XDG_STATE_HOME, or the local application
/// data on Windows. Any thread.
[[nodiscard]] QString stateFolder();

/// The system's number of the calling thread, as debuggers show it. Any thread.
[[nodiscard]] quint64 threadNumber();

/// Milliseconds since an arbitrary start, wrapping around after 49.7 days. Any thread.
[[nodiscard]] quint32 tickMs();
/// Milliseconds since an arbitrary start that no change of the clock moves. Any thread.
[[nodiscard]] inline qint64 steadyMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

/// Primary screen's size in physical pixels, or in the units of a host that scales its windows; 0
/// where there is no screen. GUI thread.
[[nodiscard]] int screenWidthPx();
[[nodiscard]] int screenHeightPx();

/// Raises the calling thread as far above ordinary threads as the system lets it: time-critical on
/// Windows, nice -10 on Linux, where a real-time class would let a GUI thread that draws in
/// software lock out the rest of the machine. Threads that the calling thread starts later inherit
/// the nice value.
PriorityChange setThreadPriorityTimeCritical();

} // namespace platform
