// Files of tests.
#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace TestFiles {

// Makes the folder too.
inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

// Empty when there is no such file.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A copy of the project in `from`, so that a test leaves no build folder in the source tree.
inline void copyProject(const QString &from, const QString &to)
{
    const QDir source(from);
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString relative = source.relativeFilePath(files.next());
        if (relative.startsWith(QLatin1String("build/")))
            continue;
        const QString target = to + QLatin1Char('/') + relative;
        QVERIFY(QDir().mkpath(QFileInfo(target).path()));
        QVERIFY2(QFile::copy(files.filePath(), target), qPrintable(target));
    }
}

} // namespace TestFiles
