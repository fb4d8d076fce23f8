// OutputTextEdit: coloured lines of a build or of a running program.
#pragma once

#include <QColor>
#include <QPlainTextEdit>
#include <QQueue>
#include <QTimer>

// Keeps the last `maxLines` lines. Lines are taken at once and shown a little later, in portions,
// so that a program that prints without end leaves the window usable.
class OutputTextEdit : public QPlainTextEdit
{
    Q_OBJECT

public:
    static constexpr int maxLines = 20000;

    explicit OutputTextEdit(QWidget *parent = nullptr);

    // Adds the lines of `text` at the end; an invalid colour is the colour of ordinary text. A line
    // of many thousand characters is broken. The view follows unless the user is in it.
    void appendText(const QString &text, const QColor &color = {});
    void clearOutput();
    // Copies the selection, or everything without one.
    void copySelectedOrAll();

signals:
    // A double click or Enter on a line; `line` counts from 1 in what is kept.
    void lineDoubleClicked(int line, const QString &text);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Line
    {
        QString text;
        QColor color;
    };

    void enqueue(const QString &line, const QColor &color);
    // Shows up to `count` of the waiting lines.
    void showWaiting(int count);
    void showPortion();
    // Puts the end of the selection back: it must not grow with what comes.
    void selectUpTo(int end);
    void tellLine(const QTextCursor &cursor);

    QQueue<Line> m_waiting;
    QTimer m_timer;
};
