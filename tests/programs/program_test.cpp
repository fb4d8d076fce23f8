// Builds and runs whole Vorel programs and compares what they print.
//
// <name>.vc with <name>.out; <name>.exit holds an exit code other than 0, <name>.err a text that
// standard error must hold. Every project under examples/ has its output.txt, and every command's
// record the output of its example.
#include "golden.h"
#include "test_files.h"

#include "catalog/command_library.h"

#include <QProcess>
#include <QTemporaryDir>
#include <functional>

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
    void commandExamplesFor32Bits();
    void oneFile_data();
    void oneFile();
    void commandExamplesInOneFile();

private:
    struct ExampleProgram
    {
        QString source;
        QString output;
    };
    struct Outcome
    {
        QString output;
        QString messages;
        int exitCode = -1;
    };
    enum class Form
    {
        Units,  // compiled in units, the runtime from the cache
        OneFile // everything compiled at once
    };
    static Outcome run(const QString &input, const QStringList &command = {QStringLiteral("run")},
                       Form form = Form::Units);
    static void checkProgram(const QString &path, const QString &config, Form form);
    static void checkExamples(const ExampleProgram &program, Form form);
    static QString exampleDeclarations(QString example, const QString &function, int number);
    static ExampleProgram exampleProgram(const std::function<bool(const CommandInfo &)> &wanted);
    static QString writeExampleProject(const QTemporaryDir &folder, const QString &source);
    static QString topCategory(const CommandInfo &info);
};

static const int kLimitMs = 600000;

ProgramTest::Outcome ProgramTest::run(const QString &input, const QStringList &command, Form form)
{
    QProcess process;
    if (form == Form::OneFile) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VOREL_NO_SPLIT"), QStringLiteral("1"));
        process.setProcessEnvironment(environment);
    }
    process.start(QStringLiteral(VORELC), command + QStringList{QStringLiteral("--quiet"), input});
    Outcome outcome;
    if (!process.waitForFinished(kLimitMs))
        return outcome;
    outcome.output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.output.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    outcome.messages = QString::fromUtf8(process.readAllStandardError());
    outcome.exitCode = process.exitCode();
    return outcome;
}

// Also lets the window of the command examples appear at once: wine waits two seconds for a window
// manager to take note of one that appears, and the virtual display has none.
void ProgramTest::runtimeObjects()
{
    const char program[] = R"(
函数 主函数() {
    如果 (注册表项存在("HKCU\\Software\\Wine")) {
        写注册表("HKCU\\Software\\Wine\\AppDefaults\\example.exe\\X11 Driver", "Managed", "N")
    }
    输出("好")
}
)";
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("program.vc"));
    TestFiles::writeFile(path, program);
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
    for (const char *config : {"release", "debug"})
        checkProgram(path, QString::fromLatin1(config), Form::Units);
}

void ProgramTest::oneFile_data()
{
    QTest::addColumn<QString>("config");
    QTest::addRow("classes") << QStringLiteral("debug");
    QTest::addRow("fault_division") << QStringLiteral("release");
}

// What a program does must not depend on how it was compiled.
void ProgramTest::oneFile()
{
    QFETCH(QString, config);
    checkProgram(QStringLiteral(VOREL_SOURCE_DIR "/tests/programs/%1.vc")
                     .arg(QString::fromLatin1(QTest::currentDataTag())),
                 config, Form::OneFile);
}

void ProgramTest::checkProgram(const QString &path, const QString &config, Form form)
{
    const QString base = path.chopped(3);
    const Outcome outcome =
        run(path, {QStringLiteral("run"), QStringLiteral("--config"), config}, form);
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

void ProgramTest::example()
{
    QFETCH(QString, folder);
    const QTemporaryDir temporary;
    const QString copy = temporary.filePath(QDir(folder).dirName());
    TestFiles::copyProject(folder, copy);
    const Outcome outcome = run(copy);
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
        if (info.memberOf.isEmpty() && !info.output.isNull())
            categories << topCategory(info);
    }
    categories.removeDuplicates();
    for (const QString &category : qAsConst(categories))
        QTest::addRow("%s", qPrintable(category)) << category;
}

// The declarations that make `function` run an example. An example with declarations of its own is
// a whole program: its names get an ending that no other example has.
QString ProgramTest::exampleDeclarations(QString example, const QString &function, int number)
{
    static const QRegularExpression declaration(
        QStringLiteral("^(?:函数 |类 |全局 \\S+ )(\\w+)(?![\\w.])"),
        QRegularExpression::MultilineOption | QRegularExpression::UseUnicodePropertiesOption);
    QStringList names;
    QRegularExpressionMatchIterator declared = declaration.globalMatch(example);
    while (declared.hasNext())
        names << declared.next().captured(1);
    if (names.isEmpty())
        return QStringLiteral("函数 %1() {\n%2\n}\n").arg(function, example);
    for (const QString &name : qAsConst(names)) {
        const QRegularExpression word(QStringLiteral("(?<!\\w)%1(?!\\w)").arg(name),
                                      QRegularExpression::UseUnicodePropertiesOption);
        const bool isMain = name == QStringLiteral("主函数");
        example.replace(word, isMain ? function : name + QString::number(number));
    }
    return example + QLatin1Char('\n');
}

// The examples that `wanted` picks in one program, each in a function of its own behind a line with
// the command's name, and what that program prints.
ProgramTest::ExampleProgram
ProgramTest::exampleProgram(const std::function<bool(const CommandInfo &)> &wanted)
{
    QString calls;
    QString functions;
    ExampleProgram result;
    int number = 0;
    for (const CommandInfo &info : CommandLibrary::builtin().allCommands()) {
        if (!info.memberOf.isEmpty() || !wanted(info))
            continue;
        const QString function = QStringLiteral("示例%1").arg(++number);
        QString name = info.name;
        name.replace(QLatin1Char('"'), QLatin1String("\\\""));
        calls += QStringLiteral("    输出(\"== %1\")\n    %2()\n").arg(name, function);
        functions += exampleDeclarations(info.example, function, number);
        result.output += QStringLiteral("== %1\n").arg(info.name);
        if (!info.output.isEmpty())
            result.output += info.output + QLatin1Char('\n');
    }
    result.source = QStringLiteral("函数 主窗口.创建完毕() {\n%1    窗口关闭(\"主窗口\")\n}\n%2")
                        .arg(calls, functions);
    return result;
}

// A project with a window that has a component of each type, 按钮1 and so on.
QString ProgramTest::writeExampleProject(const QTemporaryDir &folder, const QString &source)
{
    const QString project = folder.filePath(QStringLiteral("example"));
    TestFiles::copyProject(QStringLiteral(VOREL_SOURCE_DIR "/tests/programs/example_window"),
                           project);
    TestFiles::writeFile(project + QStringLiteral("/source/main.vc"), source.toUtf8());
    return project;
}

void ProgramTest::commandExamples()
{
    QFETCH(QString, category);
    checkExamples(exampleProgram([&category](const CommandInfo &info) {
                      return topCategory(info) == category && !info.output.isNull();
                  }),
                  Form::Units);
}

void ProgramTest::commandExamplesInOneFile()
{
    checkExamples(exampleProgram([](const CommandInfo &info) { return !info.output.isNull(); }),
                  Form::OneFile);
}

void ProgramTest::checkExamples(const ExampleProgram &program, Form form)
{
    const QTemporaryDir folder;
    const Outcome outcome =
        run(writeExampleProject(folder, program.source),
            {QStringLiteral("run"), QStringLiteral("--config"), QStringLiteral("debug")}, form);
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.messages));
    const QStringList actualLines = outcome.output.split(QLatin1Char('\n'));
    const QStringList expectedLines = program.output.split(QLatin1Char('\n'));
    QString command;
    for (int i = 0; i < qMax(actualLines.size(), expectedLines.size()); ++i) {
        if (expectedLines.value(i).startsWith(QLatin1String("== ")))
            command = expectedLines.at(i) + QStringLiteral(": ");
        QCOMPARE(command + actualLines.value(i), command + expectedLines.value(i));
    }
}

// Overloads of the runtime that are clear for 64 bits may meet for 32.
void ProgramTest::commandExamplesFor32Bits()
{
    QStringList onlyCompiled;
    const ExampleProgram program = exampleProgram([&onlyCompiled](const CommandInfo &info) {
        if (info.output.isNull())
            onlyCompiled << info.name;
        return true;
    });
    qInfo("%d examples cannot run unattended and are only compiled: %s", onlyCompiled.size(),
          qPrintable(onlyCompiled.join(QLatin1Char(' '))));
    const QTemporaryDir folder;
    const Outcome outcome =
        run(writeExampleProject(folder, program.source),
            {QStringLiteral("build"), QStringLiteral("--platform"), QStringLiteral("x86"),
             QStringLiteral("--config"), QStringLiteral("debug")});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.messages));
}

QTEST_GUILESS_MAIN(ProgramTest)
#include "program_test.moc"
