// The context menu of the embedded text controls. GUI thread.
#pragma once

class QMenu;
class QPoint;

/// Opens a menu that Qt has made for an edit, with the entries named in the language of the module:
/// Qt's own are English, as no translation is shipped. The menu deletes itself when it closes.
/// @param at on the screen
void openEditMenu(QMenu* menu, const QPoint& at);
