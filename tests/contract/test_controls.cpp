// The controls that a host embeds, with a user at the keyboard and the mouse.
#include "check.h"
#include "host_keyboard.h"
#include "meeting.h"

#include <array>
#include <climits>
#include <cstring>
#include <memory>

namespace {

constexpr int kWidthPx = 640;
/// Where edits lie.
constexpr int kTop = 20;
constexpr int kLower = 70;

tagRECT rectangle(int top)
{
    return rectOf({20, top, 200, 30});
}

/// What the date pickers told.
struct DateInbox
{
    static int notify(unsigned long id, unsigned long long wParam, long long)
    {
        ++count;
        if (id == ZRDATE_CHOSEN)
            record = *reinterpret_cast<const ZRDateRecord*>(static_cast<uintptr_t>(wParam));
        if (onMessage)
            onMessage();
        return 0;
    }
    static inline int count = 0;
    static inline ZRDateRecord record{};
    static inline std::function<void()> onMessage;
};

/// A moment as hosts ask for it.
using Moment = std::array<int, 6>;
constexpr Moment kFuture{2150, 1, 1, 0, 0, 0};

/// A meeting in one window, and another window for the controls, at the screen's top left corner.
/// `QLineEdit_Init` is the export `ZRCtrl_QLineEdit_Init`. What a case leaves in it goes with the
/// library.
struct Desk : zr::ControlExports
{
    Desk()
    {
        static_cast<zr::ControlExports&>(*this) = meeting.zr.exports.ZRCtrl;
        DateInbox::onMessage = nullptr;
    }
    void* addEdit(int top = kTop)
    {
        tagRECT rect = rectangle(top);
        void* const edit = QLineEdit_Init(window.hwnd(), &rect, "");
        REQUIRE(edit != nullptr);
        pump(100); // until it is mapped
        return edit;
    }
    [[nodiscard]] std::string textOf(void* edit) const
    {
        char buffer[256] = "";
        int length = sizeof buffer;
        return QLineEdit_GetText(edit, buffer, length) < 0 ? "?" : buffer;
    }
    [[nodiscard]] bool becomes(void* edit, const std::string& expected) const
    {
        return pumpUntil([&] { return textOf(edit) == expected; });
    }
    static void clickInto(int top = kTop)
    {
        desktop::click({40, top + 15});
        pump(100);
        desktop::moveTo({900, 900}); // in no window: keys that arrive have been directed
        pump(50);
    }
    /// Keys that are to reach no edit.
    static void typeInVain()
    {
        zrhost::typeText("lost");
        pump(200);
    }
    void open(void* picker, int x, int y, const Moment& m) const
    {
        tagPOINT at{};
        at.x = x;
        at.y = y;
        date.Move(picker, &at, m[0], m[1], m[2], m[3], m[4], m[5]);
    }
    /// Clicks OK in a picker with this upper right corner. @return whether it told of a moment
    static bool confirm(int right, int top)
    {
        constexpr int kPickerHeightPx = 356;
        DateInbox::count = 0;
        pump(150);
        desktop::click({right - 46, top + kPickerHeightPx - 30});
        pump(200);
        return DateInbox::count == 1;
    }

    HostWindow videoWindow{320, 180, 1200, 100};
    HostWindow window{kWidthPx, 480};
    Meeting meeting{&videoWindow, 320, 180};
    const zr::DateExports& date = meeting.zr.exports.ZRScreenDate;
};

} // namespace

ZR_CASE(controls, theKeyboardArrives)
{
    Desk desk;
    void* const first = desk.addEdit();
    void* const second = desk.addEdit(kLower);
    Inbox& inbox = desk.meeting.inbox;
    Desk::clickInto();
    CHECK_EQUAL(inbox.count(ZRMSG_EDIT_LBUTTON_DOWN, 0), 1);
    CHECK_EQUAL(inbox.count(ZRMSG_EDIT_LBUTTON_UP, 0), 1);
    zrhost::typeText("meeting 5");
    CHECK(desk.becomes(first, "meeting 5"));
    CHECK_EQUAL(desk.textOf(second), "");

    // Tab reports, and the keys go elsewhere from then on, even with the mouse over the edit.
    const auto pressTab = [&] {
        inbox.clear();
        zrhost::pressKey(zrhost::Key::Tab);
        CHECK(pumpUntil([&] { return inbox.count(ZRMSG_EDIT_KEY, 0) == 1; }));
    };
    desktop::moveTo({40, kTop + 15});
    pressTab();
    pump(100);
    Desk::typeInVain();
    CHECK_EQUAL(desk.textOf(first), "meeting 5");
    // Inside the message the host decides who is next: the same edit, or another one.
    void* next = first;
    inbox.onMessage = [&](const Message& message) {
        if (message.id == ZRMSG_EDIT_KEY)
            desk.QLineEdit_SetFocus(next);
    };
    pump(600); // a double click would select a word
    Desk::clickInto();
    pressTab();
    zrhost::typeText("6");
    CHECK(pumpUntil([&] { return desk.textOf(first).size() == 10; }));
    next = second;
    pressTab();
    zrhost::typeText("to two");
    CHECK(desk.becomes(second, "to two"));

    // A hidden edit gives the keyboard back; shown again, it can have it again.
    desk.QLineEdit_Show(second, 0);
    pump(100);
    Desk::typeInVain();
    desk.QLineEdit_Show(second, 1);
    desk.QLineEdit_SetFocus(second); // at once
    zrhost::typeText("x");
    CHECK(desk.becomes(second, "to twox"));

    // Released from inside its message, while the user goes on with it: no other one follows.
    inbox.clear();
    inbox.onMessage = [&](const Message&) {
        inbox.onMessage = nullptr;
        desktop::click({40, kTop + 15});
        desk.QLineEdit_Release(first);
        pump(50);
    };
    Desk::clickInto();
    CHECK(pumpUntil([&] { return inbox.count() > 0; }));
    CHECK_EQUAL(inbox.count(), 1);
}

ZR_CASE(controls, takesWhatTheHostAllows)
{
    Desk desk;
    void* const edit = desk.addEdit();
    const HostWindow other(640, 350, 0, 600);
    tagRECT rect = rectangle(300);
    desk.QLineEdit_MoveWindow(edit, &rect);
    desk.QLineEdit_SetParent(edit, other.hwnd()); // where it keeps its place
    pump(100);
    // A password cannot be copied.
    desk.QLineEdit_SetText(edit, "secret");
    desk.QLineEdit_SetEchoMode(edit, 2);
    Desk::clickInto(900);
    zrhost::pressWithControl('a');
    zrhost::pressWithControl('c');
    pump(200);
    desk.QLineEdit_SetText(edit, "");
    desk.QLineEdit_SetEchoMode(edit, 0);
    zrhost::pressWithControl('v');
    pump(200);
    CHECK_EQUAL(desk.textOf(edit), "");
    desk.QLineEdit_SetInputRexp(edit, "[0-9]*");
    for (const char* const bad : {"[0-9", "((a{1000}){1000}){1000}"}) // change nothing
        desk.QLineEdit_SetInputRexp(edit, bad);
    zrhost::typeText("a1b2");
    CHECK(desk.becomes(edit, "12"));
    desk.QLineEdit_SetInputRexp(edit, nullptr);
    desk.QLineEdit_SetMaxLength(edit, 4);
    zrhost::typeText("cdef");
    CHECK(desk.becomes(edit, "12cd"));
    desk.QLineEdit_SetSelection(edit, 1, INT_MAX);
    zrhost::typeText("x");
    CHECK(desk.becomes(edit, "1x"));
    desk.QLineEdit_SetCursorPos(edit, -1);
    zrhost::typeText("y");
    CHECK(desk.becomes(edit, "y1x"));
    desk.QLineEdit_SetAttribute(edit, 8, true); // to be painted past everything
    zrhost::typeText("z");
    CHECK(desk.becomes(edit, "yz1x"));
    // What a host asks for may leave an edit useless, but nothing else.
    for (int attribute = -2; attribute < 200; ++attribute) {
        for (const bool on : {true, false})
            desk.QLineEdit_SetAttribute(edit, attribute, on);
    }
    desk.QLineEdit_Release(edit);
    void* const after = desk.addEdit();
    desk.QLineEdit_SetFocus(after);
    zrhost::typeText("too");
    CHECK(desk.becomes(after, "too"));
}

ZR_CASE(controls, givesItsTextInBytes)
{
    Desk desk;
    void* const edit = desk.addEdit();
    desk.QLineEdit_SetMaxLength(edit, 0);
    desk.QLineEdit_SetText(edit, "hello");
    CHECK_EQUAL(desk.textOf(edit), "");
    desk.QLineEdit_SetMaxLength(edit, 5);
    const struct
    {
        const char* text;
        int size;
        int length;
        int lengthAfter;
        const char* buffer;
    } rows[] = {
        {"hello", 5, 5, 0, "-------"},
        {"hello", 5, 6, 5, "hello"},
        {"hello", 5, INT_MIN, 0, "-------"},
        {"", 0, 1, 0, ""},
        {"会议", 6, 7, 6, "会议"},
        {"a\xff", 4, 8, 4, "a\xef\xbf\xbd"},
        {nullptr, 0, 8, 0, ""},
        {"abcd\xf0\x9f\x98\x80", 4, 8, 4, "abcd"}, // half of the last character would fit
    };
    for (const auto& row : rows) {
        const std::string name =
            std::string(row.text ? row.text : "null") + "/" + std::to_string(row.length);
        desk.QLineEdit_SetText(edit, row.text);
        char buffer[8] = "-------";
        int length = row.length;
        CHECK_ROW(desk.QLineEdit_GetText(edit, buffer, length) == row.size, name);
        CHECK_ROW(length == row.lengthAfter, name);
        CHECK_ROW(std::strcmp(buffer, row.buffer) == 0, name);
    }
    desk.QLineEdit_SetText(edit, "hello");
    const PatchyMemory memory;
    for (char* const buffer : {static_cast<char*>(nullptr), memory.begin + memory.page,
                               const_cast<char*>("read-only"), memory.begin + memory.page - 3}) {
        int length = 100;
        CHECK_EQUAL(desk.QLineEdit_GetText(edit, buffer, length), 5);
        CHECK_EQUAL(length, 0);
    }
    static const int readOnly = 100;
    CHECK_EQUAL(desk.QLineEdit_GetText(edit, nullptr, const_cast<int&>(readOnly)), -1);
}

ZR_CASE(controls, aDateIsPickedWithTheMouse)
{
    Desk desk;
    void* const picker = desk.date.Init(desk.window.hwnd(), DateInbox::notify);
    // Where and with what it is asked to open, where its right and upper edges then are, and the
    // moment that OK confirms.
    const struct
    {
        int x, y;
        Moment asked;
        int right, top;
        ZRDateRecord chosen;
    } rows[] = {
        {10000, 10000, {INT_MAX, 6, 31, 99, -5, 3}, kWidthPx, 124, {0, 0, 23, 30, 6, 2199, {}}},
        {INT_MIN, INT_MIN, {2150, 1, 2, 3, 4, 5}, 448, 0, {0, 4, 3, 2, 1, 2150, {}}},
    };
    for (const auto& row : rows) {
        const std::string name = std::to_string(row.x);
        desk.open(picker, row.x, row.y, row.asked);
        CHECK_ROW(Desk::confirm(row.right, row.top), name);
        CHECK_ROW(std::memcmp(&DateInbox::record, &row.chosen, sizeof row.chosen) == 0, name);
        CHECK_ROW(!Desk::confirm(row.right, row.top), name); // it has hidden
    }
    desk.open(picker, 500, 20, kFuture);
    desk.date.Hide(picker);
    CHECK(!Desk::confirm(500, 20));
    DateInbox::onMessage = [&] { desk.date.Release(picker); };
    desk.open(picker, 500, 20, kFuture);
    CHECK(Desk::confirm(500, 20));
}

ZR_CASE(controls, outliveScreensAndWindows)
{
    Desk desk;
    void* const picker = desk.date.Init(desk.window.hwnd(), DateInbox::notify);
    void* const edit = desk.addEdit();
    desk.meeting.zr.Release(desk.meeting.screen);
    desk.meeting.screen = nullptr;
    // Without a screen nobody hears of the edit, but it works; the picker's host hears of it.
    Desk::clickInto();
    zrhost::typeText("alone");
    CHECK(desk.becomes(edit, "alone"));
    desk.open(picker, 600, 0, kFuture);
    CHECK(Desk::confirm(600, 0));
    // The host destroys its window first, against the rules.
    auto window = std::make_unique<HostWindow>(200, 100, 700, 0);
    tagRECT rect = rectangle(0);
    void* const orphan = desk.QLineEdit_Init(window->hwnd(), &rect, "");
    void* const orphanBox = desk.QTextEdit_Init(window->hwnd(), &rect, 0, 0, 0);
    REQUIRE(orphan && orphanBox);
    pump(100);
    window.reset();
    pump(100);
    desk.QTextEdit_SetText(orphanBox, "orphan");
    desk.QLineEdit_SetText(orphan, "orphan");
    desk.QLineEdit_SetFocus(orphan);
    desk.QLineEdit_SetParent(orphan, desk.window.hwnd());
    desk.QLineEdit_MoveWindow(orphan, &rect);
    for (const int shown : {0, 1})
        desk.QLineEdit_Show(orphan, shown);
    CHECK_EQUAL(desk.textOf(orphan), "orphan");
    desk.QLineEdit_Release(orphan);
    // What is left goes with the library.
    desk.meeting.zr.unload();
}
