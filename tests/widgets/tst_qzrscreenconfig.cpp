// The hub: settings, subtitles and hosts.
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

    void keepsTheNewestSubtitles()
    {
        const QSignalSpy added(&hub(), &QZRScreenConfig::notifyAddSubtitle);
        for (int id = 100; id > 30;
             --id) // falling ids: the newest is the smallest and goes at once
            hub().AddOneSubtitle(id, 0, "speaker", QString::number(id));
        QCOMPARE(added.size(), 70);
        QCOMPARE(hub().subtitles().size(), 64);
        QCOMPARE(hub().subtitles().firstKey(), 37);
        hub().AddOneSubtitle(50, 3, "other", "longer");
        QCOMPARE(hub().subtitles().size(), 64);
        QCOMPARE(hub().subtitles().value(50).transStr, QString("longer"));
        const QSignalSpy cleaned(&hub(), &QZRScreenConfig::notifyCleanSubtitle);
        hub().setSubtitleOpen(true);
        QVERIFY(hub().subtitles().isEmpty());
        QCOMPARE(cleaned.size(), 1);
    }

    void broadcastSurvivesUnregistering()
    {
        zrtest::HostDouble hosts[3];
        // Whoever is called first takes everybody off the list.
        for (zrtest::HostDouble& host : hosts) {
            hub().registerUICallback(&host);
            hub().registerUICallback(&host); // twice is once
            host.onMessage = [&](const auto&) {
                for (zrtest::HostDouble& other : hosts)
                    hub().unregisterUICallback(&other);
            };
        }
        hub().broadcast(ZRMSG_TILE_CLICK, 0, 0);
        QCOMPARE(hosts[0].messages.size() + hosts[1].messages.size() + hosts[2].messages.size(),
                 std::size_t(1));
        QVERIFY(!HostCall::isInside());
        QVERIFY(!hub().unregisterUICallback(&hosts[0]));
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
        const zr::OverlaySwitches defaults = readOverlaySwitches(path); // there is no file
        QVERIFY(defaults.speakingHighlight && defaults.allHands && defaults.hiddenVideo);
        QVERIFY(!defaults.largerText && !defaults.showResolution && defaults.lookOwner == 0);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[version]\nshow_resolution=true\n[overlay]\nspeaking_highlight=false\n"
                   "all_hands=0\nlarger_text=1\nhidden_video=false\nlook_owner=1\n");
        file.close();
        const zr::OverlaySwitches read = readOverlaySwitches(path);
        QVERIFY(!read.speakingHighlight && !read.allHands && !read.hiddenVideo);
        QVERIFY(read.largerText && read.showResolution && read.lookOwner == 1);
    }
};

ZR_WIDGET_TEST_MAIN(TestHub)
#include "tst_qzrscreenconfig.moc"
