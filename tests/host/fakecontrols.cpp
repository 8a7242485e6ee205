// The embedded controls of the stand-in.
#include "fakescreen.h"

#include "native_rect.h"

#include <cstring>
#include <map>
#include <sstream>

namespace {

int g_edit = 0; // their addresses are the handles
int g_box = 0;
int g_date = 0;
ZRNotify g_notifyDate = nullptr;

std::string show(tagRECT* rect)
{
    std::ostringstream text;
    text << rect->left << ' ' << rect->top << ' ' << rect->right << ' ' << rect->bottom;
    return text.str();
}
template<typename T>
T show(T value)
{
    return value;
}

template<typename... Args>
void record(const char* name, const void* handle, const void* expected, const Args&... args)
{
    std::ostringstream call;
    call << name << '(';
    [[maybe_unused]] const char* separator = "";
    ((call << separator << show(args), separator = ", "), ...);
    call << ')' << (handle == expected ? "" : " with a wrong control");
    recordFakeCall(call.str());
}

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

void* ZRCtrl_QLineEdit_Init(HWND, tagRECT* rect, const char* placeholder)
{
    record("Edit.Init", &g_edit, &g_edit, rect, placeholder);
    return &g_edit;
}

int ZRCtrl_QLineEdit_GetText(void* h, char* buf, int& len)
{
    constexpr char kText[] = "会议";
    constexpr int kSize = sizeof kText - 1;
    record("Edit.GetText", h, &g_edit, len);
    const bool fits = kSize < len;
    if (fits)
        std::memcpy(buf, kText, sizeof kText);
    len = fits ? kSize : 0;
    return kSize;
}

void* ZRCtrl_QTextEdit_Init(HWND, tagRECT* rect, unsigned char r, unsigned char g, unsigned char b)
{
    record("Box.Init", &g_box, &g_box, rect, int(r), int(g), int(b));
    return &g_box;
}

void* ZRScreenDate_Init(HWND, ZRNotify notify)
{
    g_notifyDate = notify;
    record("Date.Init", &g_date, &g_date);
    return &g_date;
}

void ZRScreenDate_Move(void* h, tagPOINT* pt, int year, int month, int day, int hour, int minute,
                       int second)
{
    record("Date.Move", h, &g_date, pt->x, pt->y, year, month, day, hour, minute, second);
}

void ZRScreenDate_Release(void* h)
{
    record("Date.Release", h, &g_date);
}

void ZRScreenDate_Hide(void* h)
{
    record("Date.Hide", h, &g_date);
}

void ZRCtrl_QTextEdit_Release(void* h)
{
    record("Box.Release", h, &g_box);
}

void ZRCtrl_QTextEdit_SetText(void* h, const char* text)
{
    record("Box.SetText", h, &g_box, text);
}

void ZRCtrl_QLineEdit_Release(void* h)
{
    record("Edit.Release", h, &g_edit);
}

// The rest is only recorded. FAKE(name, type of the argument)
#define FAKE(name, type)                                                                           \
    void ZRCtrl_QLineEdit_##name(void* h, type value)                                              \
    {                                                                                              \
        record("Edit." #name, h, &g_edit, value);                                                  \
    }

FAKE(SetStyleSheet, const char*)
FAKE(SetText, const char*)
FAKE(SetPlaceholderText, const char*)
FAKE(SetInputRexp, const char*)
FAKE(SetObjectName, const char*)
FAKE(MoveWindow, tagRECT*)
FAKE(Show, int)
FAKE(SetEchoMode, int)
FAKE(SetMaxLength, int)
FAKE(SetCursorPos, int)

void ZRCtrl_QLineEdit_SetParent(void* h, HWND)
{
    record("Edit.SetParent", h, &g_edit);
}

void ZRCtrl_QLineEdit_SetAttribute(void* h, int attr, bool on)
{
    record("Edit.SetAttribute", h, &g_edit, attr, on);
}

void ZRCtrl_QLineEdit_SetFocus(void* h)
{
    record("Edit.SetFocus", h, &g_edit);
}

void ZRCtrl_QLineEdit_SetSelection(void* h, int start, int length)
{
    record("Edit.SetSelection", h, &g_edit, start, length);
}

} // extern "C"
