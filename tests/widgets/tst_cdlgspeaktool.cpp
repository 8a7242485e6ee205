// The speaker tool, by itself and in a gallery.
#include "gallerytest.h"
#include "golden.h"
#include "pixels.h"

#include "cdlgspeaktool.h"
#include "cplaywidgetextend.h"

#include <QPushButton>
#include <QScreen>

#include <atomic>
#include <thread>

using zrtest::Meeting;

Q_DECLARE_METATYPE(Qt::MouseButton)

class TestSpeakTool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(zrtest::useGoldenFont()); }
    void init();
    void cleanup() { m.reset(); }
    void looksAsDrawn_data();
    void looksAsDrawn();
    void dragging_data();
    void dragging();
    void hostMovesIt();
    void compactFormClosesTheStream();
    void personsComeAndGo();
    void gateWaitsForFramesUnderWay();

private:
    QPushButton* button(int mode) const
    {
        return m_pTool->findChild<QPushButton*>(QStringLiteral("pB_Mode%1").arg(mode));
    }
    void mouse(QEvent::Type type, const QPoint& at, Qt::MouseButton button,
               Qt::MouseButtons buttons) const
    {
        QMouseEvent event(type, at - m_pTool->pos(), at, button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(m_pTool, &event);
    }
    /// Mode 4 with u0 as the speaker; @return who is in the tool
    tagPersonInfo* enterToolMode(int persons)
    {
        const auto all = m->addMany(persons);
        m->gallery->setFocusPerson(all[0], eLayoutSpeakerTool);
        m->settle();
        return m_pTool->boundPerson();
    }

    std::unique_ptr<Meeting> m;
    CDlgSpeakTool* m_pTool = nullptr; ///< the gallery's
};

void TestSpeakTool::init()
{
    m = std::make_unique<Meeting>();
    auto tool = std::make_unique<CDlgSpeakTool>();
    m_pTool = tool.get();
    connect(m_pTool, &CDlgSpeakTool::pictureShownChanged, m->gallery.get(),
            &QDlgScreen::scheduleLayout);
    m->gallery->setSpeakTool(std::move(tool));
}

void TestSpeakTool::looksAsDrawn_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("picture");
    QTest::addColumn<QString>("speaking");
    QTest::addColumn<int>("height");
    QTest::newRow("video") << 2 << true << "王小明" << 225;
    QTest::newRow("avatar") << 2 << false << QString() << 225;
    QTest::newRow("compact") << 1 << true << "Alice Johnson, <b>Bob Smith</b>, 李娜, 陈思远" << 72;
}

void TestSpeakTool::looksAsDrawn()
{
    QFETCH(int, mode);
    QFETCH(bool, picture);
    QFETCH(QString, speaking);
    QFETCH(int, height);
    tagPersonInfo* next = enterToolMode(2);
    m->gallery->updatePersonInfo(next, false, 1, QStringLiteral("李娜"), 2);
    m->gallery->setPreview(next, picture);
    m->gallery->setMute(next, false);
    QTest::mouseClick(button(mode), Qt::LeftButton);
    QVERIFY(QTest::qWaitForWindowExposed(m_pTool));
    if (picture) {
        const zrtest::Picture frame(320, 180, [](unsigned x, unsigned y) {
            return zrtest::Yuv{int(60 + x / 3), int(100 + y / 4), 120};
        });
        QVERIFY(m->gallery->playFrame(next, &frame.frame()));
        QTest::qWait(200); // the change mark's delay
        QVERIFY(m->gallery->playFrame(next, &frame.frame()));
        QCOMPARE(m_pTool->video()->isShowing(), mode == 2);
    }
    m->settle();
    m_pTool->setSpeaking(speaking); // nobody is: the gallery's next arrangement takes it away
    QTest::qWait(50);
    QCOMPARE(m_pTool->size(), QSize(272, height));
    ZR_COMPARE_GOLDEN(m_pTool->grab(), qPrintable("speaktool_" + QString(QTest::currentDataTag())));
}

void TestSpeakTool::dragging_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<Qt::MouseButton>("released");
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<QPoint>("end");
    const QPoint start(300, 200);
    QTest::newRow("left") << Qt::LeftButton << Qt::NoButton << QPoint(40, 70) << QPoint(340, 270);
    QTest::newRow("right") << Qt::RightButton << Qt::NoButton << QPoint(40, 70) << start;
    QTest::newRow("left, right released")
        << Qt::LeftButton << Qt::RightButton << QPoint(-9, 0) << QPoint(291, 200);
    QTest::newRow("left, released") << Qt::LeftButton << Qt::LeftButton << QPoint(9, 0) << start;
    QTest::newRow("past the edge")
        << Qt::LeftButton << Qt::NoButton << QPoint(-900, -900) << QPoint(0, 0);
}

void TestSpeakTool::dragging()
{
    QFETCH(Qt::MouseButton, button);
    QFETCH(Qt::MouseButton, released);
    QFETCH(QPoint, by);
    QFETCH(QPoint, end);
    m_pTool->place(300, 200);
    m_pTool->showTool();
    const QPoint press(330, 300);
    mouse(QEvent::MouseButtonPress, press, button, button);
    if (released != Qt::NoButton)
        mouse(QEvent::MouseButtonRelease, press, released, button);
    mouse(QEvent::MouseMove, press + by, Qt::NoButton, button);
    QCOMPARE(m_pTool->pos(), end);
    QCOMPARE(m_pTool->size(), m_pTool->toolSize());
}

void TestSpeakTool::hostMovesIt()
{
    m_pTool->place(300, 200);
    m_pTool->onClickedMode1();
    emit m->hub().modSignalmousePressSpeakTool();
    for (const QPoint& offset : {QPoint(10, 10), QPoint(50, -20)}) {
        emit m->hub().modSignalMoveSpeakTool(offset);
        QCOMPARE(m_pTool->geometry(), QRect(QPoint(300, 200) + offset, QSize(272, 72)));
    }
    // The whole tool stays in view, also when it grows at the lower edge.
    const QRect screen = m_pTool->screen()->availableGeometry();
    emit m->hub().modSignalMoveSpeakTool(QPoint(0, 9000));
    QCOMPARE(m_pTool->geometry().bottom(), screen.bottom());
    m_pTool->onClickedMode2();
    QCOMPARE(m_pTool->geometry().bottom(), screen.bottom());
    QCOMPARE(m_pTool->height(), 225);
}

void TestSpeakTool::compactFormClosesTheStream()
{
    tagPersonInfo* next = enterToolMode(3);
    QVERIFY(next && m_pTool->isVisible());
    QVERIFY(m->host.count(ZRMSG_VIDEO_SHOWN, next) > 0);
    m->host.messages.clear();
    m->gallery->setPreview(next, true);
    QTest::mouseClick(button(1), Qt::LeftButton);
    QTRY_COMPARE(m->host.count(ZRMSG_VIDEO_HIDDEN, next), 1);
    m->gallery->setPreview(next, false);
    // Hidden and shown again it is still compact, with the second button lit.
    m->gallery->onSetHideSmallWnd(true);
    m->settle();
    QVERIFY(!m_pTool->isVisible());
    m->gallery->onSetHideSmallWnd(false);
    m->settle();
    QVERIFY(m_pTool->isVisible() && m_pTool->boundPerson() == next);
    QCOMPARE(m_pTool->height(), 72);
    QVERIFY(button(2)->styleSheet().contains(":/pic4k/mode2_on.png"));
    QCOMPARE(m->host.count(ZRMSG_VIDEO_SHOWN, next), 0);
    QTest::mouseClick(button(2), Qt::LeftButton);
    QCOMPARE(m->host.count(ZRMSG_VIDEO_SHOWN, next), 1);
    QCOMPARE(m_pTool->video()->GetPersonInfo(), next);
    m->settle();
    QVERIFY(m->gallery->isPersonVisible(next->userID));
}

void TestSpeakTool::personsComeAndGo()
{
    // The host deletes everybody whom the tool is about to show.
    const auto all = m->addMany(4);
    m->gallery->setFocusPerson(all[0], 0);
    m->host.onMessage = [this, &all](const zrtest::HostDouble::Message& message) {
        auto* person = reinterpret_cast<tagPersonInfo*>(message.wParam);
        if (message.id == ZRMSG_VIDEO_SHOWN && person != all[0])
            m->gallery->DelPerson(person);
    };
    m->gallery->setMeetingMode(eLayoutSpeakerTool);
    for (int i = 0; i < 6; ++i)
        m->settle();
    QVERIFY(!m_pTool->isVisible());
    QCOMPARE(m_pTool->boundPerson(), nullptr);
    QCOMPARE(m_pTool->video()->GetPersonInfo(), nullptr);
}

void TestSpeakTool::gateWaitsForFramesUnderWay()
{
    FrameGate gate;
    const int key = 0;
    const int other = 0;
    std::atomic<bool> inside{false};
    std::atomic<bool> left{false};
    gate.open(&key);
    std::thread media([&] {
        gate.pass(&key, [&] {
            inside = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            left = true;
        });
    });
    while (!inside)
        std::this_thread::yield();
    gate.shut();
    const bool waited = left;
    media.join();
    QVERIFY(waited);
    QVERIFY(!gate.pass(&key, [] {}));
    gate.open(&other);
    QVERIFY(!gate.pass(&key, [] {}) && gate.pass(&other, [] {}));
}

ZR_WIDGET_TEST_MAIN(TestSpeakTool)
#include "tst_cdlgspeaktool.moc"
