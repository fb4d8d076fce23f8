// WordSet: many words sought in a line at once.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

// Where words occur in a text, case-sensitive and without regard to word boundaries: for each word
// what `indexOf` finds from the start and again behind each hit. Time grows with the text and with
// the words that share a first character, not with the number of words.
class WordSet
{
public:
    struct Hit
    {
        int start;
        int length;
    };

    WordSet() = default;
    // Empty words are left out.
    explicit WordSet(QStringList words);

    // By their start; hits of different words may overlap.
    std::vector<Hit> hits(const QString &text) const;

private:
    struct Range
    {
        int begin = 0;
        int end = 0;
    };

    QStringList m_words;           // sorted, none twice
    QHash<QChar, Range> m_byFirst; // the words that start with a character
};
