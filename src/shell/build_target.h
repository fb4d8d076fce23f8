// BuildTarget: what the main window wants built, and the boxes that choose for what.
#pragma once

#include "shell/build_host.h"

#include <QObject>

class BreakpointKeeper;
class EditorTabs;
class ProjectManager;
class QComboBox;
class QToolBar;
class SettingsStore;
class Workspace;

// The active project, else the source in front. What is handed over must outlive it.
class BuildTarget : public QObject, public BuildHost
{
    Q_OBJECT

public:
    BuildTarget(EditorTabs &tabs, ProjectManager &projects, const Workspace &workspace,
                BreakpointKeeper &breakpoints, const SettingsStore &settings, QObject *parent);

    // Puts the boxes in front of what the bar holds.
    void addBoxes(QToolBar *bar);
    // "x64" or "x86".
    void setPlatform(const QString &platform);
    // As the settings have it.
    void resetConfiguration();

    QStringList saveAllFilesBeforeBuild() override;
    BuildSubject buildSubject() override;
    BuildChoices buildChoices() override;
    CompilerDebugBreakpointsMap breakpoints() override;

signals:
    void platformChanged(const QString &platform);
    void configurationChanged(const QString &configuration);

private:
    EditorTabs &m_tabs;
    ProjectManager &m_projects;
    const Workspace &m_workspace;
    BreakpointKeeper &m_breakpoints;
    const SettingsStore &m_settings;
    QComboBox *m_platform;
    QComboBox *m_configuration;
};
