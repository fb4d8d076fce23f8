// Where names lead, where they are used, and what renaming them changes or refuses.
#include "editor/code_navigation.h"

#include <QtTest>

using Texts = QMap<QString, QString>;

namespace {

// The name asked about stands behind '|'; the places that are expected stand between '<' and '>'.
// Both signs go, the places stay.
struct Marked
{
    Texts texts;
    CodePlace asked;
    QVector<CodePlace> expected;
};

Marked marked(const Texts &given)
{
    Marked result;
    for (auto file = given.cbegin(); file != given.cend(); ++file) {
        QString text;
        CodePlace place{file.key(), 1, 1, 0};
        for (const QChar sign : file.value()) {
            if (sign == QLatin1Char('|')) {
                result.asked = place;
            } else if (sign == QLatin1Char('<')) {
                result.expected.append(place);
            } else if (sign == QLatin1Char('>')) {
                result.expected.last().length = place.column - result.expected.last().column;
            } else {
                text += sign;
                ++place.column;
            }
            if (sign == QLatin1Char('\n')) {
                ++place.line;
                place.column = 1;
            }
        }
        result.texts.insert(file.key(), text);
    }
    return result;
}

QByteArray shown(const QVector<CodePlace> &places)
{
    QStringList rows;
    for (const CodePlace &place : places)
        rows << QStringLiteral("%1:%2:%3+%4")
                    .arg(place.file)
                    .arg(place.line)
                    .arg(place.column)
                    .arg(place.length);
    return rows.isEmpty() ? QByteArray("nothing") : rows.join(QLatin1Char(' ')).toUtf8();
}

// One file, or several that are divided by a line of dashes: 1.vc, 2.vc, ...
Texts textsOf(const char *utf8)
{
    Texts texts;
    const QStringList parts = QString::fromUtf8(utf8).split(QStringLiteral("\n---\n"));
    for (const QString &part : parts)
        texts.insert(QStringLiteral("%1.vc").arg(texts.size() + 1), part);
    return texts;
}

} // namespace

class CodeNavigationTest : public QObject
{
    Q_OBJECT

private slots:
    void goesToDefinitions_data();
    void goesToDefinitions();
    void findsUsages_data();
    void findsUsages();
    void renames_data();
    void renames();
    void refusesToRename_data();
    void refusesToRename();
    void tellsTheSymbol();
    void survivesEndlessChains();
};

void CodeNavigationTest::goesToDefinitions_data()
{
    QTest::addColumn<QString>("texts");
    const auto row = [](const char *name, const char *texts) {
        QTest::newRow(name) << QString::fromUtf8(texts);
    };
    row("function of another file", "函数 甲() {\n  |乙()\n}\n---\n函数 <乙>() {\n}");
    row("behind the name", "函数 <乙>() {\n}\n函数 甲() {\n  乙|()\n}");
    row("callback", "函数 甲() {\n  启动线程(&|乙)\n}\n函数 <乙>() {\n}");
    row("local before parameter before global",
        "整数 甲\n函数 乙(整数 甲) {\n  文本 <甲>\n  输出(|甲)\n}");
    row("parameter before global", "整数 甲\n函数 乙(整数 <甲>) {\n  输出(|甲)\n}");
    row("block left", "整数 <甲>\n函数 乙() {\n  如果(1) {\n    文本 甲\n  }\n  输出(|甲)\n}");
    row("local not declared yet", "整数 <甲>\n函数 乙() {\n  输出(|甲)\n  文本 甲\n}");
    row("local of another function", "函数 丙() {\n  文本 甲\n}\n函数 乙() {\n  |甲 = 1\n}\n"
                                     "整数 <甲>");
    row("the later loop", "函数 乙() {\n  循环(整数 i = 0; i != 3; i++) {\n  }\n"
                          "  循环(整数 <i> = 0; |i != 3; i++) {\n  }\n}");
    row("property before global",
        "整数 甲\n类 乙 {\n  属性 整数 <甲>\n  方法 丙() {\n    |甲 = 1\n  }\n}");
    row("method of the same class",
        "类 乙 {\n  方法 丙() {\n    |丁()\n  }\n  方法 <丁>() {\n  }\n}");
    row("method outside of its class",
        "类 乙 {\n  属性 整数 <甲>\n}\n函数 乙.丙() {\n  |甲 = 1\n}");
    row("method of an object", "类 丙 {\n  方法 丁() {\n  }\n}\n类 乙 {\n  方法 <丁>() {\n  }\n}\n"
                               "---\n函数 甲() {\n  乙 物\n  物.|丁()\n}");
    row("member of a member", "类 丙 {\n  属性 整数 <长>\n}\n类 乙 {\n  属性 丙 边\n}\n函数 甲(乙 "
                              "物) {\n  物.边.|长 = 1\n}");
    row("member of a result", "类 乙 {\n  属性 整数 <长>\n}\n函数 取(整数 号) 乙 {\n}\n"
                              "函数 甲() {\n  输出(取((1)).|长)\n}");
    row("variable of a constructor", "类 乙 {\n  属性 整数 <长>\n}\n函数 甲() {\n"
                                     "  变量 物 = 乙((1), 2)\n  物.|长 = 1\n}");
    row("variable of a member", "类 丙 {\n  属性 整数 <长>\n}\n类 乙 {\n  属性 丙 边\n}\n"
                                "函数 甲(乙 物) {\n  变量 它 = 物.边; 它.|长 = 1\n}");
    row("variable of a calculation",
        "类 乙 {\n  属性 整数 长\n}\n函数 甲() {\n  变量 物 = 乙() + 1\n  物.|长 = 1\n}");
    row("variable of itself", "函数 甲() {\n  变量 物 = 物\n  物.|长 = 1\n}");
    row("class as a type", "类 <乙> {\n}\n函数 甲(乙 物) {\n  |乙 别物\n}");
    row("class of a parameter", "类 <乙> {\n}\n函数 甲(|乙 物) {\n}");
    row("type block", "函数 甲() {\n  |点 乙\n}\n---\n类型 <点> {\n  整数 横\n}");
    row("constant", "文本 <名> = \"x\"\n---\n函数 甲() {\n  输出(#|名)\n}");
    row("overload in the same file", "函数 乙() {\n}\n---\n函数 <乙>(整数 丙) {\n}\n函数 甲() {\n"
                                     "  |乙(1)\n}");
    row("event function itself", "函数 按钮1.|<单击>() {\n}");
    row("other form of the name", "函数 <ＡＢ>() {\n}\n函数 甲() {\n  |AB()\n}");
    row("command", "函数 甲() {\n  |输出(1)\n}");
    row("component", "函数 甲() {\n  |按钮1.标题 = \"x\"\n}");
    row("member of a component",
        "类 乙 {\n  属性 文本 标题\n}\n函数 甲() {\n  按钮1.|标题 = \"x\"\n}");
    row("in a string", "函数 乙() {\n  输出(\"|乙\")\n}");
    row("in a comment", "函数 乙() {\n  // |乙\n}");
    row("nowhere", "函数 乙() {\n|\n}");
}

void CodeNavigationTest::goesToDefinitions()
{
    QFETCH(QString, texts);
    const Marked row = marked(textsOf(texts.toUtf8().constData()));
    const CodePlace found =
        CodeNavigation(row.texts).definitionOf(row.asked.file, row.asked.line, row.asked.column);
    const CodePlace expected = row.expected.value(0);
    QVERIFY2(found == expected, shown({found, expected}));
}

void CodeNavigationTest::findsUsages_data()
{
    QTest::addColumn<QString>("texts");
    const auto row = [](const char *name, const char *texts) {
        QTest::newRow(name) << QString::fromUtf8(texts);
    };
    row("function",
        "函数 <|乙>() {\n  <乙>() // 乙\n  输出(\"乙\" + <乙>())\n  甲.乙()\n}\n---\n"
        "函数 丙(整数 丁) {\n  启动线程(&<乙>)\n  整数 乙\n  乙 = 1\n}\n函数 <乙>(整数 戊) {}");
    row("local", "整数 甲\n函数 乙() {\n  输出(甲)\n  整数 <甲> = 1\n  如果(<|甲> == 1) {\n"
                 "    <甲> = 2\n    整数 甲\n    甲 = 3\n  }\n  <甲> = 4\n}\n函数 丙(整数 甲) {\n"
                 "  甲 = 5\n}");
    row("global", "整数 <甲>\n函数 乙(整数 甲) {\n  甲 = 1\n}\n---\n函数 丙() {\n  <|甲> = 1\n"
                  "  输出(#<甲>)\n}");
    row("property", "类 乙 {\n  属性 整数 <|长>\n  方法 丙() {\n    <长> = 1\n  }\n"
                    "  方法 丁(整数 长) {\n    长 = 1\n  }\n}\n类 别 {\n  属性 整数 长\n}\n---\n"
                    "整数 长\n函数 甲(乙 物, 别 它, 变量 谁) {\n  物.<长> = 它.长 + 谁.长 + 长\n}");
    row("class",
        "类 <|乙> {\n  方法 构造() {}\n}\n函数 <乙>.丙(<乙> 物) <乙> {\n  <乙> 新 = <乙>()\n}");
}

void CodeNavigationTest::findsUsages()
{
    QFETCH(QString, texts);
    const Marked row = marked(textsOf(texts.toUtf8().constData()));
    const QVector<CodePlace> found =
        CodeNavigation(row.texts).usagesOf(row.asked.file, row.asked.line, row.asked.column);
    QVERIFY2(found == row.expected, shown(found));
}

void CodeNavigationTest::renames_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("newName");
    const auto row = [](const char *name, const char *texts, const char *newName) {
        QTest::newRow(name) << QString::fromUtf8(texts) << QString::fromUtf8(newName);
    };
    row("function over files", "函数 <|乙>() {\n}\n---\n函数 丙() {\n  <乙>(); <乙>()\n}", "相加");
    row("to the name of a local elsewhere",
        "函数 甲(整数 <|乙>) {\n  <乙> = 1\n}\n函数 丙() {\n  整数 丁\n}", "丁");
    row("to a global's name that is not used there",
        "整数 丙\n函数 甲(整数 <|乙>) {\n  <乙> = 1\n}", "丙");
    row("locals of blocks side by side",
        "函数 甲() {\n  如果(1) {\n    整数 <|乙>\n  } 否则 {\n    整数 丙\n  }\n}", "丙");
    row("other form of the same name", "函数 <|AB>() {\n}", "ＡＢ");
    row("property like a global", "整数 丙\n类 丁 {\n  属性 整数 <|乙>\n}", "丙");
}

void CodeNavigationTest::renames()
{
    QFETCH(QString, texts);
    QFETCH(QString, newName);
    const Marked row = marked(textsOf(texts.toUtf8().constData()));
    const CodeRename rename = CodeNavigation(row.texts).renameEdits(row.asked.file, row.asked.line,
                                                                    row.asked.column, newName);
    QCOMPARE(rename.refusal, QString());
    QVERIFY2(rename.edits == row.expected, shown(rename.edits));
}

void CodeNavigationTest::refusesToRename_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("newName");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *texts, const char *newName,
                        const char *reason) {
        QTest::newRow(name) << QString::fromUtf8(texts) << QString::fromUtf8(newName)
                            << QString::fromUtf8(reason);
    };
    row("empty", "函数 |乙() {}", "", "不能为空");
    row("keyword", "函数 |乙() {}", "如果", "是关键字");
    row("word with a meaning", "函数 |乙() {}", "全局", "是关键字");
    row("number", "函数 |乙() {}", "1甲", "不是合法的名称");
    row("two words", "函数 |乙() {}", "甲 丙", "不是合法的名称");
    row("with a dot", "函数 |乙() {}", "甲.丙", "不是合法的名称");
    row("constant's sign", "函数 |乙() {}", "#甲", "不是合法的名称");
    row("comment", "函数 |乙() {}", "甲//", "不是合法的名称");
    row("command", "函数 |乙() {}", "输出", "是命令的名称");
    row("same", "函数 |乙() {}", "乙", "相同");
    row("function exists", "函数 |乙() {}\n---\n\n函数 丙() {}", "丙",
        "「丙」已经存在（2.vc 第 2 行）");
    row("class exists", "类 丙 {}\n整数 |乙", "丙", "「丙」已经存在（1.vc 第 1 行）");
    row("local exists", "函数 甲(整数 |乙) {\n  如果(1) {\n    整数 丙\n  }\n}", "丙", "已经存在");
    row("member exists", "类 甲 {\n  属性 整数 |乙\n  方法 丙() {}\n}", "丙", "已经存在");
    row("a local would hide the global", "整数 |乙\n函数 甲(整数 丙) {\n  乙 = 1\n}", "丙", "混淆");
    row("a global would be hidden", "整数 丙\n函数 甲(整数 |乙) {\n  丙 = 1\n}", "丙", "混淆");
    row("a property would hide the global",
        "整数 |乙\n类 甲 {\n  属性 整数 丙\n  方法 丁() {\n    乙 = 1\n  }\n}", "丙", "混淆");
    row("event function", "函数 按钮1.|单击() {}", "双击", "由组件和事件决定");
    row("entry", "函数 |主函数() {}", "开始", "语言规定");
    row("constructor", "类 甲 {\n  方法 |构造() {}\n}", "开始", "语言规定");
    row("command at the place", "函数 甲() {\n  |输出(1)\n}", "乙", "没有可以改名的名称");
    row("not a declaration", "整数 #|甲", "乙", "没有可以改名的名称");
    row("nothing at the place", "|\n", "乙", "没有可以改名的名称");
}

void CodeNavigationTest::refusesToRename()
{
    QFETCH(QString, texts);
    QFETCH(QString, newName);
    QFETCH(QString, reason);
    const Marked row = marked(textsOf(texts.toUtf8().constData()));
    const CodeRename rename = CodeNavigation(row.texts).renameEdits(row.asked.file, row.asked.line,
                                                                    row.asked.column, newName);
    QVERIFY2(rename.refusal.contains(reason), qPrintable(rename.refusal));
    QVERIFY(rename.edits.isEmpty());
}

void CodeNavigationTest::tellsTheSymbol()
{
    const Marked row =
        marked(textsOf("函数 相加(整数 甲) 整数 {}\n---\n函数 乙() {\n  相|加(1)\n}"));
    const auto symbol =
        CodeNavigation(row.texts).symbolAt(row.asked.file, row.asked.line, row.asked.column);
    QVERIFY(symbol);
    QCOMPARE(symbol->signature, QStringLiteral("相加(整数 甲) 整数"));
    QVERIFY(!CodeNavigation({}).symbolAt(QStringLiteral("1.vc"), 1, 1));
}

// What nobody writes must not hang the editor or exhaust its stack.
void CodeNavigationTest::survivesEndlessChains()
{
    const QString chain = QStringLiteral("类 甲 {\n属性 甲 乙\n}\n函数 丙(甲 丁) {\n丁") +
                          QStringLiteral(".乙").repeated(20000) + QStringLiteral("\n}\n");
    const QString calls = QStringLiteral("函数 戊() {\n") + QStringLiteral("(").repeated(20000) +
                          QStringLiteral(").乙").repeated(20000) + QStringLiteral("\n}\n");
    const CodeNavigation navigation(
        {{QStringLiteral("1.vc"), chain}, {QStringLiteral("2.vc"), calls}});
    const QVector<CodePlace> places = navigation.usagesOf(QStringLiteral("1.vc"), 2, 6);
    QVERIFY(places.size() > 10);
}

QTEST_GUILESS_MAIN(CodeNavigationTest)
#include "code_navigation_test.moc"
