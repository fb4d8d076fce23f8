// vorelc new.
#include "cli/cli_command.h"
#include "project/project_manager.h"

#include <QDir>

namespace {

int refuse(const QString &message)
{
    Console::error(message);
    return ExitCode::failed;
}

} // namespace

int runNew(const CliOptions &options)
{
    const std::optional<ProjectKind> kind = projectKindFromWord(options.inputs.at(0));
    if (!kind) {
        Console::error(QStringLiteral("未知的种类：%1（可用：gui、console、empty、single）")
                           .arg(options.inputs.at(0)));
        return ExitCode::wrongUsage;
    }
    const QString folder = options.folder.isEmpty() ? QDir::currentPath() : options.folder;
    if (*kind == ProjectKind::Single) {
        const SingleFile made = createSingleFile(folder, options.inputs.at(1));
        if (!made.error.isEmpty())
            return refuse(made.error);
        Console::result(QDir::toNativeSeparators(made.path));
        return ExitCode::done;
    }
    NewProject project;
    project.kind = *kind;
    project.name = options.inputs.at(1);
    project.folder = folder;
    if (!options.windowType.isEmpty())
        project.windowType = options.windowType;
    ProjectManager manager;
    if (!manager.createProject(project))
        return refuse(manager.lastError());
    Console::result(QDir::toNativeSeparators(manager.projectFile()));
    return ExitCode::done;
}
