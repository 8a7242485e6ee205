// Qt's platform plug-ins: without one Qt ends the process.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace platform {

/// Whether one of `folders` holds, in its folder "platforms", a plug-in for one of the platforms
/// `names`, which are separated as in QT_QPA_PLATFORM. Loads nothing. Any thread.
[[nodiscard]] bool hasPlatformPlugin(const QStringList& folders, const QByteArray& names);

/// False where Qt, which is to take one of `names`, will find no plug-in. True in doubt: where
/// qt.conf or the environment tell Qt to look elsewhere, they are believed. Before the application
/// object is made, which adds `programFolder` to where Qt looks; GUI thread.
[[nodiscard]] bool mayFindPlatformPlugin(const QByteArray& names, const QString& programFolder);

} // namespace platform
