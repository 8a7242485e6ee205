// The life of the module in the process: what comes to life when the library is attached, and in
// which order it goes.
#pragma once

class QApplication;
class QMyLogThread;

/// The process's application object while the module is attached; null before and after, and when
/// the module could not attach. GUI thread.
extern QApplication* g_pApp;
/// The log writer while the module is attached, else null. GUI thread.
extern QMyLogThread* g_pLogThread;

namespace zr {

/// Brings the module to life on the calling thread, which becomes the GUI thread. Does nothing
/// while it is attached. Called by the library entry.
void attachLibrary();

/// Sees to it that the log thread has begun. Lines that were logged before wait for it.
///
/// On Linux attaching starts the thread. On Windows no new thread begins while the library entry is
/// called, and one that has not begun cannot be stopped when the library is unloaded; so there the
/// first screen starts it, and without one unloading writes the lines. GUI thread.
void startLogThread();

/// Takes down everything that is left of the module. Does nothing unless attached. Called by the
/// library entry when the library is unloaded, and when the host's own application object ends.
/// GUI thread; on another one (which the contract with the host forbids) the application object
/// stays, and so do the widgets if the GUI thread does not come to its loop within a second.
void detachLibrary();

/// Sees to it that the module comes to rest when the process ends with the library still loaded:
/// calls are refused, the GUI thread stands still, the log is written, and nothing is destroyed.
/// That must come early among the exit handlers, which run in the reverse order of their
/// registration, and Qt registers many on first use; so this is to be called again after a screen
/// has been built, and repeats itself. A no-op on Windows, where the system has ended all other
/// threads by then. GUI thread.
void registerExitTeardown();

} // namespace zr
