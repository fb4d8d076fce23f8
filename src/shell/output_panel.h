// OutputPanel: what lies below the editor.
#pragma once

#include "shell/error_list_model.h"

#include <QColor>
#include <QMap>
#include <QTabWidget>

class CommandHelpBrowser;
class ErrorListWidget;
class OutputTextEdit;
class QLineEdit;
class SearchResultsWidget;

// A code editor is any QPlainTextEdit whose property "codeEditor" is true: an error that arrives
// while the user types in one brings its tab to the front and leaves him the focus.
class OutputPanel : public QTabWidget
{
    Q_OBJECT

public:
    enum Tab
    {
        CompileTab,
        RunTab,
        ErrorTab,
        SearchTab,
        HelpTab
    };

    explicit OutputPanel(QWidget *parent = nullptr);

    // An invalid colour is that of ordinary text.
    void appendCompileOutput(const QString &text, const QColor &color = {});
    void appendRunOutput(const QString &text, const QColor &color = {});
    // Line and column count from 1; 0 and an empty file where the place is unknown.
    void addError(const QString &message, const QString &file = {}, int line = 0, int column = 0);
    void addWarning(const QString &message, const QString &file = {}, int line = 0, int column = 0);
    // Unlike the others, an information brings no tab to the front.
    void addInfo(const QString &message, const QString &file = {}, int line = 0, int column = 0);
    // Takes out the issues of `file` whose text starts with `prefix`.
    void removeIssues(const QString &file, const QString &prefix);
    // What a check found while the user types, in place of all that is listed for these files and
    // for those of the findings before. Brings no tab to the front.
    void showFindings(const QMap<QString, QVector<Issue>> &findingsByFile);
    void clearIssues();
    void addSearchResult(const QString &file, int line, const QString &text);
    void clearSearchResults();
    // Shows the help tab; without such a command nothing happens.
    void showCommandHelp(const QString &name);
    // Empties the tabs of build and run.
    void clearOutput();
    void showTab(Tab tab) { setCurrentIndex(tab); }
    void setOutputFont(const QFont &font);
    // Whether a program runs that can be given input. Off at first.
    void setInputEnabled(bool enabled);

public slots:
    // Both act on the tab in front. Copying takes what is selected, or everything without a
    // selection.
    void onClearClicked();
    void onCopyClicked();
    void onWordWrapToggled(bool wrap);

signals:
    void errorItemClicked(const QString &file, int line, int column, const QString &message);
    void searchResultClicked(const QString &file, int line);
    void outputLineClicked(int line, const QString &text);
    // A line for the standard input of the running program, without a line break.
    void inputEntered(const QString &text);
    void issueCountsChanged(int errors, int warnings, int infos);

private:
    QWidget *createRunPage();
    QWidget *createErrorPage();
    void createToolBar();
    void connectViews();
    void addIssue(const Issue &issue);
    void sendInput();

    OutputTextEdit *m_compileOutput;
    OutputTextEdit *m_runOutput;
    QLineEdit *m_input;
    ErrorListWidget *m_errors;
    SearchResultsWidget *m_searchResults;
    CommandHelpBrowser *m_help;
    QMap<QString, QVector<Issue>> m_findings;
};
