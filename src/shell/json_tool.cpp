#include "shell/json_tool.h"

#include "frontend/lexer.h"

#include <QJsonDocument>

namespace {

struct ErrorText
{
    QJsonParseError::ParseError error;
    const char *text;
    bool isBehind = true; // whether the parser stands behind the character that it refused
};

const ErrorText kErrors[] = {
    {QJsonParseError::UnterminatedObject, "对象没有结束，可能少了“}”"},
    {QJsonParseError::MissingNameSeparator, "键的后面少了冒号"},
    {QJsonParseError::UnterminatedArray, "数组没有结束，可能少了“]”"},
    {QJsonParseError::MissingValueSeparator, "两个值之间少了逗号"},
    {QJsonParseError::IllegalValue, "这里不是有效的值"},
    {QJsonParseError::TerminationByNumber, "内容在这里就结束了，可能少了“}”或“]”", false},
    {QJsonParseError::IllegalNumber, "这里不是有效的值", false},
    {QJsonParseError::IllegalEscapeSequence, "反斜杠后面的写法不对"},
    {QJsonParseError::IllegalUTF8String, "文字中有无效的字符"},
    {QJsonParseError::UnterminatedString, "文字没有结束，少了引号"},
    {QJsonParseError::MissingObject, "少了一个值"},
    {QJsonParseError::DeepNesting, "嵌套太深"},
    {QJsonParseError::DocumentTooLarge, "内容太大"},
    {QJsonParseError::GarbageAtEnd, "结尾之后还有多余的内容", false},
};

ErrorText errorText(QJsonParseError::ParseError error)
{
    for (const ErrorText &row : kErrors) {
        if (row.error == error)
            return row;
    }
    return {error, "格式不对"};
}

// Goes over valid JSON and writes it with or without lines.
class JsonWriter
{
public:
    JsonWriter(const QString &text, bool hasLines) : m_text(text), m_hasLines(hasLines) {}

    QString run()
    {
        for (m_place = 0; m_place < m_text.size(); ++m_place) {
            if (!m_text.at(m_place).isSpace())
                write(m_text.at(m_place));
        }
        return m_out;
    }

private:
    void write(QChar sign)
    {
        switch (sign.unicode()) {
        case '"':
            writeString();
            return;
        case '{':
        case '[':
            m_out += sign;
            ++m_depth;
            if (nextSign() != QLatin1Char('}') && nextSign() != QLatin1Char(']'))
                breakLine();
            return;
        case '}':
        case ']':
            --m_depth;
            if (!m_out.endsWith(QLatin1Char('{')) && !m_out.endsWith(QLatin1Char('[')))
                breakLine();
            m_out += sign;
            return;
        case ',':
            m_out += sign;
            breakLine();
            return;
        case ':':
            m_out += m_hasLines ? QStringLiteral(": ") : QString(sign);
            return;
        default:
            m_out += sign;
        }
    }

    void writeString()
    {
        const int start = m_place++;
        while (m_text.at(m_place) != QLatin1Char('"'))
            m_place += m_text.at(m_place) == QLatin1Char('\\') ? 2 : 1;
        m_out += m_text.midRef(start, m_place - start + 1);
    }

    QChar nextSign() const
    {
        int place = m_place + 1;
        while (place < m_text.size() && m_text.at(place).isSpace())
            ++place;
        return place < m_text.size() ? m_text.at(place) : QChar();
    }

    void breakLine()
    {
        if (m_hasLines)
            m_out += QLatin1Char('\n') + QString(4 * m_depth, QLatin1Char(' '));
    }

    const QString &m_text;
    bool m_hasLines;
    QString m_out;
    int m_place = 0;
    int m_depth = 0;
};

TextResult rewritten(const QString &text, bool hasLines)
{
    const QString problem = JsonText::problem(text);
    if (!problem.isEmpty())
        return {QString(), problem};
    return {JsonWriter(text, hasLines).run(), QString()};
}

} // namespace

QString JsonText::problem(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    QJsonParseError error;
    QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::NoError)
        return {};
    const ErrorText row = errorText(error.error);
    const QString before = QString::fromUtf8(bytes.left(qMax(0, error.offset - int(row.isBehind))));
    const int line = before.count(QLatin1Char('\n')) + 1;
    const int column = before.size() - before.lastIndexOf(QLatin1Char('\n'));
    return QStringLiteral("第 %1 行第 %2 列：%3")
        .arg(line)
        .arg(column)
        .arg(QString::fromUtf8(row.text));
}

TextResult JsonText::formatted(const QString &text)
{
    return rewritten(text, true);
}

TextResult JsonText::compact(const QString &text)
{
    return rewritten(text, false);
}

TextResult JsonText::validated(const QString &text)
{
    const QString error = problem(text);
    return {error.isEmpty() ? QStringLiteral("有效的 JSON") : QString(), error};
}

TextResult JsonText::toLiteral(const QString &text)
{
    QString literal = text;
    literal.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\""))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"));
    return {QLatin1Char('"') + literal + QLatin1Char('"'), QString()};
}

TextResult JsonText::fromLiteral(const QString &text)
{
    const QList<Lexer::Token> tokens = Lexer(text).tokenize();
    if (tokens.size() != 2 || tokens.first().type != Lexer::StringLiteral)
        return {QString(), QStringLiteral("这不是一个带引号的文本")};
    return {tokens.first().text, QString()};
}

JsonTool::JsonTool(QWidget *parent)
    : TextToolDialog(QStringLiteral("JSON工具"),
                     {{"JSON", "格式化", &JsonText::formatted},
                      {"JSON", "压缩", &JsonText::compact},
                      {"JSON", "校验", &JsonText::validated},
                      {"源代码", "转为文本常量", &JsonText::toLiteral},
                      {"源代码", "还原文本常量", &JsonText::fromLiteral}},
                     parent)
{}
