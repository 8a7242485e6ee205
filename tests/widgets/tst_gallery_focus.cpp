// The gallery: who has the focus, what clicks and voices change, and whose stream is open. The
// rules have tests of their own; here is what the gallery makes of their answers.
#include "gallerytest.h"

#include <map>
#include <set>

using zrtest::HostDouble;
using zrtest::ToolDouble;

namespace {

/// A host that opens, closes and switches streams as it is told, and reports that.
class StreamHost
{
public:
    explicit StreamHost(zrtest::Meeting& meeting)
        : m(meeting)
    {
        m.host.onMessage = [this](const HostDouble::Message& message) { obey(message); };
    }

    void setCamera(tagPersonInfo* person, bool on)
    {
        if (on)
            cameras.insert(person);
        else
            cameras.erase(person);
        // A media engine opens what has a camera, seen or not.
        setOpen(person, on);
    }
    /// Lets frames come until nothing changes any more, the mute timer's step included.
    void quiet()
    {
        for (int round = 0; round < 3; ++round) {
            m.settle();
            for (const auto& [person, grade] : std::map(open))
                m.play(person);
            m.settle();
            m.gallery->changePersonVideoMute(true);
        }
    }
    /// What is wrong with the streams at a quiet moment; empty when nothing is.
    QString fault(const std::vector<tagPersonInfo*>& persons) const
    {
        for (tagPersonInfo* person : persons) {
            if (!m.gallery->livePerson(person))
                continue;
            const bool seen = m.gallery->isPersonVisible(person->userID);
            const bool wanted = seen && cameras.count(person) != 0;
            const auto stream = open.find(person);
            if (wanted != (stream != open.end()))
                return person->userID + (wanted ? ": closed, and seen" : ": open, and not seen");
            if (wanted && stream->second != wantedGrade(person))
                return person->userID + ": at another grade than its tile";
        }
        return {};
    }

    std::set<tagPersonInfo*> cameras;
    std::map<tagPersonInfo*, int> open; ///< and the grade; 0 is the host's own
    int switches = 0;

private:
    static int wantedGrade(const tagPersonInfo* person)
    {
        return person->bSelf || person->userName.isEmpty() ? 0 : person->iStreamType;
    }
    void setOpen(tagPersonInfo* person, bool bOpen)
    {
        if (bOpen)
            open.emplace(person, 0);
        else
            open.erase(person);
        m.gallery->onModPreview(person, bOpen);
    }
    void obey(const HostDouble::Message& message)
    {
        auto* person = reinterpret_cast<tagPersonInfo*>(message.wParam);
        if (message.id == ZRMSG_VIDEO_SHOWN && cameras.count(person) != 0) {
            setOpen(person, true);
        } else if (message.id == ZRMSG_VIDEO_HIDDEN && open.count(person) != 0) {
            setOpen(person, false);
        } else if (message.id >= 2 && message.id <= 4) {
            ++switches;
            if (open.count(person) != 0)
                open[person] = static_cast<int>(message.id);
        }
    }

    zrtest::Meeting& m;
};

/// Counts the arrangements that are scheduled.
class LayoutCounter : public QObject
{
public:
    explicit LayoutCounter(QDlgScreen* gallery) { gallery->installEventFilter(this); }
    int layouts = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        layouts += event->type() == QEvent::User;
        return false;
    }
};

} // namespace

class TestGalleryFocus : public QObject
{
    Q_OBJECT

private slots:
    void init() { m = std::make_unique<zrtest::Meeting>(); }
    void cleanup() { m.reset(); }

    void clicks_data();
    void clicks();
    void clickInAGalleryChoosesTheNextSpeaker();
    void extendedScreen();
    void doubleClicks_data();
    void doubleClicks();
    void maximisedParticipantLeaves();
    void automaticFocus();
    void sharesAreNamedAfterWhoShares();
    void focusByUserId();
    void hostDictatesTheLayout();
    void voices_data();
    void voices();
    void speakingMarks();
    void smallWindow();
    void ownShareFloats();
    void looks_data();
    void looks();
    void moreMenu();
    void previewReports();
    void streamsFollowTheTiles();
    void gradesAreAskedForOnce();
    void deletionsLeaveNoFocusBehind_data();
    void deletionsLeaveNoFocusBehind();
    void foreignPointers();

private:
    void setMode(int mode)
    {
        m->gallery->setMeetingMode(static_cast<eLayoutType>(mode));
        m->settle();
    }
    void click(const tagPersonInfo* person)
    {
        if (m->gallery->livePerson(person)) // else there is no tile
            m->gallery->onPlayWidgetLBtnClick(person->pWidget);
        m->settle();
    }
    void activate(const QString& userId)
    {
        m->gallery->OnSetVoiceActivateUser(userId);
        m->settle();
    }
    ToolDouble* giveTool()
    {
        auto tool = std::make_unique<ToolDouble>();
        ToolDouble* raw = tool.get();
        m->gallery->setSpeakTool(std::move(tool));
        return raw;
    }
    /// The ids of the messages since the last call that do not only say what is visible.
    QList<int> newMessages()
    {
        QList<int> ids;
        for (const HostDouble::Message& message : m->host.messages) {
            if (message.id < ZRMSG_PERSON_REMOVED || message.id == ZRMSG_MORE_MENU_CLOSED
                || message.id == ZRMSG_GALLERY_CLICK)
                ids.append(static_cast<int>(message.id));
        }
        m->host.messages.clear();
        return ids;
    }
    /// The participant with the largest tile, of two the one on the left.
    QString speaker()
    {
        m->settle();
        const CPlayWidget* largest = nullptr;
        for (const CPlayWidget* tile : m->gallery->findChildren<CPlayWidget*>()) {
            if (!tile->isShowing())
                continue;
            if (!largest || tile->width() > largest->width()
                || (tile->width() == largest->width() && tile->x() < largest->x()))
                largest = tile;
        }
        return largest ? largest->GetPersonInfo()->userID : QString();
    }

    std::unique_ptr<zrtest::Meeting> m;
};

// --- Clicks -----------------------------------------------------------------------------------

void TestGalleryFocus::clicks_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("stream");  // u0, the speaker, has an open stream
    QTest::addColumn<bool>("picture"); // u1, who is clicked, has one
    QTest::addColumn<bool>("follow");
    QTest::addColumn<bool>("pinned"); // u0, for the local user
    QTest::addColumn<QList<int>>("messages");
    QTest::addColumn<QString>("after");
    using Ids = QList<int>;
    QTest::newRow("the stream moves")
        << 6 << true << true << false << false << Ids{9, 29, 14, 14, 11} << "u1";
    QTest::newRow("no stream to move")
        << 8 << false << true << false << false << Ids{9, 29, 11} << "u1";
    QTest::newRow("no streams at all")
        << 9 << false << false << false << false << Ids{9, 29, 11} << "u1";
    QTest::newRow("a picture does not give way to none")
        << 7 << true << false << false << false << Ids{9, 29, 15} << "u0";
    QTest::newRow("the host dictates") << 6 << true << true << true << false << Ids{9, 29} << "u0";
    QTest::newRow("away from a pin")
        << 6 << false << false << false << true << Ids{9, 29, 13, 11} << "u1";
}

void TestGalleryFocus::clicks()
{
    QFETCH(int, mode);
    QFETCH(bool, stream);
    QFETCH(bool, picture);
    QFETCH(bool, pinned);
    QFETCH(bool, follow);
    const auto persons = m->addMany(3);
    setMode(mode);
    m->gallery->setPreview(persons[0], stream);
    m->gallery->setPreview(persons[1], picture);
    if (pinned)
        m->gallery->setLockLookPerson(persons[0], true);
    m->hub().settings.layoutFollow = follow;
    QCOMPARE(speaker(), QString("u0"));
    newMessages();
    QStringList streams;
    m->host.onMessage = [&](const HostDouble::Message& message) {
        if (message.id == ZRMSG_FOCUS_STREAM) // the text is valid during the call only
            streams.append(QString::fromLocal8Bit(reinterpret_cast<const char*>(message.wParam))
                           + QString::number(message.lParam));
        if (message.id == ZRMSG_FOCUS_PERSON)
            QCOMPARE(message.wParam, quint64(reinterpret_cast<quintptr>(persons[1])));
    };
    click(persons[1]);
    QTEST(newMessages(), "messages");
    QTEST(speaker(), "after");
    QCOMPARE(streams, stream && picture && !follow ? QStringList({"u11", "u00"}) : QStringList());
    // A second click on the speaker changes nothing more.
    if (speaker() == "u1") {
        click(persons[1]);
        QCOMPARE(newMessages(), QList<int>({9, 29}));
    }
}

void TestGalleryFocus::clickInAGalleryChoosesTheNextSpeaker()
{
    const auto persons = m->addMany(3);
    newMessages();
    click(persons[2]);
    QCOMPARE(newMessages(), QList<int>({9, 29, 11}));
    m->gallery->onModFocusByUserID("u1", true); // a voice is no choice
    setMode(eLayoutSpeakerRight);
    QCOMPARE(speaker(), QString("u2"));
    QCOMPARE(m->hub().gallery.focusPerson, persons[2]); // chosen, so that no voice takes it
    // What the host chooses afterwards counts more than an earlier click.
    setMode(eLayoutEqualCut);
    click(persons[1]);
    m->gallery->onModFocusByUserID("u0", false);
    setMode(eLayoutSpeakerRight);
    QCOMPARE(speaker(), QString("u0"));
    // And a later click more than what the host chose before.
    setMode(eLayoutEqualCut);
    click(persons[2]);
    setMode(eLayoutSpeakerRight);
    QCOMPARE(speaker(), QString("u2"));
    // A pin on the speaker is a choice as well.
    setMode(eLayoutEqualCut);
    click(persons[1]);
    m->gallery->setLockLookPerson(persons[2], true);
    QCOMPARE(speaker(), QString("u2"));
}

void TestGalleryFocus::extendedScreen()
{
    const auto persons = m->addMany(2);
    setMode(eLayoutSpeakerRight);
    tagPersonInfo shown; // the extended screen has a record of its own
    shown.userID = "u1";
    CPlayWidget tile(nullptr, false);
    tile.SetPersonInfo(&shown, false);
    emit m->hub().notifyClickExtPlayWidget(&tile);
    QCOMPARE(speaker(), QString("u1"));
    tile.SetPersonInfo(nullptr, false);
    newMessages();
    emit m->hub().notifyClickExtPlayWidget(&tile);
    emit m->hub().notifyClickExtPlayWidget(this);
    emit m->hub().notifyClickExtPlayWidget(nullptr);
    QCOMPARE(newMessages(), QList<int>());
    m->gallery->onLookToast(true);
    m->gallery->onLookToast(false);
    m->gallery->OnSwitchExtendScreen(true, true);
    QVERIFY(m->hub().settings.extendScreen);
    m->gallery->onLookToast(true);
    m->gallery->onLookToast(false);
    QCOMPARE(newMessages(), QList<int>({16, 13}));
}

void TestGalleryFocus::doubleClicks_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<int>("modeClass");
    QTest::addColumn<int>("after");
    QTest::newRow("gallery") << 1 << "u1" << 5 << 10;
    QTest::newRow("grid") << 12 << "u1" << 7 << 10;
    QTest::newRow("the speaker") << 7 << "u0" << 6 << 10;
    QTest::newRow("beside the speaker") << 7 << "u1" << 6 << 7;
    QTest::newRow("with the speaker tool") << 5 << "u0" << 6 << 5;
}

void TestGalleryFocus::doubleClicks()
{
    QFETCH(int, mode);
    QFETCH(QString, clicked);
    QFETCH(int, after);
    m->addMany(3);
    setMode(mode);
    CPlayWidget* tile = m->gallery->findPerson(clicked)->pWidget;
    const auto doubleClick = [this, tile] {
        m->gallery->onLeftBtnDBClick(tile);
        m->settle();
        return m->hub().curScreenMode();
    };
    m->host.messages.clear();
    m->hub().settings.layoutFollow = true;
    QCOMPARE(doubleClick(), mode);
    m->hub().settings.layoutFollow = false;
    m->hub().settings.pollingOpen = true;
    QVERIFY(doubleClick() == mode || mode == eLayoutSpeakerTool2);
    m->hub().settings.pollingOpen = false;
    QCOMPARE(doubleClick(), after);
    QCOMPARE(m->host.count(ZRMSG_DBLCLICK_LAYOUT), 3);
    QTEST(int(m->host.messages.front().wParam), "modeClass");
    if (after == eLayoutShare) {
        QCOMPARE(speaker(), clicked);
        QVERIFY(!m->gallery->isPersonVisible("u2"));
        QCOMPARE(doubleClick(), mode);
        QVERIFY(m->gallery->isPersonVisible("u2"));
    } else if (mode == eLayoutSpeakerBottom) {
        QCOMPARE(speaker(), clicked); // as a single click
        // Beside a share not even that.
        m->gallery->setFocusPerson(m->add("sharescreen_1"), mode);
        newMessages();
        QCOMPARE(doubleClick(), int(m->hub().curScreenMode()));
        QCOMPARE(newMessages(), QList<int>({8}));
    }
}

void TestGalleryFocus::maximisedParticipantLeaves()
{
    const auto persons = m->addMany(3);
    // A share mode that the host chose is left to a gallery, not to no mode at all.
    setMode(eLayoutShare);
    m->gallery->onLeftBtnDBClick(persons[1]->pWidget);
    m->gallery->onLeftBtnDBClick(persons[1]->pWidget);
    QCOMPARE(m->hub().curScreenMode(), int(eLayoutEqualCut));
    setMode(eLayout8Cut);
    m->gallery->onLeftBtnDBClick(persons[1]->pWidget);
    m->settle();
    // A pin of somebody else that ends leaves the large picture where it is.
    m->gallery->setAllLook(persons[2], false);
    QCOMPARE(speaker(), QString("u1"));
    m->gallery->DelPerson(persons[1]);
    m->settle();
    QCOMPARE(m->hub().curScreenMode(), int(eLayout8Cut));
    m->gallery->onLeftBtnDBClick(persons[0]->pWidget);
    m->settle();
    m->gallery->DelPerson(persons[2]);
    m->gallery->onLeftBtnDBClick(persons[0]->pWidget); // alone there is nothing to come back to
    m->settle();
    QCOMPARE(m->hub().curScreenMode(), int(eLayoutShare));
}

// --- The focus --------------------------------------------------------------------------------

void TestGalleryFocus::automaticFocus()
{
    tagPersonInfo* me = m->add("me", 1);
    m->gallery->updatePersonInfo(me, true, 0, {}, 0);
    setMode(eLayoutSpeakerRight);
    QCOMPARE(speaker(), QString("me"));
    tagPersonInfo* first = m->add("first", 2);
    QCOMPARE(speaker(), QString("first")); // nobody wants to look at themselves
    tagPersonInfo* second = m->add("second", 3);
    m->gallery->updatePersonInfo(second, false, 1, {}, 0);
    QCOMPARE(speaker(), QString("first")); // and who is there stays
    QCOMPARE(m->hub().gallery.focusPerson, nullptr);
    m->gallery->setFocusPerson(second, 0);
    QCOMPARE(speaker(), QString("second"));
    m->gallery->DelPerson(second);
    QCOMPARE(speaker(), QString("first")); // who was it before
    m->hub().setShareSponsor("first");
    m->add("sharescreen_other", 4);
    tagPersonInfo* share = m->add("sharescreen_first", 5);
    m->gallery->onModFocusByUserID({}, false); // the arrangement's choice
    setMode(eLayoutSpeakerRight);
    QCOMPARE(speaker(), QString("sharescreen_first"));
    m->gallery->DelPerson(share);
    m->gallery->DelPerson(m->gallery->findPerson("sharescreen_other"));
    m->gallery->DelPerson(first);
    QCOMPARE(m->hub().curScreenMode(), int(eLayoutSpeakerRight));
    QCOMPARE(speaker(), QString("me"));
}

void TestGalleryFocus::sharesAreNamedAfterWhoShares()
{
    tagPersonInfo* anna = m->add("anna", 1, "Anna");
    m->add("ben", 2, "Ben");
    tagPersonInfo* share = m->gallery->AddPerson("sharescreen_anna", {}, 3, 0, nullptr);
    tagPersonInfo* other = m->gallery->AddPerson("sharescreen_7", {}, 4, 0, nullptr);
    m->hub().setShareSponsor("ben");
    m->settle();
    QCOMPARE(share->userName, QString("Anna"));
    QCOMPARE(other->userName, QString("Ben"));
    m->gallery->updatePersonInfo(anna, false, 0, "Anne", 0);
    m->gallery->updatePersonInfo(other, false, 0, "Board", 0);
    m->settle();
    QCOMPARE(share->userName, QString("Anne"));
    QCOMPARE(other->userName, QString("Board")); // the host knows better
    m->gallery->DelPerson(anna);
    m->settle();
    QCOMPARE(share->userName, QString("Ben")); // the sponsor
}

void TestGalleryFocus::focusByUserId()
{
    m->addMany(4);
    setMode(eLayoutSpeakerRight);
    m->gallery->onModFocusByUserID("u1", true);
    QCOMPARE(speaker(), QString("u1"));
    m->gallery->onModFocusByUserID("u2", false);
    QCOMPARE(speaker(), QString("u2"));
    m->gallery->onModFocusByUserID("u3", true); // a voice does not displace a choice
    QCOMPARE(speaker(), QString("u2"));
    m->gallery->onModFocusByUserID("nobody", false);
    QCOMPARE(speaker(), QString("u2"));
    setMode(eLayoutEqualCut); // a gallery keeps a choice
    setMode(eLayoutSpeakerTop);
    QCOMPARE(speaker(), QString("u2"));
    m->gallery->onModFocusByUserID({}, false);
    QCOMPARE(m->hub().gallery.focusPerson, nullptr);
    m->gallery->onModFocusByUserID("u3", true);
    QCOMPARE(speaker(), QString("u3"));
    // Choosing whom the arrangement has chosen makes it a choice.
    m->gallery->onModFocusByUserID("u3", false);
    m->gallery->onModFocusByUserID("u0", true);
    QCOMPARE(speaker(), QString("u3"));
}

void TestGalleryFocus::hostDictatesTheLayout()
{
    ScreenSettings& settings = m->hub().settings;
    settings.openLayoutCtrl = settings.layoutFollow = true;
    settings.speakerIdx = 0;
    settings.shareIdx = 1;
    auto persons = m->addMany(4);
    m->add("sharescreen_1");
    setMode(eLayoutSpeakerRight);
    for (const char* voice : {"u2", "u3"}) {
        activate(voice);
        QCOMPARE(speaker(), QString(voice));
    }
    click(persons[1]);
    QCOMPARE(speaker(), QString("u3"));
    setMode(eLayoutEqualCut);
    const auto left = [this](const char* id) { return m->gallery->findPerson(id)->pWidget->x(); };
    QVERIFY(left("u3") < left("sharescreen_1") && left("sharescreen_1") < left("u0"));
}

// --- Voices and the small window --------------------------------------------------------------

void TestGalleryFocus::voices_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("activation");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("after"); // the speaker, when u9 from the second page has spoken
    QTest::addColumn<bool>("visible");  // u9
    QTest::newRow("becomes the speaker") << 6 << true << ""
                                         << "u9" << true;
    QTest::newRow("comes into the strip") << 7 << false << ""
                                          << "u0" << true;
    QTest::newRow("leaves a choice alone") << 8 << true << "u1"
                                           << "u1" << true;
    QTest::newRow("stands beside the speaker") << 9 << true << "u1"
                                               << "u1" << true;
    QTest::newRow("comes into the tool") << 4 << true << ""
                                         << "u0" << true;
    QTest::newRow("leaves a gallery alone") << 3 << true << ""
                                            << "u0" << false;
}

void TestGalleryFocus::voices()
{
    QFETCH(int, mode);
    QFETCH(bool, activation);
    QFETCH(QString, chosen);
    giveTool();
    m->addMany(10);
    m->hub().settings.voiceActivation = activation;
    setMode(mode);
    if (!chosen.isEmpty())
        m->gallery->onModFocusByUserID(chosen, false);
    m->settle();
    QVERIFY(!m->gallery->isPersonVisible("u9"));
    activate("u9");
    QTEST(speaker(), "after");
    QTEST(m->gallery->isPersonVisible("u9"), "visible");
}

void TestGalleryFocus::speakingMarks()
{
    const auto persons = m->addMany(3);
    setMode(eLayoutSpeakerRight);
    LayoutCounter counter(m->gallery.get());
    const auto layoutsOf = [&](const char* voice) {
        counter.layouts = 0;
        activate(voice);
        return counter.layouts;
    };
    QCOMPARE(layoutsOf("u1"), 1);
    QVERIFY(persons[1]->bSpeaking);
    QCOMPARE(layoutsOf("u1"), 0);
    QCOMPARE(layoutsOf("nobody"), 0);
    for (const tagPersonInfo* person : persons)
        QVERIFY(!person->bSpeaking);
    setMode(eLayoutEqualCut);
    QCOMPARE(layoutsOf("u2"), 0); // nothing but a border changes
    m->hub().settings.openLayoutCtrl = true;
    QCOMPARE(layoutsOf("u1"), 1);
    m->hub().settings.speakerIdx = 0;
    QCOMPARE(layoutsOf("nobody"), 1); // the seat is given back
}

void TestGalleryFocus::smallWindow()
{
    ToolDouble* tool = giveTool();
    const auto persons = m->addMany(4);
    const auto inSmallWindow = [this](const char* id) {
        return m->gallery->isPersonVisibleInSmallWnd(id);
    };
    QVERIFY(!inSmallWindow("u1")); // a gallery has none
    setMode(eLayoutSpeakerRight);
    QVERIFY(!inSmallWindow("u0") && inSmallWindow("u1") && !inSmallWindow("nobody"));
    QCOMPARE(m->gallery->GetSmallWndId(), 0);
    m->gallery->onSetHideSmallWnd(true);
    QVERIFY(!inSmallWindow("u1") && !m->gallery->isPersonVisible("u1"));
    QCOMPARE(persons[0]->pWidget->size(), QSize(1280, 720));
    m->gallery->onSetHideSmallWnd(false);
    QVERIFY(inSmallWindow("u1"));
    setMode(eLayoutSpeaker4);
    QVERIFY(!inSmallWindow("u0") && !inSmallWindow("u1") && inSmallWindow("u2"));

    setMode(eLayoutSpeakerTool);
    QVERIFY(inSmallWindow("u1") && !inSmallWindow("u2"));
    QCOMPARE(m->gallery->GetSmallWndId(), 1);
    m->gallery->setCurrentSpeakingPerson("u2");
    QVERIFY(inSmallWindow("u2"));
    QCOMPARE(tool->speaking, QString("u2"));
    QVERIFY(m->play(persons[2]) && m->play(persons[1]));
    QCOMPARE(tool->frames, 1);
    const int refreshes = tool->refreshes;
    m->gallery->setMute(persons[2], false);
    m->gallery->setMute(persons[1], false);
    QCOMPARE(tool->refreshes, refreshes + 1);
    QCOMPARE(m->gallery->showSmallWndWhenRestore(false), 1); // the client is minimised
    QVERIFY(!tool->visible && m->gallery->GetSmallWndId() == 0);
    m->gallery->showSmallWndWhenRestore(true);
    QVERIFY(tool->visible && inSmallWindow("u2"));
    m->gallery->updatePersonInfo(persons[2], false, 0, "Zoe", 0);
    m->settle();
    QCOMPARE(tool->speaking, QString("Zoe"));
    m->gallery->DelPerson(persons[2]);
    m->settle();
    QCOMPARE(tool->speaking, QString());
}

void TestGalleryFocus::ownShareFloats()
{
    const ToolDouble* tool = giveTool();
    const auto persons = m->addMany(8);
    activate("u7");
    QCOMPARE(m->gallery->OnPopSelfShareWnd(true, true), 1);
    QVERIFY(tool->visible && tool->bound == persons[7]);
    QVERIFY(m->gallery->isPersonVisibleInSmallWnd("u7"));
    // Nobody waits for a timer, and who is seen, be it in the tool, keeps the stream.
    QCOMPARE(m->host.count(ZRMSG_VIDEO_HIDDEN), 1);
    QCOMPARE(m->host.count(ZRMSG_VIDEO_HIDDEN, persons[6]), 1);
    m->gallery->OnPopSelfShareWnd(false, false);
    QVERIFY(!tool->visible && !tool->bound);
}

// --- Looks and menus --------------------------------------------------------------------------

void TestGalleryFocus::looks_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("follow");
    QTest::addColumn<QString>("pinned"); // u0 is the speaker of the speaker modes
    QTest::addColumn<int>("after");
    QTest::newRow("gallery") << 1 << false << "u1" << 6;
    QTest::newRow("strip") << 7 << false << "u1" << 7;
    QTest::newRow("pair") << 9 << false << "u1" << 6;
    QTest::newRow("the speaker already") << 7 << false << "u0" << 6;
    QTest::newRow("the host dictates") << 7 << true << "u1" << 1;
}

void TestGalleryFocus::looks()
{
    QFETCH(int, mode);
    QFETCH(bool, follow);
    QFETCH(QString, pinned);
    QFETCH(int, after);
    const auto persons = m->addMany(3);
    tagPersonInfo* person = m->gallery->findPerson(pinned);
    for (const auto pin : {&QDlgScreen::setAllLook, &QDlgScreen::setLockLookPerson}) {
        m->hub().settings.layoutFollow = false;
        m->gallery->onModFocusByUserID("u0", false);
        setMode(mode);
        m->hub().settings.layoutFollow = follow;
        persons[2]->bAllLook = persons[2]->bLockLook = true;
        QVERIFY(((*m->gallery).*pin)(person, true));
        QVERIFY(!persons[2]->bAllLook && !persons[2]->bLockLook);
        QCOMPARE(m->hub().curScreenMode(), after);
        if (!follow)
            QCOMPARE(speaker(), pinned);
        setMode(eLayoutGrid4);
        ((*m->gallery).*pin)(person, false); // not from its menu: the mode stays
        QCOMPARE(m->hub().curScreenMode(), int(eLayoutGrid4));
        setMode(eLayoutSpeakerTop);
        m->gallery->onClickMore(person, 0);
        ((*m->gallery).*pin)(person, false); // to the mode after the last change of a look
        QCOMPARE(m->hub().curScreenMode(), int(follow ? eLayoutEqualCut : eLayoutGrid4));
    }
}

void TestGalleryFocus::moreMenu()
{
    tagPersonInfo* person = m->gallery->AddPerson("u0", "u0", 0, 0, reinterpret_cast<void*>(77));
    m->addMany(3);
    QCursor::setPos(person->pWidget->mapToGlobal(person->pWidget->rect().center()));
    newMessages();
    m->gallery->onClickMore(person, 33);
    QCOMPARE(m->host.messages.back().wParam, 33ULL);
    QCOMPARE(m->host.messages.back().lParam, 77LL);
    m->gallery->reLayout();
    QCOMPARE(newMessages(), QList<int>({ZRMSG_CLICK_MORE}));
    setMode(eLayout6Cut); // the mouse is on the tile still, but the tile not where the menu is
    QCOMPARE(newMessages(), QList<int>({ZRMSG_MORE_MENU_CLOSED}));
    m->gallery->onClickMore(person, 33);
    m->gallery->clearMoreMenuPerson();
    m->gallery->onClickMore(person, 33);
    m->gallery->DelPerson(person);
    QCOMPARE(newMessages(), QList<int>({1, 1, 22}));
}

// --- Streams ----------------------------------------------------------------------------------

void TestGalleryFocus::previewReports()
{
    const auto persons = m->addMany(7); // u6 is on the second page
    m->gallery->changePersonVideoMute(true);
    struct Row
    {
        int person;
        bool open;
        bool prePreview, picture; // afterwards
    };
    const Row rows[] = {
        {0, false, false, false}, {0, true, true, true},   {0, true, true, true},
        {0, false, true, false},  {0, false, true, false}, {6, true, true, true},
    };
    for (const Row& row : rows) {
        tagPersonInfo* person = persons[std::size_t(row.person)];
        m->gallery->setPreview(person, row.open);
        QCOMPARE(person->bPreview, row.open);
        QVERIFY(person->bVideoStatusChange);
        QCOMPARE(person->bPrePreview, row.prePreview);
        QCOMPARE(person->bPicture, row.picture);
    }
    // The gallery has it closed again, and knows that the camera is on.
    m->gallery->changePersonVideoMute(true);
    QCOMPARE(m->host.count(ZRMSG_VIDEO_HIDDEN, persons[6]), 2);
    m->gallery->setPreview(persons[6], false);
    QVERIFY(persons[6]->bPicture);
    // Seen again, and no stream comes: the camera is off after all.
    setMode(eLayout8Cut);
    QVERIFY(persons[6]->bPicture);
    m->gallery->changePersonVideoMute(true);
    QVERIFY(!persons[6]->bPicture);
}

void TestGalleryFocus::streamsFollowTheTiles()
{
    StreamHost host(*m);
    giveTool();
    auto persons = m->addMany(14);
    persons.push_back(m->add("me", 1));
    m->gallery->updatePersonInfo(persons.back(), true, 0, {}, 0);
    for (std::size_t i = 0; i < persons.size(); ++i) {
        if (i % 5 != 3)
            host.setCamera(persons[i], true);
    }
    qint64 now = 0;
    m->gallery->setPageClock([&now] { return now += 1000; });
    tagPersonInfo* share = nullptr;
    const std::vector<std::function<void()>> steps{
        [&] { setMode(1 + int(now / 1000) % 14); },
        [&] { m->gallery->pageNext(true); },
        [&] { setMode(eLayoutSpeakerRight); },
        [&] { m->gallery->pageNext(true); },
        [&] { click(persons[8]); },
        [&] { activate("u13"); },
        [&] { m->gallery->onSetHideSmallWnd(true); },
        [&] { m->gallery->onSetHideSmallWnd(false); },
        [&] { setMode(eLayoutSpeakerTool); },
        [&] { activate("u12"); },
        [&] { m->gallery->showSmallWndWhenRestore(false); },
        [&] { m->gallery->showSmallWndWhenRestore(true); },
        [&] {
            share = m->gallery->AddPerson("sharescreen_1", {}, 0, 0, nullptr);
            persons.push_back(share);
            host.setCamera(share, true);
        },
        [&] { setMode(eLayoutSpeaker4); },
        [&] { host.setCamera(persons[3], true); },
        [&] { host.setCamera(persons[1], false); },
        [&] { host.setCamera(persons[1], true); },
        [&] { m->gallery->OnPopSelfShareWnd(true, true); },
        [&] { m->gallery->OnPopSelfShareWnd(false, false); },
        [&] { m->gallery->DelPerson(share); },
        [&] { m->gallery->DelPerson(persons[8]); },
        [&] { setMode(eLayoutSingle); },
        [&] { setMode(eLayoutGrid16); },
        [&] {
            m->hub().settings.noVideoFilter = true;
            m->gallery->reLayout();
        },
        [&] { setMode(99); },
        [&] { setMode(eLayoutEqualCut); },
    };
    for (std::size_t i = 0; i < steps.size(); ++i) {
        steps[i]();
        host.quiet();
        const QString fault = host.fault(persons);
        QVERIFY2(fault.isEmpty(), qPrintable(QString("step %1: %2").arg(i).arg(fault)));
        // At rest nothing more is asked for.
        m->host.messages.clear();
        m->gallery->reLayout();
        host.quiet();
        QVERIFY2(m->host.messages.empty(), qPrintable(QString("step %1: unrest").arg(i)));
    }
}

void TestGalleryFocus::gradesAreAskedForOnce()
{
    StreamHost host(*m);
    const auto persons = m->addMany(3);
    for (tagPersonInfo* person : persons)
        host.setCamera(person, true);
    // Before any frame has come, a burst of arrangements costs nothing.
    for (const int mode : {6, 1, 2, 14, 6, 1})
        setMode(mode);
    QCOMPARE(host.switches, 0);
    host.quiet();
    QCOMPARE(host.switches, 3);
    for (const int mode : {6, 1, 2, 14, 6, 1})
        setMode(mode);
    host.quiet();
    QCOMPARE(host.switches, 3); // back at the grades that the host has been asked for
    // A stream that was closed in between begins anew; its last frames ask for nothing.
    host.setCamera(persons[1], false);
    m->play(persons[1]);
    m->settle();
    QCOMPARE(host.switches, 3);
    host.setCamera(persons[1], true);
    host.quiet();
    QCOMPARE(host.switches, 4);
    m->gallery->setPersonDefStreamType(persons[1]);
    QCOMPARE(persons[1]->iStreamType, persons[1]->iDefType);
    // A page that is turned back soon costs the host nothing.
    setMode(eLayoutSingle);
    m->host.messages.clear();
    setMode(eLayoutEqualCut);
    QCOMPARE(m->host.count(ZRMSG_VIDEO_SHOWN), 0);
}

// --- Bad input --------------------------------------------------------------------------------

void TestGalleryFocus::deletionsLeaveNoFocusBehind_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {9, 11, 13, 14, 15, 20, 21, 22, 29})
        QTest::addRow("message %d", id) << id;
}

void TestGalleryFocus::deletionsLeaveNoFocusBehind()
{
    QFETCH(int, id);
    for (int victim = 0; victim < 5; ++victim) {
        auto persons = m->addMany(8);
        for (tagPersonInfo* person : persons)
            m->gallery->setPreview(person, person != persons[2]);
        m->gallery->onModLookLock(persons[0], true);
        activate("u3");
        m->gallery->onClickMore(persons[1], 1);
        bool met = false;
        m->host.onMessage = [&](const HostDouble::Message& message) {
            if (int(message.id) != id || met)
                return;
            met = true;
            if (victim == 4)
                m->gallery->ProcessExitMeeting();
            else
                m->gallery->onModDelPerson(persons[std::size_t(victim)]);
        };
        click(persons[2]); // kept: no picture
        click(persons[1]);
        click(persons[3]);
        setMode(eLayoutGrid4);
        m->gallery->changePersonVideoMute(true);
        setMode(eLayoutGrid16);
        QVERIFY(met);
        m->host.onMessage = nullptr;
        tagPersonInfo* focus = m->hub().gallery.focusPerson;
        QVERIFY(!focus || m->gallery->livePerson(focus));
        m->add("later");
        setMode(eLayoutSpeakerRight);
        QVERIFY(!speaker().isEmpty());
        m->gallery->ProcessExitMeeting();
        m->settle();
    }
}

void TestGalleryFocus::foreignPointers()
{
    m->addMany(2);
    setMode(eLayoutSpeakerRight);
    tagPersonInfo stranger; // of no gallery
    stranger.userID = "u1";
    CPlayWidget tile(nullptr, false);
    tile.SetPersonInfo(&stranger, false);
    newMessages();
    QDlgScreen& gallery = *m->gallery;
    for (void* pointer : {static_cast<void*>(nullptr), reinterpret_cast<void*>(0x10),
                          static_cast<void*>(&stranger), static_cast<void*>(this)}) {
        auto* person = static_cast<tagPersonInfo*>(pointer);
        QVERIFY(gallery.setFocusPerson(person, eLayoutSingle));
        QVERIFY(!gallery.setAllLook(pointer, true) && !gallery.setLockLookPerson(pointer, true));
        QVERIFY(!gallery.setMute(pointer, false) && !gallery.IsBindToSmallWnd(person));
        gallery.setPreview(pointer, true);
        gallery.setPersonStreamType(person, 2);
        gallery.switchStream(person, 2);
        gallery.setPersonDefStreamType(pointer);
        gallery.ActivateIntoSmallWnd(person, person);
        gallery.updatePersonDisplayInfo(person);
        gallery.onClickMore(pointer, 0);
        gallery.onHandleHandup(pointer);
        gallery.onModPersonHandup(pointer, true);
        gallery.onModVolume(pointer, 1);
        gallery.onNotifyClickExtPlayWidget(pointer);
        gallery.onPlayFrameUpdateUI(pointer, 1, 1);
    }
    for (CPlayWidget* stray : {static_cast<CPlayWidget*>(nullptr), &tile}) {
        gallery.onPlayWidgetLBtnClick(stray);
        QVERIFY(!gallery.changePersonToFocus(stray));
    }
    QCOMPARE(newMessages(), QList<int>());
    QCOMPARE(m->hub().curScreenMode(), int(eLayoutSpeakerRight));
    QVERIFY(!stranger.bPreview && !stranger.bAllLook && stranger.iStreamType == 0);
}

ZR_WIDGET_TEST_MAIN(TestGalleryFocus)
#include "tst_gallery_focus.moc"
