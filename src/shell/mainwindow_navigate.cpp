// How the user gets from place to place, and renames what he finds there.
#include "shell/mainwindow.h"

#include "editor/code_navigation.h"
#include "shell/code_assist.h"
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/find_in_files.h"
#include "shell/message_dialogs.h"
#include "shell/output_panel.h"
#include "shell/status_line.h"
#include "shell/workspace.h"

#include <QTextBlock>

namespace {

struct CursorPlace
{
    QString file;
    int line = 0;
    int column = 0;
};

CursorPlace placeOf(const CodeEditor *editor)
{
    const QTextCursor cursor = editor->textCursor();
    return {editor->filePath(), cursor.blockNumber() + 1, cursor.positionInBlock() + 1};
}

// The place of a line and column in a text.
int positionOf(const QString &text, int line, int column)
{
    int start = 0;
    for (int i = 1; i < line && start >= 0; ++i)
        start = text.indexOf(QLatin1Char('\n'), start) + 1;
    return start + column - 1;
}

QString lineOf(const QString &text, int line)
{
    return text.section(QLatin1Char('\n'), line - 1, line - 1);
}

} // namespace

void MainWindow::goTo(const QString &path, int line, int column)
{
    rememberPlace();
    const QString absolute = m_workspace->absolutePath(path);
    CodeEditor *editor = absolute.isEmpty() ? m_tabs->currentEditor() : m_tabs->open(absolute);
    if (!editor)
        return;
    editor->goToLine(line);
    QTextCursor cursor = editor->textCursor();
    const int length = cursor.block().length() - 1;
    if (column > 0)
        cursor.setPosition(cursor.block().position() + qMin(column - 1, length));
    else
        cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
    editor->setFocus();
}

void MainWindow::rememberPlace()
{
    if (const CodeEditor *editor = m_tabs->currentEditor()) {
        const CursorPlace place = placeOf(editor);
        m_visited.add({place.file, place.line, place.column});
    }
}

void MainWindow::onGoBack()
{
    const std::optional<TextPlace> place = m_visited.takeLast();
    if (!place) {
        m_status->showMessage(QStringLiteral("没有上一位置。"));
        return;
    }
    goTo(place->file, place->line, place->column);
    // Going back is no visit.
    m_visited.takeLast();
}

void MainWindow::onGotoDefinition()
{
    const CodeEditor *editor = m_tabs->currentEditor();
    if (!editor)
        return;
    const CursorPlace place = placeOf(editor);
    const CodePlace found = CodeNavigation(m_workspace->sourceTexts())
                                .definitionOf(place.file, place.line, place.column);
    if (found.line > 0)
        goTo(found.file, found.line, found.column);
    else
        m_status->showMessage(QStringLiteral("找不到光标处名称的定义。"));
}

void MainWindow::onFindUsages()
{
    const CodeEditor *editor = m_tabs->currentEditor();
    if (!editor)
        return;
    const QMap<QString, QString> texts = m_workspace->sourceTexts();
    const CursorPlace place = placeOf(editor);
    const QVector<CodePlace> usages =
        CodeNavigation(texts).usagesOf(place.file, place.line, place.column);
    if (usages.isEmpty()) {
        m_status->showMessage(QStringLiteral("光标处没有可以查找引用的名称。"));
        return;
    }
    m_output->clearSearchResults();
    for (const CodePlace &usage : usages) {
        m_output->addSearchResult(m_workspace->displayName(usage.file), usage.line,
                                  lineOf(texts.value(usage.file), usage.line));
    }
    m_docks->raise(QStringLiteral("OutputDock"));
    m_output->showTab(OutputPanel::SearchTab);
    m_status->showMessage(QStringLiteral("找到 %1 处引用").arg(usages.size()));
}

void MainWindow::onRename()
{
    const CodeEditor *editor = m_tabs->currentEditor();
    if (!editor)
        return;
    const QMap<QString, QString> texts = m_workspace->sourceTexts();
    const CodeNavigation navigation(texts);
    const CursorPlace place = placeOf(editor);
    const std::optional<CodeSymbol> symbol =
        navigation.symbolAt(place.file, place.line, place.column);
    if (!symbol) {
        m_status->showMessage(QStringLiteral("光标处没有可以重命名的函数、类或变量。"));
        return;
    }
    const QString name =
        MessageDialogs::askText(this, QStringLiteral("重命名"),
                                QStringLiteral("“%1”的新名称：").arg(symbol->name), symbol->name)
            .value_or(symbol->name)
            .trimmed();
    if (name == symbol->name)
        return;
    const CodeRename rename = navigation.renameEdits(place.file, place.line, place.column, name);
    if (!rename.refusal.isEmpty()) {
        MessageDialogs::warn(this, QStringLiteral("重命名"), rename.refusal);
        return;
    }
    QMap<QString, FileEdits> byFile;
    for (const CodePlace &edit : rename.edits) {
        const QString &text = texts[edit.file];
        const int position = positionOf(text, edit.line, edit.column);
        byFile[edit.file].path = edit.file;
        byFile[edit.file].edits << TextEdit{position, text.mid(position, edit.length), name};
    }
    applyFileEdits(byFile.values());
}

// In open editors as one step each, on disk elsewhere.
void MainWindow::applyFileEdits(const QList<FileEdits> &edits)
{
    const ReplaceOutcome outcome =
        replaceInFiles(edits, [this](const QString &path) -> QTextDocument * {
            CodeEditor *editor = m_tabs->editorOf(path);
            return editor ? editor->document() : nullptr;
        });
    for (const FileEdits &file : edits)
        m_projects->noteOwnWrite(file.path);
    m_assist->refresh();
    m_status->showMessage(outcome.text());
    if (!outcome.errors.isEmpty())
        MessageDialogs::warn(this, QStringLiteral("替换"), outcome.errors.join(QLatin1Char('\n')));
}
