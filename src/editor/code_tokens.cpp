#include "editor/code_tokens.h"

QVector<CodeToken> codeTokens(const QString &text)
{
    QVector<CodeToken> tokens;
    Lexer lexer(text);
    int line = 1;
    int lineStart = 0;
    int lastLine = 0;
    for (;;) {
        const Lexer::Token token = lexer.nextToken();
        if (token.type == Lexer::Newline)
            continue;
        for (; line < token.line; ++line)
            lineStart = text.indexOf(QLatin1Char('\n'), lineStart) + 1;
        tokens.append({token.type, token.text, token.line, token.column,
                       lineStart + token.column - 1, lexer.offset(), token.line != lastLine});
        lastLine = token.line;
        if (token.type == Lexer::EndOfFile)
            return tokens;
    }
}
