#include "layoutgeometry.h"

#include "layoutinvariants.h"
#include "zrscreenmod.h"

#include <QRandomGenerator>
#include <QtTest>

#include <initializer_list>
#include <limits>

namespace {

constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

/// The arrangements of the adaptive gallery's mode.
enum class Gallery
{
    six,
    nine,
    sixteen,
};

/// Any arrangement but the speaker tool's: a mode, and for the first mode which gallery.
std::vector<zr::TilePlacement> place(Gallery gallery, const zr::LayoutInput& input)
{
    switch (input.mode) {
    case eLayoutEqualCut:
        return gallery == Gallery::six    ? zr::equalCutPlacements(input)
               : gallery == Gallery::nine ? zr::nineCutPlacements(input)
                                          : zr::sixteenCutPlacements(input);
    case eLayout6Cut:
        return zr::sixCutPlacements(input);
    case eLayout8Cut:
        return zr::eightCutPlacements(input);
    case eLayoutSpeakerRight:
    case eLayoutSpeakerBottom:
    case eLayoutSpeakerTop:
        return zr::speakerPlacements(input);
    case eLayoutSpeaker4:
        return zr::speaker4Placements(input);
    default:
        return zr::fixedGridPlacements(input);
    }
}

LayoutRules galleryRules(Gallery gallery, int count)
{
    LayoutRules rules;
    rules.tilesPerPage = gallery == Gallery::six ? 6 : gallery == Gallery::nine ? 9 : 16;
    // Three rows of the nine step four pixels but reserve two.
    if (gallery == Gallery::nine && count >= 7)
        rules.overhang = {0, 2};
    // Four columns or rows of the sixteen step six pixels but reserve five.
    if (gallery == Gallery::sixteen)
        rules.overhang = {count >= 10 ? 1 : 0, count >= 13 ? 1 : 0};
    return rules;
}

LayoutRules speakerRules(const zr::LayoutInput& input)
{
    LayoutRules rules;
    rules.tilesPerPage = 6;
    if (input.speaker >= 0)
        rules.onEveryPage.push_back(input.speaker);
    else if (!input.polling)
        rules.unseenFrom = 0;
    if (input.count < 2 && !input.polling)
        return rules;
    if (input.mode == eLayoutSpeaker4) {
        const bool asked = input.secondSpeaker >= 0 && input.secondSpeaker != input.speaker;
        const int second = asked ? input.secondSpeaker : input.speaker == 0 ? 1 : 0;
        if (input.speaker >= 0 && second < input.count)
            rules.onEveryPage.push_back(second);
        return rules;
    }
    // The speaker's right and lower edges are inclusive; the strip on the right starts two further.
    rules.overhang = {input.mode == eLayoutSpeakerRight ? 2 : 1,
                      input.mode == eLayoutSpeakerBottom ? 0 : 1};
    rules.largeTilesFill = true;
    return rules;
}

LayoutRules rulesOf(Gallery gallery, const zr::LayoutInput& input)
{
    LayoutRules rules;
    switch (input.mode) {
    case eLayoutEqualCut:
        return galleryRules(gallery, input.count);
    case eLayout6Cut:
        rules.tilesPerPage = 6;
        return rules;
    case eLayout8Cut:
        rules.onEveryPage = {0, 1, 2, 3, 4, 5, 6, 7};
        rules.onEveryPage.resize(static_cast<std::size_t>(std::clamp(input.count, 0, 8)));
        rules.unseenFrom = 8;
        return rules;
    case eLayoutGrid4:
    case eLayoutGrid9:
    case eLayoutGrid16: {
        const int side = input.mode - eLayoutGrid4 + 2;
        rules.tilesPerPage = side * side;
        return rules;
    }
    default:
        return speakerRules(input);
    }
}

using Corners = std::vector<QPoint>;
using Tiles = std::vector<zr::TilePlacement>;

/// The first `count` corners of a grid, row by row.
Corners cells(int count, std::initializer_list<int> lefts, std::initializer_list<int> tops)
{
    Corners corners;
    for (const int top : tops) {
        for (const int left : lefts)
            corners.push_back({left, top});
    }
    corners.resize(static_cast<std::size_t>(count));
    return corners;
}

/// Large tiles, and then small ones of one size, from the index `first` on.
Tiles tiles(Tiles large, int first, QSize size, const Corners& corners)
{
    for (const QPoint& corner : corners)
        large.push_back({first++, QRect(corner, size), zr::kGradeSmall});
    return large;
}

QString describeAll(const Tiles& all)
{
    QStringList lines;
    for (const auto& tile : all)
        lines << describe(tile);
    return lines.join(QLatin1Char('\n'));
}

} // namespace

Q_DECLARE_METATYPE(Gallery)
Q_DECLARE_METATYPE(Corners)
Q_DECLARE_METATYPE(Tiles)
Q_DECLARE_METATYPE(zr::LayoutInput)

class tst_LayoutGeometry : public QObject
{
    Q_OBJECT

private slots:
    void fit();
    void galleryRectangles_data();
    void galleryRectangles();
    void rectangles_data();
    void rectangles();
    void speakerTool();
    void invariantsHoldForGeneratedDialogs_data();
    void invariantsHoldForGeneratedDialogs();
    void hostileInput();
    void gradesOfGrids();
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
        const zr::TilePlacement alone = zr::aloneCentred(row.size, 3);
        QCOMPARE(describe(alone), describe({3, QRect(row.centred, row.fitted), 4}));
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
    const auto hdThree = {0, 427, 854};
    both("HD 1", hd, 1, {1280, 720}, {{0, 0}});
    both("HD 2", hd, 2, {639, 359}, {{0, 180}, {641, 180}});
    both("HD 3", hd, 3, {639, 359}, {{0, 0}, {641, 0}, {320, 361}});
    both("HD 4", hd, 4, {639, 359}, cells(4, {0, 641}, {0, 361}));
    both("HD 5", hd, 5, {425, 239}, {{0, 120}, {427, 120}, {854, 120}, {214, 361}, {641, 361}});
    both("HD 6", hd, 6, {425, 239}, cells(6, hdThree, {120, 361}));
    row("HD 7 on a second page keeps the grid", Gallery::six, hd, 7, 1, {425, 239}, {{0, 120}});
    row("HD 10 on a second page", Gallery::six, hd, 10, 1, {425, 239},
        cells(4, hdThree, {120, 361}));
    row("HD 7 is not centred", Gallery::nine, hd, 7, 0, {425, 239},
        cells(7, hdThree, {0, 241, 482}));
    Corners eight = cells(8, hdThree, {0, 241, 482});
    eight[6].setX(214);
    eight[7].setX(641);
    row("HD 8 centres its pair", Gallery::nine, hd, 8, 0, {425, 239}, eight);
    row("HD 9 ends below the dialog", Gallery::nine, hd, 9, 0, {425, 239},
        cells(9, hdThree, {0, 241, 482}));
    row("HD 17 on a second page is not centred", Gallery::nine, hd, 17, 1, {425, 239},
        cells(8, hdThree, {0, 241, 482}));

    const QSize tall(1000, 700);
    both("tall 1", tall, 1, {1000, 562}, {{0, 69}});
    both("tall 2", tall, 2, {499, 280}, {{0, 210}, {501, 210}});
    both("tall 3", tall, 3, {499, 280}, {{0, 69}, {501, 69}, {250, 351}});
    both("tall 5", tall, 5, {332, 186}, {{0, 163}, {334, 163}, {668, 163}, {167, 351}, {501, 351}});
    row("tall 9", Gallery::nine, tall, 9, 0, {332, 186}, cells(9, {0, 334, 668}, {70, 258, 446}));

    const QSize wide(1600, 400);
    both("wide 2", wide, 2, {711, 400}, {{88, 0}, {801, 0}});
    both("wide 3", wide, 3, {353, 199}, {{446, 0}, {801, 0}, {623, 201}});
    both("wide 5", wide, 5, {353, 199}, {{268, 0}, {623, 0}, {978, 0}, {446, 201}, {801, 201}});
    row("wide 8", Gallery::nine, wide, 8, 0, {234, 132},
        {{447, 1}, {683, 1}, {919, 1}, {447, 135}, {683, 135}, {919, 135}, {565, 269}, {801, 269}});

    // Seven and more of sixteen reserve all their gaps, and the pair of eight is not centred.
    row("HD 3 of sixteen", Gallery::sixteen, hd, 3, 0, {639, 359}, {{0, 0}, {641, 0}, {320, 361}});
    row("HD 8 of sixteen", Gallery::sixteen, hd, 8, 0, {425, 238},
        cells(8, hdThree, {1, 241, 481}));
    row("HD 26 on a second page of sixteen", Gallery::sixteen, hd, 26, 1, {318, 178},
        cells(10, {1, 321, 641, 961}, {1, 181, 361}));
    row("12 of sixteen end outside", Gallery::sixteen, {1281, 720}, 12, 0, {319, 179},
        cells(12, {0, 321, 642, 963}, {89, 270, 451}));
    row("13 of sixteen end outside", Gallery::sixteen, {1281, 721}, 13, 0, {319, 179},
        cells(13, {0, 321, 642, 963}, {0, 181, 362, 543}));

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

    const Tiles placed = place(gallery, {area, count, page});
    QCOMPARE(placed.size(), corners.size());
    const int first = page * galleryRules(gallery, count).tilesPerPage;
    for (std::size_t i = 0; i < placed.size(); ++i) {
        QCOMPARE(placed[i].index, first + static_cast<int>(i));
        QCOMPARE(placed[i].rect, QRect(corners[i], tile));
        QCOMPARE(placed[i].grade, count <= 2 ? zr::kGradeLarge : zr::kGradeGrid);
    }
}

void tst_LayoutGeometry::rectangles_data()
{
    QTest::addColumn<zr::LayoutInput>("input");
    QTest::addColumn<Tiles>("expected");

    const auto row = [](const char* name, int mode, QSize area, int count, int page,
                        const Tiles& expected, int speaker = -1, int second = -1,
                        bool polling = false) {
        QTest::newRow(name) << zr::LayoutInput{area, count, page, mode, polling, speaker, second}
                            << expected;
    };
    const auto poll = [&row](const char* name, int mode, QSize area, int count,
                             const Tiles& expected, int speaker = -1) {
        row(name, mode, area, count, 0, expected, speaker, -1, true);
    };
    const QSize hd(1280, 720);
    const QSize tall(1000, 700);
    const QSize wide(1600, 400);
    const auto large = [](int index, const QRect& rect) {
        return Tiles{{index, rect, zr::kGradeLarge}};
    };
    const auto grid = [](int grade, Tiles all) {
        for (auto& tile : all)
            tile.grade = grade;
        return all;
    };

    const Corners sixHd{{854, 1}, {854, 241}, {1, 481}, {427, 481}, {854, 481}};
    row("six HD", eLayout6Cut, hd, 6, 0, tiles(large(0, {1, 1, 851, 478}), 1, {424, 238}, sixHd));
    row("six, smaller by the fit", eLayout6Cut, {966, 540}, 6, 0,
        tiles(large(0, {1, 1, 636, 358}), 1, {316, 178},
              {{645, 1}, {645, 181}, {1, 361}, {323, 361}, {645, 361}}));
    row("six in a tall dialog", eLayout6Cut, tall, 6, 0,
        tiles(large(0, {1, 70, 664, 372}), 1, {331, 185},
              {{667, 70}, {667, 257}, {1, 444}, {334, 444}, {667, 444}}));
    row("six in a wide dialog, second page", eLayout6Cut, {1601, 401}, 10, 1,
        tiles(large(6, {445, 1, 472, 265}), 7, {235, 131}, {{919, 1}, {919, 134}, {445, 268}}));
    Tiles seven = tiles(large(0, {1, 1, 851, 478}), 1, {424, 238}, sixHd);
    seven.push_back({6, QRect(), zr::kGradeSmall});
    row("six, the seventh has an empty rectangle", eLayout6Cut, hd, 7, 0, seven);
    row("six, one alone", eLayout6Cut, tall, 1, 0, large(0, {0, 69, 1000, 562}));
    poll("six, one while polling", eLayout6Cut, tall, 1, large(0, {1, 70, 664, 372}));

    const Corners eightHd{{961, 1},   {961, 181}, {961, 361}, {1, 541},
                          {321, 541}, {641, 541}, {961, 541}};
    Tiles nine = tiles(large(0, {1, 1, 958, 538}), 1, {318, 178}, eightHd);
    nine.push_back({8, QRect(), zr::kGradeSmall});
    row("eight HD, the ninth has an empty rectangle", eLayout8Cut, hd, 9, 0, nine);
    row("eight in a tall dialog has no pages", eLayout8Cut, tall, 8, 3,
        tiles(large(0, {1, 70, 748, 419}), 1, {248, 138},
              {{751, 70}, {751, 210}, {751, 351}, {1, 491}, {251, 491}, {501, 491}, {751, 491}}));
    row("eight, one alone", eLayout8Cut, wide, 1, 0, large(0, {444, 0, 711, 400}));
    poll("eight, one while polling", eLayout8Cut, tall, 1, large(0, {1, 70, 748, 419}));

    // The strip is centred by what a full page holds, also on the last page.
    const Tiles rightHd = large(2, {0, 0, 1070, 721});
    row("right HD, second page", eLayoutSpeakerRight, hd, 9, 1,
        tiles(rightHd, 7, {211, 118}, {{1071, 1}, {1071, 121}}), 2);
    row("right HD, three", eLayoutSpeakerRight, hd, 3, 0,
        tiles(rightHd, 0, {211, 118}, {{1071, 241}, {1071, 361}}), 2);
    row("right in a wide dialog", eLayoutSpeakerRight, wide, 7, 0,
        tiles(large(6, {0, 0, 712, 401}), 0, {115, 65},
              {{713, 0}, {713, 67}, {713, 134}, {713, 201}, {713, 268}, {713, 335}}),
        6);
    row("below HD", eLayoutSpeakerBottom, hd, 7, 0,
        tiles(large(0, {0, 0, 1281, 600}), 1, {211, 118},
              {{2, 601}, {215, 601}, {428, 601}, {641, 601}, {854, 601}, {1067, 601}}),
        0);
    row("below, tall", eLayoutSpeakerBottom, tall, 4, 0,
        tiles(large(0, {0, 0, 1001, 563}), 1, {164, 92}, {{252, 584}, {418, 584}, {584, 584}}), 0);
    row("on top HD", eLayoutSpeakerTop, hd, 3, 0,
        tiles(large(0, {0, 120, 1281, 601}), 1, {211, 118}, {{428, 1}, {641, 1}}), 0);
    row("on top, tall, a page outside the strip", eLayoutSpeakerTop, tall, 7, 1,
        large(3, {0, 94, 1001, 607}), 3);
    row("a speaker alone", eLayoutSpeakerTop, tall, 1, 0, large(0, {0, 69, 1000, 562}), 0);
    poll("a speaker alone while polling", eLayoutSpeakerBottom, tall, 1,
         large(0, {0, 0, 1001, 563}), 0);
    row("no speaker", eLayoutSpeakerBottom, tall, 2, 0, {});
    poll("no speaker while polling", eLayoutSpeakerBottom, tall, 2,
         tiles({}, 0, {164, 92}, {{335, 584}, {501, 584}}), 2); // an index outside the list

    // One pixel is between the two, not two: the right edge of the first is inclusive.
    const auto two = [](int a, int b, QRect rect, int left) {
        return Tiles{{a, rect, zr::kGradeLarge},
                     {b, QRect(QPoint(left, rect.top()), rect.size()), zr::kGradeLarge}};
    };
    row("two HD, second page", eLayoutSpeaker4, hd, 9, 1,
        tiles(two(3, 1, {0, 120, 639, 359}, 640), 8, {211, 120}, {{2, 600}}), 3, 1);
    row("two, the first other one", eLayoutSpeaker4, tall, 3, 0,
        tiles(two(0, 1, {0, 151, 499, 280}, 500), 2, {165, 92}, {{417, 583}}), 0);
    row("two in a wide dialog", eLayoutSpeaker4, wide, 5, 0,
        tiles(two(4, 0, {327, 33, 472, 266}, 800), 1, {117, 66},
              {{622, 333}, {741, 333}, {860, 333}}),
        4, 4); // the speaker is no second one
    row("two without a strip", eLayoutSpeaker4, tall, 2, 0, two(1, 0, {0, 210, 499, 280}, 500), 1);
    row("one of two", eLayoutSpeaker4, tall, 1, 0, large(0, {0, 69, 1000, 562}), 0);
    poll("one of two while polling", eLayoutSpeaker4, tall, 1, large(0, {0, 210, 499, 280}), 0);
    row("none of two", eLayoutSpeaker4, tall, 2, 0, {});
    poll("none of two while polling", eLayoutSpeaker4, tall, 2,
         tiles({}, 0, {165, 92}, {{334, 583}, {501, 583}}));

    row("grid 2 HD", eLayoutGrid4, hd, 4, 0,
        grid(3, tiles({}, 0, {639, 359}, {{0, 0}, {640, 0}, {0, 360}, {640, 360}})));
    row("grid 2, last page", eLayoutGrid4, tall, 6, 1,
        grid(3, tiles({}, 4, {499, 280}, {{0, 69}, {500, 69}})));
    row("grid 3", eLayoutGrid9, tall, 5, 0,
        tiles({}, 0, {332, 186}, {{1, 70}, {334, 70}, {667, 70}, {1, 257}, {334, 257}}));
    row("grid 4", eLayoutGrid16, tall, 22, 1,
        tiles({}, 16, {249, 140},
              {{0, 68}, {250, 68}, {500, 68}, {750, 68}, {0, 209}, {250, 209}}));

    row("no grid", eLayoutShare, hd, 3, 0, {});
}

void tst_LayoutGeometry::rectangles()
{
    QFETCH(const zr::LayoutInput, input);
    QFETCH(const Tiles, expected);
    QCOMPARE(describeAll(place(Gallery::six, input)), describeAll(expected));
}

void tst_LayoutGeometry::speakerTool()
{
    struct Row
    {
        QSize dialog;
        QRect area;
    };
    const QSize screen(1920, 1080);
    const Row rows[] = {
        {{1280, 720}, {2, 2, 1276, 716}},
        {{1000, 700}, {2, 70, 996, 560}},
        {{101, 101}, {2, 23, 97, 54}},
        {{100, 720}, {-908, -178, 1916, 1076}}, // the screen's
        {{720, 100}, {-598, -488, 1916, 1076}},
    };
    for (const Row& row : rows)
        QCOMPARE(zr::speakerToolArea(row.dialog, screen), row.area);
    QVERIFY(zr::speakerToolArea({kIntMin, 0}, {-1, kIntMin}).isEmpty());

    const QRect area(2, 70, 996, 560);
    const auto tool = [&area](int count, int speaker) {
        return describeAll(zr::speakerToolPlacements(
            {{1000, 700}, count, 0, eLayoutSpeakerTool, false, speaker}, area));
    };
    QCOMPARE(tool(1, 0), describeAll(Tiles{{0, area, zr::kGradeLarge}}));
    QCOMPARE(tool(3, 2), describeAll(Tiles{{2, {0, 0, 1000, 700}, zr::kGradeLarge}}));
    QVERIFY(tool(3, 3).isEmpty() && tool(3, -1).isEmpty());
    const Tiles cut =
        zr::speakerToolPlacements({{100, 720}, 1, 0, 4, false, 0}, QRect(-908, -178, 1916, 1076));
    QCOMPARE(cut.front().rect, QRect(0, 0, 100, 720)); // nothing of the picture is cut off
}

void tst_LayoutGeometry::invariantsHoldForGeneratedDialogs_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<Gallery>("gallery");
    QTest::newRow("nine") << int(eLayoutEqualCut) << Gallery::nine;
    QTest::newRow("sixteen") << int(eLayoutEqualCut) << Gallery::sixteen;
    for (const int mode : {1, 2, 3, 6, 7, 8, 9, 11, 12, 13})
        QTest::newRow(qPrintable(QString::number(mode))) << mode << Gallery::six;
}

void tst_LayoutGeometry::invariantsHoldForGeneratedDialogs()
{
    QFETCH(const int, mode);
    QFETCH(const Gallery, gallery);
    QRandomGenerator random(20210);
    for (int dialog = 0; dialog < 100; ++dialog) {
        // Small dialogs, where truncation shows most, are as frequent as large ones.
        const int limit = 1 << random.bounded(3, 14);
        const QSize area(random.bounded(1, limit), random.bounded(1, limit));
        for (int count = 0; count <= 20; count += random.bounded(1, 3)) {
            zr::LayoutInput input{area, count, 0, mode, random.bounded(4) == 0};
            if (count > 0 && random.bounded(8) > 0)
                input.speaker = random.bounded(count);
            if (count > 0 && random.bounded(2) > 0)
                input.secondSpeaker = random.bounded(count);
            const QString fault =
                listFault([gallery](const zr::LayoutInput& page) { return place(gallery, page); },
                          input, rulesOf(gallery, input));
            QVERIFY2(fault.isEmpty(), qPrintable(fault));
        }
    }
}

void tst_LayoutGeometry::hostileInput()
{
    const QSize areas[] = {{0, 0},   {3, 1},       {kIntMin, -1},     {kIntMax, kIntMax},
                           {-1, 90}, {kIntMax, 1}, {kIntMin, kIntMax}};
    const int pages[] = {kIntMin, -1, 0, (kIntMax - 1) / 6, kIntMax};
    const int speakers[] = {kIntMin, -1, 0, 8, kIntMax};
    for (int mode = -1; mode <= eLayoutSingle + 1; ++mode) {
        // The cuts list everybody: their memory follows the list, which is a real one.
        const int most = mode == eLayout6Cut || mode == eLayout8Cut ? 100 : kIntMax;
        for (const int count : {kIntMin, -1, 0, 1, 9, most}) {
            for (const QSize& area : areas) {
                for (const int page : pages) {
                    for (const int speaker : speakers) {
                        zr::LayoutInput input{area, count, page, mode, speaker < 0, speaker, 8};
                        for (const auto& tile : place(Gallery::nine, input)) {
                            QVERIFY2(tile.index >= 0 && tile.index < count,
                                     qPrintable(describe(tile)));
                            QVERIFY2(tile.rect.isEmpty() || tile.rect.right() <= zr::kMaxSidePx + 2,
                                     qPrintable(describe(tile)));
                        }
                        QVERIFY(zr::speakerToolPlacements(input, {}).size() <= 1);
                    }
                }
            }
        }
    }
    QCOMPARE(zr::nineCutPlacements({{640, 360}, kIntMax, (kIntMax - 1) / 9}).size(),
             std::size_t(1));
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

QTEST_APPLESS_MAIN(tst_LayoutGeometry)
#include "tst_layoutgeometry.moc"
