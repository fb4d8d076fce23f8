// Programs with designed windows: their C++ text, and what is said of members and events that
// cannot be had.
#include "golden.h"

#include "codegen/code_generator.h"
#include "designer/model/form_file.h"
#include "frontend/lexer.h"
#include "frontend/parser.h"

#include <QRegularExpression>
#include <memory>

class FormProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void program_data();
    void program();
    void messages_data();
    void messages();

private:
    struct Result
    {
        QString text;
        QStringList errors;
    };
    static Result generate(const QStringList &forms, const QString &source);
};

static const QString kForms = QStringLiteral(VOREL_SOURCE_DIR "/tests/codegen/data/forms/");

// What the design and the user's functions decide: functions with something in them, the entry
// point from the window's size to its being shown, and of window procedures all but the cases that
// every window has.
static QString designedPart(const QString &program)
{
    const QStringList functions = program.split(QStringLiteral("\n}\n"));
    QStringList kept;
    for (const QString &function : functions) {
        QStringList lines = function.split(QLatin1Char('\n'));
        const int head = lines.indexOf(QRegularExpression(QStringLiteral("^\\S.*\\) \\{$")));
        if (head < 0)
            continue;
        lines = lines.mid(head);
        const auto cut = [&lines](const QString &begin, const QString &end) {
            const int from = lines.indexOf(begin);
            const int to = lines.indexOf(QRegularExpression(end));
            if (from > 0 && to > from)
                lines.erase(lines.begin() + from, lines.begin() + to);
        };
        cut(QStringLiteral("    case WM_SIZE:"), QStringLiteral("    case WM_CLOSE:"));
        if (lines.first().startsWith(QLatin1String("int WINAPI wWinMain"))) {
            cut(QStringLiteral("    __VL_InitGlobalVariables();"),
                QStringLiteral("^    (RECT rc|g_vlwinSelfDrawActive).*"));
            lines = lines.mid(
                0, lines.indexOf(QRegularExpression(QStringLiteral(".*VL_RunMessageLoop.*"))));
        }
        const bool empty =
            lines.size() == 1 ||
            (lines.size() == 2 && (lines.last() == QLatin1String("    return true;") ||
                                   lines.last().startsWith(QLatin1String("    (void)"))));
        if (!empty)
            kept << lines.join(QLatin1Char('\n')) + QLatin1String("\n}\n");
    }
    return kept.join(QLatin1Char('\n'));
}

FormProgramTest::Result FormProgramTest::generate(const QStringList &forms, const QString &source)
{
    Lexer lexer(source);
    Parser parser;
    const std::unique_ptr<Parser::ASTNode> root(parser.parse(lexer.tokenize()));
    CodeGenerator generator;
    for (const QString &form : forms) {
        const FormReadResult read = readFormFile(kForms + form);
        if (!read.document)
            return {{}, {read.message}};
        const QList<VL::DesignComponent> components = read.document->buildComponents();
        if (form.endsWith(QLatin1String(".vlwin")))
            generator.setUiBackend(QStringLiteral("vlwin"));
        const bool first = form == forms.first();
        generator.registerWindow(first ? QStringLiteral("主窗口") : QStringLiteral("设置"),
                                 kForms + form, components, first, first);
    }
    generator.setClassRegistry(parser.classRegistry());
    const ProgramText program = generator.generate(root.get());
    return {program.programOnly(), generator.errors()};
}

void FormProgramTest::program_data()
{
    QTest::addColumn<QStringList>("forms");
    QTest::newRow("classic") << QStringList{QStringLiteral("classic.vui"),
                                            QStringLiteral("classic_further.vui")};
    QTest::newRow("self_drawn") << QStringList{QStringLiteral("self_drawn.vlwin")};
}

void FormProgramTest::program()
{
    QFETCH(QStringList, forms);
    const QString name = kForms + QString::fromLatin1(QTest::currentDataTag());
    const Result result = generate(forms, Golden::read(name + QStringLiteral(".vc")));
    QCOMPARE(result.errors, QStringList());
    Golden::compare(name + QStringLiteral(".cpp"), designedPart(result.text));
}

void FormProgramTest::messages_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &body, const QString &expected) {
        QTest::newRow(name) << QStringLiteral("函数 主窗口.创建完毕() {\n%1\n}\n").arg(body)
                            << expected;
    };
    const auto event = [](const char *name, const QString &source, const QString &expected) {
        QTest::newRow(name) << source << expected;
    };
    row("property written", QStringLiteral("按钮1.标题栏 = 1"),
        QStringLiteral("第2行：「按钮1」（按钮）没有属性「标题栏」。可用的名称如：图标"));
    row("property read", QStringLiteral("输出(滑块1.颜料)"),
        QStringLiteral("第2行：「滑块1」（滑块）没有属性「颜料」。可用的名称如：…"));
    row("method", QStringLiteral("按钮1.飞()"),
        QStringLiteral(
            "第 2 行：类型「按钮」中不存在成员方法「飞()」。请检查拼写或查阅对应支持库文档。"));
    row("only read", QStringLiteral("\n滑块1.刻度数 = 3"),
        QStringLiteral("第3行：属性「滑块1.刻度数」只能读取，不能赋值。"));
    row("only written", QStringLiteral("输出(按钮1.下拉菜单)"),
        QStringLiteral("第2行：属性「按钮1.下拉菜单」只能赋值，不能读取。"));
    row("text for a number", QStringLiteral("滑块1.值 = \"五\""),
        QStringLiteral("第2行：属性「滑块1.值」 需要“整数”类型的值，这里是“文本”。"));
    row("text for a flag", QStringLiteral("按钮1.可见 = \"真\""),
        QStringLiteral("第2行：属性「按钮1.可见」 需要“逻辑”类型的值，这里是“文本”。"));
    row("number for text", QStringLiteral("按钮1.文本 = 5"), QString());
    row("argument type", QStringLiteral("列表视图1.删除行(\"一\")"),
        QStringLiteral(
            "第2行：列表视图1.删除行() 的参数「行」 需要“整数”类型的值，这里是“文本”。"));
    row("argument missing", QStringLiteral("列表视图1.添加列()"),
        QStringLiteral("第 2 行：列表视图1.添加列() 缺少参数：标题"));
    row("too many arguments", QStringLiteral("滑块1.设置值(1, 2)"),
        QStringLiteral("第2行：滑块1.设置值() 参数过多：最多 1 个，这里写了 2 个"));
    row("balloon without text", QStringLiteral("文本框1.显示气球提示()"),
        QStringLiteral("第 2 行：显示气球提示() 至少需要「内容」参数。"));
    row("balloon with empty title", QStringLiteral("文本框1.显示气球提示(\"\", \"内容\")"),
        QStringLiteral(
            "第 2 行：显示气球提示() 第一个参数为空时应省略写或填正文，或用单参数格式。"));
    row("member of another type", QStringLiteral("文本框1.值 = 1"),
        QStringLiteral("第2行：「文本框1」（文本框）没有属性「值」。可用的名称如：…"));
    row("layout", QStringLiteral("水平布局1.宽度 = 3"),
        QStringLiteral(
            "第2行：「水平布局1」是水平布局，程序运行时它只负责摆放里面的组件，没有可以使用的"
            "属性和方法。"));
    row("control of another window",
        QStringLiteral("设置.标签1.文本 = \"新\"\n输出(设置.没有.文本)"),
        QStringLiteral("第3行：「设置」（窗口）没有属性「没有」。可用的名称如：…"));
    event("event of a control", QStringLiteral("\n函数 按钮1.滚动() { }\n"),
          QStringLiteral("第2行：「按钮1」（按钮）没有事件「滚动」。可用的事件：…"));
    event("event of a window", QStringLiteral("函数 主窗口.起飞() { }\n"),
          QStringLiteral("第1行：「主窗口」（窗口）没有事件「起飞」。可用的事件：…"));
    event("event with too many parameters", QStringLiteral("函数 按钮1.单击(整数 次数) { }\n"),
          QStringLiteral("第1行：事件函数「按钮1.单击」最多有 0 个参数，这里写了 1 个。"));
    event("event twice", QStringLiteral("函数 按钮1.单击() { }\n函数 按钮1.单击() { }\n"),
          QStringLiteral("第2行：函数「按钮1.单击」重复定义（首次定义在第 1 行）。"));
}

void FormProgramTest::messages()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);
    const Result result =
        generate({QStringLiteral("classic.vui"), QStringLiteral("classic_further.vui")}, source);
    QString errors = result.errors.join(QLatin1Char('\n'));
    // The names that could be meant are many.
    const QString tail = QStringLiteral("…");
    if (expected.endsWith(tail))
        errors = errors.left(expected.size() - 1) + tail;
    QCOMPARE(errors, expected);
}

QTEST_GUILESS_MAIN(FormProgramTest)
#include "form_program_test.moc"
