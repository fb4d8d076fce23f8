// What is offered for a source with the cursor in it.
#include "editor/auto_completer.h"
#include "editor/open_call.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

// Where the rows below are asked: the text goes on inside of its last function.
const QString inMain = QStringLiteral("类 学生 {\n"
                                      "    属性 文本 姓名\n"
                                      "    属性 HTTP类 网络\n"
                                      "    方法 介绍(文本 语气, 整数 次数) {\n"
                                      "    }\n"
                                      "}\n"
                                      "整数 全班人数 = 0\n"
                                      "函数 求平均(整数 总分, 整数 人数) 小数 {\n"
                                      "    小数 结果值 = 总分 / 人数\n"
                                      "    返回(结果值)\n"
                                      "}\n"
                                      "函数 主函数() {\n"
                                      "    学生 班长\n"
                                      "    HTTP类 请求器\n");
const QString behindMain = QString(16, QLatin1Char('\n')) + QLatin1Char('}'); // on line 31

const QString otherFile = QStringLiteral("类型 坐标点 {\n"
                                         "    整数 横向\n"
                                         "}\n"
                                         "坐标点 原点\n"
                                         "函数 保存成绩() {\n"
                                         "    整数 别处局部 = 1\n"
                                         "}\n");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QStringList names(const CompletionOffer &offer)
{
    QStringList result;
    for (const CompletionItem &item : offer.items)
        result << item.display;
    return result;
}

} // namespace

class AutoCompleterTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void offers_data();
    void offers();
    void offersAllWhenAsked();
    void localsBelongToTheirFunction_data();
    void localsBelongToTheirFunction();
    void hintsAtParameters_data();
    void hintsAtParameters();
    void knowsCommands_data();
    void knowsCommands();
    void rulesOfAFile();
    void picksComeFirst();
    void helpTellsTheResult();
    void answersToAnyText_data();
    void answersToAnyText();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;
    QScopedPointer<CompletionHistory> m_history;
    QScopedPointer<AutoCompleter> m_completer;
};

void AutoCompleterTest::init()
{
    m_completer.reset();
    QFile::remove(path("history.json"));
    m_history.reset(new CompletionHistory(path("history.json")));
    m_completer.reset(new AutoCompleter(*m_history, CallbackRules(path("rules.ini"))));
    m_completer->setDocumentSymbols(readCodeSymbols(inMain + behindMain));
    m_completer->setProjectSymbols(readCodeSymbols(otherFile));
    m_completer->setComponents({{QStringLiteral("主窗口"), QStringLiteral("Window")},
                                {QStringLiteral("登录键"), QStringLiteral("Button")},
                                {QStringLiteral("日志框"), QStringLiteral("VirtualTextBox")},
                                {QStringLiteral("怪东西"), QStringLiteral("NoSuchType")}});
}

void AutoCompleterTest::offers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QStringList>("offered");
    QTest::addColumn<QStringList>("notOffered"); // "*": nothing is offered at all
    const auto row = [](const char *text, const char *first, const char *offered = "",
                        const char *notOffered = "") {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << QString::fromUtf8(first)
                                  << words(offered) << words(notOffered);
    };
    // Words of the language.
    row("qwb", "取文本", "置文本");
    row("取文", "取文本");
    row("    输出(qwb", "取文本");
    row("q", "", "取文本 求平均");
    row("如果", "如果", "如果否则 如果多分支");
    row("rg", "如果", "如果否则");
    row("zs", "", "整数");
    row("长整", "长整数");
    row("HTTP", "HTTP类");
    row("kz", "空值");
    row("#bm", "", "#编码_UTF8 #编码_GBK", "编码_UTF8 保存成绩");
    row("写文件(a, b, #编码_u", "#编码_UTF8", "#编码_UNICODE", "#编码_GBK");
    row("#", "", "#换行符 #MB_OK");
    // What is declared, near and far.
    row("全班", "全班人数");
    row("qpj", "求平均");
    row("bccj", "保存成绩");
    row("bz", "", "班长");
    row("bc", "", "班长");
    row("xs", "学生");
    row("坐标", "坐标点");
    row("dlj", "登录键");
    row("总分", "", "", "总分");
    row("别处", "", "", "别处局部");
    row("姓名", "", "", "姓名");
    // Names that are being given.
    row("整数 q", "", "", "*");
    row("学生 b", "", "", "*");
    row("类 q", "", "", "*");
    row("方法 q", "", "", "*");
    row("函数 q", "", "", "取文本 求平均");
    row("函数 登录", "登录键", "", "取文本");
    row("返回 q", "", "取文本");
    // Strings and comments, also such as began above.
    row("输出(\"qwb", "", "", "*");
    row("输出(“qwb", "", "", "*");
    row("// qwb", "", "", "*");
    row("/* 一\n二 qwb", "", "", "*");
    row("/* 一\n二 */ qwb", "取文本");
    row("输出(\"一\n二 qwb", "", "", "*");
    row("输出(\"一\n二\", qwb", "取文本");
    row("// 一 \" 二\nqwb", "取文本");
    row("文本 a = r\"-(甲\")\nqwb", "", "", "*");
    row("文本 a = r\"-(甲\")-\"\nqwb", "取文本");
    row("12", "", "", "*");
    row("甲 = 3", "", "", "*");
    // Members.
    row("班长.", "", "姓名 介绍 网络", "取文本 状态码 左边");
    row("班长.j", "介绍", "", "姓名");
    row("班长.网络.", "", "状态码 请求", "姓名");
    row("班长.网络.zt", "状态码");
    row("请求器.", "", "请求 GET 状态码", "姓名");
    row("HTTP类 新的\n新的.", "", "请求 GET");
    row("原点.", "横向", "", "姓名");
    row("登录键.", "", "文本 标题 单击 鼠标进入 启用 设置大小", "取文本");
    row("登录键.bt", "标题");
    row("登录键.backC", "背景色");
    row("日志框.", "", "文本 追加 获得焦点");
    row("怪东西.", "", "背景颜色 文字颜色 字体名称 字体大小 提示文本", "单击");
    row("主窗口.登录键.", "", "单击 文本", "居中");
    row("主窗口.jz", "居中");
    row("按钮7.", "", "单击 文本", "居中");
    row("树形视图2.", "", "选择改变");
    row("不知道.", "", "", "*");
    row("取对象().", "", "", "*");
    row("函数 登录键.", "", "单击 双击 鼠标弹起 键盘按下", "文本 启用 设置大小");
    row("函数 主窗口.关闭", "关闭", "关闭询问");
    // Functions passed by name.
    row("启动线程(", "", "求平均 保存成绩", "取文本 全班人数");
    row("启动线程(&", "", "求平均 保存成绩", "取文本");
    row("启动线程(&b", "保存成绩", "班长");
    row("启动线程(&保存成绩, ", "", "", "*");
    row("提交任务(池, b", "保存成绩");
    row("并行循环(1, 10, bc", "保存成绩");
    row("数组筛选(甲, ", "", "求平均", "全班人数");
    row("数组筛选(", "", "", "*");
    row("弹窗(", "", "", "*");
}

void AutoCompleterTest::offers()
{
    QFETCH(QString, text);
    QFETCH(QString, first);
    QFETCH(QStringList, notOffered);
    const QStringList found = names(m_completer->offer(inMain + text));
    if (!first.isEmpty())
        QCOMPARE(found.value(0), first);
    QFETCH(QStringList, offered);
    for (const QString &name : offered)
        QVERIFY2(found.contains(name), qPrintable(name + ": " + found.join(QLatin1Char(' '))));
    for (const QString &name : notOffered)
        QVERIFY2(!found.contains(name), qPrintable(name));
    if (notOffered == QStringList(QStringLiteral("*")))
        QCOMPARE(found, QStringList());
}

void AutoCompleterTest::offersAllWhenAsked()
{
    const auto asked = [&](const char *text) {
        return names(
            m_completer->offer(inMain + QString::fromUtf8(text), 0, AutoCompleter::Demand::Asked));
    };
    QVERIFY(names(m_completer->offer(inMain)).isEmpty());
    const QStringList all = asked("");
    for (const char *name : {"取文本", "如果", "整数", "#换行符", "班长", "登录键", "事件函数"})
        QVERIFY2(all.contains(QString::fromUtf8(name)), name);
    QCOMPARE(all.count(QStringLiteral("如果")), 1);
    QVERIFY(asked("甲 = \"").isEmpty());
    QVERIFY(asked("12").isEmpty());
    QVERIFY(!asked("整数 q").isEmpty());
}

void AutoCompleterTest::localsBelongToTheirFunction_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("addedLines");
    QTest::addColumn<QStringList>("seen");
    const auto row = [](const char *name, int line, int addedLines, const char *seen) {
        QTest::addRow("%s", name) << line << addedLines << words(seen);
    };
    row("at the top", 7, 0, "全班人数");
    row("in a method", 5, 0, "全班人数 语气 姓名");
    row("in a function", 10, 0, "全班人数 总分 结果值");
    row("behind it", 32, 0, "全班人数");
    row("in lines added to it", 34, 3, "全班人数 班长");
    row("in the next function", 20, 0, "全班人数 班长");
}

void AutoCompleterTest::localsBelongToTheirFunction()
{
    QFETCH(int, line);
    QFETCH(int, addedLines);
    const QStringList found = names(m_completer->offer(QString(line - 1, QLatin1Char('\n')),
                                                       addedLines, AutoCompleter::Demand::Asked));
    QStringList seen;
    for (const QString &name : words("全班人数 语气 姓名 总分 结果值 班长 别处局部")) {
        if (found.contains(name))
            seen << name;
    }
    QTEST(seen, "seen");
}

void AutoCompleterTest::hintsAtParameters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("hint");
    const auto row = [](const char *text, const char *hint) {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << QString::fromUtf8(hint);
    };
    const char *const first = "求平均(<b>整数 总分</b>, 整数 人数) 小数";
    const char *const second = "求平均(整数 总分, <b>整数 人数</b>) 小数";
    row("求平均(", first);
    row("求平均 (1", first);
    row("求平均（1，", second);
    row("求平均(1, ", second);
    row("求平均(1, 2, ", "求平均(整数 总分, 整数 人数) 小数");
    row("求平均(1, 2)", "");
    row("求平均", "");
    row("求平均(\"a,b(\", ", second);
    row("求平均(“a,b(”, ", second);
    row("求平均(1 /* , */, ", second);
    row("求平均(\"你好", first);
    row("求平均([1, 2], ", second);
    row("求平均({1, 2", first);
    row("求平均((1 + ", first);
    row("求平均(取文本长度(a, b), ", second);
    row("求平均(1,\n    2", second);
    row("求平均(\n    1\n    , 2", second);
    row("求平均(1, // 一\n    ", second);
    row("求平均(\"一\n二, \", ", second);
    row("输出(求平均(", first);
    row("求平均(1\n甲 = ", "");
    row("如果 (求平均(1, 2) > 3) {\n    ", "");
    row("函数 求平均(", "");
    row("保存成绩(", "保存成绩（无）");
    row("班长.介绍(\"a\", ", "介绍(文本 语气, <b>整数 次数</b>)");
    row("弹窗(\"a\", ", "弹窗(通用 内容, <b>[文本 标题]</b>, [整数 样式])");
    row("提示框(", "提示框(<b>通用 内容</b>, [文本 标题], [整数 样式])");
    row("输出(1, 2, 3, ", "输出([通用 值], <b>...</b>)");
    row("信息框(\"a\", ", "<font color='#888'>信息框(文本 内容)</font><br>"
                          "信息框(文本 标题, <b>文本 内容</b>, [整数 样式])");
    row("主窗口.居中(", "主窗口.居中（无）");
    row("登录键.设置大小(1, ", "登录键.设置大小(整数 宽度, <b>整数 高度</b>)");
    row("如果 (", "如果 (<b>条件</b>)");
    row("不知道(", "");
    row("不知道.居中(", "");
}

void AutoCompleterTest::hintsAtParameters()
{
    QFETCH(QString, text);
    QTEST(m_completer->paramHint(inMain + text).html, "hint");
}

void AutoCompleterTest::knowsCommands_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("command");
    const auto row = [](const char *text, const char *command) {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << QString::fromUtf8(command);
    };
    row("取文本", "取文本");
    row("提示框", "弹窗");
    row("取", "");
    row("#编码_GBK", "#编码_GBK");
    row("登录键.标题", "按钮.文本");
    row("班长.标题", "");
    row("\"取文本", "");
    row("// 取文本", "");
    row("", "");
}

void AutoCompleterTest::knowsCommands()
{
    QFETCH(QString, text);
    QTEST(m_completer->command(inMain + text), "command");
}

void AutoCompleterTest::rulesOfAFile()
{
    QFile file(path("own.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Callbacks]\ncommands=输出:2, 弹窗, 启动线程:3, :, 写文件:x\n");
    file.close();
    const CallbackRules rules(path("own.ini"));
    const auto wants = [&](const char *command) {
        QString arguments;
        for (int i = 0; i < 4; ++i)
            arguments += rules.wantsFunction(QString::fromUtf8(command), i) ? '1' : '0';
        return arguments;
    };
    QCOMPARE(wants("输出"), QStringLiteral("0100"));
    QCOMPARE(wants("弹窗"), QStringLiteral("1111"));
    QCOMPARE(wants("启动线程"), QStringLiteral("0010"));
    QCOMPARE(wants("提交任务"), QStringLiteral("0100"));
    QCOMPARE(wants("并行循环"), QStringLiteral("1111"));
    QCOMPARE(wants("取文本"), QStringLiteral("0000"));
}

void AutoCompleterTest::picksComeFirst()
{
    const auto found = [&] { return names(m_completer->offer(inMain + QStringLiteral("q"))); };
    const QStringList before = found();
    const CompletionOffer offer = m_completer->offer(inMain + QStringLiteral("q"));
    const CompletionItem *equal = nullptr;
    for (const CompletionItem &item : offer.items) {
        if (item.score == offer.items.first().score)
            equal = &item;
    }
    QVERIFY(equal && equal != &offer.items.first());
    m_completer->notePick(*equal);
    QCOMPARE(found().first(), equal->display);
    QCOMPARE(found().size(), before.size());

    m_completer.reset();
    QCOMPARE(CompletionHistory(path("history.json")).rank(equal->soughtName()), 1);
}

void AutoCompleterTest::helpTellsTheResult()
{
    const CompletionOffer offer = m_completer->offer(inMain + QStringLiteral("取文本"));
    const QString help = AutoCompleter::help(offer.items.first());
    QVERIFY2(help.startsWith(QStringLiteral("<b>取文本</b><br>")), qPrintable(help));
    QVERIFY2(help.endsWith(QStringLiteral("<br><font color='#888'>返回: 文本</font>")),
             qPrintable(help));
}

// Large enough that anything but linear time would never end.
void AutoCompleterTest::answersToAnyText_data()
{
    QTest::addColumn<QString>("repeated");
    QTest::addColumn<QString>("end");
    for (const char *repeated :
         {"甲", "r ",  "(",   "[",         "{",     ")",  "\n", "甲.", "\"",  "r\"(",
          "/*", "// ", "甲 ", "整数 乙\n", "甲(\n", "，", "#",  "“",   "'\\", " "}) {
        for (const char *end : {"", "甲", "新的.", "输出(", "弹窗(1,\n"})
            QTest::addRow("%s, %s", repeated, end)
                << QString::fromUtf8(repeated) << QString::fromUtf8(end);
    }
}

void AutoCompleterTest::answersToAnyText()
{
    QFETCH(QString, repeated);
    QFETCH(QString, end);
    const QString text = repeated.repeated(30000) + end;
    const CompletionOffer offer = m_completer->offer(text, 0, AutoCompleter::Demand::Asked);
    QVERIFY(text.endsWith(offer.prefix));
    m_completer->paramHint(text);
    m_completer->command(text);
}

QTEST_GUILESS_MAIN(AutoCompleterTest)
#include "auto_completer_test.moc"
