#include "overlaystate.h"

#include "layoutgeometry.h"
#include "meetingmode.h"
#include "volumelevel.h"

namespace zr {

namespace {

LookMark lookMark(const TilePerson& person, const TileSettings& settings, TilePlace place)
{
    if (!person.bAllLook && !person.bLockLook)
        return LookMark::None;
    const bool alone = place == TilePlace::ExtScreen;
    // Where nobody is larger than the others, or two are, the arrangement tells nothing apart.
    if (!alone && (isGalleryMode(settings.mode) || settings.mode == eLayoutSpeaker4))
        return LookMark::None;
    if (person.bAllLook)
        return LookMark::AllLook;
    return !alone && settings.switches.lookOwner == 1 ? LookMark::Unlabelled : LookMark::LockLook;
}

OverlayState shareState(OverlayState state, const TileSettings& settings, bool bWaiting)
{
    state.bPaused = settings.bPauseShare;
    state.bPicture = !bWaiting && !state.bPaused;
    state.watermark = settings.watermark;
    return state;
}

} // namespace

void NetStatus::report(int iType, bool bBad, int iNewLevel)
{
    const bool wasBad = isBad();
    iLevel = iNewLevel;
    if (iType == 1)
        bSendBad = bBad;
    else if (iType == 2)
        bReceiveBad = bBad;
    if (!wasBad && isBad())
        ++iSpell;
}

OverlayState overlayState(const TilePerson& person, const TileSettings& settings,
                          const TileView& view)
{
    OverlayState state;
    const OverlaySwitches& switches = settings.switches;
    const bool waiting = view.bLoading || person.bHidden;
    state.bPerson = true;
    state.bShare = person.bShare;
    state.bBorder = view.place == TilePlace::SpeakTool;
    state.bFrozen = person.net.isBad() && view.place != TilePlace::SpeakTool;
    state.bSelf = person.bSelf;
    state.bNoMenu = view.place == TilePlace::ExtScreen;
    state.bSmall = person.iGrade == kGradeSmall || person.iGrade == kGradeGrid;
    state.name = person.name;
    if (person.bShare)
        return shareState(std::move(state), settings, waiting);
    const bool netBad = person.net.isBad() && !person.bSelf;
    const bool started = person.bPreview && person.bStream;
    state.bPicture = started && !waiting && !(netBad && view.bLoadTimedOut);
    state.bSpinner = state.bPicture && netBad;
    state.bSpeaking =
        person.bSpeaking && view.place == TilePlace::Gallery && switches.speakingHighlight;
    state.bMute = person.bMute;
    state.bCamera = started;
    state.bHand = person.bHand && (switches.allHands || person.bSelf);
    state.bLargerText = switches.largerText;
    state.iRole = person.iRole;
    state.iColor = person.iColor;
    state.iAudioLevel = volumeLevel(person.iVolume);
    state.iNetLevel = person.net.iLevel;
    state.look = lookMark(person, settings, view.place);
    if (switches.showResolution && !person.video.isEmpty())
        state.resolution =
            QStringLiteral("%1*%2").arg(person.video.width()).arg(person.video.height());
    if (switches.showStream)
        state.resolution += QStringLiteral(" %1 fps, grade %2, %3")
                                .arg(person.iFramesPerS)
                                .arg(person.iGrade)
                                .arg(QLatin1String(person.bPreview ? "open" : "closed"));
    state.bubble = view.bubble;
    state.iBubbleColor = view.iBubbleColor;
    return state;
}

} // namespace zr
