// Hashes, check sums, ciphers and random values against published results.
#include "runtime_test.h"

#include "40_files.h"
#include "41_paths.h"
#include "58_byte_array_values.h"
#include "81_hash.h"
#include "82_cipher.h"

namespace {

struct HashRow
{
    std::wstring text;
    const wchar_t *md5;
    const wchar_t *sha1;
    const wchar_t *sha256;
    const wchar_t *sha512;
    const wchar_t *crc32;
};

// Lengths around the block sizes, where padding goes wrong first.
const HashRow hashRows[] = {
    {L"", L"d41d8cd98f00b204e9800998ecf8427e", L"da39a3ee5e6b4b0d3255bfef95601890afd80709",
     L"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855",
     L"cf83e1357eefb8bdf1542850d66d8007d620e4050b5715dc83f4a921d36ce9ce"
     L"47d0d13c5d85f2b0ff8318d2877eec2f63b931bd47417a81a538327af927da3e",
     L"00000000"},
    {L"abc", L"900150983cd24fb0d6963f7d28e17f72", L"a9993e364706816aba3e25717850c26c9cd0d89d",
     L"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",
     L"ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
     L"2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f",
     L"352441c2"},
    {L"123456789", L"25f9e794323b453885f5181f1b624d0b", L"f7c3bc1d808e04732adf679965ccc34ca7ae3441",
     L"15e2b0d3c33891ebb0f1ef609ec419420c20e320ce94c65fbc8c3312448eb225",
     L"d9e6762dd1c8eaf6d61b3c6192fc408d4d6d5f1176d0c29169bc24e71c3f274a"
     L"d27fcd5811b313d681f7e55ec02d73d499c95455b6b5bb503acf574fba8ffe85",
     L"cbf43926"},
    {L"\u4E2D\u6587", L"a7bac2239fcdcb3a067903d8077c4a07",
     L"7be2d2d20c106eee0836c9bc2b939890a78e8fb3",
     L"72726d8818f693066ceb69afa364218b692e62ea92b385782363780f47529c21",
     L"8b88efc2ebbcbdad5ac2d65af05bec57bda25e71fd5fb25bbd892057a2755fbd"
     L"05d8d8491cb2946febd5b0f124ffdfbaecf7e34946353c4f1b5ab29545895468",
     L"5a09ed37"},
    {std::wstring(55, L'a'), L"ef1772b6dff9a122358552954ad0df65",
     L"c1c8bbdc22796e28c0e15163d20899b65621d65a",
     L"9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318",
     L"b0220c772cbf6c1822e2cb38a437d0e1d58772417a4bbb21c961364f8b6143e0"
     L"5aa6316dca8d1d7b19e16448419076395f6086cb55101fbd6d5497b148e1745f",
     L"aadfe34e"},
    {std::wstring(56, L'a'), L"3b0c8ac703f828b04c6c197006d17218",
     L"c2db330f6083854c99d4b5bfb6e8f29f201be699",
     L"b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a",
     L"962b64aae357d2a4fee3ded8b539bdc9d325081822b0bfc55583133aab44f18b"
     L"afe11d72a7ae16c79ce2ba620ae2242d5144809161945f1367f41b3972e26e04",
     L"79790d37"},
    {std::wstring(64, L'a'), L"014842d480b571495a4a0363793f7367",
     L"0098ba824b5c16427bd7a1122a5a442a25ec644d",
     L"ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb",
     L"01d35c10c6c38c2dcf48f7eebb3235fb5ad74a65ec4cd016e2354c637a8fb49b"
     L"695ef3c1d6f7ae4cd74d78cc9c9bcac9d4f23a73019998a7f73038a5c9b2dbde",
     L"89b46555"},
    {std::wstring(111, L'a'), L"089f243d1e831c5879aa375ee364a06e",
     L"ac877859d427d9192054eea8feb3b8a403ef83a5",
     L"6374f73208854473827f6f6a3f43b1f53eaa3b82c21c1a6d69a2110b2a79baad",
     L"fa9121c7b32b9e01733d034cfc78cbf67f926c7ed83e82200ef8681819692176"
     L"0b4beff48404df811b953828274461673c68d04e297b0eb7b2b4d60fc6b566a2",
     L"d7ee9b8c"},
    {std::wstring(112, L'a'), L"9146ef3527c7cfcc66dc615c3986e391",
     L"689993727ba37386bb032495e9dbdfb4dd1ba744",
     L"f54353008a2553262ecdc4a34749563ba0950e8b0fc8652780b0a614b99683c1",
     L"c01d080efd492776a1c43bd23dd99d0a2e626d481e16782e75d54c2503b5dc32"
     L"bd05f0f1ba33e568b88fd2d970929b719ecbb152f58f130a407c8830604b70ca",
     L"0c6e9fd3"},
    {std::wstring(128, L'a'), L"e510683b3f5ffe4093d021808bc6ff70",
     L"ad5b3fdbcb526778c2839d2f151ea753995e26a0",
     L"6836cf13bac400e9105071cd6af47084dfacad4e5e302c94bfed24e013afb73e",
     L"b73d1929aa615934e61a871596b3f3b33359f42b8175602e89f7e06e5f658a24"
     L"3667807ed300314b95cacdd579f3e33abdfbe351909519a846d465c59582f321",
     L"f12b368c"},
    {std::wstring(300000, L'a'), L"92712d77c46f3ee77d7ac6caba4fe2ba",
     L"521d84efcae113d000a147968b508e067cb60184",
     L"12e1b9b179b29a4f7e5889b185d7ac71bff0ad1f49a7b391d0911b737a0f5381",
     L"354857bdf80c61757f6d48250a4d1fc06e30abdd6ae382c2bf75cf58178d12ae"
     L"f850583796871b46cdab8378ca33798ec3416686c71fc4ae451dd285c3ef32dc",
     L"f44ef25f"},
};

void testHashes()
{
    const std::wstring path = VL_JoinPath(VL_GetTempDir(), L"vorel_hash_test.bin");
    for (const HashRow &row : hashRows) {
        CHECK_EQ(VL_MD5(row.text), row.md5);
        CHECK_EQ(VL_SHA1(row.text), row.sha1);
        CHECK_EQ(VL_SHA256(row.text), row.sha256);
        CHECK_EQ(VL_SHA512(row.text), row.sha512);
        CHECK_EQ(VL_CRC32(row.text), row.crc32);
        const VL_ByteArray bytes = VL_ToByteArray(row.text);
        CHECK_EQ(VL_MD5Bytes(bytes), row.md5);
        CHECK_EQ(VL_SHA512Bytes(bytes), row.sha512);
        CHECK_EQ(VL_CRC32Bytes(bytes), row.crc32);
        CHECK(VL_WriteFileByteArray(path, bytes));
        CHECK_EQ(VL_FileMD5(path), row.md5);
        CHECK_EQ(VL_FileSHA1(path), row.sha1);
        CHECK_EQ(VL_FileSHA256(path), row.sha256);
    }
    CHECK(VL_DeleteFile(path));
    CHECK_EQ(VL_FileMD5(path), L"");
    CHECK_EQ(VL_FileMD5(VL_GetTempDir()), L"");
    CHECK_EQ(VL_SHA1Bytes(VL_ByteArray()), VL_SHA1(L""));
}

void testHmac()
{
    const std::wstring data = L"what do ya want for nothing?";
    CHECK_EQ(VL_HMAC_MD5(data, L"Jefe"), L"750c783e6ab0b503eaa86e310a5db738");
    CHECK_EQ(VL_HMAC_SHA1(data, L"Jefe"), L"effcdf6ae5eb2fa2d27416d5f184df9c259a7c79");
    CHECK_EQ(VL_HMAC_SHA256(data, L"Jefe"),
             L"5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
    const VL_ByteArray longKey(std::vector<unsigned char>(131, 0xAA));
    const VL_ByteArray digest = VL_HMAC_SHA256Bytes(
        VL_ToByteArray(L"Test Using Larger Than Block-Size Key - Hash Key First"), longKey);
    CHECK_EQ(VL_ByteArrayToHex(digest, L"", false),
             L"60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54");
    CHECK_EQ(VL_HMAC_SHA256(L"", L""),
             L"b613679a0814d9ec772f95d778c35fc5ff1697c493715653c6c712144292c5ad");
}

void testCiphers()
{
    CHECK_EQ(VL_RC4(L"Plaintext", L"Key"), L"BBF316E8D940AF0AD3");
    CHECK_EQ(VL_RC4(L"Attack at dawn", L"Secret"), L"45A01F645FC35B383552544B9BF5");
    CHECK_EQ(VL_XORCrypt(L"ab", L"\x01"), L"6063");
    const std::wstring text = L"\u4E2D\u6587 a\xD83D\xDE00";
    for (const wchar_t *key : {L"k", L"\u5BC6\u94A5", L""}) {
        CHECK_EQ(VL_RC4(VL_RC4(text, key), key, true), text);
        CHECK_EQ(VL_XORCrypt(VL_XORCrypt(text, key), key, true), text);
    }
    CHECK_EQ(VL_RC4(L"no digits", L"k", true), L"");
}

void testRandomValues()
{
    CHECK_EQ(VL_RandomBytes(100).size(), (size_t)100);
    CHECK(VL_RandomBytes(32) != VL_RandomBytes(32));
    CHECK(VL_RandomBytes(-1).empty());
    CHECK_EQ(VL_GenerateRandomKey(1000).size(), (size_t)1000);
    CHECK_EQ(VL_GenerateRandomKey(1000).find_first_not_of(
                 L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
             std::wstring::npos);
    CHECK_EQ(VL_GenerateRandomKey(-5), L"");
    const std::wstring uuid = VL_GenerateUUID();
    CHECK_EQ(uuid.size(), (size_t)36);
    CHECK_EQ(std::wstring({uuid[8], uuid[13], uuid[14], uuid[18], uuid[23]}), L"--4--");
    CHECK(std::wstring(L"89ab").find(uuid[19]) != std::wstring::npos);
    CHECK_EQ(VL_GenerateUUID(false, true).find_first_not_of(L"0123456789ABCDEF"),
             std::wstring::npos);
}

} // namespace

void runTests()
{
    testHashes();
    testHmac();
    testCiphers();
    testRandomValues();
}
