// The controls that hosts have borrowed, and the registry that tells a live handle from a stale one
// and from one of another family. GUI thread throughout: exports come here through the boundary.
#pragma once

#include <functional>

class QMyLineEdit;
class QDlgTextEdit;
class QWidget;
struct ST_ZRDateHdl;

/// Takes a control into the registry, which owns it from here on. `widget` is its window, `destroy`
/// ends it.
void adoptLineEdit(QMyLineEdit* edit);
void adoptTextEdit(QDlgTextEdit* edit);
void adoptDatePicker(ST_ZRDateHdl* picker, QWidget* widget, std::function<void()> destroy);

/// A control by its handle; null, and a log line, for a handle that is not one of a live control of
/// this family. The memory of a stale one is not touched.
[[nodiscard]] QMyLineEdit* liveLineEdit(const void* handle);
[[nodiscard]] QDlgTextEdit* liveTextEdit(const void* handle);
[[nodiscard]] ST_ZRDateHdl* liveDatePicker(const void* handle);

/// Takes the control off the registry and destroys it: at once, or from the event loop when the GUI
/// thread is inside one of its events or inside a message to a host. Checks the handle as above.
void releaseLineEdit(void* handle);
void releaseTextEdit(void* handle);
void releaseDatePicker(void* handle);

/// Destroys what is left, for the end of the module.
void releaseAllControls();
