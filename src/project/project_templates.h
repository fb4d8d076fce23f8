// What a new project starts with, and which names it may have.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

enum class ProjectKind
{
    Gui,
    Empty,
    Console,
    Single,
};

// From the words of the command line: "gui", "empty", "console", "single".
std::optional<ProjectKind> projectKindFromWord(const QString &word);

struct TemplateFile
{
    QString path; // relative to the project's folder, with forward slashes
    QByteArray bytes;
};

// The sources - of a single file that one alone, which may be called anything -, and the form of
// the main window for a graphical project; `windowType` is the project's uiBackend and matters for
// nothing else. Any name is harmless: it appears only in a comment and as a window's title.
QList<TemplateFile> filesForNewProject(ProjectKind kind, const QString &name,
                                       const QString &windowType, const QDateTime &created);

// Why a project can't have this name, which is also that of its folder and of its executable, on
// any system: a Chinese sentence. Empty for a good name.
QString projectNameError(const QString &name);
