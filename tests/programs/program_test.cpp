// Builds and runs whole Vorel programs and compares what they print.
//
// <name>.vc with <name>.out; <name>.exit holds an exit code other than 0, <name>.err a text that
// standard error must hold. Every project under examples/ has its output.txt, and every command's
// record the output of its example.
#include "golden.h"

#include "catalog/command_library.h"

#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>

class ProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void runtimeObjects();
    void program_data();
    void program();
    void example_data();
    void example();
    void commandExamples_data();
    void commandExamples();

private:
    struct Outcome
    {
        QString output;
        QString messages;
        int exitCode = -1;
    };
    static Outcome run(const QString &input);
    static QString topCategory(const CommandInfo &info);
};

static const int kLimitMs = 600000;

ProgramTest::Outcome ProgramTest::run(const QString &input)
{
    QProcess process;
    process.start(QStringLiteral(VORELC),
                  {QStringLiteral("run"), QStringLiteral("--quiet"), input});
    Outcome outcome;
    if (!process.waitForFinished(kLimitMs))
        return outcome;
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.output.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    outcome.messages = QString::fromUtf8(process.readAllStandardError());
    outcome.exitCode = process.exitCode();
    return outcome;
}

void ProgramTest::runtimeObjects()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("start.vc"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("函数 主函数() { 输出(\"好\") }\n").toUtf8());
    file.close();
    const Outcome outcome = run(path);
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.messages));
    QCOMPARE(outcome.output, QStringLiteral("好\n"));
}

void ProgramTest::program_data()
{
    Golden::addRows(QStringLiteral(VOREL_SOURCE_DIR "/tests/programs"), QStringLiteral(".vc"));
}

void ProgramTest::program()
{
    QFETCH(QString, path);
    const QString base = path.chopped(3);
    const Outcome outcome = run(path);
    const QString expectedExit = Golden::read(base + QStringLiteral(".exit")).trimmed();
    QVERIFY2(outcome.exitCode == expectedExit.toInt(),
             qPrintable(QStringLiteral("exit code %1\n").arg(outcome.exitCode) + outcome.messages));
    Golden::compare(base + QStringLiteral(".out"), outcome.output);
    const QString expectedError = Golden::read(base + QStringLiteral(".err")).trimmed();
    QVERIFY2(outcome.messages.contains(expectedError), qPrintable(outcome.messages));
}

void ProgramTest::example_data()
{
    QTest::addColumn<QString>("folder");
    const QDir examples(QStringLiteral(VOREL_SOURCE_DIR "/examples"));
    for (const QString &name : examples.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (examples.exists(name + QStringLiteral("/output.txt")))
            QTest::addRow("%s", qPrintable(name)) << examples.filePath(name);
    }
}

// In a copy: a test leaves no build folder in the source tree.
void ProgramTest::example()
{
    QFETCH(QString, folder);
    QTemporaryDir copy;
    const QDir source(folder);
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString relative = source.relativeFilePath(files.next());
        if (relative.startsWith(QLatin1String("build/")))
            continue;
        const QString target = copy.filePath(source.dirName() + QLatin1Char('/') + relative);
        QVERIFY(QDir().mkpath(QFileInfo(target).path()));
        QVERIFY(QFile::copy(files.filePath(), target));
    }
    const Outcome outcome = run(copy.filePath(source.dirName()));
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.messages));
    Golden::compare(folder + QStringLiteral("/output.txt"), outcome.output);
}

QString ProgramTest::topCategory(const CommandInfo &info)
{
    return info.category.section(QLatin1Char('/'), 0, 0);
}

void ProgramTest::commandExamples_data()
{
    QTest::addColumn<QString>("category");
    QStringList categories;
    for (const CommandInfo &info : CommandLibrary::builtin().allCommands()) {
        if (!info.example.isEmpty() && !info.output.isNull())
            categories << topCategory(info);
    }
    categories.removeDuplicates();
    for (const QString &category : qAsConst(categories))
        QTest::addRow("%s", qPrintable(category)) << category;
}

// All examples of a category in one program, each in a function of its own behind a line with the
// command's name.
void ProgramTest::commandExamples()
{
    QFETCH(QString, category);
    QString calls;
    QString functions;
    QString expected;
    int number = 0;
    for (const CommandInfo &info : CommandLibrary::builtin().allCommands()) {
        if (topCategory(info) != category || info.example.isEmpty() || info.output.isNull())
            continue;
        const QString function = QStringLiteral("示例%1").arg(++number);
        calls += QStringLiteral("    输出(\"== %1\")\n    %2()\n").arg(info.name, function);
        functions += QStringLiteral("函数 %1() {\n%2\n}\n").arg(function, info.example);
        expected += QStringLiteral("== %1\n").arg(info.name);
        if (!info.output.isEmpty())
            expected += info.output + QLatin1Char('\n');
    }
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("examples.vc"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        (QStringLiteral("函数 主函数() {\n") + calls + QStringLiteral("}\n") + functions).toUtf8());
    file.close();
    const Outcome outcome = run(path);
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.messages));
    const QStringList actualLines = outcome.output.split(QLatin1Char('\n'));
    const QStringList expectedLines = expected.split(QLatin1Char('\n'));
    QString command;
    for (int i = 0; i < qMax(actualLines.size(), expectedLines.size()); ++i) {
        if (expectedLines.value(i).startsWith(QLatin1String("== ")))
            command = expectedLines.at(i) + QStringLiteral(": ");
        QCOMPARE(command + actualLines.value(i), command + expectedLines.value(i));
    }
}

QTEST_GUILESS_MAIN(ProgramTest)
#include "program_test.moc"
