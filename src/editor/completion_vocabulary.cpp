#include "editor/completion_vocabulary.h"

#include "catalog/command_library.h"
#include "catalog/command_syntax.h"
#include "catalog/json_table.h"
#include "editor/highlight_rules.h"
#include "frontend/keywords.h"
#include "frontend/parser.h"
#include "frontend/type_words.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

namespace {

bool isName(const QString &text)
{
    static const QRegularExpression name(QStringLiteral(R"(^[\w\x{4e00}-\x{9fff}]+$)"));
    return name.match(text).hasMatch();
}

bool isChineseName(const QString &text)
{
    return isName(text) && text.at(0).unicode() > 0x7F;
}

CompletionItem item(CompletionKind kind, const QString &name, const QString &detail)
{
    CompletionItem result;
    result.text = name;
    result.display = name;
    result.kind = kind;
    result.detail = detail;
    return result;
}

CompletionItem wordItem(CompletionKind kind, const QString &word)
{
    CompletionItem result = item(kind, word, QString());
    result.detail = result.kindWord();
    if (const CommandInfo *record = CommandLibrary::builtin().commandInfo(word))
        result.record = record->name;
    return result;
}

CompletionKind memberKind(const CommandInfo &record)
{
    if (record.type == QStringLiteral("方法"))
        return CompletionKind::Method;
    return record.type == QStringLiteral("事件") ? CompletionKind::Event : CompletionKind::Property;
}

// A member under one of its names. The detail of a method or event is its form without an object.
CompletionItem memberItem(const CommandInfo &record, const QString &name)
{
    CompletionItem result = item(memberKind(record), name, record.returnType);
    result.record = record.name;
    if (result.kind != CompletionKind::Property) {
        const QString form = record.syntax.section(QLatin1Char('\n'), 0, 0);
        result.detail = name + form.mid(qMax(0, form.indexOf(QLatin1Char('('))));
        result.takesParameters = formTakesParameters(record.syntax);
    }
    return result;
}

} // namespace

CompletionCandidate completionCandidate(const CompletionItem &item, const QStringList &aliases,
                                        PinyinMatching pinyin)
{
    return {item, CompletionName(item.soughtName(), pinyin), aliases};
}

bool formTakesParameters(const QString &form)
{
    if (form.contains(QStringLiteral("（无）")) || form.contains(QStringLiteral("(无)")))
        return false;
    for (const CommandOverload &overload : readCommandSyntax(form)) {
        if (!overload.parameters.isEmpty() || overload.variadic)
            return true;
    }
    return false;
}

const CompletionVocabulary &CompletionVocabulary::instance()
{
    static const CompletionVocabulary vocabulary;
    return vocabulary;
}

// Among equals completion keeps this order.
CompletionVocabulary::CompletionVocabulary()
{
    addCommands();
    addKeywords();
    addBuiltinClasses();
    addTypes();
    addSnippets();
    addComponentTypes();
    addComponentMembers();
}

const CompletionCandidates &CompletionVocabulary::componentMembers(const QString &type) const
{
    const QString word = m_componentWords.value(type, type);
    const auto found = m_componentMembers.constFind(word);
    return found == m_componentMembers.cend() ? m_genericMembers : *found;
}

// All names of a constant with its sign are offered, as users know one or the other.
void CompletionVocabulary::addCommands()
{
    CompletionCandidates constants;
    for (const CommandInfo &record : CommandLibrary::builtin().allCommands()) {
        const PinyinMatching pinyin =
            record.noPinyinCompletion ? PinyinMatching::No : PinyinMatching::Yes;
        if (record.isCallable() && isName(record.name)) {
            CompletionItem command = item(CompletionKind::Function, record.name,
                                          record.syntax.section(QLatin1Char('\n'), 0, 0));
            command.takesParameters = formTakesParameters(record.syntax);
            command.record = record.name;
            m_words.append(completionCandidate(command, record.aliases, pinyin));
        }
        if (!record.isConstant())
            continue;
        QStringList names{record.name};
        QStringList aliases;
        for (const QString &alias : record.aliases)
            (alias.startsWith(QLatin1Char('#')) ? names : aliases) << alias;
        for (const QString &name : qAsConst(names)) {
            CompletionItem constant = item(CompletionKind::Constant, name, record.returnType);
            constant.record = record.name;
            constants.append(completionCandidate(constant, aliases, pinyin));
        }
    }
    m_words += constants;
}

void CompletionVocabulary::addKeywords()
{
    QStringList words = fixedKeywords();
    for (const Keyword &keyword : keywords()) {
        if (keyword.kind != Lexer::Identifier && !isTypeWord(keyword.kind, TypePlace::PreScan))
            words << keyword.word;
    }
    for (const CommandInfo &record : CommandLibrary::builtin().allCommands()) {
        const Keyword *keyword = findKeyword(record.name.constData(), record.name.size());
        const bool isType = keyword && isTypeWord(keyword->kind, TypePlace::PreScan);
        if (record.type == QStringLiteral("语法") && isName(record.name) && !isType)
            words << record.name;
    }
    words.removeDuplicates();
    for (const QString &word : qAsConst(words))
        m_words.append(completionCandidate(wordItem(CompletionKind::Keyword, word)));
}

void CompletionVocabulary::addTypes()
{
    for (const Keyword &keyword : keywords()) {
        if (isTypeWord(keyword.kind, TypePlace::PreScan))
            m_words.append(completionCandidate(wordItem(CompletionKind::Type, keyword.word)));
    }
    for (auto it = m_classMembers.cbegin(); it != m_classMembers.cend(); ++it)
        m_words.append(completionCandidate(wordItem(CompletionKind::Type, it.key())));
}

void CompletionVocabulary::addSnippets()
{
    const QJsonArray rows = jsonTable(QStringLiteral(":/editor/snippets.json"))
                                .object()
                                .value(QLatin1String("snippets"))
                                .toArray();
    for (const QJsonValue &row : rows) {
        CompletionItem snippet =
            item(CompletionKind::Snippet, row[QLatin1String("text")].toString(), QString());
        snippet.display = row[QLatin1String("name")].toString();
        snippet.detail = snippet.text.section(QLatin1Char('\n'), 0, 0);
        m_words.append(completionCandidate(snippet));
    }
}

void CompletionVocabulary::addComponentTypes()
{
    const QJsonObject table = jsonTable(QStringLiteral(":/editor/component_types.json")).object();
    for (const QJsonValue &row : table.value(QLatin1String("types")).toArray()) {
        const QJsonArray words = row[QLatin1String("words")].toArray();
        for (const QJsonValue &key : row[QLatin1String("keys")].toArray())
            m_componentWords.insert(key.toString(), words.first().toString());
        for (const QJsonValue &word : words)
            m_componentWords.insert(word.toString(), words.first().toString());
    }
    for (const QJsonValue &name : table.value(QLatin1String("generic")).toArray()) {
        m_genericMembers.append(
            completionCandidate(item(CompletionKind::Property, name.toString(), QString())));
    }
}

// Members go by several Chinese names, of which users know one or the other: each is offered.
// The English ones help to find the first.
void CompletionVocabulary::addComponentMembers()
{
    QHash<QString, QSet<QString>> seen;
    for (const CommandInfo &record : CommandLibrary::builtin().allCommands()) {
        if (record.memberOf.isEmpty())
            continue;
        const int behindObject = record.memberOf.size() + 1;
        QStringList names{record.name.mid(behindObject)};
        QStringList aliases;
        for (const QString &alias : record.aliases)
            (isChineseName(alias.mid(behindObject)) ? names : aliases) << alias.mid(behindObject);
        for (const QString &name : qAsConst(names)) {
            const QString identity = record.type + name;
            if (seen[record.memberOf].contains(identity))
                continue;
            seen[record.memberOf].insert(identity);
            m_componentMembers[record.memberOf].append(
                completionCandidate(memberItem(record, name), aliases));
        }
        m_componentWords.insert(record.memberOf, record.memberOf);
    }
}

void CompletionVocabulary::addBuiltinClasses()
{
    const auto classes = Parser().classRegistry();
    for (const Parser::ClassInfo &info : classes) {
        CompletionCandidates &members = m_classMembers[info.name];
        QHash<QString, QString> &types = m_memberTypes[info.name];
        for (const Parser::MemberInfo &property : info.properties) {
            members.append(
                completionCandidate(item(CompletionKind::Property, property.name, property.type)));
            types.insert(property.name, property.type);
        }
        for (const Parser::MemberInfo &method : info.methods) {
            members.append(
                completionCandidate(item(CompletionKind::Method, method.name, method.type)));
            types.insert(method.name, method.type);
        }
    }
}
