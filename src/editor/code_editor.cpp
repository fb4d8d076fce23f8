#include "editor/code_editor.h"

#include "editor/editor_completion.h"
#include "editor/line_number_area.h"
#include "editor/punctuation.h"

#include <QFileInfo>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>

namespace {

// What a shortcut of the editor itself does.
struct Shortcut
{
    int keys;
    void (CodeEditor::*run)();
};

const Shortcut kShortcuts[] = {
    {int(Qt::CTRL) | int(Qt::SHIFT) | Qt::Key_D, &CodeEditor::duplicate},
    {int(Qt::CTRL) | Qt::Key_Slash, &CodeEditor::toggleLineComments},
    {int(Qt::CTRL) | int(Qt::SHIFT) | Qt::Key_Slash, &CodeEditor::toggleBlockComment},
    // What Shift makes of the slash key on most keyboards.
    {int(Qt::CTRL) | int(Qt::SHIFT) | Qt::Key_Question, &CodeEditor::toggleBlockComment},
    {int(Qt::CTRL) | Qt::Key_F2, &CodeEditor::toggleBookmark},
    {Qt::Key_F2, &CodeEditor::goToNextBookmark},
    {int(Qt::SHIFT) | Qt::Key_F2, &CodeEditor::goToPreviousBookmark},
    {int(Qt::ALT) | Qt::Key_Up, &CodeEditor::moveLinesUp},
    {int(Qt::ALT) | Qt::Key_Down, &CodeEditor::moveLinesDown},
    {int(Qt::CTRL) | Qt::Key_0, &CodeEditor::resetZoom},
    {int(Qt::CTRL) | Qt::Key_Plus, &CodeEditor::zoomInOnePoint},
    {int(Qt::CTRL) | int(Qt::SHIFT) | Qt::Key_Plus, &CodeEditor::zoomInOnePoint},
    {int(Qt::CTRL) | Qt::Key_Equal, &CodeEditor::zoomInOnePoint},
    {int(Qt::CTRL) | Qt::Key_Minus, &CodeEditor::zoomOutOnePoint},
};

constexpr int kOccurrenceDelay = 200; // milliseconds

// Whether the key writes its text. Ctrl+Alt is the AltGr of keyboards that write brackets with it.
bool writesText(const QKeyEvent &event)
{
    const auto modifiers =
        event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return event.text().size() == 1 && event.text().at(0).isPrint() &&
           (modifiers == Qt::NoModifier || modifiers == (Qt::ControlModifier | Qt::AltModifier));
}

} // namespace

CodeEditor::CodeEditor(QWidget *parent)
    : QPlainTextEdit(parent),
      m_lineNumberArea(new LineNumberArea(this)),
      m_completion(new EditorCompletion(this)),
      m_issues(document()),
      m_codeFont(QString::fromUtf8(Setting::Editor::fontFamily.fallback),
                 Setting::Editor::fontSize.fallback)
{
    m_codeFont.setStyleHint(QFont::Monospace);
    setLineWrapMode(NoWrap);
    connect(this, &CodeEditor::blockCountChanged, this, &CodeEditor::updateLineNumberAreaWidth);
    connect(this, &CodeEditor::updateRequest, this, &CodeEditor::updateLineNumberArea);
    connect(this, &CodeEditor::cursorPositionChanged, this, &CodeEditor::onCursorPositionChanged);
    connect(this, &CodeEditor::textChanged, this, &CodeEditor::highlightCurrentLine);
    connect(this, &CodeEditor::textChanged, this, &CodeEditor::parseCurrentDocument);
    m_bracketTimer.setSingleShot(true);
    connect(&m_bracketTimer, &QTimer::timeout, this,
            [this] { setSelections(Layer::Brackets, bracketSelections()); });
    m_occurrenceTimer.setSingleShot(true);
    m_occurrenceTimer.setInterval(kOccurrenceDelay);
    connect(&m_occurrenceTimer, &QTimer::timeout, this, &CodeEditor::highlightOccurrences);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, &m_occurrenceTimer,
            qOverload<>(&QTimer::start));
    setColors(EditorColors());
    applyFont();
}

QString CodeEditor::text() const
{
    return document()->toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

void CodeEditor::setFilePath(const QString &path)
{
    if (path == m_filePath)
        return;
    m_filePath = path;
    emit filePathChanged(path);
}

QString CodeEditor::title() const
{
    return m_filePath.isEmpty() ? m_untitledName + QStringLiteral("(未保存)")
                                : QFileInfo(m_filePath).fileName();
}

QSet<int> CodeEditor::breakpoints() const
{
    return LineMarks::lines(*document(), LineMarks::Kind::Breakpoint);
}

void CodeEditor::setBreakpoints(const QSet<int> &lines)
{
    LineMarks::setLines(*document(), LineMarks::Kind::Breakpoint, lines);
    m_lineNumberArea->update();
}

QSet<int> CodeEditor::bookmarks() const
{
    return LineMarks::lines(*document(), LineMarks::Kind::Bookmark);
}

void CodeEditor::setBookmarks(const QSet<int> &lines)
{
    LineMarks::setLines(*document(), LineMarks::Kind::Bookmark, lines);
    m_lineNumberArea->update();
}

void CodeEditor::toggleBreakpoint(int line)
{
    const QTextBlock block = document()->findBlockByNumber(line - 1);
    if (!block.isValid())
        return;
    const bool isSet = !LineMarks::has(block, LineMarks::Kind::Breakpoint);
    LineMarks::set(block, LineMarks::Kind::Breakpoint, isSet);
    m_lineNumberArea->update();
    emit breakpointToggled(line, isSet);
}

void CodeEditor::toggleBookmark()
{
    const QTextBlock block = textCursor().block();
    LineMarks::set(block, LineMarks::Kind::Bookmark,
                   !LineMarks::has(block, LineMarks::Kind::Bookmark));
    m_lineNumberArea->update();
}

void CodeEditor::goToNextBookmark()
{
    QList<int> lines = bookmarks().values();
    std::sort(lines.begin(), lines.end());
    const int current = textCursor().blockNumber() + 1;
    const auto next = std::upper_bound(lines.begin(), lines.end(), current);
    if (!lines.isEmpty())
        goToLine(next == lines.end() ? lines.first() : *next);
}

void CodeEditor::goToPreviousBookmark()
{
    QList<int> lines = bookmarks().values();
    std::sort(lines.begin(), lines.end());
    const int current = textCursor().blockNumber() + 1;
    const auto behind = std::lower_bound(lines.begin(), lines.end(), current);
    if (!lines.isEmpty())
        goToLine(behind == lines.begin() ? lines.last() : *(behind - 1));
}

void CodeEditor::goToLine(int line)
{
    const int number = qBound(0, line - 1, blockCount() - 1);
    setTextCursor(QTextCursor(document()->findBlockByNumber(number)));
    centerCursor();
}

CodeEditor::Touched CodeEditor::touchedLines() const
{
    const QTextCursor cursor = textCursor();
    QTextBlock block = document()->findBlock(cursor.selectionStart());
    const int start = block.position();
    QStringList lines{block.text()};
    while (block.position() + block.length() <= cursor.selectionEnd()) {
        block = block.next();
        lines.append(block.text());
    }
    return {{lines.join(QLatin1Char('\n')), cursor.anchor() - start, cursor.position() - start},
            start};
}

void CodeEditor::apply(const TypingRules::Change &change, int start)
{
    if (isReadOnly())
        return;
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    for (int i = change.replacements.size() - 1; i >= 0; --i) {
        const TypingRules::Replacement &replacement = change.replacements.at(i);
        cursor.setPosition(start + replacement.start);
        cursor.setPosition(start + replacement.start + replacement.length, QTextCursor::KeepAnchor);
        cursor.insertText(replacement.text);
    }
    cursor.endEditBlock();
    cursor.setPosition(start + change.anchor);
    cursor.setPosition(start + change.cursor, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void CodeEditor::duplicate()
{
    const Touched lines = touchedLines();
    apply(TypingRules::duplicate(lines.state), lines.start);
}

void CodeEditor::toggleLineComments()
{
    const Touched lines = touchedLines();
    apply(TypingRules::toggleLineComments(lines.state), lines.start);
}

void CodeEditor::toggleBlockComment()
{
    const Touched lines = touchedLines();
    apply(TypingRules::toggleBlockComment(lines.state), lines.start);
}

void CodeEditor::wrapSelection(const QString &word)
{
    const Touched lines = touchedLines();
    if (const auto change = TypingRules::wrap(lines.state, word, m_indentation))
        apply(*change, lines.start);
}

void CodeEditor::convertChinesePunctuation()
{
    convertLine(textCursor().block());
}

// Signs are replaced one for one, so that every place in the line stays what it was.
void CodeEditor::convertLine(const QTextBlock &block)
{
    const QString converted = withAsciiPunctuation(block.text());
    if (m_isComposing || isReadOnly() || converted == block.text())
        return;
    QTextCursor shown = textCursor();
    const int anchor = shown.anchor();
    const int position = shown.position();
    const bool isShown = shown.block() == block;

    QTextCursor edit(block);
    edit.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    edit.insertText(converted);
    if (isShown) {
        shown.setPosition(anchor);
        shown.setPosition(position, QTextCursor::KeepAnchor);
        setTextCursor(shown);
    }
}

// Whether the cursor's line is to be converted once `text` is typed. A sign that stands last may
// still be part of what is being written, as is the text after an opening quotation mark.
bool CodeEditor::convertsAfter(const QString &text) const
{
    const QTextCursor cursor = textCursor();
    const QString line = cursor.block().text();
    const QString before = line.left(cursor.positionInBlock()) + text;
    const QString after = before + line.mid(cursor.positionInBlock());
    const QString last = text.right(1);
    return !m_isComposing && withAsciiPunctuation(last) == last && !TypingRules::isInText(before) &&
           withAsciiPunctuation(after) != after;
}

// Typing that converts is one step of undo with it; other typing is left to merge into steps.
void CodeEditor::typeText(const QString &text, const std::function<void()> &insert)
{
    const bool converts = convertsAfter(text);
    QTextCursor step = textCursor();
    if (converts)
        step.beginEditBlock();
    insert();
    m_typedLine = textCursor();
    if (converts) {
        convertLine(textCursor().block());
        step.endEditBlock();
    }
}

void CodeEditor::onCursorPositionChanged()
{
    const QTextCursor cursor = textCursor();
    if (!m_typedLine.isNull() && !m_isComposing && m_typedLine.block() != cursor.block()) {
        const QTextBlock left = m_typedLine.block();
        m_typedLine = QTextCursor();
        // Undo that moves the cursor to another line must not lose its way back, and where there is
        // nothing to undo another text has taken the place of the one typed in.
        if (document()->isUndoAvailable() && !document()->isRedoAvailable())
            convertLine(left);
    }
    highlightCurrentLine();
    setSelections(Layer::Occurrences, {});
    m_occurrenceTimer.start();
    emit cursorPositionInfo(cursor.blockNumber() + 1, cursor.positionInBlock() + 1);
}

bool CodeEditor::runShortcut(const QKeyEvent &event)
{
    const int keys = event.key() | int(event.modifiers() & ~Qt::KeypadModifier);
    for (const Shortcut &shortcut : kShortcuts) {
        if (shortcut.keys == keys) {
            (this->*shortcut.run)();
            return true;
        }
    }
    return false;
}

// Return, Tab, Backtab and the signs that come in pairs.
// To the first character that is no blank, and from there to the first of all.
void CodeEditor::moveToLineStart(bool keepsAnchor)
{
    QTextCursor cursor = textCursor();
    const int indentation = leadingLength(cursor.block().text());
    const int column = cursor.positionInBlock() == indentation ? 0 : indentation;
    cursor.setPosition(cursor.block().position() + column,
                       keepsAnchor ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    setTextCursor(cursor);
}

bool CodeEditor::runEditingKey(const QKeyEvent &event)
{
    const auto modifiers = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const Touched lines = touchedLines();
    const bool isShifted = event.modifiers().testFlag(Qt::ShiftModifier);
    switch (modifiers == Qt::NoModifier ? event.key() : int(Qt::Key_unknown)) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        insertLineBreak();
        return true;
    case Qt::Key_Home:
        moveToLineStart(isShifted);
        return true;
    case Qt::Key_Backtab:
    case Qt::Key_Tab:
        apply(isShifted ? TypingRules::unindent(lines.state, m_indentation)
                        : TypingRules::tab(lines.state, m_indentation),
              lines.start);
        return true;
    default:
        break;
    }
    if (!writesText(event))
        return false;
    const auto change = TypingRules::typed(lines.state, event.text().at(0));
    if (change)
        apply(*change, lines.start);
    return change.has_value();
}

void CodeEditor::insertLineBreak()
{
    QTextCursor step = textCursor();
    step.beginEditBlock();
    convertLine(step.block());
    m_typedLine = QTextCursor();
    const QTextBlock upper = document()->findBlock(step.selectionStart());
    const QString before = upper.text().left(step.selectionStart() - upper.position());
    const Touched lines = touchedLines();
    apply(TypingRules::lineBreak(lines.state, m_indentation), lines.start);
    // The document leaves marks on the upper line, which may have lost its text to the lower one.
    if (before.trimmed().isEmpty() && !textCursor().block().text().trimmed().isEmpty())
        LineMarks::move(upper, textCursor().block());
    step.endEditBlock();
    ensureCursorVisible();
}

void CodeEditor::keyPressEvent(QKeyEvent *event)
{
    if (m_completion->takesKey(*event) || runShortcut(*event))
        return;
    const auto insert = [&] {
        if (isReadOnly() || !runEditingKey(*event))
            QPlainTextEdit::keyPressEvent(event);
    };
    const bool isTyping = !isReadOnly() && writesText(*event);
    if (isTyping)
        typeText(event->text(), insert);
    else
        insert();
    m_completion->keyDone(isTyping ? event->text() : QString());
}

// A sign that an input method hands over alone is like one from the keyboard.
void CodeEditor::inputMethodEvent(QInputMethodEvent *event)
{
    m_isComposing = !event->preeditString().isEmpty();
    m_completion->setComposing(m_isComposing);
    const QString committed = event->commitString();
    if (isReadOnly() || committed.isEmpty()) {
        QPlainTextEdit::inputMethodEvent(event);
        return;
    }
    const Touched lines = touchedLines();
    const bool isSign = committed.size() == 1 && event->replacementLength() == 0;
    const auto change = isSign ? TypingRules::typed(lines.state, committed.at(0)) : std::nullopt;
    typeText(committed, [&] {
        if (change) {
            QInputMethodEvent rest(event->preeditString(), event->attributes());
            QPlainTextEdit::inputMethodEvent(&rest);
            apply(*change, lines.start);
        } else {
            QPlainTextEdit::inputMethodEvent(event);
        }
    });
    m_completion->keyDone(committed);
}
