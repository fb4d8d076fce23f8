// EditorTabs: the open files, one tab each.
#pragma once

#include "editor/code_editor.h"
#include "editor/syntax_colors.h"
#include "shell/text_file.h"

#include <QHash>
#include <QList>
#include <QTabWidget>

class SettingsStore;
class SyntaxHighlighter;

// What the settings say about editors.
struct EditorSettings
{
    QFont font;
    Indentation indentation;
    SyntaxColors colors;
    QString backgroundImage;
    int backgroundOpacity = 0; // percent

    static EditorSettings stored(const SettingsStore &store);
};

// Pages that are no editors, such as the welcome page, may stand among them. Paths are absolute.
// Functions that fail say so to the user in a box.
class EditorTabs : public QTabWidget
{
    Q_OBJECT

public:
    explicit EditorTabs(QWidget *parent = nullptr);

    // The editor of the file, opened when it is not yet; null when it cannot be read.
    CodeEditor *open(const QString &path);
    // A file that is on no disk yet.
    CodeEditor *openUntitled(const QString &text);
    // A text whose file is gone or older, as a modified file; `path` may be empty.
    CodeEditor *openRecovered(const QString &path, const QString &text);

    CodeEditor *currentEditor() const { return editorAt(currentIndex()); }
    // Null without one.
    CodeEditor *editorOf(const QString &path) const;
    QList<CodeEditor *> editors() const;
    QList<CodeEditor *> modifiedEditors() const;
    static bool isSourceFile(const QString &path);

    // Untitled files ask for a name. False when the user gave up or it failed.
    bool save(CodeEditor *editor);
    bool saveAs(CodeEditor *editor);
    // Of files with a name, without asking. Sentences about those that failed.
    QStringList saveModified();
    // Puts the text in place of the editor's as one step that can be undone, and counts it as what
    // the disk holds.
    void reload(CodeEditor *editor, const ReadText &read);
    // A modified file asks first. False when the user gave up.
    bool close(CodeEditor *editor);
    bool closeAll();
    // Without asking, for files that are gone on purpose.
    void closeWithoutSaving(CodeEditor *editor);
    // The file of an editor has another name now.
    void renameFile(const QString &oldPath, const QString &newPath);

    void applySettings(const EditorSettings &settings);
    const EditorSettings &settings() const { return m_settings; }
    // Component names to colour.
    void setComponentNames(const QStringList &names);
    void goToNextTab(int step);

signals:
    void currentEditorChanged(CodeEditor *editor);
    void editorOpened(CodeEditor *editor);
    // Just before the editor is deleted.
    void editorClosing(CodeEditor *editor);
    void fileOpened(const QString &path);
    void fileSaved(const QString &path, const QString &oldPath);
    void modificationChanged(CodeEditor *editor);
    void noticeGiven(const QString &sentence);

private:
    struct OpenFile
    {
        TextForm form;
        SyntaxHighlighter *highlighter = nullptr;
    };

    CodeEditor *editorAt(int index) const;
    CodeEditor *addEditor(const QString &path, const QString &text, OpenFile file);
    void highlight(CodeEditor *editor);
    void style(CodeEditor *editor);
    void showTitle(CodeEditor *editor);
    bool write(CodeEditor *editor, const QString &path);
    bool mayClose(CodeEditor *editor);
    void fillTabMenu(int index, const QPoint &globalPosition);

    QHash<const CodeEditor *, OpenFile> m_files;
    EditorSettings m_settings;
    QStringList m_componentNames;
    int m_untitledCount = 0;
};
