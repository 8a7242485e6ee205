// What is written of the calls and messages, while a trace is.
#pragma once

#include "calltrace.h"
#include "tracefile.h"
#include "tracewords.h"

#include <QElapsedTimer>
#include <QHash>
#include <QPoint>
#include <QSize>

#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace calltrace {

/// Where the pictures of a trace go.
[[nodiscard]] inline QString framesFileOf(const QString& path)
{
    return path + QStringLiteral(".frames");
}

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

/// Writes a trace. One thread at a time is in it; who calls is asked of the system.
class CallRecorder
{
public:
    /// Begins the file. @param wholeFrames whether the pictures go into a second one
    CallRecorder(const QString& path, bool wholeFrames);

    [[nodiscard]] Caller& caller();
    /// A file that could not be written; null as long as all is well.
    [[nodiscard]] const TraceFile* failedFile() const;
    void comment(const QByteArray& text);

    /// @return a number that is the call's own
    quint64 beginCall(const zr::Export& row, const Given* arguments, const TracedPicture& picture);
    void endCall(quint64 serial, const zr::Export& row, const Given* arguments,
                 const Given& answer);
    void announce(const void* play);
    void beginMessage(const void* record, const Message& message);
    /// What the user does at a point of a window of the host's: a command, and how often.
    void putInput(const char* command, const void* window, const QPoint& at, int count);
    /// The size of a window of the host's, which is written when it has changed.
    void noteWindow(const void* window, QSize size);
    /// In which window of the host's that of a handle is; null when that is not known.
    [[nodiscard]] const void* windowOf(zr::Kind kind, const void* handle) const
    {
        return m_names.windowOf(kind, handle);
    }

private:
    [[nodiscard]] QByteArray lineBegin(const char* mark = "");
    void putLine(const QByteArray& text, const char* end = "\n");
    void noteParent(const zr::Export& row, const Given* arguments, const Given& answer);
    [[nodiscard]] QByteArray pictureWord(const TracedPicture& picture);

    TraceNames m_names;
    TraceFile m_file;
    std::unique_ptr<TraceFile> m_frames; ///< the pictures, one behind the other
    QHash<QByteArray, qint64> m_frameAt; ///< by their checksums
    QElapsedTimer m_clock;
    std::map<std::thread::id, Caller> m_callers;
    std::map<const void*, QSize> m_windowSizes;
    quint64 m_serial = 0;
    quint64 m_openLine = 0; ///< the call whose answer can follow on the last line
};

} // namespace calltrace
