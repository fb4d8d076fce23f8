// Packing and unpacking: streams from elsewhere, round trips, damaged input.
#include "runtime_test.h"

#include "57_byte_array_commands.h"
#include "58_byte_array_values.h"
#include "82_cipher.h"
#include "83_compression.h"
#include "84_decompression.h"

namespace {

std::wstring unpackedText(const wchar_t *hex)
{
    return VL_ByteArrayToText(VL_ByteArrayDecompress(VL_HexToByteArray(hex)));
}

void testForeignStreams()
{
    // Fixed codes, a stored block, several blocks with an empty stored one between, own codes.
    CHECK_EQ(unpackedText(L"7801CB48CDC9C957C8402701680308B1"), L"hello hello hello hello");
    CHECK_EQ(unpackedText(L"7801010600F9FF73746F726564093C0292"), L"stored");
    CHECK_EQ(unpackedText(L"78DA2A482C2A51C8CF4BD501000000FFFF2B482C2A512829CF070039F30677"),
             L"part one,part two");
    std::wstring lines;
    for (int i = 0; i < 40; ++i)
        lines += L"\u7B2C" + std::to_wstring(i) + L"\u884C:" + std::wstring((size_t)(i % 7), L'*') +
                 L"\n";
    CHECK_EQ(unpackedText(
                 L"78da5dd0bb1102310c84e1fc4a21b2b47e52234d90bbafbb329813585e91fd9b7ca3d13967badea"
                 L"fe771ce29773cee522b4b7cd33affda4659c356f565b32db3bb39b6298950115645032b88ae643f"
                 L"b6b82c95e8c6740ff408b4a648ab2c5a753f029bd64cb416a6b546bafdd1dde9e134123d5988863"
                 L"20d041a39d2288b46dd7423ba33ed2f383e2f02d8af"),
             lines);
}

void testRoundTrips()
{
    const VL_ByteArray samples[] = {
        VL_ByteArray(),
        VL_ToByteArray(L"a"),
        VL_ByteArray(300000),
        VL_RandomBytes(100000),
        VL_ByteArrayRepeat(VL_RandomBytes(40000), 3), // copies just out of reach
        VL_ByteArrayRepeat(VL_RandomBytes(32700), 4), // copies at the edge of reach
        VL_ByteArrayRepeat(VL_ToByteArray(L"\u5B57\u8282\u96C6 0123456789, "), 30000),
    };
    for (const VL_ByteArray &sample : samples) {
        const VL_ByteArray packed = VL_ByteArrayCompress(sample);
        CHECK(VL_ByteArrayDecompress(packed) == sample);
        CHECK(packed.size() <= sample.size() + sample.size() / 1000 + 16);
    }
    CHECK(VL_ByteArrayCompress(VL_ByteArray(300000)).size() < 1000);
    CHECK(VL_ByteArrayCompress(samples[5]).size() < 50000);
    // A steep distribution asks for codes longer than the format allows.
    VL_ByteArray steep;
    for (size_t symbol = 0, times = 1; symbol < 22; ++symbol, times = times * 8 / 5 + 1)
        for (size_t i = 0; i < times; ++i)
            steep.append((unsigned char)(symbol * 11 + (i * i % 3 == 2 ? 1 : 0)));
    CHECK(VL_ByteArrayDecompress(VL_ByteArrayCompress(steep)) == steep);
}

void testDamagedStreams()
{
    const VL_ByteArray good = VL_ByteArrayCompress(
        VL_ToByteArray(L"the quick brown fox jumps over the lazy dog, the fox"));
    for (size_t length = 0; length < good.size(); ++length)
        CHECK(VL_ByteArrayDecompress(VL_ByteArrayLeft(good, (intptr_t)length)).empty());
    // One changed bit anywhere is found out by the codes or the check sum; at least nothing
    // crashes.
    int accepted = 0;
    for (size_t i = 0; i < good.size() * 8; ++i) {
        VL_ByteArray bad = good;
        bad.data[i / 8] ^= (unsigned char)(1 << i % 8);
        if (!VL_ByteArrayDecompress(bad).empty())
            ++accepted;
    }
    CHECK(accepted < 12); // window size and level in the header, bits that fill up the last byte
    for (int i = 0; i < 2000; ++i) {
        VL_ByteArray noise = VL_HexToByteArray(L"789C");
        noise.append(VL_RandomBytes(60));
        VL_ByteArrayDecompress(noise);
    }
    CHECK(VL_ByteArrayDecompress(VL_ToByteArray(L"not packed at all")).empty());
}

} // namespace

void runTests()
{
    testForeignStreams();
    testRoundTrips();
    testDamagedStreams();
}
