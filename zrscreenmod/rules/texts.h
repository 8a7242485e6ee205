// The texts that people see.
#pragma once

#include <QCoreApplication>

namespace zr {

/// `Text::tr("主持人")` is that text in the language of the screen. The source is Chinese, which
/// needs no translation; zrscreenmod/res has the others.
struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ZRScreenMod)
};

} // namespace zr
