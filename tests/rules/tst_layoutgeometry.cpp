// Where tiles and windows stand, on which page, and how pages are turned.
#include "layoutgeometry.h"
#include "meetingmode.h"
#include "paging.h"
#include "screenplace.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <climits>

namespace {

using Tiles = std::vector<zr::TilePlacement>;

/// Each arrangement; the speaker tool's has a test of its own.
const struct Mode
{
    QString name;
    int mode;
    Tiles (*place)(const zr::LayoutInput&);
    int tilesPerPage; ///< 0 where everybody is on one page
    int largeTiles;   ///< beside the paged ones
} kModes[] = {
    {"gallery6", eLayoutEqualCut, &zr::equalCutPlacements, 6, 0},
    {"gallery9", eLayoutEqualCut, &zr::nineCutPlacements, 9, 0},
    {"cut6", eLayout6Cut, &zr::sixCutPlacements, 6, 0},
    {"cut8", eLayout8Cut, &zr::eightCutPlacements, 0, 0},
    {"right", eLayoutSpeakerRight, &zr::speakerPlacements, 6, 1},
    {"below", eLayoutSpeakerBottom, &zr::speakerPlacements, 6, 1},
    {"top", eLayoutSpeakerTop, &zr::speakerPlacements, 6, 1},
    {"pair", eLayoutSpeaker4, &zr::speaker4Placements, 6, 2},
    {"grid2", eLayoutGrid4, &zr::fixedGridPlacements, 4, 0},
    {"grid3", eLayoutGrid9, &zr::fixedGridPlacements, 9, 0},
    {"grid4", eLayoutGrid16, &zr::fixedGridPlacements, 16, 0},
    {"share", eLayoutShare, &zr::fixedGridPlacements, 0, 0}, // which has none
};

/// Grade, first index and size of tiles that are alike and follow each other, then their corners:
/// "4: #2 1070x721 +0+0; 2: #7 211x118 +1071+1 +1071+121".
QString text(const Tiles& tiles)
{
    QString all;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const auto& [index, rect, grade] = tiles[i];
        const bool alike = i > 0 && tiles[i - 1].grade == grade && tiles[i - 1].index + 1 == index
                           && tiles[i - 1].rect.size() == rect.size();
        if (!alike)
            all += QString("%1%2: #%3 %4x%5")
                       .arg(i > 0 ? "; " : "")
                       .arg(grade)
                       .arg(index)
                       .arg(rect.width())
                       .arg(rect.height());
        all += QString(" %1%2").arg(rect.x() < 0 ? "" : "+").arg(rect.x());
        all += QString("%1%2").arg(rect.y() < 0 ? "" : "+").arg(rect.y());
    }
    return all;
}

/// Arrangements, number by number: mode, dialog, participants and what else is to be said of them,
/// then the tiles.
const char kArrangements[] = R"(
// The adaptive galleries are alike up to six.
gallery6 1280x720 2 = 4: #0 639x359 +0+180 +641+180
gallery9 1280x720 3 = 3: #0 639x359 +0+0 +641+0 +320+361
gallery6 1280x720 5 = 3: #0 425x239 +0+120 +427+120 +854+120 +214+361 +641+361
gallery9 1280x720 6 = 3: #0 425x239 +0+120 +427+120 +854+120 +0+361 +427+361 +854+361
gallery9 1600x400 2 = 4: #0 711x400 +88+0 +801+0
gallery9 1600x400 5 = 3: #0 353x199 +268+0 +623+0 +978+0 +446+201 +801+201
// A further page keeps the grid of the first.
gallery6 1280x720 10 page 1 = 3: #6 425x239 +0+120 +427+120 +854+120 +0+361
// Three rows end two pixels below the dialog; the pair of eight is centred, the seventh not.
gallery9 1280x720 7 = 3: #0 425x239 +0+0 +427+0 +854+0 +0+241 +427+241 +854+241 +0+482
gallery9 1600x400 8 = 3: #0 234x132 +447+1 +683+1 +919+1 +447+135 +683+135 +919+135 +565+269 +801+269
gallery9 1280x720 17 page 1 = 3: #9 425x239 +0+0 +427+0 +854+0 +0+241 +427+241 +854+241 +0+482 +427+482
// One large tile and those around it; who has no tile has an empty rectangle.
cut6 1280x720 7 = 4: #0 851x478 +1+1; 2: #1 424x238 +854+1 +854+241 +1+481 +427+481 +854+481; 2: #6 0x0 +0+0
cut6 1000x700 1 = 4: #0 1000x562 +0+69
// The widest and the tallest whose quotients are equal, and a pixel more.
cut6 655x360 1 = 4: #0 655x360 +0+0
cut6 656x360 1 = 4: #0 640x360 +8+0
cut6 640x368 1 = 4: #0 640x368 +0+0
cut6 640x369 1 = 4: #0 640x360 +0+4
cut6 1000x700 1 polling = 4: #0 664x372 +1+70
cut8 1280x720 9 = 4: #0 958x538 +1+1; 2: #1 318x178 +961+1 +961+181 +961+361 +1+541 +321+541 +641+541 +961+541; 2: #8 0x0 +0+0
cut8 1000x700 8 page 3 = 4: #0 748x419 +1+70; 2: #1 248x138 +751+70 +751+210 +751+351 +1+491 +251+491 +501+491 +751+491
// The strip is centred by what a full page holds, also on the last page.
right 1280x720 9 page 1 speaker 2 = 4: #2 1070x721 +0+0; 2: #7 211x118 +1071+1 +1071+121
right 1280x720 2 speaker 0 = 4: #0 1070x721 +0+0; 2: #1 211x118 +1071+301
right 1600x400 7 speaker 6 = 4: #6 712x401 +0+0; 2: #0 115x65 +713+0 +713+67 +713+134 +713+201 +713+268 +713+335
below 1280x720 7 speaker 0 = 4: #0 1281x600 +0+0; 2: #1 211x118 +2+601 +215+601 +428+601 +641+601 +854+601 +1067+601
top 1280x720 3 speaker 0 = 4: #0 1281x601 +0+120; 2: #1 211x118 +428+1 +641+1
below 1000x700 2 =
// An index outside the list.
below 1000x700 2 speaker 2 polling = 2: #0 164x92 +335+584 +501+584
// One pixel is between the two, not two: the right edge of the first is inclusive.
pair 1280x720 9 page 1 speaker 3 second 1 = 4: #3 639x359 +0+120; 4: #1 639x359 +640+120; 2: #8 211x120 +2+600
pair 1000x700 3 speaker 0 = 4: #0 499x280 +0+151 +500+151; 2: #2 165x92 +417+583
// The speaker is no second one.
pair 1600x400 5 speaker 4 second 4 = 4: #4 472x266 +327+33; 4: #0 472x266 +800+33; 2: #1 117x66 +622+333 +741+333 +860+333
pair 1000x700 2 polling = 2: #0 165x92 +334+583 +501+583
grid2 1280x720 4 = 3: #0 639x359 +0+0 +640+0 +0+360 +640+360
grid4 1000x700 22 page 1 = 2: #16 249x140 +0+68 +250+68 +500+68 +750+68 +0+209 +250+209
share 1280x720 3 =
)";

/// What stands behind a word; -1 without it.
int numberAfter(const QString& word, const QStringList& words)
{
    const int at = words.indexOf(word);
    return at < 0 ? -1 : words[at + 1].toInt();
}

// --- What every arrangement owes, whatever its numbers are --------------------------------------

/// @return what is wrong with the tiles of one page; null when nothing is.
const char* pageFault(const Tiles& page, const zr::LayoutInput& input)
{
    const QSize overhang(2, 2); // of the tiles whose right and lower edges are inclusive
    const QSize most(zr::kMaxSidePx, zr::kMaxSidePx);
    const QRect allowed(QPoint(0, 0), input.area.boundedTo(most) + overhang);
    for (auto tile = page.begin(); tile != page.end(); ++tile) {
        if (tile->index < 0 || tile->index >= input.count)
            return "somebody who is not in the list";
        if (!tile->rect.isEmpty() && !allowed.contains(tile->rect))
            return "a tile leaves the dialog";
        for (auto other = page.begin(); other != tile; ++other) {
            if (other->index == tile->index)
                return "somebody twice";
            if (other->rect.intersects(tile->rect))
                return "tiles overlap";
        }
    }
    return nullptr;
}

/// Checks all pages of a list, and one before and after it. Who is on a page outside the list is on
/// every page, and everybody else on exactly one.
/// @return what is wrong; null when nothing is. `input.page` is where.
const char* listFault(const Mode& mode, zr::LayoutInput& input)
{
    std::vector<int> pagesOf(static_cast<std::size_t>(input.count), 0);
    for (input.page = -1; input.page <= input.count; ++input.page) {
        const Tiles page = mode.place(input);
        if (const char* fault = pageFault(page, input))
            return fault;
        for (const auto& [index, rect, grade] : page)
            pagesOf[static_cast<std::size_t>(index)] += rect.isEmpty() ? 0 : 1;
    }
    for (const int page : {INT_MIN, (INT_MAX - 1) / 6, INT_MAX}) {
        zr::LayoutInput beyond = input;
        beyond.page = page;
        if (const char* fault = pageFault(mode.place(beyond), beyond))
            return fault;
    }
    // A dialog that is hardly visible need not have room for everybody.
    const bool roomy = input.area.width() >= zr::kMinLayoutWidthPx && input.area.height() >= 50;
    const bool isShown = !zr::isSpeakerMode(mode.mode) || input.speaker >= 0 || input.polling;
    for (int index = 0; index < input.count; ++index) {
        const int pages = pagesOf[static_cast<std::size_t>(index)];
        const bool hasTile = isShown && (mode.mode != eLayout8Cut || index < 8);
        if (pages > 1 && pages < input.count + 2)
            return "somebody is on some pages";
        if (pages > 0 ? !hasTile : hasTile && roomy)
            return "somebody is missing, or on a page too many";
    }
    return nullptr;
}

} // namespace

class tst_LayoutGeometry : public QObject
{
    Q_OBJECT

private slots:
    void rectangles()
    {
        for (const QString& line : QString(kArrangements).split('\n', Qt::SkipEmptyParts)) {
            if (line.startsWith("//"))
                continue;
            const QStringList words = line.section(" =", 0, 0).split(' ');
            const QStringList sides = words[1].split('x');
            zr::LayoutInput input{{sides[0].toInt(), sides[1].toInt()}, words[2].toInt()};
            input.page = std::max(numberAfter("page", words), 0);
            input.speaker = numberAfter("speaker", words);
            input.secondSpeaker = numberAfter("second", words);
            input.polling = words.contains("polling");
            const auto* const mode =
                std::find_if(std::begin(kModes), std::end(kModes),
                             [&words](const Mode& one) { return one.name == words[0]; });
            QVERIFY2(mode != std::end(kModes), qPrintable(line));
            input.mode = mode->mode;
            QCOMPARE(mode->name + ": " + text(mode->place(input)),
                     mode->name + ": " + line.section(" =", 1).trimmed());
        }
        // Mode, participants, page, grade; those of the other modes are in the table above.
        const int grades[][4] = {{1, 20, 0, 3}, {1, 7, 1, 3}, {1, 1, 1, 3},
                                 {2, 1, 0, 3},  {3, 8, 0, 3}, {-1, 1, 0, 2}};
        for (const auto& [mode, count, page, grade] : grades)
            QCOMPARE(zr::gridStreamType(mode, count, page), grade);
    }

    void speakerTool()
    {
        const QSize tall(1000, 700);
        const std::pair<QSize, QRect> areas[] = {
            {{1280, 720}, {2, 2, 1276, 716}},
            {tall, {2, 70, 996, 560}},
            {{101, 101}, {2, 23, 97, 54}},
            {{100, 720}, {-908, -178, 1916, 1076}}, // the screen's
            {{720, 100}, {-598, -488, 1916, 1076}},
        };
        for (const auto& [dialog, area] : areas)
            QCOMPARE(zr::speakerToolArea(dialog, {1920, 1080}), area);
        QVERIFY(zr::speakerToolArea({INT_MIN, 0}, {-1, INT_MIN}).isEmpty());

        const std::tuple<QSize, int, int, const char*> rows[] = {
            // dialog, participants, the speaker's index, the tile
            {tall, 1, 0, "4: #0 996x560 +2+70"},
            {tall, 2, 1, "4: #1 1000x700 +0+0"},
            {{100, 720}, 1, 0, "4: #0 100x720 +0+0"}, // no picture is cut off
            {tall, 3, 3, ""},
            {tall, 3, -1, ""},
        };
        for (const auto& [dialog, count, speaker, tile] : rows)
            QCOMPARE(text(zr::speakerToolPlacements({dialog, count, 0, 4, false, speaker},
                                                    zr::speakerToolArea(dialog, {1920, 1080}))),
                     QString(tile));
    }

    void invariantsHoldForGeneratedDialogs()
    {
        const int hostile[] = {INT_MIN, -1, 0, 3, INT_MAX};
        for (const Mode& mode : kModes) {
            if (mode.mode == eLayoutShare)
                continue;
            QRandomGenerator random(20210);
            for (int dialog = 0; dialog < 50; ++dialog) {
                // Small dialogs, where truncation shows most, are as frequent as large ones.
                const int limit = 1 << random.bounded(3, 14);
                QSize area(random.bounded(1, limit), random.bounded(1, limit));
                if (dialog % 5 == 0) // no real one
                    area = {hostile[random.bounded(5)], hostile[random.bounded(5)]};
                for (int count = 0; count <= 20; count += random.bounded(1, 3)) {
                    zr::LayoutInput input{area, count, 0, mode.mode, random.bounded(4) == 0};
                    if (count > 0 && random.bounded(8) > 0)
                        input.speaker = random.bounded(count);
                    if (count > 0 && random.bounded(2) > 0)
                        input.secondSpeaker = random.bounded(count);
                    const char* fault = listFault(mode, input);
                    QString what;
                    QDebug(&what) << mode.name << area << "participants" << count << "speakers"
                                  << input.speaker << input.secondSpeaker << "page" << input.page
                                  << fault;
                    QVERIFY2(!fault, qPrintable(what));
                }
            }
        }
    }

    void tilesOfModes()
    {
        for (const Mode& mode : kModes) {
            QCOMPARE(zr::tilesPerPage(mode.mode, mode.name != "gallery6"), mode.tilesPerPage);
            QCOMPARE(zr::largeTiles(mode.mode), mode.largeTiles);
        }
    }

    void pages()
    {
        // Participants, tiles on a page, pages; a page and where it is clamped to.
        const int rows[][5] = {{0, 6, 0, 3, 0},        {-4, 6, 0, -2, 0},
                               {6, 6, 1, 1, 0},        {7, 6, 2, 1, 1},
                               {30, 9, 4, INT_MIN, 0}, {5, 0, 0, 1, 0},
                               {1, 6, 1, 0, 0},        {INT_MAX, 1, INT_MAX, INT_MAX, INT_MAX - 1}};
        for (const auto& [count, tilesPerPage, pages, page, clamped] : rows) {
            QCOMPARE(zr::pageCount(count, tilesPerPage), pages);
            QCOMPARE(zr::clampPage(page, count, tilesPerPage), clamped);
        }
    }

    void besideSpeakers()
    {
        // Mode, page, who is left after a removal, page to show.
        const int removals[][4] = {{6, 1, 7, 0},                // the page is empty now
                                   {7, 1, 8, 1},  {8, 0, 1, 0}, // the speaker alone
                                   {9, 2, 14, 1}, {1, 1, 7, 1}, {8, INT_MAX, INT_MIN, INT_MAX}};
        for (const auto& [mode, page, remaining, shown] : removals)
            QCOMPARE(zr::pageAfterRemoval(mode, page, remaining), shown);
        // Page, participants, the speaker's index, page to show: six beside the speaker fill one
        // page; without a speaker in the list the seventh has a page.
        const int rows[][4] = {
            {1, 7, 0, 0}, {1, 7, 6, 0}, {1, 7, -1, 1}, {1, 7, 7, 1}, {-3, INT_MIN, -1, 0}};
        for (const auto& [page, count, speaker, clamped] : rows)
            QCOMPARE(zr::clampPageAroundSpeaker(page, count, speaker), clamped);
    }

    void turning()
    {
        // Page, pages, the next one, the next one with wrap, the one before. Without pages it is
        // kept for later.
        const int rows[][5] = {{1, 3, 2, 2, 0},      {2, 3, 2, 0, 1}, {2, 0, 2, 2, 2},
                               {7, 2, 1, 0, 1},      {0, 2, 1, 1, 0}, {0, 1, 0, 0, 0},
                               {INT_MIN, 3, 0, 0, 0}};
        for (const auto& [page, pages, next, wrapped, before] : rows) {
            QCOMPARE(zr::previousPage(page, pages), before);
            QCOMPARE(zr::nextPage(page, pages, false), next);
            QCOMPARE(zr::nextPage(page, pages, true), wrapped);
        }
        // Polling: ticks, pages, page.
        const int polls[][3] = {{2, 3, 2}, {7, 3, 1}, {7, 0, 0}, {-1, 3, 0}};
        for (const auto& [ticks, pages, page] : polls)
            QCOMPARE(zr::pollPage(ticks, pages), page);
        QCOMPARE(zr::pollPeriodMs(0), 1000);
        QCOMPARE(zr::pollPeriodMs(INT_MAX), 2147483000);

        zr::PageTurnGate gate;
        QVERIFY(gate.accept(50)); // the first one always, though the clock has just started
        QVERIFY(!gate.accept(449));
        QVERIFY(gate.accept(450)); // counted from the last accepted one, not from the refused
        QVERIFY(!gate.accept(849));
    }

    void bar()
    {
        // Page, pages, length of the track, where the bar begins, and how long it is.
        const int rows[][5] = {{3, 5, 350, 210, 70}, {999, 1000, 350, 326, 24},
                               {7, 3, 90, 60, 30},   {-1, 3, 90, 0, 30},
                               {0, 0, 90, 0, 90},    {1, 2, 10, 0, 10},
                               {0, 3, -5, 0, 0},     {INT_MAX, INT_MAX, INT_MAX, INT_MAX - 24, 24}};
        for (const auto& [page, pages, track, top, height] : rows) {
            const zr::PageBar bar = zr::pageBar(page, pages, track);
            QCOMPARE(bar.topPx, top);
            QCOMPARE(bar.heightPx, height);
        }
    }

    void windowsAreBroughtIntoView()
    {
        const QRect left(0, 0, 1920, 1040); // a bar below
        const QRect right(1920, 200, 1280, 800);
        const struct
        {
            const char* name;
            std::vector<QRect> screens;
            QPoint wanted, expected;
            QSize window{272, 225};
        } rows[] = {
            {"past right and below", {left}, {1649, 2000}, {1648, 815}},
            {"past left and above", {left}, {-50, -1}, {0, 0}},
            {"across two screens", {left, right}, {1800, 400}, {1800, 400}},
            {"across, above one of them", {left, right}, {1850, 100}, {1920, 200}},
            {"mostly on the taller one", {left, right}, {1700, 50}, {1648, 50}},
            {"the nearest of two", {left, right}, {5000, 5000}, {2928, 775}},
            {"beside them, nearer above", {left, {-500, 1400, 1900, 800}}, {500, 1100}, {500, 815}},
            {"above both, nearer by both axes", {right, left}, {2000, -300}, {1648, 0}},
            {"no screen", {}, {-5000, 7}, {-5000, 7}},
            {"larger than the screen", {right}, {7, 900}, right.topLeft(), {4000, 4000}},
        };
        for (const auto& row : rows)
            QVERIFY2(zr::visiblePlace({row.wanted, row.window}, row.screens) == row.expected,
                     row.name);
    }
};

QTEST_APPLESS_MAIN(tst_LayoutGeometry)
#include "tst_layoutgeometry.moc"
