// Drawing canvases: a window class of its own that keeps what is drawn on it.
#include "88_drawing_canvas.h"
#include "40_files.h"
#include "68_text_drawing.h"
#include "71_image_drawing.h"

#include <algorithm>

namespace vl_drawing_canvas {
namespace {

const wchar_t kClassName[] = L"VL_DrawCanvas";
const UINT kJobMessage = WM_APP + 0x1A88;
const int kMostLines = 2000;
const size_t kKeptPictures = 32;
const double kFarthest = 100000;

// A picture file as it was when it was read.
struct KeptPicture
{
    std::wstring path;
    std::wstring stamp;
    VL_ImagePtr image;
};

struct Canvas
{
    VL_Surface drawn; // what was drawn; transparent elsewhere
    int dpi = 96;     // of `drawn`
    bool smooth = true;
    int batches = 0;
    bool repaintComing = false;
    VL_ImageLayer picture;
    VL_ImageMode mode = VL_ImageMode::Stretch;
    std::wstring picturePath;
    HFONT font = NULL; // by WM_SETFONT
    HFONT textFont = NULL;
    LOGFONTW textFontIs = {};
    std::vector<KeptPicture> pictures;

    Canvas() = default;
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;
    ~Canvas()
    {
        if (textFont)
            DeleteObject(textFont);
    }
};

typedef std::function<void(HWND, Canvas &)> Job;

// Does the job in the thread that the canvas belongs to; nothing for another window.
void withCanvas(HWND window, const Job &job)
{
    if (VL_IsOwnControl(window, kClassName))
        SendMessageW(window, kJobMessage, 0, (LPARAM)&job);
}

double scaleOf(HWND window)
{
    return VL_GetDpiForScaling(window) / 96.0;
}

int toPixels(HWND window, double value)
{
    const double limited = value > -kFarthest ? std::min(value, kFarthest) : -kFarthest;
    return (int)std::lround(limited * scaleOf(window));
}

void repaintNow(HWND window, Canvas &canvas)
{
    canvas.repaintComing = true;
    InvalidateRect(window, NULL, FALSE);
    VL_RepaintAbove(window);
}

// Thousands of drawings make one repaint.
void repaint(HWND window, Canvas &canvas)
{
    if (canvas.batches == 0 && !canvas.repaintComing)
        repaintNow(window, canvas);
}

// Brings what was drawn to the screen's present resolution.
void followDpi(HWND window, Canvas &canvas)
{
    const int dpi = VL_GetDpiForScaling(window);
    if (dpi == canvas.dpi)
        return;
    const int before = canvas.dpi;
    canvas.dpi = dpi;
    if (!canvas.drawn.valid())
        return;
    VL_Surface scaled;
    if (scaled.create(MulDiv(canvas.drawn.width(), dpi, before),
                      MulDiv(canvas.drawn.height(), dpi, before))) {
        const BLENDFUNCTION blend = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
        AlphaBlend(scaled.dc(), 0, 0, scaled.width(), scaled.height(), canvas.drawn.dc(), 0, 0,
                   canvas.drawn.width(), canvas.drawn.height(), blend);
    }
    canvas.drawn.swap(scaled);
}

// Makes room for drawing everywhere on the canvas; what was drawn stays, also beyond the edges.
bool prepare(HWND window, Canvas &canvas)
{
    followDpi(window, canvas);
    RECT area = {};
    GetClientRect(window, &area);
    const int width = std::max((int)area.right, canvas.drawn.width());
    const int height = std::max((int)area.bottom, canvas.drawn.height());
    if (width == canvas.drawn.width() && height == canvas.drawn.height())
        return canvas.drawn.valid();
    VL_Surface grown;
    if (!grown.create(width, height))
        return canvas.drawn.valid();
    GdiFlush();
    for (int y = 0; y < canvas.drawn.height(); ++y)
        std::copy_n(canvas.drawn.row(y), canvas.drawn.width(), grown.row(y));
    canvas.drawn.swap(grown);
    return true;
}

// What lies below the drawings, for an area that begins at the canvas's corner.
void drawGround(HWND window, Canvas &canvas, HDC dc, const RECT &area)
{
    const HBRUSH brush = VL_BgBrush(window);
    FillRect(dc, &area, brush ? brush : (HBRUSH)GetStockObject(WHITE_BRUSH));
    canvas.picture.blendTo(dc, area, canvas.mode, VL_GetDpiForScaling(window));
}

bool compose(HWND window, Canvas &canvas, VL_Surface &surface)
{
    RECT area = {};
    GetClientRect(window, &area);
    if (!surface.create(area.right, area.bottom))
        return false;
    followDpi(window, canvas);
    drawGround(window, canvas, surface.dc(), area);
    VL_BlendSurface(surface, canvas.drawn);
    return true;
}

void drawTo(HWND window, Canvas &canvas, HDC dc)
{
    VL_Surface surface;
    if (compose(window, canvas, surface))
        BitBlt(dc, 0, 0, surface.width(), surface.height(), surface.dc(), 0, 0, SRCCOPY);
}

void paint(HWND window, Canvas &canvas)
{
    PAINTSTRUCT work = {};
    const HDC dc = BeginPaint(window, &work);
    canvas.repaintComing = false;
    if (dc)
        drawTo(window, canvas, dc);
    EndPaint(window, &work);
}

int pixelAt(HWND window, Canvas &canvas, double x, double y)
{
    RECT area = {};
    GetClientRect(window, &area);
    const POINT place = {(LONG)std::floor((toPixels(window, x) + toPixels(window, x + 1)) / 2.0),
                         (LONG)std::floor((toPixels(window, y) + toPixels(window, y + 1)) / 2.0)};
    if (!PtInRect(&area, place))
        return -1;
    followDpi(window, canvas);
    GdiFlush();
    const bool within = place.x < canvas.drawn.width() && place.y < canvas.drawn.height();
    VL_Argb color = within ? canvas.drawn.row(place.y)[place.x] : 0;
    VL_Surface dot;
    if (color >> 24 < 255 && dot.create(1, 1)) {
        SetViewportOrgEx(dot.dc(), -place.x, -place.y, NULL);
        drawGround(window, canvas, dot.dc(), area);
        GdiFlush();
        VL_Surface over;
        if (over.create(1, 1)) {
            over.row(0)[0] = color;
            VL_BlendSurface(dot, over);
        }
        color = dot.row(0)[0];
    }
    return (int)RGB(color >> 16 & 255, color >> 8 & 255, color & 255);
}

// The font for a text; the last one is kept, since texts mostly come in rows of one kind.
HFONT textFont(HWND window, Canvas &canvas, double size, const std::wstring &name, bool bold)
{
    LOGFONTW wanted = {};
    HFONT own = canvas.font && GetObjectType(canvas.font) == OBJ_FONT
                    ? canvas.font
                    : (HFONT)GetStockObject(DEFAULT_GUI_FONT);
    GetObjectW(own, sizeof(wanted), &wanted);
    const double points = size > 1 ? std::min(size, 1000.0) : 1;
    wanted.lfHeight = -(LONG)std::lround(points * VL_GetDpiForScaling(window) / 72);
    wanted.lfWidth = 0;
    wanted.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    if (!name.empty())
        lstrcpynW(wanted.lfFaceName, name.c_str(), LF_FACESIZE);
    // What lies behind the end of the name is of no account.
    const size_t length = wcslen(wanted.lfFaceName);
    std::fill(wanted.lfFaceName + length, wanted.lfFaceName + LF_FACESIZE, L'\0');
    if (!canvas.textFont || memcmp(&wanted, &canvas.textFontIs, sizeof(wanted)) != 0) {
        if (canvas.textFont)
            DeleteObject(canvas.textFont);
        canvas.textFont = CreateFontIndirectW(&wanted);
        canvas.textFontIs = wanted;
    }
    return canvas.textFont;
}

VL_DrawnText layoutOf(HFONT font, const std::wstring &drawable)
{
    const HDC dc = CreateCompatibleDC(NULL);
    const HGDIOBJ before = SelectObject(dc, font);
    const VL_DrawnText layout = VL_BreakText(dc, drawable, 0, false, kMostLines);
    SelectObject(dc, before);
    DeleteDC(dc);
    return layout;
}

void addText(HWND window, Canvas &canvas, POINT place, const std::wstring &text, int color,
             HFONT font)
{
    if (text.empty() || !prepare(window, canvas))
        return;
    const std::wstring drawable = VL_DrawableText(text);
    const VL_DrawnText layout = layoutOf(font, drawable);
    VL_DrawnPlace where;
    where.area = {place.x, place.y, place.x + layout.width + 1, place.y + layout.height() + 1};
    const RECT bounds = {0, 0, canvas.drawn.width(), canvas.drawn.height()};
    VL_Mask mask = VL_MaskOfText(font, drawable, layout, where, 0, bounds);
    if (!canvas.smooth) {
        for (unsigned char &cover : mask.cover)
            cover = cover >= 128 ? 255 : 0;
    }
    VL_BlendMask(canvas.drawn, mask, 0, 0, VL_ArgbOf(color));
    repaint(window, canvas);
}

SIZE textSize(HWND canvas, const std::wstring &text, double size, const std::wstring &font,
              bool bold)
{
    SIZE result = {0, 0};
    withCanvas(canvas, [&](HWND window, Canvas &own) {
        const VL_DrawnText layout =
            layoutOf(textFont(window, own, size, font, bold), VL_DrawableText(text));
        const double scale = scaleOf(window);
        result.cx = (LONG)std::ceil(layout.width / scale);
        result.cy = (LONG)std::ceil(layout.height() / scale);
    });
    return result;
}

// Animations draw the same few files over and over.
VL_ImagePtr pictureOf(Canvas &canvas, const std::wstring &path)
{
    const std::wstring found = VL_FindImageFile(path);
    const std::wstring stamp =
        VL_GetFileModifyTime(found) + L"|" + std::to_wstring(VL_GetFileSize(found));
    for (const KeptPicture &kept : canvas.pictures) {
        if (kept.path == found && kept.stamp == stamp)
            return kept.image;
    }
    const VL_ImagePtr image = VL_OpenImage(found);
    if (image) {
        if (canvas.pictures.size() >= kKeptPictures)
            canvas.pictures.erase(canvas.pictures.begin());
        canvas.pictures.push_back({found, stamp, image});
    }
    return image;
}

bool drawPicture(HWND window, Canvas &canvas, const VL_ImagePtr &image, double x, double y,
                 double width, double height)
{
    if (!image || !prepare(window, canvas))
        return image != nullptr;
    const SIZE natural = VL_ImageSize(image);
    const double shownWidth = width > 0 ? width : natural.cx;
    const double shownHeight = height > 0 ? height : natural.cy;
    const RECT place = {toPixels(window, x), toPixels(window, y), toPixels(window, x + shownWidth),
                        toPixels(window, y + shownHeight)};
    VL_DrawImage(canvas.drawn, image, place, VL_ImageMode::Stretch, VL_GetDpiForScaling(window));
    repaint(window, canvas);
    return true;
}

void clear(HWND window, Canvas &canvas, bool covered, int color)
{
    if (covered && prepare(window, canvas)) {
        GdiFlush();
        for (int y = 0; y < canvas.drawn.height(); ++y)
            std::fill_n(canvas.drawn.row(y), canvas.drawn.width(), VL_ArgbOf(color));
    } else {
        canvas.drawn.release();
    }
    repaint(window, canvas);
}

LRESULT setImage(HWND window, Canvas &canvas, const VL_ControlImage *image)
{
    if (!image)
        return 0;
    if (image->bytes || !image->keepPicture) {
        canvas.picturePath = image->bytes ? std::wstring() : image->path;
        canvas.picture.setImage(image->bytes          ? VL_OpenImage(*image->bytes)
                                : image->path.empty() ? VL_ImagePtr()
                                                      : VL_OpenImage(image->path));
    }
    if (!image->mode.empty())
        canvas.mode = VL_ImageModeOf(image->mode);
    repaintNow(window, canvas);
    return 1;
}

LRESULT tellImage(const Canvas &canvas, VL_ControlImage *image)
{
    if (!image)
        return 0;
    image->path = canvas.picturePath;
    image->mode = VL_ImageModeText(canvas.mode);
    return 1;
}

LRESULT handle(HWND window, Canvas &canvas, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT:
        paint(window, canvas);
        return 0;
    case WM_PRINTCLIENT:
        if (wParam)
            drawTo(window, canvas, (HDC)wParam);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFONT:
        canvas.font = (HFONT)wParam;
        return 0;
    case WM_GETFONT:
        return (LRESULT)canvas.font;
    case VL_WM_SET_IMAGE:
        return setImage(window, canvas, (const VL_ControlImage *)wParam);
    case VL_WM_GET_IMAGE:
        return tellImage(canvas, (VL_ControlImage *)wParam);
    case kJobMessage:
        if (lParam)
            (*(const Job *)lParam)(window, canvas);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        SetWindowLongPtrW(window, 0, (LONG_PTR) new Canvas);
        VL_ForgetSiblings();
    }
    Canvas *canvas = (Canvas *)GetWindowLongPtrW(window, 0);
    if (!canvas)
        return DefWindowProcW(window, message, wParam, lParam);
    if (message != WM_NCDESTROY)
        return handle(window, *canvas, message, wParam, lParam);
    SetWindowLongPtrW(window, 0, 0);
    delete canvas;
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace
} // namespace vl_drawing_canvas

void VL_RegisterDrawCanvasClass(HINSTANCE instance)
{
    WNDCLASSW description = {};
    description.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = vl_drawing_canvas::procedure;
    description.cbWndExtra = sizeof(void *);
    description.hInstance = instance;
    description.hCursor = LoadCursorW(NULL, (LPCWSTR)IDC_ARROW);
    description.lpszClassName = vl_drawing_canvas::kClassName;
    RegisterClassW(&description);
}

void VL_DrawCanvas_ApplyProps(HWND canvas, int backColor, bool antialias)
{
    vl_drawing_canvas::withCanvas(canvas, [&](HWND window, vl_drawing_canvas::Canvas &own) {
        own.smooth = antialias;
        VL_SetBgColor(window, backColor);
    });
}

bool VL_DrawCanvas_GetAntialias(HWND canvas)
{
    bool smooth = false;
    vl_drawing_canvas::withCanvas(
        canvas, [&](HWND, vl_drawing_canvas::Canvas &own) { smooth = own.smooth; });
    return smooth;
}

void VL_DrawCanvas_SetAntialias(HWND canvas, bool on)
{
    vl_drawing_canvas::withCanvas(canvas,
                                  [&](HWND, vl_drawing_canvas::Canvas &own) { own.smooth = on; });
}

void VL_DrawCanvas_Invalidate(HWND canvas)
{
    vl_drawing_canvas::withCanvas(canvas, vl_drawing_canvas::repaintNow);
}

bool VL_DrawCanvas_Draw(HWND canvas, const std::function<void(VL_CanvasTarget &)> &draw)
{
    bool done = false;
    vl_drawing_canvas::withCanvas(canvas, [&](HWND window, vl_drawing_canvas::Canvas &own) {
        if (!vl_drawing_canvas::prepare(window, own))
            return;
        VL_CanvasTarget target = {own.drawn, vl_drawing_canvas::scaleOf(window), own.smooth};
        draw(target);
        done = true;
        vl_drawing_canvas::repaint(window, own);
    });
    return done;
}

void VL_DrawCanvas_BeginDraw(HWND canvas)
{
    vl_drawing_canvas::withCanvas(canvas,
                                  [](HWND, vl_drawing_canvas::Canvas &own) { ++own.batches; });
}

void VL_DrawCanvas_EndDraw(HWND canvas)
{
    vl_drawing_canvas::withCanvas(canvas, [](HWND window, vl_drawing_canvas::Canvas &own) {
        if (own.batches == 0 || --own.batches > 0)
            return;
        vl_drawing_canvas::repaintNow(window, own);
        UpdateWindow(window);
    });
}

void VL_DrawCanvas_ClearOverlay(HWND canvas)
{
    vl_drawing_canvas::withCanvas(canvas, [](HWND window, vl_drawing_canvas::Canvas &own) {
        vl_drawing_canvas::clear(window, own, false, 0);
    });
}

void VL_DrawCanvas_Clear(HWND canvas)
{
    VL_DrawCanvas_ClearOverlay(canvas);
}

void VL_DrawCanvas_Clear(HWND canvas, int color)
{
    vl_drawing_canvas::withCanvas(canvas, [&](HWND window, vl_drawing_canvas::Canvas &own) {
        vl_drawing_canvas::clear(window, own, true, color);
    });
}

int VL_DrawCanvas_GetPixel(HWND canvas, double x, double y)
{
    int color = -1;
    vl_drawing_canvas::withCanvas(canvas, [&](HWND window, vl_drawing_canvas::Canvas &own) {
        color = vl_drawing_canvas::pixelAt(window, own, x, y);
    });
    return color;
}

bool VL_DrawCanvas_Save(HWND canvas, const std::wstring &path)
{
    bool done = false;
    vl_drawing_canvas::withCanvas(canvas, [&](HWND window, vl_drawing_canvas::Canvas &own) {
        VL_Surface surface;
        done = vl_drawing_canvas::compose(window, own, surface) && VL_SaveImage(surface, path);
    });
    return done;
}

void VL_DrawCanvas_AddText(HWND canvas, double x, double y, const std::wstring &text, int color,
                           double size)
{
    VL_DrawCanvas_AddText(canvas, x, y, text, color, size, std::wstring(), false);
}

void VL_DrawCanvas_AddText(HWND canvas, double x, double y, const std::wstring &text, int color,
                           double size, const std::wstring &font, bool bold)
{
    using namespace vl_drawing_canvas;
    withCanvas(canvas, [&](HWND window, Canvas &own) {
        addText(window, own, {toPixels(window, x), toPixels(window, y)}, text, color,
                textFont(window, own, size, font, bold));
    });
}

int VL_DrawCanvas_TextWidth(HWND canvas, const std::wstring &text, double size,
                            const std::wstring &font, bool bold)
{
    return vl_drawing_canvas::textSize(canvas, text, size, font, bold).cx;
}

int VL_DrawCanvas_TextHeight(HWND canvas, const std::wstring &text, double size,
                             const std::wstring &font, bool bold)
{
    return vl_drawing_canvas::textSize(canvas, text, size, font, bold).cy;
}

bool VL_DrawCanvas_DrawImage(HWND canvas, const std::wstring &path, double x, double y,
                             double width, double height)
{
    bool done = false;
    vl_drawing_canvas::withCanvas(canvas, [&](HWND window, vl_drawing_canvas::Canvas &own) {
        done = vl_drawing_canvas::drawPicture(window, own, vl_drawing_canvas::pictureOf(own, path),
                                              x, y, width, height);
    });
    return done;
}

bool VL_DrawCanvas_DrawImageBytes(HWND canvas, const VL_ByteArray &bytes, double x, double y,
                                  double width, double height)
{
    bool done = false;
    vl_drawing_canvas::withCanvas(canvas, [&](HWND window, vl_drawing_canvas::Canvas &own) {
        done =
            vl_drawing_canvas::drawPicture(window, own, VL_OpenImage(bytes), x, y, width, height);
    });
    return done;
}
