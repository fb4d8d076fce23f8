// Takes C++ text apart into tokens, as far as cutting a program into units needs it.
#pragma once

#include <QString>
#include <QStringView>

struct CppToken
{
    enum class Kind
    {
        End,
        Name,
        Number,
        Text, // a string or character literal, raw strings included
        Comment,
        Directive, // a preprocessor line with its continuations
        Sign,      // one character
    };

    bool isSign(char sign) const { return kind == Kind::Sign && first == QLatin1Char(sign); }
    int length() const { return end - begin; }

    Kind kind = Kind::End;
    int begin = 0;
    int end = 0;
    QChar first;
};

// Reads token after token; never fails: what is left open at the end of the text ends there.
class CppTokenReader
{
public:
    // `text` must outlive the reader.
    explicit CppTokenReader(QStringView text, int begin = 0) : m_text(text), m_at(begin) {}

    // The next token; blanks are passed over, comments are not.
    CppToken next();
    // Passes over everything up to the bracket that closes `open`, which was read last. False when
    // there is none.
    bool skipGroup();
    int position() const { return m_at; }
    QStringView textOf(const CppToken &token) const
    {
        return m_text.mid(token.begin, token.length());
    }

private:
    QChar at(int position) const { return position < m_text.size() ? m_text[position] : QChar(); }
    bool startsLine(int position) const;
    int literalEnd(int quoteAt) const;
    int rawStringEnd(int quoteAt) const;
    int lineEnd(int position) const;
    int directiveEnd() const;
    int nameEnd() const;

    QStringView m_text;
    int m_at;
};

// `text` without comments and needless blanks: equal for two texts that compile to the same.
QString cppCodeOnly(QStringView text);
