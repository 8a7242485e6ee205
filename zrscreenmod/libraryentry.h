// The life of the module in the process: what comes to life when the library is attached, and in
// which order it goes.
#pragma once

class QApplication;

/// The process's application object while the module is attached; null before and after, and when
/// the module could not attach. GUI thread.
extern QApplication* g_pApp;

namespace zr {

/// Brings the module to life on the calling thread, which becomes the GUI thread. Does nothing
/// while it is attached. Called by the library entry.
void attachLibrary();

/// Takes down everything that is left of the module. Does nothing unless attached. Called by the
/// library entry when the library is unloaded, and at the end of the process.
///
/// On another thread than the GUI thread only threads are stopped: widgets cannot be destroyed
/// there.
void detachLibrary();

/// Sees to it that detachLibrary() comes early enough when the process ends with the library still
/// loaded: before Qt's own static objects go. They are destroyed in the reverse order of their
/// creation, and many are created on first use, so this is to be called again after a screen has
/// been built. A no-op on Windows, where the system calls the entry. GUI thread.
void registerExitTeardown();

} // namespace zr
