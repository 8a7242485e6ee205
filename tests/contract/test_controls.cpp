// The controls that a host embeds: a user at the keyboard and the mouse, and a host that errs.
#include "controls.h"

#include "check.h"
#include "desktop.h"
#include "keyboard.h"
#include "meeting.h"

#include <atomic>
#include <climits>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <thread>

Controls::Controls(const Module& module)
{
#define ZR_LOOK_UP(member)                                                                         \
    this->member = reinterpret_cast<decltype(member)>(module.find("ZRCtrl_" #member));             \
    REQUIRE(this->member != nullptr);
    ZR_CONTROL_EXPORTS(ZR_LOOK_UP)
#undef ZR_LOOK_UP
#define ZR_LOOK_UP(member)                                                                         \
    date.member = reinterpret_cast<decltype(date.member)>(module.find("ZRScreenDate_" #member));   \
    REQUIRE(date.member != nullptr);
    ZR_DATE_EXPORTS(ZR_LOOK_UP)
#undef ZR_LOOK_UP
}

std::string Controls::text(void* edit) const
{
    char buffer[256] = "";
    int length = sizeof buffer;
    return QLineEdit_GetText(edit, buffer, length) < 0 ? "?" : std::string(buffer);
}

namespace {

constexpr int kWidthPx = 640;
constexpr int kHeightPx = 480;
/// A point of the screen that is in no window: keys that arrive have been directed.
constexpr int kAwayPx = 900;

tagRECT rectangle(int left, int top, int width, int height)
{
    tagRECT rect{};
    rect.left = left;
    rect.top = top;
    rect.right = left + width;
    rect.bottom = top + height;
    return rect;
}

/// What the last message of a date picker told.
struct DateInbox
{
    static int notify(unsigned long id, unsigned long long wParam, long long)
    {
        ++count;
        last = id;
        if (id == ZRDATE_CHOSEN)
            record = *reinterpret_cast<const ZRDateRecord*>(static_cast<uintptr_t>(wParam));
        if (onMessage)
            onMessage();
        return 0;
    }
    static void reset()
    {
        count = 0;
        record = {};
        onMessage = nullptr;
    }
    static inline int count = 0;
    static inline unsigned long last = 0;
    static inline ZRDateRecord record{};
    static inline std::function<void()> onMessage;
};

/// A meeting in one window, and another window for the controls, at the screen's top left corner.
struct Desk
{
    Desk()
        : videoWindow(320, 180, 1200, 100)
        , meeting(&videoWindow, 320, 180)
        , controls(meeting.zr)
    {
        DateInbox::reset();
    }
    void* addEdit(int top, const char* placeholder = "")
    {
        tagRECT rect = rectangle(20, top, 200, 30);
        void* const edit = controls.QLineEdit_Init(window.hwnd(), &rect, placeholder);
        REQUIRE(edit != nullptr);
        pump(100); // until it is mapped
        return edit;
    }
    void clickInto(int top)
    {
        desktop::click(40, top + 15);
        pump(100);
        desktop::moveTo(kAwayPx, kAwayPx);
        pump(50);
    }
    [[nodiscard]] bool becomes(void* edit, const std::string& expected) const
    {
        return pumpUntil([&] { return controls.text(edit) == expected; });
    }

    NativeWindow videoWindow;
    NativeWindow window{kWidthPx, kHeightPx};
    Meeting meeting;
    Controls controls;
};

void* unreadable()
{
    return reinterpret_cast<void*>(static_cast<uintptr_t>(0x10));
}

/// Lets every export of the line edit have a go at a handle; none may do anything.
void callLineEdit(const Controls& zr, void* h, HWND parent)
{
    tagRECT rect = rectangle(0, 0, 10, 10);
    zr.QLineEdit_SetParent(h, parent);
    zr.QLineEdit_SetStyleSheet(h, "QLineEdit{color:red}");
    zr.QLineEdit_SetText(h, "bad");
    zr.QLineEdit_SetPlaceholderText(h, "bad");
    zr.QLineEdit_MoveWindow(h, &rect);
    zr.QLineEdit_Show(h, 0);
    zr.QLineEdit_SetAttribute(h, 0, true);
    zr.QLineEdit_SetInputRexp(h, "z*");
    zr.QLineEdit_SetObjectName(h, "bad");
    zr.QLineEdit_SetEchoMode(h, 1);
    zr.QLineEdit_SetMaxLength(h, 1);
    zr.QLineEdit_SetFocus(h);
    zr.QLineEdit_SetCursorPos(h, 1);
    zr.QLineEdit_SetSelection(h, 0, 1);
    char buffer[] = "kept";
    int length = sizeof buffer;
    CHECK_EQUAL(zr.QLineEdit_GetText(h, buffer, length), -1);
    CHECK_EQUAL(std::string(buffer), "kept");
    zr.QLineEdit_Release(h);
}

void callTextEdit(const Controls& zr, void* h)
{
    zr.QTextEdit_SetText(h, "bad");
    zr.QTextEdit_Release(h);
}

void callDate(const Controls& zr, void* h)
{
    tagPOINT at{};
    zr.date.Move(h, &at, -1, -1, -1, -1, -1, -1);
    zr.date.Hide(h);
    zr.date.Release(h);
}

void runElsewhere(const std::function<void()>& body)
{
    std::atomic<bool> done{false};
    std::thread worker([&] {
        body();
        done = true;
    });
    CHECK(pumpUntil([&] { return done.load(); }, 60000));
    worker.join();
    pump(50); // what was posted
}

/// Where the picker's OK button lies: 46 pixels left of its right edge, 30 above its lower one.
void clickOK(int right, int top)
{
    constexpr int kPickerHeightPx = 356;
    desktop::click(right - 46, top + kPickerHeightPx - 30);
}

} // namespace

ZR_CASE(controls, theKeyboardArrives)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const first = desk.addEdit(20);
    void* const second = desk.addEdit(70);
    const auto told = [&](unsigned long id) {
        int count = 0;
        for (const Message& message : desk.meeting.inbox.all()) {
            if (message.id == id && message.lParam == 0
                && message.wParam == reinterpret_cast<uintptr_t>(first))
                ++count;
        }
        return count;
    };
    desk.clickInto(20);
    CHECK_EQUAL(told(ZRMSG_EDIT_LBUTTON_DOWN), 1);
    CHECK_EQUAL(told(ZRMSG_EDIT_LBUTTON_UP), 1);
    keyboard::type("meeting 5");
    CHECK(desk.becomes(first, "meeting 5"));
    CHECK_EQUAL(zr.text(second), "");

    // Tab reports, and the keys go elsewhere from then on, even with the mouse over the edit.
    desktop::moveTo(40, 35);
    keyboard::pressTab();
    CHECK(pumpUntil([&] { return told(ZRMSG_EDIT_KEY) == 1; }));
    pump(100);
    keyboard::type("lost");
    pump(200);
    CHECK_EQUAL(zr.text(first), "meeting 5");
    desktop::moveTo(kAwayPx, kAwayPx);
    // A host that asks for the edit again inside the message keeps the keys there.
    desk.meeting.inbox.onMessage = [&](const Message& message) {
        if (message.id == ZRMSG_EDIT_KEY)
            zr.QLineEdit_SetFocus(first);
    };
    pump(600); // a double click would select a word
    desk.clickInto(20);
    keyboard::pressTab();
    CHECK(pumpUntil([&] { return told(ZRMSG_EDIT_KEY) == 2; }));
    keyboard::type("6");
    CHECK(pumpUntil([&] { return zr.text(first).size() == 10; }));
    desk.meeting.inbox.onMessage = nullptr;

    zr.QLineEdit_SetFocus(second);
    pump(100);
    keyboard::type("to two");
    CHECK(desk.becomes(second, "to two"));
    // A hidden edit gives the keyboard back; shown again, it can have it again.
    zr.QLineEdit_Show(second, 0);
    pump(100);
    keyboard::type("lost");
    pump(200);
    zr.QLineEdit_Show(second, 1);
    pump(100);
    zr.QLineEdit_SetFocus(second);
    pump(100);
    keyboard::type("x");
    CHECK(desk.becomes(second, "to twox"));
    zr.QLineEdit_Release(first);
    zr.QLineEdit_Release(second);
}

ZR_CASE(controls, movesInItsWindowAndIntoAnother)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const edit = desk.addEdit(20);
    std::string typed;
    const auto isAt = [&](int top) {
        desk.clickInto(top);
        keyboard::type("x");
        typed += "x";
        return desk.becomes(edit, typed);
    };
    for (const int top : {300, 100, 400}) {
        tagRECT rect = rectangle(20, top, 200, 30);
        zr.QLineEdit_MoveWindow(edit, &rect);
        pump(100);
        CHECK_ROW(isAt(top), std::to_string(top));
    }
    // Hidden, it stays so until it is shown.
    tagRECT rect = rectangle(20, 200, 200, 30);
    zr.QLineEdit_Show(edit, 0);
    zr.QLineEdit_MoveWindow(edit, &rect);
    desk.clickInto(200);
    keyboard::type("lost");
    pump(100);
    CHECK_EQUAL(zr.text(edit), typed);
    zr.QLineEdit_Show(edit, 1);
    pump(100);
    CHECK(isAt(200));
    const NativeWindow other(640, 200, 0, 600);
    zr.QLineEdit_SetParent(edit, other.hwnd());
    rect = rectangle(20, 50, 200, 30);
    zr.QLineEdit_MoveWindow(edit, &rect);
    pump(100);
    CHECK(isAt(650));
    zr.QLineEdit_Release(edit);
}

ZR_CASE(controls, copiesAndPastesButNoPasswords)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const source = desk.addEdit(20);
    void* const target = desk.addEdit(70);
    zr.QLineEdit_SetText(source, "copied");
    const auto copyAll = [&] {
        desk.clickInto(20);
        keyboard::pressWithControl('a');
        keyboard::pressWithControl('c');
        pump(200);
    };
    copyAll();
    zr.QLineEdit_SetText(source, "secret");
    zr.QLineEdit_SetEchoMode(source, 2);
    copyAll();
    desk.clickInto(70);
    keyboard::pressWithControl('v');
    CHECK(desk.becomes(target, "copied"));
    zr.QLineEdit_Release(source);
    zr.QLineEdit_Release(target);
}

ZR_CASE(controls, aPatternRestrictsTyping)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const edit = desk.addEdit(20);
    zr.QLineEdit_SetInputRexp(edit, "[0-9]*");
    zr.QLineEdit_SetInputRexp(edit, "[0-9"); // not valid: changes nothing
    desk.clickInto(20);
    keyboard::type("a1b2");
    CHECK(desk.becomes(edit, "12"));
    zr.QLineEdit_SetInputRexp(edit, nullptr);
    keyboard::type("c");
    CHECK(desk.becomes(edit, "12c"));
    for (const int none : {0, -1, INT_MIN})
        zr.QLineEdit_SetMaxLength(edit, none);
    zr.QLineEdit_SetMaxLength(edit, 4);
    keyboard::type("def");
    CHECK(desk.becomes(edit, "12cd"));
    zr.QLineEdit_SetSelection(edit, 1, INT_MAX);
    keyboard::type("x");
    CHECK(desk.becomes(edit, "1x"));
    zr.QLineEdit_Release(edit);
}

ZR_CASE(controls, givesItsTextInBytes)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const edit = desk.addEdit(20, "昵称");
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
        {"", 0, 1, 0, ""},
        {"", 0, 0, 0, "-------"},
        {"会议", 6, 6, 0, "-------"},
        {"会议", 6, 7, 6, "会议"},
        {"hello", 5, -1, 0, "-------"},
        {"hello", 5, INT_MIN, 0, "-------"},
        {"a\xff", 4, 8, 4, "a\xef\xbf\xbd"},
        {nullptr, 0, 8, 0, ""},
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
    for (char* const buffer : {static_cast<char*>(nullptr), static_cast<char*>(unreadable())}) {
        int length = 100;
        CHECK_EQUAL(zr.QLineEdit_GetText(edit, buffer, length), 5);
        CHECK_EQUAL(length, 0);
    }
    runElsewhere([&] {
        zr.QLineEdit_SetText(edit, "from afar");
        CHECK_EQUAL(zr.text(edit), "from afar");
    });
    zr.QLineEdit_Release(edit);
}

ZR_CASE(controls, aDateIsPickedWithTheMouse)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const picker = zr.date.Init(desk.window.hwnd(), DateInbox::notify);
    REQUIRE(picker != nullptr);
    // Corners at which it is asked to open, and where its right and upper edges then are.
    struct Row
    {
        int x, y, right, top;
    };
    const Row rows[] = {
        {500, 60, 500, 60}, {10000, 10000, kWidthPx, kHeightPx - 356}, {-10000, INT_MIN, 448, 0}};
    for (const Row& row : rows) {
        const std::string name = std::to_string(row.x);
        DateInbox::reset();
        tagPOINT at{};
        at.x = row.x;
        at.y = row.y;
        zr.date.Move(picker, &at, 2150, 12, 31, 23, 59, 58);
        pump(150);
        clickOK(row.right, row.top);
        CHECK_ROW(pumpUntil([] { return DateInbox::count == 1; }), name);
        const ZRDateRecord expected{0, 59, 23, 31, 12, 2150, {0, 0, 0}};
        CHECK_ROW(std::memcmp(&DateInbox::record, &expected, sizeof expected) == 0, name);
        // It has hidden: a second click reaches nobody.
        clickOK(row.right, row.top);
        pump(100);
        CHECK_ROW(DateInbox::count == 1, name);
    }
    zr.date.Release(picker);
}

ZR_CASE(controls, oddMomentsAreBroughtIntoRange)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const picker = zr.date.Init(desk.window.hwnd(), DateInbox::notify);
    REQUIRE(picker != nullptr);
    tagPOINT at{};
    at.x = 500;
    at.y = 20;
    const auto confirm = [&](int year, int month, int day, int hour, int minute, int second) {
        DateInbox::reset();
        zr.date.Move(picker, &at, year, month, day, hour, minute, second);
        pump(150);
        clickOK(500, 20);
        pump(200);
        return DateInbox::count == 1;
    };
    CHECK(confirm(2150, 13, 0, 99, -5, INT_MAX));
    CHECK_EQUAL(DateInbox::record.month, 12);
    CHECK_EQUAL(DateInbox::record.day, 1);
    CHECK_EQUAL(DateInbox::record.hour, 23);
    CHECK_EQUAL(DateInbox::record.minute, 0);
    CHECK(!confirm(INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN)); // long past
    CHECK(confirm(INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX));
    CHECK_EQUAL(DateInbox::record.year, 2199);
    CHECK_EQUAL(DateInbox::record.day, 31);
    CHECK(confirm(-1, 12, 31, 23, 59, -1));
    const std::time_t now = std::time(nullptr);
    CHECK_EQUAL(DateInbox::record.year, std::localtime(&now)->tm_year + 1900);
    CHECK(confirm(-1, -1, -1, -1, -1, -1)); // the present minute still counts
    // A point that cannot be read leaves it hidden; so does a hide from another thread.
    for (tagPOINT* const bad :
         {static_cast<tagPOINT*>(nullptr), static_cast<tagPOINT*>(unreadable())})
        zr.date.Move(picker, bad, 2150, 1, 1, 1, 1, 1);
    runElsewhere([&] {
        zr.date.Move(picker, &at, 2150, 1, 1, 1, 1, 1);
        zr.date.Hide(picker);
    });
    DateInbox::reset();
    clickOK(500, 20);
    pump(100);
    CHECK_EQUAL(DateInbox::count, 0);
    zr.date.Release(picker);
}

ZR_CASE(controls, wrongHandlesAreRefused)
{
    Desk desk;
    const Controls& zr = desk.controls;
    tagRECT rect = rectangle(0, 0, 100, 40);
    void* const edit = desk.addEdit(20);
    zr.QLineEdit_SetText(edit, "kept");
    void* const box = zr.QTextEdit_Init(desk.window.hwnd(), &rect, 1, 2, 3);
    void* const picker = zr.date.Init(desk.window.hwnd(), DateInbox::notify);
    void* const released = zr.QLineEdit_Init(nullptr, &rect, nullptr);
    REQUIRE(box && picker && released);
    zr.QLineEdit_Release(released);
    const std::vector<uint64_t> foreign(64, 0x5a5a5a5a5a5a5a5aU);
    std::vector<void*> strangers{nullptr, unreadable(), released, desk.meeting.screen,
                                 const_cast<uint64_t*>(foreign.data())};
    const auto callAll = [&] {
        LogCapture log;
        for (void* const stranger : strangers) {
            callLineEdit(zr, stranger, desk.window.hwnd());
            callTextEdit(zr, stranger);
            callDate(zr, stranger);
        }
        (void)log.take();
        callLineEdit(zr, box, desk.window.hwnd());
        callLineEdit(zr, picker, desk.window.hwnd());
        callTextEdit(zr, edit);
        callTextEdit(zr, picker);
        callDate(zr, edit);
        callDate(zr, box);
    };
    callAll();
    runElsewhere(callAll);
    LogCapture log;
    callDate(zr, edit);
    CHECK(log.take().find("failed") != std::string::npos);
    CHECK_EQUAL(zr.text(edit), "kept");
    zr.QTextEdit_SetText(box, "still there");
    zr.QTextEdit_Release(box);
    zr.date.Release(picker);
    zr.QLineEdit_Release(edit);
    CHECK_EQUAL(zr.text(edit), "?");
}

ZR_CASE(controls, badArgumentsAreRefused)
{
    Desk desk;
    const Controls& zr = desk.controls;
    tagRECT rect = rectangle(0, 0, 100, 40);
    auto* const badRect = static_cast<tagRECT*>(unreadable());
    const HWND noWindow = reinterpret_cast<HWND>(static_cast<uintptr_t>(0x7ffffff0));
    CHECK(zr.QLineEdit_Init(desk.window.hwnd(), nullptr, "") == nullptr);
    CHECK(zr.QLineEdit_Init(desk.window.hwnd(), badRect, "") == nullptr);
    CHECK(zr.QLineEdit_Init(noWindow, &rect, "") == nullptr);
    CHECK(zr.QTextEdit_Init(desk.window.hwnd(), nullptr, 0, 0, 0) == nullptr);
    CHECK(zr.QTextEdit_Init(noWindow, &rect, 0, 0, 0) == nullptr);
    CHECK(zr.date.Init(noWindow, nullptr) == nullptr);
    void* const edit = desk.addEdit(20);
    const EndlessText endless;
    for (const char* const bad :
         {static_cast<const char*>(unreadable()), static_cast<const char*>(endless.text())}) {
        CHECK(zr.QLineEdit_Init(desk.window.hwnd(), &rect, bad) == nullptr);
        zr.QLineEdit_SetText(edit, bad);
        zr.QLineEdit_SetStyleSheet(edit, bad);
        zr.QLineEdit_SetPlaceholderText(edit, bad);
        zr.QLineEdit_SetInputRexp(edit, bad);
        zr.QLineEdit_SetObjectName(edit, bad);
    }
    zr.QLineEdit_SetStyleSheet(edit, "QLineEdit{ this is no style sheet");
    for (int attribute = -2; attribute < 200; ++attribute) {
        zr.QLineEdit_SetAttribute(edit, attribute, true);
        zr.QLineEdit_SetAttribute(edit, attribute, false);
    }
    for (const int n : {INT_MIN, -1, 4, INT_MAX}) {
        zr.QLineEdit_SetEchoMode(edit, n);
        zr.QLineEdit_SetCursorPos(edit, n);
        zr.QLineEdit_SetSelection(edit, n, n);
        tagRECT odd = rectangle(0, 0, 0, 0);
        odd.right = n;
        odd.bottom = n > 0 ? 30 : n;
        zr.QLineEdit_MoveWindow(edit, &odd);
        pump(5);
    }
    zr.QLineEdit_MoveWindow(edit, nullptr);
    zr.QLineEdit_MoveWindow(edit, badRect);
    zr.QLineEdit_SetParent(edit, noWindow);
    pump(50);
    // It still works where it was.
    zr.QLineEdit_Release(edit);
    void* const after = desk.addEdit(20);
    desk.clickInto(20);
    keyboard::type("fine");
    CHECK(desk.becomes(after, "fine"));
    zr.QLineEdit_Release(after);
}

ZR_CASE(controls, releasedFromInsideTheirMessages)
{
    Desk desk;
    const Controls& zr = desk.controls;
    void* const edit = desk.addEdit(20);
    void* const picker = zr.date.Init(desk.window.hwnd(), DateInbox::notify);
    desk.meeting.inbox.onMessage = [&](const Message& message) {
        if (message.id == ZRMSG_EDIT_KEY) {
            zr.QLineEdit_Release(edit);
            CHECK_EQUAL(zr.text(edit), "?");
        }
    };
    desk.clickInto(20);
    keyboard::pressTab();
    CHECK(pumpUntil([&] { return zr.text(edit) == "?"; }));
    pump(100);

    DateInbox::onMessage = [&] { zr.date.Release(picker); };
    tagPOINT at{};
    at.x = 500;
    zr.date.Move(picker, &at, 2150, 1, 1, 0, 0, 0);
    pump(150);
    clickOK(500, 0);
    CHECK(pumpUntil([] { return DateInbox::count == 1; }));
    pump(100);
    desk.meeting.inbox.onMessage = nullptr;
}

ZR_CASE(controls, outliveScreensAndWindows)
{
    auto desk = std::make_unique<Desk>();
    const Controls& zr = desk->controls;
    void* const picker = zr.date.Init(desk->window.hwnd(), DateInbox::notify);
    void* const edit = desk->addEdit(20);
    desk->meeting.zr.Release(desk->meeting.screen);
    desk->meeting.screen = nullptr;
    // Without a screen nobody hears of the edit, but it works; the picker's host hears of it.
    desk->clickInto(20);
    keyboard::type("alone");
    CHECK(desk->becomes(edit, "alone"));
    tagPOINT at{};
    at.x = 600;
    zr.date.Move(picker, &at, 2150, 1, 1, 0, 0, 0);
    pump(150);
    clickOK(600, 0);
    CHECK(pumpUntil([] { return DateInbox::count == 1; }));
    // The host destroys its window first, against the rules.
    void* orphan = nullptr;
    {
        const NativeWindow window(200, 100, 700, 0);
        tagRECT rect = rectangle(0, 0, 100, 40);
        orphan = zr.QLineEdit_Init(window.hwnd(), &rect, "");
        REQUIRE(orphan != nullptr);
        pump(100);
    }
    pump(100);
    zr.QLineEdit_SetText(orphan, "orphan");
    zr.QLineEdit_SetFocus(orphan);
    CHECK_EQUAL(zr.text(orphan), "orphan");
    zr.QLineEdit_Release(orphan);
    // What is left goes with the library.
    desk->meeting.zr.unload();
}
