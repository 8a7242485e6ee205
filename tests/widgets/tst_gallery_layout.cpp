// The gallery: its arrangements, the order of the participants, and their pages. The rules have
// tests of their own; here is what the gallery makes of their answers.
#include "gallerytest.h"

#include "layoutgeometry.h"
#include "qdlgnovideo.h"
#include "qdlgpagemark.h"
#include "qmypagectrl.h"
#include "qmypagescroll.h"

#include <QAbstractEventDispatcher>
#include <QSignalSpy>

#include <map>
#include <set>
#include <tuple>

namespace {

using Rects = std::set<std::tuple<int, int, int, int>>;

std::tuple<int, int, int, int> key(const QRect& rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

using Places = QMap<int, QString>;

constexpr int kNineCut = 109; ///< stands for mode 1 with nine tiles a page

/// The rule of each mode that needs no more than a list.
const std::map<int, std::vector<zr::TilePlacement> (*)(const zr::LayoutInput&)> kRules{
    {1, zr::equalCutPlacements},
    {2, zr::sixCutPlacements},
    {3, zr::eightCutPlacements},
    {6, zr::speakerPlacements},
    {7, zr::speakerPlacements},
    {8, zr::speakerPlacements},
    {9, zr::speaker4Placements},
    {kNineCut, zr::nineCutPlacements},
    {11, zr::fixedGridPlacements},
    {12, zr::fixedGridPlacements},
    {13, zr::fixedGridPlacements},
    {14, [](const zr::LayoutInput& input) {
         return std::vector<zr::TilePlacement>{zr::aloneCentred(input.area, 0)};
     }}};

} // namespace

using zrtest::ToolDouble;

class TestGalleryLayout : public QObject
{
    Q_OBJECT

private slots:
    void init() { m = std::make_unique<zrtest::Meeting>(); }
    void cleanup() { m.reset(); }

    void everyModeShowsItsArrangement_data();
    void everyModeShowsItsArrangement();
    void sharesAndSpeakersFillTheDialog();
    void unchangedArrangementsTouchNothing_data();
    void unchangedArrangementsTouchNothing();
    void narrowDialogsAreLeftAlone();
    void ordersParticipants_data();
    void ordersParticipants();
    void looksForANewOrder();
    void closedPreviewsDoNotReorder();
    void filtersWhoHasNoPicture();
    void turnsPages();
    void turnsPagesByHand();
    void showsPageControls();
    void survivesMassLeave();
    void polls_data();
    void polls();
    void pollingNeedsPages();
    void shareHeadTakesTheFocus();
    void speakerToolShowsTheNextSpeaker();
    void deletionsFromInsideMessages_data();
    void deletionsFromInsideMessages();

private:
    /// Ids of the participants whose tile is shown, in the display list's order of the page.
    QStringList shown() const;
    Rects shownRects() const;
    void setMode(int mode)
    {
        m->gallery->setMeetingMode(static_cast<eLayoutType>(mode));
        m->settle();
    }
    QList<int> timers() const;
    void fireTimer(int intervalMs);
    bool hasTimer(int intervalMs) const { return timers().contains(intervalMs); }
    std::vector<CPlayWidget*> tiles() const
    {
        const auto list = m->gallery->findChildren<CPlayWidget*>();
        return {list.begin(), list.end()};
    }

    std::unique_ptr<zrtest::Meeting> m;
};

QStringList TestGalleryLayout::shown() const
{
    std::map<std::pair<int, int>, QString> byPlace;
    for (const CPlayWidget* tile : tiles()) {
        if (tile->isShowing())
            byPlace[{tile->y(), tile->x()}] = tile->GetPersonInfo()->userID;
    }
    QStringList ids;
    for (const auto& [place, id] : byPlace)
        ids.append(id);
    return ids;
}

Rects TestGalleryLayout::shownRects() const
{
    Rects rects;
    for (const CPlayWidget* tile : tiles()) {
        if (tile->isShowing() && tile->isVisible())
            rects.insert(key(tile->geometry()));
    }
    return rects;
}

QList<int> TestGalleryLayout::timers() const
{
    QList<int> intervals;
    for (const auto& timer :
         QAbstractEventDispatcher::instance()->registeredTimers(m->gallery.get()))
        intervals.append(timer.interval);
    return intervals;
}

void TestGalleryLayout::fireTimer(int intervalMs)
{
    for (const auto& timer :
         QAbstractEventDispatcher::instance()->registeredTimers(m->gallery.get())) {
        if (timer.interval != intervalMs)
            continue;
        QTimerEvent event(timer.timerId);
        QCoreApplication::sendEvent(m->gallery.get(), &event);
        m->settle();
        return;
    }
    QFAIL("no such timer");
}

// --- Arrangements -----------------------------------------------------------------------------

void TestGalleryLayout::everyModeShowsItsArrangement_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("count");
    for (const int mode : {-1, 0, 1, 2, 3, 6, 7, 8, 9, 11, 12, 13, 14, 15, 1000}) {
        for (const int count : {0, 1, 2, 20})
            QTest::addRow("mode %d, %d people", mode, count) << mode << count;
    }
    QTest::newRow("nine tiles a page") << kNineCut << 20;
}

void TestGalleryLayout::everyModeShowsItsArrangement()
{
    QFETCH(int, mode);
    QFETCH(int, count);
    m->hub().settings.support9EqualCut = mode == kNineCut;
    m->addMany(count);
    setMode(mode == kNineCut ? int(eLayoutEqualCut) : mode);
    zr::LayoutInput input;
    input.area = m->gallery->size();
    input.count = count;
    input.mode = mode == kNineCut ? int(eLayoutEqualCut) : mode;
    input.speaker = count > 0 ? 0 : -1;
    Rects expected;
    if (const auto rule = kRules.find(mode); rule != kRules.end() && count > 0) {
        for (const zr::TilePlacement& placement : rule->second(input)) {
            if (!placement.rect.isEmpty())
                expected.insert(key(placement.rect));
        }
    }
    QCOMPARE(expected.empty(), count == 0 || !kRules.count(mode));
    QCOMPARE(shownRects(), expected);
}

void TestGalleryLayout::sharesAndSpeakersFillTheDialog()
{
    const QRect whole(0, 0, 1280, 720);
    m->hub().settings.layoutFollow = true; // a share is then shown on the host's word only
    const auto persons = m->addMany(8);
    setMode(eLayoutShare);
    QCOMPARE(shown().size(), 6); // without a share it is the adaptive gallery, with its pages
    QCOMPARE(m->gallery->pageCount(), 2);
    QCOMPARE(persons[0]->iStreamType, zr::kGradeSmall); // but with grades of its own
    tagPersonInfo* share = m->add("sharescreen_1");
    m->settle();
    QCOMPARE(shown(), QStringList{"sharescreen_1"});
    QCOMPARE(share->pWidget->geometry(), whole);
    m->gallery->DelPerson(share);
    m->settle();
    QCOMPARE(shown().size(), 6);
    m->hub().settings.layoutFollow = false;
    for (const int mode : {eLayoutSpeakerTool, eLayoutSpeakerTool2}) {
        setMode(mode);
        m->gallery->setFocusPerson(persons[3], 0);
        m->settle();
        QCOMPARE(shown(), QStringList{"u3"});
        QCOMPARE(persons[3]->pWidget->geometry(), whole);
        QCOMPARE(persons[3]->iStreamType, zr::kGradeLarge);
    }
}

void TestGalleryLayout::unchangedArrangementsTouchNothing_data()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {1, 2, 3, 4, 6, 9, 13, 14})
        QTest::addRow("mode %d", mode) << mode;
}

void TestGalleryLayout::unchangedArrangementsTouchNothing()
{
    QFETCH(int, mode);
    const auto persons = m->addMany(21); // one more makes no new page
    setMode(mode);
    QTest::qWait(250); // the tiles' own start
    zrtest::EventCounter counter;
    counter.watch(m->gallery.get());
    for (QWidget* child : m->gallery->findChildren<QWidget*>())
        counter.watch(child);
    m->gallery->reLayout();
    m->gallery->onDisplayOrder(false);
    m->gallery->updatePersonInfo(persons[19], false, 0, "New name", 0);
    m->add("behind the page", 1000);
    QTest::qWait(100);
    QCOMPARE(counter.changes, 0);
    QCOMPARE(counter.paints, 0);
}

void TestGalleryLayout::narrowDialogsAreLeftAlone()
{
    m->addMany(3);
    const Rects before = shownRects();
    QTRY_VERIFY_WITH_TIMEOUT(timers().count(1000) == 1, 2000); // the mute timer has fired
    m->gallery->setMinimumSize(1, 1);
    m->gallery->setFixedSize(49, 400);
    setMode(eLayoutGrid16);
    QCOMPARE(shownRects(), before);
    QCOMPARE(timers().count(1000), 1);
    m->gallery->setFixedSize(50, 400);
    QCOMPARE(timers().count(1000), 2);
}

// --- Order ------------------------------------------------------------------------------------

void TestGalleryLayout::ordersParticipants_data()
{
    QTest::addColumn<Places>("places");
    QTest::addColumn<QString>("order");
    QTest::newRow("by role, sound and picture") << Places() << "share host me loud quiet seen none";
    QTest::newRow("host's places first, lowest place of an id")
        << Places{{-4, "none"}, {3, "nobody"}, {5, "seen"}, {9, "none"}}
        << "share none seen host me loud quiet";
}

void TestGalleryLayout::ordersParticipants()
{
    QFETCH(Places, places);
    QFETCH(QString, order);
    m->hub().settings.layoutFollow = true;
    m->hub().settings.support9EqualCut = true;
    std::map<QString, tagPersonInfo*> persons;
    int time = 0;
    for (const char* id : {"none", "seen", "quiet", "loud", "me", "host"})
        persons[id] = m->add(id, ++time);
    persons["share"] = m->add("sharescreen_1", ++time);
    m->gallery->updatePersonInfo(persons["host"], false, 1, {}, 0);
    m->gallery->updatePersonInfo(persons["me"], true, 0, {}, 0);
    for (const char* id : {"loud", "quiet"})
        m->gallery->setMute(persons[id], false);
    for (const char* id : {"loud", "seen"})
        m->gallery->setPreview(persons[id], true);
    std::map<int, std::string> sorting;
    for (auto it = places.begin(); it != places.end(); ++it)
        sorting.emplace(it.key(), it.value().toStdString());
    m->gallery->SetCustomizeSorting(sorting);
    m->settle();
    QCOMPARE(shown().join(' ').replace("sharescreen_1", "share"), order);
    QCOMPARE(m->gallery->IsPersonInCustomizeSort(persons["seen"]), !places.isEmpty());
    QVERIFY(!m->gallery->IsPersonInCustomizeSort(persons["loud"]));
    QVERIFY(!m->gallery->IsPersonInCustomizeSort(nullptr));
    QVERIFY(!m->gallery->SortCurrentPersons(true));
}

void TestGalleryLayout::looksForANewOrder()
{
    QVERIFY(timers().isEmpty());
    const auto persons = m->addMany(3);
    QTRY_COMPARE_WITH_TIMEOUT(timers().count(1000), 1, 2000); // beside the mute timer
    QSignalSpy spy(&m->hub(), &QZRScreenConfig::notifyDisplayOrder);
    fireTimer(1000);
    QCOMPARE(spy.count(), 0);
    m->gallery->setMute(persons[2], false);
    setMode(eLayoutSpeakerTool);
    QTRY_COMPARE_WITH_TIMEOUT(timers().count(1000), 1, 2000);
    m->gallery->setMute(persons[2], true);
    spy.clear();
    fireTimer(1000);
    QCOMPARE(spy.count(), 0); // not where only one participant is seen
    setMode(eLayoutEqualCut);
    QTRY_COMPARE_WITH_TIMEOUT(timers().count(1000), 1, 2000);
    m->gallery->setMute(persons[2], false);
    spy.clear();
    fireTimer(1000);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(shown().join(' '), QString("u2 u0 u1"));
    for (tagPersonInfo* person : persons)
        m->gallery->DelPerson(person);
    QVERIFY(timers().isEmpty());
    QCOMPARE(m->gallery->page(), 0);
}

void TestGalleryLayout::closedPreviewsDoNotReorder()
{
    // A host that does as it is told opens the streams of visible tiles and closes the others'.
    const auto persons = m->addMany(8);
    m->host.onMessage = [this](const zrtest::HostDouble::Message& message) {
        if (message.id == ZRMSG_VIDEO_SHOWN || message.id == ZRMSG_VIDEO_HIDDEN)
            m->gallery->setPreview(reinterpret_cast<void*>(message.wParam),
                                   message.id == ZRMSG_VIDEO_SHOWN);
    };
    for (tagPersonInfo* person : persons)
        m->gallery->setPreview(person, true);
    QTest::qWait(1500); // the first page's streams are open, the second's closed
    QSignalSpy spy(&m->hub(), &QZRScreenConfig::notifyDisplayOrder);
    QVERIFY(m->gallery->pageNext(false));
    QCOMPARE(shown().join(' '), QString("u6 u7"));
    QTest::qWait(2500);
    QCOMPARE(shown().join(' '), QString("u6 u7"));
    QCOMPARE(spy.count(), 0);
    QVERIFY(!persons[0]->bPreview && persons[0]->bPicture && persons[6]->bPreview);
    m->host.onMessage = nullptr;
}

void TestGalleryLayout::filtersWhoHasNoPicture()
{
    const auto persons = m->addMany(4);
    m->gallery->updatePersonInfo(persons[0], true, 0, {}, 0);
    m->gallery->setPreview(persons[2], true);
    m->hub().settings.noVideoFilter = true;
    m->gallery->onDisplayOrder(false);
    m->settle();
    QCOMPARE(shown().join(' '), QString("u0 u2"));
    // Whom the host makes the speaker is shown, with a picture or without.
    m->gallery->setFocusPerson(persons[3], eLayoutSpeakerRight);
    m->settle();
    QVERIFY(persons[3]->pWidget->isShowing());
    // Where nobody is left, a placeholder takes the whole dialog for as long.
    QVERIFY(!m->gallery->findChild<QDlgNoVideo*>());
    for (tagPersonInfo* person : {persons[0], persons[2], persons[3]})
        m->gallery->DelPerson(person);
    m->settle();
    QCOMPARE(shown(), QStringList());
    const auto* placeholder = m->gallery->findChild<QDlgNoVideo*>();
    QVERIFY(placeholder && placeholder->isVisible());
    QCOMPARE(placeholder->geometry(), m->gallery->rect());
    m->gallery->setPreview(persons[1], true);
    m->settle();
    QCOMPARE(shown().join(' '), QString("u1"));
    QVERIFY(!m->gallery->findChild<QDlgNoVideo*>());
}

// --- Pages ------------------------------------------------------------------------------------

void TestGalleryLayout::turnsPages()
{
    qint64 nowMs = 5000;
    m->gallery->setPageClock([&nowMs] { return nowMs; });
    const auto persons = m->addMany(14); // three pages
    const QStringList first = shown();
    QVERIFY(m->gallery->pagePre()); // there is nothing before the first page
    QCOMPARE(shown(), first);
    nowMs += 399;
    QVERIFY(!m->gallery->pageNext(false));
    QCOMPARE(m->gallery->page(), 0);
    nowMs += 1;
    QVERIFY(m->gallery->pageNext(false));
    QCOMPARE(shown().join(' '), QString("u6 u7 u8 u9 u10 u11"));
    nowMs += 300;
    QVERIFY(!m->gallery->pagePre());
    nowMs += 100; // a refused turn does not put off the next one
    QVERIFY(m->gallery->pageNext(false));
    QCOMPARE(shown().join(' '), QString("u12 u13"));
    nowMs += 400;
    QVERIFY(m->gallery->pageNext(false));
    QCOMPARE(m->gallery->page(), 2);
    nowMs += 400;
    QVERIFY(m->gallery->pageNext(true));
    QCOMPARE(shown(), first);
    // The strip's pages leave the speaker out; a mode without pages keeps the page for later.
    setMode(eLayoutSpeakerRight);
    QCOMPARE(m->gallery->pageCount(), 3);
    nowMs += 400;
    QVERIFY(m->gallery->pageNext(false));
    const Rects second = shownRects();
    QCOMPARE(second.size(), 7U);
    setMode(eLayoutSingle);
    QCOMPARE(m->gallery->pageCount(), 0);
    setMode(eLayoutSpeakerRight);
    QCOMPARE(m->gallery->page(), 1);
    QCOMPARE(shownRects(), second);
}

void TestGalleryLayout::turnsPagesByHand()
{
    qint64 nowMs = 0;
    m->gallery->setPageClock([&nowMs] { return nowMs += 1000; });
    m->addMany(14);
    QDlgScreen* gallery = m->gallery.get();
    const auto wheel = [gallery](int angle) {
        QWheelEvent event(QPointF(5, 5), gallery->mapToGlobal(QPoint(5, 5)), QPoint(),
                          QPoint(0, angle), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(gallery, &event);
        return gallery->page();
    };
    QCOMPARE(wheel(-60), 0); // a touchpad's half step
    QCOMPARE(wheel(-60), 1);
    QCOMPARE(wheel(120), 0);
    const QList<std::pair<int, int>> keys{{Qt::Key_PageDown, 1}, {Qt::Key_Right, 2},
                                          {Qt::Key_Right, 2},    {Qt::Key_A, 2},
                                          {Qt::Key_PageUp, 1},   {Qt::Key_Left, 0}};
    for (const auto& [pressed, page] : keys) {
        QTest::keyClick(gallery, static_cast<Qt::Key>(pressed));
        QCOMPARE(gallery->page(), page);
    }
    const auto arrows = gallery->findChildren<QMyPageCtrl*>();
    QCOMPARE(arrows.size(), 2);
    QTest::mouseClick(arrows[0]->x() < arrows[1]->x() ? arrows[1] : arrows[0], Qt::LeftButton);
    QCOMPARE(gallery->page(), 1);
    QTest::mouseClick(arrows[0]->x() < arrows[1]->x() ? arrows[0] : arrows[1], Qt::LeftButton);
    QCOMPARE(gallery->page(), 0);
    emit m->hub().clickPageCtl(nullptr); // another gallery's
    QCOMPARE(gallery->page(), 0);
}

void TestGalleryLayout::showsPageControls()
{
    QDlgScreen* gallery = m->gallery.get();
    qint64 nowMs = 0;
    gallery->setPageClock([&nowMs] { return nowMs += 1000; });
    auto controls = gallery->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(controls.size(), 4);
    const auto visible = [&controls] {
        return std::count_if(controls.begin(), controls.end(),
                             [](const QWidget* control) { return control->isVisible(); });
    };
    m->addMany(6);
    QCOMPARE(visible(), 0);
    m->add("u6", 200);
    m->settle();
    QCOMPARE(visible(), 3);
    for (const int mode : {3, 4, 12, 14, 99}) {
        setMode(mode);
        QCOMPARE(visible(), 0);
    }
    setMode(eLayoutGrid4);
    QCOMPARE(visible(), 3);
    // Above the tiles, that of the latest participant as well.
    QVERIFY(gallery->pageNext(false));
    QVERIFY(gallery->isPersonVisible("u6"));
    bool controlSeen = false;
    for (QObject* child : gallery->children()) {
        const auto* tile = qobject_cast<CPlayWidget*>(child);
        QVERIFY(!(tile && tile->isShowing() && controlSeen));
        controlSeen = controlSeen || controls.contains(qobject_cast<QWidget*>(child));
    }
    gallery->resize(800, 500);
    m->settle();
    const auto arrows = gallery->findChildren<QMyPageCtrl*>();
    const auto [left, right] = std::minmax({arrows[0]->x(), arrows[1]->x()});
    QCOMPARE(left, 24);
    QCOMPARE(right + arrows[1]->width(), 800 - 24);
    QCOMPARE(arrows[0]->y(), (500 - arrows[0]->height()) / 2);
    // Where the marks have no room, a bar takes their place.
    const auto* bar = gallery->findChild<QMyPageScroll*>();
    QVERIFY(!bar->isVisible());
    m->addMany(200);
    QVERIFY(bar->isVisible() && !gallery->findChild<QDlgPageMark*>()->isVisible());
    const int top = bar->y();
    QVERIFY(gallery->pageNext(false));
    QVERIFY(bar->y() > top);
    gallery->ProcessExitMeeting();
    QCOMPARE(visible(), 0);
}

void TestGalleryLayout::survivesMassLeave()
{
    qint64 nowMs = 0;
    m->gallery->setPageClock([&nowMs] { return nowMs += 1000; });
    for (const int mode : {eLayoutEqualCut, eLayout6Cut, eLayoutSpeakerTop, eLayoutSpeaker4,
                           eLayoutGrid4, eLayoutGrid16}) {
        const auto persons = m->addMany(40);
        setMode(mode);
        for (int i = 0; i < 10; ++i)
            QVERIFY(m->gallery->pageNext(false));
        QVERIFY(m->gallery->page() > 1);
        for (std::size_t i = 0; i < 37; ++i)
            m->gallery->DelPerson(persons[i]);
        m->settle();
        QCOMPARE(m->gallery->page(), 0);
        QCOMPARE(shown().size(), 3);
        for (std::size_t i = 37; i < 40; ++i)
            m->gallery->DelPerson(persons[i]);
        m->settle();
        QCOMPARE(m->hub().curScreenMode(), int(eLayoutEqualCut));
    }
}

// --- Polling ----------------------------------------------------------------------------------

void TestGalleryLayout::polls_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("pages"); // as they follow each other
    QTest::newRow("gallery") << int(eLayoutEqualCut)
                             << QStringList{"u0 u1 u2 u3 u4 u5", "u6 u7", "u0 u1 u2 u3 u4 u5"};
    QTest::newRow("grid") << int(eLayoutGrid4)
                          << QStringList{"u0 u1 u2 u3", "u4 u5 u6 u7", "u0 u1 u2 u3"};
    QTest::newRow("speaker stays")
        << int(eLayoutSpeakerTop) << QStringList{"u1 u2 u3 u4 u5 u6 u0", "u7 u0"};
    QTest::newRow("lone tile keeps its place")
        << int(eLayout6Cut) << QStringList{"u0 u1 u3 u4 u5 u2", "u6 u7"};
}

void TestGalleryLayout::polls()
{
    QFETCH(int, mode);
    QFETCH(QStringList, pages);
    const auto persons = m->addMany(8);
    if (mode == eLayoutSpeakerTop)
        m->gallery->setFocusPerson(persons[0], 0);
    setMode(mode);
    m->hub().settings.pollingOpen = true;
    m->hub().settings.pollingPeriodS = 7;
    emit m->hub().sigOpenLayoutPoll();
    m->settle();
    const auto sorted = [](QString ids) {
        QStringList list = ids.split(' ');
        list.sort();
        return list;
    };
    for (int i = 0; i < pages.size(); ++i) {
        QStringList ids = shown();
        ids.sort();
        QCOMPARE(ids, sorted(pages[i]));
        QCOMPARE(m->gallery->page(), 0);
        fireTimer(7000);
    }
    // Ended, the pages are the user's again.
    m->hub().settings.pollingOpen = false;
    emit m->hub().sigOpenLayoutPoll();
    m->settle();
    QVERIFY(!hasTimer(7000));
    QCOMPARE(m->gallery->pageCount(), 2);
}

void TestGalleryLayout::pollingNeedsPages()
{
    const auto persons = m->addMany(6);
    m->hub().settings.pollingOpen = true;
    m->hub().settings.pollingPeriodS = std::numeric_limits<int>::max();
    emit m->hub().sigOpenLayoutPoll();
    m->settle();
    const int longest = 2147483000;
    QVERIFY(!hasTimer(longest)); // one page
    tagPersonInfo* seventh = m->add("u6", 200);
    m->settle();
    QVERIFY(hasTimer(longest));
    setMode(eLayoutSingle);
    QVERIFY(!hasTimer(longest));
    setMode(eLayoutEqualCut);
    QVERIFY(hasTimer(longest));
    m->gallery->DelPerson(seventh);
    m->settle();
    QVERIFY(!hasTimer(longest));
    QCOMPARE(shown().size(), 6);
    m->hub().settings.pollingPeriodS = -3;
    m->add("u6", 200);
    m->settle();
    fireTimer(1000); // whichever of those it is, nothing breaks
    m->gallery->ProcessExitMeeting();
    QVERIFY(timers().isEmpty());
}

// --- Speakers ---------------------------------------------------------------------------------

void TestGalleryLayout::shareHeadTakesTheFocus()
{
    m->hub().settings.layoutFollow = true;
    const auto persons = m->addMany(3);
    tagPersonInfo* share = m->add("sharescreen_1");
    m->gallery->setFocusPerson(persons[1], 0);
    m->gallery->onDisplayOrder(true);
    m->settle();
    QCOMPARE(m->hub().gallery.focusPerson, persons[1]);
    m->gallery->onDisplayOrder(false);
    m->settle();
    QCOMPARE(m->hub().gallery.focusPerson, nullptr);
    m->hub().settings.layoutFollow = false;
    m->gallery->onDisplayOrder(false);
    m->settle();
    QCOMPARE(m->hub().gallery.focusPerson, share);
    QCOMPARE(m->hub().curScreenMode(), int(eLayoutEqualCut));
}

void TestGalleryLayout::speakerToolShowsTheNextSpeaker()
{
    auto owned = std::make_unique<ToolDouble>();
    const ToolDouble* tool = owned.get();
    m->gallery->setSpeakTool(std::move(owned));
    const auto persons = m->addMany(4);
    m->gallery->setFocusPerson(persons[2], eLayoutSpeakerTool);
    m->settle();
    QVERIFY(tool->visible && tool->bound && tool->bound != persons[2]);
    tagPersonInfo* next = tool->bound;
    QCOMPARE(next->iStreamType, zr::kGradeSmall);
    QCOMPARE(tool->position, m->gallery->mapToGlobal(QPoint(1280 - 272 - 24, 24)));
    QCOMPARE(m->host.count(ZRMSG_VIDEO_SHOWN, next), 1);
    QVERIFY(m->gallery->isPersonVisible(next->userID));
    m->gallery->reLayout();
    QCOMPARE(tool->moves, 1); // it stays where the user has dragged it
    emit m->hub().modSignalHideSpeakTool(false);
    m->settle();
    QVERIFY(!tool->visible && !m->gallery->isPersonVisible(next->userID));
    emit m->hub().modSignalShowSpeakTool(false);
    m->settle();
    QVERIFY(tool->visible && tool->moves == 2);
    m->gallery->DelPerson(next);
    m->settle();
    QCOMPARE(m->hub().curScreenMode(), int(eLayoutEqualCut));
    QVERIFY(!tool->visible && !tool->bound);
    m->add("sharescreen_1"); // beside which the tool stays
    m->settle();
    next = tool->bound;
    QVERIFY(tool->visible && next);
    m->gallery->DelPerson(next);
    m->settle();
    QCOMPARE(m->hub().curScreenMode(), int(eLayoutSpeakerTool));
    QVERIFY(tool->visible && tool->bound && tool->bound != next);
}

// --- Bad moments ------------------------------------------------------------------------------

void TestGalleryLayout::deletionsFromInsideMessages_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("everybody");
    for (int mode = 1; mode <= 14; ++mode) {
        QTest::addRow("one by one, mode %d", mode) << mode << false;
        QTest::addRow("everybody at once, mode %d", mode) << mode << true;
    }
}

void TestGalleryLayout::deletionsFromInsideMessages()
{
    // Any message may be answered with the deletion of those that the gallery points at.
    QFETCH(int, mode);
    QFETCH(bool, everybody);
    m->gallery->setSpeakTool(std::make_unique<ToolDouble>());
    std::vector<tagPersonInfo*> persons = m->addMany(20);
    persons.push_back(m->add("sharescreen_1"));
    m->gallery->onModFocusByUserID("u4", false);
    m->gallery->OnSetVoiceActivateUser("u5");
    m->gallery->onClickMore(persons[6], 1);
    m->gallery->onPlayWidgetLBtnClick(persons[7]->pWidget);
    std::vector<tagPersonInfo*> victims{persons[4], persons[5], persons[6], persons[7],
                                        persons.back()};
    m->host.onMessage = [&](const zrtest::HostDouble::Message&) {
        if (everybody)
            m->gallery->ProcessExitMeeting();
        if (victims.empty())
            return;
        tagPersonInfo* victim = victims.back();
        victims.pop_back();
        m->gallery->onModDelPerson(victim);
    };
    setMode(mode);
    m->gallery->reLayout();
    QVERIFY(m->gallery->pageNext(true));
    for (tagPersonInfo* person : persons)
        m->play(person);
    m->settle();
    m->host.onMessage = nullptr;
    QTest::qWait(20);
    for (const CPlayWidget* tile : tiles())
        QVERIFY(m->gallery->livePerson(tile->GetPersonInfo()));
    QCOMPARE(timers().isEmpty(), m->gallery->findChildren<CPlayWidget*>().isEmpty());
    tagPersonInfo* later = m->add("later");
    setMode(eLayoutSingle);
    QCOMPARE(shown().size(), 1);
    QVERIFY(!everybody || later->pWidget->isShowing());
}

ZR_WIDGET_TEST_MAIN(TestGalleryLayout)
#include "tst_gallery_layout.moc"
