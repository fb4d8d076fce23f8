// Renaming: what it changes, and why it must not be done.
#include "editor/code_navigation.h"

#include "catalog/command_library.h"
#include "frontend/class_index.h"
#include "frontend/keywords.h"

namespace {

// Names that the language itself looks for, and words that mean something where a name may stand.
bool isFixed(const CodeSymbol &symbol)
{
    return (symbol.kind == SymbolKind::Function && symbol.name == QStringLiteral("主函数")) ||
           (symbol.kind == SymbolKind::Method && symbol.name == QStringLiteral("构造"));
}

bool isReserved(const QString &name)
{
    static const QStringList words{QStringLiteral("全局"), QStringLiteral("类型"),
                                   QStringLiteral("任意")};
    return findKeyword(name.constData(), name.size()) || words.contains(name);
}

bool isIdentifier(const QString &name)
{
    const QVector<CodeToken> tokens = codeTokens(name);
    return tokens.size() == 2 && tokens.at(0).type == Lexer::Identifier &&
           tokens.at(0).text == name && !name.startsWith(QLatin1Char('#'));
}

// Whether the ranges in which two variables are known have a token in common.
bool overlap(const CodeDeclaration &a, const CodeDeclaration &b)
{
    return a.name < b.scopeEnd && b.name < a.scopeEnd;
}

} // namespace

CodeRename CodeNavigation::renameEdits(const QString &file, int line, int column,
                                       const QString &newName) const
{
    CodeRename rename;
    const Ref name = tokenAt(file, line, column);
    const Ref declared = name.isValid() ? meaning(name) : Ref();
    if (!declared.isValid()) {
        rename.refusal = QStringLiteral("这里没有可以改名的名称");
        return rename;
    }
    rename.refusal = refusal(declared, newName);
    if (!rename.refusal.isEmpty())
        return rename;
    const Refs names = usages(declared);
    if (!keepsMeanings(names, newName)) {
        rename.refusal =
            QStringLiteral("改名后，「%1」会与用到它的地方的另一个同名名称混淆").arg(newName);
        return rename;
    }
    for (const Ref &used : names)
        rename.edits.append(place(used));
    return rename;
}

QString CodeNavigation::refusal(const Ref &declared, const QString &newName) const
{
    const CodeSymbol &symbol = declaration(declared).symbol;
    if (symbol.kind == SymbolKind::EventFunction)
        return QStringLiteral("事件函数的名称由组件和事件决定，不能改名");
    if (isFixed(symbol))
        return QStringLiteral("「%1」是语言规定的名称，不能改名").arg(symbol.name);
    if (newName.isEmpty())
        return QStringLiteral("新名称不能为空");
    if (isReserved(newName))
        return QStringLiteral("「%1」是关键字，不能用作名称").arg(newName);
    if (!isIdentifier(newName))
        return QStringLiteral("「%1」不是合法的名称").arg(newName);
    if (newName == symbol.name)
        return QStringLiteral("新名称与原名称相同");
    const CommandInfo *command = CommandLibrary::builtin().commandInfo(newName);
    if (command && command->isCallable())
        return QStringLiteral("「%1」是命令的名称，不能用作名称").arg(newName);
    const Refs alike = namedAlike(declared, newName);
    if (alike.isEmpty())
        return QString();
    const CodePlace other = place({alike.first().source, declaration(alike.first()).name});
    return QStringLiteral("「%1」已经存在（%2 第 %3 行）")
        .arg(newName, other.file, QString::number(other.line));
}

// What would be declared twice.
CodeNavigation::Refs CodeNavigation::namedAlike(const Ref &declared, const QString &newName) const
{
    const CodeDeclaration &meant = declaration(declared);
    const QString form = normalizedName(newName);
    // Another way to write the same name.
    if (form == normalizedName(meant.symbol.name))
        return {};
    switch (meant.symbol.kind) {
    case SymbolKind::Parameter:
    case SymbolKind::Local: {
        const Source &source = m_sources.at(declared.source);
        const QVector<int> others = source.variables.value(form);
        for (const int other : others) {
            if (overlap(meant, source.declarations.at(other)))
                return {{declared.source, other}};
        }
        return {};
    }
    case SymbolKind::Method:
    case SymbolKind::Property:
        return m_members.value(memberKey(meant.symbol.owner, newName));
    default:
        return m_globals.value(form);
    }
}

// Renames in a copy and looks whether the same places, and no others, still share one meaning.
bool CodeNavigation::keepsMeanings(const Refs &names, const QString &newName) const
{
    QMap<QString, QString> texts;
    for (const Source &source : m_sources)
        texts.insert(source.file, source.text);
    for (int i = names.size() - 1; i >= 0; --i) {
        const Source &source = m_sources.at(names.at(i).source);
        const CodeToken &at = token(names.at(i));
        const int length = place(names.at(i)).length;
        texts[source.file].replace(at.end - length, length, newName);
    }
    // The tokens keep their numbers.
    const CodeNavigation renamed(texts);
    const Ref meant = renamed.meaning(names.first());
    return meant.isValid() && renamed.usages(meant) == names;
}
