// FindInFilesDialog: the user's way to find and replace in the files of his project.
#pragma once

#include "shell/file_search.h"

#include <QDialog>
#include <QTimer>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

// To be shown without being modal. Changes no file: what the user agrees to replace goes out by a
// signal, for replaceInFiles().
class FindInFilesDialog : public QDialog
{
    Q_OBJECT

public:
    // Asked for the files at the start of each search, so that live texts are fresh.
    using Files = std::function<QList<SearchFile>()>;

    explicit FindInFilesDialog(Files files, QWidget *parent = nullptr);

    // What to look for, such as the editor's selection; an empty text or one of several lines
    // changes nothing.
    void setSearchText(const QString &text);
    void showStatus(const QString &text);

signals:
    // A search for the list of results begins: former results are to be cleared.
    void searchStarted();
    // As OutputPanel::addSearchResult() takes it; `file` is the name that SearchFile gives.
    void resultFound(const QString &file, int line, const QString &text);
    void searchFinished(const QString &status);
    void replaceRequested(const QList<FileEdits> &edits);

private:
    enum class Mode
    {
        List,
        Preview,
    };

    void createLayout();
    QWidget *createOptions();
    QWidget *createButtons();
    void connectParts();
    SearchQuery query() const;
    void search(Mode mode);
    void takeHits(const QList<FileHit> &hits);
    void finish(const SearchSummary &summary);
    void addToPreview(const FileHit &hit);
    void clearPreview();
    QList<FileHit> checkedHits() const;
    void requestReplacement();
    void updateButtons();

    Files m_files;
    FileSearch m_search;
    Mode m_mode = Mode::List;
    QList<FileHit> m_hits; // of the preview
    QTimer m_recount;
    QLineEdit *m_text;
    QLineEdit *m_replacement;
    QCheckBox *m_matchCase;
    QCheckBox *m_wholeWord;
    QCheckBox *m_isRegularExpression;
    QLabel *m_error;
    QTreeWidget *m_preview;
    QLabel *m_status;
    QPushButton *m_find;
    QPushButton *m_showPreview;
    QPushButton *m_replace;
    QPushButton *m_stop;
};
