// What the exports of the embedded controls have in common, beyond boundary.h.
#pragma once

#include "boundary.h"
#include "controlstay.h"

namespace boundary {

/// Runs `work` on the GUI thread, at once when called there, else queued in order. It has to look
/// the handle up itself, since the control may be released meanwhile. Nothing for a null handle.
template<typename Work>
void onControl(const void* h, Work work) noexcept
{
    guarded(false, [&] {
        const auto inside = [work] {
            const ControlStay stay; // what it does may call back into the host
            work();
        };
        if (!h)
            return false;
        if (GuiThread::isCurrent())
            inside();
        else
            GuiThread::post(inside);
        return true;
    });
}

} // namespace boundary
