// Pinyin initials: how Chinese names are found by Latin letters.
#pragma once

#include <QString>

// The first letters of the syllables of `text`, in lower case: Latin letters and digits stand for
// themselves, a Chinese character of U+4E00 to U+9FFF for its usual reading; all others are
// dropped.
QString toPinyinInitials(const QString &text);

// Whether `text` is not empty and all letters "a" to "z", in either case.
bool isLatinOnly(const QString &text);

// Whether `query` begins the initials of `name` in any reading of its characters; where characters
// of the name have no initial, whether its letters come in order. Case counts for nothing. An empty
// query matches every name but an empty one.
bool matchesPinyin(const QString &query, const QString &name);
