// The exports of the embedded controls.
#pragma once

#include "module.h"

#include <array>

// clang-format off
#define ZR_CONTROL_EXPORTS(X)                                                                      \
    X(QLineEdit_Init) X(QLineEdit_Release) X(QLineEdit_SetParent) X(QLineEdit_SetStyleSheet)       \
    X(QLineEdit_GetText) X(QLineEdit_SetText) X(QLineEdit_SetPlaceholderText)                      \
    X(QLineEdit_MoveWindow) X(QLineEdit_Show) X(QLineEdit_SetAttribute) X(QLineEdit_SetInputRexp)  \
    X(QLineEdit_SetObjectName) X(QLineEdit_SetEchoMode) X(QLineEdit_SetMaxLength)                  \
    X(QLineEdit_SetFocus) X(QLineEdit_SetCursorPos) X(QLineEdit_SetSelection) X(QTextEdit_Init)    \
    X(QTextEdit_Release) X(QTextEdit_SetText)
#define ZR_DATE_EXPORTS(X) X(Init) X(Release) X(Move) X(Hide)
// clang-format on

/// `QLineEdit_Init` is the export `ZRCtrl_QLineEdit_Init`, `date.Init` is `ZRScreenDate_Init`. Good
/// for as long as the module is loaded.
struct Controls
{
    explicit Controls(const Module& module);

#define ZR_MEMBER(member)                                                                          \
    decltype(&::ZRCtrl_##member) member = nullptr; // NOLINT(bugprone-macro-parentheses)
    ZR_CONTROL_EXPORTS(ZR_MEMBER)
#undef ZR_MEMBER
    struct Date
    {
#define ZR_MEMBER(member)                                                                          \
    decltype(&::ZRScreenDate_##member) member = nullptr; // NOLINT(bugprone-macro-parentheses)
        ZR_DATE_EXPORTS(ZR_MEMBER)
#undef ZR_MEMBER
    } date;

    using TextSetter = decltype(QLineEdit_SetText);
    /// All that give a line edit a text.
    [[nodiscard]] std::array<TextSetter, 5> textSetters() const
    {
        return {QLineEdit_SetText, QLineEdit_SetPlaceholderText, QLineEdit_SetStyleSheet,
                QLineEdit_SetObjectName, QLineEdit_SetInputRexp};
    }
    /// The text of a line edit; "?" for a handle that is refused.
    [[nodiscard]] std::string text(void* edit) const;
};
