// Byte array commands: building, editing, cutting, searching and combining bits.
#pragma once
#include "20_constants.h"

// Positions count from 0. Commands that change an array take it by reference and tell whether they
// did; a position outside the array changes nothing. A result that would pass 2 GB is empty.
// Only the lowest eight bits of a byte value count.

VL_ByteArray VL_CreateByteArray(intptr_t size = 0, intptr_t fill = 0);
intptr_t VL_ByteArrayLen(const VL_ByteArray &bytes);
bool VL_ByteArrayIsEmpty(const VL_ByteArray &bytes);
void VL_ByteArrayClear(VL_ByteArray &bytes);
bool VL_ByteArrayResize(VL_ByteArray &bytes, intptr_t size, intptr_t fill = 0);
int VL_ByteArrayGet(const VL_ByteArray &bytes, intptr_t index);
bool VL_ByteArraySet(VL_ByteArray &bytes, intptr_t index, intptr_t value);
bool VL_ByteArrayAppendByte(VL_ByteArray &bytes, intptr_t value);
bool VL_ByteArrayAppend(VL_ByteArray &bytes, const VL_ByteArray &more);
bool VL_ByteArrayInsert(VL_ByteArray &bytes, intptr_t index, const VL_ByteArray &more);
bool VL_ByteArrayRemove(VL_ByteArray &bytes, intptr_t index, intptr_t count = 1);
// A `count` below 0 means: to the end.
bool VL_ByteArrayFill(VL_ByteArray &bytes, intptr_t value, intptr_t start = 0, intptr_t count = -1);

VL_ByteArray VL_ByteArrayMid(const VL_ByteArray &bytes, intptr_t start, intptr_t count = -1);
VL_ByteArray VL_ByteArrayLeft(const VL_ByteArray &bytes, intptr_t count);
VL_ByteArray VL_ByteArrayRight(const VL_ByteArray &bytes, intptr_t count);
VL_ByteArray VL_ByteArrayCopy(const VL_ByteArray &bytes, intptr_t start = 0, intptr_t count = -1);
VL_ByteArray VL_ByteArrayConcat(const VL_ByteArray &first,
                                const VL_ByteArray &second = VL_ByteArray());
template <typename... Rest>
VL_ByteArray VL_ByteArrayConcat(const VL_ByteArray &first, const VL_ByteArray &second,
                                const VL_ByteArray &third, const Rest &...rest)
{
    return VL_ByteArrayConcat(VL_ByteArrayConcat(first, second), third, rest...);
}
VL_ByteArray VL_ByteArrayRepeat(const VL_ByteArray &bytes, intptr_t times);
VL_ByteArray VL_ByteArrayReverse(const VL_ByteArray &bytes);
// Without blanks, tabs and line ends at both ends.
VL_ByteArray VL_ByteArrayTrim(const VL_ByteArray &bytes);
// The parts between the separators, each a byte array.
VL_Array VL_ByteArraySplit(const VL_ByteArray &bytes, const VL_ByteArray &separator);
// Replaces from the left, at most `count` times if that is not negative.
VL_ByteArray VL_ByteArrayReplace(const VL_ByteArray &bytes, const VL_ByteArray &wanted,
                                 const VL_ByteArray &replacement, intptr_t count = -1);

// -1, 0 or 1, byte by byte; a shorter array comes before a longer one that begins with it.
int VL_ByteArrayCompare(const VL_ByteArray &left, const VL_ByteArray &right);
bool VL_ByteArrayEquals(const VL_ByteArray &left, const VL_ByteArray &right);
// Searches take time in proportion to the length. Nothing wanted is never found (-1).
intptr_t VL_ByteArrayFind(const VL_ByteArray &bytes, const VL_ByteArray &wanted,
                          intptr_t start = 0);
VL_Array VL_ByteArrayFindAll(const VL_ByteArray &bytes, const VL_ByteArray &wanted);
bool VL_ByteArrayContains(const VL_ByteArray &bytes, const VL_ByteArray &wanted);
intptr_t VL_ByteArrayCount(const VL_ByteArray &bytes, const VL_ByteArray &wanted);
bool VL_ByteArrayStartsWith(const VL_ByteArray &bytes, const VL_ByteArray &start);
bool VL_ByteArrayEndsWith(const VL_ByteArray &bytes, const VL_ByteArray &end);

// As long as `left`; `right` is repeated or cut to that length, and an empty one changes nothing.
VL_ByteArray VL_ByteArrayXor(const VL_ByteArray &left, const VL_ByteArray &right);
VL_ByteArray VL_ByteArrayAnd(const VL_ByteArray &left, const VL_ByteArray &right);
VL_ByteArray VL_ByteArrayOr(const VL_ByteArray &left, const VL_ByteArray &right);
VL_ByteArray VL_ByteArrayNot(const VL_ByteArray &bytes);
// The array as one row of bits, the highest bit of the first byte leftmost; zeros move in. A
// negative number of bits shifts the other way.
VL_ByteArray VL_ByteArrayShiftLeft(const VL_ByteArray &bytes, intptr_t bits);
VL_ByteArray VL_ByteArrayShiftRight(const VL_ByteArray &bytes, intptr_t bits);
