#include "driver/source_text.h"

#include "driver/build_messages.h"

#include <QFile>
#include <QFileInfo>

namespace {

using BuildMessage::text;

SourceText refused(const QString &error, int line = 0)
{
    SourceText result;
    result.error = error;
    result.line = line;
    return result;
}

int lineAt(const QByteArray &bytes, int offset)
{
    int line = 1;
    for (int i = 0; i < offset; ++i) {
        const bool newline =
            bytes.at(i) == '\n' ||
            (bytes.at(i) == '\r' && (i + 1 >= bytes.size() || bytes.at(i + 1) != '\n'));
        line += newline ? 1 : 0;
    }
    return line;
}

// Half of the units of UTF-16 text are control or blank characters with one byte NUL.
bool looksLikeUtf16(const QByteArray &bytes)
{
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"))
        return true;
    const int count = qMin(bytes.size(), 4096);
    int nulls[2] = {0, 0};
    for (int i = 0; i < count; ++i)
        nulls[i & 1] += bytes.at(i) == '\0' ? 1 : 0;
    return qMax(nulls[0], nulls[1]) * 5 > count && qMin(nulls[0], nulls[1]) * 50 < count;
}

bool isContinuation(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

// The length of the valid UTF-8 sequence at `offset`, 0 if there is none.
int sequenceLength(const QByteArray &bytes, int offset)
{
    const auto at = [&bytes](int index) {
        return index < bytes.size() ? uchar(bytes.at(index)) : uchar(0);
    };
    const uchar first = at(offset);
    if (first < 0x80)
        return 1;
    const uchar second = at(offset + 1);
    if (first < 0xC2 || !isContinuation(second))
        return 0;
    if (first < 0xE0)
        return 2;
    if (!isContinuation(at(offset + 2)))
        return 0;
    if (first < 0xF0) {
        const bool overlong = first == 0xE0 && second < 0xA0;
        const bool surrogate = first == 0xED && second >= 0xA0;
        return overlong || surrogate ? 0 : 3;
    }
    const bool outside =
        first > 0xF4 || (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
    return outside || !isContinuation(at(offset + 3)) ? 0 : 4;
}

int firstInvalidByte(const QByteArray &bytes)
{
    for (int i = 0; i < bytes.size();) {
        const int length = sequenceLength(bytes, i);
        if (length == 0)
            return i;
        i += length;
    }
    return -1;
}

} // namespace

SourceText decodeSource(const QByteArray &bytes, const QString &name)
{
    if (looksLikeUtf16(bytes))
        return refused(text(BuildMessage::fileUtf16).arg(name));
    const int null = bytes.indexOf('\0');
    if (null >= 0) {
        const int line = lineAt(bytes, null);
        return refused(text(BuildMessage::fileNul).arg(line), line);
    }
    const int invalid = firstInvalidByte(bytes);
    if (invalid >= 0) {
        const int line = lineAt(bytes, invalid);
        return refused(text(BuildMessage::fileNotUtf8).arg(line), line);
    }
    SourceText result;
    const bool marked = bytes.startsWith("\xEF\xBB\xBF");
    result.text =
        QString::fromUtf8(bytes.constData() + (marked ? 3 : 0), bytes.size() - (marked ? 3 : 0));
    if (bytes.contains('\r')) {
        result.text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        result.text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    return result;
}

SourceText readSourceFile(const QString &path, const QString &name)
{
    const QFileInfo info(path);
    if (!info.exists())
        return refused(text(BuildMessage::fileMissing).arg(name));
    if (info.isDir())
        return refused(text(BuildMessage::fileIsFolder).arg(name));
    // A pipe or a device could block for ever or never end.
    if (!info.isFile())
        return refused(text(BuildMessage::fileNotRegular).arg(name));
    if (info.size() > maxSourceBytes) {
        return refused(text(BuildMessage::fileTooLarge)
                           .arg(QString::number(info.size() / 1048576), name,
                                QString::number(maxSourceBytes / 1048576)));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refused(text(BuildMessage::fileUnreadable).arg(name, file.errorString()));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return refused(text(BuildMessage::fileUnreadable).arg(name, file.errorString()));
    return decodeSource(bytes, name);
}
