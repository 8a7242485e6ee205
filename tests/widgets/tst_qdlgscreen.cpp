// The gallery: registry, arrangement, messages, and what hosts do to it from inside a message.
#include "gallerytest.h"

using zrtest::HostDouble;

class TestGallery : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void joinTimesAreUniqueAndOrdered();
    void knownIdGivesTheSamePerson();
    void nothingIsPlacedBeforeJoining();
    void pagesTurnAndCloseStreamsLate();
    void shareTakesTheScreenAndGivesItBack();
    void deadRecordsAreIgnored();
    void hostDeletesFromInsideMessages();
    void hostRunsALoopInsideMessages();
    void badFramesAreRefused();
    void keepsStates();
    void tellsTheShareRectangleOnce();
    void exitEmptiesTheGallery();

private:
    tagPersonInfo* add(const QString& id, qint64 joinTime = 0, const QString& name = {})
    {
        return m_meeting->add(id, joinTime, name);
    }
    std::vector<tagPersonInfo*> addMany(int count) { return m_meeting->addMany(count); }
    bool play(tagPersonInfo* person, quint32 width = 64, quint32 height = 36)
    {
        return m_meeting->play(person, width, height);
    }
    void settle() { m_meeting->settle(); }
    QZRScreenConfig& hub() { return m_meeting->hub(); }

    std::unique_ptr<zrtest::Meeting> m_meeting;
    HostDouble* m_host = nullptr;
    QDlgScreen* m_gallery = nullptr;
};

void TestGallery::init()
{
    m_meeting = std::make_unique<zrtest::Meeting>();
    m_host = &m_meeting->host;
    m_gallery = m_meeting->gallery.get();
}

void TestGallery::cleanup()
{
    m_meeting.reset();
}

void TestGallery::joinTimesAreUniqueAndOrdered()
{
    tagPersonInfo* host = add("host", 50);
    m_gallery->updatePersonInfo(host, false, 1, {}, 0);
    const tagPersonInfo* last = add("last", 60);
    const tagPersonInfo* first = add("first", 10);
    const tagPersonInfo* second = add("second", 10);
    const tagPersonInfo* third = add("third", 10);
    QCOMPARE(first->joinTime, 10);
    QCOMPARE(second->joinTime, 11);
    QCOMPARE(third->joinTime, 12);
    settle();
    // Nobody goes before the host of the meeting, however early.
    const auto place = [](const tagPersonInfo* person) {
        const QPoint pos = person->pWidget->pos();
        return pos.y() * 10000 + pos.x();
    };
    QVERIFY(place(host) < place(first));
    QVERIFY(place(first) < place(second));
    QVERIFY(place(second) < place(third));
    QVERIFY(place(third) < place(last));
}

void TestGallery::knownIdGivesTheSamePerson()
{
    tagPersonInfo* person = add("anna", 5);
    QCOMPARE(add("anna", 77), person);
    QCOMPARE(m_gallery->findChildren<CPlayWidget*>().size(), 1);
}

void TestGallery::nothingIsPlacedBeforeJoining()
{
    m_gallery->setJoinMeetingFinish(false);
    const auto persons = addMany(2);
    QVERIFY(!persons[0]->pWidget->isShowing());
    QCOMPARE(m_host->count(ZRMSG_VIDEO_SHOWN), 0);
    m_gallery->setJoinMeetingFinish(true);
    QVERIFY(m_gallery->isPersonVisible("u0"));
}

void TestGallery::pagesTurnAndCloseStreamsLate()
{
    const auto persons = addMany(7);
    QVERIFY(!m_gallery->isPersonVisible("u6"));
    QVERIFY(m_gallery->pageNext(false));
    QVERIFY(m_gallery->isPersonVisible("u6"));
    QVERIFY(!m_gallery->isPersonVisible("u0"));
    QVERIFY2(!m_gallery->pagePre(), "a second turn within 400 ms");
    QVERIFY(m_gallery->isPersonVisible("u6"));
    // Back within a second: nobody has been told to close a stream.
    QTest::qWait(450);
    QCOMPARE(m_host->count(ZRMSG_VIDEO_HIDDEN), 0);
    QVERIFY(m_gallery->pagePre());
    QVERIFY(m_gallery->isPersonVisible("u0"));
    QTRY_COMPARE_WITH_TIMEOUT(m_host->count(ZRMSG_VIDEO_HIDDEN), 1, 2000);
    QCOMPARE(m_host->count(ZRMSG_VIDEO_HIDDEN, persons[6]), 1);
    // The first page stays where it is.
    QTest::qWait(450);
    QVERIFY(m_gallery->pagePre());
    QVERIFY(m_gallery->isPersonVisible("u0"));
}

void TestGallery::shareTakesTheScreenAndGivesItBack()
{
    m_gallery->setMeetingMode(eLayoutSpeakerRight);
    addMany(2);
    tagPersonInfo* share = add("sharescreen_42");
    QCOMPARE(hub().curScreenMode(), int(eLayoutSpeakerTool));
    QCOMPARE(hub().gallery.focusPerson, share);
    m_gallery->DelPerson(share);
    QCOMPARE(hub().curScreenMode(), int(eLayoutSpeakerRight));
    QCOMPARE(hub().gallery.focusPerson, nullptr);
    // With the host dictating the layout a share changes nothing.
    hub().settings.layoutFollow = true;
    add("sharescreen_43");
    QCOMPARE(hub().curScreenMode(), int(eLayoutSpeakerRight));
}

void TestGallery::deadRecordsAreIgnored()
{
    tagPersonInfo* gone = add("gone");
    m_gallery->DelPerson(gone);
    QCOMPARE(hub().curScreenMode(), int(eLayoutEqualCut));
    m_gallery->onModVolume(gone, 50);
    m_gallery->onModAudioMute(gone, false);
    m_gallery->onModPreview(gone, true);
    m_gallery->onModPersonHandup(gone, true);
    m_gallery->onModAllLook(gone, true);
    m_gallery->onModLookLock(gone, true);
    m_gallery->onModPersonInfo(gone, true, 1, "x", 0);
    m_gallery->onModDelPerson(gone);
    m_gallery->onModVideoSize(gone, 10, 10);
    m_gallery->onPlayFrameUpdateUI(gone, 10, 10);
    m_gallery->onClickMore(gone, 3);
    m_gallery->onLeftBtnDBClick(nullptr);
    m_gallery->setPersonDefStreamType(gone);
    QVERIFY(!play(gone));
    QVERIFY(!m_gallery->playFrame(nullptr, nullptr));
    QCOMPARE(hub().curScreenMode(), int(eLayoutEqualCut));
}

void TestGallery::hostDeletesFromInsideMessages()
{
    // Every message that a participant causes may end with the participant's deletion.
    for (const unsigned long id : {unsigned(ZRMSG_VIDEO_SHOWN), unsigned(ZRMSG_PERSON_REMOVED), 3U,
                                   unsigned(ZRMSG_VIDEO_HIDDEN)}) {
        const auto persons = addMany(8);
        m_host->onMessage = [&](const HostDouble::Message& m) {
            if (m.id == id)
                m_gallery->onModDelPerson(reinterpret_cast<void*>(m.wParam));
        };
        for (tagPersonInfo* person : persons)
            m_gallery->onModPreview(person, true);
        m_gallery->reLayout();
        for (tagPersonInfo* person : persons)
            play(person);
        settle();
        QTest::qWait(1100);
        m_host->onMessage = nullptr;
        for (tagPersonInfo* person : persons)
            m_gallery->onModDelPerson(person);
        settle();
        QCOMPARE(m_gallery->findChildren<CPlayWidget*>().size(), 0);
    }
}

void TestGallery::hostRunsALoopInsideMessages()
{
    // As a popup menu does: events are handled while a message is under way.
    addMany(2);
    tagPersonInfo* gone = add("gone");
    bool looped = false;
    m_host->onMessage = [&](const HostDouble::Message&) {
        if (looped)
            return;
        looped = true;
        m_gallery->onModDelPerson(gone);
        add("newcomer");
        QTest::qWait(50);
    };
    m_gallery->reLayout();
    QVERIFY(looped);
    QTRY_VERIFY(m_gallery->findPerson("newcomer")->pWidget->isShowing());
    QTRY_COMPARE(m_gallery->findChildren<CPlayWidget*>().size(), 3);
    // Later changes are still arranged.
    tagPersonInfo* later = add("later");
    QTRY_VERIFY(later->pWidget->isShowing());
}

void TestGallery::badFramesAreRefused()
{
    tagPersonInfo* person = addMany(1)[0];
    VantrelRTCVideoFrameQT frame{};
    frame.pData = m_meeting->picture.data();
    const std::vector<std::pair<quint32, quint32>> sizes{
        {0, 0}, {0, 8}, {8, 0}, {16385, 8}, {8, 16385}, {0xffffffffU, 0xffffffffU}, {65536, 65536}};
    for (const auto& [width, height] : sizes) {
        frame.width = width;
        frame.height = height;
        QVERIFY(!m_gallery->playFrame(person, &frame));
    }
    frame.width = frame.height = 8;
    for (const quintptr bad : {quintptr(0), quintptr(0x10), ~quintptr(0) - 4}) {
        frame.pData = reinterpret_cast<const uint8_t*>(bad);
        QVERIFY(!m_gallery->playFrame(person, &frame));
    }
    settle();
    QCOMPARE(person->iStreamStatus, int(kStreamNone));
    QVERIFY(play(person));
}

void TestGallery::keepsStates()
{
    tagPersonInfo* person = addMany(2)[0];
    QVERIFY(m_gallery->setMute(person, false));
    QVERIFY(!m_gallery->setMute(person, false));
    m_gallery->onModVolume(person, 1000);
    QCOMPARE(person->iVolume, 100);
    m_gallery->onModVolume(person, -5);
    QCOMPARE(person->iVolume, 0);
    m_gallery->onModPersonHandup(person, true);
    QVERIFY(person->bHandUp);
    m_gallery->UpdateUserNetStatus("nobody", 1, true, 3);
}

void TestGallery::tellsTheShareRectangleOnce()
{
    hub().settings.layoutFollow = true;
    tagPersonInfo* share = add("sharescreen_1");
    settle();
    QVERIFY(!m_gallery->shareRect().isValid()); // no picture, no rectangle
    QCOMPARE(m_host->count(ZRMSG_SHARE_RECT_CHANGED), 0);
    QVERIFY(play(share, 640, 360));
    QTRY_COMPARE(m_host->count(ZRMSG_SHARE_RECT_CHANGED), 1);
    QCOMPARE(m_host->messages.back().wParam, 1ULL);
    const QPoint origin = share->pWidget->mapToGlobal(QPoint(0, 0));
    QCOMPARE(m_gallery->shareRect(), QRect(origin, origin + QPoint(1280, 720)));
    m_gallery->reLayout();
    QTest::qWait(50);
    QCOMPARE(m_host->count(ZRMSG_SHARE_RECT_CHANGED), 1);
    // A picture of another shape lies elsewhere.
    QVERIFY(play(share, 360, 640));
    QTRY_COMPARE(m_host->count(ZRMSG_SHARE_RECT_CHANGED), 2);
    QVERIFY(m_gallery->shareRect().width() < 720);
    m_gallery->DelPerson(share);
    QTRY_COMPARE(m_host->count(ZRMSG_SHARE_RECT_CHANGED), 3);
    QCOMPARE(m_host->messages.back().wParam, 0ULL);
}

void TestGallery::exitEmptiesTheGallery()
{
    addMany(4);
    QCOMPARE(m_gallery->ProcessExitMeeting(), 1);
    settle();
    QCOMPARE(m_gallery->findChildren<CPlayWidget*>().size(), 0);
    QVERIFY(!m_gallery->findPerson("u0"));
    m_host->messages.clear();
    QTest::qWait(1100);
    QVERIFY(m_host->messages.empty());
    QVERIFY(add("again"));
}

ZR_WIDGET_TEST_MAIN(TestGallery)
#include "tst_qdlgscreen.moc"
