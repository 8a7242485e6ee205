// The records that the boundary, the gallery and the tiles share.
#pragma once

#include "camerastate.h"
#include "frameintake.h"
#include "handletable.h"
#include "overlaystate.h"
#include "volumelevel.h"
#include "zrscreenmod.h"

#include <QString>

#include <atomic>
#include <cstddef>

class CPlayWidget;

/// Whether frames arrive for a participant.
enum : int
{
    kStreamNone = 0,    ///< no frames yet
    kStreamRunning = 2, ///< frames are arriving
};

/// Play state of a participant's tile, as last reported to the host.
enum : int
{
    kPlayUnknown = 0, ///< never reported
    kPlayHidden = 1,
    kPlayShown = 2,
};

/// One participant. Created and freed by the gallery on the GUI thread, which alone reads and
/// writes it, with three exceptions: `userID` never changes after creation and may be read from
/// any thread that pins the record (PersonPin), and the atomics at the end.
///
/// The record's address travels to the host as an opaque value. The order of the fields down to
/// `iPlayState` is fixed; the module's own state follows them.
struct tagPersonInfo
{
    QString userID;
    QString userName;
    int iRoteType = 0; ///< 1 = host, 2 = administrator
    bool bSelf = false;
    int iRoleExtra = 0;   ///< the identity of ZRScreen_SetPersonInfo, passed on to the overlay
    int iVideoWidth = 0;  ///< pixels of the last frame
    int iVideoHeight = 0; ///< pixels of the last frame
    bool bMute = true;    ///< audio muted; a new participant starts muted
    CPlayWidget* pWidget = nullptr; ///< the tile, owned by the gallery
    void* pUserData = nullptr;      ///< the host's value, handed back and never read
    bool bLockLook = false;
    bool bPreview = false;           ///< the host reports the stream open
    bool bVideoStatusChange = false; ///< set by the first preview report
    bool bPrePreview = false;        ///< the last preview report changed bPreview
    bool bAllLook = false;
    int iStreamStatus = kStreamNone;
    bool bStreamTypeChanged = false;         ///< a grade was requested and not passed on yet
    int iStreamType = 0;                     ///< requested stream grade: 2, 3 or 4
    int iDefType = 0;                        ///< default stream grade
    int iHostInt = 0;                        ///< the host's int, kept as given
    qint64 joinTime = 0;                     ///< unique among the participants
    std::atomic<quint32> dwLastFrameTick{0}; ///< platform::tickMs() of the last frame; any thread
    bool bSpeaking = false;
    bool bHandUp = false;
    int iPlayState = kPlayUnknown; ///< see kPlayHidden, kPlayShown

    // --- The module's own state ---
    quint64 serial = 0; ///< never reused in the process, as addresses are; fixed at creation
    /// Unlike bPreview the camera outlives a stream that is closed because its tile is not visible;
    /// the order of the participants depends on it.
    zr::CameraState camera;
    qint64 hideDueMs = -1; ///< when the tile is to be reported hidden; -1 while it is visible
    zr::NetStatus net;
    FrameIntake frames;
    quint64 framesBefore = 0;  ///< of `frames`, those of a stream that is or was to be closed
    quint64 framesSampled = 0; ///< of `frames`, those of before the last second; see Statistics
    int iFramesPerS = 0;       ///< in the last second, while somebody asks
    int iTimesOpened = 0;      ///< the stream, by the host's reports
    int iTimesShown = 0;       ///< reports to the host that the tile is shown, and hidden
    int iTimesHidden = 0;
    int iSentStreamType = 0; ///< the grade that the host was asked for; 0 once the stream closes
    std::atomic<int> iVolume{0}; ///< 0 to 100, as last reported; any thread
    PinCount pins;               ///< calls at work on the record; see PersonPin
    bool bShare = false;         ///< the id names a shared screen; fixed at creation
    bool bLocalVideo = false;    ///< the local user's own camera picture
    bool bLocalVideoConfirmed = false;
};

typedef tagPersonInfo ST_PersonInfo;

/// Keeps a participant record and its tile in memory: the gallery frees neither as long as a pin is
/// held. Any thread.
using PersonPin = Pin<tagPersonInfo>;

/// Takes over a report that the participant's stream is open or closed. The frames that were taken
/// before it was opened again are another stream's. GUI thread.
inline void setStreamOpen(tagPersonInfo& person, bool bOpen)
{
    if (bOpen && !person.bPreview) {
        ++person.iTimesOpened;
        if (person.bVideoStatusChange)
            person.framesBefore = person.frames.taken();
    }
    if (!bOpen)
        person.iStreamStatus = kStreamNone;
    person.bPreview = bOpen;
    person.bVideoStatusChange = true;
}

/// Takes a volume over, clamped; any thread that pins the record.
/// @return whether the microphone's level is another one now, and the tile to be refreshed
[[nodiscard]] inline bool noteVolume(tagPersonInfo& person, int volume)
{
    const int clamped = qBound(0, volume, zr::kMaxVolume);
    return zr::volumeLevel(person.iVolume.exchange(clamped)) != zr::volumeLevel(clamped);
}

/// Whether the latest frame is one of a stream that is open. The last frames of one that closes
/// may come late, and start nothing: when the camera comes on again, its first picture is to show
/// and not that of before. GUI thread.
[[nodiscard]] inline bool isStreamRunning(const tagPersonInfo& person)
{
    return (person.bPreview || !person.bVideoStatusChange) && person.iPlayState != kPlayHidden
           && person.frames.taken() != person.framesBefore;
}

/// What the host holds for a participant. Created and freed by the boundary.
struct ST_ZRPlayHdl
{
    QString userID;
    QString userName;
    tagPersonInfo* pPlayData = nullptr; ///< null once the participant is gone
};

/// Bytes that are probed before a play handle or a participant record is believed.
constexpr std::size_t kPlayHdlProbeSize = 24;
constexpr std::size_t kPersonProbeSize = 112;

static_assert(sizeof(ST_ZRPlayHdl) == kPlayHdlProbeSize, "probe size of the play handle");
static_assert(offsetof(tagPersonInfo, iPlayState) + sizeof(int) <= kPersonProbeSize
                  && sizeof(tagPersonInfo) >= kPersonProbeSize,
              "probe size of the participant record");

/// True for a record that stands for a shared screen and not for a person.
inline bool isShareScreenId(const QString& userId)
{
    return userId.contains(QLatin1String("sharescreen_"));
}

/// The id of the screen that a participant shares.
inline QString sponsoredShareId(const QString& sponsorId)
{
    return QLatin1String("sharescreen_") + sponsorId;
}
