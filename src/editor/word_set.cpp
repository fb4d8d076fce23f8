#include "editor/word_set.h"

#include <algorithm>

WordSet::WordSet(QStringList words) : m_words(std::move(words))
{
    m_words.removeAll(QString());
    m_words.removeDuplicates();
    std::sort(m_words.begin(), m_words.end());
    for (int i = 0; i < m_words.size(); ++i) {
        Range &range = m_byFirst[m_words.at(i).at(0)];
        if (range.end == 0)
            range.begin = i;
        range.end = i + 1;
    }
}

std::vector<WordSet::Hit> WordSet::hits(const QString &text) const
{
    std::vector<Hit> result;
    QHash<int, int> behind; // word: where its last hit ends
    for (int start = 0; start < text.size(); ++start) {
        const Range range = m_byFirst.value(text.at(start));
        const QStringView rest = QStringView(text).mid(start);
        for (int i = range.begin; i < range.end; ++i) {
            const QString &word = m_words.at(i);
            if (!rest.startsWith(word) || start < behind.value(i))
                continue;
            result.push_back({start, word.size()});
            behind[i] = start + word.size();
        }
    }
    return result;
}
