// Where the log is.
#pragma once

#include <QString>
#include <QStringList>

/// The folder of the log files and of dumped frames: the first of logFolders() that can be written
/// to when this is called first. When there is none, standard error says so, once, and the answer
/// is the first of them all the same. Any thread.
[[nodiscard]] QString logFolder();

/// The folders that come into question, best first: what ZRSCREEN_LOG_DIR names, "log" under the
/// program's folder unless that is the system's, and a folder of the program's in the user's folder
/// for state (XDG_STATE_HOME, on Windows the local application data).
[[nodiscard]] QStringList logFolders();

/// The first folder in which a log file can be written, made where it is not there; empty without
/// one.
[[nodiscard]] QString firstWritableFolder(const QStringList& folders);
