#include "shell/build_preparation.h"

#include "driver/source_text.h"
#include "shell/build_texts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

using BuildText::text;

namespace {

constexpr char tooLarge[] = "源代码体积超过本 IDE 上限，请删减或使用 64 位 VorelDesk。";

QString temporaryPath()
{
    return QDir::tempPath() + QLatin1String("/vl_temp.vc");
}

bool writeTemporary(const QString &source)
{
    QSaveFile file(temporaryPath());
    return file.open(QIODevice::WriteOnly) && file.write(source.toUtf8()) >= 0 && file.commit();
}

// The script engine comes beside the program or not at all.
QString scriptEngineRoot()
{
    const QString root =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1String("/../../quickjs_2"));
    return QFileInfo(root).isDir() ? root : QString();
}

void prepareProject(const BuildSubject &subject, const BuildChoices &choices, PreparedBuild &build)
{
    // What was put into the project's folders meanwhile belongs to it.
    VL::ProjectInfo project = *subject.project;
    ProjectFile::addFilesOfFolders(project);
    const AssembledBuild assembled = assembleBuild(project, choices, subject.live);
    build.request = assembled.request;
    build.notes += assembled.notes;
    build.diagnostics = assembled.diagnostics;
    build.request.sourceFile = temporaryPath();
    const auto error =
        std::find_if(assembled.diagnostics.begin(), assembled.diagnostics.end(),
                     [](const BuildDiagnostic &diagnostic) {
                         return diagnostic.severity == BuildDiagnostic::Severity::Error;
                     });
    if (error != assembled.diagnostics.end())
        build.problem = error->text;
    else if (!writeTemporary(build.request.sourceText))
        build.problem = text(BuildText::noTemporaryFile);
}

// The driver reads single files itself; what is not in the file goes there by a temporary one.
void prepareSingleFile(const BuildSubject &subject, PreparedBuild &build)
{
    if (subject.sourceText.size() > maxMergedChars) {
        build.problem = text(tooLarge);
        return;
    }
    const bool isSaved =
        !subject.sourcePath.isEmpty() &&
        readSourceFile(subject.sourcePath, subject.sourcePath).text == subject.sourceText;
    if (isSaved || (subject.sourceText.isEmpty() && !subject.sourcePath.isEmpty()))
        return;
    if (!writeTemporary(subject.sourceText)) {
        build.problem = text(BuildText::noTemporaryFile);
        return;
    }
    build.temporaryName = temporaryPath();
    build.request.sourceFile = build.temporaryName;
    build.request.activeFileName = build.temporaryName;
}

} // namespace

CompilerBuildRequest outlineRequest(const BuildSubject &subject, const BuildChoices &choices)
{
    CompilerBuildRequest request;
    request.chineseError = choices.chineseError;
    request.buildConfig = choices.buildConfig;
    request.staticLink = choices.staticLink;
    request.compilerType = choices.compilerType;
    request.defaultCompiler = choices.defaultCompiler;
    request.platform = choices.platform;
    if (subject.project) {
        request.hasProject = true;
        request.projectPath = QDir(subject.project->path).absolutePath();
        if (request.platform.isEmpty())
            request.platform = subject.project->targetPlatform;
    } else {
        const QString path = subject.sourcePath.isEmpty() ? temporaryPath() : subject.sourcePath;
        request.sourceFile = QFileInfo(path).absoluteFilePath();
        request.activeFileName = request.sourceFile;
    }
    return request;
}

PreparedBuild prepareBuild(const BuildSubject &subject, const BuildChoices &choices)
{
    PreparedBuild build;
    build.sourcePath = subject.sourcePath;
    if (subject.isEmpty()) {
        build.problem = text(BuildText::nothingToBuild);
        return build;
    }
    build.request = outlineRequest(subject, choices);
    if (subject.project)
        prepareProject(subject, choices, build);
    else
        prepareSingleFile(subject, build);
    build.request.quickjsRoot = scriptEngineRoot();
    const CompilerBuildRequest known = build.request.normalized();
    build.notes << text(BuildText::configuration).arg(known.buildConfig, known.platform)
                << text(BuildText::compiler).arg(known.effectiveCompiler());
    return build;
}

QString issueFile(const PreparedBuild &build, const QString &file)
{
    if (file.isEmpty())
        return QString();
    if (!build.temporaryName.isEmpty() && file == build.temporaryName)
        return build.sourcePath;
    return build.request.hasProject ? QDir(build.request.projectPath).absoluteFilePath(file)
                                    : QFileInfo(file).absoluteFilePath();
}
