#include "editor/code_declarations.h"

#include "frontend/class_index.h"
#include "frontend/type_words.h"

#include <QSet>
#include <QStringList>

namespace {

const QString &blockWord()
{
    static const QString word = QStringLiteral("类型");
    return word;
}

bool isAnyTypeWord(int kind)
{
    return kind == Lexer::Array || startsDeclaration(kind) ||
           isTypeWord(kind, TypePlace::PreScan) || isTypeWord(kind, TypePlace::FunctionReturn);
}

// What only stands at the beginning of something outside of bodies.
bool beginsItem(const CodeToken &token)
{
    switch (token.type) {
    case Lexer::Function:
    case Lexer::Class:
    case Lexer::Property:
    case Lexer::Method:
        return token.startsLine;
    case Lexer::Identifier:
        return token.startsLine && token.text == QStringLiteral("全局");
    default:
        return false;
    }
}

bool beginsStatement(const CodeToken &token)
{
    switch (token.type) {
    case Lexer::If:
    case Lexer::Switch:
    case Lexer::While:
    case Lexer::Loop:
    case Lexer::ForEach:
    case Lexer::Break:
    case Lexer::Continue:
    case Lexer::Return:
        return token.startsLine;
    default:
        return token.startsLine && (beginsItem(token) || isAnyTypeWord(token.type));
    }
}

class DeclarationReader
{
public:
    DeclarationReader(const QString &text, const QVector<CodeToken> &tokens)
        : m_text(text), m_tokens(tokens)
    {}

    QVector<CodeDeclaration> read();

private:
    const CodeToken &at(int offset = 0) const
    {
        return m_tokens.at(qMin(m_index + offset, m_tokens.size() - 1));
    }
    int kind(int offset = 0) const { return at(offset).type; }
    bool isAtEnd() const { return kind() == Lexer::EndOfFile; }
    // What can be declared; "#名" only stands for something declared elsewhere.
    bool isName(int offset = 0) const
    {
        return kind(offset) == Lexer::Identifier && !at(offset).text.startsWith(QLatin1Char('#'));
    }
    bool match(int tokenKind);

    void readItem();
    void readFunction();
    void readMethod(const QString &className);
    void readRoutine(int declaration, int headerStart);
    QStringList readParameters(const QString &owner);
    bool readParameter(const QString &owner, QStringList *texts);
    QString readResult();
    bool goToBody(int headerStart);
    void readBody(const QString &owner, bool isOpen);
    void readClass();
    bool isAtTypeBlock() const;
    void readTypeBlock();
    void readMembers(SymbolKind methods, const QString &owner);
    void skipBlock();
    bool isAtDeclaration() const;
    bool readVariables(SymbolKind kind, const QString &owner);
    void skipValue();
    int add(SymbolKind kind, const QString &name, const QString &owner, const QString &type);
    void endAtLastToken(int declaration);
    void turnMethods();

    const QString &m_text;
    const QVector<CodeToken> &m_tokens;
    int m_index = 0;
    QVector<CodeDeclaration> m_declarations;
};

QVector<CodeDeclaration> DeclarationReader::read()
{
    while (!isAtEnd())
        readItem();
    turnMethods();
    return m_declarations;
}

bool DeclarationReader::match(int tokenKind)
{
    if (kind() != tokenKind)
        return false;
    ++m_index;
    return true;
}

// At the token at hand; it ends where it stands until more is known.
int DeclarationReader::add(SymbolKind kind, const QString &name, const QString &owner,
                           const QString &type)
{
    CodeDeclaration declaration;
    declaration.symbol = {kind, name, owner, type, QString(), at().line, at().column, at().line};
    declaration.name = m_index;
    declaration.scopeEnd = m_tokens.size() - 1;
    m_declarations.append(declaration);
    return m_declarations.size() - 1;
}

void DeclarationReader::endAtLastToken(int declaration)
{
    const CodeToken &last = m_tokens.at(qMax(0, m_index - 1));
    CodeDeclaration &ended = m_declarations[declaration];
    ended.symbol.endLine = qMax(ended.symbol.line, last.line);
    ended.scopeEnd = m_index;
}

// What stands at file scope; anything that begins nothing is passed over.
void DeclarationReader::readItem()
{
    switch (kind()) {
    case Lexer::Function:
        readFunction();
        return;
    case Lexer::Class:
        readClass();
        return;
    case Lexer::LeftBrace:
        skipBlock();
        return;
    default:
        break;
    }
    if (isAtTypeBlock())
        readTypeBlock();
    else if (!readVariables(SymbolKind::Global, QString()))
        ++m_index;
}

// Of a block that belongs to no declaration: what is in it is not at file scope.
void DeclarationReader::skipBlock()
{
    int depth = 0;
    do {
        if (kind() == Lexer::LeftBrace)
            ++depth;
        else if (kind() == Lexer::RightBrace)
            --depth;
        ++m_index;
    } while (depth > 0 && !isAtEnd() && !beginsItem(at()));
}

// "函数" name { "." name } "(" ...
void DeclarationReader::readFunction()
{
    const int header = m_index++;
    if (!isName() || at().startsLine)
        return;
    const int declaration = add(SymbolKind::Function, at().text, QString(), QString());
    ++m_index;
    CodeSymbol &symbol = m_declarations[declaration].symbol;
    while (kind() == Lexer::Dot && isName(1)) {
        symbol.kind = SymbolKind::EventFunction;
        symbol.owner += (symbol.owner.isEmpty() ? QString() : QStringLiteral(".")) + symbol.name;
        symbol.name = at(1).text;
        m_declarations[declaration].name = m_index + 1;
        m_index += 2;
    }
    readRoutine(declaration, header);
}

void DeclarationReader::readMethod(const QString &className)
{
    const int header = m_index++;
    if (!isName() || at().startsLine)
        return;
    const int declaration = add(SymbolKind::Method, at().text, className, QString());
    ++m_index;
    readRoutine(declaration, header);
}

// Parameters, result and body of the function whose name has just been read.
void DeclarationReader::readRoutine(int declaration, int headerStart)
{
    const CodeSymbol symbol = m_declarations.at(declaration).symbol;
    const bool isMethod = symbol.kind == SymbolKind::Method;
    const QString fullName =
        symbol.owner.isEmpty() ? symbol.name : symbol.owner + QLatin1Char('.') + symbol.name;
    const int firstParameter = m_declarations.size();
    const QStringList parameters = readParameters(fullName);
    const QString result = readResult();
    QString signature = QStringLiteral("%1(%2)").arg(isMethod ? symbol.name : fullName,
                                                     parameters.join(QStringLiteral(", ")));
    if (!result.isEmpty())
        signature += QLatin1Char(' ') + result;
    m_declarations[declaration].symbol.type = result;
    m_declarations[declaration].symbol.signature = signature;
    const bool isOpen = goToBody(headerStart);
    const int firstLocal = m_declarations.size();
    if (isOpen || kind() == Lexer::LeftBrace)
        readBody(fullName, isOpen);
    endAtLastToken(declaration);
    for (int i = firstParameter; i < firstLocal; ++i)
        m_declarations[i].scopeEnd = m_index;
}

// "(" [ parameter { "," parameter } ] ")", as far as it is there; the parameters as written.
QStringList DeclarationReader::readParameters(const QString &owner)
{
    QStringList texts;
    if (!match(Lexer::LeftParen))
        return texts;
    while (readParameter(owner, &texts) && match(Lexer::Comma)) {
    }
    match(Lexer::RightParen);
    return texts;
}

// [ "[" ] [ type [ "&" ] ] name [ "=" value ] [ "]" ]
bool DeclarationReader::readParameter(const QString &owner, QStringList *texts)
{
    const int start = at().start;
    match(Lexer::LeftBracket);
    const bool isTyped =
        isAnyTypeWord(kind()) || (kind() == Lexer::Identifier &&
                                  (kind(1) == Lexer::Identifier || kind(1) == Lexer::Ampersand));
    const QString type = isTyped ? at().text : QString();
    if (isTyped)
        ++m_index;
    match(Lexer::Ampersand);
    if (!isName())
        return false;
    add(SymbolKind::Parameter, at().text, owner, type);
    ++m_index;
    if (match(Lexer::Assign))
        skipValue();
    match(Lexer::RightBracket);
    texts->append(m_text.mid(start, m_tokens.at(m_index - 1).end - start).simplified());
    return true;
}

// [ "返回" ] [ type ]
QString DeclarationReader::readResult()
{
    if (kind() == Lexer::Return && !at().startsLine)
        ++m_index;
    const bool isType = isAnyTypeWord(kind()) || kind() == Lexer::Identifier;
    return isType && !at().startsLine ? m_tokens.at(m_index++).text : QString();
}

// Passes over what a header should not hold. True when the body lacks its opening brace, which is
// told by the indentation of what follows.
bool DeclarationReader::goToBody(int headerStart)
{
    while (kind() != Lexer::LeftBrace && !isAtEnd() && !at().startsLine)
        ++m_index;
    return kind() != Lexer::LeftBrace && !isAtEnd() && !beginsItem(at()) &&
           at().column > m_tokens.at(headerStart).column;
}

// `isOpen`: the opening brace is missing.
void DeclarationReader::readBody(const QString &owner, bool isOpen)
{
    QVector<int> blocks; // of each open block the declarations that there were before it
    if (isOpen)
        blocks.append(m_declarations.size());
    do {
        const int tokenKind = kind();
        if (tokenKind == Lexer::LeftBrace) {
            blocks.append(m_declarations.size());
        } else if (tokenKind == Lexer::RightBrace) {
            // Those of blocks inside have ended already.
            for (int i = blocks.takeLast(); i < m_declarations.size(); ++i)
                m_declarations[i].scopeEnd = qMin(m_declarations.at(i).scopeEnd, m_index);
        } else if (readVariables(SymbolKind::Local, owner)) {
            continue;
        }
        ++m_index;
    } while (!blocks.isEmpty() && !isAtEnd() && !beginsItem(at()));
    for (int i = blocks.value(0, m_declarations.size()); i < m_declarations.size(); ++i)
        m_declarations[i].scopeEnd = qMin(m_declarations.at(i).scopeEnd, m_index);
}

void DeclarationReader::readClass()
{
    ++m_index;
    if (!isName() || at().startsLine)
        return;
    const QString name = at().text;
    const int declaration = add(SymbolKind::Class, name, QString(), QString());
    ++m_index;
    if (match(Lexer::LeftBrace))
        readMembers(SymbolKind::Method, name);
    endAtLastToken(declaration);
}

bool DeclarationReader::isAtTypeBlock() const
{
    return kind() == Lexer::Identifier && at().startsLine && at().text == blockWord() &&
           isName(1) && kind(2) == Lexer::LeftBrace;
}

void DeclarationReader::readTypeBlock()
{
    ++m_index;
    const QString name = at().text;
    const int declaration = add(SymbolKind::TypeBlock, name, QString(), QString());
    m_index += 2;
    readMembers(SymbolKind::Property, name);
    endAtLastToken(declaration);
}

// Behind the opening brace. `methods`: Method where there may be some.
void DeclarationReader::readMembers(SymbolKind methods, const QString &owner)
{
    while (!isAtEnd()) {
        const bool isOther = kind() == Lexer::Function || kind() == Lexer::Class || isAtTypeBlock();
        if (isOther && at().startsLine)
            return;
        if (match(Lexer::RightBrace))
            return;
        if (kind() == Lexer::Method && methods == SymbolKind::Method)
            readMethod(owner);
        else if (kind() == Lexer::LeftBrace)
            skipBlock();
        else if (!readVariables(SymbolKind::Property, owner))
            ++m_index;
    }
}

// A type and a name on one line. Any word may be a class that is declared elsewhere; where no
// statement begins it is none.
bool DeclarationReader::isAtDeclaration() const
{
    if (!isName(1) || at(1).startsLine)
        return false;
    if (isAnyTypeWord(kind()))
        return true;
    if (!isName())
        return false;
    if (at().startsLine || m_index == 0)
        return at().text != QStringLiteral("全局");
    const CodeToken &before = m_tokens.at(m_index - 1);
    return before.type == Lexer::LeftBrace || before.type == Lexer::RightBrace ||
           before.type == Lexer::Semicolon || before.type == Lexer::Property ||
           before.text == QStringLiteral("全局");
}

// type name [ "=" value ] { "," name [ "=" value ] }
bool DeclarationReader::readVariables(SymbolKind symbolKind, const QString &owner)
{
    if (!isAtDeclaration())
        return false;
    const QString type = at().text;
    do {
        ++m_index;
        if (!isName() || kind(1) == Lexer::LeftParen)
            break;
        add(symbolKind, at().text, owner, type);
        ++m_index;
        while (!at().startsLine && match(Lexer::LeftBracket)) {
            while (kind() != Lexer::RightBracket && !isAtEnd() && !at().startsLine)
                ++m_index;
            if (!at().startsLine)
                match(Lexer::RightBracket);
        }
        if (match(Lexer::Assign))
            skipValue();
    } while (kind() == Lexer::Comma);
    return true;
}

// Up to what ends the value of a declaration or a parameter.
void DeclarationReader::skipValue()
{
    int brackets = 0;
    int braces = 0;
    for (; !isAtEnd() && !beginsStatement(at()); ++m_index) {
        const int tokenKind = kind();
        const bool isOutside = brackets == 0 && braces == 0;
        if (isOutside && (tokenKind == Lexer::Comma || tokenKind == Lexer::Semicolon ||
                          tokenKind == Lexer::RightParen || tokenKind == Lexer::RightBracket))
            return;
        if (isOutside && at().startsLine && m_tokens.at(m_index - 1).type != Lexer::Assign)
            return;
        if (tokenKind == Lexer::RightBrace && braces-- == 0)
            return;
        if (tokenKind == Lexer::LeftBrace)
            ++braces;
        else if (tokenKind == Lexer::LeftParen || tokenKind == Lexer::LeftBracket)
            ++brackets;
        else if (tokenKind == Lexer::RightParen || tokenKind == Lexer::RightBracket)
            brackets = qMax(0, brackets - 1);
    }
}

// "函数 学生.介绍()" is a method where 学生 is a class of the text.
void DeclarationReader::turnMethods()
{
    QSet<QString> classes;
    for (const CodeDeclaration &declaration : qAsConst(m_declarations)) {
        if (declaration.symbol.kind == SymbolKind::Class)
            classes.insert(normalizedName(declaration.symbol.name));
    }
    for (CodeDeclaration &declaration : m_declarations) {
        CodeSymbol &symbol = declaration.symbol;
        if (symbol.kind != SymbolKind::EventFunction ||
            !classes.contains(normalizedName(symbol.owner)))
            continue;
        symbol.kind = SymbolKind::Method;
        symbol.signature.remove(0, symbol.owner.size() + 1);
    }
}

} // namespace

QVector<CodeDeclaration> readDeclarations(const QString &text, const QVector<CodeToken> &tokens)
{
    return DeclarationReader(text, tokens).read();
}
