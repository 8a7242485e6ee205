#include "diagnostics.h"
#include "logfilerules.h"
#include "qmylogthread.h"

#include <QSemaphore>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace {

const QDate kToday(2026, 3, 2);
const QString kFirstFile = QStringLiteral("zrscreenLog20260302.txt");
const QString kSecondFile = QStringLiteral("zrscreenLog20260302-120000.txt"); ///< of a full one

std::atomic<int> g_passedOn{0};

void countingHandler(QtMsgType, const QMessageLogContext&, const QString&)
{
    ++g_passedOn;
}

QSemaphore g_standing;
QSemaphore g_goOn;

void standingHandler(QtMsgType, const QMessageLogContext&, const QString&)
{
    g_standing.release();
    g_goOn.acquire();
}

/// Stands in for the handler that a host may have installed.
class HostHandler
{
public:
    explicit HostHandler(QtMessageHandler handler = countingHandler)
        : m_before(qInstallMessageHandler(handler))
    {
        g_passedOn = 0;
    }
    ~HostHandler() { qInstallMessageHandler(m_before); }
    HostHandler(const HostHandler&) = delete;
    HostHandler& operator=(const HostHandler&) = delete;

private:
    const QtMessageHandler m_before;
};

} // namespace

class tst_QMyLogThread : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theSizeIsExaminedOncePer1001Lines_data();
    void theSizeIsExaminedOncePer1001Lines();
    void rollOvers();
    void linesThatCannotBeWrittenAreLostAndDoNotCount();

    void everyLineOfEveryThreadIsWrittenInOrder();
    void aStalledWriterHoldsNobodyAndBoundsTheQueue();
    void finishWritesWhatNoThreadDid();
    void anotherThreadGoesOnForAWriterThatIsNoMore();
    void theWriterLogsItsOwnDeletions();

    void theHandlerComesAndGoesWhileThreadsLog();
    void theHandlerBeforeItGetsMessages();
    void aFatalMessageIsWrittenBeforeTheHandlerReturns();
    void theEndOfTheProcessWaitsForNoThread();

    void startTidiesAndReports();

private:
    LogSettings settings();
    std::unique_ptr<QMyLogThread> logThread();
    QString path(const QString& name) const { return m_folder->filePath(name); }
    QByteArray content(const QString& name) const;
    QStringList lines(const QString& name) const;
    void makeFile(const QString& name, qint64 bytes = 1) const;
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }
    /// Five files of the day, each hour's from one to five.
    void fillTheDay() const;
    /// Makes the next line find the current file full.
    void fillUp(QMyLogThread* log, const QString& name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QDateTime m_now;
};

void tst_QMyLogThread::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_now = QDateTime(kToday, QTime(12, 0));
}

void tst_QMyLogThread::cleanup()
{
    m_folder.reset();
    qunsetenv("ZRSCREEN_LOG_STDERR");
}

LogSettings tst_QMyLogThread::settings()
{
    LogSettings s;
    s.folder = m_folder->path();
    s.now = [this] { return m_now; };
    return s;
}

std::unique_ptr<QMyLogThread> tst_QMyLogThread::logThread()
{
    return std::make_unique<QMyLogThread>(settings());
}

QByteArray tst_QMyLogThread::content(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList tst_QMyLogThread::lines(const QString& name) const
{
    QStringList found = QString::fromLocal8Bit(content(name)).split(QStringLiteral("\r\n"));
    found.removeLast(); // behind the last line end
    return found;
}

void tst_QMyLogThread::makeFile(const QString& name, qint64 bytes) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(bytes));
}

void tst_QMyLogThread::fillTheDay() const
{
    for (int hour = 1; hour <= 5; ++hour)
        makeFile(QStringLiteral("zrscreenLog20260302-%1.txt")
                     .arg(hour * 10000, 6, 10, QLatin1Char('0')));
}

void tst_QMyLogThread::fillUp(QMyLogThread* log, const QString& name) const
{
    for (int i = 0; i <= zr::kLinesBetweenSizeChecks; ++i)
        log->myWriteLog(QStringLiteral("x\r\n"));
    QVERIFY(QFile::resize(path(name), zr::kLogFileLimitBytes + 1));
}

// --- Files ----------------------------------------------------------------------------------

void tst_QMyLogThread::theSizeIsExaminedOncePer1001Lines_data()
{
    QTest::addColumn<bool>("inOneBatch");
    QTest::addColumn<bool>("full");
    QTest::newRow("single lines, at the limit") << false << false;
    QTest::newRow("single lines, above it") << false << true;
    QTest::newRow("batch, at the limit") << true << false;
    QTest::newRow("batch, above it") << true << true;
}

void tst_QMyLogThread::theSizeIsExaminedOncePer1001Lines()
{
    QFETCH(const bool, inOneBatch);
    QFETCH(const bool, full);
    constexpr qint64 kLineBytes = 8;
    constexpr int kLines = 2 * 1001 + 1;
    const qint64 bytesAfter1001Lines = zr::kLogFileLimitBytes + (full ? 1 : 0);
    makeFile(kFirstFile, bytesAfter1001Lines - 1001 * kLineBytes);

    const auto log = logThread();
    for (int i = 1; i <= kLines; ++i) {
        const QString line = QStringLiteral("%1\r\n").arg(i, int{kLineBytes} - 2);
        if (inOneBatch)
            emit log->notifyWiteLog(line);
        else
            log->myWriteLog(line);
    }
    QVERIFY(log->finish());

    // A file at the limit is seen to be over it by the next look, 1001 lines later.
    const int inSecond = full ? kLines - 1001 : kLines - 2 * 1001;
    QCOMPARE(files(), (QStringList{kSecondFile, kFirstFile}));
    QCOMPARE(lines(kSecondFile).size(), inSecond);
    QCOMPARE(lines(kSecondFile).first().trimmed().toInt(), kLines - inSecond + 1);
    QCOMPARE(QFileInfo(path(kFirstFile)).size(),
             bytesAfter1001Lines + (kLines - inSecond - 1001) * kLineBytes);
}

// Two within a second share a file, and three files of the day are kept.
void tst_QMyLogThread::rollOvers()
{
    const QStringList others = {QStringLiteral("host.txt"),
                                QStringLiteral("zrscreenLog20260301-080000.txt")};
    for (const QString& name : others)
        makeFile(name);
    fillTheDay();
    const auto log = logThread();
    fillUp(log.get(), kFirstFile);
    log->myWriteLog(QStringLiteral("first\r\n"));
    QCOMPARE(content(kSecondFile), QByteArray("first\r\n"));
    const QStringList kept{others.at(0), others.at(1),
                           QStringLiteral("zrscreenLog20260302-050000.txt"), kSecondFile,
                           kFirstFile};
    QCOMPARE(files(), kept);
    fillUp(log.get(), kSecondFile);
    log->myWriteLog(QStringLiteral("again\r\n"));
    QCOMPARE(files(), kept);
    QVERIFY(content(kSecondFile).endsWith("again\r\n"));
    fillUp(log.get(), kSecondFile);

    // Neither the suffix nor the count of lines goes over to the new day.
    m_now = QDateTime(kToday.addDays(1), QTime(0, 0));
    const QString nextDay = QStringLiteral("zrscreenLog20260303.txt");
    makeFile(nextDay, zr::kLogFileLimitBytes + 1);
    log->myWriteLog(QStringLiteral("next day\r\n"));
    QVERIFY(content(nextDay).endsWith("next day\r\n"));
    QCOMPARE(files(), kept + QStringList{nextDay});

    // The clock may go back as well.
    m_now = QDateTime(kToday, QTime(23, 59, 59));
    log->myWriteLog(QStringLiteral("back\r\n"));
    QVERIFY(content(kFirstFile).endsWith("back\r\n"));
}

void tst_QMyLogThread::linesThatCannotBeWrittenAreLostAndDoNotCount()
{
    LogSettings s = settings();
    s.folder = path(QStringLiteral("log"));
    makeFile(QStringLiteral("log")); // a file where the folder should be
    QMyLogThread log(s);
    for (int i = 0; i < 2000; ++i)
        log.myWriteLog(QStringLiteral("lost\r\n"));

    QVERIFY(QFile::remove(s.folder));
    log.myWriteLog(QStringLiteral("kept\r\n")); // makes the folder
    const QString name = QStringLiteral("log/") + kFirstFile;
    QCOMPARE(content(name), QByteArray("kept\r\n"));
    // Had the lost lines counted, the next line would find the file full.
    QVERIFY(QFile::resize(path(name), zr::kLogFileLimitBytes + 1));
    log.myWriteLog(QStringLiteral("also\r\n"));
    QVERIFY(content(name).endsWith("also\r\n"));

    // Others may take the file away while it is in use.
    QVERIFY(QFile::remove(path(name)));
    log.myWriteLog(QStringLiteral("new\r\n"));
    QCOMPARE(content(name), QByteArray("new\r\n"));
}

// --- Threads --------------------------------------------------------------------------------

void tst_QMyLogThread::everyLineOfEveryThreadIsWrittenInOrder()
{
    constexpr int kThreads = 8;
    constexpr int kLinesPerThread = 12'500;
    const HostHandler host;
    const auto log = logThread();
    log->start(QThread::InheritPriority);
    installLogHandler(log.get());
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < kLinesPerThread; ++i)
                qDebug("line %d of thread %d", i, t);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QVERIFY(removeLogHandler());
    QVERIFY(log->finish());
    QVERIFY(log->isFinished());
    QCOMPARE(g_passedOn.load(), 0);

    std::vector<int> next(kThreads, 0);
    for (const QString& line : lines(kFirstFile)) {
        const QStringList words = line.mid(line.indexOf(QLatin1String("line "))).split(' ');
        QCOMPARE(words.size(), 5);
        const int thread = words.at(4).toInt();
        QCOMPARE(words.at(1).toInt(), next.at(static_cast<size_t>(thread))++);
    }
    QCOMPARE(next, std::vector<int>(kThreads, kLinesPerThread));
}

void tst_QMyLogThread::aStalledWriterHoldsNobodyAndBoundsTheQueue()
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
    emit log.notifyWiteLog(QStringLiteral("stall\r\n"));
    stalled.acquire();
    // The writer has taken the first line; 100 more fit.
    for (int i = 0; i < 1000; ++i)
        emit log.notifyWiteLog(QStringLiteral("%1\r\n").arg(i, 5));
    QVERIFY(!log.waitUntilWritten(20));
    QVERIFY(!log.finish(20));
    emit log.notifyWiteLog(QStringLiteral("too late\r\n"));
    resume.release();
    QVERIFY(log.finish());

    const QStringList written = lines(kFirstFile);
    QCOMPARE(written.size(), 102);
    QCOMPARE(written.at(0), QStringLiteral("stall"));
    QCOMPARE(written.at(100), QStringLiteral("   99"));
    QVERIFY2(written.at(101).endsWith(QLatin1String("log lines lost: 900")),
             qPrintable(written.at(101)));
}

void tst_QMyLogThread::finishWritesWhatNoThreadDid()
{
    {
        QMyLogThread log(settings());
        QVERIFY(!log.waitUntilBegun(0));
        emit log.notifyWiteLog(QStringLiteral("one\r\n"));
        QVERIFY(log.finish());
        QCOMPARE(content(kFirstFile), QByteArray("one\r\n"));
        emit log.notifyWiteLog(QStringLiteral("too late\r\n"));
        QVERIFY(log.finish());
    }
    {
        // Lines that came before the thread; and without finish().
        QMyLogThread log(settings());
        emit log.notifyWiteLog(QStringLiteral("two\r\n"));
        log.start();
        QVERIFY(log.waitUntilBegun(5000));
        QVERIFY(log.waitUntilWritten(5000));
        QCOMPARE(content(kFirstFile), QByteArray("one\r\ntwo\r\n"));
        emit log.notifyWiteLog(QStringLiteral("three\r\n"));
    }
    QCOMPARE(content(kFirstFile), QByteArray("one\r\ntwo\r\nthree\r\n"));
}

void tst_QMyLogThread::anotherThreadGoesOnForAWriterThatIsNoMore()
{
    // As when the system ends the threads of a process: this one stands still for good in the
    // middle of its lines, and is never given back.
    auto* const stalled = new std::promise<void>;
    auto calls = std::make_shared<int>(0);
    LogSettings s = settings();
    s.now = [this, calls, stalled] {
        constexpr int kCallOfFourthLine = 5; // the first is the constructor's
        if (++*calls == kCallOfFourthLine) {
            stalled->set_value();
            std::promise<void> never;
            never.get_future().wait();
        }
        return m_now;
    };
    auto* const log = new QMyLogThread(s);
    QByteArray expected;
    const auto give = [log, &expected](int line) {
        emit log->notifyWiteLog(QStringLiteral("%1\r\n").arg(line));
        expected += QByteArray::number(line) + "\r\n";
    };
    for (int line = 1; line <= 6; ++line)
        give(line);
    log->start();
    stalled->get_future().wait();
    for (int line = 7; line <= 9; ++line)
        give(line);
    log->writeWaitingLines();
    QCOMPARE(content(kFirstFile), expected);
}

void tst_QMyLogThread::theWriterLogsItsOwnDeletions()
{
    const HostHandler host;
    fillTheDay();
    makeFile(kFirstFile, zr::kLogFileLimitBytes);
    const auto log = logThread();
    log->start();
    installLogHandler(log.get());
    for (int i = 0; i <= 1001; ++i)
        qDebug("x");
    QVERIFY(log->waitUntilWritten(5000)); // up to the deletion
    QVERIFY(log->waitUntilWritten(5000)); // and what was logged about it
    QVERIFY(removeLogHandler());
    QVERIFY(log->finish());
    const QStringList written = lines(kSecondFile);
    QCOMPARE(written.filter(QStringLiteral("delete log file:")).size(), 4);
    QCOMPARE(files().size(), 3);
}

// --- Message handler ------------------------------------------------------------------------

void tst_QMyLogThread::theHandlerComesAndGoesWhileThreadsLog()
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 40;
    const HostHandler host;
    std::atomic<bool> stop{false};
    std::atomic<int> logged{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&stop, &logged] {
            while (!stop) {
                qDebug("x");
                ++logged;
            }
        });
    }
    for (int round = 0; round < kRounds; ++round) {
        const auto log = logThread();
        log->start();
        installLogHandler(log.get());
        QTest::qSleep(2);
        QVERIFY(removeLogHandler());
        QVERIFY(log->finish());
    }
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
    int written = 0;
    for (const QString& name : files())
        written += lines(name).size();
    QVERIFY(written > 0);
    QVERIFY(g_passedOn > 0);
    QCOMPARE(written + g_passedOn, logged.load());
}

void tst_QMyLogThread::theHandlerBeforeItGetsMessages()
{
    const HostHandler host;
    int written = 0;
    for (const char* variable : {"", "0", "1"}) {
        qputenv("ZRSCREEN_LOG_STDERR", variable);
        const int passedOn = *variable == '1' ? 1 : 0;
        g_passedOn = 0;
        const auto log = logThread();
        installLogHandler(log.get());
        qDebug("while it is installed");
        QCOMPARE(g_passedOn.load(), passedOn);
        QVERIFY(removeLogHandler());
        qDebug("afterwards");
        QCOMPARE(g_passedOn.load(), passedOn + 1);
        // A thread may be about to call it when it is removed.
        logMessageHandler(QtDebugMsg, QMessageLogContext(), QStringLiteral("late"));
        QCOMPARE(g_passedOn.load(), passedOn + 2);
        QVERIFY(log->finish());
        QCOMPARE(lines(kFirstFile).size(), ++written);
    }
    const auto log = logThread();
    // A handler that the host installs over it is left in place.
    installLogHandler(log.get());
    qInstallMessageHandler(countingHandler);
    QVERIFY(removeLogHandler());
    const QtMessageHandler current = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(current);
    QVERIFY(current == countingHandler);
}

void tst_QMyLogThread::aFatalMessageIsWrittenBeforeTheHandlerReturns()
{
    const HostHandler host;
    const auto log = logThread();
    log->start();
    installLogHandler(log.get());
    logMessageHandler(QtFatalMsg, QMessageLogContext(), QStringLiteral("the end"));
    QVERIFY(content(kFirstFile).endsWith("the end\r\n"));
    QCOMPARE(g_passedOn.load(), 1);
    QVERIFY(removeLogHandler());
    QVERIFY(log->finish());
}

void tst_QMyLogThread::theEndOfTheProcessWaitsForNoThread()
{
    // As when the system ends a thread inside the handler: it does not come out again. The lines
    // that wait fill the file, and what is logged of the deletions must not reach a handler.
    const HostHandler host(standingHandler);
    qputenv("ZRSCREEN_LOG_STDERR", "1");
    fillTheDay();
    makeFile(kFirstFile, zr::kLogFileLimitBytes);
    const auto log = logThread();
    for (int i = 0; i <= 1001; ++i)
        emit log->notifyWiteLog(QStringLiteral("x\r\n"));
    installLogHandler(log.get());
    std::thread inside([] { qDebug("inside"); });
    g_standing.acquire();

    QElapsedTimer timer;
    timer.start();
    abandonLogMessages();
    log->writeWaitingLines();
    const qint64 elapsedMs = timer.elapsed();
    g_goOn.release();
    inside.join();
    QVERIFY2(elapsedMs < 500, qPrintable(QString::number(elapsedMs)));
    QCOMPARE(lines(kSecondFile).size(), 1);
    QCOMPARE(files().size(), 3);
}

// --- Start ----------------------------------------------------------------------------------

void tst_QMyLogThread::startTidiesAndReports()
{
    const QString old = QStringLiteral("zrscreenLog20260226.txt");
    const QString recent = QStringLiteral("zrscreenLog20260227.txt");
    makeFile(old);
    makeFile(recent);
    const HostHandler host;
    const auto log = logThread();
    qSetMessagePattern(QStringLiteral("%{message}"));
    installLogHandler(log.get());
    printExefileInfo();
    globalCleanLog(m_folder->path(), kToday);
    createTmpFrameDir(path(QStringLiteral("a/b")));
    createTmpFrameDir(path(QStringLiteral("a/b"))); // is there, so says nothing
    QVERIFY(removeLogHandler());
    qSetMessagePattern(QStringLiteral("%{if-category}%{category}: %{endif}%{message}"));
    QVERIFY(log->finish());

    QCOMPARE(files(), (QStringList{recent, kFirstFile}));
    QVERIFY(QFileInfo(path(QStringLiteral("a/b/tmpFrame"))).isDir());
    const QStringList written = lines(kFirstFile);
    QCOMPARE(written.size(), 5);
    const QString folder = QCoreApplication::applicationDirPath();
    const QFileInfo program(QCoreApplication::applicationFilePath());
    QVERIFY(written.at(0).contains(program.fileName()));
    QVERIFY(written.at(0).contains(QLatin1String(",createTime:")));
    QVERIFY(written.at(0).contains(
        QStringLiteral(",lastModify: \"%1\"")
            .arg(program.lastModified().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")))));
    QVERIFY(written.at(1).contains(folder + QStringLiteral("/ZRScreenMod.dll")));
    QVERIFY(written.at(2).contains(folder + QStringLiteral("/ZrRTCEngine.dll")));
    QCOMPARE(written.at(3), QStringLiteral("delete log file: \"%1\"").arg(old));
    QCOMPARE(written.at(4), QStringLiteral("createTmpFrameDir ret: true"));
}

QTEST_GUILESS_MAIN(tst_QMyLogThread)
#include "tst_qmylogthread.moc"
