#include "editor/syntax_highlighter.h"

SyntaxHighlighter::SyntaxHighlighter(QTextDocument *document)
    : QSyntaxHighlighter(document), m_rules(m_words)
{}

void SyntaxHighlighter::setColors(const SyntaxColors &colors)
{
    if (m_colors == colors)
        return;
    m_colors = colors;
    rehighlight();
}

void SyntaxHighlighter::setWords(const HighlightWords &words)
{
    if (m_words == words)
        return;
    m_words = words;
    m_rules = HighlightRules(words);
    rehighlight();
}

// The first block has the previous state -1.
void SyntaxHighlighter::highlightBlock(const QString &text)
{
    const bool inComment = previousBlockState() == int(LineState::InComment);
    const HighlightedLine line =
        m_rules.highlighted(text, inComment ? LineState::InComment : LineState::Code);
    for (const HighlightSpan &span : line.spans)
        setFormat(span.start, span.length, m_colors[span.color]);
    setCurrentBlockState(int(line.state));
}
