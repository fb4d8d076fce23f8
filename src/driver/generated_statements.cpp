#include "driver/generated_statements.h"

#include "driver/cpp_tokens.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

using TokenKind = CppToken::Kind;

const QString kMarker = QStringLiteral("// VL_LINE:");

bool isOneOf(QStringView text, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(),
                       [text](const char *word) { return text == QLatin1String(word); });
}

// "int name =", "const T &name" and the like; not "return name;".
GeneratedVariable declaredVariable(const QString &text)
{
    static const QRegularExpression declaration(
        QStringLiteral("^(?:const\\s+)?([A-Za-z_][\\w:]*(?:<[\\w:<>, ]*>)?)(\\s*[*&]*\\s*)"
                       "\\b([A-Za-z_]\\w*)\\s*(\\[|[=;({,)]|$)"),
        QRegularExpression::UseUnicodePropertiesOption);
    const QRegularExpressionMatch match = declaration.match(text);
    const QString type = match.captured(1);
    const QString between = match.captured(2);
    const bool isDeclaration =
        match.hasMatch() && !between.isEmpty() &&
        !isOneOf(type, {"return", "else", "goto", "throw", "delete", "new", "using", "case"});
    if (!isDeclaration)
        return {};
    const bool isPlain =
        !between.contains(QLatin1Char('*')) && match.captured(4) != QLatin1String("[");
    return {match.captured(3), isPlain ? type : QString()};
}

class StatementScanner
{
public:
    explicit StatementScanner(const QString &text) : m_text(text), m_reader(text) {}

    QList<GeneratedStatement> scan();

private:
    enum class FrameKind
    {
        Group, // round or square brackets
        Block,
        Braces, // any others: of a type, of a value
    };
    struct Frame
    {
        FrameKind kind;
        int number;
        int variables; // how many there were ahead of it
        int begin;
        QString word; // ahead of its bracket
    };

    bool isInFunction() const { return m_functionDepth >= 0; }
    bool isBetweenStatements() const;
    void beginStatement(const CppToken &token);
    void open(const CppToken &token);
    void close(const CppToken &token);
    bool opensBlock() const;
    void addGroupVariables(const QString &group);
    int markerOfLine(int begin) const;
    QList<GeneratedVariable> visibleVariables() const;

    const QString &m_text;
    CppTokenReader m_reader;
    QList<GeneratedStatement> m_found;
    QVector<Frame> m_frames;
    QList<GeneratedVariable> m_variables;
    CppToken m_previous; // no comment and no directive
    QString m_lastGroup; // what stood in the round brackets that were closed last
    QString m_lastGroupWord;
    int m_functionDepth = -1; // index of the function's frame
    int m_nextNumber = 0;
};

// The number of the source line that the line of `begin` carries, 0 without one.
int StatementScanner::markerOfLine(int begin) const
{
    int end = m_text.indexOf(QLatin1Char('\n'), begin);
    end = end < 0 ? m_text.size() : end;
    const int marker = m_text.lastIndexOf(kMarker, end);
    return marker < begin ? 0
                          : m_text.midRef(marker + kMarker.size(), end - marker - kMarker.size())
                                .trimmed()
                                .toInt();
}

// Whether whole statements can be put here.
bool StatementScanner::isBetweenStatements() const
{
    if (!isInFunction() ||
        !(m_previous.isSign(';') || m_previous.isSign('{') || m_previous.isSign('}')))
        return false;
    return std::all_of(m_frames.begin() + m_functionDepth, m_frames.end(),
                       [](const Frame &frame) { return frame.kind == FrameKind::Block; });
}

QList<GeneratedVariable> StatementScanner::visibleVariables() const
{
    QList<GeneratedVariable> visible;
    QSet<QString> names;
    for (auto variable = m_variables.rbegin(); variable != m_variables.rend(); ++variable) {
        if (names.contains(variable->name))
            continue;
        names.insert(variable->name);
        visible.prepend(*variable);
    }
    return visible;
}

void StatementScanner::beginStatement(const CppToken &token)
{
    const QStringView word = m_reader.textOf(token);
    if (isOneOf(word, {"}", "else", "catch", "case", "default"}))
        return;
    const int lineBegin = m_text.lastIndexOf(QLatin1Char('\n'), token.begin) + 1;
    const bool beginsLine = m_text.midRef(lineBegin, token.begin - lineBegin).trimmed().isEmpty();
    const int line = beginsLine ? markerOfLine(token.begin) : 0;
    if (line > 0) {
        GeneratedStatement statement;
        statement.begin = lineBegin;
        statement.sourceLine = line;
        for (int i = m_functionDepth; i < m_frames.size(); ++i)
            statement.blocks << m_frames.at(i).number;
        statement.variables = visibleVariables();
        m_found << statement;
    }
    int end = m_text.indexOf(QLatin1Char('\n'), token.begin);
    end = end < 0 ? m_text.size() : end;
    const GeneratedVariable variable = declaredVariable(m_text.mid(token.begin, end - token.begin));
    if (!variable.name.isEmpty())
        m_variables << variable;
}

bool StatementScanner::opensBlock() const
{
    if (m_previous.isSign(')'))
        return true;
    if (m_previous.kind == TokenKind::Name) {
        const QStringView word = m_reader.textOf(m_previous);
        return isOneOf(word, {"else", "do", "try", "const", "noexcept", "override"});
    }
    return isInFunction() && (m_previous.isSign(';') || m_previous.isSign('{') ||
                              m_previous.isSign('}') || m_previous.isSign(':'));
}

// Those of a parameter list or of the head of a loop live in the block behind it.
void StatementScanner::addGroupVariables(const QString &group)
{
    const bool isLoop = m_lastGroupWord == QLatin1String("for");
    if (isInFunction() && !isLoop)
        return;
    const QStringList parts = isLoop ? QStringList{group} : group.split(QLatin1Char(','));
    for (const QString &part : parts) {
        const GeneratedVariable variable = declaredVariable(part.trimmed());
        if (!variable.name.isEmpty())
            m_variables << variable;
    }
}

void StatementScanner::open(const CppToken &token)
{
    Frame frame{FrameKind::Group, m_nextNumber++, m_variables.size(), token.end, QString()};
    if (m_previous.kind == TokenKind::Name)
        frame.word = m_reader.textOf(m_previous).toString();
    if (token.isSign('{')) {
        frame.kind = opensBlock() ? FrameKind::Block : FrameKind::Braces;
        if (frame.kind == FrameKind::Block && m_previous.isSign(')'))
            addGroupVariables(m_lastGroup);
        if (frame.kind == FrameKind::Block && !isInFunction())
            m_functionDepth = m_frames.size();
    }
    m_frames << frame;
}

void StatementScanner::close(const CppToken &token)
{
    if (m_frames.isEmpty())
        return;
    const Frame frame = m_frames.takeLast();
    if (token.isSign(')')) {
        m_lastGroup = m_text.mid(frame.begin, token.begin - frame.begin);
        m_lastGroupWord = frame.word;
    }
    m_variables.erase(m_variables.begin() + frame.variables, m_variables.end());
    if (m_frames.size() <= m_functionDepth)
        m_functionDepth = -1;
}

QList<GeneratedStatement> StatementScanner::scan()
{
    for (CppToken token = m_reader.next(); token.kind != TokenKind::End; token = m_reader.next()) {
        if (token.kind == TokenKind::Comment || token.kind == TokenKind::Directive)
            continue;
        if (isBetweenStatements())
            beginStatement(token);
        if (token.isSign('(') || token.isSign('[') || token.isSign('{'))
            open(token);
        else if (token.isSign(')') || token.isSign(']') || token.isSign('}'))
            close(token);
        m_previous = token;
    }
    return m_found;
}

} // namespace

QList<GeneratedStatement> readStatements(const QString &text)
{
    return StatementScanner(text).scan();
}
