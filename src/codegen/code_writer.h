// CodeWriter: the one place where lines of C++ are put together.
#pragma once

#include <QString>

// Collects lines at the current indentation, four blanks a level.
class CodeWriter
{
public:
    explicit CodeWriter(int level = 0) : m_level(level) {}

    // Adds one line.
    void line(const QString &text);
    // Adds a line and indents what follows.
    void open(const QString &text);
    // Goes back one level and adds the closing line.
    void close(const QString &text = QStringLiteral("}"));
    // Goes back one level, adds the line and indents again: "} else {".
    void reopen(const QString &text);
    void blankLine() { m_text += QLatin1Char('\n'); }
    // Adds text as it stands, line ends included.
    void raw(const QString &text) { m_text += text; }

    // The length of the text so far, for `markSourceLine`.
    int position() const { return m_text.size(); }
    // Appends the marker of source line `line` to the last line, if any text came since `start`.
    void markSourceLine(int start, int line);

    int level() const { return m_level; }
    const QString &text() const { return m_text; }
    QString takeText();

    // The inside of a C++ string literal that means `text`.
    static QString escaped(const QString &text);
    // `std::wstring(L"...")` for `text`.
    static QString wideString(const QString &text);

private:
    QString m_text;
    int m_level;
};
