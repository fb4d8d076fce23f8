#include "editor/auto_completer.h"

#include "catalog/command_library.h"
#include "editor/completion_context.h"
#include "editor/open_call.h"
#include "editor/param_hint.h"

#include <QDebug>
#include <QRegularExpression>

#include <algorithm>

namespace {

CompletionHistory &sharedHistory()
{
    static CompletionHistory history;
    return history;
}

QString lastLine(const QString &text)
{
    return text.mid(text.lastIndexOf(QLatin1Char('\n')) + 1);
}

CompletionPlace placeIn(const QString &code, int addedLines)
{
    return {code, code.count(QLatin1Char('\n')) + 1, addedLines};
}

bool beginsFunctionHead(const QString &word)
{
    return word == QStringLiteral("函数") || word == QStringLiteral("子程序");
}

bool isTypeIn(const CompletionCandidates &words, const QString &word)
{
    return std::any_of(words.begin(), words.end(), [&](const CompletionCandidate &candidate) {
        return candidate.item.kind == CompletionKind::Type && candidate.item.text == word;
    });
}

template <typename Keep>
CompletionCandidates filtered(const CompletionCandidates &candidates, Keep keep)
{
    CompletionCandidates result;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(result),
                 [&](const CompletionCandidate &candidate) { return keep(candidate.item); });
    return result;
}

} // namespace

AutoCompleter::AutoCompleter(QObject *parent)
    : AutoCompleter(sharedHistory(), CallbackRules(), parent)
{}

AutoCompleter::AutoCompleter(CompletionHistory &history, const CallbackRules &rules,
                             QObject *parent)
    : QObject(parent), m_history(history), m_rules(rules)
{}

AutoCompleter::~AutoCompleter()
{
    if (!m_history.save())
        qWarning("The history of completion cannot be saved");
}

void AutoCompleter::setComponents(const QVector<CompletionComponent> &components)
{
    m_sources.setComponents(components);
}

void AutoCompleter::setProjectSymbols(const CodeSymbols &symbols)
{
    m_sources.setProjectSymbols(symbols);
}

void AutoCompleter::setDocumentSymbols(const CodeSymbols &symbols)
{
    m_sources.setDocumentSymbols(symbols);
    emit documentSymbolsChanged();
}

QVector<CompletionItem> AutoCompleter::ranked(const QString &prefix,
                                              const CompletionCandidates &candidates) const
{
    return rankedCompletions(CompletionQuery(prefix), candidates, m_fuzzy, m_history);
}

// Whether a function's name is asked for where the code ends in the beginning of an argument.
bool AutoCompleter::wantsFunction(const QString &code) const
{
    if (!beginsArgument(code))
        return false;
    const auto call = openCall(code);
    return call && call->path.size() == 1 && m_rules.wantsFunction(call->name(), call->argument);
}

CompletionOffer AutoCompleter::offer(const QString &textBefore, int addedLines, Demand demand)
{
    const MaskedCode code = m_mask.masked(textBefore);
    if (!code.endsInCode)
        return {};
    const CompletionPlace place = placeIn(code.text, addedLines);
    const CompletionContext context = completionContext(lastLine(code.text));
    switch (context.kind) {
    case CompletionContext::Kind::Member:
    case CompletionContext::Kind::MemberOfMember:
        return memberOffer(context.prefix, place);
    case CompletionContext::Kind::Word:
        return wantsFunction(code.text) ? callbackOffer(context.prefix, place)
                                        : wordOffer(context.prefix, place, demand);
    case CompletionContext::Kind::Nothing:
        break;
    }
    if (wantsFunction(code.text))
        return callbackOffer(QString(), place);
    const QChar last = code.text.isEmpty() ? QChar() : code.text.at(code.text.size() - 1);
    const bool canBegin = !last.isLetterOrNumber() && last != QLatin1Char('.');
    return demand == Demand::Asked && canBegin ? wordOffer(QString(), place, demand)
                                               : CompletionOffer();
}

// Where a name is being given, there is nothing to offer but the components whose event a function
// handles.
CompletionOffer AutoCompleter::wordOffer(const QString &prefix, const CompletionPlace &place,
                                         Demand demand)
{
    const CompletionCandidates &words = m_sources.words(place);
    const QString before = wordBeforeName(place.code);
    CompletionOffer offer;
    offer.prefix = prefix;
    if (beginsFunctionHead(before)) {
        offer.items = ranked(prefix, filtered(words, [](const CompletionItem &item) {
                                 return item.kind == CompletionKind::Component;
                             }));
        return offer;
    }
    const bool isDeclaration = isTypeIn(words, before) || before == QStringLiteral("类") ||
                               before == QStringLiteral("方法");
    if (!isDeclaration || demand == Demand::Asked)
        offer.items = ranked(prefix, words);
    return offer;
}

CompletionOffer AutoCompleter::memberOffer(const QString &prefix, const CompletionPlace &place)
{
    const QStringList path = objectPath(place.code);
    CompletionOffer offer;
    offer.prefix = prefix;
    const CompletionTarget target = m_sources.target(path, place);
    if (target.isEmpty())
        return offer;
    static const QRegularExpression eventHead(
        QStringLiteral(R"(^\s*(函数|子程序)\s+[\w\x{4e00}-\x{9fff}.]*$)"));
    offer.isEventHead = eventHead.match(lastLine(place.code)).hasMatch();
    const CompletionCandidates members = m_sources.members(target);
    offer.items =
        ranked(prefix, offer.isEventHead ? filtered(members,
                                                    [](const CompletionItem &item) {
                                                        return item.kind == CompletionKind::Event;
                                                    })
                                         : members);
    return offer;
}

CompletionOffer AutoCompleter::callbackOffer(const QString &prefix, const CompletionPlace &place)
{
    CompletionOffer offer;
    offer.prefix = prefix;
    offer.isCallback = true;
    offer.items = ranked(prefix, m_sources.userFunctions());
    if (prefix.isEmpty())
        return offer;
    offer.items += ranked(prefix, filtered(m_sources.words(place), [](const CompletionItem &item) {
                              return item.kind != CompletionKind::UserFunction;
                          }));
    return offer;
}

void AutoCompleter::notePick(const CompletionItem &item)
{
    m_history.addPick(item.soughtName());
}

QString AutoCompleter::help(const CompletionItem &item)
{
    if (item.kind == CompletionKind::Snippet)
        return QStringLiteral("<b>%1</b><pre>%2</pre>")
            .arg(item.display.toHtmlEscaped(), item.text.toHtmlEscaped());
    const CommandInfo *record =
        item.record.isEmpty() ? nullptr : CommandLibrary::builtin().commandInfo(item.record);
    if (!record)
        return QString();
    QString text = QStringLiteral("<b>%1</b>").arg(item.display.toHtmlEscaped());
    text += QLatin1String("<br>") + record->description.toHtmlEscaped();
    if (record->type.isEmpty() || record->type == QStringLiteral("方法"))
        text += QStringLiteral("<br><font color='#888'>返回: %1</font>")
                    .arg(record->returnType.toHtmlEscaped());
    return text;
}

ParamHint AutoCompleter::paramHint(const QString &textBefore, int addedLines)
{
    const QString code = m_mask.masked(textBefore).text;
    const auto call = openCall(code);
    if (!call)
        return {};
    const QStringList forms = m_sources.callForms(call->path, placeIn(code, addedLines));
    return {paramHintHtml(forms, call->argument), call->openingAt};
}

QString AutoCompleter::command(const QString &textToWordEnd, int addedLines)
{
    static const QRegularExpression word(QStringLiteral(R"(#?[\w\x{4e00}-\x{9fff}]+$)"));
    const MaskedCode code = m_mask.masked(textToWordEnd);
    const QString name = word.match(lastLine(code.text)).captured();
    if (!code.endsInCode || name.isEmpty())
        return QString();
    return m_sources.record(objectPath(code.text) << name, placeIn(code.text, addedLines));
}
