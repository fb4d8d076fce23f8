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
// The same for a file of a project.
QString fileNameError(const QString &name);

// What a new source begins with, by the ending of its name: ".vc", ".vpi" or ".vt".
QString newSourceText(const QString &fileName, const QDateTime &created);

enum class ClassExample
{
    AsProgram, // the example begins the program
    AsComment, // for a project that begins elsewhere
};

// A class with a constructor and a method, and an example of its use.
QString newClassText(const QString &className, ClassExample example);

// The form of a window without components.
QByteArray newWindowForm(const QString &name);
