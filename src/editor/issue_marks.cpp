#include "editor/issue_marks.h"

#include <QStringList>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

namespace {

// A part of a line, as offsets.
struct Span
{
    int begin = 0;
    int end = 0;
};

Span spanOf(const VlSyntaxIssue &issue, const QString &text)
{
    int end = text.size();
    while (end > 0 && text.at(end - 1).isSpace())
        --end;
    int begin = 0;
    while (begin < end && text.at(begin).isSpace())
        ++begin;
    if (issue.column < 1 || begin == end)
        return {begin, end};
    const int start = issue.column - 1;
    // What is missing behind the end of the line is shown at its last sign.
    if (start >= end)
        return {end - 1, end};
    return {start, qBound(start + 1, start + issue.length, text.size())};
}

} // namespace

IssueMarks::Mark IssueMarks::markOf(const VlSyntaxIssue &issue) const
{
    Mark mark;
    mark.issue = issue;
    const int number = qMin(issue.line, m_document->blockCount()) - 1;
    const QTextBlock block = m_document->findBlockByNumber(number);
    const Span span = spanOf(issue, block.text());
    mark.place = QTextCursor(block);
    mark.place.setPosition(block.position() + span.begin);
    mark.place.setPosition(block.position() + span.end, QTextCursor::KeepAnchor);
    // What is typed behind the place does not belong to it.
    mark.place.setKeepPositionOnInsert(true);
    mark.hasText = mark.place.hasSelection();
    return mark;
}

void IssueMarks::set(const QList<VlSyntaxIssue> &issues)
{
    m_marks.clear();
    for (const VlSyntaxIssue &issue : issues) {
        if (issue.line > 0)
            m_marks.append(markOf(issue));
    }
    underline();
}

void IssueMarks::setColors(const QColor &error, const QColor &warning)
{
    m_error = error;
    m_warning = warning;
    underline();
}

// Errors are drawn over warnings.
void IssueMarks::underline()
{
    m_underlines.clear();
    for (const bool isWarning : {true, false}) {
        QTextCharFormat format;
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        format.setUnderlineColor(isWarning ? m_warning : m_error);
        for (const Mark &mark : qAsConst(m_marks)) {
            if (mark.issue.isWarning == isWarning && mark.hasText)
                m_underlines.append({mark.place, format});
        }
    }
}

QList<VlSyntaxIssue> IssueMarks::issues() const
{
    QList<VlSyntaxIssue> issues;
    for (const Mark &mark : m_marks) {
        if (mark.isGone())
            continue;
        const QTextBlock block = m_document->findBlock(mark.place.selectionStart());
        VlSyntaxIssue issue = mark.issue;
        issue.line = block.blockNumber() + 1;
        if (issue.column > 0) {
            issue.column = mark.place.selectionStart() - block.position() + 1;
            issue.length = mark.place.selectionEnd() - mark.place.selectionStart();
        }
        issues.append(issue);
    }
    return issues;
}

QHash<int, bool> IssueMarks::lines() const
{
    QHash<int, bool> lines;
    for (const Mark &mark : m_marks) {
        if (mark.isGone())
            continue;
        const int line = m_document->findBlock(mark.place.selectionStart()).blockNumber() + 1;
        lines[line] = lines.value(line, true) && mark.issue.isWarning;
    }
    return lines;
}

QString IssueMarks::messagesAt(int position) const
{
    QStringList errors;
    QStringList warnings;
    for (const Mark &mark : m_marks) {
        const bool isHere = !mark.isGone() && position >= mark.place.selectionStart() &&
                            position < mark.place.selectionEnd();
        QStringList &messages = mark.issue.isWarning ? warnings : errors;
        if (isHere && !messages.contains(mark.issue.message))
            messages << mark.issue.message;
    }
    return (errors + warnings).join(QLatin1Char('\n'));
}
