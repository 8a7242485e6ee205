// The gallery: who is in the meeting, and what hosts do to it from inside a message.
#include "gallerytest.h"

using zrtest::HostDouble;
using zrtest::Meeting;

namespace {

const std::pair<const char*, const char*> kStories[] = {
    {"streams close a second later, unless the page is turned back",
     "people 7; next; back; hidden: 0; elapse 1000; hidden: 1"},
    {"a share takes the screen and gives it back",
     "mode 6; people 2; add sharescreen_1; mode: 4; focus: sharescreen_1; remove sharescreen_1;"
     "mode: 6; focus: ; speaker: u0"},
    {"where the host dictates, or pages turn, a share changes nothing",
     "mode 6; people 2; set follow 1; add sharescreen_1; set follow 0; set polling 1;"
     "add sharescreen_2; mode: 6"},
};

} // namespace

class TestGallery : public QObject
{
    Q_OBJECT

private slots:
    ZR_STORIES(kStories)
    void joins();
    void nothingIsPlacedBeforeJoining();
    void hostDeletesFromInsideMessages_data();
    void hostDeletesFromInsideMessages();
    void hostRunsALoopInsideMessages();
    void badFramesAreRefused();
    void keepsStates();
    void tellsTheShareRectangleOnce();
    void nextMeetingBeginsAfresh();
    void screensShareTheMode();
};

void TestGallery::joins()
{
    Meeting m;
    m->updatePersonInfo(m.add("host", 50), false, 1, {}, 0);
    m.add("last", 60);
    const tagPersonInfo* first = m.add("first", 10);
    QCOMPARE(m.add("second", 10)->joinTime, 11);
    QCOMPARE(m.add("third", 10)->joinTime, 12);
    // Nobody goes before the host of the meeting, however early.
    QCOMPARE(m.shown(), QString("host first second third last"));
    QCOMPARE(m.add("first", 77), first); // a known id is the same participant
    QCOMPARE(m.tiles().size(), 5U);
    m.remove("first");
    QCOMPARE(m.add("again", 10)->joinTime, 10); // which is free again
}

void TestGallery::nothingIsPlacedBeforeJoining()
{
    Meeting m;
    m->setJoinMeetingFinish(false);
    m.addMany(7);
    QCOMPARE(m.shown(), QString());
    QVERIFY(m.host.messages.empty());
    for (const QWidget* child : m->findChildren<QWidget*>())
        QVERIFY(!child->isVisible()); // the page controls neither
    m->setJoinMeetingFinish(true);
    QVERIFY(m.sees("u0"));
}

// --- Bad moments ------------------------------------------------------------------------------

void TestGallery::hostDeletesFromInsideMessages_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {1, 2, 3, 4, 8, 9, 11, 13, 14, 15, 20, 21, 22, 29})
        QTest::addRow("message %d", id) << id;
}

void TestGallery::hostDeletesFromInsideMessages()
{
    QFETCH(int, id);
    constexpr int kWhoIsMeant = 5; // the message's participant, if it has one
    constexpr int kEverybody = 6;
    for (const int victim : {0, 1, 3, kWhoIsMeant, kEverybody}) {
        Meeting m;
        const auto persons = m.addMany(5);
        for (tagPersonInfo* person : persons)
            m->setPreview(person, person != persons[2]);
        QCOMPARE(m.tell("pin u0; voice u3"), QString());
        bool met = false;
        m.host.onMessage = [&](const HostDouble::Message& message) {
            if (int(message.id) != id || met)
                return;
            met = true;
            if (victim == kEverybody)
                m->ProcessExitMeeting();
            else if (victim == kWhoIsMeant)
                m->onModDelPerson(message.person());
            else
                m->onModDelPerson(persons[std::size_t(victim)]);
        };
        // With u2 the focus is kept: no picture.
        for (const char* step :
             {"menu u1", "click u2", "click u1", "click u3", "mode 4", "mode 9", "mode 2",
              "mode 10", "mode 14", "elapse 1000", "mode 11", "double u4"}) {
            QCOMPARE(m.tell(step), QString());
            // An empty gallery has nothing to wait for.
            QVERIFY(!met || victim != kEverybody || m.timers().isEmpty());
            for (tagPersonInfo* person : persons)
                m.play(person);
        }
        QCOMPARE(m.tell("elapse 1000; remove u3"), QString());
        QVERIFY(met);
        m.host.onMessage = nullptr;
        const tagPersonInfo* focus = m->chosenFocus();
        QVERIFY(!focus || m->livePerson(focus));
        QTest::qWait(1); // the retired ones are freed
        for (const CPlayWidget* tile : m.tiles())
            QVERIFY(m->livePerson(tile->GetPersonInfo()));
        QCOMPARE(m.timers().isEmpty(), m.tiles().empty());
        QCOMPARE(m.tell("mode 1; add later; mode 6"), QString());
        QVERIFY(m.sees("later") && !m.speaker().isEmpty());
    }
}

void TestGallery::hostRunsALoopInsideMessages()
{
    // As a popup menu does: events are handled while a message is under way.
    Meeting m;
    m.addMany(2);
    tagPersonInfo* gone = m->AddPerson("gone", "gone", 0, 0, nullptr);
    bool looped = false;
    m.host.onMessage = [&](const HostDouble::Message&) {
        if (looped)
            return;
        looped = true;
        const QPointer<CPlayWidget> tile = gone->pWidget;
        m->onModDelPerson(gone);
        m->AddPerson("newcomer", "newcomer", 0, 0, nullptr);
        m->resize(1000, 700);
        QTest::qWait(20);
        QVERIFY(tile); // which may be what the message comes from
    };
    m.reLayout(); // which shows who has gone by then
    QVERIFY(looped);
    QTRY_COMPARE(m.shown(), QString("newcomer u0 u1"));
    QTRY_COMPARE(m.tiles().size(), 3U);
    m.add("later"); // later changes are still arranged
    QVERIFY(m.sees("later"));
}

void TestGallery::badFramesAreRefused()
{
    Meeting m;
    tagPersonInfo* person = m.add("anna");
    const std::pair<quint32, quint32> sizes[] = {
        {0, 0}, {0, 8}, {8, 0}, {16385, 8}, {8, 16385}, {0xffffffffU, 0xffffffffU}, {65536, 65536}};
    for (const auto& [width, height] : sizes)
        QVERIFY(!m.play(person, width, height));
    VantrelRTCVideoFrameQT frame{};
    frame.width = frame.height = 8;
    for (const quintptr bad : {quintptr(0), quintptr(0x10), ~quintptr(0) - 4}) {
        frame.pData = reinterpret_cast<const uint8_t*>(bad);
        QVERIFY(!m->playFrame(person, &frame));
    }
    QVERIFY(!m->playFrame(person, nullptr));
    QCOMPARE(person->iStreamStatus, int(kStreamNone));
    QVERIFY(m.play(person));
    QVERIFY(person->iStreamStatus != kStreamNone);
}

void TestGallery::keepsStates()
{
    Meeting m;
    tagPersonInfo* person = m.add("anna");
    QVERIFY(m->setMute(person, false));
    QVERIFY(!m->setMute(person, false));
    m->onModVolume(person, 1000);
    QCOMPARE(int(person->iVolume), 100);
    m->onModVolume(person, -5);
    QCOMPARE(int(person->iVolume), 0);
    m->onModPersonHandup(person, true);
    QVERIFY(person->bHandUp);
    m->UpdateUserNetStatus("nobody", 1, true, 3);
}

void TestGallery::tellsTheShareRectangleOnce()
{
    Meeting m;
    m.settings().layoutFollow = true;
    tagPersonInfo* share = m.add("sharescreen_1");
    QVERIFY(!m->shareRect().isValid()); // no picture, no rectangle
    const auto told = [&m] { return m.host.count(ZRMSG_SHARE_RECT_CHANGED); };
    QCOMPARE(told(), 0);
    QVERIFY(m.play(share, 640, 360));
    QTRY_COMPARE(told(), 1);
    QCOMPARE(m.host.messages.back().wParam, 1ULL);
    const QPoint origin = share->pWidget->mapToGlobal(QPoint(0, 0));
    QCOMPARE(m->shareRect(), QRect(origin, origin + QPoint(1280, 720)));
    m.reLayout();
    QCOMPARE(told(), 1);
    // A picture of another shape lies elsewhere.
    QVERIFY(m.play(share, 360, 640));
    QTRY_COMPARE(told(), 2);
    QVERIFY(m->shareRect().width() < 720);
    m->ProcessExitMeeting(); // at the same place in the next meeting it is told again
    QCOMPARE(told(), 3);
    QCOMPARE(m.host.messages.back().wParam, 0ULL);
}

void TestGallery::nextMeetingBeginsAfresh()
{
    // What a meeting of eight may leave behind, beside its participants.
    for (const char* trace :
         {"layout", "next", "mode 12; focus u3", "mode 10", "double u2", "places u5 u2", "hide",
          "float", "speaking u5; voice u6", "pin u3", "mode 6; click u4; mode 1", "sponsor u2",
          "add sharescreen_1; pause", "set follow 1; add sharescreen_1; mode 9; set follow 0"}) {
        Meeting m;
        m.hub().AddOneSubtitle(1000, 0, "u0", "said");
        emit m.hub().modSignalHideSpeakTool(true);
        QCOMPARE(m.tell(QStringLiteral("people 8; %1; exit").arg(QLatin1String(trace))), QString());
        QVERIFY(m.tiles().empty() && m.timers().isEmpty());
        QVERIFY(m.hub().subtitles().isEmpty());
        QCOMPARE(m.tool->speaking, QString());
        const QString fault = m.tell("mode: 1; people 8; shown: u0 u1 u2 u3 u4 u5; page: 0; tool: ;"
                                     "focus: ; double u1; double u1; mode: 1; mode 7; speaker: u0;"
                                     "small: u1 u2 u3 u4 u5 u6; mode 4; tool: u1; remove u1;"
                                     "mode: 1; add sharescreen_7; name sharescreen_7: ; paused: no;"
                                     "remove sharescreen_7; mode: 1");
        QVERIFY2(fault.isEmpty(), qPrintable(QString("after %1: %2").arg(trace, fault)));
    }
}

void TestGallery::screensShareTheMode()
{
    Meeting m;
    QDlgScreen other(nullptr);
    other.setAttribute(Qt::WA_DontShowOnScreen);
    other.resize(1280, 720);
    other.show();
    other.setJoinMeetingFinish(true);
    for (const char* id : {"b0", "b1"})
        other.AddPerson(id, id, 0, 0, nullptr);
    QCOMPARE(m.tell("people 3; double u1; shown: u1"), QString());
    other.onLeftBtnDBClick(other.findPerson("b1")->pWidget);
    m.settle();
    QVERIFY(!other.isPersonVisible("b0"));
    VantrelRTCVideoFrameQT frame{};
    frame.pData = m.picture.data();
    frame.width = frame.height = 64;
    QVERIFY(other.playFrame(other.findPerson("b1"), &frame));
    QTRY_VERIFY(other.shareRect().isValid());
    // One leaves the maximised tile, and with it both.
    QCOMPARE(m.tell("double u1; mode: 1"), QString());
    QVERIFY(other.isPersonVisible("b0"));
    QVERIFY(!other.shareRect().isValid());
    // A share that is on both has gone when it has left both.
    QCOMPARE(m.tell("mode 11; add sharescreen_1; mode: 4"), QString());
    tagPersonInfo* share = other.AddPerson("sharescreen_1", {}, 0, 0, nullptr);
    QCOMPARE(m.tell("remove sharescreen_1; mode: 4"), QString());
    other.DelPerson(share);
    QCOMPARE(m.mode(), int(eLayoutGrid4));
    // A screen that nobody is on any more leaves the other's mode alone, but no tile maximised.
    QCOMPARE(m.tell("mode 7; double u0; mode: 10; exit; mode: 7; people 1; remove u0; mode: 7"),
             QString());
    other.ProcessExitMeeting();
    QCOMPARE(m.mode(), int(eLayoutEqualCut));
}

ZR_WIDGET_TEST_MAIN(TestGallery)
#include "tst_qdlgscreen.moc"
