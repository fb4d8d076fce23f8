#include "editor/editor_colors.h"

EditorColors editorColors(const SyntaxColors &colors)
{
    EditorColors result;
    result.background = colors[Setting::Color::Background];
    result.currentLine = colors[Setting::Color::CurrentLine];
    result.bracketMatch = colors[Setting::Color::BracketMatch];
    result.lineNumber = colors[Setting::Color::LineNumber];
    result.text = colors[Setting::Color::Text];
    return result;
}
