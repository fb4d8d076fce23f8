#include "driver/cpp_items.h"

#include "driver/cpp_tokens.h"

#include <algorithm>
#include <array>

namespace {

using Kind = CppItem::Kind;
using TokenKind = CppToken::Kind;

template <size_t Size>
bool isOneOf(QStringView name, const std::array<const char *, Size> &words)
{
    return std::any_of(words.begin(), words.end(),
                       [name](const char *word) { return name == QLatin1String(word); });
}

constexpr std::array<const char *, 3> typeWords{"struct", "class", "union"};
constexpr std::array<const char *, 8> sharedWords{
    "using", "typedef", "template", "enum", "inline", "const", "constexpr", "static_assert"};
constexpr std::array<const char *, 5> memberWords{"static", "virtual", "explicit", "template",
                                                  "operator"};
constexpr std::array<const char *, 3> accessWords{"public", "protected", "private"};

const QString kLineMarker = QStringLiteral("// VL_LINE:");
const QString kStatic = QStringLiteral("static");

int firstSourceLine(const QString &text)
{
    const int found = text.indexOf(kLineMarker);
    if (found < 0)
        return 0;
    int end = found + kLineMarker.size();
    while (end < text.size() && text.at(end).isDigit())
        ++end;
    return text.midRef(found + kLineMarker.size(), end - found - kLineMarker.size()).toInt();
}

// One declaration or definition as it was read: its tokens outside brackets, a bracket group being
// one token.
struct Statement
{
    int begin = 0;
    int end = 0;
    QList<CppToken> tokens; // up to the body, the initial value or the semicolon
    int group = -1;         // the index of the first "(...)" among them
    int valueBegin = 0;     // behind "="
    int valueEnd = 0;
    bool hasBody = false;   // ends with a function's body
    bool hasBraces = false; // "{...}" of a type or an initial value
    bool hasValue = false;  // "= ..."
    bool hasComma = false;  // between declarators
    bool hasTail = false;   // something between "}" and ";"
};

// Reads statements one after another from a text that begins between two of them.
class StatementReader
{
public:
    explicit StatementReader(const QString &text) : m_text(text), m_reader(text) {}

    // Passes over comments. At the end of the text the token is an End.
    CppToken peek();
    CppToken take();
    // False when the text is not what is expected here.
    bool read(Statement &statement);
    QStringView textOf(const CppToken &token) const { return m_reader.textOf(token); }

private:
    bool readBrace(Statement &statement, bool &ended);
    // A comment behind the last token on its line belongs to the statement.
    void takeTrailingComment(Statement &statement);

    const QString &m_text;
    CppTokenReader m_reader;
};

CppToken StatementReader::peek()
{
    const CppTokenReader before = m_reader;
    const CppToken token = take();
    m_reader = before;
    return token;
}

CppToken StatementReader::take()
{
    CppToken token = m_reader.next();
    while (token.kind == TokenKind::Comment)
        token = m_reader.next();
    return token;
}

bool StatementReader::readBrace(Statement &statement, bool &ended)
{
    const bool type =
        !statement.tokens.isEmpty() && isOneOf(textOf(statement.tokens.first()), typeWords);
    if (statement.tokens.isEmpty() || !m_reader.skipGroup())
        return false;
    if (!statement.hasValue && !type && statement.group >= 0) {
        statement.hasBody = true;
        ended = true;
    } else {
        statement.hasBraces = true;
    }
    return true;
}

bool StatementReader::read(Statement &statement)
{
    int angles = 0;
    bool ended = false;
    while (!ended) {
        CppToken token = take();
        const bool counts = !statement.hasValue && !statement.hasBraces;
        if (statement.tokens.isEmpty())
            statement.begin = token.begin;
        if (token.kind == TokenKind::End || token.kind == TokenKind::Directive)
            return false;
        if (token.isSign(';')) {
            ended = true;
            statement.valueEnd = token.begin;
        } else if (token.isSign('{')) {
            if (!readBrace(statement, ended))
                return false;
        } else if (token.isSign('(') || token.isSign('[')) {
            const bool round = token.isSign('(');
            if (!m_reader.skipGroup())
                return false;
            token.end = m_reader.position();
            if (counts && round && statement.group < 0)
                statement.group = statement.tokens.size();
            if (counts)
                statement.tokens << token;
        } else if (token.isSign('=') && counts) {
            statement.hasValue = true;
            statement.valueBegin = token.end;
        } else if (counts) {
            angles += token.isSign('<') ? 1 : token.isSign('>') ? -1 : 0;
            statement.hasComma =
                statement.hasComma || (token.isSign(',') && angles == 0 && statement.group < 0);
            statement.tokens << token;
        } else if (statement.hasBraces && !statement.hasValue) {
            statement.hasTail = true;
        }
    }
    statement.end = m_reader.position();
    takeTrailingComment(statement);
    return !statement.tokens.isEmpty();
}

void StatementReader::takeTrailingComment(Statement &statement)
{
    CppTokenReader ahead = m_reader;
    const CppToken token = ahead.next();
    const QStringView between = QStringView(m_text).mid(statement.end, token.begin - statement.end);
    if (token.kind != TokenKind::Comment || between.contains(QLatin1Char('\n')))
        return;
    m_reader = ahead;
    statement.end = token.end;
}

// Cuts one text; text inside a class body is cut by `MemberCutter`.
class ItemCutter
{
public:
    explicit ItemCutter(const QString &text) : m_text(text), m_statements(text) {}

    CppItems cut();

private:
    bool cutDirective(const CppToken &token);
    bool cutConditional(const CppToken &token);
    bool cutStatement();
    bool cutFunction(const Statement &statement);
    bool cutVariable(const Statement &statement);
    bool cutType(const Statement &statement);
    QString slice(int begin, int end) const { return m_text.mid(begin, end - begin); }
    QString headOf(const Statement &statement) const;
    void add(Kind kind, const QString &name, const QString &text,
             const QString &declaration = QString());
    QStringView textOf(const CppToken &token) const { return m_statements.textOf(token); }

    const QString &m_text;
    StatementReader m_statements;
    CppItems m_result;
};

// Moves the long member functions of a class behind it.
class MemberCutter
{
public:
    MemberCutter(const QString &typeName, const QString &body) : m_type(typeName), m_body(body) {}

    // False: the class is to stay as it is.
    bool cut();
    QString body;            // what stays between the braces
    QStringList definitions; // what was moved

private:
    bool moves(const StatementReader &members, const Statement &member) const;
    static int declaratorEnd(const Statement &member);

    const QString &m_type;
    const QString &m_body;
};

bool MemberCutter::moves(const StatementReader &members, const Statement &member) const
{
    if (!member.hasBody || member.group < 1 ||
        !m_body.midRef(member.begin, member.end - member.begin).contains(QLatin1Char('\n')))
        return false;
    return std::none_of(member.tokens.begin(), member.tokens.end(), [&](const CppToken &token) {
        return isOneOf(members.textOf(token), memberWords) || token.isSign('~');
    });
}

// Ahead of a constructor's list of initial values.
int MemberCutter::declaratorEnd(const Statement &member)
{
    for (int i = member.group + 1; i < member.tokens.size(); ++i) {
        if (member.tokens.at(i).isSign(':'))
            return member.tokens.at(i - 1).end;
    }
    return member.tokens.last().end;
}

bool MemberCutter::cut()
{
    StatementReader members(m_body);
    int copied = 0;
    while (members.peek().kind != TokenKind::End) {
        Statement member;
        if (isOneOf(members.textOf(members.peek()), accessWords) || !members.read(member))
            return false;
        if (!moves(members, member))
            continue;
        const int headEnd = declaratorEnd(member);
        const int nameBegin = member.tokens.at(member.group - 1).begin;
        const QStringRef head = m_body.midRef(member.begin, headEnd - member.begin);
        body += m_body.midRef(copied, member.begin - copied) + head + QLatin1Char(';');
        copied = member.end;
        definitions << m_body.mid(member.begin, nameBegin - member.begin) + m_type +
                           QLatin1String("::") + m_body.midRef(nameBegin, member.end - nameBegin) +
                           QLatin1Char('\n');
    }
    body += m_body.midRef(copied);
    return true;
}

void ItemCutter::add(Kind kind, const QString &name, const QString &text,
                     const QString &declaration)
{
    CppItem item;
    item.kind = kind;
    item.name = name;
    item.text = text + QLatin1Char('\n');
    item.declaration = declaration.isEmpty() ? declaration : declaration + QLatin1Char('\n');
    item.sourceLine = firstSourceLine(text);
    m_result.items << item;
}

CppItems ItemCutter::cut()
{
    for (CppToken token = m_statements.peek(); token.kind != TokenKind::End;
         token = m_statements.peek()) {
        const bool known =
            token.kind == TokenKind::Directive ? cutDirective(token) : cutStatement();
        if (!known)
            return {};
    }
    m_result.succeeded = true;
    return m_result;
}

bool ItemCutter::cutDirective(const CppToken &token)
{
    const QString line = slice(token.begin, token.end);
    if (line.startsWith(QLatin1String("#if")))
        return cutConditional(token);
    m_statements.take();
    if (line.startsWith(QLatin1String("#define "))) {
        CppTokenReader words(line, 8);
        add(Kind::Declaration, words.textOf(words.next()).toString(), line);
    } else {
        add(Kind::Always, QString(), line);
    }
    return true;
}

// A block between "#if" and "#endif" is taken whole; it may declare, but not define.
bool ItemCutter::cutConditional(const CppToken &first)
{
    QString inside;
    int depth = 0;
    int copied = 0;
    CppToken token;
    do {
        token = m_statements.take();
        if (token.kind == TokenKind::End)
            return false;
        if (token.kind != TokenKind::Directive)
            continue;
        inside += copied > 0 ? slice(copied, token.begin) : QString();
        copied = token.end;
        const QStringView line = textOf(token);
        depth += line.startsWith(QLatin1String("#if"))      ? 1
                 : line.startsWith(QLatin1String("#endif")) ? -1
                                                            : 0;
    } while (depth > 0);
    const CppItems items = readCppItems(inside);
    if (!items.succeeded || std::any_of(items.items.begin(), items.items.end(),
                                        [](const CppItem &item) { return item.isDefinition(); }))
        return false;
    add(Kind::Always, QString(), slice(first.begin, token.end));
    return true;
}

bool ItemCutter::cutStatement()
{
    Statement statement;
    if (!m_statements.read(statement))
        return false;
    const QStringView first = textOf(statement.tokens.first());
    if (isOneOf(first, sharedWords)) {
        add(Kind::Always, QString(), slice(statement.begin, statement.end));
        return true;
    }
    if (isOneOf(first, typeWords) && statement.group < 0)
        return cutType(statement);
    if (statement.tokens.size() < 2 || first == QLatin1String("namespace") ||
        statement.tokens.at(1).kind == TokenKind::Text)
        return false;
    return statement.group > 0 ? cutFunction(statement) : cutVariable(statement);
}

// Other units must see it: "static" goes.
QString ItemCutter::headOf(const Statement &statement) const
{
    const bool isStatic = textOf(statement.tokens.first()) == kStatic;
    const int begin = isStatic ? statement.tokens.at(1).begin : statement.begin;
    return slice(begin, statement.tokens.last().end);
}

bool ItemCutter::cutFunction(const Statement &statement)
{
    const CppToken &name = statement.tokens.at(statement.group - 1);
    const CppToken &group = statement.tokens.at(statement.group);
    if (name.kind != TokenKind::Name)
        return false;
    // "std::vector<VL_Any> name(5)" is a variable.
    const QChar inside = CppTokenReader(m_text, group.begin + 1).next().first;
    if (statement.hasValue || (!statement.hasBody && (inside.isDigit() || inside == u'"')))
        return cutVariable(statement);
    if (statement.group < 2)
        return false;
    const QString head = headOf(statement);
    const QString nameText = textOf(name).toString();
    const bool member = statement.tokens.at(statement.group - 2).isSign(':');
    if (statement.hasBody) {
        const int bodyBegin = statement.tokens.last().end;
        add(Kind::Function, nameText, head + slice(bodyBegin, statement.end),
            member ? QString() : head + QLatin1Char(';'));
    } else {
        add(Kind::Declaration, nameText, head + QLatin1Char(';'));
    }
    return true;
}

bool ItemCutter::cutVariable(const Statement &statement)
{
    const QStringView first = textOf(statement.tokens.first());
    if (statement.hasComma || statement.hasBody || statement.hasTail)
        return false;
    int nameAt = statement.group > 0 ? statement.group - 1 : statement.tokens.size() - 1;
    while (nameAt > 0 && statement.tokens.at(nameAt).first == QLatin1Char('['))
        --nameAt;
    const CppToken &name = statement.tokens.at(nameAt);
    if (name.kind != TokenKind::Name || nameAt == 0)
        return false;
    const QString nameText = textOf(name).toString();
    const QString text = slice(statement.begin, statement.end);
    if (first == QLatin1String("extern")) {
        add(Kind::Declaration, nameText, text);
        return true;
    }
    // One of its own in each thread or unit.
    if (first == QLatin1String("thread_local") ||
        (first == kStatic && textOf(statement.tokens.at(1)) == QLatin1String("const")))
        return false;
    if (first == QLatin1String("auto")) {
        // Its value tells the type.
        const QString value = slice(statement.valueBegin, statement.valueEnd).trimmed();
        add(Kind::Variable, nameText, text,
            QStringLiteral("extern std::decay_t<decltype(%1)> %2;").arg(value, nameText));
        return statement.hasValue && nameAt == 1;
    }
    const int begin = first == kStatic ? statement.tokens.at(1).begin : statement.begin;
    const int declaratorEnd = statement.group > 0 ? name.end : statement.tokens.last().end;
    add(Kind::Variable, nameText, slice(begin, statement.end),
        QLatin1String("extern ") + slice(begin, declaratorEnd) + QLatin1Char(';'));
    return true;
}

bool ItemCutter::cutType(const Statement &statement)
{
    const CppToken name = statement.tokens.value(1);
    if (name.kind != TokenKind::Name || statement.hasValue || statement.hasTail)
        return false;
    const QString nameText = textOf(name).toString();
    const QString text = slice(statement.begin, statement.end);
    const int open = text.indexOf(QLatin1Char('{'));
    if (!statement.hasBraces) {
        // "struct X;", or a variable of a type that was named at length.
        if (statement.tokens.size() != 2)
            return false;
        add(Kind::Declaration, nameText, text);
        return true;
    }
    const int close = text.lastIndexOf(QLatin1Char('}'));
    const QString body = text.mid(open + 1, close - open - 1);
    MemberCutter members(nameText, body);
    if (!members.cut()) {
        add(Kind::Declaration, nameText, text);
        return true;
    }
    add(Kind::Declaration, nameText, text.left(open + 1) + members.body + text.mid(close));
    for (const QString &definition : qAsConst(members.definitions))
        add(Kind::Function, QString(), definition);
    return true;
}

} // namespace

CppItems readCppItems(const QString &text)
{
    return ItemCutter(text).cut();
}
