// The push button of self-drawn windows.
#include "98_self_drawn_push_button.h"
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

namespace vl_self_drawn_push_button {
namespace {

const wchar_t kClass[] = L"VL_D2DPushButton";
const COLORREF kDefaultFace = RGB(192, 192, 192);
const COLORREF kWhite = RGB(255, 255, 255);
const int kPlain = 0;
const int kCommandLink = 1;
const int kSplit = 2;
const int kArrowWidth = 24;
// Styles and messages that the headers hide from older systems' programs.
const LONG kStyleSplit = 0x0C;
const LONG kStyleLink = 0x0E;
const UINT kSetNote = 0x1609;
const UINT kGetNote = 0x160A;
const UINT kGetNoteLength = 0x160B;
const LRESULT kStateHot = 0x0200;

struct Button
{
    HFONT font = NULL;
    int type = kPlain;
    int radius = 0;
    int align = 0;
    bool isDefault = false;
    bool hot = false;
    bool pressed = false; // shown so
    bool held = false;    // the mouse button went down here
    bool keyHeld = false; // the space bar did
    std::wstring note;
    std::unique_ptr<Gdiplus::Bitmap> icon;
};

int typeOf(HWND button, const Button &data)
{
    return VL_GetNumberProperty(button, L"VL_VlwinButtonType", data.type);
}

void takeStyle(HWND button, Button *data, LONG style)
{
    const LONG kind = style & BS_TYPEMASK;
    data->isDefault =
        kind == BS_DEFPUSHBUTTON || kind == (kStyleSplit | 1) || kind == (kStyleLink | 1);
    if (kind == kStyleSplit || kind == (kStyleSplit | 1))
        data->type = kSplit;
    else if (kind == kStyleLink || kind == (kStyleLink | 1))
        data->type = kCommandLink;
    InvalidateRect(button, NULL, FALSE);
}

void tellParent(HWND button, int code)
{
    SendMessageW(GetParent(button), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), code),
                 (LPARAM)button);
}

RECT arrowRect(HWND button)
{
    RECT place;
    GetClientRect(button, &place);
    place.left = std::max(0L, place.right - VL_ScaleX(button, kArrowWidth));
    return place;
}

void show(HWND button, bool *flag, bool on)
{
    if (*flag == on)
        return;
    *flag = on;
    InvalidateRect(button, NULL, FALSE);
}

// The handler may destroy the button: nothing touches it afterwards.
void clickAt(HWND button, const Button &data, POINT point)
{
    const RECT arrow = arrowRect(button);
    if (typeOf(button, data) == kSplit && PtInRect(&arrow, point))
        VL_Button_ShowDropDown(button);
    else
        tellParent(button, BN_CLICKED);
}

COLORREF faceColor(HWND button, const Button &data)
{
    COLORREF face = VL_HasBgColor(button) ? (COLORREF)VL_GetBgColor(button) : kDefaultFace;
    if (!IsWindowEnabled(button))
        return VL_MixColors(face, (COLORREF)VL_GetBgColor(VL_OwnerWindow(button)), 60);
    if (data.pressed)
        face = VL_MixColors(face, RGB(0, 0, 0), 18);
    else if (data.hot)
        face = VL_MixColors(face, kWhite, VL_VlwinIsLight(face) ? 30 : 14);
    return face;
}

COLORREF textColor(HWND button, COLORREF face)
{
    const COLORREF text = VL_HasTextColor(button) ? (COLORREF)VL_GetTextColor(button) : 0;
    return IsWindowEnabled(button) ? text : VL_MixColors(text, face, 50);
}

void drawIcon(const Button &data, HDC dc, const RECT &place)
{
    Gdiplus::Graphics graphics(dc);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.DrawImage(data.icon.get(), (INT)place.left, (INT)place.top,
                       (INT)(place.right - place.left), (INT)(place.bottom - place.top));
}

// The icon in its own size, smaller when the button is low; empty without one.
SIZE iconSize(HWND button, const Button &data, int room)
{
    if (!data.icon || room <= 0)
        return SIZE{0, 0};
    double width = VL_ScaleX(button, (int)data.icon->GetWidth());
    double height = VL_ScaleY(button, (int)data.icon->GetHeight());
    const double factor = std::min(1.0, room / std::max(width, height));
    width = std::max(1.0, width * factor);
    height = std::max(1.0, height * factor);
    return SIZE{(LONG)width, (LONG)height};
}

void drawCaption(HWND button, const Button &data, HDC dc, RECT room, COLORREF color)
{
    const std::wstring text = VL_VlwinWindowText(button);
    const UINT prefix = VL_VlwinPrefixFormat(button);
    const LONG height = room.bottom - room.top;
    const SIZE icon = iconSize(button, data, height - VL_ScaleX(button, 8));
    const LONG gap = icon.cx && !text.empty() ? VL_ScaleX(button, 6) : 0;
    const LONG pad = VL_ScaleX(button, 8);
    const LONG width = std::max(0L, room.right - room.left - 2 * pad);
    const LONG textRoom = std::max(0L, width - icon.cx - gap);
    UINT format = DT_WORDBREAK | prefix;
    SIZE size = VL_VlwinTextSize(button, dc, text, textRoom, format);
    if (size.cy > height || size.cx > textRoom) {
        format = DT_SINGLELINE | DT_END_ELLIPSIS | prefix;
        size = VL_VlwinTextSize(button, dc, text, textRoom, DT_SINGLELINE | prefix);
    }
    size.cx = text.empty() ? 0 : std::min(size.cx, textRoom);
    const LONG spare = width - icon.cx - gap - size.cx;
    LONG x = room.left + pad + (data.align == 1 ? 0 : data.align == 2 ? spare : spare / 2);
    if (icon.cx) {
        const LONG y = room.top + (height - icon.cy) / 2;
        drawIcon(data, dc, RECT{x, y, x + icon.cx, y + icon.cy});
        x += icon.cx + gap;
    }
    const LONG y = room.top + std::max(0L, (height - size.cy) / 2);
    const UINT across = data.align == 1 ? DT_LEFT : data.align == 2 ? DT_RIGHT : DT_CENTER;
    VL_VlwinDrawText(button, dc, text, RECT{x, y, x + size.cx, y + size.cy}, format | across,
                     color);
}

std::wstring noteOf(HWND button, const Button &data)
{
    return data.note.empty() ? VL_GetTextProperty(button, L"VL_ButtonNote") : data.note;
}

// An arrow, the text beside it, the note below the text.
void drawCommandLink(HWND button, const Button &data, HDC dc, const RECT &room, COLORREF color,
                     COLORREF face)
{
    const std::wstring text = VL_VlwinWindowText(button);
    const float unit = (float)VL_ScaleX(button, 100) / 100;
    const LONG left = room.left + VL_ScaleX(button, 36);
    const LONG width = std::max(0L, room.right - left - VL_ScaleX(button, 8));
    const UINT line = DT_SINGLELINE | DT_END_ELLIPSIS | VL_VlwinPrefixFormat(button);
    const UINT wrap = DT_WORDBREAK | DT_NOPREFIX | DT_END_ELLIPSIS;
    const SIZE title = VL_VlwinTextSize(button, dc, text, width, DT_SINGLELINE);
    const std::wstring noteText = noteOf(button, data);
    SIZE note = {0, 0};
    if (!noteText.empty())
        note = VL_VlwinTextSize(button, dc, noteText, width, wrap);
    const LONG gap = note.cy ? VL_ScaleX(button, 3) : 0;
    const LONG height = room.bottom - room.top;
    const LONG top =
        room.top + std::max((LONG)VL_ScaleX(button, 3), (height - title.cy - gap - note.cy) / 2);
    VL_VlwinDrawText(button, dc, text, RECT{left, top, left + width, top + title.cy}, line, color);
    if (note.cy) {
        const LONG y = top + title.cy + gap;
        VL_VlwinDrawText(button, dc, noteText, RECT{left, y, left + width, room.bottom}, wrap,
                         VL_MixColors(color, face, 35));
    }
    const float x = (float)room.left + 12 * unit;
    const float y = (float)top + (float)title.cy / 2;
    const float shaft[] = {x, y, x + 14 * unit, y};
    const float head[] = {x + 9 * unit, y - 5 * unit, x + 14 * unit, y, x + 9 * unit, y + 5 * unit};
    VL_VlwinStroke(dc, shaft, 2, 1.6f * unit, VL_VLWIN_ACCENT);
    VL_VlwinStroke(dc, head, 3, 1.6f * unit, VL_VLWIN_ACCENT);
}

void drawArrow(HWND button, HDC dc, COLORREF color, COLORREF face)
{
    const RECT place = arrowRect(button);
    const float unit = (float)VL_ScaleX(button, 100) / 100;
    const float x = (float)(place.left + place.right) / 2;
    const float y = (float)(place.top + place.bottom) / 2;
    const float points[] = {x - 4 * unit, y - 2 * unit, x,
                            y + 2 * unit, x + 4 * unit, y - 2 * unit};
    VL_VlwinStroke(dc, points, 3, 1.5f * unit, color);
    const LONG inset = VL_ScaleX(button, 6);
    VL_VlwinFill(dc,
                 RECT{place.left, place.top + inset, place.left + VL_ScaleX(button, 1),
                      place.bottom - inset},
                 VL_MixColors(face, color, 40));
}

void draw(HWND button, const Button &data, HDC target)
{
    RECT all;
    GetClientRect(button, &all);
    if (IsRectEmpty(&all))
        return;
    const VL_BufferedPaint buffer(target, RECT{0, 0, all.right, all.bottom});
    const HDC dc = buffer.context();
    VL_VlwinParentBackground(button, dc);
    const COLORREF face = faceColor(button, data);
    const COLORREF text = textColor(button, face);
    const bool focus = VL_VlwinShowsFocus(button);
    COLORREF border =
        VL_VlwinIsLight(face) ? VL_MixColors(face, 0, 22) : VL_MixColors(face, kWhite, 18);
    if (IsWindowEnabled(button) && (focus || data.isDefault))
        border = VL_VLWIN_ACCENT;
    VL_VlwinRoundRect(dc, all, VL_ScaleX(button, data.radius), face, border,
                      VL_ScaleX(button, focus ? 2 : 1));
    const int type = typeOf(button, data);
    if (type == kCommandLink) {
        drawCommandLink(button, data, dc, all, text, face);
        return;
    }
    if (type == kSplit) {
        drawArrow(button, dc, text, face);
        all.right = arrowRect(button).left;
    }
    drawCaption(button, data, dc, all, text);
}

void handleMouse(HWND button, Button *data, UINT message, LPARAM lParam)
{
    const POINT point = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
    RECT all;
    GetClientRect(button, &all);
    const bool inside = PtInRect(&all, point) != 0;
    if (message == WM_LBUTTONDOWN) {
        data->held = true;
        show(button, &data->pressed, true);
        SetCapture(button);
        SetFocus(button);
    } else if (message == WM_LBUTTONUP) {
        const bool clicks = data->held && inside;
        data->held = false;
        show(button, &data->pressed, false);
        if (GetCapture() == button)
            ReleaseCapture();
        if (clicks)
            clickAt(button, *data, point);
    } else {
        if (!data->hot && inside)
            VL_VlwinTrackLeave(button);
        show(button, &data->hot, inside);
        if (data->held)
            show(button, &data->pressed, inside);
    }
}

// True when the key is the button's.
bool handleKey(HWND button, Button *data, UINT message, WPARAM key, LPARAM lParam)
{
    const bool repeated = (lParam & (1 << 30)) != 0;
    if (message == WM_KEYUP) {
        if (key != VK_SPACE || !data->keyHeld)
            return false;
        data->keyHeld = false;
        show(button, &data->pressed, false);
        tellParent(button, BN_CLICKED);
        return true;
    }
    if (key == VK_SPACE) {
        data->keyHeld = true;
        show(button, &data->pressed, true);
        return true;
    }
    if (key == VK_RETURN && !repeated) {
        tellParent(button, BN_CLICKED);
        return true;
    }
    if (key == VK_DOWN && typeOf(button, *data) == kSplit) {
        VL_Button_ShowDropDown(button);
        return true;
    }
    return false;
}

void letGo(HWND button, Button *data)
{
    data->held = false;
    data->keyHeld = false;
    show(button, &data->pressed, false);
}

LRESULT copyNote(const Button &data, DWORD *room, wchar_t *target)
{
    if (!room || !target || *room == 0)
        return FALSE;
    lstrcpynW(target, data.note.c_str(), (int)std::min(*room, (DWORD)0x7FFFFFFF));
    return TRUE;
}

// The messages by which others ask a button or tell it something.
bool answer(HWND button, Button *data, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    *result = 0;
    switch (message) {
    case WM_GETDLGCODE:
        *result = DLGC_BUTTON | (data->isDefault ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
        if (typeOf(button, *data) == kSplit)
            *result |= DLGC_WANTARROWS;
        return true;
    case WM_GETFONT:
        *result = (LRESULT)data->font;
        return true;
    case WM_SETFONT:
        data->font = (HFONT)wParam;
        InvalidateRect(button, NULL, FALSE);
        return true;
    case BM_CLICK:
        if (IsWindowEnabled(button))
            tellParent(button, BN_CLICKED);
        return true;
    case BM_SETSTATE:
        show(button, &data->pressed, wParam != 0);
        return true;
    case BM_GETSTATE:
        *result = (data->pressed ? BST_PUSHED : 0) | (GetFocus() == button ? BST_FOCUS : 0) |
                  (data->hot ? kStateHot : 0);
        return true;
    case BM_SETSTYLE:
        takeStyle(button, data, (LONG)LOWORD(wParam));
        return true;
    case kSetNote:
        data->note = lParam ? (const wchar_t *)lParam : L"";
        InvalidateRect(button, NULL, FALSE);
        *result = TRUE;
        return true;
    case kGetNote:
        *result = copyNote(*data, (DWORD *)wParam, (wchar_t *)lParam);
        return true;
    case kGetNoteLength:
        *result = (LRESULT)data->note.size();
        return true;
    default:
        return false;
    }
}

void paint(HWND button, const Button &data)
{
    PAINTSTRUCT state;
    if (const HDC dc = BeginPaint(button, &state))
        draw(button, data, dc);
    EndPaint(button, &state);
}

void handleFocus(HWND button, Button *data, bool got)
{
    if (!got)
        letGo(button, data);
    InvalidateRect(button, NULL, FALSE);
    if (GetWindowLongW(button, GWL_STYLE) & BS_NOTIFY)
        tellParent(button, got ? BN_SETFOCUS : BN_KILLFOCUS);
}

LRESULT CALLBACK buttonProcedure(HWND button, UINT message, WPARAM wParam, LPARAM lParam)
{
    Button *data = message == WM_NCCREATE ? VL_Extra<Button>(button) : VL_FindExtra<Button>(button);
    if (!data)
        return DefWindowProcW(button, message, wParam, lParam);
    LRESULT result = 0;
    if (answer(button, data, message, wParam, lParam, &result))
        return result;
    switch (message) {
    case WM_NCCREATE:
        takeStyle(button, data, GetWindowLongW(button, GWL_STYLE));
        break;
    case WM_PAINT:
        paint(button, *data);
        return 0;
    case WM_PRINTCLIENT:
        if (wParam)
            draw(button, *data, (HDC)wParam);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_MOUSEMOVE:
        handleMouse(button, data, message, lParam);
        return 0;
    case WM_MOUSELEAVE:
        show(button, &data->hot, false);
        return 0;
    case WM_CAPTURECHANGED:
        letGo(button, data);
        return 0;
    case WM_KEYDOWN:
    case WM_KEYUP:
        if (handleKey(button, data, message, wParam, lParam))
            return 0;
        break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        handleFocus(button, data, message == WM_SETFOCUS);
        return 0;
    case WM_SETTEXT:
    case WM_ENABLE:
    case WM_UPDATEUISTATE:
        InvalidateRect(button, NULL, FALSE);
        break;
    default:
        break;
    }
    return DefWindowProcW(button, message, wParam, lParam);
}

// A copy that neither needs nor locks the file.
std::unique_ptr<Gdiplus::Bitmap> loadIcon(const std::wstring &path)
{
    Gdiplus::Bitmap file(path.c_str());
    const int width = (int)file.GetWidth();
    const int height = (int)file.GetHeight();
    std::unique_ptr<Gdiplus::Bitmap> copy;
    if (file.GetLastStatus() != Gdiplus::Ok || width <= 0 || height <= 0)
        return copy;
    copy.reset(new Gdiplus::Bitmap(width, height, PixelFormat32bppPARGB));
    Gdiplus::Graphics graphics(copy.get());
    if (graphics.DrawImage(&file, 0, 0, width, height) != Gdiplus::Ok)
        copy.reset();
    return copy;
}

bool isAbsolute(const std::wstring &path)
{
    return (path.size() > 1 && path[1] == L':') || path[0] == L'\\' || path[0] == L'/';
}

} // namespace
} // namespace vl_self_drawn_push_button

void VL_D2DStdControls_Register()
{
    WNDCLASSW description = {};
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = vl_self_drawn_push_button::buttonProcedure;
    description.hInstance = g_hInstance;
    description.hCursor = LoadCursor(NULL, IDC_ARROW);
    description.lpszClassName = vl_self_drawn_push_button::kClass;
    RegisterClassW(&description);
}

void VL_VlwinButton_SetOptions(HWND button, int cornerRadius, int textAlign,
                               const std::wstring &iconPath)
{
    using namespace vl_self_drawn_push_button;
    Button *data = VL_FindExtra<Button>(button);
    if (!data)
        return;
    data->radius = std::max(0, std::min(cornerRadius, 1000));
    data->align = textAlign;
    data->icon.reset();
    if (!iconPath.empty()) {
        static const bool started = (VL_InitGdiPlus(), true);
        (void)started;
        const std::wstring folder = VL_GetAppDir() + L"\\";
        if (!isAbsolute(iconPath)) {
            data->icon = loadIcon(folder + iconPath);
            if (!data->icon)
                data->icon = loadIcon(folder + L"resource\\" + iconPath);
        }
        if (!data->icon)
            data->icon = loadIcon(iconPath);
    }
    InvalidateRect(button, NULL, FALSE);
}
