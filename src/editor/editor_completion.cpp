#include "editor/editor_completion.h"

#include "editor/code_editor.h"
#include "editor/completion_insertion.h"
#include "editor/completion_popup.h"
#include "editor/popup_place.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTextBlock>

namespace {

constexpr int triggerDelay = 280; // ms
constexpr int commandDelay = 100; // ms

} // namespace

EditorCompletion::EditorCompletion(CodeEditor *editor)
    : QObject(editor),
      m_editor(editor),
      m_popup(new CompletionPopup(editor)),
      m_hint(new QLabel(editor, Qt::ToolTip))
{
    m_hint->setAttribute(Qt::WA_ShowWithoutActivating);
    m_hint->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_hint->setTextFormat(Qt::RichText);
    m_hint->setStyleSheet(
        QStringLiteral("QLabel { background-color: #3C3C3C; color: #D4D4D4; border: 1px solid "
                       "#555; padding: 4px 8px; border-radius: 3px; }"));
    m_delay.setSingleShot(true);
    m_delay.setInterval(triggerDelay);
    m_commandDelay.setSingleShot(true);
    m_commandDelay.setInterval(commandDelay);
    connect(&m_delay, &QTimer::timeout, editor, &CodeEditor::updateAutoComplete);
    connect(&m_commandDelay, &QTimer::timeout, this, &EditorCompletion::reportCommand);
    connect(editor, &CodeEditor::textChanged, this, [this] {
        // What others do to the text is no typing.
        if (m_editor->hasFocus())
            m_delay.start();
        m_staleCheck.start();
    });
    connect(editor->document(), &QTextDocument::contentsChange, this, [this](int position) {
        if (position < m_above.size())
            m_above.clear();
    });
    connect(editor, &CodeEditor::cursorPositionChanged, this, [this] {
        m_commandDelay.start();
        m_staleCheck.start();
        if (m_hint->isVisible())
            updateParamHint();
    });
    // Keys bring the list up to date at once; what is left behind came by another way.
    m_staleCheck.setSingleShot(true);
    connect(&m_staleCheck, &QTimer::timeout, this, [this] {
        if (m_popup->isVisible() && !isOfferCurrent())
            hideList();
    });
    connect(m_popup, &CompletionPopup::picked, this, [this] { acceptsCurrent(); });
    connect(editor->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &EditorCompletion::followScrolling);
    editor->installEventFilter(this);
    editor->viewport()->installEventFilter(this);
}

void EditorCompletion::setCompleter(AutoCompleter *completer)
{
    if (m_completer)
        m_completer->disconnect(this);
    m_completer = completer;
    hideAll();
    if (!completer)
        return;
    m_symbolLines = m_editor->blockCount();
    connect(completer, &AutoCompleter::documentSymbolsChanged, this,
            [this] { m_symbolLines = m_editor->blockCount(); });
}

void EditorCompletion::setColors(const SyntaxColors &colors)
{
    m_popup->setColors(colors);
}

// The text down to a place in the cursor's line. The document is not read as a whole for each key.
QString EditorCompletion::textUpTo(int column)
{
    const QTextBlock line = m_editor->textCursor().block();
    if (m_above.size() != line.position())
        m_above = m_editor->text().left(line.position());
    return m_above + line.text().leftRef(column);
}

QString EditorCompletion::textBefore()
{
    return textUpTo(m_editor->textCursor().positionInBlock());
}

int EditorCompletion::addedLines() const
{
    return qMax(0, m_editor->blockCount() - m_symbolLines);
}

// Global.
QRect EditorCompletion::caret(const QTextCursor &cursor) const
{
    const QRect rect = m_editor->cursorRect(cursor);
    return {m_editor->viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

bool EditorCompletion::takesKey(const QKeyEvent &event)
{
    if (!m_completer)
        return false;
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_Space && modifiers == Qt::ControlModifier) {
        updateCompletions(AutoCompleter::Demand::Asked);
        return true;
    }
    if (event.key() == Qt::Key_F1 && modifiers == Qt::NoModifier) {
        const CompletionItem *current = m_popup->isVisible() ? m_popup->currentItem() : nullptr;
        const QString command = current ? current->record : commandAtCursor();
        if (!command.isEmpty())
            emit m_editor->commandHelpRequested(command);
        return !command.isEmpty();
    }
    if (!m_popup->isVisible()) {
        const bool closesHint = event.key() == Qt::Key_Escape && m_hint->isVisible();
        m_hint->setVisible(m_hint->isVisible() && !closesHint);
        return closesHint;
    }
    switch (event.key()) {
    case Qt::Key_Escape:
    case Qt::Key_Backtab:
        hideList();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return modifiers == Qt::NoModifier && acceptsCurrent();
    case Qt::Key_Tab:
        if (modifiers != Qt::ShiftModifier)
            return false;
        hideList();
        return true;
    default:
        return modifiers == Qt::NoModifier && m_popup->moveBy(event.key());
    }
}

void EditorCompletion::keyDone(const QString &typed)
{
    if (!m_completer)
        return;
    const QChar sign = typed.isEmpty() ? QChar() : typed.at(typed.size() - 1);
    if (sign == QLatin1Char(')') || sign == QChar(u'）'))
        m_hint->hide();
    else if (QStringLiteral(",，(（").contains(sign))
        updateParamHint();
    if (sign.isPrint() || (m_popup->isVisible() && !isOfferCurrent()))
        updateCompletions();
}

void EditorCompletion::setComposing(bool isComposing)
{
    m_isComposing = isComposing;
    if (isComposing)
        m_popup->hide();
}

void EditorCompletion::updateCompletions(AutoCompleter::Demand demand)
{
    if (!m_completer || m_isComposing || m_editor->isReadOnly() || !m_editor->isVisible() ||
        m_editor->textCursor().hasSelection()) {
        m_popup->hide();
        return;
    }
    m_offer = m_completer->offer(textBefore(), addedLines(), demand);
    m_offerPosition = m_editor->textCursor().position();
    m_offerRevision = m_editor->document()->revision();
    if (m_offer.items.isEmpty()) {
        m_popup->hide();
        return;
    }
    m_popup->setFont(m_editor->font());
    // The list stands below the beginning of the name, so that it keeps its place while one types.
    QTextCursor begin = m_editor->textCursor();
    begin.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, m_offer.prefix.size());
    m_popup->showItems(m_offer.items, caret(begin));
    if (m_hint->isVisible())
        updateParamHint();
}

void EditorCompletion::updateAutoComplete()
{
    if (!m_completer || m_popup->isVisible() || m_isComposing || !m_editor->hasFocus())
        return;
    updateCompletions();
    if (m_popup->isVisible())
        emit m_editor->requestAutoComplete(m_offer.prefix);
}

void EditorCompletion::updateParamHint()
{
    const ParamHint hint = m_completer && m_editor->isVisible()
                               ? m_completer->paramHint(textBefore(), addedLines())
                               : ParamHint();
    if (hint.html.isEmpty()) {
        m_hint->hide();
        return;
    }
    m_hint->setText(hint.html);
    // It begins where the call does, so that it keeps its place while one types.
    QTextCursor opening(m_editor->document());
    opening.setPosition(hint.openingAt);
    const bool isOnThisLine = opening.block() == m_editor->textCursor().block();
    const QRect line = caret(isOnThisLine ? opening : m_editor->textCursor());
    m_hint->setGeometry(PopupPlace::hint(line, m_hint->sizeHint(),
                                         m_popup->isVisible() ? m_popup->geometry() : QRect(),
                                         PopupPlace::screenAt(line.center())));
    m_hint->show();
}

// An item that stands there in full already is not worth a key: the key goes on to the editor.
bool EditorCompletion::acceptsCurrent()
{
    const CompletionItem *current = m_popup->currentItem();
    return m_completer && current && isOfferCurrent() && accept(*current);
}

// Whether the offer was made for the text and the place of the cursor as they are.
bool EditorCompletion::isOfferCurrent() const
{
    return m_editor->textCursor().position() == m_offerPosition &&
           m_editor->document()->revision() == m_offerRevision;
}

// False if nothing had to be changed.
bool EditorCompletion::accept(CompletionItem item)
{
    hideList();
    QTextCursor cursor = m_editor->textCursor();
    const QString line = cursor.block().text();
    const CompletionInsertion insertion =
        completionInsertion(item, m_offer, line.left(cursor.positionInBlock()),
                            line.mid(cursor.positionInBlock()), m_editor->indentation());
    m_completer->notePick(item);
    if (insertion.changesNothing(m_offer.prefix))
        return false;
    cursor.beginEditBlock();
    const int start = cursor.position() - insertion.removedBefore;
    cursor.setPosition(start);
    cursor.setPosition(start + insertion.removedBefore + insertion.removedAfter,
                       QTextCursor::KeepAnchor);
    cursor.insertText(insertion.text);
    cursor.endEditBlock();
    cursor.setPosition(start + insertion.cursor);
    m_editor->setTextCursor(cursor);
    m_editor->ensureCursorVisible();
    m_delay.stop();
    if (insertion.opensCall)
        updateParamHint();
    return true;
}

void EditorCompletion::insertCompletion(const QString &completion)
{
    if (!m_completer || m_isComposing || m_editor->isReadOnly())
        return;
    m_offer = m_completer->offer(textBefore(), addedLines(), AutoCompleter::Demand::Asked);
    for (const CompletionItem &item : qAsConst(m_offer.items)) {
        if (item.text == completion) {
            accept(item);
            return;
        }
    }
    CompletionItem item;
    item.text = completion;
    item.display = completion;
    item.kind =
        completion.contains(QLatin1Char('\n')) ? CompletionKind::Snippet : CompletionKind::Variable;
    accept(item);
}

// The delayed trigger must not open again what the user has closed.
void EditorCompletion::hideList()
{
    m_popup->hide();
    m_delay.stop();
}

void EditorCompletion::followScrolling()
{
    m_popup->hide();
    if (!m_hint->isVisible())
        return;
    if (m_editor->viewport()->rect().contains(m_editor->cursorRect().center()))
        updateParamHint();
    else
        m_hint->hide();
}

void EditorCompletion::hideAll()
{
    m_popup->hide();
    m_hint->hide();
}

QString EditorCompletion::commandAtCursor()
{
    const QString text = m_editor->textCursor().block().text();
    int end = m_editor->textCursor().positionInBlock();
    while (end < text.size() &&
           (text.at(end).isLetterOrNumber() || text.at(end) == QLatin1Char('_')))
        ++end;
    return m_completer ? m_completer->command(textUpTo(end), addedLines()) : QString();
}

void EditorCompletion::reportCommand()
{
    const QString command = commandAtCursor();
    if (command == m_command)
        return;
    m_command = command;
    if (!command.isEmpty())
        emit m_editor->commandAtCursor(command);
}

bool EditorCompletion::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        m_popup->hide();
        break;
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::Resize:
        hideAll();
        break;
    case QEvent::Show:
        m_editor->window()->installEventFilter(this);
        break;
    case QEvent::Move:
        if (watched == m_editor->window())
            hideAll();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
