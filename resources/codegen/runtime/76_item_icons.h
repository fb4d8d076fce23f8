// Icons of items in list and tree views: reading picture files and keeping them in image lists.
#pragma once
#include "34_window_state.h"

// The picture at `path` fitted into that many pixels, centred, its proportions kept; the caller
// destroys it. NULL when it cannot be read. A relative path counts from the program's folder, or
// from the current one when nothing stands there.
HICON VL_LoadItemIcon(const std::wstring &path, int width, int height);

// An image list made from files. It is made anew from them when the screen's resolution changes.
class VL_ItemImages
{
public:
    VL_ItemImages() = default;
    ~VL_ItemImages();
    VL_ItemImages(const VL_ItemImages &) = delete;
    VL_ItemImages &operator=(const VL_ItemImages &) = delete;

    // Makes the list for icons of that many design pixels; icons that were added stay.
    void create(HWND window, int width, int height);
    // The index of the icon, the same for the same path; -1 when it cannot be read.
    int add(HWND window, const std::wstring &path);
    // Fits the list to the window's resolution; true when it is a new one.
    bool rescale(HWND window);
    HIMAGELIST handle() const { return m_list; }

private:
    HIMAGELIST m_list = NULL;
    int m_width = 0;
    int m_height = 0;
    int m_dpi = 0;
    std::vector<std::wstring> m_paths;
    std::map<std::wstring, int> m_indexes;
};
