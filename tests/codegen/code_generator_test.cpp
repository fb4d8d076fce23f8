// The C++ text of whole small programs, and the messages of the generator.
#include "golden.h"

#include "catalog/command_library.h"
#include "codegen/code_generator.h"
#include "codegen/names.h"
#include "frontend/lexer.h"
#include "frontend/parser.h"

#include <QTemporaryFile>
#include <memory>

class CodeGeneratorTest : public QObject
{
    Q_OBJECT

private slots:
    void userCode_data();
    void userCode();
    void messages_data();
    void messages();
    void names_data();
    void names();
    void builtinClasses();
    void specialCalls_data();
    void specialCalls();
    void wholeProgram();
    void withoutWindow();

private:
    struct Result
    {
        QString userCode;
        ProgramText program;
        QStringList errors;
    };
    static Result generate(const QString &source,
                           const CommandLibrary &commands = CommandLibrary::builtin());
};

CodeGeneratorTest::Result CodeGeneratorTest::generate(const QString &source,
                                                      const CommandLibrary &commands)
{
    Lexer lexer(source);
    Parser parser;
    const std::unique_ptr<Parser::ASTNode> root(parser.parse(lexer.tokenize()));
    CodeGenerator generator(commands);
    generator.registerImplicitWindow();
    generator.setClassRegistry(parser.classRegistry());
    Result result;
    result.userCode = generator.generateUserCode(root.get());
    result.program = generator.generate(root.get());
    result.errors = generator.errors();
    return result;
}

void CodeGeneratorTest::userCode_data()
{
    Golden::addRows(QStringLiteral(VOREL_SOURCE_DIR "/tests/codegen/data"), QStringLiteral(".vc"));
}

void CodeGeneratorTest::userCode()
{
    QFETCH(QString, path);
    const Result result = generate(Golden::read(path));
    QCOMPARE(result.errors.join(QLatin1Char(0x0a)), QString());
    Golden::compare(path.chopped(3) + QStringLiteral(".cpp"), result.userCode);
}

void CodeGeneratorTest::messages_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const QString &body, const QStringList &expected) {
        QTest::addRow("%s", name) << QStringLiteral("函数 主函数() {\n%1\n}\n").arg(body)
                                  << expected;
    };
    row("undefined command", QStringLiteral("没有这个命令(1)"),
        {QStringLiteral(
            "第2行：未定义的命令或函数「没有这个命令」。\n请检查拼写，或在项目中添加对应支持库；"
            "用户自定义函数需在代码中声明。")});
    row("type mismatch", QStringLiteral("整数 x = \"a\""),
        {QStringLiteral("第2行 整数 x 类型不匹配 文本")});
    row("text from number", QStringLiteral("文本 甲 = 1"),
        {QStringLiteral("第2行 文本 甲 类型不匹配 整数")});
    row("array without value", QStringLiteral("数组 甲"),
        {QStringLiteral("第 2 行：数组「甲」缺少初始化表达式。")});
    row("array from text", QStringLiteral("数组 甲[] = \"a\""),
        {QStringLiteral("第2行 数组 甲[] 不能赋值给 文本 甲[] = a")});
    row("dimensions", QStringLiteral("数组 甲[][] = [1, 2]"),
        {QStringLiteral("第 2 行：数组「甲」声明为 二维，与初始化维度（一维）不一致。")});
    row("break outside loop", QStringLiteral("如果 (真) {\n跳出\n}"),
        {QStringLiteral(
            "第3行：“跳出”只能写在循环里（循环、计次循环、当、遍历）。这里没有可以跳出的循环。")});
    row("continue outside loop", QStringLiteral("继续()"),
        {QStringLiteral(
            "第2行：“继续”只能写在循环里（循环、计次循环、当、遍历）。这里没有可以继续的循环。")});
    row("break in a loop", QStringLiteral("当 (真) {\n选择 (1) { 1: { 跳出 } }\n}"), {});
    row("condition missing", QStringLiteral("如果 () { }"),
        {QStringLiteral("第2行：“如果”后面的括号里缺少条件。")});
    row("value from void", QStringLiteral("返回 1"),
        {QStringLiteral(
            "第2行：函数「主函数」没有写返回类型，不能返回值。请在参数括号后写上类型，例如："
            "函数 主函数() 整数 {")});
    row("number for text", QStringLiteral("输出(取文本长度(5))"),
        {QStringLiteral("第2行：命令「取文本长度」的第1个参数类型不匹配\n 💡 期望类型：文本\n 💡 "
                        "实际类型：整数\n 💡 解决方法：用 到文本(...) 先转换成文本")});
    row("number for a repeated text", QStringLiteral("输出(合并路径(\"a\", \"b\", 5))"),
        {QStringLiteral("第2行：命令「合并路径」的第3个参数类型不匹配\n 💡 期望类型：文本\n 💡 "
                        "实际类型：整数\n 💡 解决方法：用 到文本(...) 先转换成文本")});
    row("argument missing", QStringLiteral("输出(替换(\"a\", \"b\"))"),
        {QStringLiteral("第2行：替换() 缺少参数：替换为")});
    row("argument empty", QStringLiteral("输出(替换(\"a\", , \"b\"))"),
        {QStringLiteral("第2行：替换() 第2个参数不能为空：查找内容")});
    row("time calculation", QStringLiteral("时间计算()"),
        {QStringLiteral("第2行 时间计算() 参数不能为空，至少需要：日期时间、数量")});
    row("no result printed", QStringLiteral("输出(延时(1))"),
        {QStringLiteral("第2行：\"延时()\" 命令无返回值，不能作为 输出 的参数")});

    row("operand missing", QStringLiteral("整数 甲 = 1\n输出(甲 + )"),
        {QStringLiteral("第3行：表达式不完整：“+”后面缺少内容。")});
    row("command without runtime", QStringLiteral("HTTP请求Ex字节(\"GET\", \"a\")"),
        {QStringLiteral("第2行：命令「HTTP请求Ex字节」在这个版本里还不能使用。")});
    row("class without runtime", QStringLiteral("JSON类 甲"),
        {QStringLiteral("第2行：支持库命令不可用：\n类型「JSON类」所在的支持库没有安装，不能声明变"
                        "量「甲」。")});
    QTest::addRow("function twice")
        << QStringLiteral("函数 甲() { }\n函数 甲() { }\n")
        << QStringList{QStringLiteral("第2行：函数「甲」重复定义（首次定义在第 1 行）。")};
    QTest::addRow("missing argument of a function")
        << QStringLiteral("函数 甲(整数 数, [整数 次数 = 2]) { }\n函数 乙() { 甲() }\n")
        << QStringList{QStringLiteral("第2行：甲() 缺少参数：数")};
    QTest::addRow("unknown method")
        << QStringLiteral("类 学生类 { 方法 报名() { } }\n函数 乙() { 学生类 甲\n甲.没有() }\n")
        << QStringList{QStringLiteral("第 3 行：类型「学生类」中不存在成员方法「没有()」。"
                                      "请检查拼写或查阅对应支持库文档。")};
    QTest::addRow("classes of one C++ name")
        << QStringLiteral("类 学生 { 属性 整数 甲 }\n类 学生类 { 属性 整数 甲 }\n")
        << QStringList{QStringLiteral(
               "第2行：类「学生类」与类「学生」的名称只差一个“类”字，请改用不同的名称。")};
}

void CodeGeneratorTest::messages()
{
    QFETCH(QString, source);
    QFETCH(QStringList, expected);
    QCOMPARE(generate(source).errors, expected);
}

void CodeGeneratorTest::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("identifier");
    QTest::newRow("chinese") << QStringLiteral("按钮1") << QStringLiteral("_u6309_u94ae1");
    QTest::newRow("ascii") << QStringLiteral("a_1") << QStringLiteral("a_1");
    QTest::newRow("punctuation") << QStringLiteral("“、”") << QStringLiteral("___");
    QTest::newRow("empty") << QString() << QStringLiteral("unnamed");
    QTest::newRow("decomposed") << QStringLiteral("e\u0301") << QStringLiteral("_u00e9");
    QTest::newRow("word of C++") << QStringLiteral("int") << QStringLiteral("int_");
}

void CodeGeneratorTest::names()
{
    QFETCH(QString, name);
    QFETCH(QString, identifier);
    QCOMPARE(Names::identifier(name), identifier);
}

// Members resolve through chained calls, and under both spellings that are in use.
void CodeGeneratorTest::builtinClasses()
{
    const QString text =
        generate(QStringLiteral("函数 甲() {\nJSON类 a\na.读文件(\"x\")\na.读文本(\"x\")\n"
                                "HTTP类 b\n输出(b.设置超时(5).请求(\"u\"))\n输出(b.状态码)\n}\n"))
            .userCode;
    QCOMPARE(text.count(QStringLiteral("a.loadFile(std::wstring(L\"x\"));")), 2);
    QVERIFY(
        text.contains(QStringLiteral("VL_Print(b.setTimeout(5).request(std::wstring(L\"u\")));")));
    QVERIFY(text.contains(QStringLiteral("VL_Print(VL_ToOutputStr(b.getStatusCode()));")));
}

// Calls of library commands that are more than "function(arguments)".
void CodeGeneratorTest::specialCalls_data()
{
    QTest::addColumn<QString>("cppFunction");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *function, const QString &arguments, const QString &expected) {
        QTest::addRow("%s(%s)", function, qPrintable(arguments))
            << QString::fromLatin1(function) << arguments << expected;
    };
    row("VL_Thread_Start", QStringLiteral("&f"), QStringLiteral("VL_Thread_Start([=](){ f(); })"));
    row("VL_Thread_Start", QStringLiteral("g, 5"),
        QStringLiteral("VL_Thread_Start([=](){ g(5); })"));
    row("VL_Thread_Start", QStringLiteral("h, obj"),
        QStringLiteral("([&]() -> intptr_t { auto __vl_sp_0 = std::make_shared<VL_User_T_t>("
                       "std::move(obj)); return VL_Thread_Start([=](){ h(*__vl_sp_0); }); })()"));
    row("VL_ThreadPool_Submit", QStringLiteral("7, f"),
        QStringLiteral("VL_ThreadPool_Submit(7, [=](){ f(); })"));
    row("VL_InvokeUI", QStringLiteral("g, 1"), QStringLiteral("VL_InvokeUI([=](){ g(1); })"));
    row("VL_Hotkey_RegisterGlobal", QStringLiteral("1, 2, f"),
        QStringLiteral("VL_Hotkey_RegisterGlobal(1, 2, [=](){ f(); })"));
    row("VL_DragDrop_SetDropCallback", QStringLiteral("1, f"),
        QStringLiteral("VL_DragDrop_SetDropCallback(1, [](intptr_t){ f(); })"));
    row("VL_DragDrop_SetDropCallback", QStringLiteral("1"),
        QStringLiteral("VL_DragDrop_SetDropCallback(1, std::function<void(intptr_t)>())"));
    row("VL_ContextMenu_AddItem", QStringLiteral("1, 2, \"x\", k"),
        QStringLiteral("VL_ContextMenu_AddItem(1, 2, std::wstring(L\"x\"), [](intptr_t __a, "
                       "intptr_t __b){ k(__a, (int)__b); }, L\"\", 0)"));
    row("VL_LoadWindow", QStringLiteral("主窗口"),
        QStringLiteral("VL_LoadWindow(std::wstring(L\"主窗口\"), false)"));
    row("VL_Thread_JoinAll", QStringLiteral("list"),
        QStringLiteral("([&](){ std::vector<intptr_t> __handles; for (const VL_Any& __h : list) "
                       "__handles.push_back(__h.type == VL_Any::TypeInt ? (intptr_t)__h.intVal : "
                       "(intptr_t)__h.doubleVal); return VL_Thread_JoinAll(__handles); }())"));
    row("VL_HTTP_RequestBytes", QStringLiteral("\"u\""),
        QStringLiteral("[=](){ intptr_t __vl_http_bc=0; intptr_t __h=VL_HTTP_RequestBytes("
                       "std::wstring(L\"u\"), __vl_http_bc); return VL_ByteArrayFromMemory(__h, "
                       "__vl_http_bc); }()"));
}

void CodeGeneratorTest::specialCalls()
{
    QFETCH(QString, cppFunction);
    QFETCH(QString, arguments);
    QFETCH(QString, expected);
    QTemporaryFile records;
    QVERIFY(records.open());
    records.write(QStringLiteral("{\"commands\": [{\"name\": \"库命令\", \"category\": \"c\", "
                                 "\"cppFunction\": \"%1\"}]}")
                      .arg(cppFunction)
                      .toUtf8());
    records.close();
    const CommandLibrary commands(records.fileName());
    const QString source = QStringLiteral("类 T { 属性 整数 a }\n函数 f() { }\n函数 g(整数 a) { }\n"
                                          "函数 h(T a) { }\n函数 k(整数 a, 整数 b) { }\n"
                                          "函数 甲() {\nT obj\n数组 list[] = []\n库命令(%1)\n}\n")
                               .arg(arguments);
    const Result result = generate(source, commands);
    QCOMPARE(result.errors, QStringList());
    const QString line = result.userCode.section(QStringLiteral(" // VL_LINE:9"), 0, 0);
    QCOMPARE(line.section(QLatin1Char('\n'), -1).trimmed(), expected + QLatin1Char(';'));
}

// The order of the sections and the markers that others look for.
void CodeGeneratorTest::wholeProgram()
{
    const QString text =
        generate(QStringLiteral("整数 甲 = 1\n函数 主函数() { 输出(甲) }\n")).program.oneFile();
    const QStringList marks{
        QStringLiteral("#include <windows.h>"),
        QStringLiteral("struct VL_Any"),
        QStringLiteral("// Control IDs\n"),
        QStringLiteral("\n// Global variables\nHINSTANCE g_hInstance;\nHWND g_hWndMain;\n"),
        QStringLiteral("\n// Built-in constants\n"),
        QStringLiteral("typedef std::vector<VL_Any> VL_Array;"),
        QStringLiteral("typedef std::vector<std::vector<std::vector<VL_Any>>> VL_Array3D;"),
        QStringLiteral(
            "// User function forward declarations (after Array3D / before rest of runtime"),
        QStringLiteral("// user classes\n"),
        QStringLiteral("// User-defined functions\n"),
        QStringLiteral("// User global variables\n"),
        QStringLiteral("void __VL_InitGlobalVariables() {"),
        QStringLiteral("// User function forward declarations\n"),
        QStringLiteral("// Event handler declarations\n"),
        QStringLiteral("// VL_IDE_WNDPROC_BEGIN"),
        QStringLiteral("LRESULT CALLBACK WndProc("),
        QStringLiteral("// VL_IDE_WNDPROC_END"),
        QStringLiteral("// VL_IDE_CREATECONTROLS_BEGIN"),
        QStringLiteral("void CreateControls(HWND hwnd)"),
        QStringLiteral("int WINAPI wWinMain("),
        QStringLiteral("void On_MainWindow_Create() {"),
        QStringLiteral("void VL_CallWindowCreateEvent("),
    };
    int position = 0;
    for (const QString &mark : marks) {
        const int found = text.indexOf(mark, position);
        QVERIFY2(found >= 0, qPrintable(mark));
        position = found + 1;
    }
    QVERIFY(!text.contains(QStringLiteral("#include \"")));
    QCOMPARE(text.count(QStringLiteral("void On_MainWindow_KeyDown(int _VL_keyCode)")), 2);
}

void CodeGeneratorTest::withoutWindow()
{
    CodeGenerator generator;
    const QString text = generator.generate(nullptr).oneFile();
    QVERIFY(text.contains(QStringLiteral("int WINAPI wWinMain(")));
    QVERIFY(!text.contains(QStringLiteral("VL_User_")));
}

QTEST_GUILESS_MAIN(CodeGeneratorTest)
#include "code_generator_test.moc"
