// Running programs: output as it comes, exit codes, and that stopping leaves nothing behind.
#include "driver/driver_test.h"
#include "driver/process_table.h"
#include "driver/program_runner.h"

#include <QElapsedTimer>
#include <QSignalSpy>

class ProgramRunnerTest : public QObject
{
    Q_OBJECT

private slots:
    void passesExitCodes_data();
    void passesExitCodes();
    void passesOutputWhileTheProgramRuns();
    void passesInput();
    void killsGrandchildren();
    void endsWithItsOwner();
    void saysWhatIsMissing();

private:
    static QString start(ProgramRunner &runner, const QStringList &arguments)
    {
        return runner.start(QStringLiteral(VOREL_FAKE_TOOL), arguments, QDir::tempPath(),
                            ProgramRunner::Channels::Captured);
    }
    static int runningTools()
    {
        int count = 0;
        for (const ProcessRecord &process : listProcesses())
            count += commandLineOf(process.id).contains("grandchild") ? 1 : 0;
        return count;
    }
};

void ProgramRunnerTest::passesExitCodes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addRow("0") << QStringList{"exit", "0"} << 0;
    QTest::addRow("7") << QStringList{"exit", "7"} << 7;
    QTest::addRow("255") << QStringList{"exit", "255"} << 255;
    QTest::addRow("crash") << QStringList{"crash"} << -1;
}

void ProgramRunnerTest::passesExitCodes()
{
    QFETCH(QStringList, arguments);
    ProgramRunner runner;
    QSignalSpy finished(&runner, &ProgramRunner::finished);
    QCOMPARE(start(runner, arguments), QString());
    QTRY_COMPARE(finished.size(), 1);
    QTEST(finished.first().first().toInt(), "code");
    QTEST(runner.exitCode(), "code");
}

void ProgramRunnerTest::passesOutputWhileTheProgramRuns()
{
    ProgramRunner runner;
    QString text;
    connect(&runner, &ProgramRunner::outputReady, this, [&](const QString &part) { text += part; });
    QCOMPARE(start(runner, {QStringLiteral("grandchild")}), QString());
    QTRY_COMPARE(text, QStringLiteral("started\n"));
    QVERIFY(runner.isRunning());
    runner.stop();
    // A character that comes in two pieces is one character.
    ProgramRunner other;
    text.clear();
    connect(&other, &ProgramRunner::outputReady, this, [&](const QString &part) { text += part; });
    QCOMPARE(start(other, {QStringLiteral("bytes")}), QString());
    QTRY_VERIFY(!other.isRunning());
    QVERIFY2(text.contains(QStringLiteral("你好|")) && text.contains(QStringLiteral("err|")),
             qPrintable(text));
}

void ProgramRunnerTest::passesInput()
{
    ProgramRunner runner;
    runner.writeInput(QStringLiteral("太早"));
    QString text;
    connect(&runner, &ProgramRunner::outputReady, this, [&](const QString &part) { text += part; });
    QCOMPARE(start(runner, {QStringLiteral("echo")}), QString());
    runner.writeInput(QStringLiteral("你好"));
    runner.writeInput(QString());
    QTRY_COMPARE(text, QStringLiteral("<你好\n><\n>"));
    runner.writeInput(QStringLiteral("完"));
    QTRY_VERIFY(!runner.isRunning());
    QCOMPARE(runner.exitCode(), 0);
    runner.writeInput(QStringLiteral("太晚"));
}

void ProgramRunnerTest::killsGrandchildren()
{
    ProgramRunner runner;
    QSignalSpy output(&runner, &ProgramRunner::outputReady);
    QSignalSpy finished(&runner, &ProgramRunner::finished);
    QCOMPARE(start(runner, {QStringLiteral("grandchild")}), QString());
    QTRY_VERIFY(!output.isEmpty());
    QCOMPARE(runningTools(), 2);
    QElapsedTimer timer;
    timer.start();
    runner.stop();
    QVERIFY(timer.elapsed() < 1000);
    QTRY_COMPARE(runningTools(), 0);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(runner.exitCode(), -1);
    runner.stop();
    QCOMPARE(finished.size(), 1);
}

void ProgramRunnerTest::endsWithItsOwner()
{
    {
        ProgramRunner runner;
        QSignalSpy output(&runner, &ProgramRunner::outputReady);
        QCOMPARE(start(runner, {QStringLiteral("grandchild")}), QString());
        QTRY_VERIFY(!output.isEmpty());
        QCOMPARE(runningTools(), 2);
    }
    QTRY_COMPARE(runningTools(), 0);
}

void ProgramRunnerTest::saysWhatIsMissing()
{
    ProgramRunner runner;
    const QString error = runner.start(QStringLiteral("/无/程序.exe"), {}, QDir::tempPath(),
                                       ProgramRunner::Channels::Captured);
    QVERIFY2(error.contains(QStringLiteral("找不到可执行文件：/无/程序.exe")), qPrintable(error));
    QVERIFY(!runner.isRunning());
}

QTEST_GUILESS_MAIN(ProgramRunnerTest)
#include "program_runner_test.moc"
