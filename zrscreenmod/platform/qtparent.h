// What Qt is told when the system has put a window of Qt's somewhere.
#pragma once

#include "platform.h"

class QWidget;
class QWindow;

namespace platform {

/// Qt's object for a window of this process; null for every other window. GUI thread.
[[nodiscard]] QWindow* findQtWindow(NativeWindow id);

/// Tells Qt which native window its window is in, 0 for none: call it when the system has put it
/// there. Qt then maps to global coordinates by asking the system, which places what pops up right
/// also after the host has moved its window, and leaves it in its parent when it is shown again.
/// GUI thread.
void setQtParent(QWindow* child, NativeWindow parent);

/// Where a widget is, in screen pixels. Unlike QWidget::mapToGlobal it is right before its window
/// has been seen for the first time, too. GUI thread.
[[nodiscard]] QRect rectOnScreen(const QWidget& widget);

/// The place nearest to the wanted one that every window system takes.
[[nodiscard]] QRect placeable(const QRect& rect);

/// Tells Qt, and with it the widget, where a window of its own is in its parent; nothing for any
/// other window. `rect` is placeable. The widget's events come from inside, so that anything may be
/// gone afterwards. GUI thread.
void setQtGeometry(NativeWindow id, const QRect& rect);

} // namespace platform
