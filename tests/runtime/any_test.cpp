// VL_Any: views, conversions, arithmetic, comparisons, items, sharing.
#include "runtime_test.h"

#include "13_extension.h"
#include "32_item_access.h"

namespace {

const wchar_t kTrue[] = L"\u771F";

intptr_t takeInt(intptr_t v)
{
    return v;
}
std::wstring takeText(const std::wstring &v)
{
    return v;
}
double giveDouble(const VL_Any &v)
{
    return v;
}

void viewsTest()
{
    struct Row
    {
        VL_Any value;
        int type;
        long long asInt;
        double asDouble;
        bool asBool;
        const wchar_t *text;
    };
    const Row rows[] = {
        {VL_Any(), 0, 0, 0, false, L""},
        {VL_Any(-7), 1, -7, -7, true, L"-7"},
        {VL_Any(0x123456789ALL), 1, 0x123456789ALL, 78187493530.0, true, L"78187493530"},
        {VL_Any(3.7), 2, 3, 3.7, true, L"3.7"},
        {VL_Any(1e300), 2, 9223372036854775807LL, 1e300, true, L"1e+300"},
        {VL_Any(0.1 + 0.2), 2, 0, 0.1 + 0.2, true, L"0.3"},
        {VL_Any(L"12"), 3, 0, 0, true, L"12"},
        {VL_Any(L""), 3, 0, 0, false, L""},
        {VL_Any(L'x'), 3, 0, 0, true, L"x"},
        {VL_Any(true), 4, 1, 1, true, kTrue},
        {VL_NewDictAny(), 5, 0, 0, false, L"[\u5B57\u5178]"},
        {VL_Any(VL_Array{1, L"a", VL_Array{2}}), 6, 0, 0, true, L"[1, \"a\", [2]]"},
        {VL_Any(VL_ByteArray("AB\r", 3)), 7, 0, 0, true, L"[41 42 0D]"},
        {VL_Any((HWND)(intptr_t)77), 1, 77, 77, true, L"77"},
    };
    for (const Row &row : rows) {
        CHECK_EQ((int)row.value.type, row.type);
        CHECK_EQ(row.value.toInt(), row.asInt);
        CHECK_EQ(row.value.toDouble(), row.asDouble);
        CHECK_EQ(row.value.toBool(), row.asBool);
        CHECK_EQ(row.value.toStr(), std::wstring(row.text));
    }
}

void conversionsTest()
{
    const VL_Any text(L" 12.6kg");
    CHECK_EQ(takeInt(text), (intptr_t)12);
    CHECK_EQ(giveDouble(text), 12.6);
    CHECK_EQ(takeText(VL_Any(1.5)), std::wstring(L"1.5"));
    VL_Array list = VL_Any(5);
    CHECK_EQ(list.size(), (size_t)1);
    list = VL_Any();
    CHECK(list.empty());
    const VL_ByteArray bytes = VL_Any(L"\u4E2D");
    CHECK_EQ(VL_ByteArrayText(bytes), std::wstring(L"[E4 B8 AD]"));
    const VL_Array2D table = VL_Any(VL_Array2D{{1, 2}, {3}});
    CHECK_EQ(table[1][0].toInt(), 3LL);

    CHECK_EQ(VL_ToInt(L"  -42abc"), (intptr_t)-42);
    CHECK_EQ(VL_ToInt(L"\uFF11\uFF12"), (intptr_t)12);
    CHECK_EQ(VL_ToInt(L"99999999999999999999"), (intptr_t)INTPTR_MAX);
    CHECK_EQ(VL_ToInt(-3.9), (intptr_t)-3);
    CHECK_EQ(VL_ToLongLong(L"-9223372036854775808"), (long long)INT64_MIN);
    CHECK_EQ(VL_ToDouble(L"1e3x"), 1000.0);
    CHECK_EQ(VL_ToDouble(L".5"), 0.5);
    CHECK_EQ(VL_ToDouble(L"abc"), 0.0);
    CHECK_EQ(VL_ToDouble(2.346, true), 2.35);
    CHECK_EQ(VL_ToDouble(1234.5, true, -2), 1200.0);
    CHECK_EQ(VL_ToDouble(std::wstring(100000, L'1')) > 1e300, true);
    CHECK_EQ(VL_ToDouble(L"0." + std::wstring(5000, L'0') + L"1"), 0.0);
    CHECK_EQ(VL_ToStr(2.5, true, 3), std::wstring(L"2.500"));
    CHECK_EQ(VL_ToStr(1e308, true, 15).size() > 300, true);
    CHECK_EQ(VL_ToStr(VL_Any()), std::wstring());
    CHECK_EQ(VL_ToStr(VL_NewDictAny()), std::wstring());
    CHECK_EQ(VL_ToStr(false), std::wstring(L"\u5047"));
    CHECK_EQ(VL_ToBool(L" True "), true);
    CHECK_EQ(VL_ToBool(L"\u5047"), false);
    CHECK_EQ(VL_ToBool(L"0.0"), false);
    CHECK_EQ(VL_ToBool(VL_Any(L"-1")), true);
    CHECK_EQ(VL_ParseNumber(L"\u5171 -12.5 \u5143"), -12.5);
}

void arithmeticTest()
{
    const VL_Any text(L"a");
    const VL_Any three(3);
    const VL_Any half(0.5);
    CHECK_EQ((three + half).toStr(), std::wstring(L"3.5"));
    CHECK_EQ((three + text).toStr(), std::wstring(L"3a"));
    CHECK_EQ((three / VL_Any(0)).toStr(), std::wstring(L"0"));
    CHECK_EQ((half / VL_Any(0.0)).toStr(), std::wstring(L"inf"));
    CHECK_EQ((VL_Any(INT64_MIN) / VL_Any(-1)).toInt(), (long long)INT64_MIN);
    CHECK_EQ((VL_Any(INT64_MIN) % VL_Any(-1)).toInt(), 0LL);
    CHECK_EQ(VL_Any(3.7) + 1, 4LL);
    CHECK_EQ(1.0 + VL_Any(3.5), 4.5);
    CHECK_EQ(7 % VL_Any(0), 0LL);
    CHECK_EQ(2.5 / VL_Any(0), 0.0);
    CHECK_EQ((VL_Any(VL_Array(1, 1)) + VL_Any(VL_Array(1, 2))).toStr(), std::wstring(L"[1, 2]"));

    VL_Any sum(1.5);
    sum += 1;
    CHECK_EQ(sum.toStr(), std::wstring(L"2.5"));
    sum++;
    CHECK_EQ((-sum).toStr(), std::wstring(L"-3.5"));
    intptr_t count = 10;
    count += VL_Any(5);
    count /= VL_Any(0);
    CHECK_EQ(count, (intptr_t)0);

    std::wstring line = L"n=";
    line += 65;
    line += 1.5;
    line += true;
    line += VL_Any(L"!");
    CHECK_EQ(line, std::wstring(L"n=651.5\u771F!"));
    CHECK_EQ(std::wstring(L"a") + 16, std::wstring(L"a16"));
    CHECK_EQ(std::wstring(L"\u6A21\u5757.dll") + (long long)(16),
             std::wstring(L"\u6A21\u5757.dll+0x10"));
    CHECK_EQ(std::wstring(L"game.EXE") + 256 + 255, std::wstring(L"game.EXE+0x100+0xFF"));
    std::wstring address = L"a.dll";
    address += 16;
    CHECK_EQ(address, std::wstring(L"a.dll+0x10"));
    CHECK_EQ(1 + std::wstring(L"a"), std::wstring(L"1a"));
    CHECK_EQ((std::wstring(L"v") + VL_Array{1, L"x"}), std::wstring(L"v[1, \"x\"]"));
    CHECK_EQ(std::wstring(L"v") + 0.1f, std::wstring(L"v0.1"));
}

void comparisonsTest()
{
    struct Row
    {
        VL_Any a;
        VL_Any b;
        int order;
    };
    const VL_Any dict = VL_NewDictAny();
    VL_Any full = VL_NewDictAny();
    VL_DictSet(full, L"k", VL_Any(1));
    const Row rows[] = {
        {5, 5.0, 0},
        {5, L"5", 0},
        {10, L"9", 1},
        {10, L"9a", -1},
        {0.5, L" 5e-1 ", 0},
        {true, 1, 0},
        {L"10", L"9", -1},
        {L"\uFFFD", L"a", 1},
        {VL_Any(), 0, 0},
        {VL_Any(), L"", 0},
        {VL_Any(), VL_Any(), 0},
        {VL_Any(), L"x", -1},
        {NAN, 1, 2},
        {dict, dict, 0},
        {dict, VL_NewDictAny(), 0},
        {dict, full, 2},
        {VL_Array{1, 2}, VL_Array{1, 3}, -1},
        {VL_Array{1}, VL_Array{1, 0}, -1},
        {VL_Array{1}, 1, 2},
        {VL_ByteArray("a", 1), VL_ByteArray("b", 1), -1},
        {9007199254740993LL, 9007199254740992LL, 1},
    };
    for (const Row &row : rows) {
        CHECK_EQ(VL_AnyOrder(row.a, row.b), row.order);
        CHECK_EQ(VL_AnyOrder(row.b, row.a), row.order == 2 ? 2 : -row.order);
        CHECK_EQ(row.a == row.b, row.order == 0);
        CHECK_EQ(row.a < row.b, row.order == -1);
        CHECK_EQ(row.a >= row.b, row.order == 0 || row.order == 1);
    }
    CHECK(VL_Any(3) < 4 && 4 > VL_Any(3) && VL_Any(3.5) > 3 && 3.5 == VL_Any(3.5));
    CHECK(VL_Any(L"12") == 12 && VL_Any(L"abc") == std::wstring(L"abc") && !(VL_Any(L"x") == 0));
    CHECK(VL_Any(L"abc") == true && VL_Any(2) != true && VL_Any() == false);
    CHECK(5 <= VL_Any(5) && !(5 <= VL_Any(NAN)) && VL_Any(NAN) != NAN);
}

void itemsTest()
{
    VL_Any list(VL_Array{1, L"b", VL_Array{7}});
    const VL_Any copy = list;
    list[0] = 9;
    list[2][0] += 1;
    list[4] = L"e";
    list[-1] = 5;
    CHECK_EQ(VL_ToOutputStr(list), std::wstring(L"[9, \"b\", [8], [\u7A7A], \"e\"]"));
    CHECK_EQ(VL_ToOutputStr(copy), std::wstring(L"[1, \"b\", [7]]"));
    CHECK_EQ(VL_ToOutputStr(list[99]), std::wstring(L"[\u7A7A]"));

    VL_Any dict;
    dict[L"user"][L"tags"][1] = L"x";
    dict[std::wstring(L"n")] = 1;
    const VL_Any shared = dict;
    dict[L"n"]++;
    CHECK_EQ(VL_GenerateJsonFromAny(shared),
             std::wstring(L"{\"n\":2, \"user\":{\"tags\":[null, \"x\"]}}"));
    CHECK(VL_DictHas(dict, L"n") && VL_DictRemove(dict, L"n") && !VL_DictHas(shared, L"n"));
    CHECK_EQ(VL_DictKeys(dict).size(), (size_t)1);
    const VL_Any text(L"ab");
    CHECK_EQ(text[1].toStr(), std::wstring(L"b"));

    VL_Any own = VL_Array{1, 2};
    own = own[1];
    CHECK_EQ(own.toInt(), 2LL);

    VL_Array plain{1};
    VL_At(plain, 3) = 4;
    VL_At(plain, -1) = 5;
    VL_At(plain, INTPTR_MAX) = 6;
    CHECK_EQ(VL_ToOutputStr(plain), std::wstring(L"[1, [\u7A7A], [\u7A7A], 4]"));
    VL_Array2D table;
    VL_At(VL_At(table, 1), 1) = 5;
    CHECK_EQ(VL_ToOutputStr(table), std::wstring(L"[[], [[\u7A7A], 5]]"));
    std::wstring word = L"abc";
    VL_At(word, 1) = std::wstring(L"\u4E2D");
    VL_At(word, 9) = std::wstring(L"x");
    CHECK_EQ(word + VL_At(word, 0), std::wstring(L"a\u4E2Dca"));
    VL_ByteArray bytes(2);
    VL_At(bytes, 1) = 200;
    VL_At(bytes, 2) = 3;
    CHECK_EQ(VL_ByteArrayText(bytes + bytes), std::wstring(L"[00 C8 00 C8]"));
    bytes.append(bytes);
    CHECK_EQ(bytes.size(), (size_t)4);
    CHECK(VL_ByteArray(-5).empty() && VL_ByteArray().ptr() == NULL);
}

// A value inside a value inside a value: nothing may recurse without bound.
void deepTest()
{
    VL_Any deep = 1;
    VL_Any other = 1;
    for (int i = 0; i < 300000; ++i) {
        deep = VL_Any(VL_Array{deep});
        VL_Any dict = VL_NewDictAny();
        VL_DictSet(dict, L"k", other);
        other = dict;
    }
    CHECK_EQ(VL_ToOutputStr(deep), std::wstring(L"[[[[...]]]]"));
    CHECK_EQ(deep == VL_Any(VL_Array{deep}), false);
    CHECK(VL_GenerateJsonFromAny(other).find(L"null") != std::wstring::npos);
    VL_DictSet(other, L"k", other);
    CHECK(VL_ToOutputStr(other).size() > 512);
    VL_DictClear(other);
}

void extensionTest()
{
    CHECK_EQ(VL_Ext_Invoke_CallText(L"missing.dll", L"c", L"{}"), std::wstring());
    CHECK_EQ(VL_Ext_GetLastError(), std::wstring(L"LoadLibraryW failed: missing.dll"));
    CHECK_EQ(VL_Ext_Invoke_CallText(L"kernel32.dll", L"c", L"{}", L"nope"), std::wstring());
    CHECK_EQ(VL_Ext_GetLastError(), std::wstring(L"GetProcAddress failed: nope @ kernel32.dll"));
}

} // namespace

void runTests()
{
    viewsTest();
    conversionsTest();
    arithmeticTest();
    comparisonsTest();
    itemsTest();
    deepTest();
    extensionTest();
}
