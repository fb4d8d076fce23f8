#include "shell/outline_tree.h"

#include "editor/pinyin_initials.h"
#include "frontend/class_index.h"

#include <QHash>

namespace {

CompletionKind kindOf(SymbolKind kind)
{
    switch (kind) {
    case SymbolKind::EventFunction:
        return CompletionKind::Event;
    case SymbolKind::Class:
    case SymbolKind::TypeBlock:
        return CompletionKind::Type;
    case SymbolKind::Method:
        return CompletionKind::Method;
    case SymbolKind::Property:
        return CompletionKind::Property;
    case SymbolKind::Global:
    case SymbolKind::Parameter:
    case SymbolKind::Local:
        return CompletionKind::Variable;
    case SymbolKind::Function:
        break;
    }
    return CompletionKind::UserFunction;
}

QString markOf(CompletionKind kind, bool takesParameters)
{
    CompletionItem item;
    item.kind = kind;
    item.takesParameters = takesParameters;
    return item.prefix();
}

OutlineNode nodeOf(const CodeSymbol &symbol)
{
    OutlineNode node;
    node.kind = kindOf(symbol.kind);
    node.name = symbol.name;
    node.line = symbol.line;
    node.endLine = symbol.endLine;
    const bool takesParameters = !symbol.signature.contains(QLatin1String("()"));
    // The component of an event is the group's.
    QString shown = symbol.signature.isEmpty() ? symbol.name : symbol.signature;
    if (symbol.kind == SymbolKind::EventFunction)
        shown.remove(0, symbol.owner.size() + 1);
    else if (symbol.signature.isEmpty() && !symbol.type.isEmpty())
        shown += QStringLiteral(": ") + symbol.type;
    node.text = markOf(node.kind, takesParameters) + shown;
    return node;
}

class OutlineBuilder
{
public:
    QVector<OutlineNode> build(const CodeSymbols &symbols)
    {
        for (const CodeSymbol &symbol : symbols) {
            if (symbol.kind == SymbolKind::Class || symbol.kind == SymbolKind::TypeBlock)
                m_groups.insert(normalizedName(symbol.name), addTop(nodeOf(symbol)));
            else if (symbol.kind == SymbolKind::EventFunction)
                addEvent(symbol);
            else if (symbol.kind == SymbolKind::Function || symbol.kind == SymbolKind::Global)
                addTop(nodeOf(symbol));
        }
        // A method may stand ahead of its class.
        for (const CodeSymbol &symbol : symbols) {
            const bool isMember =
                symbol.kind == SymbolKind::Method || symbol.kind == SymbolKind::Property;
            const int group = isMember ? m_groups.value(normalizedName(symbol.owner), -1) : -1;
            if (group >= 0)
                add(&m_nodes[group].children, nodeOf(symbol), m_nodes.at(group).key);
        }
        return m_nodes;
    }

private:
    void addEvent(const CodeSymbol &symbol)
    {
        const QString form = normalizedName(symbol.owner);
        int group = m_groups.value(form, -1);
        if (group < 0) {
            OutlineNode component;
            component.kind = CompletionKind::Component;
            component.name = symbol.owner;
            component.text = markOf(component.kind, true) + symbol.owner;
            component.line = symbol.line;
            group = addTop(component);
            m_groups.insert(form, group);
        }
        add(&m_nodes[group].children, nodeOf(symbol), m_nodes.at(group).key);
    }
    int addTop(const OutlineNode &node)
    {
        add(&m_nodes, node, QString());
        return m_nodes.size() - 1;
    }
    // Overloads and mistakes share a name; their number tells them apart.
    void add(QVector<OutlineNode> *nodes, OutlineNode node, const QString &parentKey)
    {
        const QString key = QStringLiteral("%1/%2 %3")
                                .arg(parentKey)
                                .arg(int(node.kind))
                                .arg(normalizedName(node.name));
        node.key = QStringLiteral("%1 %2").arg(key).arg(m_counts[key]++);
        nodes->append(node);
    }

    QVector<OutlineNode> m_nodes;
    QHash<QString, int> m_groups; // classes and components by name in NFKC
    QHash<QString, int> m_counts;
};

} // namespace

QString OutlineNode::range() const
{
    if (endLine < line)
        return QString();
    return endLine == line ? QString::number(line) : QStringLiteral("%1-%2").arg(line).arg(endLine);
}

QVector<OutlineNode> outlineOf(const CodeSymbols &symbols)
{
    return OutlineBuilder().build(symbols);
}

bool meansOutlineName(const QString &query, const QString &name)
{
    return query.isEmpty() || name.contains(query, Qt::CaseInsensitive) ||
           (isLatinOnly(query) && matchesPinyin(query, name));
}
