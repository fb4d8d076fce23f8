// Keywords: the language's reserved words and what token each gives.
#pragma once

#include <QString>

#include <vector>

struct Keyword
{
    QString word;
    int kind;
};

// All reserved words, synonyms and the one protected class name included.
const std::vector<Keyword> &keywords();

// The longest reserved word has this many characters.
constexpr int maxKeywordLength = 4;

// The entry whose word is exactly the `length` characters at `text`; null if there is none. One
// look-up; any length may be passed.
const Keyword *findKeyword(const QChar *text, int length);
