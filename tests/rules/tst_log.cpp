// The log: its files, its writer, the handler that feeds it, and what is logged at the start.
#include "diagnostics.h"
#include "logfilerules.h"
#include "qmylogthread.h"

#include <QSemaphore>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <future>
#include <map>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace {

const QDate kToday(2026, 3, 2);
const QString kFirstFile = QStringLiteral("zrscreenLog20260302.txt");
const QString kSecondFile = QStringLiteral("zrscreenLog20260302-090500.txt"); ///< of a full one

const QRegularExpression
    kHeader(QStringLiteral("\\[2026-03-0[23]\\]\\[thread (\\d+)(, GUI)?\\]\r\n"));

std::atomic<int> g_passedOn{0};
QSemaphore g_standing;
QSemaphore g_goOn;

/// Stand in for the handler that a host may have installed.
void countingHandler(QtMsgType, const QMessageLogContext&, const QString&)
{
    ++g_passedOn;
}

void standingHandler(QtMsgType, const QMessageLogContext&, const QString&)
{
    g_standing.release();
    g_goOn.acquire();
}

} // namespace

class tst_Log : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_now = QDateTime(kToday, QTime(9, 5));
        m_handlerBefore = qInstallMessageHandler(countingHandler);
        g_passedOn = 0;
    }
    void cleanup()
    {
        qInstallMessageHandler(m_handlerBefore);
        qunsetenv("ZRSCREEN_LOG_STDERR");
    }

    // --- Files ----------------------------------------------------------------------------------

    // Two within a second share a file, and three files of the day are kept.
    void rollOvers()
    {
        const QStringList others{"host.txt", "zrscreenLog20260301-080000.txt"};
        const QString backup = QStringLiteral("zrscreenLog20260302.bak");
        for (const QString& name : others + QStringList{backup})
            makeFile(name);
        fillTheDay(0);
        const QStringList kept =
            others + QStringList{"zrscreenLog20260302-050000.txt", kSecondFile, backup, kFirstFile};
        QMyLogThread log(settings());
        fillUp(&log, kFirstFile, 1001);
        log.myWriteLog("first\r\n");
        QCOMPARE(content(kSecondFile), QByteArray("first\r\n"));
        QCOMPARE(files(), kept);
        fillUp(&log, kSecondFile, 1000); // beside the one of "first"
        log.myWriteLog("again\r\n");
        QCOMPARE(files(), kept);
        QVERIFY(content(kSecondFile).endsWith("again\r\n"));
        m_now = m_now.addSecs(1);
        fillUp(&log, kSecondFile, 1000);
        QCOMPARE(files(), kept); // which nobody has looked at yet

        // Neither the suffix nor the count of lines goes over to the new day.
        m_now = QDateTime(kToday.addDays(1), QTime(0, 0));
        const QString nextDay = QStringLiteral("zrscreenLog20260303.txt");
        makeFile(nextDay, zr::kLogFileLimitBytes + 1);
        log.myWriteLog("next day\r\n");
        QVERIFY(content(nextDay).endsWith("next day\r\n"));
        // The clock may go back as well, to before the full files.
        m_now = QDateTime(kToday, QTime(4, 30));
        log.myWriteLog("back\r\n");
        QVERIFY(content(kFirstFile).endsWith("back\r\n"));
        fillUp(&log, kFirstFile, 1000);
        log.myWriteLog("kept\r\n");
        QCOMPARE(content("zrscreenLog20260302-043000.txt"), QByteArray("kept\r\n"));
    }

    void linesThatCannotBeWrittenAreCountedElsewhere()
    {
        LogSettings s = settings();
        s.folder = path("log");
        makeFile("log"); // a file where the folder should be
        QMyLogThread log(s);
        for (int i = 0; i < 2000; ++i)
            log.myWriteLog("lost\r\n");

        QVERIFY(QFile::remove(s.folder));
        log.myWriteLog("kept\r\n"); // makes the folder
        const QString name = "log/" + kFirstFile;
        QVERIFY(content(name).endsWith("log lines lost: 2000\r\nkept\r\n"));
        QVERIFY(QFile::remove(path(name)));
        log.myWriteLog("anew\r\n");
        QVERIFY(raw(name).startsWith("[2026-03-02][thread"));
        // Had the lost lines counted, the next line would find the file full.
        QVERIFY(QFile::resize(path(name), zr::kLogFileLimitBytes + 1));
        log.myWriteLog("also\r\n");
        QVERIFY(content(name).endsWith("also\r\n"));
    }

    void threeDaysAreKept()
    {
        const QStringList kept{kFirstFile,
                               "zrscreenLog20260228-235959.txt",
                               "zrscreenLog20260227.txt", // three days back, over a month's end
                               "zrscreenLog20991231.txt", // a clock that was wrong
                               "zrscreenLogOld.txt",      // letters sort behind digits
                               "zrscreenLog20200101.log",
                               "hostLog20200101.txt",
                               ".txt"};
        const QStringList deleted{"zrscreenLog.txt", // '.' sorts before them
                                  "zrscreenLog20251231-235959.txt", "zrscreenLog20251231.txt",
                                  "zrscreenLog20260227-000000.txt"};
        QCOMPARE(zr::oldLogsToDelete(kept + deleted, kToday), deleted);
    }

    void takesTheFirstFolderThatCanBeWritten()
    {
        makeFile("file");
        const QStringList folders{path("file/log"), path("state/log"), path("other")};
        QCOMPARE(firstWritableFolder(folders), path("state/log"));
        QVERIFY(QFileInfo(path("state/log")).isDir() && !QFileInfo::exists(path("other")));
        QVERIFY(firstWritableFolder({path("file/log")}).isEmpty());
        for (const char* const folder : {"/usr/bin", "/sbin", "/usr/local/lib/client"})
            QVERIFY2(zr::isSystemFolder(folder), folder);
        for (const char* const folder : {"/opt/client/bin", "/usr/src/x/bin", "/binary", "C:/bin"})
            QVERIFY2(!zr::isSystemFolder(folder), folder);
        qputenv("ZRSCREEN_LOG_DIR", path("chosen").toLocal8Bit());
        QCOMPARE(logFolders().first(), path("chosen"));
        qunsetenv("ZRSCREEN_LOG_DIR");
        QCOMPARE(logFolders().first(), QCoreApplication::applicationDirPath() + "/log");
    }

    // --- Threads --------------------------------------------------------------------------------

    void aStalledWriterHoldsNobodyAndBoundsTheQueue()
    {
        QSemaphore resume;
        QSemaphore stalled;
        bool stall = false;
        LogSettings s = settings();
        s.now = [&] {
            if (std::exchange(stall, false)) {
                stalled.release();
                resume.acquire();
            }
            return m_now;
        };
        s.queueLimitBytes = qint64(100) * (48 + 2 * 7);
        QMyLogThread log(s);
        stall = true;
        log.start();
        emit log.notifyWiteLog("stall\r\n");
        stalled.acquire();
        // The writer has taken the first line; 100 more fit.
        for (int i = 0; i < 1000; ++i)
            emit log.notifyWiteLog(QStringLiteral("%1\r\n").arg(i, 5));
        QVERIFY(!log.waitUntilWritten(20) && !log.finish(20));
        emit log.notifyWiteLog("too late\r\n");
        resume.release();
        QVERIFY(log.finish());

        const QStringList written = lines(kFirstFile);
        QCOMPARE(written.size(), 102);
        QCOMPARE(written.at(0), QStringLiteral("stall"));
        QCOMPARE(written.at(100), QStringLiteral("   99"));
        QVERIFY2(written.at(101).endsWith("log lines lost: 900"), qPrintable(written.at(101)));
    }

    void finishWritesWhatNoThreadDid()
    {
        {
            QMyLogThread log(settings());
            QVERIFY(!log.waitUntilBegun(0));
            emit log.notifyWiteLog("one\r\n");
            QVERIFY(log.finish());
            emit log.notifyWiteLog("too late\r\n");
            QVERIFY(log.finish());
        }
        {
            // Lines that came before the thread; and without finish().
            QMyLogThread log(settings());
            emit log.notifyWiteLog("two\r\n");
            log.start();
            QVERIFY(log.waitUntilBegun(5000) && log.waitUntilWritten(5000));
            QCOMPARE(content(kFirstFile), QByteArray("one\r\ntwo\r\n"));
            emit log.notifyWiteLog("three\r\n");
        }
        QCOMPARE(content(kFirstFile), QByteArray("one\r\ntwo\r\nthree\r\n"));
    }

    void anotherThreadGoesOnForAWriterThatIsNoMore()
    {
        // As when the system ends the threads of a process: this one stands still for good in the
        // middle of its lines, and is never given back.
        auto* const stalled = new std::promise<void>;
        auto calls = std::make_shared<int>(0);
        LogSettings s = settings();
        s.now = [now = m_now, calls, stalled] {
            constexpr int kCallOfFourthLine = 5; // the first is the constructor's
            if (++*calls == kCallOfFourthLine) {
                stalled->set_value();
                std::promise<void> never;
                never.get_future().wait();
            }
            return now;
        };
        auto* const log = new QMyLogThread(s);
        for (int line = 1; line <= 6; ++line)
            emit log->notifyWiteLog(QStringLiteral("%1\r\n").arg(line));
        log->start();
        stalled->get_future().wait();
        emit log->notifyWiteLog("7\r\n");
        log->writeWaitingLines();
        QCOMPARE(content(kFirstFile), QByteArray("1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n"));
    }

    void theWriterLogsItsOwnDeletions()
    {
        fillTheDay(zr::kLogFileLimitBytes);
        QMyLogThread log(settings());
        log.start();
        installLogHandler(&log);
        for (int i = 0; i <= 1001; ++i)
            qDebug("%d", i);
        QVERIFY(log.waitUntilWritten(5000)); // up to the deletion
        QVERIFY(log.waitUntilWritten(5000)); // and what was logged about it
        QVERIFY(removeLogHandler() && log.finish());
        QCOMPARE(lines(kSecondFile).filter("delete log file:").size(), 4);
        QCOMPARE(files().size(), 3);
    }

    // --- Message handler ------------------------------------------------------------------------

    /// Each message is either in the log, behind those that its thread sent before and under a line
    /// with that thread, or passed on.
    void noMessageIsLostWhileTheHandlerComesAndGoes()
    {
        constexpr int kThreads = 4;
        std::atomic<bool> stop{false};
        std::atomic<int> sent{0};
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&stop, &sent, t] {
                for (int i = 1; !stop; ++i, ++sent)
                    qDebug("%d %d", t, i);
            });
        }
        for (int round = 0; round < 40; ++round) {
            QMyLogThread log(settings());
            log.start();
            installLogHandler(&log);
            QTest::qSleep(2);
            QVERIFY(removeLogHandler() && log.finish() && log.isFinished());
        }
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
        int last[kThreads]{};
        const QStringList written = lines(kFirstFile);
        for (const QString& line : written) {
            const int number = line.section(' ', 1).toInt();
            QVERIFY2(number > std::exchange(last[line.section(' ', 0, 0).toInt()], number),
                     qPrintable(line));
        }
        QVERIFY(!written.isEmpty());
        QCOMPARE(written.size() + g_passedOn, sent.load());

        std::map<QString, std::set<QString>> threadsOf; // by who sent
        const QString log = QString::fromLatin1(raw(kFirstFile));
        for (auto header = kHeader.globalMatch(log); header.hasNext();) {
            const auto match = header.next();
            threadsOf[log.mid(match.capturedEnd()).section(' ', 0, 0)].insert(match.captured(1));
        }
        std::set<QString> all;
        for (const auto& [sender, numbers] : threadsOf) {
            QCOMPARE(numbers.size(), std::size_t(1));
            all.insert(*numbers.begin());
        }
        QVERIFY(all.size() == threadsOf.size() && !all.empty());
    }

    void theHandlerBeforeItGetsMessages()
    {
        for (const char* variable : {"", "0", "1"}) {
            qputenv("ZRSCREEN_LOG_STDERR", variable);
            const int passedOn = *variable == '1' ? 1 : 0;
            g_passedOn = 0;
            QMyLogThread log(settings());
            installLogHandler(&log);
            qDebug("while it is installed");
            QCOMPARE(g_passedOn.load(), passedOn);
            QVERIFY(removeLogHandler());
            qDebug("afterwards");
            QCOMPARE(g_passedOn.load(), passedOn + 1);
            // A thread may be about to call it when it is removed.
            logMessageHandler(QtDebugMsg, QMessageLogContext(), "late");
            QCOMPARE(g_passedOn.load(), passedOn + 2);
        }
        QCOMPARE(lines(kFirstFile).size(), 3);

        qunsetenv("ZRSCREEN_LOG_STDERR");
        g_passedOn = 0;
        QMyLogThread log(settings());
        log.start();
        installLogHandler(&log);
        // What ends the process is written before the handler returns.
        logMessageHandler(QtFatalMsg, QMessageLogContext(), "the end");
        QVERIFY(content(kFirstFile).endsWith("fatal: the end\r\n"));
        QCOMPARE(g_passedOn.load(), 1);
        // A handler that the host installs over it is left in place.
        qInstallMessageHandler(countingHandler);
        QVERIFY(removeLogHandler());
        QVERIFY(qInstallMessageHandler(countingHandler) == countingHandler);
    }

    void theEndOfTheProcessWaitsForNoThread()
    {
        // As when the system ends a thread inside the handler: it does not come out again. The
        // lines that wait fill the file, and what is logged of the deletions reaches no handler.
        qInstallMessageHandler(standingHandler);
        qputenv("ZRSCREEN_LOG_STDERR", "1");
        fillTheDay(zr::kLogFileLimitBytes);
        QMyLogThread log(settings());
        for (int i = 0; i <= 1001; ++i)
            emit log.notifyWiteLog("x\r\n");
        installLogHandler(&log);
        std::thread inside([] { qDebug("inside"); });
        g_standing.acquire();

        QElapsedTimer timer;
        timer.start();
        abandonLogMessages();
        log.writeWaitingLines();
        const qint64 elapsedMs = timer.elapsed();
        g_goOn.release();
        inside.join();
        QVERIFY2(elapsedMs < 500, qPrintable(QString::number(elapsedMs)));
        QCOMPARE(lines(kSecondFile).size(), 1);
        QCOMPARE(files().size(), 3);
    }

    void startTidiesAndReports()
    {
        makeFile("zrscreenLog20260226.txt");
        QMyLogThread log(settings());
        installLogHandler(&log);
        printExefileInfo();
        globalCleanLog(m_folder->path(), kToday);
        createTmpFrameDir(path("a/b"));
        createTmpFrameDir(path("a/b")); // is there, so says nothing
        QVERIFY(removeLogHandler() && log.finish());

        QCOMPARE(files(), QStringList{kFirstFile});
        QVERIFY(QFileInfo(path("a/b/tmpFrame")).isDir());
        const QFileInfo program(QCoreApplication::applicationFilePath());
        const QString expected[] = {
            "^\"" + program.filePath() + "\" ,createTime: \".*\" ,lastModify: \""
                + program.lastModified().toString("yyyy-MM-dd hh:mm:ss") + "\"$",
            program.path() + "/ZRScreenMod.dll", program.path() + "/ZrRTCEngine.dll",
            "^delete log file: \"zrscreenLog20260226.txt\"$", "^createTmpFrameDir ret: true$"};
        const QStringList written = lines(kFirstFile);
        QCOMPARE(written.size(), 5);
        for (int i = 0; i < 5; ++i)
            QVERIFY2(written[i].contains(QRegularExpression(expected[i])), qPrintable(written[i]));
    }

    void aStormIsALineWithACount()
    {
        zr::RepeatFilter filter;
        const auto storm = [&filter](int times, qint64 nowMs) {
            int admitted = 0;
            for (int i = 0; i < times; ++i)
                admitted += filter.admit(1, nowMs) + 100 * filter.admit(2, nowMs);
            return admitted;
        };
        QCOMPARE(storm(10, 0), 1010);
        QCOMPARE(storm(10, 1000), 1010); // another second
        QVERIFY(filter.takeCount(5000).isEmpty());
        filter.written(1, "one");
        filter.written(2, "two");
        QCOMPARE(storm(90, 1500), 0);
        QVERIFY(filter.takeCount(1999).isEmpty());
        QCOMPARE(filter.takeCount(2500), QStringLiteral("one (90 times more in 1500 ms)"));
        QCOMPARE(filter.takeCount(2600, true), QStringLiteral("two (90 times more in 1600 ms)"));
        QVERIFY(filter.takeCount(9999, true).isEmpty());
        for (quint64 key = 3; key < 1000; ++key) // none of which is many
            QVERIFY(filter.admit(key, 3000));

        // What the handler does not give is counted, at the latest when the log ends.
        QMyLogThread log(settings());
        installLogHandler(&log);
        for (int i = 0; i < 5000; ++i)
            qDebug("again");
        QVERIFY(removeLogHandler() && log.finish());
        int total = 0;
        const QStringList written = lines(kFirstFile);
        for (const QString& line : written)
            total += line == "again" ? 1 : line.section('(', 1).section(' ', 0, 0).toInt();
        QCOMPARE(total, 5000);
        QVERIFY(written.size() < 100);
    }

private:
    LogSettings settings() const
    {
        LogSettings s;
        s.folder = m_folder->path();
        s.now = [this] { return m_now; };
        return s;
    }
    QString path(const QString& name) const { return m_folder->filePath(name); }
    QByteArray raw(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Without the lines that tell day and thread.
    QByteArray content(const QString& name) const
    {
        const QByteArray bytes = raw(name);
        return QString::fromLatin1(bytes.constData(), bytes.size()).remove(kHeader).toLatin1();
    }
    QStringList lines(const QString& name) const
    {
        QStringList found = QString::fromLocal8Bit(content(name)).split("\r\n");
        found.removeLast(); // behind the last line end
        return found;
    }
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }
    void makeFile(const QString& name, qint64 bytes = 1) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(bytes));
    }
    /// Five files of the day, each hour's from one to five, and the first one.
    void fillTheDay(qint64 firstFileBytes) const
    {
        for (int hour = 1; hour <= 5; ++hour)
            makeFile(QString::asprintf("zrscreenLog20260302-%02d0000.txt", hour));
        makeFile(kFirstFile, firstFileBytes);
    }
    /// Fills the current file, which is noticed after the 1001st line since the last look.
    void fillUp(QMyLogThread* log, const QString& name, int lines) const
    {
        QVERIFY(QFile::resize(path(name), zr::kLogFileLimitBytes + 1));
        for (int i = 0; i < lines; ++i)
            log->myWriteLog("x\r\n");
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QDateTime m_now;
    QtMessageHandler m_handlerBefore = nullptr;
};

QTEST_GUILESS_MAIN(tst_Log)
#include "tst_log.moc"
