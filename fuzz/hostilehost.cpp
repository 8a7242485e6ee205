#include "hostilehost.h"

#include "host_error.h"
#include "host_keyboard.h"
#include "hostwindow.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <atomic>
#include <future>
#include <iterator>

namespace {

using zr::Kind;

constexpr Box kWindow{0, 0, 640, 360};
constexpr int kThreads = 4;
constexpr int kMaxDepth = 2;
constexpr std::size_t kMostWindows = 30;

std::atomic<unsigned long long> g_calls{0};
HostileHost* g_host = nullptr;

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

unsigned long long HostileHost::callCount()
{
    return g_calls;
}

HostileHost::HostileHost(Script& script)
    : m_script(script)
    , m_wrong(m_handles, m_windows, notify)
{
    g_host = this;
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
    const int choice = m_script.pick(64);
    if (choice < 48)
        callOnce();
    else if (choice < 52)
        turn();
    else if (choice < 54)
        useMouse();
    else if (choice < 55)
        useKeyboard();
    else if (choice < 57)
        changeWindow();
    else if (choice < 60)
        fireTimer(m_script.pick(256));
    else if (choice < 61)
        advanceClock(m_script.oneOf({10, 1000, 100000}));
    else if (m_depth == 0)
        callFromFourThreads();
}

// --- Calls ------------------------------------------------------------------------------------

bool HostileHost::isEnough(Kind kind)
{
    return m_handles.live(kind).size() >= (kind == Kind::Play ? 24U : 3U);
}

HostileHost::Call HostileHost::anyCall()
{
    // Half of the calls are those that bring a meeting about.
    static constexpr std::size_t kUsual[] = {
        zr::table::kZRScreen_Init,      zr::table::kZRScreen_AddPerson,
        zr::table::kZRScreen_AddPerson, zr::table::kZRScreen_JoinMeetingFinish,
        zr::table::kZRScreen_PlayFrame, zr::table::kZRScreen_ChangeLayout,
        zr::table::kZRScreen_Preview,   zr::table::kZRScreen_DelPerson,
    };
    const auto any = static_cast<std::size_t>(m_script.pick(2 * int{std::size(zr::kExports)}));
    const std::size_t at = any < std::size(zr::kExports) ? any : m_script.oneOf(kUsual);
    Call call{zr::kExports + at, {}, {}};
    for (std::size_t i = 0; i < call.row->argumentCount; ++i) {
        const zr::Argument& argument = call.row->arguments[i];
        const zrhost::Value& value = call.values.emplace_back(m_wrong.any(argument, m_script));
        // Beforehand: the call may send messages, and its address may be given out again.
        if (argument.use == zr::Use::Ends)
            m_handles.end(argument.kind, value.handle);
        if (argument.kind == Kind::Notify && call.row->answer.kind == Kind::Screen)
            m_isDeaf |= value.notify != notify;
    }
    return call;
}

void HostileHost::run(Call& call) const
{
    ++g_calls;
    call.answer = zrhost::callExport(exports(), *call.row, call.values);
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
        for (int left = 1 + m_script.pick(6); left > 0; --left)
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
        turnEventLoop();
    }
    for (const std::vector<Call>& plan : plans)
        std::for_each(plan.begin(), plan.end(), [this](const Call& call) { note(call); });
    --m_depth;
}

// --- Messages ---------------------------------------------------------------------------------

int HostileHost::notify(unsigned long message, unsigned long long wParam, long long)
{
    require(g_host != nullptr, "a message after everything was released");
    g_host->receive(message, wParam);
    return 0;
}

void HostileHost::receive(unsigned long message, unsigned long long wParam)
{
    noteMessage(m_told, message, wParam);
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
    const zrhost::Point at{4 * m_script.pick(256) % kWindow.w, 2 * m_script.pick(256) % kWindow.h};
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
        return turn();
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
    turnEventLoop();
    if (m_depth == 0)
        checkGalleries(m_isDeaf ? ToldStreams() : m_told);
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
