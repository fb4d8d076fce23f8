// What the arguments of the start ask for.
#pragma once

#include <QString>
#include <QStringList>

struct StartArguments
{
    // Absolute; empty when no argument names a file that can be opened.
    QString fileToOpen;
    // Why the start ends at once, for the user; empty when it does not.
    QString refusal;
};

// `arguments` with the program's name first. The first one that names an existing project, source
// or form, or a folder with one project, is the file to open; what means nothing is ignored.
StartArguments readStartArguments(const QStringList &arguments);
