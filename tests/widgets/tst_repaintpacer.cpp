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
        for (int i = 0; i < 2; ++i) {
            m_widgets[i] = new CountingWidget(m_window.get());
            m_widgets[i]->setGeometry(100 * i, 0, 90, 90);
        }
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QTest::qWait(50);
    }
    void cleanup() { m_window.reset(); }

    void tilesOutOfStepArePaintedTogether()
    {
        RepaintPacer pacer(kLongWaitMs);
        // A lone tile is never held back, and a second picture of the same tile ends a round.
        QCOMPARE(play(pacer, "0>10 0>10 0>10 1>00 0>11 1>00 0>11 1>00 1>01"), QString());
        QVERIFY(pacer.isIdle());
    }

    void missingTileIsWaitedForUntilTheDeadline()
    {
        RepaintPacer pacer(30);
        QCOMPARE(play(pacer, "0>10 1>00 0>11 1>00"), QString());
        QTRY_COMPARE_WITH_TIMEOUT(m_widgets[1]->paints, 1, 1000);
        QVERIFY(pacer.isIdle());
        QCOMPARE(play(pacer, "1>01"), QString()); // the other one is not expected any more
        RepaintPacer quiet(kLongWaitMs);
        QCOMPARE(play(quiet, "0>10 1>00 0>11"), QString());
        QTest::qWait(RepaintPacer::kQuietMs + 20); // after which nobody is expected
        QCOMPARE(play(quiet, "1>01"), QString());
    }

    void hiddenAndDestroyedWidgetsDropOut()
    {
        RepaintPacer waiting(kLongWaitMs);
        QCOMPARE(play(waiting, "0>10 1>00 0>11 1>00"), QString());
        m_widgets[1]->hide();
        QCOMPARE(play(waiting, "0>10 1>00"), QString());
        QVERIFY(waiting.isIdle());
        // The same for one that is waited for, and one that has gone.
        for (const bool destroyed : {false, true}) {
            m_widgets[1]->show();
            QTest::qWait(20);
            RepaintPacer awaited(kLongWaitMs);
            QCOMPARE(play(awaited, "0>10 1>00 0>11 1>00 0>11"), QString());
            m_widgets[1]->hide();
            if (destroyed)
                delete std::exchange(m_widgets[1], new CountingWidget(m_window.get()));
            QCOMPARE(play(awaited, "0>10"), QString());
        }
    }

private:
    /// Has one widget after the other ask for a repaint, and lets it happen: "1>01" is the second,
    /// after which the second is painted. @return the first step that goes otherwise
    QString play(RepaintPacer& pacer, const QString& script)
    {
        for (const QString& step : script.split(' ')) {
            m_widgets[0]->paints = m_widgets[1]->paints = 0;
            pacer.requestUpdate(m_widgets[step[0] == '1' ? 1 : 0]);
            QCoreApplication::processEvents();
            if (step.mid(2) != QString("%1%2").arg(m_widgets[0]->paints).arg(m_widgets[1]->paints))
                return step;
        }
        return {};
    }

    std::unique_ptr<QWidget> m_window;
    CountingWidget* m_widgets[2]{};
};

ZR_WIDGET_TEST_MAIN(TestRepaintPacer)
#include "tst_repaintpacer.moc"
