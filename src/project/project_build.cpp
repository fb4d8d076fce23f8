#include "project/project_build.h"

#include "designer/model/component_types.h"
#include "designer/model/form_file.h"
#include "project/source_merge.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

using Severity = BuildDiagnostic::Severity;

const char formMissing[] = "  窗口文件不存在: %1";
const char formUnopened[] = "  无法打开窗口文件: %1";
const char formEmpty[] = "  窗口文件为空: %1";
const char formOutside[] = "  窗口文件不在工程文件夹中，已忽略: %1";
const char formWithoutComponents[] = "  警告: 窗口文件没有组件: %1";
const char formWithoutOwnComponents[] = "  警告: VL窗口文件无有效自绘组件: %1";
const char formLoaded[] = "  已加载 %1 个组件: %2";
const char formNamesTwice[] = "窗口“%1”有两个窗口文件，只使用前一个：%2";
const char liveDesign[] = "  主窗口使用当前设计画布中的组件（共 %1 个），未保存的修改将参与编译。";
const char liveOwnDesign[] =
    "  VL窗口：使用当前自绘设计画布中的组件（共 %1 个），未保存的修改将参与编译。";
const char startupHint[] = "  [提示] 启动窗口 \"%1\"，请确认其界面文件已保存后再运行。";
const char unknownType[] = "类型%1";

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

bool endsWith(const QString &file, const char *suffix)
{
    return file.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
}

// One assembly.
class Assembly
{
public:
    Assembly(const VL::ProjectInfo &project, const BuildChoices &choices, const LiveState &live)
        : m_project(project), m_choices(choices), m_live(live)
    {}

    AssembledBuild run();

private:
    QStringList windowFiles() const;
    void addWindow(const QString &file);
    QList<VL::DesignComponent> components(const QString &file);
    QList<VL::DesignComponent> readForm(const QString &file);
    void mergeSources();
    void decideOptions();
    QString backend() const;
    void note(const QString &line) { m_result.notes << line; }
    void warn(const QString &file, const QString &message)
    {
        m_result.diagnostics << BuildDiagnostic{Severity::Warning, file, 0, message.trimmed()};
    }

    const VL::ProjectInfo &m_project;
    const BuildChoices &m_choices;
    const LiveState &m_live;
    AssembledBuild m_result;
};

// The main window first, the others in the project's order.
QStringList Assembly::windowFiles() const
{
    QStringList files = m_project.windowFiles + m_project.uiFiles;
    files.removeDuplicates();
    const int main = files.indexOf(m_project.mainWindowFile);
    if (main > 0)
        files.move(main, 0);
    return files;
}

QString unreadableForm(const FormReadResult &form, const QString &file)
{
    switch (form.status) {
    case FormStatus::Unreadable:
        return text(formUnopened).arg(file);
    case FormStatus::Empty:
        return text(formEmpty).arg(file);
    default:
        return QStringLiteral("  ") + form.message;
    }
}

// Those inside others included.
QSet<QString> namesOf(const QList<VL::DesignComponent> &components)
{
    QSet<QString> names;
    QList<VL::DesignComponent> open = components;
    while (!open.isEmpty()) {
        const VL::DesignComponent component = open.takeLast();
        names.insert(component.name());
        open += component.children;
    }
    return names;
}

// A project file is not to be trusted: what it names must lie in the project.
bool liesInside(const QString &folder, const QString &file)
{
    const QString root = QFileInfo(folder).canonicalFilePath();
    const QString path = QFileInfo(file).canonicalFilePath();
    return !root.isEmpty() && path.startsWith(root + QLatin1Char('/'));
}

void Assembly::addWindow(const QString &file)
{
    const QString name = ProjectFile::windowName(file);
    QList<CompilerWindowBuildSpec> &specs = m_result.request.windowSpecs;
    const bool known =
        std::any_of(specs.begin(), specs.end(),
                    [&name](const CompilerWindowBuildSpec &spec) { return spec.name == name; });
    if (known) {
        warn(file, text(formNamesTwice).arg(name, file));
        return;
    }
    const QString start = m_project.startupWindowFile.isEmpty() ? m_project.mainWindowFile
                                                                : m_project.startupWindowFile;
    CompilerWindowBuildSpec spec;
    spec.name = name;
    spec.filePath = file;
    spec.components = components(file);
    spec.isMain = file == m_project.mainWindowFile;
    spec.isStartup = file == start;
    specs << spec;
}

QList<VL::DesignComponent> Assembly::components(const QString &file)
{
    const auto live = m_live.designs.constFind(file);
    if (live != m_live.designs.constEnd()) {
        note(text(endsWith(file, ".vlwin") ? liveOwnDesign : liveDesign).arg(live->size()));
        return *live;
    }
    // Such a file has no components of ours.
    return endsWith(file, ".xml") ? QList<VL::DesignComponent>() : readForm(file);
}

QList<VL::DesignComponent> Assembly::readForm(const QString &file)
{
    const QString path = QDir(m_project.path).absoluteFilePath(file);
    const bool exists = QFileInfo::exists(path);
    if (!exists || !liesInside(m_project.path, path)) {
        note(text(exists ? formOutside : formMissing).arg(file));
        warn(file, m_result.notes.last());
        return {};
    }
    const FormReadResult form = readFormFile(path);
    if (!form.document) {
        note(unreadableForm(form, file));
        warn(file, form.message);
        return {};
    }
    QStringList warnings;
    const QList<VL::DesignComponent> components = form.document->buildComponents(&warnings);
    for (const QString &warning : qAsConst(warnings))
        warn(file, warning);
    if (components.isEmpty()) {
        note(text(endsWith(file, ".vlwin") ? formWithoutOwnComponents : formWithoutComponents)
                 .arg(file));
        return components;
    }
    QStringList entries;
    for (const VL::DesignComponent &component : components) {
        const QString type = VL::componentType(component.type)
                                 ? VL::componentDisplayName(component.type)
                                 : text(unknownType).arg(component.type);
        entries << QStringLiteral("%1(%2)").arg(component.name(), type);
    }
    note(text(formLoaded)
             .arg(QString::number(components.size()), entries.join(QLatin1String(", "))));
    return components;
}

void Assembly::mergeSources()
{
    ProjectSources sources;
    sources.projectPath = m_project.path;
    sources.files = m_project.sourceFiles;
    sources.liveTexts = m_live.sources;
    for (const CompilerWindowBuildSpec &spec : qAsConst(m_result.request.windowSpecs)) {
        ProjectWindow window;
        window.name = spec.name;
        window.isMain = spec.isMain;
        if (!spec.components.isEmpty())
            window.components = namesOf(spec.components);
        sources.windows << window;
    }
    const MergedSource merged = ::mergeSources(sources);
    m_result.diagnostics += merged.errors;
    m_result.request.sourceText = merged.text;
    m_result.request.lineMap = merged.lineMap;
}

QString Assembly::backend() const
{
    if (!m_choices.uiBackend.isEmpty())
        return m_choices.uiBackend;
    const QList<CompilerWindowBuildSpec> &specs = m_result.request.windowSpecs;
    const bool hasOwnDrawn =
        std::any_of(specs.begin(), specs.end(), [](const CompilerWindowBuildSpec &spec) {
            return endsWith(spec.filePath, ".vlwin");
        });
    const bool classic =
        m_project.uiBackend.isEmpty() || m_project.uiBackend == QLatin1String("win32");
    return classic && hasOwnDrawn ? QStringLiteral("vlwin") : m_project.uiBackend;
}

void Assembly::decideOptions()
{
    CompilerBuildRequest &request = m_result.request;
    request.hasProject = true;
    request.chineseError = m_choices.chineseError;
    request.buildConfig = m_choices.buildConfig;
    request.staticLink = m_choices.staticLink;
    request.projectPath = QDir(m_project.path).absolutePath();
    request.projectName =
        m_project.name.isEmpty() ? QFileInfo(request.projectPath).fileName() : m_project.name;
    // A project that does not tell leaves the choice to the user's default.
    request.compilerType = m_choices.compilerType;
    if (request.compilerType.isEmpty() && ProjectFile::stores(m_project, "compiler"))
        request.compilerType = m_project.compiler;
    request.defaultCompiler = m_choices.defaultCompiler;
    request.platform = m_choices.platform.isEmpty() ? m_project.targetPlatform : m_choices.platform;
    request.uiBackend = backend();
    request.useBeautification = m_project.useBeautification;
    request.beautificationScheme = m_project.beautificationScheme;
    request.activeFileName = QStringLiteral("source/main.vc");
    request.identity = m_project.identity;
}

AssembledBuild Assembly::run()
{
    const QStringList files = windowFiles();
    for (const QString &file : files)
        addWindow(file);
    const QList<CompilerWindowBuildSpec> &specs = m_result.request.windowSpecs;
    for (const CompilerWindowBuildSpec &spec : specs) {
        if (specs.size() > 1 && spec.isStartup && !spec.components.isEmpty())
            note(text(startupHint).arg(spec.name));
    }
    mergeSources();
    decideOptions();
    return m_result;
}

} // namespace

bool AssembledBuild::succeeded() const
{
    return std::none_of(
        diagnostics.begin(), diagnostics.end(),
        [](const BuildDiagnostic &diagnostic) { return diagnostic.severity == Severity::Error; });
}

AssembledBuild assembleBuild(const VL::ProjectInfo &project, const BuildChoices &choices,
                             const LiveState &live)
{
    return Assembly(project, choices, live).run();
}
