// The frame dialog: who gets which room, and what does not close it. And the hub behind it: its
// settings and hosts; its subtitles are tested with the panel that lists them.
#include "testsupport.h"

#include "hostcall.h"
#include "language.h"
#include "overlaytext.h"
#include "qdlgmain.h"
#include "qdlgplaywnd.h"
#include "qdlgscreen.h"
#include "qdlgsubtitle2.h"

#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

using zrtest::hub;

class TestFrame : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dialog = std::make_unique<QDlgMain>(nullptr);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    }
    void cleanup()
    {
        m_dialog.reset();
        QZRScreenConfig::destroyInstance();
    }

    void sharesItsRoom()
    {
        const auto* panel = m_dialog->findChild<QDlgSubtitle2*>();
        const QSize size(1003, 600);
        const struct
        {
            bool open;
            int mode;
            int panelWidth; // 0 hides it
        } rows[] = {{false, 1, 0},   {true, 1, 200}, {true, 4, 0},    {true, 3, 200}, {true, 9, 0},
                    {true, 11, 200}, {true, 10, 0},  {true, 14, 200}, {false, 11, 0}};
        bool open = false;
        for (const auto& row : rows) {
            // The mode alone shows and hides it as well.
            if (std::exchange(open, row.open) != row.open) {
                hub().setSubtitleOpen(row.open);
                m_dialog->showSubtitlePanel(row.open);
            }
            hub().setCurScreenMode(row.mode);
            m_dialog->resize(size + QSize(100, 100));
            m_dialog->resize(size);
            const int galleryWidth = 1003 - row.panelWidth;
            QTRY_COMPARE(m_dialog->gallery()->geometry(), QRect(0, 0, galleryWidth, 600));
            QCOMPARE(panel->isVisible(), row.panelWidth > 0);
            if (row.panelWidth > 0)
                QCOMPARE(panel->geometry(), QRect(galleryWidth, 0, row.panelWidth, 600));
        }
    }

    void cannotBeClosed()
    {
        for (QWidget* widget :
             {static_cast<QWidget*>(m_dialog.get()), static_cast<QWidget*>(m_dialog->gallery())}) {
            QTest::keyClick(widget, Qt::Key_Escape);
            QVERIFY(!widget->close() && m_dialog->isVisible() && widget->isVisible());
        }
    }

    void keysReachTheGallery()
    {
        QDlgScreen* gallery = m_dialog->gallery();
        for (int i = 0; i < 7; ++i)
            gallery->AddPerson(QString::number(i), "name", i, 0, nullptr);
        gallery->setJoinMeetingFinish(true);
        QCoreApplication::sendPostedEvents();
        QTest::keyClick(m_dialog->windowHandle(), Qt::Key_PageDown); // nobody has clicked anywhere
        QCOMPARE(gallery->page(), 1);
    }

    void windowsForPlayingTellOfDoubleClicks()
    {
        QDlgPlayWnd window(nullptr);
        const QSignalSpy clicks(&window, &QDlgPlayWnd::mouseLeftDBClick);
        for (const auto button : {Qt::RightButton, Qt::LeftButton})
            QTest::mouseDClick(&window, button);
        QCOMPARE(clicks.count(), 1);
    }

    void publishesItsGallery()
    {
        auto second = std::make_unique<QDlgMain>(nullptr);
        QCOMPARE(hub().m_pDlgScreen, second->gallery());
        auto third = std::make_unique<QDlgMain>(nullptr);
        second.reset(); // takes only itself off
        QCOMPARE(hub().m_pDlgScreen, third->gallery());
        third.reset();
        QCOMPARE(hub().m_pDlgScreen, m_dialog->gallery());
    }

    // --- The hub ------------------------------------------------------------------------------

    void broadcastSurvivesUnregistering()
    {
        zrtest::HostDouble hosts[3];
        std::size_t calls = 0;
        // Whoever is called first takes everybody off the list.
        for (zrtest::HostDouble& host : hosts) {
            for (int i = 0; i < 2; ++i) // twice is once
                hub().registerUICallback(&host);
            host.onMessage = [&](const auto&) {
                ++calls;
                for (zrtest::HostDouble& other : hosts)
                    hub().unregisterUICallback(&other);
            };
        }
        hub().broadcast(ZRMSG_TILE_CLICK, 0, 0);
        QVERIFY(calls == 1 && !HostCall::isInside() && !hub().unregisterUICallback(&hosts[0]));
    }

    /// The switch leaves the watermark's record, and the record outlives the hub.
    void watermarkOutlivesTheHub()
    {
        m_dialog.reset();
        QZRScreenConfig::setWatermarkInfo({true, 1, "张三", "13812345678", {}});
        for (const bool on : {false, true}) {
            QZRScreenConfig::setWatermarkEnabled(on);
            QCOMPARE(hub().getWatermarkText(), on ? QString("张三-138****5678") : QString());
            QZRScreenConfig::destroyInstance();
        }
        QZRScreenConfig::setWatermarkInfo({});
        QVERIFY(hub().getWatermarkText().isEmpty());
    }

    void overlaySwitches()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("sys_ver.ini"));
        for (const bool written : {false, true}) { // the text says the contrary of each default
            QFile file(path);
            QVERIFY(!written || file.open(QIODevice::WriteOnly));
            if (written)
                file.write("[version]\nshow_resolution=true\n[overlay]\nspeaking_highlight=false\n"
                           "all_hands=0\nlarger_text=1\nhidden_video=false\nlook_owner=1\n");
            file.close();
            const zr::OverlaySwitches read = readOverlaySwitches(path);
            for (const bool on : {read.speakingHighlight, read.allHands, read.hiddenVideo})
                QCOMPARE(on, !written);
            for (const bool on : {read.largerText, read.showResolution, read.lookOwner == 1})
                QCOMPARE(on, written);
        }
    }

    void textsAreChineseUnlessThereIsATranslation()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("sys_ver.ini"));
        qputenv("ZRSCREEN_INI", path.toLocal8Bit());
        zr::OverlayState paused;
        paused.bPerson = paused.bShare = paused.bPaused = true;
        for (const auto& [variable, key, expected] : {std::tuple("", "", "已暂停"),
                                                      {"en_GB.UTF-8", "", "paused"},
                                                      {"", "en", "paused"},
                                                      {"zh_CN", "en", "已暂停"},
                                                      {"xx", "en", "已暂停"}}) {
            qputenv("ZRSCREEN_LANG", variable);
            QSettings(path, QSettings::IniFormat).setValue("version/language", key);
            chooseLanguage();
            QCOMPARE(zr::tileDescription(paused), QString(expected));
        }
        qunsetenv("ZRSCREEN_LANG");
        chooseLanguage();
        QCOMPARE(zr::tileDescription(paused), QString("paused")); // from the file
        forgetLanguage();
        QCOMPARE(zr::tileDescription(paused), QString("已暂停"));
        qunsetenv("ZRSCREEN_INI");
    }

private:
    std::unique_ptr<QDlgMain> m_dialog;
};

ZR_WIDGET_TEST_MAIN(TestFrame)
#include "tst_frame.moc"
