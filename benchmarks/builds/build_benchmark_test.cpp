// The parts of the measurement that must be right for its figures to be: what is changed between
// builds, how processes are timed, which goals count as met.
#include "builds/build_table.h"
#include "builds/contender.h"

#include <QtTest>

Q_DECLARE_METATYPE(Sample)
Q_DECLARE_METATYPE(Step)
Q_DECLARE_METATYPE(GoalVerdict::State)

namespace {

Sample sample(double built, double shown, qint64 size)
{
    return {built, shown, size, QString()};
}

QByteArray contentOf(const QString &folder)
{
    QByteArray all;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            all += file.readAll();
    }
    return all;
}

// VorelDesk and one peer on the one-line project.
BuildResults resultsOf(const Sample &own, const Sample &peer, Step step)
{
    BuildResults results;
    results.runs = 1;
    results.tools = {{ToolRecord::Kind::Chosen, QStringLiteral("own"), QString()},
                     {ToolRecord::Kind::Peer, QStringLiteral("peer"), QString()}};
    results.projects = {{QStringLiteral("small"), 0}};
    results.cells.insert({0, Config::Debug, 0, step}, {own, 1});
    results.cells.insert({0, Config::Debug, 1, step}, {peer, 1});
    return results;
}

} // namespace

class BuildBenchmarkTest : public QObject
{
    Q_OBJECT

private slots:
    void patterns_data();
    void patterns();
    void projects_data();
    void projects();
    void takesTheMedian();
    void timesProcesses_data();
    void timesProcesses();
    void judgesGoals_data();
    void judgesGoals();
    void alignsChinese();
};

void BuildBenchmarkTest::patterns_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addRow("names") << "{{unit}} {{previous}} v{{variant}}"
                           << "2 1 v7";
    QTest::addRow("units") << "a\n{{#units}}\nu{{unit}} v{{variant}}\n{{/units}}\nb"
                           << "a\nu1 v7\nu2 v7\nu3 v7\nb";
    QTest::addRow("two blocks") << "{{#units}}\nx\n{{/units}}\n{{#units}}\ny\n{{/units}}\n"
                                << "x\nx\nx\ny\ny\ny\n";
    QTest::addRow("groups") << "{{#groups}}\ng{{group}} u{{unit}}\n{{/groups}}\n"
                            << "g8 u2\ng9 u2\ng10 u2\ng11 u2\n";
    QTest::addRow("never closed") << "{{#units}}\nx"
                                  << "{{#units}}\nx";
    QTest::addRow("other braces") << "{{1}, {2}}"
                                  << "{{1}, {2}}";
}

void BuildBenchmarkTest::patterns()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QCOMPARE(expandedPattern(pattern, {7, 2, 3}), text);
}

void BuildBenchmarkTest::projects_data()
{
    QTest::addColumn<int>("tool");
    QTest::addColumn<int>("lines");
    for (int tool = 0; tool < 4; ++tool) {
        for (const int lines : {0, 2000, 20000})
            QTest::addRow("tool %d, %d lines", tool, lines) << tool << lines;
    }
}

// A rebuild is measured only if the text is really new, each time.
void BuildBenchmarkTest::projects()
{
    QFETCH(int, tool);
    QFETCH(int, lines);
    QTemporaryDir folder;
    const Workplace place{folder.path(), QStringLiteral("vorelc")};
    const auto contenders = allContenders(place, true);
    const ProjectLanguage &language = contenders.at(size_t(tool))->language();
    SampleProject project;
    QCOMPARE(project.write(language, folder.filePath(QStringLiteral("one")), lines, 1), QString());
    QSet<QByteArray> seen{contentOf(project.folder())};
    for (int round = 0; round < 3; ++round) {
        QCOMPARE(project.changeLine(), QString());
        seen << contentOf(project.folder());
        QCOMPARE(project.changeComment(), QString());
        seen << contentOf(project.folder());
    }
    QCOMPARE(seen.size(), 7);
    const QByteArray content = contentOf(project.folder());
    QVERIFY2(!QRegularExpression(QStringLiteral("\\{\\{[#/]?[a-z]+\\}\\}"))
                  .match(QString::fromUtf8(content))
                  .hasMatch(),
             "a name of a pattern is left");
    if (lines > 0) {
        const double share = double(content.count('\n')) / lines;
        QVERIFY2(share > 0.9 && share < 1.2, qPrintable(QString::number(share)));
    }
}

void BuildBenchmarkTest::takesTheMedian()
{
    const Sample odd = medianOf({sample(5, 1, 30), sample(1, 9, 10), sample(2, 2, 20)});
    QCOMPARE(odd.built, 2.0);
    QCOMPARE(odd.shown, 2.0);
    QCOMPARE(odd.size, qint64(20));
    QCOMPARE(medianOf({sample(1, 4, 0), sample(3, 8, 0)}).shown, 6.0);
    QCOMPARE(medianOf({sample(3, 4, 5)}).built, 3.0);
}

void BuildBenchmarkTest::timesProcesses_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("succeeds");
    QTest::addColumn<bool>("prints");
    QTest::addColumn<bool>("startsLate"); // first output only after 0.3 s
    QTest::addColumn<bool>("endsLate");
    QTest::addRow("prints, then works") << "echo a; sleep 0.3" << true << true << false << true;
    QTest::addRow("works, then prints") << "sleep 0.3; echo a" << true << true << true << true;
    QTest::addRow("says nothing") << "echo a >&2; sleep 0.3" << true << false << false << true;
    QTest::addRow("fails") << "echo a; exit 3" << false << true << false << false;
    QTest::addRow("is killed") << "kill -9 $$" << false << false << false << false;
    QTest::addRow("leaves a child with its channels")
        << "sleep 3 & echo a" << true << true << false << false;
    QTest::addRow("hangs") << "echo a; sleep 20; true" << false << true << false << true;
}

void BuildBenchmarkTest::timesProcesses()
{
    QFETCH(QString, script);
    TimedCommand command;
    command.program = QStringLiteral("/bin/sh");
    command.arguments = QStringList{QStringLiteral("-c"), script};
    command.timeoutMs = 2000;
    const TimedResult result = runTimed(command);
    QTEST(result.error.isEmpty(), "succeeds");
    QTEST(result.firstOutput > 0, "prints");
    QTEST(result.firstOutput >= 0.3, "startsLate");
    QTEST(result.ended >= 0.3, "endsLate");
    QVERIFY(result.ended < 10);
}

void BuildBenchmarkTest::judgesGoals_data()
{
    using State = GoalVerdict::State;
    QTest::addColumn<Sample>("own");
    QTest::addColumn<Sample>("peer");
    QTest::addColumn<Step>("step");
    QTest::addColumn<int>("goal"); // place in the list; -1: ahead of the peers
    QTest::addColumn<State>("state");
    const Sample slow = sample(9, 9, 9000000);
    const Sample failed{0, 0, 0, QStringLiteral("broken")};
    QTest::addRow("fast") << sample(0.3, 0.49, 1) << slow << Step::ChangedLine << 0 << State::Met;
    QTest::addRow("at the limit") << sample(0.3, 0.5, 1) << slow << Step::ChangedLine << 0
                                  << State::Missed;
    QTest::addRow("failed") << failed << slow << Step::ChangedLine << 0 << State::Missed;
    QTest::addRow("another step") << sample(9, 9, 1) << slow << Step::ChangedComment << 0
                                  << State::NotMeasured;
    QTest::addRow("the other tool")
        << sample(9, 9, 1) << slow << Step::ChangedLine << 1 << State::NotMeasured;
    QTest::addRow("ahead") << sample(1, 2, 1) << slow << Step::ChangedLine << -1 << State::Met;
    QTest::addRow("behind in one time")
        << sample(1, 9.5, 1) << slow << Step::ChangedLine << -1 << State::Missed;
    QTest::addRow("own failed") << failed << slow << Step::ChangedLine << -1 << State::Missed;
    QTest::addRow("peer failed") << sample(1, 2, 1) << failed << Step::ChangedLine << -1
                                 << State::NotMeasured;
}

void BuildBenchmarkTest::judgesGoals()
{
    QFETCH(Sample, own);
    QFETCH(Sample, peer);
    QFETCH(Step, step);
    QFETCH(int, goal);
    const QList<GoalVerdict> verdicts = judgedGoals(resultsOf(own, peer, step));
    const GoalVerdict &verdict = goal < 0 ? verdicts.last() : verdicts.at(goal);
    QTEST(verdict.state, "state");
    QCOMPARE(verdict.worst.isEmpty(), verdict.state == GoalVerdict::State::NotMeasured ||
                                          (goal < 0 && verdict.state == GoalVerdict::State::Met));
}

void BuildBenchmarkTest::alignsChinese()
{
    QCOMPARE(alignedTable({{QStringLiteral("步骤"), QStringLiteral("a")},
                           {QStringLiteral("b"), QStringLiteral("0.12 秒")}}),
             QStringLiteral("| 步骤 | a       |\n|------|---------|\n| b    | 0.12 秒 |\n"));
}

QTEST_GUILESS_MAIN(BuildBenchmarkTest)

#include "build_benchmark_test.moc"
