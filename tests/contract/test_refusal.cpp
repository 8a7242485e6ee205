// Arguments that no host should pass: each is refused as the header says, and logged.
#include "check.h"
#include "meeting.h"

#include <climits>
#include <cstring>
#include <utility>

namespace {

constexpr int kDone = 1;
constexpr int kRefused = 0;

struct Call
{
    const char* text;
    int (*invoke)(Module& zr, void* s, void* p);
    int whenScreenIsBad;
};

void* unreadable()
{
    return reinterpret_cast<void*>(uintptr_t{0x10});
}

tagRECT g_area{0, 0, 640, 360};

void* picture()
{
    static Picture red(320, 180, kRed);
    return &red.frame;
}

bool isUnset(const ZRRect& rect)
{
    return rect.left == 0 && rect.top == 0 && rect.right == -1 && rect.bottom == -1;
}

// CALL(whenScreenIsBad, call of `zr` with the screen `s` and the participant `p`)
// clang-format off
#define CALL(whenScreenIsBad, ...)                                                                 \
    {#__VA_ARGS__,                                                                                 \
     [](Module& zr, void* s, [[maybe_unused]] void* p) -> int { return __VA_ARGS__; },             \
     whenScreenIsBad}
// clang-format on

/// Every export that takes a participant.
const Call kParticipantCalls[] = {
    CALL(kRefused, zr.PlayFrame(s, p, picture())),
    CALL(kRefused, zr.SetPersonInfo(s, p, false, 1, text("name"), 0)),
    CALL(kRefused, zr.SetMute(s, p, 1)),
    CALL(kRefused, zr.SetVolume(s, p, 50)),
    CALL(kRefused, zr.Preview(s, p, true)),
    CALL(kRefused, zr.SetPersonHandUp(s, p, true)),
    CALL(kRefused, zr.LockLook(s, p, 1)),
    CALL(kRefused, zr.AllLook(s, p, 1)),
    CALL(kRefused, zr.DelPerson(s, p, false)),
};

/// Every export that takes a screen and no participant.
const Call kScreenCalls[] = {
    CALL(kRefused, zr.SetParent(s, nullptr)),
    CALL(kRefused, zr.MoveWindow(s, &g_area, 0)),
    CALL(kRefused, zr.ExitMeeting(s)),
    CALL(kRefused, zr.AddPerson(s, text("bad"), text("bad"), 1, 0, nullptr) ? kDone : kRefused),
    CALL(kRefused, zr.JoinMeetingFinish(s, true)),
    CALL(kRefused, zr.UpdateUserNetStatus(s, text("u1"), 1, false, 5)),
    CALL(kRefused, zr.ChangeLayout(s, eLayoutEqualCut, {{0, "u1"}})),
    CALL(kRefused, zr.GetCurMode(s)),
    CALL(kRefused, zr.ReOrder(s, true)),
    CALL(kRefused, zr.FocusByUserID(s, text("u1"), false)),
    CALL(kRefused, zr.SetActivateUser(s, text("u1"))),
    CALL(kRefused, zr.SetCurrentSpeakingPerson(s, "u1")),
    CALL(kDone, zr.SetVoiceActivate(s, false)),
    CALL(kRefused, zr.SetSupport9EqualCut(s, false)),
    CALL(kRefused, zr.SetSupport16EqualCut(s, false)),
    CALL(kRefused, zr.SetOpenPollingPage(s, false, 10)),
    CALL(kRefused, zr.SetLayoutCtrl(s, false, false, -1, -1, false)),
    CALL(kRefused, zr.SetHideNoCameraWnd(s, true)),
    CALL(kRefused, zr.IsPersonVisible(s, text("u1"))),
    CALL(kRefused, zr.SetHideSmallWidget(s, false)),
    CALL(kRefused, zr.ShowSmallWnd(s, true, false)),
    CALL(kRefused, zr.GetSmallWndID(s)),
    CALL(kRefused, zr.IsPersonVisibleInSmallWnd(s, text("u1"))),
    CALL(kRefused, zr.SetShareSponsor(s, "u1")),
    CALL(kRefused, zr.PopSelfShareWnd(s, false, false)),
    CALL(kRefused, zr.SetIsCloseWhiteBoard(s)),
    CALL(kRefused, isUnset(zr.GetShareWgtPos(s)) ? kRefused : kDone),
    CALL(kDone, zr.SetPauseShareWindow(s, false)),
    CALL(kRefused, zr.SetExtendScreen(s, false, false)),
    CALL(kRefused, zr.SetVideoToolbarStatus(s, &g_area, false)),
    CALL(kRefused, zr.IsMouseOnBtnMore(s)),
    CALL(kDone, zr.ClearMoreMenuPtr(s)),
    CALL(kRefused, zr.OpenSubtitle(s, false)),
    CALL(kRefused, zr.ClearSubtitles(s)),
    CALL(kRefused, zr.AddSentence(s, 1, 0, text("Ann"), text("Hello"))),
};
#undef CALL

/// Memory that looks like nothing the library ever made.
struct Foreign
{
    uint64_t words[64];
    Foreign() { std::memset(words, 0x5a, sizeof words); }
};

/// Runs `body` on this thread, or on another one while this thread runs its event loop.
void runOn(bool otherThread, const std::function<void()>& body)
{
    if (otherThread)
        runElsewhere(body);
    else
        body();
}

/// Every refusal says what failed; that of a preview with a deleted handle is the one that does
/// not.
bool isRefusal(const std::string& log)
{
    return log.find("failed") != std::string::npos
           || log.find("iter != pScreen->mapHadDelPlay.end()") != std::string::npos;
}

/// A meeting in a small window, with one participant.
struct SmallMeeting
{
    const NativeWindow window{640, 360};
    Meeting meeting{&window, 640, 360};
    Module& zr = meeting.zr;
    void* const s = meeting.screen;
    void* const ann = meeting.join(1);
    LogCapture log;

    /// Another one, who has left: the handle is stale.
    [[nodiscard]] void* deleted()
    {
        void* const bob = meeting.join(2);
        CHECK_EQUAL(zr.DelPerson(s, bob, false), 1);
        pump(50);
        return bob;
    }
    void check(const Call& call, void* screen, void* play, int expected, const char* kind)
    {
        const std::string row = std::string(call.text) + ", " + kind;
        (void)log.take();
        CHECK_ROW(call.invoke(zr, screen, play) == expected, row);
        // What is answered as done was not refused.
        if (expected == kRefused)
            CHECK_ROW(isRefusal(log.take()), "log of " + row);
    }
};

void refuseScreens(bool otherThread)
{
    SmallMeeting m;
    void* const released = m.zr.Init(nullptr, nullptr);
    REQUIRE(released != nullptr);
    m.zr.Release(released);
    Foreign foreign;
    const std::pair<const char*, void*> screens[] = {
        {"null", nullptr},      {"unreadable", unreadable()},
        {"released", released}, {"foreign", &foreign},
        {"play handle", m.ann}, {"misaligned", static_cast<char*>(m.s) + 1}};
    runOn(otherThread, [&] {
        for (const auto& [kind, screen] : screens) {
            for (const Call& call : kScreenCalls)
                m.check(call, screen, nullptr, call.whenScreenIsBad, kind);
            for (const Call& call : kParticipantCalls)
                m.check(call, screen, m.ann, call.whenScreenIsBad, kind);
            m.zr.Release(screen);
        }
    });
    pump(50);
    CHECK_EQUAL(m.zr.IsPersonVisible(m.s, text("u1")), 1);
    CHECK_EQUAL(m.zr.IsPersonVisible(m.s, text("bad")), 0);
}

void refuseParticipants(bool otherThread)
{
    SmallMeeting m;
    Foreign foreign;
    const std::pair<const char*, void*> plays[] = {
        {"null", nullptr},     {"unreadable", unreadable()}, {"deleted", m.deleted()},
        {"foreign", &foreign}, {"screen handle", m.s},
    };
    runOn(otherThread, [&] {
        for (const auto& [kind, play] : plays) {
            for (const Call& call : kParticipantCalls)
                m.check(call, m.s, play, kRefused, kind);
        }
    });
    pump(50);
    CHECK_EQUAL(m.zr.IsPersonVisible(m.s, text("u1")), 1);
}

/// With the log text of each check, in the order of the checks.
void refuseFrames(SmallMeeting& m, void* deleted)
{
    Module& zr = m.zr;
    Picture good(320, 180, kRed);
    const struct
    {
        void *screen, *play, *frame;
        const char* logged;
    } calls[] = {
        {nullptr, nullptr, nullptr, "IsVaildScreenHandle failed"},
        {m.s, nullptr, nullptr, "hPlay == nullptr failed"},
        {m.s, m.ann, nullptr, "pWin32Frame == nullptr failed"},
        {m.s, deleted, &good.frame, "iter != pScreen->mapHadDelPlay.end() failed"},
        {m.s, unreadable(), &good.frame, "IsBadReadPtr(pPlay, sizeof(ST_ZRPlayHdl)) failed"},
        {m.s, m.ann, unreadable(), "failed"},
    };
    for (const auto& call : calls) {
        (void)m.log.take();
        CHECK_ROW(zr.PlayFrame(call.screen, call.play, call.frame) == 0, call.logged);
        CHECK_ROW(m.log.take().find(call.logged) != std::string::npos, call.logged);
    }

    const EndlessText endless;
    const auto play = [&](const void* data, uint32_t width, uint32_t height) {
        VantrelRTCVideoFrameQT frame{};
        frame.pData = static_cast<const uint8_t*>(data);
        frame.width = width;
        frame.height = height;
        return zr.PlayFrame(m.s, m.ann, &frame);
    };
    const uint8_t* const data = good.frame.pData;
    const struct
    {
        const void* data;
        uint32_t width, height;
    } pictures[] = {
        {nullptr, 320, 180},
        {data, 0, 180},
        {data, 320, 0},
        {data, 16385, 16},
        {data, 16, 16385},
        {data, UINT32_MAX, UINT32_MAX},
        {data, 0x80000000U, 2},
        {unreadable(), 320, 180},
        {endless.text(), 160, 90}, // the first byte can be read, the last one cannot
        {reinterpret_cast<const void*>(UINTPTR_MAX - 64), 320, 180},
    };
    for (const auto& bad : pictures) {
        // A refused picture is logged once until a good one comes.
        CHECK_EQUAL(zr.PlayFrame(m.s, m.ann, &good.frame), 1);
        const std::string row = std::to_string(bad.width) + "x" + std::to_string(bad.height);
        (void)m.log.take();
        CHECK_ROW(play(bad.data, bad.width, bad.height) == 0, row);
        CHECK_ROW(!m.log.take().empty(), "log of " + row);
    }
    CHECK_EQUAL(zr.PlayFrame(m.s, m.ann, &good.frame), 1);
    // The smallest picture, whose last row ends right before unreadable memory.
    CHECK_EQUAL(play(endless.text() + endless.size() - 3, 1, 1), 1);
}

} // namespace

ZR_CASE(refusal, badScreens)
{
    refuseScreens(false);
    refuseScreens(true);
}

ZR_CASE(refusal, badParticipants)
{
    refuseParticipants(false);
    refuseParticipants(true);
}

ZR_CASE(refusal, releasedScreenTakesItsHandlesAlong)
{
    SmallMeeting m;
    m.zr.Release(m.s);
    m.meeting.screen = m.zr.Init(m.window.hwnd(), m.meeting.inbox.notify());
    REQUIRE(m.meeting.screen != nullptr);
    for (const Call& call : kParticipantCalls) {
        m.check(call, m.meeting.screen, m.ann, kRefused, "handle of a released screen");
        // The old address may have been given to the new screen; only another one is stale.
        if (m.s != m.meeting.screen)
            m.check(call, m.s, m.ann, kRefused, "released screen");
    }
    m.zr.Release(m.meeting.screen);
    m.zr.Release(std::exchange(m.meeting.screen, nullptr)); // twice
}

ZR_CASE(refusal, badFrames)
{
    SmallMeeting m;
    CHECK(pumpUntil([&] { return m.meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0; }));
    void* const deleted = m.deleted();
    refuseFrames(m, deleted);
    runOn(true, [&] { refuseFrames(m, deleted); });
}

ZR_CASE(refusal, badStringsFunctionsAndRectangles)
{
    SmallMeeting m;
    auto& [window, meeting, zr, s, ann, log] = m;
    const EndlessText endless;
    for (char* const bad : {static_cast<char*>(unreadable()), endless.text()}) {
        CHECK(zr.AddPerson(s, bad, text("x"), 1, 0, nullptr) == nullptr);
        CHECK(zr.AddPerson(s, text("y"), bad, 1, 0, nullptr) == nullptr);
        CHECK_EQUAL(zr.SetPersonInfo(s, ann, false, 0, bad, 0), 0);
        CHECK_EQUAL(zr.UpdateUserNetStatus(s, bad, 1, false, 5), 0);
        CHECK_EQUAL(zr.FocusByUserID(s, bad, false), 0);
        CHECK_EQUAL(zr.SetActivateUser(s, bad), 0);
        CHECK_EQUAL(zr.IsPersonVisible(s, bad), 0);
        CHECK_EQUAL(zr.IsPersonVisibleInSmallWnd(s, bad), 0);
        CHECK_EQUAL(zr.AddSentence(s, 1, 0, bad, text("x")), 0);
        CHECK_EQUAL(zr.AddSentence(s, 1, 0, text("x"), bad), 0);
    }
    // Null is an empty string, but an id must be there.
    CHECK(zr.AddPerson(s, nullptr, text("x"), 1, 0, nullptr) == nullptr);
    CHECK(zr.AddPerson(s, text("u7"), nullptr, 7, 0, nullptr) != nullptr);
    CHECK_EQUAL(zr.SetPersonInfo(s, ann, false, 0, nullptr, 0), 1);
    CHECK_EQUAL(zr.FocusByUserID(s, nullptr, false), 1);
    CHECK_EQUAL(zr.SetActivateUser(s, nullptr), 1);
    CHECK_EQUAL(zr.AddSentence(s, 2, 0, nullptr, nullptr), 1);
    CHECK_EQUAL(zr.IsPersonVisible(s, nullptr), 0);
    // Text that is no UTF-8, and a long one.
    CHECK(zr.AddPerson(s, text("\xff\xfe\xc0"), text("\xed\xa0\x80\xf8"), 8, 0, nullptr)
          != nullptr);
    const std::string longName(100000, 'n');
    CHECK(zr.AddPerson(s, text("u9"), text(longName), 9, 0, nullptr) != nullptr);

    CHECK(zr.Init(nullptr, reinterpret_cast<ZRNotify>(unreadable())) == nullptr);
    for (void* const bad : {static_cast<void*>(nullptr), unreadable()}) {
        CHECK_EQUAL(zr.MoveWindow(s, static_cast<tagRECT*>(bad), 0), 0);
        CHECK_EQUAL(zr.SetVideoToolbarStatus(s, static_cast<tagRECT*>(bad), true), 0);
    }
    pump(100);
    CHECK_EQUAL(zr.IsPersonVisible(s, text("u1")), 1);
    CHECK_EQUAL(zr.IsPersonVisible(s, text("u9")), 1);
    CHECK_EQUAL(zr.IsPersonVisible(s, text("x")), 0);
}

ZR_CASE(refusal, hugeNumbersDoNoHarm)
{
    SmallMeeting m;
    auto& [window, meeting, zr, s, ann, log] = m;
    for (const int n : {INT_MIN, -1, 0, 15, 1000, INT_MAX}) {
        zr.ChangeLayout(s, static_cast<eLayoutType>(n), {{n, "u1"}, {INT_MAX, ""}});
        CHECK_EQUAL(zr.SetVolume(s, ann, n), 1);
        CHECK_EQUAL(zr.SetMute(s, ann, n), 1);
        CHECK_EQUAL(zr.SetPersonInfo(s, ann, false, n, text("P"), n), 1);
        zr.UpdateUserNetStatus(s, text("u1"), n, true, n);
        CHECK_EQUAL(zr.AddSentence(s, n, n, text("a"), text("b")), 1);
        CHECK_EQUAL(zr.SetOpenPollingPage(s, true, n), 1);
        CHECK_EQUAL(zr.SetLayoutCtrl(s, true, true, n, n, true), 1);
        zr.LockLook(s, ann, n);
        zr.AllLook(s, ann, n);
        // One long side at a time: both would be gigabytes of picture.
        tagRECT areas[] = {{INT_MIN, 0, n, 60},
                           {0, INT_MIN, 60, n},
                           {n, n, INT_MAX, n},
                           {INT_MAX, INT_MAX, INT_MIN, INT_MIN}};
        for (tagRECT& area : areas) {
            CHECK_EQUAL(zr.SetVideoToolbarStatus(s, &area, true), 1);
            if (area.left < INT_MAX / 2)
                CHECK_EQUAL(zr.MoveWindow(s, &area, n), 1);
            pump(5);
        }
        pump(20);
    }
    // Join times are made unique by counting up, and there is nothing above the highest.
    for (int i = 0; i < 3; ++i) {
        CHECK(zr.AddPerson(s, text("max" + std::to_string(i)), text("P"), LLONG_MAX, i, nullptr));
        CHECK(zr.AddPerson(s, text("min" + std::to_string(i)), text("P"), LLONG_MIN, i, nullptr));
    }
    CHECK_EQUAL(zr.SetOpenPollingPage(s, false, 10), 1);
    CHECK_EQUAL(zr.SetLayoutCtrl(s, false, false, -1, -1, false), 1);
    zr.AllLook(s, ann, 0);
    zr.LockLook(s, ann, 0);
    meeting.moveTo(640, 360);
    CHECK_EQUAL(zr.SetSupport9EqualCut(s, true), 1);
    REQUIRE(meeting.changeMode(eLayoutEqualCut));
    CHECK(pumpUntil([&] { return m.zr.IsPersonVisible(m.s, text("max2")) == 1; }));
    CHECK_EQUAL(zr.IsPersonVisible(s, text("min0")), 1);
}
