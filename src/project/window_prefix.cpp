#include "project/window_prefix.h"

#include "catalog/json_table.h"
#include "frontend/lexer.h"
#include "frontend/type_words.h"

#include <QJsonArray>
#include <QVector>

#include <string_view>

namespace {

using Tokens = QList<Lexer::Token>;

// What stands beside a reference, apart from blanks and the ends of the text.
constexpr std::u16string_view signsAhead = u"=＝,，(（[［【";
constexpr std::u16string_view signsBehind = u"=＝,，)）]］】";

bool isAsciiDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Keywords may be names of members: "标签1.文本".
bool isWord(const Lexer::Token &token)
{
    return token.type == Lexer::Identifier || token.type < Lexer::IntLiteral;
}

bool isDefaultName(const QString &name)
{
    int letters = name.size();
    while (letters > 0 && isAsciiDigit(name.at(letters - 1)))
        --letters;
    return letters > 0 && letters < name.size() && componentKinds().contains(name.left(letters));
}

// Most files have no reference at all; they are spared the lexer.
bool mayHoldReferences(const QString &text)
{
    for (int dot = text.indexOf(QLatin1Char('.'), 1); dot > 0;
         dot = text.indexOf(QLatin1Char('.'), dot + 1)) {
        int at = dot - 1;
        while (at > 0 && isAsciiDigit(text.at(at)))
            --at;
        if (at < dot - 1 && text.at(at).unicode() >= 128)
            return true;
    }
    return false;
}

bool isSingleWord(const QString &name)
{
    const Tokens tokens = Lexer(name).tokenize();
    return tokens.size() == 2 && tokens.first().type == Lexer::Identifier &&
           tokens.first().text == name;
}

// Finds the names that a text declares as variables, parameters or functions. The rules are
// generous: a name too many keeps a reference as the user wrote it.
class DeclaredNames
{
public:
    explicit DeclaredNames(const Tokens &tokens) : m_tokens(tokens)
    {
        for (int i = 0; i + 1 < tokens.size(); ++i) {
            if (tokens.at(i).type == Lexer::Function || tokens.at(i).type == Lexer::Method)
                addName(i + 1);
            else if (tokens.at(i).type == Lexer::ForEach)
                addLoopVariables(i + 1);
            else if (opensDeclaration(i))
                addDeclarators(i + 1);
        }
    }

    const QSet<QString> &names() const { return m_names; }

private:
    int typeAt(int index) const { return m_tokens.at(qMin(index, m_tokens.size() - 1)).type; }

    bool addName(int index)
    {
        if (typeAt(index) != Lexer::Identifier || typeAt(index + 1) == Lexer::Dot)
            return false;
        m_names.insert(m_tokens.at(index).text);
        return true;
    }

    // A type word that is not called as a conversion, or the name of a class with a name behind it.
    bool opensDeclaration(int index) const
    {
        const int type = typeAt(index);
        if (index > 0 && typeAt(index - 1) == Lexer::Dot)
            return false;
        if (type == Lexer::Var || startsDeclaration(type) || type == Lexer::Array)
            return typeAt(index + 1) != Lexer::LeftParen && typeAt(index + 1) != Lexer::Dot;
        return type == Lexer::Identifier && typeAt(index + 1) == Lexer::Identifier &&
               m_tokens.at(index).line == m_tokens.at(index + 1).line;
    }

    // loop: "(" array "," index "," element ")"
    void addLoopVariables(int index)
    {
        const int line = m_tokens.at(index).line;
        for (; m_tokens.at(index).line == line; ++index) {
            if (typeAt(index) == Lexer::EndOfFile || typeAt(index) == Lexer::ForEach)
                return;
            if (typeAt(index - 1) == Lexer::Comma)
                addName(index);
        }
    }

    // declarators: name [ "=" value ] { "," name [ "=" value ] }
    void addDeclarators(int index);
    bool endsDeclarators(int index, int line, int depth) const;

    const Tokens &m_tokens;
    QSet<QString> m_names;
};

// Another declaration has declarators of its own; each token is seen once that way.
bool DeclaredNames::endsDeclarators(int index, int line, int depth) const
{
    switch (typeAt(index)) {
    case Lexer::EndOfFile:
    case Lexer::Semicolon:
    case Lexer::LeftBrace:
    case Lexer::RightBrace:
        return true;
    default:
        break;
    }
    const bool isNextLine = m_tokens.at(index).line != line;
    return opensDeclaration(index) ||
           (isNextLine && depth == 0 && typeAt(index - 1) != Lexer::Comma);
}

void DeclaredNames::addDeclarators(int index)
{
    int depth = 0;
    bool wantsName = true;
    for (int line = m_tokens.at(index).line; !endsDeclarators(index, line, depth); ++index) {
        const int type = typeAt(index);
        line = m_tokens.at(index).line;
        if (type == Lexer::LeftParen || type == Lexer::LeftBracket) {
            ++depth;
        } else if (type == Lexer::RightParen || type == Lexer::RightBracket) {
            if (--depth < 0)
                return;
        } else if (depth == 0 && type == Lexer::Comma) {
            if (wantsName)
                return;
            wantsName = true;
        } else if (depth == 0 && wantsName) {
            if (!addName(index))
                return;
            wantsName = false;
        }
    }
}

// Where each line of the text begins; the first entry is line 1.
QVector<int> lineStarts(const QString &text)
{
    QVector<int> starts{0};
    for (int at = text.indexOf(QLatin1Char('\n')); at >= 0;
         at = text.indexOf(QLatin1Char('\n'), at + 1))
        starts << at + 1;
    return starts;
}

class References
{
public:
    References(const QString &text, const Tokens &tokens)
        : m_text(text), m_tokens(tokens), m_starts(lineStarts(text))
    {}

    int offsetOf(int index) const
    {
        const Lexer::Token &token = m_tokens.at(index);
        return m_starts.at(token.line - 1) + token.column - 1;
    }

    // Whether the token is the name in "name.member", nothing between them, at a place where a
    // reference can stand.
    bool isReference(int index) const
    {
        const int begin = offsetOf(index);
        const int dot = begin + m_tokens.at(index).text.size();
        return index + 2 < m_tokens.size() && m_tokens.at(index + 1).type == Lexer::Dot &&
               isWord(m_tokens.at(index + 2)) && offsetOf(index + 1) == dot &&
               offsetOf(index + 2) == dot + 1 && fitsAhead(index, begin) && fitsBehind(index + 2);
    }

private:
    bool fitsAhead(int index, int begin) const
    {
        if (index > 0 && m_tokens.at(index - 1).type == Lexer::Dot)
            return false;
        return begin == 0 || isBlankOr(signsAhead, m_text.at(begin - 1));
    }

    bool fitsBehind(int member) const
    {
        const int next = member + 1;
        if (next < m_tokens.size() && m_tokens.at(next).type == Lexer::LeftParen)
            return true;
        const int end = offsetOf(member) + m_tokens.at(member).text.size();
        return end >= m_text.size() || isBlankOr(signsBehind, m_text.at(end));
    }

    static bool isBlankOr(std::u16string_view signs, QChar c)
    {
        return c.isSpace() || signs.find(c.unicode()) != std::u16string_view::npos;
    }

    const QString &m_text;
    const Tokens &m_tokens;
    QVector<int> m_starts;
};

} // namespace

const QSet<QString> &componentKinds()
{
    static const QSet<QString> kinds = [] {
        QSet<QString> words;
        const QJsonArray array =
            jsonTable(QStringLiteral(":/project/component_kinds.json")).array();
        for (const QJsonValue &word : array)
            words.insert(word.toString());
        return words;
    }();
    return kinds;
}

QString withWindowPrefix(const QString &text, const QString &window,
                         const std::optional<QSet<QString>> &components)
{
    const bool isPossible = !components || !components->isEmpty();
    if (!isPossible || !mayHoldReferences(text) || !isSingleWord(window))
        return text;
    const Tokens tokens = Lexer(text).tokenize();
    const QSet<QString> declared = DeclaredNames(tokens).names();
    const References references(text, tokens);
    QString result;
    int copied = 0;
    for (int i = 0; i < tokens.size(); ++i) {
        const QString &name = tokens.at(i).text;
        if (tokens.at(i).type != Lexer::Identifier || !isDefaultName(name) ||
            declared.contains(name) || (components && !components->contains(name)) ||
            !references.isReference(i))
            continue;
        const int begin = references.offsetOf(i);
        result += text.midRef(copied, begin - copied);
        result += window + QLatin1Char('.');
        copied = begin;
    }
    if (copied == 0 && result.isEmpty())
        return text;
    return result + text.midRef(copied);
}
