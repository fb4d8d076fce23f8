#include "editor/code_navigation.h"

#include "frontend/class_index.h"
#include "frontend/keywords.h"

#include <algorithm>

namespace {

// Chains of members and brackets beyond these lengths, which nobody writes, mean nothing.
constexpr int maxChain = 16;
constexpr int maxBracketed = 2000; // tokens

bool isVariable(const CodeSymbol &symbol)
{
    return symbol.kind == SymbolKind::Parameter || symbol.kind == SymbolKind::Local;
}

bool isMember(const CodeSymbol &symbol)
{
    return symbol.kind == SymbolKind::Method || symbol.kind == SymbolKind::Property;
}

bool isClass(const CodeSymbol &symbol)
{
    return symbol.kind == SymbolKind::Class || symbol.kind == SymbolKind::TypeBlock;
}

bool isConstant(const CodeToken &token)
{
    return token.text.startsWith(QLatin1Char('#'));
}

// A constant of another file is called "#名".
QString formOf(const CodeToken &token)
{
    return normalizedName(isConstant(token) ? token.text.mid(1) : token.text);
}

} // namespace

QString CodeNavigation::memberKey(const QString &className, const QString &name)
{
    return normalizedName(className) + QLatin1Char('.') + normalizedName(name);
}

CodeNavigation::CodeNavigation(const QMap<QString, QString> &texts)
{
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        Source source;
        source.file = text.key();
        source.text = text.value();
        source.tokens = codeTokens(source.text);
        source.declarations = readDeclarations(source.text, source.tokens);
        m_sourceByFile.insert(source.file, m_sources.size());
        m_sources.append(source);
        read(m_sources.size() - 1);
    }
}

void CodeNavigation::read(int source)
{
    Source &read = m_sources[source];
    for (int i = 0; i < read.declarations.size(); ++i) {
        const CodeSymbol &symbol = read.declarations.at(i).symbol;
        const Ref declared{source, i};
        read.declarationAt.insert(read.declarations.at(i).name, i);
        if (isVariable(symbol)) {
            read.variables[normalizedName(symbol.name)].append(i);
            continue;
        }
        if (symbol.kind == SymbolKind::Function || symbol.kind == SymbolKind::EventFunction ||
            symbol.kind == SymbolKind::Method)
            read.routines.append(i);
        if (isMember(symbol))
            m_members[memberKey(symbol.owner, symbol.name)].append(declared);
        else if (symbol.kind != SymbolKind::EventFunction)
            m_globals[normalizedName(symbol.name)].append(declared);
    }
}

CodeNavigation::Ref CodeNavigation::tokenAt(const QString &file, int line, int column) const
{
    const int source = m_sourceByFile.value(file, -1);
    if (source < 0)
        return {};
    const QVector<CodeToken> &tokens = m_sources.at(source).tokens;
    const auto behind = std::upper_bound(tokens.cbegin(), tokens.cend(), qMakePair(line, column),
                                         [](const QPair<int, int> &at, const CodeToken &token) {
                                             return at < qMakePair(token.line, token.column);
                                         });
    // The token at the place, or the one that ends there.
    int index = int(behind - tokens.cbegin()) - 1;
    for (int i = 0; i < 2 && index >= 0; ++i, --index) {
        const CodeToken &token = tokens.at(index);
        const bool reaches = token.line == line && column <= token.column + token.end - token.start;
        if (token.type == Lexer::Identifier && reaches)
            return {source, index};
    }
    return {};
}

CodeNavigation::Refs CodeNavigation::sharing(const Ref &declared) const
{
    const CodeSymbol &symbol = declaration(declared).symbol;
    if (isVariable(symbol) || symbol.kind == SymbolKind::EventFunction)
        return {declared};
    return isMember(symbol) ? m_members.value(memberKey(symbol.owner, symbol.name))
                            : m_globals.value(normalizedName(symbol.name));
}

CodeNavigation::Ref CodeNavigation::shared(const Ref &declared) const
{
    return declared.isValid() ? sharing(declared).first() : declared;
}

CodeNavigation::Ref CodeNavigation::meaning(const Ref &name, int depth) const
{
    const Source &source = m_sources.at(name.source);
    if (depth > maxChain || token(name).type != Lexer::Identifier)
        return {};
    const auto declared = source.declarationAt.constFind(name.index);
    if (declared != source.declarationAt.cend())
        return shared({name.source, *declared});
    if (name.index < 2 || source.tokens.at(name.index - 1).type != Lexer::Dot)
        return plainMeaning(name);
    const QString type = typeEndingAt({name.source, name.index - 2}, depth + 1);
    const Refs members = m_members.value(memberKey(type, token(name).text));
    return type.isEmpty() || members.isEmpty() ? Ref() : members.first();
}

CodeNavigation::Ref CodeNavigation::plainMeaning(const Ref &name) const
{
    const QString form = formOf(token(name));
    if (isConstant(token(name))) {
        const Ref global = firstGlobal(form, false);
        const bool isGlobal =
            global.isValid() && declaration(global).symbol.kind == SymbolKind::Global;
        return isGlobal ? global : Ref();
    }
    const QVector<CodeToken> &tokens = m_sources.at(name.source).tokens;
    const CodeToken &next = tokens.at(qMin(name.index + 1, tokens.size() - 1));
    const bool isType = next.type == Lexer::Identifier && !next.startsLine;
    const Ref type = isType ? firstGlobal(form, true) : Ref();
    if (type.isValid())
        return type;
    const Ref local = variable(name, form);
    if (local.isValid())
        return local;
    const Ref routine = routineAround(name);
    if (routine.isValid() && declaration(routine).symbol.kind == SymbolKind::Method) {
        const QString owner = declaration(routine).symbol.owner;
        const Refs members = m_members.value(memberKey(owner, form));
        if (!members.isEmpty())
            return members.first();
    }
    return firstGlobal(form, false);
}

CodeNavigation::Ref CodeNavigation::firstGlobal(const QString &form, bool ofClasses) const
{
    const Refs globals = m_globals.value(form);
    const bool fits =
        !globals.isEmpty() && (!ofClasses || isClass(declaration(globals.first()).symbol));
    return fits ? globals.first() : Ref();
}

// The function whose parameters and body the name stands in.
CodeNavigation::Ref CodeNavigation::routineAround(const Ref &name) const
{
    const Source &source = m_sources.at(name.source);
    const auto behind = std::upper_bound(
        source.routines.cbegin(), source.routines.cend(), name.index,
        [&source](int index, int routine) { return index < source.declarations.at(routine).name; });
    if (behind == source.routines.cbegin())
        return {};
    const Ref routine{name.source, *(behind - 1)};
    return name.index < declaration(routine).scopeEnd ? routine : Ref();
}

// The parameter or local that is known there; of several the one declared last.
CodeNavigation::Ref CodeNavigation::variable(const Ref &name, const QString &form) const
{
    const Source &source = m_sources.at(name.source);
    const auto found = source.variables.constFind(form);
    const Ref routine = found == source.variables.cend() ? Ref() : routineAround(name);
    if (!routine.isValid())
        return {};
    const auto behind = std::upper_bound(
        found->cbegin(), found->cend(), name.index,
        [&source](int index, int local) { return index < source.declarations.at(local).name; });
    for (auto local = behind; local != found->cbegin();) {
        const CodeDeclaration &known = source.declarations.at(*--local);
        if (known.name < declaration(routine).name)
            break;
        if (name.index < known.scopeEnd)
            return {name.source, *local};
    }
    return {};
}

// The bracket that belongs to the one at hand.
CodeNavigation::Ref CodeNavigation::partner(const Ref &bracket) const
{
    const QVector<CodeToken> &tokens = m_sources.at(bracket.source).tokens;
    const int step = token(bracket).type == Lexer::RightParen ? -1 : 1;
    const int end = qBound(-1, bracket.index + step * maxBracketed, tokens.size());
    int depth = 0;
    for (int i = bracket.index; i != end; i += step) {
        if (tokens.at(i).type == Lexer::RightParen)
            depth -= step;
        else if (tokens.at(i).type == Lexer::LeftParen)
            depth += step;
        if (depth == 0)
            return {bracket.source, i};
    }
    return {};
}

// The class of the object that the expression ending there gives; empty if it is not known.
QString CodeNavigation::typeEndingAt(const Ref &end, int depth) const
{
    Ref name = end;
    if (token(end).type == Lexer::RightParen) {
        const Ref open = partner(end);
        if (!open.isValid() || open.index == 0)
            return QString();
        name.index = open.index - 1;
    }
    const Ref declared = meaning(name, depth);
    if (!declared.isValid())
        return QString();
    const CodeSymbol &symbol = declaration(declared).symbol;
    if (isClass(symbol))
        return symbol.name;
    const Keyword *word = findKeyword(symbol.type.constData(), symbol.type.size());
    return word && word->kind == Lexer::Var ? typeOfValue(declared, depth + 1) : symbol.type;
}

// "变量" holds what it is given at first: a call, a name or a member of one, and nothing else.
QString CodeNavigation::typeOfValue(const Ref &declared, int depth) const
{
    const QVector<CodeToken> &tokens = m_sources.at(declared.source).tokens;
    const auto kind = [&tokens](int index) { return tokens.value(index).type; };
    const int name = declaration(declared).name;
    Ref end{declared.source, name + 2};
    if (kind(name + 1) != Lexer::Assign || kind(end.index) != Lexer::Identifier)
        return QString();
    for (int links = 0; links < maxChain; ++links) {
        const int next = kind(end.index + 1);
        if (next == Lexer::LeftParen)
            end = partner({end.source, end.index + 1});
        else if (next == Lexer::Dot && kind(end.index + 2) == Lexer::Identifier)
            end.index += 2;
        else
            break;
        if (!end.isValid())
            return QString();
    }
    const CodeToken &behind = tokens.at(qMin(end.index + 1, tokens.size() - 1));
    const bool endsThere = behind.startsLine || behind.type == Lexer::Semicolon ||
                           behind.type == Lexer::Comma || behind.type == Lexer::RightBrace ||
                           behind.type == Lexer::EndOfFile;
    return endsThere ? typeEndingAt(end, depth) : QString();
}

// Of several declarations the one at hand, one in the same file, or the first.
CodeNavigation::Ref CodeNavigation::bestDeclaration(const Ref &name) const
{
    const Ref meant = name.isValid() ? meaning(name) : Ref();
    if (!meant.isValid())
        return meant;
    const QHash<int, int> &here = m_sources.at(name.source).declarationAt;
    if (here.contains(name.index))
        return {name.source, here.value(name.index)};
    const Refs all = sharing(meant);
    const auto near = std::find_if(all.cbegin(), all.cend(), [&name](const Ref &declared) {
        return declared.source == name.source;
    });
    return near == all.cend() ? meant : *near;
}

std::optional<CodeSymbol> CodeNavigation::symbolAt(const QString &file, int line, int column) const
{
    const Ref declared = bestDeclaration(tokenAt(file, line, column));
    return declared.isValid() ? std::make_optional(declaration(declared).symbol) : std::nullopt;
}

CodePlace CodeNavigation::definitionOf(const QString &file, int line, int column) const
{
    const Ref declared = bestDeclaration(tokenAt(file, line, column));
    return declared.isValid() ? place({declared.source, declaration(declared).name}) : CodePlace();
}

CodePlace CodeNavigation::place(const Ref &name) const
{
    const CodeToken &at = token(name);
    const int sign = isConstant(at) ? 1 : 0;
    return {m_sources.at(name.source).file, at.line, at.column + sign, at.end - at.start - sign};
}

CodeNavigation::Refs CodeNavigation::usages(const Ref &declared) const
{
    const CodeDeclaration &meant = declaration(declared);
    const QString form = normalizedName(meant.symbol.name);
    const bool isLocal = isVariable(meant.symbol);
    Refs found;
    for (int source = 0; source < m_sources.size(); ++source) {
        if (isLocal && source != declared.source)
            continue;
        const QVector<CodeToken> &tokens = m_sources.at(source).tokens;
        const int end = isLocal ? meant.scopeEnd : tokens.size();
        for (int i = isLocal ? meant.name : 0; i < end; ++i) {
            if (tokens.at(i).type == Lexer::Identifier && formOf(tokens.at(i)) == form &&
                meaning({source, i}) == declared)
                found.append({source, i});
        }
    }
    return found;
}

QVector<CodePlace> CodeNavigation::usagesOf(const QString &file, int line, int column) const
{
    const Ref name = tokenAt(file, line, column);
    const Ref declared = name.isValid() ? meaning(name) : Ref();
    QVector<CodePlace> places;
    if (declared.isValid()) {
        const Refs names = usages(declared);
        for (const Ref &used : names)
            places.append(place(used));
    }
    return places;
}
