// How a generated program is cut into units, and that each unit has what it needs and no more.
#include "driver/cpp_items.h"
#include "driver/cpp_tokens.h"
#include "driver/program_units.h"

#include <QtTest>

class ProgramUnitsTest : public QObject
{
    Q_OBJECT

private slots:
    void codeOnly_data();
    void codeOnly();
    void items_data();
    void items();
    void refuses_data();
    void refuses();
    void longMemberFunctionsMove();
    void unitsFollowFiles();
    void aChangeTouchesItsOwnUnit_data();
    void aChangeTouchesItsOwnUnit();
    void literalsBecomeCalls_data();
    void literalsBecomeCalls();
    void largeFilesAreParted();
    void manySmallFilesShare();
};

namespace {

using Kind = CppItem::Kind;

QString textOf(Kind kind)
{
    switch (kind) {
    case Kind::Always:
        return QStringLiteral("always");
    case Kind::Declaration:
        return QStringLiteral("declaration");
    case Kind::Function:
        return QStringLiteral("function");
    case Kind::Variable:
        return QStringLiteral("variable");
    }
    return QString();
}

ProgramText program(const QString &text)
{
    ProgramText result;
    result.append(text);
    return result;
}

SourceLineMap lineMap(const QStringList &files, int linesEach)
{
    SourceLineMap map;
    for (int file = 0; file < files.size(); ++file) {
        for (int line = 1; line <= linesEach; ++line)
            map.insert(file * linesEach + line, {files.at(file), line});
    }
    return map;
}

QString unitText(const QList<ProgramUnit> &units, const QString &beginning)
{
    for (const ProgramUnit &unit : units) {
        if (unit.name.startsWith(beginning))
            return unit.text;
    }
    return QString();
}

// Two files with a function each, a class in the first, a global, and a frame of the generator's.
const char kProgram[] = R"(#define IDC_ONE 1001
HWND g_hWnd;
struct VL_User_A_t;
void one(intptr_t n);
std::wstring two(VL_User_A_t& a);
struct VL_User_A_t {
    intptr_t count = 0; // a field
    VL_User_A_t() {}
    void grow(intptr_t by) {
        count += by; // VL_LINE:3
    }
};
intptr_t total = 5; // VL_LINE:1
void __VL_InitGlobalVariables() {
    total = 6; // VL_LINE:2
}
void one(intptr_t n) {
    total += n; // VL_LINE:5
}
std::wstring two(VL_User_A_t& a) {
    a.grow(1); // VL_LINE:15
    one(2); // VL_LINE:16
    return L"} one // two"; // VL_LINE:17
}
static int frame(int flag) { return flag ? IDC_ONE : 0; }
int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    return frame(total);
}
)";

QList<ProgramUnit> cut(QString text)
{
    return cutIntoUnits(
        program(text),
        lineMap({QStringLiteral("source/甲.vc"), QStringLiteral("source/b.vc")}, 10));
}

} // namespace

void ProgramUnitsTest::codeOnly_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("same");
    const auto row = [](const char *name, const char *one, const char *other, bool same) {
        QTest::addRow("%s", name) << QString::fromUtf8(one) << QString::fromUtf8(other) << same;
    };
    row("comments", "a(); // x\n/* y\nz */ b();", "a();\nb();", true);
    row("blanks", "int  a ;\n\n\tint b;", "int a; int b;", true);
    row("text is no comment", "f(L\"// a\");", "f(L\"// b\");", false);
    row("blanks in a text", "f(L\"a b\");", "f(L\"a  b\");", false);
    row("quote in a character", "c = '\"'; // x", "c = '\"'; // y", true);
    row("escaped quote", "f(\"\\\" // a\");", "f(\"\\\" // b\");", false);
    row("raw text", "f(R\"x(\" // a)x\");", "f(R\"x(\" // b)x\");", false);
    row("names stay apart", "int a;", "inta;", false);
    row("directives end with their line", "#define A\nint b;", "#define A int b;", false);
    row("open text", "f(\"abc", "f(\"abd", false);
}

void ProgramUnitsTest::codeOnly()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    QFETCH(bool, same);
    QCOMPARE(cppCodeOnly(one) == cppCodeOnly(other), same);
}

void ProgramUnitsTest::items_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("declaration");
    const auto row = [](const char *text, const char *kind, const char *name,
                        const char *declaration) {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << QString::fromLatin1(kind)
                                  << QString::fromUtf8(name) << QString::fromUtf8(declaration);
    };
    row("#include <memory>", "always", "", "");
    row("#define IDC_CTRL_0 1001", "declaration", "IDC_CTRL_0", "");
    row("template <typename T> T f(T v) { return v; }", "always", "", "");
    row("const wchar_t kName[] = L\"x;\";", "always", "", "");
    row("#ifndef A\n#define A\nclass B { int c() { return 0; } };\n#endif", "always", "", "");
    row("void f(int a = 1);", "declaration", "f", "");
    row("extern std::map<int, int> m;", "declaration", "m", "");
    row("struct S;", "declaration", "S", "");
    row("void f(int a = 1) { g({1}); }", "function", "f", "void f(int a = 1);");
    row("static int f() { return 1; }", "function", "f", "int f();");
    row("LRESULT CALLBACK P(HWND, UINT) { return 0; }", "function", "P",
        "LRESULT CALLBACK P(HWND, UINT);");
    row("void S::f() const { }", "function", "f", "");
    row("intptr_t _u5 = f(1, 2); // VL_LINE:3", "variable", "_u5", "extern intptr_t _u5;");
    row("std::map<int, int> m;", "variable", "m", "extern std::map<int, int> m;");
    row("std::vector<VL_Any> a(5);", "variable", "a", "extern std::vector<VL_Any> a;");
    row("std::vector<VL_Any> a = std::vector<VL_Any>{1, 2};", "variable", "a",
        "extern std::vector<VL_Any> a;");
    row("auto x = f(L\"a;\", {1}) + 1; // VL_LINE:3", "variable", "x",
        "extern std::decay_t<decltype(f(L\"a;\", {1}) + 1)> x;");
    row("static int count = 0;", "variable", "count", "extern int count;");
    row("int table[3] = {1, 2, 3};", "variable", "table", "extern int table[3];");
    row("VL_User_\xe7\x8c\xab_t cat;", "variable", "cat", "extern VL_User_\xe7\x8c\xab_t cat;");
}

void ProgramUnitsTest::items()
{
    QFETCH(QString, text);
    QFETCH(QString, kind);
    QFETCH(QString, name);
    QFETCH(QString, declaration);
    const CppItems items = readCppItems(QStringLiteral("// before\n") + text +
                                        QStringLiteral("\n// behind\nint last;\n"));
    QVERIFY(items.succeeded);
    QCOMPARE(items.items.size(), 2);
    const CppItem &item = items.items.first();
    QCOMPARE(textOf(item.kind), kind);
    QCOMPARE(item.name, name);
    QCOMPARE(item.declaration.trimmed(), declaration);
    QCOMPARE(item.sourceLine, text.contains(QLatin1String("VL_LINE:3")) ? 3 : 0);
}

void ProgramUnitsTest::refuses_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"namespace a { int b; }", "int a, b;", "extern \"C\" { void f(); }", "MACRO(x)\n",
          "#ifdef A\nint b;\n#endif", "auto *a = b;", "thread_local int a = 1;", "void f() {",
          "struct { int a; } b;", "}", "#if 1\nvoid f();", "struct S { int a; } s;"})
        QTest::addRow("%s", text) << QString::fromLatin1(text);
}

void ProgramUnitsTest::refuses()
{
    QFETCH(QString, text);
    QVERIFY(!readCppItems(text).succeeded);
    const QList<ProgramUnit> units = cut(text);
    QCOMPARE(units.size(), 1);
    QCOMPARE(units.first().text, text);
}

void ProgramUnitsTest::longMemberFunctionsMove()
{
    const QString text = QStringLiteral("struct S {\n"
                                        "    int a = f({1});\n"
                                        "    S() {}\n"
                                        "    S(int b) : a(b) {\n        g();\n    }\n"
                                        "    operator int() const {\n        return a;\n    }\n"
                                        "    std::map<int, int> all(int c) const {\n"
                                        "        return {}; // VL_LINE:7\n    }\n"
                                        "};\n");
    const CppItems items = readCppItems(text);
    QVERIFY(items.succeeded);
    QCOMPARE(items.items.size(), 3);
    QCOMPARE(
        cppCodeOnly(items.items.at(0).text),
        cppCodeOnly(
            QStringLiteral(
                "struct S { int a = f({1}); S() {} S(int b) : a(b) { g(); } operator int() const "
                "{ return a; } std::map<int, int> all(int c) const; };"))
            .replace(cppCodeOnly(QStringLiteral("S(int b) : a(b) { g(); }")),
                     cppCodeOnly(QStringLiteral("S(int b);"))));
    QCOMPARE(cppCodeOnly(items.items.at(1).text),
             cppCodeOnly(QStringLiteral("S::S(int b) : a(b) { g(); }")));
    QCOMPARE(cppCodeOnly(items.items.at(2).text),
             cppCodeOnly(QStringLiteral("std::map<int, int> S::all(int c) const { return {}; }")));
    QCOMPARE(items.items.at(2).sourceLine, 7);
}

void ProgramUnitsTest::unitsFollowFiles()
{
    const QList<ProgramUnit> units = cut(QString::fromUtf8(kProgram));
    QCOMPARE(units.size(), 3);
    const QString main = unitText(units, mainUnitName);
    const QString first = unitText(units, QStringLiteral("user__"));
    const QString second = unitText(units, QStringLiteral("user_b_"));
    // Each definition stands in one unit, and only there.
    const auto holders = [&units](const char *definition) {
        return std::count_if(units.begin(), units.end(), [definition](const ProgramUnit &unit) {
            return unit.text.contains(QLatin1String(definition));
        });
    };
    for (const char *definition :
         {"void one(intptr_t n) {", "two(VL_User_A_t& a) {", "VL_User_A_t::grow(intptr_t by) {",
          "\nintptr_t total = 5;", "wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {",
          "int frame(int flag) {"})
        QVERIFY2(holders(definition) == 1, definition);
    QVERIFY(main.contains(QLatin1String("total = 6")) && main.contains(QLatin1String("IDC_ONE")));
    QVERIFY(first.contains(QLatin1String("VL_User_A_t::grow")));
    QVERIFY(first.contains(QLatin1String("extern intptr_t total;")));
    QVERIFY(second.contains(QLatin1String("void one(intptr_t n);")));
    QVERIFY(second.contains(QLatin1String("struct VL_User_A_t {")));
    // Nothing that the unit does not mention.
    QVERIFY(!second.contains(QLatin1String("total")) && !second.contains(QLatin1String("g_hWnd")));
    QVERIFY(!first.contains(QLatin1String("two")) && !main.contains(QLatin1String("two")));
}

void ProgramUnitsTest::aChangeTouchesItsOwnUnit_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QStringList>("touched");
    const auto row = [](const char *name, const char *before, const char *after,
                        const QStringList &touched) {
        QTest::addRow("%s", name) << QString::fromLatin1(before) << QString::fromLatin1(after)
                                  << touched;
    };
    const QString main = mainUnitName;
    const QString first = QStringLiteral("user__");
    const QString second = QStringLiteral("user_b_");
    row("comment", "// VL_LINE:5", "// VL_LINE:6", {});
    row("body", "total += n", "total -= n", {first});
    row("member body", "count += by", "count -= by", {first});
    row("initial value", "total = 5", "total = 7", {main});
    row("field", "intptr_t count = 0", "double count = 0", {first, second});
    row("type of a global", "intptr_t total = 5", "double total = 5", {main, first});
    row("new function nobody calls", "void one(intptr_t n) {",
        "void three() {\n    f(); // VL_LINE:4\n}\nvoid one(intptr_t n) {", {first});
}

void ProgramUnitsTest::aChangeTouchesItsOwnUnit()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QStringList, touched);
    const QString text = QString::fromUtf8(kProgram);
    QVERIFY(text.contains(before));
    const QList<ProgramUnit> old = cut(text);
    const QList<ProgramUnit> now = cut(QString(text).replace(before, after));
    QCOMPARE(now.size(), old.size());
    for (const QString &unit :
         {mainUnitName, QStringLiteral("user__"), QStringLiteral("user_b_")}) {
        const bool differs = cppCodeOnly(unitText(old, unit)) != cppCodeOnly(unitText(now, unit));
        QVERIFY2(differs == touched.contains(unit), qPrintable(unit));
    }
}

void ProgramUnitsTest::literalsBecomeCalls_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("unit");
    const auto row = [](const char *text, const char *unit) {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << QString::fromUtf8(unit);
    };
    row("f(std::wstring(L\"\\\")\") + std::wstring(L\"\"));",
        "f(VL_Literal(L\"\\\")\") + VL_Literal(L\"\"));");
    row("f(std::wstring(L\"a\\000b\", 3), std::wstring(text), std::wstring());",
        "f(std::wstring(L\"a\\000b\", 3), std::wstring(text), std::wstring());");
    row("std::wstring a = std::wstring(L\"甲\");", "std::wstring a = VL_Literal(L\"甲\");");
    row("f(L\"std::wstring(L\\\"a\\\")\");", "f(L\"std::wstring(L\\\"a\\\")\");");
}

void ProgramUnitsTest::literalsBecomeCalls()
{
    QFETCH(QString, text);
    QFETCH(QString, unit);
    QCOMPARE(wholeUnit(program(text)).text, unit);
}

void ProgramUnitsTest::largeFilesAreParted()
{
    QString text;
    for (int i = 1; i <= 300; ++i)
        text += QStringLiteral("void f%1() {\n\n\n\n    g(); // VL_LINE:%1\n}\n").arg(i);
    const SourceLineMap map = lineMap({QStringLiteral("a.vc")}, 400);
    const QList<ProgramUnit> units = cutIntoUnits(program(text), map);
    QCOMPARE(units.size(), 5);
    // A function more leaves all but one as they are.
    const QList<ProgramUnit> more = cutIntoUnits(
        program(text + QStringLiteral("void h() {\n    f1(); // VL_LINE:301\n}\n")), map);
    QCOMPARE(more.size(), units.size());
    int touched = 0;
    for (int i = 0; i < units.size(); ++i)
        touched += units.at(i).text != unitText(more, units.at(i).name) ? 1 : 0;
    QCOMPARE(touched, 1);
}

void ProgramUnitsTest::manySmallFilesShare()
{
    QString text;
    QStringList files;
    for (int i = 1; i <= 200; ++i) {
        files << QStringLiteral("file%1.vc").arg(i);
        text += QStringLiteral("void f%1() {\n    g(); // VL_LINE:%1\n}\n").arg(i);
    }
    const QList<ProgramUnit> units = cutIntoUnits(program(text), lineMap(files, 1));
    QVERIFY(units.size() > 1 && units.size() < 10);
}

QTEST_APPLESS_MAIN(ProgramUnitsTest)
#include "program_units_test.moc"
