// The language of the texts on the screen.
#pragma once

/// Takes the language that ZRSCREEN_LANG names, or the key version/language of the INI file.
/// Without a translation for it texts are Chinese. What is shown already stays as it is. GUI
/// thread; there is an application object.
void chooseLanguage();

/// Takes back what chooseLanguage did. GUI thread.
void forgetLanguage();
