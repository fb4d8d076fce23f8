// Time texts: reading them in all their forms, writing them, and the day numbers behind them.
#include "49_date_text.h"

#include <algorithm>

namespace vl_date_text {
namespace {

const long long EpochIn100ns = 116444736000000000LL;
// What the system converts ends with the year 9999.
const long long GreatestTimestamp = 253402300799LL;
// The longest run of digits that a time text may hold is shorter.
const size_t MostDigits = 16;

bool isDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

bool isValidDate(int year, int month, int day)
{
    return year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
           day <= VL_GetDaysInMonth(year, month);
}

// Reads a time text piece by piece; every function says whether its piece was there.
class Reader
{
public:
    explicit Reader(const std::wstring &text) : m_text(text) {}

    bool atEnd() const { return m_at >= m_text.size(); }
    wchar_t peek() const { return atEnd() ? L'\0' : m_text[m_at]; }
    bool isBehindDigit() const { return m_at > 0 && isDigit(m_text[m_at - 1]); }

    size_t digitsAhead() const
    {
        size_t end = m_at;
        while (end < m_text.size() && end - m_at < MostDigits && isDigit(m_text[end]))
            ++end;
        return end - m_at;
    }

    bool number(size_t least, size_t most, int &value)
    {
        const size_t count = std::min(digitsAhead(), most);
        if (count < least)
            return false;
        value = 0;
        for (size_t i = 0; i < count; ++i)
            value = value * 10 + (m_text[m_at + i] - L'0');
        m_at += count;
        return true;
    }

    bool anyOf(const wchar_t *units)
    {
        if (peek() == L'\0' || !wcschr(units, peek()))
            return false;
        ++m_at;
        return true;
    }

    bool blanks()
    {
        const size_t start = m_at;
        while (anyOf(L" \t\u3000"))
            continue;
        return m_at > start;
    }

private:
    const std::wstring &m_text;
    size_t m_at = 0;
};

bool readCompact(Reader &reader, VL_DateTime &time)
{
    const size_t digits = reader.digitsAhead();
    if (digits != 8 && digits != 12 && digits != 14)
        return false;
    reader.number(4, 4, time.year);
    reader.number(2, 2, time.month);
    reader.number(2, 2, time.day);
    time.hasDate = true;
    if (digits == 8)
        return true;
    reader.number(2, 2, time.hour);
    reader.number(2, 2, time.minute);
    if (digits == 14)
        reader.number(2, 2, time.second);
    time.hasTime = true;
    return true;
}

bool readDate(Reader &reader, VL_DateTime &time)
{
    if (reader.digitsAhead() != 4 || !reader.number(4, 4, time.year))
        return false;
    const wchar_t between = reader.peek();
    if (!reader.anyOf(L"-/.\u5E74") || !reader.number(1, 2, time.month))
        return false;
    const wchar_t second[] = {between == 0x5E74 ? (wchar_t)0x6708 : between, L'\0'};
    if (!reader.anyOf(second) || !reader.number(1, 2, time.day))
        return false;
    reader.anyOf(L"\u65E5\u53F7");
    time.hasDate = true;
    return true;
}

// Hours and minutes by ":" or the Chinese words, then seconds and their fraction if they are there.
bool readClock(Reader &reader, VL_DateTime &time)
{
    if (!reader.number(1, 2, time.hour))
        return false;
    time.hasTime = true;
    if (reader.anyOf(L"\u65F6\u70B9") && reader.digitsAhead() == 0)
        return true;
    reader.anyOf(L":\uFF1A");
    if (reader.isBehindDigit() || !reader.number(1, 2, time.minute))
        return false;
    if (reader.anyOf(L"\u5206") && reader.digitsAhead() == 0)
        return true;
    reader.anyOf(L":\uFF1A");
    if (reader.isBehindDigit())
        return true;
    if (!reader.number(1, 2, time.second))
        return false;
    reader.anyOf(L"\u79D2");
    int digit = 0;
    if (reader.anyOf(L".,"))
        for (int weight = 100; reader.number(1, 1, digit); weight /= 10)
            time.millisecond += digit * weight;
    return true;
}

// Minutes to take off for world time; false for a broken zone.
bool readZone(Reader &reader, bool &hasZone, int &minutes)
{
    hasZone = true;
    if (reader.anyOf(L"Zz"))
        return true;
    const bool behind = reader.peek() == L'-';
    if (!reader.anyOf(L"+-")) {
        hasZone = false;
        return true;
    }
    int hours = 0, rest = 0;
    if (!reader.number(2, 2, hours))
        return false;
    reader.anyOf(L":");
    reader.number(2, 2, rest);
    minutes = (hours * 60 + rest) * (behind ? -1 : 1);
    return hours < 24 && rest < 60;
}

bool isValid(const VL_DateTime &time)
{
    return isValidDate(time.year, time.month, time.day) && time.hour < 24 && time.minute < 60 &&
           time.second < 60;
}

VL_DateTime fromSystem(const SYSTEMTIME &system)
{
    VL_DateTime time;
    time.year = system.wYear;
    time.month = system.wMonth;
    time.day = system.wDay;
    time.hour = system.wHour;
    time.minute = system.wMinute;
    time.second = system.wSecond;
    time.millisecond = system.wMilliseconds;
    time.hasDate = time.hasTime = true;
    return time;
}

bool isTimePart(const std::wstring &text, size_t at)
{
    return text[at] != L'\0' && wcschr(L"YyMDdHhmsSt", text[at]) != NULL;
}

std::wstring padded(int number, size_t width)
{
    const std::wstring digits = std::to_wstring(number);
    return digits.size() < width ? std::wstring(width - digits.size(), L'0') + digits : digits;
}

std::wstring weekdayWord(const VL_DateTime &time, bool isLong)
{
    const wchar_t digit = L"\u4E00\u4E8C\u4E09\u56DB\u4E94\u516D\u65E5"[VL_WeekdayIndex(time)];
    return (isLong ? L"\u661F\u671F" : L"\u5468") + std::wstring(1, digit);
}

// The text for `count` equal letters of a format; the letters themselves when they mean nothing.
std::wstring formatPart(const VL_DateTime &time, wchar_t letter, size_t count)
{
    const int hour12 = time.hour % 12 == 0 ? 12 : time.hour % 12;
    switch (letter) {
    case L'Y':
    case L'y':
        return count == 2 ? padded(time.year % 100, 2) : padded(time.year, count);
    case L'M':
        return padded(time.month, count);
    case L'D':
    case L'd':
        return count > 2 ? weekdayWord(time, count > 3) : padded(time.day, count);
    case L'H':
        return padded(time.hour, count);
    case L'h':
        return padded(hour12, count);
    case L'm':
        return padded(time.minute, count);
    case L's':
        return padded(time.second, count);
    case L'S':
        return padded(time.millisecond, 3).substr(0, count);
    default:
        if (letter == L't' && count == 2)
            return time.hour < 12 ? L"\u4E0A\u5348" : L"\u4E0B\u5348";
        return std::wstring(count, letter);
    }
}

// Moves a time that was written for another zone into that of the machine.
bool toLocal(VL_DateTime &time, int zoneMinutes)
{
    const long long world = VL_SecondNumber(time) - zoneMinutes * 60;
    const int millisecond = time.millisecond;
    if (!VL_LocalTime(world * 10000000 + EpochIn100ns, time))
        return false;
    time.millisecond = millisecond;
    return true;
}

} // namespace
} // namespace vl_date_text

bool VL_IsLeapYear(intptr_t year)
{
    return year > 0 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

intptr_t VL_GetDaysInMonth(intptr_t year, intptr_t month)
{
    if (year < 1 || year > 9999 || month < 1 || month > 12)
        return 0;
    if (month == 2)
        return VL_IsLeapYear(year) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

long long VL_DayNumber(int year, int month, int day)
{
    // Years are taken to begin in March, so that the leap day ends them.
    const long long y = month <= 2 ? year - 1 : year;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const long long ofEra = y - era * 400;
    const long long ofYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    return era * 146097 + ofEra * 365 + ofEra / 4 - ofEra / 100 + ofYear - 719468;
}

bool VL_DateOfDay(long long dayNumber, VL_DateTime &time)
{
    if (dayNumber < VL_DayNumber(1, 1, 1) || dayNumber > VL_DayNumber(9999, 12, 31))
        return false;
    const long long days = dayNumber + 719468;
    const long long era = days / 146097;
    const long long ofEra = days - era * 146097;
    const long long year = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
    const long long ofYear = ofEra - (365 * year + year / 4 - year / 100);
    const long long month = (5 * ofYear + 2) / 153;
    time.day = (int)(ofYear - (153 * month + 2) / 5 + 1);
    time.month = (int)(month < 10 ? month + 3 : month - 9);
    time.year = (int)(year + era * 400 + (time.month <= 2 ? 1 : 0));
    time.hasDate = true;
    return true;
}

long long VL_SecondNumber(const VL_DateTime &time)
{
    return VL_DayNumber(time.year, time.month, time.day) * 86400 + time.hour * 3600 +
           time.minute * 60 + time.second;
}

int VL_WeekdayIndex(const VL_DateTime &time)
{
    return (int)(((VL_DayNumber(time.year, time.month, time.day) + 3) % 7 + 7) % 7);
}

bool VL_LocalTime(long long moment, VL_DateTime &time)
{
    if (moment < 0 ||
        moment / 10000000 > vl_date_text::GreatestTimestamp + vl_date_text::EpochIn100ns / 10000000)
        return false;
    FILETIME file;
    file.dwLowDateTime = (DWORD)moment;
    file.dwHighDateTime = (DWORD)(moment >> 32);
    SYSTEMTIME world, local;
    if (!FileTimeToSystemTime(&file, &world) ||
        !SystemTimeToTzSpecificLocalTime(NULL, &world, &local))
        return false;
    time = vl_date_text::fromSystem(local);
    return time.year <= 9999;
}

std::wstring VL_DateTimeAs(const VL_DateTime &time, const std::wstring &format)
{
    std::wstring result;
    for (size_t at = 0; at < format.size();) {
        const size_t close = format[at] == L'[' ? format.find(L']', at) : std::wstring::npos;
        if (close != std::wstring::npos) {
            result.append(format, at + 1, close - at - 1);
            at = close + 1;
        } else if (vl_date_text::isTimePart(format, at)) {
            // Four letters are the longest that mean something.
            size_t count = 1;
            while (count < 4 && at + count < format.size() && format[at + count] == format[at])
                ++count;
            result += vl_date_text::formatPart(time, format[at], count);
            at += count;
        } else {
            result += format[at++];
        }
    }
    return result;
}

bool VL_ReadDateTime(const std::wstring &text, VL_DateTime &time)
{
    const std::wstring trimmed = VL_Trim(text);
    vl_date_text::Reader reader(trimmed);
    time = VL_DateTime();
    if (reader.digitsAhead() <= 2) {
        if (!vl_date_text::readClock(reader, time))
            return false;
        const VL_DateTime today = VL_Now();
        time.year = today.year;
        time.month = today.month;
        time.day = today.day;
    } else if (!vl_date_text::readCompact(reader, time) && !vl_date_text::readDate(reader, time)) {
        return false;
    }
    const bool isApart = reader.blanks() || reader.anyOf(L"Tt") || !reader.isBehindDigit();
    if (!time.hasTime && !reader.atEnd() && (!isApart || !vl_date_text::readClock(reader, time)))
        return false;
    bool hasZone = false;
    int zoneMinutes = 0;
    reader.blanks();
    if (time.hasTime && !vl_date_text::readZone(reader, hasZone, zoneMinutes))
        return false;
    if (!reader.atEnd() || !vl_date_text::isValid(time))
        return false;
    return !hasZone || vl_date_text::toLocal(time, zoneMinutes);
}

VL_DateTime VL_Now()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    return vl_date_text::fromSystem(now);
}

std::wstring VL_DateText(const VL_DateTime &time)
{
    return VL_DateTimeAs(time, L"YYYY-MM-DD");
}

std::wstring VL_DateTimeText(const VL_DateTime &time)
{
    return VL_DateTimeAs(time, L"YYYY-MM-DD HH:mm:ss");
}
