// Pictures of what the user sees of a window, with the module's windows in and above it.
#pragma once

class QString;
class QWidget;

namespace zrworkbench {

/// @param file PNG, or what else its name ends with @throws zrhost::HostError
void saveScreen(const QWidget& widget, const QString& file);

} // namespace zrworkbench
