// What a finished program needs beside it, and the files that a build leaves there for nothing.
#pragma once

#include <QString>
#include <QStringList>

// All return lines for the build's output, in Chinese. Files that are already there with the same
// size and time are left alone, so that a build without changes costs a look at each.
namespace OutputCopies {

// Copies the folder "resource" of the project into a folder of the same name in `outputFolder`.
// Files there that the project does not have stay: the program may have written them. Links are
// followed within the project only.
QStringList copyProjectResources(const QString &projectFolder, const QString &outputFolder);

// Copies the DLLs (full paths) of support libraries.
QStringList copyLibraries(const QStringList &libraries, const QString &outputFolder);

// Copies the DLLs of the script engine under `root`; empty for none.
QStringList copyScriptEngine(const QString &root, const QString &outputFolder);

// Removes what only the tools needed. Folders are left alone with all that is in them: what later
// builds take up again lies in ".obj_cache".
void removeIntermediates(const QString &buildFolder, const QString &outputFolder);

} // namespace OutputCopies
