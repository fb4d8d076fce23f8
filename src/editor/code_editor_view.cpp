// How the code editor looks: margin, highlights, font, background, context menu.
#include "editor/code_editor.h"

#include "editor/code_templates.h"

#include "editor/bracket_match.h"
#include "editor/line_number_area.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QTextBlock>
#include <QWheelEvent>

namespace {

constexpr int kMarginPadding = 6; // pixels

bool isBracket(QChar sign)
{
    return QStringLiteral("()[]{}").contains(sign);
}

} // namespace

void CodeEditor::setCodeFont(const QFont &font)
{
    m_codeFont = font;
    applyFont();
}

void CodeEditor::setIndentation(const Indentation &indentation)
{
    m_indentation = indentation;
    applyFont();
}

void CodeEditor::zoomBy(int points)
{
    const auto &size = Setting::Editor::fontSize;
    m_zoom = qBound(size.min, m_codeFont.pointSize() + m_zoom + points, size.max) -
             m_codeFont.pointSize();
    applyFont();
}

void CodeEditor::resetZoom()
{
    m_zoom = 0;
    applyFont();
}

void CodeEditor::applyFont()
{
    QFont font = m_codeFont;
    font.setPointSize(m_codeFont.pointSize() + m_zoom);
    setFont(font);
    setTabStopDistance(m_indentation.width *
                       QFontMetricsF(font).horizontalAdvance(QLatin1Char(' ')));
    updateLineNumberAreaWidth(blockCount());
}

void CodeEditor::setColors(const EditorColors &colors)
{
    m_colors = colors;
    QPalette palette = this->palette();
    palette.setColor(QPalette::Base, colors.background);
    palette.setColor(QPalette::Text, colors.text);
    setPalette(palette);
    m_issues.setColors(colors.error, colors.warning);
    highlightCurrentLine();
    m_lineNumberArea->update();
}

void CodeEditor::setBackgroundImage(const QString &path, int opacityPercent)
{
    m_background = QPixmap(path);
    m_scaledBackground = QPixmap();
    m_backgroundOpacity = qBound(0, opacityPercent, 100) / 100.0;
    viewport()->update();
}

int CodeEditor::lineNumberAreaWidth() const
{
    const int digits = qMax(2, QString::number(blockCount()).size());
    const QFontMetrics metrics(font());
    // In front of the numbers there is a square for the marks.
    return metrics.height() + digits * metrics.horizontalAdvance(QLatin1Char('9')) + kMarginPadding;
}

void CodeEditor::updateLineNumberAreaWidth(int)
{
    setViewportMargins(lineNumberAreaWidth(), 0, 0, 0);
    const QRect inner = contentsRect();
    m_lineNumberArea->setGeometry(inner.left(), inner.top(), lineNumberAreaWidth(), inner.height());
}

void CodeEditor::updateLineNumberArea(const QRect &rect, int dy)
{
    if (dy != 0)
        m_lineNumberArea->scroll(0, dy);
    else
        m_lineNumberArea->update(0, rect.y(), m_lineNumberArea->width(), rect.height());
    // The picture stands still while the text is scrolled over it.
    if (dy != 0 && !m_background.isNull())
        viewport()->update();
}

void CodeEditor::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    updateLineNumberAreaWidth(blockCount());
}

// Lines that hold Chinese text may be higher than others: every place comes from the layout.
void CodeEditor::paintLineNumbers(QPaintEvent *event)
{
    QPainter painter(m_lineNumberArea);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    painter.fillRect(event->rect(), m_colors.background);
    const QHash<int, bool> issueLines = m_issues.lines();
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF geometry = blockBoundingGeometry(block).translated(contentOffset());
        if (geometry.top() > event->rect().bottom())
            break;
        const QRect line(0, qRound(geometry.top()), m_lineNumberArea->width() - kMarginPadding,
                         qRound(geometry.height()));
        paintMarks(painter, block, line);
        const auto issues = issueLines.constFind(block.blockNumber() + 1);
        if (issues != issueLines.cend())
            paintIssueMark(painter, *issues, line);
        const bool isCurrent = block == textCursor().block();
        painter.setPen(isCurrent ? m_colors.text : m_colors.lineNumber);
        painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(block.blockNumber() + 1));
    }
}

void CodeEditor::paintMarks(QPainter &painter, const QTextBlock &block, const QRect &line) const
{
    const int size = QFontMetrics(font()).height();
    const QRect square(0, line.center().y() - size / 2, size, size);
    if (LineMarks::has(block, LineMarks::Kind::Bookmark))
        painter.fillRect(QRect(0, line.top(), 3, line.height()), m_colors.bookmark);
    if (LineMarks::has(block, LineMarks::Kind::Breakpoint)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_colors.breakpoint);
        painter.drawEllipse(square.adjusted(4, 4, -4, -4));
    }
}

QTextBlock CodeEditor::blockAt(int y) const
{
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF geometry = blockBoundingGeometry(block).translated(contentOffset());
        if (geometry.top() <= y && y < geometry.bottom())
            return block;
    }
    return {};
}

void CodeEditor::pressLineNumberArea(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QTextBlock block = blockAt(event->y());
    if (block.isValid())
        toggleBreakpoint(block.blockNumber() + 1);
}

void CodeEditor::highlightCurrentLine()
{
    QTextEdit::ExtraSelection line;
    line.format.setBackground(m_colors.currentLine);
    line.format.setProperty(QTextFormat::FullWidthSelection, true);
    line.cursor = textCursor();
    line.cursor.clearSelection();
    m_selections[std::size_t(Layer::CurrentLine)] = {line};
    setSelections(Layer::Problems, m_issues.underlines());
    m_bracketTimer.start();
}

void CodeEditor::setSelections(Layer layer, const QList<QTextEdit::ExtraSelection> &selections)
{
    m_selections[std::size_t(layer)] = selections;
    QList<QTextEdit::ExtraSelection> all;
    for (const QList<QTextEdit::ExtraSelection> &part : m_selections)
        all += part;
    setExtraSelections(all);
}

QList<QTextEdit::ExtraSelection> CodeEditor::bracketSelections() const
{
    const int position = textCursor().position();
    const bool isBeforeBracket = isBracket(document()->characterAt(position));
    const bool isBehindBracket = position > 0 && isBracket(document()->characterAt(position - 1));
    if (!isBeforeBracket && !isBehindBracket)
        return {};
    const auto brackets = matchedBrackets(text(), position);
    if (!brackets)
        return {};
    QList<QTextEdit::ExtraSelection> selections;
    for (const int place : {brackets->first, brackets->second}) {
        QTextEdit::ExtraSelection selection;
        selection.format.setForeground(m_colors.bracketMatch);
        selection.cursor = QTextCursor(document());
        selection.cursor.setPosition(place);
        selection.cursor.setPosition(place + 1, QTextCursor::KeepAnchor);
        selections.append(selection);
    }
    return selections;
}

void CodeEditor::paintEvent(QPaintEvent *event)
{
    if (!m_background.isNull()) {
        const QSize size = viewport()->size();
        if (m_scaledBackground.isNull() || m_scaledFor != size) {
            m_scaledFor = size;
            m_scaledBackground =
                m_background.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
        }
        QRect place = m_scaledBackground.rect();
        place.moveCenter(viewport()->rect().center());
        QPainter painter(viewport());
        painter.setOpacity(m_backgroundOpacity);
        painter.drawPixmap(place, m_scaledBackground);
    }
    QPlainTextEdit::paintEvent(event);
}

void CodeEditor::wheelEvent(QWheelEvent *event)
{
    if (event->modifiers() != Qt::ControlModifier) {
        QPlainTextEdit::wheelEvent(event);
        return;
    }
    if (event->angleDelta().y() != 0)
        zoomBy(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

QVariant CodeEditor::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const QVariant value = QPlainTextEdit::inputMethodQuery(query);
    if (query != Qt::ImCursorRectangle && query != Qt::ImAnchorRectangle)
        return value;
    return value.toRectF().translated(viewport()->pos());
}

QMenu *CodeEditor::createContextMenu()
{
    auto *menu = new QMenu(this);
    const auto add = [&](const char *text, const QKeySequence &keys, auto run, bool isEnabled) {
        QAction *action = menu->addAction(QString::fromUtf8(text), this, run);
        action->setShortcut(keys);
        action->setEnabled(isEnabled);
    };
    const bool canEdit = !isReadOnly();
    const bool hasSelection = textCursor().hasSelection();
    const auto removeSelection = [this] { textCursor().removeSelectedText(); };

    add("撤销(&U)", QKeySequence::Undo, &CodeEditor::undo, document()->isUndoAvailable());
    add("重做(&R)", QKeySequence::Redo, &CodeEditor::redo, document()->isRedoAvailable());
    menu->addSeparator();
    add("剪切(&T)", QKeySequence::Cut, &CodeEditor::cut, canEdit && hasSelection);
    add("复制(&C)", QKeySequence::Copy, &CodeEditor::copy, hasSelection);
    add("粘贴(&P)", QKeySequence::Paste, &CodeEditor::paste, canEdit && canPaste());
    add("删除(&D)", QKeySequence::Delete, removeSelection, canEdit && hasSelection);
    menu->addSeparator();
    add("全选(&A)", QKeySequence::SelectAll, &CodeEditor::selectAll, true);
    menu->addSeparator();
    add("查找(&F)...", QKeySequence::Find, &CodeEditor::findRequested, true);
    add("替换(&H)...", QKeySequence::Replace, &CodeEditor::replaceRequested, canEdit);
    menu->addSeparator();
    const auto keys = [](const char *text) { return QKeySequence(QLatin1String(text)); };
    add("单行注释(&/)", keys("Ctrl+/"), &CodeEditor::toggleLineComments, canEdit);
    add("多行注释(&B)", keys("Ctrl+Shift+/"), &CodeEditor::toggleBlockComment, canEdit);
    menu->addSeparator();
    add("切换书签(&M)", keys("Ctrl+F2"), &CodeEditor::toggleBookmark, true);
    QMenu *wrap = menu->addMenu(QStringLiteral("用语句包围(&W)"));
    wrap->setEnabled(canEdit && hasSelection);
    for (const QString &word : CodeTemplates::wrapWords())
        wrap->addAction(word, this, [this, word] { wrapSelection(word); });
    if (!actions().isEmpty())
        menu->addSeparator();
    menu->addActions(actions());
    return menu;
}

void CodeEditor::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}
