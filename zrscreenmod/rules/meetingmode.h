// What the meeting modes have in common.
#pragma once

#include "zrtypes.h"

namespace zr {

/// A dialog narrower than this is minimised or not shown yet, and is not arranged.
constexpr int kMinLayoutWidthPx = 50;

/// The next speaker floats in a tool of its own.
constexpr bool isSpeakerToolMode(int mode)
{
    return mode == eLayoutSpeakerTool || mode == eLayoutSpeakerTool2;
}

/// One or two participants are larger than the others, and chosen as speakers.
constexpr bool isSpeakerMode(int mode)
{
    return mode >= eLayoutSpeakerTool && mode <= eLayoutSpeaker4;
}

/// One speaker with a strip of small tiles.
constexpr bool isStripMode(int mode)
{
    return mode >= eLayoutSpeakerRight && mode <= eLayoutSpeakerTop;
}

/// A gallery, in which nobody is the speaker.
constexpr bool isGalleryMode(int mode)
{
    return mode >= eLayoutEqualCut && mode <= eLayout8Cut;
}

} // namespace zr
