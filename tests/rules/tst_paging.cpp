#include "paging.h"

#include <QtTest>

#include <climits>

class tst_Paging : public QObject
{
    Q_OBJECT

private slots:
    void tilesOfModes()
    {
        // By mode from 0 on: tiles on a page, tiles beside the paged ones.
        const int modes[][2] = {{0, 0}, {6, 0}, {6, 0}, {0, 0}, {0, 0}, {0, 0},  {6, 1}, {6, 1},
                                {6, 1}, {6, 2}, {0, 0}, {4, 0}, {9, 0}, {16, 0}, {0, 0}};
        int mode = 0;
        for (const auto& [tiles, large] : modes) {
            QCOMPARE(zr::tilesPerPage(mode, false), tiles);
            QCOMPARE(zr::tilesPerPage(mode, true), mode == 1 ? 9 : tiles);
            QCOMPARE(zr::largeTiles(mode), large);
            ++mode;
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
        // Page, participants, the speaker's index, page to show.
        const int rows[][4] = {{1, 7, 0, 0},
                               {1, 7, 6, 0}, // six beside the speaker fill one page
                               {1, 7, -1, 1},
                               {1, 7, 7, 1}, // without one the seventh has a page
                               {-3, INT_MIN, -1, 0}};
        for (const auto& [page, count, speaker, clamped] : rows)
            QCOMPARE(zr::clampPageAroundSpeaker(page, count, speaker), clamped);
    }

    void turning()
    {
        // Page, pages, the next one, the next one with wrap, the one before.
        const int rows[][5] = {{1, 3, 2, 2, 0}, {2, 3, 2, 0, 1},       {0, 1, 0, 0, 0},
                               {2, 0, 2, 2, 2}, {INT_MIN, 3, 0, 0, 0}, {7, 2, 1, 0, 1},
                               {0, 2, 1, 1, 0}}; // without pages it is kept for later
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

    void gate()
    {
        zr::PageTurnGate gate;
        QVERIFY(gate.accept(50)); // the first one always, though the clock has just started
        QVERIFY(!gate.accept(449));
        QVERIFY(gate.accept(450)); // counted from the last accepted one, not from the refused
        QVERIFY(!gate.accept(849));
    }
};

QTEST_APPLESS_MAIN(tst_Paging)
#include "tst_paging.moc"
