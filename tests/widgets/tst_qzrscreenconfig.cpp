// The hub: what several threads and several hosts share.
#include "testsupport.h"

#include "hostcall.h"
#include "qzrscreenconfig.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace {

class Callback : public CAbsUIMsgCallback
{
public:
    bool UIMsgNotify(unsigned long, unsigned long long, long long) override
    {
        ++calls;
        if (act)
            act();
        return true;
    }
    int calls = 0;
    std::function<void()> act;
};

} // namespace

class TestHub : public QObject
{
    Q_OBJECT

private slots:
    void overlaySwitches();
    void cleanup() { QZRScreenConfig::destroyInstance(); }

    void keepsTheNewestSubtitles();
    void followsTheMode();
    void broadcastSurvivesUnregistering();
    void pinsKeepRecordsInSight();
    void isSharedByThreads();

private:
    QZRScreenConfig& hub() { return *QZRScreenConfig::getInstance(); }
};

void TestHub::keepsTheNewestSubtitles()
{
    QSignalSpy added(&hub(), &QZRScreenConfig::notifyAddSubtitle);
    for (int id = 100; id > 30; --id) // falling ids: the newest is the smallest and goes at once
        hub().AddOneSubtitle(id, 0, "speaker", QString::number(id));
    QCOMPARE(added.size(), 70);
    QCOMPARE(hub().subtitles().size(), 64);
    QCOMPARE(hub().subtitles().firstKey(), 37);
    hub().AddOneSubtitle(50, 3, "other", "longer");
    QCOMPARE(hub().subtitles().size(), 64);
    QCOMPARE(hub().subtitles().value(50).transStr, QString("longer"));
    QSignalSpy cleaned(&hub(), &QZRScreenConfig::notifyCleanSubtitle);
    hub().setSubtitleOpen(true);
    QVERIFY(hub().subtitles().isEmpty());
    QCOMPARE(cleaned.size(), 1);
}

void TestHub::followsTheMode()
{
    QSignalSpy changed(&hub(), &QZRScreenConfig::notifyCurScreenMode);
    for (int mode = 1; mode <= 14; ++mode) {
        const bool expected = mode >= 4 && mode <= 9;
        hub().setCurScreenMode(mode);
        hub().setCurScreenMode(mode);
        QCOMPARE(changed.size(), mode - 1); // the first one is the mode at the start
        QCOMPARE(hub().isModeWithoutSubtitle(mode), expected);
        QCOMPARE(hub().isModeWithoutSubtitle(-1), expected);
        QCOMPARE(hub().isSubtitleSuppressed(), expected || mode == 10);
    }
}

void TestHub::broadcastSurvivesUnregistering()
{
    Callback callbacks[3];
    for (Callback& callback : callbacks) {
        hub().registerUICallback(&callback);
        hub().registerUICallback(&callback); // twice is once
    }
    // Whoever is called first takes everybody off the list.
    for (Callback& callback : callbacks)
        callback.act = [&] {
            for (Callback& other : callbacks)
                hub().unregisterUICallback(&other);
        };
    hub().broadcast(ZRMSG_TILE_CLICK, 0, 0);
    QCOMPARE(callbacks[0].calls + callbacks[1].calls + callbacks[2].calls, 1);
    QVERIFY(!HostCall::isInside());
    QVERIFY(!hub().unregisterUICallback(&callbacks[0]));
}

void TestHub::pinsKeepRecordsInSight()
{
    tagPersonInfo person;
    QVERIFY(!hub().livePersons.pin(&person));
    hub().livePersons.insert(&person);
    {
        PersonPin pin = hub().livePersons.pin(&person);
        const PersonPin moved = std::move(pin);
        QCOMPARE(person.pins.all.load(), 1);
        hub().livePersons.remove(&person);
        QVERIFY(!hub().livePersons.pin(&person));
        QCOMPARE(person.pins.all.load(), 1);
    }
    QCOMPARE(person.pins.all.load(), 0);
}

void TestHub::isSharedByThreads()
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            tagPersonInfo person;
            for (int i = 0; !stop; ++i) {
                hub().AddOneSubtitle(i % 100, t, "speaker", "text");
                hub().setShareSponsor(QString::number(i));
                hub().livePersons.insert(&person);
                (void)hub().livePersons.pin(&person);
                hub().livePersons.remove(&person);
            }
        });
    }
    for (int i = 0; i < 200; ++i) {
        hub().subtitles();
        hub().shareSponsor();
        hub().clearSubtitles();
        QTest::qWait(1);
    }
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
}

void TestHub::overlaySwitches()
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

ZR_WIDGET_TEST_MAIN(TestHub)
#include "tst_qzrscreenconfig.moc"
