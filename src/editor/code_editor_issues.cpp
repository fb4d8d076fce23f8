// How the code editor shows the findings of the check that runs while the user types.
#include "editor/code_editor.h"

#include "editor/line_number_area.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextBlock>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr int maxToolTipLine = 60; // characters

// As markup, for a message may quote what looks like it. Only long messages are broken into lines.
QString toolTipOf(const QString &messages)
{
    const QStringList lines = messages.split(QLatin1Char('\n'));
    const bool isLong = std::any_of(lines.begin(), lines.end(), [](const QString &line) {
        return line.size() > maxToolTipLine;
    });
    return isLong
               ? Qt::convertFromPlainText(messages, Qt::WhiteSpaceNormal)
               : QStringLiteral("<p style='white-space:pre'>%1</p>").arg(messages.toHtmlEscaped());
}

} // namespace

void CodeEditor::setIssues(const QList<VlSyntaxIssue> &issues)
{
    m_issues.set(issues);
    highlightCurrentLine();
    m_lineNumberArea->update();
    emit editorSyntaxDiagnostics(m_filePath, issues);
}

void CodeEditor::parseCurrentDocument()
{
    emit checkRequested();
}

void CodeEditor::paintIssueMark(QPainter &painter, bool isWarning, const QRect &line) const
{
    constexpr int width = 3;
    const QRect bar(m_lineNumberArea->width() - width, line.top(), width, line.height());
    painter.fillRect(bar, isWarning ? m_colors.warning : m_colors.error);
}

// The character under the mouse, not the gap between two that is closest to it; -1 in the open.
int CodeEditor::characterAt(const QPoint &place) const
{
    QTextCursor cursor = cursorForPosition(place);
    if (cursorRect(cursor).left() > place.x())
        cursor.movePosition(QTextCursor::PreviousCharacter);
    const QRect caret = cursorRect(cursor);
    const bool isOnLine = place.y() >= caret.top() && place.y() <= caret.bottom();
    return isOnLine && !cursor.atBlockEnd() ? cursor.position() : -1;
}

bool CodeEditor::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QPlainTextEdit::viewportEvent(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const int position = characterAt(help->pos());
    const QString messages = position < 0 ? QString() : m_issues.messagesAt(position);
    if (messages.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), toolTipOf(messages), viewport());
    event->setAccepted(!messages.isEmpty());
    return true;
}
