// What Qt is told when the system has put a window of Qt's somewhere.
#pragma once

#include "platform.h"

#include <vector>

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

/// Hides a window whose parent is gone or about to go, and puts it at the top level. GUI thread.
void leaveParent(QWindow& child);
/// Whether that has happened to a window of Qt's, and no other parent has come since: it would
/// stand bare on the desktop if it were shown. GUI thread.
[[nodiscard]] bool isOrphaned(NativeWindow id);
/// The window of a widget at the top level of Qt's widgets; a new one, hidden, where the former has
/// lost its parent: the system may have destroyed both. GUI thread.
[[nodiscard]] NativeWindow livingWindow(QWidget& widget);
/// Makes a widget's window and all GL contexts in it anew, in the same parent and place, and shows
/// it if it was. Hiding and showing call the host, so that anything may be gone afterwards. GUI
/// thread.
void renewWindow(QWidget& widget);
/// Whether a window of Qt's is inside another one, as far as Qt knows. GUI thread.
[[nodiscard]] bool isInParent(NativeWindow id);

// A host that uses Qt may scale all of the program's windows. Qt's units, in which widgets are
// placed and painted, then are `ratio` pixels each, and Qt knows no window with others. What hosts
// and the window system say and hear are pixels.

/// Pixels of what Qt gives in units, rounded as Qt does.
[[nodiscard]] QRect toPixels(const QRect& units, qreal ratio);
/// The fewest units that cover the pixels. Those of toPixels(units) are the units, for a ratio of
/// at least 1.
[[nodiscard]] QRect toUnits(const QRect& pixels, qreal ratio);

/// Where a widget is, in Qt's global coordinates. Unlike QWidget::mapToGlobal it is right before
/// its window has been seen for the first time, too. GUI thread.
[[nodiscard]] QRect globalRect(const QWidget& widget);
/// The same in screen pixels.
[[nodiscard]] QRect rectOnScreen(const QWidget& widget);
/// Where a window is in its parent, in the parent's pixels. GUI thread.
[[nodiscard]] QRect rectInParent(const QWidget& window);
/// What windows can use of each screen, in screen pixels. GUI thread.
[[nodiscard]] std::vector<QRect> availableScreens();

/// The place nearest to the wanted one that every window system takes, and that Qt can tell for a
/// window of its own: in a scaled host it may be larger by less than a unit. GUI thread.
[[nodiscard]] QRect placeable(NativeWindow id, const QRect& rect);

/// Tells Qt, and with it the widget, where a window of its own is in its parent; nothing for any
/// other window. `rect` is placeable. The widget's events come from inside, so that anything may be
/// gone afterwards. GUI thread.
void setQtGeometry(NativeWindow id, const QRect& rect);

} // namespace platform
