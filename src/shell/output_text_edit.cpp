#include "shell/output_text_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTextBlock>

#include <utility>

namespace {

constexpr int maxLineLength = 4096;  // characters; the layout of a longer line takes too long
constexpr int linesInPortion = 1000; // some milliseconds of work
constexpr int portionInterval = 20;  // milliseconds

} // namespace

OutputTextEdit::OutputTextEdit(QWidget *parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setLineWrapMode(NoWrap);
    setFrameShape(NoFrame);
    QFont font(QStringLiteral("Consolas"));
    font.setStyleHint(QFont::Monospace);
    setFont(font);
    // The text ends with a line break, so an empty line stands at the end.
    setMaximumBlockCount(maxLines + 1);
    m_timer.setSingleShot(true);
    m_timer.setInterval(portionInterval);
    connect(&m_timer, &QTimer::timeout, this, &OutputTextEdit::showPortion);
}

void OutputTextEdit::appendText(const QString &text, const QColor &color)
{
    for (QString line : text.split(QLatin1Char('\n'))) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        while (line.size() > maxLineLength) {
            const int end = maxLineLength - (line.at(maxLineLength - 1).isHighSurrogate() ? 1 : 0);
            enqueue(line.left(end), color);
            line.remove(0, end);
        }
        enqueue(line, color);
    }
    if (!m_timer.isActive())
        m_timer.start();
}

void OutputTextEdit::enqueue(const QString &line, const QColor &color)
{
    if (m_waiting.size() == maxLines)
        m_waiting.dequeue();
    m_waiting.enqueue({line, color});
}

void OutputTextEdit::showPortion()
{
    showWaiting(linesInPortion);
    if (!m_waiting.isEmpty())
        m_timer.start();
}

void OutputTextEdit::showWaiting(int count)
{
    const QTextCursor top(firstVisibleBlock());
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    const QTextCursor selection = textCursor();
    const bool holdSelection =
        selection.hasSelection() && selection.selectionEnd() == end.position();
    QTextCursor oldEnd = end;
    oldEnd.setKeepPositionOnInsert(true);
    end.beginEditBlock();
    while (count > 0 && !m_waiting.isEmpty()) {
        // Lines of one colour go in together.
        const QColor color = m_waiting.head().color;
        QString run;
        for (; count > 0 && !m_waiting.isEmpty() && m_waiting.head().color == color; --count)
            run += m_waiting.dequeue().text + QLatin1Char('\n');
        QTextCharFormat format;
        if (color.isValid())
            format.setForeground(color);
        end.insertText(run, format);
    }
    end.endEditBlock();
    if (holdSelection)
        selectUpTo(oldEnd.position());
    // Whoever reads keeps his lines before him though old ones go at the top.
    QScrollBar *bar = verticalScrollBar();
    bar->setValue(hasFocus() ? top.block().firstLineNumber() : bar->maximum());
}

void OutputTextEdit::selectUpTo(int end)
{
    QTextCursor cursor = textCursor();
    const int begin = cursor.selectionStart();
    const bool isBackward = cursor.position() == begin;
    cursor.setPosition(isBackward ? end : begin);
    cursor.setPosition(isBackward ? begin : end, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void OutputTextEdit::clearOutput()
{
    m_waiting.clear();
    m_timer.stop();
    clear();
}

void OutputTextEdit::copySelectedOrAll()
{
    if (textCursor().hasSelection()) {
        copy();
        return;
    }
    showWaiting(m_waiting.size());
    QApplication::clipboard()->setText(toPlainText());
}

void OutputTextEdit::tellLine(const QTextCursor &cursor)
{
    emit lineDoubleClicked(cursor.blockNumber() + 1, cursor.block().text());
}

void OutputTextEdit::mouseDoubleClickEvent(QMouseEvent *event)
{
    QPlainTextEdit::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton)
        tellLine(cursorForPosition(event->pos()));
}

void OutputTextEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        tellLine(textCursor());
    else
        QPlainTextEdit::keyPressEvent(event);
}

void OutputTextEdit::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [menu, this](const QString &text, auto slot, bool enabled) {
        menu->addAction(text, this, slot)->setEnabled(enabled);
    };
    const bool writable = !isReadOnly();
    const bool hasText = !document()->isEmpty();
    const bool hasSelection = textCursor().hasSelection();
    add(QStringLiteral("复制(&C)"), &QPlainTextEdit::copy, hasSelection);
    add(QStringLiteral("剪切(&T)"), &QPlainTextEdit::cut, hasSelection && writable);
    add(QStringLiteral("粘贴(&P)"), &QPlainTextEdit::paste, writable);
    menu->addSeparator();
    add(QStringLiteral("全选(&A)"), &QPlainTextEdit::selectAll, hasText);
    add(QStringLiteral("清除(&L)"), &OutputTextEdit::clearOutput, hasText);
    menu->popup(event->globalPos());
}
