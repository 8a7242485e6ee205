#include "logfilerules.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

QString nameStart()
{
    return QStringLiteral("zrscreenLog");
}

QString nameEnd()
{
    return QStringLiteral(".txt");
}

QString dateText(QDate date)
{
    return date.toString(QStringLiteral("yyyyMMdd"));
}

/// The names that begin with `start` and end as a log file, in ascending order.
QStringList logFilesOf(const QStringList& names, const QString& start)
{
    const QString end = nameEnd();
    QStringList found;
    std::copy_if(names.cbegin(), names.cend(), std::back_inserter(found), [&](const QString& name) {
        return name.size() >= start.size() + end.size() && name.startsWith(start)
               && name.endsWith(end);
    });
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace

QString zr::logFileName(QDate date, const QString& suffix)
{
    const QString day = nameStart() + dateText(date);
    return (suffix.isEmpty() ? day : day + QLatin1Char('-') + suffix) + nameEnd();
}

QString zr::logFileSuffix(QTime startedAt)
{
    return startedAt.toString(QStringLiteral("hhmmss"));
}

QStringList zr::fullDayLogsToDelete(const QStringList& names, QDate date, const QString& current)
{
    constexpr int kKept = 3;
    QStringList files = logFilesOf(names, nameStart() + dateText(date));
    files.removeOne(current);
    return files.mid(0, std::max(0, files.size() - (kKept - 1)));
}

QStringList zr::oldLogsToDelete(const QStringList& names, QDate today)
{
    constexpr int kKeptDays = 3;
    const QString threshold = logFileName(today.addDays(-kKeptDays), QString());
    QStringList files = logFilesOf(names, nameStart());
    files.erase(std::lower_bound(files.begin(), files.end(), threshold), files.end());
    return files;
}

bool zr::isSystemFolder(const QString& path)
{
    const QRegularExpression system(QStringLiteral("^/(usr/(local/)?)?(s?bin|lib\\w*|games)(/|$)"));
    return system.match(path).hasMatch();
}
