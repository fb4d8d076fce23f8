#include "shell/code_assist.h"

#include "editor/auto_completer.h"
#include "editor/completion_vocabulary.h"
#include "project/project_manager.h"
#include "settings/settings_store.h"
#include "shell/build_choices.h"
#include "shell/editor_tabs.h"
#include "shell/workspace.h"

namespace {

// From the start to the reading of the vocabulary, which no key should have to wait for.
constexpr int firstPause = 800; // milliseconds

} // namespace

CodeAssist::CodeAssist(EditorTabs &tabs, const Workspace &workspace, const ProjectManager &projects,
                       const SettingsStore &settings, QObject *parent)
    : QObject(parent),
      m_tabs(tabs),
      m_workspace(workspace),
      m_projects(projects),
      m_settings(settings)
{
    m_check.setDelay(0);
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(quietTime);
    QTimer::singleShot(firstPause, [] { CompletionVocabulary::instance(); });
    connect(&m_quiet, &QTimer::timeout, this, &CodeAssist::requestCheck);
    connect(&m_check, &LiveCheck::finished, this, &CodeAssist::take);
    connect(&tabs, &EditorTabs::editorOpened, this, &CodeAssist::attach);
    connect(&tabs, &EditorTabs::editorClosing, this, [this](CodeEditor *editor) {
        m_completers.remove(editor);
        m_quiet.start();
    });
    // What was checked depends on the file in front when it is in no project.
    connect(&tabs, &EditorTabs::currentEditorChanged, &m_quiet, QOverload<>::of(&QTimer::start));
}

void CodeAssist::attach(CodeEditor *editor)
{
    if (!EditorTabs::isSourceFile(editor->filePath()))
        return;
    auto *completer = new AutoCompleter(editor);
    m_completers.insert(editor, completer);
    editor->setAutoCompleter(completer);
    connect(editor, &CodeEditor::checkRequested, &m_quiet, QOverload<>::of(&QTimer::start));
    inform(editor);
}

void CodeAssist::refresh()
{
    readComponents();
    for (CodeEditor *editor : m_tabs.editors())
        inform(editor);
    m_quiet.start();
}

void CodeAssist::readComponents()
{
    m_windows = m_projects.hasOpenProject() ? readProjectComponents(m_projects.currentProject())
                                            : QVector<WindowComponents>();
    QStringList names;
    for (const WindowComponents &window : qAsConst(m_windows)) {
        names << window.name;
        for (const WindowComponent &component : window.components)
            names << component.name;
    }
    m_tabs.setComponentNames(names);
    emit windowsChanged();
}

void CodeAssist::requestCheck()
{
    ProjectCheckRequest request;
    request.choices = storedBuildChoices(m_settings);
    const CodeEditor *current = m_tabs.currentEditor();
    const bool isAlone = current && !m_workspace.isInProject(current->filePath()) &&
                         EditorTabs::isSourceFile(current->filePath());
    if (m_projects.hasOpenProject() && !isAlone) {
        request.project = m_projects.currentProject();
        request.live = m_workspace.liveState();
    } else if (isAlone) {
        request.file = current->filePath();
        request.text = current->text();
    } else {
        take({});
        return;
    }
    m_check.request(request);
}

void CodeAssist::take(const ProjectCheckResult &result)
{
    // The text has changed since: another check follows.
    if (m_quiet.isActive())
        return;
    m_issues.clear();
    m_symbols.clear();
    for (auto file = result.issues.begin(); file != result.issues.end(); ++file)
        m_issues.insert(m_workspace.absolutePath(file.key()), file.value());
    for (auto file = result.symbols.begin(); file != result.symbols.end(); ++file)
        m_symbols.insert(m_workspace.absolutePath(file.key()), file.value());
    for (CodeEditor *editor : m_tabs.editors())
        inform(editor);
    emit updated();
}

void CodeAssist::inform(CodeEditor *editor)
{
    AutoCompleter *completer = m_completers.value(editor);
    if (!completer)
        return;
    completer->setFuzzyMatching(m_settings.get(Setting::Editor::fuzzyMatch) ? FuzzyMatching::On
                                                                            : FuzzyMatching::Off);
    QVector<CompletionComponent> components;
    for (const WindowComponents &window : qAsConst(m_windows)) {
        components << CompletionComponent{window.name, QStringLiteral("Window")};
        for (const WindowComponent &component : window.components)
            components << CompletionComponent{component.name, component.typeKey};
    }
    completer->setComponents(components);
    CodeSymbols elsewhere;
    for (auto file = m_symbols.cbegin(); file != m_symbols.cend(); ++file) {
        if (file.key() != editor->filePath())
            elsewhere += file.value();
    }
    completer->setProjectSymbols(elsewhere);
    completer->setDocumentSymbols(m_symbols.value(editor->filePath()));
    editor->setIssues(m_issues.value(editor->filePath()));
}
