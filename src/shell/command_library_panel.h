// CommandLibraryPanel: the built-in commands, to look up and to insert.
#pragma once

#include "shell/command_library_tree.h"

#include <QIcon>
#include <QWidget>

#include <optional>

class QLabel;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

// The rows of a category are made when it is opened.
class CommandLibraryPanel : public QWidget
{
    Q_OBJECT

public:
    // `library` must outlive the panel.
    explicit CommandLibraryPanel(const CommandLibrary &library, QWidget *parent = nullptr);

signals:
    // A click, or the arrow keys: its help is wanted.
    void commandSelected(const QString &name);
    // A double click or Enter: it is to be inserted.
    void commandDoubleClicked(const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createTree();
    void showFilter(const QString &text);
    void showCommands(const QList<const CommandInfo *> &commands, bool openAll);
    void addCategories(QTreeWidgetItem *parent, const CommandCategory &category);
    void fill(QTreeWidgetItem *item);
    void openFirst();
    void goToFirstCommand();

    const CommandLibrary &m_library;
    QIcon m_categoryIcon;
    std::optional<CommandSearch> m_search; // made for the first filter
    CommandCategory m_top;                 // what the tree shows
    QLineEdit *m_filter;
    QTreeWidget *m_tree;
    QLabel *m_nothing;
};
