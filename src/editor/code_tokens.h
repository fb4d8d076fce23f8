// The tokens of a text with their places, as outline and navigation walk them.
#pragma once

#include "frontend/lexer.h"

#include <QString>
#include <QVector>

// Lines and columns count from 1, `start` and `end` are offsets in the text.
struct CodeToken
{
    int type = Lexer::EndOfFile;
    QString text;
    int line = 0;
    int column = 0;
    int start = 0;
    int end = 0;
    bool startsLine = false;
};

// All tokens but the ends of lines; the last is the one `EndOfFile`.
QVector<CodeToken> codeTokens(const QString &text);
