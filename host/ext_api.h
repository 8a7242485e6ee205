// The exports of the module's extended screen, as a table of function pointers.
#pragma once

#include "zrscreenmod/zrscreenmod.h"

#include <functional>
#include <string>

namespace zrhost {

#define ZRHOST_EXT_EXPORTS(X)                                                                      \
    X(Init)                                                                                        \
    X(Release)                                                                                     \
    X(Move)                                                                                        \
    X(SetPersonInfo)                                                                               \
    X(PlayFrame)                                                                                   \
    X(SetAllLook)                                                                                  \
    X(SetLockLook)                                                                                 \
    X(SetMute)                                                                                     \
    X(SetVolume)                                                                                   \
    X(Preview)                                                                                     \
    X(UpdateUserNetStatus)                                                                         \
    X(GetShareWgtPos)

/// One member per export, with the export's own type.
struct ExtApi
{
// NOLINTNEXTLINE(bugprone-macro-parentheses): a member's name takes none
#define ZRHOST_MEMBER(name) decltype(&::ZRScreenExt_##name) name = nullptr;
    ZRHOST_EXT_EXPORTS(ZRHOST_MEMBER)
#undef ZRHOST_MEMBER

    /// Looks every export up by its full name. @param missing gets the names of those for which
    /// `lookUp` returns null, each behind ", "
    [[nodiscard]] static ExtApi resolve(const std::function<void*(const char*)>& lookUp,
                                        std::string& missing);
};

} // namespace zrhost
