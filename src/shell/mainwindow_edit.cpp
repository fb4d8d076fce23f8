// What the main window does to the text in front.
#include "shell/mainwindow.h"

#include "editor/find_bar.h"
#include "shell/code_assist.h"
#include "shell/code_outline.h"
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/find_in_files_dialog.h"
#include "shell/output_panel.h"
#include "shell/project_tree.h"
#include "shell/status_line.h"
#include "shell/workspace.h"

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

void MainWindow::onFind()
{
    m_findBar->setEditor(m_tabs->currentEditor());
    m_findBar->openFind();
}

void MainWindow::onReplace()
{
    m_findBar->setEditor(m_tabs->currentEditor());
    m_findBar->openReplace();
}

void MainWindow::onFindInFiles()
{
    if (!m_findInFiles) {
        m_findInFiles = new FindInFilesDialog([this] { return m_workspace->searchFiles(); }, this);
        const auto dialog = m_findInFiles.data();
        connect(dialog, &FindInFilesDialog::searchStarted, m_output,
                &OutputPanel::clearSearchResults);
        connect(dialog, &FindInFilesDialog::resultFound, m_output, &OutputPanel::addSearchResult);
        connect(dialog, &FindInFilesDialog::searchFinished, this, [this](const QString &status) {
            m_docks->raise(QStringLiteral("OutputDock"));
            m_output->showTab(OutputPanel::SearchTab);
            m_status->showMessage(status);
        });
        connect(dialog, &FindInFilesDialog::replaceRequested, this, &MainWindow::applyFileEdits);
    }
    if (const CodeEditor *editor = m_tabs->currentEditor())
        m_findInFiles->setSearchText(editor->textCursor().selectedText());
    m_findInFiles->show();
    m_findInFiles->activateWindow();
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

void MainWindow::onFormatCode()
{
    CodeEditor *editor = m_tabs->currentEditor();
    if (!editor || !EditorTabs::isSourceFile(editor->filePath()))
        return;
    editor->formatSource();
}

// All of it, whichever part is selected.
void MainWindow::onFormatCurrentVcFile()
{
    onFormatCode();
}

void MainWindow::onTabChanged()
{
    CodeEditor *editor = m_tabs->currentEditor();
    if (editor)
        activateProjectOf(editor->filePath());
    m_findBar->setEditor(editor);
    m_outline->setSymbols(editor ? m_assist->symbolsOf(editor->filePath()) : CodeSymbols());
    if (editor) {
        const QTextCursor cursor = editor->textCursor();
        onCursorPositionChanged(cursor.blockNumber() + 1, cursor.positionInBlock() + 1);
        syncProjectTreeSelection();
    } else {
        m_status->clearPosition();
    }
    updateActions();
}

void MainWindow::onCursorPositionChanged(int line, int column)
{
    m_status->setPosition(line, column);
    m_outline->setCurrentLine(line);
}

void MainWindow::onCodeModified()
{
    QSet<QString> modified;
    for (const CodeEditor *editor : m_tabs->modifiedEditors())
        modified.insert(editor->filePath());
    m_tree->setModifiedFiles(modified);
    showTitle();
    updateActions();
}
