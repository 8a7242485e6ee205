// Loading, using and unloading the library, in every order that a host may do it.
#include "check.h"
#include "meeting.h"

#include <cstdlib>
#include <future>

namespace {

/// A whole meeting of two, up to the moment when both pictures are on the screen.
void useOnce(const HostWindow* window)
{
    Meeting meeting(window);
    Picture picture(320, 180, kGreen);
    void* const ann = meeting.join(1);
    void* const bob = meeting.join(2);
    CHECK(pumpUntil([&] {
        meeting.zr.PlayFrame(meeting.screen, ann, &picture.frame);
        meeting.zr.PlayFrame(meeting.screen, bob, &picture.frame);
        return meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0
               && meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 2) > 0;
    }));
    CHECK(pumpUntil([&] { return !window || isNear(window->grab().at(300, 360), kGreen.rgb()); }));
    CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, ann, false), 1);
    pump(20);
    CHECK_EQUAL(meeting.zr.ExitMeeting(meeting.screen), 1);
}

} // namespace

ZR_CASE(lifetime, loadsUsesAndUnloadsRepeatedly)
{
    const HostWindow window(1280, 720);
    useOnce(&window);
    CHECK(pumpUntil([&] { return window.childCount() == 0; }));
    const int threadsAfterFirst = native::threadCount();
    for (int round = 0; round < 3; ++round) {
        const Module unused; // without a screen
        std::thread([&] { unused.exports.ZRScreenWtmark.SetEnabled(true); }).join();
    }
    for (int round = 0; round < 3; ++round)
        useOnce(&window);
    CHECK(pumpUntil([&] { return window.childCount() == 0; }));
    CHECK(pumpUntil([&] { return native::threadCount() <= threadsAfterFirst; }));
}

ZR_CASE(lifetime, unloadsWithScreensNotReleasedAndCallsQueued)
{
    const HostWindow window(1280, 720);
    for (int round = 0; round < 2; ++round) {
        Meeting meeting(&window);
        void* const ann = meeting.join(1);
        REQUIRE(meeting.zr.Init(window.hwnd(), nullptr) != nullptr);
        CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_VIDEO_SHOWN) > 0; }));
        Picture picture(320, 180, kRed);
        std::thread([&] {
            for (int i = 0; i < 50; ++i) {
                meeting.zr.PlayFrame(meeting.screen, ann, &picture.frame);
                meeting.zr.SetVolume(meeting.screen, ann, i);
                meeting.zr.ReOrder(meeting.screen, false);
            }
        }).join();
        meeting.zr.unload();
        meeting.screen = nullptr;
        CHECK(pumpUntil([&] { return window.childCount() == 0; }));
        const int before = meeting.inbox.count();
        pump(50);
        CHECK_EQUAL(meeting.inbox.count(), before);
    }
}

/// Qt keeps an eye on every thread that has called the library, up to its end.
ZR_CASE(lifetime, threadsOutliveTheLibrary)
{
    std::promise<void> called;
    std::promise<void> unloaded;
    Meeting meeting(nullptr);
    void* const ann = meeting.join(1);
    std::thread caller([&] {
        meeting.zr.SetVolume(meeting.screen, ann, 50);
        called.set_value();
        unloaded.get_future().wait();
    });
    called.get_future().wait();
    meeting.zr.Release(meeting.screen);
    meeting.screen = nullptr;
    meeting.zr.unload();
    for (const char* const library : {"Qt5Core", "Qt5Gui", "Qt5Widgets"})
        CHECK_ROW(native::isLoaded(library), library);
    unloaded.set_value();
    caller.join();
    pump(100);
}

ZR_CASE(lifetime, releasesOneOfTwoScreens)
{
    const HostWindow left(640, 360);
    const HostWindow right(640, 360, 700);
    Meeting meeting(&left, 640, 360);
    Module& zr = meeting.zr;
    Inbox& second = Inbox::second();
    second.reset();
    void* const first = meeting.screen;
    meeting.join(1);
    meeting.screen = zr.Init(right.hwnd(), second.notify());
    REQUIRE(meeting.screen != nullptr);
    meeting.moveTo(640, 360);
    CHECK_EQUAL(zr.JoinMeetingFinish(meeting.screen, true), 1);
    void* const bob = meeting.join(2);
    // Messages go to every screen's host.
    CHECK(pumpUntil([&] {
        return second.count(ZRMSG_VIDEO_SHOWN, 1) > 0
               && meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 2) > 0;
    }));
    zr.Release(first);
    CHECK(pumpUntil([&] { return left.childCount() == 0; }));
    const int before = meeting.inbox.count();
    REQUIRE(meeting.changeMode(eLayoutGrid4));
    CHECK(second.count(ZRMSG_SCREEN_MODE) > 0);
    Picture blue(640, 360, kBlue);
    CHECK(pumpUntil([&] {
        zr.PlayFrame(meeting.screen, bob, &blue.frame);
        return isNear(right.grab().at(160, 60), kBlue.rgb());
    }));
    CHECK_EQUAL(meeting.inbox.count(), before);
}

/// Runs without a display: the screen is drawn off screen and nothing is embedded.
ZR_CASE(headless, worksWithoutADisplay)
{
    REQUIRE(!std::getenv("DISPLAY"));
    for (int round = 0; round < 2; ++round)
        useOnce(nullptr);
}

/// The process ends with a screen in use, while other threads still deliver frames: the test passes
/// when it ends cleanly.
ZR_CASE(exit_busy, endsWhileFramesArrive)
{
    static const HostWindow window(640, 360);
    static Meeting meeting(&window, 640, 360);
    void* const ann = meeting.join(1);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0; }));
    const auto playFrame = meeting.zr.PlayFrame;
    void* const screen = meeting.screen;
    for (int i = 0; i < 2; ++i) {
        std::thread([=] {
            // Never destroyed: the thread outlives the statics of the process.
            auto* const picture = new Picture(320, 180, kRed);
            for (;;)
                playFrame(screen, ann, &picture->frame);
        }).detach();
    }
    pump(100);
    meeting.zr.leaveLoaded();
    meeting.screen = nullptr;
}

ZR_CASE(exit_elsewhere, anotherThreadEndsTheProcess)
{
    // Kept for good: the thread that ends the process would destroy statics under this one.
    static const auto* const window = new HostWindow(640, 360);
    static auto* const meeting = new Meeting(window, 640, 360);
    void* const ann = meeting->join(1);
    CHECK(pumpUntil([&] { return meeting->inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0; }));
    meeting->zr.leaveLoaded();
    std::thread([ann] {
        const Picture picture(320, 180, kRed);
        const auto end = Clock::now() + std::chrono::milliseconds(100);
        while (Clock::now() < end)
            meeting->zr.PlayFrame(meeting->screen, ann,
                                  const_cast<VantrelRTCVideoFrameQT*>(&picture.frame));
        std::exit(0);
    }).detach();
    pump(20000);
    check::fail(__FILE__, __LINE__, "the process goes on");
}
