// Mathematics, rounding, random numbers, bit operations, bases, Chinese number words.
#include "runtime_test.h"

#include "47_number_bases.h"

static void mathematics()
{
    CHECK_EQ(VL_Abs((intptr_t)-5), 5);
    CHECK_EQ(VL_Abs(-2.5), 2.5);
    CHECK_EQ(VL_Abs(VL_Any(-3)).toStr(), std::wstring(L"3"));
    // Mixed arguments of every kind compile; integers stay integers.
    CHECK((std::is_same<decltype(VL_Max(1, (intptr_t)2)), intptr_t>::value));
    CHECK_EQ(VL_Max(1, (intptr_t)7, 3), 7);
    CHECK_EQ(VL_Max(1, 2.5, 2LL), 2.5);
    CHECK_EQ(VL_Min(4, -1.5, true), -1.5);
    CHECK_EQ(VL_Max(VL_Any(3), 2, VL_Any(8.5)).toDouble(), 8.5);
    CHECK_EQ(VL_Min(2, VL_Any(3)).toInt(), 2);
    CHECK_EQ(VL_Max(VL_Any(L"12"), 7).toStr(), std::wstring(L"12"));
    CHECK_EQ(VL_Mod(-7, 3), -1);
    CHECK_EQ(VL_Mod(7, 0), 0);
    CHECK_EQ(VL_Mod(INTPTR_MIN, -1), 0);
    CHECK_EQ(VL_Mod(7.5, 2), 1.5);
    CHECK_EQ(VL_Mod(7.5, 0), 0.0);
    CHECK_EQ(VL_Mod(VL_Any(7), 4).toInt(), 3);
    CHECK_EQ(VL_Pow(2, 10), 1024.0);
    for (double undefined :
         {VL_Sqrt(-1), VL_Log(0), VL_Log10(-5), VL_Asin(2), VL_Acos(-2), VL_Pow(-8, 0.5)})
        CHECK_EQ(undefined, 0.0);
}

static void rounding()
{
    CHECK_EQ(VL_Round(2.5), 3.0);
    CHECK_EQ(VL_Round(-2.5), -3.0);
    CHECK_EQ(VL_Round(0.49999999999999994), 0.0);
    CHECK_EQ(VL_RoundTo(1.005, 2), 1.01);
    CHECK_EQ(VL_RoundTo(-2.675, 2), -2.68);
    CHECK_EQ(VL_RoundTo(1.0049, 2), 1.0);
    CHECK_EQ(VL_RoundTo(1234.5, -2), 1200.0);
    CHECK_EQ(VL_RoundTo(1e15 + 0.25, 2), 1e15 + 0.25);
    CHECK_EQ(VL_RoundTo(1e300, 15), 1e300);
    CHECK_EQ(VL_RoundTo(1, -400), 0.0);
    CHECK_EQ(VL_Floor(-1.5), -2);
    CHECK_EQ(VL_Ceil(-1.5), -1);
    CHECK_EQ(VL_Truncate(-1.9), -1);
    CHECK_EQ(VL_Truncate(1e300), INTPTR_MAX);
    CHECK_EQ(VL_Floor(-1e300), INTPTR_MIN);
    CHECK_EQ(VL_Truncate(std::nan("")), 0);
}

static void randomNumbers()
{
    VL_RandomSeed(42);
    std::wstring first, second;
    for (int i = 0; i < 20; ++i)
        first += std::to_wstring(VL_Random(1, 6)) + L" ";
    VL_RandomSeed(42);
    for (int i = 0; i < 20; ++i)
        second += std::to_wstring(VL_Random(1, 6)) + L" ";
    CHECK_EQ(first, second);
    // The sequence is that of the C library's generator.
    VL_RandomSeed(1);
    CHECK_EQ(VL_Random(0, 32767), 41);
    intptr_t least = 100, greatest = -100, farthest = 0;
    for (int i = 0; i < 2000; ++i) {
        const intptr_t value = VL_Random(3, -3);
        least = VL_Min(least, value);
        greatest = VL_Max(greatest, value);
        farthest = VL_Max(farthest, VL_Random(0, 1000000000));
    }
    CHECK_EQ(least, -3);
    CHECK_EQ(greatest, 3);
    CHECK(farthest > 900000000 && farthest <= 1000000000);
    CHECK_EQ(VL_Random(7, 7), 7);
    VL_Random(INTPTR_MIN, INTPTR_MAX);
}

static void bits()
{
    CHECK_EQ(VL_BitXor(6, 3), 5);
    CHECK_EQ(VL_BitNot(0), -1);
    CHECK_EQ(VL_ShiftLeft(1, 10), 1024);
    CHECK_EQ(VL_ShiftLeft(1, 64), 0);
    CHECK_EQ(VL_ShiftLeft(1, -1), 0);
    CHECK_EQ(VL_ShiftRight(-8, 1), -4);
    CHECK_EQ(VL_ShiftRight(-8, 64), 0);
}

static void bases()
{
    CHECK_EQ(VL_ToHex(255), std::wstring(L"FF"));
    CHECK_EQ(VL_ToHex(255, 4), std::wstring(L"00FF"));
    CHECK_EQ(VL_ToHex(255, 100000).size(), (size_t)64);
    CHECK_EQ(VL_ToHex(-1), std::wstring(sizeof(intptr_t) * 2, L'F'));
    CHECK_EQ(VL_ToBinary(10, 8), std::wstring(L"00001010"));
    CHECK_EQ(VL_ToOctal(8), std::wstring(L"10"));
    CHECK_EQ(VL_ToBase(-35, 36), std::wstring(L"-Z"));
    CHECK_EQ(VL_BaseToInt(VL_ToBase(INTPTR_MIN, 7), 7), INTPTR_MIN);
    CHECK_EQ(VL_ToBase(5, 1), std::wstring());
    CHECK_EQ(VL_BaseToInt(L"5", 37), 0);
    const struct
    {
        const wchar_t *text;
        intptr_t value;
    } hex[] = {{L"ff", 255},  {L" 0xFF", 255}, {L"-0x10", -16}, {L"#1F", 31},
               {L"&H1f", 31}, {L"12g4", 0x12}, {L"", 0},        {L"10000000000000000", 0}};
    for (const auto &row : hex)
        CHECK_EQ(VL_HexToInt(row.text), row.value);
    CHECK_EQ(VL_HexToInt(VL_ToHex(-2)), -2);
    CHECK_EQ(VL_BinaryToInt(L"0b1012"), 5);
    CHECK_EQ(VL_OctalToInt(L"778"), 63);
}

static void chineseWords()
{
    const struct
    {
        double amount;
        const wchar_t *words;
    } money[] = {
        {0, L"\u96F6\u5143\u6574"},
        {0.05, L"\u4F0D\u5206"},
        {-0.5, L"\u8D1F\u4F0D\u89D2\u6574"},
        {10.05, L"\u58F9\u62FE\u5143\u96F6\u4F0D\u5206"},
        {1234.56, L"\u58F9\u4EDF\u8D30\u4F70\u53C1\u62FE\u8086\u5143\u4F0D\u89D2\u9646\u5206"},
        {1.005, L"\u58F9\u5143\u96F6\u58F9\u5206"},
        {0.999, L"\u58F9\u5143\u6574"},
        {203000, L"\u8D30\u62FE\u4E07\u53C1\u4EDF\u5143\u6574"},
        {100000001, L"\u58F9\u4EBF\u96F6\u58F9\u5143\u6574"},
        {1e12, L"\u58F9\u4E07\u4EBF\u5143\u6574"},
        {1e16, L""},
        {std::nan(""), L""},
    };
    for (const auto &row : money)
        CHECK_EQ(VL_ToRMBUpper(row.amount), std::wstring(row.words));
    const struct
    {
        double number;
        const wchar_t *words;
    } plain[] = {
        {0, L"\u96F6"},
        {12, L"\u5341\u4E8C"},
        {110, L"\u4E00\u767E\u4E00\u5341"},
        {100100, L"\u5341\u4E07\u96F6\u4E00\u767E"},
        {10001, L"\u4E00\u4E07\u96F6\u4E00"},
        {-3.25, L"\u8D1F\u4E09\u70B9\u4E8C\u4E94"},
        {0.1, L"\u96F6\u70B9\u4E00"},
        {-1e-20, L"\u96F6"},
    };
    for (const auto &row : plain)
        CHECK_EQ(VL_ToChineseUpper(row.number), std::wstring(row.words));
}

void runTests()
{
    mathematics();
    rounding();
    randomNumbers();
    bits();
    bases();
    chineseWords();
}
