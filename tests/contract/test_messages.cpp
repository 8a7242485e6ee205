// The numbered messages: which, when, with what, on which thread.
#include "check.h"
#include "meeting.h"

#include <atomic>

namespace {

/// Delivers pictures until `done` holds.
bool playUntil(Meeting& meeting, const std::vector<void*>& plays, const std::function<bool()>& done,
               int timeoutMs = 5000)
{
    Picture picture(320, 180, kRed);
    return pumpUntil(
        [&] {
            for (void* play : plays)
                meeting.zr.PlayFrame(meeting.screen, play, &picture.frame);
            return done();
        },
        timeoutMs);
}

int gradeCount(const Inbox& inbox, long long lParam)
{
    return inbox.count(2, lParam) + inbox.count(3, lParam) + inbox.count(4, lParam);
}

} // namespace

ZR_CASE(messages, addPersonReportsThePlayHandle)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    void* const ann = meeting.join(41);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED) > 0; }));
    CHECK_EQUAL(meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED), 1);
    const auto isInfo = [&](const Message& m) {
        return m.id == ZRMSG_PERSON_INFO_UPDATED && m.wParam == reinterpret_cast<uintptr_t>(ann)
               && m.lParam == 41;
    };
    bool found = false;
    for (const Message& m : meeting.inbox.all())
        found = found || isInfo(m);
    CHECK(found);

    // The same id again: another handle to the same participant, reported again.
    void* const again = meeting.join(41);
    CHECK(again != ann);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED, 41) == 2; }));
}

ZR_CASE(messages, tileIsReportedOnceArranged)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    meeting.zr.JoinMeetingFinish(meeting.screen, false);
    pump(20);
    meeting.join(1);
    meeting.join(2);
    pump(200);
    CHECK_EQUAL(meeting.inbox.count(ZRMSG_VIDEO_SHOWN), 0); // nothing is arranged before joining
    meeting.zr.JoinMeetingFinish(meeting.screen, true);
    CHECK(pumpUntil([&] {
        return meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0
               && meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 2) > 0;
    }));
    unsigned long long person = 0;
    for (const Message& m : meeting.inbox.all()) {
        if (m.id == ZRMSG_VIDEO_SHOWN && m.lParam == 1) {
            CHECK(m.wParam != 0);
            CHECK(person == 0 || person == m.wParam); // the same record every time
            person = m.wParam;
        }
        CHECK(m.thread == std::this_thread::get_id());
    }
}

ZR_CASE(messages, modeChangeCarriesTheMode)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    meeting.join(1);
    for (const int mode : {2, 3, 6, 7, 8, 9, 11, 12, 13, 14, 1}) {
        meeting.inbox.reset();
        REQUIRE(meeting.changeMode(mode));
        pump(20);
        int last = 0;
        for (const Message& m : meeting.inbox.all()) {
            if (m.id == ZRMSG_SCREEN_MODE) {
                last = static_cast<int>(m.wParam);
                CHECK_EQUAL(m.lParam, 0LL);
            }
        }
        CHECK_EQUAL(last, mode);
    }
}

ZR_CASE(messages, streamGradeFollowsTheFirstFrames)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    void* const ann = meeting.join(1);
    pump(100);
    CHECK_EQUAL(gradeCount(meeting.inbox, 1), 0); // not before a frame has come
    CHECK(playUntil(meeting, {ann}, [&] { return meeting.inbox.count(4, 1) > 0; }));
    const int asked = gradeCount(meeting.inbox, 1);
    CHECK_EQUAL(meeting.inbox.count(4, 1), asked); // alone on the page: the large stream only

    // Four on a page: the grid stream for each.
    std::vector<void*> plays{ann};
    for (int number = 2; number <= 4; ++number)
        plays.push_back(meeting.join(number));
    CHECK(playUntil(meeting, plays, [&] {
        bool all = true;
        for (int number = 1; number <= 4; ++number)
            all = all && meeting.inbox.count(3, number) > 0;
        return all;
    }));
    // Asked once for each arrangement, however many frames come.
    const int settled = gradeCount(meeting.inbox, 2);
    (void)playUntil(
        meeting, plays, [] { return false; }, 300);
    CHECK_EQUAL(gradeCount(meeting.inbox, 2), settled);
}

ZR_CASE(messages, noStreamIsAskedOfSelfShareOrNameless)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    void* const self = meeting.join(1, "Me");
    CHECK_EQUAL(meeting.zr.SetPersonInfo(meeting.screen, self, true, 0, text("Me"), 0), 1);
    void* const nameless = meeting.join(2, "");
    void* const share = meeting.zr.AddPerson(meeting.screen, text("sharescreen_3"), text("Share"),
                                             3, 0, hostValue(3));
    REQUIRE(share != nullptr);
    void* const ann = meeting.join(4, "Ann");
    pump(50);
    REQUIRE(meeting.changeMode(eLayoutEqualCut)); // whatever the share chose: all four on the page
    CHECK(playUntil(meeting, {self, nameless, share, ann},
                    [&] { return gradeCount(meeting.inbox, 4) > 0; }));
    (void)playUntil(
        meeting, {self, nameless, share, ann}, [] { return false; }, 300);
    CHECK_EQUAL(gradeCount(meeting.inbox, 1), 0);
    CHECK_EQUAL(gradeCount(meeting.inbox, 2), 0);
    CHECK_EQUAL(gradeCount(meeting.inbox, 3), 0);
}

ZR_CASE(messages, tileThatDisappearsIsReportedAfterASecond)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    // Nine a page show all seven, six a page leave the last one out.
    CHECK_EQUAL(meeting.zr.SetSupport9EqualCut(meeting.screen, true), 1);
    std::vector<void*> plays;
    for (int number = 1; number <= 7; ++number)
        plays.push_back(meeting.join(number));
    CHECK(playUntil(meeting, plays, [&] { return meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 7) > 0; }));
    pump(2500); // the reports of the first arrangements are over
    meeting.inbox.reset();
    const auto start = Clock::now();
    CHECK_EQUAL(meeting.zr.SetSupport9EqualCut(meeting.screen, false), 1);
    CHECK_EQUAL(meeting.zr.ReOrder(meeting.screen, false), 1);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_VIDEO_HIDDEN) > 0; }));
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    CHECK(took.count() >= 700 && took.count() <= 3000);
    pump(200);
    for (int number = 1; number <= 7; ++number) {
        const std::string id = "u" + std::to_string(number);
        CHECK_ROW(meeting.inbox.count(ZRMSG_VIDEO_HIDDEN, number) == (number == 7 ? 1 : 0), id);
        CHECK_ROW(meeting.zr.IsPersonVisible(meeting.screen, text(id)) == (number == 7 ? 0 : 1),
                  id);
    }
    CHECK_EQUAL(meeting.inbox.count(ZRMSG_VIDEO_SHOWN), 0); // those that stay are not reported
}

ZR_CASE(messages, removalOfAVisibleParticipantIsReported)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    void* const ann = meeting.join(1);
    void* const bob = meeting.join(2);
    CHECK(playUntil(meeting, {ann, bob}, [&] { return gradeCount(meeting.inbox, 1) > 0; }));
    meeting.inbox.reset();
    CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, ann, false), 1);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_PERSON_REMOVED, 1) == 1; }));
    CHECK_EQUAL(meeting.inbox.count(ZRMSG_PERSON_REMOVED, 2), 0);
}

ZR_CASE(messages, lastRemovalReturnsToTheGallery)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    void* const ann = meeting.join(1);
    REQUIRE(meeting.changeMode(eLayout8Cut));
    CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, ann, false), 1);
    CHECK(pumpUntil([&] { return meeting.zr.GetCurMode(meeting.screen) == eLayoutEqualCut; }));
}

/// Releases the screen from inside the first message with this id, and runs an event loop there.
/// @param otherThread the message comes of calls that another thread makes
static void releaseFromWithin(const NativeWindow& window, unsigned long id, bool otherThread)
{
    const std::string row = std::to_string(id) + (otherThread ? ", other thread" : "");
    Meeting meeting(&window);
    bool released = false;
    meeting.inbox.onMessage = [&](const Message& m) {
        if (m.id != id || released)
            return;
        released = true;
        meeting.zr.Release(meeting.screen);
        pump(30); // as a menu does
    };
    std::atomic<bool> finished{false};
    const auto join = [&] {
        meeting.zr.AddPerson(meeting.screen, text("u1"), text("P"), 1, 0, hostValue(1));
        meeting.zr.ChangeLayout(meeting.screen, eLayoutGrid4, {});
        meeting.zr.IsPersonVisible(meeting.screen, text("u1"));
        finished = true;
    };
    std::thread caller;
    if (otherThread)
        caller = std::thread(join);
    else
        join();
    CHECK_ROW(pumpUntil([&] { return released && finished; }), row);
    if (otherThread)
        caller.join();
    const int count = meeting.inbox.count();
    pump(100);
    CHECK_ROW(meeting.inbox.count() == count, row);
    CHECK_ROW(meeting.zr.GetCurMode(meeting.screen) == 0, row);
    CHECK_ROW(pumpUntil([&] { return window.childCount() == 0; }), row);
    // The process goes on with a new screen.
    meeting.inbox.reset();
    meeting.screen = meeting.zr.Init(window.hwnd(), meeting.inbox.notify());
    REQUIRE(meeting.screen != nullptr);
    CHECK_ROW(meeting.zr.GetCurMode(meeting.screen) == eLayoutEqualCut, row);
}

ZR_CASE(messages, hostMayReleaseFromWithin)
{
    const NativeWindow window(1280, 720);
    for (const unsigned long id :
         {ZRMSG_VIDEO_SHOWN, ZRMSG_SCREEN_MODE, ZRMSG_PERSON_INFO_UPDATED}) {
        releaseFromWithin(window, id, false);
        releaseFromWithin(window, id, true);
    }
}

ZR_CASE(messages, hostMayCallExportsFromWithin)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    void* added = nullptr;
    void* removed = nullptr;
    Picture picture(320, 180, kRed);
    meeting.inbox.onMessage = [&](const Message& m) {
        Module& zr = meeting.zr;
        if (m.id == ZRMSG_VIDEO_SHOWN && !added) {
            added = zr.AddPerson(meeting.screen, text("u9"), text("Nine"), 9, 0, hostValue(9));
            zr.Preview(meeting.screen, added, true);
            zr.PlayFrame(meeting.screen, added, &picture.frame);
            zr.ChangeLayout(meeting.screen, eLayoutGrid4, {});
            zr.IsPersonVisible(meeting.screen, text("u9"));
        } else if (m.id == ZRMSG_SCREEN_MODE && removed) {
            zr.DelPerson(meeting.screen, removed, false);
            removed = nullptr;
        }
    };
    removed = meeting.join(1);
    CHECK(pumpUntil(
        [&] { return meeting.zr.IsPersonVisible(meeting.screen, text("u9")) == 1 && !removed; }));
    CHECK_EQUAL(meeting.zr.IsPersonVisible(meeting.screen, text("u1")), 0);
}
