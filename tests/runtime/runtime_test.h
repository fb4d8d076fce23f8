// Checks for the tests of the emitted runtime, which run as programs under wine.
#pragma once

#include <cstdio>
#include <string>

// Counts a failed comparison and prints both values as UTF-8 with file and line.
void reportMismatch(const char *file, int line, const char *what, const std::wstring &actual,
                    const std::wstring &expected);

inline std::wstring shown(const std::wstring &value)
{
    return L"\"" + value + L"\"";
}
inline std::wstring shown(const wchar_t *value)
{
    return shown(std::wstring(value));
}
inline std::wstring shown(const std::string &value)
{
    return L"\"" + std::wstring(value.begin(), value.end()) + L"\"";
}
inline std::wstring shown(bool value)
{
    return value ? L"true" : L"false";
}
template <typename T>
std::wstring shown(T value)
{
    return std::to_wstring(value);
}

#define CHECK_EQ(actual, expected)                                                                 \
    do {                                                                                           \
        const auto &actualValue = (actual);                                                        \
        const auto &expectedValue = (expected);                                                    \
        if (!(actualValue == expectedValue))                                                       \
            reportMismatch(__FILE__, __LINE__, #actual, shown(actualValue), shown(expectedValue)); \
    } while (false)
#define CHECK(condition) CHECK_EQ((condition), true)

// Each test file defines this; the program's exit code is the number of failed checks.
void runTests();
