#include "guithread.h"
#include "testsupport.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

/// Threads that a test starts. The GUI thread can serve them, or leave them waiting.
class Threads
{
public:
    ~Threads() { join(); }
    void start(std::function<void()> body)
    {
        ++m_running;
        m_threads.emplace_back([this, body = std::move(body)] {
            body();
            --m_running;
            QCoreApplication::eventDispatcher()->wakeUp();
        });
    }
    /// Runs the event loop until all have ended.
    bool serve(int timeoutMs = 10000)
    {
        const QDeadlineTimer deadline(timeoutMs);
        while (m_running > 0 && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return m_running == 0;
    }
    void join()
    {
        for (std::thread& thread : m_threads)
            thread.join();
        m_threads.clear();
    }

private:
    std::vector<std::thread> m_threads;
    std::atomic<int> m_running{0};
};

void sleepMs(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace

class Stepper : public QObject
{
    Q_OBJECT

signals:
    void step(int number);
};

class TestGuiThread : public QObject
{
    Q_OBJECT

private slots:
    void init() { GuiThread::init(); }
    void cleanup()
    {
        GuiThread::shutdown();
        QCoreApplication::processEvents();
    }

    void runsThereAndComesBackWithTheResult();
    void keepsOrderWithQueuedSignals();
    void dropsWhatIsNotTakenAndWaitsForWhatHasBegun();
    void survivesExceptions();
    void drainLetsCallersGoOn();
    void drainMayNest();
    void shutdownLetsEveryWaiterGo();
};

void TestGuiThread::runsThereAndComesBackWithTheResult()
{
    bool ran = false;
    QVERIFY(GuiThread::isCurrent());
    QVERIFY(GuiThread::run([&ran] { ran = true; }) && ran);

    QThread* ranOn = nullptr;
    bool nested = false;
    bool succeeded = false;
    Threads threads;
    threads.start([&] {
        succeeded = !GuiThread::isCurrent() && GuiThread::run([&] {
            ranOn = QThread::currentThread();
            nested = GuiThread::run([] {});
        });
    });
    QVERIFY(threads.serve());
    QVERIFY(succeeded && nested);
    QCOMPARE(ranOn, thread());
}

// A host thread that sets a name and then adds a participant must see both happen in that order.
void TestGuiThread::keepsOrderWithQueuedSignals()
{
    constexpr int kSteps = 90;
    Stepper stepper;
    QVector<int> seen;
    connect(&stepper, &Stepper::step, this, [&seen](int number) { seen.append(number); });
    QVector<int> expected(kSteps);
    std::iota(expected.begin(), expected.end(), 0);
    for (const bool draining : {false, true}) {
        seen.clear();
        std::atomic<bool> ended{false};
        Threads threads;
        threads.start([&] {
            for (int i = 0; i < kSteps; i += 3) {
                emit stepper.step(i);
                GuiThread::post([&seen, i] { seen.append(i + 1); });
                if (!GuiThread::run([&seen, i] { seen.append(i + 2); }))
                    break;
            }
            ended = true;
            GuiThread::wake();
        });
        if (draining)
            GuiThread::drainUntil([&ended] { return ended.load(); });
        QVERIFY(threads.serve());
        QCOMPARE(seen, expected);
    }

    // From the GUI thread itself posted work is queued too.
    GuiThread::post([&seen] { seen.clear(); });
    QCOMPARE(seen.size(), kSteps);
    QCoreApplication::processEvents();
    QVERIFY(seen.isEmpty());
}

void TestGuiThread::dropsWhatIsNotTakenAndWaitsForWhatHasBegun()
{
    bool ran = false;
    bool succeeded = true;
    const auto held = std::make_shared<int>(0);
    long usesAfter = 0;
    Threads busy;
    busy.start([&] {
        succeeded = GuiThread::run([&ran, held] { ran = true; }, 30);
        usesAfter = held.use_count();
    });
    busy.join(); // the GUI thread is busy here
    QVERIFY(!succeeded);
    QCOMPARE(usesAfter, 1L); // what the work held went with the call
    QCoreApplication::processEvents();
    QVERIFY(!ran);

    bool finishedFirst = false;
    Threads threads;
    threads.start([&] {
        const auto slowWork = [&ran] {
            sleepMs(120);
            ran = true;
        };
        succeeded = GuiThread::run(slowWork, 60);
        finishedFirst = ran;
    });
    QVERIFY(threads.serve());
    QVERIFY(succeeded && finishedFirst);
}

void TestGuiThread::survivesExceptions()
{
    const QRegularExpression report(QStringLiteral("^work of the GUI thread failed"));
    for (int i = 0; i < 3; ++i)
        QTest::ignoreMessage(QtWarningMsg, report);
    bool succeeded = true;
    Threads threads;
    threads.start(
        [&] { succeeded = GuiThread::run([] { throw std::runtime_error("out of tiles"); }); });
    QVERIFY(threads.serve());
    QVERIFY(!succeeded);
    QVERIFY(!GuiThread::run([] { throw 42; }));
    GuiThread::post([] { throw std::runtime_error("posted"); });
    QCoreApplication::processEvents();
}

// A release waits for calls of other threads, and those may wait for the GUI thread.
void TestGuiThread::drainLetsCallersGoOn()
{
    constexpr int kCalls = 6;
    std::atomic<int> underWay{kCalls};
    int served = 0;
    GuiThread::post([] { throw std::runtime_error("in between"); });
    QTest::ignoreMessage(QtWarningMsg, "work of the GUI thread failed: in between");
    Threads threads;
    for (int i = 0; i < kCalls; ++i) {
        threads.start([&, i] {
            sleepMs(10 * i);
            // Half of them end without having needed the GUI thread.
            if (i % 2 == 0 && !GuiThread::run([&served] { ++served; }))
                return;
            --underWay;
            GuiThread::wake();
        });
    }
    GuiThread::drainUntil([&underWay] { return underWay == 0; });
    QCOMPARE(underWay.load(), 0);
    QCOMPARE(served, kCalls / 2);
    threads.join();
}

void TestGuiThread::drainMayNest()
{
    std::atomic<bool> outer{false};
    std::atomic<bool> inner{false};
    Threads threads;
    threads.start([&] {
        // This work itself waits for the thread below.
        outer =
            GuiThread::run([&inner] { GuiThread::drainUntil([&inner] { return inner.load(); }); });
        GuiThread::wake();
    });
    threads.start([&] {
        sleepMs(30);
        inner = GuiThread::run([] {});
        GuiThread::wake();
    });
    GuiThread::drainUntil([&outer] { return outer.load(); });
    QVERIFY(inner);
}

void TestGuiThread::shutdownLetsEveryWaiterGo()
{
    constexpr int kWaiters = 5;
    std::atomic<int> waiting{0};
    std::atomic<int> refused{0};
    bool ran = false;
    Threads threads;
    for (int i = 0; i < kWaiters; ++i) {
        threads.start([&] {
            ++waiting;
            if (!GuiThread::run([&ran] { ran = true; }))
                ++refused;
        });
    }
    const auto held = std::make_shared<int>(0);
    GuiThread::post([&ran, held] { ran = true; });
    while (waiting < kWaiters)
        sleepMs(1);
    sleepMs(20);

    QElapsedTimer timer;
    timer.start();
    GuiThread::shutdown();
    threads.join();
    QVERIFY2(timer.elapsed() < 500, "a waiter was not woken");
    QCOMPARE(refused.load(), kWaiters);
    QVERIFY(!ran);
    QCOMPARE(held.use_count(), 1L); // dropped work gives back what it held

    QVERIFY(!GuiThread::isCurrent());
    QVERIFY(!GuiThread::run([&ran] { ran = true; }));
    GuiThread::post([&ran] { ran = true; });
    GuiThread::wake();
    GuiThread::drainUntil([] { return false; }); // nothing could ever wake it
    GuiThread::shutdown();
    QCoreApplication::processEvents();
    QVERIFY(!ran);

    GuiThread::init();
    QVERIFY(GuiThread::run([&ran] { ran = true; }));
    QVERIFY(ran);
}

ZR_WIDGET_TEST_MAIN(TestGuiThread)
#include "tst_guithread.moc"
