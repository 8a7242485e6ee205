// What a pin and a leaving do to the mode and to the speaker.
#pragma once

#include "zrtypes.h"

namespace zr {

/// The mode in which a pin is undone: there is nothing to maximise once it has gone.
[[nodiscard]] constexpr int modeAfterPin(int lookMode)
{
    return lookMode == eLayoutShare ? eLayoutSpeakerRight : lookMode;
}

struct PinInput
{
    bool pins = false;      ///< else the pin ends
    bool dictated = false;  ///< the host dictates the layout
    bool onSpeaker = false; ///< it is the speaker's
    bool fromMenu = false;  ///< the participant's "more" menu is open
    int mode = eLayoutEqualCut;
    int lookMode = eLayoutEqualCut; ///< the mode after the last change of a pin
};

struct PinEffect
{
    bool choosesSpeaker = false; ///< who is pinned is the chosen speaker from now on
    int mode = 0;                ///< the mode that is entered; 0 for none
};

/// What the pin of a participant, for all or for the local user, changes when it begins or ends.
[[nodiscard]] PinEffect pinEffect(const PinInput& input);

/// What follows a participant out of the meeting.
enum class LeaveEffect
{
    None,
    NextShare,       ///< another share takes the place
    BeforeShare,     ///< the mode of before the first share
    BeforeMaximised, ///< the mode of before the participant was maximised
    AfterPin,        ///< the mode of the last pin
};

struct LeaveInput
{
    bool share = false;      ///< a shared screen has left
    bool otherShare = false; ///< the meeting still has a share
    bool maximised = false;  ///< the participant filled the dialog
    bool inTool = false;     ///< the participant was in the speaker tool
    bool last = false;       ///< nobody is left
};

/// Beside a share nobody's leaving but its own changes the mode: it may not be shrunk.
[[nodiscard]] LeaveEffect leaveEffect(const LeaveInput& input);

} // namespace zr
