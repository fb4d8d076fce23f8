/* Prints what the system makes of the resources in this very program, one "name=value" a line. */
#define _WIN32_WINNT 0x0A00
#include <windows.h>

#include <stdio.h>

static void printText(const wchar_t *name, const wchar_t *value)
{
    char bytes[8192];
    WideCharToMultiByte(CP_UTF8, 0, name, -1, bytes, sizeof bytes, NULL, NULL);
    printf("%s=", bytes);
    WideCharToMultiByte(CP_UTF8, 0, value, -1, bytes, sizeof bytes, NULL, NULL);
    printf("%s\n", bytes);
}

static void printVersion(void)
{
    static const wchar_t *const names[] = {L"CompanyName",  L"FileDescription", L"FileVersion",
                                           L"InternalName", L"LegalCopyright",  L"OriginalFilename",
                                           L"ProductName",  L"ProductVersion"};
    static char block[65536];
    wchar_t path[1024];
    VS_FIXEDFILEINFO *fixed = NULL;
    UINT length = 0;
    size_t i;
    GetModuleFileNameW(NULL, path, 1024);
    if (!GetFileVersionInfoW(path, 0, sizeof block, block))
        return;
    if (VerQueryValueW(block, L"\\", (void **)&fixed, &length))
        printf("fixed=%u.%u.%u.%u\n", HIWORD(fixed->dwFileVersionMS),
               LOWORD(fixed->dwFileVersionMS), HIWORD(fixed->dwFileVersionLS),
               LOWORD(fixed->dwFileVersionLS));
    for (i = 0; i < sizeof names / sizeof *names; ++i) {
        wchar_t query[100] = L"\\StringFileInfo\\080404b0\\";
        wchar_t *value = NULL;
        lstrcatW(query, names[i]);
        if (VerQueryValueW(block, query, (void **)&value, &length) && length > 0)
            printText(names[i], value);
    }
}

static void printSetting(const wchar_t *space, const wchar_t *name)
{
    wchar_t value[100] = L"";
    if (QueryActCtxSettingsW(0, NULL, space, name, value, 100, NULL))
        printText(name, value);
}

/* What the loader has taken from the manifest. */
static void printManifest(void)
{
    wchar_t path[1024] = L"";
    char block[1024];
    SIZE_T size = 0;
    GetModuleFileNameW(LoadLibraryW(L"comctl32.dll"), path, 1024);
    CharLowerW(path);
    printf("themed=%d\n", wcsstr(path, L"common-controls_6595b64144ccf1df_6.") != NULL);
    printSetting(L"http://schemas.microsoft.com/SMI/2016/WindowsSettings", L"dpiAwareness");
    printSetting(L"http://schemas.microsoft.com/SMI/2005/WindowsSettings", L"dpiAware");
    if (QueryActCtxW(0, NULL, NULL, CompatibilityInformationInActivationContext, block,
                     sizeof block, &size))
        printf("systems=%lu\n", *(DWORD *)block);
    printf("aware=%d\n", IsProcessDPIAware());
}

static void printImages(void)
{
    HINSTANCE self = GetModuleHandleW(NULL);
    BITMAP bitmap = {0};
    ICONINFO icon = {0};
    HICON handle = (HICON)LoadImageW(self, MAKEINTRESOURCEW(1), IMAGE_ICON, 32, 32, 0);
    HBITMAP menu =
        (HBITMAP)LoadImageW(self, MAKEINTRESOURCEW(300), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    if (handle && GetIconInfo(handle, &icon) && GetObjectW(icon.hbmColor, sizeof bitmap, &bitmap))
        printf("icon=%ld\n", bitmap.bmWidth);
    if (menu && GetObjectW(menu, sizeof bitmap, &bitmap))
        printf("bitmap=%ld\n", bitmap.bmWidth);
}

int wmain(void)
{
    printManifest();
    printImages();
    printVersion();
    return 0;
}
