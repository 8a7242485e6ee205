#include "diagnostics.h"

#include "logfilerules.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <atomic>
#include <exception>

namespace {

// Initialised at compile time and never destroyed: messages come at any time, also before the
// module's initialisers and after its destructors have run.
std::atomic<QMyLogThread*> g_target{nullptr};
std::atomic<QtMessageHandler> g_previousHandler{nullptr};
std::atomic<bool> g_passOn{false};
/// Threads inside logMessageHandler. A count, not a lock: the handler may be entered again by the
/// thread that is in it.
std::atomic<int> g_inside{0};

struct InsideHandler
{
    InsideHandler() { ++g_inside; }
    ~InsideHandler() { --g_inside; }
    InsideHandler(const InsideHandler&) = delete;
    InsideHandler& operator=(const InsideHandler&) = delete;
};

void passOn(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (const QtMessageHandler previous = g_previousHandler)
        previous(type, context, message);
}

/// What a message begins with; nothing for what is only told.
QString severity(QtMsgType type)
{
    switch (type) {
    case QtWarningMsg:
        return QStringLiteral("warning: ");
    case QtCriticalMsg:
        return QStringLiteral("critical: ");
    case QtFatalMsg:
        return QStringLiteral("fatal: ");
    default:
        return {};
    }
}

void logFileTimes(const QString& path)
{
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss");
    const QFileInfo file(path);
    qDebug() << path << ",createTime:" << file.birthTime().toString(format)
             << ",lastModify:" << file.lastModified().toString(format);
}

} // namespace

void logMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    constexpr int kFatalWaitMs = 2000;
    const InsideHandler inside;
    // Nothing may leave this function: it is called from destructors and from C code.
    try {
        QMyLogThread* const target = g_target;
        if (!target || g_passOn || type == QtFatalMsg)
            passOn(type, context, message);
        if (!target)
            return;
        const quint64 key = qHash(message, qHash(QByteArray(context.function), uint(context.line)));
        if (!target->admits(key))
            return;
        target->giveLine(key, qFormatLogMessage(type, context, severity(type) + message));
        if (type == QtFatalMsg)
            target->waitUntilWritten(kFatalWaitMs);
    } catch (const std::exception&) {
        // Out of memory: the line is lost.
    }
}

void installLogHandler(QMyLogThread* logThread)
{
    g_passOn = qEnvironmentVariableIntValue("ZRSCREEN_LOG_STDERR") == 1;
    g_target = logThread;
    const QtMessageHandler previous = qInstallMessageHandler(logMessageHandler);
    if (previous != logMessageHandler)
        g_previousHandler = previous;
}

namespace {

void dropMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

void replaceLogHandler(QtMessageHandler successor)
{
    const QtMessageHandler current = qInstallMessageHandler(successor);
    if (current != logMessageHandler)
        qInstallMessageHandler(current);
    g_target = nullptr;
}

bool waitUntilNobodyIsInside()
{
    // By the clock: a sleep of one millisecond takes up to sixteen on Windows.
    constexpr int kTimeoutMs = 1000;
    const QDeadlineTimer deadline(kTimeoutMs);
    while (g_inside > 0 && !deadline.hasExpired())
        QThread::msleep(1);
    return g_inside == 0;
}

} // namespace

bool removeLogHandler()
{
    replaceLogHandler(g_previousHandler);
    return waitUntilNobodyIsInside();
}

bool dropLogMessages()
{
    replaceLogHandler(dropMessage);
    return waitUntilNobodyIsInside();
}

void abandonLogMessages()
{
    replaceLogHandler(dropMessage);
}

void printExefileInfo()
{
    const QString folder = QCoreApplication::applicationDirPath();
    logFileTimes(QCoreApplication::applicationFilePath());
    logFileTimes(folder + QStringLiteral("/ZRScreenMod.dll"));
    logFileTimes(folder + QStringLiteral("/ZrRTCEngine.dll"));
}

void globalCleanLog(const QString& folder, QDate today)
{
    const QDir dir(folder);
    deleteLogFiles(dir, zr::oldLogsToDelete(dir.entryList(QDir::Files), today));
}

void createTmpFrameDir(const QString& folder)
{
    const QString path = folder + QStringLiteral("/tmpFrame");
    if (QFileInfo::exists(path))
        return;
    const bool made = QDir().mkpath(path);
    qDebug() << "createTmpFrameDir ret:" << made;
}
