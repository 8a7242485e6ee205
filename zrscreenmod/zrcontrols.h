/// ZRScreenMod: controls that the host borrows from the library and places inside its own native
/// windows: a line edit, a text box, and a date and time picker. A part of `zrscreenmod.h`, whose
/// rules on threads, pointers and numbers hold here too.
///
/// - A control is a native window. It is created inside the window that the host names, and stays
///   there until it is released. Release it before that window is destroyed.
/// - The keyboard: a control takes it when it is clicked, and the line edit with
///   `ZRCtrl_QLineEdit_SetFocus`. To take it back, direct it to another window (X11:
///   `XSetInputFocus`, Windows: `SetFocus`). When a control that has the keyboard is released,
///   hidden or left with Tab, it goes to the control's parent window.
/// - A handle of one kind of control is refused by the functions of the others, like any other that
///   is not valid: the call is logged and does nothing.
/// - All `char*` here are UTF-8; bytes that are no UTF-8 become replacement characters. A text of
///   more than 1 MiB is refused.
/// - A control that is released from inside a message takes no further call at once, is hidden, and
///   is destroyed when the event is done.
/// - Controls need no screen. They outlive it, but messages of the line edit go to the functions of
///   the screens that exist.
#ifndef ZRCONTROLS_H
#define ZRCONTROLS_H

#include "zrscreenmod.h"

#if defined(_WIN32)
struct tagPOINT;
#else
/// Point of the Windows interface.
struct tagPOINT
{
    int32_t x; ///< pixels
    int32_t y; ///< pixels
};
#endif
typedef struct tagPOINT tagPOINT;

/// A moment that the user has confirmed. Laid out like the C structure `tm`, but month and year are
/// as people write them.
struct ZRDateRecord
{
    int32_t second;   ///< always 0
    int32_t minute;   ///< 0 to 59
    int32_t hour;     ///< 0 to 23
    int32_t day;      ///< 1 to 31
    int32_t month;    ///< 1 to 12
    int32_t year;     ///< with its century
    int32_t unset[3]; ///< always 0
};
typedef struct ZRDateRecord ZRDateRecord;

static_assert(sizeof(ZRDateRecord) == 36, "date record layout");

/// Messages of the date pickers. They go to the functions that were given to `ZRScreenDate_Init`,
/// once for each picker that exists, whichever is open; the numbers are not those of `eZRMsg`.
enum eZRDateMsg ZR_OF_ULONG
{
    /// The user has confirmed a moment, which is not past; wParam = `const ZRDateRecord*`, lParam =
    /// 0. The record belongs to the picker: do not free it. It is valid until the picker's next
    /// message or its release; copy what is to be kept. The picker hides after the message.
    ZRDATE_CHOSEN = 0,
    /// The user has cleared the selection; 0, 0. The picker stays open.
    ZRDATE_CLEARED = 1
};

ZR_BEGIN_C

// --- Line edit ----------------------------------------------------------------------------

/// Creates a line edit inside the native window `parent`, places and shows it.
/// Presses and releases of the left button and the Tab key are reported with
/// `ZRMSG_EDIT_LBUTTON_DOWN`, `ZRMSG_EDIT_LBUTTON_UP` and `ZRMSG_EDIT_KEY`; their wParam is the
/// handle.
/// @param parent      may be null: the edit is then a window of its own
/// @param rc          in the parent's pixels; must not be null
/// @param placeholder what shows while the edit is empty
/// @return the handle, owned by the library until `ZRCtrl_QLineEdit_Release`; null on failure, also
/// when the system refused the parent
/// @thread gui
ZR_API void* ZR_CALL ZRCtrl_QLineEdit_Init(HWND parent, tagRECT* rc, const char* placeholder);

/// Destroys the edit; the handle is invalid afterwards.
/// @thread gui
ZR_API void ZR_CALL ZRCtrl_QLineEdit_Release(void* h);

/// Moves the edit into another native window, at its place; null makes it a window of its own. When
/// the system refuses, it stays where it was.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetParent(void* h, HWND parent);

/// Sets the look, in the language of Qt style sheets.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetStyleSheet(void* h, const char* styleSheet);

/// Copies the text with a terminating zero into `buf`, when both fit into the `len` bytes of it,
/// and sets `len` to the length of the text. Otherwise, and when `buf` cannot be written, `len`
/// becomes 0. `buf` is left alone when it is too small, and may be null to ask for the length.
/// @return the length of the text in bytes, without the zero: a buffer needs one more. -1 for an
/// invalid handle; `len` is left alone then.
/// @thread gui
ZR_API int ZR_CALL ZRCtrl_QLineEdit_GetText(void* h, char* buf, ZR_REF(int) len);

/// Replaces the text. The restrictions of SetInputRexp do not apply; those of SetMaxLength do.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetText(void* h, const char* text);

/// Sets what shows while the edit is empty.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetPlaceholderText(void* h, const char* text);

/// Places the edit in its parent, in the parent's pixels. It is shown only if it was. A side longer
/// than 16384 is cut, one below 1 is 1.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_MoveWindow(void* h, tagRECT* rc);

/// Shows the edit (bShow != 0) or hides it.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_Show(void* h, int bShow);

/// Sets a `Qt::WidgetAttribute` by its number. Those with which Qt keeps its own books
/// (WA_WState_... and the like), WA_PaintOnScreen and numbers without a meaning are refused.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetAttribute(void* h, int attr, bool on);

/// Restricts typing and pasting to what matches a pattern of `QRegExp`, case-sensitive, or could
/// become a match. Null or an empty pattern lifts the restriction; one that is not valid, or whose
/// counted repetitions expand beyond 2000 elements (500 in a group), changes nothing.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetInputRexp(void* h, const char* pattern);

/// Sets the name by which a style sheet selects the edit, before or after the sheet.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetObjectName(void* h, const char* name);

/// @param mode 0 the text is seen, 1 nothing is, 2 dots, 3 the text while it is being edited, then
/// dots. Others are refused. In modes other than 0 it cannot be copied.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetEchoMode(void* h, int mode);

/// Limits the length, in UTF-16 units; a longer text is cut, but no character in half. With 0 the
/// edit takes nothing; a negative length is refused.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetMaxLength(void* h, int length);

/// Directs the keyboard to the edit, which must be visible.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetFocus(void* h);

/// Puts the cursor before the UTF-16 unit `pos`; out of range, to the nearest end.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetCursorPos(void* h, int pos);

/// Selects `length` UTF-16 units from `start`; a negative length selects to the left. A start
/// outside the text is refused.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QLineEdit_SetSelection(void* h, int start, int length);

// --- Text box -----------------------------------------------------------------------------

/// Creates a box for reading text, with the given background, inside the native window `parent`,
/// places and shows it; as `ZRCtrl_QLineEdit_Init`. It is scrolled by dragging the text, by its
/// bar, by wheel and keys; text is copied with the keyboard.
/// @return the handle, owned by the library until `ZRCtrl_QTextEdit_Release`; null on failure
/// @thread gui
ZR_API void* ZR_CALL ZRCtrl_QTextEdit_Init(HWND parent, tagRECT* rc, unsigned char r,
                                           unsigned char g, unsigned char b);

/// Destroys the box; the handle is invalid afterwards.
/// @thread gui
ZR_API void ZR_CALL ZRCtrl_QTextEdit_Release(void* h);

/// Replaces the text and shows it from its top. What looks like rich text is shown as such,
/// whatever that costs: escape what other people wrote. A text with a word of more than 4000
/// characters is broken anywhere.
/// @thread posted
ZR_API void ZR_CALL ZRCtrl_QTextEdit_SetText(void* h, const char* text);

// --- Date and time picker -----------------------------------------------------------------

/// Creates a date and time picker inside the native window `parent`, hidden.
/// @param parent may be null: the picker is then a window of its own
/// @param notify receives the messages of `eZRDateMsg`, as the function of `ZRScreen_Init` receives
///               its own. May be null. It must stay callable until `ZRScreenDate_Release` returns.
/// @return the handle, owned by the library until `ZRScreenDate_Release`; null on failure
/// @thread gui
ZR_API void* ZR_CALL ZRScreenDate_Init(HWND parent, ZRNotify notify);

/// Destroys the picker; the handle is invalid afterwards, and no message is sent to its function
/// any more.
/// @thread gui
ZR_API void ZR_CALL ZRScreenDate_Release(void* h);

/// Selects a moment, shows its month, and opens the picker with its upper right corner at `pt`, in
/// the parent's pixels (screen pixels without a parent), moved so far that all of it is seen: on
/// the screen and inside the parent, if it fits there.
/// @param pt must not be null
/// Of the numbers, -1 stands for today's (the present) value; others are brought into their range:
/// years 1970 to 2199, months 1 to 12, days 1 to the last of the month, and times of the day.
/// @thread posted
ZR_API void ZR_CALL ZRScreenDate_Move(void* h, tagPOINT* pt, int year, int month, int day, int hour,
                                      int minute, int second);

/// Hides the picker, as Esc does, which sends no message.
/// @thread posted
ZR_API void ZR_CALL ZRScreenDate_Hide(void* h);

ZR_END_C

#endif // ZRCONTROLS_H
