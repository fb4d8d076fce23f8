// SyntaxHighlighter: colours a document of source code.
#pragma once

#include "editor/highlight_rules.h"
#include "editor/syntax_colors.h"

#include <QSyntaxHighlighter>

// Starts with the default colours and the fixed vocabulary. The state of a block is a `LineState`.
class SyntaxHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    explicit SyntaxHighlighter(QTextDocument *document);

    // Both colour the whole document again when something has changed.
    void setColors(const SyntaxColors &colors);
    void setWords(const HighlightWords &words);

protected:
    void highlightBlock(const QString &text) override;

private:
    SyntaxColors m_colors;
    HighlightWords m_words;
    HighlightRules m_rules;
};
