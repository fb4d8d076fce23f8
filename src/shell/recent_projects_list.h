// RecentProjectsList: the projects that were opened last, to be opened again.
#pragma once

#include <QListWidget>

// Name and folder of each, dimmed for what is gone. A click or Enter opens, the cross of a row or
// Delete removes.
class RecentProjectsList : public QListWidget
{
    Q_OBJECT

public:
    explicit RecentProjectsList(QWidget *parent = nullptr);

    // Full paths of project files, the most recent first.
    void setProjects(const QStringList &projectFiles);

signals:
    void openRequested(const QString &projectFile);
    void removeRequested(const QString &projectFile);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void showContextMenu(const QPoint &place);
    bool isOnCross(const QPoint &place) const;
};
