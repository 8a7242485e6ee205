#include "qmylogthread.h"

#include "logfilerules.h"
#include "logfolder.h"
#include "platform.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <cstdio>
#include <utility>

namespace {

qint64 memoryOf(const QString& line)
{
    constexpr qint64 kOverheadBytes = 48; // the heap block's head and the queue's entry
    return line.size() * static_cast<qint64>(sizeof(QChar)) + kOverheadBytes;
}

} // namespace

void deleteLogFiles(const QDir& folder, const QStringList& names)
{
    for (const QString& name : names) {
        qDebug() << "delete log file:" << name;
        QFile::remove(folder.filePath(name));
    }
}

LogSettings LogSettings::forApplication()
{
    LogSettings settings;
    settings.folder = logFolder();
    settings.now = &QDateTime::currentDateTime;
    return settings;
}

QMyLogThread::QMyLogThread(LogSettings settings)
    : m_settings(std::move(settings))
    , m_guiThread(platform::threadNumber())
    , m_date(m_settings.now().date())
{
    // Direct: the lines wait in a queue of this class instead of the event queue, which has no
    // bound, cannot be taken over by another thread, and is thrown away when its thread ends.
    connect(this, &QMyLogThread::notifyWiteLog, this, &QMyLogThread::enqueue, Qt::DirectConnection);
}

QMyLogThread::~QMyLogThread()
{
    if (!m_closed)
        (void)finish();
}

// --- Any thread -----------------------------------------------------------------------------

bool QMyLogThread::admits(quint64 key)
{
    giveCounts(false);
    const std::lock_guard lock(m_filterLock);
    return m_filter.admit(key, platform::steadyMs());
}

void QMyLogThread::giveLine(quint64 key, const QString& line)
{
    {
        const std::lock_guard lock(m_filterLock);
        m_filter.written(key, line);
    }
    emit notifyWiteLog(line + QStringLiteral("\r\n"));
}

void QMyLogThread::giveCounts(bool all)
{
    const auto take = [this, all] {
        const std::lock_guard lock(m_filterLock);
        return m_filter.takeCount(platform::steadyMs(), all);
    };
    for (QString count = take(); !count.isEmpty(); count = take())
        emit notifyWiteLog(count + QStringLiteral("\r\n"));
}

void QMyLogThread::enqueue(const QString& line)
{
    const std::lock_guard lock(m_lock);
    if (m_closed)
        return;
    const qint64 bytes = memoryOf(line);
    if (m_queueBytes + bytes > m_settings.queueLimitBytes) {
        ++m_lostLines;
        return;
    }
    m_queue.push_back({line, platform::threadNumber()});
    m_queueBytes += bytes;
    ++m_given;
    if (std::exchange(m_waiting, false))
        m_changed.notify_all();
}

bool QMyLogThread::waitUntilBegun(int timeoutMs)
{
    std::unique_lock lock(m_lock);
    return m_changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                              [this] { return m_begun; });
}

bool QMyLogThread::waitUntilWritten(int timeoutMs)
{
    if (QThread::currentThread() == this)
        return false;
    std::unique_lock lock(m_lock);
    const quint64 target = m_given;
    return m_changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                              [this, target] { return m_written >= target; });
}

bool QMyLogThread::finish(int timeoutMs)
{
    giveCounts(true);
    {
        const std::lock_guard lock(m_lock);
        m_closed = true;
        m_changed.notify_all();
    }
    // In slices: on Windows a wait that has begun lasts until the system's thread has ended, but
    // one that begins when the thread has left run() and Qt's own clean-up returns at once.
    constexpr int kSliceMs = 10;
    const QDeadlineTimer deadline(timeoutMs < 0 ? QDeadlineTimer(QDeadlineTimer::Forever)
                                                : QDeadlineTimer(timeoutMs));
    while (!wait(QDeadlineTimer(kSliceMs))) {
        if (deadline.hasExpired())
            return false;
    }
    writeWaitingLines();
    return true;
}

void QMyLogThread::writeWaitingLines()
{
    // A thread that the system has ended may have taken the lock with it.
    constexpr int kAttempts = 100;
    std::unique_lock lock(m_lock, std::try_to_lock);
    for (int i = 0; !lock.owns_lock() && i < kAttempts; ++i) {
        QThread::msleep(1);
        lock.try_lock();
    }
    if (!lock.owns_lock())
        return;
    m_iWriteCount -= std::exchange(m_iBatchLines, 0);
    m_batch.clear();
    write();
    m_work = takeWork();
    m_uDone = 0;
    lock.unlock();
    write();
}

QMyLogThread::Work QMyLogThread::takeWork()
{
    m_queueBytes = 0;
    return {std::exchange(m_queue, {}), std::exchange(m_lostLines, 0)};
}

// --- Writer thread --------------------------------------------------------------------------

void QMyLogThread::run()
{
    std::unique_lock lock(m_lock);
    m_begun = true;
    m_changed.notify_all();
    while (true) {
        m_waiting = true;
        m_changed.wait(lock, [this] { return m_closed || !m_queue.empty(); });
        m_waiting = false;
        if (m_queue.empty())
            return;
        m_work = takeWork();
        m_uDone = 0;
        lock.unlock();
        write();
        lock.lock();
        Work done = std::exchange(m_work, {});
        m_written += done.lines.size();
        m_changed.notify_all();
        lock.unlock();
        done = {}; // gives much memory back after a burst, so not under the lock
        lock.lock();
    }
}

void QMyLogThread::write()
{
    for (size_t i = m_uDone; i < m_work.lines.size(); ++i)
        addToBatch(m_work.lines[i]);
    flushBatch();
    if (const qint64 lost = std::exchange(m_work.lostLines, 0); lost > 0)
        myWriteLog(lostLine(lost));
}

// By hand: Qt's formatting takes a lock, and a thread that the system has ended may have it.
QString QMyLogThread::lostLine(qint64 count) const
{
    return QStringLiteral("[%1][QMyLogThread::write]  log lines lost: %2\r\n")
        .arg(m_settings.now().time().toString(QStringLiteral("hh:mm:ss.zzz")))
        .arg(count);
}

void QMyLogThread::myWriteLog(QString qstrLog)
{
    addToBatch({qstrLog, platform::threadNumber()});
    flushBatch();
}

QString QMyLogThread::headerOf(const Line& line) const
{
    return QStringLiteral("[%1][thread %2%3]\r\n")
        .arg(m_date.toString(Qt::ISODate))
        .arg(line.thread)
        .arg(line.thread == m_guiThread ? QStringLiteral(", GUI") : QString());
}

void QMyLogThread::addToBatch(const Line& line)
{
    const QDateTime now = m_settings.now();
    if (now.date() != m_date) {
        flushBatch();
        m_date = now.date();
        m_iWriteCount = 0;
        m_qstrSuffix.clear();
        m_headThread = 0;
    }
    bool fileIsFull = false;
    if (m_iWriteCount > zr::kLinesBetweenSizeChecks) {
        flushBatch();
        // What could not be written does not count, so ask again.
        if (m_iWriteCount > zr::kLinesBetweenSizeChecks) {
            m_iWriteCount = 0;
            fileIsFull = QFileInfo(filePath()).size() > zr::kLogFileLimitBytes;
        }
    }
    if (fileIsFull) {
        m_qstrSuffix = zr::logFileSuffix(now.time());
        m_headThread = 0;
    }
    if (std::exchange(m_headThread, line.thread) != line.thread) {
        m_head = headerOf(line).toLocal8Bit();
        m_batch += m_head;
    }
    if (m_iBatchLines == 0)
        m_batchHead = m_head;
    m_batch += line.text.toLocal8Bit();
    ++m_iBatchLines;
    ++m_iWriteCount;
    if (fileIsFull) {
        flushBatch(); // the new file counts
        cleanDateLog();
    }
}

void QMyLogThread::flushBatch()
{
    if (m_iBatchLines == 0)
        return;
    QByteArray text = std::exchange(m_batch, {});
    const int lines = std::exchange(m_iBatchLines, 0);
    if (m_unwritten > 0) // a full disk may have cut the last line
        text.prepend("\r\n" + lostLine(m_unwritten).toLocal8Bit());
    // Opened and closed each time, so that others may move, rotate and delete the files.
    QFile file(filePath());
    constexpr QIODevice::OpenMode kMode =
        QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered;
    const bool opened = file.open(kMode) || (QDir().mkpath(m_settings.folder) && file.open(kMode));
    if (opened && file.size() == 0 && !text.startsWith(m_batchHead))
        text.prepend(m_batchHead); // the file that was there has been moved or deleted
    if (opened && file.write(text) == text.size()) {
        m_unwritten = 0;
    } else {
        if (m_unwritten == 0)
            std::fprintf(stderr, "ZRScreenMod: the log is not written: %s: %s\n",
                         qPrintable(file.fileName()), qPrintable(file.errorString()));
        m_unwritten += lines;
        m_iWriteCount -= lines;
        m_headThread = 0;
    }
    m_uDone += static_cast<size_t>(lines);
}

QString QMyLogThread::filePath() const
{
    return m_settings.folder + QLatin1Char('/') + zr::logFileName(m_date, m_qstrSuffix);
}

void QMyLogThread::cleanDateLog()
{
    const QDir folder(m_settings.folder);
    deleteLogFiles(folder, zr::fullDayLogsToDelete(folder.entryList(QDir::Files), m_date,
                                                   zr::logFileName(m_date, m_qstrSuffix)));
}
