// ComponentList: the windows of the active project with their components.
#pragma once

#include "shell/project_components.h"

#include <QTreeWidget>

class ComponentList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ComponentList(QWidget *parent = nullptr);

    void setWindows(const QVector<WindowComponents> &windows);

signals:
    // The user wants to see the form.
    void formActivated(const QString &file);
    // The user wants the name in his text.
    void nameChosen(const QString &name);

private:
    void showMenu(const QPoint &position);
};
