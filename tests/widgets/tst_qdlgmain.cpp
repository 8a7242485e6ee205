// The frame dialog: who gets which room, and what does not close it.
#include "testsupport.h"

#include "qdlgmain.h"
#include "qdlgplaywnd.h"
#include "qdlgscreen.h"
#include "qdlgsubtitle2.h"
#include "qzrscreenconfig.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

class TestFrameDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void sharesItsRoom_data();
    void sharesItsRoom();
    void followsTheModeWithSubtitlesOpen();
    void cannotBeClosed();
    void publishesItsGallery();
    void playWindowReportsLeftDoubleClicks();

private:
    QZRScreenConfig& hub() { return *QZRScreenConfig::getInstance(); }
    QWidget* panel() { return m_dialog->findChild<QDlgSubtitle2*>(); }

    std::unique_ptr<QDlgMain> m_dialog;
};

void TestFrameDialog::init()
{
    m_dialog = std::make_unique<QDlgMain>(nullptr);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void TestFrameDialog::cleanup()
{
    m_dialog.reset();
    QZRScreenConfig::destroyInstance();
}

void TestFrameDialog::sharesItsRoom_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QRect>("gallery");
    QTest::addColumn<QRect>("panel"); // invalid: hidden
    QTest::newRow("closed") << QSize(1003, 600) << false << 1 << QRect(0, 0, 1003, 600) << QRect();
    QTest::newRow("open") << QSize(1003, 600) << true << 1 << QRect(0, 0, 803, 600)
                          << QRect(803, 0, 200, 600);
    QTest::newRow("suppressed") << QSize(1003, 600) << true << 6 << QRect(0, 0, 1003, 600)
                                << QRect();
    QTest::newRow("share") << QSize(1003, 600) << true << 10 << QRect(0, 0, 1003, 600) << QRect();
    QTest::newRow("tiny") << QSize(4, 4) << true << 1 << QRect(0, 0, 4, 4) << QRect(4, 0, 0, 4);
}

void TestFrameDialog::sharesItsRoom()
{
    QFETCH(QSize, size);
    QFETCH(bool, open);
    QFETCH(int, mode);
    QFETCH(QRect, gallery);
    QFETCH(QRect, panel);
    const auto check = [&] {
        QTRY_COMPARE(m_dialog->gallery()->geometry(), gallery);
        const bool shown = open && mode == 1;
        QCOMPARE(this->panel()->isVisible(), shown);
        if (shown)
            QCOMPARE(this->panel()->geometry(), panel);
    };
    m_dialog->resize(size);
    hub().setCurScreenMode(mode);
    hub().setSubtitleOpen(open);
    m_dialog->showSubtitlePanel(open);
    check();
    // A resize comes to the same.
    m_dialog->resize(size + QSize(100, 100));
    m_dialog->resize(size);
    check();
}

void TestFrameDialog::followsTheModeWithSubtitlesOpen()
{
    hub().setSubtitleOpen(true);
    m_dialog->showSubtitlePanel(true);
    QVERIFY(panel()->isVisible());
    hub().setCurScreenMode(eLayoutSpeakerTop);
    QVERIFY(!panel()->isVisible());
    hub().setCurScreenMode(eLayoutGrid4);
    QVERIFY(panel()->isVisible());
    hub().setSubtitleOpen(false);
    m_dialog->showSubtitlePanel(false);
    hub().setCurScreenMode(eLayoutEqualCut);
    QVERIFY(!panel()->isVisible());
}

void TestFrameDialog::cannotBeClosed()
{
    for (QWidget* widget :
         {static_cast<QWidget*>(m_dialog.get()), static_cast<QWidget*>(m_dialog->gallery())}) {
        QTest::keyClick(widget, Qt::Key_Escape);
        QVERIFY(!widget->close());
        QVERIFY(m_dialog->isVisible() && m_dialog->gallery()->isVisible());
    }
}

void TestFrameDialog::publishesItsGallery()
{
    QCOMPARE(hub().m_pDlgScreen, m_dialog->gallery());
    auto second = std::make_unique<QDlgMain>(nullptr);
    QCOMPARE(hub().m_pDlgScreen, second->gallery());
    second.reset();
    QCOMPARE(hub().m_pDlgScreen, m_dialog->gallery());
    second = std::make_unique<QDlgMain>(nullptr);
    // The one that goes takes only itself off.
    m_dialog.reset();
    QCOMPARE(hub().m_pDlgScreen, second->gallery());
    second.reset();
    QVERIFY(!hub().m_pDlgScreen);
}

void TestFrameDialog::playWindowReportsLeftDoubleClicks()
{
    QDlgPlayWnd window;
    QSignalSpy clicked(&window, &QDlgPlayWnd::mouseLeftDBClick);
    QTest::mouseDClick(&window, Qt::RightButton);
    QCOMPARE(clicked.size(), 0);
    QTest::mouseDClick(&window, Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
}

ZR_WIDGET_TEST_MAIN(TestFrameDialog)
#include "tst_qdlgmain.moc"
