// Builds and runs whole Vorel programs and compares what they print.
//
// <name>.vc with <name>.out; <name>.exit holds an exit code other than 0, <name>.err a text that
// standard error must hold. Every project under examples/ has its output.txt.
#include "golden.h"

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

private:
    struct Outcome
    {
        QString output;
        QString messages;
        int exitCode = -1;
    };
    static Outcome run(const QString &input);
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

QTEST_GUILESS_MAIN(ProgramTest)
#include "program_test.moc"
