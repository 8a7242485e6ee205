// The extended screens that hosts have, and the registry that tells a live handle from a stale one.
#pragma once

#include "uimsgcallback.h"
#include "zrscreenmod.h"

#include <atomic>

class QDlgExtScreen;
struct ST_ZRExtHdl;

/// Forwards the messages of one extended screen to its host. Unlike those of the galleries they are
/// not sent to all hosts: a host that gives the same function to both would hear all of it twice.
class CWin32ExtCallback : public CAbsUIMsgCallback
{
public:
    bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam) override;
    ST_ZRExtHdl* m_pHandle = nullptr; ///< the extended screen that owns this callback
};

/// An extended screen. Created by createExtScreen, destroyed by releaseExtScreen or with the
/// module; GUI thread.
struct ST_ZRExtHdl
{
    ZRNotify m_hostNotify = nullptr;
    QDlgExtScreen* m_pDlg = nullptr; ///< owned; non-null for the whole life of a valid handle
    HWND m_hParent = nullptr;        ///< the parent given at creation
    CWin32ExtCallback m_callback;
    std::atomic<int> pins{0}; ///< calls of other threads than the GUI thread; see ExtRef
};

/// A handle that was checked, kept alive for the duration of one call: do not wait for the GUI
/// thread meanwhile. A handle that is not valid is logged, but for null. Any thread.
class ExtRef
{
public:
    explicit ExtRef(const void* handle);
    ~ExtRef();
    ExtRef(const ExtRef&) = delete;
    ExtRef& operator=(const ExtRef&) = delete;
    explicit operator bool() const { return m_ext != nullptr; }
    QDlgExtScreen* operator->() const { return m_ext->m_pDlg; }

private:
    ST_ZRExtHdl* m_ext = nullptr;
    bool m_bPinned = false;
};

/// Builds an extended screen inside `hParent`, hidden. GUI thread.
[[nodiscard]] ST_ZRExtHdl* createExtScreen(HWND hParent, ZRNotify notify);
/// Destroys an extended screen once no other thread works on it: at once, or from the event loop
/// when the GUI thread is inside a message to a host. Checks the handle as above. GUI thread.
void releaseExtScreen(void* handle);
/// Destroys what is left, for the end of the module. GUI thread.
void releaseAllExtScreens();
/// GUI thread.
[[nodiscard]] bool isAnyExtScreenLeft();
/// Takes all extended screens off the registry without destroying them, as abandonAllScreens. Any
/// thread.
void abandonAllExtScreens();
