// The built-in commands by category, and finding some of them.
#pragma once

#include "editor/completion_score.h"

#include <QList>
#include <QString>

#include <vector>

class CommandLibrary;
struct CommandInfo;

// A category with what is directly in it. The records belong to their library.
struct CommandCategory
{
    // With those of all sub-categories.
    int commandCount() const;

    QString title;
    std::vector<CommandCategory> children;
    QList<const CommandInfo *> commands;
};

// The categories in the order in which `commands` first name them; "一/二" is 二 in 一. A member of
// a component stands below its component. The top itself has no title.
CommandCategory commandTree(const QList<const CommandInfo *> &commands);

// All records of the library, categories by name.
QList<const CommandInfo *> commandsByCategory(const CommandLibrary &library);

// What a command is called within its category: a member without its component.
QString commandCaption(const CommandInfo &command);

// Finds commands by a part of their name, its pinyin initials or an alias. `library` must outlive
// the search.
class CommandSearch
{
public:
    explicit CommandSearch(const CommandLibrary &library);

    // The best first; nothing for an empty text.
    QList<const CommandInfo *> find(const QString &typed) const;

private:
    struct Entry
    {
        const CommandInfo *command;
        CompletionName name;
    };

    std::vector<Entry> m_entries;
};
