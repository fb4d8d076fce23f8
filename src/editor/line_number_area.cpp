#include "editor/line_number_area.h"

#include "editor/code_editor.h"

LineNumberArea::LineNumberArea(CodeEditor *editor) : QWidget(editor), m_editor(editor)
{
    setCursor(Qt::ArrowCursor);
}

QSize LineNumberArea::sizeHint() const
{
    return {m_editor->lineNumberAreaWidth(), 0};
}

void LineNumberArea::paintEvent(QPaintEvent *event)
{
    m_editor->paintLineNumbers(event);
}

void LineNumberArea::mousePressEvent(QMouseEvent *event)
{
    m_editor->pressLineNumberArea(event);
}
