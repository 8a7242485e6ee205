// The speaker tool, by itself and in a gallery.
#include "gallerytest.h"
#include "golden.h"
#include "pictures.h"

#include "cdlgspeaktool.h"
#include "cplaywidgetextend.h"

#include <QPushButton>
#include <QScreen>

#include <atomic>
#include <future>
#include <thread>

using zrtest::hub;
using zrtest::Meeting;

class TestSpeakTool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(zrtest::useGoldenFont()); }
    void init()
    {
        m = std::make_unique<Meeting>();
        auto tool = std::make_unique<CDlgSpeakTool>();
        m_pTool = tool.get();
        connect(m_pTool, &CDlgSpeakTool::pictureShownChanged, m->gallery.get(),
                &QDlgScreen::scheduleLayout);
        m->gallery->setSpeakTool(std::move(tool));
    }
    void cleanup() { m.reset(); }

    void looksWithVideo() { looks("video", 2, "Alice Johnson, <b>Bob Smith</b>, 李娜, 陈思远"); }
    void looksWithAvatar() { looks("avatar", 2, {}); }
    void looksCompact() { looks("compact", 1, "王小明"); }

    void isDraggedByTheLeftButton()
    {
        enterToolMode(2);
        const QPoint start(300, 200);
        const QPoint at(330, 210);
        const struct
        {
            Qt::MouseButton pressed, released; ///< the latter before the move
            QPoint by, end;
        } rows[] = {
            {Qt::LeftButton, Qt::NoButton, {40, 70}, {340, 270}},
            {Qt::RightButton, Qt::NoButton, {40, 70}, start},
            {Qt::LeftButton, Qt::RightButton, {-9, 0}, {291, 200}},
            {Qt::LeftButton, Qt::LeftButton, {9, 0}, start},
            {Qt::LeftButton, Qt::NoButton, {-900, -900}, {0, 0}}, // past the edge
        };
        for (const auto& row : rows) {
            m_pTool->moveTool(start);
            mouse(QTest::MousePress, at, row.pressed);
            if (row.released != Qt::NoButton)
                mouse(QTest::MouseRelease, at, row.released);
            moveTo(at + row.by);
            QCOMPARE(m_pTool->pos(), row.end);
            mouse(QTest::MouseRelease, m_pTool->pos() + QPoint(30, 10), row.pressed);
        }
        // A press on a button is the button's, also when it is let go outside.
        const QPoint onButton = button(1)->mapToGlobal(QPoint(5, 5));
        press(onButton);
        moveTo(onButton + QPoint(-60, 100));
        release(onButton + QPoint(-60, 100));
        QVERIFY(m_pTool->pos() == QPoint(0, 0) && m_pTool->mode() == 2);
        // Nobody tells a hidden tool that the button was released.
        press(onButton + QPoint(-60, 0));
        m_pTool->hideTool();
        m_pTool->showTool();
        moveTo(onButton);
        QCOMPARE(m_pTool->pos(), QPoint(0, 0));
    }

    void clicksAreNoDrags()
    {
        ZR_TELL(*m, "people 3; add sharescreen_u9"); // beside a share somebody else follows
        QVERIFY(QTest::qWaitForWindowExposed(m_pTool));
        tagPersonInfo* next = m_pTool->boundPerson();
        int clicks = 0;
        connect(m_pTool, &CDlgSpeakTool::pictureClicked, this, [&clicks] { ++clicks; });
        const QPoint before = m_pTool->pos();
        const QPoint at = m_pTool->video()->mapToGlobal(QPoint(90, 40));
        const QPoint there(-40, 0);
        for (const int holdMs : {0, 350}) { // a tile takes a press for a click after 300 ms
            press(at);
            QTest::qWait(holdMs);
            QCOMPARE(clicks, 0);
            release(at);
            QTRY_COMPARE(clicks, 1);
            press(at);
            QTest::qWait(holdMs);
            moveTo(at + there);
            QCOMPARE(m_pTool->pos(), before + there);
            if (holdMs > 0) { // the participant leaves in the middle of it
                ZR_TELL(*m, "remove " + next->userID);
                QVERIFY(m_pTool->boundPerson() && m_pTool->boundPerson() != next);
            }
            moveTo(at);
            QCOMPARE(m_pTool->pos(), before);
            release(at);
            QTest::qWait(350);
            QCOMPARE(std::exchange(clicks, 0), 1);
        }
    }

    void hostMovesIt()
    {
        // At first it stands in the corner, also in a mode that never places it.
        ZR_TELL(*m, "people 2; float");
        const QRect dialog(m->gallery->mapToGlobal(QPoint(0, 0)), m->gallery->size());
        QCOMPARE(m_pTool->pos(), zr::speakToolPosition(dialog, m_pTool->size(), 24));
        m_pTool->place(300, 200);
        m_pTool->onClickedMode1();
        emit hub().modSignalmousePressSpeakTool();
        for (const QPoint& offset : {QPoint(10, 10), QPoint(50, -20)}) {
            emit hub().modSignalMoveSpeakTool(offset);
            QCOMPARE(m_pTool->geometry(), QRect(QPoint(300, 200) + offset, QSize(272, 72)));
        }
        // The whole tool stays in view, also when it grows at the lower edge.
        const int bottom = m_pTool->screen()->availableGeometry().bottom();
        emit hub().modSignalMoveSpeakTool(QPoint(0, 9000));
        QCOMPARE(m_pTool->geometry().bottom(), bottom);
        m_pTool->onClickedMode2();
        QCOMPARE(m_pTool->geometry().bottom(), bottom);
    }

    void compactFormClosesTheStream()
    {
        tagPersonInfo* next = enterToolMode(3);
        const auto told = [&](unsigned long id) { return m->host.count(id, next); };
        QVERIFY(told(ZRMSG_VIDEO_SHOWN) > 0);
        m->host.messages.clear();
        ZR_TELL(*m, "stream " + next->userID);
        QTest::mouseClick(button(1), Qt::LeftButton);
        m->settle();
        m->elapse(1000);
        QCOMPARE(told(ZRMSG_VIDEO_HIDDEN), 1);
        // Hidden and shown again it is still compact, with the second button lit.
        ZR_TELL(*m, "stream " + next->userID + " off; hide; hide off");
        QVERIFY(m_pTool->boundPerson() == next && m_pTool->height() == 72);
        QVERIFY(button(2)->styleSheet().contains(":/pic4k/mode2_on.png"));
        QCOMPARE(told(ZRMSG_VIDEO_SHOWN), 0);
        QTest::mouseClick(button(2), Qt::LeftButton);
        QCOMPARE(told(ZRMSG_VIDEO_SHOWN), 1);
    }

    void gateWaitsForFramesUnderWay()
    {
        FrameGate gate;
        const int keys[2] = {};
        std::promise<void> inside;
        std::atomic<bool> left{false};
        const auto work = [&] {
            inside.set_value();
            QTest::qSleep(30);
            left = true;
        };
        gate.open(&keys[0]);
        std::thread media([&] { gate.pass(&keys[0], work); });
        inside.get_future().wait();
        gate.shut();
        const bool waited = left;
        media.join();
        QVERIFY(waited && !gate.pass(&keys[0], [] {}));
        gate.open(&keys[1]);
        QVERIFY(!gate.pass(&keys[0], [] {}) && gate.pass(&keys[1], [] {}));
    }

private:
    void looks(const QByteArray& name, int mode, const QString& speaking)
    {
        tagPersonInfo* next = enterToolMode(2);
        m->gallery->updatePersonInfo(next, false, 1, QStringLiteral("李娜"), 2);
        m->gallery->setPreview(next, !speaking.isEmpty());
        m->gallery->setMute(next, false);
        m->gallery->UpdateUserNetStatus(next->userID, 2, false, 2);
        QTest::mouseClick(button(mode), Qt::LeftButton);
        const Picture picture(320, 180, [](uint32_t x, uint32_t y) {
            return Yuv{uint8_t(60 + x / 3), uint8_t(100 + y / 4), 120};
        });
        for (int i = 0; next->bPreview && i < 2; ++i) {
            QTest::qWait(200 * i); // the change mark's delay
            QVERIFY(m->gallery->playFrame(next, &picture.frame));
        }
        m->settle();
        m_pTool->setSpeaking(speaking); // nobody is: the gallery's next arrangement takes it away
        QTest::qWait(50);
        ZR_COMPARE_GOLDEN(m_pTool->grab(), "speaktool_" + name + (hub().is4K() ? "_4k" : ""));
    }
    QPushButton* button(int mode) const
    {
        return m_pTool->findChild<QPushButton*>(QStringLiteral("pB_Mode%1").arg(mode));
    }
    // The mouse, at places of the screen.
    void mouse(QTest::MouseAction act, const QPoint& at, Qt::MouseButton button)
    {
        QTest::mouseEvent(act, m_pTool->windowHandle(), button, {}, at - m_pTool->pos());
    }
    void press(const QPoint& at) { mouse(QTest::MousePress, at, Qt::LeftButton); }
    void release(const QPoint& at) { mouse(QTest::MouseRelease, at, Qt::LeftButton); }
    void moveTo(const QPoint& at) { mouse(QTest::MouseMove, at, Qt::NoButton); }
    /// Mode 4 with u0 as the speaker; @return who is in the tool
    tagPersonInfo* enterToolMode(int persons)
    {
        const auto all = m->addMany(persons);
        m->gallery->setFocusPerson(all[0], eLayoutSpeakerTool);
        m->settle();
        return QTest::qWaitForWindowExposed(m_pTool) ? m_pTool->boundPerson() : nullptr;
    }

    std::unique_ptr<Meeting> m;
    CDlgSpeakTool* m_pTool = nullptr; ///< the gallery's
};

ZR_WIDGET_TEST_MAIN(TestSpeakTool)
#include "tst_cdlgspeaktool.moc"
