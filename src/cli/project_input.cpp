#include "cli/project_input.h"

#include <QDir>
#include <QFileInfo>

namespace {

BuildChoices choicesOf(const CliOptions &options)
{
    BuildChoices choices;
    choices.buildConfig = options.config;
    choices.platform = options.platform;
    choices.uiBackend = options.backend;
    choices.compilerType = options.compiler;
#ifndef Q_OS_WIN
    // Nobody asked for another one.
    choices.defaultCompiler = QStringLiteral("MinGW");
#endif
    return choices;
}

ProjectInput refused(const QString &error)
{
    ProjectInput input;
    input.error = error;
    return input;
}

ProjectInput folderProject(const QString &folder)
{
    ProjectInput input;
    input.request.hasProject = true;
    input.request.projectPath = QDir(folder).absolutePath();
    input.request.projectName = QFileInfo(input.request.projectPath).fileName();
    return input;
}

ProjectInput projectFile(const QString &path)
{
    ReadProject read = ProjectFile::read(path);
    if (!read.succeeded())
        return refused(read.error);
    ProjectFile::addFilesOfFolders(read.info);
    ProjectInput input = folderProject(read.info.path);
    input.project = read.info;
    return input;
}

ProjectInput projectFolder(const QString &path)
{
    const QDir folder(path);
    if (!folder.isReadable())
        return refused(QStringLiteral("无法读取文件夹：%1").arg(path));
    const QStringList projects =
        folder.entryList({QStringLiteral("*.vlproj")}, QDir::Files, QDir::Name);
    if (projects.size() > 1) {
        return refused(QStringLiteral("文件夹“%1”中有多个工程文件（%2），请指明其中一个")
                           .arg(path, projects.join(QStringLiteral("、"))));
    }
    if (projects.size() == 1)
        return projectFile(folder.filePath(projects.first()));
    const bool hasSources = QFileInfo(folder.filePath(QStringLiteral("source"))).isDir() ||
                            !folder.entryList({QStringLiteral("*.vc")}, QDir::Files).isEmpty();
    if (!hasSources) {
        return refused(
            QStringLiteral("文件夹“%1”中没有工程文件（.vlproj），也没有源文件（.vc）").arg(path));
    }
    return folderProject(path);
}

ProjectInput singleFile(const QString &path)
{
    ProjectInput input;
    input.request.sourceFile = QFileInfo(path).absoluteFilePath();
    input.request.activeFileName = path;
    return input;
}

} // namespace

ProjectInput readProjectInput(const CliOptions &options)
{
    const QString path = options.inputs.first();
    const QFileInfo info(path);
    const QString suffix = info.suffix().toLower();
    ProjectInput input;
    if (!info.exists()) {
        return refused(QStringLiteral("找不到文件或文件夹：%1").arg(path));
    } else if (info.isDir()) {
        input = projectFolder(path);
    } else if (suffix == QLatin1String("vlproj")) {
        input = projectFile(path);
    } else if (suffix == QLatin1String("vc") || suffix == QLatin1String("vl")) {
        input = singleFile(path);
    } else {
        return refused(
            QStringLiteral("不支持的输入：%1。请给出工程文件（.vlproj）、工程文件夹或 .vc 源文件")
                .arg(path));
    }
    const BuildChoices choices = choicesOf(options);
    CompilerBuildRequest &request = input.request;
    if (!choices.platform.isEmpty())
        request.platform = choices.platform;
    request.uiBackend = choices.uiBackend;
    request.compilerType = choices.compilerType;
    request.defaultCompiler = choices.defaultCompiler;
    request.buildConfig = choices.buildConfig;
    return input;
}

AssembledBuild assembleInput(const ProjectInput &input, const CliOptions &options)
{
    if (input.project)
        return assembleBuild(*input.project, choicesOf(options));
    AssembledBuild build;
    build.request = input.request;
    return build;
}
