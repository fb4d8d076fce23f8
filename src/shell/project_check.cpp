#include "shell/project_check.h"

#include "driver/type_source.h"
#include "project/source_list.h"

#include <QDir>
#include <QFileInfo>

namespace {

using Texts = QHash<QString, QString>; // by the name of the file

// Hears a check and keeps what it finds.
class FindingListener : public BuildListener
{
public:
    explicit FindingListener(const std::function<bool()> &isCancelled) : m_isCancelled(isCancelled)
    {}

    void progress(int, const QString &) override {}
    void note(const QString &) override {}
    void output(const QString &) override {}
    void diagnostic(const BuildDiagnostic &diagnostic) override { m_found << diagnostic; }
    bool isCancelled() override { return m_isCancelled(); }

    const QList<BuildDiagnostic> &found() const { return m_found; }

private:
    const std::function<bool()> &m_isCancelled;
    QList<BuildDiagnostic> m_found;
};

// Every source of the project that can be read, as it stands in an editor or else on disk.
Texts textsOfProject(const VL::ProjectInfo &project, const LiveState &live)
{
    const QDir folder(project.path);
    Texts open;
    for (auto source = live.sources.cbegin(); source != live.sources.cend(); ++source)
        open.insert(QDir::cleanPath(folder.absoluteFilePath(source.key())), source.value());
    ProjectSources sources;
    sources.projectPath = project.path;
    sources.files = project.sourceFiles;
    Texts texts;
    const QList<SourceFile> files = listSources(sources).files;
    for (const SourceFile &file : files) {
        const auto found = open.constFind(file.path);
        if (found != open.cend()) {
            texts.insert(file.name, *found);
            continue;
        }
        const SourceText source = readSourceFile(file.path, file.name);
        if (source.isValid())
            texts.insert(file.name, source.text);
    }
    return texts;
}

// The request of a text without a project. It is not read from disk, not even if it is empty.
CompilerBuildRequest singleRequest(const ProjectCheckRequest &request,
                                   QList<BuildDiagnostic> *faults)
{
    CompilerBuildRequest build;
    build.activeFileName = request.file;
    build.sourceFile = request.file;
    build.uiBackend = request.choices.uiBackend;
    build.chineseError = request.choices.chineseError;
    build.sourceText = request.text;
    const QString suffix = QFileInfo(request.file).suffix().toLower();
    if (suffix == QLatin1String("vt") || suffix == QLatin1String("vd")) {
        const TypeSource types = translateTypeSource(
            request.text, suffix == QLatin1String("vd") ? TypeSourceKind::BlocksOnly
                                                        : TypeSourceKind::WithClasses);
        build.sourceText = types.text;
        for (const TypeSource::Fault &fault : types.faults) {
            *faults << BuildDiagnostic{BuildDiagnostic::Severity::Error, request.file, fault.line,
                                       fault.text};
        }
    }
    if (build.sourceText.isEmpty())
        build.sourceText = QStringLiteral("\n");
    const int lines = build.sourceText.count(QLatin1Char('\n')) + 1;
    for (int line = 1; line <= lines; ++line)
        build.lineMap.insert(build.lineMap.cend(), line, {request.file, line});
    return build;
}

VlSyntaxIssue issueOf(const BuildDiagnostic &diagnostic, const QStringList &lines)
{
    VlSyntaxIssue issue;
    issue.message = diagnostic.text;
    issue.line = diagnostic.line;
    issue.isWarning = diagnostic.severity == BuildDiagnostic::Severity::Warning;
    issue.column =
        columnOfNearText(lines.value(diagnostic.line - 1), diagnostic.nearText, diagnostic.column);
    issue.length = issue.column > 0 ? diagnostic.nearText.size() : 0;
    return issue;
}

// Lines are those of the files, columns those of the merged text; the files tell the columns.
QHash<QString, QList<VlSyntaxIssue>> issuesByFile(const QList<BuildDiagnostic> &found,
                                                  const Texts &texts)
{
    QHash<QString, QStringList> lines;
    QHash<QString, QList<VlSyntaxIssue>> issues;
    for (const BuildDiagnostic &diagnostic : found) {
        auto known = lines.constFind(diagnostic.file);
        if (known == lines.cend())
            known = lines.insert(diagnostic.file,
                                 texts.value(diagnostic.file).split(QLatin1Char('\n')));
        // The parser may stumble over one thing twice.
        const VlSyntaxIssue issue = issueOf(diagnostic, *known);
        QList<VlSyntaxIssue> &ofFile = issues[diagnostic.file];
        if (ofFile.isEmpty() || !(ofFile.last() == issue))
            ofFile << issue;
    }
    return issues;
}

} // namespace

int columnOfNearText(const QString &line, const QString &nearText, int column)
{
    if (column < 1 || nearText.isEmpty())
        return 0;
    int best = 0;
    for (int at = line.indexOf(nearText); at >= 0; at = line.indexOf(nearText, at + 1)) {
        if (best == 0 || qAbs(at + 1 - column) < qAbs(best - column))
            best = at + 1;
    }
    return best;
}

std::optional<ProjectCheckResult> checkProject(const ProjectCheckRequest &request,
                                               BuildPipeline &pipeline,
                                               const std::function<bool()> &isCancelled)
{
    AssembledBuild build;
    Texts texts;
    if (request.project) {
        texts = textsOfProject(*request.project, request.live);
        build = assembleBuild(*request.project, request.choices, {texts, request.live.designs});
    } else {
        texts.insert(request.file, request.text);
        build.request = singleRequest(request, &build.diagnostics);
    }
    QList<BuildDiagnostic> found = build.diagnostics;
    if (build.succeeded()) {
        FindingListener listener(isCancelled);
        build.request.goal = BuildGoal::Check;
        pipeline.run(build.request, listener);
        found += listener.found();
    }
    if (isCancelled())
        return std::nullopt;
    ProjectCheckResult result;
    result.issues = issuesByFile(found, texts);
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        result.symbols.insert(text.key(), readCodeSymbols(text.value()));
    return result;
}
