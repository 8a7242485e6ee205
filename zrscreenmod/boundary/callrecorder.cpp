#include "callrecorder.h"

#include <QDateTime>
#include <QSysInfo>

#include <utility>

namespace calltrace {

namespace {

QByteArray version()
{
    return QByteArray::number(ZRSCREENMOD_VERSION_MAJOR) + '.'
           + QByteArray::number(ZRSCREENMOD_VERSION_MINOR) + '.'
           + QByteArray::number(ZRSCREENMOD_VERSION_PATCH);
}

} // namespace

CallRecorder::CallRecorder(const QString& path, bool wholeFrames)
    : m_file(path)
{
    if (wholeFrames)
        m_frames = std::make_unique<TraceFile>(framesFileOf(path));
    m_clock.start();
    comment("ZRScreenMod " + version() + ", " + QSysInfo::prettyProductName().toUtf8() + ", "
            + QDateTime::currentDateTime().toString(Qt::ISODate).toUtf8()
            + "; t1 is the GUI thread");
    putLine("trace");
}

const TraceFile* CallRecorder::failedFile() const
{
    if (m_frames && m_frames->hasFailed())
        return m_frames.get();
    return m_file.hasFailed() ? &m_file : nullptr;
}

Caller& CallRecorder::caller()
{
    Caller& who = m_callers[std::this_thread::get_id()];
    if (who.number == 0)
        who.number = static_cast<int>(m_callers.size());
    return who;
}

/// Ends the line before. @return the depth as blanks, the mark and the time
QByteArray CallRecorder::lineBegin(const char* mark)
{
    constexpr int kMsDigits = 3;
    const qint64 ms = m_clock.elapsed();
    return (std::exchange(m_openLine, 0) != 0 ? "\n" : "") + QByteArray(2 * caller().depth, ' ')
           + mark + QByteArray::number(ms / 1000) + '.'
           + QByteArray::number(ms % 1000).rightJustified(kMsDigits, '0') + ' ';
}

/// Writes a command, and who it comes from as a comment behind it.
void CallRecorder::putLine(const QByteArray& text, const char* end)
{
    m_file.append(lineBegin() + text + " # t" + QByteArray::number(caller().number) + end);
}

void CallRecorder::comment(const QByteArray& text)
{
    m_file.append(lineBegin("# ") + text + '\n');
}

void CallRecorder::putInput(const char* command, const void* window, const QPoint& at, int count)
{
    putLine(QByteArray(command) + ' ' + QByteArray::number(at.x()) + ' '
            + QByteArray::number(at.y()) + ' ' + QByteArray::number(count) + ' '
            + m_names.ofWindow(window));
}

void CallRecorder::noteWindow(const void* window, QSize size)
{
    if (!window || size.isEmpty() || m_windowSizes[window] == size)
        return;
    m_windowSizes[window] = size;
    putLine("window " + m_names.ofWindow(window) + ' ' + QByteArray::number(size.width()) + 'x'
            + QByteArray::number(size.height()));
}

QByteArray CallRecorder::pictureWord(const TracedPicture& picture)
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

quint64 CallRecorder::beginCall(const zr::Export& row, const Given* arguments,
                                const TracedPicture& picture)
{
    OpenCall call{++m_serial, {}};
    QByteArray line = "call ";
    if (isHandle(row.answer.kind)) {
        call.name = m_names.next(row.answer.kind);
        line += call.name + '=';
    }
    line += row.name;
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        const zr::Argument& argument = row.arguments[i];
        line +=
            ' '
            + (argument.kind == zr::Kind::Picture ? pictureWord(picture)
                                                  : argumentWord(argument, arguments[i], m_names));
    }
    putLine(line, "");
    m_openLine = call.serial;
    Caller& who = caller();
    who.calls.push_back(call);
    ++who.depth;
    return call.serial;
}

void CallRecorder::endCall(quint64 serial, const zr::Export& row, const Given* arguments,
                           const Given& answer)
{
    Caller& who = caller();
    if (who.calls.empty() || who.calls.back().serial != serial)
        return;
    if (isHandle(row.answer.kind))
        m_names.give(row.answer.kind, answer.address, who.calls.back().name);
    who.calls.pop_back();
    --who.depth;
    noteParent(row, arguments, answer);
    const QByteArray words = " = " + answerWords(row, arguments, answer, m_names) + '\n';
    if (m_openLine != serial) {
        m_file.append(lineBegin("# ") + 't' + QByteArray::number(who.number) + ' ' + row.name
                      + words);
        return;
    }
    m_file.append(words);
    m_openLine = 0;
}

/// In which window of the host's is what a call has made or moved.
void CallRecorder::noteParent(const zr::Export& row, const Given* arguments, const Given& answer)
{
    const bool isNew = isHandle(row.answer.kind);
    for (std::size_t i = 0; i < row.argumentCount; ++i) {
        if (row.arguments[i].kind == zr::Kind::Window)
            m_names.putInto(isNew ? row.answer.kind : row.arguments[0].kind,
                            isNew ? answer.address : arguments[0].address, arguments[i].address);
    }
}

void CallRecorder::announce(const void* play)
{
    const Caller& who = caller();
    if (!who.calls.empty())
        m_names.give(zr::Kind::Play, play, who.calls.back().name);
}

void CallRecorder::beginMessage(const void* record, const Message& message)
{
    putLine("expect " + messageWords(record, message, m_names));
    ++caller().depth;
}

} // namespace calltrace
