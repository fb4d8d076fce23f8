// Where the debugger's calls go in a generated program, and what they show.
#include "driver/debug_breakpoints.h"
#include "driver/generated_statements.h"

#include <QtTest>

class DebugBreakpointsTest : public QObject
{
    Q_OBJECT

private slots:
    void findsStatements_data();
    void findsStatements();
    void stopsAtLines_data();
    void stopsAtLines();
    void showsValues_data();
    void showsValues();
    void choosesTheFile_data();
    void choosesTheFile();
    void escapesTheLine();
    void bringsTheSupport();
};

namespace {

const QString kFile = QStringLiteral("source/main.vc");

// A source of `lines` that are all of one file.
DebugSource sourceOf(const QStringList &lines, const QVector<int> &functions)
{
    DebugSource source;
    source.text = lines.join(QLatin1Char('\n'));
    for (int line = 1; line <= lines.size(); ++line)
        source.lineMap.insert(line, {kFile, line});
    source.functionLines = functions;
    return source;
}

QString debugged(const QString &generated, const QList<int> &lines, const DebugSource &source)
{
    ProgramText program;
    program.append(generated);
    insertBreakpoints(program, {{QStringLiteral("/工程/source/main.vc"), lines}}, source);
    return program.oneFile();
}

// The lines that a program stops at, each with the generated line behind the call.
QStringList stops(const QString &program)
{
    static const QRegularExpression call(
        QStringLiteral("VL_DebugBreakpoint\\((\\d+), .*\\);(?: \\})?\\n *(.*)\\n"));
    QStringList found;
    QRegularExpressionMatchIterator matches = call.globalMatch(program);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        found << match.captured(1) + QLatin1Char(' ') +
                     match.captured(2).section(QStringLiteral(" // VL_LINE"), 0, 0);
    }
    return found;
}

// Two functions of the source, a method and a global.
const char kProgram[] = R"(struct VL_User_A_t {
    intptr_t count = 0; // VL_LINE:2
    void grow(intptr_t by) {
        count += by; // VL_LINE:4
    }
};
intptr_t total = 5; // VL_LINE:7
void first() {
    one(); // VL_LINE:10
    again(); // VL_LINE:10
    if (total > 3) { // VL_LINE:12
        two(); // VL_LINE:13
    } else { // VL_LINE:14
        three(); // VL_LINE:15
    }
    VL_Any value = call(
        1); // VL_LINE:17
    {
        if (n) {
            body(); // VL_LINE:19
        } else {
            for (; i < n; ++i) {
                body(); // VL_LINE:19
            }
        }
    }
}
void second() {
    four(); // VL_LINE:24
}
)";

} // namespace

void DebugBreakpointsTest::findsStatements_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("found"); // "line:variables", one after the other
    QTest::addRow("parameters")
        << "void f(intptr_t a, const std::wstring& b) {\nx(); // VL_LINE:1\n}"
        << "1:a,b";
    QTest::addRow("a declaration sees what is ahead of it")
        << "void f() {\nint a = 1; // VL_LINE:1\nint b = a; // VL_LINE:2\n}"
        << "1: 2:a";
    QTest::addRow("an inner block has ended")
        << "void f() {\n{\nint a = 1; // VL_LINE:1\n}\nx(); // VL_LINE:2\n}"
        << "1: 2:";
    QTest::addRow("a loop's own variable") << "void f() {\nfor (int i = 0; i < g(2); ++i) {\nx(); "
                                              "// VL_LINE:1\n}\ny(); // VL_LINE:2\n}"
                                           << "1:i 2:";
    QTest::addRow("an inner name hides an outer one")
        << "void f(int a) {\n{\nVL_User_动物_t a; // VL_LINE:1\nx(); // VL_LINE:2\n}\n"
           "y(); // VL_LINE:3\n}"
        << "1:a 2:a? 3:a";
    QTest::addRow("no text form")
        << "void f(int *p) {\nint c[3]; // VL_LINE:1\nconst double &d = e; // VL_LINE:2\n"
           "x(); // VL_LINE:3\n}"
        << "1:p? 2:p?,c? 3:p?,c?,d";
    QTest::addRow("return declares nothing")
        << "int f() {\nif (a) return b;\nx(); // VL_LINE:1\nreturn c; // VL_LINE:2\n}"
        << "1: 2:";
    QTest::addRow("a value in braces is no block")
        << "void f() {\nVL_Any a = VL_Any{\n1 // VL_LINE:1\n};\nx(); // VL_LINE:2\n}"
        << "2:a";
    QTest::addRow("inside a lambda")
        << "void f() {\ng([&]() {\nx(); // VL_LINE:1\n});\ny(); // VL_LINE:2\n}"
        << "2:";
    QTest::addRow("a statement without braces")
        << "void f() {\nif (a)\nx(); // VL_LINE:1\ny(); // VL_LINE:2\n}"
        << "2:";
    QTest::addRow("a mark in a text") << "void f() {\nx(L\"// VL_LINE:7\"); // VL_LINE:1\n}"
                                      << "1:";
    QTest::addRow("left open") << "void f() {\nx(\"; // VL_LINE:1\n"
                               << "1:";
}

void DebugBreakpointsTest::findsStatements()
{
    QFETCH(QString, body);
    QStringList found;
    for (const GeneratedStatement &statement : readStatements(body)) {
        QStringList names;
        for (const GeneratedVariable &variable : statement.variables)
            names << variable.name + (variable.type.isEmpty() ||
                                              variable.type.startsWith(QLatin1String("VL_User"))
                                          ? QStringLiteral("?")
                                          : QString());
        found << QStringLiteral("%1:").arg(statement.sourceLine) + names.join(QLatin1Char(','));
    }
    QTEST(found.join(QLatin1Char(' ')), "found");
}

void DebugBreakpointsTest::stopsAtLines_data()
{
    QTest::addColumn<QList<int>>("lines");
    QTest::addColumn<QStringList>("expected");
    QTest::addRow("one call a line") << QList<int>{10} << QStringList{"10 one();"};
    QTest::addRow("twice the same") << QList<int>{10, 10} << QStringList{"10 one();"};
    QTest::addRow("blank line") << QList<int>{11} << QStringList{"12 if (total > 3) {"};
    QTest::addRow("both on one statement")
        << QList<int>{11, 12} << QStringList{"12 if (total > 3) {"};
    QTest::addRow("head of the function") << QList<int>{9} << QStringList{"10 one();"};
    QTest::addRow("else") << QList<int>{14} << QStringList{"15 three();"};
    QTest::addRow("a statement of two lines")
        << QList<int>{17} << QStringList{"19 body();", "19 body();"};
    QTest::addRow("both ways through a loop")
        << QList<int>{19} << QStringList{"19 body();", "19 body();"};
    QTest::addRow("end of a function") << QList<int>{20} << QStringList{};
    QTest::addRow("between functions") << QList<int>{21} << QStringList{};
    QTest::addRow("the next function") << QList<int>{22} << QStringList{"24 four();"};
    QTest::addRow("method") << QList<int>{4} << QStringList{"4 count += by;"};
    QTest::addRow("property and global") << QList<int>{2, 7} << QStringList{};
    QTest::addRow("beyond the end") << QList<int>{25, 900, 0, -1} << QStringList{};
    QTest::addRow("several") << QList<int>{24, 13, 4}
                             << QStringList{"4 count += by;", "13 two();", "24 four();"};
}

void DebugBreakpointsTest::stopsAtLines()
{
    QFETCH(QList<int>, lines);
    const DebugSource source = sourceOf(QVector<QString>(25).toList(), {1, 3, 9, 22});
    QTEST(stops(debugged(QString::fromUtf8(kProgram), lines, source)), "expected");
}

void DebugBreakpointsTest::showsValues_data()
{
    QTest::addColumn<QString>("declaration");
    QTest::addColumn<QString>("sourceLine");
    QTest::addColumn<QStringList>("values");
    QTest::addRow("number") << "intptr_t _u7532 = 1;"
                            << "" << QStringList{"L\"甲 = \" + VL_ToOutputStr(_u7532) + L\"\\n\";"};
    QTest::addRow("text") << "std::wstring s;"
                          << ""
                          << QStringList{
                                 "L\"s = \" + VL_ToOutputStr(s).substr(0, 200) + L\"\\n\";"};
    QTest::addRow("array") << "std::vector<VL_Any> a = b;"
                           << ""
                           << QStringList{
                                  "L\"a = \" + VL_ToOutputStr(a).substr(0, 200) + L\"\\n\";"};
    for (const char *hidden : {"VL_User_动物_t a;", "auto a = b;", "HTREEITEM a = b;",
                               "int *a = b;", "int _vl_fe_n = 1;", "int _VL_x = 1;", "a = 1;"})
        QTest::addRow("%s", hidden) << hidden << "" << QStringList();
    QTest::addRow("component")
        << ""
        << "输出(按钮1.标题 + 按钮1.标题, 按钮1.宽度)"
        << QStringList{
               "L\"按钮1.标题 = \" + VL_ToOutputStr(VL_GetText(hwnd_u6309_u94ae1)) + L\"\\n\";",
               "L\"按钮1.宽度 = \" + VL_ToOutputStr(VL_GetWidth(hwnd_u6309_u94ae1)) + L\"\\n\";"};
    QTest::addRow("component in a component")
        << ""
        << "如果 (画布1.可见) {"
        << QStringList{"L\"画布1.可见 = \" + "
                       "VL_ToOutputStr(IsWindowVisible(hwnd_u9875__u753b_u5e031)) + L\"\\n\";"};
    QTest::addRow("unknown component or property") << ""
                                                   << "按钮2.标题 = 按钮1.颜色" << QStringList();
}

void DebugBreakpointsTest::showsValues()
{
    QFETCH(QString, declaration);
    QFETCH(QString, sourceLine);
    const QString program =
        debugged(QStringLiteral("HWND hwnd_u6309_u94ae1;\nHWND hwnd_u9875__u753b_u5e031;\n"
                                "void f() {\n    %1\n    g(); // VL_LINE:2\n}\n")
                     .arg(declaration),
                 {2}, sourceOf({QString(), sourceLine}, {1}));
    QStringList values;
    for (const QString &line : program.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("    _dbg_vars += ")))
            values << line.mid(17);
    }
    QTEST(values, "values");
    QCOMPARE(program.contains(QStringLiteral("{ std::wstring _dbg_vars;")), !values.isEmpty());
}

void DebugBreakpointsTest::choosesTheFile_data()
{
    QTest::addColumn<QString>("breakpointFile");
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("stops");
    QTest::addRow("absolute") << "/工程/source/main.vc"
                              << "source/main.vc" << true;
    QTest::addRow("bare") << "main.vc"
                          << "source/main.vc" << true;
    QTest::addRow("native") << "C:/工程/Source/Main.vc"
                            << "source/main.vc" << true;
    QTest::addRow("single file") << "/家/a.vc"
                                 << "/家/a.vc" << true;
    QTest::addRow("other folder") << "/工程/source/下/main.vc"
                                  << "source/main.vc" << false;
    QTest::addRow("other file") << "/工程/source/a.vc"
                                << "source/main.vc" << false;
}

void DebugBreakpointsTest::choosesTheFile()
{
    QFETCH(QString, breakpointFile);
    QFETCH(QString, file);
    ProgramText program;
    program.append(QStringLiteral("void f() {\n    g(); // VL_LINE:1\n}\n"));
    insertBreakpoints(program, {{breakpointFile, {1}}},
                      {QStringLiteral("甲"), {{1, {file, 1}}}, {}});
    QTEST(stops(program.oneFile()).size() == 1, "stops");
}

void DebugBreakpointsTest::escapesTheLine()
{
    const QString program = debugged(QStringLiteral("void f() {\n    g(); // VL_LINE:1\n}\n"), {1},
                                     sourceOf({QStringLiteral("\t输出(\"a\\n%1\t%2\")  ")}, {}));
    QVERIFY2(
        program.contains(QStringLiteral(
            "    VL_DebugBreakpoint(1, L\"main.vc\", L\"输出(\\\"a\\\\n%1\\t%2\\\")\", L\"\");\n"
            "    g(); // VL_LINE:1\n")),
        qPrintable(program));
}

void DebugBreakpointsTest::bringsTheSupport()
{
    const QString generated =
        QStringLiteral("#include <windows.h>\nvoid f() {\n    g(); // VL_LINE:1\n}\n");
    const QString program = debugged(generated, {1}, sourceOf({QString()}, {}));
    const int support = program.indexOf(QStringLiteral("static void VL_DebugBreakpoint("));
    QVERIFY(support > program.indexOf(QStringLiteral("windows.h")));
    QVERIFY(support < program.indexOf(QStringLiteral("VL_DebugBreakpoint(1")));
    QCOMPARE(debugged(generated, {5}, sourceOf({QString()}, {})), generated);
}

QTEST_GUILESS_MAIN(DebugBreakpointsTest)
#include "debug_breakpoints_test.moc"
