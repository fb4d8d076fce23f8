// Pictures by name: files beside the program and the program's own resources.
#include "68_picture_names.h"

#include "40_files.h"
#include "41_paths.h"

namespace vl_picture_names {
namespace {

const long long MostFileBytes = 64 << 20;

bool isFileWithin(const std::wstring &path, long long most)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    return GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) &&
           !(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) &&
           ((long long)data.nFileSizeHigh << 32 | data.nFileSizeLow) <= most;
}

HBITMAP pictureFromFile(const std::wstring &name, int width, int height)
{
    const std::wstring program = VL_GetAppDir();
    for (const std::wstring &folder : {VL_JoinPath(program, L"resource"), program}) {
        const std::wstring path = VL_JoinPath(folder, name);
        if (isFileWithin(path, MostFileBytes)) {
            const VL_ByteArray bytes = VL_ReadBinaryFile(path);
            return VL_PictureFromBytes(bytes.ptr(), bytes.size(), width, height);
        }
    }
    return NULL;
}

HBITMAP pictureFromResource(int number, int width, int height)
{
    const LPWSTR name = MAKEINTRESOURCEW(number);
    const HRSRC found = FindResourceW(g_hInstance, name, (LPCWSTR)RT_RCDATA);
    const HGLOBAL loaded = found ? LoadResource(g_hInstance, found) : NULL;
    if (loaded)
        return VL_PictureFromBytes(LockResource(loaded), SizeofResource(g_hInstance, found), width,
                                   height);
    const HBITMAP bitmap =
        (HBITMAP)LoadImageW(g_hInstance, name, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    if (bitmap) {
        const HBITMAP picture = VL_PictureFromBitmap(bitmap, width, height);
        DeleteObject(bitmap);
        return picture;
    }
    const HICON icon = (HICON)LoadImageW(g_hInstance, name, IMAGE_ICON, width, height, 0);
    if (!icon)
        return NULL;
    const HBITMAP picture = VL_PictureFromIcon(icon, width, height);
    DestroyIcon(icon);
    return picture;
}

} // namespace
} // namespace vl_picture_names

HBITMAP VL_PictureFromName(const std::wstring &name, int width, int height)
{
    if (name.empty())
        return NULL;
    const int number = name[0] == L'#' ? _wtoi(name.c_str() + 1) : 0;
    return number > 0 && number <= 0xFFFF
               ? vl_picture_names::pictureFromResource(number, width, height)
               : vl_picture_names::pictureFromFile(name, width, height);
}
