// Icons of items in list and tree views: reading picture files and keeping them in image lists.
#include "76_item_icons.h"

#include "01_images.h"
#include "41_paths.h"

// gdiplus.h needs the COM types, and min and max in its own namespace.
#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_item_icons {
namespace {

const int kGreatest = 1024;

bool isFile(const std::wstring &path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring locate(const std::wstring &path)
{
    const bool absolute =
        path.size() > 1 && (path[1] == L':' || path[0] == L'\\' || path[0] == L'/');
    if (!absolute) {
        std::wstring folder = VL_GetAppDir();
        if (!folder.empty() && folder.back() != L'\\' && folder.back() != L'/')
            folder += L'\\';
        if (isFile(folder + path))
            return folder + path;
    }
    return path;
}

HICON fitted(const std::wstring &path, int width, int height)
{
    Gdiplus::Bitmap image(path.c_str());
    if (image.GetLastStatus() != Gdiplus::Ok || image.GetWidth() == 0 || image.GetHeight() == 0)
        return NULL;
    const double scale =
        (std::min)((double)width / image.GetWidth(), (double)height / image.GetHeight());
    const int drawnX = (std::max)(1, (int)(image.GetWidth() * scale + 0.5));
    const int drawnY = (std::max)(1, (int)(image.GetHeight() * scale + 0.5));
    Gdiplus::Bitmap canvas(width, height, PixelFormat32bppARGB);
    {
        Gdiplus::Graphics graphics(&canvas);
        graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
        graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
        graphics.DrawImage(&image, (width - drawnX) / 2, (height - drawnY) / 2, drawnX, drawnY);
    }
    HICON icon = NULL;
    canvas.GetHICON(&icon);
    return icon;
}

} // namespace
} // namespace vl_item_icons

HICON VL_LoadItemIcon(const std::wstring &path, int width, int height)
{
    using namespace vl_item_icons;
    const std::wstring file = locate(path);
    if (width <= 0 || height <= 0 || width > kGreatest || height > kGreatest || !isFile(file))
        return NULL;
    // Icon files hold several sizes, of which this picks the best.
    if (HANDLE icon = LoadImageW(NULL, file.c_str(), IMAGE_ICON, width, height, LR_LOADFROMFILE))
        return (HICON)icon;
    VL_InitGdiPlus();
    const HICON icon = fitted(file, width, height);
    VL_ShutdownGdiPlus();
    return icon;
}

VL_ItemImages::~VL_ItemImages()
{
    if (m_list)
        ImageList_Destroy(m_list);
}

void VL_ItemImages::create(HWND window, int width, int height)
{
    m_width = (std::max)(1, (std::min)(width, 256));
    m_height = (std::max)(1, (std::min)(height, 256));
    m_dpi = 0;
    rescale(window);
}

bool VL_ItemImages::rescale(HWND window)
{
    const int dpi = VL_GetDpiForScaling(window);
    if (m_width == 0 || dpi == m_dpi)
        return false;
    m_dpi = dpi;
    if (m_list)
        ImageList_Destroy(m_list);
    m_list = ImageList_Create(VL_ScaleX(window, m_width), VL_ScaleY(window, m_height),
                              ILC_COLOR32 | ILC_MASK, 8, 32);
    std::vector<std::wstring> paths;
    paths.swap(m_paths);
    m_indexes.clear();
    for (const std::wstring &path : paths)
        add(window, path);
    return true;
}

int VL_ItemImages::add(HWND window, const std::wstring &path)
{
    const auto known = m_indexes.find(path);
    if (known != m_indexes.end())
        return known->second;
    const HICON icon =
        VL_LoadItemIcon(path, VL_ScaleX(window, m_width), VL_ScaleY(window, m_height));
    if (!icon || !m_list) {
        if (icon)
            DestroyIcon(icon);
        return -1;
    }
    const int index = ImageList_ReplaceIcon(m_list, -1, icon);
    DestroyIcon(icon);
    if (index < 0)
        return -1;
    m_paths.push_back(path);
    m_indexes[path] = index;
    return index;
}
