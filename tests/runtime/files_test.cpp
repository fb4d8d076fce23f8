// Files, paths and folders.
#include "runtime_test.h"

#include "40_files.h"
#include "41_paths.h"
#include "42_folders.h"
#include "58_byte_array_values.h"

namespace {

std::wstring root;

std::wstring in(const std::wstring &name)
{
    return VL_JoinPath(root, name);
}

std::wstring joined(const VL_Array &array)
{
    std::wstring text;
    for (const VL_Any &item : array)
        text += item.toStr() + L"|";
    return text;
}

std::wstring rawHex(const std::wstring &path)
{
    return VL_ByteArrayToHex(VL_ReadBinaryFile(path));
}

void writeRaw(const std::wstring &path, const wchar_t *hex)
{
    CHECK(VL_WriteBinaryFile(path, VL_HexToByteArray(hex)));
}

void testTextFiles()
{
    const std::wstring path = in(L"\u6587\u672C \xD83D\xDE00.txt");
    CHECK(VL_WriteFile(path, L"\u4E2D\n"));
    CHECK_EQ(rawHex(path), L"E4B8AD0A");
    CHECK(VL_AppendFile(path, L"b"));
    CHECK_EQ(VL_ReadFile(path), L"\u4E2D\nb");
    CHECK(VL_WriteFile(path, L"\u4E2D", 936));
    CHECK_EQ(rawHex(path), L"D6D0");
    CHECK_EQ(VL_ReadFile(path), L"\u4E2D");
    CHECK_EQ(VL_ReadFile(path, 65001), L"\xFFFD\xFFFD");
    CHECK(VL_WriteFile(path, L"\u4E2D", 1200));
    CHECK(VL_WriteFile(path, L"a", 1200, 1));
    CHECK(VL_AppendFile(path, L"b", -1));
    CHECK_EQ(rawHex(path), L"FFFE2D4E61006200");
    CHECK_EQ(VL_ReadFile(path), L"\u4E2D"
                                L"ab");
    writeRaw(path, L"EFBBBF41");
    CHECK_EQ(VL_ReadFile(path), L"A");
    CHECK(!VL_WriteFile(path, L"x", 65001, 2));
    CHECK(VL_WriteFile(path, L""));
    CHECK_EQ(VL_GetFileSize(path), 0LL);
    CHECK_EQ(VL_ReadFile(path), L"");
    CHECK_EQ(VL_ReadFile(in(L"missing")), L"");
    CHECK_EQ(VL_ReadFile(root), L"");
    CHECK(!VL_WriteFile(root, L"x"));
    CHECK(!VL_WriteFile(in(L"missing\\a.txt"), L"x"));
    CHECK(!VL_WriteFile(L"", L"x"));
    CHECK(!VL_WriteFile(std::wstring(in(L"a.txt") + std::wstring(1, L'\0')), L"x"));
    CHECK_EQ(joined(VL_GetFileList(root, L"*.tmp")), L"");
}

void testLines()
{
    const std::wstring path = in(L"lines.txt");
    writeRaw(path, L"610D0A620A0A630D64");
    CHECK_EQ(joined(VL_ReadFileLines(path)), L"a|b||c|d|");
    writeRaw(path, L"610A");
    CHECK_EQ(joined(VL_ReadFileLines(path)), L"a|");
    CHECK(VL_WriteFileLines(path, {VL_Any(L"\u4E00"), VL_Any(2), VL_Any(L"")}));
    CHECK_EQ(rawHex(path), L"E4B8800D0A320D0A0D0A");
    CHECK_EQ(joined(VL_ReadFileLines(path)), L"\u4E00|2||");
    CHECK(VL_ReadFileLines(in(L"missing")).empty());
}

void testReplacing()
{
    const std::wstring path = in(L"keep.txt");
    CHECK(VL_WriteFile(path, L"old"));
    CHECK(VL_SetReadOnlyFile(path));
    CHECK(VL_IsReadOnlyFile(path));
    CHECK(!VL_WriteFile(path, L"new"));
    CHECK_EQ(VL_ReadFile(path), L"old");
    CHECK(VL_SetReadOnlyFile(path, false));
    CHECK(VL_SetHiddenFile(path, true));
    CHECK(VL_WriteFile(path, L"new"));
    CHECK(VL_IsHiddenFile(path));
    CHECK_EQ(VL_ReadFile(path), L"new");
    // Held open by a program that lets others write, but not take its name.
    const HANDLE held = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    NULL, OPEN_EXISTING, 0, NULL);
    VL_SetHiddenFile(path, false);
    VL_WriteFile(path, L"third");
    CloseHandle(held);
    CHECK_EQ(VL_ReadFile(path), L"third");
    CHECK_EQ(joined(VL_GetFileList(root, L"~vl*")), L"");
    CHECK_EQ(VL_GetFileAttributes(in(L"missing")), -1);
    CHECK(!VL_SetHiddenFile(in(L"missing"), true));
    CHECK_EQ(VL_GetFileModifyTime(path).size(), (size_t)19);
    CHECK_EQ(VL_GetFileCreateTime(in(L"missing")), L"");
}

void testMoving()
{
    CHECK(VL_WriteFile(in(L"one"), L"1"));
    CHECK(VL_CopyFile(in(L"one"), in(L"two")));
    CHECK(!VL_CopyFile(in(L"one"), in(L"two"), false));
    CHECK(!VL_CopyFile(in(L"missing"), in(L"three")));
    CHECK(!VL_MoveFile(in(L"one"), in(L"two"), false));
    CHECK(VL_MoveFile(in(L"one"), in(L"three")));
    CHECK(!VL_FileExists(in(L"one")));
    CHECK(!VL_RenameFile(in(L"two"), L"three"));
    CHECK(VL_RenameFile(in(L"two"), L"\u56DB"));
    CHECK(VL_FileExists(in(L"\u56DB")));
    CHECK(!VL_RenameFile(in(L"\u56DB"), L""));
    CHECK(VL_DeleteFile(in(L"\u56DB")));
    CHECK(!VL_DeleteFile(in(L"\u56DB")));
    CHECK(!VL_FileExists(root));
    CHECK(VL_DirExists(root));
    CHECK_EQ(VL_GetFileSize(root), -1LL);
}

void testFolders()
{
    const std::wstring base = in(L"tree");
    CHECK(VL_CreateDir(VL_JoinPath(base, L"b", L"c/d")));
    CHECK(VL_CreateDir(base));
    for (const wchar_t *name :
         {L"B.txt", L"a.TXT", L"x.jpg", L"noext", L"b\\z.txt", L"b\\c\\d\\y.txt"})
        CHECK(VL_WriteFile(VL_JoinPath(base, name), L""));
    CHECK(!VL_CreateDir(VL_JoinPath(base, L"noext")));
    CHECK(!VL_CreateDir(VL_JoinPath(base, L"noext", L"below")));
    CHECK_EQ(joined(VL_GetFileList(base, L"*.*", false, false)), L"a.TXT|B.txt|noext|x.jpg|");
    CHECK_EQ(joined(VL_GetFileList(base, L"*.txt;*.jpg", false, false)), L"a.TXT|B.txt|x.jpg|");
    CHECK_EQ(joined(VL_GetFileList(base, L"?.txt", true, false)),
             L"a.TXT|B.txt|b\\c\\d\\y.txt|b\\z.txt|");
    CHECK_EQ(joined(VL_GetFileList(base, L"x*")), VL_JoinPath(base, L"x.jpg") + L"|");
    CHECK_EQ(joined(VL_GetDirList(base, true, false)), L"b|b\\c|b\\c\\d|");
    CHECK(VL_GetFileList(in(L"missing")).empty());
    CHECK(VL_SetReadOnlyFile(VL_JoinPath(base, L"B.txt")));
    CHECK(!VL_DeleteDir(base));
    CHECK(VL_DeleteDir(base, true));
    CHECK(!VL_DirExists(base));
    CHECK(!VL_DeleteDir(base, true));
    CHECK(!VL_DeleteDir(L"", true));
    CHECK(!VL_DeleteDir(L"\\\\server\\share", true));
}

void testLongPaths()
{
    std::wstring path = in(L"long");
    for (int i = 0; i < 12; ++i)
        path = VL_JoinPath(path, std::wstring(50, L'\u957F'));
    CHECK(VL_CreateDir(path));
    const std::wstring file = VL_JoinPath(path, L"f.txt");
    CHECK(VL_WriteFile(file, L"deep"));
    CHECK_EQ(VL_ReadFile(file), L"deep");
    CHECK_EQ(joined(VL_GetFileList(in(L"long"), L"f*", true)), file + L"|");
    CHECK(VL_DeleteDir(in(L"long"), true));
    CHECK(!VL_DirExists(in(L"long")));
}

void testPaths()
{
    struct Row
    {
        const wchar_t *path;
        const wchar_t *folder;
        const wchar_t *name;
        const wchar_t *extension;
        const wchar_t *normal;
    };
    const Row rows[] = {
        {L"C:\\a\\b.txt", L"C:\\a", L"b.txt", L".txt", L"C:\\a\\b.txt"},
        {L"C:/a/../b//c.tar.gz", L"C:/a/../b", L"c.tar.gz", L".gz", L"C:\\b\\c.tar.gz"},
        {L"C:\\..\\..\\x", L"C:\\..\\..", L"x", L"", L"C:\\x"},
        {L"C:\\", L"C:\\", L"", L"", L"C:\\"},
        {L"C:a.txt", L"C:", L"a.txt", L".txt", L"C:a.txt"},
        {L"a\\..\\..\\b\\.", L"a\\..\\..\\b", L".", L"", L"..\\b"},
        {L"a\\..", L"a", L"..", L"", L"."},
        {L"\\\\server\\share\\..\\a", L"\\\\server\\share\\..", L"a", L"", L"\\\\server\\share\\a"},
        {L"\\\\?\\C:\\a\\..\\b", L"\\\\?\\C:\\a\\..", L"b", L"", L"\\\\?\\C:\\b"},
        {L"/a/b/", L"/a/b", L"", L"", L"\\a\\b"},
        {L".profile", L"", L".profile", L"", L".profile"},
        {L"\u76EE.\u5F55\\\u6587\u4EF6", L"\u76EE.\u5F55", L"\u6587\u4EF6", L"",
         L"\u76EE.\u5F55\\\u6587\u4EF6"},
        {L"", L"", L"", L"", L""},
    };
    for (const Row &row : rows) {
        CHECK_EQ(VL_GetFileDir(row.path), row.folder);
        CHECK_EQ(VL_GetFileName(row.path), row.name);
        CHECK_EQ(VL_GetFileExt(row.path), row.extension);
        CHECK_EQ(VL_GetFileName(row.path, false) + row.extension, row.name);
        CHECK_EQ(VL_NormalizePath(row.path), row.normal);
    }
    CHECK_EQ(VL_JoinPath(L"C:\\a\\", L"\\b", L"c/"), L"C:\\a\\b\\c/");
    CHECK_EQ(VL_JoinPath(L"C:\\", L"b"), L"C:\\b");
    CHECK_EQ(VL_JoinPath(L"a", L"", L"b"), L"a\\b");
    CHECK_EQ(VL_JoinPath(L"", L"b"), L"b");
    CHECK_EQ(VL_JoinPath(L"C:\\a", L"D:\\b", VL_Any(L"c")), L"D:\\b\\c");
}

void testKnownFolders()
{
    const std::wstring before = VL_GetCurrentDir();
    CHECK(VL_SetCurrentDir(root));
    CHECK(VL_WriteFile(L"relative.txt", L"r"));
    CHECK_EQ(VL_ReadFile(in(L"relative.txt")), L"r");
    CHECK_EQ(VL_GetCurrentDir(), VL_NormalizePath(root));
    CHECK(VL_SetCurrentDir(before));
    CHECK(!VL_SetCurrentDir(in(L"missing")));
    for (const std::wstring &folder :
         {VL_GetAppDir(), VL_GetTempDir(), VL_GetSystemDir(), VL_GetUserDir(), VL_GetDesktopPath(),
          VL_GetDocumentsPath(), VL_GetDownloadsPath(), VL_GetMusicPath(), VL_GetPicturesPath(),
          VL_GetVideosPath()}) {
        CHECK(folder.size() > 3);
        CHECK(folder.back() != L'\\');
    }
    CHECK(VL_DirExists(VL_GetSystemDir()));
}

void testSizes()
{
    struct Row
    {
        long long size;
        const wchar_t *text;
    };
    const Row rows[] = {
        {0, L"0 B"},          {-5, L"0 B"},
        {1023, L"1023 B"},    {1024, L"1 KB"},
        {1536, L"1.5 KB"},    {1572864, L"1.5 MB"},
        {1048575, L"1 MB"},   {10000000, L"9.54 MB"},
        {1LL << 40, L"1 TB"}, {0x7FFFFFFFFFFFFFFFLL, L"8 EB"},
    };
    for (const Row &row : rows)
        CHECK_EQ(VL_FormatFileSize(row.size), row.text);
}

} // namespace

void runTests()
{
    root = VL_JoinPath(VL_GetTempDir(),
                       L"vorel_\u6D4B\u8BD5_" + std::to_wstring(GetCurrentProcessId()));
    CHECK(VL_CreateDir(root));
    testTextFiles();
    testLines();
    testReplacing();
    testMoving();
    testFolders();
    testLongPaths();
    testPaths();
    testKnownFolders();
    testSizes();
    CHECK(VL_DeleteDir(root, true));
}
