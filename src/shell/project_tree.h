// ProjectTree: the open projects and their files.
#pragma once

#include "shell/project_tree_entries.h"

#include <QIcon>
#include <QMap>
#include <QSet>
#include <QString>
#include <QTreeWidget>

class ProjectManager;

// Follows the project manager by itself; what is expanded and selected stays so. Paths are
// absolute, that of a project is its folder, that of a group is empty.
class ProjectTree : public QTreeWidget
{
    Q_OBJECT

public:
    // `manager` must outlive the tree.
    explicit ProjectTree(ProjectManager &manager, QWidget *parent = nullptr);

    QString selectedPath() const;
    ProjectTreeKind selectedKind() const; // None without a selection
    // The folder of the project that the selection lies in.
    QString selectedProject() const;
    // Selects and shows a file; the selection stays when the tree has no such file.
    void selectPath(const QString &path);
    // The files with changes that are not saved get a mark.
    void setModifiedFiles(const QSet<QString> &files);

public slots:
    // Reads the projects anew at once, for what no signal of the manager tells.
    void rebuild();

signals:
    void fileActivated(const QString &path);
    void projectActivated(const QString &folder);
    void renameRequested(const QString &path);
    void removeRequested(const QString &path);
    void contextMenuRequested(const QString &path, ProjectTreeKind kind, const QPoint &globalPos);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void readIcons();
    void describe(QTreeWidgetItem *item, ProjectTreeKind kind, const QString &path,
                  const QString &key) const;
    void followManager();
    void scheduleRebuild();
    void addProject(const QString &folder, bool isActive);
    void addFile(QTreeWidgetItem *group, const ProjectTreeEntry &entry);
    void markFile(QTreeWidgetItem *item) const;
    void activate(const QTreeWidgetItem *item);
    QTreeWidgetItem *findItem(const QString &key) const;

    ProjectManager &m_manager;
    QMap<ProjectTreeKind, QIcon> m_icons;
    QSet<QString> m_modified;
    QSet<QString> m_collapsed; // keys of projects and groups
    bool m_isScheduled = false;
    bool m_isRebuilding = false;
};
