#include "shell/command_help_browser.h"

#include "catalog/command_library.h"
#include "shell/command_help.h"

#include <QApplication>
#include <QClipboard>
#include <QTextDocument>

CommandHelpBrowser::CommandHelpBrowser(QWidget *parent) : QTextBrowser(parent)
{
    setAccessibleName(QStringLiteral("命令帮助"));
    setFrameShape(NoFrame);
    setOpenLinks(false);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    document()->setDocumentMargin(12);
    document()->setDefaultStyleSheet(
        QStringLiteral("h2 { color: #4fc3f7; margin: 0px; }"
                       "h4 { color: #9cdcfe; margin-top: 10px; margin-bottom: 2px; }"
                       ".category { color: #9a9a9a; font-size: small; font-weight: normal; }"
                       "p { margin: 2px 0px; }"
                       "pre { color: #d7ba7d; margin: 2px 0px; font-family: Consolas, 'Noto Sans "
                       "Mono', monospace; }"
                       ".name { color: #dcdcaa; padding-right: 16px; }"));
    showWelcome();
}

void CommandHelpBrowser::showCommand(const CommandInfo &command)
{
    setHtml(commandHelpHtml(command));
}

bool CommandHelpBrowser::showCommand(const QString &name)
{
    const CommandInfo *command = CommandLibrary::builtin().commandInfo(name);
    if (command)
        showCommand(*command);
    return command != nullptr;
}

void CommandHelpBrowser::showWelcome()
{
    setHtml(QStringLiteral("<p>💡 在左侧<span style='color:#4fc3f7'>支持库</span>中点击命令，"
                           "或在代码中输入函数名，这里会显示它的用法和例子。</p>"));
}

void CommandHelpBrowser::copySelectedOrAll()
{
    if (textCursor().hasSelection())
        copy();
    else
        QApplication::clipboard()->setText(toPlainText());
}
