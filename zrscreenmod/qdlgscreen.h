// The gallery: the participants of the meeting, their tiles, and how these are arranged.
#pragma once

#include "layoutgeometry.h"
#include "personinfo.h"

#include <QBasicTimer>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QHash>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

class QZRScreenConfig;

/// Owns the participant records and their tiles. Everything here belongs to the GUI thread but
/// playFrame, which any thread may call.
///
/// A record pointer that comes from outside (a queued signal, the host) is believed only after
/// livePerson found it; what is left of a deleted participant does nothing.
class QDlgScreen : public QDialog
{
    Q_OBJECT

public:
    explicit QDlgScreen(QWidget* parent);
    ~QDlgScreen() override;

    // --- Registry (qdlgscreen_registry.cpp) ---
    /// Adds a participant with its tile, or finds the one that has the id already.
    tagPersonInfo* AddPerson(const QString& userId, const QString& userName, qint64 joinTime,
                             int hostInt, void* pUserData);
    bool DelPerson(tagPersonInfo* person);
    bool updatePersonInfo(void* pPerson, bool bSelf, int iRoteType, const QString& name,
                          int roleExtra);
    void setJoinMeetingFinish(bool bFinish);
    /// Stops the timers and empties the gallery. @return 1
    int ProcessExitMeeting();
    /// The participant behind a pointer, or null when it is not one of this gallery's.
    tagPersonInfo* livePerson(const void* pPerson) const;
    tagPersonInfo* findPerson(const QString& userId) const;

    // --- Frames (qdlgscreen_frames.cpp) ---
    /// Takes one frame, on any thread; the caller has pinned the record. The frame record is
    /// readable; its picture is probed here. @return false when the frame was refused.
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
    /// Turn the page; refused within 400 ms of the last turn. @param bWrap go on from the last
    /// page to the first @return false when refused
    bool pageNext(bool bWrap);
    bool pagePre();
    /// Where a shared screen's picture is, in screen pixels; tells the host when it has changed.
    QRect shareRect();
    bool isPersonVisible(const QString& userId);
    /// Repaints the shared screens, after a share was paused or resumed.
    void refreshShareTiles();

    // --- Focus, previews and stream grades (qdlgscreen_focus.cpp) ---
    bool setFocusPerson(tagPersonInfo* person, int mode);
    void setPreview(void* pPerson, bool bPreview);
    void setPersonStreamType(tagPersonInfo* person, int iStreamType);
    void switchStream(tagPersonInfo* person, int streamType);
    void setPersonDefStreamType(void* pPerson);
    /// Reports tiles to the host: with false those that have become visible, with true those that
    /// the last arrangement left invisible.
    void changePersonVideoMute(bool bMute);
    /// Reports every participant without a visible tile as hidden, while the local user shares.
    void muteInvisiblePerson(bool bMute);
    int showSmallWndWhenRestore(bool bShow);
    /// The native id of the small window; 0, since the gallery has none open.
    int GetSmallWndId() const { return 0; }
    bool isPersonVisibleInSmallWnd(const QString& userId) const;

    // --- Look modes, audio, menus (qdlgscreen_look.cpp) ---
    bool setAllLook(void* pPerson, bool bAllLook);
    bool setLockLookPerson(void* pPerson, bool bLock);
    bool setMute(void* pPerson, bool bMute);
    void setCurrentSpeakingPerson(const QString& userId);
    void setCloseWhiteBoard() { m_bWhiteBoardClosed = true; }
    /// Forgets the "more" menu's participant when the mouse has left its tile.
    void testHideMoreMenu();
    void clearMoreMenuPerson() { m_pMorePerson = nullptr; }
    bool isMouseOnBtnMore() const;

public slots:
    void onLeftBtnDBClick(CPlayWidget* tile);
    void onPlayStatusChange(CPlayWidget* tile);
    void onPlayWidgetLBtnClick(CPlayWidget* tile);
    void onWheel(int iStep);
    void onClickAudioCtl(void* pPerson);
    void onClickMore(void* pPerson, int igPosRight);
    void onDisplayOrder(bool bKeepFocusPerson = false);
    void onHandleHandup(void* pPerson);
    void onPlayFrameUpdateUI(void* pPerson, int iWidth, int iHeight);
    void onLookToast(bool bAll);
    void onNotifyUpdateUserInfo(void* pPlayHdl, void* pPerson);
    int OnPopSelfShareWnd(bool bFloat, bool bMuteVideo = false);
    void onModMove(QRect rc);
    void onModAllLook(void* pPerson, bool bAllLook);
    void onModPreview(void* pPerson, bool bPreview);
    void onSetHideSmallWnd(bool bHide);
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
    void notifyLButtonClick();
    void OnSetVoiceActivateUser(QString qstrUserID);
    void OnSwitchExtendScreen(bool bExtendScreen, bool bDeviceChange = false);
    void SetCustomizeSorting(std::map<int, std::string> grpSorting);
    void UpdateUserNetStatus(QString qstrUserID, int dir, bool bIsWeak, int nNetStatus);

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
    void insertByJoinTime(tagPersonInfo* person);
    void enterShare(tagPersonInfo* share);
    void leaveShare();
    /// The shared screen that comes first in the join order; null without one.
    tagPersonInfo* firstShare() const;
    /// The participant behind a pointer; logs one that no gallery knows.
    tagPersonInfo* checkedPerson(const void* pPerson) const;
    void forgetPerson(const tagPersonInfo* person);
    void retirePerson(tagPersonInfo* person);
    void freeRetired();
    void clearGallery();

    // Arrangement
    void buildDisplayList();
    void reLayoutEqualCut();
    void reLayout9EqualCut();
    zr::LayoutInput layoutInput() const;
    bool passesVideoFilter(const tagPersonInfo* person) const;
    void logDisplayList();
    /// The only caller of setGeometry, ShowPlay, HidePlay and setPersonStreamType.
    void applyPlacements(const char* prefix, const std::vector<zr::TilePlacement>& placements);
    void hideAllTiles();
    void hideUnplacedTiles(const std::set<const tagPersonInfo*>& placed);
    void finishLayout();
    int tilesPerPage() const;
    void turnToPage(int page);
    bool acceptPageTurn();

    // Focus and look
    void dropFocus();
    bool isTileVisible(const tagPersonInfo* person) const;
    void applyLook(tagPersonInfo* person, bool bOn);
    void setSpeaking(tagPersonInfo* person, bool bSpeaking);
    tagPersonInfo* personOf(const CPlayWidget* tile) const;

    std::unordered_map<const void*, std::unique_ptr<tagPersonInfo>> m_mapOwned;
    QHash<QString, tagPersonInfo*> m_mapByUserId;
    std::vector<tagPersonInfo*> m_vecPerson;     ///< everybody, in join order
    std::vector<tagPersonInfo*> m_vecCurPersons; ///< in display order
    std::vector<quint64> m_vecLoggedSerials;     ///< the display list as it was logged last
    std::set<qint64> m_setJoinTime;
    /// Deleted participants whose memory is still in use by another thread or in an event that is
    /// under way.
    struct RetiredPerson
    {
        std::unique_ptr<tagPersonInfo> record;
        CPlayWidget* tile;
    };
    std::vector<RetiredPerson> m_vecRetired;
    QBasicTimer m_retireTimer; ///< runs while a retired participant is in use

    bool m_bJoinMeetingFinish = false;
    bool m_bInLayout = false;
    bool m_bLayoutAgain = false; ///< asked for from inside an arrangement
    bool m_bLayoutScheduled = false;
    int m_iPage = 0;
    int m_iWheelRest = 0;          ///< turned by less than a step, in eighths of a degree
    QElapsedTimer m_pageTurnClock; ///< since the last accepted page turn
    int m_iMuteTimerId = 0;        ///< single shot, 1000 ms after each arrangement

    tagPersonInfo* m_pFocusPerson = nullptr;
    tagPersonInfo* m_pAutoFocusPerson = nullptr; ///< the focus that an arrangement chose itself
    tagPersonInfo* m_pPreFocusPerson = nullptr;
    tagPersonInfo* m_pSelectedPerson = nullptr; ///< clicked last
    tagPersonInfo* m_pShareScreenPerson = nullptr;
    tagPersonInfo* m_pMorePerson = nullptr; ///< whose "more" menu the host has open
    tagPersonInfo* m_pVoicePerson = nullptr;
    tagPersonInfo* m_pPreVoicePerson = nullptr;
    int m_iShareCount = 0; ///< shared screens among the participants
    int m_iModeBeforeShare = eLayoutEqualCut;
    int m_iLookMode = eLayoutEqualCut; ///< the mode after the last change of a look

    std::map<int, QString> m_mapCustomizedPersons;
    QRect m_rcShareReported; ///< the share rectangle that the host was told last
    QRect m_rcToolbar;       ///< the client's toolbar over the gallery; empty when hidden
    QString m_qstrCurrentSpeaking;
    bool m_bWhiteBoardClosed = false;
    bool m_bHideSmallWnd = false;
    bool m_bSelfShareFloat = false;
};
