// The calendar of the date picker: months, the moment that is chosen, and what of it can be
// confirmed. No clock: whoever asks brings the present moment.
#pragma once

#include <QDateTime>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <array>
#include <vector>

namespace zr {

/// The years that the picker can show.
constexpr int kFirstYear = 1970;
constexpr int kLastYear = 2199;

constexpr int kCalendarRows = 6;
constexpr int kCalendarColumns = 7; ///< Monday to Sunday
constexpr int kCalendarCells = kCalendarRows * kCalendarColumns;

[[nodiscard]] bool isLeapYear(int year);
/// @param month 1 to 12
[[nodiscard]] int daysInMonth(int year, int month);
/// Weekday of a month's first day, 1 (Monday) to 7 (Sunday), by the congruence of Kim Larsen.
[[nodiscard]] int weekdayOfFirst(int year, int month);

/// What is chosen in the picker.
struct DateChoice
{
    int year = 0;
    int month = 0;   ///< 1 to 12
    int day = 0;     ///< 1 to 31, 0 while no day is chosen
    int hour = -1;   ///< 0 to 23, -1 while none is chosen
    int minute = -1; ///< 0 to 59, -1 while none is chosen
    int second = 0;

    bool operator==(const DateChoice& other) const
    {
        return year == other.year && month == other.month && day == other.day && hour == other.hour
               && minute == other.minute && second == other.second;
    }
};

/// The choice that a request means: -1 stands for today's value, everything else is brought into
/// its range, the day last, so that it exists in its month.
[[nodiscard]] DateChoice resolvedChoice(const DateChoice& requested, const QDateTime& now);

/// The choice some months later, or earlier for a negative number. A day that the month does not
/// have becomes its last one. Beyond the years of the picker nothing changes.
[[nodiscard]] DateChoice movedByMonths(const DateChoice& choice, int months);

/// The choice some days later, or earlier, but not before today: there is nothing to choose.
/// Without a day it is the first one of the month that can be chosen. Beyond the last year nothing
/// changes.
[[nodiscard]] DateChoice movedByDays(const DateChoice& choice, int days, const QDate& today);

/// The present minute.
[[nodiscard]] DateChoice choiceOf(const QDateTime& now);

/// Without day and time; the month stays, so that it can be shown.
[[nodiscard]] DateChoice clearedChoice(const DateChoice& choice);

/// True when day, hour and minute are chosen and the last second of that minute is not past, as the
/// wall clock shows both: what it skips or repeats on the day of a change is the host's to read,
/// since the record has no offset.
[[nodiscard]] bool isConfirmable(const DateChoice& choice, const QDateTime& now);

/// True when the day has ended before `now`.
[[nodiscard]] bool isPastDay(int year, int month, int day, const QDateTime& now);

enum class CellMonth
{
    Previous,
    Shown,
    Next
};

struct CalendarCell
{
    int day;
    CellMonth month;
};

/// The cells of a month's sheet, row by row. The first row begins on the Monday at or before the
/// 1st; cells outside the month carry the days of its neighbours.
[[nodiscard]] std::array<CalendarCell, kCalendarCells> calendarCells(int year, int month);

/// Rows of an hour or minute list that can be seen at once.
constexpr int kVisibleListRows = 7;
/// Pixels between two rows of a list.
constexpr int kListGapPx = 5;
/// Pixels above the first row.
constexpr int kListTopPx = 3;

/// Where a list has to be scrolled to for the selected row to be seen, if possible with one above
/// it; -1 stands for none. @param rows of the list
[[nodiscard]] int listScrollPx(int selected, int rows, int rowHeightPx);

/// Where the picker's top left corner goes: the content, centred in the widget, ends at `at.x()`
/// and begins at `at.y()`, but lies in one of the areas: of those in which it fits, the one to
/// which it has to be moved least. Where it fits into none, its left and top edges are seen.
/// @param areas that can be seen, one for each screen; without any, it stays where it is asked for
[[nodiscard]] QPoint pickerTopLeft(const QPoint& at, const QSize& widget, int contentWidthPx,
                                   const std::vector<QRect>& areas);

/// Whether the picker is drawn in double size. Unlike the rest of the module it asks for the
/// height too.
constexpr bool isLargePickerScreen(int widthPx, int heightPx)
{
    return widthPx >= 3501 && heightPx >= 1801;
}

} // namespace zr
