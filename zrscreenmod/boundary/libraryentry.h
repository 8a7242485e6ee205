// The life of the module in the process: what comes to life when the library is attached, and in
// which order it goes.
#pragma once

#include <functional>

class QApplication;
class QMyLogThread;

/// The process's application object while the module is attached; null before and after, and when
/// the module could not attach. GUI thread.
extern QApplication* g_pApp;
/// The log writer while the module is attached, else null. GUI thread.
extern QMyLogThread* g_pLogThread;

namespace zr {

/// Brings the module to life on the calling thread, which becomes the GUI thread. Does nothing
/// while it is attached, and when the program is going to make an application object of its own.
/// Called by the library entry, and by enterLibrary().
void attachLibrary();

/// Whether the module is attached, with which every export begins. In a program with an application
/// object of its own it attaches with the first call after that has been made. Any thread.
/// @return false, and a log line, when calls are to be refused
[[nodiscard]] bool enterLibrary();

/// Has the GUI thread make a piece of the interface for a host: a screen or a control, whatever it
/// is. It sees to what the module needs from the first one on: the log thread runs, and the module
/// comes to rest when the process ends.
///
/// The log thread: on Linux attaching starts it. On Windows no new thread begins while the library
/// entry is called, and one that has not begun cannot be stopped when the library is unloaded; so
/// there it starts here, and if no host ever asks for anything, unloading writes the lines. Any
/// thread.
/// @return as GuiThread::run
[[nodiscard]] bool buildForHost(const std::function<void()>& build);

/// Takes down everything that is left of the module. Does nothing unless attached. Called by the
/// library entry when the library is unloaded, and when the host's own application object ends.
/// GUI thread; on another one (which the contract with the host forbids) the application object
/// stays, and so do the widgets if the GUI thread does not come to its loop within a second.
void detachLibrary();

} // namespace zr
