// What the main window builds and runs, and what it shows of it.
#include "shell/mainwindow.h"

#include "shell/action_set.h"
#include "shell/build_flow.h"
#include "shell/build_target.h"
#include "shell/code_assist.h"
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/issue_colors.h"
#include "shell/output_panel.h"
#include "shell/status_line.h"
#include "shell/workspace.h"

#include <QMessageBox>
#include <QToolBar>

namespace {

QColor colorOf(OutputKind kind)
{
    switch (kind) {
    case OutputKind::Success:
        return QColor(0x6A, 0xC2, 0x59);
    case OutputKind::Failure:
        return issueColor(IssueKind::Error);
    case OutputKind::Hint:
        return issueColor(IssueKind::Info);
    default:
        return {};
    }
}

} // namespace

void MainWindow::connectBuild()
{
    m_target->addBoxes(findChild<QToolBar *>(QStringLiteral("BuildToolBar")));
    connect(m_build, &BuildFlow::outputCleared, m_output, &OutputPanel::clearOutput);
    connect(m_build, &BuildFlow::outputLine, this, [this](const QString &text, OutputKind kind) {
        m_output->appendCompileOutput(text, colorOf(kind));
    });
    connect(m_build, &BuildFlow::issuesCleared, m_output, &OutputPanel::clearIssues);
    connect(m_build, &BuildFlow::issueFound, this, [this](const Issue &issue) {
        const QString file = m_workspace->displayName(issue.file);
        if (issue.kind == IssueKind::Error)
            m_output->addError(issue.text, file, issue.line, issue.column);
        else
            m_output->addWarning(issue.text, file, issue.line, issue.column);
    });
    connect(m_build, &BuildFlow::showErrorTab, this,
            [this] { m_output->showTab(OutputPanel::ErrorTab); });
    connect(m_build, &BuildFlow::toolchainMissing, this, [this](const QString &html) {
        QMessageBox::warning(this, QStringLiteral("编译"), html);
    });
    connect(m_build, &BuildFlow::progress, m_status, &StatusLine::showProgress);
    connect(m_build, &BuildFlow::statusChanged, m_status, &StatusLine::showMessage);
    connect(m_build, &BuildFlow::buildingChanged, this, [this](bool isBuilding) {
        if (!isBuilding)
            m_status->hideProgress();
        updateActions();
    });
    connect(m_build, &BuildFlow::runningChanged, this, &MainWindow::followRun);
    connect(m_build, &BuildFlow::runStarted, this, [this] {
        m_docks->raise(QStringLiteral("OutputDock"));
        m_output->showTab(OutputPanel::RunTab);
    });
    connect(m_build, &BuildFlow::runOutput, this,
            [this](const QString &text) { m_output->appendRunOutput(text); });
    connect(m_build, &BuildFlow::runFinished, this, [this](int exitCode) {
        m_output->appendRunOutput(QStringLiteral("程序已结束，退出代码 %1").arg(exitCode),
                                  colorOf(OutputKind::Hint));
    });
    connect(m_output, &OutputPanel::inputEntered, m_build, &BuildFlow::writeRunInput);
    connect(m_target, &BuildTarget::platformChanged, this, &MainWindow::onPlatformChanged);
    connect(m_target, &BuildTarget::configurationChanged, this, &MainWindow::onBuildConfigChanged);
}

bool MainWindow::hasActiveRun() const
{
    return m_build->hasRun(m_projects->currentProject().path);
}

void MainWindow::followRun()
{
    m_output->setInputEnabled(hasActiveRun());
    updateActions();
}

void MainWindow::showCompileOutput()
{
    m_docks->raise(QStringLiteral("OutputDock"));
    m_output->showTab(OutputPanel::CompileTab);
}

void MainWindow::onBuild()
{
    showCompileOutput();
    m_build->build();
}

void MainWindow::onRebuild()
{
    showCompileOutput();
    m_build->rebuild();
}

void MainWindow::onClean()
{
    showCompileOutput();
    m_build->clean();
}

void MainWindow::onRun()
{
    showCompileOutput();
    m_build->run();
}

void MainWindow::onDebug()
{
    showCompileOutput();
    m_build->debug();
}

void MainWindow::onStopRun()
{
    m_build->stopRun();
}

void MainWindow::onToggleBreakpoint()
{
    if (CodeEditor *editor = m_tabs->currentEditor())
        editor->toggleBreakpoint(editor->textCursor().blockNumber() + 1);
}

void MainWindow::onPlatformChanged(const QString &platform)
{
    m_status->showMessage(QStringLiteral("目标平台: %1").arg(platform));
}

void MainWindow::onBuildConfigChanged(const QString &configuration)
{
    m_status->showMessage(QStringLiteral("编译配置: %1").arg(configuration));
}

void MainWindow::onErrorItemClicked(const QString &file, int line, int column, const QString &)
{
    if (!file.isEmpty() && line > 0)
        goTo(file, line, column);
}
