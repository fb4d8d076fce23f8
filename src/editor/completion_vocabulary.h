// CompletionVocabulary: what completion offers in every document.
#pragma once

#include "editor/completion_ranking.h"

#include <QHash>
#include <QMap>
#include <QStringList>
#include <QVector>

using CompletionCandidates = QVector<CompletionCandidate>;

// A candidate sought by the item's soughtName().
CompletionCandidate completionCandidate(const CompletionItem &item, const QStringList &aliases = {},
                                        PinyinMatching pinyin = PinyinMatching::Yes);

// Whether a call form has parameters; "（无）" and "(无)" stand for an empty list.
bool formTakesParameters(const QString &form);

// Made once for all editors, on first use, from the command catalogue, the language's words and
// the tables under ":/editor".
class CompletionVocabulary
{
public:
    static const CompletionVocabulary &instance();

    // Commands, keywords, types, constants and snippets.
    const CompletionCandidates &words() const { return m_words; }
    // The properties, methods and events of a component type, told by its key or by a word for it;
    // what all types share for others.
    const CompletionCandidates &componentMembers(const QString &type) const;
    // The word in the catalogue for a component type, told by its key or by a word for it; empty
    // for others.
    QString componentWord(const QString &type) const { return m_componentWords.value(type); }

    bool isBuiltinClass(const QString &name) const { return m_classMembers.contains(name); }
    CompletionCandidates classMembers(const QString &className) const
    {
        return m_classMembers.value(className);
    }
    // The type of a member of a built-in class; empty where there is none.
    QString memberType(const QString &className, const QString &member) const
    {
        return m_memberTypes.value(className).value(member);
    }

private:
    CompletionVocabulary();
    void addCommands();
    void addKeywords();
    void addTypes();
    void addSnippets();
    void addComponentTypes();
    void addComponentMembers();
    void addBuiltinClasses();

    CompletionCandidates m_words;
    QHash<QString, QString> m_componentWords;
    QHash<QString, CompletionCandidates> m_componentMembers; // by the catalogue's word
    CompletionCandidates m_genericMembers;
    QMap<QString, CompletionCandidates> m_classMembers;
    QHash<QString, QHash<QString, QString>> m_memberTypes;
};
