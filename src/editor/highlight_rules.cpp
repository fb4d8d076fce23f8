#include "editor/highlight_rules.h"

#include "catalog/command_library.h"
#include "catalog/json_table.h"
#include "frontend/keywords.h"
#include "frontend/lexer.h"
#include "frontend/type_words.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>

using Setting::Color;

namespace {

// What a rule with an expression colours: the group `group`, 0 the whole match.
struct Capture
{
    int group;
    Color color;
};

struct ExpressionRule
{
    ExpressionRule(const char *pattern, std::vector<Capture> coloured,
                   QRegularExpression::PatternOptions options = {})
        : expression(QString::fromUtf8(pattern), options), captures(std::move(coloured))
    {
        expression.optimize();
    }

    QRegularExpression expression;
    std::vector<Capture> captures;
};

// As long as the text.
QString withoutLoneSurrogates(QString text)
{
    if (text.isValidUtf16())
        return text;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (text.at(i).isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

// A line while its colours are found. What is a string or a comment is protected: no rule for code
// may start there.
class PaintedLine
{
public:
    explicit PaintedLine(const QString &text)
        : m_text(withoutLoneSurrogates(text)), m_colors(text.size(), none)
    {}

    const QString &text() const { return m_text; }

    bool isProtected(int place) const
    {
        if (place >= m_text.size())
            return false;
        const qint8 color = m_colors[place];
        return color == qint8(Color::String) || color == qint8(Color::Comment);
    }

    int behindProtected(int place) const
    {
        while (isProtected(place))
            ++place;
        return place;
    }

    void paint(int start, int length, Color color)
    {
        std::fill_n(m_colors.begin() + start, length, qint8(color));
    }

    void paintFree(int start, int length, Color color)
    {
        const auto begin = m_colors.begin() + start;
        std::replace(begin, begin + length, none, qint8(color));
    }

    std::vector<HighlightSpan> spans() const
    {
        std::vector<HighlightSpan> result;
        const int size = m_text.size();
        for (int start = 0, end = 0; start < size; start = end) {
            const qint8 color = m_colors[start];
            while (end < size && m_colors[end] == color)
                ++end;
            if (color != none)
                result.push_back({start, end - start, Color(color)});
        }
        return result;
    }

private:
    static constexpr qint8 none = -1;

    const QString m_text;        // valid UTF-16
    std::vector<qint8> m_colors; // a Setting::Color or `none` for each character
};

// The next match that begins in code; none: the match has none either.
QRegularExpressionMatch nextMatch(const PaintedLine &line, const QRegularExpression &expression,
                                  int from)
{
    // The line is valid UTF-16; a check at each match would take quadratic time.
    const auto matchFrom = [&](int place) {
        return expression.match(line.text(), place, QRegularExpression::NormalMatch,
                                QRegularExpression::DontCheckSubjectStringMatchOption);
    };
    QRegularExpressionMatch match = matchFrom(from);
    while (match.hasMatch() && line.isProtected(match.capturedStart()))
        match = matchFrom(line.behindProtected(match.capturedStart()));
    return match;
}

// The search goes on behind what was coloured: "(" can end one match and begin the next one.
void apply(const ExpressionRule &rule, PaintedLine &line)
{
    QRegularExpressionMatch match = nextMatch(line, rule.expression, 0);
    while (match.hasMatch()) {
        for (const Capture &capture : rule.captures) {
            line.paintFree(match.capturedStart(capture.group), match.capturedLength(capture.group),
                           capture.color);
        }
        match = nextMatch(line, rule.expression, match.capturedEnd(rule.captures.back().group));
    }
}

void apply(const WordSet &words, Color color, PaintedLine &line)
{
    for (const WordSet::Hit &hit : words.hits(line.text())) {
        if (!line.isProtected(hit.start))
            line.paint(hit.start, hit.length, color);
    }
}

// Where the string that begins at `start` ends; -1 if it doesn't.
int closingQuote(const QString &text, int start)
{
    for (int i = start + 1; i < text.size(); ++i) {
        if (text.at(i) == text.at(start))
            return i;
        if (text.at(i) == QLatin1Char('\\'))
            ++i;
    }
    return -1;
}

// "[^"\\]*(\\.[^"\\]*)*" and the same in single quotes. By hand, as an expression takes quadratic
// time for quotes that nothing closes: here, one that stays open tells that all later ones do.
void paintStrings(PaintedLine &line)
{
    const QString &text = line.text();
    QString open;
    for (int i = line.behindProtected(0); i < text.size(); ++i) {
        const QChar c = text.at(i);
        if ((c != QLatin1Char('"') && c != QLatin1Char('\'')) || open.contains(c))
            continue;
        const int end = closingQuote(text, i);
        if (end < 0) {
            open += c;
            continue;
        }
        line.paint(i, end + 1 - i, Color::String);
        i = end;
    }
}

// A comment wins over a string that stands in it.
LineState paintComments(PaintedLine &line)
{
    const QString &text = line.text();
    int start = text.indexOf(QLatin1Char('/'));
    while (start >= 0 && start + 1 < text.size()) {
        int behind = start + 1;
        if (line.isProtected(start)) {
            behind = line.behindProtected(start);
        } else if (text.at(start + 1) == QLatin1Char('/')) {
            line.paint(start, text.size() - start, Color::Comment);
            break;
        } else if (text.at(start + 1) == QLatin1Char('*')) {
            const int end = text.indexOf(QLatin1String("*/"), start + 2);
            behind = end < 0 ? text.size() : end + 2;
            line.paint(start, behind - start, Color::Comment);
            if (end < 0)
                return LineState::InComment;
        }
        start = text.indexOf(QLatin1Char('/'), behind);
    }
    return LineState::Code;
}

// Digits at the end of a Chinese name belong to the name.
void paintNumbers(PaintedLine &line)
{
    static const ExpressionRule numbers(R"(\b[0-9]+(\.[0-9]+)?\b)", {{0, Color::Number}},
                                        QRegularExpression::UseUnicodePropertiesOption);
    apply(numbers, line);
}

void paintMembers(PaintedLine &line)
{
    static const ExpressionRule members(
        R"(\.\s*([A-Za-z_\x{4e00}-\x{9fff}][0-9A-Za-z_\x{4e00}-\x{9fff}]*))",
        {{1, Color::MemberEvent}});
    apply(members, line);
}

void paintFunctionHeaders(PaintedLine &line)
{
    static const ExpressionRule headers(R"((?:^|\s)(?:函数|子程序)\s+([^\s(]+)\s*\()",
                                        {{1, Color::UserFunction}});
    apply(headers, line);
}

// Parameters are declarations too.
void paintDeclarations(PaintedLine &line)
{
    static const ExpressionRule declarations(
        "(文本|整数|长整数|小数|单浮点|双浮点|逻辑|变量|数组|二维数组|三维数组|通用|字节集|空)"
        R"(\s+([A-Za-z0-9_\x{4e00}-\x{9fff}]+)(\[\])?)",
        {{1, Color::Keyword}, {2, Color::Variable}});
    apply(declarations, line);
}

void paintCalls(PaintedLine &line)
{
    static const ExpressionRule calls(
        R"((?:^|[^0-9A-Za-z_\x{4e00}-\x{9fff}]))"
        R"(([A-Za-z_\x{4e00}-\x{9fff}][0-9A-Za-z_\x{4e00}-\x{9fff}]*)\s*\()",
        {{1, Color::UserFunction}});
    apply(calls, line);
}

void paintOperators(PaintedLine &line)
{
    static const ExpressionRule operators("[≠≤≥≈]", {{0, Color::Operator}});
    apply(operators, line);
}

QStringList toList(const QJsonArray &array)
{
    QStringList result;
    for (const QJsonValue &value : array)
        result << value.toString();
    return result;
}

// The words that every editor colours.
struct FixedWords
{
    QStringList keywords;
    QStringList builtins;
    QStringList constants;

    FixedWords()
    {
        const QJsonObject words =
            jsonTable(QStringLiteral(":/editor/highlight_words.json")).object();
        keywords = toList(words.value(QLatin1String("keywords")).toArray());
        builtins = toList(jsonTable(QStringLiteral(":/codegen/builtin_names.json")).array());
        constants = toList(words.value(QLatin1String("constants")).toArray());
        for (const CommandInfo &command : CommandLibrary::builtin().allCommands()) {
            if (command.isConstant())
                constants << command.name << command.aliases;
        }
        constants = constants.filter(QRegularExpression(QStringLiteral("^#.")));
    }
};

const FixedWords &fixedWords()
{
    static const FixedWords words;
    return words;
}

} // namespace

QStringList fixedKeywords()
{
    return fixedWords().keywords;
}

QStringList furtherReservedWords()
{
    QStringList result;
    for (const Keyword &keyword : keywords()) {
        const bool isName =
            keyword.kind == Lexer::Identifier || isTypeWord(keyword.kind, TypePlace::PreScan);
        if (keyword.word.size() > 1 && !isName && !fixedWords().keywords.contains(keyword.word))
            result << keyword.word;
    }
    return result;
}

bool HighlightWords::operator==(const HighlightWords &other) const
{
    return keywords == other.keywords && builtins == other.builtins &&
           constants == other.constants && names == other.names;
}

bool HighlightSpan::operator==(const HighlightSpan &other) const
{
    return start == other.start && length == other.length && color == other.color;
}

HighlightRules::HighlightRules(const HighlightWords &words)
    : m_keywords(fixedWords().keywords + words.keywords),
      m_builtins(fixedWords().builtins + words.builtins),
      m_constants(fixedWords().constants + words.constants),
      m_names(words.names)
{}

// The order of the rules decides: a word takes over from those before it, an expression does not.
HighlightedLine HighlightRules::highlighted(const QString &text, LineState previous) const
{
    PaintedLine line(text);
    if (previous == LineState::InComment) {
        const int end = text.indexOf(QLatin1String("*/"));
        line.paint(0, end < 0 ? text.size() : end + 2, Color::Comment);
        if (end < 0)
            return {line.spans(), LineState::InComment};
    }
    paintStrings(line);
    const LineState state = paintComments(line);
    paintNumbers(line);
    apply(m_keywords, Color::Keyword, line);
    apply(m_builtins, Color::Function, line);
    apply(m_names, Color::Component, line);
    paintMembers(line);
    paintFunctionHeaders(line);
    apply(m_constants, Color::Constant, line);
    paintDeclarations(line);
    paintCalls(line);
    paintOperators(line);
    return {line.spans(), state};
}
