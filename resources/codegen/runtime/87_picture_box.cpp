// Picture boxes: a window class of its own that shows a picture, also a moving one.
#include "87_picture_box.h"
#include "71_image_drawing.h"

#include <algorithm>

const wchar_t *g_pictureBoxClassName = L"VL_PictureBox";

namespace vl_picture_box {
namespace {

const UINT kJobMessage = WM_APP + 0x1A87;
const UINT_PTR kFrameTimer = 1;
const int kWidestBorder = 1000;
const wchar_t kBorderProperty[] = L"VL_PictureBoxBorderColor";

struct Box
{
    VL_ImageLayer picture;
    VL_ImageMode mode = VL_ImageMode::Zoom;
    std::wstring path;
    std::wstring error;
    int borderWidth = 1; // shows only with a border colour
    int frame = 0;
    bool playing = false;
};

typedef std::function<void(HWND, Box &)> Job;

// Does the job in the thread that the box belongs to; nothing for another window.
void withBox(HWND window, const Job &job)
{
    if (VL_IsOwnControl(window, g_pictureBoxClassName))
        SendMessageW(window, kJobMessage, 0, (LPARAM)&job);
}

void repaint(HWND window)
{
    InvalidateRect(window, NULL, FALSE);
    VL_RepaintAbove(window);
}

void stopPlaying(HWND window, Box &box)
{
    if (box.playing)
        KillTimer(window, kFrameTimer);
    box.playing = false;
}

void takeImage(HWND window, Box &box, const VL_ImagePtr &image)
{
    stopPlaying(window, box);
    box.frame = 0;
    box.picture.setImage(image);
    repaint(window);
}

void setFile(HWND window, Box &box, const std::wstring &path)
{
    box.path = path;
    box.error.clear();
    takeImage(window, box, path.empty() ? VL_ImagePtr() : VL_OpenImage(path, &box.error));
}

void setBytes(HWND window, Box &box, const VL_ByteArray &bytes)
{
    box.path.clear();
    box.error.clear();
    takeImage(window, box, bytes.empty() ? VL_ImagePtr() : VL_OpenImage(bytes, &box.error));
}

void setMode(HWND window, Box &box, const std::wstring &mode)
{
    box.mode = VL_ImageModeOf(mode);
    repaint(window);
}

bool isOnScreen(HWND window)
{
    return IsWindowVisible(window) && !IsIconic(GetAncestor(window, GA_ROOT));
}

// Frames advance only while they can be seen; painting sets them going again.
void play(HWND window, Box &box)
{
    if (box.playing || VL_ImageFrameCount(box.picture.image()) < 2)
        return;
    const int delay = VL_ImageFrameDelay(box.picture.image(), box.frame);
    box.playing = SetTimer(window, kFrameTimer, (UINT)delay, NULL) != 0;
}

void nextFrame(HWND window, Box &box)
{
    stopPlaying(window, box);
    const int count = VL_ImageFrameCount(box.picture.image());
    if (count < 2 || !isOnScreen(window))
        return;
    box.frame = (box.frame + 1) % count;
    box.picture.showFrame(box.frame);
    repaint(window);
    play(window, box);
}

// Design pixels.
int borderOf(HWND window, const Box &box)
{
    return GetPropW(window, kBorderProperty) ? box.borderWidth : 0;
}

void drawBorder(HWND window, VL_Surface &surface, int width)
{
    const COLORREF color = (COLORREF)(VL_GetNumberProperty(window, kBorderProperty) - 1);
    const double inner = width;
    VL_FillOutlines(surface,
                    {VL_RectOutline(0, 0, surface.width(), surface.height()),
                     VL_RectOutline(inner, inner, std::max(0.0, surface.width() - 2 * inner),
                                    std::max(0.0, surface.height() - 2 * inner))},
                    VL_ArgbOf((int)(color & 0xFFFFFF)), true, false);
}

// Draws everything onto `dc`; `over` keeps what the context shows already as the ground.
void draw(HWND window, Box &box, HDC dc, bool over)
{
    RECT area = {};
    GetClientRect(window, &area);
    VL_Surface surface;
    if (!surface.create(area.right, area.bottom))
        return;
    if (VL_HasBgColor(window))
        FillRect(surface.dc(), &area, VL_BgBrush(window));
    else if (over)
        BitBlt(surface.dc(), 0, 0, area.right, area.bottom, dc, 0, 0, SRCCOPY);
    else
        VL_PaintParentBackground(window, surface.dc());
    const int border = std::max(0, VL_ScaleX(window, borderOf(window, box)));
    const RECT inside = {border, border, area.right - border, area.bottom - border};
    box.picture.blendTo(surface.dc(), inside, box.mode, VL_GetDpiForScaling(window));
    if (border > 0)
        drawBorder(window, surface, border);
    if (!IsWindowEnabled(window))
        VL_FillOutlines(surface, {VL_RectOutline(0, 0, area.right, area.bottom)},
                        VL_ArgbOf(0x808080, 80), false, false);
    BitBlt(dc, 0, 0, area.right, area.bottom, surface.dc(), 0, 0, SRCCOPY);
}

void paint(HWND window, Box &box)
{
    PAINTSTRUCT work = {};
    const HDC dc = BeginPaint(window, &work);
    if (dc)
        draw(window, box, dc, false);
    EndPaint(window, &work);
    play(window, box);
}

LRESULT setImage(HWND window, Box &box, const VL_ControlImage *image)
{
    if (!image)
        return 0;
    if (image->bytes)
        setBytes(window, box, *image->bytes);
    else if (!image->keepPicture)
        setFile(window, box, image->path);
    if (!image->mode.empty())
        setMode(window, box, image->mode);
    return 1;
}

LRESULT tellImage(const Box &box, VL_ControlImage *image)
{
    if (!image)
        return 0;
    image->path = box.path;
    image->mode = VL_ImageModeText(box.mode);
    return 1;
}

LRESULT handle(HWND window, Box &box, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT:
        paint(window, box);
        return 0;
    case WM_PRINTCLIENT:
        if (wParam)
            draw(window, box, (HDC)wParam, VL_IsPaintingBackground());
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_TIMER:
        if (wParam == kFrameTimer) {
            nextFrame(window, box);
            return 0;
        }
        break;
    case WM_ENABLE:
        InvalidateRect(window, NULL, FALSE);
        break;
    case WM_GETDLGCODE:
        return DLGC_STATIC;
    case WM_WINDOWPOSCHANGING:
        // What shows through differs from place to place.
        if (!VL_HasBgColor(window))
            ((WINDOWPOS *)lParam)->flags |= SWP_NOCOPYBITS;
        VL_ForgetSiblings();
        break;
    case VL_WM_SET_IMAGE:
        return setImage(window, box, (const VL_ControlImage *)wParam);
    case VL_WM_GET_IMAGE:
        return tellImage(box, (VL_ControlImage *)wParam);
    case kJobMessage:
        if (lParam)
            (*(const Job *)lParam)(window, box);
        return 0;
    default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        SetWindowLongPtrW(window, 0, (LONG_PTR) new Box);
        VL_BeginShineThrough(window);
    }
    Box *box = (Box *)GetWindowLongPtrW(window, 0);
    if (!box)
        return DefWindowProcW(window, message, wParam, lParam);
    if (message != WM_NCDESTROY)
        return handle(window, *box, message, wParam, lParam);
    SetWindowLongPtrW(window, 0, 0);
    VL_EndShineThrough(window);
    RemovePropW(window, kBorderProperty);
    delete box;
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace
} // namespace vl_picture_box

void VL_RegisterPictureBoxClass()
{
    WNDCLASSW description = {};
    description.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = vl_picture_box::procedure;
    description.cbWndExtra = sizeof(void *);
    description.hInstance = g_hInstance;
    description.hCursor = LoadCursorW(NULL, (LPCWSTR)IDC_ARROW);
    description.lpszClassName = g_pictureBoxClassName;
    RegisterClassW(&description);
}

bool VL_PictureBox_SetImage(HWND box, const std::wstring &path)
{
    bool shown = false;
    vl_picture_box::withBox(box, [&](HWND window, vl_picture_box::Box &own) {
        vl_picture_box::setFile(window, own, path);
        shown = own.picture.image() != nullptr;
    });
    return shown;
}

bool VL_PictureBox_SetImageBytes(HWND box, const VL_ByteArray &bytes)
{
    bool shown = false;
    vl_picture_box::withBox(box, [&](HWND window, vl_picture_box::Box &own) {
        vl_picture_box::setBytes(window, own, bytes);
        shown = own.picture.image() != nullptr;
    });
    return shown;
}

std::wstring VL_PictureBox_GetError(HWND box)
{
    std::wstring text;
    vl_picture_box::withBox(box, [&](HWND, vl_picture_box::Box &own) { text = own.error; });
    return text;
}

std::wstring VL_PictureBox_GetPath(HWND box)
{
    std::wstring text;
    vl_picture_box::withBox(box, [&](HWND, vl_picture_box::Box &own) { text = own.path; });
    return text;
}

int VL_PictureBox_GetImageWidth(HWND box)
{
    int width = 0;
    vl_picture_box::withBox(
        box, [&](HWND, vl_picture_box::Box &own) { width = VL_ImageSize(own.picture.image()).cx; });
    return width;
}

int VL_PictureBox_GetImageHeight(HWND box)
{
    int height = 0;
    vl_picture_box::withBox(box, [&](HWND, vl_picture_box::Box &own) {
        height = VL_ImageSize(own.picture.image()).cy;
    });
    return height;
}

void VL_PictureBox_SetMode(HWND box, const std::wstring &mode)
{
    vl_picture_box::withBox(box, [&](HWND window, vl_picture_box::Box &own) {
        vl_picture_box::setMode(window, own, mode);
    });
}

std::wstring VL_PictureBox_GetMode(HWND box)
{
    std::wstring text;
    vl_picture_box::withBox(
        box, [&](HWND, vl_picture_box::Box &own) { text = VL_ImageModeText(own.mode); });
    return text;
}

void VL_PictureBox_SetBorder(HWND box, int width, int color)
{
    vl_picture_box::withBox(box, [&](HWND window, vl_picture_box::Box &own) {
        own.borderWidth = std::min(width, vl_picture_box::kWidestBorder);
        if (width > 0)
            SetPropW(window, vl_picture_box::kBorderProperty,
                     (HANDLE)(intptr_t)((color & 0xFFFFFF) + 1));
        else
            RemovePropW(window, vl_picture_box::kBorderProperty);
        vl_picture_box::repaint(window);
    });
}
