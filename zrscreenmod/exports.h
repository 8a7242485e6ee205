/// The exports as one table: on which thread each does its work, what it answers, what it answers
/// when the call is refused, and what each argument is. Whatever handles the exports as a whole is
/// made from it: loaders, tests, calls that are typed as text, the index in the documentation.
///
/// An export is one line here, beside its declaration and its implementation. A line that does not
/// agree with the declaration does not compile. Not installed; it needs no Qt.
#pragma once

#include "zrscreenmod.h"

#include <array>
#include <climits>
#include <cstddef>
#include <string>
#include <type_traits>

namespace zr {

/// As in the public header: on which thread the work is done, and who waits for it.
enum class Thread
{
    Any,
    Posted,
    Gui
};

enum class Kind
{
    Nothing, ///< of an answer
    // Handles that the library gives out.
    Screen,
    Play, ///< of a participant of the screen
    Ext,
    LineEdit,
    TextBox,
    DatePicker,
    // What the host brings along.
    Window,    ///< native; null stands for none
    Notify,    ///< the function that hears the messages of the handle that the call answers
    HostValue, ///< handed back, never read
    UserId,
    Text,
    Rectangle,
    Point,
    Picture, ///< a frame record
    Order,   ///< positions and user ids
    Watermark,
    Buffer, ///< written to, as long as the Length tells
    Length, ///< read and written
    Flag,
    Number,
    // Of an answer alone.
    Done ///< 1 when it was carried out or queued
};

enum class Encoding
{
    None,
    Utf8,
    Local8Bit
};

enum class Use
{
    Read,
    Ends,   ///< the handle is not valid afterwards
    Ignored ///< anything will do
};

struct Argument
{
    Kind kind = Kind::Nothing;
    Encoding encoding = Encoding::None;
    Use use = Use::Read;
    bool byValue = false;  ///< a text as a std::string, which is never null
    bool required = false; ///< null is refused; elsewhere it is empty, none or no handle
    /// Numbers that mean something; 1 and 0 of a flag.
    long long least = LLONG_MIN;
    long long most = LLONG_MAX;
    bool checked = false; ///< others, or a window that is none, are refused; else they are brought
                          ///< into the range, or mean nothing
};

struct Answer
{
    Kind kind = Kind::Nothing;
    /// For numbers the answer itself; a rectangle's right and bottom edge, the others are 0.
    int whenRefused = 0;
};

struct Export
{
    const char* name;
    Thread thread;
    Answer answer;
    const Argument* arguments;
    std::size_t argumentCount;
};

constexpr bool isHandle(Kind kind)
{
    return kind >= Kind::Screen && kind <= Kind::DatePicker;
}

/// Whether a null handle is refused without a log line.
constexpr bool isQuietWhenNull(const Argument& argument)
{
    return (isHandle(argument.kind) && argument.kind >= Kind::Ext)
           || (argument.kind == Kind::Screen && argument.use == Use::Ends);
}

// X(family, name, thread, answer, (arguments)): the export is called family_name. The words are
// those of zr::table below.
// clang-format off
#define ZR_SCREEN_EXPORTS(X)                                                                       \
    X(ZRScreen, Init, gui, newHandle(screen), (window, notify))                                    \
    X(ZRScreen, SetParent, gui, done, (screen, window))                                            \
    X(ZRScreen, MoveWindow, gui, done, (screen, rectangle, ignored(number)))                       \
    X(ZRScreen, Release, gui, nothing, (ended(screen)))                                            \
    X(ZRScreen, ExitMeeting, gui, done, (screen))                                                  \
    X(ZRScreen, AddPerson, gui, newHandle(play),                                                   \
      (screen, required(utf8(userId)), utf8(text), number, number, hostValue))                     \
    X(ZRScreen, JoinMeetingFinish, posted, done, (screen, flag))                                   \
    X(ZRScreen, DelPerson, posted, done, (screen, ended(play), ignored(flag)))                     \
    X(ZRScreen, PlayFrame, any, done, (screen, play, picture))                                     \
    X(ZRScreen, SetPersonInfo, posted, done,                                                       \
      (screen, play, flag, range(0, 2), utf8(text), number))                                       \
    X(ZRScreen, SetMute, posted, done, (screen, play, flag))                                       \
    X(ZRScreen, SetVolume, posted, done, (screen, play, range(0, 100)))                            \
    X(ZRScreen, Preview, posted, done, (screen, play, flag))                                       \
    X(ZRScreen, SetPersonHandUp, posted, done, (screen, play, flag))                               \
    X(ZRScreen, UpdateUserNetStatus, posted, done,                                                 \
      (screen, local(userId), range(1, 2), flag, range(0, 5)))                                     \
    X(ZRScreen, ChangeLayout, posted, done, (screen, range(1, 14), order))                         \
    X(ZRScreen, GetCurMode, any, numeric, (screen))                                                \
    X(ZRScreen, ReOrder, posted, done, (screen, flag))                                             \
    X(ZRScreen, FocusByUserID, posted, done, (screen, local(userId), flag))                        \
    X(ZRScreen, LockLook, posted, done, (screen, play, flag))                                      \
    X(ZRScreen, AllLook, posted, done, (screen, play, flag))                                       \
    X(ZRScreen, SetActivateUser, posted, done, (screen, local(userId)))                            \
    X(ZRScreen, SetCurrentSpeakingPerson, posted, done, (screen, byValue(userId)))                 \
    X(ZRScreen, SetVoiceActivate, any, alwaysDone, (ignored(screen), flag))                        \
    X(ZRScreen, SetSupport9EqualCut, any, done, (screen, flag))                                    \
    X(ZRScreen, SetSupport16EqualCut, any, done, (screen, flag))                                   \
    X(ZRScreen, SetOpenPollingPage, posted, done, (screen, flag, range(1, INT_MAX)))               \
    X(ZRScreen, SetLayoutCtrl, posted, done, (screen, flag, flag, number, number, flag))           \
    X(ZRScreen, SetHideNoCameraWnd, posted, done, (screen, ignored(flag)))                         \
    X(ZRScreen, IsPersonVisible, gui, numeric, (screen, local(userId)))                            \
    X(ZRScreen, SetHideSmallWidget, posted, done, (screen, flag))                                  \
    X(ZRScreen, ShowSmallWnd, gui, done, (screen, flag, flag))                                     \
    X(ZRScreen, GetSmallWndID, gui, numeric, (screen))                                             \
    X(ZRScreen, IsPersonVisibleInSmallWnd, gui, numeric, (screen, local(userId)))                  \
    X(ZRScreen, SetShareSponsor, posted, done, (screen, byValue(userId)))                          \
    X(ZRScreen, PopSelfShareWnd, gui, done, (screen, flag, flag))                                  \
    X(ZRScreen, SetIsCloseWhiteBoard, posted, done, (screen))                                      \
    X(ZRScreen, GetShareWgtPos, gui, rect(-1), (screen))                                           \
    X(ZRScreen, SetPauseShareWindow, any, alwaysDone, (screen, flag))                              \
    X(ZRScreen, SetExtendScreen, posted, done, (screen, flag, flag))                               \
    X(ZRScreen, IsExtendScreen, any, numeric, ())                                                  \
    X(ZRScreen, SetVideoToolbarStatus, posted, done, (screen, rectangle, flag))                    \
    X(ZRScreen, IsMouseOnBtnMore, gui, done, (screen))                                             \
    X(ZRScreen, ClearMoreMenuPtr, posted, alwaysDone, (screen))                                    \
    X(ZRScreen, OpenSubtitle, gui, done, (screen, flag))                                           \
    X(ZRScreen, ClearSubtitles, any, done, (screen))                                               \
    X(ZRScreen, AddSentence, any, done, (screen, number, range(0, 3), local(text), local(text)))

#define ZR_WATERMARK_EXPORTS(X)                                                                    \
    X(ZRScreenWtmark, SetInfo, any, nothing, (watermark))                                          \
    X(ZRScreenWtmark, SetEnabled, any, nothing, (flag))

#define ZR_EXT_EXPORTS(X)                                                                          \
    X(ZRScreenExt, Init, gui, newHandle(ext), (window, notify))                                    \
    X(ZRScreenExt, Release, gui, nothing, (ended(ext)))                                            \
    X(ZRScreenExt, Move, gui, done, (ext, rectangle, ignored(number)))                             \
    X(ZRScreenExt, SetPersonInfo, gui, done,                                                       \
      (ext, hostValue, required(local(userId)), flag, range(0, 2), utf8(text), range(0, 3)))       \
    X(ZRScreenExt, PlayFrame, any, done, (ext, picture))                                           \
    X(ZRScreenExt, SetAllLook, posted, done, (ext, flag))                                          \
    X(ZRScreenExt, SetLockLook, posted, done, (ext, flag))                                         \
    X(ZRScreenExt, SetMute, posted, done, (ext, flag))                                             \
    X(ZRScreenExt, SetVolume, posted, done, (ext, local(userId), range(0, 100)))                   \
    X(ZRScreenExt, Preview, posted, done, (ext, flag))                                             \
    X(ZRScreenExt, UpdateUserNetStatus, posted, done,                                              \
      (ext, local(userId), range(1, 2), flag, range(0, 5)))                                        \
    X(ZRScreenExt, GetShareWgtPos, gui, rect(0), (ext))

#define ZR_CONTROL_EXPORTS(X)                                                                      \
    X(ZRCtrl, QLineEdit_Init, gui, newHandle(lineEdit), (real(window), rectangle, utf8(text)))     \
    X(ZRCtrl, QLineEdit_Release, gui, nothing, (ended(lineEdit)))                                  \
    X(ZRCtrl, QLineEdit_SetParent, posted, nothing, (lineEdit, real(window)))                      \
    X(ZRCtrl, QLineEdit_SetStyleSheet, posted, nothing, (lineEdit, utf8(text)))                    \
    X(ZRCtrl, QLineEdit_GetText, gui, length(-1), (lineEdit, buffer, bufferLength))                \
    X(ZRCtrl, QLineEdit_SetText, posted, nothing, (lineEdit, utf8(text)))                          \
    X(ZRCtrl, QLineEdit_SetPlaceholderText, posted, nothing, (lineEdit, utf8(text)))               \
    X(ZRCtrl, QLineEdit_MoveWindow, posted, nothing, (lineEdit, rectangle))                        \
    X(ZRCtrl, QLineEdit_Show, posted, nothing, (lineEdit, flag))                                   \
    X(ZRCtrl, QLineEdit_SetAttribute, posted, nothing, (lineEdit, checked(0, 131), flag))          \
    X(ZRCtrl, QLineEdit_SetInputRexp, posted, nothing, (lineEdit, utf8(text)))                     \
    X(ZRCtrl, QLineEdit_SetObjectName, posted, nothing, (lineEdit, utf8(text)))                    \
    X(ZRCtrl, QLineEdit_SetEchoMode, posted, nothing, (lineEdit, checked(0, 3)))                   \
    X(ZRCtrl, QLineEdit_SetMaxLength, posted, nothing, (lineEdit, checked(0, INT_MAX)))            \
    X(ZRCtrl, QLineEdit_SetFocus, posted, nothing, (lineEdit))                                     \
    X(ZRCtrl, QLineEdit_SetCursorPos, posted, nothing, (lineEdit, number))                         \
    X(ZRCtrl, QLineEdit_SetSelection, posted, nothing, (lineEdit, number, number))                 \
    X(ZRCtrl, QTextEdit_Init, gui, newHandle(textBox),                                             \
      (real(window), rectangle, range(0, 255), range(0, 255), range(0, 255)))                      \
    X(ZRCtrl, QTextEdit_Release, gui, nothing, (ended(textBox)))                                   \
    X(ZRCtrl, QTextEdit_SetText, posted, nothing, (textBox, utf8(text)))

#define ZR_DATE_EXPORTS(X)                                                                         \
    X(ZRScreenDate, Init, gui, newHandle(datePicker), (real(window), notify))                      \
    X(ZRScreenDate, Release, gui, nothing, (ended(datePicker)))                                    \
    X(ZRScreenDate, Move, posted, nothing,                                                         \
      (datePicker, point, number, number, number, number, number, number))                         \
    X(ZRScreenDate, Hide, posted, nothing, (datePicker))

#define ZR_EXPORTS(X)                                                                              \
    ZR_SCREEN_EXPORTS(X)                                                                           \
    ZR_WATERMARK_EXPORTS(X)                                                                        \
    ZR_EXT_EXPORTS(X)                                                                              \
    ZR_CONTROL_EXPORTS(X)                                                                          \
    ZR_DATE_EXPORTS(X)
// clang-format on

/// The words that the lines are made of.
namespace table {

constexpr Thread any = Thread::Any;
constexpr Thread posted = Thread::Posted;
constexpr Thread gui = Thread::Gui;

constexpr Argument of(Kind kind, bool required = false)
{
    Argument argument;
    argument.kind = kind;
    argument.required = required;
    return argument;
}
constexpr Argument required(Argument argument)
{
    argument.required = true;
    return argument;
}
constexpr Argument ended(Argument argument)
{
    argument.use = Use::Ends;
    return argument;
}
constexpr Argument ignored(Argument argument)
{
    argument.use = Use::Ignored;
    return argument;
}
constexpr Argument utf8(Argument argument)
{
    argument.encoding = Encoding::Utf8;
    return argument;
}
constexpr Argument local(Argument argument)
{
    argument.encoding = Encoding::Local8Bit;
    return argument;
}
constexpr Argument byValue(Argument argument)
{
    argument.byValue = true;
    return utf8(argument);
}
constexpr Argument range(long long least, long long most)
{
    Argument argument = of(Kind::Number);
    argument.least = least;
    argument.most = most;
    return argument;
}
constexpr Argument checked(long long least, long long most)
{
    Argument argument = range(least, most);
    argument.checked = true;
    return argument;
}
constexpr Argument real(Argument argument)
{
    argument.checked = true;
    return argument;
}

constexpr Argument screen = of(Kind::Screen, true);
constexpr Argument play = of(Kind::Play, true);
constexpr Argument ext = of(Kind::Ext, true);
constexpr Argument lineEdit = of(Kind::LineEdit, true);
constexpr Argument textBox = of(Kind::TextBox, true);
constexpr Argument datePicker = of(Kind::DatePicker, true);
constexpr Argument window = of(Kind::Window);
constexpr Argument notify = of(Kind::Notify);
constexpr Argument hostValue = of(Kind::HostValue);
constexpr Argument userId = of(Kind::UserId);
constexpr Argument text = of(Kind::Text);
constexpr Argument rectangle = of(Kind::Rectangle, true);
constexpr Argument point = of(Kind::Point, true);
constexpr Argument picture = of(Kind::Picture, true);
constexpr Argument order = of(Kind::Order);
constexpr Argument watermark = of(Kind::Watermark, true);
constexpr Argument buffer = of(Kind::Buffer);
constexpr Argument bufferLength = of(Kind::Length, true);
constexpr Argument flag = of(Kind::Flag);
constexpr Argument number = of(Kind::Number);

constexpr Answer nothing{};
constexpr Answer done{Kind::Done, 0};
constexpr Answer alwaysDone{Kind::Done, 1};
constexpr Answer numeric{Kind::Number, 0};
constexpr Answer length(int whenRefused)
{
    return {Kind::Length, whenRefused};
}
constexpr Answer rect(int whenRefused)
{
    return {Kind::Rectangle, whenRefused};
}
constexpr Answer newHandle(const Argument& handle)
{
    return {handle.kind, 0};
}

template<typename... Arguments>
constexpr std::array<Argument, sizeof...(Arguments)> list(const Arguments&... arguments)
{
    return {arguments...};
}

#define ZR_ARGUMENTS(family, name, thread, answer, arguments)                                      \
    inline constexpr auto family##_##name = list arguments;
ZR_EXPORTS(ZR_ARGUMENTS)
#undef ZR_ARGUMENTS

inline constexpr Export kExports[] = {
#define ZR_ROW(family, name, thread, answer, arguments)                                            \
    {#family "_" #name, thread, answer, family##_##name.data(), family##_##name.size()},
    ZR_EXPORTS(ZR_ROW)
#undef ZR_ROW
};

enum Index : std::size_t
{
#define ZR_INDEX(family, name, thread, answer, arguments) k##family##_##name,
    ZR_EXPORTS(ZR_INDEX)
#undef ZR_INDEX
};

template<typename T>
constexpr bool isText = std::is_same_v<T, char*> || std::is_same_v<T, const char*>;

/// Whether an argument of this kind can be declared as a T.
template<typename T>
constexpr bool canBe(const Argument& argument)
{
    switch (argument.kind) {
    case Kind::Window:
        return std::is_same_v<T, HWND>;
    case Kind::Notify:
        return std::is_same_v<T, ZRNotify>;
    case Kind::UserId:
    case Kind::Text:
        return argument.byValue ? std::is_same_v<T, std::string>
                                : isText<T> && argument.encoding != Encoding::None;
    case Kind::Rectangle:
        return std::is_same_v<T, tagRECT*>;
    case Kind::Point:
        return std::is_same_v<T, tagPOINT*>;
    case Kind::Order:
        return std::is_same_v<T, const std::map<int, std::string>&>;
    case Kind::Watermark:
        return std::is_same_v<T, const __WTMark_Info&>;
    case Kind::Buffer:
        return std::is_same_v<T, char*>;
    case Kind::Length:
        return std::is_same_v<T, int&>;
    case Kind::Flag:
        return std::is_same_v<T, bool> || std::is_same_v<T, int>;
    case Kind::Number:
        return (std::is_integral_v<T> || std::is_enum_v<T>)&&!std::is_same_v<T, bool>;
    default: // handles, host values and pictures
        return std::is_same_v<T, void*>;
    }
}

template<typename T>
constexpr bool canBe(const Answer& answer)
{
    switch (answer.kind) {
    case Kind::Nothing:
        return std::is_void_v<T>;
    case Kind::Rectangle:
        return std::is_same_v<T, ZRRect>;
    default:
        return isHandle(answer.kind) ? std::is_same_v<T, void*> : std::is_same_v<T, int>;
    }
}

/// Whether a row of the table and a declaration agree.
template<typename Function>
struct Declaration;
template<typename Result, typename... Arguments>
struct Declaration<Result(ZR_CALL*)(Arguments...)>
{
    static constexpr bool agrees(const Export& row)
    {
        [[maybe_unused]] std::size_t at = 0;
        return row.argumentCount == sizeof...(Arguments) && canBe<Result>(row.answer)
               && (canBe<Arguments>(row.arguments[at++]) && ...);
    }
};

#define ZR_CHECK(family, name, thread, answer, arguments)                                          \
    static_assert(Declaration<decltype(&::family##_##name)>::agrees(kExports[k##family##_##name]), \
                  "the line of " #family "_" #name " and its declaration differ");
ZR_EXPORTS(ZR_CHECK)
#undef ZR_CHECK

} // namespace table

using table::kExports;

/// How an argument is passed on that may be wrong: a reference as its address.
template<typename T>
using Passed =
    std::conditional_t<std::is_reference_v<T>, std::add_pointer_t<std::remove_reference_t<T>>, T>;

// A member for each export of a family, with the export's own type.
// NOLINTBEGIN(bugprone-macro-parentheses): a member's name takes none
#define ZR_MEMBER(family, name, thread, answer, arguments)                                         \
    decltype(&::family##_##name) name = nullptr;
// NOLINTEND(bugprone-macro-parentheses)
struct ScreenExports
{
    ZR_SCREEN_EXPORTS(ZR_MEMBER)
};
struct WatermarkExports
{
    ZR_WATERMARK_EXPORTS(ZR_MEMBER)
};
struct ExtExports
{
    ZR_EXT_EXPORTS(ZR_MEMBER)
};
struct ControlExports
{
    ZR_CONTROL_EXPORTS(ZR_MEMBER)
};
struct DateExports
{
    ZR_DATE_EXPORTS(ZR_MEMBER)
};
#undef ZR_MEMBER

/// The exports of a loaded library: `exports.ZRScreenExt.Move` is `ZRScreenExt_Move`.
struct Exports
{
    ScreenExports ZRScreen;
    WatermarkExports ZRScreenWtmark;
    ExtExports ZRScreenExt;
    ControlExports ZRCtrl;
    DateExports ZRScreenDate;

    /// Calls `visit(row, function)` for each, in the order of the table.
    template<typename Visit>
    void forEach(Visit&& visit)
    {
// NOLINTBEGIN(bugprone-macro-parentheses): as above
#define ZR_VISIT(family, name, thread, answer, arguments)                                          \
    visit(kExports[table::k##family##_##name], family.name);
        ZR_EXPORTS(ZR_VISIT)
#undef ZR_VISIT
        // NOLINTEND(bugprone-macro-parentheses)
    }
    template<typename Visit>
    void forEach(Visit&& visit) const
    {
        const_cast<Exports*>(this)->forEach(
            [&visit](const Export& row, const auto& function) { visit(row, function); });
    }

    /// Looks every export up by its name. @return the names that `lookUp` gives null for, with ", "
    /// between them
    template<typename LookUp>
    std::string load(LookUp&& lookUp)
    {
        std::string missing;
        forEach([&](const Export& row, auto& function) {
            function = reinterpret_cast<std::decay_t<decltype(function)>>(lookUp(row.name));
            if (!function)
                missing += (missing.empty() ? "" : ", ") + std::string(row.name);
        });
        return missing;
    }
};

} // namespace zr
