// A seeded random walk over the gallery's exports, with a faithful media engine, from outside and
// from inside messages. ZR_WALK_STEPS and ZR_WALK_SEED change its length and its course.
#include "check.h"
#include "desktop.h"
#include "mediaengine.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

constexpr int kSteps = 5000;
constexpr unsigned kSeed = 1;
constexpr int kMaxPeople = 40;
constexpr int kStepsInARow = 12;
/// Steps between two quiet moments, at which streams are compared with what is visible.
constexpr int kStepsToQuiet = 1250;
constexpr int kMinLayoutWidthPx = 50;

long long setting(const char* name, long long standard)
{
    const char* const value = std::getenv(name);
    return value ? std::atoll(value) : standard;
}

/// Most tiles that an arrangement shows, whatever else is set.
int maxTiles(int mode, bool nine)
{
    switch (mode) {
    case eLayoutEqualCut:
    case eLayoutShare: // the gallery, where there is no share
        return nine ? 9 : 6;
    case eLayout6Cut:
        return 6;
    case eLayout8Cut:
    case eLayoutSpeaker4:
        return 8;
    case eLayoutSpeakerTool:
    case eLayoutSpeakerTool2:
        return 2;
    case eLayoutSpeakerRight:
    case eLayoutSpeakerBottom:
    case eLayoutSpeakerTop:
        return 7;
    case eLayoutGrid4:
        return 4;
    case eLayoutGrid9:
        return 9;
    case eLayoutGrid16:
        return 16;
    case eLayoutSingle:
        return 1;
    default:
        return 0;
    }
}

class Walk
{
public:
    explicit Walk(unsigned seed)
        : m_random(seed)
    {
        m_engine.onMessage = [this](const Message& message) { onMessage(message); };
    }

    void run(long long steps);

private:
    using Step = void (Walk::*)();
    struct WeightedStep
    {
        int weight;
        const char* name;
        Step step;
    };
    static const std::vector<WeightedStep>& steps();

    int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }
    bool chance(int percent) { return pick(1, 100) <= percent; }
    template<typename T>
    T oneOf(std::initializer_list<T> values)
    {
        return values.begin()[pick(0, static_cast<int>(values.size()) - 1)];
    }
    /// A participant who is there; 0 when nobody is.
    int anyone();
    /// An id: mostly of somebody, else of nobody.
    std::string anyId();
    void* anyPlay();

    void step();
    void onMessage(const Message& message);
    void checkBatch();
    void checkQuiet(long long at);

    void join();
    void leave();
    void leaveSpecial();
    void everybodyLeaves();
    void mode();
    void poll();
    void focus();
    void look();
    void voice();
    void state();
    void info();
    void layoutSettings();
    void screenSettings();
    void resize();
    void mouse();
    void frames();
    void queries();
    void elsewhere();
    void loop();

    Module& zr() { return m_meeting.zr; }
    void* screen() { return m_meeting.screen; }

    std::mt19937 m_random;
    const NativeWindow m_window{1280, 720};
    Meeting m_meeting{&m_window, 1280, 720};
    MediaEngine m_engine{m_meeting, false};
    int m_nextNumber = 1;
    int m_depth = 0; ///< of messages that the walk goes on in
    int m_focus = 0; ///< whom the host chose last, of each kind
    int m_look = 0;
    int m_voice = 0;
    bool m_nine = false;
    bool m_floats = false;  ///< the speaker tool, in every mode
    bool m_arranged = true; ///< joined, and large enough to be arranged
    bool m_joined = true;
    size_t m_judged = 0; ///< messages that checkBatch has seen
    std::string m_trace; ///< the steps since the last check
};

int Walk::anyone()
{
    const auto& streams = m_engine.streams();
    if (streams.empty())
        return 0;
    auto found = streams.begin();
    std::advance(found, pick(0, static_cast<int>(streams.size()) - 1));
    return found->second.play ? found->first : 0;
}

std::string Walk::anyId()
{
    const int number = chance(85) ? anyone() : 0;
    if (number != 0)
        return m_engine.at(number).id;
    return oneOf<const char*>({"", "nobody", "u0", "sharescreen_", "u999999", "\xff\xfe"});
}

void* Walk::anyPlay()
{
    const int number = chance(95) ? anyone() : 0;
    return number != 0 ? m_engine.at(number).play : nullptr;
}

const std::vector<Walk::WeightedStep>& Walk::steps()
{
    static const std::vector<WeightedStep> all{
        {14, "join", &Walk::join},
        {8, "leave", &Walk::leave},
        {3, "leaveSpecial", &Walk::leaveSpecial},
        {1, "everybodyLeaves", &Walk::everybodyLeaves},
        {14, "mode", &Walk::mode},
        {4, "poll", &Walk::poll},
        {10, "focus", &Walk::focus},
        {8, "look", &Walk::look},
        {6, "voice", &Walk::voice},
        {12, "state", &Walk::state},
        {5, "info", &Walk::info},
        {6, "layoutSettings", &Walk::layoutSettings},
        {6, "screenSettings", &Walk::screenSettings},
        {3, "resize", &Walk::resize},
        {5, "mouse", &Walk::mouse},
        {12, "frames", &Walk::frames},
        {5, "queries", &Walk::queries},
        {4, "elsewhere", &Walk::elsewhere},
        {4, "loop", &Walk::loop},
    };
    return all;
}

void Walk::join()
{
    if (m_engine.streams().size() >= kMaxPeople)
        return;
    const int number = m_nextNumber++;
    const bool share = chance(8);
    m_engine.join(number, share        ? Kind::Share
                          : chance(5)  ? Kind::Self
                          : chance(10) ? Kind::Nameless
                                       : Kind::Person);
}

void Walk::leave()
{
    if (const int number = anyone(); number != 0)
        m_engine.leave(number);
}

void Walk::leaveSpecial()
{
    const auto& streams = m_engine.streams();
    int number = oneOf({m_focus, m_look, m_voice, 0});
    if (number == 0) {
        const auto share = std::find_if(streams.begin(), streams.end(), [](const auto& stream) {
            return stream.second.kind == Kind::Share;
        });
        number = share == streams.end() ? 0 : share->first;
    }
    const auto found = streams.find(number);
    if (found != streams.end() && found->second.play)
        m_engine.leave(number);
}

void Walk::everybodyLeaves()
{
    if (m_depth == 0 && chance(20)) {
        CHECK_EQUAL(zr().ExitMeeting(screen()), 1);
        m_engine.forgetAll();
        return;
    }
    while (const int number = anyone())
        m_engine.leave(number);
}

void Walk::mode()
{
    std::map<int, std::string> order;
    if (chance(30)) {
        const int count = pick(0, 8);
        for (int i = 0; i < count; ++i)
            order[pick(-3, 12)] = anyId();
    }
    const int mode = chance(90) ? pick(1, 14) : oneOf({0, -1, 15, 99, INT_MAX, INT_MIN});
    zr().ChangeLayout(screen(), static_cast<eLayoutType>(mode), order);
}

void Walk::poll()
{
    zr().SetOpenPollingPage(screen(), chance(50),
                            oneOf({-1, 0, 1, 2, 10, INT_MAX, INT_MIN, 2147484}));
}

void Walk::focus()
{
    std::string id = anyId();
    m_focus = std::atoi(id.c_str() + (id.empty() ? 0 : 1));
    zr().FocusByUserID(screen(), text(id), chance(30));
    if (chance(10))
        zr().ReOrder(screen(), chance(50));
}

void Walk::look()
{
    m_look = anyone();
    void* const play = m_look != 0 ? m_engine.at(m_look).play : nullptr;
    if (chance(50))
        zr().AllLook(screen(), play, pick(0, 1));
    else
        zr().LockLook(screen(), play, pick(0, 1));
}

void Walk::voice()
{
    std::string id = anyId();
    m_voice = std::atoi(id.c_str() + (id.empty() ? 0 : 1));
    zr().SetVoiceActivate(screen(), chance(50));
    zr().SetActivateUser(screen(), text(id));
    zr().SetCurrentSpeakingPerson(screen(), id);
}

void Walk::state()
{
    void* const play = anyPlay();
    const std::string id = anyId();
    zr().SetMute(screen(), play, pick(0, 1));
    zr().SetVolume(screen(), play, oneOf({-1, 0, 50, 100, INT_MAX}));
    zr().SetPersonHandUp(screen(), play, chance(50));
    zr().UpdateUserNetStatus(screen(), text(id), pick(0, 3), chance(50), pick(-1, 7));
}

void Walk::info()
{
    const int number = anyone();
    if (number == 0)
        return;
    const Stream& stream = m_engine.at(number);
    // The kind stays: from whom a grade may be asked depends on it.
    zr().SetPersonInfo(screen(), stream.play, stream.kind == Kind::Self, pick(-1, 3), text(""),
                       pick(-1, 5));
}

void Walk::layoutSettings()
{
    zr().SetLayoutCtrl(screen(), chance(50), chance(30), pick(-2, 5), pick(-2, 5), chance(20));
    if (chance(50))
        zr().SetHideNoCameraWnd(screen(), true);
    m_nine = chance(50);
    zr().SetSupport9EqualCut(screen(), m_nine);
    zr().SetSupport16EqualCut(screen(), chance(50));
    zr().ReOrder(screen(), chance(50));
    if (chance(10)) {
        m_joined = !m_joined;
        zr().JoinMeetingFinish(screen(), m_joined);
    }
}

void Walk::screenSettings()
{
    switch (pick(0, 6)) {
    case 0:
        zr().SetExtendScreen(screen(), chance(50), chance(50));
        break;
    case 1:
        zr().SetHideSmallWidget(screen(), chance(50));
        break;
    case 2:
        zr().ShowSmallWnd(screen(), chance(50), chance(50));
        break;
    case 3:
        m_floats = chance(50);
        zr().PopSelfShareWnd(screen(), m_floats, chance(50));
        break;
    case 4:
        zr().SetPauseShareWindow(screen(), chance(50));
        break;
    case 5:
        zr().OpenSubtitle(screen(), chance(50));
        break;
    default:
        zr().SetShareSponsor(screen(), anyId());
        zr().SetIsCloseWhiteBoard(screen());
        zr().ClearMoreMenuPtr(screen());
        break;
    }
}

void Walk::resize()
{
    const int width = oneOf({1280, 1280, 640, 320, 49, 1});
    m_meeting.moveTo(width, oneOf({720, 360, 20}));
    // A gallery that has been too narrow keeps what it showed until it is arranged again.
    m_arranged = width >= 2 * kMinLayoutWidthPx;
    zr().ReOrder(screen(), false);
}

void Walk::mouse()
{
    if (m_depth > 0)
        return;
    const int x = pick(0, 1279);
    const int y = pick(0, 719);
    if (chance(40))
        desktop::turnWheel(x, y, pick(-3, 3));
    else
        desktop::click(x, y);
    if (chance(30))
        desktop::click(x, y); // a double click
    if (chance(50))
        m_engine.run(10);
}

void Walk::frames()
{
    m_engine.deliver();
}

void Walk::queries()
{
    zr().IsPersonVisibleInSmallWnd(screen(), text(anyId()));
    zr().GetShareWgtPos(screen());
    zr().GetSmallWndID(screen());
    zr().IsMouseOnBtnMore(screen());
    zr().IsPersonVisible(screen(), text(anyId()));
}

void Walk::elsewhere()
{
    void* const play = anyPlay();
    const std::string id = anyId();
    const auto mode = static_cast<eLayoutType>(pick(1, 14));
    const int flag = pick(0, 1);
    // What is posted: the GUI thread waits here.
    std::thread([&] {
        zr().SetMute(screen(), play, flag);
        zr().ChangeLayout(screen(), mode, {});
        zr().FocusByUserID(screen(), text(id), flag != 0);
        zr().LockLook(screen(), play, flag);
        zr().SetActivateUser(screen(), text(id));
        zr().ReOrder(screen(), flag != 0);
    }).join();
}

void Walk::loop()
{
    // Also from inside a message, as a menu does.
    m_engine.run(pick(0, 20));
}

void Walk::step()
{
    int total = 0;
    for (const WeightedStep& candidate : steps())
        total += candidate.weight;
    int at = pick(0, total - 1);
    for (const WeightedStep& candidate : steps()) {
        at -= candidate.weight;
        if (at >= 0)
            continue;
        m_trace += std::string(m_depth > 0 ? ">" : " ") + candidate.name;
        m_engine.step = m_trace;
        (this->*candidate.step)();
        return;
    }
}

void Walk::onMessage(const Message&)
{
    if (m_depth >= 2 || !chance(4))
        return;
    ++m_depth;
    step();
    --m_depth;
}

void Walk::checkBatch()
{
    const int mode = zr().GetCurMode(screen());
    std::set<int> visible;
    for (const auto& [number, stream] : m_engine.streams()) {
        const int answer = zr().IsPersonVisible(screen(), text(stream.id));
        CHECK_ROW(answer == 0 || answer == 1, stream.id);
        if (answer == 1)
            visible.insert(number);
    }
    if (m_arranged && m_joined && zr().GetCurMode(screen()) == mode)
        CHECK_ROW(static_cast<int>(visible.size()) <= maxTiles(mode, m_nine) + (m_floats ? 1 : 0),
                  std::to_string(visible.size()) + " tiles in mode " + std::to_string(mode) + ":"
                      + m_trace);
    for (const char* nobody : {"nobody", "u0", ""})
        CHECK_ROW(zr().IsPersonVisible(screen(), text(nobody)) == 0, nobody);
    for (const int number : visible) {
        const auto found = m_engine.streams().find(number);
        if (found != m_engine.streams().end()) // else he left from inside a message of the query
            CHECK_ROW(found->second.wanted,
                      found->second.id + " is visible without a stream:" + m_trace);
    }
    const std::vector<Message> all = m_meeting.inbox.all();
    for (; m_judged < all.size(); ++m_judged)
        CHECK(all[m_judged].thread == std::this_thread::get_id());
    m_meeting.inbox.clear();
    m_judged = 0;
    m_trace.clear();
}

void Walk::checkQuiet(long long at)
{
    std::printf("%lld steps\n", at);
    std::fflush(stdout);
    zr().SetOpenPollingPage(screen(), false, 0);
    m_joined = true;
    zr().JoinMeetingFinish(screen(), true);
    m_meeting.moveTo(1280, 720);
    m_arranged = true;
    m_depth = 99; // the host is quiet too
    desktop::moveTo(1900, 1000);
    (void)m_engine.rest("after " + std::to_string(at) + " steps");
    m_engine.checkOpen("after " + std::to_string(at) + " steps");
    m_depth = 0;
}

void Walk::run(long long steps)
{
    long long nextQuiet = kStepsToQuiet;
    for (long long done = 0; done < steps;) {
        const int row = pick(1, kStepsInARow);
        for (int i = 0; i < row; ++i)
            step();
        done += row;
        m_engine.run(pick(0, 15));
        m_engine.deliver();
        checkBatch();
        if (done >= nextQuiet) {
            checkQuiet(done);
            nextQuiet += kStepsToQuiet;
        }
    }
    checkQuiet(steps);
}

} // namespace

ZR_CASE(walk, theGalleryBearsAnything)
{
    const long long steps = setting("ZR_WALK_STEPS", kSteps);
    const auto seed = static_cast<unsigned>(setting("ZR_WALK_SEED", kSeed));
    std::printf("ZR_WALK_STEPS=%lld ZR_WALK_SEED=%u\n", steps, seed);
    std::fflush(stdout);
    Walk(seed).run(steps);
}
