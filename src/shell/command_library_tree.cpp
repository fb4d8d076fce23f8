#include "shell/command_library_tree.h"

#include "catalog/command_library.h"

#include <QStringList>

#include <algorithm>

namespace {

// Below are names with typing mistakes, which completion offers; who looks something up sees it.
constexpr int leastScore = 65;
// Below all that begin with what was typed.
constexpr int insideScore = 40;
constexpr int insideInitialsScore = 20;
constexpr int shortestInitials = 2;

QStringList pathOf(const CommandInfo &command)
{
    QStringList path = command.category.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (path.isEmpty())
        path << QStringLiteral("其他");
    if (!command.memberOf.isEmpty() && !path.contains(command.memberOf))
        path << command.memberOf;
    return path;
}

CommandCategory &childOf(CommandCategory &parent, const QString &title)
{
    const auto known = std::find_if(parent.children.begin(), parent.children.end(),
                                    [&](const auto &child) { return child.title == title; });
    if (known != parent.children.end())
        return *known;
    parent.children.push_back({title, {}, {}});
    return parent.children.back();
}

int points(const CompletionQuery &query, const CompletionName &name, const CommandInfo &command)
{
    int best = score(query, name);
    best = best < leastScore ? 0 : best;
    for (const QString &alias : command.aliases) {
        const QString word = alias.mid(alias.lastIndexOf(QLatin1Char('.')) + 1);
        if (!query.asksForConstant())
            best = std::max(best, std::min(aliasScore(query, word), 85));
    }
    if (best > 0 || query.asksForConstant())
        return best;
    const bool isInside = name.lower().contains(query.text()) ||
                          command.name.contains(query.text(), Qt::CaseInsensitive);
    if (isInside)
        return insideScore;
    const bool isInInitials = query.isLatin() && query.text().size() >= shortestInitials &&
                              name.initials().contains(query.text());
    return isInInitials ? insideInitialsScore : 0;
}

} // namespace

int CommandCategory::commandCount() const
{
    int count = commands.size();
    for (const CommandCategory &child : children)
        count += child.commandCount();
    return count;
}

CommandCategory commandTree(const QList<const CommandInfo *> &commands)
{
    CommandCategory top;
    for (const CommandInfo *command : commands) {
        CommandCategory *category = &top;
        for (const QString &title : pathOf(*command))
            category = &childOf(*category, title);
        category->commands << command;
    }
    return top;
}

QList<const CommandInfo *> commandsByCategory(const CommandLibrary &library)
{
    QList<const CommandInfo *> commands;
    for (const CommandInfo &command : library.allCommands())
        commands << &command;
    std::stable_sort(commands.begin(), commands.end(),
                     [](const CommandInfo *a, const CommandInfo *b) {
                         return a->category.localeAwareCompare(b->category) < 0;
                     });
    return commands;
}

QString commandCaption(const CommandInfo &command)
{
    const QString component = command.memberOf + QLatin1Char('.');
    const bool isMember = !command.memberOf.isEmpty() && command.name.startsWith(component);
    return isMember ? command.name.mid(component.size()) : command.name;
}

CommandSearch::CommandSearch(const CommandLibrary &library)
{
    for (const CommandInfo &command : library.allCommands())
        m_entries.push_back({&command, CompletionName(commandCaption(command))});
}

QList<const CommandInfo *> CommandSearch::find(const QString &typed) const
{
    const QString text = typed.trimmed();
    if (text.isEmpty())
        return {};
    const CompletionQuery query(text);
    std::vector<std::pair<int, const CommandInfo *>> found;
    for (const Entry &entry : m_entries) {
        if (const int value = points(query, entry.name, *entry.command))
            found.emplace_back(value, entry.command);
    }
    // What can be called at once comes before members.
    const auto rank = [](const auto &hit) {
        return std::make_pair(hit.first, hit.second->memberOf.isEmpty());
    };
    std::stable_sort(found.begin(), found.end(),
                     [&rank](const auto &a, const auto &b) { return rank(a) > rank(b); });
    QList<const CommandInfo *> commands;
    for (const auto &hit : found)
        commands << hit.second;
    return commands;
}
