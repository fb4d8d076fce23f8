// Reading a source file: any bytes give a text or a Chinese sentence.
#pragma once

#include <QByteArray>
#include <QString>

// The text of a file, or why there is none. `line` tells where the fault is, 0 without a place.
struct SourceText
{
    bool isValid() const { return error.isEmpty(); }

    QString text;
    QString error;
    int line = 0;
};

// Bytes of one file, about 48 MB: nobody writes that by hand.
constexpr qint64 maxSourceBytes = 50331648;
// Characters of all files together.
constexpr int maxMergedChars = 29360128;

// UTF-8 with or without a byte order mark; CR and CRLF become LF. UTF-16, NUL bytes and invalid
// UTF-8 are refused. `name` is how messages call the file.
SourceText decodeSource(const QByteArray &bytes, const QString &name);

// The decoded content of a file; an empty file gives an empty text.
SourceText readSourceFile(const QString &path, const QString &name);
