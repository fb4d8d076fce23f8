// From raw tool output to messages on the user's lines.
#include "driver/driver_test.h"
#include "driver/message_location.h"
#include "driver/pointed_code.h"
#include "driver/toolchain_diagnostics.h"
#include "driver/toolchain_names.h"
#include "driver/toolchain_table.h"
#include "golden.h"

using Severity = BuildDiagnostic::Severity;

namespace {

const QString kData = QStringLiteral(VOREL_SOURCE_DIR "/tests/driver/data/toolchain");

// "line: 错误: text", with the file when there is one.
QString rendered(const QList<BuildDiagnostic> &diagnostics)
{
    QString result;
    for (const BuildDiagnostic &diagnostic : diagnostics) {
        result += diagnostic.file + QLatin1Char(':') + QString::number(diagnostic.line) +
                  (diagnostic.severity == Severity::Error ? QStringLiteral(": 错误: ")
                                                          : QStringLiteral(": 警告: ")) +
                  diagnostic.text + QLatin1Char('\n');
    }
    return result;
}

} // namespace

class ToolchainMessagesTest : public QObject
{
    Q_OBJECT

private slots:
    void translates_data();
    void translates();
    void readsTheTable();
    void findsFaultsOfATable_data();
    void findsFaultsOfATable();
    void goesBackToNames_data();
    void goesBackToNames();
    void goesBackToTypes_data();
    void goesBackToTypes();
    void readsPointedCode_data();
    void readsPointedCode();
    void saysWhatTheUserWrote();
    void placesErrorsOnFiles();
    void findsLinesByMarkers();
    void renumbersMessages();
    void leavesOutTheRest();
    void survivesAnyText();

private:
    // Two generated files, made from two files of the user's.
    static TranslatedProgram twoUnits();
};

// <source>.<tool>.txt is what a tool said about <source>.generated, compiled as main.cpp behind the
// runtime's header; without such a file no place is known.
void ToolchainMessagesTest::translates_data()
{
    Golden::addRows(kData, QStringLiteral(".txt"));
}

void ToolchainMessagesTest::translates()
{
    QFETCH(QString, path);
    const QString source = path.section(QLatin1Char('.'), 0, -3);
    TranslatedProgram program;
    program.texts = {
        {QStringLiteral("main.cpp"), Golden::read(source + QStringLiteral(".generated"))}};
    Golden::compare(path.chopped(3) + QStringLiteral("expected"),
                    rendered(translateToolOutput(Golden::read(path), program)));
}

void ToolchainMessagesTest::readsTheTable()
{
    const ToolchainTable &table = ToolchainTable::instance();
    QCOMPARE(table.faults(), QStringList());
    QCOMPARE(table.functions.value(QStringLiteral("VL_ListView_AddRowWithImage")),
             QStringLiteral("列表视图.添加行Ex"));
    QVERIFY(!table.warning.isEmpty() && table.more.contains(QStringLiteral("{count}")));
}

void ToolchainMessagesTest::findsFaultsOfATable_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const char *json, const char *fault) {
        QTest::newRow(name) << QByteArray(json) << QString::fromUtf8(fault);
    };
    row("no json", "{", "table: ");
    row("unknown key", R"({"rowz": []})", "table: unknown key \"rowz\"");
    row("bad pattern", R"({"extract": ["(("]})", "extract: bad pattern \"((\"");
    row("bad group", R"~({"extract": ["(?<nme>x)"]})~", "extract: unknown fact \"nme\"");
    row("no tests", R"({"rows": [{"id": "a"}]})", "a: a row without tests");
    row("bad test", R"({"rows": [{"id": "a", "tests": [{"word": []}]}]})",
        "a: unknown key \"word\"");
    row("bad tool", R"({"rows": [{"id": "a", "tests": [{"tool": "lnker"}]}]})",
        "a: unknown tool \"lnker\"");
    row("bad fact",
        R"({"rows": [{"id": "a", "tests": [{}], "forms": [{"text": "{x}"}, {"text": "y"}]}]})",
        "a: unknown fact \"x\"");
    row("no general form",
        R"({"rows": [{"id": "a", "tests": [{}], "forms": [{"text": "{name}"}]}]})",
        "a: the last form must always be usable");
}

void ToolchainMessagesTest::findsFaultsOfATable()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, fault);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^toolchain messages: ")));
    const ToolchainTable table(json);
    QVERIFY2(table.faults().value(0).startsWith(fault),
             qPrintable(table.faults().join(QLatin1Char('\n'))));
}

void ToolchainMessagesTest::goesBackToNames_data()
{
    QTest::addColumn<QString>("cppName");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *cppName, const char *command, const char *name) {
        QTest::newRow(cppName) << QString::fromUtf8(cppName) << QString::fromUtf8(command)
                               << QString::fromUtf8(name);
    };
    row("_u4e3b_u7a97", "", "主窗");
    row("a_u7532b_2", "", "a甲b_2");
    row("hwnd_u6309_u94ae1", "", "按钮1");
    row("hwnd_Button1", "", "Button1");
    row("g_hWnd__u8bbe_u7f6e", "", "设置");
    row("g_hWnd_Options", "", "Options");
    row("g_hWndMain", "", "主窗口");
    row("int_", "", "int");
    row("total_", "", "total_");
    row("VL_User_\\U000052a8\\U00007269_t", "", "动物");
    row("struct VL_User_\\u52a8\\u7269_t", "", "动物");
    row("VL_User_动物_t::_u53eb(long long)", "", "动物.叫");
    row("VL_User_动物_t::VL_User_动物_t()", "", "动物");
    row("_Z6_u52a0ll", "", "加");
    row("__Z6_u52a0ii", "", "加");
    row("?_u52a0@@YA_J_J0@Z", "", "加");
    row("__imp_WinHttpOpen", "", "WinHttpOpen");
    row("_Z9VL_SubStrRKNSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEEExx", "取子串", "");
    row("std::wstring VL_SubStr(const std::wstring&, intptr_t, intptr_t)", "取子串", "");
    row("std::vector<std::vector<int>> _u5217(int)", "", "列");
    row("VL_ListView_AddColumn", "列表视图.添加列", "");
    row("VL_TimerClass::start", "定时器类.启动", "");
    row("VL_ICON_INFO", "", "#信息");
    row("VL_TcpClass", "", "TCP类");
    row("VL_NoSuchThing", "", "");
    row("std::__cxx11::basic_string<wchar_t>::append", "", "");
    row("std::wstring", "", "");
    row("/Gm", "", "");
    row("", "", "");
}

void ToolchainMessagesTest::goesBackToNames()
{
    QFETCH(QString, cppName);
    const KnownName known = ToolchainNames::instance().find(cppName, UserText());
    QTEST(known.command, "command");
    QTEST(known.name, "name");
}

void ToolchainMessagesTest::goesBackToTypes_data()
{
    QTest::addColumn<QString>("cppType");
    QTest::addColumn<QString>("word");
    const auto row = [](const char *cppType, const char *word) {
        QTest::newRow(cppType) << QString::fromUtf8(cppType) << QString::fromUtf8(word);
    };
    row("std::wstring", "文本");
    row("const std::wstring&", "文本");
    row("const std::__cxx11::basic_string<wchar_t, std::char_traits<wchar_t>, "
        "std::allocator<wchar_t> > &",
        "文本");
    row("const wchar_t [3]", "文本");
    row("const wchar_t *", "文本");
    row("intptr_t", "整数");
    row("long long int", "整数");
    row("unsigned __int64", "");
    row("const double", "小数");
    row("VL_Any &", "通用");
    row("std::vector<VL_Any, std::allocator<VL_Any> >", "数组");
    row("std::vector<std::vector<VL_Any> >", "二维数组");
    row("HWND__ *", "窗口或组件");
    row("VL_User_\\U000052a8\\U00007269_t&", "动物");
    row("class VL_HttpClass", "HTTP类");
    row("void", "空");
    row("std::map<int, int>", "");
    row("int *", "");
}

void ToolchainMessagesTest::goesBackToTypes()
{
    QFETCH(QString, cppType);
    QTEST(ToolchainNames::instance().typeWord(cppType, UserText()), "word");
}

// "@" stands where the tool points by bytes, "#" where another does by cells.
void ToolchainMessagesTest::readsPointedCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("told"); // sign, callee, function and number of the argument
    const auto row = [](const char *name, const char *code, const char *told) {
        QTest::newRow(name) << QString::fromUtf8(code) << QString::fromUtf8(told);
    };
    row("sign", "a @+= b;", "+=|||0");
    row("callee by its name", "std::@sort(a);", "|std::sort||0");
    row("callee by its bracket", "f@(a);", "|f||0");
    row("first argument", "f(@a, b);", "|a|f|1");
    row("behind a call", "f(g(x, y), {1, 2}, @3);", "|3|f|3");
    row("behind a text", "f(L\", (\\\"(\", '(', @3);", "|3|f|3");
    row("condition", "if (@a) f();", "|a||0");
    row("bytes behind Chinese", "f(L\"一二\", @b);", "|b|f|2");
    row("cells behind Chinese", "f(L\"一二\", #b);", "|b|f|2");
    row("sign by cells", "L\"一二\" #- b;", "-|||0");
    row("nowhere", "f(a);", "|||0");
}

void ToolchainMessagesTest::readsPointedCode()
{
    QFETCH(QString, code);
    QFETCH(QString, told);
    int column = code.leftRef(code.indexOf(QLatin1Char('@'))).toUtf8().size() + 1;
    if (code.contains(QLatin1Char('#'))) {
        const QString ahead = code.left(code.indexOf(QLatin1Char('#')));
        column = ahead.size() + ahead.count(QRegularExpression(QStringLiteral("[一二]"))) + 1;
    }
    const bool isPointed = code.contains(QRegularExpression(QStringLiteral("[@#]")));
    const PointedCode pointed(code.remove(QRegularExpression(QStringLiteral("[@#]"))),
                              isPointed ? column : 0);
    const PointedCode::Argument argument = pointed.argument();
    QCOMPARE((QStringList{pointed.sign(), pointed.callee(), argument.function,
                          QString::number(argument.number)}
                  .join(QLatin1Char('|'))),
             told);
}

void ToolchainMessagesTest::saysWhatTheUserWrote()
{
    TranslatedProgram program;
    program.texts = {
        {QStringLiteral("main.cpp"), QStringLiteral("VL_SubStr(1); // VL_LINE:2\nx // VL_LINE:3")}};
    program.source = QStringLiteral("类 动物类 {}\n截取文本(1)\n动物类 甲 = 1");
    const QString told = rendered(translateToolOutput(
        QStringLiteral("main.cpp:1:1: error: too few arguments to function 'int VL_SubStr(int)'\n"
                       "main.cpp:2:1: error: could not convert '1' from 'int' to "
                       "'VL_User_\\U000052a8\\U00007269_t'\n"),
        program));
    QVERIFY2(told.contains(QStringLiteral("截取文本 参数不足")), qPrintable(told));
    QVERIFY2(told.contains(QStringLiteral("需要「动物类」，实际为「整数」")), qPrintable(told));
}

TranslatedProgram ToolchainMessagesTest::twoUnits()
{
    TranslatedProgram program;
    program.texts = {
        {QStringLiteral("main.cpp"), QStringLiteral("x\ny // VL_LINE:8\nz\nw // VL_LINE:9\n")},
        {QStringLiteral("user_1.cpp"), QStringLiteral("x\ny\n_u4e59(); // VL_LINE:14\n")}};
    program.lineMap = {{8, {QStringLiteral("source/a.vc"), 3}},
                       {14, {QStringLiteral("source/b.vc"), 2}}};
    return program;
}

void ToolchainMessagesTest::placesErrorsOnFiles()
{
    const QList<BuildDiagnostic> told = translateToolOutput(
        QStringLiteral("main.cpp:3:1: error: '_u7532' was not declared in this scope\n"
                       "main.cpp:1:1: error: 'q' was not declared\n"
                       "/b/USER_1.cpp:3:1: error: '_u4e01' was not declared in this scope\n"
                       "main.cpp:4:1: error: '_u4e19' was not declared in this scope\n"
                       "ld: undefined reference to `_u4e59()'\n"
                       "/usr/include/x.h:2:1: error: 'type' has no member named 'x'\n"
                       "user_1.cpp:3:9: note: in instantiation of 'f<int>' requested here\n"),
        twoUnits());
    QStringList places;
    for (const BuildDiagnostic &one : told)
        places << one.file + QLatin1Char(':') + QString::number(one.line);
    // The fourth line is in no file, the next one above any marker.
    QCOMPARE(places,
             (QStringList{QStringLiteral("source/a.vc:3"), QStringLiteral(":0"),
                          QStringLiteral("source/b.vc:2"), QStringLiteral(":9"),
                          QStringLiteral("source/b.vc:2"), QStringLiteral("source/b.vc:2")}));
    QVERIFY(told.at(0).text.startsWith(QStringLiteral("编译报错（第 3 行）：标识符“甲”")));
    QVERIFY(told.at(1).text.startsWith(QStringLiteral("编译报错（相关标识：q）：")));
}

void ToolchainMessagesTest::findsLinesByMarkers()
{
    const GeneratedLineTable table(QStringLiteral("a\nb // VL_LINE:12\nc\nd // VL_LINE:x\n"
                                                  "e // VL_LINE: 7 \nf // VL_LINE:0\n"));
    const int expected[] = {0, 12, 12, 12, 7, 7, 7};
    const int marked[] = {0, 12, 0, 0, 7, 0, 0};
    for (int line = 1; line <= 7; ++line) {
        QCOMPARE(table.mergedLine(line), expected[line - 1]);
        QCOMPARE(table.markedLine(line), marked[line - 1]);
    }
    QCOMPARE(table.mergedLine(0), 0);
    QCOMPARE(GeneratedLineTable(QString()).mergedLine(5), 0);
}

void ToolchainMessagesTest::renumbersMessages()
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

void ToolchainMessagesTest::leavesOutTheRest()
{
    QString output;
    QString text;
    for (int i = 1; i <= 70; ++i) {
        output += QStringLiteral("main.cpp:%1:1: error: 'a%1' was not declared in this scope\n"
                                 "main.cpp:%1:9: error: expected ';' before 'b'\n")
                      .arg(i);
        text += QStringLiteral("a // VL_LINE:%1\n").arg(i);
    }
    TranslatedProgram program;
    program.texts = {{QStringLiteral("main.cpp"), text}};
    // Twice the same output: nothing new is in the second one.
    const QList<BuildDiagnostic> told = translateToolOutput(output + output, program);
    QCOMPARE(told.size(), 51);
    QCOMPARE(told.at(49).line, 50);
    QCOMPARE(told.last().line, 0);
    QVERIFY2(told.last().text.contains(QStringLiteral("另有 20 条")), qPrintable(told.last().text));
}

void ToolchainMessagesTest::survivesAnyText()
{
    // Always the same bytes, in them the words that the readers look for.
    const char *const words[] = {"error",          "main.cpp(", ":", "warning C1: ", "note:", "\n",
                                 "required from ", "ld.exe: ",  "'", "   "};
    QString noise;
    quint32 state = 1;
    while (noise.size() < 300000) {
        state = state * 1664525 + 1013904223;
        if (state >> 31)
            noise += QLatin1String(words[(state >> 8) % 10]);
        else
            noise += QChar(ushort((state >> 8) % 0xD800));
    }
    QVERIFY(translateToolOutput(noise, twoUnits()).size() <= 52);
    const QString endless =
        QStringLiteral("main.cpp:2:1: error: ") + QString(2000000, QLatin1Char('\''));
    QCOMPARE(translateToolOutput(endless, twoUnits()).size(), 1);
    for (const char *piece : {"(", ":", "error ", " ", "a.b:", "<", "error C1 :", "\\"}) {
        const QString line =
            QLatin1String("x: error: ") + QString::fromLatin1(piece).repeated(100000);
        QVERIFY(translateToolOutput(line, twoUnits()).size() <= 1);
    }
    QVERIFY(translateToolOutput(QString(), {}).isEmpty());
}

QTEST_GUILESS_MAIN(ToolchainMessagesTest)
#include "toolchain_messages_test.moc"
