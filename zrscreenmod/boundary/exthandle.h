// The extended screens that hosts have.
#pragma once

#include "hosthandles.h"

#include <memory>

class QDlgExtScreen;

/// An extended screen. Created by createExtScreen; GUI thread.
struct ST_ZRExtHdl : HostHandle, HubUser
{
    ~ST_ZRExtHdl();

    std::unique_ptr<QDlgExtScreen> m_pDlg; ///< non-null for the handle's whole life
    /// Unlike those of the galleries its messages are not sent to all hosts: one that gives the
    /// same function to both would hear all of it twice.
    CWin32UICallback m_callback;
    PinCount pins;
};

extern HostHandles<ST_ZRExtHdl> g_extScreens;

/// A handle that was checked, kept alive for the duration of one call.
using ExtRef = Pin<ST_ZRExtHdl>;

/// Builds an extended screen inside `hParent`, hidden. GUI thread.
[[nodiscard]] ST_ZRExtHdl* createExtScreen(HWND hParent, ZRNotify notify);
