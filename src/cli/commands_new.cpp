// vorelc new.
#include "cli/cli_command.h"
#include "driver/output_files.h"
#include "project/project_manager.h"

#include <QDir>
#include <QFileInfo>

namespace {

int refuse(const QString &message)
{
    Console::error(message);
    return ExitCode::failed;
}

// A program of one file is no project.
int makeSingleFile(const QString &folder, const QString &name)
{
    const QString error = projectNameError(name);
    if (!error.isEmpty())
        return refuse(error);
    const QString path = QDir(folder).absoluteFilePath(name + QLatin1String(".vl"));
    if (QFileInfo::exists(path))
        return refuse(QStringLiteral("文件“%1”已经存在。").arg(QDir::toNativeSeparators(path)));
    const TemplateFile program =
        filesForNewProject(ProjectKind::Single, name, QString(), QDateTime::currentDateTime())
            .first();
    if (!QDir().mkpath(folder) || !OutputFiles::write(path, program.bytes))
        return refuse(QStringLiteral("无法写入文件：%1").arg(QDir::toNativeSeparators(path)));
    Console::result(QDir::toNativeSeparators(path));
    return ExitCode::done;
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
    if (*kind == ProjectKind::Single)
        return makeSingleFile(folder, options.inputs.at(1));
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
