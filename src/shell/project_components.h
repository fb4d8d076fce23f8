// The windows of a project and the components on them, as their forms tell.
#pragma once

#include "project/project_info.h"

#include <QString>
#include <QVector>

struct WindowComponent
{
    QString name;
    QString typeKey;  // of the toolbox: "Button"
    QString typeName; // as the user knows it: "按钮"
    int depth = 0;    // how many components it lies in
};

struct WindowComponents
{
    QString name;
    QString file; // full path
    QVector<WindowComponent> components;
};

// In the project's order. A form that cannot be read has no components.
QVector<WindowComponents> readProjectComponents(const VL::ProjectInfo &project);
