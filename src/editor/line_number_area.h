// LineNumberArea: the margin of the code editor.
#pragma once

#include <QWidget>

class CodeEditor;

// Shows line numbers, breakpoints and bookmarks; everything is decided by its editor.
class LineNumberArea : public QWidget
{
    Q_OBJECT

public:
    explicit LineNumberArea(CodeEditor *editor);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    CodeEditor *m_editor;
};
