// A meeting of sixty, with a host whose media engine does what the messages ask for. At every quiet
// moment exactly those streams are open whose pictures can be seen, each in the grade of its tile.
#include "check.h"
#include "desktop.h"
#include "mediaengine.h"

#include <algorithm>
#include <climits>

namespace {

constexpr int kPeople = 60;
constexpr int kHost = 1;
constexpr int kSelf = 2;
constexpr int kAny = -1;
constexpr int kLooks = 10;
constexpr int kBetweenLooksMs = 150;

/// Who is seen, the largest picture first.
std::vector<int> bySize(const std::map<int, Seen>& seen)
{
    std::vector<int> numbers;
    for (const auto& [number, where] : seen)
        numbers.push_back(number);
    std::stable_sort(numbers.begin(), numbers.end(),
                     [&](int a, int b) { return seen.at(a).areaPx > seen.at(b).areaPx; });
    return numbers;
}

/// A meeting of sixty: one is its host, one the local user; some can speak.
class BusyMeeting
{
public:
    BusyMeeting()
    {
        meeting.zr.JoinMeetingFinish(meeting.screen, false);
        for (int number = 1; number <= kPeople; ++number)
            engine.join(number, number == kSelf ? Kind::Self : Kind::Person);
        meeting.zr.SetPersonInfo(meeting.screen, engine.at(kHost).play, false, 1, text("Host"), 0);
        for (const int number : {5, 6, 7, 40})
            meeting.zr.SetMute(meeting.screen, engine.at(number).play, 0);
        desktop::moveTo(kWidth + 100, kHeight + 100);
        meeting.zr.JoinMeetingFinish(meeting.screen, true);
    }

    /// Waits for a quiet moment and checks that all of the host's state fits the screen.
    /// @param count of those who are visible; kAny for any number @return who is
    std::set<int> quiet(const std::string& step, int count)
    {
        (void)engine.rest(step, MediaEngine::kMoment);
        const std::set<int> visible = engine.visible();
        CHECK_ROW(count == kAny || static_cast<int>(visible.size()) == count,
                  step + ": visible are" + listOf(visible));
        std::set<int> found;
        for (int look = 0; look < kLooks && (look == 0 || found != visible); ++look) {
            engine.run(look == 0 ? 0 : kBetweenLooksMs); // drawing takes its time
            seen = engine.look(desktop::grab(0, 0, kWidth, kHeight));
            const std::vector<int> numbers = bySize(seen);
            found = {numbers.begin(), numbers.end()};
        }
        CHECK_ROW(found == visible,
                  step + ": seen" + listOf(found) + ", visible" + listOf(visible));
        checkGrades(step);
        return visible;
    }

    void mode(int mode, const std::map<int, std::string>& order = {})
    {
        CHECK_EQUAL(meeting.zr.ChangeLayout(meeting.screen, static_cast<eLayoutType>(mode), order),
                    1);
    }
    void focus(int number)
    {
        CHECK_EQUAL(meeting.zr.FocusByUserID(meeting.screen, text(engine.at(number).id), false), 1);
    }
    /// Whether somebody had the largest tile, or one as large, at the last quiet moment.
    [[nodiscard]] bool isLarge(int number) const
    {
        return seen.count(number) > 0
               && seen.at(number).areaPx * 10 > seen.at(bySize(seen).front()).areaPx * 9;
    }

    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 720;
    const HostWindow window{kWidth, kHeight};
    Meeting meeting{&window, kWidth, kHeight};
    MediaEngine engine{meeting};
    std::map<int, Seen> seen; ///< at the last quiet moment

private:
    /// Somebody with a larger tile has no smaller grade.
    void checkGrades(const std::string& step) const
    {
        int highest = INT_MAX;
        for (const int number : bySize(seen)) {
            const Stream& stream = engine.streams().at(number);
            if (stream.kind != Kind::Person)
                continue; // nobody asks for it
            CHECK_ROW(stream.grade >= 2 && stream.grade <= highest,
                      step + ": " + stream.id + " has grade " + std::to_string(stream.grade));
            highest = stream.grade;
        }
    }
};

} // namespace

/// The focus person is the largest where there is a speaker.
ZR_CASE(modes, everyModeOpensWhatItShows)
{
    BusyMeeting busy;
    Module& zr = busy.meeting.zr;
    void* const screen = busy.meeting.screen;
    const std::set<int> first = busy.quiet("mode 1", 6);
    CHECK(first.count(kHost) == 1 && first.count(kSelf) == 1);
    CHECK(first.count(5) == 1 && first.count(6) == 1 && first.count(7) == 1); // who can speak
    desktop::turnWheel(BusyMeeting::kWidth / 2, BusyMeeting::kHeight / 2, -1);
    for (const int number : busy.quiet("page 2", 6))
        CHECK_ROW(first.count(number) == 0, "on both pages: " + std::to_string(number));
    const struct
    {
        int mode;
        int visible;
    } rows[] = {{2, 6},  {3, 8},  {6, 7},   {7, 7},  {8, 7},  {9, 8},
                {11, 4}, {12, 9}, {13, 16}, {14, 1}, {10, 6}, {1, 6}};
    for (const auto& row : rows) {
        const std::string step = "mode " + std::to_string(row.mode);
        const int speaker = 20 + row.mode;
        const bool hasSpeaker = row.mode >= 6 && row.mode <= 9;
        if (hasSpeaker)
            busy.focus(speaker);
        busy.mode(row.mode);
        (void)busy.quiet(step, row.visible);
        CHECK_ROW(zr.GetCurMode(screen) == row.mode, step);
        CHECK_ROW(!hasSpeaker || busy.isLarge(speaker), step);
    }
    CHECK_EQUAL(zr.AllLook(screen, busy.engine.at(9).play, 1), 1);
    (void)busy.quiet("look for all", 7);
    CHECK(zr.GetCurMode(screen) == eLayoutSpeakerRight && busy.isLarge(9));
    CHECK_EQUAL(zr.LockLook(screen, busy.engine.at(33).play, 1), 1);
    (void)busy.quiet("own look", 7);
    CHECK(busy.isLarge(33));
    busy.engine.leave(33);
    (void)busy.quiet("the pinned one has left", kAny);
    CHECK_EQUAL(zr.AllLook(screen, busy.engine.at(9).play, 0), 1);
    busy.mode(99);
    CHECK(busy.quiet("a mode that does not exist", 0).empty());
    busy.mode(eLayoutEqualCut);
    zr.SetSupport9EqualCut(screen, true);
    (void)busy.quiet("nine a page", 9);
    (void)busy.engine.rest("the end");
}

ZR_CASE(modes, theOrderIsTheHosts)
{
    BusyMeeting busy;
    std::map<int, std::string> order;
    for (int place = 0; place < 6; ++place)
        order[place] = "u" + std::to_string(50 - place);
    busy.mode(eLayoutEqualCut, order);
    (void)busy.quiet("customised", 6);
    for (const auto& [number, where] : busy.seen) // three in a row
        CHECK_EQUAL(50 - number,
                    where.y * 2 / BusyMeeting::kHeight * 3 + where.x * 3 / BusyMeeting::kWidth);
    busy.mode(eLayoutEqualCut);
    CHECK(busy.quiet("no order", 6).count(kHost) == 1);
    (void)busy.engine.rest("the end");
}
