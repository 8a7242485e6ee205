// The exports of the module's embedded controls, as tables of function pointers.
#pragma once

#include "zrscreenmod/zrscreenmod.h"

#include <functional>
#include <string>

namespace zrhost {

#define ZRHOST_EDIT_EXPORTS(X)                                                                     \
    X(Init)                                                                                        \
    X(Release)                                                                                     \
    X(SetParent)                                                                                   \
    X(SetStyleSheet)                                                                               \
    X(GetText)                                                                                     \
    X(SetText)                                                                                     \
    X(SetPlaceholderText)                                                                          \
    X(MoveWindow)                                                                                  \
    X(Show)                                                                                        \
    X(SetAttribute)                                                                                \
    X(SetInputRexp)                                                                                \
    X(SetObjectName)                                                                               \
    X(SetEchoMode)                                                                                 \
    X(SetMaxLength)                                                                                \
    X(SetFocus)                                                                                    \
    X(SetCursorPos)                                                                                \
    X(SetSelection)
#define ZRHOST_BOX_EXPORTS(X) X(Init) X(Release) X(SetText)
#define ZRHOST_DATE_EXPORTS(X) X(Init) X(Release) X(Move) X(Hide)

/// One member per export, with the export's own type.
struct ControlApi
{
    struct Edit ///< ZRCtrl_QLineEdit_...
    {
// NOLINTNEXTLINE(bugprone-macro-parentheses): a member's name takes none
#define ZRHOST_MEMBER(name) decltype(&::ZRCtrl_QLineEdit_##name) name = nullptr;
        ZRHOST_EDIT_EXPORTS(ZRHOST_MEMBER)
#undef ZRHOST_MEMBER
    } edit;
    struct Box ///< ZRCtrl_QTextEdit_...
    {
// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define ZRHOST_MEMBER(name) decltype(&::ZRCtrl_QTextEdit_##name) name = nullptr;
        ZRHOST_BOX_EXPORTS(ZRHOST_MEMBER)
#undef ZRHOST_MEMBER
    } box;
    struct Date ///< ZRScreenDate_...
    {
// NOLINTNEXTLINE(bugprone-macro-parentheses)
#define ZRHOST_MEMBER(name) decltype(&::ZRScreenDate_##name) name = nullptr;
        ZRHOST_DATE_EXPORTS(ZRHOST_MEMBER)
#undef ZRHOST_MEMBER
    } date;

    /// Looks every export up by its full name. @param missing gets the names of those for which
    /// `lookUp` returns null, each behind ", "
    [[nodiscard]] static ControlApi resolve(const std::function<void*(const char*)>& lookUp,
                                            std::string& missing);
};

} // namespace zrhost
