// The module's exports as a table of function pointers: the host never links the library.
#pragma once

#include "control_api.h"
#include "ext_api.h"
#include "zrscreenmod/zrscreenmod.h"

#include <functional>

namespace zrhost {

/// Every export of the screen, without its prefix `ZRScreen_`.
#define ZRHOST_SCREEN_EXPORTS(X)                                                                   \
    X(Init)                                                                                        \
    X(SetParent)                                                                                   \
    X(MoveWindow)                                                                                  \
    X(Release)                                                                                     \
    X(ExitMeeting)                                                                                 \
    X(AddPerson)                                                                                   \
    X(JoinMeetingFinish)                                                                           \
    X(DelPerson)                                                                                   \
    X(PlayFrame)                                                                                   \
    X(SetPersonInfo)                                                                               \
    X(SetMute)                                                                                     \
    X(SetVolume)                                                                                   \
    X(Preview)                                                                                     \
    X(SetPersonHandUp)                                                                             \
    X(UpdateUserNetStatus)                                                                         \
    X(ChangeLayout)                                                                                \
    X(GetCurMode)                                                                                  \
    X(ReOrder)                                                                                     \
    X(FocusByUserID)                                                                               \
    X(LockLook)                                                                                    \
    X(AllLook)                                                                                     \
    X(SetActivateUser)                                                                             \
    X(SetCurrentSpeakingPerson)                                                                    \
    X(SetVoiceActivate)                                                                            \
    X(SetSupport9EqualCut)                                                                         \
    X(SetSupport16EqualCut)                                                                        \
    X(SetOpenPollingPage)                                                                          \
    X(SetLayoutCtrl)                                                                               \
    X(SetHideNoCameraWnd)                                                                          \
    X(IsPersonVisible)                                                                             \
    X(SetHideSmallWidget)                                                                          \
    X(ShowSmallWnd)                                                                                \
    X(GetSmallWndID)                                                                               \
    X(IsPersonVisibleInSmallWnd)                                                                   \
    X(SetShareSponsor)                                                                             \
    X(PopSelfShareWnd)                                                                             \
    X(SetIsCloseWhiteBoard)                                                                        \
    X(GetShareWgtPos)                                                                              \
    X(SetPauseShareWindow)                                                                         \
    X(SetExtendScreen)                                                                             \
    X(IsExtendScreen)                                                                              \
    X(SetVideoToolbarStatus)                                                                       \
    X(IsMouseOnBtnMore)                                                                            \
    X(ClearMoreMenuPtr)                                                                            \
    X(OpenSubtitle)                                                                                \
    X(ClearSubtitles)                                                                              \
    X(AddSentence)

/// One member per export, with the export's own type.
struct ScreenApi
{
// NOLINTNEXTLINE(bugprone-macro-parentheses): a member's name takes none
#define ZRHOST_MEMBER(name) decltype(&::ZRScreen_##name) name = nullptr;
    ZRHOST_SCREEN_EXPORTS(ZRHOST_MEMBER)
#undef ZRHOST_MEMBER
    decltype(&::ZRScreenWtmark_SetInfo) WtmarkSetInfo = nullptr;
    decltype(&::ZRScreenWtmark_SetEnabled) WtmarkSetEnabled = nullptr;
    ControlApi controls;
    ExtApi ext;

    /// Looks every export up by its full name.
    /// @throws HostError that names all exports for which `lookUp` returns null
    [[nodiscard]] static ScreenApi resolve(const std::function<void*(const char*)>& lookUp);
};

} // namespace zrhost
