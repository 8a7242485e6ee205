// An hour of meetings in minutes: whatever people do in a meeting is done all the time, and once a
// minute everything is put back to where it was and counted.
#include "check.h"
#include "framethreads.h"
#include "mediaengine.h"
#include "qtfigures.h"
#include "verdict.h"
#include "weightedrow.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>

namespace {

constexpr int kMinutes = 60;
constexpr int kStepsAMinute = 60;
/// Then it is released and made anew. Of equal age in both parts of the hour that are compared.
constexpr int kMinutesOfAScreen = 12;
constexpr int kHomePeople = 4; ///< who are there whenever it is counted
constexpr int kMostPeople = 16;
/// The host value of who is on the extended screen.
constexpr long long kOnExtended = 1000000;
/// Until nothing is on its way: streams close a second after an arrangement.
constexpr int kSettleMs = 1800;

class Soak
{
public:
    explicit Soak(unsigned seed)
        : random(seed)
    {
        openScreen();
    }

    /// One step of a minute.
    void step();
    /// Puts back whatever steps have changed, and waits until all is quiet.
    void goHome();
    [[nodiscard]] Figures count();
    void renewScreen();

    int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }
    bool chance(int percent) { return pick(1, 100) <= percent; }
    void join(Kind kind) { engine->join(nextNumber++, kind); }
    /// Somebody who may leave; null when nobody may.
    const Stream* guest();
    const Stream& anyone();
    void leaveAllBut(int count);
    /// Gives the threads those whose streams are open.
    void shareOut();
    void openExtended();
    void closeExtended();
    void releaseControls();
    [[nodiscard]] zr::ControlExports& controls() { return zr.exports.ZRCtrl; }
    [[nodiscard]] zr::DateExports& dates() { return zr.exports.ZRScreenDate; }

    std::mt19937 random;
    const HostWindow window{1280, 720};
    const HostWindow second{480, 270, 1300, 0}; ///< with the extended screen and the controls
    Meeting meeting{&window};
    Module& zr = meeting.zr;
    QtFigures qt;
    std::optional<MediaEngine> engine; ///< of this screen
    FrameThreads threads;
    int nextNumber = 1;
    int nextSentence = 1;
    void* extended = nullptr;
    std::vector<void*> edits;
    std::vector<void*> boxes;
    std::vector<void*> pickers;

private:
    void openScreen();
};

void Soak::openScreen()
{
    engine.emplace(meeting);
    engine->delivers = false; // the threads do
    // Its messages name nobody whom the engine knows.
    meeting.inbox.onMessage = [judged = meeting.inbox.onMessage](const Message& message) {
        if (message.lParam != kOnExtended)
            judged(message);
    };
    while (engine->streams().size() < kHomePeople)
        join(Kind::Person);
    // The speaker tool is made when it is first seen, and stays.
    (void)zr.ChangeLayout(meeting.screen, eLayoutSpeakerTool, {});
    engine->run(500);
}

void Soak::renewScreen()
{
    threads.setTargets({});
    engine.reset();
    meeting.renewScreen();
    openScreen();
}

const Stream* Soak::guest()
{
    const auto& streams = engine->streams();
    const int guests = static_cast<int>(streams.size()) - kHomePeople;
    if (guests <= 0)
        return nullptr;
    return &std::next(streams.begin(), kHomePeople + pick(0, guests - 1))->second;
}

const Stream& Soak::anyone()
{
    const auto& streams = engine->streams();
    return std::next(streams.begin(), pick(0, static_cast<int>(streams.size()) - 1))->second;
}

void Soak::leaveAllBut(int count)
{
    while (static_cast<int>(engine->streams().size()) > count)
        engine->leave(engine->streams().rbegin()->first);
}

void Soak::shareOut()
{
    std::vector<FrameThreads::Target> targets;
    for (const auto& [number, stream] : engine->streams()) {
        if (stream.open)
            targets.emplace_back([play = zr.PlayFrame, screen = meeting.screen,
                                  handle = stream.play](VantrelRTCVideoFrameQT& frame) {
                (void)play(screen, handle, &frame);
            });
    }
    if (extended)
        targets.emplace_back([play = zr.exports.ZRScreenExt.PlayFrame, ext = extended](
                                 VantrelRTCVideoFrameQT& frame) { (void)play(ext, &frame); });
    threads.setTargets(std::move(targets));
}

void Soak::openExtended()
{
    const zr::ExtExports& api = zr.exports.ZRScreenExt;
    Inbox::second().reset();
    extended = api.Init(second.hwnd(), Inbox::second().notify());
    REQUIRE(extended != nullptr);
    tagRECT rect = rectOf({0, 0, 480, 270});
    CHECK_EQUAL(api.Move(extended, &rect, 0), 1);
    CHECK_EQUAL(api.SetPersonInfo(extended, hostValue(kOnExtended), anyone().id.c_str(), false, 1,
                                  "Ann", 1),
                1);
    (void)api.Preview(extended, true);
}

void Soak::closeExtended()
{
    zr.exports.ZRScreenExt.Release(extended);
    extended = nullptr;
}

void Soak::releaseControls()
{
    for (void* const edit : edits)
        controls().QLineEdit_Release(edit);
    for (void* const box : boxes)
        controls().QTextEdit_Release(box);
    for (void* const picker : pickers)
        dates().Release(picker);
    edits.clear();
    boxes.clear();
    pickers.clear();
}

struct Step
{
    int weight;
    void (*take)(Soak& s);
};

const Step kSteps[] = {
    // Who is there.
    {10,
     [](Soak& s) {
         if (s.engine->streams().size() < kMostPeople)
             s.join(s.chance(10) ? Kind::Share : Kind::Person);
     }},
    {8,
     [](Soak& s) {
         if (const Stream* const leaving = s.guest())
             s.engine->leave(leaving->number);
     }},
    // What they do.
    {6,
     [](Soak& s) {
         const Stream& stream = s.anyone();
         (void)s.zr.SetMute(s.meeting.screen, stream.play, s.pick(0, 1));
         (void)s.zr.SetVolume(s.meeting.screen, stream.play, s.pick(0, 100));
     }},
    {3,
     [](Soak& s) {
         const Stream& stream = s.anyone();
         (void)s.zr.SetPersonHandUp(s.meeting.screen, stream.play, s.chance(50));
         (void)s.zr.UpdateUserNetStatus(s.meeting.screen, stream.id.c_str(), s.pick(1, 2),
                                        s.chance(20), s.pick(0, 5));
     }},
    {3,
     [](Soak& s) {
         (void)s.zr.SetPersonInfo(s.meeting.screen, s.anyone().play, false, s.pick(0, 3),
                                  text("P" + std::to_string(s.pick(1, 9))), s.pick(0, 5));
     }},
    {3,
     [](Soak& s) {
         const Stream& stream = s.anyone();
         (void)s.zr.LockLook(s.meeting.screen, stream.play, s.pick(0, 1));
         (void)s.zr.AllLook(s.meeting.screen, stream.play, s.pick(0, 1));
     }},
    {3,
     [](Soak& s) {
         (void)s.zr.FocusByUserID(s.meeting.screen, text(s.anyone().id), s.chance(30));
     }},
    // The arrangement.
    {8,
     [](Soak& s) {
         (void)s.zr.ChangeLayout(s.meeting.screen, static_cast<eLayoutType>(s.pick(1, 14)), {});
     }},
    {5, [](Soak& s) { s.meeting.moveTo(s.pick(320, 1280), s.pick(180, 720)); }},
    {5,
     [](Soak& s) {
         desktop::turnWheel({s.pick(100, 400), s.pick(50, 200)}, s.pick(-2, 2));
     }},
    {3,
     [](Soak& s) {
         desktop::click({s.pick(0, 600), s.pick(0, 300)}, s.pick(1, 2));
     }},
    {2, [](Soak& s) { (void)s.zr.SetOpenPollingPage(s.meeting.screen, s.chance(50), 1); }},
    {2, [](Soak& s) { (void)s.zr.ShowSmallWnd(s.meeting.screen, s.chance(50), s.chance(50)); }},
    // Panels.
    {2, [](Soak& s) { (void)s.zr.OpenSubtitle(s.meeting.screen, s.chance(60)); }},
    {8,
     [](Soak& s) {
         for (int i = s.pick(1, 5); i > 0; --i)
             (void)s.zr.AddSentence(
                 s.meeting.screen, s.nextSentence++, s.pick(0, 3), text("Ann"),
                 text(std::string(static_cast<std::size_t>(s.pick(5, 300)), 'w')));
     }},
    {2,
     [](Soak& s) {
         __WTMark_Info info{s.chance(70), s.pick(0, 2), "Ann", "13800001111", "ann@example.com"};
         s.zr.exports.ZRScreenWtmark.SetInfo(info);
     }},
    // The second screen and the controls.
    {3,
     [](Soak& s) {
         if (s.extended)
             s.closeExtended();
         else
             s.openExtended();
     }},
    {4,
     [](Soak& s) {
         tagRECT rect = rectOf({20, 20, 200, 30});
         s.edits.push_back(s.controls().QLineEdit_Init(s.second.hwnd(), &rect, "Name"));
         s.controls().QLineEdit_SetText(s.edits.back(), "What was typed");
         s.controls().QLineEdit_SetStyleSheet(s.edits.back(), "color: red");
         s.boxes.push_back(s.controls().QTextEdit_Init(s.second.hwnd(), &rect, 0, 80, 160));
         s.controls().QTextEdit_SetText(s.boxes.back(), "Some lines\nof a text");
     }},
    {2,
     [](Soak& s) {
         s.pickers.push_back(s.dates().Init(s.second.hwnd(), Inbox::second().notify()));
         tagPOINT at{400, 10};
         s.dates().Move(s.pickers.back(), &at, -1, -1, -1, -1, -1, -1);
     }},
    {3, [](Soak& s) { s.releaseControls(); }},
};

void Soak::step()
{
    drawRow(kSteps, random).take(*this);
    shareOut();
    meeting.inbox.clear();
    Inbox::second().clear();
}

void Soak::goHome()
{
    leaveAllBut(kHomePeople);
    releaseControls();
    if (extended)
        closeExtended();
    void* const screen = meeting.screen;
    (void)zr.OpenSubtitle(screen, false);
    (void)zr.ClearSubtitles(screen);
    (void)zr.SetOpenPollingPage(screen, false, 1);
    (void)zr.ShowSmallWnd(screen, false, false);
    for (const auto& [number, stream] : engine->streams()) {
        (void)zr.LockLook(screen, stream.play, 0);
        (void)zr.AllLook(screen, stream.play, 0);
        (void)zr.UpdateUserNetStatus(screen, stream.id.c_str(), 1, false, 5);
        (void)zr.UpdateUserNetStatus(screen, stream.id.c_str(), 2, false, 5);
    }
    zr.exports.ZRScreenWtmark.SetEnabled(false);
    desktop::moveTo({1800, 1000});
    meeting.moveTo(1280, 720);
    (void)zr.ChangeLayout(screen, eLayoutGrid4, {});
    engine->run(kSettleMs);
    shareOut(); // all four are seen
    engine->run(200);
    threads.setTargets({});
    engine->run(200);
    meeting.inbox.clear();
}

Figures Soak::count()
{
    Figures figures = systemFigures();
    const Figures inQt = qt.figures();
    figures.insert(figures.end(), inQt.begin(), inQt.end());
    return figures;
}

/// A line for each minute.
void save(const std::string& file, const std::vector<Figures>& samples)
{
    std::ofstream out(file);
    out << "minute";
    for (const Figure& figure : samples.front())
        out << ',' << figure.name;
    for (std::size_t minute = 0; minute < samples.size(); ++minute) {
        out << '\n' << minute + 1;
        for (const Figure& figure : samples[minute])
            out << ',' << figure.value;
    }
    out << '\n';
    CHECK(out.good());
}

} // namespace

ZR_CASE(soak, nothingGrowsInAnHour)
{
    const auto seconds = static_cast<int>(setting("ZR_SOAK_SECONDS", 300));
    const auto seed = static_cast<unsigned>(setting("ZR_SOAK_SEED", 1));
    const char* const file = std::getenv("ZR_SOAK_CSV");
    const int stepMs = std::max(0, (1000 * seconds / kMinutes - kSettleMs - 400) / kStepsAMinute);
    std::printf("seed %u, %d ms a step\n", seed, stepMs);
    Soak soak(seed);
    std::vector<Figures> samples;
    for (int minute = 1; minute <= kMinutes; ++minute) {
        for (int i = 0; i < kStepsAMinute; ++i) {
            soak.step();
            soak.engine->run(stepMs);
        }
        if (minute % kMinutesOfAScreen == 0)
            soak.renewScreen();
        soak.goHome();
        samples.push_back(soak.count());
        std::printf("minute %d: %lld frames, resident %lld KiB\n", minute, soak.threads.delivered(),
                    samples.back().front().value);
        std::fflush(stdout);
        if (file)
            save(file, samples);
    }
    for (const std::string& name : grownIn(samples))
        CHECK_ROW(false, name + " has grown");
}

int main(int argc, char** argv)
{
    // A program with Qt in it, which it has to count, is asked to bring the application object.
    const QApplication application(argc, argv);
    return check::run(argc, argv);
}
