// The text controls that hosts have borrowed. A handle of one kind is none of the other's.
#pragma once

#include "hosthandles.h"
#include "qdlgtextedit.h"
#include "qmylineedit.h"

extern HostHandles<QMyLineEdit> g_lineEdits;
extern HostHandles<QDlgTextEdit> g_textEdits;

/// Puts the window of a control into a window of the host's; null detaches it. @param at in pixels
/// of the parent @return false, and a log line, when the system refuses. GUI thread.
bool putInto(HWND hParent, QWidget& control, const QPoint& at = {});

/// Logs a handle that is not one of a live control of its kind, but for null. Any thread.
void logNoControl(const void* handle);
