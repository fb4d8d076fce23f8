// Time texts, timestamps, time arithmetic and the calendar.
#include "runtime_test.h"

#include "51_calendar.h"

static std::wstring shiftedBy(long long seconds)
{
    return VL_TimestampToTime(VL_GetTimestamp() + seconds);
}

static void reading()
{
    const struct
    {
        const wchar_t *text;
        const wchar_t *usual;
    } rows[] = {
        {L"2026-09-01 12:30:05", L"2026-09-01 12:30:05"},
        {L" 2026/9/1 ", L"2026-09-01 00:00:00"},
        {L"2026.09.01 7:05", L"2026-09-01 07:05:00"},
        {L"2026-09-01T12:30:05.678", L"2026-09-01 12:30:05"},
        {L"2026\u5E749\u67081\u65E5", L"2026-09-01 00:00:00"},
        {L"2026\u5E749\u67081\u65E512:30", L"2026-09-01 12:30:00"},
        {L"2026\u5E749\u67081\u65E5 8\u65F65\u52069\u79D2", L"2026-09-01 08:05:09"},
        {L"2026\u5E749\u67081\u65E5 8\u70B9", L"2026-09-01 08:00:00"},
        {L"20260901", L"2026-09-01 00:00:00"},
        {L"20260901123005", L"2026-09-01 12:30:05"},
        {L"2024-02-29", L"2024-02-29 00:00:00"},
        {L"0001-01-01", L"0001-01-01 00:00:00"},
        {L"2023-02-29", L""},
        {L"2026-13-01", L""},
        {L"2026-09-31", L""},
        {L"2026-09", L""},
        {L"2026-09-01 24:00:00", L""},
        {L"2026-09-01 12:60", L""},
        {L"2026-09-01 12:", L""},
        {L"2026-09-0112:30", L""},
        {L"2026-09/01", L""},
        {L"0000-01-01", L""},
        {L"2026-09-01 x", L""},
        {L"2026-09-01 12:30:05 +25:00", L""},
        {L"26-09-01", L""},
        {L"", L""},
        {L"\u4ECA\u5929", L""},
    };
    for (const auto &row : rows)
        CHECK_EQ(VL_ParseDateTime(row.text), std::wstring(row.usual));
    CHECK_EQ(VL_ParseDateTime(std::wstring(3000000, L'1')), std::wstring());
    CHECK_EQ(VL_ParseDateTime(L"2026-09-01 1:1:1." + std::wstring(3000000, L'1')),
             std::wstring(L"2026-09-01 01:01:01"));
    // A zone is turned into the machine's own time.
    CHECK_EQ(VL_TimeToTimestamp(L"2026-09-01T12:30:00Z"), 1788265800LL);
    CHECK_EQ(VL_TimeToTimestamp(L"2026-09-01 20:30:00 +08:00"), 1788265800LL);
    CHECK(VL_IsValidDate(L"2026-09-01") && !VL_IsValidDate(L"12:30"));
    CHECK_EQ(VL_ParseDateTime(L"12:30"), VL_GetCurrentDate() + L" 12:30:00");
}

static void partsAndFormats()
{
    const std::wstring time = L"2026-09-06 05:04:03";
    CHECK_EQ(VL_GetYear(time) * 10000 + VL_GetMonth(time) * 100 + VL_GetDay(time), 20260906);
    CHECK_EQ(VL_GetHour(time) * 10000 + VL_GetMinute(time) * 100 + VL_GetSecond(time), 50403);
    CHECK_EQ(VL_GetWeekday(time), 7);
    CHECK_EQ(VL_GetWeekday(L"2026-09-07"), 1);
    CHECK_EQ(VL_GetWeekday(L"0001-01-01"), 1);
    CHECK_EQ(VL_GetYear(L""), 0);
    CHECK_EQ(VL_GetTime(time), std::wstring(L"05:04:03"));
    CHECK_EQ(VL_GetDate(time), std::wstring(L"2026-09-06"));
    CHECK_EQ(VL_FormatDateTime(time, L"YY/M/D H:m:s"), std::wstring(L"26/9/6 5:4:3"));
    CHECK_EQ(VL_FormatDateTime(time, L"yyyy.MM.dd dddd ddd tt"),
             std::wstring(L"2026.09.06 \u661F\u671F\u65E5 \u5468\u65E5 \u4E0A\u5348"));
    CHECK_EQ(VL_FormatDateTime(L"2026-09-06 00:00:00.5", L"hh [hh] SSS ["),
             std::wstring(L"12 hh 500 ["));
    CHECK_EQ(VL_FormatDateTime(L"x", L"YYYY"), std::wstring());
    CHECK_EQ(VL_FormatTime(L"[x]"), std::wstring(L"x"));
    CHECK_EQ(VL_GetYear(), VL_GetYear(VL_GetCurrentTime()));
}

static void timestamps()
{
    CHECK_EQ(VL_TimeToTimestamp(VL_TimestampToTime(1788265800)), 1788265800LL);
    CHECK_EQ(VL_TimestampToTime(1788265800123LL), VL_TimestampToTime(1788265800));
    CHECK_EQ(VL_TimeToTimestamp(VL_TimestampToTime(-86400 * 365)), -86400LL * 365);
    CHECK_EQ(VL_TimestampToTime(INT64_MAX), std::wstring());
    CHECK_EQ(VL_TimestampToTime(INT64_MIN), std::wstring());
    CHECK_EQ(VL_TimeToTimestamp(L"1500-01-01"), 0LL);
    CHECK(std::llabs(VL_GetTimestamp(true) / 1000 - VL_GetTimestamp()) <= 1);
    CHECK(std::llabs(VL_GetTimestamp() - (long long)time(NULL)) <= 1);
    const long long sinceStart = VL_TimeDiff(VL_GetStartupTime(), VL_GetCurrentTime());
    CHECK(sinceStart >= 0 && sinceStart < 120);
    CHECK(VL_GetRuntime(L"ms") < 120000 && VL_GetRuntime() <= VL_GetRuntime(L"ms"));
    CHECK(VL_GetUptime() > 0 && VL_GetUptime(L"?") == 0);
    CHECK(VL_CompareTime(VL_GetBootTime(), VL_GetCurrentTime()) < 0);
}

static void arithmetic()
{
    const struct
    {
        const wchar_t *time;
        long long amount;
        const wchar_t *unit;
        const wchar_t *result;
    } sums[] = {
        {L"2026-09-01 12:30:00", 90, L"\u79D2", L"2026-09-01 12:31:30"},
        {L"2026-09-01 12:30:00", -13, L"hour", L"2026-08-31 23:30:00"},
        {L"2026-09-01", 30, L"\u65E5", L"2026-10-01"},
        {L"2026-09-01", 30, L"\u5206", L"2026-09-01 00:30:00"},
        {L"2024-02-29", 1, L"\u5E74", L"2025-02-28"},
        {L"2026-01-31", 1, L"\u6708", L"2026-02-28"},
        {L"2026-01-31", -11, L"M", L"2025-02-28"},
        {L"2026-09-01", 2, L"\u5468", L"2026-09-15"},
        {L"2026-09-01", 2, L"\u4E16\u7EAA", L""},
        {L"9999-12-31", 1, L"\u65E5", L""},
        {L"0001-01-01", -1, L"\u6708", L""},
        {L"2026-09-01", INT64_MAX, L"\u5E74", L""},
        {L"2026-09-01", INT64_MIN, L"\u79D2", L""},
        {L"x", 1, L"\u65E5", L""},
    };
    for (const auto &row : sums)
        CHECK_EQ(VL_TimeCalc(row.time, row.amount, row.unit), std::wstring(row.result));
    CHECK_EQ(VL_TimeDiff(L"2026-09-01", L"2026-09-02"), 86400LL);
    CHECK_EQ(VL_TimeDiff(L"2026-09-02", L"2026-09-01 00:00:01", L"\u65F6"), -23LL);
    CHECK_EQ(VL_TimeDiff(L"2024-02-29", L"2025-02-28", L"\u5E74"), 1LL);
    CHECK_EQ(VL_TimeDiff(L"2026-01-31 10:00", L"2026-02-28 09:00", L"\u6708"), 0LL);
    CHECK_EQ(VL_TimeDiff(L"2026-03-01", L"2026-01-01", L"\u6708"), -2LL);
    CHECK_EQ(VL_TimeDiff(L"x", L"2026-01-01"), 0LL);
    // Every day of 800 years comes back from its number, one behind the other.
    VL_DateTime day;
    std::wstring last;
    for (long long number = VL_DayNumber(1600, 1, 1); number < VL_DayNumber(2400, 1, 1); ++number) {
        if (!VL_DateOfDay(number, day) || VL_DayNumber(day.year, day.month, day.day) != number)
            reportMismatch(__FILE__, __LINE__, "day", std::to_wstring(number), last);
        last = VL_DateText(day);
    }
    CHECK_EQ(last, std::wstring(L"2399-12-31"));
}

static void calendar()
{
    CHECK(VL_IsLeapYear(2000) && !VL_IsLeapYear(1900) && !VL_IsLeapYear(0));
    CHECK_EQ(VL_GetDaysInMonth(2024, 2), 29);
    CHECK_EQ(VL_GetDaysInMonth(2024, 13), 0);
    CHECK_EQ(VL_GetDayOfYear(L"2024-12-31"), 366);
    CHECK_EQ(VL_GetWeekOfYear(L"2027-01-01"), 53);
    CHECK_EQ(VL_GetWeekOfYear(L"2024-12-30"), 1);
    CHECK_EQ(VL_GetWeekOfYear(L"2026-01-05"), 2);
    CHECK_EQ(VL_GetQuarter(L"2026-09-30"), 3);
    CHECK_EQ(VL_GetQuarter(L"2026-09-31"), 0);
    CHECK_EQ(VL_CompareTime(L"2026/9/1", L"2026-09-01 00:00:00"), 0);
    CHECK_EQ(VL_CompareTime(L"2026-09-01", L"2026-09-01 00:00:01"), -1);
    CHECK_EQ(VL_GetAge(L"2000-09-02", L"2026-09-01"), 25);
    CHECK_EQ(VL_GetAge(L"2000-09-01 18:00", L"2026-09-01 08:00"), 26);
    CHECK_EQ(VL_GetAge(L"2030-01-01", L"2026-01-01"), 0);
    CHECK_EQ(VL_GetMonthFirstDay(L"2024-02-10 10:00"), std::wstring(L"2024-02-01"));
    CHECK_EQ(VL_GetMonthLastDay(L"2024-02-10"), std::wstring(L"2024-02-29"));
    CHECK_EQ(VL_GetMonthLastDay(L"9999-12-01"), std::wstring(L"9999-12-31"));
    CHECK_EQ(VL_GetQuarterFirstDay(L"2026-12-31"), std::wstring(L"2026-10-01"));
    CHECK_EQ(VL_GetQuarterLastDay(L"2026-02-01"), std::wstring(L"2026-03-31"));
    CHECK_EQ(VL_GetYearFirstDay(L"2026-07-01"), std::wstring(L"2026-01-01"));
    CHECK_EQ(VL_GetYearLastDay(L"2026-07-01"), std::wstring(L"2026-12-31"));
    CHECK_EQ(VL_GetWeekFirstDay(L"2026-09-06"), std::wstring(L"2026-08-31"));
    CHECK_EQ(VL_GetWeekLastDay(L"2026-09-07"), std::wstring(L"2026-09-13"));
    CHECK_EQ(VL_GetWeekLastDay(L"x"), std::wstring());
    CHECK(VL_IsToday(VL_GetCurrentTime()) && VL_IsYesterday(shiftedBy(-86400)) &&
          VL_IsTomorrow(shiftedBy(86400)) && !VL_IsToday(L"") && !VL_IsToday(L"2000-01-01"));
    CHECK(VL_IsWorkday(L"2026-09-04") && VL_IsWeekend(L"2026-09-05"));
    CHECK(!VL_IsWorkday(L"x") && !VL_IsWeekend(L"x"));
}

// The workday commands against counting day by day.
static void workdays()
{
    const long long first = VL_DayNumber(1969, 12, 20);
    std::wstring names[60];
    VL_DateTime time;
    for (int i = 0; i < 60; ++i)
        names[i] = VL_DateOfDay(first + i, time) ? VL_DateText(time) : L"";
    for (int from = 0; from < 14; ++from) {
        long long count = 0;
        for (int to = from; to < 60; ++to) {
            const bool isWorkday = VL_IsWorkday(names[to]);
            count += isWorkday ? 1 : 0;
            CHECK_EQ(VL_GetWorkdayCount(names[to], names[from]), count);
            const long long after = count - (VL_IsWorkday(names[from]) ? 1 : 0);
            if (isWorkday && to > from)
                CHECK_EQ(VL_GetWorkday(names[from], after), names[to]);
        }
    }
    CHECK_EQ(VL_GetWorkday(L"2026-09-05", 0), std::wstring(L"2026-09-07"));
    CHECK_EQ(VL_GetWorkday(L"2026-09-05", -1), std::wstring(L"2026-09-04"));
    CHECK_EQ(VL_GetWorkday(L"2026-09-07", -6), std::wstring(L"2026-08-28"));
    CHECK_EQ(VL_GetWorkday(L"2026-09-07", INT64_MIN), std::wstring());
}

static void friendlyTimes()
{
    const struct
    {
        const wchar_t *time;
        const wchar_t *words;
    } rows[] = {
        {L"2026-09-01 11:59:30", L"\u521A\u521A"},
        {L"2026-09-01 11:55:00", L"5\u5206\u949F\u524D"},
        {L"2026-08-31 20:00:00", L"16\u5C0F\u65F6\u524D"},
        {L"2026-08-31 10:00:00", L"\u6628\u5929"},
        {L"2026-08-30 10:00:00", L"\u524D\u5929"},
        {L"2026-08-05", L"27\u5929\u524D"},
        {L"2026-07-01", L"2\u4E2A\u6708\u524D"},
        {L"2024-08-01", L"2\u5E74\u524D"},
        {L"2026-09-01 13:00:00", L"1\u5C0F\u65F6\u540E"},
        {L"2026-09-03 12:00:00", L"\u540E\u5929"},
        {L"x", L""},
    };
    for (const auto &row : rows)
        CHECK_EQ(VL_FriendlyTime(row.time, L"2026-09-01 12:00:00"), std::wstring(row.words));
    CHECK_EQ(VL_FriendlyTime(VL_GetCurrentTime()), std::wstring(L"\u521A\u521A"));
}

void runTests()
{
    reading();
    partsAndFormats();
    timestamps();
    arithmetic();
    calendar();
    workdays();
    friendlyTimes();
}
