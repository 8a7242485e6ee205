#include "calltrace.h"

#include "boundary.h"
#include "callrecorder.h"
#include "inputwatch.h"
#include "platform.h"

#include <memory>
#include <mutex>
#include <utility>

namespace calltrace {

namespace {

/// Of a picture that is not kept every so many rows tell it from others.
constexpr std::size_t kSampledRows = 32;

std::mutex s_lock;
CallRecorder* s_trace = nullptr;
std::atomic<std::size_t> s_rowStep{kSampledRows};
InputWatch* s_input = nullptr; ///< GUI thread

/// Runs `work(trace)` under the lock, if there is a trace. A failure of its file ends it.
template<typename Work>
void withTrace(Work&& work) noexcept
{
    boundary::guarded(false, [&] {
        std::unique_ptr<CallRecorder> failed;
        {
            const std::lock_guard<std::mutex> lock(s_lock);
            if (!s_trace)
                return false;
            work(*s_trace);
            if (s_trace->failedFile()) {
                g_on = false;
                failed.reset(std::exchange(s_trace, nullptr));
            }
        }
        if (failed) // no lock is held while something is logged
            qWarning().noquote() << "the trace ends, writing failed:"
                                 << failed->failedFile()->problem();
        return true;
    });
}

/// Records the user's mouse as commands of the demonstration host.
InputWatch::Listener inputListener()
{
    using Place = InputWatch::Place;
    const auto put = [](const char* command, const Place& place, int count) {
        withTrace(
            [&](CallRecorder& trace) { trace.putInput(command, place.window, place.at, count); });
    };
    return {[put](const Place& place) { put("click", place, 1); },
            [put](const Place& place, int steps) { put("wheel", place, steps); }};
}

/// The window that a call names, or in which what it moves is.
const void* windowOf(const zr::Export& row, const Given* arguments)
{
    const void* window = nullptr;
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        if (row.arguments[i].kind == zr::Kind::Window)
            return arguments[i].address;
        if (row.arguments[i].kind == zr::Kind::Rectangle)
            withTrace([&](const CallRecorder& trace) {
                window = trace.windowOf(row.arguments[0].kind, arguments[0].address);
            });
    }
    return window;
}

/// The size of a host's window, where it can be asked for.
QSize sizeOf(const void* window)
{
    if (!window || !GuiThread::isCurrent())
        return {};
    return platform::clientRectOnScreen(reinterpret_cast<platform::NativeWindow>(window)).size();
}

/// The trace of a program that has crashed and was started again is the one that is wanted.
bool keepEarlier(const QString& path)
{
    const QString before = path + QStringLiteral(".before");
    return TraceFile::moveAside(path, before)
           && TraceFile::moveAside(framesFileOf(path), framesFileOf(before));
}

TracedPicture pictureOf(const zr::Export& row, const Given* arguments)
{
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        if (row.arguments[i].kind == zr::Kind::Picture)
            return readPicture(arguments[i].address, s_rowStep);
    }
    return {};
}

} // namespace

void beginIfAsked()
{
    const QString path = qEnvironmentVariable("ZRSCREEN_TRACE");
    if (path.isEmpty())
        return;
    const bool whole = qEnvironmentVariable("ZRSCREEN_TRACE_FRAMES") == QLatin1String("whole");
    s_rowStep = whole ? 1 : kSampledRows;
    if (!keepEarlier(path)) {
        qWarning() << "no trace, the earlier one cannot be renamed:" << path;
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(s_lock);
        s_trace = new CallRecorder(path, whole);
        g_on = true;
    }
    qDebug() << "trace:" << path << (whole ? "with whole frames" : "");
    withTrace([](const CallRecorder&) {}); // says so when the file cannot be opened
    s_input = new InputWatch(inputListener());
}

void endInput()
{
    delete std::exchange(s_input, nullptr);
}

void end()
{
    g_on = false;
    const std::lock_guard<std::mutex> lock(s_lock);
    if (s_trace)
        s_trace->comment("the module ends");
    delete std::exchange(s_trace, nullptr);
}

bool isToBeRecorded() noexcept
{
    bool isInside = true;
    withTrace([&](CallRecorder& trace) {
        // Whoever is not inside gets there with the next call.
        isInside = std::exchange(trace.caller().isInside, !trace.caller().isInside);
    });
    return !isInside;
}

std::uint64_t beginCall(const zr::Export& row, const Given* arguments) noexcept
{
    return boundary::guarded(std::uint64_t(0), [&] {
        const TracedPicture picture = pictureOf(row, arguments);
        const void* const window = windowOf(row, arguments);
        const QSize size = sizeOf(window);
        std::uint64_t serial = 0;
        withTrace([&](CallRecorder& trace) {
            trace.noteWindow(window, size);
            serial = trace.beginCall(row, arguments, picture);
        });
        return serial;
    });
}

void endCall(std::uint64_t serial, const zr::Export& row, const Given* arguments,
             const Given& answer) noexcept
{
    withTrace([&](CallRecorder& trace) { trace.endCall(serial, row, arguments, answer); });
}

void announce(const void* play) noexcept
{
    if (isOn())
        withTrace([&](CallRecorder& trace) { trace.announce(play); });
}

MessageScope::MessageScope(const void* record, const Message& message) noexcept
{
    if (!isOn())
        return;
    withTrace([&](CallRecorder& trace) {
        trace.beginMessage(record, message);
        m_recorded = true;
    });
}

MessageScope::~MessageScope()
{
    if (m_recorded)
        withTrace([](CallRecorder& trace) { --trace.caller().depth; });
}

} // namespace calltrace
