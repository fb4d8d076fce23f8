// Built-in constants
#pragma once
#include "15_comparisons.h"

// Code pages of text files.
const int VL_ENCODING_UTF8 = 65001;
const int VL_ENCODING_GBK = 936;
const int VL_ENCODING_GB2312 = 20936;
const int VL_ENCODING_ANSI = 0;
const int VL_ENCODING_UNICODE = 1200;
const int VL_ENCODING_AUTO = -1;

const int VL_QR_GRAD_DEFAULT = 0;
const int VL_QR_GRAD_VERTICAL = 1;
const int VL_QR_GRAD_HORIZONTAL = 2;

// Inline, so that they stand before any variable of the program that is made from them.
inline const std::wstring VL_NEWLINE = L"\r\n";
inline const std::wstring VL_TAB = L"\t";
inline const std::wstring VL_SPACE = L" ";
inline const std::wstring VL_DQUOTE = L"\"";

inline const std::wstring VL_UNIT_SECOND = L"\u79D2";
inline const std::wstring VL_UNIT_MINUTE = L"\u5206";
inline const std::wstring VL_UNIT_HOUR = L"\u65F6";
inline const std::wstring VL_UNIT_DAY = L"\u65E5";
inline const std::wstring VL_UNIT_MONTH = L"\u6708";
inline const std::wstring VL_UNIT_YEAR = L"\u5E74";

const int VL_MODE_WRITE = 0;
const int VL_MODE_APPEND = 1;
const int VL_MODE_READ = 2;

const int VL_ICON_INFO = MB_ICONINFORMATION;
const int VL_ICON_WARN = MB_ICONWARNING;
const int VL_ICON_ERROR = MB_ICONERROR;
const int VL_ICON_QUESTION = MB_ICONQUESTION;

const int VL_BTN_OK = MB_OK;
const int VL_BTN_OKCANCEL = MB_OKCANCEL;
const int VL_BTN_YESNO = MB_YESNO;
const int VL_BTN_YESNOCANCEL = MB_YESNOCANCEL;

const int VL_BORDER_NONE = 0;
const int VL_BORDER_SOLID = 1;
const int VL_BORDER_SUNKEN = 2;
const int VL_BORDER_RAISED = 3;
const int VL_BORDER_DASH = 4;
const int VL_BORDER_DOT = 5;
const int VL_BORDER_DASHDOT = 6;

const double VL_PI = 3.14159265358979323846;
const double VL_E = 2.71828182845904523536;

// Arrays of one, two and three dimensions.
typedef std::vector<VL_Any> VL_Array;
typedef std::vector<std::vector<VL_Any>> VL_Array2D;
typedef std::vector<std::vector<std::vector<VL_Any>>> VL_Array3D;
