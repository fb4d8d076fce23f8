// The string tool: a list of operations on texts, and its dialog.
#pragma once

#include "shell/text_tool_dialog.h"

// Every operation of the tool, groups together.
const QVector<TextOperation> &stringOperations();

class StringTool : public TextToolDialog
{
public:
    explicit StringTool(QWidget *parent = nullptr);
};
