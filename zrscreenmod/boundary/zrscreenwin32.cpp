// The exports of the screen. Each checks and converts its arguments, logs, and delegates.
#include "boundary.h"
#include "platform.h"

using boundary::askDialog;
using boundary::askGallery;
using boundary::guarded;
using boundary::onGallery;
using boundary::onHub;
using boundary::onPerson;
using boundary::postToGallery;
using boundary::readLocal8Bit;
using boundary::readRect;
using boundary::readUtf8;
using boundary::with;
using boundary::withPerson;

namespace {

/// Whether a play handle still stands for the participant that it was made for: the host may have
/// deleted them, and added others, from inside the message about it.
bool stands(const ScreenRef& screen, void* hScreen, void* play, quint64 serial)
{
    if (!IsVaildScreenHandle(hScreen))
        return false;
    const PersonPin found = boundary::resolvePlay(screen, play);
    return found && found->serial == serial;
}

} // namespace

// --- Life of a screen -------------------------------------------------------------------------

void* ZR_CALL ZRScreen_Init(HWND hParent, ZRNotify notify)
{
    ZR_ENTER(ZRScreen_Init, (hParent, notify));
    ZR_LOG_THREAD("thread:");
    return guarded<void*>(nullptr, [&]() -> void* {
        if (!boundary::isCallable(notify))
            return nullptr;
        return boundary::buildHandle([&] {
            ST_ZRScreenHdl* const screen = createScreen(hParent, notify);
            const platform::PriorityChange change = platform::setThreadPriorityTimeCritical();
            qDebug() << "SetThreadPriority,bRet:" << change.ok << ",prePriLevel:" << change.before
                     << ",curPriLevel:" << change.after;
            return screen;
        });
    });
}

int ZR_CALL ZRScreen_SetParent(void* hScreen, HWND hParent)
{
    ZR_ENTER(ZRScreen_SetParent, (hScreen, hParent));
    ZR_LOG_THREAD("current thread:");
    return askDialog(hScreen, 0, [hParent](QDlgMain& dialog) {
        dialog.moveInto(hParent);
        return 1;
    });
}

int ZR_CALL ZRScreen_MoveWindow(void* hScreen, tagRECT* pRect, int unused)
{
    ZR_ENTER(ZRScreen_MoveWindow, (hScreen, pRect, unused));
    ZR_LOG_THREAD("thread:");
    const auto rect = readRect(pRect);
    if (!rect)
        return 0;
    qDebug() << "rcScreen:" << *rect;
    return askDialog(hScreen, 0, [&rect](QDlgMain& dialog) {
        dialog.place(*rect);
        return 1;
    });
}

void ZR_CALL ZRScreen_Release(void* hScreen)
{
    ZR_ENTER(ZRScreen_Release, (hScreen));
    ZR_LOG_THREAD("current thread:");
    boundary::releaseHandle(g_screens, hScreen);
}

int ZR_CALL ZRScreen_ExitMeeting(void* hScreen)
{
    ZR_ENTER(ZRScreen_ExitMeeting, (hScreen));
    ZR_LOG_THREAD("current thread:");
    return askGallery(hScreen, 0, [](QDlgScreen& gallery) { return gallery.ProcessExitMeeting(); });
}

// --- Participants -----------------------------------------------------------------------------

void* ZR_CALL ZRScreen_AddPerson(void* hScreen, char* userId, char* userName, long long joinTime,
                                 int hostInt, void* hostValue)
{
    ZR_ENTER(ZRScreen_AddPerson, (hScreen, userId, userName, joinTime, hostInt, hostValue));
    ZR_LOG_THREAD("thead:");
    return guarded<void*>(nullptr, [&]() -> void* {
        const ScreenRef screen = g_screens.pin(hScreen);
        const auto id = readUtf8(userId);
        const auto givenName = readUtf8(userName);
        if (!screen || !id || !givenName)
            return nullptr;
        if (!userId) {
            qDebug() << "userId == nullptr failed";
            return nullptr;
        }
        const QString name = isShareScreenId(*id) ? QString() : *givenName;
        ST_ZRPlayHdl* play = screen->issuePlay(*id, name);
        calltrace::announce(play);
        quint64 serial = 0; // of the participant; none has 0
        // The tile is a widget and must be built on the GUI thread, and the caller gets a handle
        // that is complete: it waits.
        (void)screen.runOnGuiThread([&] { // which logs why not
            QDlgScreen* gallery = screen->m_pDlgMain->gallery();
            tagPersonInfo* person = gallery->AddPerson(*id, name, joinTime, hostInt, hostValue);
            screen->bindPlay(play, person);
            serial = person->serial;
            qDebug() << "before emit update personInfo, userID:" << *id << ",userName:" << name;
            gallery->onNotifyUpdateUserInfo(play, person);
            qDebug() << "after emit update personInfo, userID:" << *id << ",userName:" << name;
        });
        if (serial != 0 && stands(screen, hScreen, play, serial))
            return play;
        if (serial == 0)
            screen->deletePlay(play);
        return nullptr;
    });
}

int ZR_CALL ZRScreen_JoinMeetingFinish(void* hScreen, bool bFinish)
{
    ZR_ENTER(ZRScreen_JoinMeetingFinish, (hScreen, bFinish));
    ZR_LOG_THREAD("ZRScreen_JoinMeetingFinish thead:");
    return onGallery(hScreen,
                     [bFinish](QDlgScreen& gallery) { gallery.setJoinMeetingFinish(bFinish); });
}

int ZR_CALL ZRScreen_DelPerson(void* hScreen, void* pPlay, bool unused)
{
    ZR_ENTER(ZRScreen_DelPerson, (hScreen, pPlay, unused));
    const boundary::CallSite here = ZR_CALL_SITE;
    here.log("thread,hPlay:") << pPlay;
    return with(g_screens, hScreen, 0, [&](const ScreenRef& screen) {
        const PersonPin person = boundary::resolvePlay(screen, pPlay);
        // The handle is refused from here on, also by what the host calls from a message of this
        // very deletion. One whose participant has gone already is only taken back.
        if (!screen->deletePlay(pPlay))
            return 0;
        if (person)
            postToGallery(hScreen,
                          [p = person.get()](QDlgScreen& gallery) { gallery.onModDelPerson(p); });
        here.log("thread,pPerson:") << static_cast<void*>(person.get());
        return 1;
    });
}

int ZR_CALL ZRScreen_PlayFrame(void* hScreen, void* pPlay, void* pWin32Frame)
{
    ZR_ENTER(ZRScreen_PlayFrame, (hScreen, pPlay, pWin32Frame));
    return with(g_screens, hScreen, 0, [&](const ScreenRef& screen) {
        if (!pPlay) {
            qDebug() << "hPlay == nullptr failed";
            return 0;
        }
        if (!pWin32Frame) {
            qDebug() << "pWin32Frame == nullptr failed";
            return 0;
        }
        const PersonPin person = boundary::resolvePlay(screen, pPlay);
        if (!person)
            return 0;
        const auto frame = boundary::readFrame(pWin32Frame);
        return frame && screen->m_pDlgMain->gallery()->takeFrame(*person, *frame) ? 1 : 0;
    });
}

int ZR_CALL ZRScreen_SetPersonInfo(void* hScreen, void* pPlay, bool bSelf, int iRoleType,
                                   char* name, int iIdentity)
{
    ZR_ENTER(ZRScreen_SetPersonInfo, (hScreen, pPlay, bSelf, iRoleType, name, iIdentity));
    ZR_LOG_THREAD("thread:");
    return withPerson(hScreen, pPlay, [&](const ScreenRef& screen, const PersonPin& person) {
        const auto text = readUtf8(name);
        if (!text)
            return 0;
        screen->setPlayUserName(pPlay, *text);
        postToGallery(hScreen, [=, p = person.get(), text = *text](QDlgScreen& gallery) {
            gallery.onModPersonInfo(p, bSelf, iRoleType, text, iIdentity);
        });
        return 1;
    });
}

int ZR_CALL ZRScreen_SetMute(void* hScreen, void* pPlay, int bMute)
{
    ZR_ENTER(ZRScreen_SetMute, (hScreen, pPlay, bMute));
    ZR_LOG_THREAD("thread:");
    return onPerson(hScreen, pPlay, [bMute](QDlgScreen& gallery, tagPersonInfo* person) {
        gallery.onModAudioMute(person, bMute != 0);
    });
}

int ZR_CALL ZRScreen_SetVolume(void* hScreen, void* pPlay, int iVolume)
{
    ZR_ENTER(ZRScreen_SetVolume, (hScreen, pPlay, iVolume));
    const boundary::CallSite here = ZR_CALL_SITE;
    return withPerson(hScreen, pPlay, [&](const ScreenRef&, const PersonPin& person) {
        // Reports come ten times a second for everybody, and few change a microphone: only those
        // are logged and queued.
        if (noteVolume(*person, iVolume)) {
            here.log("thread:");
            postToGallery(hScreen, [p = person.get()](QDlgScreen& gallery) {
                gallery.updatePersonDisplayInfo(p);
            });
        }
        return 1;
    });
}

int ZR_CALL ZRScreen_Preview(void* hScreen, void* pPlay, bool bPreview)
{
    ZR_ENTER(ZRScreen_Preview, (hScreen, pPlay, bPreview));
    ZR_LOG_THREAD("thread:") << ",hPlay:" << pPlay << ",bPreview:" << bPreview;
    return onPerson(
        hScreen, pPlay,
        [bPreview](QDlgScreen& gallery, tagPersonInfo* person) {
            gallery.onModPreview(person, bPreview);
        },
        "iter != pScreen->mapHadDelPlay.end()");
}

int ZR_CALL ZRScreen_SetPersonHandUp(void* hScreen, void* pPlay, bool bHandUp)
{
    ZR_ENTER(ZRScreen_SetPersonHandUp, (hScreen, pPlay, bHandUp));
    ZR_LOG_THREAD("thread:");
    return onPerson(hScreen, pPlay, [bHandUp](QDlgScreen& gallery, tagPersonInfo* person) {
        gallery.onModPersonHandup(person, bHandUp);
    });
}

int ZR_CALL ZRScreen_UpdateUserNetStatus(void* hScreen, const char* userId, int dir, bool bIsWeak,
                                         int nNetStatus)
{
    ZR_ENTER(ZRScreen_UpdateUserNetStatus, (hScreen, userId, dir, bIsWeak, nNetStatus));
    ZR_LOG_THREAD("thread:");
    const auto id = readLocal8Bit(userId);
    if (!id)
        return 0;
    return onGallery(hScreen, [id = *id, dir, bIsWeak, nNetStatus](QDlgScreen& gallery) {
        gallery.UpdateUserNetStatus(id, dir, bIsWeak, nNetStatus);
    });
}

// --- Arrangement ------------------------------------------------------------------------------

int ZR_CALL ZRScreen_ChangeLayout(void* hScreen, eLayoutType eType,
                                  const std::map<int, std::string>& sorting)
{
    ZR_ENTER(ZRScreen_ChangeLayout, (hScreen, eType, &sorting));
    ZR_LOG_THREAD("thread:");
    // Queued together: the mode must not overtake the order it belongs to.
    return guarded(0, [&] {
        return onGallery(hScreen, [eType, sorting](QDlgScreen& gallery) {
            gallery.SetCustomizeSorting(sorting);
            QZRScreenConfig::getInstance()->switchMode(eType);
        });
    });
}

int ZR_CALL ZRScreen_GetCurMode(void* hScreen)
{
    ZR_ENTER(ZRScreen_GetCurMode, (hScreen));
    ZR_LOG_THREAD("thread:");
    int mode = 0;
    onHub(hScreen, [&mode](const QZRScreenConfig& hub) { mode = hub.curScreenMode(); });
    return mode;
}

int ZR_CALL ZRScreen_ReOrder(void* hScreen, bool bKeepFocusPerson)
{
    ZR_ENTER(ZRScreen_ReOrder, (hScreen, bKeepFocusPerson));
    ZR_LOG_THREAD("thread:");
    return onHub(hScreen, [bKeepFocusPerson](QZRScreenConfig& hub) {
        emit hub.notifyDisplayOrder(bKeepFocusPerson);
    });
}

int ZR_CALL ZRScreen_FocusByUserID(void* hScreen, char* userId, bool bVolActive)
{
    ZR_ENTER(ZRScreen_FocusByUserID, (hScreen, userId, bVolActive));
    ZR_LOG_THREAD("thread:");
    const auto id = readLocal8Bit(userId);
    if (!id)
        return 0;
    return onGallery(hScreen, [id = *id, bVolActive](QDlgScreen& gallery) {
        gallery.onModFocusByUserID(id, bVolActive);
    });
}

int ZR_CALL ZRScreen_LockLook(void* hScreen, void* pPlay, int bLock)
{
    ZR_ENTER(ZRScreen_LockLook, (hScreen, pPlay, bLock));
    ZR_LOG_THREAD("thread:");
    return onPerson(hScreen, pPlay, [bLock](QDlgScreen& gallery, tagPersonInfo* person) {
        gallery.onModLookLock(person, bLock != 0);
    });
}

int ZR_CALL ZRScreen_AllLook(void* hScreen, void* pPlay, int bAll)
{
    ZR_ENTER(ZRScreen_AllLook, (hScreen, pPlay, bAll));
    ZR_LOG_THREAD("thread:");
    return onPerson(hScreen, pPlay, [bAll](QDlgScreen& gallery, tagPersonInfo* person) {
        gallery.onModAllLook(person, bAll != 0);
    });
}

int ZR_CALL ZRScreen_SetActivateUser(void* hScreen, char* userId)
{
    ZR_ENTER(ZRScreen_SetActivateUser, (hScreen, userId));
    ZR_LOG_THREAD("thread:");
    const auto id = readLocal8Bit(userId);
    if (!id)
        return 0;
    return onHub(hScreen, [&id](QZRScreenConfig& hub) { emit hub.sigSetVoiceActivateUser(*id); });
}

int ZR_CALL ZRScreen_SetCurrentSpeakingPerson(void* hScreen, std::string userId)
{
    ZR_ENTER(ZRScreen_SetCurrentSpeakingPerson, (hScreen, userId));
    ZR_LOG_THREAD("thread:");
    return guarded(0, [&] {
        return onGallery(hScreen, [id = QString::fromStdString(userId)](QDlgScreen& gallery) {
            gallery.setCurrentSpeakingPerson(id);
        });
    });
}

int ZR_CALL ZRScreen_SetVoiceActivate(void* hScreen, bool bOpen)
{
    ZR_ENTER(ZRScreen_SetVoiceActivate, (hScreen, bOpen));
    ZR_LOG_THREAD("thread:");
    qDebug() << "xxx setVoiceActivate bOpen:" << bOpen;
    guarded(0, [bOpen] {
        QZRScreenConfig::Lock()->settings.voiceActivation = bOpen;
        return 1;
    });
    return 1;
}

int ZR_CALL ZRScreen_SetSupport9EqualCut(void* hScreen, bool bSupport)
{
    ZR_ENTER(ZRScreen_SetSupport9EqualCut, (hScreen, bSupport));
    ZR_LOG_THREAD("thread:");
    return onHub(hScreen, [bSupport](QZRScreenConfig& hub) {
        hub.settings.support9EqualCut = bSupport;
        emit hub.notifyDisplayOrder(true);
    });
}

int ZR_CALL ZRScreen_SetSupport16EqualCut(void* hScreen, bool bSupport)
{
    ZR_ENTER(ZRScreen_SetSupport16EqualCut, (hScreen, bSupport));
    ZR_LOG_THREAD("thread:");
    return onHub(hScreen,
                 [bSupport](QZRScreenConfig& hub) { hub.settings.support16EqualCut = bSupport; });
}

int ZR_CALL ZRScreen_SetOpenPollingPage(void* hScreen, bool bOpen, int iTickSec)
{
    ZR_ENTER(ZRScreen_SetOpenPollingPage, (hScreen, bOpen, iTickSec));
    ZR_LOG_THREAD("thread:");
    qDebug() << "ZRScreen_SetOpenPollingPage, bOpen:" << bOpen << ", iTickSec:" << iTickSec;
    return onHub(hScreen, [bOpen, iTickSec](QZRScreenConfig& hub) {
        hub.settings.pollingOpen = bOpen;
        hub.settings.pollingPeriodS = qMax(1, iTickSec);
        emit hub.sigOpenLayoutPoll();
    });
}

int ZR_CALL ZRScreen_SetLayoutCtrl(void* hScreen, bool bOpenLayoutCtrl, bool bLayoutFollow,
                                   int iShareIdx, int iSpeakerIdx, bool bNoVideoFilter)
{
    ZR_ENTER(ZRScreen_SetLayoutCtrl,
             (hScreen, bOpenLayoutCtrl, bLayoutFollow, iShareIdx, iSpeakerIdx, bNoVideoFilter));
    ZR_LOG_THREAD("thread:");
    qDebug() << "ZRScreen_SetLayoutCtrl, bOpenLayoutCtrl:" << bOpenLayoutCtrl
             << ",bLayoutFollow:" << bLayoutFollow << ",iShareIdx:" << iShareIdx
             << ",iSpeakerIdx:" << iSpeakerIdx << ",bNoVideoFilter:" << bNoVideoFilter;
    return onHub(hScreen, [=](QZRScreenConfig& hub) {
        hub.settings.openLayoutCtrl = bOpenLayoutCtrl;
        hub.settings.layoutFollow = bLayoutFollow;
        hub.settings.shareIdx = iShareIdx;
        hub.settings.speakerIdx = iSpeakerIdx;
        hub.settings.noVideoFilter = bNoVideoFilter;
        emit hub.notifyDisplayOrder(false);
    });
}

int ZR_CALL ZRScreen_SetHideNoCameraWnd(void* hScreen, bool unused)
{
    ZR_ENTER(ZRScreen_SetHideNoCameraWnd, (hScreen, unused));
    ZR_LOG_THREAD("thread:");
    // The filter is switched on with the layout control only; this export always switches it off.
    return onHub(hScreen, [](QZRScreenConfig& hub) {
        hub.settings.noVideoFilter = false;
        emit hub.notifyDisplayOrder(false);
    });
}

int ZR_CALL ZRScreen_IsPersonVisible(void* hScreen, char* userId)
{
    ZR_ENTER(ZRScreen_IsPersonVisible, (hScreen, userId));
    ZR_LOG_THREAD("thread:");
    const auto id = readLocal8Bit(userId);
    if (!id)
        return 0;
    return askGallery(hScreen, 0,
                      [&id](QDlgScreen& gallery) { return gallery.isPersonVisible(*id) ? 1 : 0; });
}

// --- Small window, sharing, extended screen ---------------------------------------------------

int ZR_CALL ZRScreen_SetHideSmallWidget(void* hScreen, bool bHide)
{
    ZR_ENTER(ZRScreen_SetHideSmallWidget, (hScreen, bHide));
    ZR_LOG_THREAD("thread:");
    return onHub(hScreen, [bHide](QZRScreenConfig& hub) { emit hub.sigSetHideSmallWnd(bHide); });
}

int ZR_CALL ZRScreen_ShowSmallWnd(void* hScreen, bool bShow, bool bMute)
{
    ZR_ENTER(ZRScreen_ShowSmallWnd, (hScreen, bShow, bMute));
    ZR_LOG_THREAD("thread:");
    return askGallery(hScreen, 0, [bShow, bMute](QDlgScreen& gallery) {
        const int result = gallery.showSmallWndWhenRestore(bShow);
        gallery.muteInvisiblePerson(bMute);
        return result;
    });
}

int ZR_CALL ZRScreen_GetSmallWndID(void* hScreen)
{
    ZR_ENTER(ZRScreen_GetSmallWndID, (hScreen));
    ZR_LOG_THREAD("thread:");
    return askGallery(hScreen, 0,
                      [](const QDlgScreen& gallery) { return gallery.GetSmallWndId(); });
}

int ZR_CALL ZRScreen_IsPersonVisibleInSmallWnd(void* hScreen, char* userId)
{
    ZR_ENTER(ZRScreen_IsPersonVisibleInSmallWnd, (hScreen, userId));
    ZR_LOG_THREAD("thread:");
    const auto id = readLocal8Bit(userId);
    if (!id)
        return 0;
    return askGallery(hScreen, 0, [&id](QDlgScreen& gallery) {
        return gallery.isPersonVisibleInSmallWnd(*id) ? 1 : 0;
    });
}

int ZR_CALL ZRScreen_SetShareSponsor(void* hScreen, std::string userId)
{
    ZR_ENTER(ZRScreen_SetShareSponsor, (hScreen, userId));
    ZR_LOG_THREAD("thread:");
    return onHub(hScreen, [&userId](QZRScreenConfig& hub) {
        hub.setShareSponsor(QString::fromStdString(userId));
        emit hub.notifyDisplayOrder(true);
    });
}

int ZR_CALL ZRScreen_PopSelfShareWnd(void* hScreen, bool bFloat, bool bMuteVideo)
{
    ZR_ENTER(ZRScreen_PopSelfShareWnd, (hScreen, bFloat, bMuteVideo));
    ZR_LOG_THREAD("thread:");
    return askGallery(hScreen, 0, [bFloat, bMuteVideo](QDlgScreen& gallery) {
        return gallery.OnPopSelfShareWnd(bFloat, bMuteVideo);
    });
}

int ZR_CALL ZRScreen_SetIsCloseWhiteBoard(void* hScreen)
{
    ZR_ENTER(ZRScreen_SetIsCloseWhiteBoard, (hScreen));
    ZR_LOG_THREAD("thread:");
    return onGallery(hScreen, [](QDlgScreen& gallery) { gallery.setCloseWhiteBoard(); });
}

ZRRect ZR_CALL ZRScreen_GetShareWgtPos(void* hScreen)
{
    ZR_ENTER(ZRScreen_GetShareWgtPos, (hScreen));
    ZR_LOG_THREAD("thread:");
    return askGallery(hScreen, ZRRect{0, 0, -1, -1}, [](QDlgScreen& gallery) {
        gallery.flushLayout();
        const QRect rect = gallery.shareRect();
        return ZRRect{rect.left(), rect.top(), rect.right(), rect.bottom()};
    });
}

int ZR_CALL ZRScreen_SetPauseShareWindow(void* hScreen, bool bPause)
{
    ZR_ENTER(ZRScreen_SetPauseShareWindow, (hScreen, bPause));
    ZR_LOG_THREAD("thread:");
    guarded(0, [hScreen, bPause] {
        const ScreenRef screen =
            g_screens.pin(hScreen); // logs a wrong one; the setting is everybody's
        QZRScreenConfig::Lock()->settings.pauseShare = bPause;
        boundary::refreshAllTiles();
        return 1;
    });
    return 1;
}

int ZR_CALL ZRScreen_SetExtendScreen(void* hScreen, bool bExtendScreen, bool bDeviceChange)
{
    ZR_ENTER(ZRScreen_SetExtendScreen, (hScreen, bExtendScreen, bDeviceChange));
    ZR_LOG_THREAD("thread:");
    return onHub(hScreen, [bExtendScreen, bDeviceChange](QZRScreenConfig& hub) {
        hub.settings.extendScreen = bExtendScreen;
        emit hub.sigSwitchExtendScreen(bExtendScreen, bDeviceChange);
    });
}

int ZR_CALL ZRScreen_IsExtendScreen(void)
{
    ZR_ENTER(ZRScreen_IsExtendScreen, ());
    ZR_LOG_THREAD("thread:");
    return guarded(0, [] { return QZRScreenConfig::Lock()->settings.extendScreen ? 1 : 0; });
}

// --- Menus and toolbar ------------------------------------------------------------------------

int ZR_CALL ZRScreen_SetVideoToolbarStatus(void* hScreen, tagRECT* pRect, bool bShow)
{
    ZR_ENTER(ZRScreen_SetVideoToolbarStatus, (hScreen, pRect, bShow));
    ZR_LOG_THREAD("thread:");
    const auto rect = readRect(pRect);
    if (!rect)
        return 0;
    return onGallery(hScreen, [rect = *rect, bShow](QDlgScreen& gallery) {
        gallery.onModScreenToolbar(rect, bShow);
    });
}

int ZR_CALL ZRScreen_IsMouseOnBtnMore(void* hScreen)
{
    ZR_ENTER(ZRScreen_IsMouseOnBtnMore, (hScreen));
    ZR_LOG_THREAD("thread:");
    // The answer itself is not the result, by design: every valid screen answers 1.
    return askGallery(hScreen, 0, [](QDlgScreen& gallery) {
        gallery.isMouseOnBtnMore();
        return 1;
    });
}

int ZR_CALL ZRScreen_ClearMoreMenuPtr(void* hScreen)
{
    ZR_ENTER(ZRScreen_ClearMoreMenuPtr, (hScreen));
    ZR_LOG_THREAD("thread:");
    onGallery(hScreen, [](QDlgScreen& gallery) { gallery.clearMoreMenuPerson(); });
    return 1;
}

// --- Subtitles --------------------------------------------------------------------------------

int ZR_CALL ZRScreen_OpenSubtitle(void* hScreen, bool bOpen)
{
    ZR_ENTER(ZRScreen_OpenSubtitle, (hScreen, bOpen));
    ZR_LOG_THREAD("current thread:");
    return askDialog(hScreen, 0, [bOpen](QDlgMain& dialog) {
        QZRScreenConfig::getInstance()->setSubtitleOpen(bOpen);
        qDebug() << "xxx openSubtitle bOpen:" << bOpen;
        dialog.showSubtitlePanel(bOpen);
        return 1;
    });
}

int ZR_CALL ZRScreen_ClearSubtitles(void* hScreen)
{
    ZR_ENTER(ZRScreen_ClearSubtitles, (hScreen));
    ZR_LOG_THREAD("current thread:");
    return onHub(hScreen, [](QZRScreenConfig& hub) {
        qDebug() << "ZRScreen_ClearSubtitles";
        hub.clearSubtitles();
    });
}

int ZR_CALL ZRScreen_AddSentence(void* hScreen, int iIDSentence, int iColorType, char* userName,
                                 char* transStr)
{
    ZR_ENTER(ZRScreen_AddSentence, (hScreen, iIDSentence, iColorType, userName, transStr));
    ZR_LOG_THREAD("current thread:");
    const auto name = readLocal8Bit(userName);
    const auto text = readLocal8Bit(transStr);
    if (!name || !text)
        return 0;
    return onHub(hScreen, [&](QZRScreenConfig& hub) {
        hub.AddOneSubtitle(iIDSentence, iColorType, *name, *text);
    });
}
