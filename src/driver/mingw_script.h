// The batch script of a MinGW build on Windows, and the search for MinGW; pure functions.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Everything that the script mentions; paths with forward or backward slashes, as they shall
// appear.
struct MinGwScript
{
    QString binFolder;
    QString compiler;         // g++.exe
    QString resourceCompiler; // windres.exe
    QString folder;           // working folder
    QString source;
    QString output;
    QString resourceScript; // .rc; empty without resources
    QString resourceObject;
    bool staticLink = false;
    QStringList includeFolders;
    QStringList libraryFolders;
    QStringList archives; // *.a and *.lib that are named by path
    QStringList libraries;
    QStringList extraFlags; // behind everything else
};

QString mingwScriptText(const MinGwScript &script);

// The folders in which MinGW is looked for, in order.
QStringList mingwSearchFolders(const QString &applicationFolder, const QStringList &pathFolders);
// The first folder for which `holdsCompiler` answers yes; empty if there is none.
QString findMinGw(const QStringList &folders,
                  const std::function<bool(const QString &folder)> &holdsCompiler);
