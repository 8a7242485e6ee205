// A meeting whose host takes its time: what it was told comes true up to five seconds later.
#include "check.h"
#include "desktop.h"
#include "mediaengine.h"

#include <random>

namespace {

constexpr int kPeople = 18;
constexpr int kWidth = 640;
constexpr int kHeight = 360;

/// How long the host takes for somebody: one opens late and closes at once, one has both done at
/// some time, one does both at once.
int delayMs(std::mt19937& random, int number, bool shown)
{
    const bool late = number % 3 == 0 && shown;
    const int most = late ? 1900 : number % 3 == 1 ? 5000 : 0;
    return std::uniform_int_distribution<int>(late ? 1100 : 0, most)(random);
}

} // namespace

/// Nobody changes places unless for a reason, and nobody is reported twice.
ZR_CASE(settle, everyStepComesToRest)
{
    const HostWindow window{kWidth, kHeight};
    Meeting meeting{&window, kWidth, kHeight};
    MediaEngine engine{meeting};
    std::mt19937 random(1);
    engine.answersInside = false;
    engine.delayMs = [&random](int number, bool shown) { return delayMs(random, number, shown); };
    Module& zr = meeting.zr;
    void* const screen = meeting.screen;
    const auto turnPage = [](int steps) {
        desktop::turnWheel(kWidth / 2, kHeight / 2, steps);
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
             for (int number = 1; number <= kPeople; ++number)
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
