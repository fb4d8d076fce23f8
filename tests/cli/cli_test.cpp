// vorelc without a toolchain: usage, bad input, checks and what it prints.
#include "cli/cli_test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using CliTest::Result;
using CliTest::writeFile;

class CliTestCase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void usage_data();
    void usage();
    void badInput_data();
    void badInput();
    void helpNamesEverything();
    void checkPlacesProblems();
    void checkJson();
    void emitsOneFile();
    void printsTokens();
    void printsTree();
    void survivesDeepNesting();
    void worksInAnyLocale();
    void cleans();
    void listsCommands();

private:
    Result call(const QStringList &arguments, const QByteArray &input = QByteArray())
    {
        return CliTest::vorelc(arguments, m_dir.path(), input);
    }
    void write(const char *name, const QByteArray &bytes)
    {
        writeFile(m_dir.filePath(QString::fromUtf8(name)), bytes);
    }

    QTemporaryDir m_dir;
};

void CliTestCase::initTestCase()
{
    write("好.vc", "函数 主函数() {\n    输出(\"你好\")\n}\n");
    write("空.vc", " \n\n");
    write("u16.vc", QByteArray("\xFF\xFE"
                               "a\0b\0",
                               6));
    write("nul.vc", QByteArray("0123456789\n0123456789\0x", 23));
    write("gbk.vc", "// \n\xCA\xE4");
    write("文.txt", "x");
    write("引号.vc", "函数 主函数() {\n    输出(\"甲)\n}\n");
    write("窗口.vc", "\n函数 登录.单击() {\n}\n");
    write("坏/坏.vlproj", "{\n  \"name\": \n}");
    write("列表/a.vlproj", "[1]");
    write("两个/a.vlproj", "{}");
    write("两个/b.vlproj", "{}");
    write("无/说明.txt", "x");
    write("空工程/p.vlproj", "{}");
    write("后端/p.vlproj", "{\"uiBackend\":\"vlui\"}");
    write("后端/source/main.vc", "函数 主函数() {\n}\n");
    QVERIFY(QDir().mkpath(m_dir.filePath(QStringLiteral("目录.vc"))));
    QFile large(m_dir.filePath(QStringLiteral("大.vc")));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(60 * 1024 * 1024));
    QFile merged(m_dir.filePath(QStringLiteral("长.vc")));
    QVERIFY(merged.open(QIODevice::WriteOnly));
    merged.write(QByteArray(29360129, ' ') + "x");
}

void CliTestCase::usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("part"); // of standard error, or of standard output with code 0
    QTest::addRow("nothing") << QStringList() << 2 << "没有给出命令";
    QTest::addRow("unknown") << QStringList{"fly"} << 2 << "未知的命令：fly";
    QTest::addRow("new without a name") << QStringList{"new", "gui"} << 2 << "缺少参数";
    QTest::addRow("new of no kind") << QStringList{"new", "web", "a"} << 2 << "未知的种类：web";
    QTest::addRow("new of no window type")
        << QStringList{"new", "gui", "a", "--window", "wx"} << 2 << "可用：win32|vlwin";
    QTest::addRow("new with a bad name") << QStringList{"new", "gui", "a/b"} << 1 << "不能有字符";
    QTest::addRow("no input") << QStringList{"build"} << 2 << "缺少参数";
    QTest::addRow("two inputs") << QStringList{"build", "a", "b"} << 2 << "多余的参数：b";
    QTest::addRow("option") << QStringList{"build", "a", "--fast"} << 2 << "未知的选项：--fast";
    QTest::addRow("option of another") << QStringList{"clean", "a", "--json"} << 2 << "未知的选项";
    QTest::addRow("no value") << QStringList{"build", "a", "--platform"} << 2 << "x64|x86";
    QTest::addRow("bad value") << QStringList{"build", "a", "--platform=arm"} << 2 << "arm";
    QTest::addRow("empty input") << QStringList{"build", ""} << 2 << "参数不能为空";
    QTest::addRow("version") << QStringList{"--version"} << 0 << "vorelc ";
    QTest::addRow("help") << QStringList{"--help"} << 0 << "用法：vorelc";
    QTest::addRow("help of a command") << QStringList{"run", "--help"} << 0 << "-- 参数...";
    QTest::addRow("help word") << QStringList{"help", "check"} << 0 << "--json";
}

void CliTestCase::usage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, part);
    const Result result = call(arguments);
    QTEST(result.code, "code");
    const QString text = result.code == 0 ? QString::fromUtf8(result.out) : result.err;
    QVERIFY2(text.contains(part), qPrintable(text));
    QVERIFY(result.code == 0 ? result.err.isEmpty() : result.out.isEmpty());
}

void CliTestCase::badInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("line"); // the one line on standard error
    QTest::addRow("missing") << "没有.vc"
                             << "错误: 找不到文件或文件夹：没有.vc";
    QTest::addRow("folder as file")
        << "目录.vc"
        << "错误: 文件夹“目录.vc”中没有工程文件（.vlproj），也没有源文件（.vc）";
    QTest::addRow("empty") << "空.vc"
                           << "错误: 源文件是空的：空.vc";
    QTest::addRow("utf-16")
        << "u16.vc"
        << "错误: 源文件不是 UTF-8 编码（检测到 UTF-16）：u16.vc。请另存为 UTF-8 后重试。";
    QTest::addRow("nul")
        << "nul.vc"
        << "nul.vc:2: 错误: 第2行：文件中含有空字符（NUL），不是文本文件或编码有误，请另存为 "
           "UTF-8。";
    QTest::addRow("gbk")
        << "gbk.vc"
        << "gbk.vc:2: 错误: 第2行：文件不是有效的 UTF-8 文本，请用编辑器另存为 UTF-8 编码后重试。";
    QTest::addRow("huge") << "大.vc"
                          << "错误: 源文件过大（60 MB）：大.vc。单文件上限约 48 "
                             "MB；请拆分或误用二进制勿放入 source。";
    QTest::addRow("over the limit") << "长.vc"
                                    << "错误: 合并源码过大（29360130 字符，上限约 "
                                       "29360128），请删减工程或使用 64 位 VorelDesk。";
    QTest::addRow("other suffix")
        << "文.txt"
        << "错误: 不支持的输入：文.txt。请给出工程文件（.vlproj）、工程文件夹或 .vc 源文件";
    QTest::addRow("two projects")
        << "两个"
        << "错误: 文件夹“两个”中有多个工程文件（a.vlproj、b.vlproj），请指明其中一个";
    QTest::addRow("no project") << "无"
                                << "错误: 文件夹“无”中没有工程文件（.vlproj），也没有源文件（.vc）";
    QTest::addRow("json list") << "列表/a.vlproj"
                               << "错误: 工程文件的内容不是 JSON 对象：列表/a.vlproj";
    QTest::addRow("quote") << "引号.vc"
                           << "引号.vc:2: 错误: 第2行：缺少右双引号";
    QTest::addRow("window")
        << "窗口.vc"
        << "窗口.vc:2: 错误: 第2行：事件函数“登录.单击”引用的窗口“登录”在项目中不存在。";
    QTest::addRow("back end")
        << "后端"
        << "错误: 界面后端“vlui”暂不支持编译，请在工程设置中改用 win32 或 vlwin。";
}

void CliTestCase::badInput()
{
    QFETCH(QString, input);
    for (const char *command : {"check", "build"}) {
        const Result result = call(
            {QLatin1String(command), input, QStringLiteral("--quiet"), QStringLiteral("--plain")});
        QCOMPARE(result.code, 1);
        QCOMPARE(result.out, QByteArray());
        QTEST(result.err.trimmed(), "line");
    }
}

void CliTestCase::helpNamesEverything()
{
    const QString help = QString::fromUtf8(call({QStringLiteral("--help")}).out);
    for (const char *name :
         {"build", "run", "check", "emit", "tokens", "tree", "commands", "clean"})
        QVERIFY2(help.contains(QStringLiteral("\n  %1 ").arg(QLatin1String(name))), name);
}

void CliTestCase::checkPlacesProblems()
{
    write("多/source/a.vc", "函数 甲() {\n}\n");
    write("多/source/b.vc", "\n\n函数 乙() {\n    跳出\n}\n");
    const Result result = call({QStringLiteral("check"), QStringLiteral("多")});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains(QStringLiteral("\nsource/b.vc:4: 错误: 第4行：")),
             qPrintable(result.err));
    QVERIFY(result.err.startsWith(QStringLiteral("[ 10%] 解析源代码...\n")));
    const Result good =
        call({QStringLiteral("check"), QStringLiteral("好.vc"), QStringLiteral("-q")});
    QCOMPARE(good.code, 0);
    QCOMPARE(good.err, QString());
    QVERIFY(call({QStringLiteral("check"), QStringLiteral("坏")})
                .err.contains(QStringLiteral("不是有效的 JSON：坏/坏.vlproj（第 ")));
}

void CliTestCase::checkJson()
{
    const Result result =
        call({QStringLiteral("check"), QStringLiteral("引号.vc"), QStringLiteral("--json")});
    QCOMPARE(result.code, 1);
    QCOMPARE(result.err, QString());
    const QJsonArray array = QJsonDocument::fromJson(result.out).array();
    QCOMPARE(array.size(), 1);
    const QJsonObject problem = array.first().toObject();
    QCOMPARE(problem.value(QLatin1String("severity")).toString(), QStringLiteral("error"));
    QCOMPARE(problem.value(QLatin1String("file")).toString(), QStringLiteral("引号.vc"));
    QCOMPARE(problem.value(QLatin1String("line")).toInt(), 2);
    QCOMPARE(problem.value(QLatin1String("message")).toString(),
             QStringLiteral("第2行：缺少右双引号"));
    QCOMPARE(call({QStringLiteral("check"), QStringLiteral("好.vc"), QStringLiteral("--json")}).out,
             QByteArray("[]\n"));
}

void CliTestCase::emitsOneFile()
{
    const Result result =
        call({QStringLiteral("emit"), QStringLiteral("好.vc"), QStringLiteral("-q")});
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.contains("int WINAPI wWinMain("));
    QVERIFY(result.out.contains("// VL_LINE:2\n"));
    QVERIFY(!result.out.contains("#pragma once"));
}

void CliTestCase::printsTokens()
{
    const Result result =
        call({QStringLiteral("tokens"), QStringLiteral("-")}, "整数 甲 = \"a\\\"\\n\"\n");
    QCOMPARE(result.code, 0);
    QVERIFY2(result.out.contains("{\"type\":43,\"text\":\"甲\",\"line\":1,\"column\":4}"),
             result.out.constData());
    const QJsonArray array = QJsonDocument::fromJson(result.out).array();
    QCOMPARE(array.at(3).toObject().value(QLatin1String("text")).toString(),
             QStringLiteral("a\"\n"));
    QCOMPARE(array.last().toObject().value(QLatin1String("type")).toInt(), 77);
    QCOMPARE(call({QStringLiteral("tokens"), QStringLiteral("-")}, "\n\xFF").code, 1);
}

void CliTestCase::printsTree()
{
    const Result result = call({QStringLiteral("tree"), QStringLiteral("好.vc")});
    QCOMPARE(result.code, 0);
    const QJsonObject object = QJsonDocument::fromJson(result.out).object();
    QVERIFY(object.value(QLatin1String("errors")).toArray().isEmpty());
    QVERIFY(object.value(QLatin1String("classes")).toObject().size() >= 10);
    const QJsonObject function = object.value(QLatin1String("tree"))
                                     .toObject()
                                     .value(QLatin1String("children"))
                                     .toArray()
                                     .first()
                                     .toObject();
    QCOMPARE(function.value(QLatin1String("type")).toInt(), 2);
    QCOMPARE(function.value(QLatin1String("value")).toString(), QStringLiteral("主函数"));
}

void CliTestCase::survivesDeepNesting()
{
    const QByteArray deep = "函数 主函数() {\n" + QByteArray("如果(真){").repeated(100000) + "\n}";
    const QByteArray wide =
        "函数 主函数() {\n整数 甲 = " + QByteArray("(").repeated(200000) + "1\n}";
    write("深.vc", deep);
    for (const QByteArray &source : {deep, wide}) {
        QCOMPARE(call({QStringLiteral("tree"), QStringLiteral("-")}, source).code, 0);
        QCOMPARE(call({QStringLiteral("tokens"), QStringLiteral("-")}, source).code, 0);
    }
    const Result result = call({QStringLiteral("check"), QStringLiteral("深.vc")});
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains(QStringLiteral("嵌套过深")), qPrintable(result.err.left(2000)));
}

void CliTestCase::worksInAnyLocale()
{
    const QByteArray old = qgetenv("LC_ALL");
    qputenv("LC_ALL", "C");
    const Result result =
        call({QStringLiteral("check"), QStringLiteral("引号.vc"), QStringLiteral("-q")});
    old.isNull() ? qunsetenv("LC_ALL") : qputenv("LC_ALL", old);
    QCOMPARE(result.err, QStringLiteral("引号.vc:2: 错误: 第2行：缺少右双引号\n"
                                        "    2 |     输出(\"甲)\n"
                                        "      |          ^~~~\n"));
}

void CliTestCase::cleans()
{
    write("清/source/a.vc", "x");
    write("清/build/x64/release/清.exe", "x");
    write("清/build/x86/debug/main.cpp", "x");
    write("清/build/说明.txt", "x");
    const Result result = call({QStringLiteral("clean"), QStringLiteral("清")});
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out, QByteArray("2\n"));
    QVERIFY(QFile::exists(m_dir.filePath(QStringLiteral("清/build/说明.txt"))));
    QCOMPARE(call({QStringLiteral("clean"), QStringLiteral("清")}).out, QByteArray("0\n"));
}

void CliTestCase::listsCommands()
{
    const Result all = call({QStringLiteral("commands"), QStringLiteral("--json")});
    QCOMPARE(all.code, 0);
    QVERIFY(QJsonDocument::fromJson(all.out).isArray());
    const Result unknown = call({QStringLiteral("commands"), QStringLiteral("没有这个命令")});
    QCOMPARE(unknown.code, 1);
    QVERIFY(unknown.err.contains(QStringLiteral("没有名为“没有这个命令”的命令")));
    const QJsonArray records = QJsonDocument::fromJson(all.out).array();
    if (records.isEmpty())
        QSKIP("the catalogue is empty");
    const QString name = records.first().toObject().value(QLatin1String("name")).toString();
    const Result one = call({QStringLiteral("commands"), name});
    QCOMPARE(one.code, 0);
    QVERIFY(QString::fromUtf8(one.out).startsWith(name));
}

QTEST_GUILESS_MAIN(CliTestCase)
#include "cli_test.moc"
