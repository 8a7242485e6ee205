// Arguments that no host should pass: each is refused as the header says, and logged.
#include "check.h"
#include "meeting.h"

#include <atomic>
#include <climits>
#include <cstring>

namespace {

constexpr int kDone = 1;
constexpr int kRefused = 0;

struct Call
{
    const char* name;
    std::function<int(Module& zr, void* screen, void* play)> invoke;
    int whenScreenIsBad;
};

void* unreadable()
{
    return reinterpret_cast<void*>(uintptr_t{0x10});
}

char* unreadableText()
{
    return static_cast<char*>(unreadable());
}

tagRECT g_area{0, 0, 640, 360};

bool isUnset(const ZRRect& rect)
{
    return rect.left == 0 && rect.top == 0 && rect.right == -1 && rect.bottom == -1;
}

/// Every export that takes a participant.
const std::vector<Call>& participantCalls()
{
    static Picture picture(320, 180, kRed);
    static const std::vector<Call> calls{
        {"PlayFrame",
         [](Module& zr, void* s, void* p) { return zr.PlayFrame(s, p, &picture.frame); }, kRefused},
        {"SetPersonInfo",
         [](Module& zr, void* s, void* p) {
             return zr.SetPersonInfo(s, p, false, 1, text("name"), 0);
         },
         kRefused},
        {"SetMute", [](Module& zr, void* s, void* p) { return zr.SetMute(s, p, 1); }, kRefused},
        {"SetVolume", [](Module& zr, void* s, void* p) { return zr.SetVolume(s, p, 50); },
         kRefused},
        {"Preview", [](Module& zr, void* s, void* p) { return zr.Preview(s, p, true); }, kRefused},
        {"SetPersonHandUp",
         [](Module& zr, void* s, void* p) { return zr.SetPersonHandUp(s, p, true); }, kRefused},
        {"LockLook", [](Module& zr, void* s, void* p) { return zr.LockLook(s, p, 1); }, kRefused},
        {"AllLook", [](Module& zr, void* s, void* p) { return zr.AllLook(s, p, 1); }, kRefused},
        {"DelPerson", [](Module& zr, void* s, void* p) { return zr.DelPerson(s, p, false); },
         kRefused},
    };
    return calls;
}

/// Every export that takes a screen and no participant.
const std::vector<Call>& screenCalls()
{
    static const std::vector<Call> calls{
        {"SetParent", [](Module& zr, void* s, void*) { return zr.SetParent(s, nullptr); },
         kRefused},
        {"MoveWindow", [](Module& zr, void* s, void*) { return zr.MoveWindow(s, &g_area, 0); },
         kRefused},
        {"ExitMeeting", [](Module& zr, void* s, void*) { return zr.ExitMeeting(s); }, kRefused},
        {"AddPerson",
         [](Module& zr, void* s, void*) {
             return zr.AddPerson(s, text("bad"), text("bad"), 1, 0, nullptr) ? kDone : kRefused;
         },
         kRefused},
        {"JoinMeetingFinish",
         [](Module& zr, void* s, void*) { return zr.JoinMeetingFinish(s, true); }, kRefused},
        {"UpdateUserNetStatus",
         [](Module& zr, void* s, void*) {
             return zr.UpdateUserNetStatus(s, text("u1"), 1, false, 5);
         },
         kRefused},
        {"ChangeLayout",
         [](Module& zr, void* s, void*) {
             return zr.ChangeLayout(s, eLayoutEqualCut, {{0, "u1"}});
         },
         kRefused},
        {"GetCurMode", [](Module& zr, void* s, void*) { return zr.GetCurMode(s); }, kRefused},
        {"ReOrder", [](Module& zr, void* s, void*) { return zr.ReOrder(s, true); }, kRefused},
        {"FocusByUserID",
         [](Module& zr, void* s, void*) { return zr.FocusByUserID(s, text("u1"), false); },
         kRefused},
        {"SetActivateUser",
         [](Module& zr, void* s, void*) { return zr.SetActivateUser(s, text("u1")); }, kRefused},
        {"SetCurrentSpeakingPerson",
         [](Module& zr, void* s, void*) { return zr.SetCurrentSpeakingPerson(s, "u1"); }, kRefused},
        {"SetVoiceActivate",
         [](Module& zr, void* s, void*) { return zr.SetVoiceActivate(s, false); }, kDone},
        {"SetSupport9EqualCut",
         [](Module& zr, void* s, void*) { return zr.SetSupport9EqualCut(s, false); }, kRefused},
        {"SetSupport16EqualCut",
         [](Module& zr, void* s, void*) { return zr.SetSupport16EqualCut(s, false); }, kRefused},
        {"SetOpenPollingPage",
         [](Module& zr, void* s, void*) { return zr.SetOpenPollingPage(s, false, 10); }, kRefused},
        {"SetLayoutCtrl",
         [](Module& zr, void* s, void*) {
             return zr.SetLayoutCtrl(s, false, false, -1, -1, false);
         },
         kRefused},
        {"SetHideNoCameraWnd",
         [](Module& zr, void* s, void*) { return zr.SetHideNoCameraWnd(s, true); }, kRefused},
        {"IsPersonVisible",
         [](Module& zr, void* s, void*) { return zr.IsPersonVisible(s, text("u1")); }, kRefused},
        {"SetHideSmallWidget",
         [](Module& zr, void* s, void*) { return zr.SetHideSmallWidget(s, false); }, kRefused},
        {"ShowSmallWnd", [](Module& zr, void* s, void*) { return zr.ShowSmallWnd(s, true, false); },
         kRefused},
        {"GetSmallWndID", [](Module& zr, void* s, void*) { return zr.GetSmallWndID(s); }, kRefused},
        {"IsPersonVisibleInSmallWnd",
         [](Module& zr, void* s, void*) { return zr.IsPersonVisibleInSmallWnd(s, text("u1")); },
         kRefused},
        {"SetShareSponsor", [](Module& zr, void* s, void*) { return zr.SetShareSponsor(s, "u1"); },
         kRefused},
        {"PopSelfShareWnd",
         [](Module& zr, void* s, void*) { return zr.PopSelfShareWnd(s, false, false); }, kRefused},
        {"SetIsCloseWhiteBoard",
         [](Module& zr, void* s, void*) { return zr.SetIsCloseWhiteBoard(s); }, kRefused},
        {"GetShareWgtPos",
         [](Module& zr, void* s, void*) {
             return isUnset(zr.GetShareWgtPos(s)) ? kRefused : kDone;
         },
         kRefused},
        {"SetPauseShareWindow",
         [](Module& zr, void* s, void*) { return zr.SetPauseShareWindow(s, false); }, kDone},
        {"SetExtendScreen",
         [](Module& zr, void* s, void*) { return zr.SetExtendScreen(s, false, false); }, kRefused},
        {"SetVideoToolbarStatus",
         [](Module& zr, void* s, void*) { return zr.SetVideoToolbarStatus(s, &g_area, false); },
         kRefused},
        {"IsMouseOnBtnMore", [](Module& zr, void* s, void*) { return zr.IsMouseOnBtnMore(s); },
         kRefused},
        {"ClearMoreMenuPtr", [](Module& zr, void* s, void*) { return zr.ClearMoreMenuPtr(s); },
         kDone},
        {"OpenSubtitle", [](Module& zr, void* s, void*) { return zr.OpenSubtitle(s, false); },
         kRefused},
        {"ClearSubtitles", [](Module& zr, void* s, void*) { return zr.ClearSubtitles(s); },
         kRefused},
        {"AddSentence",
         [](Module& zr, void* s, void*) {
             return zr.AddSentence(s, 1, 0, text("Ann"), text("Hello"));
         },
         kRefused},
        {"Release",
         [](Module& zr, void* s, void*) {
             zr.Release(s);
             return kRefused;
         },
         kRefused},
    };
    return calls;
}

/// Memory that looks like nothing the library ever made.
struct Foreign
{
    uint64_t words[64];
    Foreign() { std::memset(words, 0x5a, sizeof words); }
};

/// Runs `body` on this thread, or on another one while this thread runs its event loop.
void runOn(bool otherThread, const std::function<void()>& body)
{
    if (!otherThread) {
        body();
        return;
    }
    std::atomic<bool> done{false};
    std::thread worker([&] {
        body();
        done = true;
    });
    CHECK(pumpUntil([&] { return done.load(); }, 60000));
    worker.join();
}

/// Every refusal says what failed; that of a preview with a deleted handle is the one that does
/// not.
bool isRefusal(const std::string& log)
{
    return log.find("failed") != std::string::npos
           || log.find("iter != pScreen->mapHadDelPlay.end()") != std::string::npos;
}

void checkRefused(Module& zr, LogCapture& log, const Call& call, void* screen, void* play,
                  int expected, const std::string& row)
{
    (void)log.take();
    const int result = call.invoke(zr, screen, play);
    CHECK_ROW(result == expected, std::string(call.name) + ", " + row);
    // What is answered as done was not refused, and a release of nothing is not a failure.
    if (expected == kRefused && std::strcmp(call.name, "Release") != 0) {
        CHECK_ROW(isRefusal(log.take()), std::string("log of ") + call.name + ", " + row);
    }
}

void refuseScreens(bool otherThread)
{
    const NativeWindow window(640, 360);
    Meeting meeting(&window, 640, 360);
    Module& zr = meeting.zr;
    void* const ann = meeting.join(1);
    void* const released = zr.Init(nullptr, nullptr);
    REQUIRE(released != nullptr);
    zr.Release(released);
    Foreign foreign;
    const std::pair<const char*, void*> screens[] = {
        {"null", nullptr},      {"unreadable", unreadable()},
        {"released", released}, {"foreign", &foreign},
        {"play handle", ann},   {"misaligned", reinterpret_cast<char*>(meeting.screen) + 1}};
    LogCapture log;
    runOn(otherThread, [&] {
        for (const auto& [kind, screen] : screens) {
            for (const Call& call : screenCalls())
                checkRefused(zr, log, call, screen, nullptr, call.whenScreenIsBad, kind);
            for (const Call& call : participantCalls())
                checkRefused(zr, log, call, screen, ann, call.whenScreenIsBad, kind);
        }
    });
    pump(50);
    CHECK_EQUAL(zr.IsPersonVisible(meeting.screen, text("u1")), 1);
    CHECK_EQUAL(zr.IsPersonVisible(meeting.screen, text("bad")), 0);
}

void refuseParticipants(bool otherThread)
{
    const NativeWindow window(640, 360);
    Meeting meeting(&window, 640, 360);
    Module& zr = meeting.zr;
    meeting.join(1);
    void* const deleted = meeting.join(2);
    CHECK_EQUAL(zr.DelPerson(meeting.screen, deleted, false), 1);
    pump(50);
    Foreign foreign;
    const std::pair<const char*, void*> plays[] = {
        {"null", nullptr},     {"unreadable", unreadable()},      {"deleted", deleted},
        {"foreign", &foreign}, {"screen handle", meeting.screen},
    };
    LogCapture log;
    runOn(otherThread, [&] {
        for (const auto& [kind, play] : plays) {
            for (const Call& call : participantCalls())
                checkRefused(zr, log, call, meeting.screen, play, kRefused, kind);
        }
    });
    pump(50);
    CHECK_EQUAL(zr.IsPersonVisible(meeting.screen, text("u1")), 1);
}

/// The log texts that the frame path names for each check, in the order of the checks.
void refuseFrames(Module& zr, void* screen, void* play, void* deleted)
{
    LogCapture log;
    Picture good(320, 180, kRed);
    const auto refusedWith = [&](void* s, void* p, void* f, const char* expectedLog) {
        (void)log.take();
        CHECK_ROW(zr.PlayFrame(s, p, f) == 0, expectedLog);
        CHECK_ROW(log.take().find(expectedLog) != std::string::npos, expectedLog);
    };
    refusedWith(nullptr, nullptr, nullptr, "IsVaildScreenHandle failed");
    refusedWith(screen, nullptr, nullptr, "hPlay == nullptr failed");
    refusedWith(screen, play, nullptr, "pWin32Frame == nullptr failed");
    refusedWith(screen, deleted, &good.frame, "iter != pScreen->mapHadDelPlay.end() failed");
    refusedWith(screen, unreadable(), &good.frame,
                "IsBadReadPtr(pPlay, sizeof(ST_ZRPlayHdl)) failed");
    refusedWith(screen, play, unreadable(), "failed");

    const EndlessText endless;
    struct BadFrame
    {
        const uint8_t* data;
        uint32_t width;
        uint32_t height;
    };
    const BadFrame frames[] = {
        {nullptr, 320, 180},
        {good.frame.pData, 0, 180},
        {good.frame.pData, 320, 0},
        {good.frame.pData, 16385, 16},
        {good.frame.pData, 16, 16385},
        {good.frame.pData, UINT32_MAX, UINT32_MAX},
        {good.frame.pData, 0x80000000U, 2},
        {static_cast<const uint8_t*>(unreadable()), 320, 180},
        // The first byte can be read, the last one cannot.
        {reinterpret_cast<const uint8_t*>(endless.text()), 160, 90},
        {reinterpret_cast<const uint8_t*>(UINTPTR_MAX - 64), 320, 180},
    };
    for (const BadFrame& bad : frames) {
        // A refused picture is logged once until a good one comes.
        CHECK_EQUAL(zr.PlayFrame(screen, play, &good.frame), 1);
        VantrelRTCVideoFrameQT frame{};
        frame.pData = bad.data;
        frame.width = bad.width;
        frame.height = bad.height;
        const std::string row = std::to_string(bad.width) + "x" + std::to_string(bad.height);
        (void)log.take();
        CHECK_ROW(zr.PlayFrame(screen, play, &frame) == 0, row);
        CHECK_ROW(!log.take().empty(), "log of " + row);
    }
    CHECK_EQUAL(zr.PlayFrame(screen, play, &good.frame), 1);
    // The smallest picture and one whose last row ends right before unreadable memory.
    VantrelRTCVideoFrameQT frame{};
    frame.width = 1;
    frame.height = 1;
    frame.pData = reinterpret_cast<const uint8_t*>(endless.text() + endless.size() - 3);
    CHECK_EQUAL(zr.PlayFrame(screen, play, &frame), 1);
}

} // namespace

ZR_CASE(refusal, badScreensOnTheGuiThread)
{
    refuseScreens(false);
}

ZR_CASE(refusal, badScreensOnAnotherThread)
{
    refuseScreens(true);
}

ZR_CASE(refusal, badParticipantsOnTheGuiThread)
{
    refuseParticipants(false);
}

ZR_CASE(refusal, badParticipantsOnAnotherThread)
{
    refuseParticipants(true);
}

ZR_CASE(refusal, releasedScreenTakesItsHandlesAlong)
{
    const NativeWindow window(640, 360);
    Meeting meeting(&window, 640, 360);
    Module& zr = meeting.zr;
    void* const ann = meeting.join(1);
    void* const oldScreen = meeting.screen;
    zr.Release(oldScreen);
    meeting.screen = zr.Init(window.hwnd(), meeting.inbox.notify());
    REQUIRE(meeting.screen != nullptr);
    LogCapture log;
    for (const Call& call : participantCalls()) {
        checkRefused(zr, log, call, meeting.screen, ann, kRefused, "handle of a released screen");
        // The old address may have been given to the new screen; only another one is stale.
        if (oldScreen != meeting.screen)
            checkRefused(zr, log, call, oldScreen, ann, kRefused, "released screen");
    }
    zr.Release(meeting.screen);
    zr.Release(meeting.screen); // twice
    meeting.screen = nullptr;
}

ZR_CASE(refusal, badFrames)
{
    const NativeWindow window(640, 360);
    Meeting meeting(&window, 640, 360);
    void* const ann = meeting.join(1);
    void* const deleted = meeting.join(2);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0; }));
    CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, deleted, false), 1);
    pump(20);
    refuseFrames(meeting.zr, meeting.screen, ann, deleted);
    runOn(true, [&] { refuseFrames(meeting.zr, meeting.screen, ann, deleted); });
}

ZR_CASE(refusal, badStringsAndRectangles)
{
    const NativeWindow window(640, 360);
    Meeting meeting(&window, 640, 360);
    Module& zr = meeting.zr;
    void* const s = meeting.screen;
    void* const ann = meeting.join(1);
    const EndlessText endless;
    for (char* const bad : {unreadableText(), endless.text()}) {
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

    auto* const badRect = static_cast<tagRECT*>(unreadable());
    for (tagRECT* const rect : {static_cast<tagRECT*>(nullptr), badRect}) {
        CHECK_EQUAL(zr.MoveWindow(s, rect, 0), 0);
        CHECK_EQUAL(zr.SetVideoToolbarStatus(s, rect, true), 0);
    }
    pump(100);
    CHECK_EQUAL(zr.IsPersonVisible(s, text("u1")), 1);
    CHECK_EQUAL(zr.IsPersonVisible(s, text("u9")), 1);
    CHECK_EQUAL(zr.IsPersonVisible(s, text("x")), 0);
}

ZR_CASE(refusal, hugeNumbersDoNoHarm)
{
    const NativeWindow window(640, 360);
    Meeting meeting(&window, 640, 360);
    Module& zr = meeting.zr;
    void* const s = meeting.screen;
    void* const ann = meeting.join(1);
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
    CHECK(pumpUntil([&] { return zr.IsPersonVisible(s, text("max2")) == 1; }));
    CHECK_EQUAL(zr.IsPersonVisible(s, text("min0")), 1);
}
