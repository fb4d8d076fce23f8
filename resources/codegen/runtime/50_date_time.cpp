// Time commands: the present time, parts, timestamps, formats, arithmetic, run times.
#include "50_date_time.h"

#include <algorithm>

namespace vl_date_time {
namespace {

const long long SecondsPerDay = 86400;
const long long EpochIn100ns = 116444736000000000LL;
// What the system converts ends with the year 9999.
const long long GreatestTimestamp = 253402300799LL;
// From here on a timestamp counts milliseconds.
const long long LeastMilliseconds = 100000000000LL;
// More months than the calendar has.
const long long TooManyMonths = 120000;
const long long TooManyMilliseconds = 400000000000000LL;
const long long MillisecondsOfMonth = 2629746000LL;

long long momentOf(const FILETIME &file)
{
    return (long long)((unsigned long long)file.dwHighDateTime << 32 | file.dwLowDateTime);
}

long long currentMoment()
{
    FILETIME file;
    GetSystemTimeAsFileTime(&file);
    return momentOf(file);
}

long long startMoment()
{
    FILETIME created, ended, kernel, user;
    if (!GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user))
        return currentMoment();
    return momentOf(created);
}

enum class Unit
{
    Unknown,
    Months,
    Milliseconds
};

// How a unit is counted, and how many months or milliseconds one of it has.
struct UnitSize
{
    const wchar_t *names;
    Unit kind;
    long long size;
};

const UnitSize Units[] = {
    {L"|\u5E74|years|year|y|", Unit::Months, 12},
    {L"|\u5B63\u5EA6|\u5B63|quarters|quarter|q|", Unit::Months, 3},
    {L"|\u6708|\u4E2A\u6708|\u6708\u4EFD|months|month|mon|", Unit::Months, 1},
    {L"|\u5468|\u661F\u671F|weeks|week|w|", Unit::Milliseconds, 7 * 86400000LL},
    {L"|\u65E5|\u5929|days|day|d|", Unit::Milliseconds, 86400000LL},
    {L"|\u65F6|\u5C0F\u65F6|hours|hour|h|", Unit::Milliseconds, 3600000},
    {L"|\u5206|\u5206\u949F|minutes|minute|min|m|", Unit::Milliseconds, 60000},
    {L"|\u79D2|\u79D2\u949F|seconds|second|sec|s|", Unit::Milliseconds, 1000},
    {L"|\u6BEB\u79D2|milliseconds|millisecond|ms|", Unit::Milliseconds, 1},
};

Unit unitKind(const std::wstring &name, long long &size)
{
    const std::wstring trimmed = VL_Trim(name);
    if (trimmed == L"M") {
        size = 1;
        return Unit::Months;
    }
    const std::wstring wanted = L"|" + VL_ToLower(trimmed) + L"|";
    for (const UnitSize &unit : Units) {
        if (wanted.size() > 2 && wcsstr(unit.names, wanted.c_str())) {
            size = unit.size;
            return unit.kind;
        }
    }
    return Unit::Unknown;
}

long long millisecondNumber(const VL_DateTime &time)
{
    return VL_SecondNumber(time) * 1000 + time.millisecond;
}

long long floorDivided(long long value, long long divisor)
{
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

bool addMonths(VL_DateTime &time, long long months)
{
    const long long total = time.year * 12LL + time.month - 1 + months;
    if (total < 12 || total >= 120000)
        return false;
    time.year = (int)(total / 12);
    time.month = (int)(total % 12) + 1;
    time.day = std::min(time.day, (int)VL_GetDaysInMonth(time.year, time.month));
    return true;
}

bool addMilliseconds(VL_DateTime &time, long long milliseconds)
{
    const long long total = millisecondNumber(time) + milliseconds;
    const long long inDay = total - floorDivided(total, 86400000) * 86400000;
    if (!VL_DateOfDay(floorDivided(total, 86400000), time))
        return false;
    time.hour = (int)(inDay / 3600000);
    time.minute = (int)(inDay / 60000 % 60);
    time.second = (int)(inDay / 1000 % 60);
    time.millisecond = (int)(inDay % 1000);
    return true;
}

// Whole months from the earlier time to the later one.
long long monthsBetween(const VL_DateTime &start, const VL_DateTime &end)
{
    const long long months = (end.year - start.year) * 12LL + end.month - start.month;
    VL_DateTime reached = start;
    if (!addMonths(reached, months))
        return months;
    return millisecondNumber(reached) > millisecondNumber(end) ? months - 1 : months;
}

long long inUnit(long long milliseconds, const std::wstring &unit)
{
    long long size = 0;
    const Unit kind = unitKind(unit, size);
    if (kind == Unit::Months)
        size *= MillisecondsOfMonth;
    return kind == Unit::Unknown ? 0 : milliseconds / size;
}

// A part of a time text, 0 when there is no such time.
intptr_t part(const std::wstring &text, int VL_DateTime::*member)
{
    VL_DateTime time;
    return VL_ReadDateTime(text, time) ? time.*member : 0;
}

} // namespace
} // namespace vl_date_time

std::wstring VL_GetCurrentTime()
{
    return VL_DateTimeText(VL_Now());
}

std::wstring VL_GetCurrentDate()
{
    return VL_DateText(VL_Now());
}

std::wstring VL_GetTime(const std::wstring &time)
{
    return VL_FormatDateTime(time, L"HH:mm:ss");
}

std::wstring VL_GetDate(const std::wstring &time)
{
    return VL_FormatDateTime(time, L"YYYY-MM-DD");
}

intptr_t VL_GetYear(const std::wstring &time)
{
    return vl_date_time::part(time, &VL_DateTime::year);
}

intptr_t VL_GetMonth(const std::wstring &time)
{
    return vl_date_time::part(time, &VL_DateTime::month);
}

intptr_t VL_GetDay(const std::wstring &time)
{
    return vl_date_time::part(time, &VL_DateTime::day);
}

intptr_t VL_GetHour(const std::wstring &time)
{
    return vl_date_time::part(time, &VL_DateTime::hour);
}

intptr_t VL_GetMinute(const std::wstring &time)
{
    return vl_date_time::part(time, &VL_DateTime::minute);
}

intptr_t VL_GetSecond(const std::wstring &time)
{
    return vl_date_time::part(time, &VL_DateTime::second);
}

intptr_t VL_GetWeekday(const std::wstring &time)
{
    VL_DateTime read;
    return VL_ReadDateTime(time, read) ? VL_WeekdayIndex(read) + 1 : 0;
}

long long VL_GetTimestamp(bool milliseconds)
{
    const long long since = vl_date_time::currentMoment() - vl_date_time::EpochIn100ns;
    return since / (milliseconds ? 10000 : 10000000);
}

long long VL_TimeToTimestamp(const std::wstring &time)
{
    VL_DateTime read;
    if (!VL_ReadDateTime(time, read))
        return 0;
    SYSTEMTIME local = {};
    local.wYear = (WORD)read.year;
    local.wMonth = (WORD)read.month;
    local.wDay = (WORD)read.day;
    local.wHour = (WORD)read.hour;
    local.wMinute = (WORD)read.minute;
    local.wSecond = (WORD)read.second;
    SYSTEMTIME world;
    FILETIME file;
    if (!TzSpecificLocalTimeToSystemTime(NULL, &local, &world) ||
        !SystemTimeToFileTime(&world, &file))
        return 0;
    return vl_date_time::floorDivided(vl_date_time::momentOf(file) - vl_date_time::EpochIn100ns,
                                      10000000);
}

std::wstring VL_TimestampToTime(long long timestamp, const std::wstring &format)
{
    if (timestamp > vl_date_time::GreatestTimestamp * 1000 ||
        timestamp < -vl_date_time::GreatestTimestamp * 1000)
        return std::wstring();
    const bool counted = timestamp >= vl_date_time::LeastMilliseconds ||
                         timestamp <= -vl_date_time::LeastMilliseconds;
    VL_DateTime time;
    if (!VL_LocalTime(timestamp * (counted ? 10000 : 10000000) + vl_date_time::EpochIn100ns, time))
        return std::wstring();
    return VL_DateTimeAs(time, format);
}

std::wstring VL_FormatDateTime(const std::wstring &time, const std::wstring &format)
{
    VL_DateTime read;
    return VL_ReadDateTime(time, read) ? VL_DateTimeAs(read, format) : std::wstring();
}

std::wstring VL_FormatTime(const std::wstring &format)
{
    return VL_DateTimeAs(VL_Now(), format);
}

std::wstring VL_ParseDateTime(const std::wstring &text)
{
    return VL_FormatDateTime(text, L"YYYY-MM-DD HH:mm:ss");
}

long long VL_TimeDiff(const std::wstring &start, const std::wstring &end, const std::wstring &unit)
{
    VL_DateTime from, to;
    if (!VL_ReadDateTime(start, from) || !VL_ReadDateTime(end, to))
        return 0;
    long long size = 0;
    const long long distance =
        vl_date_time::millisecondNumber(to) - vl_date_time::millisecondNumber(from);
    switch (vl_date_time::unitKind(unit, size)) {
    case vl_date_time::Unit::Months:
        return (distance < 0 ? -vl_date_time::monthsBetween(to, from)
                             : vl_date_time::monthsBetween(from, to)) /
               size;
    case vl_date_time::Unit::Milliseconds:
        return distance / size;
    default:
        return 0;
    }
}

std::wstring VL_TimeCalc(const std::wstring &time, long long amount, const std::wstring &unit)
{
    VL_DateTime read;
    long long size = 0;
    const vl_date_time::Unit kind = vl_date_time::unitKind(unit, size);
    if (kind == vl_date_time::Unit::Unknown || !VL_ReadDateTime(time, read))
        return std::wstring();
    const bool isMonths = kind == vl_date_time::Unit::Months;
    const long long most =
        (isMonths ? vl_date_time::TooManyMonths : vl_date_time::TooManyMilliseconds) / size;
    if (amount > most || amount < -most)
        return std::wstring();
    const bool hadTime = read.hasTime || (!isMonths && size < vl_date_time::SecondsPerDay * 1000);
    if (!(isMonths ? vl_date_time::addMonths(read, amount * size)
                   : vl_date_time::addMilliseconds(read, amount * size)))
        return std::wstring();
    return hadTime ? VL_DateTimeText(read) : VL_DateText(read);
}

std::wstring VL_GetStartupTime()
{
    VL_DateTime time;
    const bool known = VL_LocalTime(vl_date_time::startMoment(), time);
    return known ? VL_DateTimeText(time) : std::wstring();
}

long long VL_GetRuntime(const std::wstring &unit)
{
    const long long run = vl_date_time::currentMoment() - vl_date_time::startMoment();
    return vl_date_time::inUnit(std::max(run, 0LL) / 10000, unit);
}

std::wstring VL_GetBootTime(const std::wstring &format)
{
    VL_DateTime time;
    const long long boot = vl_date_time::currentMoment() - (long long)GetTickCount64() * 10000;
    const bool known = VL_LocalTime(boot, time);
    return known ? VL_DateTimeAs(time, format) : std::wstring();
}

long long VL_GetUptime(const std::wstring &unit)
{
    return vl_date_time::inUnit((long long)GetTickCount64(), unit);
}
