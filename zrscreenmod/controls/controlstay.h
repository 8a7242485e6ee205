// Keeps embedded controls in memory while the GUI thread is inside their events.
#pragma once

/// While one exists, a control that the host releases is hidden and destroyed later: there are
/// frames of it on the stack. Put it around what may call back into the host: messages, and on
/// Windows every change of focus or parent. GUI thread.
class ControlStay
{
public:
    ControlStay();
    ~ControlStay();
    ControlStay(const ControlStay&) = delete;
    ControlStay& operator=(const ControlStay&) = delete;

    [[nodiscard]] static bool isAny();
};
