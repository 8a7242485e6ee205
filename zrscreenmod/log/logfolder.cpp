#include "logfolder.h"

#include "logfilerules.h"
#include "platform.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

QString programFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/log");
}

QString userFolder()
{
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).baseName();
    return platform::stateFolder() + QStringLiteral("/ZRScreenMod/") + program;
}

/// A permission tells little: a disk may be mounted read-only. The file is the one that the first
/// line goes to.
bool takesLogFile(const QString& folder)
{
    QFile file(folder + QLatin1Char('/') + zr::logFileName(QDate::currentDate(), {}));
    return QDir().mkpath(folder) && file.open(QIODevice::WriteOnly | QIODevice::Append);
}

QString chooseLogFolder()
{
    const QStringList folders = logFolders();
    QString folder = firstWritableFolder(folders);
    if (!folder.isEmpty())
        return folder;
    std::fprintf(stderr, "ZRScreenMod: no log can be written in %s\n",
                 qPrintable(folders.join(QStringLiteral(" nor in "))));
    return folders.first();
}

} // namespace

QString firstWritableFolder(const QStringList& folders)
{
    for (const QString& folder : folders) {
        if (takesLogFile(folder))
            return folder;
    }
    return {};
}

QStringList logFolders()
{
    QStringList folders{userFolder()};
    if (!zr::isSystemFolder(QCoreApplication::applicationDirPath()))
        folders.prepend(programFolder());
    if (const QString chosen = qEnvironmentVariable("ZRSCREEN_LOG_DIR"); !chosen.isEmpty())
        folders.prepend(QDir(chosen).absolutePath());
    return folders;
}

QString logFolder()
{
    static const QString folder = chooseLogFolder();
    return folder;
}
