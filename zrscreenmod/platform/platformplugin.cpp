#include "platformplugin.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>

#include <algorithm>

namespace {

bool isForPlatforms(const QJsonObject& description)
{
    return description.value(QLatin1String("IID"))
        .toString()
        .contains(QLatin1String("QPlatformIntegrationFactoryInterface"));
}

/// As Qt does, which goes by what a plug-in says of itself and not by its name.
bool isForOneOf(const QJsonObject& description, const QByteArrayList& platforms)
{
    const QJsonObject own = description.value(QLatin1String("MetaData")).toObject();
    const QJsonArray keys = own.value(QLatin1String("Keys")).toArray();
    return isForPlatforms(description)
           && std::any_of(keys.begin(), keys.end(), [&platforms](const QJsonValue& key) {
                  return platforms.contains(key.toString().toLower().toUtf8());
              });
}

/// Qt itself may have been built with its plug-in inside.
bool hasBuiltInPlatform()
{
    const QVector<QStaticPlugin> plugins = QPluginLoader::staticPlugins();
    return std::any_of(plugins.cbegin(), plugins.cend(), [](const QStaticPlugin& plugin) {
        return isForPlatforms(plugin.metaData());
    });
}

} // namespace

bool platform::hasPlatformPlugin(const QStringList& folders, const QByteArray& names)
{
    QByteArrayList platforms;
    for (const QByteArray& choice : names.toLower().split(';'))
        platforms << choice.split(':').front(); // behind the colon there are parameters
    for (const QString& folder : folders) {
        const QDir plugins(folder + QStringLiteral("/platforms"));
        for (const QString& file : plugins.entryList(QDir::Files)) {
            if (QLibrary::isLibrary(file)
                && isForOneOf(QPluginLoader(plugins.absoluteFilePath(file)).metaData(), platforms))
                return true;
        }
    }
    return false;
}

bool platform::mayFindPlatformPlugin(const QByteArray& names, const QString& programFolder)
{
    const bool isToldWhere = qEnvironmentVariableIsSet("QT_QPA_PLATFORM_PLUGIN_PATH")
                             || QFile::exists(QStringLiteral(":/qt/etc/qt.conf"))
                             || QFile::exists(programFolder + QStringLiteral("/qt.conf"));
    return isToldWhere || programFolder.isEmpty() || hasBuiltInPlatform()
           || hasPlatformPlugin(QCoreApplication::libraryPaths() << programFolder, names);
}
