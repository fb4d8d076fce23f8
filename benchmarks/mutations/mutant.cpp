// Making the mistakes of mutant.h.
#include "mutations/mutant.h"

#include "frontend/lexer.h"

#include <QStringList>

#include <algorithm>

namespace {

const QStringList &typeWords()
{
    static const QStringList words{QStringLiteral("整数"),   QStringLiteral("小数"),
                                   QStringLiteral("文本"),   QStringLiteral("逻辑"),
                                   QStringLiteral("数组"),   QStringLiteral("通用"),
                                   QStringLiteral("字节集"), QStringLiteral("变量"),
                                   QStringLiteral("单浮点"), QStringLiteral("长整数")};
    return words;
}

bool isWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('#');
}

int pick(std::mt19937 &random, int count)
{
    return int(random() % unsigned(count));
}

int endOfString(const QString &text, int begin)
{
    int i = begin + 1;
    while (i < text.size() && text.at(i) != text.at(begin) && text.at(i) != QLatin1Char('\n'))
        i += text.at(i) == QLatin1Char('\\') ? 2 : 1;
    return std::min(i + 1, text.size());
}

int endOfToken(const QString &text, int begin)
{
    const QChar first = text.at(begin);
    if (first == QLatin1Char('"') || first == QLatin1Char('\''))
        return endOfString(text, begin);
    int end = begin + 1;
    if (isWordCharacter(first)) {
        while (end < text.size() && isWordCharacter(text.at(end)))
            ++end;
        return end;
    }
    static const QStringList pairs{
        QStringLiteral("=="), QStringLiteral("!="), QStringLiteral("<="), QStringLiteral(">="),
        QStringLiteral("++"), QStringLiteral("--"), QStringLiteral("+="), QStringLiteral("-="),
        QStringLiteral("*="), QStringLiteral("/="), QStringLiteral("&&"), QStringLiteral("||")};
    return pairs.contains(text.mid(begin, 2)) ? begin + 2 : end;
}

QString misspelt(const QString &word, std::mt19937 &random)
{
    const int at = pick(random, word.size());
    switch (pick(random, 4)) {
    case 0:
        return word.size() > 1 ? QString(word).remove(at, 1) : word + word;
    case 1:
        return QString(word).insert(at, word.at(at));
    case 2:
        return QString(word).replace(at, 1,
                                     word.at(at).unicode() < 128 ? QLatin1Char('q') : QChar(u'错'));
    default: {
        QString swapped = word;
        if (at + 1 < word.size()) {
            swapped[at] = word.at(at + 1);
            swapped[at + 1] = word.at(at);
        }
        return swapped;
    }
    }
}

// The names in a piece of source, keywords left out.
QStringList namesIn(const QString &text)
{
    QStringList names;
    const QList<Lexer::Token> tokens = Lexer(text).tokenize();
    for (const Lexer::Token &token : tokens) {
        if (token.type == Lexer::Identifier && !token.text.isEmpty())
            names << token.text;
    }
    return names;
}

// A source with its tokens, from which parts are replaced.
class Workpiece
{
public:
    explicit Workpiece(const QString &text) : m_text(text), m_tokens(splitSource(text)) {}

    const QList<SourceToken> &tokens() const { return m_tokens; }
    QString token(int index) const
    {
        const SourceToken &token = m_tokens.at(index);
        return m_text.mid(token.begin, token.end - token.begin);
    }

    // The text with tokens `first` to `last` replaced; nothing when that changes nothing.
    std::optional<Mutant> replaced(int first, int last, const QString &by) const
    {
        const int begin = m_tokens.at(first).begin;
        const int end = m_tokens.at(last).end;
        const QString before = m_text.mid(begin, end - begin);
        if (before == by)
            return std::nullopt;
        Mutant mutant;
        mutant.text = m_text;
        // Words that now stand side by side stay two words.
        const bool touches = !by.isEmpty() && begin > 0 && isWordCharacter(by.at(0)) &&
                             isWordCharacter(m_text.at(begin - 1));
        mutant.text.replace(begin, end - begin, touches ? QLatin1Char(' ') + by : by);
        mutant.names = namesIn(before) + namesIn(by);
        mutant.firstLine = m_tokens.at(std::max(0, first - 1)).line;
        mutant.lastLine = m_tokens.at(std::min(last + 1, m_tokens.size() - 1)).line;
        mutant.description =
            QStringLiteral("%1: %2 → %3").arg(QString::number(m_tokens.at(first).line), before, by);
        return mutant;
    }

private:
    QString m_text;
    QList<SourceToken> m_tokens;
};

// The tokens of the arguments of a call whose "(" is at `open`: first and last of each.
QList<QPair<int, int>> argumentsBehind(const Workpiece &piece, int open)
{
    QList<QPair<int, int>> arguments;
    int depth = 0;
    int start = open + 1;
    for (int i = open; i < piece.tokens().size(); ++i) {
        const QString token = piece.token(i);
        const bool opens = token == QLatin1String("(") || token == QLatin1String("[") ||
                           token == QLatin1String("{");
        const bool closes = token == QLatin1String(")") || token == QLatin1String("]") ||
                            token == QLatin1String("}");
        depth += opens ? 1 : closes ? -1 : 0;
        const bool ends = depth == 0 || (depth == 1 && token == QLatin1String(","));
        if (ends && i > start)
            arguments << qMakePair(start, i - 1);
        if (ends)
            start = i + 1;
        if (depth == 0)
            return arguments;
    }
    return {};
}

std::optional<Mutant> changeArgument(const Workpiece &piece, int open, std::mt19937 &random)
{
    const QList<QPair<int, int>> arguments = argumentsBehind(piece, open);
    if (arguments.isEmpty())
        return piece.replaced(open, open, QStringLiteral("(1"));
    const int chosen = pick(random, arguments.size());
    const QPair<int, int> argument = arguments.at(chosen);
    const auto text = [&piece](const QPair<int, int> &range) {
        QStringList tokens;
        for (int i = range.first; i <= range.second; ++i)
            tokens << piece.token(i);
        return tokens.join(QLatin1Char(' '));
    };
    switch (pick(random, 4)) {
    case 0:
        if (chosen + 1 < arguments.size())
            return piece.replaced(argument.first, argument.second + 1, QString());
        return piece.replaced(chosen > 0 ? argument.first - 1 : argument.first, argument.second,
                              QString());
    case 1:
        return piece.replaced(argument.second, argument.second,
                              piece.token(argument.second) + QStringLiteral(", 1"));
    case 2:
        return piece.replaced(argument.first, argument.second,
                              pick(random, 2) ? QStringLiteral("\"文\"") : QStringLiteral("7"));
    default:
        if (chosen + 1 == arguments.size())
            return std::nullopt;
        return piece.replaced(argument.first, arguments.at(chosen + 1).second,
                              text(arguments.at(chosen + 1)) + QStringLiteral(", ") +
                                  text(argument));
    }
}

// Every use of what that line declares may be where the wrong type shows.
std::optional<Mutant> changeType(const Workpiece &piece, int index, std::mt19937 &random)
{
    const QString word = typeWords().at(pick(random, typeWords().size()));
    std::optional<Mutant> mutant = piece.replaced(index, index, word);
    const int line = piece.tokens().at(index).line;
    for (int i = 0; mutant && i < piece.tokens().size(); ++i) {
        if (piece.tokens().at(i).line == line)
            mutant->names += namesIn(piece.token(i));
    }
    return mutant;
}

} // namespace

QString mistakeName(MistakeKind kind)
{
    switch (kind) {
    case MistakeKind::Misspelling:
        return QStringLiteral("misspelt");
    case MistakeKind::Dropped:
        return QStringLiteral("dropped");
    case MistakeKind::Doubled:
        return QStringLiteral("doubled");
    case MistakeKind::Swapped:
        return QStringLiteral("swapped");
    case MistakeKind::Argument:
        return QStringLiteral("argument");
    case MistakeKind::Type:
        return QStringLiteral("type");
    }
    return QString();
}

QList<SourceToken> splitSource(const QString &text)
{
    QList<SourceToken> tokens;
    int line = 1;
    for (int i = 0; i < text.size();) {
        const QChar c = text.at(i);
        if (c.isSpace()) {
            line += c == QLatin1Char('\n') ? 1 : 0;
            ++i;
            continue;
        }
        if (text.midRef(i, 2) == QLatin1String("//")) {
            const int end = text.indexOf(QLatin1Char('\n'), i);
            i = end < 0 ? text.size() : end;
            continue;
        }
        if (text.midRef(i, 2) == QLatin1String("/*")) {
            const int found = text.indexOf(QLatin1String("*/"), i + 2);
            const int end = found < 0 ? text.size() : found + 2;
            line += text.midRef(i, end - i).count(QLatin1Char('\n'));
            i = end;
            continue;
        }
        const int end = endOfToken(text, i);
        tokens << SourceToken{i, end, line};
        i = end;
    }
    return tokens;
}

std::optional<Mutant> makeMutant(const QString &text, MistakeKind kind, std::mt19937 &random)
{
    const Workpiece piece(text);
    const int count = piece.tokens().size();
    if (count < 2)
        return std::nullopt;
    const int index = pick(random, count - 1);
    const QString token = piece.token(index);
    const bool isWord = token.at(0).isLetter() || token.at(0) == QLatin1Char('#');
    switch (kind) {
    case MistakeKind::Misspelling:
        return isWord ? piece.replaced(index, index, misspelt(token, random)) : std::nullopt;
    case MistakeKind::Dropped:
        return piece.replaced(index, index, QString());
    case MistakeKind::Doubled:
        return piece.replaced(index, index, token + QLatin1Char(' ') + token);
    case MistakeKind::Swapped:
        return piece.replaced(index, index + 1, piece.token(index + 1) + QLatin1Char(' ') + token);
    case MistakeKind::Argument:
        return isWord && piece.token(index + 1) == QLatin1String("(")
                   ? changeArgument(piece, index + 1, random)
                   : std::nullopt;
    case MistakeKind::Type:
        return typeWords().contains(token) ? changeType(piece, index, random) : std::nullopt;
    }
    return std::nullopt;
}
