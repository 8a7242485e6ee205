// The log writer: takes log lines from all threads and writes them to the day's file, alone.
#pragma once

#include "repeatfilter.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QThread>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

class QDir;

/// Deletes files of the log and logs their names.
void deleteLogFiles(const QDir& folder, const QStringList& names);

/// Where the log writer works, and by which clock.
struct LogSettings
{
    QString folder;                 ///< of the log files; made when it is not there
    std::function<QDateTime()> now; ///< local time; called by the writer only
    /// The lines that wait for the writer take at most about this much memory; further lines are
    /// counted and lost. It is reached when the disk stalls.
    qint64 queueLimitBytes = qint64(64) * 1024 * 1024;

    /// logFolder(), and the system's clock.
    [[nodiscard]] static LogSettings forApplication();
};

/// Lines are given by emitting notifyWiteLog, from any thread. They wait in a queue in memory, and
/// the thread writes them in the order in which they came. Lines are taken from the construction
/// until finish(), whether or not the thread has been started. Where a file begins, and wherever
/// the next line is another thread's, a line of its own tells day and thread.
///
/// A line that cannot be written is lost, and so is nothing else.
class QMyLogThread : public QThread
{
    Q_OBJECT

public:
    explicit QMyLogThread(LogSettings settings = LogSettings::forApplication());
    ~QMyLogThread() override;

    /// Whether a line is to be formatted and given: of many equal ones in quick succession the
    /// first ones are, the rest is counted. @param key tells the line from others. Any thread.
    [[nodiscard]] bool admits(quint64 key);
    /// Takes a line that was admitted. Any thread.
    void giveLine(quint64 key, const QString& line);

    /// Takes no more lines, and waits until those that it has are written and the thread is at its
    /// end. Lines that no thread is there to write are written by the caller.
    ///
    /// `timeoutMs` below 0 waits without a limit. Not for the writer thread. Under the lock of the
    /// Windows loader this works once the thread has begun: it does not wait for the system's
    /// thread, which needs that lock to end, but until the thread has left the module's code.
    /// @return false when the time was too short; the object must then not be deleted
    [[nodiscard]] bool finish(int timeoutMs = -1);

    /// Writes the lines that wait. For the end of a process whose other threads the system has
    /// ended in the middle of their work; called by finish() too. Takes no lock of Qt's for itself,
    /// but may log the deletion of files.
    void writeWaitingLines();

    /// Waits until the started thread runs. Any other thread. @return false after `timeoutMs`
    bool waitUntilBegun(int timeoutMs);

    /// Waits until every line that was given before is written. Any thread; the writer itself gets
    /// false at once. @return false after `timeoutMs`
    bool waitUntilWritten(int timeoutMs);

    /// Deletes the log files of the day but the first and the two latest. Writer thread.
    void cleanDateLog();

signals:
    /// A line for the log, with its line end.
    void notifyWiteLog(QString qstrLog);

public slots:
    /// Writes a line to the file that is current now. Writer thread, or the owner's while the
    /// thread does not run.
    void myWriteLog(QString qstrLog);

protected:
    void run() override;

private:
    void giveCounts(bool all);
    void enqueue(const QString& line);
    struct Line
    {
        QString text;
        quint64 thread; ///< platform::threadNumber() of who gave it
    };
    struct Work
    {
        std::deque<Line> lines;
        qint64 lostLines = 0; ///< lines that came behind them and found the queue full
    };
    Work takeWork();
    void write();
    void addToBatch(const Line& line);
    void flushBatch();
    [[nodiscard]] QString headerOf(const Line& line) const;
    [[nodiscard]] QString lostLine(qint64 count) const;
    QString filePath() const;

    const LogSettings m_settings;
    const quint64 m_guiThread; ///< on which this object was made

    // The writer's. The lines of the batch count as written while they wait there.
    int m_iWriteCount = 0;    ///< lines written since the last look at the file's size
    QString m_qstrSuffix;     ///< empty for the day's first file, else as in its name
    QDate m_date;             ///< the day of the current file
    quint64 m_headThread = 0; ///< of the lines that come; 0 where a file begins
    QByteArray m_batch;       ///< encoded lines that go to the current file in one write
    int m_iBatchLines = 0;
    QByteArray m_head;      ///< of the lines that come
    QByteArray m_batchHead; ///< what a file that begins with the batch begins with
    qint64 m_unwritten = 0; ///< lines lost since the disk has taken one
    /// What is being written, and how many of its lines are dealt with. Kept here so that another
    /// thread can go on with it when the writer is no more.
    Work m_work;
    size_t m_uDone = 0;

    std::mutex m_filterLock; ///< guards the filter alone
    zr::RepeatFilter m_filter;

    std::mutex m_lock; ///< guards what follows; nothing is logged or written under it
    std::condition_variable m_changed;
    std::deque<Line> m_queue;
    qint64 m_queueBytes = 0;
    qint64 m_lostLines = 0; ///< since the queue was last taken
    quint64 m_given = 0;    ///< lines that came into the queue so far
    quint64 m_written = 0;  ///< and those of them that have been dealt with
    bool m_begun = false;
    bool m_closed = false;
    bool m_waiting = false; ///< the writer sleeps
};
