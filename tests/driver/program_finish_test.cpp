// What a generated program gets before it is compiled.
#include "driver/driver_test.h"
#include "driver/program_finish.h"

class ProgramFinishTest : public QObject
{
    Q_OBJECT

private slots:
    void stubsExactlyWhatIsMissing_data();
    void stubsExactlyWhatIsMissing();
    void libraryTextStandsBehindStubs();
    void notesRemovedFeatures();
    void scriptEngineIgnoresComments_data();
    void scriptEngineIgnoresComments();
    void placeholders();
    void repairsHeaders();

private:
    static ProgramText program(const QString &text)
    {
        ProgramText result;
        result.append(text);
        return result;
    }
};

void ProgramFinishTest::stubsExactlyWhatIsMissing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("library");
    QTest::addColumn<int>("stubs");
    const QString call = QStringLiteral("void f() { VL_InvokeUI(g); }\nint main() {}\n");
    QTest::addRow("called") << call << QString() << 1;
    QTest::addRow("not called") << QStringLiteral("int main() {}\n") << QString() << 0;
    QTest::addRow("defined by the library")
        << call << QStringLiteral("void VL_InvokeUI(void (*)(void*), void*) {}\n") << 0;
    QTest::addRow("defined by the program")
        << call + QStringLiteral("void VL_InvokeUI(int) {}\n") << QString() << 0;
    QTest::addRow("a longer name")
        << QStringLiteral("void f() { VL_Subclass_ListView_Hex(1); }\nint main() {}\n") << QString()
        << 1;
    QTest::addRow("called by the library")
        << QStringLiteral("int main() {}\n")
        << QStringLiteral("void x() { VL_ProcessUIInvokeQueue(); }\n") << 1;
    QTest::addRow("every entry point")
        << QStringLiteral("int WINAPI wWinMain(int) { VL_Network_ShutdownAll(); "
                          "VL_Thread_CleanupAll(); }\n")
        << QString() << 2;
}

void ProgramFinishTest::stubsExactlyWhatIsMissing()
{
    QFETCH(QString, text);
    QFETCH(QString, library);
    ProgramText result = program(text);
    insertLibraryText(result, library);
    const QString whole = result.oneFile();
    const QString block =
        whole.section(QStringLiteral("// ========== Framework Stubs ==========\n"), 1)
            .section(QStringLiteral("\n// ===="), 0, 0)
            .section(QStringLiteral("int main"), 0, 0)
            .section(QStringLiteral("int WINAPI"), 0, 0);
    QTEST(block.count(QStringLiteral("VL_")), "stubs");
}

void ProgramFinishTest::libraryTextStandsBehindStubs()
{
    ProgramText result =
        program(QStringLiteral("typedef std::vector<std::vector<std::vector<VL_Any>>> VL_Array3D;\n"
                               "void f() { VL_InvokeUI(g); }\n"));
    insertLibraryText(result, QStringLiteral("int library;"));
    const QString whole = result.oneFile();
    const int typedefAt = whole.indexOf(QStringLiteral("VL_Array3D;"));
    const int stubs = whole.indexOf(QStringLiteral("// ========== Framework Stubs"));
    const int library = whole.indexOf(QStringLiteral("// ========== Extension Library"));
    const int user = whole.indexOf(QStringLiteral("void f()"));
    QVERIFY(typedefAt < stubs && stubs < library && library < user);
}

void ProgramFinishTest::notesRemovedFeatures()
{
    QCOMPARE(
        removedFeatureWarnings(program(QStringLiteral("// VL_AESEncrypt\nVL_7ZCompress(a)"))),
        (QStringList{
            QStringLiteral(
                "警告: 代码中使用了 VL_AESEncrypt，该功能需要外部加密库支持，当前版本已移除"),
            QStringLiteral(
                "警告: 代码中使用了 VL_7ZCompress，该功能需要外部压缩库支持，当前版本已移除")}));
    QCOMPARE(removedFeatureWarnings(program(QStringLiteral("VL_SQLite VL_MySQL"))).size(), 1);
    // What the runtime itself defines is no use of it.
    ProgramText runtimeOnly;
    runtimeOnly.appendRuntime(ProgramText::PartKind::RuntimeHeader, QStringLiteral("x"),
                              QStringLiteral("void VL_AESEncrypt();"));
    QVERIFY(removedFeatureWarnings(runtimeOnly).isEmpty());
}

void ProgramFinishTest::scriptEngineIgnoresComments_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("uses");
    QTest::addRow("declared") << "VL_JSEngine engine;" << true;
    QTest::addRow("constructed") << "f(VL_JSEngine())" << true;
    QTest::addRow("line comment") << "// VL_JSEngine x\n" << false;
    QTest::addRow("block comment") << "/* a **\n VL_JSEngine x */ int y;" << false;
    QTest::addRow("mentioned only") << "\"VL_JSEngine\"" << false;
}

void ProgramFinishTest::scriptEngineIgnoresComments()
{
    QFETCH(QString, text);
    QTEST(usesScriptEngine(program(text)), "uses");
}

void ProgramFinishTest::placeholders()
{
    ProgramText result = program(QStringLiteral("#include <x>\n\nVL_User_a_t a; VL_User_a_t b;\n"));
    insertUserClasses(result, QString());
    QCOMPARE(result.oneFile(),
             QStringLiteral("#include <x>\n\n"
                            "// User class placeholders (declared before first code use to avoid "
                            "C2065)\n"
                            "struct VL_User_a_t { VL_User_a_t() {} template<typename... Args> "
                            "VL_User_a_t(Args&&...) {} };\n\n"
                            "VL_User_a_t a; VL_User_a_t b;\n"));
    ProgramText declared = program(QStringLiteral("struct VL_User_a_t {};\n"));
    insertUserClasses(declared, QStringLiteral("never"));
    QCOMPARE(declared.oneFile(), QStringLiteral("struct VL_User_a_t {};\n"));
}

void ProgramFinishTest::repairsHeaders()
{
    ProgramText result = program(QStringLiteral("#include<string>\nVL_Thread_Start(f);\n"));
    repairHeaders(result);
    QCOMPARE(result.oneFile(), QStringLiteral("#include<string>\n#include <memory>\n"
                                              "#include <functional>\nVL_Thread_Start(f);\n"));
    ProgramText plain = program(QStringLiteral("int x;\n"));
    repairHeaders(plain);
    QCOMPARE(plain.oneFile(), QStringLiteral("int x;\n"));
}

QTEST_GUILESS_MAIN(ProgramFinishTest)
#include "program_finish_test.moc"
