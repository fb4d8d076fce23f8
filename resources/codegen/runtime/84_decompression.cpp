// Unpacking byte arrays in the zlib format.
#include "84_decompression.h"
#include "83_compression.h"

#include <algorithm>
#include <new>

namespace vl_decompression {
namespace {

// Code lengths of the fixed trees.
void fixedLengths(unsigned char (&literals)[288], unsigned char (&distances)[32])
{
    for (int i = 0; i < 288; ++i)
        literals[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
    std::fill(distances, distances + 32, (unsigned char)5);
}

class BitReader
{
public:
    BitReader(const unsigned char *data, size_t length) : m_data(data), m_length(length) {}

    // `count` bits (at most 16), the first one lowest. Past the end zeros come and `failed` is set.
    unsigned take(int count)
    {
        fill(count);
        const unsigned bits = m_bits & ((1u << count) - 1);
        drop(count);
        return bits;
    }
    unsigned peek(int count)
    {
        fill(count);
        return m_bits & ((1u << count) - 1);
    }
    void drop(int count)
    {
        if (count > m_count) {
            m_failed = true;
            m_bits = 0;
            m_count = 0;
            return;
        }
        m_bits >>= count;
        m_count -= count;
    }
    // Up to the next whole byte; gives back bytes that were fetched too early.
    void align()
    {
        drop(m_count & 7);
        m_at -= (size_t)m_count / 8;
        m_bits = 0;
        m_count = 0;
    }
    const unsigned char *bytes(size_t count)
    {
        if (count > m_length - m_at) {
            m_failed = true;
            return NULL;
        }
        m_at += count;
        return m_data + m_at - count;
    }
    bool failed() const { return m_failed; }

private:
    void fill(int count)
    {
        while (m_count < count && m_at < m_length) {
            m_bits |= (unsigned)m_data[m_at++] << m_count;
            m_count += 8;
        }
    }

    const unsigned char *m_data;
    size_t m_length;
    size_t m_at = 0;
    unsigned m_bits = 0;
    int m_count = 0;
    bool m_failed = false;
};

// Symbols in the order of their codes, with how many there are of each length.
class Decoder
{
public:
    // False when the lengths cannot be those of a code. One single code may be incomplete.
    bool build(const unsigned char *lengths, size_t count)
    {
        std::fill(m_counts, m_counts + vl_deflate::kMaxBits + 1, (unsigned short)0);
        for (size_t i = 0; i < count; ++i)
            ++m_counts[lengths[i]];
        const size_t used = count - m_counts[0];
        m_counts[0] = 0;
        int left = 1;
        for (int bits = 1; bits <= vl_deflate::kMaxBits; ++bits) {
            left = (left << 1) - m_counts[bits];
            if (left < 0)
                return false;
        }
        if (left > 0 && !(used == 0 || (used == 1 && m_counts[1] == 1)))
            return false;
        unsigned short offsets[vl_deflate::kMaxBits + 1] = {};
        for (int bits = 1; bits < vl_deflate::kMaxBits; ++bits)
            offsets[bits + 1] = (unsigned short)(offsets[bits] + m_counts[bits]);
        for (size_t i = 0; i < count; ++i)
            if (lengths[i])
                m_symbols[offsets[lengths[i]]++] = (unsigned short)i;
        fillTable();
        return true;
    }

    // The next symbol, -1 for a code that stands for none.
    int next(BitReader &reader) const
    {
        const unsigned bits = reader.peek(vl_deflate::kMaxBits);
        const unsigned short quick = m_table[bits & (kTableSize - 1)];
        if (quick) {
            reader.drop(quick & 15);
            return quick >> 4;
        }
        int code = 0;
        int first = 0;
        int index = 0;
        for (int length = 1; length <= vl_deflate::kMaxBits; ++length) {
            code |= (int)(bits >> (length - 1) & 1);
            const int count = m_counts[length];
            if (code - count < first) {
                reader.drop(length);
                return m_symbols[index + (code - first)];
            }
            index += count;
            first = (first + count) << 1;
            code <<= 1;
        }
        return -1;
    }

private:
    static const int kTableBits = 9;
    static const unsigned kTableSize = 1u << kTableBits;

    // Short codes are looked up at once, by their bits as they stand in the stream.
    void fillTable()
    {
        std::fill(m_table, m_table + kTableSize, (unsigned short)0);
        unsigned code = 0;
        size_t index = 0;
        for (int length = 1; length <= kTableBits; ++length, code <<= 1) {
            for (int i = 0; i < m_counts[length]; ++i, ++code, ++index) {
                unsigned reversed = 0;
                for (int bit = 0; bit < length; ++bit)
                    reversed |= (code >> bit & 1) << (length - 1 - bit);
                for (unsigned at = reversed; at < kTableSize; at += 1u << length)
                    m_table[at] = (unsigned short)(m_symbols[index] << 4 | length);
            }
        }
    }

    unsigned short m_counts[vl_deflate::kMaxBits + 1];
    unsigned short m_symbols[288];
    unsigned short m_table[kTableSize];
};

bool readStored(BitReader &reader, std::vector<unsigned char> &out)
{
    reader.align();
    const unsigned length = reader.take(16);
    const unsigned check = reader.take(16);
    reader.align();
    if (reader.failed() || length != (~check & 0xFFFF) ||
        out.size() + length > vl_deflate::kLargest)
        return false;
    const unsigned char *bytes = reader.bytes(length);
    if (!bytes)
        return false;
    out.insert(out.end(), bytes, bytes + length);
    return true;
}

bool readCodes(BitReader &reader, const Decoder &literals, const Decoder &distances,
               std::vector<unsigned char> &out)
{
    while (!reader.failed()) {
        const int symbol = literals.next(reader);
        if (symbol == vl_deflate::kEndOfBlock)
            return !reader.failed();
        if (symbol < 0 || symbol > 285 || out.size() + vl_deflate::kMaxMatch > vl_deflate::kLargest)
            return false;
        if (symbol < vl_deflate::kEndOfBlock) {
            out.push_back((unsigned char)symbol);
            continue;
        }
        const int code = symbol - 257;
        const size_t length =
            vl_deflate::lengthBase[code] + reader.take(vl_deflate::lengthExtra[code]);
        const int distanceCode = distances.next(reader);
        if (distanceCode < 0 || distanceCode > 29)
            return false;
        const size_t distance = vl_deflate::distanceBase[distanceCode] +
                                reader.take(vl_deflate::distanceExtra[distanceCode]);
        if (distance > out.size())
            return false;
        const size_t end = out.size();
        out.resize(end + length);
        for (size_t i = end; i < end + length; ++i) // may repeat what it has just written
            out[i] = out[i - distance];
    }
    return false;
}

bool readTrees(BitReader &reader, Decoder &literals, Decoder &distances)
{
    const size_t literalCount = reader.take(5) + 257;
    const size_t distanceCount = reader.take(5) + 1;
    const size_t codeCount = reader.take(4) + 4;
    unsigned char codeLengths[vl_deflate::kCodeSymbols] = {};
    for (size_t i = 0; i < codeCount; ++i)
        codeLengths[vl_deflate::codeOrder[i]] = (unsigned char)reader.take(3);
    Decoder codes;
    if (literalCount > vl_deflate::kLiterals || distanceCount > vl_deflate::kDistances ||
        !codes.build(codeLengths, vl_deflate::kCodeSymbols))
        return false;
    unsigned char lengths[vl_deflate::kLiterals + vl_deflate::kDistances] = {};
    const size_t count = literalCount + distanceCount;
    for (size_t i = 0; i < count;) {
        const int symbol = codes.next(reader);
        if (symbol < 0 || reader.failed() || (symbol == 16 && i == 0))
            return false;
        if (symbol < 16) {
            lengths[i++] = (unsigned char)symbol;
            continue;
        }
        const unsigned char repeated = symbol == 16 ? lengths[i - 1] : 0;
        size_t times = symbol == 16   ? 3 + reader.take(2)
                       : symbol == 17 ? 3 + reader.take(3)
                                      : 11 + reader.take(7);
        if (times > count - i)
            return false;
        while (times-- > 0)
            lengths[i++] = repeated;
    }
    return lengths[vl_deflate::kEndOfBlock] != 0 && literals.build(lengths, literalCount) &&
           distances.build(lengths + literalCount, distanceCount);
}

bool unpack(BitReader &reader, std::vector<unsigned char> &out)
{
    bool last = false;
    while (!last) {
        last = reader.take(1) != 0;
        const unsigned kind = reader.take(2);
        Decoder literals;
        Decoder distances;
        if (kind == 1) {
            unsigned char literalLengths[288];
            unsigned char distanceLengths[32];
            fixedLengths(literalLengths, distanceLengths);
            if (!literals.build(literalLengths, 288) || !distances.build(distanceLengths, 32))
                return false;
        } else if (kind == 2 && !readTrees(reader, literals, distances)) {
            return false;
        }
        const bool good = kind == 0   ? readStored(reader, out)
                          : kind == 3 ? false
                                      : readCodes(reader, literals, distances, out);
        if (!good || reader.failed())
            return false;
    }
    return true;
}

} // namespace
} // namespace vl_decompression

VL_ByteArray VL_ByteArrayDecompress(const VL_ByteArray &bytes)
{
    VL_ByteArray result;
    const unsigned char *data = bytes.ptr();
    // Method 8, a check of the header, and no preset dictionary.
    if (bytes.size() < 6 || (data[0] & 15) != 8 || (data[0] << 8 | data[1]) % 31 != 0 ||
        (data[1] & 0x20))
        return result;
    try {
        vl_decompression::BitReader reader(data + 2, bytes.size() - 2);
        bool good = vl_decompression::unpack(reader, result.data);
        reader.align();
        const unsigned char *sum = reader.bytes(4);
        good =
            good && sum &&
            vl_deflate::checkSum(result.ptr(), result.size()) ==
                ((unsigned)sum[0] << 24 | (unsigned)sum[1] << 16 | (unsigned)sum[2] << 8 | sum[3]);
        if (!good)
            VL_ByteArray().data.swap(result.data);
    } catch (const std::bad_alloc &) {
        result.clear();
    }
    return result;
}
