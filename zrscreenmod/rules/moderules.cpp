#include "moderules.h"

#include "meetingmode.h"

namespace zr {

PinEffect pinEffect(const PinInput& input)
{
    if (!input.pins && !input.fromMenu)
        return {};
    if (input.dictated)
        return {false, eLayoutEqualCut};
    if (input.pins) {
        const bool keepsMode = !input.onSpeaker && isStripMode(input.mode);
        return {true, keepsMode ? input.mode : eLayoutSpeakerRight};
    }
    const int mode = modeAfterPin(input.lookMode);
    return {false, mode == input.mode ? 0 : mode};
}

LeaveEffect leaveEffect(const LeaveInput& input)
{
    if (input.share)
        return input.otherShare ? LeaveEffect::NextShare : LeaveEffect::BeforeShare;
    if (input.maximised)
        return LeaveEffect::BeforeMaximised;
    if (input.inTool && !input.otherShare && !input.last)
        return LeaveEffect::AfterPin;
    return LeaveEffect::None;
}

} // namespace zr
