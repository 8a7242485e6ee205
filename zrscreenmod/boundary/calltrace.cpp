#include "calltrace.h"

#include "boundary.h"
#include "platform.h"
#include "tracefile.h"
#include "tracewords.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QHash>
#include <QSysInfo>

#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace calltrace {

namespace {

/// Of a picture that is not kept every so many rows tell it from others.
constexpr std::size_t kSampledRows = 32;

/// A call that has begun and not ended.
struct OpenCall
{
    quint64 serial;
    QByteArray name; ///< of the handle that it is to answer
};

struct Caller
{
    int number = 0;
    int depth = 0;         ///< of calls and messages
    bool isInside = false; ///< an export that is about to be called from inside
    std::vector<OpenCall> calls;
};

/// What there is while a trace is written. Whoever holds s_lock works with it.
class Trace
{
public:
    Trace(const QString& path, bool wholeFrames);

    [[nodiscard]] Caller& caller();
    [[nodiscard]] TraceFile* failedFile();
    void comment(const QByteArray& text);

    quint64 beginCall(const zr::Export& row, const Given* arguments, const TracedPicture& picture);
    void endCall(quint64 serial, const zr::Export& row, const Given* arguments,
                 const Given& answer);
    void announce(const void* handle);
    void beginMessage(const void* record, const Message& message);
    void noteWindow(const void* window, QSize size);

    TraceNames names;

private:
    [[nodiscard]] QByteArray lineBegin(const char* mark = "");
    void putLine(const QByteArray& text, const char* end = "\n");
    void noteParent(const zr::Export& row, const Given* arguments, const Given& answer);
    [[nodiscard]] QByteArray pictureWord(const TracedPicture& picture);

    TraceFile m_file;
    std::unique_ptr<TraceFile> m_frames; ///< the pictures, one behind the other
    QHash<QByteArray, qint64> m_frameAt; ///< by their checksums
    QElapsedTimer m_clock;
    std::map<std::thread::id, Caller> m_callers;
    std::map<const void*, QSize> m_windowSizes;
    quint64 m_serial = 0;
    quint64 m_openLine = 0; ///< the call whose answer can follow on the last line
};

std::mutex s_lock;
Trace* s_trace = nullptr;
std::atomic<std::size_t> s_rowStep{kSampledRows};

/// Runs `work(trace)` under the lock, if there is a trace. A failure of its file ends it.
template<typename Work>
void withTrace(Work&& work) noexcept
{
    boundary::guarded(false, [&] {
        std::unique_ptr<Trace> failed;
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

QByteArray version()
{
    return QByteArray::number(ZRSCREENMOD_VERSION_MAJOR) + '.'
           + QByteArray::number(ZRSCREENMOD_VERSION_MINOR) + '.'
           + QByteArray::number(ZRSCREENMOD_VERSION_PATCH);
}

Trace::Trace(const QString& path, bool wholeFrames)
    : m_file(path)
{
    if (wholeFrames)
        m_frames = std::make_unique<TraceFile>(path + QStringLiteral(".frames"));
    m_clock.start();
    comment("ZRScreenMod " + version() + ", " + QSysInfo::prettyProductName().toUtf8() + ", "
            + QDateTime::currentDateTime().toString(Qt::ISODate).toUtf8()
            + "; t1 is the GUI thread");
    putLine("trace");
}

TraceFile* Trace::failedFile()
{
    if (m_frames && m_frames->hasFailed())
        return m_frames.get();
    return m_file.hasFailed() ? &m_file : nullptr;
}

Caller& Trace::caller()
{
    Caller& who = m_callers[std::this_thread::get_id()];
    if (who.number == 0)
        who.number = static_cast<int>(m_callers.size());
    return who;
}

/// Ends the line before. @return the depth as blanks, the mark and the time
QByteArray Trace::lineBegin(const char* mark)
{
    constexpr int kMsDigits = 3;
    const qint64 ms = m_clock.elapsed();
    return (std::exchange(m_openLine, 0) != 0 ? "\n" : "") + QByteArray(2 * caller().depth, ' ')
           + mark + QByteArray::number(ms / 1000) + '.'
           + QByteArray::number(ms % 1000).rightJustified(kMsDigits, '0') + ' ';
}

/// Writes a command, and who it comes from as a comment behind it.
void Trace::putLine(const QByteArray& text, const char* end)
{
    m_file.append(lineBegin() + text + " # t" + QByteArray::number(caller().number) + end);
}

void Trace::comment(const QByteArray& text)
{
    m_file.append(lineBegin("# ") + text + '\n');
}

void Trace::noteWindow(const void* window, QSize size)
{
    if (!window || size.isEmpty() || m_windowSizes[window] == size)
        return;
    m_windowSizes[window] = size;
    putLine("window " + names.ofWindow(window) + ' ' + QByteArray::number(size.width()) + 'x'
            + QByteArray::number(size.height()));
}

QByteArray Trace::pictureWord(const TracedPicture& picture)
{
    if (!m_frames || !picture.bytes)
        return picture.word;
    const auto known = m_frameAt.constFind(picture.checksum);
    const qint64 at = known == m_frameAt.constEnd() ? m_frames->size() : *known;
    if (known == m_frameAt.constEnd()) {
        m_frameAt.insert(picture.checksum, at);
        m_frames->append(picture.bytes, picture.count);
    }
    return picture.word + '@' + QByteArray::number(at);
}

quint64 Trace::beginCall(const zr::Export& row, const Given* arguments,
                         const TracedPicture& picture)
{
    OpenCall call{++m_serial, {}};
    QByteArray line = "call ";
    if (isHandle(row.answer.kind)) {
        call.name = names.next(row.answer.kind);
        line += call.name + '=';
    }
    line += row.name;
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        const zr::Argument& argument = row.arguments[i];
        line +=
            ' '
            + (argument.kind == zr::Kind::Picture ? pictureWord(picture)
                                                  : argumentWord(argument, arguments[i], names));
    }
    putLine(line, "");
    m_openLine = call.serial;
    Caller& who = caller();
    who.calls.push_back(call);
    ++who.depth;
    return call.serial;
}

void Trace::endCall(quint64 serial, const zr::Export& row, const Given* arguments,
                    const Given& answer)
{
    Caller& who = caller();
    if (who.calls.empty() || who.calls.back().serial != serial)
        return;
    if (isHandle(row.answer.kind))
        names.give(row.answer.kind, answer.address, who.calls.back().name);
    who.calls.pop_back();
    --who.depth;
    noteParent(row, arguments, answer);
    const QByteArray words = " = " + answerWords(row, arguments, answer, names) + '\n';
    if (m_openLine != serial) {
        m_file.append(lineBegin("# ") + 't' + QByteArray::number(who.number) + ' ' + row.name
                      + words);
        return;
    }
    m_file.append(words);
    m_openLine = 0;
}

/// In which window of the host's is what a call has made or moved.
void Trace::noteParent(const zr::Export& row, const Given* arguments, const Given& answer)
{
    const bool isNew = isHandle(row.answer.kind);
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        if (row.arguments[i].kind == zr::Kind::Window)
            names.putInto(isNew ? row.answer.kind : row.arguments[0].kind,
                          isNew ? answer.address : arguments[0].address, arguments[i].address);
    }
}

void Trace::announce(const void* handle)
{
    const Caller& who = caller();
    if (!who.calls.empty())
        names.give(zr::Kind::Play, handle, who.calls.back().name);
}

void Trace::beginMessage(const void* record, const Message& message)
{
    putLine("expect " + messageWords(record, message, names));
    ++caller().depth;
}

/// The window that a call names, or in which what it moves is.
const void* windowOf(const zr::Export& row, const Given* arguments)
{
    const void* window = nullptr;
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        if (row.arguments[i].kind == zr::Kind::Window)
            return arguments[i].address;
        if (row.arguments[i].kind == zr::Kind::Rectangle)
            withTrace([&](const Trace& trace) {
                window = trace.names.windowOf(row.arguments[0].kind, arguments[0].address);
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
    {
        const std::lock_guard<std::mutex> lock(s_lock);
        s_trace = new Trace(path, whole);
        g_on = true;
    }
    qDebug() << "trace:" << path << (whole ? "with whole frames" : "");
    withTrace([](const Trace&) {}); // says so when the file cannot be opened
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
    withTrace([&](Trace& trace) {
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
        withTrace([&](Trace& trace) {
            trace.noteWindow(window, size);
            serial = trace.beginCall(row, arguments, picture);
        });
        return serial;
    });
}

void endCall(std::uint64_t serial, const zr::Export& row, const Given* arguments,
             const Given& answer) noexcept
{
    withTrace([&](Trace& trace) { trace.endCall(serial, row, arguments, answer); });
}

void announce(const void* play) noexcept
{
    if (isOn())
        withTrace([&](Trace& trace) { trace.announce(play); });
}

MessageScope::MessageScope(const void* record, const Message& message) noexcept
    : m_recorded(isOn())
{
    if (m_recorded)
        withTrace([&](Trace& trace) { trace.beginMessage(record, message); });
}

MessageScope::~MessageScope()
{
    if (m_recorded)
        withTrace([](Trace& trace) { --trace.caller().depth; });
}

} // namespace calltrace
