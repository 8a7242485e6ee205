// Arguments that no host should pass: each is refused as the header says, and logged. The table of
// the exports tells what each argument is, and so what is wrong for it.
#include "check.h"
#include "meeting.h"

#include <climits>
#include <cstring>
#include <limits>
#include <map>
#include <sstream>
#include <tuple>
#include <utility>

namespace {

using zr::Kind;
using zr::Use;

void* unreadable()
{
    return reinterpret_cast<void*>(uintptr_t{0x10});
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
template<typename T>
struct Hostile
{
    std::string what;
    T value;
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

/// How an argument is passed here: a reference as a pointer, so that it can be a wrong one.
template<typename T>
using Passed = std::conditional_t<std::is_reference_v<T>, std::add_pointer_t<T>, T>;

/// A participant in a small window, an extended screen and a control of each kind; and as many
/// that are gone.
class Victim
{
public:
    Victim();
    ~Victim()
    {
        for (const auto& [kind, handle] : live) {
            if (kind != Kind::Screen && kind != Kind::Play)
                giveBack(kind, handle);
        }
    }
    Victim(const Victim&) = delete;
    Victim& operator=(const Victim&) = delete;

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
    void giveBack(Kind kind, void* handle) const;
    template<typename T>
    T right(const zr::Argument& argument);
    template<typename T>
    std::vector<Hostile<T>> wrong(const zr::Argument& argument);
    std::vector<Hostile<void*>> wrongPointers(const zr::Argument& argument);
    template<typename Result, typename... Arguments>
    void attackExport(const zr::Export& row, Result(ZR_CALL* function)(Arguments...));
    template<std::size_t at, typename Values, typename Call>
    void attackFrom(const zr::Export& row, const Values& values, const Call& refuses);
    template<typename T>
    void judge(const zr::Export& row, std::size_t at, const Hostile<T>& hostile,
               const std::function<bool()>& refuses);

    Round m_round = Round::Right;
    /// What the log says of a participant who was deleted from this screen.
    const char* m_goneText = "iter != pScreen->mapHadDelPlay.end()";
    PatchyMemory m_memory;
    Picture m_picture{320, 180, kRed};
    std::vector<VantrelRTCVideoFrameQT> m_badFrames;
    /// Ends where its memory does.
    VantrelRTCVideoFrameQT m_smallest = frameOf(m_memory.begin + m_memory.page - 3, 1, 1);
    uint64_t m_foreign[64];
    std::string m_long = std::string(100000, 'n');
    std::string m_tooLong = std::string(1024 * 1024 + 1, 'n');
    // One long side at a time: both would be gigabytes of picture.
    tagRECT m_areas[5] = {{0, 0, 100, 60},
                          {INT_MIN, 0, INT_MAX, 60},
                          {0, INT_MIN, 60, INT_MAX},
                          {-1, -1, INT_MAX, -1},
                          {INT_MAX / 3, INT_MAX / 3, INT_MIN, INT_MIN}};
    tagPOINT m_points[2] = {{10, 10}, {INT_MAX, INT_MIN}};
    std::map<int, std::string> m_orders[2] = {{{0, "u1"}},
                                              {{INT_MIN, "u1"}, {0, ""}, {INT_MAX, m_long}}};
    __WTMark_Info m_watermarks[2] = {{true, 1, "Ann", "1", "a@b.c"},
                                     {true, INT_MIN, m_tooLong, "1", "a@b.c"}};
    char m_id[3] = "u1";
    char m_buffer[64] = "";
    int m_length = sizeof m_buffer;
};

Victim::Victim()
{
    std::memset(m_foreign, 0x5a, sizeof m_foreign);
    const uint8_t* const data = m_picture.frame.pData;
    m_badFrames = {
        frameOf(nullptr, 320, 180),
        frameOf(data, 0, 180),
        frameOf(data, 320, 0),
        frameOf(data, 16385, 16),
        frameOf(data, 16, 16385),
        frameOf(data, UINT32_MAX, UINT32_MAX),
        frameOf(data, 0x80000000U, 2),
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
        giveBack(kind, handle);
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

void Victim::giveBack(Kind kind, void* handle) const
{
    zr.exports.forEach([&](const zr::Export& row, auto function) {
        if constexpr (std::is_same_v<decltype(function), decltype(&::ZRScreen_Release)>) {
            if (row.arguments[0].kind == kind && row.arguments[0].use == Use::Ends)
                function(handle);
        }
    });
    if (kind == Kind::Play)
        CHECK_EQUAL(zr.DelPerson(meeting.screen, handle, false), 1);
}

template<typename T>
T Victim::right(const zr::Argument& argument)
{
    if constexpr (std::is_same_v<T, HWND>) {
        if (argument.kind == Kind::Window)
            return window.hwnd();
    }
    if constexpr (std::is_same_v<T, void*>)
        return argument.kind == Kind::Picture     ? &m_picture.frame
               : argument.kind == Kind::HostValue ? hostValue(1)
                                                  : live.at(argument.kind);
    else if constexpr (zr::table::isText<T>)
        return argument.kind == Kind::Buffer ? m_buffer : m_id;
    else if constexpr (std::is_same_v<T, std::string>)
        return "u1";
    else if constexpr (std::is_same_v<T, tagRECT*>)
        return m_areas;
    else if constexpr (std::is_same_v<T, tagPOINT*>)
        return m_points;
    else if constexpr (std::is_same_v<T, const std::map<int, std::string>*>)
        return m_orders;
    else if constexpr (std::is_same_v<T, const __WTMark_Info*>)
        return m_watermarks;
    else if constexpr (std::is_same_v<T, int*>)
        return &m_length;
    else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>)
        return static_cast<T>(std::max(argument.least, 0LL));
    else
        return nullptr; // a notification function
}

/// Handles and pictures.
std::vector<Hostile<void*>> Victim::wrongPointers(const zr::Argument& argument)
{
    std::vector<Hostile<void*>> rows;
    if (argument.kind == Kind::Picture) {
        for (VantrelRTCVideoFrameQT& frame : m_badFrames)
            rows.push_back({std::to_string(&frame - m_badFrames.data()), &frame, Verdict::Refused});
        rows.push_back({"smallest", &m_smallest, Verdict::Taken});
    }
    if (!isHandle(argument.kind))
        return rows;
    void* const own = live.at(argument.kind);
    rows.push_back({"foreign", m_foreign, Verdict::Refused});
    rows.push_back({"misaligned", static_cast<char*>(own) + 1, Verdict::Refused});
    if (gone.at(argument.kind) != own) // which may have got the old address
        rows.push_back({"gone", gone.at(argument.kind), Verdict::Refused,
                        argument.kind == Kind::Play     ? m_goneText
                        : argument.kind == Kind::Screen ? "IsVaildScreenHandle failed"
                                                        : ""});
    for (const auto& [kind, handle] : live) {
        if (kind != argument.kind)
            rows.push_back({"of another kind", handle, Verdict::Refused});
    }
    return rows;
}

template<typename T>
std::vector<Hostile<T>> Victim::wrong(const zr::Argument& argument)
{
    // An id that is odd is only nobody's.
    const Verdict odd = argument.kind == Kind::UserId ? Verdict::Either : Verdict::Taken;
    std::vector<Hostile<T>> rows;
    if constexpr (std::is_same_v<T, HWND>) {
        if (argument.kind == Kind::Window)
            return {{"no window", reinterpret_cast<HWND>(uintptr_t{0x7ffffff0}),
                     argument.checked ? Verdict::Refused : Verdict::Either}};
    }
    if constexpr (std::is_same_v<T, void*>)
        rows = wrongPointers(argument);
    if constexpr (std::is_pointer_v<T> && !std::is_same_v<T, const std::map<int, std::string>*>) {
        if (argument.kind == Kind::Buffer)
            return {}; // what cannot be written is too small
        if (argument.kind == Kind::HostValue)
            return {{"unreadable", reinterpret_cast<T>(unreadable()), Verdict::Taken}};
        rows.push_back({"null", nullptr,
                        isQuietWhenNull(argument) ? Verdict::Quiet
                        : argument.required       ? Verdict::Refused
                                                  : odd,
                        argument.kind == Kind::Play      ? "hPlay == nullptr failed"
                        : argument.kind == Kind::Picture ? "pWin32Frame == nullptr"
                                                         : ""});
        rows.push_back({"unreadable", reinterpret_cast<T>(unreadable()), Verdict::Refused,
                        argument.kind == Kind::Play
                            ? "IsBadReadPtr(pPlay, sizeof(ST_ZRPlayHdl)) failed"
                            : ""});
    }
    if constexpr (zr::table::isText<T>) {
        static char invalid[] = "\xff\xfe\xc0\xed\xa0\x80\xf8";
        rows.push_back({"without an end", m_memory.begin, Verdict::Refused});
        rows.push_back({"too long", text(m_tooLong), Verdict::Refused});
        rows.push_back({"long", text(m_long), odd});
        rows.push_back({"invalid", invalid, odd});
    } else if constexpr (std::is_same_v<T, std::string>) {
        for (const std::string& id : {std::string(), std::string("\xff\xfe\xc0"), m_tooLong})
            rows.push_back({"odd", id, Verdict::Taken});
    } else if constexpr (std::is_same_v<T, tagRECT*>) {
        for (tagRECT* area = m_areas + 1; area != std::end(m_areas); ++area)
            rows.push_back({"extreme", area, Verdict::Taken});
    } else if constexpr (std::is_same_v<T, tagPOINT*>) {
        rows.push_back({"extreme", m_points + 1, Verdict::Taken});
    } else if constexpr (std::is_same_v<T, const std::map<int, std::string>*>) {
        rows.push_back({"extreme", m_orders + 1, Verdict::Taken});
    } else if constexpr (std::is_same_v<T, const __WTMark_Info*>) {
        rows.push_back({"too long", m_watermarks + 1, Verdict::Refused});
    } else if constexpr (std::is_enum_v<T> || (std::is_signed_v<T> && std::is_arithmetic_v<T>)) {
        using Number = std::conditional_t<std::is_enum_v<T>, int, T>;
        using Limits = std::numeric_limits<Number>;
        for (const Number n :
             {Limits::min(), Number(-1), Number(0), Number(15), Number(1000), Limits::max()}) {
            const bool outside = n < argument.least || n > argument.most;
            rows.push_back({std::to_string(n), static_cast<T>(n),
                            argument.checked && outside ? Verdict::Refused : Verdict::Taken});
        }
    }
    return rows;
}

/// Whether an answer is that of a refused call.
bool isRefused(const zr::Answer& row, int answer)
{
    return answer == row.whenRefused;
}
bool isRefused(const zr::Answer&, const void* answer)
{
    return !answer;
}
bool isRefused(const zr::Answer& row, const ZRRect& answer)
{
    return answer.left == 0 && answer.top == 0 && answer.right == row.whenRefused
           && answer.bottom == row.whenRefused;
}

/// The lines that say what failed, in one of these words.
int countRefusals(const std::string& log)
{
    int count = 0;
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);) {
        for (const char* const word :
             {"failed", "refused", "== nullptr", "iter != pScreen->mapHadDelPlay.end()"}) {
            if (line.find(word) != std::string::npos) {
                ++count;
                break;
            }
        }
    }
    return count;
}

/// Whether a line of the log names the export.
bool isNamed(const std::string& log, const std::string& name)
{
    return log.find("][" + name + ":") != std::string::npos;
}

/// Frames and volumes come all the time.
bool isLogged(const std::string& name)
{
    return name.find("_PlayFrame") == std::string::npos
           && name.find("_SetVolume") == std::string::npos;
}

/// @param refuses makes the call, with a value for the argument `at` that is wrong
template<typename T>
void Victim::judge(const zr::Export& row, std::size_t at, const Hostile<T>& hostile,
                   const std::function<bool()>& refuses)
{
    const zr::Argument& argument = row.arguments[at];
    const Verdict verdict = argument.use == Use::Ignored ? Verdict::Taken : hostile.verdict;
    const bool isToBe = verdict == Verdict::Refused || verdict == Verdict::Quiet;
    if (isToBe != (m_round == Round::ToRefuse))
        return;
    const std::string name =
        row.name + std::string(", argument ") + std::to_string(at + 1) + " " + hostile.what;
    (void)log.take();
    const bool refused = refuses();
    if (!isToBe) {
        CHECK_ROW(verdict != Verdict::Taken || row.answer.kind != Kind::Done || !refused
                      || row.answer.whenRefused == 1,
                  name);
        return;
    }
    CHECK_ROW(refused, name);
    // Behind what was posted.
    (void)zr.exports.ZRCtrl.QLineEdit_GetText(live.at(Kind::LineEdit), nullptr, m_length);
    const std::string logged = log.take();
    CHECK_ROW(verdict == Verdict::Quiet || countRefusals(logged) == 1,
              "log of " + name + ": " + logged);
    CHECK_ROW(logged.find(hostile.logged) != std::string::npos, "text in the log of " + name);
    CHECK_ROW(argument.use != Use::Ends || isNamed(logged, row.name), "name in it, " + name);
}

template<std::size_t at, typename Values, typename Call>
void Victim::attackFrom(const zr::Export& row, const Values& values, const Call& refuses)
{
    if constexpr (at < std::tuple_size_v<Values>) {
        for (const auto& hostile : wrong<std::tuple_element_t<at, Values>>(row.arguments[at])) {
            if (row.arguments[at].kind == Kind::Picture) // a bad one is logged again after a good
                (void)refuses(values);
            Values attempt = values;
            std::get<at>(attempt) = hostile.value;
            judge(row, at, hostile, [&] { return refuses(attempt); });
        }
        attackFrom<at + 1>(row, values, refuses);
    }
}

template<typename Result, typename... Arguments>
void Victim::attackExport(const zr::Export& row, Result(ZR_CALL* function)(Arguments...))
{
    using Values = std::tuple<Passed<Arguments>...>;
    const auto call = reinterpret_cast<Result(ZR_CALL*)(Passed<Arguments>...)>(
        reinterpret_cast<void (*)()>(function));
    const auto refuses = [&](const Values& values) {
        if constexpr (std::is_void_v<Result>) {
            std::apply(call, values);
            return true;
        } else {
            const Result answer = std::apply(call, values);
            if constexpr (std::is_same_v<Result, void*>) {
                if (answer && row.answer.kind != Kind::Play)
                    giveBack(row.answer.kind, answer);
            }
            return isRefused(row.answer, answer);
        }
    };
    [[maybe_unused]] auto next = [at = row.arguments]() mutable -> const zr::Argument& {
        return *at++;
    };
    bool ends = false;
    for (std::size_t i = 0; i < row.argumentCount; ++i)
        ends |= row.arguments[i].use == Use::Ends;
    const Values values{right<Passed<Arguments>>(next())...};
    if (m_round != Round::Right) {
        attackFrom<0>(row, values, refuses);
    } else if (!ends) {
        (void)log.take();
        (void)refuses(values);
        CHECK_ROW(isNamed(log.take(), row.name) == isLogged(row.name), row.name);
    }
}

void Victim::attack(Round round)
{
    m_round = round;
    zr.exports.forEach([this](const zr::Export& row, auto function) {
        bind(live.at(Kind::Ext)); // whatever the calls before have made of it
        attackExport(row, function);
    });
}

} // namespace

ZR_CASE(refusal, everyExportNamesItselfInTheLog)
{
    Victim m;
    m.attack(Round::Right);
    (void)m.log.take();
    CHECK_EQUAL(m.zr.SetVolume(m.live[Kind::Screen], m.meeting.join(1), 100), 1); // another level
    CHECK_EQUAL(m.zr.exports.ZRScreenExt.SetVolume(m.live[Kind::Ext], "u1", 100), 1);
    const std::string logged = m.log.take();
    for (const char* const name : {"ZRScreen_SetVolume", "ZRScreenExt_SetVolume"})
        CHECK_ROW(isNamed(logged, name), name);
}

ZR_CASE(refusal, whatIsWrongIsRefusedAndNothingIsLost)
{
    Victim m;
    Meeting& meeting = m.meeting;
    Module& zr = m.zr;
    const int added = meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED);
    const auto attackTwice = [&m] {
        m.attack(Round::ToRefuse);
        runElsewhere([&m] { m.attack(Round::ToRefuse); });
    };
    attackTwice();
    CHECK_EQUAL(meeting.inbox.count(ZRMSG_PERSON_INFO_UPDATED), added);
    CHECK_EQUAL(zr.GetCurMode(meeting.screen), int{eLayoutEqualCut});
    // A released screen takes its handles along.
    m.reopen();
    attackTwice();
    CHECK_EQUAL(zr.IsPersonVisible(meeting.screen, text("u1")), 1);
    void* const s = std::exchange(meeting.screen, nullptr);
    for (int i = 0; i < 2; ++i)
        zr.Release(s);
}

ZR_CASE(refusal, whatIsOddDoesNoHarm)
{
    Victim m;
    Meeting& meeting = m.meeting;
    Module& zr = m.zr;
    void* const s = meeting.screen;
    m.attack(Round::Odd);
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
