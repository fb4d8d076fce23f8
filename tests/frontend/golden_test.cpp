// Compares the trees and messages of whole sources with the files beside them. With
// VOREL_UPDATE_GOLDEN=1 in the environment the files are written anew.
#include "frontend/tree_dump.h"

#include <QtTest>

class GoldenTest : public QObject
{
    Q_OBJECT

private slots:
    void tree_data();
    void tree();
};

static QString readText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void GoldenTest::tree_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(VOREL_SOURCE_DIR "/tests/frontend/data"));
    const QFileInfoList sources = folder.entryInfoList({QStringLiteral("*.vc")}, QDir::Files);
    QVERIFY(!sources.isEmpty());
    for (const QFileInfo &source : sources)
        QTest::addRow("%s", qPrintable(source.completeBaseName())) << source.filePath();
}

void GoldenTest::tree()
{
    QFETCH(QString, path);
    const QString actual = dumpSource(readText(path));
    const QString goldenPath = path.chopped(2) + QLatin1String("tree");
    if (qEnvironmentVariableIsSet("VOREL_UPDATE_GOLDEN")) {
        QFile golden(goldenPath);
        QVERIFY(golden.open(QIODevice::WriteOnly));
        golden.write(actual.toUtf8());
        return;
    }
    const QStringList expectedLines = readText(goldenPath).split(QLatin1Char('\n'));
    const QStringList actualLines = actual.split(QLatin1Char('\n'));
    for (int i = 0; i < qMin(expectedLines.size(), actualLines.size()); ++i)
        QCOMPARE(actualLines.at(i), expectedLines.at(i));
    QCOMPARE(actualLines.size(), expectedLines.size());
}

QTEST_GUILESS_MAIN(GoldenTest)
#include "golden_test.moc"
