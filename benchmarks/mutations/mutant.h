// Wrong programs made from right ones: one small mistake each, as a person makes them.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <random>

enum class MistakeKind
{
    Misspelling, // a letter of a word left out, doubled, changed or swapped with the next
    Dropped,     // a token left out
    Doubled,     // a token written twice
    Swapped,     // a token behind the next one
    Argument,    // an argument left out, added, of another type, or behind the next one
    Type,        // a type word replaced by another
};

constexpr MistakeKind allMistakes[] = {MistakeKind::Misspelling, MistakeKind::Dropped,
                                       MistakeKind::Doubled,     MistakeKind::Swapped,
                                       MistakeKind::Argument,    MistakeKind::Type};

QString mistakeName(MistakeKind kind);

struct Mutant
{
    QString text;
    // Where the mistake shows: the 1-based lines of the changed place and of the tokens beside it.
    int firstLine = 0;
    int lastLine = 0;
    // The names in what was changed, before and after; a message about one of them is about the
    // mistake, wherever it stands.
    QStringList names;
    QString description; // for a person: "12: 甲 → 乙"
};

// A token of a source text: a word, a number, a string or one sign. Comments are none.
struct SourceToken
{
    int begin = 0;
    int end = 0;
    int line = 0;
};

QList<SourceToken> splitSource(const QString &text);

// One mistake of that kind at a place that `random` picks; none where the text has no such place or
// the mistake changes nothing.
std::optional<Mutant> makeMutant(const QString &text, MistakeKind kind, std::mt19937 &random);
