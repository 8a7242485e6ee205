// The hub: settings and hosts. Its subtitles are tested with the panel that lists them.
#include "testsupport.h"

#include "hostcall.h"

#include <QFile>
#include <QTemporaryDir>

using zrtest::hub;

class TestHub : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QZRScreenConfig::destroyInstance(); }

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
};

ZR_WIDGET_TEST_MAIN(TestHub)
#include "tst_qzrscreenconfig.moc"
