// The rows of a dark list view in report mode.
#pragma once
#include "95_self_drawn_frame.h"

// Made for one painting: it asks the list view once for what all rows share, and past all subclass
// procedures, so that the rows come quickly.
class VL_VlwinRowPainter
{
public:
    VL_VlwinRowPainter(HWND list, bool hasGrid);

    void drawRow(HDC dc, int row) const;
    // The lines between columns go on below the last row.
    void drawBelow(HDC dc) const;
    void drawText(HDC dc, const std::wstring &text, RECT place, UINT format, COLORREF color) const;
    // In the list view's client area; false for a row that is not there.
    bool rowRect(int row, RECT *place) const { return partRect(row, LVIR_BOUNDS, place); }
    bool isSelected(int row) const;
    int topRow() const;
    int rowCount() const;

private:
    struct Column
    {
        LONG left;
        LONG right;
        UINT format;
    };

    LRESULT ask(UINT message, WPARAM wParam, LPARAM lParam) const;
    void readColumns();
    bool partRect(int row, int part, RECT *place) const;
    UINT stateOf(int row) const;
    std::wstring cellText(int row, int column) const;
    void drawCheckBox(HDC dc, RECT room, bool isChecked, COLORREF back) const;
    LONG drawMarks(HDC dc, int row, const RECT &cell, COLORREF back) const;
    void drawCell(HDC dc, int row, int column, RECT cell, COLORREF back, COLORREF color) const;

    HWND m_list;
    HWND m_header;
    WNDPROC m_class;
    HFONT m_font;
    HIMAGELIST m_images;
    COLORREF m_back;
    COLORREF m_text;
    bool m_hasGrid;
    bool m_isFullRow;
    bool m_hasChecks;
    bool m_showsFocus;
    LONG m_line;
    LONG m_indent;
    RECT m_client;
    std::vector<Column> m_columns;
};
