#include "shell/text_file.h"

#include "driver/source_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextCodec>

namespace {

const char utf8Mark[] = "\xEF\xBB\xBF";

// Every byte must come back from the text.
bool decodeExactly(const QByteArray &bytes, const char *codecName, QString &text)
{
    QTextCodec *codec = QTextCodec::codecForName(codecName);
    if (!codec)
        return false;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0 || text.contains(QChar(0)))
        return false;
    QTextCodec::ConverterState back(QTextCodec::IgnoreHeader);
    return codec->fromUnicode(text.constData(), text.size(), &back) == bytes;
}

bool decode(const QByteArray &bytes, ReadText &read)
{
    if (bytes.startsWith(utf8Mark)) {
        read.form.hasMark = true;
        return decodeExactly(bytes.mid(3), "UTF-8", read.text);
    }
    if (decodeExactly(bytes, "UTF-8", read.text))
        return true;
    const bool isLittle = bytes.startsWith("\xFF\xFE");
    if (isLittle || bytes.startsWith("\xFE\xFF")) {
        read.notice = QStringLiteral("文件是 UTF-16 编码，保存时将写成 UTF-8。");
        return decodeExactly(bytes.mid(2), isLittle ? "UTF-16LE" : "UTF-16BE", read.text);
    }
    read.notice = QStringLiteral("文件不是 UTF-8 编码，已按 GBK 读取；保存时将写成 UTF-8。");
    return decodeExactly(bytes, "GB18030", read.text);
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

} // namespace

ReadText TextFile::read(const QString &path)
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
    if (!decode(file.read(maxSourceBytes + 1), read))
        read.error = QStringLiteral("这不是文本文件，或编码无法识别: %1").arg(name);
    takeLineEnd(read);
    return read;
}

QString TextFile::write(const QString &path, const QString &text, const TextForm &form)
{
    QSaveFile file(path);
    QString content = text;
    if (form.lineEnd != QLatin1String("\n"))
        content.replace(QLatin1Char('\n'), form.lineEnd);
    QByteArray bytes = content.toUtf8();
    if (form.hasMark)
        bytes.prepend(utf8Mark);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return QStringLiteral("无法保存文件 %1：%2")
        .arg(QDir::toNativeSeparators(path), file.errorString());
}
