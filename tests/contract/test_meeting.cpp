// Meetings with a host whose media engine does what the messages ask for, at once or later. At
// every quiet moment exactly those streams are open whose pictures can be seen.
#include "check.h"
#include "mediaengine.h"

#include <algorithm>
#include <random>

namespace {

constexpr int kPeople = 60;
constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kSettling = 18;
constexpr int kSmallWidth = 640;
constexpr int kSmallHeight = 360;

/// Waits for a quiet moment at which everybody who is visible is seen.
/// @return the largest picture's participant; 0 without any
int quiet(MediaEngine& engine, const HostWindow& window, const std::string& step, int count)
{
    (void)engine.rest(step, MediaEngine::kMoment);
    const std::set<int> visible = engine.visible();
    CHECK_ROW(static_cast<int>(visible.size()) == count, step + ": visible are" + listOf(visible));
    std::map<int, int> areas;
    std::set<int> found;
    const auto looksRight = [&] {
        engine.run(0);
        areas = engine.look(window.grab());
        found.clear();
        for (const auto& [number, area] : areas)
            found.insert(number);
        return found == visible;
    };
    CHECK_ROW(pumpUntil(looksRight), step + ": seen" + listOf(found)); // drawing takes its time
    const auto isSmaller = [](const auto& a, const auto& b) { return a.second < b.second; };
    return areas.empty() ? 0 : std::max_element(areas.begin(), areas.end(), isSmaller)->first;
}

} // namespace

/// The focus person is the largest where there is a speaker.
ZR_CASE(modes, everyModeOpensWhatItShows)
{
    const HostWindow window{kWidth, kHeight};
    Meeting meeting{&window, kWidth, kHeight};
    MediaEngine engine{meeting};
    desktop::moveTo({kWidth + 100, kHeight + 100});
    for (int number = 1; number <= kPeople; ++number)
        engine.join(number, number == 2 ? Kind::Self : Kind::Person);
    const struct
    {
        int mode;
        int visible;
        bool hasSpeaker;
    } rows[] = {{1, 6, false},  {2, 6, false},  {3, 8, false},  {6, 7, true},   {7, 7, true},
                {8, 7, true},   {9, 8, true},   {11, 4, false}, {12, 9, false}, {13, 16, false},
                {14, 1, false}, {10, 6, false}, {99, 0, false}, {1, 6, false}};
    for (const auto& row : rows) {
        const std::string step = "mode " + std::to_string(row.mode);
        const int speaker = 20 + row.mode;
        if (row.hasSpeaker)
            meeting.zr.FocusByUserID(meeting.screen, text(engine.at(speaker).id), false);
        CHECK_ROW(meeting.changeMode(row.mode), step);
        const int largest = quiet(engine, window, step, row.visible);
        CHECK_ROW(!row.hasSpeaker || largest == speaker || row.mode == 9, step); // 9 has two
    }
    (void)engine.rest("the end");
}

/// Nobody changes places unless for a reason, and nobody is reported twice.
ZR_CASE(settle, everyStepComesToRest)
{
    const HostWindow window{kSmallWidth, kSmallHeight};
    Meeting meeting{&window, kSmallWidth, kSmallHeight};
    MediaEngine engine{meeting};
    std::mt19937 random(1);
    engine.answersInside = false;
    // One opens late and closes at once, one has both done at some time, one does both at once.
    engine.delayMs = [&random](int number, bool shown) {
        const bool late = number % 3 == 0 && shown;
        const int most = late ? 1900 : number % 3 == 1 ? 5000 : 0;
        return std::uniform_int_distribution<int>(late ? 1100 : 0, most)(random);
    };
    Module& zr = meeting.zr;
    void* const screen = meeting.screen;
    const auto turnPage = [](int steps) {
        desktop::turnWheel({kSmallWidth / 2, kSmallHeight / 2}, steps);
        pump(200);
    };
    std::set<int> first; // on the first page
    const struct
    {
        const char* name;
        std::function<void()> take;
        int visible;
    } steps[] = {
        {"join",
         [&] {
             for (int number = 1; number <= kSettling; ++number)
                 engine.join(number);
         },
         6},
        {"page forth",
         [&] {
             first = engine.visible();
             turnPage(-1);
             CHECK(engine.visible() != first);
         },
         6},
        {"page back",
         [&] {
             turnPage(1);
             CHECK(engine.visible() == first);
         },
         6},
        // Those on pages that nobody has seen must not come to this one in turn.
        {"pages that are skipped",
         [&] {
             turnPage(-1);
             CHECK(meeting.changeMode(eLayoutGrid16));
         },
         2},
        {"mode", [&] { CHECK(meeting.changeMode(eLayoutGrid4)); }, 4},
        {"leave", [&] { engine.leave(2); }, 4},
        {"polling",
         [&] {
             zr.SetOpenPollingPage(screen, true, 1);
             engine.run(9000);
             // Five pages: everybody was shown and, two seconds later, reported hidden.
             for (const auto& [number, stream] : engine.streams())
                 CHECK_ROW(meeting.inbox.count(ZRMSG_VIDEO_HIDDEN, number) > 0, stream.id);
             zr.SetOpenPollingPage(screen, false, 1);
             pump(200);
             meeting.inbox.clear();
         },
         4},
    };
    for (const auto& step : steps) {
        meeting.inbox.clear();
        step.take();
        pump(100);
        const std::set<int> visible = engine.visible();
        CHECK_ROW(static_cast<int>(visible.size()) == step.visible, step.name);
        (void)engine.rest(step.name);
        CHECK_ROW(engine.visible() == visible, step.name);
        for (const auto& [number, stream] : engine.streams()) {
            for (const unsigned long id : {ZRMSG_VIDEO_SHOWN, ZRMSG_VIDEO_HIDDEN})
                CHECK_ROW(meeting.inbox.count(id, number) <= 1, step.name + (" " + stream.id));
        }
    }
}
