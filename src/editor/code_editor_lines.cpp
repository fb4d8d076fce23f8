// What the code editor does with whole lines, and where else the word at its cursor stands.
#include "editor/code_editor.h"

#include "editor/minimal_edit.h"
#include "editor/source_formatter.h"
#include "editor/text_search.h"

#include <QTextBlock>

#include <algorithm>
#include <vector>

namespace {

constexpr int kMinOccurrence = 2; // characters of a word

QString withoutBlanks(QString line)
{
    line.remove(QLatin1Char(' ')).remove(QLatin1Char('\t'));
    return line;
}

void setLine(const QTextBlock &block, const QString &after)
{
    QTextCursor cursor(block);
    replaceWhereDifferent(*cursor.document(), block.position(), block.text(), after);
}

// With the line end in front of it.
void removeLine(const QTextBlock &block)
{
    QTextCursor cursor(block);
    cursor.setPosition(block.position() - 1);
    cursor.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

bool isWordCharacter(QChar sign)
{
    return sign.isLetterOrNumber() || sign == QLatin1Char('_');
}

// The name that the cursor stands in or at; what is selected is one only if it is all of it.
QString wordAt(const QTextCursor &cursor)
{
    const QString line = cursor.block().text();
    int begin = cursor.positionInBlock();
    int end = begin;
    while (begin > 0 && isWordCharacter(line.at(begin - 1)))
        --begin;
    while (end < line.size() && isWordCharacter(line.at(end)))
        ++end;
    const QString word = line.mid(begin, end - begin);
    return cursor.hasSelection() && cursor.selectedText() != word ? QString() : word;
}

} // namespace

void applyFormatted(CodeEditor &editor, const QString &text)
{
    if (editor.isReadOnly() || editor.text() == text)
        return;
    const QStringList lines = text.split(QLatin1Char('\n'));
    QTextCursor step(editor.document());
    step.beginEditBlock();
    QTextBlock block = editor.document()->begin();
    int line = 0;
    while (line < lines.size() && block.isValid()) {
        const bool isSame = withoutBlanks(block.text()) == withoutBlanks(lines.at(line));
        if (!isSame && !withoutBlanks(block.text()).isEmpty())
            break;
        if (isSame) {
            setLine(block, lines.at(line++));
            block = block.next();
        } else if (block.previous().isValid()) {
            // Which of the two blocks goes is up to the document.
            const int number = block.blockNumber();
            removeLine(block);
            block = editor.document()->findBlockByNumber(number);
        } else {
            break;
        }
    }
    QTextCursor rest(editor.document());
    rest.movePosition(QTextCursor::End);
    QString missing = lines.mid(line).join(QLatin1Char('\n'));
    if (!block.isValid() && line < lines.size())
        missing.prepend(QLatin1Char('\n'));
    else if (block.isValid())
        rest.setPosition(block.position() - int(line == lines.size()), QTextCursor::KeepAnchor);
    rest.insertText(missing);
    step.endEditBlock();
}

void CodeEditor::formatSource()
{
    applyFormatted(*this, SourceFormatter::formatted(text(), m_indentation));
}

void CodeEditor::moveLinesUp()
{
    moveLines(false);
}

void CodeEditor::moveLinesDown()
{
    moveLines(true);
}

// The texts change their places, not the blocks, and take the marks along.
void CodeEditor::moveLines(bool down)
{
    const Touched touched = touchedLines();
    const int moved = touched.state.text.count(QLatin1Char('\n')) + 1;
    const QTextBlock block = document()->findBlock(touched.start);
    QTextBlock top = down ? block : block.previous();
    if (isReadOnly() || !top.isValid() || top.blockNumber() + moved >= blockCount())
        return;
    struct Line
    {
        QString text;
        bool hasBreakpoint;
        bool hasBookmark;
    };
    std::vector<Line> lines;
    for (QTextBlock line = top; int(lines.size()) <= moved; line = line.next())
        lines.push_back({line.text(), LineMarks::has(line, LineMarks::Kind::Breakpoint),
                         LineMarks::has(line, LineMarks::Kind::Bookmark)});
    const int shift = 1 + (down ? lines.back().text.size() : -2 - lines.front().text.size());
    std::rotate(lines.begin(), down ? lines.end() - 1 : lines.begin() + 1, lines.end());

    QTextCursor cursor = textCursor();
    const int anchor = cursor.anchor() + shift;
    const int position = cursor.position() + shift;
    cursor.beginEditBlock();
    for (const Line &line : lines) {
        setLine(top, line.text);
        LineMarks::set(top, LineMarks::Kind::Breakpoint, line.hasBreakpoint);
        LineMarks::set(top, LineMarks::Kind::Bookmark, line.hasBookmark);
        top = top.next();
    }
    cursor.endEditBlock();
    cursor.setPosition(qMin(anchor, document()->characterCount() - 1));
    cursor.setPosition(qMin(position, document()->characterCount() - 1), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

// Only what can be seen is searched, so that this costs the same in a text of any length.
void CodeEditor::highlightOccurrences()
{
    QList<QTextEdit::ExtraSelection> selections;
    const int position = textCursor().position();
    const QString word = wordAt(textCursor());
    const TextSearch search(word.size() < kMinOccurrence ? QString() : word, {true, true, false});
    for (QTextBlock block = firstVisibleBlock(); block.isValid() && !search.isEmpty();
         block = block.next()) {
        if (blockBoundingGeometry(block).translated(contentOffset()).top() > viewport()->height())
            break;
        for (const SearchHit &hit : search.all(block.text())) {
            QTextEdit::ExtraSelection selection;
            selection.format.setBackground(m_colors.occurrence);
            selection.cursor = QTextCursor(block);
            selection.cursor.setPosition(block.position() + hit.start);
            selection.cursor.setPosition(block.position() + hit.end(), QTextCursor::KeepAnchor);
            if (position < selection.cursor.anchor() || position > selection.cursor.position())
                selections.append(selection);
        }
    }
    setSelections(Layer::Occurrences, selections);
}
