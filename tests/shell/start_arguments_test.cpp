// What the arguments of the start ask for.
#include "shell/start_arguments.h"

#include "test_files.h"

#include <QTemporaryDir>

class StartArgumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void fileToOpen_data();
    void fileToOpen();
    void updateIsRefused();
};

void StartArgumentsTest::fileToOpen_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("file");
    QTest::newRow("none") << QStringList{} << "";
    QTest::newRow("project") << QStringList{"甲 项目.vlproj"} << "甲 项目.vlproj";
    QTest::newRow("upper case") << QStringList{"B.VLPROJ"} << "B.VLPROJ";
    QTest::newRow("source") << QStringList{"c.vc"} << "c.vc";
    QTest::newRow("form") << QStringList{"d.vui"} << "d.vui";
    QTest::newRow("blanks around") << QStringList{" c.vc\n"} << "c.vc";
    QTest::newRow("foreign suffix") << QStringList{"e.txt"} << "";
    QTest::newRow("suffix alone in the middle") << QStringList{"f.vc.bak"} << "";
    QTest::newRow("missing") << QStringList{"missing.vc"} << "";
    QTest::newRow("folder") << QStringList{"folder.vc"} << "";
    QTest::newRow("empty") << QStringList{""} << "";
    QTest::newRow("first that fits")
        << QStringList{"--x", "missing.vc", "e.txt", "d.vui", "c.vc"} << "d.vui";
}

void StartArgumentsTest::fileToOpen()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, file);
    const QTemporaryDir temporary;
    const QString folder = QDir(temporary.path()).canonicalPath();
    for (const char *name : {"甲 项目.vlproj", "B.VLPROJ", "c.vc", "d.vui", "e.txt", "f.vc.bak"})
        TestFiles::writeFile(folder + '/' + QString::fromUtf8(name), "");
    QVERIFY(QDir().mkpath(folder + "/folder.vc"));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder));
    // The program itself is no file to open, whatever it is called.
    const StartArguments result = readStartArguments(QStringList{"c.vc"} + arguments);
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(result.fileToOpen, file.isEmpty() ? QString() : folder + '/' + file);
    QCOMPARE(result.refusal, QString());
}

void StartArgumentsTest::updateIsRefused()
{
    QVERIFY(readStartArguments({"voreldesk", "a", "--apply-update", "b"}).refusal.contains("更新"));
    QCOMPARE(readStartArguments({"--apply-update"}).refusal, QString());
}

QTEST_GUILESS_MAIN(StartArgumentsTest)
#include "start_arguments_test.moc"
