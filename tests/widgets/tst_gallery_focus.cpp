// The gallery: who has the focus, what clicks and voices change, and whose stream is open. The
// rules have tests of their own; here is what the gallery makes of their answers.
#include "gallerytest.h"

#include <random>
#include <set>
#include <thread>

using zrtest::HostDouble;
using zrtest::Meeting;
using Ids = QList<int>;

namespace {

/// u0 is the first speaker. The numbers of the news are the host messages.
const std::pair<const char*, const char*> kStories[] = {
    // --- Clicks ---
    {"a click moves the stream with the focus",
     "people 3; mode 6; stream u0; stream u1; news: ; click u1; news: 9 29 14 14 11; speaker: u1;"
     "click u1; news: 9 29; speaker: u1"},
    {"there is no stream to move",
     "people 3; mode 8; stream u1; click u1; news: 9 29 11; speaker: u1"},
    {"there are no streams at all", "people 3; mode 9; click u1; news: 9 29 11; speaker: u1"},
    {"a picture does not give way to none",
     "people 3; mode 7; stream u0; click u1; news: 9 29 15; speaker: u0"},
    {"it does to a camera whose stream is closed",
     "people 3; mode 6; stream u0; hide; elapse 1000; stream u1; elapse 1000; stream u1 off;"
     "hide off; click u1; news: 9 29 14 14 11; speaker: u1"},
    {"the host dictates whom clicks do not move",
     "people 3; mode 6; stream u0; stream u1; set follow 1; click u1; news: 9 29; speaker: u0"},
    {"a click leads away from a pin",
     "people 3; mode 6; pin u0; click u1; news: 9 29 13 11; speaker: u1"},
    {"a click leads away from a pin for all",
     "people 3; mode 6; pin-for-all u0; click u1; news: 9 29 16 11; speaker: u1"},
    {"a click in a gallery chooses the next speaker, and no voice takes the place",
     "people 3; click u2; news: 9 29 11; suggest u1; mode 6; speaker: u2; focus: u2"},
    {"the latest choice counts",
     "people 3; click u1; focus u0; mode 6; speaker: u0; mode 1; click u2; mode 6; speaker: u2;"
     "mode 1; click u1; pin u2; mode 6; speaker: u2; mode 1; click u1; remove u1; mode 6;"
     "speaker: u2; mode 1; click u0; focus; mode 6; speaker: u2; mode 1; stream u2; click u0;"
     "set filter 1; mode 6; speaker: u0"},
    {"a share does not take the place of a choice that waits in a gallery",
     "people 3; add sharescreen_1; mode 6; click u1; mode 1; order; mode 6; speaker: u1"},

    // --- Double clicks ---
    {"a double click maximises and comes back",
     "people 3; double u1; news: 8; mode: 10; shown: u1; double u1; mode: 1; shown: u0 u1 u2;"
     "mode 12; double u1; mode: 10; double u1; mode: 12; mode 7; double u0; mode: 10; shown: u0"},
    {"beside the speaker it is a click", "people 3; mode 7; double u1; mode: 7; speaker: u1"},
    {"beside a share it is nothing",
     "people 3; add sharescreen_1; mode 7; news: ; double u1; news: 8; speaker: sharescreen_1;"
     "mode 1; double u1; mode: 1; double sharescreen_1; mode: 10; whole sharescreen_1: yes"},
    {"who was chosen as the speaker does not stand in the way of a gallery's tiles",
     "people 3; mode 6; click u1; mode 1; double u2; shown: u2; double u2; focus: ; mode 2;"
     "double u0; shown: u0; double u0; mode 3; double u1; shown: u1; double u1; mode 7;"
     "speaker: u1; focus: u1"},
    {"with the speaker tool it is nothing", "people 3; mode 5; double u0; mode: 5"},
    {"where the host dictates it is nothing", "people 3; set follow 1; double u1; mode: 1"},
    {"while pages turn it is nothing", "people 3; set polling 1; double u1; mode: 1"},
    {"in the share's mode without a share, to its gallery",
     "people 3; mode 7; mode 10; double u1; shown: u1; double u1; mode: 10; shown: u0 u1 u2;"
     "double u2; remove u2; mode: 10; shown: u0 u1"},
    {"from the share's mode to the one before it, and not to one of long ago",
     "people 3; mode 7; double u0; double u0; mode 12; set follow 1; add sharescreen_1;"
     "order; set follow 0; mode 10; shown: sharescreen_1; double sharescreen_1; mode: 12"},
    {"the pin of somebody else ends, and who is maximised leaves",
     "people 3; mode 3; double u1; pin-for-all u2 off; shown: u1; remove u1; mode: 3"},
    {"alone there is nothing to come back to", "people 1; mode 3; double u0; mode: 3"},

    // --- The speaker ---
    {"nobody wants to look at themselves, and who is there stays",
     "add me 1; self me; mode 6; speaker: me; add first 2; speaker: first; add second 3;"
     "host second; speaker: first; focus: ; focus second; speaker: second; focus: second;"
     "remove second; speaker: first; remove first; mode: 6; speaker: me"},
    {"a pin, and before that the sponsor's share, is the arrangement's choice",
     "people 3; mode 6; focus u2; pin-for-all u1; focus; speaker: u1; sponsor u0;"
     "add sharescreen_other; add sharescreen_u0; mode 6; focus; speaker: sharescreen_u0"},
    {"a voice does not displace a choice, and nobody an unknown id",
     "people 4; mode 6; suggest u1; speaker: u1; focus u2; speaker: u2; suggest u3; speaker: u2;"
     "focus nobody; speaker: u2; mode 1; mode 8; speaker: u2; focus; focus: ; suggest u3;"
     "speaker: u3; focus u3; suggest u0; speaker: u3"},
    {"shares are named after who shares, unless the host knows better",
     "add anna 1 Anna; add ben 2 Ben; sponsor ben; add sharescreen_anna; add sharescreen_7;"
     "layout; name sharescreen_anna: Anna; name sharescreen_7: Ben; rename anna Anne;"
     "rename sharescreen_7 Board; name sharescreen_anna: Anne; name sharescreen_7: Board;"
     "remove anna; name sharescreen_anna: Ben"},
    {"with the layout control the host gives the seats",
     "set control 1; set follow 1; set speaker-seat 0; set share-seat 1; people 4;"
     "add sharescreen_1; mode 6; speaking u1; speaker: u1; voice u2; speaker: u2; voice u3;"
     "speaker: u3; click u1; speaker: u3; mode 1; shown: u3 sharescreen_1 u0 u1 u2; voice u1;"
     "shown: u1 sharescreen_1 u0 u2 u3; voice nobody; speaking u2;"
     "shown: u2 sharescreen_1 u0 u1 u3; set control 0; layout; shown: sharescreen_1 u0 u1 u2 u3"},

    // --- Voices; u9 is on the second page ---
    {"a voice becomes the speaker", "people 10; set activation 1; mode 6; voice u9; speaker: u9"},
    {"or comes into the strip",
     "people 10; mode 7; voice u9; speaker: u0; seen: u0 u1 u2 u3 u4 u5 u9"},
    {"it leaves a choice alone", "people 10; set activation 1; mode 8; focus u1; voice u9;"
                                 "speaker: u1; seen: u0 u1 u2 u3 u4 u5 u9"},
    {"or where the host dictates",
     "people 10; set activation 1; set control 1; mode 7; voice u9; speaker: u0"},
    {"it stands beside the speaker",
     "people 10; set activation 1; mode 9; focus u1; voice u9; speaker: u1;"
     "seen: u0 u1 u2 u3 u4 u5 u6 u9"},
    {"it comes into the tool", "people 10; mode 4; voice u9; speaker: u0; tool: u9"},
    {"it leaves a gallery alone", "people 10; mode 3; voice u9; seen: u0 u1 u2 u3 u4 u5 u6 u7"},
    {"one's own moves nothing", "people 10; mode 7; self u0; voice u0; speaker: u1; focus u1; next;"
                                "seen: u1 u7 u8 u9; voice u0; seen: u1 u7 u8 u9"},
    {"who speaks is marked",
     "people 3; mode 6; voice u1; speaking: u1; voice u2; speaking: u2; voice nobody; speaking: "},
    {"the seat of who spoke is given back",
     "people 3; set control 1; set speaker-seat 0; voice u2; shown: u2 u0 u1; voice nobody;"
     "shown: u0 u1 u2"},

    // --- The small window ---
    {"it is the strip, where there is one",
     "people 4; small: ; mode 6; small: u1 u2 u3; hide; small: ; seen: u0; whole u0: yes;"
     "hide off; small: u1 u2 u3; mode 9; small: u2 u3; hide; small: ; seen: u0 u1; hide off;"
     "small: u2 u3"},
    {"or the tool, which hides with the client",
     "people 4; mode 4; small: u1; hide; tool: ; hide off; speaking u2; small: u2; minimise;"
     "tool: ; minimise off; small: u2; tool: u2; mode 1; tool: "},
    {"one's own share floats over the gallery; who is seen keeps the stream",
     "people 8; voice u7; float; tool: u7; small: u7; hidden: 1; voice u0; layout; tool: u0;"
     "grade u0: 3; float off; tool: ; hidden: 1"},

    // --- Pins ---
    {"a pin from a gallery", "people 3; pin u1; mode: 6; speaker: u1; pinned: u1"},
    {"a pin for all displaces others",
     "people 3; mode 7; pin u2; pin-for-all u1; mode: 7; speaker: u1; pinned: u1"},
    {"a pin beside a pair of speakers", "people 3; mode 9; pin u1; mode: 6; speaker: u1"},
    {"a pin on the speaker",
     "people 3; mode 7; focus u0; pin u0; mode: 6; pin-for-all u0; mode: 6"},
    {"a pin where the host dictates", "people 3; mode 7; set follow 1; pin u1; mode: 1"},
    {"a pin ends, not from its menu, or from it",
     "people 3; pin u1; mode 11; pin u1 off; mode: 11; mode 8; menu u1; pin u1 off; mode: 11;"
     "set follow 1; mode 8; menu u1; pin-for-all u1 off; mode: 1"},
};

/// A host that opens, closes and switches streams as it is told, and reports that: at once, or
/// later and then in turn.
class StreamHost
{
public:
    explicit StreamHost(Meeting& meeting)
        : m(meeting)
    {
        m.host.onMessage = [this](const HostDouble::Message& message) { obey(message); };
    }

    void setCamera(tagPersonInfo* person, bool on)
    {
        if (on)
            m_cameras.insert(person->userID);
        else
            m_cameras.erase(person->userID);
        // A media engine opens what has a camera, seen or not.
        setOpen(person, on);
    }
    /// A camera of somebody who joins later, and whose stream is opened when he is shown.
    void addCamera(const QString& id) { m_cameras.insert(id); }
    /// Lets frames come and time pass until nothing changes any more.
    void quiet()
    {
        for (int round = 0; round < 3; ++round) {
            for (const auto& [person, grade] : std::map(m_open))
                m.play(person);
            m.elapse(1000);
        }
    }
    /// What is wrong with the streams at a quiet moment; empty when nothing is.
    QString fault(bool withGrades = true) const
    {
        for (const CPlayWidget* tile : m.tiles()) {
            tagPersonInfo* person = tile->GetPersonInfo();
            const bool wanted = m.sees(person->userID) && hasCamera(person);
            const auto stream = m_open.find(person);
            if (wanted != (stream != m_open.end()))
                return person->userID
                       + (wanted ? " is closed, and seen" : " is open, and not seen");
            if (wanted && withGrades && stream->second != wantedGrade(person))
                return person->userID + " has another grade than the tile";
        }
        return {};
    }

    /// How long the answer takes to a message that somebody is shown or hidden; 0 for no time.
    std::function<int(bool bShown)> delayMs = [](bool) { return 0; };
    bool onlyChanges = true; ///< else every message is answered
    int switches = 0;

private:
    bool hasCamera(const tagPersonInfo* person) const
    {
        return m_cameras.count(person->userID) != 0;
    }
    static int wantedGrade(const tagPersonInfo* person)
    {
        const bool asked = !person->bSelf && !person->bShare && !person->userName.isEmpty();
        return asked ? person->iStreamType : 0;
    }
    void setOpen(tagPersonInfo* person, bool bOpen)
    {
        if (bOpen)
            m_open.emplace(person, 0);
        else
            m_open.erase(person);
        m->onModPreview(person, bOpen);
    }
    void answer(tagPersonInfo* person, bool bShown)
    {
        if (!m->livePerson(person))
            return;
        const bool bOpen = bShown && hasCamera(person);
        if (!onlyChanges || bOpen != (m_open.count(person) != 0))
            setOpen(person, bOpen);
    }
    void obey(const HostDouble::Message& message)
    {
        tagPersonInfo* person = message.person();
        if (message.id == ZRMSG_VIDEO_SHOWN || message.id == ZRMSG_VIDEO_HIDDEN) {
            const bool bShown = message.id == ZRMSG_VIDEO_SHOWN;
            m_wanted[person] = bShown;
            const int delay = delayMs(bShown);
            qint64& dueMs = m_due[person];
            dueMs = std::max(dueMs, m.nowMs + delay);
            if (dueMs <= m.nowMs)
                answer(person, bShown);
            else
                m.later(dueMs - m.nowMs,
                        [=] { answer(person, onlyChanges ? m_wanted[person] : bShown); });
        } else if (message.id >= 2 && message.id <= 4) {
            ++switches;
            if (m_open.count(person) != 0)
                m_open[person] = static_cast<int>(message.id);
        }
    }

    Meeting& m;
    std::set<QString> m_cameras;             ///< by user id
    std::map<tagPersonInfo*, int> m_open;    ///< and the grade; 0 is the host's own
    std::map<tagPersonInfo*, bool> m_wanted; ///< what was told last
    std::map<tagPersonInfo*, qint64> m_due;  ///< the last answer
};

} // namespace

class TestGalleryFocus : public QObject
{
    Q_OBJECT

private slots:
    ZR_STORIES(kStories)
    void movesTheStreamWithTheFocus();
    void smallWindow();
    void extendedScreen();
    void moreMenu();
    void previewReports();
    void lateFramesStartNothing();
    void settlesWithSlowHosts_data();
    void settlesWithSlowHosts();
    void streamsFollowTheTiles();
    void gradesAreAskedForOnce();
    void foreignPointers();
};

void TestGalleryFocus::movesTheStreamWithTheFocus()
{
    Meeting m;
    QCOMPARE(m.tell("people 2; mode 6; stream u0; stream u1"), QString());
    QStringList told;
    Ids classes; // of modes
    m.host.onMessage = [&](const HostDouble::Message& message) {
        if (message.id == ZRMSG_FOCUS_STREAM) // the text is valid during the call only
            told.append(QString::fromLocal8Bit(reinterpret_cast<const char*>(message.wParam))
                        + QString::number(message.lParam));
        if (message.id == ZRMSG_FOCUS_PERSON)
            told.append(message.person()->userID);
        if (message.id == ZRMSG_DBLCLICK_LAYOUT)
            classes.append(int(message.wParam));
    };
    m.click("u1");
    QCOMPARE(told, QStringList({"u11", "u00", "u1"}));
    QCOMPARE(m.tell("focus; mode 1; double u0; mode 12; double u0; mode 7; double u0"), QString());
    QCOMPARE(classes, Ids({5, 7, 6}));
}

void TestGalleryFocus::smallWindow()
{
    Meeting m;
    const auto persons = m.addMany(4);
    m->setMeetingMode(eLayoutSpeakerTool);
    QVERIFY(m->isPersonVisibleInSmallWnd("u1")); // what is scheduled is carried out first
    QCOMPARE(m->GetSmallWndId(), 1);
    QCOMPARE(m.tell("speaking u2"), QString());
    QCOMPARE(m.tool->speaking, QString("u2"));
    QVERIFY(m.play(persons[2]) && m.play(persons[1]));
    QCOMPARE(m.tool->frames, 1);
    QCOMPARE(m->showSmallWndWhenRestore(false), 1);
    QVERIFY(!m.tool->visible && m->GetSmallWndId() == 0);
    QCOMPARE(m.tell("minimise off; rename u2 Zoe"), QString());
    QCOMPARE(m.tool->speaking, QString("Zoe"));
    m.remove("u2");
    QCOMPARE(m.tool->speaking, QString());
    QCOMPARE(m->OnPopSelfShareWnd(true, false), 1);
}

void TestGalleryFocus::extendedScreen()
{
    Meeting m;
    m.addMany(2);
    m.setMode(eLayoutSpeakerRight);
    tagPersonInfo shown; // the extended screen has a record of its own
    shown.userID = "u1";
    CPlayWidget tile(nullptr, false);
    tile.SetPersonInfo(&shown, false);
    emit m.hub().notifyClickExtPlayWidget(&tile);
    m.settle();
    QCOMPARE(m.speaker(), QString("u1"));
    tile.SetPersonInfo(nullptr, false);
    m.host.news();
    for (void* nobody : {static_cast<void*>(&tile), static_cast<void*>(this), (void*)nullptr})
        emit m.hub().notifyClickExtPlayWidget(nobody);
    QCOMPARE(m.host.news(), Ids());
    for (const bool extended : {false, true}) { // where the toast would be in the way
        m->OnSwitchExtendScreen(extended, true);
        m->onLookToast(true);
        m->onLookToast(false);
        QCOMPARE(m.host.news(), extended ? Ids() : Ids({16, 13}));
    }
}

void TestGalleryFocus::moreMenu()
{
    Meeting m(true); // under the mouse
    tagPersonInfo* person = m->AddPerson("u0", "u0", 0, 0, reinterpret_cast<void*>(77));
    m.addMany(3);
    QCursor::setPos(person->pWidget->mapToGlobal(person->pWidget->rect().center()));
    m.host.news();
    m->onClickMore(person, 33);
    QCOMPARE(m.host.messages.back().wParam, 33ULL);
    QCOMPARE(m.host.messages.back().lParam, 77LL);
    m.reLayout();
    QCOMPARE(m.host.news(), Ids({ZRMSG_CLICK_MORE}));
    m.setMode(eLayout6Cut); // the mouse is on the tile still, but the tile not where the menu is
    QCOMPARE(m.host.news(), Ids({ZRMSG_MORE_MENU_CLOSED}));
    m->onClickMore(person, 33);
    m->clearMoreMenuPerson();
    m->onClickMore(person, 33);
    m.remove("u0");
    QCOMPARE(m.host.news(), Ids({1, 1, 22}));
}

// --- Streams ----------------------------------------------------------------------------------

void TestGalleryFocus::previewReports()
{
    Meeting m;
    tagPersonInfo* person = m.add("anna");
    const struct
    {
        bool open, prePreview;
    } rows[] = {{false, false}, {true, true}, {true, true}, {false, true}, {false, true}};
    for (const auto& row : rows) {
        m->setPreview(person, row.open);
        QCOMPARE(person->bPreview, row.open);
        QVERIFY(person->bVideoStatusChange);
        QCOMPARE(person->bPrePreview, row.prePreview);
    }
}

void TestGalleryFocus::lateFramesStartNothing()
{
    Meeting m;
    tagPersonInfo* person = m.addMany(7)[0];
    VantrelRTCVideoFrameQT frame{};
    frame.pData = m.picture.data();
    frame.width = frame.height = 8;
    const auto isRunning = [&] { return person->iStreamStatus == kStreamRunning; };
    // The notice of a frame uncovers the tile: the picture is there before.
    connect(&m.hub(), &QZRScreenConfig::playFrameUpdateUI, this,
            [person] { QVERIFY(!person->pWidget->IsBufferBlank()); });
    const auto pictureBelongsToTheStream = [&](const std::function<void(bool)>& setOpen) {
        setOpen(true);
        QVERIFY(!isRunning());
        QVERIFY(m.play(person) && isRunning());
        setOpen(false);
        QVERIFY(m.play(person) && !isRunning());
        // One whose notice comes when the next stream is open already.
        std::thread([&] { QVERIFY(m->playFrame(person, &frame)); }).join();
        setOpen(true);
        m.settle();
        QVERIFY(!isRunning());
        QVERIFY(m.play(person) && isRunning());
        setOpen(false);
    };
    pictureBelongsToTheStream([&](bool open) { m->setPreview(person, open); });
    m->setPreview(person, true); // a host that does not say what it closes
    pictureBelongsToTheStream(
        [&](bool open) { QCOMPARE(m.tell(open ? "back" : "next; elapse 1000"), QString()); });
}

void TestGalleryFocus::streamsFollowTheTiles()
{
    Meeting m;
    StreamHost host(m);
    const auto persons = m.addMany(14);
    QCOMPARE(m.tell("add me 1; self me"), QString());
    for (std::size_t i = 0; i < persons.size(); ++i)
        host.setCamera(persons[i], i % 5 != 3);
    host.setCamera(m["me"], true);
    for (const char* step : {"mode 1",
                             "next",
                             "mode 6",
                             "next",
                             "click u8",
                             "voice u13",
                             "hide",
                             "hide off",
                             "mode 4",
                             "voice u12",
                             "minimise",
                             "minimise off",
                             "add sharescreen_1",
                             "camera sharescreen_1",
                             "mode 9",
                             "camera u3",
                             "camera u1 off",
                             "camera u1",
                             "float",
                             "float off",
                             "remove sharescreen_1",
                             "remove u8",
                             "mode 14",
                             "mode 13",
                             "set filter 1",
                             "mode 99",
                             "mode 1",
                             "next wrap"}) {
        const QStringList words = QString(step).split(' ');
        if (words[0] == "camera")
            host.setCamera(m[words[1]], words.size() == 2);
        else
            QCOMPARE(m.tell(step), QString());
        m.reLayout();
        host.quiet();
        QCOMPARE(QString(step) + host.fault(), QString(step));
        // At rest nothing more is asked for, and nobody changes places.
        const QString shown = m.shown();
        m.host.messages.clear();
        m.reLayout();
        host.quiet();
        QVERIFY2(m.host.messages.empty() && m.shown() == shown, step);
    }
}

void TestGalleryFocus::settlesWithSlowHosts_data()
{
    QTest::addColumn<int>("shownMs"); // at least
    QTest::addColumn<int>("shownMostMs");
    QTest::addColumn<int>("hiddenMostMs");
    QTest::newRow("late shown") << 1100 << 1900 << 0;
    QTest::newRow("5 s") << 5000 << 5000 << 5000;
    QTest::newRow("late hidden") << 0 << 0 << 5000;
    QTest::newRow("random") << 0 << 5000 << 5000;
}

/// Nobody changes places but for a reason, nobody is reported twice, and the streams fit.
void TestGalleryFocus::settlesWithSlowHosts()
{
    QFETCH(int, shownMs);
    QFETCH(int, shownMostMs);
    QFETCH(int, hiddenMostMs);
    constexpr int kRestMs = 20000;
    int combination = 0;
    for (const int mode : {1, 2, 6, 9, 11, 12, 13}) {
        Meeting m;
        StreamHost host(m);
        std::mt19937 random(unsigned(++combination));
        host.onlyChanges = combination % 2 == 0;
        host.delayMs = [&](bool bShown) {
            std::uniform_int_distribution<int> delay(bShown ? shownMs : hiddenMostMs / 2,
                                                     bShown ? shownMostMs : hiddenMostMs);
            return delay(random);
        };
        m.stepMs = 0; // of the page turns
        const int people = QList<int>({6, 18, 60})[combination % 3];
        const bool reportsFirst = combination % 4 < 2; // what is open when somebody joins
        for (int i = 0; i < people && !reportsFirst; ++i)
            host.addCamera(QStringLiteral("u%1").arg(i));
        const auto persons = m.addMany(people);
        for (int i = 0; i < people && reportsFirst; ++i)
            host.setCamera(persons[std::size_t(i)], i % 4 != 3);
        QCOMPARE(m.tell(QString("mode %1").arg(mode)), QString());
        m.pass(kRestMs);
        for (const char* step : {"next", "back", "next; mode 13", "mode 1", "next", "add last 1000",
                                 "remove u2", "poll 1", "poll 1 off", "set filter 1; layout"}) {
            const QString row = QString("mode %1, %2").arg(mode).arg(step);
            m.host.messages.clear();
            QCOMPARE(m.tell(step), QString());
            const QString shown = m.shown();
            m.pass(kRestMs);
            std::map<tagPersonInfo*, unsigned long> last;
            std::map<std::pair<tagPersonInfo*, unsigned long>, int> times;
            for (const auto& message : m.host.messages) {
                if (message.id != ZRMSG_VIDEO_SHOWN && message.id != ZRMSG_VIDEO_HIDDEN)
                    continue;
                QVERIFY2(std::exchange(last[message.person()], message.id) != message.id,
                         qPrintable(row + " told twice: " + message.person()->userID));
                ++times[{message.person(), message.id}];
            }
            if (QString(step) == "poll 1") { // whose turn is over is reported hidden
                const int left = m.host.count(ZRMSG_VIDEO_HIDDEN);
                QVERIFY2(m.host.count(ZRMSG_VIDEO_SHOWN) <= left + 12, qPrintable(row));
                continue;
            }
            for (const auto& [which, count] : times)
                QVERIFY2(count == 1, qPrintable(row + " told again: " + which.first->userID));
            QCOMPARE(row + ": " + m.shown(), row + ": " + shown);
            QCOMPARE(row + host.fault(false), row);
            m.host.messages.clear();
            m.pass(3000);
            QVERIFY2(m.host.messages.empty() && m.shown() == shown, qPrintable(row));
        }
    }
}

void TestGalleryFocus::gradesAreAskedForOnce()
{
    Meeting m;
    StreamHost host(m);
    const auto persons = m.addMany(3);
    for (tagPersonInfo* person : persons)
        host.setCamera(person, true);
    const char* manyModes = "mode 6; mode 1; mode 2; mode 14; mode 6; mode 1";
    // Before any frame has come, a burst of arrangements costs nothing.
    QCOMPARE(m.tell(manyModes), QString());
    QCOMPARE(host.switches, 0);
    host.quiet();
    QCOMPARE(host.switches, 3);
    QCOMPARE(m.tell(manyModes), QString());
    host.quiet();
    QCOMPARE(host.switches, 3); // back at the grades that the host has been asked for
    // A stream that was closed in between begins anew; its last frames ask for nothing.
    host.setCamera(persons[1], false);
    m.play(persons[1]);
    QCOMPARE(host.switches, 3);
    host.setCamera(persons[1], true);
    host.quiet();
    QCOMPARE(host.switches, 4);
    m->setPersonDefStreamType(persons[1]);
    QCOMPARE(persons[1]->iStreamType, persons[1]->iDefType);
    // Some hosts close the stream for that, and open it again: the camera is on.
    m->setPreview(persons[1], false);
    QVERIFY(persons[1]->camera.isOn(m.nowMs));
    // A page that is turned back soon costs the host nothing.
    m.setMode(eLayoutSingle);
    m.host.messages.clear();
    m.setMode(eLayoutEqualCut);
    QCOMPARE(m.host.count(ZRMSG_VIDEO_SHOWN), 0);
}

// --- Bad input --------------------------------------------------------------------------------

void TestGalleryFocus::foreignPointers()
{
    Meeting m;
    const tagPersonInfo* gone = m.add("gone");
    m->DelPerson(m["gone"]);
    m.addMany(2);
    m.setMode(eLayoutSpeakerRight);
    tagPersonInfo stranger; // of no gallery
    stranger.userID = "u1";
    CPlayWidget tile(nullptr, false);
    tile.SetPersonInfo(&stranger, false);
    m.host.news();
    QDlgScreen& gallery = *m.gallery;
    // Who has gone is logged, once for all galleries.
    const QDlgScreen other(nullptr);
    m.hub().m_pDlgScreen = m.gallery.get();
    for (const void* address : std::initializer_list<const void*>{
             nullptr, reinterpret_cast<void*>(0x10), &stranger, this, gone}) {
        void* pointer = const_cast<void*>(address);
        auto* person = static_cast<tagPersonInfo*>(pointer);
        const std::function<void()> calls[] = {
            [&] { QVERIFY(gallery.setFocusPerson(person, eLayoutSingle)); },
            [&] { QVERIFY(!gallery.setAllLook(pointer, true)); },
            [&] { QVERIFY(!gallery.setLockLookPerson(pointer, true)); },
            [&] { QVERIFY(!gallery.setMute(pointer, false)); },
            [&] { QVERIFY(!gallery.IsBindToSmallWnd(person)); },
            [&] { QVERIFY(!gallery.IsPersonInCustomizeSort(person)); },
            [&] { gallery.setPreview(pointer, true); },
            [&] { gallery.setPersonStreamType(person, 2); },
            [&] { gallery.switchStream(person, 2); },
            [&] { gallery.ActivateIntoSmallWnd(person, nullptr); },
            [&] { gallery.updatePersonDisplayInfo(person); },
            [&] { gallery.onModVideoSize(pointer, 10, 10); },
            [&] { gallery.onPlayFrameUpdateUI(pointer, 1, 1); },
            [&] { gallery.onNotifyUpdateUserInfo(&stranger, pointer); },
            [&] { emit m.hub().notifyClickMore(pointer, 0); },
            [&] { emit m.hub().handleHandup(pointer); },
            [&] { emit m.hub().modSignalPersonHandup(pointer, true); },
            [&] { emit m.hub().modSignalPersonInfo(pointer, true, 1, "x", 0); },
            [&] { emit m.hub().modSignalVolume(pointer, 1); },
            [&] { emit m.hub().modSignalDelPerson(pointer); },
            [&] { emit m.hub().modSignalAddPerson(pointer); },
        };
        int number = 0;
        for (const auto& call : calls) {
            const zrtest::LogLines log;
            call();
            QVERIFY2(log.count("testDelPerson") == (pointer ? 1 : 0),
                     qPrintable(QString::number(number)));
            ++number;
        }
        QVERIFY(!m.play(person));
        gallery.setPersonDefStreamType(pointer);
        gallery.onNotifyClickExtPlayWidget(pointer);
    }
    m.hub().m_pDlgScreen = nullptr;
    for (CPlayWidget* stray : {static_cast<CPlayWidget*>(nullptr), &tile}) {
        gallery.onPlayWidgetLBtnClick(stray);
        QVERIFY(!gallery.changePersonToFocus(stray));
    }
    QCOMPARE(m.host.news(), Ids());
    QCOMPARE(m.mode(), int(eLayoutSpeakerRight));
    QVERIFY(!stranger.bPreview && !stranger.bAllLook && stranger.iStreamType == 0);
}

ZR_WIDGET_TEST_MAIN(TestGalleryFocus)
#include "tst_gallery_focus.moc"
