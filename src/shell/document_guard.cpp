#include "shell/document_guard.h"

#include "project/project_manager.h"
#include "shell/editor_tabs.h"
#include "shell/external_change_dialog.h"
#include "shell/recovery_dialog.h"

#include <QTextDocument>

DocumentGuard::DocumentGuard(EditorTabs &tabs, ProjectManager &projects, QWidget *window)
    : QObject(window),
      m_tabs(tabs),
      m_projects(projects),
      m_window(window),
      m_timer(m_store, [this] { return changedTexts(); }),
      m_changes([this](const QString &path) { return openText(path); })
{
    followTabs();
    connect(&m_store, &RecoveryStore::writeFailed, this, &DocumentGuard::noticeGiven);
    connect(&m_changes, &ExternalChanges::reloadRequested, this, &DocumentGuard::reload);
    connect(&m_changes, &ExternalChanges::takenAsSaved, this, [this](const QString &path) {
        if (CodeEditor *editor = m_tabs.editorOf(path))
            editor->document()->setModified(false);
    });
    connect(&m_changes, &ExternalChanges::questionsReady, this, &DocumentGuard::ask);
}

void DocumentGuard::followTabs()
{
    connect(&m_tabs, &EditorTabs::fileSaved, this, [this](const QString &path) {
        m_changes.noteOwnWrite(path);
        m_projects.noteOwnWrite(path);
        if (const CodeEditor *editor = m_tabs.editorOf(path))
            m_store.forget(idOf(editor));
        watchOpenFiles();
    });
    connect(&m_tabs, &EditorTabs::editorOpened, this, &DocumentGuard::watchOpenFiles);
    connect(&m_tabs, &EditorTabs::editorClosing, this, [this](CodeEditor *editor) {
        m_store.forget(idOf(editor));
        watchOpenFiles();
    });
}

QString DocumentGuard::idOf(const CodeEditor *editor)
{
    return QString::number(reinterpret_cast<quintptr>(editor), 16);
}

QHash<QString, RecoveredText> DocumentGuard::changedTexts() const
{
    QHash<QString, RecoveredText> texts;
    for (const CodeEditor *editor : m_tabs.modifiedEditors()) {
        RecoveredText text;
        text.path = editor->filePath();
        text.title = editor->title();
        text.text = editor->text();
        text.cursorPosition = editor->textCursor().position();
        texts.insert(idOf(editor), text);
    }
    return texts;
}

std::optional<ExternalChanges::OpenText> DocumentGuard::openText(const QString &path) const
{
    const CodeEditor *editor = m_tabs.editorOf(path);
    if (!editor)
        return std::nullopt;
    return ExternalChanges::OpenText{editor->text(), editor->document()->isModified()};
}

void DocumentGuard::watchOpenFiles()
{
    QStringList paths;
    for (const CodeEditor *editor : m_tabs.editors()) {
        if (!editor->filePath().isEmpty())
            paths << editor->filePath();
    }
    m_changes.setOutsideFiles(paths);
}

void DocumentGuard::offerRecovered()
{
    const QList<RecoveryEntry> entries = m_store.pending();
    if (entries.isEmpty())
        return;
    RecoveryDialog dialog(entries, m_window);
    connect(&dialog, &RecoveryDialog::restoreRequested, this, &DocumentGuard::restore);
    connect(&dialog, &RecoveryDialog::discardRequested, this,
            [this](const RecoveryEntry &entry) { m_store.discard(entry); });
    dialog.exec();
}

void DocumentGuard::restore(const RecoveryEntry &entry)
{
    CodeEditor *editor = m_tabs.openRecovered(entry.content.path, entry.content.text);
    QTextCursor cursor = editor->textCursor();
    cursor.setPosition(
        qBound(0, entry.content.cursorPosition, editor->document()->characterCount() - 1));
    editor->setTextCursor(cursor);
    m_store.adopt(idOf(editor), entry);
}

void DocumentGuard::reload(const QString &path)
{
    CodeEditor *editor = m_tabs.editorOf(path);
    if (!editor)
        return;
    const ReadText read = TextFile::read(path);
    if (!read.succeeded()) {
        editor->document()->setModified(true);
        emit noticeGiven(read.error);
        return;
    }
    m_tabs.reload(editor, read);
    emit noticeGiven(QStringLiteral("文件已被其他程序修改，已重新读取: %1").arg(editor->title()));
}

void DocumentGuard::ask(const QList<ExternalChange> &changes)
{
    ExternalChangeDialog dialog(changes, m_window);
    connect(&dialog, &ExternalChangeDialog::keepRequested, this, [this](const QString &path) {
        if (CodeEditor *editor = m_tabs.editorOf(path))
            editor->document()->setModified(true);
    });
    connect(&dialog, &ExternalChangeDialog::reloadRequested, this, &DocumentGuard::reload);
    connect(&dialog, &ExternalChangeDialog::closeRequested, this, [this](const QString &path) {
        if (CodeEditor *editor = m_tabs.editorOf(path))
            m_tabs.closeWithoutSaving(editor);
    });
    dialog.exec();
    m_changes.finishAsking();
}
