// Loading, using and unloading the library, in every order that a host may do it, and what the log
// holds after each end. The cases of the log run in a folder of their own; check_log.cmake looks
// for the lines afterwards.
#include "check.h"
#include "meeting.h"

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <future>
#include <iterator>
#include <utility>

namespace {

/// A whole meeting of two, up to the moment when a picture is on the screen.
void useOnce(const HostWindow* window)
{
    Meeting meeting(window);
    void* const ann = meeting.join(1);
    meeting.join(2);
    CHECK(pumpUntil([&] {
        return meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0
               && meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 2) > 0;
    }));
    Picture picture(320, 180, kGreen);
    CHECK_EQUAL(meeting.zr.PlayFrame(meeting.screen, ann, &picture.frame), 1);
    pump(100);
    CHECK(!window || meeting.shows(ann, kGreen, *window, {300, 360}));
    CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, ann, false), 1);
    pump(20);
    CHECK_EQUAL(meeting.zr.ExitMeeting(meeting.screen), 1);
}

constexpr int kLines = 300;

/// Logs numbered lines, the last of them right before it returns.
void logLines(Meeting& meeting, const std::string& mark)
{
    for (int i = 0; i < kLines; ++i) {
        const std::string name = mark + "-" + std::to_string(i);
        void* const play =
            meeting.zr.AddPerson(meeting.screen, text("u"), text(name), 1, 0, nullptr);
        REQUIRE(play != nullptr);
        CHECK_EQUAL(meeting.zr.DelPerson(meeting.screen, play, false), 1);
    }
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
    // What one host changes from inside a message holds, and the others are told last.
    const auto told = [&](unsigned long id, long long value) {
        return meeting.inbox.count(id, value) + second.count(id, value);
    };
    void* const carol = meeting.join(3);
    bool switchesOn = false;
    meeting.inbox.onMessage = second.onMessage = [&](const Message& m) {
        if (m.id == ZRMSG_VIDEO_SHOWN && m.lParam == 3)
            zr.DelPerson(meeting.screen, carol, false);
        else if (m.id == ZRMSG_SCREEN_MODE && std::exchange(switchesOn, false))
            zr.ChangeLayout(meeting.screen, eLayoutGrid16, {});
    };
    CHECK(pumpUntil([&] { return told(ZRMSG_PERSON_REMOVED, 3) > 0; }));
    CHECK_EQUAL(told(ZRMSG_VIDEO_SHOWN, 3), 1);
    switchesOn = true;
    zr.ChangeLayout(meeting.screen, eLayoutGrid9, {});
    for (const Inbox* inbox : {&meeting.inbox, &second})
        CHECK_EQUAL(inbox->all().back().wParam, static_cast<unsigned>(eLayoutGrid16));
    zr.Release(first);
    CHECK(pumpUntil([&] { return left.childCount() == 0; }));
    const int before = meeting.inbox.count();
    REQUIRE(meeting.changeMode(eLayoutGrid4));
    CHECK(second.count(ZRMSG_SCREEN_MODE) > 0);
    CHECK(meeting.shows(bob, kBlue, right, {160, 60}));
    CHECK_EQUAL(meeting.inbox.count(), before);
}

/// The screen is drawn off screen and nothing is embedded, or there is a display without OpenGL.
/// What was set for Qt alone is gone.
ZR_CASE(headless, worksWithoutADisplay)
{
    const char* const reason = std::getenv("ZR_REASON"); // to be logged
    LogCapture log;
    const char* const variable = std::getenv("QT_QPA_PLATFORM");
    const std::string platform = variable ? variable : "";
    for (int round = 0; round < 2; ++round)
        useOnce(nullptr);
    CHECK(!reason || log.take().find(reason) != std::string::npos);
    CHECK(native::isLoaded(std::getenv("ZR_PLUGIN")));
    CHECK_EQUAL(std::getenv("QT_QPA_PLATFORM") ? std::getenv("QT_QPA_PLATFORM") : "", platform);
    CHECK_EQUAL(std::string(std::setlocale(LC_NUMERIC, nullptr)), "C");
    CHECK_EQUAL(std::string(std::setlocale(LC_CTYPE, nullptr)), "C.UTF-8");
}

/// Qt would end the process.
ZR_CASE(no_platform, refusesCallsWithoutThePlugin)
{
    const HostWindow window(64, 64);
    LogCapture log;
    const Module module;
    CHECK(module.exports.ZRScreen.Init(window.hwnd(), nullptr) == nullptr);
    CHECK(log.take().find("Qt's platform plug-in is not found") != std::string::npos);
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

ZR_CASE(log_unload, unloadsWithoutReleaseAndWith)
{
    for (int round = 0; round < 2; ++round) {
        const HostWindow window(640, 360);
        Meeting meeting(&window, 640, 360);
        logLines(meeting, "unload-" + std::to_string(round));
        if (round > 0)
            meeting.zr.Release(meeting.screen);
        meeting.screen = nullptr;
        meeting.zr.unload();
    }
}

ZR_CASE(log_exit, endsWithTheLibraryLoaded)
{
    static const auto* const window = new HostWindow(640, 360);
    static auto* const meeting = new Meeting(window, 640, 360);
    logLines(*meeting, "exit");
    meeting->zr.leaveLoaded();
    std::exit(0);
}

/// A host that only borrows an edit reads in the log what was wrong, while it still runs.
ZR_CASE(log_controls, isWrittenWithoutAScreen)
{
    const Module module;
    const zr::ControlExports& controls = module.exports.ZRCtrl;
    tagRECT rect{0, 0, 100, 30};
    void* const edit = controls.QLineEdit_Init(nullptr, &rect, "");
    controls.QLineEdit_SetMaxLength(edit, -7);
    const auto isWritten = [] {
        std::string log;
        for (const auto& file : std::filesystem::directory_iterator("log")) {
            if (!file.is_regular_file())
                continue;
            std::ifstream stream(file.path(), std::ios::binary);
            log.append(std::istreambuf_iterator<char>(stream), {});
        }
        return log.find("maximal length refused: -7") != std::string::npos;
    };
    CHECK(pumpUntil(isWritten));
    controls.QLineEdit_Release(edit);
}
