// Feeds any bytes to the lexer and checks what must hold for every token list.
#include "frontend/keywords.h"
#include "frontend/lexer.h"

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

// A keyword by the plain reading of the rule: any word of the table that the text starts with and
// that stands before a delimiter, the longest first.
const Keyword *keywordByComparison(const QString &text, int begin)
{
    static const QString delimiters =
        QStringLiteral(" \t\n\r(){}[],;+-*/=<>!&|.:≠≤≥≈（）｛｝【】，；：＝") + QChar();
    const Keyword *longest = nullptr;
    for (const Keyword &keyword : keywords()) {
        const int end = begin + keyword.word.size();
        if (text.midRef(begin, keyword.word.size()) != keyword.word)
            continue;
        if (end < text.size() && !delimiters.contains(text.at(end)))
            continue;
        if (!longest || keyword.word.size() > longest->word.size())
            longest = &keyword;
    }
    return longest;
}

// The index in the text of each token's first character, from its line and column.
class Positions
{
public:
    explicit Positions(const QString &text) : m_size(text.size()), m_lineStarts{0}
    {
        for (int i = 0; i < text.size(); ++i) {
            if (text.at(i) == QLatin1Char('\n'))
                m_lineStarts.append(i + 1);
        }
    }

    int indexOf(const Lexer::Token &token) const
    {
        require(token.line >= 1 && token.line <= m_lineStarts.size() && token.column >= 1);
        const int index = m_lineStarts.at(token.line - 1) + token.column - 1;
        require(index <= m_size);
        return index;
    }

private:
    int m_size;
    QList<int> m_lineStarts;
};

void checkTokens(const QString &text, const QList<Lexer::Token> &tokens)
{
    const Positions positions(text);
    require(!tokens.isEmpty() && tokens.size() <= text.size() + 1);
    int last = -1;
    for (const Lexer::Token &token : tokens) {
        const int index = positions.indexOf(token);
        require(index > last);
        last = index;
        require((token.type == Lexer::EndOfFile) == (index == text.size()));
        require(token.type != Lexer::Newline);
        if (const Keyword *keyword =
                index < text.size() ? keywordByComparison(text, index) : nullptr)
            require(token.type == keyword->kind && token.text == keyword->word);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Any UTF-16 units if the first byte is odd, else UTF-8.
    QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    if (size > 0 && data[0] % 2 == 1) {
        text.resize(int(size - 1) / 2);
        memcpy(text.data(), data + 1, size_t(text.size()) * sizeof(QChar));
    }
    Lexer lexer(text);
    checkTokens(text, lexer.tokenize());
    require(lexer.nextToken().type == Lexer::EndOfFile);
    return 0;
}
