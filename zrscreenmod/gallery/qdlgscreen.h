// The gallery: the participants of the meeting, their tiles, and how these are arranged.
#pragma once

#include "focus.h"
#include "layoutgeometry.h"
#include "pagecontrols.h"
#include "paging.h"
#include "personinfo.h"
#include "reaper.h"
#include "roster.h"
#include "share.h"

#include <QDialog>
#include <QEvent>
#include <QHash>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zr {
enum class LeaveEffect;
struct SpeakerKey;
} // namespace zr
class QDlgNoVideo;
class QZRScreenConfig;
class SpeakTool;

/// What belongs to one meeting beside its participants. A gallery serves one meeting after the
/// other, and none is to begin with what the one before has left.
struct MeetingState
{
    Focus m_focus;
    Voices m_voices;
    ShareState m_share;
    int m_iPage = 0;
    int m_iPollTick = 0;                        ///< counts the turns of a poll
    int m_iLaidOutMode = 0;                     ///< that of the last arrangement; 0 before it
    QHash<QString, int> m_mapCustomizedPersons; ///< rank by user id
    int m_iLookMode = eLayoutEqualCut;          ///< the mode after the last change of a look
    bool m_bHideSmallWnd = false;
    bool m_bSelfShareFloat = false;          ///< the local user shares, and the tool floats over it
    bool m_bSpeakToolHidden = false;         ///< the host wants no tool
    bool m_bPlaceTool = true;                ///< the tool is to be placed when it is shown next
    std::vector<quint64> m_vecLoggedSerials; ///< a page's places as they were logged last
};

/// Owns the participants and their tiles. Everything here belongs to the GUI thread but
/// playFrame, which any thread may call.
///
/// A record pointer that comes from outside (a queued signal, the host) is believed only after
/// livePerson found it; what is left of a deleted participant does nothing.
class QDlgScreen : public QDialog, private MeetingState
{
    Q_OBJECT

public:
    explicit QDlgScreen(QWidget* parent);
    ~QDlgScreen() override;

    // --- Registry (qdlgscreen_registry.cpp) ---
    /// Adds a participant with its tile, or finds the one that has the id already.
    tagPersonInfo* AddPerson(const QString& userId, const QString& userName, qint64 joinTime,
                             int hostInt, void* pUserData);
    /// Removes a participant. The mode is then the one before the first share when the last share
    /// has gone, and the one of the last pin when who was in the speaker tool has; beside a share
    /// it stays, since nobody's leaving may shrink a share.
    bool DelPerson(tagPersonInfo* person);
    bool updatePersonInfo(void* pPerson, bool bSelf, int iRoteType, const QString& name,
                          int roleExtra);
    void setJoinMeetingFinish(bool bFinish);
    /// Stops the timers, empties the gallery, and forgets what belonged to the meeting. @return 1
    int ProcessExitMeeting();
    /// The participant behind a pointer, or null when it is not one of this gallery's.
    tagPersonInfo* livePerson(const void* pPerson) const { return m_roster.live(pPerson); }
    tagPersonInfo* findPerson(const QString& userId) const { return m_roster.byUserId(userId); }

    // --- Frames (qdlgscreen_frames.cpp) ---
    /// Takes one frame, on any thread; the caller has pinned the record. The frame record is
    /// readable; its picture is probed here. @return false when the frame was refused.
    bool takeFrame(tagPersonInfo& person, const VantrelRTCVideoFrameQT& frame);
    /// takeFrame for a participant who may be gone, which is logged.
    bool playFrame(void* pPerson, const VantrelRTCVideoFrameQT* frame);

    // --- Arrangement (qdlgscreen_layout.cpp) ---
    /// Arranges the tiles for the current mode.
    void reLayout();
    /// Arranges the tiles once, when the event loop is reached: calls in a row cost one
    /// arrangement.
    void scheduleLayout();
    /// Carries out an arrangement that is scheduled; for queries of what is visible.
    void flushLayout();
    bool setMeetingMode(eLayoutType mode);
    /// Gives the gallery the tool that shows the next speaker in modes 4 and 5; without one the
    /// next speaker is not visible. To be called before there are participants.
    void setSpeakTool(std::unique_ptr<SpeakTool> tool);
    /// Where a shared screen's picture is, in screen pixels; unset without a picture. Tells the
    /// host when it is not what this gallery told last.
    QRect shareRect();
    bool isPersonVisible(const QString& userId);

    // --- Order (qdlgscreen_order.cpp) ---
    /// Starts the timer that looks once a second for a new order, unless it runs.
    void startCheckTimer();

    // --- Pages and polling (qdlgscreen_pages.cpp) ---
    /// Turn the page; refused within 400 ms of the last turn. @param bWrap go on from the last
    /// page to the first @return false when refused
    bool pageNext(bool bWrap);
    bool pagePre();
    /// The page that is shown, from 0.
    int page() const { return m_iPage; }
    /// Pages of the current arrangement; 0 for one that has none.
    int pageCount() const;
    /// Replaces the clock of the page turns: milliseconds that never go back.
    void setPageClock(std::function<qint64()> nowMs) { m_pageClock = std::move(nowMs); }

    // --- Focus and the small window (qdlgscreen_focus.cpp) ---
    /// Makes a participant the speaker, chosen by a user or the host, and arranges the tiles.
    /// @param mode applied when the focus person changes; 0 keeps the mode @return true
    bool setFocusPerson(tagPersonInfo* person, int mode);
    /// The speaker whom a user or the host has chosen; null while the arrangements choose.
    const tagPersonInfo* chosenFocus() const { return m_focus.chosen(); }
    /// Makes a tile's participant the speaker, and tells the host whose stream is the large one.
    /// @return whether the focus has moved
    bool changePersonToFocus(CPlayWidget* tile);
    /// The small window is the speaker tool where it is in use, else the strip beside the speaker.
    bool isPersonVisibleInSmallWnd(const QString& userId);

    // --- Streams (qdlgscreen_streams.cpp) ---
    /// Takes the host's report that a participant's stream is open or closed.
    void setPreview(void* pPerson, bool bPreview);
    /// Records the grade that a tile needs; the host is asked with the next frame.
    void setPersonStreamType(tagPersonInfo* person, int iStreamType);
    /// Asks the host for a grade; never for a shared screen, which has one only.
    void switchStream(tagPersonInfo* person, int streamType);
    void setPersonDefStreamType(void* pPerson);
    /// Reports tiles to the host: those that have become visible, and with true also those that
    /// have been invisible for long enough.
    void changePersonVideoMute(bool bMute);
    /// Reports every participant without a visible tile as hidden, while the local user shares.
    void muteInvisiblePerson(bool bMute);

    // --- Look modes, audio, menus (qdlgscreen_look.cpp) ---
    bool setAllLook(void* pPerson, bool bAllLook);
    bool setLockLookPerson(void* pPerson, bool bLock);
    bool setMute(void* pPerson, bool bMute);
    void setCurrentSpeakingPerson(const QString& userId);
    /// Records in the log that the host closed its whiteboard: nothing that is shown depends on it.
    void setCloseWhiteBoard();
    /// Forgets the "more" menu's participant when the mouse has left its tile.
    void testHideMoreMenu();
    void clearMoreMenuPerson() { m_pMorePerson = nullptr; }
    bool isMouseOnBtnMore() const;

public slots:
    void onLeftBtnDBClick(CPlayWidget* tile);
    void onPlayStatusChange(CPlayWidget* tile);
    void onPlayWidgetLBtnClick(CPlayWidget* tile);
    void onWheel(int iStep);
    /// Turns the page for Qt::Key_PageUp, _PageDown, _Left and _Right.
    void onKey(int iKey);
    void onClickAudioCtl(void* pPerson);
    void onClickMore(void* pPerson, int igPosRight);
    /// Orders and arranges the participants anew. @param bKeepFocusPerson a shared screen neither
    /// becomes the focus person nor ends the focus. It does so here and not with every arrangement:
    /// whom the host makes the speaker afterwards would lose the focus at once.
    void onDisplayOrder(bool bKeepFocusPerson = false);
    /// Whether the small window shows the participant.
    bool IsBindToSmallWnd(ST_PersonInfo* person);
    void onHandleHandup(void* pPerson);
    void onPlayFrameUpdateUI(void* pPerson, int iWidth, int iHeight);
    void onLookToast(bool bAll);
    void onClickPageCtl(QWidget* control);
    void onNotifyUpdateUserInfo(void* pPlayHdl, void* pPerson);
    /// A click on the extended screen is one on the participant whom it shows.
    void onNotifyClickExtPlayWidget(void* pTile);
    void onNotifyExtUserLeft(const QString& userId);
    /// Orders the participants. @param bJustTestSorting only compare with the present order
    /// @return whether the order differs from the one before
    bool SortCurrentPersons(bool bJustTestSorting);
    int OnPopSelfShareWnd(bool bFloat, bool bMuteVideo = false);
    /// The native id of the speaker tool's window while it is open, else 0.
    int GetSmallWndId() const;
    void onModMove(QRect rc);
    void onModAllLook(void* pPerson, bool bAllLook);
    void onModPreview(void* pPerson, bool bPreview);
    void onSetHideSmallWnd(bool bHide);
    int showSmallWndWhenRestore(bool bShow);
    void onModDelPerson(void* pPerson);
    void onModLookLock(void* pPerson, bool bLockLook);
    void onMeetingMode(int iMode);
    void onModVideoSize(void* pPerson, int iWidth, int iHeight);
    void onModScreenToolbar(QRect rc, bool bShow);
    void onModAudioMute(void* pPerson, bool bMute);
    void onModPersonInfo(void* pPerson, bool bSelf, int iRoleType, QString qstrName, int iIdentity);
    void onModVolume(void* pPerson, int iVolume);
    void onModPersonHandup(void* pPerson, bool bHandUp);
    void onModAddPerson(void* pPerson);
    void onModFocusByUserID(QString qstrUserID, bool bVolActive);
    void onModSwitchMode(int eType);
    void onModHideSpeakTool(bool bshare);
    void onModShowSpeakTool(bool bshare);
    void notifyLButtonClick();
    bool IsPersonInCustomizeSort(ST_PersonInfo* person);
    void OnSetVoiceActivateUser(QString qstrUserID);
    /// Shows who has begun to speak: as the speaker where voice activation may choose, else in the
    /// small window.
    void ActivateIntoSmallWnd(ST_PersonInfo* newActivatedPerson, ST_PersonInfo* oldActivatedPerson);
    /// Has all tiles of a participant follow what has changed in the record.
    void updatePersonDisplayInfo(ST_PersonInfo* person);
    void OnSwitchExtendScreen(bool bExtendScreen, bool bDeviceChange = false);
    /// Replaces the places that the host gives: position to user id. Ids that nobody has do no
    /// harm, and of two positions for one id the lower counts.
    void SetCustomizeSorting(std::map<int, std::string> grpSorting);
    void UpdateUserNetStatus(QString qstrUserID, int dir, bool bIsWeak, int nNetStatus);
    /// Starts or ends polling as the settings say, from the first page on.
    void onOpenLayoutPoll();
    /// Follows the meeting mode, whichever gallery has changed it.
    void onCurScreenMode(int mode);

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // Only the gallery itself sends and gets these.
    static constexpr QEvent::Type kLayoutEvent = QEvent::User;
    static constexpr QEvent::Type kFreeRetiredEvent = static_cast<QEvent::Type>(QEvent::User + 1);

    // Construction and events
    void connectHub();
    QZRScreenConfig& hub() const;

    // Registry
    void enterShare(tagPersonInfo* share);
    void applyLeave(zr::LeaveEffect effect);
    /// The share sponsor's screen, else the one that comes first in the join order; null without
    /// one.
    tagPersonInfo* firstShare() const;
    /// The participant behind a pointer; logs one that no gallery knows any more.
    tagPersonInfo* checkedPerson(const void* pPerson, const char* ifGone = "testDelPerson") const;
    /// Whether to log a pointer that is not null, and of nobody who is there.
    bool isGoneForAll(const void* pPerson) const;
    void forgetPerson(const tagPersonInfo* person);
    void retirePerson(tagPersonInfo* person);
    void clearGallery();

    // Arrangement
    /// A participant and where the arrangement wants the tile.
    struct PlacedPerson
    {
        tagPersonInfo* person;
        QRect rect; ///< empty when the tile is not to be shown
        int grade;
    };
    void enterMode(int mode);
    int arrangedMode() const;
    void arrange();
    void arrangeTiles();
    void reLayoutEqualCut();
    void reLayout9EqualCut();
    void reLayout6Cut();
    void reLayout8Cut();
    void reLayoutSpeaker(eLayoutType mode);
    void reLayoutSpeaker4();
    void reLayoutSpeakerTool();
    void reLayoutShare();
    void reLayoutFixedGrid();
    void reLayoutSingle();
    zr::LayoutInput layoutInput() const;
    std::vector<PlacedPerson> placed(const std::vector<zr::TilePlacement>& placements) const;
    void logDisplayList();
    /// The only caller of setGeometry, ShowPlay, HidePlay and setPersonStreamType.
    /// @param large how many of the placements, the first ones, stand beside those that the log
    /// counts
    void applyPlacements(const char* prefix, const std::vector<PlacedPerson>& placements,
                         int large = 0);
    void hideUnplacedTiles(const std::vector<PlacedPerson>& placements);
    void finishLayout();
    void showSpeakTool(tagPersonInfo* person);
    void hideSpeakTool();

    // Order
    void buildDisplayList();
    void nameShares();
    void chooseSpeakers();
    void presumeCameras();
    std::vector<tagPersonInfo*> sortedPersons() const;
    bool passesVideoFilter(const tagPersonInfo* person) const;
    void focusOnShare();
    void checkOrder();

    // Pages and polling
    void scalePageControls();
    void updatePageControls();
    void updateNoVideo();
    int tilesPerPage() const;
    void clampPage();
    void turnToPage(int page);
    bool pollingActive() const;
    void TestShowPoll(std::vector<tagPersonInfo*>& persons);
    void updatePollTimer();
    /// Stops the timers that an empty gallery has no use for.
    void killTimers();

    // Focus and look
    void leaveMaximised();
    bool isLayoutDictated() const;
    std::vector<zr::SpeakerKey> speakerKeys(bool bNext) const;
    int indexOf(const tagPersonInfo* person) const;
    /// Index in the display list; -1 for nobody. Without a chosen focus the choice is automatic.
    int chooseSpeaker();
    /// Who stands beside the speaker, as an index in the display list; -1 for nobody.
    int chooseNextSpeaker(int speaker) const;
    void admitVoice(std::vector<zr::TilePlacement>& placements, int large) const;
    void seatLayoutCtrl(std::vector<tagPersonInfo*>& persons) const;
    void clickPerson(tagPersonInfo* clicked);
    bool isToolInUse() const;
    /// Shows the tool over what the local user shares, also in modes that have none.
    void floatSpeakTool();
    bool isTileVisible(const tagPersonInfo* person) const;
    void applyLook(tagPersonInfo* person, bool bOn);
    void clearLooks(const tagPersonInfo* except);
    void setSpeaking(tagPersonInfo* person, bool bSpeaking);
    /// In the speaker tool: whom the host named, else whose voice was activated.
    void nameWhoSpeaks();
    tagPersonInfo* personOf(const CPlayWidget* tile) const;

    // Streams
    void passStreamType(tagPersonInfo* person);
    void reportHidden(tagPersonInfo* person);
    /// When the host is to be told about a participant; -1 for never.
    qint64 tellDueMs(const tagPersonInfo* person) const;
    /// Has the mute timer fire for who is next, or not at all.
    void startMuteTimer();

    Roster m_roster;
    std::vector<tagPersonInfo*> m_vecSorted;     ///< in display order, without who is filtered out
    std::vector<tagPersonInfo*> m_vecCurPersons; ///< m_vecSorted, or what a poll shows of it
    Reaper m_reaper; ///< has the deleted participants, whose memory may still be in use

    bool m_bJoinMeetingFinish = false;
    bool m_bInLayout = false;
    bool m_bLayoutAgain = false; ///< asked for from inside an arrangement
    bool m_bLayoutScheduled = false;
    // Places of the speakers in m_vecCurPersons, during an arrangement; -1 without one.
    int m_iSpeaker = -1;
    int m_iNextSpeaker = -1;

    int m_iWheelRest = 0; ///< turned by less than a step, in eighths of a degree
    zr::PageTurnGate m_pageGate;
    std::function<qint64()> m_pageClock;
    PageControls m_pageControls;
    QDlgNoVideo* m_pNoVideo = nullptr; ///< child; while the filter leaves nobody, else null

    // Timers; 0 while they do not run.
    int m_iCheckTimerId = 0; ///< 1000 ms, looks for a new order
    int m_iMuteTimerId = 0;  ///< single shot, for the tile that is reported next
    qint64 m_muteDueMs = 0;  ///< when m_iMuteTimerId is to fire
    int m_iPollTimerId = 0;  ///< the polling period

    std::unique_ptr<SpeakTool> m_pSpeakTool; ///< null without a tool

    tagPersonInfo* m_pMorePerson = nullptr; ///< whose "more" menu the host has open
    QRect m_rcShareReported;                ///< the share rectangle that the host was told last
    QRect m_rcMoreTile;                     ///< the tile when the "more" menu was opened
    bool m_bSmallWndMinimised = false;      ///< the client is minimised, and the tool with it
};
