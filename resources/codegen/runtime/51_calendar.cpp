// Calendar commands: months, quarters, weeks, workdays, ages, comparisons.
#include "51_calendar.h"

#include <algorithm>

namespace vl_calendar {
namespace {

long long dayNumber(const VL_DateTime &time)
{
    return VL_DayNumber(time.year, time.month, time.day);
}

// Monday 0 to Sunday 6 of a day number.
long long weekday(long long day)
{
    return ((day + 3) % 7 + 7) % 7;
}

std::wstring dayText(long long day)
{
    VL_DateTime time;
    return VL_DateOfDay(day, time) ? VL_DateText(time) : std::wstring();
}

// The first day of the period of `months` months (1, 3 or 12) in which a date lies, or the first
// day behind that period.
std::wstring periodEdge(const std::wstring &date, int months, bool first)
{
    VL_DateTime time;
    if (!VL_ReadDateTime(date, time))
        return std::wstring();
    int month = (time.month - 1) / months * months + 1;
    if (first)
        return dayText(VL_DayNumber(time.year, month, 1));
    month += months;
    return dayText(VL_DayNumber(time.year + month / 13, (month - 1) % 12 + 1, 1) - 1);
}

// A date whose distance from today in days is `days`.
bool isDaysFromToday(const std::wstring &date, long long days)
{
    VL_DateTime time;
    return VL_ReadDateTime(date, time) && dayNumber(time) - dayNumber(VL_Now()) == days;
}

// Workdays from the beginning of the week of day 0 up to and with `day`.
long long workdaysUpTo(long long day)
{
    const long long sinceMonday = day + 3;
    const long long weeks = (sinceMonday - weekday(day)) / 7;
    return weeks * 5 + std::min(weekday(day) + 1, 5LL);
}

// Moves from a workday by a number of workdays in O(1).
long long movedByWorkdays(long long day, long long days)
{
    day += days / 5 * 7;
    const long long rest = days % 5;
    const long long reached = weekday(day) + rest;
    return day + rest + (reached > 4 ? 2 : reached < 0 ? -2 : 0);
}

std::wstring distanceText(long long count, const wchar_t *unit, bool past)
{
    return std::to_wstring(count) + unit + (past ? L"\u524D" : L"\u540E");
}

std::wstring dayDistanceText(long long days, bool past)
{
    if (days <= 1)
        return past ? L"\u6628\u5929" : L"\u660E\u5929";
    if (days == 2)
        return past ? L"\u524D\u5929" : L"\u540E\u5929";
    return distanceText(days, L"\u5929", past);
}

} // namespace
} // namespace vl_calendar

intptr_t VL_GetDayOfYear(const std::wstring &date)
{
    VL_DateTime time;
    if (!VL_ReadDateTime(date, time))
        return 0;
    return (intptr_t)(vl_calendar::dayNumber(time) - VL_DayNumber(time.year, 1, 1) + 1);
}

intptr_t VL_GetWeekOfYear(const std::wstring &date)
{
    VL_DateTime time;
    if (!VL_ReadDateTime(date, time))
        return 0;
    // The Thursday of its week decides to which year a day belongs.
    const long long day = vl_calendar::dayNumber(time);
    const long long thursday = day - vl_calendar::weekday(day) + 3;
    int year = time.year;
    if (thursday < VL_DayNumber(year, 1, 1))
        --year;
    else if (thursday >= VL_DayNumber(year + 1, 1, 1))
        ++year;
    return (intptr_t)((thursday - VL_DayNumber(year, 1, 1)) / 7 + 1);
}

intptr_t VL_GetQuarter(const std::wstring &date)
{
    return (VL_GetMonth(date) + 2) / 3;
}

bool VL_IsValidDate(const std::wstring &date)
{
    VL_DateTime time;
    return VL_ReadDateTime(date, time) && time.hasDate;
}

intptr_t VL_CompareTime(const std::wstring &left, const std::wstring &right)
{
    VL_DateTime a, b;
    if (!VL_ReadDateTime(left, a) || !VL_ReadDateTime(right, b))
        return 0;
    const long long difference =
        (VL_SecondNumber(a) - VL_SecondNumber(b)) * 1000 + a.millisecond - b.millisecond;
    return difference < 0 ? -1 : difference > 0 ? 1 : 0;
}

intptr_t VL_GetAge(const std::wstring &birthday, const std::wstring &on)
{
    return (intptr_t)std::max(VL_TimeDiff(VL_GetDate(birthday), VL_GetDate(on), L"year"), 0LL);
}

std::wstring VL_GetMonthFirstDay(const std::wstring &date)
{
    return vl_calendar::periodEdge(date, 1, true);
}

std::wstring VL_GetMonthLastDay(const std::wstring &date)
{
    return vl_calendar::periodEdge(date, 1, false);
}

std::wstring VL_GetQuarterFirstDay(const std::wstring &date)
{
    return vl_calendar::periodEdge(date, 3, true);
}

std::wstring VL_GetQuarterLastDay(const std::wstring &date)
{
    return vl_calendar::periodEdge(date, 3, false);
}

std::wstring VL_GetYearFirstDay(const std::wstring &date)
{
    return vl_calendar::periodEdge(date, 12, true);
}

std::wstring VL_GetYearLastDay(const std::wstring &date)
{
    return vl_calendar::periodEdge(date, 12, false);
}

std::wstring VL_GetWeekFirstDay(const std::wstring &date)
{
    VL_DateTime time;
    if (!VL_ReadDateTime(date, time))
        return std::wstring();
    const long long day = vl_calendar::dayNumber(time);
    return vl_calendar::dayText(day - vl_calendar::weekday(day));
}

std::wstring VL_GetWeekLastDay(const std::wstring &date)
{
    VL_DateTime time;
    if (!VL_ReadDateTime(date, time))
        return std::wstring();
    const long long day = vl_calendar::dayNumber(time);
    return vl_calendar::dayText(day - vl_calendar::weekday(day) + 6);
}

bool VL_IsWorkday(const std::wstring &date)
{
    const intptr_t weekday = VL_GetWeekday(date);
    return weekday >= 1 && weekday <= 5;
}

bool VL_IsWeekend(const std::wstring &date)
{
    return VL_GetWeekday(date) >= 6;
}

bool VL_IsToday(const std::wstring &date)
{
    return vl_calendar::isDaysFromToday(date, 0);
}

bool VL_IsYesterday(const std::wstring &date)
{
    return vl_calendar::isDaysFromToday(date, -1);
}

bool VL_IsTomorrow(const std::wstring &date)
{
    return vl_calendar::isDaysFromToday(date, 1);
}

std::wstring VL_GetWorkday(const std::wstring &date, long long days)
{
    VL_DateTime time;
    const long long beyondCalendar = 4000000;
    if (!VL_ReadDateTime(date, time) || days > beyondCalendar || days < -beyondCalendar)
        return std::wstring();
    long long day = vl_calendar::dayNumber(time);
    const long long index = vl_calendar::weekday(day);
    // From a weekend one counts from the workday that lies against the direction.
    if (index > 4 && days > 0)
        day -= index - 4;
    else if (index > 4)
        day += 7 - index;
    return vl_calendar::dayText(vl_calendar::movedByWorkdays(day, days));
}

long long VL_GetWorkdayCount(const std::wstring &start, const std::wstring &end)
{
    VL_DateTime a, b;
    if (!VL_ReadDateTime(start, a) || !VL_ReadDateTime(end, b))
        return 0;
    const long long first = std::min(vl_calendar::dayNumber(a), vl_calendar::dayNumber(b));
    const long long last = std::max(vl_calendar::dayNumber(a), vl_calendar::dayNumber(b));
    return vl_calendar::workdaysUpTo(last) - vl_calendar::workdaysUpTo(first - 1);
}

std::wstring VL_FriendlyTime(const std::wstring &time, const std::wstring &now)
{
    VL_DateTime then, base;
    if (!VL_ReadDateTime(time, then) || !VL_ReadDateTime(now, base))
        return std::wstring();
    const long long seconds = VL_SecondNumber(base) - VL_SecondNumber(then);
    const bool past = seconds >= 0;
    const long long distance = past ? seconds : -seconds;
    if (distance < 60)
        return L"\u521A\u521A";
    if (distance < 3600)
        return vl_calendar::distanceText(distance / 60, L"\u5206\u949F", past);
    if (distance < 86400)
        return vl_calendar::distanceText(distance / 3600, L"\u5C0F\u65F6", past);
    const long long months = std::abs(VL_TimeDiff(VL_DateText(then), VL_DateText(base), L"month"));
    if (months >= 12)
        return vl_calendar::distanceText(months / 12, L"\u5E74", past);
    if (months >= 1)
        return vl_calendar::distanceText(months, L"\u4E2A\u6708", past);
    const long long days = vl_calendar::dayNumber(base) - vl_calendar::dayNumber(then);
    return vl_calendar::dayDistanceText(past ? days : -days, past);
}
