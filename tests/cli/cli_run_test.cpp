// vorelc with toolchain and wine: built programs run, pass their codes and go when told.
#include "cli/cli_test.h"

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>

using CliTest::Result;
using CliTest::writeFile;

class CliRunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void buildPrintsThePath();
    void buildsOnlyWhatChanged();
    void newProjects_data();
    void newProjects();
    void runPassesOutputAndCode();
    void runsInAFolderOfAnyName();
    void interruptLeavesNothing();
    void refusesALockedOutput();

private:
    Result call(const QStringList &arguments)
    {
        return CliTest::vorelc(arguments, m_dir.path(), QByteArray(), 300000);
    }

    QTemporaryDir m_dir;
};

void CliRunTest::initTestCase()
{
    if (QStandardPaths::findExecutable(QStringLiteral("x86_64-w64-mingw32-g++")).isEmpty() ||
        QStandardPaths::findExecutable(QStringLiteral("wine")).isEmpty())
        QSKIP("cross compiler or wine is not installed");
    writeFile(m_dir.filePath(QStringLiteral("三.vc")),
              "函数 主函数() 返回 整数 {\n    输出(\"你好，世界\")\n    返回 3\n}\n");
}

void CliRunTest::buildPrintsThePath()
{
    const Result result = call({QStringLiteral("build"), QStringLiteral("三.vc")});
    QVERIFY2(result.code == 0, qPrintable(result.err));
    const QString path = QString::fromUtf8(result.out).trimmed();
    QVERIFY(path.endsWith(QStringLiteral("/三.exe")));
    QVERIFY(QFileInfo(path).isFile());
    QVERIFY(result.err.contains(QStringLiteral("[100%] 编译成功")));
}

// Two greetings that differ in the blanks of a string are two programs; two layouts are one.
void CliRunTest::buildsOnlyWhatChanged()
{
    const QString file = QStringLiteral("变.vc");
    const auto builds = [&](const QByteArray &source, const QStringList &options = {}) {
        writeFile(m_dir.filePath(file), source);
        const Result result = call(QStringList{QStringLiteral("build"), file} + options);
        return result.code == 0 && !result.out.isEmpty() &&
               result.err.contains(QStringLiteral("[100%] 编译成功"));
    };
    const QByteArray source("函数 主函数() {\n    输出(\"a b\")\n}\n");
    const QByteArray wider = QByteArray(source).replace("a b", "a  b");
    QVERIFY(builds(source));
    QVERIFY(!builds(source));
    QVERIFY(!builds("// 新\n\n" + QByteArray(source).replace("    ", "\t")));
    QVERIFY(builds(wider));
    const Result run = call({QStringLiteral("run"), file});
    QCOMPARE(run.out.trimmed(), QByteArray("a  b"));
    QVERIFY(builds(wider, {QStringLiteral("--rebuild")}));
    QVERIFY(call({QStringLiteral("clean"), file}).out.trimmed().toInt() > 0);
    QVERIFY(builds(wider));
}

void CliRunTest::newProjects_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("ends"); // by itself, and prints something
    QTest::addRow("console") << QStringList{"console", "命令行"} << true;
    QTest::addRow("empty") << QStringList{"empty", "空 白"} << true;
    QTest::addRow("single") << QStringList{"single", "单个"} << true;
    QTest::addRow("win32") << QStringList{"gui", "窗口程序"} << false;
    QTest::addRow("vlwin") << QStringList{"gui", "自绘", "--window", "vlwin"} << false;
}

// What is made can be built at once, without a word of complaint.
void CliRunTest::newProjects()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, ends);
    const QString folder = QStringLiteral("新/%1").arg(QLatin1String(QTest::currentDataTag()));
    const QStringList call = QStringList{QStringLiteral("new")} + arguments +
                             QStringList{QStringLiteral("--dir"), folder};
    const Result made = this->call(call);
    QVERIFY2(made.code == 0, qPrintable(made.err));
    const QString input = QString::fromUtf8(made.out).trimmed();
    QVERIFY(QFileInfo(input).isFile());
    const Result checked = this->call({QStringLiteral("check"), QStringLiteral("--quiet"), input});
    QVERIFY2(checked.code == 0, qPrintable(checked.err));
    QCOMPARE(checked.err, QString());
    const QString command = ends ? QStringLiteral("run") : QStringLiteral("build");
    const Result built = this->call({command, QStringLiteral("--quiet"), input});
    QVERIFY2(built.code == 0, qPrintable(built.err));
    QVERIFY(!built.out.trimmed().isEmpty());
    // A second one of that name does not touch the first.
    QVERIFY(this->call(call).code == 1);
}

void CliRunTest::runPassesOutputAndCode()
{
    const Result result = call({QStringLiteral("run"), QStringLiteral("三.vc")});
    QCOMPARE(result.err, QString());
    QCOMPARE(QString::fromUtf8(result.out).remove(QLatin1Char('\r')),
             QStringLiteral("你好，世界\n"));
    QCOMPARE(result.code, 3);
}

void CliRunTest::runsInAFolderOfAnyName()
{
    const QString folder = QStringLiteral("我的 工程&'$(x)");
    writeFile(m_dir.filePath(folder + QStringLiteral("/source/main.vc")),
              "函数 主函数() {\n    输出(\"在\")\n}\n");
    const Result result = call({QStringLiteral("run"), folder});
    QVERIFY2(result.code == 0, qPrintable(result.err));
    QCOMPARE(result.out.trimmed(), QByteArray("在"));
    QVERIFY(QFile::exists(
        m_dir.filePath(folder + QStringLiteral("/build/x64/release/%1.exe").arg(folder))));
}

void CliRunTest::interruptLeavesNothing()
{
    writeFile(m_dir.filePath(QStringLiteral("久.vc")),
              "函数 主函数() {\n    输出(\"开始\")\n    延时(600000)\n}\n");
    QProcess process;
    process.setWorkingDirectory(m_dir.path());
    process.start(QStringLiteral(VORELC), {QStringLiteral("run"), QStringLiteral("久.vc")});
    QByteArray out;
    while (!out.contains('\n') && process.waitForReadyRead(60000))
        out += process.readAllStandardOutput();
    QVERIFY2(out.startsWith("开始"), process.readAllStandardError().constData());
    QElapsedTimer timer;
    timer.start();
    ::kill(pid_t(process.processId()), SIGINT);
    QVERIFY(process.waitForFinished(5000));
    QVERIFY(timer.elapsed() < 3000);
    QCOMPARE(process.exitCode(), 130);
    QProcess list;
    list.start(QStringLiteral("ps"), {QStringLiteral("-eo"), QStringLiteral("args")});
    QVERIFY(list.waitForFinished());
    QVERIFY(!QString::fromUtf8(list.readAllStandardOutput()).contains(QStringLiteral("久.exe")));
}

void CliRunTest::refusesALockedOutput()
{
    const QString project = m_dir.filePath(QStringLiteral("满"));
    writeFile(project + QStringLiteral("/source/main.vc"), "函数 主函数() {\n}\n");
    // A file in the place of the output folder stops even the administrator.
    writeFile(project + QStringLiteral("/build"), "x");
    const Result result = call({QStringLiteral("build"), project, QStringLiteral("-q")});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.startsWith(QStringLiteral("错误: 无法创建输出目录：")),
             qPrintable(result.err));
}

QTEST_GUILESS_MAIN(CliRunTest)
#include "cli_run_test.moc"
