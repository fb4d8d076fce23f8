// What the main window does to the text in front.
#include "shell/mainwindow.h"

#include "shell/editor_tabs.h"

#include <QApplication>
#include <QInputDialog>
#include <QMetaObject>

namespace {

// The editing commands serve the field that has the focus, and otherwise the editor. Text fields of
// all kinds have these slots under one name.
void editFocused(CodeEditor *editor, const char *slot)
{
    QWidget *focused = QApplication::focusWidget();
    const bool hasSlot = focused && focused->metaObject()->indexOfSlot(
                                        QByteArray(slot).append("()").constData()) >= 0;
    QWidget *receiver = hasSlot ? focused : editor;
    if (receiver)
        QMetaObject::invokeMethod(receiver, slot);
}

} // namespace

void MainWindow::onUndo()
{
    editFocused(m_tabs->currentEditor(), "undo");
}

void MainWindow::onRedo()
{
    editFocused(m_tabs->currentEditor(), "redo");
}

void MainWindow::onCut()
{
    editFocused(m_tabs->currentEditor(), "cut");
}

void MainWindow::onCopy()
{
    editFocused(m_tabs->currentEditor(), "copy");
}

void MainWindow::onPaste()
{
    editFocused(m_tabs->currentEditor(), "paste");
}

void MainWindow::onSelectAll()
{
    editFocused(m_tabs->currentEditor(), "selectAll");
}

void MainWindow::onDelete()
{
    if (CodeEditor *editor = m_tabs->currentEditor()) {
        QTextCursor cursor = editor->textCursor();
        cursor.deleteChar();
    }
}

void MainWindow::onGotoLine()
{
    CodeEditor *editor = m_tabs->currentEditor();
    if (!editor)
        return;
    bool accepted = false;
    const int line = QInputDialog::getInt(
        this, QStringLiteral("转到行"),
        QStringLiteral("行号（1 到 %1）：").arg(editor->blockCount()),
        editor->textCursor().blockNumber() + 1, 1, editor->blockCount(), 1, &accepted);
    if (!accepted)
        return;
    rememberPlace();
    editor->goToLine(line);
    editor->setFocus();
}

void MainWindow::onToggleComment()
{
    if (CodeEditor *editor = m_tabs->currentEditor())
        editor->toggleLineComments();
}

void MainWindow::onDuplicateLine()
{
    if (CodeEditor *editor = m_tabs->currentEditor())
        editor->duplicate();
}
