// Byte array commands: editing, cutting, searching, bits, numbers, texts and memory.
#include "runtime_test.h"

#include "40_files.h"
#include "41_paths.h"
#include "57_byte_array_commands.h"
#include "58_byte_array_values.h"

namespace {

const intptr_t kHuge = (intptr_t)(((size_t)-1) >> 1);

VL_ByteArray bytes(const wchar_t *hex)
{
    return VL_HexToByteArray(hex);
}

std::wstring hex(const VL_ByteArray &value)
{
    return VL_ByteArrayToHex(value);
}

std::wstring numbers(const VL_Array &array)
{
    std::wstring text;
    for (const VL_Any &item : array)
        text += item.toStr() + L" ";
    return text;
}

void testEditing()
{
    VL_ByteArray value = VL_CreateByteArray(3, 0x1FF);
    CHECK_EQ(hex(value), L"FFFFFF");
    CHECK(VL_ByteArraySet(value, 1, 0x141));
    CHECK(!VL_ByteArraySet(value, 3, 1));
    CHECK(!VL_ByteArraySet(value, -1, 1));
    CHECK_EQ(VL_ByteArrayGet(value, 1), 0x41);
    CHECK_EQ(VL_ByteArrayGet(value, kHuge), 0);
    CHECK(VL_ByteArrayAppendByte(value, 7));
    CHECK(VL_ByteArrayAppend(value, value));
    CHECK_EQ(hex(value), L"FF41FF07FF41FF07");
    CHECK(VL_ByteArrayInsert(value, 1, bytes(L"0102")));
    CHECK(VL_ByteArrayInsert(value, 10, bytes(L"99")));
    CHECK(!VL_ByteArrayInsert(value, 12, bytes(L"99")));
    CHECK(VL_ByteArrayRemove(value, 9, kHuge));
    CHECK(!VL_ByteArrayRemove(value, 0, 0));
    CHECK(!VL_ByteArrayRemove(value, -1, 2));
    CHECK_EQ(hex(value), L"FF010241FF07FF41FF");
    CHECK(VL_ByteArrayFill(value, 0, 7));
    CHECK(VL_ByteArrayFill(value, 0xEE, 0, 2));
    CHECK_EQ(hex(value), L"EEEE0241FF07FF0000");
    CHECK(VL_ByteArrayResize(value, 2));
    CHECK(!VL_ByteArrayResize(value, -1));
    CHECK(!VL_ByteArrayResize(value, kHuge));
    CHECK_EQ(hex(value), L"EEEE");
    VL_ByteArrayClear(value);
    CHECK(VL_ByteArrayIsEmpty(value));
    CHECK(VL_CreateByteArray(kHuge).empty());
    CHECK(VL_CreateByteArray(-5).empty());
}

void testCutting()
{
    const VL_ByteArray value = bytes(L"00 01 02 03 04");
    CHECK_EQ(hex(VL_ByteArrayMid(value, 1, 2)), L"0102");
    CHECK_EQ(hex(VL_ByteArrayMid(value, 3, kHuge)), L"0304");
    CHECK_EQ(hex(VL_ByteArrayMid(value, 5)), L"");
    CHECK_EQ(hex(VL_ByteArrayMid(value, -1)), L"");
    CHECK_EQ(hex(VL_ByteArrayLeft(value, 9)), L"0001020304");
    CHECK_EQ(hex(VL_ByteArrayLeft(value, -1)), L"");
    CHECK_EQ(hex(VL_ByteArrayRight(value, 2)), L"0304");
    CHECK_EQ(hex(VL_ByteArrayRight(value, kHuge)), L"0001020304");
    CHECK_EQ(hex(VL_ByteArrayRight(VL_ByteArray(), 2)), L"");
    CHECK_EQ(hex(VL_ByteArrayConcat(value, bytes(L"FF"), VL_ByteArray(), bytes(L"EE"))),
             L"0001020304FFEE");
    CHECK_EQ(hex(VL_ByteArrayRepeat(bytes(L"AB"), 3)), L"ABABAB");
    CHECK(VL_ByteArrayRepeat(value, kHuge).empty());
    CHECK_EQ(hex(VL_ByteArrayReverse(value)), L"0403020100");
    CHECK_EQ(hex(VL_ByteArrayTrim(bytes(L"200A4120420D09"))), L"412042");
    CHECK(VL_ByteArrayTrim(bytes(L"2020")).empty());
    const VL_Array parts = VL_ByteArraySplit(bytes(L"01000203000000"), bytes(L"00"));
    CHECK_EQ(parts.size(), (size_t)5);
    CHECK_EQ(hex(parts[1]), L"0203");
    CHECK_EQ(hex(parts[4]), L"");
    CHECK_EQ(VL_ByteArraySplit(value, VL_ByteArray()).size(), (size_t)1);
}

void testSearching()
{
    const VL_ByteArray value = bytes(L"AABBAABBAACC");
    CHECK_EQ(VL_ByteArrayFind(value, bytes(L"AACC")), 4);
    CHECK_EQ(VL_ByteArrayFind(value, bytes(L"AABBAACC")), 2);
    CHECK_EQ(VL_ByteArrayFind(value, bytes(L"AA"), 1), 2);
    CHECK_EQ(VL_ByteArrayFind(value, bytes(L"AA"), -9), 0);
    CHECK_EQ(VL_ByteArrayFind(value, bytes(L"AA"), kHuge), -1);
    CHECK_EQ(VL_ByteArrayFind(value, VL_ByteArray()), -1);
    CHECK_EQ(VL_ByteArrayFind(VL_ByteArray(), value), -1);
    CHECK_EQ(numbers(VL_ByteArrayFindAll(value, bytes(L"AABB"))), L"0 2 ");
    CHECK_EQ(VL_ByteArrayCount(bytes(L"0000000000"), bytes(L"0000")), 2);
    CHECK(!VL_ByteArrayContains(value, bytes(L"CCAA")));
    CHECK(VL_ByteArrayStartsWith(value, bytes(L"AABB")));
    CHECK(!VL_ByteArrayStartsWith(bytes(L"AA"), value));
    CHECK(VL_ByteArrayEndsWith(value, bytes(L"AACC")));
    CHECK_EQ(hex(VL_ByteArrayReplace(value, bytes(L"AABB"), bytes(L"01"))), L"0101AACC");
    CHECK_EQ(hex(VL_ByteArrayReplace(value, bytes(L"AA"), VL_ByteArray(), 2)), L"BBBBAACC");
    CHECK_EQ(hex(VL_ByteArrayReplace(value, bytes(L"AA"), bytes(L"01"), 0)), hex(value));
    CHECK_EQ(VL_ByteArrayCompare(bytes(L"01"), bytes(L"0100")), -1);
    CHECK_EQ(VL_ByteArrayCompare(bytes(L"FF"), bytes(L"01FF")), 1);
    CHECK(VL_ByteArrayEquals(VL_ByteArray(), VL_ByteArray()));
    // The worst case for a search that steps back: must not take minutes.
    VL_ByteArray wanted(100000);
    VL_ByteArraySet(wanted, 99999, 1);
    CHECK_EQ(VL_ByteArrayFind(VL_ByteArray(5000000), wanted), -1);
}

void testBits()
{
    CHECK_EQ(hex(VL_ByteArrayXor(bytes(L"0F0F0F"), bytes(L"FF01"))), L"F00EF0");
    CHECK_EQ(hex(VL_ByteArrayAnd(bytes(L"0F0F"), bytes(L"0C"))), L"0C0C");
    CHECK_EQ(hex(VL_ByteArrayOr(bytes(L"01"), bytes(L"80FF"))), L"81");
    CHECK_EQ(hex(VL_ByteArrayXor(bytes(L"0F"), VL_ByteArray())), L"0F");
    CHECK_EQ(hex(VL_ByteArrayNot(bytes(L"00F0"))), L"FF0F");
    CHECK_EQ(hex(VL_ByteArrayShiftLeft(bytes(L"123456"), 4)), L"234560");
    CHECK_EQ(hex(VL_ByteArrayShiftLeft(bytes(L"123456"), 12)), L"456000");
    CHECK_EQ(hex(VL_ByteArrayShiftRight(bytes(L"123456"), 9)), L"00091A");
    CHECK_EQ(hex(VL_ByteArrayShiftRight(bytes(L"8001"), -1)), L"0002");
    CHECK_EQ(hex(VL_ByteArrayShiftLeft(bytes(L"FFFF"), kHuge)), L"0000");
    CHECK_EQ(hex(VL_ByteArrayShiftLeft(bytes(L"FFFF"), -kHuge - 1)), L"0000");
}

void testNumbers()
{
    VL_ByteArray value = bytes(L"FEFFFFFF01020304");
    CHECK_EQ(VL_ByteArrayGetInt(value, 0), -2LL);
    CHECK_EQ(VL_ByteArrayGetUInt(value, 0), 4294967294LL);
    CHECK_EQ(VL_ByteArrayGetInt(value, 4, 4, true), 0x01020304LL);
    CHECK_EQ(VL_ByteArrayGetInt(value, 3, 2), 0x01FFLL);
    CHECK_EQ(VL_ByteArrayGetInt(value, 5), 0LL);
    CHECK_EQ(VL_ByteArrayGetInt(value, 0, 9), 0LL);
    CHECK_EQ(VL_ByteArrayGetInt(value, kHuge, 1), 0LL);
    CHECK(VL_ByteArraySetInt(value, 2, -2, 2, true));
    CHECK(!VL_ByteArraySetInt(value, 7, 1, 2));
    CHECK_EQ(hex(value), L"FEFFFFFE01020304");
    CHECK(VL_ByteArraySetDouble(value, 0, 3.25));
    CHECK_EQ(VL_ByteArrayGetDouble(value, 0), 3.25);
    CHECK_EQ(VL_ByteArrayGetDouble(VL_DoubleToByteArray(1.5, 4), 0, 4), 1.5);
    CHECK_EQ(VL_ByteArrayGetDouble(value, 1), 0.0);
    CHECK_EQ(hex(VL_IntToByteArray(258, 2, true)), L"0102");
    CHECK_EQ(hex(VL_IntToByteArray(-1, 8)), L"FFFFFFFFFFFFFFFF");
    CHECK_EQ(hex(VL_IntToByteArray(1, 0)), L"");
    CHECK_EQ(numbers(VL_ByteArrayToArray(bytes(L"00FF10"))), L"0 255 16 ");
    CHECK_EQ(hex(VL_ArrayToByteArray({VL_Any(1), VL_Any(-1), VL_Any(2.9), VL_Any(L"65")})),
             L"01FF0241");
}

void testAnyValue()
{
    const VL_Any text(L"\u4E2D");
    CHECK_EQ(hex(VL_ToByteArray(text)), L"E4B8AD");
    CHECK_EQ(hex(VL_ToByteArray(L"A")), L"41");
    CHECK_EQ(hex(VL_ToByteArray(1)), L"01000000");
    CHECK_EQ(hex(VL_ToByteArray((intptr_t)1)), L"01000000");
    CHECK_EQ(hex(VL_ToByteArray(VL_Any(-1))), L"FFFFFFFF");
    CHECK_EQ(hex(VL_ToByteArray(0x123456789ALL)), L"9A78563412000000");
    CHECK_EQ(hex(VL_ToByteArray(1.0)), L"000000000000F03F");
    CHECK_EQ(hex(VL_ToByteArray(true)), L"01");
    CHECK_EQ(hex(VL_ToByteArray(VL_Any(bytes(L"0102")))), L"0102");
    CHECK_EQ(hex(VL_ToByteArray(VL_Array{VL_Any(1), VL_Any(2)})), L"0102");
    CHECK_EQ(hex(VL_ToByteArray(VL_Any())), L"");
    CHECK_EQ(VL_ByteArrayGet(VL_Any(bytes(L"0102")), VL_Any(1)), 2);
}

void testTexts()
{
    CHECK_EQ(hex(VL_TextToByteArray(L"\u4E2D", 936)), L"D6D0");
    CHECK_EQ(hex(VL_TextToByteArray(L"a\u4E2D", 1200)), L"61002D4E");
    CHECK_EQ(VL_ByteArrayToText(bytes(L"D6D0"), 936), L"\u4E2D");
    CHECK_EQ(VL_ByteArrayToText(bytes(L"D6D0"), -1), L"\u4E2D");
    CHECK_EQ(VL_ByteArrayToText(bytes(L"FEFF4E2D"), -1), L"\u4E2D");
    CHECK_EQ(VL_ByteArrayToText(bytes(L"FFFE2D4E61"), 1200), L"\u4E2D");
    CHECK_EQ(VL_ByteArrayToText(bytes(L"EFBBBF41")), L"A");
    CHECK_EQ(VL_ByteArrayToText(bytes(L"410042")), std::wstring(L"A\0B", 3));
    CHECK_EQ(VL_ByteArrayToHex(bytes(L"0aFf"), L"-", false), L"0a-ff");
    CHECK_EQ(hex(bytes(L"0x0A, 0xFF 1:2-3")), L"");
    CHECK_EQ(hex(bytes(L"0x0A, 0xFF 10:20-30")), L"0AFF102030");
    CHECK_EQ(hex(bytes(L"0G")), L"");
    CHECK_EQ(hex(bytes(L"ABC")), L"");
}

void testMemoryAndFiles()
{
    const char memory[] = "\xE4\xB8\xAD!";
    CHECK_EQ(VL_ByteArrayToTextFromMemory((intptr_t)memory, 4), L"\u4E2D!");
    CHECK_EQ(VL_ByteArrayFromMemory((intptr_t)memory, 3).size(), (size_t)3);
    CHECK(VL_ByteArrayFromMemory(0, 10).empty());
    CHECK(VL_ByteArrayFromMemory(8, 10).empty());
    CHECK(VL_ByteArrayFromMemory((intptr_t)memory, -1).empty());
    CHECK(VL_ByteArrayFromMemory((intptr_t)memory, kHuge).empty());
    const std::wstring path = VL_JoinPath(VL_GetTempDir(), L"vorel_\u5B57\u8282.bin");
    CHECK(VL_WriteFileFromMemory(path, (intptr_t)memory, 4));
    CHECK(VL_WriteFileByteArray(path, bytes(L"0001"), true));
    CHECK_EQ(hex(VL_ReadFileByteArray(path)), L"E4B8AD210001");
    CHECK_EQ(hex(VL_ReadFileByteArray(path, 3, 2)), L"2100");
    CHECK_EQ(hex(VL_ReadFileByteArray(path, 5, 100)), L"01");
    CHECK_EQ(hex(VL_ReadFileByteArray(path, 100)), L"");
    CHECK_EQ(hex(VL_ReadFileByteArray(path, -1)), L"");
    CHECK(!VL_WriteFileFromMemory(path, 8, 4));
    CHECK_EQ(VL_GetFileSize(path), 6LL);
    CHECK(VL_DeleteFile(path));
    CHECK(VL_ReadFileByteArray(path).empty());
}

} // namespace

void runTests()
{
    testEditing();
    testCutting();
    testSearching();
    testBits();
    testNumbers();
    testAnyValue();
    testTexts();
    testMemoryAndFiles();
}
