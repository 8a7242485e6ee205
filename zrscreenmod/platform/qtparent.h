// What Qt is told when a window of its own is put into a window of the host's, or taken out of it.
#pragma once

#include "platform.h"

class QWindow;

namespace platform {

/// Qt's object for a window of this process; null for every other window. GUI thread.
[[nodiscard]] QWindow* findQtWindow(NativeWindow id);

/// Tells Qt which native window its window is in, 0 for none: call it when the system has put it
/// there. Qt then maps to global coordinates by asking the system, which places what pops up right
/// also after the host has moved its window, and leaves it in its parent when it is shown again.
/// GUI thread.
void setQtParent(QWindow* child, NativeWindow parent);

} // namespace platform
