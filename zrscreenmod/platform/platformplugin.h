// Qt's platform plug-ins: without one Qt ends the process.
#pragma once

#include <QByteArray>
#include <QString>

namespace platform {

/// Whether Qt will find one of the plug-ins at least, which stays loaded. `names` is separated by
/// semicolons, as the variable QT_QPA_PLATFORM is; parameters after a colon do not matter. Before
/// the application object is made, which adds `programFolder` to where Qt looks. GUI thread.
[[nodiscard]] bool findsPlatformPlugin(const QByteArray& names, const QString& programFolder);

} // namespace platform
