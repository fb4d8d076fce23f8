// What other parts of a program ask of the large text box by messages: text, selection, commands.
#pragma once
#include "35_control_text.h"
#include "92_text_loading.h"
#include "93_text_input.h"

class VL_TextMessages
{
public:
    explicit VL_TextMessages(HWND window) : m_view(window), m_input(m_view) {}

    VL_TextView &view() { return m_view; }
    VL_TextInput &input() { return m_input; }
    const VirtualTextData &data() const { return m_view.data(); }

    // False for messages that are about something else.
    bool onRequest(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);

    void setText(const wchar_t *text);
    // Lines and columns count from 1; what lies beyond the text is its nearest place.
    void gotoPlace(int line, int column);
    // For lines that are marked without a colour.
    void setHighlightColor(COLORREF color) { m_highlight = color; }
    bool load(const std::wstring &path);
    bool save(const std::wstring &path) { return VTB_SaveText(path, data(), m_form); }

private:
    bool onText(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);
    bool onEdit(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);
    bool runCommand(VL_TextCommand &command);
    bool runQuestion(VL_TextCommand &command);
    bool setOption(const VL_ControlOption &option);
    void select(long long begin, long long end);
    std::wstring selectedText();
    void highlight(int line, int color);

    VL_TextView m_view;
    VL_TextInput m_input;
    VTB_FileForm m_form;
    COLORREF m_highlight = CLR_NONE;
};
