// EditorCompletion: completion and parameter hint of one code editor.
#pragma once

#include "editor/auto_completer.h"
#include "editor/syntax_colors.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class CodeEditor;
class CompletionPopup;
class QKeyEvent;
class QLabel;
class QTextCursor;

// Passes between the editor, its completer, the list and the hint. Nothing is shown while an input
// method composes.
class EditorCompletion : public QObject
{
    Q_OBJECT

public:
    explicit EditorCompletion(CodeEditor *editor);

    // Null: nothing is offered any more.
    void setCompleter(AutoCompleter *completer);
    void setColors(const SyntaxColors &colors);

    // To be asked before the editor does anything with a key; true: the key is done with.
    bool takesKey(const QKeyEvent &event);
    // To be told when the editor has done with a key, or has taken over what an input method wrote.
    void keyDone(const QString &typed);
    void setComposing(bool isComposing);

    void updateCompletions(AutoCompleter::Demand demand = AutoCompleter::Demand::Typed);
    void updateAutoComplete();
    void updateParamHint();
    void insertCompletion(const QString &completion);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QString textUpTo(int column);
    QString textBefore();
    int addedLines() const;
    QRect caret(const QTextCursor &cursor) const;
    bool accept(CompletionItem item);
    bool acceptsCurrent();
    bool isOfferCurrent() const;
    void followScrolling();
    void hideAll();
    void hideList();
    void reportCommand();
    QString commandAtCursor();

    CodeEditor *m_editor;
    QPointer<AutoCompleter> m_completer;
    CompletionPopup *m_popup;
    QLabel *m_hint;
    QTimer m_delay;        // from the last change of the text to the trigger
    QTimer m_staleCheck;   // runs when the events at hand are done with
    QTimer m_commandDelay; // from the last move of the cursor to the report
    CompletionOffer m_offer;
    int m_offerPosition = 0; // of the cursor
    int m_offerRevision = 0; // of the document
    QString m_above;         // what stands above some line; a change of it empties this
    QString m_command;       // the one reported last
    int m_symbolLines = 0;   // of the document when its symbols were read
    bool m_isComposing = false;
};
