// Lexer: turns one Vorel source text into tokens.
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

#include <vector>

// The first stage of every analysis. It reports nothing: a problem is an `Error` token, or no token
// at all. One object serves one thread at a time.
class Lexer
{
public:
    // The numbers are fixed: parser, editor and `vorelc tokens` compare and print them. Numbers
    // that are left out are reserved.
    enum TokenType
    {
        Var = 0,
        Int = 2,
        Double = 3,
        Float = 4,
        Text = 5,
        Bool = 6,
        Array = 7,
        Array2D = 8,
        Array3D = 9,
        ByteArray = 10,
        Any = 11,
        Void = 12,
        If = 13,
        Else = 14,
        ElseIf = 15,
        Switch = 16,
        CaseWord = 17,
        Default = 18,
        While = 19,
        Loop = 20,
        ForEach = 21,
        Break = 22,
        Continue = 23,
        Function = 24,
        Return = 25,
        Class = 26,
        Property = 27,
        Method = 28,
        Public = 29,
        Private = 30,
        True = 32,
        False = 33,
        And = 35,
        Or = 36,
        Not = 37,
        IntLiteral = 40,
        FloatLiteral = 41,
        StringLiteral = 42,
        Identifier = 43,
        Plus = 44,
        Minus = 45,
        Star = 46,
        Slash = 47,
        Percent = 48,
        Assign = 49,
        Equal = 50,
        NotEqual = 51,
        Less = 52,
        Greater = 53,
        LessEqual = 54,
        GreaterEqual = 55,
        PlusAssign = 56,
        MinusAssign = 57,
        StarAssign = 58,
        SlashAssign = 59,
        PlusPlus = 60,
        MinusMinus = 61,
        Ampersand = 62,
        LeftParen = 63,
        RightParen = 64,
        LeftBrace = 65,
        RightBrace = 66,
        LeftBracket = 67,
        RightBracket = 68,
        Comma = 69,
        Semicolon = 70,
        Colon = 71,
        Dot = 72,
        Question = 73,
        Comment = 75,
        Newline = 76,
        EndOfFile = 77,
        Error = 78,
    };

    // `line` and `column` are 1-based and those of the first character; columns count UTF-16 units.
    struct Token
    {
        int type = EndOfFile;
        QString text;
        int line = 0;
        int column = 0;
    };

    Lexer() = default;
    explicit Lexer(const QString &source) { setSource(source); }

    // Makes `source` the text to read and goes back to its start.
    void setSource(const QString &source);
    // The next token, `Newline` tokens included; `EndOfFile` again and again at the end.
    Token nextToken();
    // All tokens from here on but the `Newline` ones; the last is the one `EndOfFile`.
    QList<Token> tokenize();
    // How many UTF-16 units have been read: behind nextToken() the end of that token.
    int offset() const { return m_index; }

private:
    QChar at(int offset) const;
    void advance(int count)
    {
        m_index += count;
        m_column += count;
    }
    void advanceOverLines(int end);
    void skipLineComment();
    void skipBlockComment();
    bool startsRawString() const;
    Token scanToken();
    Token scanNumber();
    Token scanHexadecimal();
    Token scanString();
    Token scanRawString();
    Token scanHashWord();
    Token scanWord();
    Token scanOperator();
    Token make(int kind, const QString &text, int length);
    QString shared(int begin, int length);

    QString m_source;
    int m_index = 0;
    int m_line = 1;
    int m_column = 1;
    // Texts seen lately, by a cheap hash: a name that comes a thousand times is one text object.
    std::vector<QString> m_recent;
};

Q_DECLARE_TYPEINFO(Lexer::Token, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(Lexer::Token)
Q_DECLARE_METATYPE(QList<Lexer::Token>)
