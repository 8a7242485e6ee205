// Arguments that no host should pass: each is refused as the header says, and logged. The table of
// the exports tells what each argument is, and so what is wrong for it.
#include "check.h"
#include "meeting.h"
#include "scenario.h"
#include "text.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <map>
#include <sstream>
#include <utility>

namespace {

using zr::Kind;
using zr::Use;
using zrhost::Value;

void* unreadable()
{
    return reinterpret_cast<void*>(uintptr_t{0x10});
}

Value at(const void* address)
{
    Value value;
    value.address = const_cast<void*>(address);
    return value;
}

VantrelRTCVideoFrameQT frameOf(const void* data, uint32_t widthPx, uint32_t heightPx)
{
    VantrelRTCVideoFrameQT frame{};
    frame.pData = static_cast<const uint8_t*>(data);
    frame.width = widthPx;
    frame.height = heightPx;
    return frame;
}

enum class Verdict
{
    Refused, ///< and logged
    Quiet,   ///< refused without a line
    Taken,
    Either
};

/// A value that nobody should pass.
struct Hostile
{
    std::string what;
    Value value;
    Verdict verdict;
    const char* logged = ""; ///< what the log says of it
};

/// What the exports are called with.
enum class Round
{
    Right,
    ToRefuse,
    Odd ///< wrong as well, but not to be refused
};

/// A participant in a small window, an extended screen and a control of each kind; and as many
/// that are gone. What is left of it goes with the library.
class Victim
{
public:
    Victim();
    /// Calls every export with everything that is wrong for one of its arguments while the others
    /// are right; or with all of them right, unless it ends a handle.
    void attack(Round round);
    /// Releases the screen and goes on with another one.
    void reopen();
    const HostWindow window{640, 360};
    Meeting meeting{&window, 640, 360};
    Module& zr = meeting.zr;
    std::map<Kind, void*> live;
    std::map<Kind, void*> gone;
    LogCapture log;

private:
    void open(std::map<Kind, void*>& handles);
    /// Gives an extended screen its participant.
    void bind(void* ext) const;
    [[nodiscard]] Value right(const zr::Argument& argument) const;
    [[nodiscard]] std::vector<Hostile> wrong(const zr::Argument& argument) const;
    void addWrongAddresses(const zr::Argument& argument, std::vector<Hostile>& rows) const;
    void addWrongHandles(Kind kind, std::vector<Hostile>& rows) const;
    void addWrongTexts(const zr::Argument& argument, std::vector<Hostile>& rows) const;
    /// Makes a call. @return whether its answer is that of a refused one
    [[nodiscard]] bool refuses(const zr::Export& row, std::vector<Value> values) const;
    /// @param values right ones, but for the argument `at`
    void judge(const zr::Export& row, std::size_t at, const Hostile& hostile,
               const std::vector<Value>& values);

    Round m_round = Round::Right;
    /// What the log says of a participant who was deleted from this screen.
    const char* m_goneText = "iter != pScreen->mapHadDelPlay.end()";
    PatchyMemory m_memory;
    Picture m_picture{320, 180, kRed};
    std::vector<VantrelRTCVideoFrameQT> m_badFrames;
    /// Ends where its memory does.
    VantrelRTCVideoFrameQT m_smallest = frameOf(m_memory.begin + m_memory.page - 3, 1, 1);
    std::vector<uint64_t> m_foreign = std::vector<uint64_t>(64, 0x5a5a5a5a5a5a5a5a);
    std::string m_long = std::string(100000, 'n');
    std::string m_tooLong = std::string(1024 * 1024 + 1, 'n');
    // One long side at a time: both would be gigabytes of picture.
    tagRECT m_areas[5] = {{0, 0, 100, 60},
                          {INT_MIN, 0, INT_MAX, 60},
                          {0, INT_MIN, 60, INT_MAX},
                          {-1, -1, INT_MAX, -1},
                          {INT_MAX / 3, INT_MAX / 3, INT_MIN, INT_MIN}};
    tagPOINT m_farPoint{INT_MAX, INT_MIN};
    std::map<int, std::string> m_oddOrder{{INT_MIN, "u1"}, {0, ""}, {INT_MAX, m_long}};
    __WTMark_Info m_longWatermark{true, INT_MIN, m_tooLong, "1", "a@b.c"};
};

Victim::Victim()
{
    const uint8_t* const data = m_picture.frame.pData;
    m_badFrames = {
        frameOf(nullptr, 320, 180),
        frameOf(data, 0, 180),
        frameOf(data, 16, 16385),
        frameOf(unreadable(), 320, 180),
        frameOf(m_memory.begin, 160, 90), // the first byte can be read, the last one cannot
        frameOf(reinterpret_cast<const void*>(UINTPTR_MAX - 64), 320, 180),
    };
    open(live);
    live[Kind::Screen] = meeting.screen;
    live[Kind::Play] = meeting.join(1);
    open(gone); // while the others live, so that none has the address of another
    gone[Kind::Play] = meeting.join(2);
    gone[Kind::Screen] = zr.Init(nullptr, nullptr);
    for (const auto& [kind, handle] : gone)
        zrhost::releaseHandle(zr.exports, kind, handle);
    CHECK_EQUAL(zr.DelPerson(meeting.screen, gone[Kind::Play], false), 1);
    CHECK(pumpUntil([&] { return meeting.inbox.count(ZRMSG_VIDEO_SHOWN, 1) > 0; }));
}

void Victim::open(std::map<Kind, void*>& handles)
{
    const HWND parent = window.hwnd();
    const zr::Exports& api = zr.exports;
    handles[Kind::LineEdit] = api.ZRCtrl.QLineEdit_Init(parent, m_areas, "");
    handles[Kind::TextBox] = api.ZRCtrl.QTextEdit_Init(parent, m_areas, 1, 2, 3);
    handles[Kind::DatePicker] = api.ZRScreenDate.Init(parent, nullptr);
    handles[Kind::Ext] = api.ZRScreenExt.Init(parent, nullptr);
    for (const auto& [kind, handle] : handles)
        REQUIRE(handle != nullptr);
    bind(handles[Kind::Ext]);
}

void Victim::bind(void* ext) const
{
    CHECK_EQUAL(zr.exports.ZRScreenExt.SetPersonInfo(ext, ext, "u1", false, 0, "Ann", 0), 1);
}

void Victim::reopen()
{
    zr.Release(meeting.screen);
    gone[Kind::Screen] = meeting.screen;
    gone[Kind::Play] = live[Kind::Play];
    m_goneText = "";
    live[Kind::Screen] = meeting.screen = zr.Init(window.hwnd(), meeting.inbox.notify());
    REQUIRE(meeting.screen != nullptr);
    CHECK_EQUAL(zr.JoinMeetingFinish(meeting.screen, true), 1);
    live[Kind::Play] = meeting.join(1);
}

Value Victim::right(const zr::Argument& argument) const
{
    Value value;
    if (isHandle(argument.kind))
        value.handle = live.at(argument.kind);
    else if (argument.kind == Kind::Window)
        value.handle = window.hwnd();
    else if (argument.kind == Kind::HostValue)
        value.handle = hostValue(1);
    value.text = argument.kind == Kind::Buffer ? std::string(64, '\0') : "u1";
    value.length = 64;
    value.rect = m_areas[0];
    value.point = {10, 10};
    value.order = {{0, "u1"}};
    value.watermark = {true, 1, "Ann", "1", "a@b.c"};
    value.frame = m_picture.frame;
    value.number = std::max(argument.least, 0LL);
    return value;
}

void Victim::addWrongAddresses(const zr::Argument& argument, std::vector<Hostile>& rows) const
{
    const bool isPlay = argument.kind == Kind::Play;
    Value null = at(nullptr);
    Value bad = at(unreadable());
    bad.notify = reinterpret_cast<ZRNotify>(unreadable());
    rows.push_back({"null", null,
                    isQuietWhenNull(argument)       ? Verdict::Quiet
                    : argument.required             ? Verdict::Refused
                    : argument.kind == Kind::UserId ? Verdict::Either
                                                    : Verdict::Taken,
                    isPlay                           ? "hPlay == nullptr failed"
                    : argument.kind == Kind::Picture ? "pWin32Frame == nullptr"
                                                     : ""});
    rows.push_back({"unreadable", bad, Verdict::Refused,
                    isPlay ? "IsBadReadPtr(pPlay, sizeof(ST_ZRPlayHdl)) failed" : ""});
}

void Victim::addWrongHandles(Kind kind, std::vector<Hostile>& rows) const
{
    void* const own = live.at(kind);
    rows.push_back({"foreign", at(m_foreign.data()), Verdict::Refused});
    rows.push_back({"misaligned", at(static_cast<char*>(own) + 1), Verdict::Refused});
    if (gone.at(kind) != own) // which may have got the old address
        rows.push_back({"gone", at(gone.at(kind)), Verdict::Refused,
                        kind == Kind::Play     ? m_goneText
                        : kind == Kind::Screen ? "IsVaildScreenHandle failed"
                                               : ""});
    for (const auto& [other, handle] : live) {
        if (other != kind)
            rows.push_back({"of another kind", at(handle), Verdict::Refused});
    }
}

void Victim::addWrongTexts(const zr::Argument& argument, std::vector<Hostile>& rows) const
{
    static const std::string invalid = "\xff\xfe\xc0\xed\xa0\x80\xf8";
    if (argument.byValue) {
        for (const std::string& text : {std::string(), invalid, m_tooLong}) {
            Value value;
            value.text = text;
            rows.push_back({"odd", value, Verdict::Taken});
        }
        return;
    }
    // An id that is odd is only nobody's.
    const Verdict odd = argument.kind == Kind::UserId ? Verdict::Either : Verdict::Taken;
    addWrongAddresses(argument, rows);
    rows.push_back({"without an end", at(m_memory.begin), Verdict::Refused});
    rows.push_back({"too long", at(m_tooLong.data()), Verdict::Refused});
    rows.push_back({"long", at(m_long.data()), odd});
    rows.push_back({"invalid", at(invalid.data()), odd});
}

std::vector<Hostile> Victim::wrong(const zr::Argument& argument) const
{
    std::vector<Hostile> rows;
    switch (argument.kind) {
    case Kind::Window:
        return {{"no window", at(reinterpret_cast<void*>(uintptr_t{0x7ffffff0})),
                 argument.checked ? Verdict::Refused : Verdict::Either}};
    case Kind::HostValue:
        return {{"unreadable", at(unreadable()), Verdict::Taken}};
    case Kind::Order:
        return {{"extreme", at(&m_oddOrder), Verdict::Taken}};
    case Kind::Buffer: // what cannot be written is too small
    case Kind::Flag:
        return {};
    case Kind::Number:
        for (const int n : {INT_MIN, -1, 0, 15, 1000, INT_MAX}) {
            Value value;
            value.number = n;
            const bool outside = n < argument.least || n > argument.most;
            rows.push_back({std::to_string(n), value,
                            argument.checked && outside ? Verdict::Refused : Verdict::Taken});
        }
        return rows;
    case Kind::UserId:
    case Kind::Text:
        addWrongTexts(argument, rows);
        return rows;
    case Kind::Picture:
        for (const VantrelRTCVideoFrameQT& frame : m_badFrames)
            rows.push_back(
                {std::to_string(&frame - m_badFrames.data()), at(&frame), Verdict::Refused});
        rows.push_back({"smallest", at(&m_smallest), Verdict::Taken});
        break;
    case Kind::Rectangle:
        for (const tagRECT* area = m_areas + 1; area != std::end(m_areas); ++area)
            rows.push_back({"extreme", at(area), Verdict::Taken});
        break;
    case Kind::Point:
        rows.push_back({"extreme", at(&m_farPoint), Verdict::Taken});
        break;
    case Kind::Watermark:
        rows.push_back({"too long", at(&m_longWatermark), Verdict::Refused});
        break;
    default:
        if (isHandle(argument.kind))
            addWrongHandles(argument.kind, rows);
    }
    addWrongAddresses(argument, rows);
    return rows;
}

bool holdsOneOf(const std::string& text, std::initializer_list<const char*> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return text.find(word) != std::string::npos; });
}

/// The lines that say what failed.
int countRefusals(const std::string& log)
{
    int count = 0;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
        count += holdsOneOf(line, {"failed", "refused", "== nullptr", "mapHadDelPlay.end"}) ? 1 : 0;
    return count;
}

/// Whether a line of the log names the export.
bool isNamed(const std::string& log, const std::string& name)
{
    return log.find("][" + name + ":") != std::string::npos;
}

bool Victim::refuses(const zr::Export& row, std::vector<Value> values) const
{
    const zrhost::Answer answer = zrhost::callExport(zr.exports, row, values);
    const int refused = row.answer.whenRefused;
    if (isHandle(row.answer.kind)) {
        if (answer.handle)
            zrhost::releaseHandle(zr.exports, row.answer.kind, answer.handle);
        return !answer.handle;
    }
    if (row.answer.kind == Kind::Rectangle)
        return answer.rect.left == 0 && answer.rect.top == 0 && answer.rect.right == refused
               && answer.rect.bottom == refused;
    return row.answer.kind == Kind::Nothing || answer.number == refused;
}

void Victim::judge(const zr::Export& row, std::size_t at, const Hostile& hostile,
                   const std::vector<Value>& values)
{
    const zr::Argument& argument = row.arguments[at];
    const Verdict verdict = argument.use == Use::Ignored ? Verdict::Taken : hostile.verdict;
    const bool isToBe = verdict == Verdict::Refused || verdict == Verdict::Quiet;
    if (isToBe != (m_round == Round::ToRefuse))
        return;
    const std::string name =
        row.name + std::string(", argument ") + std::to_string(at + 1) + " " + hostile.what;
    if (argument.kind == Kind::Picture) // a bad one is logged again after a good
        (void)refuses(row, values);
    std::vector<Value> attempt = values;
    attempt[at] = hostile.value;
    (void)log.take();
    const bool refused = refuses(row, attempt);
    if (!isToBe) {
        CHECK_ROW(verdict != Verdict::Taken || row.answer.kind != Kind::Done || !refused
                      || row.answer.whenRefused == 1,
                  name);
        return;
    }
    CHECK_ROW(refused, name);
    // Behind what was posted.
    int length = 0;
    (void)zr.exports.ZRCtrl.QLineEdit_GetText(live.at(Kind::LineEdit), nullptr, length);
    const std::string logged = log.take();
    CHECK_ROW(verdict == Verdict::Quiet || countRefusals(logged) == 1,
              "log of " + name + ": " + logged);
    CHECK_ROW(logged.find(hostile.logged) != std::string::npos, "text in the log of " + name);
    CHECK_ROW(argument.use != Use::Ends || isNamed(logged, row.name), "name in it, " + name);
}

/// The trace, which is a scenario of the demonstration host's: the words of each call.
std::multimap<std::string, std::vector<std::string>> tracedCalls()
{
    const char* const file = std::getenv("ZRSCREEN_TRACE");
    REQUIRE(file != nullptr);
    std::multimap<std::string, std::vector<std::string>> calls;
    for (const zrhost::ScenarioStep& step : zrhost::readScenario(file)) {
        std::vector<std::string> words = zrhost::splitWords(step.command);
        if (words[0] == "call")
            calls.emplace(words[1].substr(words[1].find('=') + 1), words);
    }
    return calls;
}

/// Whether a call in the trace has one of its words.
bool isTraced(const std::string& word)
{
    for (const auto& [name, words] : tracedCalls()) {
        if (std::find(words.begin(), words.end(), word) != words.end())
            return true;
    }
    return false;
}

/// What the trace says of a right argument; empty for what only it can name.
std::string tracedWord(const zr::Argument& argument, const Value& value)
{
    switch (argument.kind) {
    case Kind::Number:
        return std::to_string(value.number);
    case Kind::Flag:
        return value.number == 0 ? "off" : "on";
    case Kind::UserId:
    case Kind::Text:
        return value.text;
    case Kind::HostValue:
        return "1";
    case Kind::Rectangle:
        return "0,0,100,60";
    case Kind::Order:
        return "0=u1";
    case Kind::Watermark:
        return "1,Ann,1,a@b.c,on";
    default:
        return {};
    }
}

/// Whether a call in the trace has these arguments.
bool isTraced(const zr::Export& row, const std::vector<Value>& values)
{
    const auto calls = tracedCalls();
    const auto [begin, end] = calls.equal_range(row.name);
    return std::any_of(begin, end, [&](const auto& call) {
        for (std::size_t i = 0; i < row.argumentCount; ++i) {
            const std::string word = tracedWord(row.arguments[i], values[i]);
            if (!word.empty() && call.second[i + 2] != word)
                return false;
        }
        return call.second.size() == row.argumentCount + 2;
    });
}

void Victim::attack(Round round)
{
    m_round = round;
    for (const zr::Export& row : zr::kExports) {
        bind(live.at(Kind::Ext)); // whatever the calls before have made of it
        bool ends = false;
        std::vector<Value> values;
        for (std::size_t i = 0; i < row.argumentCount; ++i) {
            values.push_back(right(row.arguments[i]));
            values[i].number += static_cast<long long>(i % 2); // neighbours differ
            ends |= row.arguments[i].use == Use::Ends;
        }
        if (round == Round::Right && !ends) {
            (void)log.take();
            (void)refuses(row, values);
            const bool isFrequent = holdsOneOf(row.name, {"PlayFrame", "SetVolume"});
            CHECK_ROW(isNamed(log.take(), row.name) != isFrequent, row.name);
            CHECK_ROW(isTraced(row, values), row.name);
        }
        for (std::size_t i = 0; round != Round::Right && i < row.argumentCount; ++i) {
            for (const Hostile& hostile : wrong(row.arguments[i]))
                judge(row, i, hostile, values);
        }
    }
}

} // namespace

ZR_CASE(refusal, everyExportNamesItselfInTheLog)
{
    Victim().attack(Round::Right);
}

ZR_CASE(refusal, whatIsWrongIsRefusedAndNothingIsLost)
{
    Victim m;
    Meeting& meeting = m.meeting;
    Module& zr = m.zr;
    const int added = meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED);
    m.attack(Round::ToRefuse);
    runElsewhere([&m] { m.attack(Round::ToRefuse); });
    CHECK_EQUAL(meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED), added);
    CHECK_EQUAL(zr.GetCurMode(meeting.screen), int{eLayoutEqualCut});
    // A released screen takes its handles along.
    m.reopen();
    m.attack(Round::ToRefuse);
    CHECK_EQUAL(zr.IsPersonVisible(meeting.screen, text("u1")), 1);
    void* const s = std::exchange(meeting.screen, nullptr);
    for (int i = 0; i < 2; ++i)
        zr.Release(s);
    for (const char* const word : {"!null", "!unreadable", "!unknown", "320x180#none"})
        CHECK_ROW(isTraced(word), word);
}

ZR_CASE(refusal, whatIsOddDoesNoHarm)
{
    Victim m;
    Meeting& meeting = m.meeting;
    Module& zr = m.zr;
    void* const s = meeting.screen;
    m.attack(Round::Odd);
    CHECK(isTraced("!bytes:%FF%FE%C0%ED%A0%80%F8"));
    pump(100);
    // Join times are made unique by counting up, and there is nothing above the highest.
    for (int i = 0; i < 3; ++i) {
        CHECK(zr.AddPerson(s, text("max" + std::to_string(i)), text("P"), LLONG_MAX, i, nullptr));
        CHECK(zr.AddPerson(s, text("min" + std::to_string(i)), text("P"), LLONG_MIN, i, nullptr));
    }
    CHECK_EQUAL(zr.SetOpenPollingPage(s, false, 10), 1);
    CHECK_EQUAL(zr.SetLayoutCtrl(s, false, false, -1, -1, false), 1);
    CHECK_EQUAL(zr.AllLook(s, m.live[Kind::Play], 0), 1);
    CHECK_EQUAL(zr.SetParent(s, m.window.hwnd()), 1);
    CHECK_EQUAL(zr.JoinMeetingFinish(s, true), 1);
    meeting.moveTo(640, 360);
    REQUIRE(meeting.changeMode(eLayoutGrid16));
    for (const char* const id : {"u1", "min0", "max2"})
        CHECK_ROW(pumpUntil([&] { return zr.IsPersonVisible(s, text(id)) == 1; }), id);
}
