#include "platformplugin.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonObject>
#include <QPluginLoader>
#include <QSettings>
#include <QStringList>

#include <algorithm>

namespace {

/// Qt itself may have been built with its plug-in inside.
bool isBuiltIn()
{
    const QVector<QStaticPlugin> plugins = QPluginLoader::staticPlugins();
    return std::any_of(plugins.cbegin(), plugins.cend(), [](const QStaticPlugin& plugin) {
        const QString iid = plugin.metaData().value(QLatin1String("IID")).toString();
        return iid.contains(QLatin1String("QPlatformIntegrationFactoryInterface"));
    });
}

/// Where a program's qt.conf says that plug-ins are, or the default beside it; Qt reads it once
/// there is an application object.
QString configuredFolder(const QString& programFolder)
{
    const QSettings file(programFolder + QStringLiteral("/qt.conf"), QSettings::IniFormat);
    const QDir prefix(QDir(programFolder).filePath(file.value("Paths/Prefix").toString()));
    return prefix.filePath(file.value("Paths/Plugins", "plugins").toString());
}

QStringList foldersOf(const QString& programFolder)
{
    const QString chosen = QString::fromLocal8Bit(qgetenv("QT_QPA_PLATFORM_PLUGIN_PATH"));
    QStringList plugins = QCoreApplication::libraryPaths();
    plugins << programFolder << configuredFolder(programFolder);
    QStringList folders;
    if (!chosen.isEmpty()) {
        plugins << chosen;
        folders << chosen;
    }
    for (const QString& folder : plugins)
        folders << folder + QStringLiteral("/platforms");
    return folders;
}

} // namespace

bool platform::findsPlatformPlugin(const QByteArray& names, const QString& programFolder)
{
    if (isBuiltIn())
        return true;
    const QStringList folders = foldersOf(programFolder);
    for (const QByteArray& choice : names.split(';')) {
        const QString name = QString::fromLocal8Bit(choice.split(':').front());
        for (const QString& folder : folders) {
            const QString file = folder + QStringLiteral("/q") + name;
            // One of another version is not loaded, here as there; "d" is a debug build's.
            if (QPluginLoader(file).load() || QPluginLoader(file + QLatin1Char('d')).load())
                return true;
        }
    }
    return false;
}
