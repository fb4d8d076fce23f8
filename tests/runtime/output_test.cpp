// What printing writes to a file or a pipe, and the texts that it shows.
#include "runtime_test.h"

#include "30_output.h"

namespace {

const wchar_t kFile[] = L"output_test.txt";

std::string writtenSoFar()
{
    const HANDLE file = CreateFileW(kFile, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL,
                                    OPEN_EXISTING, 0, NULL);
    std::string bytes(GetFileSize(file, NULL), '\0');
    DWORD read = 0;
    ReadFile(file, &bytes[0], (DWORD)bytes.size(), &read, NULL);
    CloseHandle(file);
    return bytes;
}

void textsTest()
{
    VL_Any dict = VL_NewDictAny();
    VL_DictSet(dict, L"k", VL_Any(VL_Array{1, L"\u4E2D"}));
    CHECK_EQ(VL_ToOutputStr(dict), std::wstring(L"{\"k\":[1, \"\u4E2D\"]}"));
    CHECK_EQ(VL_ToOutputStr(VL_Any()), std::wstring(L"[\u7A7A]"));
    CHECK_EQ(VL_ToOutputStr(VL_ByteArray("\x0A\xFF", 2)), std::wstring(L"[0A FF]"));
    CHECK_EQ(VL_ToOutputStr(VL_ByteArray()), std::wstring(L"[]"));
    CHECK_EQ(VL_ToOutputStr(VL_Array{VL_Array{VL_Array{VL_Array{1}, VL_Array()}}}),
             std::wstring(L"[[[[...], []]]]"));
    CHECK_EQ(VL_ToOutputStr((HWND)(intptr_t)4660), std::wstring(L"4660"));
    CHECK_EQ(VL_ToOutputStr(3.14), std::wstring(L"3.14"));
    CHECK_EQ(VL_ToOutputStr(0.1f), std::wstring(L"0.1"));
    CHECK_EQ(VL_ToOutputStr(-0.0), std::wstring(L"0"));
    CHECK_EQ(VL_ToOutputStr(1e15), std::wstring(L"1e+15"));
    CHECK_EQ(VL_ToOutputStr(std::sqrt(-1.0)), std::wstring(L"nan"));
    CHECK_EQ(VL_ToOutputStr(std::string("\xE4\xB8\xAD")), std::wstring(L"\u4E2D"));
    CHECK_EQ(VL_ToOutputStr(4294967295u), std::wstring(L"4294967295"));
}

void printTest()
{
    const HANDLE file =
        CreateFileW(kFile, GENERIC_WRITE, FILE_SHARE_READ, NULL, CREATE_ALWAYS, 0, NULL);
    SetStdHandle(STD_OUTPUT_HANDLE, file);
    VL_Print(L"\u4E2D\xD83D\xDE00");
    VL_Print(VL_Any(1), 2.5, L"x", true);
    VL_Print(std::wstring(L"a\0b", 3));
    VL_Print();
    // Nothing may wait in a buffer.
    const std::string expected("\xE4\xB8\xAD\xF0\x9F\x98\x80\r\n1, 2.5, x, \xE7\x9C\x9F\r\n"
                               "a\0b\r\n\r\n",
                               32);
    CHECK_EQ(writtenSoFar(), expected);
    // Pairs at every place where the text may be cut into pieces.
    std::wstring pairs(1, L'x');
    for (int i = 0; i < 3000000; ++i)
        pairs += L"\xD83D\xDE00";
    VL_Print(pairs);
    const std::string all = writtenSoFar();
    CHECK_EQ(all.size(), expected.size() + 1 + 12000000 + 2);
    CHECK_EQ(all.find("\xEF\xBF\xBD"), std::string::npos);
    CloseHandle(file);
    DeleteFileW(kFile);
}

} // namespace

void runTests()
{
    textsTest();
    printTest();
}
