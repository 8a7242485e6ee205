#include "calendarmath.h"

#include "screenplace.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace zr {

namespace {

constexpr int kMonthsAYear = 12;
constexpr int kDaysAWeek = 7;

int orToday(int requested, int today, int lowest, int highest)
{
    return std::clamp(requested == -1 ? today : requested, lowest, highest);
}

} // namespace

bool isLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysInMonth(int year, int month)
{
    constexpr std::array<int, kMonthsAYear> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const int days = kDays.at(static_cast<std::size_t>(month - 1));
    return month == 2 && isLeapYear(year) ? days + 1 : days;
}

int weekdayOfFirst(int year, int month)
{
    // January and February count as the last months of the year before.
    const bool shifted = month <= 2;
    const int y = shifted ? year - 1 : year;
    const int m = shifted ? month + kMonthsAYear : month;
    const int d = 1;
    const int w = (d + 2 * m + 3 * (m + 1) / 5 + y + y / 4 - y / 100 + y / 400 + 1) % kDaysAWeek;
    return w == 0 ? kDaysAWeek : w;
}

DateChoice resolvedChoice(const DateChoice& requested, const QDateTime& now)
{
    const DateChoice today = choiceOf(now);
    DateChoice choice;
    choice.year = orToday(requested.year, today.year, kFirstYear, kLastYear);
    choice.month = orToday(requested.month, today.month, 1, kMonthsAYear);
    choice.day = orToday(requested.day, today.day, 1, daysInMonth(choice.year, choice.month));
    choice.hour = orToday(requested.hour, today.hour, 0, 23);
    choice.minute = orToday(requested.minute, today.minute, 0, 59);
    choice.second = orToday(requested.second, today.second, 0, 59);
    return choice;
}

DateChoice movedByMonths(const DateChoice& choice, int months)
{
    const int index = choice.year * kMonthsAYear + choice.month - 1 + months;
    if (index < kFirstYear * kMonthsAYear || index >= (kLastYear + 1) * kMonthsAYear)
        return choice;
    DateChoice moved = choice;
    moved.year = index / kMonthsAYear;
    moved.month = index % kMonthsAYear + 1;
    moved.day = std::min(choice.day, daysInMonth(moved.year, moved.month));
    return moved;
}

DateChoice movedByDays(const DateChoice& choice, int days, const QDate& today)
{
    const QDate from(choice.year, choice.month, std::max(choice.day, 1));
    const QDate to = std::max(choice.day > 0 ? from.addDays(days) : from, today);
    DateChoice moved = choice;
    if (to.year() <= kLastYear)
        to.getDate(&moved.year, &moved.month, &moved.day);
    return moved;
}

DateChoice choiceOf(const QDateTime& now)
{
    return {now.date().year(), now.date().month(),  now.date().day(),
            now.time().hour(), now.time().minute(), now.time().second()};
}

DateChoice clearedChoice(const DateChoice& choice)
{
    DateChoice cleared;
    cleared.year = choice.year;
    cleared.month = choice.month;
    return cleared;
}

bool isConfirmable(const DateChoice& choice, const QDateTime& now)
{
    if (choice.year <= 0 || choice.month <= 0 || choice.day <= 0 || choice.hour < 0
        || choice.minute < 0)
        return false;
    // Whole seconds, as the wall clock shows them.
    const QDate day(choice.year, choice.month, choice.day);
    const QTime end(choice.hour, choice.minute, 59, 999);
    return day > now.date() || (day == now.date() && end >= now.time());
}

bool isPastDay(int year, int month, int day, const QDateTime& now)
{
    return QDate(year, month, day) < now.date();
}

std::array<CalendarCell, kCalendarCells> calendarCells(int year, int month)
{
    const int days = daysInMonth(year, month);
    const int lastMonthDays =
        month == 1 ? daysInMonth(year - 1, kMonthsAYear) : daysInMonth(year, month - 1);
    const int before = weekdayOfFirst(year, month) - 1;
    std::array<CalendarCell, kCalendarCells> cells{};
    for (int i = 0; i < kCalendarCells; ++i) {
        const int day = i - before + 1;
        CalendarCell& cell = cells.at(static_cast<std::size_t>(i));
        if (day < 1)
            cell = {lastMonthDays + day, CellMonth::Previous};
        else if (day <= days)
            cell = {day, CellMonth::Shown};
        else
            cell = {day - days, CellMonth::Next};
    }
    return cells;
}

int listScrollPx(int selected, int rows, int rowHeightPx)
{
    const int top = std::clamp(selected - 1, 0, std::max(0, rows - kVisibleListRows));
    return top == 0 ? 0 : (rowHeightPx + kListGapPx) * top + kListTopPx;
}

QPoint pickerTopLeft(const QPoint& at, const QSize& widget, int contentWidthPx,
                     const std::vector<QRect>& areas)
{
    const int margin = (widget.width() - contentWidthPx) / 2;
    const QRect asked(at.x() - contentWidthPx, at.y(), contentWidthPx, widget.height());
    QPoint best = asked.topLeft();
    std::pair<bool, int> least{true, INT_MAX}; // does not fit, distance
    for (const QRect& area : areas) {
        const QPoint place = visiblePlace(asked, {area});
        const std::pair<bool, int> cost{asked.width() > area.width()
                                            || asked.height() > area.height(),
                                        (place - asked.topLeft()).manhattanLength()};
        if (!area.isEmpty() && cost < least) {
            least = cost;
            best = place;
        }
    }
    return best - QPoint(margin, 0);
}

} // namespace zr
