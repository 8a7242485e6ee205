// The extended screen: one participant in a window of its own, with a gallery and without.
#include "check.h"
#include "meeting.h"

#include <memory>

namespace {

constexpr int kWidthPx = 480;
constexpr int kHeightPx = 270;
constexpr int kLeftPx = 1300; ///< beside the gallery's window

/// An extended screen that fills a window of the host's, and tells the second inbox.
struct ExtScreen
{
    explicit ExtScreen(const Module& module, int topPx = 0)
        : api(module.exports.ZRScreenExt)
        , window(std::make_unique<HostWindow>(kWidthPx, kHeightPx, kLeftPx, topPx))
    {
        inbox.reset();
        handle = api.Init(window->hwnd(), inbox.notify());
        REQUIRE(handle != nullptr);
        moveTo({0, 0, kWidthPx, kHeightPx});
    }
    ~ExtScreen() { api.Release(handle); }
    ExtScreen(const ExtScreen&) = delete;
    ExtScreen& operator=(const ExtScreen&) = delete;

    void moveTo(const Box& box) const
    {
        tagRECT rect = rectOf(box);
        CHECK(api.Move(handle, &rect, 0) == 1);
    }
    void show(const char* userId, long long value) const
    {
        CHECK(api.SetPersonInfo(handle, hostValue(value), userId, false, 1, "Ann", 1) == 1);
    }
    [[nodiscard]] bool isRed() const
    {
        return isNear(window->grab().at(kWidthPx / 2, kHeightPx / 4), kRed, 8);
    }
    /// Plays a red picture until it is seen, or is not any more.
    [[nodiscard]] bool comes(bool seen = true)
    {
        return pumpUntil([&] {
            (void)api.PlayFrame(handle, &red.frame);
            return isRed() == seen;
        });
    }

    zr::ExtExports api;
    std::unique_ptr<HostWindow> window;
    Inbox& inbox = Inbox::second();
    Picture red{320, 180, kRed};
    void* handle = nullptr;
};

ZR_CASE(extscreen, showsOneParticipantWithoutAGallery)
{
    const Module zr;
    ExtScreen ext(zr);
    const zr::ExtExports& api = ext.api;
    void* const h = ext.handle;
    for (const int known : {0, 1}) { // without a participant, and with one
        CHECK(api.PlayFrame(h, &ext.red.frame) + api.SetAllLook(h, true) + api.SetLockLook(h, false)
                  + api.SetMute(h, -1) + api.SetVolume(h, "u1", -50) + api.Preview(h, false)
              == 6 * known);
        CHECK(api.SetVolume(h, "u2", 50) == 0);
        ext.show("u1", 7);
    }
    pump(300);
    CHECK(ext.comes(false)); // its stream is not open: the avatar
    CHECK(api.Preview(h, true) == 1);
    CHECK(ext.comes());
    for (const Box& box : {Box{16, 9, 320, 180}, Box{0, 0, kWidthPx, kHeightPx}}) {
        ext.moveTo(box);
        const ZRRect atOnce = api.GetShareWgtPos(h);
        CHECK(atOnce.left == kLeftPx + box.x && atOnce.top == box.y);
        CHECK(atOnce.right == atOnce.left + box.w && atOnce.bottom == box.y + box.h);
    }
    // A stream that is opened again, or another participant's, begins with none of this picture.
    for (const char* const next : {"u1", "u2"}) {
        CHECK(api.Preview(h, false) == 1);
        CHECK(ext.comes(false));
        pump(100); // the last frame's notice is behind us
        CHECK(api.Preview(h, false) == 1);
        ext.show(next, 8);
        CHECK(api.Preview(h, true) == 1);
        pump(200);
        CHECK(!ext.isRed());
        CHECK(ext.comes());
    }
    // Nobody any more: frames are refused.
    CHECK(api.SetPersonInfo(h, nullptr, nullptr, false, 0, nullptr, 0) == 1);
    CHECK(api.PlayFrame(h, &ext.red.frame) == 0);
}

ZR_CASE(extscreen, clicksAndPreviewsPassBetweenItAndTheGallery)
{
    const HostWindow window(1280, 720);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    void* const screen = meeting.screen;
    ExtScreen ext(zr);
    void* const ann = meeting.join(1);
    void* const bob = meeting.join(2);
    ext.show("u2", 42);
    CHECK(meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 42) == 1);

    // The gallery's report of a preview is taken over.
    CHECK(zr.Preview(screen, bob, true) == 1);
    CHECK(zr.Preview(screen, ann, false) == 1); // not one's own
    CHECK(ext.comes());

    // A click here is one on the participant, for the gallery too.
    meeting.inbox.clear();
    ext.inbox.clear();
    desktop::click({kLeftPx + kWidthPx / 2, kHeightPx / 2});
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_TILE_CLICK) == 1; }));
    CHECK(ext.inbox.count() == 1 && ext.inbox.count(ZRMSG_EXT_CLICK, 42) == 1);
    CHECK(ext.inbox.all()[0].wParam == reinterpret_cast<uintptr_t>(ext.handle));
    CHECK(meeting.inbox.count(ZRMSG_EXT_CLICK) == 0);

    // Whose stream is in use here keeps it when the gallery's tile goes, until nobody is here.
    meeting.inbox.clear();
    CHECK(zr.ChangeLayout(screen, eLayoutSingle, {{0, "u1"}}) == 1);
    pump(1500);
    CHECK(zr.IsPersonVisible(screen, text("u2")) == 0);
    CHECK(meeting.inbox.count(ZRMSG_VIDEO_HIDDEN, 2) == 0);
    CHECK(ext.api.SetPersonInfo(ext.handle, nullptr, "u2", false, 0, "", 0) == 1);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_VIDEO_HIDDEN, 2) == 1; }));
}

ZR_CASE(extscreen, outlivesTheGalleryAndEndsInsideItsMessage)
{
    const HostWindow window(640, 360);
    Module zr;
    void* const screen = zr.Init(window.hwnd(), nullptr);
    ExtScreen ext(zr);
    ext.show("u1", 7);
    CHECK(ext.api.Preview(ext.handle, true) == 1);
    CHECK(zr.SetExtendScreen(screen, true, false) == 1);
    zr.Release(screen);
    CHECK(ext.comes());
    CHECK(zr.IsExtendScreen() == 1);
    // A later gallery's previews reach it as well.
    void* const next = zr.Init(window.hwnd(), nullptr);
    void* const play = zr.AddPerson(next, text("u1"), text("Ann"), 1, 0, nullptr);
    CHECK(zr.Preview(next, play, false) == 1);
    CHECK(ext.comes(false));
    zr.Release(next);

    auto soonGone = std::make_unique<ExtScreen>(zr, kHeightPx);
    soonGone->show("u1", 8); // the same participant once more, whose click is another
    ext.inbox.onMessage = [&](const Message&) {
        ext.api.Release(ext.handle);
        CHECK(ext.api.SetMute(ext.handle, 1) == 0);
    };
    desktop::click({kLeftPx + kWidthPx / 2, kHeightPx / 2});
    CHECK(pumpUntil([&] { return ext.inbox.count(ZRMSG_EXT_CLICK) == 1; }));
    pump(100);
    // A host that destroys its window first, against the rules.
    soonGone->window.reset();
    pump(50);
    CHECK(soonGone->api.PlayFrame(soonGone->handle, &ext.red.frame) == 1);
    pump(50);
    CHECK(soonGone->inbox.count() == 1);
    soonGone.reset();
    CHECK(pumpUntil([&] { return ext.window->childCount() == 0; }));
    CHECK(zr.IsExtendScreen() == 0); // with the last of all screens the settings start afresh
}

} // namespace
