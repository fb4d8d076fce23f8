// The computer, its drives, network, keys and sounds: what holds on every machine.
#include "runtime_test.h"

#include "30_output.h"
#include "40_files.h"
#include "60_system.h"
#include "63_disk.h"
#include "64_network_information.h"
#include "65_input_simulation.h"
#include "66_sound.h"

#include <algorithm>
#include <cstring>

static void computer()
{
    CHECK_EQ(VL_GetOS().substr(0, 8), std::wstring(L"Windows "));
    const std::wstring version = VL_GetOSVersion();
    CHECK_EQ((int)std::count(version.begin(), version.end(), L'.'), 2);
    CHECK(VL_GetSystemLanguage().size() >= 2);
    CHECK(!VL_GetComputerName().empty());
    CHECK(!VL_GetUserName().empty());
    CHECK(VL_GetCPUCores() >= 1);
    CHECK(VL_GetTotalMemory() > VL_GetFreeMemory());
    CHECK(VL_GetFreeMemory() > 1000000);
    CHECK(VL_DirExists(VL_GetWindowsDir()));
    CHECK(VL_DirExists(VL_GetSystem32Dir()));
    VL_GetBoardSerial();
    CHECK(VL_GetDiskPhysicalSerial(-1).empty());
    CHECK(VL_GetDiskPhysicalSerial(99).empty());
}

static bool hasScreen()
{
    const HDC screen = GetDC(NULL);
    const bool readable = GetPixel(screen, 0, 0) != CLR_INVALID;
    ReleaseDC(NULL, screen);
    return readable;
}

static void pictures()
{
    CHECK(!VL_CaptureScreenRegion(0, 0, -1, 10, L"a.bmp"));
    CHECK(!VL_CaptureScreenRegion(0, 0, 1 << 30, 10, L"a.bmp"));
    CHECK(!VL_CaptureScreenRegion(0, 0, 10, 10, L""));
    CHECK(!VL_CaptureScreenRegion(0, 0, 10, 10, L"no such folder\\a.bmp"));
    if (!hasScreen())
        return;
    const struct
    {
        const wchar_t *path;
        const char *head;
    } rows[] = {{L"\u622A\u56FE.bmp", "BM"}, {L"shot.PNG", "\x89PNG"}, {L"shot.jpg", "\xFF\xD8"}};
    for (const auto &row : rows) {
        CHECK(VL_CaptureScreenRegion(0, 0, 20, 10, row.path));
        std::string bytes;
        CHECK(VL_LoadFileBytes(row.path, bytes, 0, (long long)strlen(row.head)));
        CHECK_EQ(bytes, std::string(row.head));
        VL_DeleteFile(row.path);
    }
}

static void drives()
{
    const std::wstring all = VL_ToOutputStr(VL_GetDrives());
    CHECK(all.find(L"C:\\") != std::wstring::npos);
    const wchar_t *names[] = {L"C", L"c:", L"C:\\", L"C:\\windows\\no such", L""};
    for (const wchar_t *name : names) {
        const long long total = VL_GetDiskTotal(name);
        CHECK(total > 0 && VL_GetDiskFree(name) <= total && VL_GetDiskUsed(name) <= total);
        CHECK(!VL_GetDiskType(name).empty());
    }
    CHECK_EQ(VL_GetDiskTotal(L"Q:"), 0LL);
    CHECK_EQ(VL_GetDiskUsed(L"Q:"), 0LL);
    CHECK(VL_GetDiskFileSystem(L"Q:").empty());
}

static void network()
{
    const std::wstring json = VL_EnumNetworkAdaptersJson();
    CHECK(json.front() == L'[' && json.back() == L']');
    CHECK_EQ(VL_IsNetworkConnected(), VL_GetNetworkStatus() != L"\u672A\u8FDE\u63A5");
    CHECK_EQ(VL_GetLocalIP().empty(), VL_GetLocalMAC().empty());
    CHECK(VL_GetLocalIP(1000).empty());
    CHECK(VL_GetLocalMAC(-1).empty());
    CHECK_EQ(VL_Ping(L""), (intptr_t)-1);
    CHECK_EQ(VL_Ping(L"no-such-host.invalid", 100), (intptr_t)-1);
    CHECK(VL_Ping(L"127.0.0.1", 1000) >= -1);
}

static void inputs()
{
    CHECK(VL_MoveMouse(30, 40));
    CHECK_EQ(VL_GetMouseX(), 30);
    CHECK_EQ(VL_GetMouseY(), 40);
    CHECK(!VL_MoveMouse(1 << 30, 0));
    CHECK(VL_SendKey(L"Shift+F12", 1));
    CHECK(VL_GetKeyState(VK_F12));
    CHECK(VL_GetKeyState(L" shift + f12 "));
    CHECK(VL_SendKey(L"Shift+F12", 2));
    CHECK(!VL_GetKeyState(L"F12"));
    CHECK(VL_SendKey(L"Ctrl++"));
    const VL_Any unknown[] = {L"",   L"no key", L"Ctrl+", L"+ + ", L"F25",
                              L"F0", 0,         -1,       255,     VL_Any()};
    for (const VL_Any &key : unknown)
        CHECK_EQ(VL_SendKey(key), key.type == VL_Any::TypeString && key.strVal == L"Ctrl+");
    CHECK(!VL_SendKey(VK_F12, 3));
    CHECK(!VL_MouseClick(0, 0, 3));
    CHECK(!VL_MouseClick(0, 0, 1, 0));
}

static void sounds()
{
    CHECK(!VL_PlaySound(L"no such.wav"));
    CHECK(!VL_PlaySound(L"."));
    CHECK(!VL_PlaySound(L""));
    VL_StopSound();
    VL_Beep(-5, 0);
}

void runTests()
{
    computer();
    pictures();
    drives();
    network();
    inputs();
    sounds();
}
