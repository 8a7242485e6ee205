// What is on the screen, looked at from outside: the pixels of the host's own window.
#include "check.h"
#include "desktop.h"
#include "meeting.h"

#include <array>
#include <iterator>

namespace {

struct Box
{
    int x;
    int y;
    int w;
    int h;
};

constexpr std::array<Yuv, 5> kColours{kRed, kGreen, kBlue, kYellow, kMagenta};
constexpr int kNameBarPx = 60; ///< at the bottom corners lie the name bar and the "more" button

std::string describe(const Screenshot& shot, int x, int y)
{
    const Rgb c = shot.at(x, y);
    return "(" + std::to_string(x) + "," + std::to_string(y) + ") is rgb(" + std::to_string(c.r)
           + "," + std::to_string(c.g) + "," + std::to_string(c.b) + ")";
}

/// Whether a tile is filled with its colour to its edges and not a pixel further; its bottom
/// corners are left out. @return an empty text, or what is wrong.
std::string tileFault(const Screenshot& shot, const Box& box, const Yuv& colour)
{
    const int right = box.x + box.w - 1;
    const int bottom = box.y + box.h - 1;
    const int midX = box.x + box.w / 2;
    const int midY = box.y + box.h / 2;
    const Rgb rgb = colour.rgb();
    const int inside[][2] = {{box.x, box.y},
                             {right, box.y},
                             {midX, bottom},
                             {box.x, bottom - kNameBarPx},
                             {right, bottom - kNameBarPx}};
    for (const auto& p : inside) {
        if (!isNear(shot.at(p[0], p[1]), rgb, 8))
            return "inside " + describe(shot, p[0], p[1]);
    }
    const int outside[][2] = {
        {box.x - 1, midY}, {right + 1, midY}, {midX, box.y - 1}, {midX, bottom + 1}};
    for (const auto& p : outside) {
        if (isNear(shot.at(p[0], p[1]), rgb, 40))
            return "outside " + describe(shot, p[0], p[1]);
    }
    return {};
}

/// Participant i has colour i; looks until every tile is right, then reports the first fault.
void checkTiles(Meeting& meeting, const NativeWindow& window, const std::vector<void*>& plays,
                const std::vector<Box>& boxes)
{
    std::string fault;
    const bool ok = pumpUntil([&] {
        for (size_t i = 0; i < plays.size(); ++i) {
            Picture picture(640, 360, kColours.at(i));
            CHECK_EQUAL(meeting.zr.PlayFrame(meeting.screen, plays[i], &picture.frame), 1);
        }
        pump(30);
        const Screenshot shot = window.grab();
        fault.clear();
        for (size_t i = 0; i < boxes.size() && fault.empty(); ++i) {
            fault = tileFault(shot, boxes[i], kColours.at(i));
            if (!fault.empty())
                fault.insert(0, "tile " + std::to_string(i) + ": ");
        }
        return fault.empty();
    });
    CHECK_ROW(ok, std::to_string(plays.size()) + " tiles, " + fault);
}

} // namespace

ZR_CASE(picture, tilesLieWhereTheyBelong)
{
    const NativeWindow window(1280, 720);
    Meeting meeting(&window);
    std::vector<void*> plays{meeting.join(1)};
    tagRECT area{200, 100, 200 + 640, 100 + 360};
    CHECK_EQUAL(meeting.zr.MoveWindow(meeting.screen, &area, 0), 1);
    checkTiles(meeting, window, plays, {{200, 100, 640, 360}});
    meeting.moveTo(1280, 720);

    plays.push_back(meeting.join(2));
    checkTiles(meeting, window, plays, {{0, 180, 639, 359}, {641, 180, 639, 359}});
}

/// The host does all of it, and asks, without returning to its loop.
ZR_CASE(picture, aMovedScreenIsWhereItIsAtOnce)
{
    constexpr int kX = 100;
    constexpr int kY = 60;
    const NativeWindow window(1000, 600, kX, kY);
    Meeting meeting(&window, 900, 500);
    meeting.join(1);
    meeting.join(2);
    CHECK_EQUAL(meeting.zr.ChangeLayout(meeting.screen, eLayoutSpeakerTool, {}), 1);
    constexpr Rgb kToolTitle{42, 46, 54};
    constexpr int kToolLeft = 900 - 272 - 24;
    CHECK(pumpUntil([&] {
        return isNear(desktop::grab(kX + kToolLeft + 3, kY + 24 + 3, 1, 1).at(0, 0), kToolTitle);
    }));

    void* const share =
        meeting.zr.AddPerson(meeting.screen, text("sharescreen_u1"), nullptr, 3, 0, hostValue(3));
    CHECK_EQUAL(meeting.zr.Preview(meeting.screen, share, true), 1);
    Picture picture(640, 360, kRed);
    CHECK(pumpUntil([&] {
        meeting.zr.PlayFrame(meeting.screen, share, &picture.frame);
        return meeting.zr.GetShareWgtPos(meeting.screen).right > kX;
    }));
    for (const Box& box : {Box{20, 30, 640, 360}, Box{40, 10, 800, 450}}) {
        tagRECT area{box.x, box.y, box.x + box.w, box.y + box.h};
        CHECK_EQUAL(meeting.zr.MoveWindow(meeting.screen, &area, 0), 1);
        const ZRRect rect = meeting.zr.GetShareWgtPos(meeting.screen);
        CHECK(rect.left == kX + box.x && rect.top == kY + box.y);
        CHECK(rect.right == rect.left + box.w && rect.bottom == rect.top + box.h);
    }
}

ZR_CASE(picture, tilePaintsAgainInAnotherWindow)
{
    const NativeWindow first(640, 360);
    const NativeWindow second(640, 360, 700);
    Meeting meeting(&first, 640, 360);
    void* const ann = meeting.join(1);
    const NativeWindow* const homes[] = {&first, &second, &first, nullptr, &second};
    for (size_t i = 0; i < std::size(homes); ++i) {
        // A parent that does not exist: reported as done, and the screen lives on without one.
        const HWND hwnd =
            homes[i] ? homes[i]->hwnd() : reinterpret_cast<HWND>(uintptr_t{0x7fffff0});
        CHECK_EQUAL(meeting.zr.SetParent(meeting.screen, hwnd), 1);
        CHECK_ROW(pumpUntil([&] {
                      return first.childCount() == (homes[i] == &first ? 1 : 0)
                             && second.childCount() == (homes[i] == &second ? 1 : 0);
                  }),
                  "home " + std::to_string(i));
        if (!homes[i])
            continue;
        meeting.moveTo(640, 360);
        Picture picture(640, 360, kColours.at(i));
        const bool painted = pumpUntil([&] {
            meeting.zr.PlayFrame(meeting.screen, ann, &picture.frame);
            pump(20);
            return isNear(homes[i]->grab().at(320, 100), kColours.at(i).rgb());
        });
        CHECK_ROW(painted,
                  "home " + std::to_string(i) + ": " + describe(homes[i]->grab(), 320, 100));
    }
}
