// The score that orders what completion offers.
#pragma once

#include <QHash>
#include <QString>

enum class PinyinMatching
{
    Yes,
    No, // the name is found by its own letters alone
};

enum class FuzzyMatching
{
    Off,
    On,
};

// A name as it is compared with what was typed; made once for each candidate.
class CompletionName
{
public:
    CompletionName(const QString &name, PinyinMatching pinyin = PinyinMatching::Yes);

    const QString &text() const { return m_text; }
    const QString &lower() const { return m_lower; }
    // Empty without pinyin matching.
    const QString &initials() const { return m_initials; }
    // False without pinyin matching; else matchesPinyin().
    bool matches(const QString &query) const;

private:
    QString m_text;
    QString m_lower;
    QString m_initials;
    PinyinMatching m_pinyin;
};

// Keeps names with pinyin matching prepared from one key to the next.
class CompletionNames
{
public:
    CompletionName prepared(const QString &name);

private:
    QHash<QString, CompletionName> m_names;
};

// What the user typed, in lower case. A "#" before more characters asks for constants alone and is
// taken off; the rest is cut at its first "_" into a group, empty without "_", and a part.
class CompletionQuery
{
public:
    CompletionQuery(const QString &typed);

    const QString &text() const { return m_text; }
    bool isLatin() const { return m_isLatin; }
    bool asksForConstant() const { return m_asksForConstant; }
    const QString &group() const { return m_group; }
    const QString &part() const { return m_part; }

private:
    QString m_text;
    QString m_group;
    QString m_part;
    bool m_isLatin;
    bool m_asksForConstant;
};

// How well a name answers the query, 100 at best; 0 or below: not at all. An empty query asks for
// everything, short names first.
int score(const CompletionQuery &query, const CompletionName &name,
          FuzzyMatching fuzzy = FuzzyMatching::Off);

// How well a command answers by another name that it goes by; 0: not at all.
int aliasScore(const CompletionQuery &query, const QString &alias);

// Letters left out, added or changed between two texts. Two letters in the wrong order are two.
int levenshtein(const QString &a, const QString &b);

// For letters that all appear in `text` in this order: 40, and 2 less for each letter of `text`
// passed over on the way, but at least 2. 0 for all others.
int subsequenceScore(const QString &letters, const QString &text);
