// Text commands: cutting, searching, replacing, splitting, formatting.
#include "runtime_test.h"

#include "45_text.h"

static std::wstring joined(const std::vector<VL_Any> &items)
{
    std::wstring text;
    for (const VL_Any &item : items)
        text += L"<" + item.toStr() + L">";
    return text;
}

// One character beyond U+FFFF between two plain ones.
static const std::wstring g_pair = L"a\xD83D\xDE00"
                                   L"b";
static const std::wstring g_face = L"\xD83D\xDE00";

static void cutting()
{
    CHECK_EQ(VL_StrLen(g_pair), 4);
    CHECK_EQ(VL_StrLen(L"a\u00E9\u4E2D" + g_face, false), 1 + 2 + 3 + 4);
    CHECK_EQ(VL_SubStr(L"abcdef", 2), std::wstring(L"cdef"));
    CHECK_EQ(VL_SubStr(L"abcdef", 2, 2), std::wstring(L"cd"));
    CHECK_EQ(VL_SubStr(L"abcdef", -5, 2), std::wstring(L"ab"));
    CHECK_EQ(VL_SubStr(L"abcdef", 4, INTPTR_MAX), std::wstring(L"ef"));
    CHECK_EQ(VL_SubStr(L"abcdef", INTPTR_MAX), std::wstring());
    CHECK_EQ(VL_SubStr(L"abcdef", 1, 0), std::wstring());
    CHECK_EQ(VL_SubStr(g_pair, 2, 2), std::wstring(L"b"));
    CHECK_EQ(VL_SubStr(g_pair, 2, 0), std::wstring());
    CHECK_EQ(VL_StrLeft(g_pair, 2), std::wstring(L"a"));
    CHECK_EQ(VL_StrLeft(L"abc", -1), std::wstring());
    CHECK_EQ(VL_StrLeft(L"abc", 99), std::wstring(L"abc"));
    CHECK_EQ(VL_StrRight(g_pair, 2), std::wstring(L"b"));
    CHECK_EQ(VL_StrRight(L"abc", 2), std::wstring(L"bc"));
    CHECK_EQ(VL_StrInsert(g_pair, 2, L"-"), L"a-" + g_face + L"b");
    CHECK_EQ(VL_StrInsert(L"ab", 99, L"c"), std::wstring(L"abc"));
    CHECK_EQ(VL_StrRemove(g_pair, 1, 1), std::wstring(L"ab"));
    CHECK_EQ(VL_StrRemove(L"abc", 1, 99), std::wstring(L"a"));
    CHECK_EQ(VL_StrRemove(L"abc", 1, -1), std::wstring(L"abc"));
    CHECK_EQ(VL_StrReverse(g_pair), L"b" + g_face + L"a");
}

static void characters()
{
    std::wstring again;
    for (intptr_t i = -1; i <= VL_StrLen(g_pair); ++i)
        again += VL_CharAt(g_pair, i);
    CHECK_EQ(again, g_pair);
    CHECK_EQ(VL_CharCode(g_pair, 1), 0x1F600);
    CHECK_EQ(VL_CharCode(L"\u4E2D"), 0x4E2D);
    CHECK_EQ(VL_CharCode(L""), 0);
    CHECK_EQ(VL_CodeToChar(0x1F600), g_face);
    CHECK_EQ(VL_CodeToChar(0x4E2D), std::wstring(L"\u4E2D"));
    for (intptr_t code : {(intptr_t)0, (intptr_t)-1, (intptr_t)0xD800, (intptr_t)0x110000})
        CHECK_EQ(VL_CodeToChar(code), std::wstring());
    CHECK_EQ(VL_ToUpper(L"stra\u00DFe \u00E9\u4E2D"), std::wstring(L"STRA\u00DFE \u00C9\u4E2D"));
    CHECK_EQ(VL_CapitalizeFirst(L"hELLO"), std::wstring(L"HELLO"));
    CHECK_EQ(VL_CapitalizeFirst(L""), std::wstring());
    CHECK_EQ(VL_CapitalizeWords(L"heLLO don't\tx-ray"), std::wstring(L"Hello Don't\tX-Ray"));
    CHECK_EQ(VL_Trim(L" \t\u3000 a b\u00A0\r\n"), std::wstring(L"a b"));
    CHECK_EQ(VL_Trim(L"   "), std::wstring());
    CHECK_EQ(VL_Trim(L"--a-b--", L"-"), std::wstring(L"a-b"));
    CHECK_EQ(VL_TrimLeft(L" a "), std::wstring(L"a "));
    CHECK_EQ(VL_TrimRight(L" a "), std::wstring(L" a"));
}

static void searching()
{
    CHECK_EQ(VL_StrFind(L"abcabc", L"c"), 2);
    CHECK_EQ(VL_StrFind(L"abcabc", L"c", 3), 5);
    CHECK_EQ(VL_StrFind(L"abcabc", L"c", 6), -1);
    CHECK_EQ(VL_StrFind(L"abc", L"a", -9), 0);
    CHECK_EQ(VL_StrFind(L"abc", L""), -1);
    CHECK_EQ(VL_StrFind(L"\u4E2DABC", L"bc", 0, false), 2);
    CHECK_EQ(VL_StrFind(L"ABC", L"bc"), -1);
    const std::wstring distant = std::wstring(5000, L'x') + L"Needle";
    CHECK_EQ(VL_StrFind(distant, L"NEEDLE", 0, false), 5000);
    CHECK_EQ(VL_StrFind(distant, L"NEEDLES", 0, false), -1);
    CHECK_EQ(VL_StrFindLast(L"abcabc", L"bc"), 4);
    CHECK_EQ(VL_StrFindLast(L"abc", L"x"), -1);
    CHECK_EQ(VL_StrFindLast(L"aBcAbC", L"ABC", false), 3);
    const std::wstring longWhat = L"abcabcabcabcabcabcab";
    CHECK_EQ(VL_StrFind(L"abc" + longWhat, longWhat), 0);
    CHECK_EQ(VL_StrFind(L"xx" + longWhat + longWhat, longWhat), 2);
    CHECK_EQ(VL_StrFindLast(longWhat + L"c", longWhat), 0);
    CHECK_EQ(VL_StrFindLast(longWhat + L"cabx", longWhat), 3);
    CHECK_EQ(joined(VL_StrFindAll(L"aaaa", L"aa")), std::wstring(L"<0><2>"));
    CHECK_EQ(joined(VL_StrFindAll(L"aaaa", L"aa", true, true)), std::wstring(L"<0><1><2>"));
    CHECK_EQ(VL_StrFindAll(std::wstring(30, L'a'), std::wstring(20, L'A'), false, true).size(),
             (size_t)11);
    CHECK_EQ(VL_StrCount(L"aXbxc", L"x", false), 2);
    CHECK_EQ(VL_StrCount(L"abc", L""), 0);
    CHECK(VL_StrContains(L"abc", L"") && VL_StrContains(L"aBc", L"bC", false));
    CHECK(VL_StrStartsWith(L"abc", L"AB", false) && !VL_StrStartsWith(L"ab", L"abc"));
    CHECK(VL_StrEndsWith(L"abc", L"bc") && !VL_StrEndsWith(L"abc", L"BC"));
    CHECK_EQ(VL_StrCompare(L"a", L"b"), -1);
    CHECK_EQ(VL_StrCompare(L"B", L"b", false), 0);
    CHECK_EQ(VL_StrCompare(L"\u4E2D", L"z"), 1);
}

static void replacing()
{
    CHECK_EQ(VL_StrReplace(L"a.b.c", L".", L"--"), std::wstring(L"a--b--c"));
    CHECK_EQ(VL_StrReplace(L"aAa", L"A", L"x", false), std::wstring(L"xxx"));
    CHECK_EQ(VL_StrReplace(L"aaaa", L"a", L"b", true, false, 1, 2), std::wstring(L"abba"));
    CHECK_EQ(VL_StrReplace(L"aaaa", L"a", L"b", true, false, 0, 0), std::wstring(L"aaaa"));
    CHECK_EQ(VL_StrReplace(L"abc", L"", L"x"), std::wstring(L"abc"));
    CHECK_EQ(VL_StrReplace(L"aa", L"a", L"aa"), std::wstring(L"aaaa"));
    CHECK_EQ(VL_StrReplaceAll(L"AbAb", L"ab", L"", false), std::wstring());
    CHECK_EQ(VL_StrReplaceFirst(L"aaa", L"a", L""), std::wstring(L"aa"));
    CHECK_EQ(VL_StrExtractBetween(L"<b>x</b>", L"<b>", L"</b>"), std::wstring(L"x"));
    CHECK_EQ(VL_StrExtractBetween(L"<b>x", L"<b>", L""), std::wstring(L"x"));
    CHECK_EQ(VL_StrExtractBetween(L"k=v;", L"", L"="), std::wstring(L"k"));
    CHECK_EQ(VL_StrExtractBetween(L"(a)(b)", L"(", L")", 1), std::wstring(L"b"));
    CHECK_EQ(VL_StrExtractBetween(L"(a", L"(", L")"), std::wstring());
    const std::wstring marks = L"(a)()(b\n)(c)";
    CHECK_EQ(joined(VL_StrExtractBetweenAll(marks, L"(", L")")), std::wstring(L"<a><><b\n><c>"));
    CHECK_EQ(joined(VL_StrExtractBetweenAll(marks, L"(", L")", true, true, false, 2)),
             std::wstring(L"<(a)><(b\n)>"));
    CHECK_EQ(joined(VL_StrExtractBetweenAll(marks, L"(", L")", false, true, true, -1, false)),
             std::wstring(L"<a><><c>"));
    CHECK_EQ(joined(VL_StrExtractBetweenAll(L"X1y X2Y", L"x", L"y", false, false)),
             std::wstring(L"<1><2>"));
    CHECK(VL_StrExtractBetweenAll(marks, L"", L")").empty());
}

static void splittingAndBuilding()
{
    CHECK_EQ(joined(VL_StrSplit(L"a,b,,c,")), std::wstring(L"<a><b><><c><>"));
    CHECK_EQ(joined(VL_StrSplit(L"a,b,c", L",", 2)), std::wstring(L"<a><b,c>"));
    CHECK_EQ(joined(VL_StrSplit(L" a ;; b ", L";", 0, true, true)), std::wstring(L"<a><b>"));
    CHECK_EQ(joined(VL_StrSplit(g_pair, L"")), L"<a><" + g_face + L"><b>");
    CHECK_EQ(joined(VL_StrSplit(L"abc", L"", 2)), std::wstring(L"<a><bc>"));
    CHECK(VL_StrSplit(L"").empty());
    CHECK_EQ(joined(VL_StrSplit(L"abc", L"--")), std::wstring(L"<abc>"));
    CHECK_EQ(VL_StrRepeat(L"ab", 3), std::wstring(L"ababab"));
    CHECK_EQ(VL_StrRepeat(L"ab", -3), std::wstring());
    CHECK_EQ(VL_StrRepeat(L"ab", INTPTR_MAX), std::wstring());
    CHECK_EQ(VL_StrPad(L"7", 3, L"0", false), std::wstring(L"007"));
    CHECK_EQ(VL_StrPad(L"ab", 5, L"xy"), std::wstring(L"abxyx"));
    CHECK_EQ(VL_StrPad(L"ab", 1), std::wstring(L"ab"));
    CHECK_EQ(VL_StrPad(L"ab", 5, L""), std::wstring(L"ab"));
    CHECK_EQ(VL_StrPad(L"a", 4, g_face), L"a" + g_face);
    CHECK_EQ(VL_StrFormat(L"{0}-{1}-{0}", 1, L"x"), std::wstring(L"1-x-1"));
    CHECK_EQ(VL_StrFormat(L"{} {} {}", 2.5, true, VL_Any(7)), std::wstring(L"2.5 \u771F 7"));
    CHECK_EQ(VL_StrFormat(L"{{0}} {9} {x} { }"), std::wstring(L"{0} {9} {x} { }"));
    CHECK_EQ(VL_StrFormat(L"{0}", std::wstring(L"{1}"), 5), std::wstring(L"{1}"));
    for (const wchar_t *number : {L"0", L" -1.5 ", L"+.5", L"5.", L"1e9", L"1.5E-3"})
        CHECK(VL_IsNumeric(number));
    for (const wchar_t *number : {L"", L"-", L".", L"1e", L"1 2", L"0x1", L"1.2.3", L"\u4E00"})
        CHECK(!VL_IsNumeric(number));
}

// Each of these takes hours when it is quadratic.
static void hugeTexts()
{
    const std::wstring letters(5000000, L'a');
    const std::wstring what = std::wstring(200000, L'a') + L"b";
    CHECK_EQ(VL_StrFind(letters, what), -1);
    CHECK_EQ(VL_StrFind(letters, what, 0, false), -1);
    CHECK_EQ(VL_StrFindLast(letters, L"b" + what), -1);
    CHECK_EQ(VL_StrCount(letters, what, false), 0);
    CHECK_EQ(VL_StrReplace(letters, L"a", L"bc").size(), (size_t)10000000);
    CHECK_EQ(VL_StrReplace(letters, L"a", letters).size(), letters.size());
    CHECK(VL_StrExtractBetweenAll(letters, L"a", what).empty());
    CHECK_EQ(VL_StrReverse(letters).size(), letters.size());
}

void runTests()
{
    cutting();
    characters();
    searching();
    replacing();
    splittingAndBuilding();
    hugeTexts();
}
