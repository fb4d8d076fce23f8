#include "cli/project_input.h"

#include "driver/source_text.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

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

int lineAtByte(const QByteArray &bytes, int offset)
{
    return bytes.left(offset).count('\n') + 1;
}

// The settings stand in an object of their own, or as keys "ProjectSettings/…" beside the others.
ProgramIdentity identityOf(const QJsonObject &project)
{
    const QString group = QStringLiteral("ProjectSettings");
    const QJsonObject settings = project.value(group).toObject();
    const auto value = [&](const char *name) {
        const QJsonValue flat = project.value(group + QLatin1Char('/') + QLatin1String(name));
        return settings.value(QLatin1String(name)).toString(flat.toString());
    };
    ProgramIdentity identity;
    identity.icon = value("icon");
    identity.productName = value("productName");
    identity.fileDescription = value("fileDescription");
    identity.companyName = value("companyName");
    identity.copyright = value("copyright");
    identity.version = value("version");
    return identity;
}

ProjectInput projectFile(const QString &path)
{
    const SourceText source = readSourceFile(path, path);
    if (!source.isValid())
        return refused(source.error);
    const QByteArray bytes = source.text.toUtf8();
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        return refused(
            QStringLiteral("工程文件不是有效的 JSON：%1（第 %2 行：%3）")
                .arg(path, QString::number(lineAtByte(bytes, error.offset)), error.errorString()));
    }
    if (!document.isObject())
        return refused(QStringLiteral("工程文件的内容不是 JSON 对象：%1").arg(path));
    const QJsonObject object = document.object();
    ProjectInput input = folderProject(QFileInfo(path).absolutePath());
    const QString name = object.value(QLatin1String("name")).toString();
    if (!name.isEmpty())
        input.request.projectName = name;
    input.request.platform = object.value(QLatin1String("targetPlatform")).toString();
    input.request.compilerType = object.value(QLatin1String("compiler")).toString();
    const QString backend = object.value(QLatin1String("uiBackend")).toString();
    input.request.uiBackend = backend == QLatin1String("advanced") ? QString() : backend;
    input.request.identity = identityOf(object);
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
    CompilerBuildRequest &request = input.request;
    if (!options.platform.isEmpty())
        request.platform = options.platform;
    if (!options.backend.isEmpty())
        request.uiBackend = options.backend;
    if (!options.compiler.isEmpty())
        request.compilerType = options.compiler;
    request.buildConfig = options.config;
#ifndef Q_OS_WIN
    // Nobody asked for another one.
    request.defaultCompiler = QStringLiteral("MinGW");
#endif
    return input;
}
