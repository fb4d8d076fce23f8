// SyntaxHighlighter: colours a document of source code.
#pragma once

#include "editor/highlight_rules.h"
#include "editor/syntax_colors.h"

#include <QSyntaxHighlighter>
#include <QTextCursor>
#include <QTimer>

// Starts with the default colours and the fixed vocabulary. The state of a block is a `LineState`.
// Works through a document from the top in turns of the event loop, so that a large one does not
// hold up the windows; lines that have had their turn are coloured as soon as they change.
class SyntaxHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    explicit SyntaxHighlighter(QTextDocument *document);

    // Both colour the whole document again when something has changed.
    void setColors(const SyntaxColors &colors);
    void setWords(const HighlightWords &words);
    // Colours the whole document again.
    void beginAnew();
    // Whether every line has had its turn.
    bool isComplete() const { return m_next.isNull(); }

protected:
    void highlightBlock(const QString &text) override;

private:
    void goOn();

    SyntaxColors m_colors;
    HighlightWords m_words;
    HighlightRules m_rules;
    QTextCursor m_next; // in the first line that has not had its turn; null: there is none
    QTimer m_turn;
};
