#include "surroundings.h"

#include "logfolder.h"
#include "zrscreenmod.h"

#include <QDateTime>
#include <QDebug>
#include <QFontInfo>
#include <QGuiApplication>
#include <QProcessEnvironment>
#include <QScreen>
#include <QSysInfo>

namespace {

void logScreens()
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        qDebug() << "screen:" << screen->name() << screen->geometry()
                 << ",depth:" << screen->depth() << ",dpi:" << screen->logicalDotsPerInch()
                 << ",scale:" << screen->devicePixelRatio()
                 << (screen == QGuiApplication::primaryScreen() ? ",primary" : "");
}

void logFonts()
{
    // The families that the overlay, the subtitles and the controls ask for.
    for (const QString& family : {QStringLiteral("微软雅黑"), QStringLiteral("Microsoft YaHei")})
        qDebug() << "font:" << family << ",found:" << QFontInfo(QFont(family)).family();
}

void logVariables()
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : environment.keys()) {
        if (name.startsWith(QLatin1String("QT_")) || name.startsWith(QLatin1String("ZRSCREEN_")))
            qDebug().noquote() << "environment:"
                               << name + QLatin1Char('=') + environment.value(name);
    }
}

} // namespace

void logSurroundings()
{
    qDebug().nospace() << "ZRScreenMod " << ZRSCREENMOD_VERSION_MAJOR << '.'
                       << ZRSCREENMOD_VERSION_MINOR << '.' << ZRSCREENMOD_VERSION_PATCH << ", Qt "
                       << qVersion() << " (built with " << QT_VERSION_STR << "), "
                       << QSysInfo::prettyProductName() << ' ' << QSysInfo::currentCpuArchitecture()
                       << ", platform " << QGuiApplication::platformName();
    qDebug() << "log folder:" << logFolder()
             << ",begun:" << QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
    logScreens();
    logFonts();
    logVariables();
}
