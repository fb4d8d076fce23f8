// Labels: a window class of its own for text with grounds, borders and effects.
#include "86_label.h"
#include "35_control_text.h"

#include <algorithm>

const wchar_t *g_ownerDrawLabelClassName = L"VL_OwnerDrawLabel";

namespace vl_label {
namespace {

// The name under which VL_WM_SET_OPTION carries several settings.
const wchar_t kAllOptions[] = L"*";
// What the system keeps of the text, for programs that look at other programs' windows.
const size_t kTextForSystem = 4096;

struct Label
{
    VL_LabelLook look;
    std::wstring text;
    std::wstring drawn; // by VL_DrawableText
    HFONT font = NULL;
    VL_ImageLayer picture;
    std::wstring picturePath;
    bool sizing = false;
};

enum class Kind
{
    Flag,
    Number,
    Color,
    Word
};

struct Option
{
    const wchar_t *key;
    Kind kind;
    int VL_LabelLook::*value;
    const wchar_t *words;    // of Kind::Word, in the order of their numbers
    const wchar_t *property; // the window property that keeps it, if one does
};

const Option kOptions[] = {
    {L"textAlign", Kind::Word, &VL_LabelLook::textAlign,
     L"\u5DE6\u5BF9\u9F50;\u5C45\u4E2D;\u53F3\u5BF9\u9F50", NULL},
    {L"verticalAlign", Kind::Word, &VL_LabelLook::verticalAlign, L"\u4E0A;\u5C45\u4E2D;\u4E0B",
     NULL},
    {L"ellipsis", Kind::Flag, &VL_LabelLook::ellipsis, NULL, NULL},
    {L"padding", Kind::Number, &VL_LabelLook::padding, NULL, NULL},
    {L"wordWrap", Kind::Flag, &VL_LabelLook::wordWrap, NULL, L"VL_WordWrap"},
    {L"autoSize", Kind::Flag, &VL_LabelLook::autoSize, NULL, NULL},
    {L"borderStyle", Kind::Word, &VL_LabelLook::borderStyle,
     L"\u65E0;\u5355\u7EBF;3D\u51F9\u9677;3D\u51F8\u8D77;\u865A\u7EBF;\u70B9\u7EBF;"
     L"\u70B9\u865A\u7EBF",
     L"VL_BorderStyle"},
    {L"borderColor", Kind::Color, &VL_LabelLook::borderColor, NULL, L"VL_BorderColor"},
    {L"borderWidth", Kind::Number, &VL_LabelLook::borderWidth, NULL, L"VL_BorderWidth"},
    {L"borderRadius", Kind::Number, &VL_LabelLook::borderRadius, NULL, L"VL_BorderRadius"},
    {L"backColor2", Kind::Color, &VL_LabelLook::backColor2, NULL, NULL},
    {L"gradientDirection", Kind::Word, &VL_LabelLook::gradientVertical,
     L"\u6C34\u5E73;\u5782\u76F4", NULL},
    {L"gradientPreset", Kind::Word, &VL_LabelLook::gradientPreset,
     L"\u65E0;"
     L"\u84DD\u767D\u6E10\u53D8\uFF08\u6C34\u5E73\uFF09;"
     L"\u84DD\u767D\u6E10\u53D8\uFF08\u5782\u76F4\uFF09;"
     L"\u7EA2\u6A59\u6E10\u53D8\uFF08\u6C34\u5E73\uFF09;"
     L"\u7EA2\u6A59\u6E10\u53D8\uFF08\u5782\u76F4\uFF09;"
     L"\u7EFF\u9752\u6E10\u53D8\uFF08\u6C34\u5E73\uFF09;"
     L"\u7EFF\u9752\u6E10\u53D8\uFF08\u5782\u76F4\uFF09;"
     L"\u7D2B\u7C89\u6E10\u53D8\uFF08\u6C34\u5E73\uFF09;"
     L"\u7D2B\u7C89\u6E10\u53D8\uFF08\u5782\u76F4\uFF09;"
     L"\u7070\u767D\u6E10\u53D8\uFF08\u6C34\u5E73\uFF09;"
     L"\u7070\u767D\u6E10\u53D8\uFF08\u5782\u76F4\uFF09",
     NULL},
    {L"textShadow", Kind::Flag, &VL_LabelLook::shadow, NULL, NULL},
    {L"textShadowColor", Kind::Color, &VL_LabelLook::shadowColor, NULL, NULL},
    {L"textShadowOffsetX", Kind::Number, &VL_LabelLook::shadowX, NULL, NULL},
    {L"textShadowOffsetY", Kind::Number, &VL_LabelLook::shadowY, NULL, NULL},
    {L"textShadowBlur", Kind::Number, &VL_LabelLook::shadowBlur, NULL, NULL},
    {L"textStroke", Kind::Flag, &VL_LabelLook::stroke, NULL, NULL},
    {L"textStrokeColor", Kind::Color, &VL_LabelLook::strokeColor, NULL, NULL},
    {L"textStrokeWidth", Kind::Number, &VL_LabelLook::strokeWidth, NULL, NULL},
    {L"text3D", Kind::Flag, &VL_LabelLook::depth3D, NULL, NULL},
    {L"text3DDepth", Kind::Number, &VL_LabelLook::depth, NULL, NULL},
    {L"textGlow", Kind::Flag, &VL_LabelLook::glow, NULL, NULL},
    {L"textGlowColor", Kind::Color, &VL_LabelLook::glowColor, NULL, NULL},
    {L"textGlowSize", Kind::Number, &VL_LabelLook::glowSize, NULL, NULL},
};

const wchar_t *const kProperties[] = {L"VL_WordWrap",       L"VL_BorderStyle", L"VL_BorderColor",
                                      L"VL_HasBorderColor", L"VL_BorderWidth", L"VL_BorderRadius",
                                      L"VL_BorderSides"};

bool isTrue(const std::wstring &text)
{
    return text == L"true" || text == L"1" || text == L"\u771F";
}

int numberOf(const std::wstring &text)
{
    return (int)std::max(-200L, std::min(wcstol(text.c_str(), NULL, 10), 2000L));
}

// 0xBBGGRR of "#RRGGBB" or "#AARRGGBB"; -1 for anything else.
int colorOf(const std::wstring &text)
{
    if ((text.size() != 7 && text.size() != 9) || text[0] != L'#' ||
        text.find_first_not_of(L"0123456789abcdefABCDEF", 1) != std::wstring::npos)
        return -1;
    const unsigned long value = wcstoul(text.c_str() + text.size() - 6, NULL, 16);
    return (int)RGB(value >> 16 & 255, value >> 8 & 255, value & 255);
}

// The place of the word in a list like L"a;b;c"; -1 when it is not in it.
int wordNumber(const wchar_t *words, const std::wstring &word)
{
    int number = 0;
    for (const wchar_t *at = words;; ++number) {
        const wchar_t *end = wcschr(at, L';');
        const size_t length = end ? (size_t)(end - at) : wcslen(at);
        if (word.compare(0, std::wstring::npos, at, length) == 0)
            return number;
        if (!end)
            return -1;
        at = end + 1;
    }
}

// Bits of the sides that a word such as "\u4E0A\u4E0B" (top and bottom) names.
int sidesOf(const std::wstring &word)
{
    int sides = 0;
    const wchar_t kSides[] = L"\u4E0A\u4E0B\u5DE6\u53F3";
    for (const wchar_t c : word) {
        const wchar_t *found = c ? wcschr(kSides, c) : NULL;
        sides |= found ? 1 << (found - kSides) : 0;
    }
    return sides;
}

// A text comes from the design, a number from code; an unknown word changes nothing.
bool readValue(const Option &option, const std::wstring &text, int number, int &value)
{
    if (text.empty()) {
        value = option.kind == Kind::Flag ? number != 0 : number;
        return true;
    }
    switch (option.kind) {
    case Kind::Flag:
        value = isTrue(text);
        return true;
    case Kind::Number:
        value = numberOf(text);
        return true;
    case Kind::Color:
        value = colorOf(text);
        return value >= 0;
    case Kind::Word:
        if (wordNumber(option.words, text) < 0)
            return false;
        value = wordNumber(option.words, text);
        return true;
    }
    return false;
}

void setNumberProperty(HWND window, const wchar_t *name, int value)
{
    if (value)
        SetPropW(window, name, (HANDLE)(intptr_t)value);
    else
        RemovePropW(window, name);
}

// Takes the look from all places that keep parts of it.
VL_LabelLook lookOf(HWND window, const Label &label)
{
    VL_LabelLook look = label.look;
    const LONG style = GetWindowLongW(window, GWL_STYLE);
    look.dpi = VL_GetDpiForScaling(window);
    look.enabled = (style & WS_DISABLED) == 0;
    if (look.textAlign < 0)
        look.textAlign = (style & SS_TYPEMASK) <= SS_RIGHT ? (int)(style & SS_TYPEMASK) : 0;
    look.textColor =
        VL_HasTextColor(window) ? VL_GetTextColor(window) : (int)GetSysColor(COLOR_WINDOWTEXT);
    look.backColor = VL_HasBgColor(window) ? VL_GetBgColor(window) : -1;
    look.wordWrap = VL_GetNumberProperty(window, L"VL_WordWrap");
    look.borderStyle = VL_GetNumberProperty(window, L"VL_BorderStyle");
    if (GetPropW(window, L"VL_HasBorderColor"))
        look.borderColor = VL_GetNumberProperty(window, L"VL_BorderColor") & 0xFFFFFF;
    look.borderWidth = VL_GetNumberProperty(window, L"VL_BorderWidth", 1);
    look.borderRadius = VL_GetNumberProperty(window, L"VL_BorderRadius");
    look.borderSides = VL_GetNumberProperty(window, L"VL_BorderSides");
    return look;
}

HFONT fontOf(const Label &label)
{
    const bool usable = label.font && GetObjectType(label.font) == OBJ_FONT;
    return usable ? label.font : (HFONT)GetStockObject(DEFAULT_GUI_FONT);
}

void changed(HWND window, Label &label)
{
    if (label.look.autoSize && !label.sizing) {
        RECT area = {};
        GetClientRect(window, &area);
        const SIZE size =
            VL_FittingLabelSize(lookOf(window, label), fontOf(label), label.drawn, area.right);
        label.sizing = true;
        SetWindowPos(window, NULL, 0, 0, size.cx, size.cy,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        label.sizing = false;
    }
    InvalidateRect(window, NULL, FALSE);
}

void setPicture(Label &label, const std::wstring &path)
{
    if (path == label.picturePath && label.picture.image())
        return;
    label.picturePath = path;
    label.picture.setImage(path.empty() ? VL_ImagePtr() : VL_OpenImage(path));
}

// One setting; false when there is no such key.
bool applyOption(HWND window, Label &label, const std::wstring &key, const std::wstring &text,
                 int number)
{
    for (const Option &option : kOptions) {
        if (key != option.key)
            continue;
        int value = 0;
        if (!readValue(option, text, number, value))
            return true;
        label.look.*option.value = value;
        if (option.property)
            setNumberProperty(window, option.property, value);
        if (option.value == &VL_LabelLook::borderColor)
            setNumberProperty(window, L"VL_HasBorderColor", 1);
        return true;
    }
    if (key == L"borderSides")
        setNumberProperty(window, L"VL_BorderSides", text.empty() ? number : sidesOf(text));
    else if (key == L"backImage")
        setPicture(label, text);
    else if (key == L"backColor" || key == L"foreColor") {
        const int color = text.empty() ? number : colorOf(text);
        if (color >= 0)
            key == L"backColor" ? VL_SetBgColor(window, color) : VL_SetTextColor(window, color);
    } else
        return false;
    return true;
}

void applyOptions(HWND window, Label &label, const std::wstring &options)
{
    std::wstring key, value;
    bool inValue = false;
    for (size_t i = 0; i <= options.size(); ++i) {
        if (i == options.size() || options[i] == L';') {
            // An empty value is one that the design leaves open.
            if (!value.empty())
                applyOption(window, label, key, value, 0);
            key.clear();
            value.clear();
            inValue = false;
        } else if (options[i] == L'=' && !inValue) {
            inValue = true;
        } else {
            if (options[i] == L'\\' && i + 1 < options.size())
                ++i;
            (inValue ? value : key) += options[i];
        }
    }
}

LRESULT setOption(HWND window, Label &label, const VL_ControlOption *option)
{
    if (!option || !option->name)
        return 0;
    bool taken = true;
    if (wcscmp(option->name, kAllOptions) == 0)
        applyOptions(window, label, option->text);
    else
        taken = applyOption(window, label, option->name, option->text, option->number);
    if (taken)
        changed(window, label);
    return taken;
}

LRESULT setImage(HWND window, Label &label, const VL_ControlImage *image)
{
    if (!image)
        return 0;
    if (!image->mode.empty())
        label.look.pictureMode = VL_ImageModeOf(image->mode);
    if (image->bytes) {
        label.picturePath.clear();
        label.picture.setImage(VL_OpenImage(*image->bytes));
    } else if (!image->keepPicture) {
        setPicture(label, image->path);
    }
    changed(window, label);
    return 1;
}

// Draws everything onto `dc`; `over` keeps what the context shows already as the ground.
void draw(HWND window, Label &label, HDC dc, bool over)
{
    RECT area = {};
    GetClientRect(window, &area);
    VL_Surface surface;
    if (!surface.create(area.right, area.bottom))
        return;
    const VL_LabelLook look = lookOf(window, label);
    if (over)
        BitBlt(surface.dc(), 0, 0, area.right, area.bottom, dc, 0, 0, SRCCOPY);
    else if (!VL_IsLabelOpaque(look))
        VL_PaintParentBackground(window, surface.dc());
    VL_PaintLabel(surface, look, label.picture, fontOf(label), label.drawn);
    BitBlt(dc, 0, 0, area.right, area.bottom, surface.dc(), 0, 0, SRCCOPY);
}

LRESULT setText(HWND window, Label &label, const wchar_t *text)
{
    const std::wstring fresh = text ? text : L"";
    if (fresh == label.text)
        return TRUE;
    label.text = fresh;
    label.drawn = VL_DrawableText(fresh);
    const std::wstring start = fresh.substr(0, kTextForSystem);
    DefWindowProcW(window, WM_SETTEXT, 0, (LPARAM)start.c_str());
    changed(window, label);
    return TRUE;
}

LRESULT copyText(const Label &label, size_t room, wchar_t *target)
{
    if (room == 0 || !target)
        return 0;
    const size_t count = std::min(label.text.size(), room - 1);
    std::copy_n(label.text.data(), count, target);
    target[count] = 0;
    return (LRESULT)count;
}

void create(HWND window, const CREATESTRUCTW *from)
{
    Label *label = new Label;
    SetWindowLongPtrW(window, 0, (LONG_PTR)label);
    VL_BeginShineThrough(window);
    // The system's own frame would surround the one that is drawn.
    if (from->style & WS_BORDER) {
        SetWindowLongW(window, GWL_STYLE, from->style & ~WS_BORDER);
        setNumberProperty(window, L"VL_BorderStyle", VL_BORDER_SOLID);
    }
    if (from->lpszName && !IS_INTRESOURCE(from->lpszName) && from->lpszName[0] != 0xFFFF) {
        label->text = from->lpszName;
        label->drawn = VL_DrawableText(label->text);
    }
}

void destroy(HWND window, Label *label)
{
    SetWindowLongPtrW(window, 0, 0);
    VL_EndShineThrough(window);
    for (const wchar_t *name : kProperties)
        RemovePropW(window, name);
    delete label;
}

void paint(HWND window, Label &label)
{
    PAINTSTRUCT work = {};
    const HDC dc = BeginPaint(window, &work);
    if (dc)
        draw(window, label, dc, false);
    EndPaint(window, &work);
}

// Messages about how the label looks; false for those that the system handles.
bool handleLook(HWND window, Label &label, UINT message, WPARAM wParam, LPARAM lParam,
                LRESULT &result)
{
    switch (message) {
    case WM_PAINT:
        paint(window, label);
        return true;
    case WM_PRINTCLIENT:
        if (wParam)
            draw(window, label, (HDC)wParam, VL_IsPaintingBackground());
        return true;
    case WM_ERASEBKGND:
        result = 1;
        return true;
    case WM_SETFONT:
        label.font = (HFONT)wParam;
        changed(window, label);
        return true;
    case WM_GETFONT:
        result = (LRESULT)label.font;
        return true;
    case VL_WM_SET_OPTION:
        result = setOption(window, label, (const VL_ControlOption *)lParam);
        return true;
    case VL_WM_SET_IMAGE:
        result = setImage(window, label, (const VL_ControlImage *)wParam);
        return true;
    case VL_WM_GET_IMAGE:
        if (wParam) {
            ((VL_ControlImage *)wParam)->path = label.picturePath;
            ((VL_ControlImage *)wParam)->mode = VL_ImageModeText(label.look.pictureMode);
            result = 1;
        }
        return true;
    case WM_ENABLE:
    case WM_STYLECHANGED:
        InvalidateRect(window, NULL, FALSE);
        return false;
    default:
        return false;
    }
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE)
        create(window, (const CREATESTRUCTW *)lParam);
    Label *label = (Label *)GetWindowLongPtrW(window, 0);
    LRESULT result = 0;
    if (!label)
        return DefWindowProcW(window, message, wParam, lParam);
    if (handleLook(window, *label, message, wParam, lParam, result))
        return result;
    switch (message) {
    case WM_SETTEXT:
        return setText(window, *label, (const wchar_t *)lParam);
    case WM_GETTEXT:
        return copyText(*label, (size_t)wParam, (wchar_t *)lParam);
    case WM_GETTEXTLENGTH:
        return (LRESULT)label->text.size();
    case WM_NCHITTEST:
        return HTTRANSPARENT;
    case WM_GETDLGCODE:
        return DLGC_STATIC;
    case WM_WINDOWPOSCHANGING:
        // What shows through differs from place to place.
        ((WINDOWPOS *)lParam)->flags |= SWP_NOCOPYBITS;
        VL_ForgetSiblings();
        break;
    case WM_NCDESTROY:
        destroy(window, label);
        break;
    default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace
} // namespace vl_label

void VL_RegisterOwnerDrawLabelClass()
{
    WNDCLASSW description = {};
    description.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = vl_label::procedure;
    description.cbWndExtra = sizeof(void *);
    description.hInstance = g_hInstance;
    description.hCursor = LoadCursorW(NULL, (LPCWSTR)IDC_ARROW);
    description.lpszClassName = g_ownerDrawLabelClassName;
    RegisterClassW(&description);
}

void VL_Label_SetOptions(HWND label, const wchar_t *options)
{
    if (!options || !VL_IsOwnControl(label, g_ownerDrawLabelClassName))
        return;
    VL_ControlOption option = {vl_label::kAllOptions, options, 0};
    SendMessageW(label, VL_WM_SET_OPTION, 0, (LPARAM)&option);
}

void VL_Label_SetOption(HWND label, const wchar_t *key, const std::wstring &value)
{
    if (VL_IsOwnControl(label, g_ownerDrawLabelClassName))
        VL_OfferOption(label, key, value, 0);
}

void VL_Label_SetOption(HWND label, const wchar_t *key, bool on)
{
    if (VL_IsOwnControl(label, g_ownerDrawLabelClassName))
        VL_OfferOption(label, key, on ? L"true" : L"false", on);
}

void VL_Label_SetOption(HWND label, const wchar_t *key, int number)
{
    std::wstring value = std::to_wstring(number);
    const std::wstring name = key ? key : L"";
    if (name.size() > 5 && name.compare(name.size() - 5, 5, L"Color") == 0) {
        wchar_t color[16];
        swprintf(color, 16, L"#%02X%02X%02X", number & 0xFF, (number >> 8) & 0xFF,
                 (number >> 16) & 0xFF);
        value = color;
    }
    if (VL_IsOwnControl(label, g_ownerDrawLabelClassName))
        VL_OfferOption(label, key, value, number);
}
