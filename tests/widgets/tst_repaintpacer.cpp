// The repaint pacer: tiles whose pictures come out of step are painted together.
#include "testsupport.h"

#include "repaintpacer.h"

namespace {

class CountingWidget : public QWidget
{
public:
    using QWidget::QWidget;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
};

constexpr int kLongWaitMs = 60000; ///< no test waits for this deadline

} // namespace

class TestRepaintPacer : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_window->resize(300, 100);
        m_first = add(0);
        m_second = add(100);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QTest::qWait(50);
    }
    void cleanup() { m_window.reset(); }

    void tilesOutOfStepArePaintedTogether()
    {
        RepaintPacer pacer(kLongWaitMs);
        for (int i = 0; i < 5; ++i) { // a lone tile is never held back
            QCOMPARE(request(pacer, m_first), qMakePair(1, 0));
            QVERIFY(pacer.isIdle());
        }
        leaveSecondWaiting(pacer);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(request(pacer, m_first), qMakePair(1, 1));
            QCOMPARE(request(pacer, m_second), qMakePair(0, 0));
        }
        // A second picture of the same tile ends the round.
        QCOMPARE(request(pacer, m_second), qMakePair(0, 1));
    }

    void missingTileIsWaitedForUntilTheDeadline()
    {
        RepaintPacer pacer(30);
        leaveSecondWaiting(pacer);
        QTRY_COMPARE_WITH_TIMEOUT(m_second->paints, 1, 1000);
        QVERIFY(pacer.isIdle());
        // The first is not expected any more, and after a quiet time nobody is.
        QCOMPARE(request(pacer, m_second), qMakePair(0, 1));
        RepaintPacer quiet(kLongWaitMs);
        leaveSecondWaiting(quiet);
        QCOMPARE(request(quiet, m_first), qMakePair(1, 1));
        QTest::qWait(RepaintPacer::kQuietMs + 20);
        QCOMPARE(request(quiet, m_second), qMakePair(0, 1));
    }

    void hiddenAndDestroyedWidgetsDropOut()
    {
        RepaintPacer waiting(kLongWaitMs);
        leaveSecondWaiting(waiting);
        m_second->hide();
        QCOMPARE(request(waiting, m_first), qMakePair(1, 0));
        QCOMPARE(request(waiting, m_second), qMakePair(0, 0));
        QVERIFY(waiting.isIdle());
        m_second->show();
        // The same for one that is waited for, and one that has gone.
        for (const bool destroyed : {false, true}) {
            RepaintPacer awaited(kLongWaitMs);
            leaveSecondWaiting(awaited);
            QCOMPARE(request(awaited, m_first), qMakePair(1, 1));
            if (destroyed)
                delete std::exchange(m_second, add(200));
            else
                m_second->hide();
            QCOMPARE(request(awaited, m_first), qMakePair(1, 0));
            m_second->show();
        }
    }

private:
    CountingWidget* add(int x)
    {
        auto* widget = new CountingWidget(m_window.get());
        widget->setGeometry(x, 0, 90, 90);
        return widget;
    }
    /// Asks for a repaint and lets it happen. @return paints of both since the last call
    QPair<int, int> request(RepaintPacer& pacer, CountingWidget* widget)
    {
        m_first->paints = m_second->paints = 0;
        pacer.requestUpdate(widget);
        QCoreApplication::processEvents();
        return {m_first->paints, m_second->paints};
    }
    /// Makes a round of both, so that the next one expects them, and lets only the second ask.
    void leaveSecondWaiting(RepaintPacer& pacer)
    {
        request(pacer, m_first); // nobody was there before: at once
        request(pacer, m_second);
        QCOMPARE(request(pacer, m_first), qMakePair(1, 1));
        QVERIFY(pacer.isIdle());
        QCOMPARE(request(pacer, m_second), qMakePair(0, 0));
    }

    std::unique_ptr<QWidget> m_window;
    CountingWidget* m_first = nullptr;
    CountingWidget* m_second = nullptr;
};

ZR_WIDGET_TEST_MAIN(TestRepaintPacer)
#include "tst_repaintpacer.moc"
