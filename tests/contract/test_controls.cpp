// The controls that a host embeds: a user at the keyboard and the mouse, and a host that errs.
#include "check.h"
#include "desktop.h"
#include "keyboard.h"
#include "meeting.h"

#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <optional>

namespace {

/// `QLineEdit_Init` is the export `ZRCtrl_QLineEdit_Init`, `date.Init` is `ZRScreenDate_Init`. Good
/// for as long as the module is loaded.
struct Controls : zr::ControlExports
{
    explicit Controls(const Module& module)
        : ControlExports(module.exports.ZRCtrl)
        , date(module.exports.ZRScreenDate)
    {
    }
    /// The text of a line edit.
    [[nodiscard]] std::string text(void* edit) const
    {
        char buffer[256] = "";
        int length = sizeof buffer;
        return QLineEdit_GetText(edit, buffer, length) < 0 ? "?" : std::string(buffer);
    }
    zr::DateExports date;
};

constexpr int kWidthPx = 640;
constexpr int kHeightPx = 480;
/// A point of the screen that is in no window: keys that arrive have been directed.
constexpr int kAwayPx = 900;
/// Where edits lie.
constexpr int kTop = 20;
constexpr int kLower = 70;

tagRECT rectangle(int left, int top, int width = 200, int height = 30)
{
    tagRECT rect{};
    rect.left = left;
    rect.top = top;
    rect.right = left + width;
    rect.bottom = top + height;
    return rect;
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

/// A meeting in one window, and another window for the controls, at the screen's top left corner.
/// What a case leaves in it goes with the library.
struct Desk
{
    Desk()
        : videoWindow(320, 180, 1200, 100)
        , meeting(&videoWindow, 320, 180)
        , zr(meeting.zr)
    {
        DateInbox::onMessage = nullptr;
    }
    void* addEdit(int top = kTop, const char* placeholder = "")
    {
        tagRECT rect = rectangle(20, top);
        void* const edit = zr.QLineEdit_Init(window.hwnd(), &rect, placeholder);
        REQUIRE(edit != nullptr);
        pump(100); // until it is mapped
        return edit;
    }
    void* addPicker()
    {
        void* const picker = zr.date.Init(window.hwnd(), DateInbox::notify);
        REQUIRE(picker != nullptr);
        return picker;
    }
    void clickInto(int top = kTop)
    {
        desktop::click(40, top + 15);
        pump(100);
        desktop::moveTo(kAwayPx, kAwayPx);
        pump(50);
    }
    [[nodiscard]] bool becomes(void* edit, const std::string& expected) const
    {
        return pumpUntil([&] { return zr.text(edit) == expected; });
    }
    /// Keys that are to reach no edit.
    static void typeInVain()
    {
        keyboard::type("lost");
        pump(200);
    }
    void open(void* picker, int x, int y, const Moment& moment) const
    {
        tagPOINT at{};
        at.x = x;
        at.y = y;
        zr.date.Move(picker, &at, moment[0], moment[1], moment[2], moment[3], moment[4], moment[5]);
    }
    /// Clicks OK in a picker with this upper right corner. @return whether it told of a moment
    static bool confirm(int right, int top)
    {
        constexpr int kPickerHeightPx = 356;
        DateInbox::count = 0;
        pump(150);
        desktop::click(right - 46, top + kPickerHeightPx - 30);
        pump(200);
        return DateInbox::count == 1;
    }

    NativeWindow videoWindow;
    NativeWindow window{kWidthPx, kHeightPx};
    Meeting meeting;
    Controls zr;
};

constexpr Moment kFuture{2150, 1, 1, 0, 0, 0};

void* unreadable()
{
    return reinterpret_cast<void*>(static_cast<uintptr_t>(0x10));
}

} // namespace

ZR_CASE(controls, theKeyboardArrives)
{
    Desk desk;
    const Controls& zr = desk.zr;
    void* const first = desk.addEdit();
    void* const second = desk.addEdit(kLower);
    Inbox& inbox = desk.meeting.inbox;
    desk.clickInto();
    CHECK_EQUAL(inbox.count(ZRMSG_EDIT_LBUTTON_DOWN, 0), 1);
    CHECK_EQUAL(inbox.count(ZRMSG_EDIT_LBUTTON_UP, 0), 1);
    keyboard::type("meeting 5");
    CHECK(desk.becomes(first, "meeting 5"));
    CHECK_EQUAL(zr.text(second), "");

    // Tab reports, and the keys go elsewhere from then on, even with the mouse over the edit.
    desktop::moveTo(40, kTop + 15);
    keyboard::pressTab();
    CHECK(pumpUntil([&] { return inbox.count(ZRMSG_EDIT_KEY, 0) == 1; }));
    pump(100);
    Desk::typeInVain();
    CHECK_EQUAL(zr.text(first), "meeting 5");
    // Inside the message the host decides who is next: the same edit, or another one.
    void* next = first;
    inbox.onMessage = [&](const Message& message) {
        if (message.id == ZRMSG_EDIT_KEY)
            zr.QLineEdit_SetFocus(next);
    };
    pump(600); // a double click would select a word
    desk.clickInto();
    keyboard::pressTab();
    CHECK(pumpUntil([&] { return inbox.count(ZRMSG_EDIT_KEY, 0) == 2; }));
    keyboard::type("6");
    CHECK(pumpUntil([&] { return zr.text(first).size() == 10; }));
    next = second;
    keyboard::pressTab();
    CHECK(pumpUntil([&] { return inbox.count(ZRMSG_EDIT_KEY, 0) == 3; }));
    keyboard::type("to two");
    CHECK(desk.becomes(second, "to two"));

    // A hidden edit gives the keyboard back; shown again, it can have it again.
    zr.QLineEdit_Show(second, 0);
    pump(100);
    Desk::typeInVain();
    zr.QLineEdit_Show(second, 1);
    zr.QLineEdit_SetFocus(second); // at once
    keyboard::type("x");
    CHECK(desk.becomes(second, "to twox"));
}

ZR_CASE(controls, movesInItsWindowAndIntoAnother)
{
    Desk desk;
    const Controls& zr = desk.zr;
    void* const edit = desk.addEdit();
    std::string typed;
    const auto moveTo = [&](int top) {
        tagRECT rect = rectangle(20, top);
        zr.QLineEdit_MoveWindow(edit, &rect);
        pump(100);
    };
    const auto isAt = [&](int top) {
        desk.clickInto(top);
        keyboard::type("x");
        typed += "x";
        return desk.becomes(edit, typed);
    };
    moveTo(300);
    CHECK(isAt(300));
    // Hidden, it stays so until it is shown.
    zr.QLineEdit_Show(edit, 0);
    moveTo(200);
    desk.clickInto(200);
    Desk::typeInVain();
    CHECK_EQUAL(zr.text(edit), typed);
    zr.QLineEdit_Show(edit, 1);
    pump(100);
    CHECK(isAt(200));
    const NativeWindow other(640, 300, 0, 600);
    zr.QLineEdit_SetParent(edit, other.hwnd()); // keeps its place
    pump(100);
    CHECK(isAt(800));
}

ZR_CASE(controls, copiesAndPastesButNoPasswords)
{
    Desk desk;
    const Controls& zr = desk.zr;
    void* const source = desk.addEdit();
    void* const target = desk.addEdit(kLower);
    for (const int echoMode : {0, 1, 2, 3}) {
        zr.QLineEdit_SetEchoMode(source, echoMode);
        zr.QLineEdit_SetText(source, echoMode == 0 ? "copied" : "secret");
        desk.clickInto();
        for (const char key : {'a', 'c', 'x'})
            keyboard::pressWithControl(key);
        pump(200);
    }
    desk.clickInto(kLower);
    keyboard::pressWithControl('v');
    CHECK(desk.becomes(target, "copied"));
}

ZR_CASE(controls, aPatternRestrictsTyping)
{
    Desk desk;
    const Controls& zr = desk.zr;
    void* const edit = desk.addEdit();
    zr.QLineEdit_SetInputRexp(edit, "[0-9]*");
    // Not valid, or beyond time and stack: change nothing.
    const std::string deep = std::string(60000, '(') + std::string(60000, ')');
    for (const char* const bad : {"[0-9", "((a{1000}){1000}){1000}", deep.c_str()})
        zr.QLineEdit_SetInputRexp(edit, bad);
    desk.clickInto();
    keyboard::type("a1b2");
    CHECK(desk.becomes(edit, "12"));
    zr.QLineEdit_SetInputRexp(edit, nullptr);
    keyboard::type("c");
    CHECK(desk.becomes(edit, "12c"));
    zr.QLineEdit_SetMaxLength(edit, 4);
    for (const int none : {-1, INT_MIN})
        zr.QLineEdit_SetMaxLength(edit, none);
    keyboard::type("def");
    CHECK(desk.becomes(edit, "12cd"));
    zr.QLineEdit_SetSelection(edit, 1, INT_MAX);
    keyboard::type("x");
    CHECK(desk.becomes(edit, "1x"));
    zr.QLineEdit_SetMaxLength(edit, 0); // an edit that takes nothing
    keyboard::type("y");
    CHECK(desk.becomes(edit, ""));
}

ZR_CASE(controls, givesItsTextInBytes)
{
    Desk desk;
    const Controls& zr = desk.zr;
    void* const edit = desk.addEdit(kTop, "昵称");
    zr.QLineEdit_SetMaxLength(edit, 5);
    struct Row
    {
        const char* text;
        int size;
        int length;
        int lengthAfter;
        const char* buffer;
    };
    const Row rows[] = {
        {"hello", 5, 5, 0, "-------"},
        {"hello", 5, 6, 5, "hello"},
        {"hello", 5, INT_MIN, 0, "-------"},
        {"", 0, 1, 0, ""},
        {"", 0, 0, 0, "-------"},
        {"会议", 6, 6, 0, "-------"},
        {"会议", 6, 7, 6, "会议"},
        {"a\xff", 4, 8, 4, "a\xef\xbf\xbd"},
        {nullptr, 0, 8, 0, ""},
        {"abcd\xf0\x9f\x98\x80", 4, 8, 4, "abcd"}, // half of the last character would fit
    };
    for (const Row& row : rows) {
        const std::string name =
            std::string(row.text ? row.text : "null") + "/" + std::to_string(row.length);
        zr.QLineEdit_SetText(edit, row.text);
        char buffer[8] = "-------";
        int length = row.length;
        CHECK_ROW(zr.QLineEdit_GetText(edit, buffer, length) == row.size, name);
        CHECK_ROW(length == row.lengthAfter, name);
        CHECK_ROW(std::strcmp(buffer, row.buffer) == 0, name);
    }
    zr.QLineEdit_SetText(edit, "hello");
    const EndlessText endless;
    for (char* const buffer :
         {static_cast<char*>(nullptr), static_cast<char*>(unreadable()),
          const_cast<char*>("read-only"), endless.text() + endless.size() - 3}) {
        int length = 100;
        CHECK_EQUAL(zr.QLineEdit_GetText(edit, buffer, length), 5);
        CHECK_EQUAL(length, 0);
    }
    static const int readOnly = 100;
    CHECK_EQUAL(zr.QLineEdit_GetText(edit, nullptr, const_cast<int&>(readOnly)), -1);
    runElsewhere([&] {
        zr.QLineEdit_SetText(edit, "afar");
        CHECK_EQUAL(zr.text(edit), "afar");
    });
}

ZR_CASE(controls, aDateIsPickedWithTheMouse)
{
    Desk desk;
    void* const picker = desk.addPicker();
    constexpr int kBottom = kHeightPx - 356;
    constexpr int kMax = INT_MAX;
    const std::time_t now = std::time(nullptr);
    const int year = std::localtime(&now)->tm_year + 1900;
    // Where and with what it is asked to open, where its right and upper edges then are, and the
    // moment that OK confirms, if any.
    const struct
    {
        int x, y;
        Moment asked;
        int right, top;
        std::optional<ZRDateRecord> chosen;
    } rows[] = {
        {500, 60, {2150, 13, 0, 99, -5, kMax}, 500, 60, {{0, 0, 23, 1, 12, 2150, {}}}},
        {10000, 10000, {kMax, 6, 31, 1, 2, 3}, kWidthPx, kBottom, {{0, 2, 1, 30, 6, 2199, {}}}},
        {-10000, INT_MIN, {-1, 12, 31, 23, 59, -1}, 448, 0, {{0, 59, 23, 31, 12, year, {}}}},
        {500, 0, {INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN}, 500, 0, {}},
    };
    for (const auto& row : rows) {
        const std::string name = std::to_string(row.x) + "/" + std::to_string(row.asked[0]);
        desk.open(picker, row.x, row.y, row.asked);
        CHECK_ROW(Desk::confirm(row.right, row.top) == row.chosen.has_value(), name);
        CHECK_ROW(!row.chosen
                      || std::memcmp(&DateInbox::record, &*row.chosen, sizeof *row.chosen) == 0,
                  name);
        CHECK_ROW(!row.chosen || !Desk::confirm(row.right, row.top), name); // it has hidden
    }
    desk.open(picker, 500, 20, {-1, -1, -1, -1, -1, -1});
    CHECK(Desk::confirm(500, 20)); // the present minute still counts
    // A point that cannot be read leaves it hidden; so does a hide from another thread.
    for (void* const bad : {static_cast<void*>(nullptr), unreadable()})
        desk.zr.date.Move(picker, static_cast<tagPOINT*>(bad), 2150, 1, 1, 1, 1, 1);
    runElsewhere([&] {
        desk.open(picker, 500, 20, kFuture);
        desk.zr.date.Hide(picker);
    });
    CHECK(!Desk::confirm(500, 20));
    DateInbox::onMessage = [&] { desk.zr.date.Release(picker); };
    desk.open(picker, 500, 20, kFuture);
    CHECK(Desk::confirm(500, 20));
}

/// What a host asks for may leave an edit useless, but nothing else.
ZR_CASE(controls, attributesDoNoHarm)
{
    Desk desk;
    const Controls& zr = desk.zr;
    void* const edit = desk.addEdit();
    zr.QLineEdit_SetStyleSheet(edit, "QLineEdit{ this is no style sheet");
    for (int attribute = -2; attribute < 200; ++attribute) {
        for (const bool on : {true, false})
            zr.QLineEdit_SetAttribute(edit, attribute, on);
    }
    zr.QLineEdit_Release(edit);
    void* const after = desk.addEdit();
    zr.QLineEdit_SetFocus(after);
    keyboard::type("too");
    CHECK(desk.becomes(after, "too"));
}

ZR_CASE(controls, outliveScreensAndWindows)
{
    Desk desk;
    const Controls& zr = desk.zr;
    void* const picker = desk.addPicker();
    void* const edit = desk.addEdit();
    desk.meeting.zr.Release(desk.meeting.screen);
    desk.meeting.screen = nullptr;
    // Without a screen nobody hears of the edit, but it works; the picker's host hears of it.
    desk.clickInto();
    keyboard::type("alone");
    CHECK(desk.becomes(edit, "alone"));
    desk.open(picker, 600, 0, kFuture);
    CHECK(Desk::confirm(600, 0));
    // The host destroys its window first, against the rules.
    auto window = std::make_unique<NativeWindow>(200, 100, 700, 0);
    tagRECT rect = rectangle(0, 0);
    void* const orphan = zr.QLineEdit_Init(window->hwnd(), &rect, "");
    void* const orphanBox = zr.QTextEdit_Init(window->hwnd(), &rect, 0, 0, 0);
    REQUIRE(orphan && orphanBox);
    zr.QLineEdit_SetFocus(orphan);
    pump(100);
    window.reset();
    pump(100);
    zr.QLineEdit_SetText(orphan, "orphan");
    zr.QTextEdit_SetText(orphanBox, "orphan");
    zr.QLineEdit_SetFocus(orphan);
    zr.QLineEdit_SetParent(orphan, desk.window.hwnd());
    zr.QLineEdit_MoveWindow(orphan, &rect);
    for (const int shown : {0, 1})
        zr.QLineEdit_Show(orphan, shown);
    CHECK_EQUAL(zr.text(orphan), "orphan");
    pump(100);
    zr.QLineEdit_Release(orphan);
    // What is left goes with the library.
    desk.meeting.zr.unload();
}
