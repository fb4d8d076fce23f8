// Labels: a window class of its own for text with grounds, borders and effects.
#pragma once
#include "73_background_pictures.h"
#include "85_label_paint.h"
#include "85_parent_background.h"

// Text by WM_SETTEXT, font by WM_SETFONT, colours by the functions for colours; without a
// background colour what lies behind shows. Clicks reach what lies below unless the label is
// watched for events. Besides the options below it heeds the window properties "VL_WordWrap",
// "VL_BorderStyle" (VL_BORDER_*), "VL_BorderColor" together with "VL_HasBorderColor",
// "VL_BorderWidth", "VL_BorderRadius" and "VL_BorderSides" (VL_SIDE_*).
extern const wchar_t *g_ownerDrawLabelClassName;
void VL_RegisterOwnerDrawLabelClass();

// Several settings at once: L"textAlign=\u5C45\u4E2D;padding=4;textShadow=true". Keys and values
// are those of the design; within a value ; = and \ are written with \ in front. What is unknown is
// passed over. The same keys one by one: VL_WM_SET_OPTION.
void VL_Label_SetOptions(HWND label, const wchar_t *options);
// One of them. A colour is 0xBBGGRR.
void VL_Label_SetOption(HWND label, const wchar_t *key, const std::wstring &value);
void VL_Label_SetOption(HWND label, const wchar_t *key, bool on);
void VL_Label_SetOption(HWND label, const wchar_t *key, int number);
