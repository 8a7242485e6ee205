// A seeded random walk over the gallery's exports, with a faithful media engine, from outside and
// from inside messages. ZR_WALK_STEPS and ZR_WALK_SEED change its length and its course.
#include "check.h"
#include "mediaengine.h"
#include "scenario.h"
#include "weightedrow.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <random>
#include <set>
#include <thread>

namespace {

constexpr int kSteps = 5000;
constexpr unsigned kSeed = 1;
constexpr int kMaxPeople = 40;
constexpr int kStepsInARow = 12;
/// Steps between two quiet moments, at which streams are compared with what is visible.
constexpr int kStepsToQuiet = 1250;

/// The walker, and what it must remember of what the host has asked for.
class Walk
{
public:
    explicit Walk(unsigned seed)
        : random(seed)
    {
        engine.delayMs = [this] { return chance(20) ? pick(0, 2000) : 50; };
        engine.onMessage = [this](const Message&) {
            if (depth >= 2 || !chance(4))
                return;
            ++depth;
            step();
            --depth;
        };
    }
    void run(long long steps);

    int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }
    bool chance(int percent) { return pick(1, 100) <= percent; }
    template<typename T>
    T oneOf(std::initializer_list<T> values)
    {
        return values.begin()[pick(0, static_cast<int>(values.size()) - 1)];
    }
    /// A participant who is there; null when nobody is.
    const Stream* anyone();
    /// An id: mostly of somebody, else of nobody.
    std::string anyId();
    /// Somebody leaves: anybody, or whom the last call has named, say as the focus, or a share.
    void leave(bool ofInterest);
    /// Calls any of the exports that have no step of their own, with any arguments; from another
    /// thread one that does not wait for this one.
    void callAnything(bool elsewhere);

    std::mt19937 random;
    const HostWindow window{1280, 720};
    Meeting meeting{&window, 1280, 720};
    MediaEngine engine{meeting};
    Module& zr = meeting.zr;
    void* const screen = meeting.screen;
    int nextNumber = 1;
    int depth = 0;     ///< of messages that the walk goes on in
    int named = 0;     ///< who was an argument last
    std::string trace; ///< the steps since the last check

private:
    zrhost::Value anyValue(const zr::Argument& argument);
    void step();
    void checkBatch();
    void checkQuiet(long long at);
};

const Stream* Walk::anyone()
{
    const auto& streams = engine.streams();
    if (streams.empty())
        return nullptr;
    const auto found = std::next(streams.begin(), pick(0, static_cast<int>(streams.size()) - 1));
    named = found->first;
    return found->second.play ? &found->second : nullptr;
}

std::string Walk::anyId()
{
    if (const Stream* const stream = chance(85) ? anyone() : nullptr)
        return stream->id;
    return oneOf<const char*>({"", "nobody", "u0", "sharescreen_", "u999999", "\xff\xfe"});
}

void Walk::leave(bool ofInterest)
{
    const auto& streams = engine.streams();
    if (!ofInterest)
        (void)anyone(); // is named by that
    const auto isShare = [](const auto& entry) { return entry.second.kind == Kind::Share; };
    const auto found = ofInterest && chance(25)
                           ? std::find_if(streams.begin(), streams.end(), isShare)
                           : streams.find(named);
    if (found != streams.end() && found->second.play)
        engine.leave(found->first);
}

zrhost::Value Walk::anyValue(const zr::Argument& argument)
{
    zrhost::Value value;
    switch (argument.kind) {
    case zr::Kind::Screen:
        value.handle = screen;
        break;
    case zr::Kind::Play:
        if (const Stream* const stream = chance(95) ? anyone() : nullptr)
            value.handle = stream->play;
        break;
    case zr::Kind::UserId:
    case zr::Kind::Text:
        value.text = anyId();
        break;
    case zr::Kind::Rectangle:
        value.rect = {pick(-10, 600), pick(-10, 600), pick(-10, 1300), pick(-10, 800)};
        break;
    case zr::Kind::Flag:
        value.number = pick(0, 1);
        break;
    default:
        REQUIRE(argument.kind == zr::Kind::Number); // others have a step of their own
        const bool ranged = argument.least > LLONG_MIN;
        const int least = ranged ? static_cast<int>(argument.least) : -2;
        const int most = ranged ? static_cast<int>(std::min(argument.most, 200LL)) : 5;
        value.number =
            chance(90) ? pick(least, most) : oneOf({least - 1, most + 1, INT_MIN, INT_MAX});
    }
    return value;
}

/// What is the host's side of a bargain is left to steps that keep it.
bool hasOwnStep(const zr::Export& row)
{
    static const std::set<std::string> own = {
        "ZRScreen_AddPerson",   "ZRScreen_ChangeLayout",      "ZRScreen_DelPerson",
        "ZRScreen_ExitMeeting", "ZRScreen_JoinMeetingFinish", "ZRScreen_MoveWindow",
        "ZRScreen_PlayFrame",   "ZRScreen_Preview",           "ZRScreen_Release",
        "ZRScreen_SetParent",   "ZRScreen_SetPersonInfo"};
    return row.argumentCount == 0 || row.arguments[0].kind != zr::Kind::Screen
           || own.count(row.name) > 0;
}

void Walk::callAnything(bool elsewhere)
{
    const zr::Export* chosen = nullptr;
    do
        chosen = zr::kExports + pick(0, static_cast<int>(std::size(zr::kExports)) - 1);
    while (hasOwnStep(*chosen) || (elsewhere && chosen->thread == zr::Thread::Gui));
    std::vector<zrhost::Value> values;
    for (std::size_t i = 0; i < chosen->argumentCount; ++i)
        values.push_back(anyValue(chosen->arguments[i]));
    trace += " " + std::string(chosen->name);
    const auto call = [&] { (void)zrhost::callExport(zr.exports, *chosen, values); };
    if (elsewhere)
        std::thread(call).join();
    else
        call();
}

struct Step
{
    int weight;
    const char* name;
    void (*take)(Walk& w);
};

const Step kStepTable[] = {
    {14, "join",
     [](Walk& w) {
         if (w.engine.streams().size() >= kMaxPeople)
             return;
         const int number = w.nextNumber++;
         const bool share = w.chance(8);
         w.engine.join(number, share          ? Kind::Share
                               : w.chance(5)  ? Kind::Self
                               : w.chance(10) ? Kind::Nameless
                                              : Kind::Person);
     }},
    {8, "leave", [](Walk& w) { w.leave(false); }},
    {3, "leaveSpecial", [](Walk& w) { w.leave(true); }},
    {1, "everybodyLeaves",
     [](Walk& w) {
         if (w.depth == 0 && w.chance(20)) {
             CHECK_EQUAL(w.zr.ExitMeeting(w.screen), 1);
             w.engine.forgetAll();
             return;
         }
         while (const Stream* const stream = w.anyone())
             w.engine.leave(stream->number);
     }},
    {14, "mode",
     [](Walk& w) {
         std::map<int, std::string> order;
         for (int i = w.chance(30) ? w.pick(0, 8) : 0; i > 0; --i)
             order[w.pick(-3, 12)] = w.anyId();
         const int mode = w.chance(90) ? w.pick(1, 14) : w.oneOf({0, -1, 15, 99, INT_MAX, INT_MIN});
         w.zr.ChangeLayout(w.screen, static_cast<eLayoutType>(mode), order);
     }},
    {5, "info",
     [](Walk& w) {
         // The kind stays: from whom a grade may be asked depends on it.
         if (const Stream* const stream = w.anyone())
             w.zr.SetPersonInfo(w.screen, stream->play, stream->kind == Kind::Self, w.pick(-1, 3),
                                text(""), w.pick(-1, 5));
     }},
    {2, "joinFinish", [](Walk& w) { w.zr.JoinMeetingFinish(w.screen, w.chance(90)); }},
    {56, "anything", [](Walk& w) { w.callAnything(false); }},
    {3, "resize",
     [](Walk& w) {
         w.meeting.moveTo(w.oneOf({1280, 1280, 640, 320, 49, 1}), w.oneOf({720, 360, 20}));
         w.zr.ReOrder(w.screen, false);
     }},
    {5, "mouse",
     [](Walk& w) {
         if (w.depth > 0)
             return;
         const int x = w.pick(0, 1279);
         const int y = w.pick(0, 719);
         if (w.chance(40))
             desktop::turnWheel({x, y}, w.pick(-3, 3));
         else
             desktop::click({x, y});
         if (w.chance(30))
             desktop::click({x, y}); // a double click
         if (w.chance(50))
             w.engine.run(10);
     }},
    {12, "frames", [](Walk& w) { w.engine.deliver(); }},
    {12, "elsewhere", [](Walk& w) { w.callAnything(true); }},
    // Also from inside a message, as a menu does.
    {4, "loop", [](Walk& w) { w.engine.run(w.pick(0, 20)); }},
};

void Walk::step()
{
    const Step& drawn = drawRow(kStepTable, random);
    trace += std::string(depth > 0 ? ">" : " ") + drawn.name;
    engine.step = trace;
    drawn.take(*this);
}

void Walk::checkBatch()
{
    for (const int number : engine.visible()) {
        const auto found = engine.streams().find(number);
        if (found != engine.streams().end()) // else he left from inside a message of the query
            CHECK_ROW(found->second.wanted,
                      found->second.id + " is visible without a stream:" + trace);
    }
    for (const char* nobody : {"nobody", "u0", ""})
        CHECK_ROW(zr.IsPersonVisible(screen, text(nobody)) == 0, nobody);
    for (const Message& message : meeting.inbox.all())
        CHECK(message.thread == std::this_thread::get_id());
    meeting.inbox.clear();
    trace.clear();
}

void Walk::checkQuiet(long long at)
{
    std::printf("%lld steps\n", at);
    std::fflush(stdout);
    zr.SetOpenPollingPage(screen, false, 0);
    zr.JoinMeetingFinish(screen, true);
    meeting.moveTo(1280, 720);
    depth = 99; // the host is quiet too
    desktop::moveTo({1900, 1000});
    engine.rest("after " + std::to_string(at) + " steps");
    depth = 0;
}

void Walk::run(long long steps)
{
    long long nextQuiet = kStepsToQuiet;
    for (long long done = 0; done < steps;) {
        const int row = pick(1, kStepsInARow);
        for (int i = 0; i < row; ++i)
            step();
        done += row;
        engine.run(pick(0, 15));
        engine.deliver();
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
    if (const char* const trace = std::getenv("ZRSCREEN_TRACE")) // every line of it can be read
        CHECK(zrhost::readScenario(trace).size() > static_cast<std::size_t>(steps));
}
