// From raw tool output to messages on the user's lines.
#include "driver/driver_test.h"
#include "driver/gcc_output.h"
#include "driver/message_location.h"

class GccOutputTest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void decodes_data();
    void decodes();
    void findsLinesByMarkers();
    void placesErrorsOnFiles();
    void namesEachCauseOnce();
    void renumbersMessages();
};

void GccOutputTest::reads_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("kind"); // -1: passed over
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("message");
    const int compile = int(GccError::Kind::Compile);
    const int undefined = int(GccError::Kind::UndefinedReference);
    const int other = int(GccError::Kind::Other);
    const auto row = [](const char *name, const char *line, int kind, const char *file, int number,
                        const char *message) {
        QTest::newRow(name) << QString::fromUtf8(line) << kind << QString::fromUtf8(file) << number
                            << QString::fromUtf8(message);
    };
    row("error", "main.cpp:31:5: error: 'x' was not declared in this scope", compile, "main.cpp",
        31, "'x' was not declared in this scope");
    row("without column", "main.cpp:7: error: bad", compile, "main.cpp", 7, "bad");
    row("fatal", "main.cpp:1:10: fatal error: a.h: No such file", compile, "main.cpp", 1,
        "a.h: No such file");
    row("windows path", "C:\\甲 乙\\main.cpp:3:1: error: e", compile, "C:\\甲 乙\\main.cpp", 3,
        "e");
    row("internal", "main.cpp:9:1: internal compiler error: Killed", compile, "main.cpp", 9,
        "Killed");
    row("undefined",
        "/usr/bin/ld: main.o:main.cpp:(.text+0x1f): undefined reference to `VL_F(int)'", undefined,
        "", 0, "VL_F(int)");
    row("library", "/usr/bin/ld: cannot find -lnothing: No such file or directory", other, "", 0,
        "/usr/bin/ld: cannot find -lnothing: No such file or directory");
    row("driver", "cc1plus: error: out of memory", other, "", 0, "out of memory");
    row("note", "main.cpp:3:1: note: candidate", -1, "", 0, "");
    row("warning", "main.cpp:3:1: warning: unused", -1, "", 0, "");
    row("function head", "main.cpp: In function 'int error()':", -1, "", 0, "");
    row("quoted source", "   31 |     VL_RunProgram(x);", -1, "", 0, "");
    row("summary", "collect2: error: ld returned 1 exit status", -1, "", 0, "");
}

void GccOutputTest::reads()
{
    QFETCH(QString, line);
    QFETCH(int, kind);
    const QList<GccError> errors = readGccErrors(line + QLatin1String("\r\n"));
    QCOMPARE(errors.size(), kind < 0 ? 0 : 1);
    if (errors.isEmpty())
        return;
    QCOMPARE(int(errors.first().kind), kind);
    QTEST(errors.first().file, "file");
    QTEST(errors.first().line, "number");
    QTEST(errors.first().message, "message");
}

void GccOutputTest::decodes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("decoded");
    QTest::addRow("chinese") << "_u4e3b_u7a97"
                             << "主窗";
    QTest::addRow("handle") << "hwnd__u6309_u94ae1"
                            << "按钮1";
    QTest::addRow("mixed") << "a_u7532b_2"
                           << "a甲b_2";
    QTest::addRow("plain") << "x_user"
                           << "x_user";
}

void GccOutputTest::decodes()
{
    QFETCH(QString, name);
    QTEST(decodeIdentifier(name), "decoded");
}

void GccOutputTest::findsLinesByMarkers()
{
    const GeneratedLineTable table(QStringLiteral("a\nb // VL_LINE:12\nc\nd // VL_LINE:x\n"
                                                  "e // VL_LINE: 7 \nf // VL_LINE:0\n"));
    const int expected[] = {0, 12, 12, 12, 7, 7, 7};
    for (int line = 1; line <= 7; ++line)
        QCOMPARE(table.mergedLine(line), expected[line - 1]);
    QCOMPARE(table.mergedLine(0), 0);
    QCOMPARE(GeneratedLineTable(QString()).mergedLine(5), 0);
}

void GccOutputTest::placesErrorsOnFiles()
{
    const SourceLineMap map{{8, {QStringLiteral("source/a.vc"), 3}}};
    const QString text = QStringLiteral("x\ny // VL_LINE:8\nz\n");
    const QList<BuildDiagnostic> messages = translateGccOutput(
        QStringLiteral("main.cpp:3:1: error: '_u7532' was not declared in this scope\n"
                       "main.cpp:1:1: error: 'q' was not declared\n"
                       "ld: undefined reference to `_u4e59'\n"),
        QStringLiteral("main.cpp"), text, map);
    QCOMPARE(messages.size(), 3);
    QCOMPARE(messages.at(0).file, QStringLiteral("source/a.vc"));
    QCOMPARE(messages.at(0).line, 3);
    QVERIFY(messages.at(0).text.startsWith(QStringLiteral("编译报错（第3行）（相关标识：甲）：")));
    QCOMPARE(messages.at(1).line, 0);
    QVERIFY(messages.at(1).text.startsWith(QStringLiteral("编译报错：")));
    QVERIFY(messages.at(2).text.contains(QStringLiteral("未定义符号：乙\n")));
}

void GccOutputTest::namesEachCauseOnce()
{
    QString output;
    for (int i = 0; i < 500; ++i)
        output += QStringLiteral("main.cpp:2:%1: error: e%1\n").arg(i);
    output += QStringLiteral("ld: undefined reference to `f'\n").repeated(3);
    const QString text = QStringLiteral("\ny // VL_LINE:8\n");
    QCOMPARE(translateGccOutput(output, QStringLiteral("main.cpp"), text, {}).size(), 2);
    QVERIFY(translateGccOutput(QStringLiteral("/tmp/x.s: No space left on device\n"),
                               QStringLiteral("main.cpp"), text, {})
                .first()
                .text.contains(QStringLiteral("磁盘空间不足")));
}

void GccOutputTest::renumbersMessages()
{
    const SourceLineMap map{{5, {QStringLiteral("a.vc"), 2}}, {9, {QStringLiteral("b.vc"), 4}}};
    QCOMPARE(lineOfMessage(QStringLiteral("第 12 行：x")), 12);
    QCOMPARE(lineOfMessage(QStringLiteral("x")), 0);
    QCOMPARE(withFileLines(QStringLiteral("第 9 行：重复（首次定义在第 5 行，第 3 行）"),
                           QStringLiteral("b.vc"), map),
             QStringLiteral("第4行：重复（首次定义在a.vc 第2行，第 3 行）"));
    QCOMPARE(locate(map, 20).file, QStringLiteral("b.vc"));
    QCOMPARE(locate(map, 6).file, QString());
}

QTEST_GUILESS_MAIN(GccOutputTest)
#include "gcc_output_test.moc"
