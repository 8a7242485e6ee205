// The library as a host sees it: loaded by path, known by its public header only.
#pragma once

#include "zrscreenmod.h"

#include <string>

// clang-format off
#define ZR_EXPORTS(X)                                                                              \
    X(Init) X(SetParent) X(MoveWindow) X(Release) X(ExitMeeting) X(AddPerson)                      \
    X(JoinMeetingFinish) X(DelPerson) X(PlayFrame) X(SetPersonInfo) X(SetMute) X(SetVolume)        \
    X(Preview) X(SetPersonHandUp) X(UpdateUserNetStatus) X(ChangeLayout) X(GetCurMode) X(ReOrder)  \
    X(FocusByUserID) X(LockLook) X(AllLook) X(SetActivateUser) X(SetCurrentSpeakingPerson)         \
    X(SetVoiceActivate) X(SetSupport9EqualCut) X(SetSupport16EqualCut) X(SetOpenPollingPage)       \
    X(SetLayoutCtrl) X(SetHideNoCameraWnd) X(IsPersonVisible) X(SetHideSmallWidget)                \
    X(ShowSmallWnd) X(GetSmallWndID) X(IsPersonVisibleInSmallWnd) X(SetShareSponsor)               \
    X(PopSelfShareWnd) X(SetIsCloseWhiteBoard) X(GetShareWgtPos) X(SetPauseShareWindow)            \
    X(SetExtendScreen) X(IsExtendScreen) X(SetVideoToolbarStatus) X(IsMouseOnBtnMore)              \
    X(ClearMoreMenuPtr) X(OpenSubtitle) X(ClearSubtitles) X(AddSentence)
// clang-format on

/// The library, loaded for the life of the object. The member `X` is the export `ZRScreen_X`.
class Module
{
public:
    Module();
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// Unloads the library early. Checks that it is really gone from the process.
    void unload();
    /// An export by its full name; null when there is none.
    [[nodiscard]] void* find(const char* name) const;
    /// Forgets the library without unloading it: it ends with the process.
    void leaveLoaded() { m_library = nullptr; }

#define ZR_MEMBER(member)                                                                          \
    decltype(&::ZRScreen_##member) member = nullptr; // NOLINT(bugprone-macro-parentheses)
    ZR_EXPORTS(ZR_MEMBER)
#undef ZR_MEMBER

private:
    void* m_library = nullptr;
};

/// A string argument. The interface takes `char*` but only reads it.
inline char* text(const std::string& value)
{
    return const_cast<char*>(value.c_str());
}
