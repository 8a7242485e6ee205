// The embedded controls of the stand-in.
#include "fakescreen.h"

#include <cstring>
#include <map>

namespace {

int g_edit = 0; // their addresses are the handles
int g_box = 0;
int g_date = 0;
ZRNotify g_notifyDate = nullptr;

} // namespace

void* fakeControlExport(const std::string& name)
{
    static const std::map<std::string, void*> exports{
#define FAKE_ENTRY(name)                                                                           \
    {"ZRCtrl_QLineEdit_" #name, reinterpret_cast<void*>(&ZRCtrl_QLineEdit_##name)},
        ZRHOST_EDIT_EXPORTS(FAKE_ENTRY)
#undef FAKE_ENTRY
#define FAKE_ENTRY(name)                                                                           \
    {"ZRCtrl_QTextEdit_" #name, reinterpret_cast<void*>(&ZRCtrl_QTextEdit_##name)},
            ZRHOST_BOX_EXPORTS(FAKE_ENTRY)
#undef FAKE_ENTRY
#define FAKE_ENTRY(name) {"ZRScreenDate_" #name, reinterpret_cast<void*>(&ZRScreenDate_##name)},
                ZRHOST_DATE_EXPORTS(FAKE_ENTRY)
#undef FAKE_ENTRY
    };
    const auto found = exports.find(name);
    return found == exports.end() ? nullptr : found->second;
}

ZRNotify fakeDateNotify()
{
    return g_notifyDate;
}

extern "C" {

int ZRCtrl_QLineEdit_GetText(void* h, char* buf, int& len)
{
    constexpr char kText[] = "会议";
    constexpr int kSize = sizeof kText - 1;
    recordFake("Edit.GetText", h, &g_edit, len);
    const bool fits = kSize < len;
    if (fits)
        std::memcpy(buf, kText, sizeof kText);
    len = fits ? kSize : 0;
    return kSize;
}

void* ZRCtrl_QLineEdit_Init(HWND, tagRECT* rect, const char* placeholder)
{
    recordFake("Edit.Init", &g_edit, &g_edit, rect, placeholder);
    return &g_edit;
}

void* ZRCtrl_QTextEdit_Init(HWND, tagRECT* rect, unsigned char r, unsigned char g, unsigned char b)
{
    recordFake("Box.Init", &g_box, &g_box, rect, int(r), int(g), int(b));
    return &g_box;
}

void* ZRScreenDate_Init(HWND, ZRNotify notify)
{
    g_notifyDate = notify;
    recordFake("Date.Init", &g_date, &g_date);
    return &g_date;
}

// The rest is only recorded. FAKE(export, what is recorded: name, control, parameters, arguments)
#define FAKE(function, name, control, parameters, ...)                                             \
    void function(void* h FAKE_LIST parameters)                                                    \
    {                                                                                              \
        recordFake(name, h, &(control)__VA_ARGS__);                                                \
    }
#define FAKE_EDIT(name, parameters, ...)                                                           \
    FAKE(ZRCtrl_QLineEdit_##name, "Edit." #name, g_edit, parameters, __VA_ARGS__)
#define FAKE_EDIT_VALUE(name, type) FAKE_EDIT(name, (, type value), , value)

// clang-format off
FAKE_EDIT(Release, ())
FAKE_EDIT(SetFocus, ())
FAKE_EDIT(SetParent, (, HWND))
FAKE_EDIT(SetAttribute, (, int attr, bool on), , attr, on)
FAKE_EDIT(SetSelection, (, int start, int length), , start, length)
FAKE_EDIT_VALUE(SetStyleSheet, const char*)
FAKE_EDIT_VALUE(SetText, const char*)
FAKE_EDIT_VALUE(SetPlaceholderText, const char*)
FAKE_EDIT_VALUE(SetInputRexp, const char*)
FAKE_EDIT_VALUE(SetObjectName, const char*)
FAKE_EDIT_VALUE(MoveWindow, tagRECT*)
FAKE_EDIT_VALUE(Show, int)
FAKE_EDIT_VALUE(SetEchoMode, int)
FAKE_EDIT_VALUE(SetMaxLength, int)
FAKE_EDIT_VALUE(SetCursorPos, int)
FAKE(ZRCtrl_QTextEdit_Release, "Box.Release", g_box, ())
FAKE(ZRCtrl_QTextEdit_SetText, "Box.SetText", g_box, (, const char* text), , text)
FAKE(ZRScreenDate_Release, "Date.Release", g_date, ())
FAKE(ZRScreenDate_Hide, "Date.Hide", g_date, ())
FAKE(ZRScreenDate_Move, "Date.Move", g_date,
     (, tagPOINT* pt, int year, int month, int day, int hour, int minute, int second),
     , pt->x, pt->y, year, month, day, hour, minute, second)
// clang-format on

} // extern "C"
