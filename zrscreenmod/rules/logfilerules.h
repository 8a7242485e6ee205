// The names of the log files, and which of them are out of date.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <QTime>

namespace zr {

/// A log file may grow past this many bytes until its size is next examined.
constexpr qint64 kLogFileLimitBytes = 10'000'000;
/// The size is examined when more than this many lines were written since the last time.
constexpr int kLinesBetweenSizeChecks = 1000;

/// The name of a log file, without its folder. `suffix` is empty for the first file of the day,
/// else a logFileSuffix.
[[nodiscard]] QString logFileName(QDate date, const QString& suffix);

/// What tells a later file of the day from the first one: the time at which it was started, to the
/// second.
[[nodiscard]] QString logFileSuffix(QTime startedAt);

/// The log files of `date` among `names` that go when a file is full: all but the last three in
/// ascending order. '-' sorts before '.', so the first file of the day, which tells how it began,
/// is always last and stays, with the two latest of the others. The one that is being written,
/// `current`, counts as the latest: it is not when the clock has gone back.
[[nodiscard]] QStringList fullDayLogsToDelete(const QStringList& names, QDate date,
                                              const QString& current);

/// The log files among `names`, in ascending order, that are too old at `today`: those whose name
/// compares lower than that of the first file of the day three days before. Of that day itself
/// only the first file stays.
[[nodiscard]] QStringList oldLogsToDelete(const QStringList& names, QDate today);

/// Whether only packages put files into this folder: what a program writes there, nobody removes.
[[nodiscard]] bool isSystemFolder(const QString& path);

} // namespace zr
