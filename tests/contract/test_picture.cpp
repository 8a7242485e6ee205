// What is on the screen, looked at from outside: the pixels of the host's own window.
#include "check.h"
#include "meeting.h"

#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>

namespace {

constexpr Rgb kColours[] = {kRed, kGreen, kBlue, kBlue, kRed};

/// How far an edge may be from its place: nothing, but in a host whose Qt scales one of its units.
int slackPx()
{
    const char* const slack = std::getenv("ZR_SLACK_PX");
    return slack ? std::atoi(slack) : 0;
}

/// Whether a tile is filled with a colour to its edges and not a pixel further. Its lower half,
/// where the name and the "more" button lie, is looked at in one place.
bool isFilled(const Screenshot& shot, const Box& box, const Rgb& colour)
{
    const auto isAt = [&](int x, int y) { return isNear(shot.at(x, y), colour, 8); };
    const int slack = slackPx();
    const int right = box.x + box.w - slack;
    for (int y = box.y + slack; y < box.y + box.h / 2; ++y) {
        for (int x = box.x + slack; x < right; ++x) {
            if (!isAt(x, y))
                return false;
        }
    }
    const int bottom = box.y + box.h;
    const int midX = box.x + box.w / 2;
    const int midY = box.y + box.h / 2;
    return isAt(midX, bottom - 1 - slack) && !isAt(box.x - 1 - slack, midY)
           && !isAt(box.x + box.w + slack, midY) && !isAt(midX, box.y - 1 - slack)
           && !isAt(midX, bottom + slack);
}

} // namespace

ZR_CASE(picture, tilesLieWhereTheyBelong)
{
    constexpr int kX = 100;
    constexpr int kY = 60;
    const HostWindow window(1280, 720, kX, kY);
    Meeting meeting(&window);
    Module& zr = meeting.zr;
    void* const screen = meeting.screen;
    void* const plays[] = {meeting.join(1), meeting.join(2)};
    const Box tiles[] = {{100, 190, 319, 179}, {421, 190, 319, 179}};
    tagRECT area = rectOf({100, 100, 640, 360});
    CHECK_EQUAL(zr.MoveWindow(screen, &area, 0), 1);
    CHECK(pumpUntil([&] {
        for (size_t i = 0; i < std::size(plays); ++i) {
            Picture picture(640, 360, kColours[i]);
            CHECK_EQUAL(zr.PlayFrame(screen, plays[i], &picture.frame), 1);
        }
        pump(30);
        const Screenshot shot = window.grab();
        return isFilled(shot, tiles[0], kColours[0]) && isFilled(shot, tiles[1], kColours[1]);
    }));
    // The frame reaches the edges of the area.
    for (const auto& [x, y] : {std::pair(100, 459), {739, 459}, {739, 110}})
        CHECK_ROW(isNear(window.grab().at(x, y), {12, 16, 23}), std::to_string(x));

    void* const share = zr.AddPerson(screen, text("sharescreen_u1"), nullptr, 3, 0, hostValue(3));
    CHECK_EQUAL(zr.Preview(screen, share, true), 1);
    for (const bool paused : {false, true, false}) {
        CHECK(zr.SetPauseShareWindow(nullptr, paused) == 1); // the pause is no screen's own
        CHECK(meeting.shows(share, kBlue, window, {120, 200}, !paused));
    }
    // The watermark, which no picture brings along.
    const auto plain = window.grab().data;
    zr.exports.ZRScreenWtmark.SetInfo(
        {true, 0, "A long name that reaches into every tile", "", ""});
    CHECK(pumpUntil([&] { return window.grab().data != plain; }));
    zr.exports.ZRScreenWtmark.SetEnabled(false);
    CHECK(pumpUntil([&] { return window.grab().data == plain; }));
    const ZRRect told = zr.GetShareWgtPos(screen);
    const int slack = slackPx();
    CHECK(std::abs(told.left - (kX + 100)) <= slack && std::abs(told.top - (kY + 100)) <= slack);
    CHECK(std::abs(told.right - (kX + 740)) <= slack
          && std::abs(told.bottom - (kY + 460)) <= slack);
}

ZR_CASE(picture, tilePaintsAgainInAnotherWindow)
{
    const HostWindow first(640, 360);
    const HostWindow second(640, 360, 700);
    Meeting meeting(&first, 640, 360);
    void* const ann = meeting.join(1);
    const HostWindow* const homes[] = {&first, &second, &first, nullptr, &second};
    for (size_t i = 0; i < std::size(homes); ++i) {
        // A parent that does not exist: reported as done, and the screen lives on without one.
        const HostWindow* const home = homes[i];
        const HWND hwnd = home ? home->hwnd() : reinterpret_cast<HWND>(uintptr_t{0x7fffff0});
        const std::string row = "home " + std::to_string(i);
        CHECK_EQUAL(meeting.zr.SetParent(meeting.screen, hwnd), 1);
        CHECK_ROW(pumpUntil([&] {
                      return first.childCount() == (home == &first ? 1 : 0)
                             && second.childCount() == (home == &second ? 1 : 0);
                  }),
                  row);
        if (!home)
            continue;
        meeting.moveTo(640, 360);
        CHECK_ROW(meeting.shows(ann, kColours[i], *home, {320, 100}), row);
    }
}
