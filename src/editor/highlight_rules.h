// HighlightRules: which colour the characters of a source line take.
#pragma once

#include "editor/word_set.h"
#include "settings/setting_keys.h"

#include <QString>
#include <QStringList>

#include <vector>

// The words that every editor colours as keywords.
QStringList fixedKeywords();

// The reserved words to colour beside the fixed ones. Types are not among them, as their words
// stand in many names; a declaration shows its type anyway. Nor are words of one character.
QStringList furtherReservedWords();

// What an editor adds to the fixed vocabulary.
struct HighlightWords
{
    QStringList keywords = furtherReservedWords();
    QStringList builtins;
    QStringList constants;
    QStringList names; // of components

    bool operator==(const HighlightWords &other) const;
};

// `color` is one of `Setting::Color::Keyword` to `Operator`.
struct HighlightSpan
{
    int start;
    int length;
    Setting::Color color;

    bool operator==(const HighlightSpan &other) const;
};

// How a line ends; the next one starts so.
enum class LineState
{
    Code = 0,
    InComment = 1,
};

struct HighlightedLine
{
    std::vector<HighlightSpan> spans; // in order, without overlaps; the rest is plain text
    LineState state;
};

// Rules over one line, nothing is parsed. Strings and comments keep their colour; in code, words of
// the vocabulary are coloured wherever they stand, inside longer names too, and expressions colour
// what no word has taken.
class HighlightRules
{
public:
    explicit HighlightRules(const HighlightWords &words = {});

    HighlightedLine highlighted(const QString &text, LineState previous) const;

private:
    WordSet m_keywords;
    WordSet m_builtins;
    WordSet m_constants;
    WordSet m_names;
};
