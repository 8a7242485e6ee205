#include "calendarmath.h"

#include <QtTest>

Q_DECLARE_METATYPE(zr::DateChoice)

namespace {

QDateTime at(int y, int mo, int d, int h = 0, int mi = 0, int s = 0, int ms = 0)
{
    return {QDate(y, mo, d), QTime(h, mi, s, ms)};
}

QVector<int> show(const zr::DateChoice& c)
{
    return {c.year, c.month, c.day, c.hour, c.minute, c.second};
}

} // namespace

class TestCalendarMath : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithQtsCalendar();
    void resolvesWhatIsRequested_data();
    void resolvesWhatIsRequested();
    void movesByMonths_data();
    void movesByMonths();
    void movesByDays_data();
    void movesByDays();
    void confirmsTheFutureOnly_data();
    void confirmsTheFutureOnly();
    void scrollsListsToTheSelection();
    void opensInside_data();
    void opensInside();
};

void TestCalendarMath::agreesWithQtsCalendar()
{
    for (int year = zr::kFirstYear; year <= zr::kLastYear; ++year) {
        QCOMPARE(zr::isLeapYear(year), QDate::isLeapYear(year));
        for (int month = 1; month <= 12; ++month) {
            const QDate first(year, month, 1);
            QCOMPARE(zr::daysInMonth(year, month), first.daysInMonth());
            QCOMPARE(zr::weekdayOfFirst(year, month), first.dayOfWeek());
            // The sheet is the days from the Monday at or before the 1st, one after the other.
            QDate day = first.addDays(1 - first.dayOfWeek());
            for (const zr::CalendarCell& cell : zr::calendarCells(year, month)) {
                QCOMPARE(cell.day, day.day());
                const auto place = day < first            ? zr::CellMonth::Previous
                                   : day.month() == month ? zr::CellMonth::Shown
                                                          : zr::CellMonth::Next;
                QVERIFY2(cell.month == place, qPrintable(day.toString(Qt::ISODate)));
                day = day.addDays(1);
            }
        }
    }
}

void TestCalendarMath::resolvesWhatIsRequested_data()
{
    QTest::addColumn<zr::DateChoice>("requested");
    QTest::addColumn<zr::DateChoice>("expected");
    using Choice = zr::DateChoice;
    // Now is 31 January 2026, 18:30:15.
    QTest::newRow("as it is") << Choice{2027, 2, 3, 4, 5, 6} << Choice{2027, 2, 3, 4, 5, 6};
    QTest::newRow("all of now") << Choice{-1, -1, -1, -1, -1, -1}
                                << Choice{2026, 1, 31, 18, 30, 15};
    QTest::newRow("today's day in a shorter month")
        << Choice{-1, 2, -1, 0, 0, 0} << Choice{2026, 2, 28, 0, 0, 0};
    QTest::newRow("only the time of now")
        << Choice{2028, 2, 29, -1, -1, 0} << Choice{2028, 2, 29, 18, 30, 0};
    QTest::newRow("too high") << Choice{2026, 13, 32, 99, 60, 61}
                              << Choice{2026, 12, 31, 23, 59, 59};
    QTest::newRow("too low") << Choice{0, 0, 0, -2, -2, -2} << Choice{1970, 1, 1, 0, 0, 0};
    QTest::newRow("far out") << Choice{INT_MAX, INT_MIN, INT_MAX, INT_MIN, INT_MAX, INT_MIN}
                             << Choice{2199, 1, 31, 0, 59, 0};
    QTest::newRow("29 February of another year")
        << Choice{2027, 2, 29, 1, 1, 1} << Choice{2027, 2, 28, 1, 1, 1};
}

void TestCalendarMath::resolvesWhatIsRequested()
{
    QFETCH(zr::DateChoice, requested);
    QFETCH(zr::DateChoice, expected);
    QCOMPARE(show(zr::resolvedChoice(requested, at(2026, 1, 31, 18, 30, 15))), show(expected));
}

void TestCalendarMath::movesByMonths_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<int>("months");
    QTest::addColumn<QDate>("to");
    QTest::newRow("31 to 30 days") << QDate(2026, 3, 31) << 1 << QDate(2026, 4, 30);
    QTest::newRow("back to February") << QDate(2024, 3, 31) << -1 << QDate(2024, 2, 29);
    QTest::newRow("29 February, a year later") << QDate(2024, 2, 29) << 12 << QDate(2025, 2, 28);
    QTest::newRow("turn of the year") << QDate(2026, 1, 5) << -1 << QDate(2025, 12, 5);
    QTest::newRow("not before the first year") << QDate(1970, 6, 9) << -12 << QDate(1970, 6, 9);
    QTest::newRow("not beyond the last year") << QDate(2199, 12, 9) << 1 << QDate(2199, 12, 9);
}

void TestCalendarMath::movesByMonths()
{
    QFETCH(QDate, from);
    QFETCH(int, months);
    QFETCH(QDate, to);
    const zr::DateChoice choice{from.year(), from.month(), from.day(), 7, 8, 9};
    const zr::DateChoice expected{to.year(), to.month(), to.day(), 7, 8, 9};
    QCOMPARE(show(zr::movedByMonths(choice, months)), show(expected));
    const zr::DateChoice none = zr::clearedChoice(choice);
    QCOMPARE(show(zr::movedByMonths(none, months)), show(zr::clearedChoice(expected)));
    QVERIFY(!zr::isConfirmable(none, at(1969, 1, 1)));
}

void TestCalendarMath::movesByDays_data()
{
    QTest::addColumn<zr::DateChoice>("from"); // today is 10 March 2026
    QTest::addColumn<int>("days");
    QTest::addColumn<QDate>("to");
    using Choice = zr::DateChoice;
    QTest::newRow("into the next year") << Choice{2026, 12, 28} << 7 << QDate(2027, 1, 4);
    QTest::newRow("not before today") << Choice{2026, 3, 12} << -7 << QDate(2026, 3, 10);
    QTest::newRow("out of the past") << Choice{2025, 1, 31} << -1 << QDate(2026, 3, 10);
    QTest::newRow("no day yet") << Choice{2026, 5, 0} << 7 << QDate(2026, 5, 1);
    QTest::newRow("no day yet, this month") << Choice{2026, 3, 0} << 1 << QDate(2026, 3, 10);
    QTest::newRow("not beyond the last year") << Choice{2199, 12, 31} << 1 << QDate(2199, 12, 31);
}

void TestCalendarMath::movesByDays()
{
    QFETCH(zr::DateChoice, from);
    QFETCH(int, days);
    QFETCH(QDate, to);
    const zr::DateChoice moved = zr::movedByDays(from, days, {2026, 3, 10});
    QCOMPARE(QDate(moved.year, moved.month, moved.day), to);
    QCOMPARE(moved.hour, from.hour);
}

void TestCalendarMath::confirmsTheFutureOnly_data()
{
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("past"); // the day
    // Chosen is 28 February 2026, 18:30.
    QTest::newRow("long before") << at(2025, 12, 31, 23, 59) << true << false;
    QTest::newRow("in the minute") << at(2026, 2, 28, 18, 30, 0) << true << false;
    QTest::newRow("in its last second") << at(2026, 2, 28, 18, 30, 59, 999) << true << false;
    QTest::newRow("a second too late") << at(2026, 2, 28, 18, 31) << false << false;
    QTest::newRow("at the end of the day") << at(2026, 2, 28, 23, 59, 59, 999) << false << false;
    QTest::newRow("the next day") << at(2026, 3, 1) << false << true;
    QTest::newRow("the next year, an earlier month") << at(2027, 1, 1) << false << true;
}

void TestCalendarMath::confirmsTheFutureOnly()
{
    QFETCH(QDateTime, now);
    QFETCH(bool, valid);
    QFETCH(bool, past);
    const zr::DateChoice choice{2026, 2, 28, 18, 30, 0};
    QCOMPARE(zr::isConfirmable(choice, now), valid);
    QCOMPARE(zr::isPastDay(2026, 2, 28, now), past);
}

void TestCalendarMath::scrollsListsToTheSelection()
{
    constexpr int kHeight = 28;
    for (const int hour : {18, 23})
        QCOMPARE(zr::listScrollPx(hour, 24, kHeight), 33 * 17 + 3);
    for (const int minute : {54, 59})
        QCOMPARE(zr::listScrollPx(minute, 60, kHeight), 33 * 53 + 3);
    QCOMPARE(zr::listScrollPx(-1, 60, kHeight), 0);
    for (const int rows : {24, 60}) {
        for (int row = 0; row < rows; ++row) {
            const int top = zr::kListTopPx + row * (kHeight + zr::kListGapPx)
                            - zr::listScrollPx(row, rows, kHeight);
            QVERIFY2(top >= 0 && top + kHeight <= zr::kVisibleListRows * (kHeight + zr::kListGapPx),
                     qPrintable(QStringLiteral("row %1 of %2").arg(row).arg(rows)));
        }
    }
}

void TestCalendarMath::opensInside_data()
{
    QTest::addColumn<QPoint>("asked");
    QTest::addColumn<QPoint>("expected");
    // Two areas, of 1000 x 800 at (-50, 20), and right of it, higher. A sliver has no room.
    QTest::newRow("room enough") << QPoint(700, 100) << QPoint(290, 100);
    QTest::newRow("beyond the left edge") << QPoint(100, 100) << QPoint(-60, 100);
    QTest::newRow("beyond the bottom") << QPoint(700, 790) << QPoint(290, 520);
    QTest::newRow("above the top") << QPoint(700, -5000) << QPoint(940, -900);
    QTest::newRow("up to the border of two") << QPoint(950, 100) << QPoint(540, 100);
    QTest::newRow("a little over the border") << QPoint(1000, 100) << QPoint(540, 100);
    QTest::newRow("more on the second") << QPoint(1200, 100) << QPoint(940, 100);
    QTest::newRow("beyond the second") << QPoint(9000, 790) << QPoint(1540, 400);
}

void TestCalendarMath::opensInside()
{
    QFETCH(QPoint, asked);
    QFETCH(QPoint, expected);
    // A widget of 420 x 300 with a content of 400 pixels.
    const std::vector<QRect> areas{
        {-50, 20, 1000, 800}, {}, {950, -900, 1000, 1600}, {940, 20, 9, 800}};
    QCOMPARE(zr::pickerTopLeft(asked, {420, 300}, 400, areas), expected);
    // Too small an area shows the top left.
    QCOMPARE(zr::pickerTopLeft(asked, {420, 300}, 400, {{0, 0, 200, 100}}), QPoint(-10, 0));
    QCOMPARE(zr::pickerTopLeft(asked, {420, 300}, 400, {}), asked - QPoint(410, 0));
}

QTEST_APPLESS_MAIN(TestCalendarMath)
#include "tst_calendarmath.moc"
