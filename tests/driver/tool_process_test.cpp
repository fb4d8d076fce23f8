// Running tools: results, limits, and that nothing is left behind.
#include "driver/driver_test.h"
#include "driver/process_table.h"
#include "driver/tool_process.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

class ToolProcessTest : public QObject
{
    Q_OBJECT

private slots:
    void ends_data();
    void ends();
    void cutsHugeOutput();
    void keepsInvalidBytesReadable();
    void cancelsWithinASecond();
    void endsWhatStandsStill();
    void letsSlowToolsWork();
    void leavesNoChildren();
    void stopsAtTheFirstFailure();
    void runsSeveralAtOnce();

private:
    static ToolCommand fake(const QStringList &arguments)
    {
        return {QStringLiteral(VOREL_FAKE_TOOL), arguments, QDir::tempPath()};
    }
};

void ToolProcessTest::ends_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("end");
    QTest::addColumn<int>("exitCode");
    const QString tool = QStringLiteral(VOREL_FAKE_TOOL);
    using End = ToolRun::End;
    QTest::addRow("good") << tool << QStringList{"exit", "0"} << int(End::Finished) << 0;
    QTest::addRow("bad") << tool << QStringList{"exit", "7"} << int(End::Finished) << 7;
    QTest::addRow("crash") << tool << QStringList{"crash"} << int(End::Crashed) << 11;
    QTest::addRow("missing") << "/nowhere/g++" << QStringList() << int(End::NotStarted) << -1;
}

void ToolProcessTest::ends()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    const ToolRun run = runTool({program, arguments, QDir::tempPath()}, {});
    QTEST(int(run.end), "end");
    QTEST(run.exitCode, "exitCode");
    QCOMPARE(run.error.isEmpty(), run.end != ToolRun::End::NotStarted);
}

void ToolProcessTest::cutsHugeOutput()
{
    const ToolRun run = runTool(fake({QStringLiteral("huge")}), {});
    QVERIFY(run.succeeded());
    QCOMPARE(run.output.size(), 4 * 1024 * 1024);
}

void ToolProcessTest::keepsInvalidBytesReadable()
{
    const ToolRun run = runTool(fake({QStringLiteral("invalid")}), {});
    QVERIFY(run.output.contains(QStringLiteral("main.cpp:1:1: error: ")));
    QCOMPARE(runTool(fake({QStringLiteral("env")}), {}).output.trimmed(), QStringLiteral("C"));
}

void ToolProcessTest::cancelsWithinASecond()
{
    for (const char *mode : {"sleep", "busy"}) {
        ToolWatch watch;
        watch.goOn = [](qint64 waited) { return waited < 200; };
        QElapsedTimer timer;
        timer.start();
        const ToolRun run = runTool(fake({QLatin1String(mode)}), watch);
        QCOMPARE(int(run.end), int(ToolRun::End::Cancelled));
        QVERIFY(timer.elapsed() < 1200);
    }
}

void ToolProcessTest::endsWhatStandsStill()
{
    ToolWatch watch;
    watch.stallSeconds = 1;
    QCOMPARE(int(runTool(fake({QStringLiteral("sleep")}), watch).end), int(ToolRun::End::Stalled));
}

void ToolProcessTest::letsSlowToolsWork()
{
    ToolWatch watch;
    watch.stallSeconds = 2;
    watch.goOn = [](qint64 waited) { return waited < 4000; };
    QCOMPARE(int(runTool(fake({QStringLiteral("busy")}), watch).end), int(ToolRun::End::Cancelled));
}

void ToolProcessTest::leavesNoChildren()
{
    const auto shells = [] {
        int count = 0;
        for (const ProcessRecord &process : listProcesses())
            count += commandLineOf(process.id)
                             .contains(QByteArray("sleep\0"
                                                  "54321",
                                                  11))
                         ? 1
                         : 0;
        return count;
    };
    // The group goes with its leader, whether it ends by itself or is ended.
    ToolWatch watch;
    watch.goOn = [](qint64 waited) { return waited < 300; };
    const ToolCommand ended{QStringLiteral("/bin/sh"),
                            {QStringLiteral("-c"), QStringLiteral("sleep 54321 & exit 0")},
                            QDir::tempPath()};
    const ToolCommand cancelled{QStringLiteral("/bin/sh"),
                                {QStringLiteral("-c"), QStringLiteral("sleep 54321; true")},
                                QDir::tempPath()};
    runTool(ended, watch);
    runTool(cancelled, watch);
    QTRY_COMPARE(shells(), 0);
}

void ToolProcessTest::stopsAtTheFirstFailure()
{
    QStringList finished;
    ToolWatch watch;
    watch.finished = [&finished](int index) { finished << QString::number(index); };
    const QList<ToolRun> runs = runTools({fake({QStringLiteral("exit"), QStringLiteral("0")}),
                                          fake({QStringLiteral("exit"), QStringLiteral("2")}),
                                          fake({QStringLiteral("exit"), QStringLiteral("0")})},
                                         1, watch);
    QCOMPARE(finished, (QStringList{QStringLiteral("0"), QStringLiteral("1")}));
    QVERIFY(runs.at(0).succeeded());
    QCOMPARE(runs.at(1).exitCode, 2);
    QCOMPARE(int(runs.at(2).end), int(ToolRun::End::Cancelled));
}

void ToolProcessTest::runsSeveralAtOnce()
{
    // Two that wait for each other's file end only when they run together.
    QTemporaryDir dir;
    const auto waiting = [&dir](const char *mine, const char *other) {
        return ToolCommand{QStringLiteral("/bin/sh"),
                           {QStringLiteral("-c"),
                            QStringLiteral("touch %1; while [ ! -e %2 ]; do sleep 0.05; done")
                                .arg(QLatin1String(mine), QLatin1String(other))},
                           dir.path()};
    };
    ToolWatch watch;
    watch.goOn = [](qint64 waited) { return waited < 10000; };
    const QList<ToolRun> runs = runTools({waiting("a", "b"), waiting("b", "a")}, 2, watch);
    QVERIFY(runs.at(0).succeeded() && runs.at(1).succeeded());
}

QTEST_GUILESS_MAIN(ToolProcessTest)
#include "tool_process_test.moc"
