// Time texts: reading them in all their forms, writing them, and the day numbers behind them.
// A time text is "2026-09-01 12:30:00" in the zone of the machine. Read as well: "/", "." and the
// Chinese words between the parts, "20260901" and "20260901123000", "T", a missing time or missing
// seconds, a zone ("Z", "+08:00"), and a time alone, which means today.
#pragma once
#include "44_text_search.h"

struct VL_DateTime
{
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
    bool hasDate = false;
    bool hasTime = false;
};

bool VL_IsLeapYear(intptr_t year);
// 0 for a month or year that does not exist.
intptr_t VL_GetDaysInMonth(intptr_t year, intptr_t month);

// False when the text is no time. A time alone leaves `hasDate` false.
bool VL_ReadDateTime(const std::wstring &text, VL_DateTime &time);
VL_DateTime VL_Now();
// Days count from 1970-01-01 in the calendar of today, years from 1 to 9999.
long long VL_DayNumber(int year, int month, int day);
bool VL_DateOfDay(long long dayNumber, VL_DateTime &time);
long long VL_SecondNumber(const VL_DateTime &time);
// Monday 0 to Sunday 6.
int VL_WeekdayIndex(const VL_DateTime &time);
// Local time of a moment that counts 100 ns since 1601 in world time; false beyond the year 9999.
bool VL_LocalTime(long long moment, VL_DateTime &time);

// YYYY YY M MM D DD H HH h hh m mm s ss SSS, ddd and dddd for the day of the week, tt for the half
// of the day; small y and d serve too. What stands in [ ] is copied.
std::wstring VL_DateTimeAs(const VL_DateTime &time, const std::wstring &format);
std::wstring VL_DateText(const VL_DateTime &time);
std::wstring VL_DateTimeText(const VL_DateTime &time);
