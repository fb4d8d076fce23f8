#include "editor/syntax_highlighter.h"

#include <QElapsedTimer>
#include <QSignalBlocker>
#include <QTextDocument>

namespace {

constexpr int turnTime = 12; // milliseconds

} // namespace

SyntaxHighlighter::SyntaxHighlighter(QTextDocument *document)
    : QSyntaxHighlighter(document), m_rules(m_words)
{
    connect(&m_turn, &QTimer::timeout, this, &SyntaxHighlighter::goOn);
    beginAnew();
}

void SyntaxHighlighter::setColors(const SyntaxColors &colors)
{
    if (m_colors == colors)
        return;
    m_colors = colors;
    beginAnew();
}

void SyntaxHighlighter::setWords(const HighlightWords &words)
{
    if (m_words == words)
        return;
    m_words = words;
    m_rules = HighlightRules(words);
    beginAnew();
}

void SyntaxHighlighter::beginAnew()
{
    m_next = QTextCursor(document());
    m_turn.start();
}

// The layout hears of the colours; others are told of changes of the text only.
void SyntaxHighlighter::goOn()
{
    QElapsedTimer timer;
    timer.start();
    const QSignalBlocker silence(document());
    QTextCursor step(document());
    step.beginEditBlock();
    while (!isComplete() && !timer.hasExpired(turnTime)) {
        const QTextBlock block = m_next.block();
        // Moving the cursor on would lay the line out.
        m_next = block.next().isValid() ? QTextCursor(block.next()) : QTextCursor();
        rehighlightBlock(block);
    }
    step.endEditBlock();
    if (isComplete())
        m_turn.stop();
}

// The first block has the previous state -1.
void SyntaxHighlighter::highlightBlock(const QString &text)
{
    if (!isComplete() && currentBlock().position() >= m_next.block().position())
        return;
    const bool inComment = previousBlockState() == int(LineState::InComment);
    const HighlightedLine line =
        m_rules.highlighted(text, inComment ? LineState::InComment : LineState::Code);
    for (const HighlightSpan &span : line.spans)
        setFormat(span.start, span.length, m_colors[span.color]);
    setCurrentBlockState(int(line.state));
}
