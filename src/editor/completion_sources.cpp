#include "editor/completion_sources.h"

#include "catalog/command_library.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

bool isRoutine(const CodeSymbol &symbol)
{
    return symbol.kind == SymbolKind::Function || symbol.kind == SymbolKind::EventFunction ||
           symbol.kind == SymbolKind::Method;
}

bool isTypeName(const CodeSymbol &symbol)
{
    return symbol.kind == SymbolKind::Class || symbol.kind == SymbolKind::TypeBlock;
}

bool isMember(const CodeSymbol &symbol)
{
    return symbol.kind == SymbolKind::Method || symbol.kind == SymbolKind::Property;
}

bool isLocal(const CodeSymbol &symbol)
{
    return symbol.kind == SymbolKind::Local || symbol.kind == SymbolKind::Parameter;
}

CompletionKind kindOf(SymbolKind kind)
{
    switch (kind) {
    case SymbolKind::Function:
    case SymbolKind::EventFunction:
        return CompletionKind::UserFunction;
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
        break;
    }
    return CompletionKind::Variable;
}

QString withoutNumber(QString name)
{
    while (!name.isEmpty() && name.at(name.size() - 1).isDigit())
        name.chop(1);
    return name;
}

// The catalogue's record of a command, or of a member of a component; null where there is none.
const CommandInfo *commandOf(const QStringList &path, const CompletionTarget &owner)
{
    if (path.size() == 1)
        return CommandLibrary::builtin().commandInfo(path.first());
    const QString word = CompletionVocabulary::instance().componentWord(owner.componentType);
    return CommandLibrary::builtin().commandInfo(word + QLatin1Char('.') + path.last());
}

} // namespace

template <typename Wanted>
const CodeSymbol *CompletionSources::findSymbol(Wanted isWanted) const
{
    for (const CodeSymbols *symbols : {&m_documentSymbols, &m_projectSymbols}) {
        const auto found = std::find_if(symbols->begin(), symbols->end(), isWanted);
        if (found != symbols->end())
            return &*found;
    }
    return nullptr;
}

template <typename Visit>
void CompletionSources::visitSymbols(Visit visit) const
{
    for (const CodeSymbols *symbols : {&m_documentSymbols, &m_projectSymbols})
        std::for_each(symbols->begin(), symbols->end(), visit);
}

void CompletionSources::setComponents(const QVector<CompletionComponent> &components)
{
    m_components = components;
    m_hasWords = false;
}

void CompletionSources::setProjectSymbols(const CodeSymbols &symbols)
{
    m_projectSymbols = symbols;
    m_hasWords = false;
}

void CompletionSources::setDocumentSymbols(const CodeSymbols &symbols)
{
    m_documentSymbols = symbols;
    m_hasWords = false;
}

const CodeSymbol *CompletionSources::routineAt(const CompletionPlace &place) const
{
    const CodeSymbol *found = nullptr;
    for (const CodeSymbol &symbol : m_documentSymbols) {
        if (symbol.line > place.line)
            break;
        if (isRoutine(symbol) && place.line <= symbol.endLine + place.addedLines)
            found = &symbol;
    }
    return found;
}

CompletionCandidate CompletionSources::symbolCandidate(const CodeSymbol &symbol)
{
    CompletionItem item;
    item.text = symbol.name;
    item.display = symbol.name;
    item.kind = kindOf(symbol.kind);
    item.detail = isTypeName(symbol)           ? item.kindWord()
                  : symbol.signature.isEmpty() ? symbol.type
                                               : symbol.signature;
    item.takesParameters = formTakesParameters(symbol.signature);
    return {item, m_names.prepared(symbol.name), {}};
}

const CompletionCandidates &CompletionSources::words(const CompletionPlace &place)
{
    const CodeSymbol *routine = routineAt(place);
    if (!m_hasWords || routine != m_wordsRoutine)
        buildWords(routine);
    return m_words;
}

// What is nearer hides what has the same name farther off.
void CompletionSources::buildWords(const CodeSymbol *routine)
{
    m_words.clear();
    QSet<QString> names;
    const auto add = [&](const CodeSymbol &symbol) {
        if (names.contains(symbol.name))
            return;
        names.insert(symbol.name);
        m_words.append(symbolCandidate(symbol));
    };
    for (const CodeSymbol &symbol : qAsConst(m_documentSymbols)) {
        if (routine && isLocal(symbol) && symbol.line >= routine->line &&
            symbol.line <= routine->endLine)
            add(symbol);
    }
    for (const CodeSymbol &symbol : qAsConst(m_documentSymbols)) {
        if (routine && routine->kind == SymbolKind::Method && isMember(symbol) &&
            symbol.owner == routine->owner)
            add(symbol);
    }
    visitSymbols([&](const CodeSymbol &symbol) {
        if (symbol.kind == SymbolKind::Global || symbol.kind == SymbolKind::Function ||
            isTypeName(symbol))
            add(symbol);
    });
    for (const CompletionComponent &component : qAsConst(m_components)) {
        if (names.contains(component.name))
            continue;
        names.insert(component.name);
        CompletionItem item;
        item.text = component.name;
        item.display = component.name;
        item.kind = CompletionKind::Component;
        item.detail = CompletionVocabulary::instance().componentWord(component.typeKey);
        m_words.append({item, m_names.prepared(component.name), {}});
    }
    for (const CompletionCandidate &word : CompletionVocabulary::instance().words()) {
        if (!names.contains(word.item.text))
            m_words.append(word);
    }
    m_wordsRoutine = routine;
    m_hasWords = true;
}

CompletionCandidates CompletionSources::userFunctions()
{
    CompletionCandidates functions;
    QSet<QString> names;
    visitSymbols([&](const CodeSymbol &symbol) {
        if (symbol.kind != SymbolKind::Function || names.contains(symbol.name))
            return;
        names.insert(symbol.name);
        functions.append(symbolCandidate(symbol));
    });
    return functions;
}

const CompletionComponent *CompletionSources::component(const QString &name) const
{
    for (const CompletionComponent &component : m_components) {
        if (component.name == name)
            return &component;
    }
    return nullptr;
}

// The declaration nearest to the place; the text knows those that came since the last reading.
QString CompletionSources::typeOfName(const QString &name, const CompletionPlace &place) const
{
    const CodeSymbol *routine = routineAt(place);
    QString type;
    for (const CodeSymbol &symbol : m_documentSymbols) {
        if (routine && symbol.name == name && isLocal(symbol) && symbol.line >= routine->line &&
            symbol.line <= routine->endLine)
            type = symbol.type;
    }
    if (!type.isEmpty())
        return type;
    if (routine && routine->kind == SymbolKind::Method) {
        if (const CodeSymbol *member = memberSymbol(routine->owner, name))
            return member->type;
    }
    const CodeSymbol *global = findSymbol([&](const CodeSymbol &symbol) {
        return symbol.kind == SymbolKind::Global && symbol.name == name;
    });
    return global ? global->type : declaredType(name, place.code);
}

// Only the word of a class counts: all others may be part of any statement.
QString CompletionSources::declaredType(const QString &name, const QString &code) const
{
    const QRegularExpression declaration(
        QStringLiteral(R"((?<![\w\x{4e00}-\x{9fff}])([\w\x{4e00}-\x{9fff}]++)[ \t]++%1)"
                       R"((?![\w\x{4e00}-\x{9fff}]))")
            .arg(QRegularExpression::escape(name)));
    QString type;
    for (auto it = declaration.globalMatch(code); it.hasNext();) {
        const QString word = it.next().captured(1);
        if (isClass(word))
            type = word;
    }
    return type;
}

bool CompletionSources::isClass(const QString &name) const
{
    return CompletionVocabulary::instance().isBuiltinClass(name) ||
           findSymbol(
               [&](const CodeSymbol &symbol) { return isTypeName(symbol) && symbol.name == name; });
}

CompletionTarget CompletionSources::targetOfType(const QString &type) const
{
    if (isClass(type))
        return {QString(), type};
    return {CompletionVocabulary::instance().componentWord(type), QString()};
}

// A component that no form tells of is known by a name like those that forms give.
CompletionTarget CompletionSources::firstTarget(const QString &name,
                                                const CompletionPlace &place) const
{
    const QString type = typeOfName(name, place);
    if (!type.isEmpty())
        return targetOfType(type);
    if (const CompletionComponent *found = component(name))
        return {found->typeKey, QString()};
    return {CompletionVocabulary::instance().componentWord(withoutNumber(name)), QString()};
}

const CodeSymbol *CompletionSources::memberSymbol(const QString &className,
                                                  const QString &member) const
{
    return findSymbol([&](const CodeSymbol &symbol) {
        return isMember(symbol) && symbol.owner == className && symbol.name == member;
    });
}

// A member of a component that is of interest is a component on it.
CompletionTarget CompletionSources::memberTarget(const CompletionTarget &owner,
                                                 const QString &member) const
{
    if (!owner.componentType.isEmpty()) {
        const CompletionComponent *found = component(member);
        return found ? CompletionTarget{found->typeKey, QString()}
                     : targetOfType(withoutNumber(member));
    }
    if (const CodeSymbol *symbol = memberSymbol(owner.className, member))
        return targetOfType(symbol->type);
    return targetOfType(CompletionVocabulary::instance().memberType(owner.className, member));
}

CompletionTarget CompletionSources::target(const QStringList &path,
                                           const CompletionPlace &place) const
{
    if (path.isEmpty())
        return {};
    CompletionTarget target = firstTarget(path.first(), place);
    for (int i = 1; i < path.size() && !target.isEmpty(); ++i)
        target = memberTarget(target, path.at(i));
    return target;
}

CompletionCandidates CompletionSources::members(const CompletionTarget &target)
{
    if (!target.componentType.isEmpty())
        return CompletionVocabulary::instance().componentMembers(target.componentType);
    CompletionCandidates members;
    visitSymbols([&](const CodeSymbol &symbol) {
        if (isMember(symbol) && !symbol.owner.isEmpty() && symbol.owner == target.className)
            members.append(symbolCandidate(symbol));
    });
    return members + CompletionVocabulary::instance().classMembers(target.className);
}

const CodeSymbol *CompletionSources::calledSymbol(const QStringList &path,
                                                  const CompletionTarget &owner,
                                                  const CompletionPlace &place) const
{
    const CodeSymbol *routine = routineAt(place);
    const bool isInMethod = routine && routine->kind == SymbolKind::Method;
    const QString className = path.size() > 1 ? owner.className
                              : isInMethod    ? routine->owner
                                              : QString();
    const CodeSymbol *method = className.isEmpty() ? nullptr : memberSymbol(className, path.last());
    if (method && method->kind == SymbolKind::Method)
        return method;
    if (path.size() > 1)
        return nullptr;
    return findSymbol([&](const CodeSymbol &symbol) {
        return symbol.kind == SymbolKind::Function && symbol.name == path.last();
    });
}

QStringList CompletionSources::callForms(const QStringList &path,
                                         const CompletionPlace &place) const
{
    const QString &name = path.last();
    const CompletionTarget owner = target(path.mid(0, path.size() - 1), place);
    if (const CodeSymbol *called = calledSymbol(path, owner, place))
        return {called->signature};
    const CommandInfo *command = commandOf(path, owner);
    if (!command)
        return {};
    QStringList forms;
    for (const QString &line : command->syntax.split(QLatin1Char('\n'))) {
        const int open = line.indexOf(QLatin1Char('('));
        if (command->type == QStringLiteral("语法")) {
            // The other lines are those of its body.
            if (line.startsWith(name) && open >= 0)
                forms << line.left(line.lastIndexOf(QLatin1Char(')')) + 1);
        } else if (open >= 0) {
            forms << path.join(QLatin1Char('.')) + line.mid(open);
        }
    }
    return forms;
}

QString CompletionSources::record(const QStringList &path, const CompletionPlace &place) const
{
    const CompletionTarget owner = target(path.mid(0, path.size() - 1), place);
    const CommandInfo *command = commandOf(path, owner);
    return command ? command->name : QString();
}
