#include "shell/text_file.h"

#include "driver/source_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>

#include <algorithm>
#include <iterator>
#include <optional>

namespace {

// How an encoding is called by its codec and by the user, and the mark of its byte order.
struct EncodingInfo
{
    TextForm::Encoding encoding;
    const char *codec;
    const char *mark;
    const char *name;
};

constexpr EncodingInfo encodings[] = {
    {TextForm::Encoding::Utf8, "UTF-8", "\xEF\xBB\xBF", "UTF-8"},
    {TextForm::Encoding::Utf16LittleEndian, "UTF-16LE", "\xFF\xFE", "UTF-16"},
    {TextForm::Encoding::Utf16BigEndian, "UTF-16BE", "\xFE\xFF", "UTF-16"},
    {TextForm::Encoding::Gb18030, "GB18030", "", "GBK"},
};

const EncodingInfo &infoOf(TextForm::Encoding encoding)
{
    return *std::find_if(
        std::begin(encodings), std::end(encodings),
        [encoding](const EncodingInfo &info) { return info.encoding == encoding; });
}

// Nothing when the encoding lacks a character of the text.
std::optional<QByteArray> encode(const QString &text, const TextForm &form)
{
    const EncodingInfo &info = infoOf(form.encoding);
    QTextCodec *codec = QTextCodec::codecForName(info.codec);
    if (!codec)
        return std::nullopt;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QByteArray bytes = codec->fromUnicode(text.constData(), text.size(), &state);
    // The codecs do not tell of all that they replace.
    QTextCodec::ConverterState back(QTextCodec::IgnoreHeader);
    if (form.encoding != TextForm::Encoding::Utf8 &&
        codec->toUnicode(bytes.constData(), bytes.size(), &back) != text)
        return std::nullopt;
    return form.hasMark ? info.mark + bytes : bytes;
}

// Every byte must come back from the text.
bool decodeAs(const TextForm &form, const QByteArray &bytes, ReadText &read)
{
    const EncodingInfo &info = infoOf(form.encoding);
    QTextCodec *codec = QTextCodec::codecForName(info.codec);
    if (!codec)
        return false;
    const int skipped = form.hasMark ? int(qstrlen(info.mark)) : 0;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    read.text = codec->toUnicode(bytes.constData() + skipped, bytes.size() - skipped, &state);
    read.form = form;
    return state.invalidChars == 0 && state.remainingChars == 0 && !read.text.contains(QChar(0)) &&
           encode(read.text, form) == bytes;
}

bool decode(const QByteArray &bytes, ReadText &read)
{
    for (const EncodingInfo &info : encodings) {
        TextForm form;
        form.encoding = info.encoding;
        form.hasMark = *info.mark != 0 && bytes.startsWith(info.mark);
        if (form.hasMark)
            return decodeAs(form, bytes, read);
    }
    TextForm form;
    if (decodeAs(form, bytes, read))
        return true;
    form.encoding = TextForm::Encoding::Gb18030;
    return decodeAs(form, bytes, read);
}

void takeLineEnd(ReadText &read)
{
    const int all = read.text.count(QLatin1Char('\n'));
    const int windows = read.text.count(QLatin1String("\r\n"));
    if (windows > all / 2)
        read.form.lineEnd = QStringLiteral("\r\n");
    read.text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    read.text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

// The editor knows one end of a line, and takes these signs for it too.
void takeSeparators(ReadText &read)
{
    bool hasSome = false;
    for (QChar &sign : read.text) {
        if (sign == QChar::ParagraphSeparator || sign == QChar(0xFDD0) || sign == QChar(0xFDD1)) {
            sign = QLatin1Char('\n');
            hasSome = true;
        }
    }
    if (hasSome)
        read.notice += QStringLiteral("文件中有特殊的分段符号，已改成换行。");
}

} // namespace

ReadText TextFile::read(const QString &path)
{
    ReadText read = readExactly(path);
    if (read.succeeded() && read.form.encoding != TextForm::Encoding::Utf8) {
        read.notice = QStringLiteral("文件不是 UTF-8 编码，已按 %1 读取；保存时将写成 UTF-8。")
                          .arg(QLatin1String(infoOf(read.form.encoding).name));
        read.form = TextForm();
    }
    takeLineEnd(read);
    takeSeparators(read);
    return read;
}

ReadText TextFile::readExactly(const QString &path)
{
    ReadText read;
    QFile file(path);
    const QString name = QDir::toNativeSeparators(path);
    if (QFileInfo(path).isDir() || !file.open(QIODevice::ReadOnly)) {
        read.error = QStringLiteral("无法打开文件: %1").arg(name);
        return read;
    }
    if (file.size() > maxSourceBytes) {
        read.error = QStringLiteral("文件过大，无法作为文本打开: %1").arg(name);
        return read;
    }
    // A device may give more than its size says.
    if (!decode(file.read(maxSourceBytes + 1), read)) {
        read = ReadText();
        read.error = QStringLiteral("这不是文本文件，或编码无法识别: %1").arg(name);
    }
    return read;
}

QString TextFile::write(const QString &path, const QString &text, const TextForm &form)
{
    const QString name = QDir::toNativeSeparators(path);
    QString content = text;
    if (form.lineEnd != QLatin1String("\n"))
        content.replace(QLatin1Char('\n'), form.lineEnd);
    const std::optional<QByteArray> bytes = encode(content, form);
    if (!bytes)
        return QStringLiteral("文件 %1 的编码无法保存这些内容").arg(name);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(*bytes) == bytes->size() && file.commit())
        return {};
    return QStringLiteral("无法保存文件 %1：%2").arg(name, file.errorString());
}
