#include "editor/completion_insertion.h"

namespace {

constexpr int snippetLevel = 4; // blanks

QString leadingRun(const QString &text)
{
    int length = 0;
    while (length < text.size() &&
           (text.at(length).isLetterOrNumber() || text.at(length) == QLatin1Char('_')))
        ++length;
    return text.left(length);
}

QString indented(const QString &snippet, const QString &line, const Indentation &indentation)
{
    const int depth = indentation.depth(line);
    QStringList lines = snippet.split(QLatin1Char('\n'));
    for (int i = 1; i < lines.size(); ++i) {
        const int blanks = leadingLength(lines.at(i));
        const int level = blanks / snippetLevel;
        lines[i] = indentation.leading(depth + level * indentation.width) + lines.at(i).mid(blanks);
    }
    return lines.join(QLatin1Char('\n'));
}

// The end of the first line without text, else between the first empty quotes or parentheses, else
// the end.
int firstBlankPlace(const QString &text)
{
    int place = 0;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        place += line.size();
        if (line.trimmed().isEmpty())
            return place;
        ++place;
    }
    for (const char *pair : {"\"\"", "()"}) {
        const int found = text.indexOf(QLatin1String(pair));
        if (found >= 0)
            return found + 1;
    }
    return text.size();
}

void setSnippet(CompletionInsertion &insertion, const QString &snippet, const QString &line,
                const Indentation &indentation)
{
    insertion.text = indented(snippet, line, indentation);
    insertion.cursor = firstBlankPlace(insertion.text);
}

bool isCallable(const CompletionItem &item)
{
    return item.kind == CompletionKind::Function || item.kind == CompletionKind::UserFunction ||
           item.kind == CompletionKind::Method;
}

} // namespace

CompletionInsertion completionInsertion(const CompletionItem &item, const CompletionOffer &offer,
                                        const QString &before, const QString &after,
                                        const Indentation &indentation)
{
    CompletionInsertion insertion;
    insertion.removedBefore = offer.prefix.size();
    if (item.kind == CompletionKind::Snippet) {
        setSnippet(insertion, item.text, before, indentation);
        return insertion;
    }
    if (item.kind == CompletionKind::Event && offer.isEventHead && after.trimmed().isEmpty()) {
        setSnippet(insertion, item.detail + QStringLiteral(" {\n    \n}"), before, indentation);
        return insertion;
    }
    const QString wordRest = leadingRun(after);
    if (!wordRest.isEmpty() && item.text.endsWith(wordRest))
        insertion.removedAfter = wordRest.size();
    const QString next = after.mid(insertion.removedAfter, 1);
    const bool hasParentheses = next == QLatin1String("(") || next == QStringLiteral("（");
    insertion.text = item.text;
    if (item.kind == CompletionKind::UserFunction && offer.isCallback) {
        const QString argument = before.left(before.size() - offer.prefix.size()).trimmed();
        if (!argument.endsWith(QLatin1Char('&')))
            insertion.text.prepend(QLatin1Char('&'));
        insertion.cursor = insertion.text.size();
    } else if (isCallable(item) && !hasParentheses) {
        insertion.text += QLatin1String("()");
        insertion.opensCall = item.takesParameters;
        insertion.cursor = insertion.text.size() - (item.takesParameters ? 1 : 0);
    } else {
        insertion.cursor = insertion.text.size();
    }
    return insertion;
}
