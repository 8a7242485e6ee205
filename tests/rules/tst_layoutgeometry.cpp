#include "layoutgeometry.h"

#include "layoutinvariants.h"
#include "zrscreenmod.h"

#include <QRandomGenerator>
#include <QtTest>

#include <limits>

namespace {

constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

enum class Gallery
{
    six,
    nine,
};

std::vector<zr::TilePlacement> place(Gallery gallery, const zr::LayoutInput& input)
{
    return gallery == Gallery::six ? zr::equalCutPlacements(input) : zr::nineCutPlacements(input);
}

LayoutRules rulesOf(Gallery gallery, int count)
{
    if (gallery == Gallery::six)
        return {6, 0};
    return {9, count >= 7 ? 2 : 0}; // three rows step four pixels but reserve two
}

using Corners = std::vector<QPoint>;

} // namespace

Q_DECLARE_METATYPE(Gallery)
Q_DECLARE_METATYPE(Corners)

class tst_LayoutGeometry : public QObject
{
    Q_OBJECT

private slots:
    void fit_data();
    void fit();
    void fitKeepsTheCorner();
    void galleryRectangles_data();
    void galleryRectangles();
    void invariantsHoldForGeneratedDialogs_data();
    void invariantsHoldForGeneratedDialogs();
    void hostileInput_data();
    void hostileInput();
    void gradesOfGrids_data();
    void gradesOfGrids();
    void pages_data();
    void pages();
    void pageAfterRemovalInStrips_data();
    void pageAfterRemovalInStrips();
};

void tst_LayoutGeometry::fit_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("fitted");
    QTest::addColumn<QPoint>("centred");

    QTest::newRow("exact") << QSize(640, 360) << QSize(640, 360) << QPoint(0, 0);
    QTest::newRow("equal quotients stay") << QSize(641, 360) << QSize(641, 360) << QPoint(0, 0);
    QTest::newRow("widest equal quotients") << QSize(655, 360) << QSize(655, 360) << QPoint(0, 0);
    QTest::newRow("one wider") << QSize(656, 360) << QSize(640, 360) << QPoint(8, 0);
    QTest::newRow("tallest equal quotients") << QSize(640, 368) << QSize(640, 368) << QPoint(0, 0);
    QTest::newRow("one taller") << QSize(640, 369) << QSize(640, 360) << QPoint(0, 4);
    QTest::newRow("too wide truncates") << QSize(1600, 400) << QSize(711, 400) << QPoint(444, 0);
    QTest::newRow("too tall truncates") << QSize(1000, 700) << QSize(1000, 562) << QPoint(0, 69);
    QTest::newRow("tiny") << QSize(15, 8) << QSize(15, 8) << QPoint(0, 0);
    QTest::newRow("tiny and wide") << QSize(20, 5) << QSize(8, 5) << QPoint(6, 0);
    QTest::newRow("no width") << QSize(0, 90) << QSize(0, 0) << QPoint(0, 45);
    QTest::newRow("negative") << QSize(-7, -3) << QSize(0, 0) << QPoint(0, 0);
}

void tst_LayoutGeometry::fit()
{
    QFETCH(const QSize, size);
    QFETCH(const QSize, fitted);
    QFETCH(const QPoint, centred);

    QCOMPARE(zr::fitSize16x9(size), fitted);
    QCOMPARE(zr::centerRect16x9(size), QRect(centred, fitted));
}

void tst_LayoutGeometry::fitKeepsTheCorner()
{
    QCOMPARE(zr::fitRect16x9(QRect(-30, 17, 1000, 700)), QRect(-30, 17, 1000, 562));
    QCOMPARE(zr::fitRect16x9(QRect(12, 34, 1600, 400)), QRect(12, 34, 711, 400));
}

void tst_LayoutGeometry::galleryRectangles_data()
{
    QTest::addColumn<Gallery>("gallery");
    QTest::addColumn<QSize>("area");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("page");
    QTest::addColumn<QSize>("tile");
    QTest::addColumn<Corners>("corners"); // of the page's tiles, in the order of the list

    const auto row = [](const char* name, Gallery gallery, QSize area, int count, int page,
                        QSize tile, const Corners& corners) {
        QTest::newRow(name) << gallery << area << count << page << tile << corners;
    };
    const auto both = [&row](const std::string& name, QSize area, int count, QSize tile,
                             const Corners& corners) {
        row((name + ", six").c_str(), Gallery::six, area, count, 0, tile, corners);
        row((name + ", nine").c_str(), Gallery::nine, area, count, 0, tile, corners);
    };

    const QSize hd(1280, 720);
    both("HD 1", hd, 1, {1280, 720}, {{0, 0}});
    both("HD 2", hd, 2, {639, 359}, {{0, 180}, {641, 180}});
    both("HD 3", hd, 3, {639, 359}, {{0, 0}, {641, 0}, {320, 361}});
    both("HD 4", hd, 4, {639, 359}, {{0, 0}, {641, 0}, {0, 361}, {641, 361}});
    both("HD 5", hd, 5, {425, 239}, {{0, 120}, {427, 120}, {854, 120}, {214, 361}, {641, 361}});
    both("HD 6", hd, 6, {425, 239},
         {{0, 120}, {427, 120}, {854, 120}, {0, 361}, {427, 361}, {854, 361}});
    row("HD 7 on a second page keeps the grid", Gallery::six, hd, 7, 1, {425, 239}, {{0, 120}});
    row("HD 10 on a second page", Gallery::six, hd, 10, 1, {425, 239},
        {{0, 120}, {427, 120}, {854, 120}, {0, 361}});
    row("HD 7 is not centred", Gallery::nine, hd, 7, 0, {425, 239},
        {{0, 0}, {427, 0}, {854, 0}, {0, 241}, {427, 241}, {854, 241}, {0, 482}});
    row("HD 8 centres its pair", Gallery::nine, hd, 8, 0, {425, 239},
        {{0, 0}, {427, 0}, {854, 0}, {0, 241}, {427, 241}, {854, 241}, {214, 482}, {641, 482}});
    row("HD 9 ends below the dialog", Gallery::nine, hd, 9, 0, {425, 239},
        {{0, 0},
         {427, 0},
         {854, 0},
         {0, 241},
         {427, 241},
         {854, 241},
         {0, 482},
         {427, 482},
         {854, 482}});
    row("HD 17 on a second page is not centred", Gallery::nine, hd, 17, 1, {425, 239},
        {{0, 0}, {427, 0}, {854, 0}, {0, 241}, {427, 241}, {854, 241}, {0, 482}, {427, 482}});

    const QSize tall(1000, 700);
    both("tall 1", tall, 1, {1000, 562}, {{0, 69}});
    both("tall 2", tall, 2, {499, 280}, {{0, 210}, {501, 210}});
    both("tall 3", tall, 3, {499, 280}, {{0, 69}, {501, 69}, {250, 351}});
    both("tall 5", tall, 5, {332, 186}, {{0, 163}, {334, 163}, {668, 163}, {167, 351}, {501, 351}});
    row("tall 8", Gallery::nine, tall, 8, 0, {332, 186},
        {{0, 70}, {334, 70}, {668, 70}, {0, 258}, {334, 258}, {668, 258}, {167, 446}, {501, 446}});

    const QSize wide(1600, 400);
    both("wide 1", wide, 1, {711, 400}, {{444, 0}});
    both("wide 2", wide, 2, {711, 400}, {{88, 0}, {801, 0}});
    both("wide 3", wide, 3, {353, 199}, {{446, 0}, {801, 0}, {623, 201}});
    both("wide 5", wide, 5, {353, 199}, {{268, 0}, {623, 0}, {978, 0}, {446, 201}, {801, 201}});
    row("wide 8", Gallery::nine, wide, 8, 0, {234, 132},
        {{447, 1}, {683, 1}, {919, 1}, {447, 135}, {683, 135}, {919, 135}, {565, 269}, {801, 269}});

    both("nobody", hd, 0, {}, {});
    row("page after the last", Gallery::six, hd, 12, 2, {}, {});
    row("page before the first", Gallery::nine, hd, 12, -1, {}, {});
}

void tst_LayoutGeometry::galleryRectangles()
{
    QFETCH(const Gallery, gallery);
    QFETCH(const QSize, area);
    QFETCH(const int, count);
    QFETCH(const int, page);
    QFETCH(const QSize, tile);
    QFETCH(const Corners, corners);

    const auto tiles = place(gallery, {area, count, page});
    QCOMPARE(tiles.size(), corners.size());
    const int first = page * rulesOf(gallery, count).tilesPerPage;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        QCOMPARE(tiles[i].index, first + static_cast<int>(i));
        QCOMPARE(tiles[i].rect, QRect(corners[i], tile));
        QCOMPARE(tiles[i].grade, count <= 2 ? zr::kGradeLarge : zr::kGradeGrid);
    }
}

void tst_LayoutGeometry::invariantsHoldForGeneratedDialogs_data()
{
    QTest::addColumn<Gallery>("gallery");
    QTest::newRow("six") << Gallery::six;
    QTest::newRow("nine") << Gallery::nine;
}

void tst_LayoutGeometry::invariantsHoldForGeneratedDialogs()
{
    QFETCH(const Gallery, gallery);
    QRandomGenerator random(20210);
    for (int dialog = 0; dialog < 400; ++dialog) {
        // Small dialogs, where truncation shows most, are as frequent as large ones.
        const int limit = 1 << random.bounded(3, 14);
        const QSize area(random.bounded(limit), random.bounded(limit));
        for (int count = 0; count <= 20; ++count) {
            const QString fault =
                listFault([gallery](const zr::LayoutInput& input) { return place(gallery, input); },
                          {area, count, 0}, rulesOf(gallery, count));
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
        }
    }
}

void tst_LayoutGeometry::hostileInput_data()
{
    QTest::addColumn<QSize>("area");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("tiles"); // of the gallery with nine

    QTest::newRow("no area") << QSize(0, 0) << 9 << 0 << 9;
    QTest::newRow("gaps wider than the area") << QSize(3, 1) << 9 << 0 << 9;
    QTest::newRow("negative area") << QSize(kIntMin, -1) << 9 << 0 << 9;
    QTest::newRow("huge area") << QSize(kIntMax, kIntMax) << 9 << 0 << 9;
    QTest::newRow("flat and huge") << QSize(kIntMax, 1) << 9 << 0 << 9;
    QTest::newRow("negative count") << QSize(1280, 720) << kIntMin << 0 << 0;
    QTest::newRow("huge count") << QSize(1280, 720) << kIntMax << (kIntMax - 1) / 9 << 1;
    QTest::newRow("negative page") << QSize(1280, 720) << 9 << kIntMin << 0;
    QTest::newRow("huge page") << QSize(1280, 720) << kIntMax << kIntMax << 0;
}

void tst_LayoutGeometry::hostileInput()
{
    QFETCH(const QSize, area);
    QFETCH(const int, count);
    QFETCH(const int, page);
    QFETCH(const int, tiles);

    const zr::LayoutInput input{area, count, page};
    const auto nine = zr::nineCutPlacements(input);
    QCOMPARE(static_cast<int>(nine.size()), tiles);
    for (const auto& tile : nine)
        QVERIFY2(tile.index >= 0 && tile.index < count && tile.rect.width() >= 0
                     && tile.rect.height() >= 0 && tile.rect.bottom() <= zr::kMaxSidePx + 2,
                 qPrintable(describe(tile)));
    QVERIFY(zr::equalCutPlacements(input).size() <= 6);
}

void tst_LayoutGeometry::gradesOfGrids_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("grade");

    QTest::newRow("two on the first page") << int(eLayoutEqualCut) << 2 << 0 << 4;
    QTest::newRow("three") << int(eLayoutEqualCut) << 3 << 0 << 3;
    QTest::newRow("full page") << int(eLayoutEqualCut) << 6 << 0 << 3;
    QTest::newRow("a page before more") << int(eLayoutEqualCut) << 20 << 0 << 3;
    QTest::newRow("one on the second page") << int(eLayoutEqualCut) << 7 << 1 << 3;
    QTest::newRow("second page of nobody") << int(eLayoutEqualCut) << 1 << 1 << 3;
    QTest::newRow("6 cut") << int(eLayout6Cut) << 1 << 0 << 3;
    QTest::newRow("8 cut") << int(eLayout8Cut) << 8 << 0 << 3;
    QTest::newRow("2 x 2") << int(eLayoutGrid4) << 4 << 0 << 3;
    QTest::newRow("3 x 3") << int(eLayoutGrid9) << 1 << 0 << 2;
    QTest::newRow("4 x 4") << int(eLayoutGrid16) << 1 << 0 << 2;
    QTest::newRow("no mode") << -1 << 1 << 0 << 2;
}

void tst_LayoutGeometry::gradesOfGrids()
{
    QFETCH(const int, mode);
    QFETCH(const int, count);
    QFETCH(const int, page);
    QTEST(zr::gridStreamType(mode, count, page), "grade");
}

void tst_LayoutGeometry::pages_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("tilesPerPage");
    QTest::addColumn<int>("pages");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("clamped");

    QTest::newRow("none") << 0 << 6 << 0 << 3 << 0;
    QTest::newRow("negative") << -4 << 6 << 0 << -2 << 0;
    QTest::newRow("full page") << 6 << 6 << 1 << 1 << 0;
    QTest::newRow("one more") << 7 << 6 << 2 << 1 << 1;
    QTest::newRow("last of nine left") << 9 << 9 << 1 << 1 << 0;
    QTest::newRow("several pages gone") << 10 << 9 << 2 << 7 << 1;
    QTest::newRow("in range") << 30 << 9 << 4 << 2 << 2;
    QTest::newRow("below") << 30 << 9 << 4 << kIntMin << 0;
    QTest::newRow("huge") << kIntMax << 1 << kIntMax << kIntMax << kIntMax - 1;
    QTest::newRow("no page size") << 5 << 0 << 0 << 1 << 0;
}

void tst_LayoutGeometry::pages()
{
    QFETCH(const int, count);
    QFETCH(const int, tilesPerPage);
    QFETCH(const int, page);
    QTEST(zr::pageCount(count, tilesPerPage), "pages");
    QTEST(zr::clampPage(page, count, tilesPerPage), "clamped");
}

void tst_LayoutGeometry::pageAfterRemovalInStrips_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("remaining");
    QTest::addColumn<int>("expected");

    for (const int mode : {eLayoutSpeakerRight, eLayoutSpeakerBottom, eLayoutSpeakerTop}) {
        QTest::addRow("mode %d, page emptied", mode) << mode << 1 << 7 << 0;
        QTest::addRow("mode %d, one left", mode) << mode << 1 << 8 << 1;
        QTest::addRow("mode %d, speaker alone", mode) << mode << 0 << 1 << 0;
    }
    QTest::newRow("two speakers, page emptied") << int(eLayoutSpeaker4) << 2 << 14 << 1;
    QTest::newRow("two speakers, one left") << int(eLayoutSpeaker4) << 1 << 9 << 1;
    QTest::newRow("two speakers, one person more than a page and one")
        << int(eLayoutSpeaker4) << 1 << 7 << 1;
    QTest::newRow("gallery") << int(eLayoutEqualCut) << 1 << 7 << 1;
    QTest::newRow("out of range") << int(eLayoutSpeakerTop) << kIntMax << kIntMin << kIntMax;
}

void tst_LayoutGeometry::pageAfterRemovalInStrips()
{
    QFETCH(const int, mode);
    QFETCH(const int, page);
    QFETCH(const int, remaining);
    QTEST(zr::pageAfterRemoval(mode, page, remaining), "expected");
}

QTEST_APPLESS_MAIN(tst_LayoutGeometry)
#include "tst_layoutgeometry.moc"
