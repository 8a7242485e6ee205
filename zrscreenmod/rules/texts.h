// The texts that people see.
#pragma once

#include <QString>
#include <QTranslator>

namespace zr {

/// `Text::tr("主持人")` is that text in the language of the screen. The source is Chinese, which
/// needs no translation; zrscreenmod/res has the others. The translator is none of the
/// application's: installing it would send a change of language to all windows of a host that uses
/// Qt. GUI thread.
class Text
{
#ifdef LUPDATE
    Q_DECLARE_TR_FUNCTIONS(ZRScreenMod) // lupdate alone reads this line, and takes the context
#endif

public:
    static QString tr(const char* source)
    {
        const QString translation =
            s_translator ? s_translator->translate("ZRScreenMod", source) : QString();
        return translation.isEmpty() ? QString::fromUtf8(source) : translation;
    }
    /// Null for none. The caller keeps it.
    static void setTranslator(const QTranslator* translator)
    {
        s_translator = translator;
    }

private:
    static inline const QTranslator* s_translator = nullptr;
};

} // namespace zr
