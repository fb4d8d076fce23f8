// Time commands: the present time, parts, timestamps, formats, arithmetic, run times.
// They take and give the time texts of 49_date_text.h. What cannot be read gives empty text or 0.
#pragma once
#include "49_date_text.h"

std::wstring VL_GetCurrentTime();
std::wstring VL_GetCurrentDate();
// The time (date) part of a time text.
std::wstring VL_GetTime(const std::wstring &time = VL_GetCurrentTime());
std::wstring VL_GetDate(const std::wstring &time = VL_GetCurrentTime());

intptr_t VL_GetYear(const std::wstring &time = VL_GetCurrentTime());
intptr_t VL_GetMonth(const std::wstring &time = VL_GetCurrentTime());
intptr_t VL_GetDay(const std::wstring &time = VL_GetCurrentTime());
intptr_t VL_GetHour(const std::wstring &time = VL_GetCurrentTime());
intptr_t VL_GetMinute(const std::wstring &time = VL_GetCurrentTime());
intptr_t VL_GetSecond(const std::wstring &time = VL_GetCurrentTime());
// Monday 1 to Sunday 7.
intptr_t VL_GetWeekday(const std::wstring &time = VL_GetCurrentTime());

// Seconds (milliseconds) since the start of 1970 in world time.
long long VL_GetTimestamp(bool milliseconds = false);
long long VL_TimeToTimestamp(const std::wstring &time);
// A timestamp of 100,000,000,000 and more counts milliseconds.
std::wstring VL_TimestampToTime(long long timestamp,
                                const std::wstring &format = L"YYYY-MM-DD HH:mm:ss");

// Formats are those of VL_DateTimeAs().
std::wstring VL_FormatDateTime(const std::wstring &time,
                               const std::wstring &format = L"YYYY-MM-DD HH:mm:ss");
// The present time.
std::wstring VL_FormatTime(const std::wstring &format = L"YYYY-MM-DD HH:mm:ss");
// The usual form of whatever form of a time; empty when it is none.
std::wstring VL_ParseDateTime(const std::wstring &text);

// From `start` to `end`, negative when `end` is earlier, whole units only. Units are the Chinese
// words for year, quarter, month, week, day, hour, minute, second, millisecond, their English names
// and first letters (M month, m minute, ms).
long long VL_TimeDiff(const std::wstring &start, const std::wstring &end,
                      const std::wstring &unit = L"\u79D2");
// `amount` units later. A month without that day gives its last day. A date without time stays one
// when the unit is a day or longer.
std::wstring VL_TimeCalc(const std::wstring &time, long long amount,
                         const std::wstring &unit = L"\u65E5");

// When this program was started, and how long it has run; the same for the machine.
std::wstring VL_GetStartupTime();
long long VL_GetRuntime(const std::wstring &unit = L"\u79D2");
std::wstring VL_GetBootTime(const std::wstring &format = L"YYYY-MM-DD HH:mm:ss");
long long VL_GetUptime(const std::wstring &unit = L"\u79D2");
