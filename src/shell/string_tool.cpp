#include "shell/string_tool.h"

#include <QCryptographicHash>
#include <QTextBoundaryFinder>
#include <QTextCodec>
#include <QUrl>

#include <algorithm>

namespace {

TextResult ofBytes(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return {QString(), QStringLiteral("解码得到的不是 UTF-8 文字")};
    return {text, QString()};
}

TextResult capitalized(const QString &input)
{
    QString text = input.toLower();
    for (int i = 0; i < text.size(); ++i) {
        if (i == 0 || !text.at(i - 1).isLetterOrNumber())
            text[i] = text.at(i).toUpper();
    }
    return {text, QString()};
}

// By what a reader takes for one character.
TextResult reversed(const QString &input)
{
    QString text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, input);
    finder.toEnd();
    int end = input.size();
    while (finder.toPreviousBoundary() >= 0) {
        text += input.midRef(finder.position(), end - finder.position());
        end = finder.position();
    }
    return {text, QString()};
}

TextResult counted(const QString &input)
{
    const auto count = [&](auto matches) {
        return int(std::count_if(input.begin(), input.end(), matches));
    };
    const int han = count([](QChar c) { return c.script() == QChar::Script_Han; });
    const int letters = count([](QChar c) { return c.script() == QChar::Script_Latin; });
    const int digits = count([](QChar c) { return c.isDigit(); });
    return {QStringLiteral("字符：%1\n汉字：%2\n字母：%3\n数字：%4\n行数：%5\nUTF-8 字节：%6")
                .arg(input.toUcs4().size())
                .arg(han)
                .arg(letters)
                .arg(digits)
                .arg(input.count(QLatin1Char('\n')) + 1)
                .arg(input.toUtf8().size()),
            QString()};
}

template <typename Change>
TextResult withLines(const QString &input, Change change)
{
    QStringList lines = input.split(QLatin1Char('\n'));
    change(lines);
    return {lines.join(QLatin1Char('\n')), QString()};
}

TextResult trimmedLines(const QString &input)
{
    return withLines(input, [](QStringList &lines) {
        for (QString &line : lines)
            line = line.trimmed();
    });
}

TextResult withoutBlankLines(const QString &input)
{
    return withLines(input, [](QStringList &lines) {
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const QString &line) { return line.trimmed().isEmpty(); }),
                    lines.end());
    });
}

TextResult sortedLines(const QString &input)
{
    return withLines(input, [](QStringList &lines) { lines.sort(); });
}

TextResult distinctLines(const QString &input)
{
    return withLines(input, [](QStringList &lines) { lines.removeDuplicates(); });
}

TextResult fromUrl(const QString &input)
{
    return ofBytes(QByteArray::fromPercentEncoding(input.toUtf8()));
}

TextResult fromBase64(const QString &input)
{
    QByteArray bytes = input.toUtf8();
    for (const char blank : {' ', '\n', '\r', '\t'})
        bytes.replace(blank, "");
    const auto decoded =
        QByteArray::fromBase64Encoding(bytes, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return {QString(), QStringLiteral("不是有效的 Base64")};
    return ofBytes(*decoded);
}

TextResult toEscapes(const QString &input)
{
    QString text;
    for (const QChar sign : input) {
        if (sign.unicode() < 0x80)
            text += sign;
        else
            text += QStringLiteral("\\u%1").arg(sign.unicode(), 4, 16, QLatin1Char('0'));
    }
    return {text, QString()};
}

// "\u" without four digits behind it stays as it is.
TextResult fromEscapes(const QString &input)
{
    QString text;
    for (int i = 0; i < input.size(); ++i) {
        bool isCode = false;
        const bool isEscape = input.midRef(i, 2) == QLatin1String("\\u") && i + 6 <= input.size();
        const ushort code = isEscape ? input.midRef(i + 2, 4).toUShort(&isCode, 16) : ushort(0);
        if (isCode)
            i += 5;
        text += isCode ? QChar(code) : input.at(i);
    }
    return {text, QString()};
}

template <QCryptographicHash::Algorithm algorithm>
TextResult hashed(const QString &input)
{
    const QByteArray hash = QCryptographicHash::hash(input.toUtf8(), algorithm);
    return {QString::fromLatin1(hash.toHex()), QString()};
}

} // namespace

const QVector<TextOperation> &stringOperations()
{
    static const QVector<TextOperation> operations{
        {"大小写", "转为大写",
         [](const QString &s) {
             return TextResult{s.toUpper(), {}};
         }},
        {"大小写", "转为小写",
         [](const QString &s) {
             return TextResult{s.toLower(), {}};
         }},
        {"大小写", "首字母大写", &capitalized},
        {"文字", "反转", &reversed},
        {"文字", "统计", &counted},
        {"行", "去掉行首行尾空白", &trimmedLines},
        {"行", "去掉空行", &withoutBlankLines},
        {"行", "排序", &sortedLines},
        {"行", "去掉重复的行", &distinctLines},
        {"编码", "URL 编码",
         [](const QString &s) {
             return TextResult{QString::fromLatin1(QUrl::toPercentEncoding(s)), {}};
         }},
        {"编码", "URL 解码", &fromUrl},
        {"编码", "Base64 编码",
         [](const QString &s) {
             return TextResult{QString::fromLatin1(s.toUtf8().toBase64()), {}};
         }},
        {"编码", "Base64 解码", &fromBase64},
        {"编码", "Unicode 转义", &toEscapes},
        {"编码", "Unicode 还原", &fromEscapes},
        {"摘要（UTF-8）", "MD5", &hashed<QCryptographicHash::Md5>},
        {"摘要（UTF-8）", "SHA-1", &hashed<QCryptographicHash::Sha1>},
        {"摘要（UTF-8）", "SHA-256", &hashed<QCryptographicHash::Sha256>},
        {"摘要（UTF-8）", "SHA-512", &hashed<QCryptographicHash::Sha512>},
    };
    return operations;
}

StringTool::StringTool(QWidget *parent)
    : TextToolDialog(QStringLiteral("字符串工具"), stringOperations(), parent)
{}
