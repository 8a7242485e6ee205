/// The messages as one table: what each is called and what its two values are. Whatever writes or
/// reads messages in words is made from it. Not installed; it needs no Qt.
#pragma once

#include "zrscreenmod.h"

#include <iterator>

namespace zr {

enum class MessageValue
{
    Nothing, ///< 0
    Number,
    HostValue,
    Person, ///< the participant record, opaque
    Play,
    Edit, ///< handle of a line edit
    Ext,
    UserId, ///< a text in the local encoding
    Date    ///< a ZRDateRecord
};

struct MessageRow
{
    unsigned long id;
    const char* name;
    const char* label; ///< of wParam
    MessageValue wParam;
    MessageValue lParam;
};

#define ZR_MESSAGE(name, wParam, label, lParam)                                                    \
    {                                                                                              \
        name, #name, label, MessageValue::wParam, MessageValue::lParam                             \
    }
inline constexpr MessageRow kMessages[] = {
    ZR_MESSAGE(ZRMSG_CLICK_AUDIO, Person, "person", HostValue),
    ZR_MESSAGE(ZRMSG_CLICK_MORE, Number, "right", HostValue),
    {2, "GRADE_SMALL", "person", MessageValue::Person, MessageValue::HostValue},
    {3, "GRADE_GRID", "person", MessageValue::Person, MessageValue::HostValue},
    {4, "GRADE_LARGE", "person", MessageValue::Person, MessageValue::HostValue},
    ZR_MESSAGE(ZRMSG_DBLCLICK_LAYOUT, Number, "class", Nothing),
    ZR_MESSAGE(ZRMSG_TILE_CLICK, Nothing, "", Nothing),
    ZR_MESSAGE(ZRMSG_CLICK_HANDUP, Person, "person", HostValue),
    ZR_MESSAGE(ZRMSG_FOCUS_PERSON, Person, "person", HostValue),
    ZR_MESSAGE(ZRMSG_GALLERY_PRESS, Nothing, "", Nothing),
    ZR_MESSAGE(ZRMSG_LOOK_TOAST_NOT_ALL, Nothing, "", Nothing),
    ZR_MESSAGE(ZRMSG_FOCUS_STREAM, UserId, "userId", Number),
    ZR_MESSAGE(ZRMSG_FOCUS_KEPT, Nothing, "", Nothing),
    ZR_MESSAGE(ZRMSG_LOOK_TOAST_ALL, Nothing, "", Nothing),
    ZR_MESSAGE(ZRMSG_PERSON_REMOVED, Person, "person", HostValue),
    ZR_MESSAGE(ZRMSG_VIDEO_HIDDEN, Person, "person", HostValue),
    ZR_MESSAGE(ZRMSG_VIDEO_SHOWN, Person, "person", HostValue),
    ZR_MESSAGE(ZRMSG_MORE_MENU_CLOSED, Nothing, "", Nothing),
    ZR_MESSAGE(ZRMSG_PERSON_INFO_UPDATED, Play, "play", HostValue),
    ZR_MESSAGE(ZRMSG_EDIT_LBUTTON_DOWN, Edit, "edit", Nothing),
    ZR_MESSAGE(ZRMSG_EDIT_LBUTTON_UP, Edit, "edit", Nothing),
    ZR_MESSAGE(ZRMSG_EDIT_KEY, Edit, "edit", Nothing),
    ZR_MESSAGE(ZRMSG_EXT_CLICK, Ext, "ext", HostValue),
    ZR_MESSAGE(ZRMSG_SCREEN_MODE, Number, "mode", Nothing),
    ZR_MESSAGE(ZRMSG_GALLERY_CLICK, Nothing, "", Nothing),
    ZR_MESSAGE(ZRMSG_SHARE_RECT_CHANGED, Number, "shown", Nothing),
};
/// Those of the date pickers, whose numbers are their own.
inline constexpr MessageRow kDateMessages[] = {
    ZR_MESSAGE(ZRDATE_CHOSEN, Date, "date", Nothing),
    ZR_MESSAGE(ZRDATE_CLEARED, Nothing, "", Nothing),
};
#undef ZR_MESSAGE

/// @return null for a number that no message has
inline const MessageRow* messageRow(unsigned long id, bool ofDatePicker)
{
    const MessageRow* const begin = ofDatePicker ? kDateMessages : kMessages;
    const MessageRow* const end = ofDatePicker ? std::end(kDateMessages) : std::end(kMessages);
    for (const MessageRow* row = begin; row != end; ++row) {
        if (row->id == id)
            return row;
    }
    return nullptr;
}

} // namespace zr
