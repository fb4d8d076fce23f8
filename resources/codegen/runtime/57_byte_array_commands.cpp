// Byte array commands: building, editing, cutting, searching and combining bits.
#include "57_byte_array_commands.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace vl_byte_array_commands {
namespace {

const size_t kLargest = 0x7FFFFFFF;

// Runs `change`; a lack of memory counts as "not done".
template <typename Change>
bool tried(Change change)
{
    try {
        change();
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

bool fitsBeside(const VL_ByteArray &bytes, size_t more)
{
    return more <= kLargest && bytes.size() <= kLargest - more;
}

VL_ByteArray part(const VL_ByteArray &bytes, size_t begin, size_t length)
{
    VL_ByteArray result;
    if (length > 0)
        tried([&] { result = VL_ByteArray(bytes.ptr() + begin, length); });
    return result;
}

// How many of the bytes from `start` on a `count` means.
size_t clamped(const VL_ByteArray &bytes, size_t start, intptr_t count)
{
    const size_t left = bytes.size() - start;
    return count < 0 || (size_t)count > left ? left : (size_t)count;
}

bool inside(const VL_ByteArray &bytes, intptr_t index)
{
    return index >= 0 && (size_t)index < bytes.size();
}

// Finds `wanted` again and again without stepping back in the text: after a mismatch the table
// tells how much of what was matched is still good.
class Searcher
{
public:
    explicit Searcher(const VL_ByteArray &wanted) : m_wanted(wanted.ptr()), m_length(wanted.size())
    {
        m_border.resize(m_length);
        for (size_t i = 1, good = 0; i < m_length; ++i) {
            while (good > 0 && m_wanted[i] != m_wanted[good])
                good = m_border[good - 1];
            if (m_wanted[i] == m_wanted[good])
                ++good;
            m_border[i] = good;
        }
    }

    // The position of the first match from `begin` on, or `length`.
    size_t next(const unsigned char *data, size_t length, size_t begin) const
    {
        if (m_length == 0 || begin >= length || length - begin < m_length)
            return length;
        size_t good = 0;
        for (size_t i = begin; i < length; ++i) {
            if (good == 0) {
                const void *first = std::memchr(data + i, m_wanted[0], length - i);
                if (!first)
                    return length;
                i = (size_t)((const unsigned char *)first - data);
            }
            while (good > 0 && data[i] != m_wanted[good])
                good = m_border[good - 1];
            if (data[i] == m_wanted[good] && ++good == m_length)
                return i + 1 - m_length;
        }
        return length;
    }

private:
    const unsigned char *m_wanted;
    size_t m_length;
    std::vector<size_t> m_border;
};

std::vector<size_t> matches(const VL_ByteArray &bytes, const VL_ByteArray &wanted, intptr_t most)
{
    std::vector<size_t> found;
    tried([&] {
        const Searcher searcher(wanted);
        const size_t length = bytes.size();
        size_t at = most == 0 ? length : searcher.next(bytes.ptr(), length, 0);
        while (at < length) {
            found.push_back(at);
            if (most > 0 && found.size() == (size_t)most)
                break;
            at = searcher.next(bytes.ptr(), length, at + wanted.size());
        }
    });
    return found;
}

template <typename Operation>
VL_ByteArray combined(const VL_ByteArray &left, const VL_ByteArray &right, Operation operation)
{
    VL_ByteArray result = left;
    if (right.empty())
        return result;
    for (size_t i = 0, k = 0; i < result.size(); ++i) {
        result.data[i] = (unsigned char)operation(result.data[i], right.data[k]);
        k = k + 1 == right.size() ? 0 : k + 1;
    }
    return result;
}

// Shifts to the left by `bytesBy` whole bytes and `bitsBy` (0 to 7) bits.
VL_ByteArray shiftedLeft(const VL_ByteArray &bytes, size_t bytesBy, unsigned bitsBy)
{
    VL_ByteArray result(bytes.size());
    for (size_t i = 0; i + bytesBy < bytes.size(); ++i) {
        const size_t from = i + bytesBy;
        const unsigned next = from + 1 < bytes.size() ? bytes.data[from + 1] : 0;
        result.data[i] = (unsigned char)((bytes.data[from] << 8 | next) << bitsBy >> 8);
    }
    return result;
}

VL_ByteArray shiftedRight(const VL_ByteArray &bytes, size_t bytesBy, unsigned bitsBy)
{
    VL_ByteArray result(bytes.size());
    for (size_t i = bytesBy; i < bytes.size(); ++i) {
        const size_t from = i - bytesBy;
        const unsigned before = from > 0 ? bytes.data[from - 1] : 0;
        result.data[i] = (unsigned char)((before << 8 | bytes.data[from]) >> bitsBy);
    }
    return result;
}

VL_ByteArray shifted(const VL_ByteArray &bytes, intptr_t bits, bool left)
{
    // The smallest number has no opposite of its own kind.
    const size_t distance = bits < 0 ? 0 - (size_t)bits : (size_t)bits;
    if (bits < 0)
        left = !left;
    return left ? shiftedLeft(bytes, distance / 8, (unsigned)(distance % 8))
                : shiftedRight(bytes, distance / 8, (unsigned)(distance % 8));
}

} // namespace
} // namespace vl_byte_array_commands

VL_ByteArray VL_CreateByteArray(intptr_t size, intptr_t fill)
{
    VL_ByteArray result;
    VL_ByteArrayResize(result, size, fill);
    return result;
}

intptr_t VL_ByteArrayLen(const VL_ByteArray &bytes)
{
    return (intptr_t)bytes.size();
}

bool VL_ByteArrayIsEmpty(const VL_ByteArray &bytes)
{
    return bytes.empty();
}

void VL_ByteArrayClear(VL_ByteArray &bytes)
{
    bytes.clear();
}

bool VL_ByteArrayResize(VL_ByteArray &bytes, intptr_t size, intptr_t fill)
{
    if (size < 0 || (size_t)size > vl_byte_array_commands::kLargest)
        return false;
    return vl_byte_array_commands::tried(
        [&] { bytes.data.resize((size_t)size, (unsigned char)fill); });
}

int VL_ByteArrayGet(const VL_ByteArray &bytes, intptr_t index)
{
    return vl_byte_array_commands::inside(bytes, index) ? bytes.data[(size_t)index] : 0;
}

bool VL_ByteArraySet(VL_ByteArray &bytes, intptr_t index, intptr_t value)
{
    if (!vl_byte_array_commands::inside(bytes, index))
        return false;
    bytes.data[(size_t)index] = (unsigned char)value;
    return true;
}

bool VL_ByteArrayAppendByte(VL_ByteArray &bytes, intptr_t value)
{
    return vl_byte_array_commands::fitsBeside(bytes, 1) &&
           vl_byte_array_commands::tried([&] { bytes.data.push_back((unsigned char)value); });
}

bool VL_ByteArrayAppend(VL_ByteArray &bytes, const VL_ByteArray &more)
{
    return VL_ByteArrayInsert(bytes, (intptr_t)bytes.size(), more);
}

bool VL_ByteArrayInsert(VL_ByteArray &bytes, intptr_t index, const VL_ByteArray &more)
{
    if (index < 0 || (size_t)index > bytes.size() ||
        !vl_byte_array_commands::fitsBeside(bytes, more.size()))
        return false;
    if (&bytes == &more)
        return vl_byte_array_commands::tried([&] {
            const VL_ByteArray copy = more;
            bytes.data.insert(bytes.data.begin() + index, copy.data.begin(), copy.data.end());
        });
    return vl_byte_array_commands::tried(
        [&] { bytes.data.insert(bytes.data.begin() + index, more.data.begin(), more.data.end()); });
}

bool VL_ByteArrayRemove(VL_ByteArray &bytes, intptr_t index, intptr_t count)
{
    if (!vl_byte_array_commands::inside(bytes, index) || count <= 0)
        return false;
    const size_t length = vl_byte_array_commands::clamped(bytes, (size_t)index, count);
    bytes.data.erase(bytes.data.begin() + index, bytes.data.begin() + index + (ptrdiff_t)length);
    return true;
}

bool VL_ByteArrayFill(VL_ByteArray &bytes, intptr_t value, intptr_t start, intptr_t count)
{
    if (!vl_byte_array_commands::inside(bytes, start))
        return false;
    const size_t length = vl_byte_array_commands::clamped(bytes, (size_t)start, count);
    std::fill_n(bytes.data.begin() + start, length, (unsigned char)value);
    return true;
}

VL_ByteArray VL_ByteArrayMid(const VL_ByteArray &bytes, intptr_t start, intptr_t count)
{
    if (!vl_byte_array_commands::inside(bytes, start))
        return VL_ByteArray();
    const size_t begin = (size_t)start;
    return vl_byte_array_commands::part(bytes, begin,
                                        vl_byte_array_commands::clamped(bytes, begin, count));
}

VL_ByteArray VL_ByteArrayLeft(const VL_ByteArray &bytes, intptr_t count)
{
    return count <= 0 ? VL_ByteArray() : VL_ByteArrayMid(bytes, 0, count);
}

VL_ByteArray VL_ByteArrayRight(const VL_ByteArray &bytes, intptr_t count)
{
    if (count <= 0)
        return VL_ByteArray();
    const size_t length = vl_byte_array_commands::clamped(bytes, 0, count);
    return vl_byte_array_commands::part(bytes, bytes.size() - length, length);
}

VL_ByteArray VL_ByteArrayCopy(const VL_ByteArray &bytes, intptr_t start, intptr_t count)
{
    return VL_ByteArrayMid(bytes, start, count);
}

VL_ByteArray VL_ByteArrayConcat(const VL_ByteArray &first, const VL_ByteArray &second)
{
    VL_ByteArray result;
    if (!vl_byte_array_commands::fitsBeside(first, second.size()))
        return result;
    vl_byte_array_commands::tried([&] {
        result.data.reserve(first.size() + second.size());
        result.data = first.data;
        result.data.insert(result.data.end(), second.data.begin(), second.data.end());
    });
    return result;
}

VL_ByteArray VL_ByteArrayRepeat(const VL_ByteArray &bytes, intptr_t times)
{
    VL_ByteArray result;
    if (times <= 0 || bytes.empty() ||
        (size_t)times > vl_byte_array_commands::kLargest / bytes.size())
        return result;
    vl_byte_array_commands::tried([&] {
        result.data.reserve(bytes.size() * (size_t)times);
        for (intptr_t i = 0; i < times; ++i)
            result.data.insert(result.data.end(), bytes.data.begin(), bytes.data.end());
    });
    return result;
}

VL_ByteArray VL_ByteArrayReverse(const VL_ByteArray &bytes)
{
    VL_ByteArray result = bytes;
    std::reverse(result.data.begin(), result.data.end());
    return result;
}

VL_ByteArray VL_ByteArrayTrim(const VL_ByteArray &bytes)
{
    const auto blank = [](unsigned char byte) { return byte == ' ' || (byte >= 9 && byte <= 13); };
    size_t begin = 0;
    size_t end = bytes.size();
    while (begin < end && blank(bytes.data[begin]))
        ++begin;
    while (end > begin && blank(bytes.data[end - 1]))
        --end;
    return vl_byte_array_commands::part(bytes, begin, end - begin);
}

VL_Array VL_ByteArraySplit(const VL_ByteArray &bytes, const VL_ByteArray &separator)
{
    VL_Array parts;
    std::vector<size_t> ends = vl_byte_array_commands::matches(bytes, separator, -1);
    ends.push_back(bytes.size());
    size_t begin = 0;
    for (size_t end : ends) {
        parts.push_back(VL_Any(vl_byte_array_commands::part(bytes, begin, end - begin)));
        begin = end + separator.size();
    }
    return parts;
}

VL_ByteArray VL_ByteArrayReplace(const VL_ByteArray &bytes, const VL_ByteArray &wanted,
                                 const VL_ByteArray &replacement, intptr_t count)
{
    const std::vector<size_t> found = vl_byte_array_commands::matches(bytes, wanted, count);
    const size_t rest = bytes.size() - found.size() * wanted.size();
    VL_ByteArray result;
    if (!replacement.empty() &&
        found.size() > (vl_byte_array_commands::kLargest - rest) / replacement.size())
        return result;
    vl_byte_array_commands::tried([&] {
        result.data.reserve(rest + found.size() * replacement.size());
        size_t begin = 0;
        for (size_t at : found) {
            result.data.insert(result.data.end(), bytes.ptr() + begin, bytes.ptr() + at);
            result.data.insert(result.data.end(), replacement.data.begin(), replacement.data.end());
            begin = at + wanted.size();
        }
        result.data.insert(result.data.end(), bytes.data.begin() + (ptrdiff_t)begin,
                           bytes.data.end());
    });
    return result;
}

int VL_ByteArrayCompare(const VL_ByteArray &left, const VL_ByteArray &right)
{
    const size_t common = std::min(left.size(), right.size());
    const int order = common > 0 ? std::memcmp(left.ptr(), right.ptr(), common) : 0;
    if (order != 0)
        return order < 0 ? -1 : 1;
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

bool VL_ByteArrayEquals(const VL_ByteArray &left, const VL_ByteArray &right)
{
    return left.data == right.data;
}

intptr_t VL_ByteArrayFind(const VL_ByteArray &bytes, const VL_ByteArray &wanted, intptr_t start)
{
    const size_t begin = start < 0 ? 0 : (size_t)start;
    size_t at = bytes.size();
    vl_byte_array_commands::tried([&] {
        at = vl_byte_array_commands::Searcher(wanted).next(bytes.ptr(), bytes.size(), begin);
    });
    return at < bytes.size() ? (intptr_t)at : -1;
}

VL_Array VL_ByteArrayFindAll(const VL_ByteArray &bytes, const VL_ByteArray &wanted)
{
    VL_Array positions;
    for (size_t at : vl_byte_array_commands::matches(bytes, wanted, -1))
        positions.push_back(VL_Any((long long)at));
    return positions;
}

bool VL_ByteArrayContains(const VL_ByteArray &bytes, const VL_ByteArray &wanted)
{
    return VL_ByteArrayFind(bytes, wanted) >= 0;
}

intptr_t VL_ByteArrayCount(const VL_ByteArray &bytes, const VL_ByteArray &wanted)
{
    return (intptr_t)vl_byte_array_commands::matches(bytes, wanted, -1).size();
}

bool VL_ByteArrayStartsWith(const VL_ByteArray &bytes, const VL_ByteArray &start)
{
    return start.size() <= bytes.size() &&
           std::equal(start.data.begin(), start.data.end(), bytes.data.begin());
}

bool VL_ByteArrayEndsWith(const VL_ByteArray &bytes, const VL_ByteArray &end)
{
    return end.size() <= bytes.size() &&
           std::equal(end.data.rbegin(), end.data.rend(), bytes.data.rbegin());
}

VL_ByteArray VL_ByteArrayXor(const VL_ByteArray &left, const VL_ByteArray &right)
{
    return vl_byte_array_commands::combined(left, right, [](int a, int b) { return a ^ b; });
}

VL_ByteArray VL_ByteArrayAnd(const VL_ByteArray &left, const VL_ByteArray &right)
{
    return vl_byte_array_commands::combined(left, right, [](int a, int b) { return a & b; });
}

VL_ByteArray VL_ByteArrayOr(const VL_ByteArray &left, const VL_ByteArray &right)
{
    return vl_byte_array_commands::combined(left, right, [](int a, int b) { return a | b; });
}

VL_ByteArray VL_ByteArrayNot(const VL_ByteArray &bytes)
{
    VL_ByteArray result = bytes;
    for (unsigned char &byte : result.data)
        byte = (unsigned char)~byte;
    return result;
}

VL_ByteArray VL_ByteArrayShiftLeft(const VL_ByteArray &bytes, intptr_t bits)
{
    return vl_byte_array_commands::shifted(bytes, bits, true);
}

VL_ByteArray VL_ByteArrayShiftRight(const VL_ByteArray &bytes, intptr_t bits)
{
    return vl_byte_array_commands::shifted(bytes, bits, false);
}
