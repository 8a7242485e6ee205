// The extended screen: one participant in a window of its own, with a gallery and without.
#include "check.h"
#include "desktop.h"
#include "meeting.h"

#include <atomic>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

namespace {

constexpr int kWidthPx = 480;
constexpr int kHeightPx = 270;
constexpr int kLeftPx = 1300; ///< beside the gallery's window

tagRECT area()
{
    tagRECT rect{};
    rect.right = kWidthPx;
    rect.bottom = kHeightPx;
    return rect;
}

/// An extended screen that fills a window of the host's, and tells the second inbox.
struct ExtScreen
{
    explicit ExtScreen(const Module& module, int topPx = 0)
        : api(module.exports.ZRScreenExt)
        , window(std::make_unique<NativeWindow>(kWidthPx, kHeightPx, kLeftPx, topPx))
    {
        inbox.reset();
        handle = api.Init(window->hwnd(), inbox.notify());
        REQUIRE(handle != nullptr);
        tagRECT rect = area();
        CHECK(api.Move(handle, &rect, 0) == 1);
    }
    ~ExtScreen() { api.Release(handle); }
    ExtScreen(const ExtScreen&) = delete;
    ExtScreen& operator=(const ExtScreen&) = delete;

    int show(const char* userId, long long value) const
    {
        return api.SetPersonInfo(handle, hostValue(value), userId, false, 1, "Ann", 1);
    }
    /// Plays the picture until its colour is in the middle, or is not any more.
    [[nodiscard]] bool comes(Picture& picture, const Yuv& colour, bool seen = true) const
    {
        return pumpUntil([&] {
            (void)api.PlayFrame(handle, &picture.frame);
            return isNear(window->grab().at(kWidthPx / 2, kHeightPx / 4), colour.rgb(), 8) == seen;
        });
    }

    zr::ExtExports api;
    std::unique_ptr<NativeWindow> window;
    Inbox& inbox = Inbox::second();
    void* handle = nullptr;
};

/// Without a participant, and with one.
ZR_CASE(extscreen, callsAreForItsParticipant)
{
    const Module zr;
    const ExtScreen ext(zr);
    const zr::ExtExports& api = ext.api;
    Picture picture(320, 180, kRed);
    void* const h = ext.handle;
    for (const int known : {0, 1}) {
        CHECK(api.PlayFrame(h, &picture.frame) + api.SetAllLook(h, true) + api.SetLockLook(h, false)
                  + api.SetMute(h, -1) + api.Preview(h, true) + api.SetVolume(h, "u1", -50)
              == 6 * known);
        CHECK(api.SetVolume(h, "u2", 50) == 0);
        CHECK(api.UpdateUserNetStatus(h, "u2", 7, true, -9) == 1);
        VantrelRTCVideoFrameQT bad = picture.frame;
        bad.pData = reinterpret_cast<const uint8_t*>(16);
        CHECK(api.PlayFrame(h, &bad) == 0);
        CHECK(ext.show("u1", 7) == 1);
    }
    // Empty, upside down, and out of sight.
    constexpr int kMost = std::numeric_limits<int>::max();
    for (const auto& [leftTop, rightBottom] : {std::pair(0, 0), {20, -20}, {kMost, -kMost}}) {
        tagRECT rect{};
        rect.left = rect.top = leftTop;
        rect.right = rect.bottom = rightBottom;
        CHECK(api.Move(h, &rect, 0) == 1);
        CHECK(api.PlayFrame(h, &picture.frame) == 1);
        pump(30);
    }
}

ZR_CASE(extscreen, showsOneParticipantWithoutAGallery)
{
    const Module zr;
    const ExtScreen ext(zr);
    const zr::ExtExports& api = ext.api;
    Picture red(320, 180, kRed);
    CHECK(ext.show("u1", 7) == 1);
    pump(300);
    CHECK(ext.comes(red, kRed, false)); // its stream is not open: the avatar
    CHECK(api.Preview(ext.handle, true) == 1);
    CHECK(ext.comes(red, kRed));
    const ZRRect rect = api.GetShareWgtPos(ext.handle);
    CHECK(rect.left == kLeftPx && rect.top == 0);
    CHECK(rect.right == kLeftPx + kWidthPx && rect.bottom == kHeightPx);
    tagRECT smaller{16, 9, 16 + 320, 9 + 180};
    CHECK(api.Move(ext.handle, &smaller, 0) == 1);
    const ZRRect atOnce = api.GetShareWgtPos(ext.handle);
    CHECK(atOnce.left == kLeftPx + 16 && atOnce.top == 9);
    CHECK(atOnce.right == kLeftPx + 16 + 320 && atOnce.bottom == 9 + 180);
    tagRECT all = area();
    CHECK(api.Move(ext.handle, &all, 0) == 1);
    // A stream that is opened again, or another participant's, begins with none of this picture.
    for (const char* const next : {"u1", "u2"}) {
        CHECK(api.Preview(ext.handle, false) == 1);
        CHECK(ext.comes(red, kRed, false));
        pump(100); // the last frame's notice is behind us
        CHECK(api.Preview(ext.handle, false) == 1 && ext.show(next, 8) == 1);
        CHECK(api.Preview(ext.handle, true) == 1);
        pump(200);
        CHECK(!isNear(ext.window->grab().at(kWidthPx / 2, kHeightPx / 4), kRed.rgb(), 8));
        CHECK(ext.comes(red, kRed));
    }
    // Nobody any more: frames are refused.
    CHECK(api.SetPersonInfo(ext.handle, nullptr, nullptr, false, 0, nullptr, 0) == 1);
    CHECK(api.PlayFrame(ext.handle, &red.frame) == 0);
}

ZR_CASE(extscreen, clicksAndPreviewsPassBetweenItAndTheGallery)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    const ExtScreen ext(zr);
    Picture red(320, 180, kRed);
    void* const ann = meeting.join(1);
    void* const bob = meeting.join(2);
    CHECK(ext.show("u2", 42) == 1);
    CHECK(meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 42) == 1);

    // The gallery's report of a preview is taken over.
    CHECK(zr.Preview(meeting.screen, bob, true) == 1);
    CHECK(zr.Preview(meeting.screen, ann, false) == 1); // not one's own
    CHECK(ext.comes(red, kRed));

    // A click here is one on the participant: the focus leaves the pinned one, and that is told
    // unless there is an extended screen.
    for (const bool extended : {true, false}) {
        CHECK(zr.SetExtendScreen(meeting.screen, extended, false) == 1);
        CHECK(zr.IsExtendScreen() == (extended ? 1 : 0));
        CHECK(zr.LockLook(meeting.screen, ann, 1) == 1);
        pump(50);
        CHECK(zr.ChangeLayout(meeting.screen, eLayoutSpeakerRight, {}) == 1);
        CHECK(zr.FocusByUserID(meeting.screen, text("u1"), false) == 1);
        pump(600); // two clicks, no double click
        meeting.inbox.clear();
        ext.inbox.clear();
        desktop::click(kLeftPx + kWidthPx / 2, kHeightPx / 2);
        CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_FOCUS_PERSON) > 0; }));
        CHECK(ext.inbox.count() == 1 && ext.inbox.count(ZRMSG_EXT_CLICK, 42) == 1);
        CHECK(ext.inbox.all()[0].wParam == reinterpret_cast<uintptr_t>(ext.handle));
        CHECK(meeting.inbox.count(ZRMSG_TILE_CLICK) == 1);
        CHECK(meeting.inbox.count(ZRMSG_LOOK_TOAST_NOT_ALL) == (extended ? 0 : 1));
        CHECK(meeting.inbox.count(ZRMSG_EXT_CLICK) == 0);
    }

    // Whose stream is in use here keeps it when the gallery's tile goes, until nobody is here.
    CHECK(zr.LockLook(meeting.screen, ann, 0) == 1);
    CHECK(zr.FocusByUserID(meeting.screen, text("u1"), false) == 1);
    meeting.inbox.clear();
    CHECK(zr.ChangeLayout(meeting.screen, eLayoutSingle, {{0, "u1"}}) == 1);
    pump(1500);
    CHECK(zr.IsPersonVisible(meeting.screen, text("u2")) == 0);
    CHECK(meeting.inbox.count(ZRMSG_VIDEO_HIDDEN, 2) == 0);
    CHECK(ext.api.SetPersonInfo(ext.handle, nullptr, "u2", false, 0, "", 0) == 1);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_VIDEO_HIDDEN, 2) == 1; }));
    // Here once more, also for a host that answers what it is told.
    meeting.inbox.clear();
    meeting.inbox.onMessage = [&](const Message& m) {
        if (m.id == ZRMSG_VIDEO_SHOWN && m.lParam == 42)
            CHECK(zr.Preview(meeting.screen, bob, true) == 1);
    };
    CHECK(ext.show("u2", 42) == 1);
    CHECK(meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 42) == 1);
    pump(1500);
    CHECK(meeting.inbox.count(ZRMSG_VIDEO_HIDDEN) == 0);
}

ZR_CASE(extscreen, pausedShareShowsNowhere)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    const ExtScreen ext(zr);
    Picture red(320, 180, kRed);
    void* const share =
        zr.AddPerson(meeting.screen, text("sharescreen_u1"), text(""), 1, 0, nullptr);
    CHECK(ext.show("sharescreen_u1", 7) == 1);
    for (const bool paused : {false, true, false}) {
        CHECK(zr.SetPauseShareWindow(nullptr, paused) == 1); // the pause is no screen's own
        CHECK(pumpUntil([&] {
            (void)zr.PlayFrame(meeting.screen, share, &red.frame);
            (void)ext.api.PlayFrame(ext.handle, &red.frame);
            return isNear(window.grab().at(640, 200), kRed.rgb(), 8) != paused
                   && isNear(ext.window->grab().at(kWidthPx / 2, 60), kRed.rgb(), 8) != paused;
        }));
    }
}

ZR_CASE(extscreen, framesForBothFromTwoThreads)
{
    const NativeWindow window(1280, 720);
    auto meeting = std::make_unique<Meeting>(&window);
    Module& zr = meeting->zr;
    const zr::ExtExports& api = zr.exports.ZRScreenExt;
    auto ext = std::make_unique<ExtScreen>(zr);
    Picture red(320, 180, kRed);
    void* const play = meeting->join(1);
    std::atomic<bool> stop{false};
    std::atomic<int> refused{0};
    void* const handle = ext->handle;
    std::thread forGallery([&] {
        while (!stop)
            (void)zr.PlayFrame(meeting->screen, play, &red.frame);
    });
    std::thread forExt([&] {
        while (!stop)
            refused += api.PlayFrame(handle, &red.frame) == 0;
    });
    for (int i = 0; i < 40; ++i) {
        CHECK(ext->show(i % 2 ? "u2" : "u1", 7) == 1);
        CHECK(api.Preview(handle, i % 3 != 0) == 1);
        CHECK(api.SetVolume(handle, "u1", i) == (i % 2 ? 0 : 1));
        tagRECT rect = area();
        rect.right -= i;
        CHECK(api.Move(handle, &rect, 0) == 1);
        pump(5);
    }
    // Released in the middle of it: from here on frames are refused.
    ext.reset();
    CHECK(pumpUntil([&, before = refused.load()] { return refused > before + 10; }));
    stop = true;
    forGallery.join();
    forExt.join();
}

ZR_CASE(extscreen, outlivesTheGalleryAndEndsInsideItsMessage)
{
    const NativeWindow window(640, 360);
    Module zr;
    void* const screen = zr.Init(window.hwnd(), nullptr);
    ExtScreen ext(zr);
    Picture red(320, 180, kRed);
    CHECK(ext.show("u1", 7) == 1 && ext.api.Preview(ext.handle, true) == 1);
    CHECK(zr.SetExtendScreen(screen, true, false) == 1);
    zr.Release(screen);
    CHECK(ext.comes(red, kRed));
    CHECK(zr.IsExtendScreen() == 1);
    // A later gallery's previews reach it as well.
    void* const next = zr.Init(window.hwnd(), nullptr);
    void* const play = zr.AddPerson(next, text("u1"), text("Ann"), 1, 0, nullptr);
    CHECK(zr.Preview(next, play, false) == 1);
    CHECK(ext.comes(red, kRed, false));
    zr.Release(next);

    auto soonGone = std::make_unique<ExtScreen>(zr, kHeightPx);
    CHECK(soonGone->show("u1", 8) == 1); // the same participant once more, whose click is another
    ext.inbox.onMessage = [&](const Message&) {
        ext.api.Release(ext.handle);
        CHECK(ext.api.SetMute(ext.handle, 1) == 0);
    };
    desktop::click(kLeftPx + kWidthPx / 2, kHeightPx / 2);
    CHECK(pumpUntil([&] { return ext.inbox.count(ZRMSG_EXT_CLICK) == 1; }));
    pump(100);
    // A host that destroys its window first, against the rules.
    soonGone->window.reset();
    pump(50);
    CHECK(soonGone->api.PlayFrame(soonGone->handle, &red.frame) == 1);
    pump(50);
    CHECK(soonGone->inbox.count() == 1);
    soonGone.reset();
    CHECK(pumpUntil([&] { return ext.window->childCount() == 0; }));
    CHECK(zr.IsExtendScreen() == 0); // with the last of all screens the settings start afresh
}

} // namespace
