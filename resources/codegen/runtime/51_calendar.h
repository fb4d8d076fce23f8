// Calendar commands: months, quarters, weeks, workdays, ages, comparisons.
// All take the time texts of 50_date_time.h. Weeks begin on Monday; workdays are Monday to Friday,
// holidays are not known.
#pragma once
#include "50_date_time.h"

intptr_t VL_GetDayOfYear(const std::wstring &date = VL_GetCurrentDate());
// Week 1 is the one with the year's first Thursday, so that the first days of January may belong to
// week 52 or 53.
intptr_t VL_GetWeekOfYear(const std::wstring &date = VL_GetCurrentDate());
intptr_t VL_GetQuarter(const std::wstring &date = VL_GetCurrentDate());
bool VL_IsValidDate(const std::wstring &date);

// -1, 0 or 1; 0 too when one of them is no time.
intptr_t VL_CompareTime(const std::wstring &left, const std::wstring &right);
// Full years of age on the day `on`; 0 before birth.
intptr_t VL_GetAge(const std::wstring &birthday, const std::wstring &on = VL_GetCurrentDate());

std::wstring VL_GetMonthFirstDay(const std::wstring &date = VL_GetCurrentDate());
std::wstring VL_GetMonthLastDay(const std::wstring &date = VL_GetCurrentDate());
std::wstring VL_GetQuarterFirstDay(const std::wstring &date = VL_GetCurrentDate());
std::wstring VL_GetQuarterLastDay(const std::wstring &date = VL_GetCurrentDate());
std::wstring VL_GetYearFirstDay(const std::wstring &date = VL_GetCurrentDate());
std::wstring VL_GetYearLastDay(const std::wstring &date = VL_GetCurrentDate());
std::wstring VL_GetWeekFirstDay(const std::wstring &date = VL_GetCurrentDate());
std::wstring VL_GetWeekLastDay(const std::wstring &date = VL_GetCurrentDate());

bool VL_IsWorkday(const std::wstring &date = VL_GetCurrentDate());
bool VL_IsWeekend(const std::wstring &date = VL_GetCurrentDate());
bool VL_IsToday(const std::wstring &date);
bool VL_IsYesterday(const std::wstring &date);
bool VL_IsTomorrow(const std::wstring &date);
// The `days`-th workday after the date, before it when negative; for 0 the date itself or the next
// workday.
std::wstring VL_GetWorkday(const std::wstring &date, long long days);
// Workdays from one date to the other, both included, in either order.
long long VL_GetWorkdayCount(const std::wstring &start, const std::wstring &end);

// How a person names a time as seen from `now`: "5 minutes ago", "tomorrow" in Chinese.
std::wstring VL_FriendlyTime(const std::wstring &time,
                             const std::wstring &now = VL_GetCurrentTime());
