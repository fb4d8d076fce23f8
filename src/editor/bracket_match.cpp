#include "editor/bracket_match.h"

#include "frontend/lexer.h"

#include <QVector>

namespace {

// The token that closes `type`; `EndOfFile` for what is no opening bracket.
int closerOf(int type)
{
    switch (type) {
    case Lexer::LeftParen:
        return Lexer::RightParen;
    case Lexer::LeftBracket:
        return Lexer::RightBracket;
    case Lexer::LeftBrace:
        return Lexer::RightBrace;
    default:
        return Lexer::EndOfFile;
    }
}

} // namespace

std::optional<std::pair<int, int>> matchedBrackets(const QString &text, int position)
{
    struct Opening
    {
        int place;
        int closer;
    };
    QVector<Opening> openings;
    Lexer lexer(text);
    for (auto token = lexer.nextToken(); token.type != Lexer::EndOfFile;
         token = lexer.nextToken()) {
        const int place = lexer.offset() - 1;
        if (closerOf(token.type) != Lexer::EndOfFile) {
            openings.append({place, closerOf(token.type)});
        } else if (!openings.isEmpty() && token.type == openings.last().closer) {
            const int opening = openings.takeLast().place;
            const auto isTouched = [&](int bracket) {
                return bracket == position || bracket == position - 1;
            };
            if (isTouched(opening) || isTouched(place))
                return std::make_pair(opening, place);
        }
    }
    return std::nullopt;
}
