// What the main window shows and hides.
#include "shell/mainwindow.h"

#include "shell/action_set.h"
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"

#include <QAction>
#include <QDockWidget>

void MainWindow::toggleDock(const char *name)
{
    QDockWidget *dock = m_docks->dock(QString::fromLatin1(name));
    // One behind another is brought to the front first.
    if (dock->isVisible() && !dock->visibleRegion().isEmpty())
        dock->hide();
    else
        m_docks->raise(dock->objectName());
    syncViewMenuCheckStates();
}

void MainWindow::onToggleToolbox()
{
    toggleDock("ToolboxDock");
}

void MainWindow::onToggleProperties()
{
    toggleDock("PropertiesDock");
}

void MainWindow::onToggleCodeOutline()
{
    toggleDock("CodeOutlineDock");
}

void MainWindow::onToggleOutput()
{
    toggleDock("OutputDock");
}

void MainWindow::onToggleProjectExplorer()
{
    toggleDock("ProjectExplorerDock");
}

void MainWindow::onToggleCommandLibrary()
{
    toggleDock("CommandLibDock");
}

void MainWindow::onToggleComponentList()
{
    toggleDock("ComponentListDock");
}

void MainWindow::syncViewMenuCheckStates()
{
    const QHash<QString, QString> docks = m_actions->docks();
    for (auto row = docks.begin(); row != docks.end(); ++row)
        m_actions->action(row.key())->setChecked(!m_docks->dock(row.value())->isHidden());
}

void MainWindow::onZoomIn()
{
    if (CodeEditor *editor = m_tabs->currentEditor())
        editor->zoomBy(1);
}

void MainWindow::onZoomOut()
{
    if (CodeEditor *editor = m_tabs->currentEditor())
        editor->zoomBy(-1);
}

void MainWindow::onZoomReset()
{
    if (CodeEditor *editor = m_tabs->currentEditor())
        editor->resetZoom();
}

void MainWindow::onFullScreen()
{
    QWidget *frame = window();
    frame->setWindowState(frame->windowState() ^ Qt::WindowFullScreen);
}

void MainWindow::onResetLayout()
{
    m_docks->reset();
    syncViewMenuCheckStates();
}
