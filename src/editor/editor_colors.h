// The colours of a CodeEditor's own parts.
#pragma once

#include "editor/code_editor.h"
#include "editor/syntax_colors.h"

// As the settings have them; what has no setting keeps its default.
EditorColors editorColors(const SyntaxColors &colors);
