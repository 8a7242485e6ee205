#include "testsupport.h"

#include "repaintpacer.h"

#include <QPointer>
#include <QtTest>

#include <memory>

namespace {

class CountingWidget : public QWidget
{
public:
    using QWidget::QWidget;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
};

} // namespace

class TestRepaintPacer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void firstIsPaintedAtOnceAndTheRestTogether();
    void staysQuietWithoutRequests();
    void hiddenAndDestroyedWidgetsDropOut();
    void sharedPacerLivesWithItsUsers();

private:
    CountingWidget* add(int x);

    static constexpr int kBeatMs = 200;
    std::unique_ptr<QWidget> m_window;
    CountingWidget* m_first = nullptr;
    CountingWidget* m_second = nullptr;
};

void TestRepaintPacer::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(300, 100);
    m_first = add(0);
    m_second = add(100);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTest::qWait(50);
    m_first->paints = m_second->paints = 0;
}

CountingWidget* TestRepaintPacer::add(int x)
{
    auto* widget = new CountingWidget(m_window.get());
    widget->setGeometry(x, 0, 90, 90);
    return widget;
}

void TestRepaintPacer::firstIsPaintedAtOnceAndTheRestTogether()
{
    RepaintPacer pacer(kBeatMs);
    pacer.requestUpdate(m_first);
    QCoreApplication::processEvents();
    QCOMPARE(m_first->paints, 1);
    for (int i = 0; i < 10; ++i) {
        pacer.requestUpdate(m_second);
        pacer.requestUpdate(m_first);
        QTest::qWait(5);
    }
    QCOMPARE(m_first->paints + m_second->paints, 1);
    QTest::qWait(kBeatMs);
    QCOMPARE(m_first->paints, 2);
    QCOMPARE(m_second->paints, 1);
}

void TestRepaintPacer::staysQuietWithoutRequests()
{
    RepaintPacer pacer(20);
    QVERIFY(pacer.isQuiet());
    pacer.requestUpdate(m_first);
    QVERIFY(!pacer.isQuiet());
    QTRY_VERIFY(pacer.isQuiet());
    QTest::qWait(60);
    QVERIFY(pacer.isQuiet());
    QCOMPARE(m_first->paints, 1);
}

void TestRepaintPacer::hiddenAndDestroyedWidgetsDropOut()
{
    RepaintPacer pacer(50);
    m_second->hide();
    pacer.requestUpdate(m_second);
    QVERIFY(pacer.isQuiet()); // a hidden widget does not even begin a beat
    m_second->show();
    QCoreApplication::processEvents();
    m_second->paints = 0;
    auto* third = add(200);
    third->show();
    pacer.requestUpdate(m_first);
    pacer.requestUpdate(m_second);
    pacer.requestUpdate(third);
    m_second->hide();
    delete third;
    QTRY_VERIFY(pacer.isQuiet());
    QCOMPARE(m_second->paints, 0);
}

void TestRepaintPacer::sharedPacerLivesWithItsUsers()
{
    std::shared_ptr<RepaintPacer> pacer = RepaintPacer::shared();
    QCOMPARE(RepaintPacer::shared(), pacer);
    const QPointer<RepaintPacer> alive(pacer.get());
    pacer->requestUpdate(m_first);
    pacer.reset();
    QVERIFY(!alive);
    QVERIFY(RepaintPacer::shared()->isQuiet());
}

ZR_WIDGET_TEST_MAIN(TestRepaintPacer)
#include "tst_repaintpacer.moc"
