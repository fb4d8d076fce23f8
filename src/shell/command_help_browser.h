// CommandHelpBrowser: the help of one command.
#pragma once

#include <QTextBrowser>

struct CommandInfo;

class CommandHelpBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    explicit CommandHelpBrowser(QWidget *parent = nullptr);

    void showCommand(const CommandInfo &command);
    // Looks `name` up in the built-in catalogue. False without such a command; the view then stays.
    [[nodiscard]] bool showCommand(const QString &name);
    // The first view: where to find commands.
    void showWelcome();
    // Copies the selection, or everything without one.
    void copySelectedOrAll();
};
