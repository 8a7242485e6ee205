// The screens that hosts have, and the play handles of each.
#pragma once

#include "hosthandles.h"
#include "locks.h"
#include "personinfo.h"

#include <map>
#include <memory>
#include <unordered_map>

class QDlgMain;

/// What a play handle was found to be.
enum class PlayHandleState
{
    Valid,
    Deleted,    ///< deleted earlier, and its address not issued again
    Unreadable, ///< the handle's memory cannot be read
    Foreign,    ///< readable, but never issued by this screen
};

/// A screen. Created by createScreen; GUI thread, except where a function says otherwise.
struct ST_ZRScreenHdl : HostHandle, HubUser
{
    ~ST_ZRScreenHdl();

    std::unique_ptr<QDlgMain> m_pDlgMain; ///< non-null for the whole life of a valid handle
    CWin32UICallback m_callback;
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
    [[nodiscard]] PlayHandleState findPlay(const void* pPlay, const tagPersonInfo** person,
                                           quint64* serial) const;
    /// Stores the name that the host gave a participant with its play handle. Any thread.
    void setPlayUserName(const void* pPlay, const QString& userName);

    PinCount pins;

private:
    struct IssuedPlay
    {
        std::unique_ptr<ST_ZRPlayHdl> handle;
        quint64 personSerial; ///< tells the participant from a later one at the same address
    };
    mutable platform::Mutex m_playLock; ///< guards the two maps
    std::unordered_map<const void*, IssuedPlay> m_mapPlay;
};

extern HostHandles<ST_ZRScreenHdl> g_screens;

/// A screen handle that was checked, kept alive for the duration of one call.
using ScreenRef = Pin<ST_ZRScreenHdl>;

/// True for the handle of a screen that is alive; logs any other one. Any thread.
[[nodiscard]] bool IsVaildScreenHandle(const void* hScreen);

/// Builds a screen inside `hParent` and shows it. GUI thread.
[[nodiscard]] ST_ZRScreenHdl* createScreen(HWND hParent, ZRNotify notify);
