// DocumentGuard: sees to it that nothing in the editors gets lost.
#pragma once

#include "shell/external_changes.h"
#include "shell/recovery_store.h"

#include <QHash>
#include <QObject>
#include <QString>

class CodeEditor;
class EditorTabs;
class ProjectManager;

// Keeps what is not saved where a crash cannot reach it, offers it at the next start, and asks when
// a file was changed by somebody else. What is handed over must outlive it.
class DocumentGuard : public QObject
{
    Q_OBJECT

public:
    DocumentGuard(EditorTabs &tabs, ProjectManager &projects, QWidget *window);

    // What a crash has left behind.
    void offerRecovered();
    // Keeps what is changed now, without waiting for the next turn.
    void keepNow() { m_timer.run(); }

signals:
    void noticeGiven(const QString &sentence);

private:
    static QString idOf(const CodeEditor *editor);
    QHash<QString, RecoveredText> changedTexts() const;
    std::optional<ExternalChanges::OpenText> openText(const QString &path) const;
    void followTabs();
    void watchOpenFiles();
    void restore(const RecoveryEntry &entry);
    void reload(const QString &path);
    void ask(const QList<ExternalChange> &changes);

    EditorTabs &m_tabs;
    ProjectManager &m_projects;
    QWidget *m_window;
    RecoveryStore m_store;
    RecoveryTimer m_timer;
    ExternalChanges m_changes;
};
