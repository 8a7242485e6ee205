// What the overlay of a tile shows: one answer for every place where a participant can be seen.
#pragma once

#include "overlaylayout.h"

#include <QSize>
#include <QString>

namespace zr {

/// Where a tile stands.
enum class TilePlace
{
    Gallery,
    SpeakTool, ///< with a dark border, never the speaker's; its picture never freezes
    ExtScreen, ///< without the "more" button and the speaker's border, always with large elements
};

/// What is known of a participant's network.
struct NetStatus
{
    bool bSendBad = false;
    bool bReceiveBad = false;
    int iLevel = 5; ///< 0 (none) to 5 (best)
    int iSpell = 0; ///< counts the spells of bad network

    bool isBad() const { return bSendBad || bReceiveBad; }
    /// Takes a report over. @param iType 1 sending, 2 receiving; with others only the level counts
    void report(int iType, bool bBad, int iNewLevel);
};

/// The switches that the user's INI file has for all overlays.
struct OverlaySwitches
{
    bool speakingHighlight = true; ///< a green border around who speaks
    bool allHands = true;          ///< everybody's raised hand shows, not only one's own
    bool largerText = false;       ///< look marks and subtitle bubbles
    int lookOwner = 0;             ///< 1: look marks keep their place, but are not painted
    bool hiddenVideo = true;       ///< a picture of a tile reported hidden counts as still loading
    bool showResolution = false;   ///< the size of the picture, for developers
    bool showStream = false;       ///< and behind it the frames a second, grade and state
};

/// What an overlay depends on of its participant.
struct TilePerson
{
    bool bShare = false;
    bool bSelf = false;
    bool bMute = true;
    bool bHand = false;
    bool bSpeaking = false;
    bool bAllLook = false;
    bool bLockLook = false;
    bool bPreview = false; ///< the host reports the stream open
    bool bStream = false;  ///< frames arrive
    bool bHidden = false;  ///< the host was told that nobody sees them
    int iRole = 0;
    int iColor = 0;
    int iGrade = 0;  ///< of the stream, see TilePlacement
    int iVolume = 0; ///< 0 to 100
    int iFramesPerS = 0;
    QSize video; ///< the picture's; empty before the first
    NetStatus net;
    QString name;
};

/// What it depends on of the module.
struct TileSettings
{
    int mode = 0; ///< the meeting's, an eLayoutType
    bool bPauseShare = false;
    QString watermark;
    OverlaySwitches switches;
};

/// What it depends on of the tile.
struct TileView
{
    TilePlace place = TilePlace::Gallery;
    bool bLoading = true;       ///< no picture has come yet
    bool bLoadTimedOut = false; ///< the spinner had its time in this spell of bad network
    QString bubble;             ///< what the participant says
    int iBubbleColor = 0;
};

OverlayState overlayState(const TilePerson& person, const TileSettings& settings,
                          const TileView& view);

} // namespace zr
