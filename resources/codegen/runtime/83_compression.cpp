// Packing byte arrays in the zlib format.
#include "83_compression.h"

#include <algorithm>
#include <new>
#include <utility>

namespace vl_deflate {

const unsigned short lengthBase[29] = {3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                       15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                       67, 83, 99, 115, 131, 163, 195, 227, 258};
const unsigned char lengthExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                       2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
const unsigned short distanceBase[30] = {
    1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
    193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
const unsigned char distanceExtra[30] = {0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                         6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};
const unsigned char codeOrder[kCodeSymbols] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                               11, 4,  12, 3, 13, 2, 14, 1, 15};

unsigned checkSum(const unsigned char *data, size_t length)
{
    unsigned low = 1;
    unsigned high = 0;
    while (length > 0) {
        const size_t piece = std::min<size_t>(length, 5552); // as many as cannot overflow
        for (size_t i = 0; i < piece; ++i) {
            low += data[i];
            high += low;
        }
        low %= 65521;
        high %= 65521;
        data += piece;
        length -= piece;
    }
    return high << 16 | low;
}

} // namespace vl_deflate

namespace vl_compression {
namespace {

const size_t kMinMatch = 3;
const size_t kWindow = 32768;

class BitWriter
{
public:
    explicit BitWriter(std::vector<unsigned char> &out) : m_out(out) {}

    void put(unsigned bits, int count)
    {
        m_bits |= (unsigned long long)bits << m_count;
        m_count += count;
        while (m_count >= 8) {
            m_out.push_back((unsigned char)m_bits);
            m_bits >>= 8;
            m_count -= 8;
        }
    }
    void align() { put(0, (8 - m_count) & 7); }

private:
    std::vector<unsigned char> &m_out;
    unsigned long long m_bits = 0;
    int m_count = 0;
};

// Code lengths for symbols of these frequencies, none longer than `most`. Too long a code is
// avoided by flattening the frequencies and trying again.
void codeLengths(std::vector<unsigned> frequencies, int most, unsigned char *lengths)
{
    const size_t count = frequencies.size();
    for (;;) {
        std::vector<std::pair<unsigned, size_t>> leaves;
        for (size_t i = 0; i < count; ++i) {
            lengths[i] = 0;
            if (frequencies[i] > 0)
                leaves.push_back({frequencies[i], i});
        }
        if (leaves.size() <= 1) {
            if (!leaves.empty())
                lengths[leaves[0].second] = 1;
            return;
        }
        std::sort(leaves.begin(), leaves.end());
        // Leaves come sorted and joined nodes arise sorted: two queues give the lightest pair.
        const size_t leafCount = leaves.size();
        std::vector<unsigned> weights;
        std::vector<size_t> parents(2 * leafCount - 1, 0);
        for (const auto &leaf : leaves)
            weights.push_back(leaf.first);
        size_t nextLeaf = 0;
        size_t nextNode = leafCount;
        while (weights.size() < 2 * leafCount - 1) {
            unsigned sum = 0;
            for (int side = 0; side < 2; ++side) {
                const bool leaf = nextLeaf < leafCount && (nextNode >= weights.size() ||
                                                           weights[nextLeaf] <= weights[nextNode]);
                const size_t chosen = leaf ? nextLeaf++ : nextNode++;
                sum += weights[chosen];
                parents[chosen] = weights.size();
            }
            weights.push_back(sum);
        }
        std::vector<int> depths(weights.size(), 0);
        int deepest = 0;
        for (size_t i = weights.size() - 1; i-- > 0;) {
            depths[i] = depths[parents[i]] + 1;
            deepest = std::max(deepest, depths[i]);
        }
        if (deepest <= most) {
            for (size_t i = 0; i < leafCount; ++i)
                lengths[leaves[i].second] = (unsigned char)depths[i];
            return;
        }
        for (unsigned &frequency : frequencies)
            frequency = frequency > 0 ? frequency / 2 + 1 : 0;
    }
}

// The codes that belong to the lengths, with their bits in the order of the stream.
std::vector<unsigned> codesOf(const unsigned char *lengths, size_t count)
{
    unsigned next[vl_deflate::kMaxBits + 2] = {};
    unsigned counts[vl_deflate::kMaxBits + 1] = {};
    for (size_t i = 0; i < count; ++i)
        ++counts[lengths[i]];
    counts[0] = 0;
    for (int bits = 1; bits <= vl_deflate::kMaxBits; ++bits)
        next[bits + 1] = (next[bits] + counts[bits]) << 1;
    std::vector<unsigned> codes(count);
    for (size_t i = 0; i < count; ++i) {
        const unsigned code = lengths[i] ? next[lengths[i]]++ : 0;
        for (int bit = 0; bit < lengths[i]; ++bit)
            codes[i] |= (code >> bit & 1) << (lengths[i] - 1 - bit);
    }
    return codes;
}

// A byte (distance 0), or a length and how far back the same bytes stand.
struct Token
{
    unsigned short value;
    unsigned short distance;
};

int lengthCode(unsigned length)
{
    return (int)(std::upper_bound(vl_deflate::lengthBase, vl_deflate::lengthBase + 29, length) -
                 vl_deflate::lengthBase) -
           1;
}

int distanceCode(unsigned distance)
{
    return (int)(std::upper_bound(vl_deflate::distanceBase, vl_deflate::distanceBase + 30,
                                  distance) -
                 vl_deflate::distanceBase) -
           1;
}

// Finds repetitions by the hash of three bytes; positions with the same hash form chains.
class Matcher
{
public:
    Matcher(const unsigned char *data, size_t length)
        : m_data(data), m_length(length), m_heads(kHashes, kNone), m_chain(kWindow, kNone)
    {}

    // The longest earlier copy of what stands at `at`; a distance of 0 when there is none.
    Token find(size_t at) const
    {
        Token best = {0, 0};
        if (m_length - at < kMinMatch)
            return best;
        const size_t most = std::min(vl_deflate::kMaxMatch, m_length - at);
        unsigned candidate = m_heads[hash(at)];
        for (int tries = 0; tries < kTries && candidate != kNone && at - candidate < kWindow;
             ++tries) {
            size_t length = 0;
            while (length < most && m_data[candidate + length] == m_data[at + length])
                ++length;
            if (length >= kMinMatch && length > best.value) {
                best.value = (unsigned short)length;
                best.distance = (unsigned short)(at - candidate);
                if (length == most)
                    break;
            }
            const unsigned earlier = m_chain[candidate % kWindow];
            if (earlier >= candidate)
                break;
            candidate = earlier;
        }
        return best;
    }
    void remember(size_t at)
    {
        if (m_length - at < kMinMatch)
            return;
        unsigned &head = m_heads[hash(at)];
        m_chain[at % kWindow] = head;
        head = (unsigned)at;
    }

private:
    static const size_t kHashes = 32768;
    static constexpr unsigned kNone = 0xFFFFFFFF;
    static const int kTries = 64;

    size_t hash(size_t at) const
    {
        const unsigned three =
            (unsigned)m_data[at] << 16 | (unsigned)m_data[at + 1] << 8 | m_data[at + 2];
        return (three * 2654435761u) >> 17;
    }

    const unsigned char *m_data;
    size_t m_length;
    std::vector<unsigned> m_heads;
    std::vector<unsigned> m_chain;
};

// Lengths of both trees with runs packed: the symbol, and the extra bits of a run.
std::vector<std::pair<int, unsigned>> packedLengths(const std::vector<unsigned char> &lengths)
{
    std::vector<std::pair<int, unsigned>> packed;
    for (size_t i = 0; i < lengths.size();) {
        size_t run = 1;
        while (i + run < lengths.size() && lengths[i + run] == lengths[i])
            ++run;
        const int value = lengths[i];
        i += run;
        if (value != 0) {
            packed.push_back({value, 0});
            --run;
        }
        while (run >= 3) {
            const size_t piece = std::min<size_t>(run, value != 0 ? 6 : 138);
            const int symbol = value != 0 ? 16 : piece < 11 ? 17 : 18;
            packed.push_back({symbol, (unsigned)(piece - (symbol == 18 ? 11 : 3))});
            run -= piece;
        }
        for (; run > 0; --run)
            packed.push_back({value, 0});
    }
    return packed;
}

void writeTrees(BitWriter &writer, const unsigned char *literalLengths,
                const unsigned char *distanceLengths)
{
    std::vector<unsigned char> both(literalLengths, literalLengths + vl_deflate::kLiterals);
    both.insert(both.end(), distanceLengths, distanceLengths + vl_deflate::kDistances);
    const std::vector<std::pair<int, unsigned>> packed = packedLengths(both);
    std::vector<unsigned> frequencies(vl_deflate::kCodeSymbols);
    for (const auto &item : packed)
        ++frequencies[(size_t)item.first];
    unsigned char lengths[vl_deflate::kCodeSymbols];
    codeLengths(frequencies, 7, lengths);
    const std::vector<unsigned> codes = codesOf(lengths, vl_deflate::kCodeSymbols);
    writer.put(vl_deflate::kLiterals - 257, 5);
    writer.put(vl_deflate::kDistances - 1, 5);
    writer.put(vl_deflate::kCodeSymbols - 4, 4);
    for (unsigned char symbol : vl_deflate::codeOrder)
        writer.put(lengths[symbol], 3);
    for (const auto &item : packed) {
        writer.put(codes[(size_t)item.first], lengths[item.first]);
        if (item.first >= 16)
            writer.put(item.second, item.first == 16 ? 2 : item.first == 17 ? 3 : 7);
    }
}

// A block with trees of its own.
void writeBlock(BitWriter &writer, const std::vector<Token> &tokens, bool last)
{
    std::vector<unsigned> literalUse(vl_deflate::kLiterals);
    std::vector<unsigned> distanceUse(vl_deflate::kDistances);
    literalUse[vl_deflate::kEndOfBlock] = 1;
    for (const Token &token : tokens) {
        ++literalUse[token.distance ? 257 + (size_t)lengthCode(token.value) : token.value];
        if (token.distance)
            ++distanceUse[(size_t)distanceCode(token.distance)];
    }
    // Each tree gets two codes at least: some readers refuse one with a single code.
    ++literalUse[0];
    ++distanceUse[0];
    ++distanceUse[1];
    unsigned char literalLengths[vl_deflate::kLiterals];
    unsigned char distanceLengths[vl_deflate::kDistances];
    codeLengths(literalUse, vl_deflate::kMaxBits, literalLengths);
    codeLengths(distanceUse, vl_deflate::kMaxBits, distanceLengths);
    const std::vector<unsigned> literals = codesOf(literalLengths, vl_deflate::kLiterals);
    const std::vector<unsigned> distances = codesOf(distanceLengths, vl_deflate::kDistances);
    writer.put(last ? 1 : 0, 1);
    writer.put(2, 2);
    writeTrees(writer, literalLengths, distanceLengths);
    for (const Token &token : tokens) {
        const int length = token.distance ? lengthCode(token.value) : 0;
        const size_t symbol = token.distance ? 257 + (size_t)length : token.value;
        writer.put(literals[symbol], literalLengths[symbol]);
        if (!token.distance)
            continue;
        const int distance = distanceCode(token.distance);
        writer.put((unsigned)(token.value - vl_deflate::lengthBase[length]),
                   vl_deflate::lengthExtra[length]);
        writer.put(distances[(size_t)distance], distanceLengths[distance]);
        writer.put((unsigned)(token.distance - vl_deflate::distanceBase[distance]),
                   vl_deflate::distanceExtra[distance]);
    }
    writer.put(literals[vl_deflate::kEndOfBlock], literalLengths[vl_deflate::kEndOfBlock]);
}

void pack(const unsigned char *data, size_t length, BitWriter &writer)
{
    const size_t perBlock = 0x8000;
    Matcher matcher(data, length);
    std::vector<Token> tokens;
    tokens.reserve(perBlock);
    for (size_t at = 0; at < length;) {
        Token token = matcher.find(at);
        matcher.remember(at);
        // A longer copy may begin one byte on.
        if (token.distance && token.value < 32 && at + 1 < length &&
            matcher.find(at + 1).value > token.value)
            token.distance = 0;
        if (!token.distance)
            token.value = data[at];
        const size_t step = token.distance ? token.value : 1;
        for (size_t i = 1; i < step; ++i)
            matcher.remember(at + i);
        tokens.push_back(token);
        at += step;
        if (tokens.size() == perBlock && at < length) {
            writeBlock(writer, tokens, false);
            tokens.clear();
        }
    }
    writeBlock(writer, tokens, true);
    writer.align();
}

// What cannot be made shorter is kept as it is, in blocks of up to 65535 bytes.
void store(const unsigned char *data, size_t length, std::vector<unsigned char> &out)
{
    size_t at = 0;
    do {
        const size_t piece = std::min<size_t>(length - at, 0xFFFF);
        const unsigned char head[5] = {(unsigned char)(at + piece == length), (unsigned char)piece,
                                       (unsigned char)(piece >> 8), (unsigned char)~piece,
                                       (unsigned char)(~piece >> 8)};
        out.insert(out.end(), head, head + 5);
        out.insert(out.end(), data + at, data + at + piece);
        at += piece;
    } while (at < length);
}

} // namespace
} // namespace vl_compression

VL_ByteArray VL_ByteArrayCompress(const VL_ByteArray &bytes)
{
    VL_ByteArray result;
    if (bytes.size() > vl_deflate::kLargest - 0x100000)
        return result;
    try {
        const std::vector<unsigned char> head = {0x78, 0x9C};
        result.data = head;
        vl_compression::BitWriter writer(result.data);
        vl_compression::pack(bytes.ptr(), bytes.size(), writer);
        const size_t storedSize = bytes.size() + 5 * (bytes.size() / 0xFFFF + 1);
        if (result.size() > head.size() + storedSize) {
            result.data = head;
            vl_compression::store(bytes.ptr(), bytes.size(), result.data);
        }
        const unsigned sum = vl_deflate::checkSum(bytes.ptr(), bytes.size());
        for (int shift = 24; shift >= 0; shift -= 8)
            result.data.push_back((unsigned char)(sum >> shift));
    } catch (const std::bad_alloc &) {
        result.clear();
    }
    return result;
}
