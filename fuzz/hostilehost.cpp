#include "hostilehost.h"

#include "host_error.h"
#include "host_keyboard.h"
#include "hostwindow.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <future>
#include <iterator>
#include <mutex>
#include <thread>

namespace {

using zr::Kind;

constexpr Box kWindow{0, 0, 320, 180};
constexpr int kThreads = 4;
constexpr int kMaxDepth = 2;
constexpr std::size_t kMostWindows = 30;

/// All hosts' calls of one export.
struct Count
{
    std::atomic<unsigned long long> made{0};
    std::atomic<unsigned long long> accepted{0}; ///< of those that answer whether they were
};
std::array<Count, std::size(zr::kExports)> g_counts;
std::atomic<unsigned long long> g_calls{0};
constexpr unsigned long long kCallsToReport = 100000;
HostileHost* g_host = nullptr;

/// What was done last, for whoever looks into a finding: it may depend on the time, and not come
/// again.
struct Step
{
    const char* name = nullptr;
    int depth = 0;
    unsigned long long first = 0; ///< a call's first handle or number, a message's first value
    long long second = 0;
};
constexpr std::size_t kStepsKept = 200;
std::mutex g_stepLock;
std::array<Step, kStepsKept> g_steps; // guarded by g_stepLock, as is the next
std::size_t g_stepCount = 0;

void keepStep(const Step& step)
{
    const std::lock_guard lock(g_stepLock);
    g_steps[g_stepCount++ % kStepsKept] = step;
}

void printSteps()
{
    const std::lock_guard lock(g_stepLock);
    for (std::size_t i = g_stepCount < kStepsKept ? 0 : g_stepCount - kStepsKept; i < g_stepCount;
         ++i) {
        const Step& step = g_steps[i % kStepsKept];
        std::fprintf(stderr, "%*s%s %llx %lld\n", 2 * step.depth, "", step.name, step.first,
                     step.second);
    }
}

unsigned long long valueOf(const zrhost::Value& value)
{
    return value.handle ? reinterpret_cast<std::uintptr_t>(value.handle)
                        : static_cast<unsigned long long>(value.number);
}

bool isAccepted(const zr::Export& row, const zrhost::Answer& answer)
{
    return isHandle(row.answer.kind) ? answer.handle != nullptr : answer.number != 0;
}

const zr::Exports& exports()
{
    static const zr::Exports all = [] {
        zr::Exports found;
#define ZR_TAKE(family, name, thread, answer, arguments) found.family.name = &::family##_##name;
        ZR_EXPORTS(ZR_TAKE)
#undef ZR_TAKE
        return found;
    }();
    return all;
}

void* asHandle(WindowId window)
{
    return reinterpret_cast<void*>(window);
}

} // namespace

void HostileHost::printCalls()
{
    for (std::size_t i = 0; i < g_counts.size(); ++i)
        std::fprintf(stderr, "%10llu %10llu %s\n", g_counts[i].made.load(),
                     g_counts[i].accepted.load(), zr::kExports[i].name);
    std::fprintf(stderr, "calls: %llu\n", g_calls.load());
}

HostileHost::HostileHost(Script& script)
    : m_script(script)
    , m_wrong(m_handles, m_windows, notify)
{
    g_host = this;
    onFinding(printSteps);
    // The first call attaches the module. Its log would fill the disk.
    (void)exports().ZRScreen.IsExtendScreen();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    m_own.push_back(std::make_unique<HostWindow>(kWindow.w, kWindow.h));
    m_own.push_back(std::make_unique<HostWindow>(kWindow.w / 2, kWindow.h / 2, kWindow.w, 0));
    m_windows = {m_own[0]->hwnd(),
                 m_own[0]->hwnd(),
                 m_own[0]->hwnd(),
                 m_own[1]->hwnd(),
                 nullptr,
                 asHandle(0x7ffffff0),
                 asHandle(nativehost::desktop())};
}

HostileHost::~HostileHost()
{
    releaseAll();
    g_host = nullptr;
}

void HostileHost::act()
{
    const int choice = m_script.pick(256);
    if (choice < 232)
        callOnce();
    else if (choice < 238)
        turn();
    else if (choice < 242)
        useMouse();
    else if (choice < 244)
        useKeyboard();
    else if (choice < 246)
        changeWindow();
    else if (choice < 252)
        fireTimer(m_script.pick(256));
    else if (choice < 253)
        advanceClock(m_script.oneOf({10, 1000, 100000}));
    else if (m_depth == 0)
        callFromFourThreads();
}

// --- Calls ------------------------------------------------------------------------------------

bool HostileHost::isEnough(Kind kind)
{
    return m_handles.live(kind).size() >= (kind == Kind::Play ? 24U : 3U);
}

const zr::Export& HostileHost::anyExport()
{
    using namespace zr::table;
    // A third of the calls are those that bring a meeting about.
    static constexpr std::size_t kUsual[] = {
        kZRScreen_AddPerson, kZRScreen_AddPerson, kZRScreen_JoinMeetingFinish, kZRScreen_PlayFrame,
        kZRScreen_PlayFrame, kZRScreen_PlayFrame, kZRScreen_ChangeLayout,      kZRScreen_Preview,
    };
    // What takes a thousand times as long as others, or ends what those work on.
    static constexpr std::size_t kSeldom[] = {
        kZRScreen_Init,         kZRScreen_Release,
        kZRScreen_ExitMeeting,  kZRScreen_PopSelfShareWnd,
        kZRCtrl_QTextEdit_Init, kZRScreenDate_Init,
    };
    if (m_handles.live(Kind::Screen).empty() && m_script.once(8))
        return zr::kExports[kZRScreen_Init];
    const auto any = static_cast<std::size_t>(m_script.pick(128));
    const bool isUsual = any >= std::size(zr::kExports)
                         || (std::count(std::begin(kSeldom), std::end(kSeldom), any) > 0
                             && m_handles.live(Kind::Screen).size() > 0 && !m_script.once(16));
    return zr::kExports[isUsual ? m_script.oneOf(kUsual) : any];
}

HostileHost::Call HostileHost::anyCall()
{
    Call call{&anyExport(), {}, {}};
    for (std::size_t i = 0; i < call.row->argumentCount; ++i) {
        const zr::Argument& argument = call.row->arguments[i];
        zrhost::Value& value = call.values.emplace_back(m_wrong.any(argument, m_script));
        // Beforehand: the call may send messages, and its address may be given out again.
        if (argument.use == zr::Use::Ends)
            m_handles.end(argument.kind, value.handle);
        if (argument.kind == Kind::Notify && call.row->answer.kind == Kind::Screen)
            m_isDeaf |= value.notify != notify;
        if (value.notify == notify && call.row->answer.kind == Kind::DatePicker)
            value.notify = notifyDate;
    }
    if (m_handles.live(Kind::Screen).empty())
        m_told = Told(); // the next screen begins anew
    return call;
}

void HostileHost::run(Call& call) const
{
    const std::size_t given = call.values.size();
    keepStep({call.row->name, m_depth, given > 0 ? valueOf(call.values[0]) : 0,
              given > 1 ? static_cast<long long>(valueOf(call.values[1])) : 0});
    call.answer = zrhost::callExport(exports(), *call.row, call.values);
    Count& count = g_counts[static_cast<std::size_t>(call.row - zr::kExports)];
    ++count.made;
    if (isAccepted(*call.row, call.answer))
        ++count.accepted;
    const unsigned long long calls = ++g_calls;
    if (calls % kCallsToReport == 0)
        std::fprintf(stderr, "calls so far: %llu\n", calls);
}

void HostileHost::note(const Call& call)
{
    if (isHandle(call.row->answer.kind) && call.answer.handle)
        m_handles.keep(call.row->answer.kind, call.answer.handle);
}

void HostileHost::callOnce()
{
    Call call = anyCall();
    if (isEnough(call.row->answer.kind))
        return;
    run(call);
    note(call);
}

void HostileHost::callFromFourThreads()
{
    ++m_depth;
    std::array<std::vector<Call>, kThreads> plans;
    for (std::vector<Call>& plan : plans) {
        for (int left = 1 + m_script.pick(12); left > 0; --left)
            plan.push_back(anyCall());
    }
    std::vector<std::future<void>> works;
    for (std::vector<Call>& plan : plans) {
        works.push_back(std::async(std::launch::async, [this, &plan] {
            for (Call& call : plan)
                run(call);
        }));
    }
    while (!std::all_of(works.begin(), works.end(), hasEnded)) {
        if (m_script.once(2))
            callOnce();
        QCoreApplication::sendPostedEvents();
        std::this_thread::yield();
    }
    for (const std::vector<Call>& plan : plans)
        std::for_each(plan.begin(), plan.end(), [this](const Call& call) { note(call); });
    --m_depth;
    m_told = Told(); // in between there may have been nobody to be told
}

// --- Messages ---------------------------------------------------------------------------------

int HostileHost::notify(unsigned long message, unsigned long long wParam, long long lParam)
{
    require(g_host != nullptr, "a message after everything was released");
    g_host->receive({message, wParam, lParam, false});
    return 0;
}

int HostileHost::notifyDate(unsigned long message, unsigned long long wParam, long long lParam)
{
    require(g_host != nullptr, "a date after everything was released");
    g_host->receive({message, wParam, lParam, true});
    return 0;
}

void HostileHost::receive(const HostMessage& message)
{
    keepStep({"message", m_depth, message.id, static_cast<long long>(message.wParam)});
    noteMessage(m_told, message);
    if (m_isQuiet || m_depth >= kMaxDepth || !m_script.once(6))
        return;
    ++m_depth;
    for (int left = 1 + m_script.pick(4); left > 0; --left)
        act();
    --m_depth;
}

// --- The user, the windows, the time ----------------------------------------------------------

void HostileHost::useMouse()
{
    const zrhost::Point at{2 * m_script.pick(160), m_script.pick(180)};
    switch (m_script.pick(3)) {
    case 0:
        return desktop::moveTo(at);
    case 1:
        return desktop::click(at, 1 + m_script.pick(3));
    default:
        return desktop::turnWheel(at, m_script.pick(7) - 3);
    }
}

void HostileHost::useKeyboard()
{
    switch (m_script.pick(3)) {
    case 0:
        return zrhost::pressKey(m_script.oneOf(
            {zrhost::Key::Tab, zrhost::Key::Enter, zrhost::Key::Escape, zrhost::Key::Backspace}));
    case 1:
        return zrhost::pressWithControl(m_script.oneOf({'a', 'c', 'v', 'x', 'z'}));
    default:
        return zrhost::typeText(m_script.oneOf({"a", "12 ", "Q~"}));
    }
}

void HostileHost::changeWindow()
{
    switch (m_script.pick(3)) {
    case 0: // one goes, with what the module has in it, and another one comes
        // Renderers crash on a window that is gone: nothing may wait to be painted there before
        // the module has heard of it.
        if (m_depth > 0)
            return;
        while (native::runEventLoopOnce()) {
        }
        m_own[0] = std::make_unique<HostWindow>(kWindow.w, kWindow.h);
        std::fill_n(m_windows.begin(), 3, m_own[0]->hwnd());
        return turnEventLoop();
    case 1: // the module's own
        for (void* window : nativeWindows()) {
            if (m_windows.size() < kMostWindows)
                m_windows.push_back(window);
        }
        return;
    default:
        return nativehost::moveWindow(*m_own[1], m_script.pick(256), m_script.pick(256));
    }
}

void HostileHost::turn()
{
    keepStep({"turn", m_depth});
    // Painting takes most of a whole turn.
    if (m_script.once(3))
        turnEventLoop();
    else
        QCoreApplication::sendPostedEvents();
    if (m_handles.live(Kind::Screen).empty())
        m_told = Told();
    if (m_depth > 0)
        return;
    checkGalleries(m_isDeaf ? Told() : m_told);
    if (disorder().empty())
        return;
    m_isQuiet = true;
    turnEventLoop();
    m_isQuiet = false;
    const std::string left = disorder();
    require(left.empty(), left);
}

void HostileHost::releaseAll()
{
    turn();
    m_isQuiet = true;
    constexpr Kind kKinds[] = {Kind::LineEdit, Kind::Screen, Kind::DatePicker, Kind::Ext,
                               Kind::TextBox};
    for (const Kind kind : kKinds) {
        for (void* handle : m_handles.live(kind))
            zrhost::releaseHandle(exports(), kind, handle);
    }
    const bool isOver = pumpUntil([] {
        turnEventLoop();
        return remains().empty();
    });
    require(isOver, "something is left:" + remains());
}
