#include "editor/find_bar.h"

#include "editor/code_editor.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kMaxShown = 2000;    // hits that are highlighted from the top of the view on
constexpr int kRefreshDelay = 200; // milliseconds after a change of the text
const QColor kHitColor(0x6B, 0x4A, 0x1C);

} // namespace

FindBar::FindBar(QWidget *parent) : QWidget(parent)
{
    build();
    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(kRefreshDelay);
    connect(&m_refreshTimer, &QTimer::timeout, this, &FindBar::refresh);
    hide();
}

FindBar::~FindBar()
{
    setEditor(nullptr);
}

void FindBar::build()
{
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(6, 4, 6, 4);
    rows->setSpacing(4);
    const auto addField = [&](QHBoxLayout *row, const QString &hint) {
        auto *field = new QLineEdit(this);
        field->setPlaceholderText(hint);
        field->setAccessibleName(hint);
        field->setClearButtonEnabled(true);
        field->installEventFilter(this);
        row->addWidget(field, 1);
        return field;
    };
    auto *findRow = new QHBoxLayout;
    rows->addLayout(findRow);
    m_pattern = addField(findRow, QStringLiteral("查找"));
    m_case = addToggle(QStringLiteral("Aa"), QStringLiteral("区分大小写"));
    m_words = addToggle(QStringLiteral("全词"), QStringLiteral("只找完整的词"));
    m_expression = addToggle(QStringLiteral(".*"), QStringLiteral("正则表达式"));
    m_inSelection = addToggle(QStringLiteral("在选区中"), QStringLiteral("只在选中的部分里查找"));
    m_count = new QLabel(this);
    m_count->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000/00000")));
    for (QWidget *widget : {static_cast<QWidget *>(m_case), static_cast<QWidget *>(m_words),
                            static_cast<QWidget *>(m_expression),
                            static_cast<QWidget *>(m_inSelection), static_cast<QWidget *>(m_count)})
        findRow->addWidget(widget);
    findRow->addWidget(addButton(QStringLiteral("↑"), QStringLiteral("上一个 (Shift+F3)"),
                                 &FindBar::findPrevious));
    findRow->addWidget(
        addButton(QStringLiteral("↓"), QStringLiteral("下一个 (F3)"), &FindBar::findNext));
    findRow->addWidget(
        addButton(QStringLiteral("✕"), QStringLiteral("关闭 (Esc)"), &FindBar::closeBar));

    m_replaceRow = new QWidget(this);
    auto *replaceRow = new QHBoxLayout(m_replaceRow);
    replaceRow->setContentsMargins(0, 0, 0, 0);
    m_replacement = addField(replaceRow, QStringLiteral("替换"));
    replaceRow->addWidget(
        addButton(QStringLiteral("替换"), QStringLiteral("替换这一个"), &FindBar::replaceCurrent));
    replaceRow->addWidget(addButton(QStringLiteral("全部替换"), QStringLiteral("替换所有找到的"),
                                    &FindBar::replaceAll));
    rows->addWidget(m_replaceRow);
    m_message = new QLabel(this);
    m_message->setStyleSheet(QStringLiteral("color: #f48771;"));
    m_message->setWordWrap(true);
    rows->addWidget(m_message);

    connect(m_pattern, &QLineEdit::textChanged, this, &FindBar::findWhileTyping);
    for (QToolButton *toggle : {m_case, m_words, m_expression})
        connect(toggle, &QToolButton::toggled, this, &FindBar::findWhileTyping);
    connect(m_inSelection, &QToolButton::toggled, this, &FindBar::setScope);
}

QToolButton *FindBar::addToggle(const QString &text, const QString &toolTip)
{
    auto *button = new QToolButton(this);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setCheckable(true);
    button->setAutoRaise(true);
    return button;
}

QToolButton *FindBar::addButton(const QString &text, const QString &toolTip, void (FindBar::*run)())
{
    auto *button = addToggle(text, toolTip);
    button->setCheckable(false);
    connect(button, &QToolButton::clicked, this, run);
    return button;
}

void FindBar::setEditor(CodeEditor *editor)
{
    if (m_editor) {
        m_editor->removeEventFilter(this);
        m_editor->disconnect(this);
        m_editor->verticalScrollBar()->disconnect(this);
        m_editor->setSelections(CodeEditor::Layer::SearchHits, {});
    }
    m_editor = editor;
    m_scope = QTextCursor();
    m_origin = QTextCursor();
    m_inSelection->setChecked(false);
    if (!editor)
        return;
    editor->installEventFilter(this);
    connect(editor, &CodeEditor::textChanged, &m_refreshTimer, [this] {
        if (isVisible())
            m_refreshTimer.start();
    });
    connect(editor, &CodeEditor::cursorPositionChanged, this, &FindBar::showCount);
    connect(editor->verticalScrollBar(), &QScrollBar::valueChanged, this, &FindBar::showHits);
    if (isVisible())
        refresh();
}

void FindBar::open(bool withReplacement)
{
    if (!m_editor)
        return;
    m_replaceRow->setVisible(withReplacement);
    m_replaceRow->setEnabled(!m_editor->isReadOnly());
    const QTextCursor cursor = m_editor->textCursor();
    const QString selected = cursor.selectedText();
    const bool isOneLine = !selected.contains(QChar::ParagraphSeparator);
    m_origin = cursor;
    m_origin.setPosition(cursor.selectionStart());
    show();
    if (!selected.isEmpty() && isOneLine && selected != m_pattern->text()) {
        m_expression->setChecked(false);
        m_pattern->setText(selected);
    }
    m_inSelection->setChecked(!isOneLine);
    refresh();
    m_pattern->setFocus();
    m_pattern->selectAll();
}

void FindBar::closeBar()
{
    hide();
    m_inSelection->setChecked(false);
    if (!m_editor)
        return;
    m_editor->setSelections(CodeEditor::Layer::SearchHits, {});
    m_editor->setFocus();
}

void FindBar::setScope(bool isLimited)
{
    const bool hasSelection = m_editor && m_editor->textCursor().hasSelection();
    m_scope = isLimited && hasSelection ? m_editor->textCursor() : QTextCursor();
    refresh();
}

SearchRange FindBar::range() const
{
    if (m_scope.isNull())
        return {};
    return {m_scope.selectionStart(), m_scope.selectionEnd()};
}

void FindBar::refresh()
{
    m_refreshTimer.stop();
    m_search = TextSearch(m_pattern->text(),
                          {m_case->isChecked(), m_words->isChecked(), m_expression->isChecked()});
    QString error;
    m_hits.clear();
    if (m_editor)
        m_hits = m_search.all(m_editor->text(), range(), &error);
    m_message->setText(error);
    m_message->setVisible(!error.isEmpty());
    showHits();
    showCount();
}

// Only from the view on: the editor lays every highlight out anew at each change.
void FindBar::showHits()
{
    if (!m_editor || !isVisible())
        return;
    const QTextCursor top = m_editor->cursorForPosition(QPoint(0, 0));
    const auto first =
        std::lower_bound(m_hits.begin(), m_hits.end(), top.block().position(),
                         [](const SearchHit &hit, int place) { return hit.start < place; });
    QList<QTextEdit::ExtraSelection> selections;
    for (auto hit = first; hit != m_hits.end() && selections.size() < kMaxShown; ++hit) {
        if (hit->end() >= m_editor->document()->characterCount())
            break;
        QTextEdit::ExtraSelection selection;
        selection.format.setBackground(kHitColor);
        selection.cursor = QTextCursor(m_editor->document());
        selection.cursor.setPosition(hit->start);
        selection.cursor.setPosition(hit->end(), QTextCursor::KeepAnchor);
        selections.append(selection);
    }
    m_editor->setSelections(CodeEditor::Layer::SearchHits, selections);
}

void FindBar::showCount()
{
    if (m_hits.isEmpty() || !m_editor) {
        m_count->setText(m_search.isEmpty() ? QString() : QStringLiteral("无结果"));
        return;
    }
    const QTextCursor cursor = m_editor->textCursor();
    const SearchHit selected{cursor.selectionStart(),
                             cursor.selectionEnd() - cursor.selectionStart()};
    const int index = m_hits.indexOf(selected);
    m_count->setText(QStringLiteral("%1/%2").arg(index + 1).arg(m_hits.size()));
}

void FindBar::findWhileTyping()
{
    refresh();
    if (!m_editor || m_hits.isEmpty())
        return;
    if (m_origin.isNull())
        m_origin = m_editor->textCursor();
    select(TextSearch::next(m_hits, m_origin.position()));
}

void FindBar::select(int index)
{
    if (index < 0)
        return;
    const SearchHit &hit = m_hits.at(index);
    QTextCursor cursor = m_editor->textCursor();
    cursor.setPosition(hit.start);
    cursor.setPosition(hit.end(), QTextCursor::KeepAnchor);
    m_editor->setTextCursor(cursor);
}

void FindBar::findNext()
{
    if (!m_editor)
        return;
    refresh();
    const QTextCursor cursor = m_editor->textCursor();
    // An empty hit at the cursor has been visited already.
    const bool isOnEmpty =
        !cursor.hasSelection() && m_hits.contains(SearchHit{cursor.position(), 0});
    select(TextSearch::next(m_hits, cursor.selectionEnd() + int(isOnEmpty)));
    m_origin = m_editor->textCursor();
}

void FindBar::findPrevious()
{
    if (!m_editor)
        return;
    refresh();
    const QTextCursor cursor = m_editor->textCursor();
    const bool isOnEmpty =
        !cursor.hasSelection() && m_hits.contains(SearchHit{cursor.position(), 0});
    select(TextSearch::previous(m_hits, cursor.selectionStart() - int(isOnEmpty)));
    m_origin = m_editor->textCursor();
}

void FindBar::apply(const QVector<SearchReplacement> &changes)
{
    QTextCursor edit(m_editor->document());
    edit.beginEditBlock();
    for (int i = changes.size() - 1; i >= 0; --i) {
        edit.setPosition(changes.at(i).start);
        edit.setPosition(changes.at(i).start + changes.at(i).length, QTextCursor::KeepAnchor);
        edit.insertText(changes.at(i).text);
    }
    edit.endEditBlock();
}

// The hit that is selected; without one the next hit is selected and nothing replaced.
void FindBar::replaceCurrent()
{
    if (!m_editor || m_editor->isReadOnly())
        return;
    refresh();
    const QTextCursor cursor = m_editor->textCursor();
    for (const SearchReplacement &change :
         m_search.replacements(m_editor->text(), m_replacement->text(), range())) {
        if (change.start == cursor.selectionStart() &&
            change.start + change.length == cursor.selectionEnd()) {
            apply({change});
            QTextCursor behind = m_editor->textCursor();
            behind.setPosition(change.start + change.text.size());
            m_editor->setTextCursor(behind);
            break;
        }
    }
    findNext();
}

void FindBar::replaceAll()
{
    if (!m_editor || m_editor->isReadOnly())
        return;
    refresh();
    const auto changes = m_search.replacements(m_editor->text(), m_replacement->text(), range());
    if (changes.isEmpty())
        return;
    m_editor->setSelections(CodeEditor::Layer::SearchHits, {});
    apply(changes);
    refresh();
    m_message->setText(QStringLiteral("已替换 %1 处").arg(changes.size()));
    m_message->show();
}

bool FindBar::runKey(QObject *watched, int key, Qt::KeyboardModifiers modifiers)
{
    const bool isShifted = modifiers == Qt::ShiftModifier;
    if (modifiers != Qt::NoModifier && !isShifted)
        return false;
    const bool isField = watched != m_editor;
    const bool isReturn = isField && (key == Qt::Key_Return || key == Qt::Key_Enter);
    if (isReturn && watched == m_replacement && !isShifted)
        replaceCurrent();
    else if (isReturn || key == Qt::Key_F3)
        isShifted ? findPrevious() : findNext();
    else if (key == Qt::Key_Escape && isVisible() && !isShifted)
        closeBar();
    else
        return false;
    return true;
}

bool FindBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    return runKey(watched, key->key(), key->modifiers() & ~Qt::KeypadModifier);
}
