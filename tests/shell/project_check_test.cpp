// What the check of an open project says, where, and that it leaves no trace.
#include "driver/compiler_thread.h"
#include "shell/live_check.h"
#include "test_files.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

using Files = QMap<QString, QString>;
using Designs = QHash<QString, QList<VL::DesignComponent>>;

class ProjectCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }
    void findsColumns_data();
    void findsColumns();
    void tellsProblems_data();
    void tellsProblems();
    void knowsTheComponentsOfWindows();
    void readsSymbolsOfAllFiles();
    void checksSingleTexts_data();
    void checksSingleTexts();
    void answersTheLastRequestOnly();
    void dropsWhatIsCancelled();
    void endsWhileItChecks();

private:
    ProjectCheckRequest projectRequest(const Files &files, const Files &open) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

static ProjectCheckResult checked(const ProjectCheckRequest &request)
{
    std::optional<ProjectCheckResult> result;
    runWithDeepStack([&] {
        BuildPipeline pipeline;
        result = checkProject(request, pipeline, [] { return false; });
    });
    return *result;
}

// "main.vc:2:5+2 错误 …" for each, in the order of files and lines.
static QStringList described(const ProjectCheckResult &result)
{
    QStringList rows;
    for (auto file = result.issues.cbegin(); file != result.issues.cend(); ++file) {
        for (const VlSyntaxIssue &issue : *file) {
            rows << QStringLiteral("%1:%2:%3+%4 %5 %6")
                        .arg(file.key())
                        .arg(issue.line)
                        .arg(issue.column)
                        .arg(issue.length)
                        .arg(issue.isWarning ? QStringLiteral("警告") : QStringLiteral("错误"),
                             issue.message);
        }
    }
    rows.sort();
    return rows;
}

// Each row begins and ends as expected: "place … text".
static bool matches(const QStringList &rows, const QStringList &expected)
{
    bool fits = rows.size() == expected.size();
    for (int i = 0; fits && i < rows.size(); ++i) {
        const QString place = expected.at(i).section(QLatin1Char('|'), 0, 0);
        const QString text = expected.at(i).section(QLatin1Char('|'), 1);
        fits = rows.at(i).startsWith(place + QLatin1Char(' ')) && rows.at(i).contains(text);
    }
    return fits;
}

static QByteArray shown(const QStringList &rows)
{
    return rows.isEmpty() ? QByteArray("nothing") : rows.join(QLatin1Char('\n')).toUtf8();
}

ProjectCheckRequest ProjectCheckTest::projectRequest(const Files &files, const Files &open) const
{
    ProjectCheckRequest request;
    request.project = VL::ProjectInfo();
    request.project->path = m_dir->path();
    request.project->name = QStringLiteral("甲");
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        TestFiles::writeFile(m_dir->filePath(file.key()), file.value().toUtf8());
        request.project->sourceFiles << file.key();
    }
    for (auto file = open.cbegin(); file != open.cend(); ++file)
        request.live.sources.insert(file.key(), file.value());
    return request;
}

void ProjectCheckTest::findsColumns_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("nearText");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("found");
    const auto row = [](const char *line, const char *nearText, int column, int found) {
        QTest::addRow("%s, %s, %d", line, nearText, column)
            << QString::fromUtf8(line) << QString::fromUtf8(nearText) << column << found;
    };
    row("  甲 = 乙", "乙", 7, 7);
    row("甲 = 乙 + 乙", "乙", 9, 9);
    row("按钮1.标题 = 乙", "乙", 12, 10); // the merged line has its window in front
    row("乙 = 甲 + 乙", "乙", 6, 9);
    row("甲 = 乙", "丙", 5, 0);
    row("甲 = 乙", "", 5, 0);
    row("甲 = 乙", "乙", 0, 0);
    row("", "乙", 3, 0);
}

void ProjectCheckTest::findsColumns()
{
    QFETCH(QString, line);
    QFETCH(QString, nearText);
    QFETCH(int, column);
    QTEST(columnOfNearText(line, nearText, column), "found");
}

void ProjectCheckTest::tellsProblems_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<Files>("open");
    QTest::addColumn<QStringList>("expected");
    const QString main = QStringLiteral("source/main.vc");
    const QString tool = QStringLiteral("source/工具.vc");
    const QString types = QStringLiteral("source/点.vt");
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    const QString calls = text("函数 主函数() {\n    输出(相加(1, 2))\n}\n");
    const QString defines = text("\n\n函数 相加(整数 甲, 整数 乙) 整数 {\n    返回 甲 + 乙\n}\n");

    QTest::newRow("files know each other")
        << Files{{main, calls}, {tool, defines}} << Files() << QStringList();
    QTest::newRow("unknown name")
        << Files{{main, text("函数 主函数() {\n    输出(相减(1, 2))\n}\n")}, {tool, defines}}
        << Files() << QStringList{text("source/main.vc:2:8+2 错误|「相减」未找到定义")};
    QTest::newRow("in another file, behind blank lines")
        << Files{{main, calls},
                 {tool, text("\n\n  函数 相加(整数 甲, 整数 乙) 整数 {\n    返回 甲 + 丁\n}\n")}}
        << Files()
        << QStringList{text("source/工具.vc:3:18+1 警告|参数 乙"),
                       text("source/工具.vc:4:12+1 错误|丁")};
    QTest::newRow("what is open counts") << Files{{main, calls}, {tool, text("函数 相乘() {\n}\n")}}
                                         << Files{{tool, defines}} << QStringList();
    QTest::newRow("warning") << Files{{main, text("函数 主函数() {\n    整数 甲 = 1\n}\n")}}
                             << Files()
                             << QStringList{
                                    text("source/main.vc:2:8+1 警告|变量 甲 已声明但未使用")};
    QTest::newRow("syntax") << Files{{main, text("函数 主函数() {\n    整数 = 1\n}\n")}} << Files()
                            << QStringList{text("source/main.vc:2:8+1 错误|'=' 是关键字"),
                                           text("source/main.vc:2:8+1 错误|无法识别")};
    QTest::newRow("type blocks") << Files{{main,
                                           text("函数 主函数() {\n    点 甲\n    甲.横 = 1\n}\n")},
                                          {types, text("类型 点 {\n    整数 横\n}\n")}}
                                 << Files() << QStringList();
    QTest::newRow("broken type block")
        << Files{{main, text("函数 主函数() {\n}\n")}, {types, text("类型 点 {\n    横\n}\n")}}
        << Files() << QStringList{text("source/点.vt:2:0+0 错误|")};
    QTest::newRow("file that is gone")
        << Files{{main, text("函数 主函数() {\n}\n")}} << Files{{main, QString()}} << QStringList();
}

void ProjectCheckTest::tellsProblems()
{
    QFETCH(Files, files);
    QFETCH(Files, open);
    QFETCH(QStringList, expected);
    const ProjectCheckRequest request = projectRequest(files, open);
    const QStringList rows = described(checked(request));
    QVERIFY2(matches(rows, expected), shown(rows));
    // Nothing but the sources that were there.
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("source")});
}

// Windows other than the main one are prefixed in the merged text; the columns are the file's.
void ProjectCheckTest::knowsTheComponentsOfWindows()
{
    const auto window = [](const char *button) {
        VL::DesignComponent component;
        component.type = 4;
        component.properties.insert(QStringLiteral("name"), QString::fromUtf8(button));
        return QList<VL::DesignComponent>{component};
    };
    ProjectCheckRequest request =
        projectRequest({{QStringLiteral("source/main.vc"), QStringLiteral("\n")},
                        {QStringLiteral("source/设置.vc"),
                         QStringLiteral("函数 按钮1.单击() {\n    按钮1.标题 = 乙\n}\n")}},
                       {});
    request.project->windowFiles =
        QStringList{QStringLiteral("ui/主.vui"), QStringLiteral("ui/设置.vui")};
    request.project->mainWindowFile = QStringLiteral("ui/主.vui");
    request.live.designs = {{QStringLiteral("ui/主.vui"), window("按钮1")},
                            {QStringLiteral("ui/设置.vui"), window("按钮1")}};
    const QStringList rows = described(checked(request));
    QVERIFY2(matches(rows, {QStringLiteral("source/设置.vc:2:14+1 错误|乙")}), shown(rows));
}

void ProjectCheckTest::readsSymbolsOfAllFiles()
{
    const ProjectCheckResult result =
        checked(projectRequest({{QStringLiteral("source/main.vc"), QStringLiteral("整数 甲\n")},
                                {QStringLiteral("source/乙.vpp"), QStringLiteral("类 丙 {\n}\n")}},
                               {{QStringLiteral("source/main.vc"), QStringLiteral("文本 丁\n")}}));
    QCOMPARE(result.symbols.size(), 2);
    QCOMPARE(result.symbols.value(QStringLiteral("source/main.vc")).at(0).name,
             QStringLiteral("丁"));
    QCOMPARE(result.symbols.value(QStringLiteral("source/乙.vpp")).at(0).name,
             QStringLiteral("丙"));
}

void ProjectCheckTest::checksSingleTexts_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const char *file, const char *text,
                        const QStringList &expected) {
        QTest::newRow(name) << QString::fromUtf8(file) << QString::fromUtf8(text) << expected;
    };
    row("good", "/甲.vc", "函数 主函数() {\n  输出(1)\n}", {});
    row("empty", "甲.vc", "", {});
    row("without a path", "", "函数 主函数() {\n  输出(乙)\n}",
        {QString::fromUtf8(":2:6+1 错误|乙")});
    row("types", "点.vd", "类型 点 {\n  整数 横\n}", {});
    row("bad types", "点.vd", "类型 点 {\n  横\n}", {QString::fromUtf8("点.vd:2:0+0 错误|")});
}

void ProjectCheckTest::checksSingleTexts()
{
    QFETCH(QStringList, expected);
    ProjectCheckRequest request;
    QFETCH(QString, file);
    QFETCH(QString, text);
    request.file = file;
    request.text = text;
    const QStringList rows = described(checked(request));
    QVERIFY2(matches(rows, expected), shown(rows));
}

static ProjectCheckRequest textRequest(const QString &text)
{
    ProjectCheckRequest request;
    request.file = QStringLiteral("甲.vc");
    request.text = text;
    return request;
}

void ProjectCheckTest::answersTheLastRequestOnly()
{
    LiveCheck check;
    check.setDelay(0);
    QSignalSpy answers(&check, &LiveCheck::finished);
    check.request(textRequest(QStringLiteral("整数 甲 = 1\n").repeated(2000)));
    QTest::qWait(5); // it begins
    check.request(textRequest(QStringLiteral("整数 乙\n")));
    check.request(textRequest(QStringLiteral("整数 丙\n")));
    QVERIFY(answers.wait());
    QCoreApplication::processEvents();
    QCOMPARE(answers.size(), 1);
    const auto result = answers.at(0).at(0).value<ProjectCheckResult>();
    QCOMPARE(result.symbols.value(QStringLiteral("甲.vc")).at(0).name, QStringLiteral("丙"));
    // And goes on answering.
    check.request(textRequest(QStringLiteral("整数 丁\n")));
    QVERIFY(answers.wait());
}

void ProjectCheckTest::dropsWhatIsCancelled()
{
    LiveCheck check;
    check.setDelay(0);
    QSignalSpy answers(&check, &LiveCheck::finished);
    check.request(textRequest(QStringLiteral("整数 甲\n")));
    check.cancel();
    check.request(textRequest(QStringLiteral("整数 乙\n")));
    QVERIFY(answers.wait());
    check.request(textRequest(QStringLiteral("整数 丙\n")));
    check.cancel();
    QVERIFY(!answers.wait(300));
}

void ProjectCheckTest::endsWhileItChecks()
{
    QString deep = QStringLiteral("函数 甲() {\n 整数 乙 = ");
    deep += QString(500, QLatin1Char('(')) + QLatin1Char('1') + QString(500, QLatin1Char(')'));
    LiveCheck check;
    check.setDelay(0);
    check.request(textRequest(deep + QStringLiteral("\n}\n")));
    QTest::qWait(5);
}

QTEST_GUILESS_MAIN(ProjectCheckTest)
#include "project_check_test.moc"
