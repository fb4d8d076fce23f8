// Array commands of one, two and three dimensions.
#include "runtime_test.h"

#include "46_numbers.h"
#include "56_array_tables.h"
#include "67_memory.h"

namespace {

bool isEven(intptr_t n)
{
    return n % 2 == 0;
}
std::wstring doubled(std::wstring text)
{
    return text + text;
}

std::wstring shownText(const VL_Any &value)
{
    return VL_ToOutputStr(value);
}

void accessTest()
{
    const VL_Array arr{1, 2, 3};
    struct Row
    {
        intptr_t index;
        const wchar_t *plain;
        const wchar_t *counted;
    };
    const Row rows[] = {{0, L"1", L"1"},          {2, L"3", L"3"},         {3, L"?", L"?"},
                        {-1, L"?", L"3"},         {-3, L"?", L"1"},        {-4, L"?", L"?"},
                        {INTPTR_MIN, L"?", L"?"}, {INTPTR_MAX, L"?", L"?"}};
    for (const Row &row : rows) {
        CHECK_EQ(VL_ArrayGet(arr, row.index, L"?").toStr(), std::wstring(row.plain));
        CHECK_EQ(VL_ArrayGet3(arr, row.index, L"?").toStr(), std::wstring(row.counted));
    }
    CHECK_EQ(VL_ArrayLen(VL_Any(L"ab")), 2);
    CHECK_EQ(VL_ArrayLen(VL_Any(5)), 1);
    CHECK_EQ(VL_ArrayLen(VL_Any(arr)), 3);
    CHECK_EQ(VL_ArrayGet(VL_Any(5), 7).toInt(), 5LL);
    CHECK_EQ(VL_ArrayGet(std::wstring(L"ab"), 2).type == VL_Any::TypeString, true);
    CHECK_EQ(VL_ArrayGet(VL_Array2D{{1}, {2, 3}}, 1).toStr(), std::wstring(L"[2, 3]"));
}

void changeTest()
{
    VL_Array arr;
    VL_ArrayPush(arr, 1, L"b", 2.5, true, arr);
    CHECK_EQ(shownText(arr), std::wstring(L"[1, \"b\", 2.5, \u771F, [1, \"b\", 2.5, \u771F]]"));
    VL_ArrayRemove(arr, 1, 3);
    VL_ArrayRemove(arr, 9);
    VL_ArrayRemove(arr, 0, 0);
    VL_ArraySet(arr, -1, 7);
    VL_ArraySet(arr, -5, 8);
    VL_ArraySet(arr, 3, arr[0]);
    CHECK_EQ(shownText(arr), std::wstring(L"[1, 7, [\u7A7A], 1]"));
    VL_ArrayInsert(arr, 0, L"x");
    VL_ArrayInsert(arr, 99, L"y");
    VL_ArrayInsert(arr, -1, arr[1]);
    VL_ArraySwap(arr, 0, -1);
    CHECK_EQ(shownText(arr), std::wstring(L"[\"y\", 1, 7, [\u7A7A], 1, 1, \"x\"]"));
    VL_ArrayUnique(arr);
    CHECK_EQ(shownText(arr), std::wstring(L"[\"y\", 1, 7, [\u7A7A], \"x\"]"));
    CHECK_EQ(VL_ArrayPop(arr).toStr(), std::wstring(L"x"));
    VL_ArrayFill(arr, 0, 2, 4);
    VL_ArrayFill(arr, 5, 1, INTPTR_MAX);
    CHECK_EQ(shownText(arr), std::wstring(L"[\"y\", 1, 0, 0, 0, 0]"));
    VL_ArrayFill(arr, L"z");
    CHECK_EQ(VL_ArrayCount(arr, L"z"), (intptr_t)6);
    VL_ArrayClear(arr);
    CHECK_EQ(VL_ArrayPop(arr).toStr() + VL_ArrayFirst(arr).toStr(), std::wstring());

    VL_Any inside;
    VL_ArrayPush(inside, 3, 1, 2);
    const VL_Any before = inside;
    VL_ArraySort(inside, true);
    CHECK_EQ(shownText(inside) + shownText(before), std::wstring(L"[3, 2, 1][3, 1, 2]"));
}

void orderTest()
{
    VL_Array mixed{L"b", 10, 2.5, L"B", VL_Any(), L"10", -1, NAN, VL_Array{2}, VL_Array{1, 5}};
    VL_ArraySort(mixed);
    CHECK_EQ(shownText(mixed),
             std::wstring(L"[[\u7A7A], -1, 2.5, 10, nan, \"10\", \"B\", \"b\", [1, 5], [2]]"));
    VL_Array stable{VL_Array{1, L"a"}, VL_Array{0}, VL_Array{1, L"a"}};
    VL_ArraySort(stable, true);
    CHECK_EQ(stable[2].toStr(), std::wstring(L"[0]"));
    VL_Array large;
    for (int i = 0; i < 200000; ++i)
        large.push_back(i * 7919 % 200003 / 2);
    VL_ArrayUnique(large);
    VL_ArrayShuffle(large);
    VL_ArraySort(large);
    bool ordered = true;
    for (size_t i = 1; i < large.size(); ++i)
        ordered = ordered && large[i - 1] < large[i];
    CHECK(ordered);
    VL_ArrayReverse(large);
    CHECK_EQ(VL_ArrayLast(large).toInt(), 0LL);
}

void searchTest()
{
    const VL_Array arr{1, L"2", 3.0, L"x"};
    CHECK_EQ(VL_ArrayFind(arr, 2), (intptr_t)1);
    CHECK_EQ(VL_ArrayFind(arr, 1, 1), (intptr_t)-1);
    CHECK_EQ(VL_ArrayContains(arr, L"3"), true);
    CHECK_EQ(VL_ArrayContains(VL_Array(), VL_Any()), false);
    struct Row
    {
        intptr_t start;
        intptr_t end;
        const wchar_t *text;
    };
    const Row rows[] = {{1, 3, L"2,3"}, {-2, 2147483647, L"3,x"}, {0, -1, L"1,2,3"},
                        {2, 1, L""},    {-99, 99, L"1,2,3,x"},    {4, 9, L""}};
    for (const Row &row : rows)
        CHECK_EQ(VL_ArrayJoin(VL_ArraySlice(arr, row.start, row.end)), std::wstring(row.text));
    CHECK_EQ(VL_ArrayJoin(VL_Array{VL_Any(), VL_Array{1}, true}, L"|"),
             std::wstring(L"|[1]|\u771F"));
    CHECK_EQ(VL_ArrayJoin(VL_ArrayFilter(VL_Array{1, 2, 3, 4}, &isEven)), std::wstring(L"2,4"));
    CHECK_EQ(VL_ArrayJoin(VL_ArrayMap(VL_Array{1, L"b"}, &doubled)), std::wstring(L"11,bb"));
    CHECK_EQ(VL_ArrayConcat(arr, arr).size(), (size_t)8);
}

void numbersTest()
{
    const VL_Array arr{4, L"2.5", L"many", VL_Any(), 1};
    CHECK_EQ(VL_ArraySum(arr), 7.5);
    CHECK_EQ(VL_ArrayAverage(arr), 2.5);
    CHECK_EQ(VL_ArrayMax(arr).toStr() + VL_ArrayMin(arr).toStr(), std::wstring(L"41"));
    CHECK_EQ(VL_ArrayMax(VL_Array{L"b", L"c", L"a"}).toStr(), std::wstring(L"c"));
    CHECK_EQ(VL_ArrayMin(VL_Array()).type == VL_Any::TypeNone, true);
    CHECK_EQ(VL_ArrayVariance(VL_Array{2, 4, 4, 4, 5, 5, 7, 9}), 4.0);
    CHECK_EQ(VL_ArrayStdDev(VL_Array{1e9 + 2, 1e9 + 4, 1e9 + 6}) > 1.63, true);
    CHECK_EQ(VL_ArrayAverage(VL_Array()), 0.0);
    CHECK_EQ(VL_ArraySum(VL_Array(1000000, VL_Any(0.1))), 100000.0);
    CHECK_EQ(VL_ArrayRandom(VL_Array{5}).toInt(), 5LL);
}

void tablesTest()
{
    VL_Array2D table = VL_Create2DArray(2, 3, 0);
    CHECK(VL_Set2D(table, 1, 2, L"x") && !VL_Set2D(table, 2, 0, 1) && !VL_Set2D(table, 0, -1, 1));
    VL_Add2DRow(table, VL_Array{1, 2, 3, 4});
    CHECK_EQ(VL_Get2DRows(table) * 10 + VL_Get2DCols(table), (intptr_t)34);
    CHECK_EQ(VL_ToOutputStr(VL_Get2DCol(table, 3)), std::wstring(L"[[\u7A7A], [\u7A7A], 4]"));
    CHECK(VL_Remove2DRow(table, 0) && !VL_Remove2DRow(table, 5));
    CHECK_EQ(VL_ToOutputStr(table), std::wstring(L"[[0, 0, \"x\"], [1, 2, 3, 4]]"));
    CHECK_EQ(VL_Get2D(table, 9, 9, L"?").toStr(), std::wstring(L"?"));
    VL_ArrayPush(table, VL_Array{5});
    CHECK_EQ(VL_Get2D(table, 2, 0).toInt(), 5LL);
    CHECK(VL_Create2DArray(-1, 5).empty() && VL_Create2DArray(INTPTR_MAX, INTPTR_MAX).empty());

    VL_Array3D cube = VL_Create3DArray(2, 3, 4, 1);
    CHECK(VL_Set3D(cube, 1, 2, 3, 9) && !VL_Set3D(cube, 2, 0, 0, 9));
    CHECK_EQ(VL_Get3D(cube, 1, 2, 3).toInt(), 9LL);
    CHECK_EQ(VL_Get3DSize(cube, 0) * 100 + VL_Get3DSize(cube, 1) * 10 + VL_Get3DSize(cube, 2),
             (intptr_t)234);
    CHECK_EQ(VL_ToOutputStr(VL_Array3D{{{1}, {2}}}), std::wstring(L"[[[1], [2]]]"));
    CHECK_EQ(VL_GetArrayMemorySize(VL_Array(3)), (long long)(3 * sizeof(VL_Any)));
    const VL_ByteArray bytes("AB", 2);
    CHECK_EQ(*reinterpret_cast<const char *>(VL_GetAddress(bytes, 1)), 'B');
    CHECK_EQ(VL_GetArrayAddress(VL_Array(), 0), (intptr_t)0);
}

} // namespace

void runTests()
{
    accessTest();
    changeTest();
    orderTest();
    searchTest();
    numbersTest();
    tablesTest();
}
