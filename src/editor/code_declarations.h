// The declarations of a text with the ranges in which their names are known.
#pragma once

#include "editor/code_symbols.h"
#include "editor/code_tokens.h"

#include <QString>
#include <QVector>

// `name` is the place of the symbol's name among the tokens, of "按钮1.单击" that of the event. A
// parameter or local is known from there to the token `scopeEnd`; other symbols end there with
// their body.
struct CodeDeclaration
{
    CodeSymbol symbol;
    int name = 0;
    int scopeEnd = 0;
};

// Reads tokens only, so that a text in the middle of being typed gives what can be made out:
// a body that is not closed ends ahead of the next line that begins a function, a class or a member
// of one. `tokens` are those of `text`.
QVector<CodeDeclaration> readDeclarations(const QString &text, const QVector<CodeToken> &tokens);
