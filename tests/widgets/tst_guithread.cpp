// Work for the GUI thread: whether it runs, in which order, and that nobody waits for ever.
#include "guithread.h"
#include "testsupport.h"

#include <atomic>
#include <future>
#include <numeric>
#include <stdexcept>
#include <thread>

namespace {

template<typename Body>
std::future<void> onAnotherThread(Body body)
{
    return std::async(std::launch::async, std::move(body));
}

/// Runs the event loop until the other thread has ended.
bool serve(const std::future<void>& other)
{
    const auto ended = [&] {
        return other.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    return QTest::qWaitFor(ended, 10000);
}

void sleepMs(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace

class TestGuiThread : public QObject
{
    Q_OBJECT

signals:
    void step(int number);

private slots:
    void init() { GuiThread::init(); }
    void cleanup()
    {
        GuiThread::shutdown();
        QCoreApplication::processEvents();
    }

    // A host thread that sets a name and then adds a participant must see both happen in that
    // order.
    void keepsOrderWithQueuedSignals()
    {
        constexpr int kSteps = 90;
        QVector<int> seen;
        QVector<int> expected(kSteps);
        std::iota(expected.begin(), expected.end(), 0);
        const auto add = [&seen](int number) { seen.append(number); };
        const auto connection = connect(this, &TestGuiThread::step, this, add);
        for (const bool draining : {false, true}) {
            seen.clear();
            std::atomic<bool> ended{false};
            const auto host = onAnotherThread([&] {
                for (int i = 0; i < kSteps; i += 3) {
                    emit step(i);
                    GuiThread::post([&add, i] { add(i + 1); });
                    if (!GuiThread::run([&add, i] { add(i + 2); }))
                        break;
                }
                ended = true;
                GuiThread::wake();
            });
            if (draining)
                GuiThread::drainUntil([&ended] { return ended.load(); });
            QVERIFY(serve(host));
            QCOMPARE(seen, expected);
        }
        // From the GUI thread itself posted work is queued too, and run work is not.
        GuiThread::post([&seen] { seen.clear(); });
        QVERIFY(GuiThread::run([&add] { add(0); }) && seen.size() == kSteps + 1);
        QCoreApplication::processEvents();
        QVERIFY(seen.isEmpty());
        disconnect(connection);
    }

    void dropsWhatIsNotTakenAndWaitsForWhatHasBegun()
    {
        bool ran = false;
        bool succeeded = true;
        const auto held = std::make_shared<int>(0);
        const auto brief = [&] { succeeded = GuiThread::run([&ran, held] { ran = true; }, 30); };
        onAnotherThread(brief).wait(); // the GUI thread is busy here
        QCoreApplication::processEvents();
        QVERIFY(!succeeded && !ran && held.use_count() == 1); // nothing is held for it
        const auto slowWork = [&ran] {
            sleepMs(120);
            ran = true;
        };
        const auto host = onAnotherThread([&] { succeeded = GuiThread::run(slowWork, 60) && ran; });
        QVERIFY(serve(host) && succeeded);
    }

    void survivesExceptions()
    {
        const auto fail = [] { throw std::runtime_error("out of tiles"); };
        for (int i = 0; i < 3; ++i)
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression("^work of the GUI thread failed"));
        QVERIFY(!GuiThread::run([] { throw 42; }));
        bool succeeded = true;
        const auto host = onAnotherThread([&] { succeeded = GuiThread::run(fail); });
        QVERIFY(serve(host) && !succeeded);
        GuiThread::post(fail);
        QCoreApplication::processEvents();
    }

    // A release waits for calls of other threads, and those may wait for the GUI thread, with work
    // that waits itself.
    void drainLetsCallersGoOn()
    {
        std::atomic<int> underWay{3};
        std::atomic<bool> inner{false};
        const auto waitForInner = [&] { GuiThread::drainUntil([&] { return inner.load(); }); };
        const std::function<bool()> calls[] = {
            [&] { return GuiThread::run(waitForInner); },
            [&] { return GuiThread::run([&] { inner = true; }); },
            [] { return true; }, // ends without having needed the GUI thread
        };
        std::vector<std::future<void>> hosts;
        for (const auto& call : calls) {
            hosts.push_back(onAnotherThread([&, delayMs = 20 * int(&call - calls)] {
                sleepMs(delayMs);
                underWay -= call() ? 1 : 0;
                GuiThread::wake();
            }));
        }
        GuiThread::drainUntil([&underWay] { return underWay == 0; });
        QVERIFY(underWay == 0 && inner);
    }

    void shutdownLetsEveryWaiterGo()
    {
        constexpr int kWaiters = 5;
        std::atomic<int> waiting{0};
        std::atomic<int> refused{0};
        bool ran = false;
        const auto held = std::make_shared<int>(0);
        const auto run = [&ran] { return GuiThread::run([&ran] { ran = true; }); };
        std::vector<std::future<void>> hosts;
        for (int i = 0; i < kWaiters; ++i) {
            hosts.push_back(onAnotherThread([&] {
                ++waiting;
                refused += run() ? 0 : 1;
            }));
        }
        GuiThread::post([&ran, held] { ran = true; });
        while (waiting < kWaiters)
            sleepMs(1);
        sleepMs(20);
        QElapsedTimer timer;
        timer.start();
        GuiThread::shutdown();
        hosts.clear(); // which waits for them
        QVERIFY2(timer.elapsed() < 500, "a waiter was not woken");
        QVERIFY(refused == kWaiters && held.use_count() == 1); // dropped work holds nothing
        QVERIFY(!GuiThread::isCurrent() && !run());
        GuiThread::post([&ran] { ran = true; });
        GuiThread::wake();
        GuiThread::drainUntil([] { return false; }); // nothing could ever wake it
        GuiThread::shutdown();
        QCoreApplication::processEvents();
        QVERIFY(!ran);
        GuiThread::init();
        QVERIFY(run() && ran);
    }
};

ZR_WIDGET_TEST_MAIN(TestGuiThread)
#include "tst_guithread.moc"
