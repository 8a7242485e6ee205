// The gallery: its arrangements, the order of the participants, and their pages. The rules have
// tests of their own; here is what the gallery makes of their answers.
#include "gallerytest.h"

#include "layoutgeometry.h"
#include "qdlgnovideo.h"
#include "qdlgpagemark.h"
#include "qmypagectrl.h"
#include "qmypagescroll.h"

using zrtest::Meeting;

namespace {

const std::pair<const char*, const char*> kStories[] = {
    // --- Arrangements ---
    {"a share fills its mode; without one it is the adaptive gallery, but for the grades",
     "set follow 1; people 8; mode 10; shown: u0 u1 u2 u3 u4 u5; pages: 2; grade u0: 2;"
     "add sharescreen_1; shown: sharescreen_1; whole sharescreen_1: yes; grade sharescreen_1: 4;"
     "remove sharescreen_1; shown: u0 u1 u2 u3 u4 u5"},
    {"the speaker has the dialog where the tool has the next one",
     "people 3; mode 4; focus u2; shown: u2; whole u2: yes; grade u2: 4; tool: u0; grade u0: 2;"
     "mode 5; shown: u2; whole u2: yes"},
    {"a dialog that is hardly visible is left alone",
     "people 3; width 49; mode 13; mute u2 off; orders: 2; shown: u0 u1 u2; grade u0: 3;"
     "elapse 1000; orders: 0; width 50; grade u0: 2; seen: u0 u1 u2"},

    // --- Order ---
    {"by role, sound and picture",
     "set follow 1; set nine 1; add none; add seen; add quiet; add loud; add me; add host;"
     "add sharescreen_1; host host; self me; mute quiet off; mute loud off; stream loud;"
     "stream seen; layout; shown: sharescreen_1 host me loud quiet seen none"},
    {"the check timer looks for a new order, where more than one is seen",
     "timers 1000: 0; people 3; orders: 1; elapse 1000; orders: 0; mode 4; mute u2 off; orders: 1;"
     "elapse 1000; orders: 0; mode 1; mute u2; orders: 1; elapse 1000; orders: 1;"
     "shown: u0 u1 u2; remove u0 u1 u2; timers 1000: 0"},
    {"a share at the head ends the focus with layout follow, else takes a free one",
     "set follow 1; people 3; add sharescreen_1; mode 12; focus u1; order keep; focus: u1; order;"
     "focus: ; set follow 0; order; focus: sharescreen_1; mode: 12; focus u1; order; focus: u1"},

    // --- Pages ---
    {"pages are turned 400 ms apart",
     "people 14; back; shown: u0 u1 u2 u3 u4 u5; after 399; next; page: 0; after 1; next;"
     "shown: u6 u7 u8 u9 u10 u11; after 300; back; page: 1; after 400; next; shown: u12 u13;"
     "next; page: 2; next wrap; page: 0"},
    {"a strip's pages leave the speaker out",
     "people 14; mode 6; pages: 3; next; seen: u0 u10 u11 u12 u7 u8 u9"},
    {"a mode without pages keeps the page for later, whatever turns there",
     "people 14; next; next; double u12; pages: 0; next; next wrap; back; double u12; page: 2;"
     "shown: u12 u13; mode 14; back; mode 11; page: 2"},
    {"many leave a gallery", "people 20; next; next; next; page: 3; remove-first 17; page: 0;"
                             "seen: u17 u18 u19; remove u17 u18 u19; mode: 1"},
    {"many leave a strip", "people 20; mode 8; next; next; next; page: 3; remove-first 17;"
                           "page: 0; seen: u17 u18 u19; remove u17 u18 u19; mode: 1"},
    {"many leave a pair", "people 20; mode 9; next; next; page: 2; remove-first 17; page: 0;"
                          "seen: u17 u18 u19; remove u17 u18 u19; mode: 1"},

    // --- Polling ---
    {"pages turn by themselves",
     "people 8; next; poll 7; seen: u0 u1 u2 u3 u4 u5; page: 0; elapse 7000; seen: u6 u7;"
     "elapse 7000; seen: u0 u1 u2 u3 u4 u5; elapse 7000; mode 11; seen: u0 u1 u2 u3; elapse 7000;"
     "seen: u4 u5 u6 u7; poll 7; seen: u0 u1 u2 u3; poll 7 off; timers 7000: 0; pages: 2"},
    {"a lone tile keeps its place",
     "people 7; mode 2; poll 7; elapse 7000; seen: u6; whole u6: no"},
    {"the speaker stays", "people 8; mode 8; poll 7; seen: u0 u1 u2 u3 u4 u5 u6; elapse 7000;"
                          "seen: u0 u7; speaker: u0; elapse 7000; seen: u0 u1 u2 u3 u4 u5 u6"},
    {"both speakers stay", "people 9; mode 9; poll 7; elapse 7000; seen: u0 u1 u8; speaker: u0"},
    {"only several pages turn",
     "people 6; poll 7; timers 7000: 0; people 7; timers 7000: 1; mode 6;"
     "timers 7000: 0; mode 1; timers 7000: 1; remove u6; timers 7000: 0;"
     "seen: u0 u1 u2 u3 u4 u5"},
    {"a period that no timer can count, and one that is none",
     "people 7; poll 2147483647; timers 2147483000: 1; poll -3; timers 1000: 3"},
};

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

/// Where u0, u1 and so on belong.
QMap<QString, QRect> expectedPlaces(int mode, int count)
{
    zr::LayoutInput input{{1280, 720}, count, 0, mode == kNineCut ? int(eLayoutEqualCut) : mode};
    input.speaker = 0;
    QMap<QString, QRect> places;
    const auto rule = kRules.find(mode);
    if (rule == kRules.end() || count == 0)
        return places;
    for (const zr::TilePlacement& tile : rule->second(input)) {
        if (!tile.rect.isEmpty())
            places[QStringLiteral("u%1").arg(tile.index)] = tile.rect;
    }
    return places;
}

/// Counts what happens to the gallery's widgets.
class EventCounter : public QObject
{
public:
    explicit EventCounter(QWidget* gallery)
    {
        gallery->installEventFilter(this);
        for (QWidget* child : gallery->findChildren<QWidget*>())
            child->installEventFilter(this);
    }
    int events = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        const auto type = event->type();
        events += type == QEvent::Move || type == QEvent::Resize || type == QEvent::Show
                  || type == QEvent::Hide || type == QEvent::Paint;
        return false;
    }
};

} // namespace

class TestGalleryLayout : public QObject
{
    Q_OBJECT

private slots:
    ZR_STORIES(kStories)
    void everyModeShowsItsArrangement();
    void unchangedArrangementsTouchNothing();
    void hostGivesPlaces();
    void filtersWhoHasNoPicture();
    void turnsPagesByHand();
    void showsPageControls();
    void speakerToolShowsTheNextSpeaker();
};

// --- Arrangements -----------------------------------------------------------------------------

void TestGalleryLayout::everyModeShowsItsArrangement()
{
    Meeting m;
    for (const int count : {0, 1, 2, 20}) {
        m.addMany(count);
        for (const int mode : {-1, 0, 1, 2, 3, 6, 7, 8, 9, kNineCut, 11, 12, 13, 14, 15, 1000}) {
            m.settings().support9EqualCut = mode == kNineCut;
            const zrtest::LogLines log;
            m.setMode(mode == kNineCut ? int(eLayoutEqualCut) : mode);
            // A strip's tiles are counted without the speakers.
            if (count == 20 && mode >= 6 && mode <= 9)
                QVERIFY(log.count("person i: 0 ") == 1 && log.count("person i: 6 ") == 0);
            QVERIFY2(m.places() == expectedPlaces(mode, count),
                     qPrintable(QString("mode %1, %2 people").arg(mode).arg(count)));
        }
    }
}

void TestGalleryLayout::unchangedArrangementsTouchNothing()
{
    Meeting m(true);
    m.addMany(21); // one more makes no new page
    for (const int mode : {1, 2, 4, 9}) {
        m.setMode(mode);
        QTest::qWait(200); // the tiles' own start
        const EventCounter counter(m.gallery.get());
        m.reLayout();
        m->onDisplayOrder(false);
        m->updatePersonInfo(m["u19"], false, 0, QString("Name %1").arg(mode), 0);
        m.add(QString("behind the page %1").arg(mode), 1000);
        QTest::qWait(50);
        QCOMPARE(counter.events, 0);
        m.remove(QString("behind the page %1").arg(mode));
    }
}

void TestGalleryLayout::hostGivesPlaces()
{
    Meeting m;
    QCOMPARE(m.tell("people 4; places u1"), QString()); // the next one replaces it
    m->SetCustomizeSorting({{-4, "u3"}, {3, "nobody"}, {5, "u2"}, {9, "u3"}});
    m.settle();
    QCOMPARE(m.shown(), QString("u3 u2 u0 u1"));
    QVERIFY(m->IsPersonInCustomizeSort(m["u2"]) && !m->IsPersonInCustomizeSort(m["u1"]));
    QVERIFY(!m->IsPersonInCustomizeSort(nullptr));
}

void TestGalleryLayout::filtersWhoHasNoPicture()
{
    Meeting m;
    // Whom the host makes the speaker is shown, with a picture or without.
    QCOMPARE(m.tell("people 4; self u0; stream u2; set filter 1; layout; shown: u0 u2;"
                    "add sharescreen_1; mode 1; shown: sharescreen_1 u0 u2; remove sharescreen_1;"
                    "focus u3; mode 6; seen: u0 u2 u3"),
             QString());
    // Where nobody is left, a placeholder takes the whole dialog for as long.
    QVERIFY(!m->findChild<QDlgNoVideo*>());
    QCOMPARE(m.tell("remove u0 u2 u3; shown: "), QString());
    const auto* placeholder = m->findChild<QDlgNoVideo*>();
    QVERIFY(placeholder && placeholder->isVisible());
    QCOMPARE(placeholder->geometry(), m->rect());
    QCOMPARE(m.tell("stream u1; shown: u1"), QString());
    QVERIFY(!m->findChild<QDlgNoVideo*>());
}

// --- Pages ------------------------------------------------------------------------------------

void TestGalleryLayout::turnsPagesByHand()
{
    Meeting m;
    m.addMany(14);
    QDlgScreen* gallery = m.gallery.get();
    const auto wheel = [gallery](int angle) {
        QWheelEvent event(QPointF(5, 5), gallery->mapToGlobal(QPoint(5, 5)), QPoint(),
                          QPoint(0, angle), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(gallery, &event);
        return gallery->page();
    };
    QCOMPARE(wheel(-60), 0); // a touchpad's half step
    QCOMPARE(wheel(-60), 1);
    QCOMPARE(wheel(120), 0);
    const std::pair<Qt::Key, int> keys[] = {{Qt::Key_PageDown, 1}, {Qt::Key_Right, 2},
                                            {Qt::Key_Right, 2},    {Qt::Key_A, 2},
                                            {Qt::Key_PageUp, 1},   {Qt::Key_Left, 0}};
    for (const auto& [pressed, page] : keys) {
        QTest::keyClick(gallery, pressed);
        QCOMPARE(gallery->page(), page);
    }
    auto arrows = gallery->findChildren<QMyPageCtrl*>();
    QCOMPARE(arrows.size(), 2);
    if (arrows[0]->x() > arrows[1]->x())
        arrows.swapItemsAt(0, 1);
    for (const int page : {1, 2, 0}) { // from the last one on to the first
        QTest::mouseClick(arrows[1], Qt::LeftButton);
        QCOMPARE(gallery->page(), page);
    }
    m->pageNext(false);
    QTest::mouseClick(arrows[0], Qt::LeftButton);
    QCOMPARE(gallery->page(), 0);
    emit m.hub().clickPageCtl(nullptr); // another gallery's
    QCOMPARE(gallery->page(), 0);
}

void TestGalleryLayout::showsPageControls()
{
    Meeting m;
    const auto controls = m->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const auto visible = [&controls] {
        return std::count_if(controls.begin(), controls.end(),
                             [](const QWidget* control) { return control->isVisible(); });
    };
    m.addMany(6);
    QCOMPARE(visible(), 0);
    m.addMany(7);
    QCOMPARE(visible(), 3); // two arrows and the marks
    for (const int mode : {3, 4, 12, 14, 99}) {
        m.setMode(mode);
        QCOMPARE(visible(), 0);
    }
    m.setMode(eLayoutGrid4);
    QCOMPARE(visible(), 3);
    // Above the tiles, that of the latest participant as well.
    QVERIFY(m->pageNext(false) && m.sees("u6"));
    bool controlSeen = false;
    for (QObject* child : m->children()) {
        const auto* tile = qobject_cast<CPlayWidget*>(child);
        QVERIFY(!(tile && tile->isShowing() && controlSeen));
        controlSeen = controlSeen || controls.contains(qobject_cast<QWidget*>(child));
    }
    m->resize(800, 500);
    const auto arrows = m->findChildren<QMyPageCtrl*>();
    const auto [left, right] = std::minmax({arrows[0]->x(), arrows[1]->x()});
    QCOMPARE(left, 24);
    QCOMPARE(right + arrows[1]->width(), 800 - 24);
    QCOMPARE(arrows[0]->y(), (500 - arrows[0]->height()) / 2);
    // Where the marks have no room, a bar takes their place.
    const auto* bar = m->findChild<QMyPageScroll*>();
    QVERIFY(!bar->isVisible());
    m.addMany(90);
    QVERIFY(bar->isVisible() && !m->findChild<QDlgPageMark*>()->isVisible());
    const int top = bar->y();
    QVERIFY(m->pageNext(false));
    QVERIFY(bar->y() > top);
    m->ProcessExitMeeting();
    QCOMPARE(visible(), 0);
}

void TestGalleryLayout::speakerToolShowsTheNextSpeaker()
{
    Meeting m;
    QCOMPARE(m.tell("people 4; focus u2; mode 4; tool: u0"), QString());
    QCOMPARE(m.tool->position, m->mapToGlobal(QPoint(1280 - 272 - 24, 24)));
    QCOMPARE(m.host.count(ZRMSG_VIDEO_SHOWN, m["u0"]), 1);
    QVERIFY(m.sees("u0"));
    const int moves = m.tool->moves;
    m.reLayout();
    QCOMPARE(m.tool->moves, moves); // it stays where the user has dragged it
    emit m.hub().modSignalHideSpeakTool(false);
    QVERIFY(!m.sees("u0") && !m.tool->visible);
    emit m.hub().modSignalShowSpeakTool(false);
    QVERIFY(m.sees("u0") && m.tool->visible && m.tool->moves == moves + 1);
    QCOMPARE(m.tell("mode 1; mode 4; tool: u0"), QString());
    QCOMPARE(m.tool->moves, moves + 2);
    // Beside a share it stays when somebody else has left, otherwise not.
    QCOMPARE(m.tell("remove u0; mode: 1; tool: ; add sharescreen_1; tool: u2; remove u2; mode: 4;"
                    "tool: u1; mode 11; tool: "),
             QString());
    QVERIFY(!m.tool->bound);
}

ZR_WIDGET_TEST_MAIN(TestGalleryLayout)
#include "tst_gallery_layout.moc"
