#include "layoutgeometry.h"
#include "paging.h"

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
    void fit();
    void galleryRectangles_data();
    void galleryRectangles();
    void invariantsHoldForGeneratedDialogs();
    void hostileInput();
    void gradesOfGrids();
    void pages();
    void pageAfterRemovalInStrips();
};

void tst_LayoutGeometry::fit()
{
    struct Row
    {
        QSize size, fitted;
        QPoint centred;
    };
    const Row rows[] = {
        {{640, 360}, {640, 360}, {0, 0}},
        {{655, 360}, {655, 360}, {0, 0}}, // the widest whose quotients are equal
        {{656, 360}, {640, 360}, {8, 0}},
        {{640, 368}, {640, 368}, {0, 0}}, // the tallest
        {{640, 369}, {640, 360}, {0, 4}},
        {{1600, 400}, {711, 400}, {444, 0}}, // truncates
        {{1000, 700}, {1000, 562}, {0, 69}},
        {{15, 8}, {15, 8}, {0, 0}},
        {{20, 5}, {8, 5}, {6, 0}},
        {{0, 90}, {0, 0}, {0, 45}},
        {{-7, -3}, {0, 0}, {0, 0}},
    };
    for (const Row& row : rows) {
        QCOMPARE(zr::fitSize16x9(row.size), row.fitted);
        QCOMPARE(zr::centerRect16x9(row.size), QRect(row.centred, row.fitted));
        QCOMPARE(zr::fitRect16x9(QRect({-30, 17}, row.size)), QRect({-30, 17}, row.fitted));
    }
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

void tst_LayoutGeometry::invariantsHoldForGeneratedDialogs()
{
    QRandomGenerator random(20210);
    for (int dialog = 0; dialog < 400; ++dialog) {
        // Small dialogs, where truncation shows most, are as frequent as large ones.
        const int limit = 1 << random.bounded(3, 14);
        const QSize area(random.bounded(limit), random.bounded(limit));
        for (int count = 0; count <= 20; ++count) {
            for (const Gallery gallery : {Gallery::six, Gallery::nine}) {
                const QString fault = listFault(
                    [gallery](const zr::LayoutInput& input) { return place(gallery, input); },
                    {area, count, 0}, rulesOf(gallery, count));
                QVERIFY2(fault.isEmpty(), qPrintable(fault));
            }
        }
    }
}

void tst_LayoutGeometry::hostileInput()
{
    const QSize hd(1280, 720);
    struct Row
    {
        zr::LayoutInput input;
        std::size_t tiles; ///< of the gallery with nine
    };
    const Row rows[] = {
        {{{0, 0}, 9, 0}, 9},
        {{{3, 1}, 9, 0}, 9}, // the gaps are wider
        {{{kIntMin, -1}, 9, 0}, 9},
        {{{kIntMax, kIntMax}, 9, 0}, 9},
        {{{kIntMax, 1}, 9, 0}, 9},
        {{hd, kIntMin, 0}, 0},
        {{hd, kIntMax, (kIntMax - 1) / 9}, 1},
        {{hd, 9, kIntMin}, 0},
        {{hd, kIntMax, kIntMax}, 0},
    };
    for (const auto& [input, tiles] : rows) {
        const auto nine = zr::nineCutPlacements(input);
        QCOMPARE(nine.size(), tiles);
        for (const auto& tile : nine)
            QVERIFY2(tile.index >= 0 && tile.index < input.count && tile.rect.width() >= 0
                         && tile.rect.height() >= 0 && tile.rect.bottom() <= zr::kMaxSidePx + 2,
                     qPrintable(describe(tile)));
        QVERIFY(zr::equalCutPlacements(input).size() <= 6);
    }
}

void tst_LayoutGeometry::gradesOfGrids()
{
    // Mode, participants, page, grade.
    const int rows[][4] = {{eLayoutEqualCut, 2, 0, 4},
                           {eLayoutEqualCut, 3, 0, 3},
                           {eLayoutEqualCut, 20, 0, 3},
                           {eLayoutEqualCut, 7, 1, 3},
                           {eLayoutEqualCut, 1, 1, 3},
                           {eLayout6Cut, 1, 0, 3},
                           {eLayout8Cut, 8, 0, 3},
                           {eLayoutGrid4, 4, 0, 3},
                           {eLayoutGrid9, 1, 0, 2},
                           {eLayoutGrid16, 1, 0, 2},
                           {-1, 1, 0, 2}};
    for (const auto& [mode, count, page, grade] : rows)
        QCOMPARE(zr::gridStreamType(mode, count, page), grade);
}

void tst_LayoutGeometry::pages()
{
    // Participants, tiles on a page, pages; a page and where it is clamped to.
    const int rows[][5] = {
        {0, 6, 0, 3, 0}, {-4, 6, 0, -2, 0},      {6, 6, 1, 1, 0},
        {7, 6, 2, 1, 1}, {10, 9, 2, 7, 1},       {30, 9, 4, 2, 2},
        {5, 0, 0, 1, 0}, {30, 9, 4, kIntMin, 0}, {kIntMax, 1, kIntMax, kIntMax, kIntMax - 1}};
    for (const auto& [count, tilesPerPage, pages, page, clamped] : rows) {
        QCOMPARE(zr::pageCount(count, tilesPerPage), pages);
        QCOMPARE(zr::clampPage(page, count, tilesPerPage), clamped);
    }
}

void tst_LayoutGeometry::pageAfterRemovalInStrips()
{
    for (const int mode : {eLayoutSpeakerRight, eLayoutSpeakerBottom, eLayoutSpeakerTop}) {
        QCOMPARE(zr::pageAfterRemoval(mode, 1, 7), 0); // the page is empty now
        QCOMPARE(zr::pageAfterRemoval(mode, 1, 8), 1);
        QCOMPARE(zr::pageAfterRemoval(mode, 0, 1), 0); // the speaker alone
    }
    QCOMPARE(zr::pageAfterRemoval(eLayoutSpeaker4, 2, 14), 1);
    QCOMPARE(zr::pageAfterRemoval(eLayoutSpeaker4, 1, 9), 1);
    QCOMPARE(zr::pageAfterRemoval(eLayoutSpeaker4, 1, 7), 1);
    QCOMPARE(zr::pageAfterRemoval(eLayoutEqualCut, 1, 7), 1);
    QCOMPARE(zr::pageAfterRemoval(eLayoutSpeakerTop, kIntMax, kIntMin), kIntMax);
}

QTEST_APPLESS_MAIN(tst_LayoutGeometry)
#include "tst_layoutgeometry.moc"
