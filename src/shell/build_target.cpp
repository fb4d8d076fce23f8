#include "shell/build_target.h"

#include "project/project_manager.h"
#include "settings/settings_store.h"
#include "shell/breakpoint_keeper.h"
#include "shell/build_choices.h"
#include "shell/editor_tabs.h"
#include "shell/trace_file.h"
#include "shell/workspace.h"

#include <QComboBox>
#include <QToolBar>

namespace {

void select(QComboBox *box, const QString &data)
{
    const int index = box->findData(data);
    if (index >= 0)
        box->setCurrentIndex(index);
}

QString dataOf(const QComboBox *box)
{
    return box->currentData().toString();
}

} // namespace

BuildTarget::BuildTarget(EditorTabs &tabs, ProjectManager &projects, const Workspace &workspace,
                         BreakpointKeeper &breakpoints, const SettingsStore &settings,
                         QObject *parent)
    : QObject(parent),
      m_tabs(tabs),
      m_projects(projects),
      m_workspace(workspace),
      m_breakpoints(breakpoints),
      m_settings(settings),
      m_platform(new QComboBox),
      m_configuration(new QComboBox)
{
    m_platform->setObjectName(QStringLiteral("platformBox"));
    m_platform->setAccessibleName(QStringLiteral("目标平台"));
    m_platform->setToolTip(QStringLiteral("目标平台"));
    m_platform->addItem(QStringLiteral("x86 (32位)"), QStringLiteral("x86"));
    m_platform->addItem(QStringLiteral("x64 (64位)"), QStringLiteral("x64"));
    m_configuration->setObjectName(QStringLiteral("configurationBox"));
    m_configuration->setAccessibleName(QStringLiteral("编译配置"));
    m_configuration->setToolTip(QStringLiteral("编译配置"));
    m_configuration->addItem(QStringLiteral("Release"), QStringLiteral("release"));
    m_configuration->addItem(QStringLiteral("Debug"), QStringLiteral("debug"));
    select(m_platform, settings.get(Setting::Compiler::defaultArch));
    resetConfiguration();
    connect(m_platform, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { emit platformChanged(dataOf(m_platform)); });
    connect(m_configuration, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { emit configurationChanged(dataOf(m_configuration)); });
}

void BuildTarget::addBoxes(QToolBar *bar)
{
    QAction *first = bar->actions().value(0);
    for (QComboBox *box : {m_platform, m_configuration}) {
        // A popup must not be chosen from by the wheel that scrolls past it.
        box->setFocusPolicy(Qt::StrongFocus);
        bar->insertWidget(first, box);
    }
    bar->insertSeparator(first);
}

void BuildTarget::setPlatform(const QString &platform)
{
    select(m_platform, platform);
}

void BuildTarget::resetConfiguration()
{
    select(m_configuration, m_settings.get(Setting::Compiler::buildConfig));
}

QStringList BuildTarget::saveAllFilesBeforeBuild()
{
    TraceFile::append(
        TraceFile::saving,
        QStringLiteral("saving %1 files before a build").arg(m_tabs.modifiedEditors().size()));
    QStringList failures = m_tabs.saveModified();
    if (m_projects.hasOpenProject() && m_projects.isModified() && !m_projects.saveProject())
        failures << m_projects.lastError();
    for (const QString &failure : qAsConst(failures))
        TraceFile::append(TraceFile::saving, failure);
    return failures;
}

BuildSubject BuildTarget::buildSubject()
{
    BuildSubject subject;
    if (m_projects.hasOpenProject()) {
        subject.project = m_projects.currentProject();
        subject.live = m_workspace.liveState();
        return subject;
    }
    const CodeEditor *editor = m_tabs.currentEditor();
    if (editor && EditorTabs::isSourceFile(editor->filePath())) {
        subject.sourcePath = editor->filePath();
        subject.sourceText = editor->text();
    }
    return subject;
}

BuildChoices BuildTarget::buildChoices()
{
    BuildChoices choices = storedBuildChoices(m_settings);
    choices.platform = dataOf(m_platform);
    choices.buildConfig = dataOf(m_configuration);
    return choices;
}

CompilerDebugBreakpointsMap BuildTarget::breakpoints()
{
    return m_breakpoints.breakpoints();
}
