// The gallery: its arrangements, the order of the participants, and their pages. The rules have
// tests of their own; here is what the gallery makes of their answers.
#include "gallerytest.h"
#include "golden.h"

#include "qdlgpagemark.h"
#include "qmypagescroll.h"
#include "qmyscrollbar.h"

using zrtest::hub;
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
    {"a mode that there is not shows nobody",
     "people 8; mode 99; shown: ; mode -1; shown: ; mode 0; shown: ; mode 3; pages: 0;"
     "shown: u0 u1 u2 u3 u4 u5 u6 u7; set nine 1; mode 1; shown: u0 u1 u2 u3 u4 u5 u6 u7"},
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

    {"the host gives places, once for each, and the next ones replace them",
     "people 4; places u1; places u3 nobody u2 u3; shown: u3 u2 u0 u1"},
    {"who has no picture is filtered; a placeholder stands where nobody is left",
     "people 4; self u0; stream u2; set filter 1; layout; shown: u0 u2; add sharescreen_1; mode 1;"
     "shown: sharescreen_1 u0 u2; remove sharescreen_1; focus u3; mode 6; seen: u0 u2 u3;"
     "placeholder: no; remove u0 u2 u3; shown: ; placeholder: yes; stream u1; shown: u1;"
     "placeholder: no"},

    // --- The speaker tool ---
    {"beside a share it stays when somebody else has left, otherwise not",
     "people 4; focus u2; mode 4; tool: u0; remove u0; mode: 1; tool: ; add sharescreen_1;"
     "tool: u2; remove u2; mode: 4; tool: u1; mode 11; tool: "},

    {"it stays where it was dragged, unless it was away",
     "people 4; mode 4; tool: u1; placed: 1; layout; placed: 0; put-away; tool: ; small: ;"
     "fetch; tool: u1; small: u1; placed: 1; mode 1; mode 4; placed: 1; mode 1; tool: "},

    // --- Pages ---
    {"two arrows and the marks show where there are pages",
     "people 6; controls: 0; people 7; controls: 3; mode 3; controls: 0; mode 4; controls: 0;"
     "mode 99; controls: 0; mode 11; controls: 3; exit; controls: 0"},
    {"pages are turned 400 ms apart",
     "people 14; back; shown: u0 u1 u2 u3 u4 u5; after 399; next; page: 0; after 1; next;"
     "shown: u6 u7 u8 u9 u10 u11; after 300; back; page: 1; after 400; next; shown: u12 u13;"
     "next; page: 2; next wrap; page: 0"},
    {"by wheel, keys and arrows, from the last one on to the first by an arrow alone",
     "people 14; wheel -60; page: 0; wheel -60; page: 1; wheel 120; page: 0; key PgDown; page: 1;"
     "key Right; page: 2; key Right; page: 2; key A; page: 2; key PgUp; page: 1; key Left; page: 0;"
     "arrow right; arrow right; page: 2; arrow right; page: 0; arrow right; page: 1; arrow left;"
     "page: 0"},
    {"a strip's pages leave the speaker out",
     "people 14; mode 6; pages: 3; next; seen: u0 u10 u11 u12 u7 u8 u9"},
    {"a mode without pages keeps the page for later, whatever turns there",
     "people 14; next; next; double u12; pages: 0; next; next wrap; back; double u12; page: 2;"
     "shown: u12 u13; mode 14; back; mode 11; page: 2"},
    {"many leave a gallery",
     "people 14; next; next; page: 2; remove u0 u1 u2 u3 u4 u5 u6 u7 u8 u9 u10; page: 0;"
     "seen: u11 u12 u13; remove u11 u12 u13; mode: 1"},
    {"many leave a strip",
     "people 14; mode 8; next; next; page: 2; remove u0 u1 u2 u3 u4 u5 u6 u7 u8 u9 u10; page: 0;"
     "seen: u11 u12 u13; remove u11 u12 u13; mode: 1"},
    {"many leave a pair",
     "people 14; mode 9; next; page: 1; remove u0 u1 u2 u3 u4 u5 u6 u7 u8 u9 u10; page: 0;"
     "seen: u11 u12 u13; remove u11 u12 u13; mode: 1"},

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

} // namespace

class TestGalleryLayout : public QObject
{
    Q_OBJECT

private slots:
    void stories() { QCOMPARE(zrtest::faultsOf(kStories), QString()); }

    void unchangedArrangementsTouchNothing()
    {
        Meeting m(true);
        m.addMany(21); // one more makes no new page
        for (const int mode : {1, 2, 4, 9}) {
            ZR_TELL(m, QString("mode %1").arg(mode));
            QTest::qWait(200); // the tiles' own start
            QObjectList widgets{m.gallery.get()};
            for (QWidget* child : m->findChildren<QWidget*>())
                widgets += child;
            const zrtest::EventWatch watch(
                widgets, {QEvent::Move, QEvent::Resize, QEvent::Show, QEvent::Hide, QEvent::Paint});
            ZR_TELL(m, QString("layout; order; add late 1000; rename u19 Name%1").arg(mode));
            QTest::qWait(50);
            QCOMPARE(watch.count, 0);
            ZR_TELL(m, "remove late");
        }
    }

    void pageControlsLieAboveTheTiles()
    {
        Meeting m;
        const auto controls = m->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        ZR_TELL(m, "people 7; mode 11; next; seen: u4 u5 u6");
        emit hub().clickPageCtl(nullptr); // another gallery's
        ZR_TELL(m, "page: 1");
        // That of the latest participant as well.
        bool controlSeen = false;
        for (QObject* child : m->children()) {
            const auto* tile = qobject_cast<CPlayWidget*>(child);
            QVERIFY(!(tile && tile->isShowing() && controlSeen));
            controlSeen = controlSeen || controls.contains(qobject_cast<QWidget*>(child));
        }
        m->resize(800, 500);
        const auto arrows = m->findChildren<QMyPageCtrl*>();
        const auto [left, right] = std::minmax({arrows[0]->x(), arrows[1]->x()});
        QVERIFY(left == 24 && right + arrows[1]->width() == 800 - 24);
        QCOMPARE(arrows[0]->y(), (500 - arrows[0]->height()) / 2);
        // Where the marks have no room, a bar takes their place.
        const auto* bar = m->findChild<QMyPageScroll*>();
        QVERIFY(!bar->isVisible());
        m.addMany(90);
        QVERIFY(bar->isVisible() && !m->findChild<QDlgPageMark*>()->isVisible());
        const int top = bar->y();
        QVERIFY(m->pageNext(false) && bar->y() > top);
    }

    void pageWidgetsLookAsTheirGolden()
    {
        QWidget gallery;
        gallery.setPalette(QPalette(QColor(200, 0, 200))); // stands for the tiles
        gallery.resize(600, 400);
        gallery.show();
        QVERIFY(QTest::qWaitForWindowExposed(&gallery));
        // No page, a single one, the last one, and one that is gone.
        const std::pair<int, int> pages[] = {{0, 0}, {0, 1}, {2, 3}, {3, 3}};
        for (int i = 0; i < 4; ++i) {
            auto* const mark = new QDlgPageMark(&gallery);
            mark->move(40 * i, 0);
            mark->setPages(pages[i].first, pages[i].second);
            mark->show();
        }
        const QSize camera = QImage(":/pic/nocamera.png").size();
        QDlgNoVideo noVideo(&gallery);
        QDlgNoVideo cut(&gallery);
        noVideo.setGeometry(QRect({160, 0}, camera + QSize(41, 30)));
        cut.setGeometry(450, 0, camera.width() / 2, 200);
        QVERIFY(!gallery.childAt(5, 5) && !gallery.childAt(165, 5)); // clicks go to what is below
        QMyPageCtrl next(&gallery);
        next.setImage(QImage(":/pic/pageNext.png"));
        next.setGeometry(QRect({160, 250}, next.sizeHint()));
        next.show();
        QMyPageScroll bar(&gallery);
        bar.setBarHeight(120);
        bar.move(580, 0);
        bar.show();
        QMyScrollbar scrollbar(&gallery);
        scrollbar.setGeometry(560, 0, scrollbar.sizeHint().width(), 200);
        scrollbar.setRange(0, 10000); // the handle keeps a size that can be caught
        scrollbar.show();
        ZR_COMPARE_GOLDEN(gallery.grab(), "page_widgets");
    }
};

ZR_WIDGET_TEST_MAIN(TestGalleryLayout)
#include "tst_gallery_layout.moc"
