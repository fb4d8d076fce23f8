#include "editor/typing_rules.h"

#include "editor/code_templates.h"

#include <algorithm>

namespace {

using namespace TypingRules;

struct Line
{
    int start = 0;
    QString text;

    int end() const { return start + text.size(); }
    bool isBlank() const { return leadingLength(text) == text.size(); }
};

const QString kOpenComment = QStringLiteral("/* ");
const QString kCloseComment = QStringLiteral(" */");

bool isWordSign(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

bool isEscaped(const QString &text, int index)
{
    return index > 0 && text.at(index - 1) == QLatin1Char('\\');
}

// The sign that ends what `sign` begins; null for other signs.
QChar closerOf(QChar sign)
{
    switch (sign.unicode()) {
    case u'(':
        return u')';
    case u'[':
        return u']';
    case u'{':
        return u'}';
    case u'"':
        return u'"';
    default:
        return QChar();
    }
}

bool isCloser(QChar sign)
{
    return QStringLiteral(")]}\"").contains(sign);
}

// Null at the end of the text.
QChar signBehind(const State &state)
{
    return state.end() < state.text.size() ? state.text.at(state.end()) : QChar();
}

int lineStart(const QString &text, int position)
{
    return position > 0 ? text.lastIndexOf(QLatin1Char('\n'), position - 1) + 1 : 0;
}

QString lineToCursor(const State &state)
{
    const int start = lineStart(state.text, state.begin());
    return state.text.mid(start, state.begin() - start);
}

// The lines of the selection; one that the selection only reaches the start of is none of them.
QVector<Line> selectedLines(const State &state)
{
    QVector<Line> lines;
    int start = 0;
    for (const QString &text : state.text.split(QLatin1Char('\n'))) {
        const Line line{start, text};
        const bool isReached = line.end() >= state.begin() && start <= state.end();
        const bool isOnlyTouched = start == state.end() && state.begin() < start;
        if (isReached && !isOnlyTouched)
            lines.append(line);
        start = line.end() + 1;
    }
    return lines;
}

// Where the place `position` of the text before is in the text after.
int moved(int position, const QVector<Replacement> &replacements)
{
    int shift = 0;
    for (const Replacement &replacement : replacements) {
        if (replacement.start > position)
            break;
        const int removed = qMin(replacement.length, position - replacement.start);
        shift += replacement.text.size() - removed;
    }
    return position + shift;
}

// The change of `lines` with the selection on them all, or with the cursor where it was.
Change lineChange(const State &state, const QVector<Line> &lines,
                  const QVector<Replacement> &replacements)
{
    if (!state.hasSelection()) {
        const int cursor = moved(state.cursor, replacements);
        return {replacements, cursor, cursor};
    }
    return {replacements, lines.first().start, moved(lines.last().end(), replacements)};
}

Change insertion(const State &state, const QString &text, int cursor)
{
    const Replacement replacement{state.begin(), state.end() - state.begin(), text};
    return {{replacement}, state.begin() + cursor, state.begin() + cursor};
}

Change indent(const State &state, const Indentation &indentation)
{
    const QVector<Line> lines = selectedLines(state);
    QVector<Replacement> replacements;
    for (const Line &line : lines)
        replacements.append({line.start, 0, indentation.unit()});
    return lineChange(state, lines, replacements);
}

// Whether the text is one comment, which may hold others, and nothing else.
bool isBlockComment(const QString &text)
{
    int depth = 0;
    for (int i = 0; i + 1 < text.size(); ++i) {
        const QStringRef sign = text.midRef(i, 2);
        if (sign == QLatin1String("/*"))
            ++depth;
        else if (sign == QLatin1String("*/"))
            --depth;
        else
            continue;
        ++i;
        if (depth <= 0)
            return depth == 0 && i + 1 == text.size() && i > 2;
    }
    return false;
}

// What takes the marks from the comment that reaches from `begin` to `end`.
QVector<Replacement> withoutMarks(const QString &text, int begin, int end)
{
    const int open = text.midRef(begin, 3) == kOpenComment && end - begin > 4 ? 3 : 2;
    const bool hasBlank = end - begin - open > 2 && text.midRef(end - 3, 3) == kCloseComment;
    const int close = hasBlank ? 3 : 2;
    return {{begin, open, QString()}, {end - close, close, QString()}};
}

} // namespace

State TypingRules::applied(const State &state, const Change &change)
{
    State result{state.text, change.anchor, change.cursor};
    for (int i = change.replacements.size() - 1; i >= 0; --i) {
        const Replacement &replacement = change.replacements.at(i);
        result.text.replace(replacement.start, replacement.length, replacement.text);
    }
    return result;
}

bool TypingRules::isInString(const QString &lineToCursor)
{
    bool inString = false;
    for (int i = 0; i < lineToCursor.size(); ++i) {
        if (lineToCursor.at(i) == QLatin1Char('"') && !isEscaped(lineToCursor, i))
            inString = !inString;
    }
    return inString;
}

bool TypingRules::isInText(const QString &lineToCursor)
{
    QString closers; // of the text that the walk is in
    for (int i = 0; i < lineToCursor.size(); ++i) {
        const QChar sign = lineToCursor.at(i);
        if (!closers.isEmpty()) {
            if (closers.contains(sign) && !isEscaped(lineToCursor, i))
                closers.clear();
        } else if (sign == QLatin1Char('"') && !isEscaped(lineToCursor, i)) {
            closers = sign;
        } else if (sign == u'“' || sign == u'”') {
            closers = QStringLiteral("“”");
        } else if (sign == u'‘') {
            closers = QStringLiteral("’");
        }
    }
    return !closers.isEmpty();
}

QString TypingRules::wordBefore(const QString &line, int column)
{
    int start = column;
    while (start > 0 && isWordSign(line.at(start - 1)))
        --start;
    return line.mid(start, column - start);
}

std::optional<Change> TypingRules::typed(const State &state, QChar sign)
{
    const QString before = lineToCursor(state);
    const bool inString = isInString(before);
    const bool isQuote = sign == QLatin1Char('"');
    if (isQuote && isEscaped(before + sign, before.size()))
        return std::nullopt;
    if (!state.hasSelection() && isCloser(sign) && signBehind(state) == sign && inString == isQuote)
        return Change{{}, state.cursor + 1, state.cursor + 1};
    const QChar closer = closerOf(sign);
    if (inString || closer.isNull())
        return std::nullopt;
    return insertion(state, QString(sign) + closer, 1);
}

Change TypingRules::lineBreak(const State &state, const Indentation &indentation)
{
    const QString before = lineToCursor(state);
    const int start = lineStart(state.text, state.begin());
    const QString rest = state.text.mid(state.end());
    const int depth = indentation.depth(state.text.mid(start).section(QLatin1Char('\n'), 0, 0));
    const bool opens = before.trimmed().endsWith(QLatin1Char('{'));
    const bool isBraceBehind = rest.startsWith(QLatin1Char('}')) && !before.trimmed().isEmpty();

    QString text = QLatin1Char('\n') + indentation.leading(depth + (opens ? indentation.width : 0));
    const int cursor = text.size();
    if (isBraceBehind)
        text += QLatin1Char('\n') + indentation.leading(depth);
    Change change = insertion(state, text, cursor);
    // The new line is as deep as told, whatever blanks the cursor stood in front of.
    const QString restOfLine = rest.section(QLatin1Char('\n'), 0, 0);
    change.replacements.first().length += leadingLength(restOfLine);
    return change;
}

Change TypingRules::tab(const State &state, const Indentation &indentation)
{
    if (state.hasSelection())
        return indent(state, indentation);
    const QString before = lineToCursor(state);
    const QString word = wordBefore(before, before.size());
    if (!isWordSign(signBehind(state)) && !isInText(before)) {
        const auto expanded = CodeTemplates::expanded(word, indentation.depth(before), indentation);
        if (expanded) {
            const Replacement replacement{state.cursor - word.size(), word.size(), *expanded};
            const int cursor = replacement.start + expanded->size();
            return {{replacement}, cursor, cursor};
        }
    }
    return insertion(state, indentation.unit(), indentation.unit().size());
}

Change TypingRules::unindent(const State &state, const Indentation &indentation)
{
    const QVector<Line> lines = selectedLines(state);
    QVector<Replacement> replacements;
    for (const Line &line : lines) {
        int length = 0;
        while (length < leadingLength(line.text) &&
               indentation.depth(line.text.left(length)) < indentation.width)
            ++length;
        if (length == 0)
            continue;
        const int depth = indentation.depth(line.text.left(length));
        replacements.append(
            {line.start, length, indentation.leading(qMax(0, depth - indentation.width))});
    }
    return lineChange(state, lines, replacements);
}

Change TypingRules::duplicate(const State &state)
{
    if (state.hasSelection()) {
        const QString selected = state.text.mid(state.begin(), state.end() - state.begin());
        return {{{state.end(), 0, selected}},
                state.anchor + selected.size(),
                state.cursor + selected.size()};
    }
    const Line line = selectedLines(state).first();
    const int cursor = state.cursor + line.text.size() + 1;
    return {{{line.end(), 0, QLatin1Char('\n') + line.text}}, cursor, cursor};
}

Change TypingRules::toggleLineComments(const State &state)
{
    const QVector<Line> lines = selectedLines(state);
    QVector<Line> changing;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(changing),
                 [](const Line &line) { return !line.isBlank(); });
    if (changing.isEmpty())
        changing = lines;
    const bool areComments = std::all_of(changing.begin(), changing.end(), [](const Line &line) {
        return line.text.midRef(leadingLength(line.text), 2) == QLatin1String("//");
    });

    QVector<Replacement> replacements;
    for (const Line &line : changing) {
        const int column = leadingLength(line.text);
        const int start = line.start + column;
        if (!areComments)
            replacements.append({start, 0, QStringLiteral("// ")});
        else
            replacements.append(
                {start, line.text.midRef(column, 3) == QLatin1String("// ") ? 3 : 2, QString()});
    }
    return lineChange(state, lines, replacements);
}

Change TypingRules::toggleBlockComment(const State &state)
{
    int begin = state.begin();
    int end = state.end();
    if (!state.hasSelection()) {
        const Line line = selectedLines(state).first();
        begin = line.start + leadingLength(line.text);
        end = begin + line.text.trimmed().size();
    }
    const bool isWithin = begin >= 3 && state.text.midRef(begin - 3, 3) == kOpenComment &&
                          state.text.midRef(end, 3) == kCloseComment;
    if (isWithin) {
        begin -= 3;
        end += 3;
    }
    QVector<Replacement> replacements;
    if (isBlockComment(state.text.mid(begin, end - begin)))
        replacements = withoutMarks(state.text, begin, end);
    else
        replacements = {{begin, 0, kOpenComment}, {end, 0, kCloseComment}};

    // Places at the end stay in front of the mark there.
    const auto place = [&](int position) { return moved(position, {replacements.first()}); };
    const int last = moved(end, replacements) - replacements.last().text.size();
    return {replacements, qMin(place(state.anchor), last), qMin(place(state.cursor), last)};
}

std::optional<Change> TypingRules::wrap(const State &state, const QString &word,
                                        const Indentation &indentation)
{
    const QVector<Line> lines = selectedLines(state);
    QStringList texts;
    for (const Line &line : lines)
        texts.append(line.text);
    const auto wrapped = CodeTemplates::wrapped(word, texts, indentation);
    if (!wrapped)
        return std::nullopt;
    const int start = lines.first().start;
    const QString text = wrapped->join(QLatin1Char('\n'));
    const int cursor = start + text.size();
    return Change{{{start, lines.last().end() - start, text}}, cursor, cursor};
}
