// AutoCompleter: decides what to offer while the user types.
#pragma once

#include "editor/callback_rules.h"
#include "editor/completion_sources.h"
#include "editor/masked_code.h"

#include <QObject>

struct CompletionOffer
{
    QVector<CompletionItem> items; // the best first
    QString prefix;                // what is typed of the name before the cursor
    bool isCallback = false;       // a function passed by name is wanted
    bool isEventHead = false;      // the event in the head of an event function is wanted
};

struct ParamHint
{
    QString html;       // empty outside of known calls
    int openingAt = -1; // where the "(" of the call stands in the text
};

// One for each document. Texts before the cursor are the whole source up to it; `addedLines`: see
// CompletionPlace.
class AutoCompleter : public QObject
{
    Q_OBJECT

public:
    enum class Demand
    {
        Typed, // offers where a name has been begun
        Asked, // and also all that can stand here
    };

    // With the history of this user, which all completers share.
    explicit AutoCompleter(QObject *parent = nullptr);
    AutoCompleter(CompletionHistory &history, const CallbackRules &rules,
                  QObject *parent = nullptr);
    ~AutoCompleter() override;

    void setComponents(const QVector<CompletionComponent> &components);
    // Of the other files of the project.
    void setProjectSymbols(const CodeSymbols &symbols);
    void setDocumentSymbols(const CodeSymbols &symbols);
    void setFuzzyMatching(FuzzyMatching fuzzy) { m_fuzzy = fuzzy; }

    CompletionOffer offer(const QString &textBefore, int addedLines = 0,
                          Demand demand = Demand::Typed);
    // The user has taken this item.
    void notePick(const CompletionItem &item);

    // The rich text that explains an item; empty where nothing is to be said.
    static QString help(const CompletionItem &item);
    // The parameter hint for the end of the text.
    ParamHint paramHint(const QString &textBefore, int addedLines = 0);
    // The name in the command catalogue of what the word ending the text names; empty for others.
    QString command(const QString &textToWordEnd, int addedLines = 0);

signals:
    void documentSymbolsChanged();

private:
    CompletionOffer wordOffer(const QString &prefix, const CompletionPlace &place, Demand demand);
    CompletionOffer memberOffer(const QString &prefix, const CompletionPlace &place);
    CompletionOffer callbackOffer(const QString &prefix, const CompletionPlace &place);
    QVector<CompletionItem> ranked(const QString &prefix,
                                   const CompletionCandidates &candidates) const;
    bool wantsFunction(const QString &code) const;

    CompletionHistory &m_history;
    CallbackRules m_rules;
    TypedCodeMask m_mask;
    CompletionSources m_sources;
    FuzzyMatching m_fuzzy = FuzzyMatching::Off;
};
