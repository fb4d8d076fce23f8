#include "editor/completion_score.h"

#include "editor/pinyin_initials.h"

#include <QVarLengthArray>

#include <algorithm>

namespace {

// More names than a large project has; beyond it the cache starts anew.
constexpr int mostCachedNames = 20000;
// Shorter words have neighbours everywhere; comparing longer ones takes its time.
constexpr int shortestMisspelt = 3;
constexpr int longestMisspelt = 64;
constexpr int mostMistakes = 2;

// A Latin beginning typed as it stands, the rest of the name by its initials: "jsonjx".
bool continuesByPinyin(const QString &query, const CompletionName &name)
{
    const QString &lower = name.lower();
    int common = 0;
    while (common < query.size() && common < lower.size() && query.at(common) == lower.at(common) &&
           isLatinOnly(query.mid(common, 1)))
        ++common;
    return common > 0 && common < query.size() && !name.initials().isEmpty() &&
           matchesPinyin(query.mid(common), lower.mid(common));
}

// The name of a constant is cut as the query is.
int constantScore(const CompletionQuery &query, const CompletionName &name)
{
    const QString whole = name.lower().mid(1);
    const int cut = query.group().isEmpty() ? -1 : whole.indexOf(QLatin1Char('_'));
    const QString group = whole.left(qMax(cut, 0));
    const QString rest = whole.mid(cut + 1);
    const int difference = query.part().size() - rest.size();
    if (query.group() == group) {
        if (query.part().isEmpty())
            return 88;
        if (rest.startsWith(query.part()))
            return difference + 97;
    }
    const auto matches = [](const QString &part, const QString &text) {
        return text.startsWith(part) || matchesPinyin(part, text);
    };
    return matches(query.group(), group) && matches(query.part(), rest) ? difference + 90 : 0;
}

int misspeltScore(const QString &query, const QString &initials)
{
    const bool isComparable =
        query.size() >= shortestMisspelt && initials.size() >= shortestMisspelt &&
        query.size() <= longestMisspelt && qAbs(query.size() - initials.size()) <= mostMistakes;
    if (!isComparable)
        return 0;
    const int distance = levenshtein(query, initials);
    return distance <= mostMistakes ? 78 - 14 * distance : 0;
}

int fuzzyScore(const CompletionQuery &query, const CompletionName &name)
{
    const int inName = name.lower().indexOf(query.text());
    if (inName >= 0)
        return 60 - inName;
    if (!query.isLatin())
        return 0;
    const int inInitials = name.initials().indexOf(query.text());
    return inInitials >= 0 ? 50 - inInitials : subsequenceScore(query.text(), name.initials()) / 2;
}

} // namespace

CompletionName::CompletionName(const QString &name, PinyinMatching pinyin)
    : m_text(name),
      m_lower(name.toLower()),
      m_initials(pinyin == PinyinMatching::Yes ? toPinyinInitials(name) : QString()),
      m_pinyin(pinyin)
{}

bool CompletionName::matches(const QString &query) const
{
    return m_pinyin == PinyinMatching::Yes && matchesPinyin(query, m_text);
}

CompletionName CompletionNames::prepared(const QString &name)
{
    const auto known = m_names.constFind(name);
    if (known != m_names.constEnd())
        return *known;
    if (m_names.size() >= mostCachedNames)
        m_names.clear();
    return *m_names.insert(name, CompletionName(name));
}

CompletionQuery::CompletionQuery(const QString &typed)
    : m_text(typed.toLower()),
      m_asksForConstant(typed.size() > 1 && typed.startsWith(QLatin1Char('#')))
{
    if (m_asksForConstant)
        m_text.remove(0, 1);
    m_isLatin = isLatinOnly(m_text);
    const int cut = m_text.indexOf(QLatin1Char('_'));
    m_group = m_text.left(qMax(cut, 0));
    m_part = m_text.mid(cut + 1);
}

// The first rule that applies gives the score. Drawing commands need no rule to be found by "ht":
// with these letters their initials begin.
int score(const CompletionQuery &query, const CompletionName &name, FuzzyMatching fuzzy)
{
    const QString &text = query.text();
    const QString &initials = name.initials();
    if (query.asksForConstant() && !name.lower().startsWith(QLatin1Char('#')))
        return 0;
    if (name.lower() == text)
        return 100;
    if (name.lower().startsWith(text))
        return text.size() - name.lower().size() + 95;
    if (continuesByPinyin(text, name))
        return text.size() - name.lower().size() + 92;
    if (query.isLatin() && initials == text)
        return 100;
    if (query.isLatin() && initials.startsWith(text))
        return text.size() - initials.size() + 90;
    if (query.asksForConstant()) {
        if (const int points = constantScore(query, name))
            return points;
    }
    if (query.isLatin() && name.matches(text))
        return 85;
    if (query.isLatin()) {
        if (const int points = misspeltScore(text, initials))
            return points;
    }
    return fuzzy == FuzzyMatching::On ? fuzzyScore(query, name) : 0;
}

int aliasScore(const CompletionQuery &query, const QString &alias)
{
    return alias.toLower().startsWith(query.text()) ? alias.size() - query.text().size() + 86 : 0;
}

int levenshtein(const QString &a, const QString &b)
{
    QVarLengthArray<int, 64> row(b.size() + 1);
    for (int j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (int i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            const int change = diagonal + (a.at(i - 1) == b.at(j - 1) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({change, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

int subsequenceScore(const QString &letters, const QString &text)
{
    int at = 0;
    for (QChar letter : letters) {
        at = text.indexOf(letter, at) + 1;
        if (at == 0)
            return 0;
    }
    return letters.isEmpty() ? 0 : qMax(40 - 2 * (at - letters.size()), 2);
}
