// The record behind the handle of a date picker.
#pragma once

#include "uimsgcallback.h"
#include "zrcontrols.h"

#include <QPoint>

class SelectDateTimeWidget;
struct ST_ZRDateHdl;

/// Forwards the date pickers' messages to the host of one of them.
class CWin32DateCallback : public CAbsUIMsgCallback
{
public:
    bool UIMsgNotify(unsigned long dwMsg, unsigned long long wParam, long long lParam) override;
    ST_ZRDateHdl* m_pHandle = nullptr; ///< the picker that owns this callback
};

/// A date picker. Created by createDatePicker, destroyed by its registry; GUI thread.
struct ST_ZRDateHdl
{
    ZRNotify m_hostNotify = nullptr;
    SelectDateTimeWidget* m_pWidget = nullptr; ///< owned
    CWin32DateCallback* m_pCallback = nullptr; ///< owned
    HWND m_hParent = nullptr;                  ///< the parent given at creation
};

/// Builds a picker inside `hParent`, hidden, and registers it. @return null when the system refuses
/// the parent. GUI thread.
[[nodiscard]] ST_ZRDateHdl* createDatePicker(HWND hParent, ZRNotify notify);

/// Opens a picker with its upper right corner at `at`, moved to where all of it is seen. GUI
/// thread.
void openDatePicker(ST_ZRDateHdl& picker, const QPoint& at);
