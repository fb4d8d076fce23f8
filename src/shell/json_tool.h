// The JSON tool: what it does to a text, and its dialog.
#pragma once

#include "shell/text_tool_dialog.h"

namespace JsonText {

// Why the text is no JSON, with line and column, in Chinese; empty: it is.
QString problem(const QString &text);
// Neither changes the order of keys or the writing of numbers; other text than JSON is an error.
TextResult formatted(const QString &text);
TextResult compact(const QString &text);
// "有效的 JSON", or the error.
TextResult validated(const QString &text);
// The text as Vorel source writes it, with its quotation marks, and back.
TextResult toLiteral(const QString &text);
TextResult fromLiteral(const QString &text);

} // namespace JsonText

class JsonTool : public TextToolDialog
{
public:
    explicit JsonTool(QWidget *parent = nullptr);
};
