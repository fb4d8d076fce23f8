// Tools and settings of the main window.
#include "shell/mainwindow.h"

#include "catalog/command_library.h"
#include "settings/settings_store.h"
#include "shell/build_target.h"
#include "shell/color_picker_tool.h"
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/json_tool.h"
#include "shell/output_panel.h"
#include "shell/settings_dialog.h"
#include "shell/snippet_dialog.h"
#include "shell/snippet_manager.h"
#include "shell/status_line.h"
#include "shell/string_tool.h"

#include <QFileInfo>

void MainWindow::insertInEditor(const QString &text)
{
    CodeEditor *editor = m_tabs->currentEditor();
    if (!editor) {
        m_status->showMessage(QStringLiteral("请先打开一个文件。"));
        return;
    }
    editor->insertPlainText(text);
    editor->setFocus();
}

// Tools stay open beside the work.
void MainWindow::showTool(QDialog *tool)
{
    tool->setAttribute(Qt::WA_DeleteOnClose);
    tool->show();
}

void MainWindow::onColorPicker()
{
    auto *tool = new ColorPickerTool(this);
    connect(tool, &ColorPickerTool::insertRequested, this, &MainWindow::insertInEditor);
    showTool(tool);
}

void MainWindow::onJsonTool()
{
    showTool(new JsonTool(this));
}

void MainWindow::onStringTool()
{
    showTool(new StringTool(this));
}

void MainWindow::onSnippetManager()
{
    SnippetDialog dialog(*m_snippets, this);
    connect(&dialog, &SnippetDialog::insertRequested, this, &MainWindow::insertInEditor);
    dialog.exec();
}

void MainWindow::showSettings(SettingsDialog::Page page)
{
    SettingsDialog dialog(m_settings, this);
    dialog.showPage(page);
    connect(&dialog, &SettingsDialog::settingsChanged, this, &MainWindow::applySettings);
    connect(&dialog, &SettingsDialog::settingsChanged, m_target, &BuildTarget::resetConfiguration);
    connect(&dialog, &SettingsDialog::editorBackgroundLivePreview, this,
            [this](const QString &image, int opacity) {
                for (CodeEditor *editor : m_tabs->editors())
                    editor->setBackgroundImage(image, opacity);
            });
    dialog.exec();
}

void MainWindow::onSettings()
{
    showSettings(SettingsDialog::Page::Editor);
}

void MainWindow::onThemeManager()
{
    showSettings(SettingsDialog::Page::Colors);
}

void MainWindow::onBuildSettings()
{
    showSettings(SettingsDialog::Page::Compiler);
}

void MainWindow::onCommandSelected(const QString &name)
{
    m_docks->raise(QStringLiteral("OutputDock"));
    m_output->showCommandHelp(name);
}

// With its brackets, and the cursor between them when something stands there.
void MainWindow::onCommandDoubleClicked(const QString &name)
{
    const CommandInfo *command = CommandLibrary::builtin().commandInfo(name);
    if (!command || !m_tabs->currentEditor())
        return;
    insertInEditor(name);
    if (!command->isCallable())
        return;
    CodeEditor *editor = m_tabs->currentEditor();
    editor->insertPlainText(QStringLiteral("()"));
    if (!command->parameters.isEmpty())
        editor->moveCursor(QTextCursor::Left);
    editor->updateParamHint();
}
