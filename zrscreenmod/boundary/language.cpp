#include "language.h"

#include "qzrscreenconfig.h"
#include "texts.h"

#include <QDebug>
#include <QSettings>
#include <QTranslator>

#include <memory>
#include <utility>

namespace {

QTranslator* g_translator = nullptr; ///< null for Chinese; GUI thread

QString wantedLanguage()
{
    QString chosen = qEnvironmentVariable("ZRSCREEN_LANG");
    if (!chosen.isEmpty())
        return chosen;
    const QSettings file(iniFile(), QSettings::IniFormat);
    return file.value(QLatin1String("version/language")).toString();
}

} // namespace

void chooseLanguage()
{
    forgetLanguage();
    // "en" of "en_GB.UTF-8"
    const QString language = wantedLanguage().section(QLatin1Char('_'), 0, 0).toLower();
    if (language.isEmpty() || language == QLatin1String("zh"))
        return;
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(QLatin1String(":/i18n/zrscreenmod_") + language)) {
        qDebug() << "translation failed, language:" << language;
        return;
    }
    g_translator = translator.release();
    zr::Text::setTranslator(g_translator);
}

void forgetLanguage()
{
    zr::Text::setTranslator(nullptr);
    delete std::exchange(g_translator, nullptr);
}
