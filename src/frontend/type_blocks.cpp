// The translation behind type_blocks.h.
#include "frontend/type_blocks.h"

#include <QStringList>

namespace {

const QString &blockWord()
{
    static const QString word = QStringLiteral("类型");
    return word;
}

// The first place of `wanted` outside of quotes; -1 if there is none.
int indexOutsideQuotes(const QString &line, QLatin1String wanted)
{
    QChar quote;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (!quote.isNull()) {
            if (c == QLatin1Char('\\'))
                ++i;
            else if (c == quote)
                quote = QChar();
        } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
            quote = c;
        } else if (line.midRef(i, wanted.size()) == wanted) {
            return i;
        }
    }
    return -1;
}

QString stripped(const QString &line)
{
    const int comment = indexOutsideQuotes(line, QLatin1String("//"));
    return (comment < 0 ? line : line.left(comment)).trimmed();
}

bool closesBlock(const QString &line)
{
    return line.startsWith(QLatin1Char('}'));
}

bool isSpaceOr(QChar c, QLatin1String signs)
{
    return c.isSpace() || signs.contains(c);
}

// The type word that opens a member line; empty if none does.
QString memberType(const QString &line)
{
    // "任意" is no word of the language: as an unknown name it means any type.
    static const QStringList words{QStringLiteral("单浮点"), QStringLiteral("字节集"),
                                   QStringLiteral("长整数"), QStringLiteral("整数"),
                                   QStringLiteral("小数"),   QStringLiteral("文本"),
                                   QStringLiteral("逻辑"),   QStringLiteral("通用"),
                                   QStringLiteral("任意"),   QStringLiteral("数组")};
    for (const QString &word : words) {
        if (line.startsWith(word) && line.size() > word.size() &&
            isSpaceOr(line.at(word.size()), QLatin1String("[")))
            return word;
    }
    return QString();
}

// Translates one member line. Returns a sentence if it is none; nothing is added then.
QString convertMember(const QString &line, QString *output)
{
    if (line.isEmpty() || closesBlock(line))
        return QString();
    const QString type = memberType(line);
    if (type.isEmpty())
        return QStringLiteral("无法识别的成员行（应以 整数/文本/数组 等类型开头）");
    const QString declarator = line.mid(type.size()).trimmed();
    int end = 0;
    while (end < declarator.size() && !isSpaceOr(declarator.at(end), QLatin1String("[=")))
        ++end;
    const QString name = declarator.left(end);
    if (name.isEmpty())
        return QStringLiteral("缺少成员名");
    QString rest = declarator.mid(end).trimmed();
    QString bound;
    if (rest.startsWith(QLatin1Char('['))) {
        const int close = rest.indexOf(QLatin1Char(']'));
        if (close < 0)
            return QStringLiteral("成员 %1 的 [] 未闭合").arg(name);
        bound = rest.left(close + 1);
        rest = rest.mid(close + 1).trimmed();
    }
    QString value;
    if (rest.startsWith(QLatin1Char('=')))
        value = rest.mid(1).trimmed();
    else if (!rest.isEmpty())
        return QStringLiteral("成员 %1 行尾有多余内容").arg(name);
    *output += QStringLiteral("    属性 ") + type + QLatin1Char(' ') + name + bound;
    if (!value.isEmpty())
        *output += QStringLiteral(" = ") + value;
    *output += QLatin1Char('\n');
    return QString();
}

// Reads line after line; a line is outside, in a header that is spread over lines, or in a block.
class BlockConverter
{
public:
    void readLine(const QString &line)
    {
        ++m_line;
        if (line.isEmpty())
            return;
        if (m_isInBlock)
            readBlockLine(line);
        else
            readHeaderLine(line);
    }

    void finish()
    {
        if (m_isInBlock) {
            fail(QStringLiteral("类型「%1」未闭合「}」").arg(m_name));
            closeBlock();
        } else if (!m_header.isEmpty()) {
            fail(QStringLiteral("文件末尾有未完成的「类型」声明"));
        }
    }

    QString output() const { return m_output; }
    QString error() const { return m_error; }

private:
    void readHeaderLine(const QString &line);
    void openBlock(const QString &head, const QString &rest);
    void readBlockLine(const QString &line);
    void readMember(const QString &line);

    void closeBlock()
    {
        m_output += QStringLiteral("}\n\n");
        m_isInBlock = false;
    }
    void fail(const QString &sentence)
    {
        if (m_error.isEmpty())
            m_error = sentence;
    }
    void failHere(const QString &sentence)
    {
        fail(QStringLiteral("第 %1 行：%2").arg(QString::number(m_line), sentence));
    }

    int m_line = 0;
    bool m_isInBlock = false;
    QString m_name;
    QString m_header;
    QString m_output;
    QString m_error;
};

void BlockConverter::readHeaderLine(const QString &line)
{
    if (m_header.isEmpty() && !line.startsWith(blockWord())) {
        failHere(QStringLiteral(".vd 文件中仅允许以「类型」开头的类型块"));
        return;
    }
    const int brace = line.indexOf(QLatin1Char('{'));
    if (!m_header.isEmpty())
        m_header += QLatin1Char(' ');
    m_header += brace < 0 ? line : line.left(brace);
    if (brace < 0)
        return;
    const QString head = m_header;
    m_header.clear();
    openBlock(head, line.mid(brace + 1).trimmed());
}

// `head` is the text before the brace, `rest` what stands behind it on its line.
void BlockConverter::openBlock(const QString &head, const QString &rest)
{
    if (!head.startsWith(blockWord())) {
        failHere(QStringLiteral("类型块格式错误"));
        return;
    }
    m_name = head.mid(blockWord().size()).trimmed();
    if (m_name.isEmpty()) {
        failHere(QStringLiteral("缺少类型名称"));
        return;
    }
    m_output += QStringLiteral("类 %1 {\n").arg(m_name);
    m_isInBlock = true;
    const int close = indexOutsideQuotes(rest, QLatin1String("}"));
    if (close < 0) {
        readMember(rest);
        return;
    }
    readMember(rest.left(close).trimmed());
    closeBlock();
    if (!rest.mid(close + 1).trimmed().isEmpty())
        failHere(QStringLiteral("「类型」闭合「}」后不应再有内容"));
}

void BlockConverter::readBlockLine(const QString &line)
{
    if (closesBlock(line))
        closeBlock();
    else
        readMember(line);
}

void BlockConverter::readMember(const QString &line)
{
    const QString problem = convertMember(line, &m_output);
    if (!problem.isEmpty())
        failHere(problem);
}

} // namespace

QString convertTypeBlocks(const QString &text, QString *error)
{
    BlockConverter converter;
    const QVector<QStringRef> lines = text.splitRef(QLatin1Char('\n'));
    for (const QStringRef &line : lines)
        converter.readLine(stripped(line.toString()));
    converter.finish();
    if (error)
        *error = converter.error();
    return converter.output();
}
