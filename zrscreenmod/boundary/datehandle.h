// The date pickers that hosts have.
#pragma once

#include "hosthandles.h"
#include "zrcontrols.h"

#include <QPoint>

#include <memory>

class SelectDateTimeWidget;

/// A date picker. Created by createDatePicker; GUI thread.
struct ST_ZRDateHdl : HostHandle
{
    ~ST_ZRDateHdl();

    std::unique_ptr<SelectDateTimeWidget> m_pWidget; ///< non-null for the handle's whole life
    CWin32DateCallback m_callback;
    PinCount pins;
};

extern HostHandles<ST_ZRDateHdl> g_datePickers;

/// Builds a picker inside `hParent`, hidden, and registers it. @return null when the system refuses
/// the parent. GUI thread.
[[nodiscard]] ST_ZRDateHdl* createDatePicker(HWND hParent, ZRNotify notify);

/// Opens a picker with its upper right corner at `at`, moved to where all of it is seen. GUI
/// thread.
void openDatePicker(ST_ZRDateHdl& picker, const QPoint& at);
