// The class pre-scan: enters classes and their members before anything is parsed.
#include "frontend/parser.h"
#include "frontend/type_words.h"

// Two passes over a token list: first all names, then all members, whose types may name any class.
// The list of a whole file has no line ends; where a list has them, they end a member.
class Parser::PreScan
{
public:
    PreScan(Parser *parser, const QList<Lexer::Token> &tokens) : m_parser(parser), m_tokens(tokens)
    {}

    void run()
    {
        forEachClass(&PreScan::skipBraces);
        forEachClass(&PreScan::enterMembers);
    }

private:
    using BodyReader = void (PreScan::*)();

    int kind(int offset = 0) const;
    const QString &text(int offset = 0) const { return m_tokens.at(m_index + offset).text; }
    void skipBlanks();
    void forEachClass(BodyReader readBody);
    bool readName(QString *name);
    void skipBraces();
    void enterMembers();
    void enterProperty();
    void enterMethod();
    void skipMember();
    void skipMethod();
    QString typeHere() const;
    bool startsBareMember() const;

    Parser *m_parser;
    const QList<Lexer::Token> &m_tokens;
    int m_index = 0;
    // No opening brace comes before this index: names that start below it cannot be read.
    int m_noBraceBefore = 0;
    QString m_classKey;
};

void Parser::preScan(const QList<Lexer::Token> &tokens)
{
    PreScan(this, tokens).run();
}

void Parser::preScanTokens(const QList<Lexer::Token> &tokens)
{
    preScan(tokens);
}

int Parser::PreScan::kind(int offset) const
{
    const int index = m_index + offset;
    return index < m_tokens.size() ? m_tokens.at(index).type : int(Lexer::EndOfFile);
}

void Parser::PreScan::skipBlanks()
{
    while (kind() == Lexer::Newline || kind() == Lexer::Comment)
        ++m_index;
}

// Enters the name of each class and calls `readBody` at its opening brace.
void Parser::PreScan::forEachClass(BodyReader readBody)
{
    m_index = 0;
    m_noBraceBefore = 0;
    while (kind() != Lexer::EndOfFile) {
        const bool isClass = kind() == Lexer::Class;
        ++m_index;
        QString name;
        if (!isClass || !readName(&name))
            continue;
        m_classKey = m_parser->ensureClass(name);
        if (m_classKey.isEmpty())
            skipBraces();
        else
            (this->*readBody)();
    }
}

// Reads a name up to the opening brace and stops there; without a brace it does not move.
bool Parser::PreScan::readName(QString *name)
{
    const int start = m_index;
    skipBlanks();
    if (m_index >= m_noBraceBefore) {
        QStringList words;
        for (; kind() != Lexer::LeftBrace; ++m_index) {
            if (kind() == Lexer::Newline || kind() == Lexer::EndOfFile)
                break;
            words.append(text());
        }
        if (kind() == Lexer::LeftBrace) {
            *name = words.join(QLatin1Char(' ')).trimmed();
            return true;
        }
        m_noBraceBefore = m_index;
    }
    m_index = start;
    return false;
}

// From an opening brace to behind the matching one.
void Parser::PreScan::skipBraces()
{
    int depth = 0;
    do {
        if (kind() == Lexer::LeftBrace)
            ++depth;
        else if (kind() == Lexer::RightBrace)
            --depth;
        ++m_index;
    } while (depth > 0 && kind() != Lexer::EndOfFile);
}

void Parser::PreScan::enterMembers()
{
    m_parser->m_classIndex.forgetMembers(m_classKey);
    ++m_index;
    while (kind() != Lexer::EndOfFile) {
        const int before = m_index;
        if (kind() == Lexer::Property) {
            ++m_index;
            skipBlanks();
            enterProperty();
        } else if (kind() == Lexer::Method) {
            ++m_index;
            skipBlanks();
            enterMethod();
        } else if (kind() == Lexer::LeftBrace) {
            skipBraces();
        } else if (kind() == Lexer::RightBrace) {
            ++m_index;
            return;
        } else if (kind(1) == Lexer::Identifier && !typeHere().isNull()) {
            enterProperty();
        }
        if (m_index == before)
            ++m_index;
    }
}

// At the type of a property.
void Parser::PreScan::enterProperty()
{
    const QString type = typeHere();
    if (!type.isNull() && kind(1) == Lexer::Identifier) {
        const QString name = text(1).trimmed();
        m_parser->m_classRegistry[m_classKey].properties.insert(name, {name, name, type});
        m_index += 2;
    }
    skipMember();
}

// At the name of a method.
void Parser::PreScan::enterMethod()
{
    if (kind() == Lexer::Identifier) {
        const QString &name = text();
        m_parser->m_classRegistry[m_classKey].methods.insert(name,
                                                             {name, name, QStringLiteral("void")});
    }
    skipMethod();
}

// Stops where the next member, the end of the line or the closing brace of the class begins.
void Parser::PreScan::skipMember()
{
    int depth = 0;
    for (;; ++m_index) {
        switch (kind()) {
        case Lexer::LeftParen:
        case Lexer::LeftBracket:
            ++depth;
            break;
        case Lexer::RightParen:
        case Lexer::RightBracket:
            --depth;
            break;
        case Lexer::LeftBrace:
            skipBraces();
            --m_index;
            break;
        case Lexer::Property:
        case Lexer::Method:
        case Lexer::RightBrace:
        case Lexer::EndOfFile:
            return;
        case Lexer::Newline:
            if (depth <= 0)
                return;
            break;
        default:
            if (depth <= 0 && startsBareMember())
                return;
        }
    }
}

// A method ends with its body. Braces inside its parentheses belong to a default value.
void Parser::PreScan::skipMethod()
{
    int depth = 0;
    for (;; ++m_index) {
        switch (kind()) {
        case Lexer::LeftParen:
            ++depth;
            break;
        case Lexer::RightParen:
            --depth;
            break;
        case Lexer::LeftBrace:
            skipBraces();
            if (depth <= 0)
                return;
            --m_index;
            break;
        case Lexer::Property:
        case Lexer::Method:
        case Lexer::RightBrace:
        case Lexer::EndOfFile:
            return;
        default:
            break;
        }
    }
}

// The C++ text of the type that the current token names; null if it names none.
QString Parser::PreScan::typeHere() const
{
    if (kind() != Lexer::Identifier)
        return typeText(kind(), TypePlace::PreScan);
    const QString cppName = m_parser->cppNameOfClass(text());
    return cppName.isNull() ? QStringLiteral("VL_Any") : cppName;
}

// Whether a property without its keyword begins here, in the middle of a member: only a known type
// with a name behind it is taken for one.
bool Parser::PreScan::startsBareMember() const
{
    if (kind(1) != Lexer::Identifier)
        return false;
    if (kind() == Lexer::Identifier)
        return !m_parser->findClassKey(text()).isEmpty();
    return !typeText(kind(), TypePlace::PreScan).isNull();
}
