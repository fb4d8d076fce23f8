// Comparison with expected-output files; VOREL_UPDATE_GOLDEN=1 rewrites them.
#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QtTest>

namespace Golden {

inline QString read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// A missing expectation fails, as does a different one.
inline void compare(const QString &path, const QString &actual)
{
    if (qEnvironmentVariableIsSet("VOREL_UPDATE_GOLDEN")) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(actual.toUtf8());
        return;
    }
    QVERIFY2(QFile::exists(path), qPrintable(path + QStringLiteral(" is missing")));
    const QStringList expectedLines = read(path).split(QLatin1Char('\n'));
    const QStringList actualLines = actual.split(QLatin1Char('\n'));
    for (int i = 0; i < qMax(expectedLines.size(), actualLines.size()); ++i) {
        const QString where = QStringLiteral("%1 line %2: ").arg(path).arg(i + 1);
        QCOMPARE(where + actualLines.value(i), where + expectedLines.value(i));
    }
}

// A data row for each file of `folder` that ends in `suffix`.
inline void addRows(const QString &folder, const QString &suffix)
{
    QTest::addColumn<QString>("path");
    const QStringList names =
        QDir(folder).entryList({QLatin1Char('*') + suffix}, QDir::Files, QDir::Name);
    QVERIFY(!names.isEmpty());
    for (const QString &name : names) {
        QTest::addRow("%s", qPrintable(name.chopped(suffix.size())))
            << folder + QLatin1Char('/') + name;
    }
}

} // namespace Golden
