#include "calendarmath.h"

#include <QtTest>

namespace {

using Choice = zr::DateChoice;

QVector<int> show(const Choice& c)
{
    return {c.year, c.month, c.day, c.hour, c.minute, c.second};
}

Choice choiceOf(QDate day)
{
    return {day.year(), day.month(), day.day(), 7, 8, 9};
}

} // namespace

class tst_CalendarMath : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithQtsCalendar()
    {
        for (QDate first(zr::kFirstYear, 1, 1); first.year() <= zr::kLastYear;
             first = first.addMonths(1)) {
            // The sheet is the days from the Monday at or before the 1st, one after the other.
            QDate day = first.addDays(1 - first.dayOfWeek());
            for (const zr::CalendarCell& cell : zr::calendarCells(first.year(), first.month())) {
                QCOMPARE(cell.day, day.day());
                const auto place = day < first                    ? zr::CellMonth::Previous
                                   : day.month() == first.month() ? zr::CellMonth::Shown
                                                                  : zr::CellMonth::Next;
                QVERIFY2(cell.month == place, qPrintable(day.toString(Qt::ISODate)));
                day = day.addDays(1);
            }
        }
    }

    void resolvesWhatIsRequested()
    {
        const std::pair<Choice, Choice> rows[] = {
            {{2027, 2, 3, 4, 5, 6}, {2027, 2, 3, 4, 5, 6}},
            {{-1, -1, -1, -1, -1, -1}, {2026, 1, 31, 18, 30, 15}},
            {{-1, 2, -1, 0, 0, 0}, {2026, 2, 28, 0, 0, 0}}, // today's day in a shorter month
            {{2026, 13, 32, 99, 60, 61}, {2026, 12, 31, 23, 59, 59}},
            {{0, 0, 0, -2, -2, -2}, {1970, 1, 1, 0, 0, 0}},
            {{INT_MAX, INT_MIN, INT_MAX, INT_MIN, INT_MAX, INT_MIN}, {2199, 1, 31, 0, 59, 0}},
        };
        const QDateTime now(QDate(2026, 1, 31), QTime(18, 30, 15));
        for (const auto& [requested, expected] : rows)
            QCOMPARE(show(zr::resolvedChoice(requested, now)), show(expected));
    }

    void moves()
    {
        const std::tuple<QDate, int, QDate> byMonths[] = {
            {{2026, 3, 31}, 1, {2026, 4, 30}},  {{2024, 3, 31}, -1, {2024, 2, 29}},
            {{2024, 2, 29}, 12, {2025, 2, 28}}, {{2026, 1, 5}, -1, {2025, 12, 5}},
            {{1970, 6, 9}, -12, {1970, 6, 9}}, // not before the first year
            {{2199, 12, 9}, 1, {2199, 12, 9}}, // nor beyond the last
            {{1970, 2, 9}, -1, {1970, 1, 9}},   {{2199, 11, 9}, 1, {2199, 12, 9}},
        };
        for (const auto& [from, months, to] : byMonths) {
            QCOMPARE(show(zr::movedByMonths(choiceOf(from), months)), show(choiceOf(to)));
            const Choice none = zr::clearedChoice(choiceOf(from));
            QCOMPARE(show(zr::movedByMonths(none, months)), show(zr::clearedChoice(choiceOf(to))));
        }
        const std::tuple<Choice, int, QDate> byDays[] = {
            // today is 10 March 2026
            {{2026, 12, 28}, 7, {2027, 1, 4}}, {{2026, 3, 12}, -7, {2026, 3, 10}},
            {{2026, 5, 0}, 7, {2026, 5, 1}}, // no day yet
            {{2026, 3, 0}, 1, {2026, 3, 10}},  {{2199, 12, 31}, 1, {2199, 12, 31}},
        };
        for (const auto& [from, days, to] : byDays) {
            const Choice moved = zr::movedByDays(from, days, {2026, 3, 10});
            QCOMPARE(QDate(moved.year, moved.month, moved.day), to);
            QCOMPARE(moved.hour, from.hour);
        }
    }

    void confirmsTheFutureOnly()
    {
        const Choice choice{2026, 2, 28, 18, 30, 0};
        const std::tuple<QDateTime, bool, bool> rows[] = {
            // now, whether the choice can be confirmed, whether its day is past
            {{{2025, 12, 31}, {23, 59}}, true, false},
            {{{2026, 2, 28}, {18, 30, 59, 999}}, true, false}, // the whole minute
            {{{2026, 2, 28}, {18, 31}}, false, false},
            {{{2026, 3, 1}, {0, 0}}, false, true},
        };
        for (const auto& [now, confirmable, dayIsPast] : rows) {
            QCOMPARE(zr::isConfirmable(choice, now), confirmable);
            QCOMPARE(zr::isPastDay(2026, 2, 28, now), dayIsPast);
        }
        const QDateTime longAgo(QDate(1969, 1, 1), QTime(0, 0));
        QVERIFY(zr::isConfirmable({2026, 1, 1, 0, 0, 0}, longAgo));
        for (const Choice& part : {Choice{2026, 1, 0, 0, 0, 0}, Choice{2026, 1, 1, -1, 0, 0},
                                   Choice{2026, 1, 1, 0, -1, 0}})
            QVERIFY(!zr::isConfirmable(part, longAgo));
    }

    void scrollsListsToTheSelection()
    {
        // Selected row, rows, how far the list of 28 pixels a row is scrolled.
        const int rows[][3] = {{-1, 60, 0},           {1, 24, 0},
                               {2, 24, 33 + 3},       {18, 24, 33 * 17 + 3},
                               {23, 24, 33 * 17 + 3}, {59, 60, 33 * 53 + 3}};
        for (const auto& [selected, count, px] : rows)
            QCOMPARE(zr::listScrollPx(selected, count, 28), px);
    }

    void opensInside()
    {
        // Two areas, of 1000 x 800 at (-50, 20), and right of it, higher. A sliver has no room.
        const std::vector<QRect> areas{
            {-50, 20, 1000, 800}, {}, {950, -900, 1000, 1600}, {940, 20, 9, 800}};
        const std::tuple<QPoint, QPoint, std::vector<QRect>> rows[] = {
            {{700, 100}, {290, 100}, areas},
            {{100, 100}, {-60, 100}, areas}, // the margin may lie outside
            {{700, 790}, {290, 520}, areas},
            {{700, -5000}, {940, -900}, areas},
            {{1000, 100}, {540, 100}, areas}, // a little over the border of the two
            {{1200, 100}, {940, 100}, areas},
            {{700, 100}, {-10, 0}, {{0, 0, 200, 100}}}, // too small an area shows the top left
            {{700, 100}, {290, 100}, {}},
        };
        // A widget of 420 x 300 with a content of 400 pixels.
        for (const auto& [asked, place, screens] : rows)
            QCOMPARE(zr::pickerTopLeft(asked, {420, 300}, 400, screens), place);
    }
};

QTEST_APPLESS_MAIN(tst_CalendarMath)
#include "tst_calendarmath.moc"
