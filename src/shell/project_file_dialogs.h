// ProjectFileDialogs: the user's way to the operations on project files.
#pragma once

#include "shell/project_file_operations.h"

#include <QObject>

class QWidget;

// Each slot asks what it must know, does its work and tells the outcome. The dialogs are modal; a
// cancelled one changes nothing.
class ProjectFileDialogs : public QObject
{
    Q_OBJECT

public:
    // `operations` must outlive the dialogs; `parent` is the window that they belong to.
    ProjectFileDialogs(ProjectFileOperations &operations, QWidget *parent);

    // What is selected in a tree of files.
    enum class Selection
    {
        Nothing,
        Folder,
        File,
    };

public slots:
    void newFile();
    void newClassFile();
    void newWindow();
    void addExistingFile();
    // Tells the user what to select when it is no file.
    void removeSelected(ProjectFileDialogs::Selection selection, const QString &file);
    void removeFile(const QString &file);
    void renameFile(const QString &file);

signals:
    // Full path of a source or form to open.
    void openRequested(const QString &file);
    void statusChanged(const QString &text);
    // Full paths: what shows them is to be closed without a question.
    void filesRemoved(const QStringList &files);

private:
    void show(const FileOperation &done);
    bool hasProject();

    ProjectFileOperations &m_operations;
    QWidget *m_window;
};
