// What the tests of form files share.
#pragma once

#include "designer/model/vlwin_document.h"
#include "designer/model/vui_document.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace Designer {

inline QString dataFolder()
{
    return QStringLiteral(VOREL_SOURCE_DIR "/tests/designer/data");
}

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QByteArray sample(const char *name)
{
    return bytesOf(dataFolder() + QLatin1Char('/') + QString::fromLatin1(name));
}

inline QStringList sampleNames()
{
    return QDir(dataFolder())
        .entryList({QStringLiteral("*.vui"), QStringLiteral("*.vlwin")}, QDir::Files, QDir::Name);
}

// The lines that only one of two texts has, "-" for the first and "+" for the second; the parts
// at both ends that agree are left out.
inline QStringList changedLines(const QByteArray &before, const QByteArray &after)
{
    QList<QByteArray> old = before.split('\n');
    QList<QByteArray> fresh = after.split('\n');
    while (!old.isEmpty() && !fresh.isEmpty() && old.first() == fresh.first()) {
        old.removeFirst();
        fresh.removeFirst();
    }
    while (!old.isEmpty() && !fresh.isEmpty() && old.last() == fresh.last()) {
        old.removeLast();
        fresh.removeLast();
    }
    QStringList lines;
    for (const QByteArray &line : qAsConst(old))
        lines << QLatin1Char('-') + QString::fromUtf8(line).trimmed();
    for (const QByteArray &line : qAsConst(fresh))
        lines << QLatin1Char('+') + QString::fromUtf8(line).trimmed();
    return lines;
}

} // namespace Designer
