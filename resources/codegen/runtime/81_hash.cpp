// Hashes and check sums of texts, byte arrays and files.
#include "81_hash.h"
#include "40_files.h"
#include "58_byte_array_values.h"

#include <cstring>

namespace vl_hash {
namespace {

typedef unsigned int Word;
typedef unsigned long long LongWord;

Word rotatedLeft(Word value, int bits)
{
    return value << bits | value >> (32 - bits);
}

Word rotatedRight(Word value, int bits)
{
    return value >> bits | value << (32 - bits);
}

LongWord rotatedRight(LongWord value, int bits)
{
    return value >> bits | value << (64 - bits);
}

template <typename Number>
Number loadHighFirst(const unsigned char *data)
{
    Number value = 0;
    for (size_t i = 0; i < sizeof(Number); ++i)
        value = value << 8 | data[i];
    return value;
}

template <typename Number>
void storeHighFirst(unsigned char *data, Number value)
{
    for (size_t i = sizeof(Number); i-- > 0; value >>= 8)
        data[i] = (unsigned char)value;
}

// Each algorithm has its block and digest size, a start state, `mix` for one block, and tells in
// which order it keeps bytes.
struct Md5
{
    static const size_t kBlock = 64;
    static const size_t kDigest = 16;
    static const size_t kLengthField = 8;
    static const bool kHighFirst = false;
    Word state[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

    void mix(const unsigned char *block);
};

struct Sha1
{
    static const size_t kBlock = 64;
    static const size_t kDigest = 20;
    static const size_t kLengthField = 8;
    static const bool kHighFirst = true;
    Word state[5] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};

    void mix(const unsigned char *block);
};

struct Sha256
{
    static const size_t kBlock = 64;
    static const size_t kDigest = 32;
    static const size_t kLengthField = 8;
    static const bool kHighFirst = true;
    Word state[8] = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                     0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};

    void mix(const unsigned char *block);
};

struct Sha512
{
    static const size_t kBlock = 128;
    static const size_t kDigest = 64;
    static const size_t kLengthField = 16;
    static const bool kHighFirst = true;
    LongWord state[8] = {0x6A09E667F3BCC908ULL, 0xBB67AE8584CAA73BULL, 0x3C6EF372FE94F82BULL,
                         0xA54FF53A5F1D36F1ULL, 0x510E527FADE682D1ULL, 0x9B05688C2B3E6C1FULL,
                         0x1F83D9ABFB41BD6BULL, 0x5BE0CD19137E2179ULL};

    void mix(const unsigned char *block);
};

// floor(abs(sin(i + 1)) * 2^32)
const Word kMd5Sines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391,
};

// The first 80 primes' cube roots, fractions in 64 bits; SHA-256 takes the upper halves of 64.
const LongWord kCubeRoots[80] = {
    0x428A2F98D728AE22ULL, 0x7137449123EF65CDULL, 0xB5C0FBCFEC4D3B2FULL, 0xE9B5DBA58189DBBCULL,
    0x3956C25BF348B538ULL, 0x59F111F1B605D019ULL, 0x923F82A4AF194F9BULL, 0xAB1C5ED5DA6D8118ULL,
    0xD807AA98A3030242ULL, 0x12835B0145706FBEULL, 0x243185BE4EE4B28CULL, 0x550C7DC3D5FFB4E2ULL,
    0x72BE5D74F27B896FULL, 0x80DEB1FE3B1696B1ULL, 0x9BDC06A725C71235ULL, 0xC19BF174CF692694ULL,
    0xE49B69C19EF14AD2ULL, 0xEFBE4786384F25E3ULL, 0x0FC19DC68B8CD5B5ULL, 0x240CA1CC77AC9C65ULL,
    0x2DE92C6F592B0275ULL, 0x4A7484AA6EA6E483ULL, 0x5CB0A9DCBD41FBD4ULL, 0x76F988DA831153B5ULL,
    0x983E5152EE66DFABULL, 0xA831C66D2DB43210ULL, 0xB00327C898FB213FULL, 0xBF597FC7BEEF0EE4ULL,
    0xC6E00BF33DA88FC2ULL, 0xD5A79147930AA725ULL, 0x06CA6351E003826FULL, 0x142929670A0E6E70ULL,
    0x27B70A8546D22FFCULL, 0x2E1B21385C26C926ULL, 0x4D2C6DFC5AC42AEDULL, 0x53380D139D95B3DFULL,
    0x650A73548BAF63DEULL, 0x766A0ABB3C77B2A8ULL, 0x81C2C92E47EDAEE6ULL, 0x92722C851482353BULL,
    0xA2BFE8A14CF10364ULL, 0xA81A664BBC423001ULL, 0xC24B8B70D0F89791ULL, 0xC76C51A30654BE30ULL,
    0xD192E819D6EF5218ULL, 0xD69906245565A910ULL, 0xF40E35855771202AULL, 0x106AA07032BBD1B8ULL,
    0x19A4C116B8D2D0C8ULL, 0x1E376C085141AB53ULL, 0x2748774CDF8EEB99ULL, 0x34B0BCB5E19B48A8ULL,
    0x391C0CB3C5C95A63ULL, 0x4ED8AA4AE3418ACBULL, 0x5B9CCA4F7763E373ULL, 0x682E6FF3D6B2B8A3ULL,
    0x748F82EE5DEFB2FCULL, 0x78A5636F43172F60ULL, 0x84C87814A1F0AB72ULL, 0x8CC702081A6439ECULL,
    0x90BEFFFA23631E28ULL, 0xA4506CEBDE82BDE9ULL, 0xBEF9A3F7B2C67915ULL, 0xC67178F2E372532BULL,
    0xCA273ECEEA26619CULL, 0xD186B8C721C0C207ULL, 0xEADA7DD6CDE0EB1EULL, 0xF57D4F7FEE6ED178ULL,
    0x06F067AA72176FBAULL, 0x0A637DC5A2C898A6ULL, 0x113F9804BEF90DAEULL, 0x1B710B35131C471BULL,
    0x28DB77F523047D84ULL, 0x32CAAB7B40C72493ULL, 0x3C9EBE0A15C9BEBCULL, 0x431D67C49C100D4CULL,
    0x4CC5D4BECB3E42B6ULL, 0x597F299CFC657E2AULL, 0x5FCB6FAB3AD6FAECULL, 0x6C44198C4A475817ULL,
};

void Md5::mix(const unsigned char *block)
{
    static const int turns[4][4] = {
        {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    Word words[16];
    for (int i = 0; i < 16; ++i)
        words[i] = (Word)block[4 * i] | (Word)block[4 * i + 1] << 8 | (Word)block[4 * i + 2] << 16 |
                   (Word)block[4 * i + 3] << 24;
    Word a = state[0], b = state[1], c = state[2], d = state[3];
    for (int i = 0; i < 64; ++i) {
        const int round = i / 16;
        const Word f = round == 0   ? (b & c) | (~b & d)
                       : round == 1 ? (d & b) | (~d & c)
                       : round == 2 ? b ^ c ^ d
                                    : c ^ (b | ~d);
        const int k = round == 0 ? i : round == 1 ? 5 * i + 1 : round == 2 ? 3 * i + 5 : 7 * i;
        const Word sum = a + f + kMd5Sines[i] + words[k & 15];
        a = d;
        d = c;
        c = b;
        b += rotatedLeft(sum, turns[round][i & 3]);
    }
    state[0] += a;
    state[1] += b;
    state[2] += c;
    state[3] += d;
}

void Sha1::mix(const unsigned char *block)
{
    static const Word constants[4] = {0x5A827999, 0x6ED9EBA1, 0x8F1BBCDC, 0xCA62C1D6};
    Word words[80];
    for (int i = 0; i < 16; ++i)
        words[i] = loadHighFirst<Word>(block + 4 * i);
    for (int i = 16; i < 80; ++i)
        words[i] = rotatedLeft(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
    Word a = state[0], b = state[1], c = state[2], d = state[3], e = state[4];
    for (int i = 0; i < 80; ++i) {
        const int round = i / 20;
        const Word f = round == 0   ? (b & c) | (~b & d)
                       : round == 2 ? (b & c) | (b & d) | (c & d)
                                    : b ^ c ^ d;
        const Word sum = rotatedLeft(a, 5) + f + e + constants[round] + words[i];
        e = d;
        d = c;
        c = rotatedLeft(b, 30);
        b = a;
        a = sum;
    }
    const Word added[5] = {a, b, c, d, e};
    for (int i = 0; i < 5; ++i)
        state[i] += added[i];
}

// SHA-256 and SHA-512 differ in the width of their numbers, the turns and the number of rounds.
struct Turns
{
    int small0[3]; // two turns and a shift
    int small1[3];
    int big0[3];
    int big1[3];
};

template <typename Number>
Number spread(Number value, const int (&turns)[3])
{
    return rotatedRight(value, turns[0]) ^ rotatedRight(value, turns[1]) ^ value >> turns[2];
}

template <typename Number>
Number turned(Number value, const int (&turns)[3])
{
    return rotatedRight(value, turns[0]) ^ rotatedRight(value, turns[1]) ^
           rotatedRight(value, turns[2]);
}

template <typename Number, int kRounds>
void mixSha2(Number (&state)[8], const unsigned char *block, const Turns &turns)
{
    Number words[kRounds];
    for (int i = 0; i < 16; ++i)
        words[i] = loadHighFirst<Number>(block + sizeof(Number) * i);
    for (int i = 16; i < kRounds; ++i)
        words[i] = spread(words[i - 2], turns.small1) + words[i - 7] +
                   spread(words[i - 15], turns.small0) + words[i - 16];
    Number v[8];
    std::memcpy(v, state, sizeof v);
    for (int i = 0; i < kRounds; ++i) {
        const Number constant = (Number)(kCubeRoots[i] >> (64 - 8 * sizeof(Number)));
        const Number first = v[7] + turned(v[4], turns.big1) + ((v[4] & v[5]) ^ (~v[4] & v[6])) +
                             constant + words[i];
        const Number second =
            turned(v[0], turns.big0) + ((v[0] & v[1]) ^ (v[0] & v[2]) ^ (v[1] & v[2]));
        std::memmove(v + 1, v, 7 * sizeof(Number));
        v[4] += first;
        v[0] = first + second;
    }
    for (int i = 0; i < 8; ++i)
        state[i] += v[i];
}

void Sha256::mix(const unsigned char *block)
{
    static const Turns turns = {{7, 18, 3}, {17, 19, 10}, {2, 13, 22}, {6, 11, 25}};
    mixSha2<Word, 64>(state, block, turns);
}

void Sha512::mix(const unsigned char *block)
{
    static const Turns turns = {{1, 8, 7}, {19, 61, 6}, {28, 34, 39}, {14, 18, 41}};
    mixSha2<LongWord, 80>(state, block, turns);
}

// Takes data in pieces of any length.
template <typename Algorithm>
class Hasher
{
public:
    void add(const void *data, size_t length)
    {
        const unsigned char *bytes = (const unsigned char *)data;
        m_total += length;
        while (length > 0) {
            if (m_used == 0 && length >= Algorithm::kBlock) {
                m_algorithm.mix(bytes);
                bytes += Algorithm::kBlock;
                length -= Algorithm::kBlock;
                continue;
            }
            const size_t room = Algorithm::kBlock - m_used;
            const size_t taken = length < room ? length : room;
            std::memcpy(m_block + m_used, bytes, taken);
            m_used += taken;
            bytes += taken;
            length -= taken;
            if (m_used == Algorithm::kBlock) {
                m_algorithm.mix(m_block);
                m_used = 0;
            }
        }
    }

    std::string digest()
    {
        const LongWord bits = m_total * 8;
        unsigned char tail[2 * Algorithm::kBlock] = {0x80};
        const size_t beside = m_used + 1 + Algorithm::kLengthField <= Algorithm::kBlock
                                  ? Algorithm::kBlock - m_used
                                  : 2 * Algorithm::kBlock - m_used;
        for (int i = 0; i < 8; ++i)
            tail[Algorithm::kHighFirst ? beside - 1 - i : beside - 8 + i] =
                (unsigned char)(bits >> 8 * i);
        add(tail, beside);
        unsigned char bytes[sizeof m_algorithm.state];
        const size_t width = sizeof m_algorithm.state[0];
        for (size_t i = 0; i < sizeof bytes / width; ++i) {
            storeHighFirst(bytes + i * width, m_algorithm.state[i]);
            if (!Algorithm::kHighFirst)
                for (size_t k = 0; k < width / 2; ++k)
                    std::swap(bytes[i * width + k], bytes[i * width + width - 1 - k]);
        }
        return std::string((const char *)bytes, Algorithm::kDigest);
    }

private:
    Algorithm m_algorithm;
    LongWord m_total = 0;
    size_t m_used = 0;
    unsigned char m_block[Algorithm::kBlock];
};

std::wstring hex(const std::string &bytes)
{
    return VL_ByteArrayToHex(VL_ByteArray((const unsigned char *)bytes.data(), bytes.size()), L"",
                             false);
}

template <typename Algorithm>
std::string digestOf(const void *data, size_t length)
{
    Hasher<Algorithm> hasher;
    hasher.add(data, length);
    return hasher.digest();
}

template <typename Algorithm>
std::wstring hexOfText(const std::wstring &text)
{
    const std::string bytes = VL_WideToUtf8(text);
    return hex(digestOf<Algorithm>(bytes.data(), bytes.size()));
}

template <typename Algorithm>
std::wstring hexOfBytes(const VL_ByteArray &bytes)
{
    return hex(digestOf<Algorithm>(bytes.ptr(), bytes.size()));
}

template <typename Algorithm>
std::wstring hexOfFile(const std::wstring &path)
{
    const std::wstring system = VL_SystemPath(path);
    const HANDLE file = system.empty()
                            ? INVALID_HANDLE_VALUE
                            : CreateFileW(system.c_str(), GENERIC_READ,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                          NULL, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, NULL);
    if (file == INVALID_HANDLE_VALUE)
        return std::wstring();
    Hasher<Algorithm> hasher;
    std::vector<unsigned char> piece(0x40000);
    DWORD got = 0;
    BOOL good = FALSE;
    while ((good = ReadFile(file, piece.data(), (DWORD)piece.size(), &got, NULL)) && got > 0)
        hasher.add(piece.data(), got);
    CloseHandle(file);
    return good ? hex(hasher.digest()) : std::wstring();
}

template <typename Algorithm>
std::string hmac(const void *data, size_t length, const void *key, size_t keyLength)
{
    unsigned char pad[Algorithm::kBlock] = {};
    if (keyLength > sizeof pad) {
        const std::string shorter = digestOf<Algorithm>(key, keyLength);
        std::memcpy(pad, shorter.data(), shorter.size());
    } else if (keyLength > 0) {
        std::memcpy(pad, key, keyLength);
    }
    for (unsigned char &byte : pad)
        byte ^= 0x36;
    Hasher<Algorithm> inner;
    inner.add(pad, sizeof pad);
    inner.add(data, length);
    const std::string innerDigest = inner.digest();
    for (unsigned char &byte : pad)
        byte ^= 0x36 ^ 0x5C;
    Hasher<Algorithm> outer;
    outer.add(pad, sizeof pad);
    outer.add(innerDigest.data(), innerDigest.size());
    return outer.digest();
}

template <typename Algorithm>
std::wstring hmacOfTexts(const std::wstring &text, const std::wstring &key)
{
    const std::string data = VL_WideToUtf8(text);
    const std::string secret = VL_WideToUtf8(key);
    return hex(hmac<Algorithm>(data.data(), data.size(), secret.data(), secret.size()));
}

struct Crc32Table
{
    Word entries[256];

    Crc32Table()
    {
        for (Word i = 0; i < 256; ++i) {
            Word value = i;
            for (int bit = 0; bit < 8; ++bit)
                value = value & 1 ? value >> 1 ^ 0xEDB88320 : value >> 1;
            entries[i] = value;
        }
    }
};

std::wstring crc32(const void *data, size_t length)
{
    static const Crc32Table table;
    const unsigned char *bytes = (const unsigned char *)data;
    Word value = 0xFFFFFFFF;
    for (size_t i = 0; i < length; ++i)
        value = table.entries[(value ^ bytes[i]) & 255] ^ value >> 8;
    unsigned char result[4];
    storeHighFirst(result, ~value);
    return hex(std::string((const char *)result, sizeof result));
}

} // namespace
} // namespace vl_hash

std::wstring VL_MD5(const std::wstring &text)
{
    return vl_hash::hexOfText<vl_hash::Md5>(text);
}

std::wstring VL_MD5Bytes(const VL_ByteArray &bytes)
{
    return vl_hash::hexOfBytes<vl_hash::Md5>(bytes);
}

std::wstring VL_FileMD5(const std::wstring &path)
{
    return vl_hash::hexOfFile<vl_hash::Md5>(path);
}

std::wstring VL_SHA1(const std::wstring &text)
{
    return vl_hash::hexOfText<vl_hash::Sha1>(text);
}

std::wstring VL_SHA1Bytes(const VL_ByteArray &bytes)
{
    return vl_hash::hexOfBytes<vl_hash::Sha1>(bytes);
}

std::wstring VL_FileSHA1(const std::wstring &path)
{
    return vl_hash::hexOfFile<vl_hash::Sha1>(path);
}

std::wstring VL_SHA256(const std::wstring &text)
{
    return vl_hash::hexOfText<vl_hash::Sha256>(text);
}

std::wstring VL_SHA256Bytes(const VL_ByteArray &bytes)
{
    return vl_hash::hexOfBytes<vl_hash::Sha256>(bytes);
}

std::wstring VL_FileSHA256(const std::wstring &path)
{
    return vl_hash::hexOfFile<vl_hash::Sha256>(path);
}

std::wstring VL_SHA512(const std::wstring &text)
{
    return vl_hash::hexOfText<vl_hash::Sha512>(text);
}

std::wstring VL_SHA512Bytes(const VL_ByteArray &bytes)
{
    return vl_hash::hexOfBytes<vl_hash::Sha512>(bytes);
}

std::wstring VL_CRC32(const std::wstring &text)
{
    const std::string bytes = VL_WideToUtf8(text);
    return vl_hash::crc32(bytes.data(), bytes.size());
}

std::wstring VL_CRC32Bytes(const VL_ByteArray &bytes)
{
    return vl_hash::crc32(bytes.ptr(), bytes.size());
}

std::wstring VL_HMAC_MD5(const std::wstring &text, const std::wstring &key)
{
    return vl_hash::hmacOfTexts<vl_hash::Md5>(text, key);
}

std::wstring VL_HMAC_SHA1(const std::wstring &text, const std::wstring &key)
{
    return vl_hash::hmacOfTexts<vl_hash::Sha1>(text, key);
}

std::wstring VL_HMAC_SHA256(const std::wstring &text, const std::wstring &key)
{
    return vl_hash::hmacOfTexts<vl_hash::Sha256>(text, key);
}

VL_ByteArray VL_HMAC_SHA256Bytes(const VL_ByteArray &bytes, const VL_ByteArray &key)
{
    const std::string digest =
        vl_hash::hmac<vl_hash::Sha256>(bytes.ptr(), bytes.size(), key.ptr(), key.size());
    return VL_ByteArray((const unsigned char *)digest.data(), digest.size());
}
