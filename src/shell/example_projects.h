// The example projects that come with VorelDesk.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace ExampleProjects {

// Where they lie; empty when none were shipped.
QString folder();
// Their names, sorted.
QStringList names();

// The project file of a copy of the example in `targetFolder`, made now unless it is there already:
// a copy that the user has worked on stays as it is. Empty, with a Chinese sentence in `error`,
// when it fails.
QString openCopy(const QString &name, const QString &targetFolder, QString *error);

// Lets the user choose one and opens its copy in the folder for projects. Empty when he gave up;
// failures are told.
QString choose(const QString &targetFolder, QWidget *parent);

} // namespace ExampleProjects
