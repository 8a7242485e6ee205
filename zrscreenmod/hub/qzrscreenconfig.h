// The hub: settings, the set of live participants, the subtitle store, the host callbacks, and the
// signals by which tiles and panels ask for what is done above them, and all screens hear of what
// is common to them. What a handle names one object for is called on that object.
#pragma once

#include "hostcallbacks.h"
#include "locks.h"
#include "overlaystate.h"
#include "personinfo.h"
#include "subtitlestore.h"
#include "watermarktext.h"

#include <QMap>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <shared_mutex>
#include <utility>
#include <vector>

class QDlgScreen;
class QWidget;
class Statistics;

/// The switches that the host sets. Each is a value of its own that any thread may read or write.
struct ScreenSettings
{
    std::atomic<bool> subtitleOpen{false};
    std::atomic<bool> voiceActivation{false};
    std::atomic<bool> extendScreen{false};
    std::atomic<bool> support9EqualCut{false};
    std::atomic<bool> support16EqualCut{false};
    std::atomic<bool> pollingOpen{false};
    std::atomic<int> pollingPeriodS{10};
    std::atomic<bool> openLayoutCtrl{false};
    std::atomic<bool> layoutFollow{false};
    std::atomic<int> shareIdx{-1};
    std::atomic<int> speakerIdx{-1};
    std::atomic<bool> noVideoFilter{false};
    std::atomic<bool> pauseShare{false};
};

/// What ZRSCREEN_INI names, else the program's own.
QString iniFile();

/// The switches that an INI file has; those that it has not keep their values.
zr::OverlaySwitches readOverlaySwitches(const QString& iniFile);

/// One object per process. It is created at attach and lives on the GUI thread; releasing the
/// last screen replaces it by a fresh one.
class QZRScreenConfig : public QObject
{
    Q_OBJECT

public:
    ~QZRScreenConfig() override;

    /// The hub; created on first use. The pointer is good while the caller keeps a screen alive
    /// (every export that resolved a screen handle does). Any thread.
    static QZRScreenConfig* getInstance();
    /// Deletes the hub. GUI thread.
    static void destroyInstance();
    /// Keeps the hub from being deleted while it lives; for calls without a screen handle. Nothing
    /// may be emitted meanwhile.
    class Lock
    {
    public:
        Lock();
        QZRScreenConfig* operator->() const { return getInstance(); }

    private:
        std::shared_lock<std::shared_mutex> m_lock;
    };

    ScreenSettings settings;

    // --- What tiles show; GUI thread ---
    // A tile that is shown asks anew after participantChanged and sigRefreshPlayDlg. Who changes
    // what a tile depends on emits one of them, and nothing else.
    /// No host call sets these: they have the values that a participant expects, and the INI file
    /// changes them (docs/settings.md).
    const zr::OverlaySwitches& overlaySwitches() const { return m_overlaySwitches; }
    void setOverlaySwitches(const zr::OverlaySwitches& switches);
    /// All but the participant and the tile itself.
    zr::TileSettings tileSettings() const;
    /// The name of the shared screen with this id, as a gallery has it; empty without one.
    QString shareName(const QString& userId) const;

    // --- Meeting mode ---
    /// The current meeting mode. Any thread.
    int curScreenMode() const { return m_iCurMode.load(); }
    /// Stores the mode and, when it differs, has the tiles follow and emits notifyCurScreenMode.
    /// GUI thread.
    void setCurScreenMode(int mode);
    /// The same, and has every gallery order its own participants. GUI thread.
    void switchMode(int mode);
    /// The mode before the share's, to which a maximised tile returns. GUI thread.
    int modeBeforeShareMode() const { return m_iModeBeforeShareMode; }
    /// The mode when the first shared screen came to a meeting that had none, on whichever screen;
    /// it comes back with the last one's leaving. GUI thread.
    int modeBeforeFirstShare() const { return m_iModeBeforeFirstShare; }
    /// Forgets what belonged to a meeting, on whichever screens it was: the mode, the sponsor and
    /// the pause of a share, the subtitles. The other settings are the client's and stay. GUI
    /// thread.
    void endMeeting();

    // --- Screen size, images, scaling ---
    /// Re-evaluates the screen test. @return the prefix of all image names. GUI thread.
    QString getImgPrefix();
    /// Decides on images and sizes by the primary screen's width, in physical pixels; when they
    /// change, emits screenScaleChanged, and has the tiles follow. The hub itself watches the
    /// screens. GUI thread.
    void setScreenWidth(int widthPx);
    /// The prefix that the last evaluation gave. GUI thread.
    QString imgPrefix() const { return m_qstrImgPrefix; }
    /// True when the primary screen counts as high-resolution.
    bool is4K() const { return m_b4K; }
    /// A base size times `factor` on a high-resolution screen (single precision, truncated), else
    /// the base size.
    int scaled(int value, float factor = 2.0F) const;

    // --- Developer switches of the INI file, read once ---
    bool cacheFrame() const { return m_bCacheFrame; }
    bool showResolution() const { return m_overlaySwitches.showResolution; }
    /// Writes a picture into the frame dump folder; one file for each participant and size, holding
    /// the last frame. Any thread.
    void dumpFrame(const tagPersonInfo& person, const VantrelRTCVideoFrameQT& frame) const;

    // --- Live participants; any thread ---
    /// Those on any screen. A gallery owns them.
    HandleTable<tagPersonInfo> livePersons;
    /// Takes a participant among those who are alive. GUI thread.
    void addLivePerson(tagPersonInfo* person);
    /// Whether a shared screen is on any screen.
    [[nodiscard]] bool hasLiveShare() const;
    /// The name is written on the GUI thread and read there without a lock; other threads ask
    /// here, with the record pinned.
    void setPersonName(tagPersonInfo* person, const QString& name);
    [[nodiscard]] QString personName(const tagPersonInfo& person) const;
    /// Reports a tile as shown or hidden: stores the play state, has the tiles follow and tells the
    /// hosts. One that is reported shown already is not reported again, unless its camera asks for
    /// that. GUI thread.
    void setPersonShown(tagPersonInfo* person, bool bShown);

    /// Milliseconds that never go back, of a clock that tests replace. GUI thread.
    qint64 nowMs() const { return m_clock(); }
    void setClock(std::function<qint64()> nowMs) { m_clock = std::move(nowMs); }

    // --- Extended screens; GUI thread ---
    /// Tells whom an extended screen shows; an empty id means nobody.
    void setExtUser(const void* extScreen, const QString& userId);
    /// Whether the participant is on an extended screen, and their stream in use there.
    bool isExtUser(const QString& userId) const;

    // --- Host callbacks; GUI thread ---
    void registerUICallback(CAbsUIMsgCallback* callback) { m_hosts.add(callback); }
    /// @return whether the callback was registered.
    bool unregisterUICallback(CAbsUIMsgCallback* callback) { return m_hosts.remove(callback); }
    /// Sends a message to every host, as HostCallbacks::send.
    void broadcast(unsigned long dwMsg, unsigned long long wParam, long long lParam,
                   const std::function<bool()>& holds = {});
    /// The same for a participant, or for nobody; not to those who would hear of one whom another
    /// host has removed from inside.
    void broadcast(unsigned long dwMsg, const tagPersonInfo* person,
                   const std::function<bool()>& holds = {});
    /// The hosts of the date pickers are a set of their own. They stay registered when the last
    /// screen goes and takes the settings with it.
    void registerDateCallback(CAbsUIMsgCallback* callback);
    /// @return whether the callback was registered.
    bool unregisterDateCallback(CAbsUIMsgCallback* callback);
    /// As broadcast, to the hosts of the date pickers.
    void broadcastDate(unsigned long dwMsg, unsigned long long wParam, long long lParam);

    // --- Subtitles; any thread ---
    /// The sentences are gone when the panel is opened or closed.
    void setSubtitleOpen(bool bOpen);
    void AddOneSubtitle(int iIDSentence, int iColorType, const QString& userName,
                        const QString& transStr);
    void clearSubtitles();
    QMap<int, SubtitleRecord> subtitles() const { return m_subtitles.all(); }
    /// @return an empty record for a sentence that is not stored (any more)
    SubtitleRecord subtitle(int iIDSentence) const { return m_subtitles.one(iIDSentence); }
    /// Modes that leave no room for subtitles: 4 to 9. `mode` below 1 means the current one.
    bool isModeWithoutSubtitle(int mode) const;
    /// The current mode shows no subtitles: as above, or 10.
    bool isSubtitleSuppressed() const;

    // --- Sharing; any thread ---
    void setShareSponsor(const QString& userId);
    QString shareSponsor() const;
    /// The watermark belongs to the module and outlives the hub: the host may tell it before the
    /// first screen, and once for many. A change shows after sigRefreshPlayDlg.
    static void setWatermarkInfo(zr::WatermarkInfo info);
    static void setWatermarkEnabled(bool bEnabled);
    /// What is written over shared screens, ready to be drawn; empty for nothing.
    QString getWatermarkText() const;

    /// The youngest gallery; null while there is none. It speaks for all where a message must be
    /// sent once. For comparing only: units below the gallery ask for what they need with a
    /// signal. GUI thread.
    QDlgScreen* m_pDlgScreen = nullptr;
    void addGallery(QDlgScreen* gallery);
    void removeGallery(QDlgScreen* gallery);

signals:
    void notifyClickAudioCtrl(void* pPerson);
    void notifyClickMore(void* pPerson, int igPosRight);
    void notifyToolbar(QRect rc, bool bShow);
    void handleHandup(void* pPerson);
    void playFrameUpdateUI(void* pPerson, int iWidth, int iHeight);
    void clickPageCtl(QWidget*);
    void notifyCurScreenMode(int iMode);
    void notifyAddSubtitle(int iIDidx);
    void notifyCleanSubtitle();
    void notifyClickExtPlayWidget(void*);
    void notifyExtPreview(QString qstrUserID, bool bPreview);
    /// The participant is on no extended screen any more.
    void notifyExtUserLeft(QString qstrUserID);
    void modSignalAddSubtitle();
    /// Something that all tiles depend on has changed. Any thread.
    void sigRefreshPlayDlg();
    /// What tiles show of the participant has changed. The record is alive; GUI thread.
    void participantChanged(void* pPerson);
    /// Images and sizes are other ones: see getImgPrefix and scaled.
    void screenScaleChanged();

    // --- What the host asks of all screens: it is the hub's state that every gallery follows ---
    void notifyDisplayOrder(bool bKeepFocusPerson = false);
    /// The mode is entered, also where it is no other one. Where it is not the current one any
    /// more, the host has switched on from inside a message, and every gallery has heard of that.
    void modSignalSwitchMode(int eType);
    void sigSetHideSmallWnd(bool);
    void sigSwitchExtendScreen(bool, bool);
    void sigSetVoiceActivateUser(QString);
    void sigOpenLayoutPoll();

    // --- Emitted by nobody: the names are given, and who hears them does as they say ---
    void notifyUpdatePersonInfo(void* pPlayHdl, void* pPerson);
    void modSignalMove(QRect rc);
    void modSignalAllLook(void* pPerson, bool bAllLook);
    void modSignalPreviewMute(void*, bool);
    void modSignalDelPerson(void*);
    void modSignalLookLock(void* pPerson, bool bLockLook);
    void modSignalVideoSize(void* pPlayData, int iWidth, int iHeight);
    void modSignalScreenToolbar(QRect rc, bool bShow);
    void modSignalAudioMute(void*, bool);
    void modSignalPersonInfo(void* pPerson, bool bSelf, int iRoleType, QString qstrName,
                             int iIdentity);
    void modSignalVolume(void*, int);
    void modSignalPersonHandup(void*, bool);
    void modSignalAddPerson(void*);
    void modSignalFocusByUserID(QString qstrUserID, bool bVolActive = false);
    void sigPopSelfShareWnd(bool, bool);
    void modSignalMoveSpeakTool(QPoint rc);
    void modSignalmousePressSpeakTool();
    void modSignalHideSpeakTool(bool bshare);
    void modSignalShowSpeakTool(bool bshare);
    void sigMoveSmallWnd(QPoint rc);
    void sigMousePressSmallWnd();

private:
    QZRScreenConfig();
    void readVersionFile();
    void watchScreens();

    std::atomic<int> m_iCurMode{eLayoutEqualCut};
    int m_iModeBeforeShareMode = eLayoutEqualCut;
    int m_iModeBeforeFirstShare = eLayoutEqualCut;
    bool m_b4K = false;
    QString m_qstrImgPrefix;
    bool m_bCacheFrame = false;
    zr::OverlaySwitches m_overlaySwitches;

    std::function<qint64()> m_clock;
    Statistics* m_pStatistics = nullptr; ///< child; null unless the environment asks

    std::vector<QDlgScreen*> m_vecGallery; ///< in the order of their creation

    QMap<const void*, QString> m_mapExtUser; ///< by extended screen

    HostCallbacks m_hosts;
    SubtitleStore m_subtitles;

    mutable platform::Mutex m_textLock; ///< guards the sponsor and the participants' names
    QString m_qstrShareSponsor;
};
