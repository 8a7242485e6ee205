// The records behind the host's handles, and the registries that tell a live handle from a stale
// one.
#pragma once

#include "personinfo.h"
#include "uimsgcallback.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

class QDlgMain;
struct ST_ZRScreenHdl;

/// Forwards the module's messages to the host of one screen.
class CWin32UICallback : public CAbsUIMsgCallback
{
public:
    bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam) override;
    ST_ZRScreenHdl* m_pHandle = nullptr; ///< the screen that owns this callback
};

/// What a play handle was found to be.
enum class PlayHandleState
{
    Valid,
    Deleted,    ///< deleted earlier, and its address not issued again
    Unreadable, ///< the handle's memory cannot be read
    Foreign,    ///< readable, but never issued by this screen
};

/// A screen. Created by createScreen, destroyed by releaseScreen, both on the GUI thread.
struct ST_ZRScreenHdl
{
    ZRNotify m_hostNotify = nullptr;
    QDlgMain* m_pDlgMain = nullptr; ///< owned; non-null for the whole life of a valid handle
    CWin32UICallback* m_pCallback = nullptr; ///< owned
    HWND m_hParent = nullptr;                ///< the parent given at creation
    /// Play handles that were deleted; a late frame with such a handle is refused. An address
    /// leaves the map when it is issued again.
    std::map<const void*, const void*> mapHadDelPlay;

    /// Makes a play handle that stands for nobody yet. Any thread.
    ST_ZRPlayHdl* issuePlay(const QString& userId, const QString& userName);
    /// Lets a play handle stand for a participant. Any thread.
    void bindPlay(ST_ZRPlayHdl* play, tagPersonInfo* person);
    /// Frees a play handle and remembers its address. @return false if it is not a live one. Any
    /// thread.
    bool deletePlay(void* pPlay);
    /// Looks a play handle up without touching its memory. `person` and `serial` are set for a
    /// valid one. Any thread.
    [[nodiscard]] PlayHandleState findPlay(const void* pPlay, tagPersonInfo** person,
                                           quint64* serial) const;
    /// Stores the name that the host gave a participant with its play handle. Any thread.
    void setPlayUserName(const void* pPlay, const QString& userName);

    std::atomic<int> pins{0}; ///< calls under way; see ScreenRef
    int guiPins = 0;          ///< those of the GUI thread, which a release must not wait for

private:
    struct IssuedPlay
    {
        std::unique_ptr<ST_ZRPlayHdl> handle;
        quint64 personSerial; ///< tells the participant from a later one at the same address
    };
    mutable std::mutex m_playLock; ///< guards the two maps
    std::unordered_map<const void*, IssuedPlay> m_mapPlay;
};

/// A screen handle that was checked, kept alive for the duration of one call. An invalid one is
/// logged. Any thread.
class ScreenRef
{
public:
    explicit ScreenRef(void* hScreen);
    ~ScreenRef();
    ScreenRef(const ScreenRef&) = delete;
    ScreenRef& operator=(const ScreenRef&) = delete;
    explicit operator bool() const { return m_screen != nullptr; }
    ST_ZRScreenHdl* operator->() const { return m_screen; }
    bool isCountedOnGuiThread() const { return m_bGuiThread; }

private:
    ST_ZRScreenHdl* m_screen = nullptr;
    bool m_bGuiThread = false;
};

/// The GUI thread works on a screen for another thread's call, which waits meanwhile: a release
/// from inside must treat that call as one of the GUI thread's own. GUI thread.
class GuiStay
{
public:
    explicit GuiStay(const ScreenRef& screen)
        : m_lent(screen.isCountedOnGuiThread() ? nullptr : screen.operator->())
    {
        if (m_lent)
            ++m_lent->guiPins;
    }
    ~GuiStay()
    {
        if (m_lent)
            --m_lent->guiPins;
    }
    GuiStay(const GuiStay&) = delete;
    GuiStay& operator=(const GuiStay&) = delete;

private:
    ST_ZRScreenHdl* m_lent;
};

/// True for the handle of a screen that is alive. A dangling or foreign pointer is not touched.
/// Any thread.
[[nodiscard]] bool IsVaildScreenHandle(const void* hScreen);

/// Builds a screen inside `hParent` and shows it. GUI thread.
ST_ZRScreenHdl* createScreen(HWND hParent, ZRNotify notify);
/// Destroys a screen once no other thread works on it; a screen that the GUI thread itself is
/// working on (the host released it from inside a message or a call) is taken off the registry at
/// once and destroyed from the event loop. GUI thread.
void releaseScreen(void* hScreen);
/// Returns all settings to their defaults when neither a screen nor an extended screen is left. GUI
/// thread.
void startAfreshIfUnused();
/// Destroys every screen that is left, for the end of the module. GUI thread.
void releaseAllScreens();
/// Takes every screen off the registry without destroying it, so that no call finds one any more,
/// and gives the calls under way a moment to end; for the end of the process. Any thread.
void abandonAllScreens();
