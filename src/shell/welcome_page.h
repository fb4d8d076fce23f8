// WelcomePage: where the user begins.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;
class RecentProjectsList;

// Shown when nothing is open. Does nothing itself but tell what the user wants.
class WelcomePage : public QWidget
{
    Q_OBJECT

public:
    explicit WelcomePage(QWidget *parent = nullptr);

    // Full paths of project files, the most recent first.
    void setRecentProjects(const QStringList &projectFiles);

signals:
    void newProjectRequested();
    void openProjectRequested();
    void openFileRequested();
    void viewExamplesRequested();
    void openDocumentationRequested();
    void openRecentProjectRequested(const QString &projectFile);
    void removeRecentProjectRequested(const QString &projectFile);
    void clearAllRecentProjectsRequested();

private:
    QWidget *createHeader();
    QWidget *createActions();
    QWidget *createRecent();
    void addAction(QVBoxLayout *layout, const QString &text, const QString &hint,
                   const QString &icon, void (WelcomePage::*signal)());

    RecentProjectsList *m_recent;
    QLabel *m_noRecent;
    QPushButton *m_clearRecent;
};
