// Running programs, their output and exit codes; finding and ending processes; the environment.
#include "runtime_test.h"

#include "11_dictionary.h"
#include "30_output.h"
#include "40_files.h"
#include "60_system.h"
#include "61_process.h"
#include "69_run_program.h"

#include <cstring>

static void commandOutput()
{
    const struct
    {
        const wchar_t *command;
        const wchar_t *output;
    } rows[] = {
        {L"echo hi", L"hi"},
        {L"echo one& echo two", L"one\r\ntwo"},
        {L"echo \"a b\"", L"\"a b\""},
        {L"echo to errors>&2", L"to errors"},
        {L"exit 3", L""},
        {L"", L""},
    };
    for (const auto &row : rows)
        CHECK_EQ(VL_ExecCommand(row.command), std::wstring(row.output));
    CHECK(VL_ExecCommand(std::wstring(9000, L'x')).empty());

    const struct
    {
        const char *bytes;
        intptr_t encoding;
        const wchar_t *text;
    } files[] = {{"\xE4\xB8\xAD\r\n", -1, L"\u4E2D"},
                 {"\xD6\xD0\xCE\xC4", -1, L"\u4E2D\u6587"},
                 {"\xE4\xB8\xAD", 65001, L"\u4E2D"}};
    for (const auto &file : files) {
        CHECK(VL_SaveFileBytes(L"out put.txt", file.bytes, strlen(file.bytes)));
        CHECK_EQ(VL_ExecCommand(L"type \"out put.txt\"", -1, file.encoding),
                 std::wstring(file.text));
    }
    const std::string large(3000000, 'x');
    CHECK(VL_SaveFileBytes(L"out put.txt", large.data(), large.size()));
    CHECK_EQ(VL_ExecCommand(L"type \"out put.txt\"").size(), large.size());
    VL_DeleteFile(L"out put.txt");
}

static void commandTimes()
{
    const ULONGLONG begin = GetTickCount64();
    CHECK_EQ(VL_ExecCommand(L"echo first& \"" + VL_GetProcessPath() + L"\" sleep", 1500),
             std::wstring(L"first"));
    // What runs on in the background does not keep the command from ending.
    CHECK_EQ(VL_ExecCommand(L"start /b \"\" \"" + VL_GetProcessPath() + L"\" sleep& echo done"),
             std::wstring(L"done"));
    CHECK(GetTickCount64() - begin < 15000);
    VL_Array sleepers = VL_GetAllProcessIds(L"process_test");
    for (const VL_Any &id : sleepers)
        if (id.toInt() != VL_GetOwnProcessId())
            CHECK(VL_KillProcess(id));
}

static void ownProcess()
{
    const intptr_t own = VL_GetOwnProcessId();
    CHECK(VL_ProcessExists(own));
    CHECK(VL_ProcessExists(L"PROCESS_TEST.EXE"));
    CHECK(VL_ProcessExists(VL_Any(VL_ToOutputStr(own))));
    CHECK_EQ(VL_GetProcessId(L"process_test"), own);
    CHECK_EQ(VL_GetProcessId(VL_GetProcessPath(own)), own);
    CHECK(VL_GetProcessMemory() > 100000);
    CHECK_EQ(VL_GetProcessPriority(own), (intptr_t)2);
    CHECK(VL_SetProcessPriority(-1, 1));
    CHECK_EQ(VL_GetProcessPriority(), (intptr_t)1);
    const double share = VL_GetProcessCPU(own, 20);
    CHECK(share >= 0 && share <= 100);
    bool listed = false;
    for (const VL_Any &row : VL_GetProcessList())
        listed = listed || VL_DictGet(row, L"\u8FDB\u7A0BID").toInt() == own;
    CHECK(listed);

    const VL_Any nobody[] = {0, -2, 1LL << 40, L"", L"no such program", L"0", VL_Any()};
    for (const VL_Any &process : nobody) {
        CHECK(!VL_ProcessExists(process));
        CHECK(!VL_KillProcess(process));
        CHECK(!VL_SuspendProcess(process));
        CHECK(VL_GetProcessPath(process).empty());
        CHECK_EQ(VL_WaitProcess(process, 10), (intptr_t)-1);
        CHECK_EQ(VL_GetProcessMemory(process), 0LL);
        CHECK_EQ(VL_GetProcessPriority(process), (intptr_t)-1);
    }
    CHECK(!VL_SuspendProcess(own));
    CHECK(!VL_SetProcessPriority(own, 6));
}

static void children()
{
    const std::wstring self = VL_GetProcessPath();
    const intptr_t quick = VL_CreateProcess(self, L"exit 42");
    CHECK_EQ(VL_WaitProcess(quick), (intptr_t)42);
    CHECK_EQ(VL_WaitProcess(quick), (intptr_t)42);
    const intptr_t negative = VL_CreateProcess(L"\"" + self + L"\"", L"exit -7", L"", false);
    CHECK_EQ(VL_WaitProcess(negative), (intptr_t)-7);
    CHECK_EQ(VL_CreateProcess(L"no such program.exe"), (intptr_t)0);
    CHECK_EQ(VL_CreateProcess(L""), (intptr_t)0);

    const intptr_t sleeper = VL_CreateProcess(self, L"sleep");
    CHECK_EQ(VL_WaitProcess(sleeper, 50), (intptr_t)-1);
    CHECK(VL_SuspendProcess(sleeper));
    CHECK(VL_ResumeProcess(sleeper));
    CHECK(VL_KillProcess(sleeper));
    CHECK_EQ(VL_WaitProcess(sleeper), (intptr_t)1);
    CHECK(!VL_ProcessExists(sleeper));

    CHECK(VL_RunProgram(self, L"write done.txt", L"", SW_HIDE, true));
    CHECK(VL_DeleteFile(L"done.txt"));
    CHECK(!VL_RunProgram(L"no such program.exe"));
    CHECK(!VL_RunProgram(L""));
}

static void environment()
{
    CHECK(VL_SetEnvVar(L"VL_\u53D8\u91CF", L"\u503C\xD83D\xDE00"));
    CHECK_EQ(VL_GetEnvVar(L"vl_\u53D8\u91CF"), std::wstring(L"\u503C\xD83D\xDE00"));
    const std::wstring longValue(5000, L'x');
    CHECK(VL_SetEnvVar(L"VL_LONG", longValue));
    CHECK_EQ(VL_GetEnvVar(L"VL_LONG"), longValue);
    CHECK(VL_SetEnvVar(L"VL_LONG", L""));
    CHECK(VL_SetEnvVar(L"VL_LONG", L""));
    CHECK_EQ(VL_GetEnvVar(L"VL_LONG", L"none"), std::wstring(L"none"));
    CHECK(!VL_SetEnvVar(L"", L"a"));
    CHECK(!VL_SetEnvVar(L"a=b", L"a"));
    CHECK(VL_SetEnvVar(L"VL_CHILD", L"seen"));
    CHECK_EQ(VL_ExecCommand(L"echo %VL_CHILD%"), std::wstring(L"seen"));
}

static void privileges()
{
    CHECK(!VL_EnablePrivilege(L"SeNoSuchPrivilege"));
    CHECK(!VL_CheckPrivilege(L""));
    if (VL_EnablePrivilege(L"SeShutdownPrivilege")) {
        CHECK(VL_CheckPrivilege(L"SeShutdownPrivilege"));
        CHECK(VL_EnablePrivilege(L"SeShutdownPrivilege", false));
        CHECK(!VL_CheckPrivilege(L"SeShutdownPrivilege"));
    }
}

// The test starts itself as the other program.
static bool playedChild()
{
    int count = 0;
    wchar_t **arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count < 2)
        return false;
    const std::wstring task = arguments[1];
    if (task == L"sleep")
        Sleep(20000);
    if (task == L"write")
        VL_WriteFile(arguments[2], L"x");
    ExitProcess(task == L"exit" ? (UINT)_wtoi(arguments[2]) : 0);
}

void runTests()
{
    if (playedChild())
        return;
    ownProcess();
    commandOutput();
    commandTimes();
    children();
    environment();
    privileges();
}
