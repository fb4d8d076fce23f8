// The outline: what it shows, and that it stays as the user left it while the text changes.
#include "shell/code_outline.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

class CodeOutlineTest : public QObject
{
    Q_OBJECT

private slots:
    void outlines_data();
    void outlines();
    void filters_data();
    void filters();
    void followsTheLine_data();
    void followsTheLine();
    void keepsFoldingAndSelection();
    void goesWhereTheUserWants();
    void isReachedByKeyboard();
};

static const char kText[] = "类 学生 {\n"
                            "  属性 文本 姓名\n"
                            "  方法 介绍() {\n"
                            "    输出(姓名)\n"
                            "  }\n"
                            "}\n"
                            "函数 按钮1.单击() {\n"
                            "  整数 局部\n"
                            "}\n"
                            "整数 总数\n"
                            "函数 相加(整数 甲) 整数 {\n"
                            "}\n"
                            "函数 按钮1.获得焦点() {\n"
                            "}\n";

static CodeSymbols symbolsOf(const char *text)
{
    return readCodeSymbols(QString::fromUtf8(text));
}

static void describe(const QVector<OutlineNode> &nodes, const QString &indent, QStringList *rows)
{
    for (const OutlineNode &node : nodes) {
        *rows << (indent + node.text + QLatin1Char('|') + node.range());
        describe(node.children, indent + QLatin1Char(' '), rows);
    }
}

// What is to be seen: hidden and folded rows left out, the current one in brackets.
static QString seen(const CodeOutline &outline)
{
    const auto *tree = outline.findChild<QTreeWidget *>();
    QStringList names;
    for (QTreeWidgetItemIterator item(const_cast<QTreeWidget *>(tree)); *item; ++item) {
        const QTreeWidgetItem *parent = (*item)->parent();
        if ((*item)->isHidden() || (parent && !parent->isExpanded()))
            continue;
        const QString name =
            (*item)->text(0).mid(2).section(QLatin1Char('('), 0, 0).section(QLatin1Char(':'), 0, 0);
        names << (*item == tree->currentItem() ? QLatin1Char('[') + name + QLatin1Char(']') : name);
    }
    return names.join(QLatin1Char(' '));
}

static QTreeWidgetItem *itemNamed(const CodeOutline &outline, const QString &name)
{
    const auto *tree = outline.findChild<QTreeWidget *>();
    return tree->findItems(name, Qt::MatchContains | Qt::MatchRecursive).value(0);
}

void CodeOutlineTest::outlines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rows");
    const auto row = [](const char *name, const char *text, const char *rows) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(rows);
    };
    row("all kinds", kText,
        "■ 学生|1-6\n"
        " ● 姓名: 文本|2\n"
        " ▸ 介绍()|3-5\n"
        "□ 按钮1|\n"
        " ⚡ 单击()|7-9\n"
        " ⚡ 获得焦点()|13-14\n"
        "○ 总数: 整数|10\n"
        "◆ 相加(整数 甲) 整数|11-12");
    row("method ahead of its class", "函数 甲.乙() {\n}\n类 甲 {\n}", "■ 甲|3-4\n ▸ 乙()|1-2");
    row("type block", "类型 点 {\n  整数 横\n}", "■ 点|1-3\n ● 横: 整数|2");
    row("component in a window", "函数 窗口.按钮1.单击() {\n}", "□ 窗口.按钮1|\n ⚡ 单击()|1-2");
    row("without parameters", "函数 甲() {}", "◇ 甲()|1");
    row("nothing", "", "");
}

void CodeOutlineTest::outlines()
{
    QFETCH(QString, text);
    QStringList rows;
    describe(outlineOf(readCodeSymbols(text)), QString(), &rows);
    QTEST(rows.join(QLatin1Char('\n')), "rows");
}

void CodeOutlineTest::filters_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("names");
    const auto row = [](const char *query, const char *names) {
        QTest::addRow("'%s'", query) << QString::fromUtf8(query) << QString::fromUtf8(names);
    };
    row("", "学生 姓名 介绍 按钮1 单击 获得焦点 总数 相加");
    row(" 单击 ", "按钮1 单击");
    row("按钮", "按钮1 单击 获得焦点");
    row("xj", "相加");
    row("没有", "");
}

void CodeOutlineTest::filters()
{
    QFETCH(QString, query);
    CodeOutline outline;
    outline.setSymbols(symbolsOf(kText));
    itemNamed(outline, QStringLiteral("按钮1"))->setExpanded(query.isEmpty());
    auto *filter = outline.findChild<QLineEdit *>();
    filter->setText(query);
    QTEST(seen(outline), "names");
    // What was folded is folded again.
    const QString whole = query.isEmpty()
                              ? QStringLiteral("学生 姓名 介绍 按钮1 单击 获得焦点 总数 相加")
                              : QStringLiteral("学生 姓名 介绍 按钮1 总数 相加");
    filter->clear();
    QCOMPARE(seen(outline), whole);
}

void CodeOutlineTest::followsTheLine_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("current");
    const auto row = [](int line, const char *current) {
        QTest::addRow("%d", line) << line << QString::fromUtf8(current);
    };
    row(1, "学生");
    row(2, "姓名");
    row(4, "介绍");
    row(6, "学生");
    row(8, "按钮1"); // folded
    row(10, "总数");
    row(99, "");
}

void CodeOutlineTest::followsTheLine()
{
    QFETCH(int, line);
    QFETCH(QString, current);
    CodeOutline outline;
    outline.setSymbols(symbolsOf(kText));
    itemNamed(outline, QStringLiteral("按钮1"))->setExpanded(false);
    QSignalSpy activated(&outline, &CodeOutline::lineActivated);
    outline.setCurrentLine(12);
    outline.setCurrentLine(line);
    QCOMPARE(seen(outline).section(QLatin1Char('['), 1).section(QLatin1Char(']'), 0, 0), current);
    QCOMPARE(seen(outline).contains(QStringLiteral("单击")), false);
    QCOMPARE(activated.size(), 0);
}

void CodeOutlineTest::keepsFoldingAndSelection()
{
    CodeOutline outline;
    outline.setSymbols(symbolsOf(kText));
    itemNamed(outline, QStringLiteral("学生"))->setExpanded(false);
    outline.setCurrentLine(11);
    QCOMPARE(seen(outline), QStringLiteral("学生 按钮1 单击 获得焦点 总数 [相加]"));
    const QByteArray changed = QByteArray("\n整数 新\n") + kText;
    outline.setSymbols(symbolsOf(changed.constData()));
    QCOMPARE(seen(outline), QStringLiteral("新 学生 按钮1 单击 获得焦点 总数 [相加]"));
}

void CodeOutlineTest::goesWhereTheUserWants()
{
    CodeOutline outline;
    outline.setSymbols(symbolsOf(kText));
    outline.show();
    QSignalSpy activated(&outline, &CodeOutline::lineActivated);
    auto *tree = outline.findChild<QTreeWidget *>();
    tree->setCurrentItem(itemNamed(outline, QStringLiteral("介绍")));
    QTest::keyClick(tree, Qt::Key_Return);
    QCOMPARE(activated.takeFirst().at(0).toInt(), 3);
    tree->setCurrentItem(itemNamed(outline, QStringLiteral("按钮1")));
    QTest::keyClick(tree, Qt::Key_Return);
    QCOMPARE(activated.takeFirst().at(0).toInt(), 7);
}

void CodeOutlineTest::isReachedByKeyboard()
{
    CodeOutline outline;
    outline.setSymbols(symbolsOf(kText));
    outline.show();
    QVERIFY(QTest::qWaitForWindowExposed(&outline));
    auto *filter = outline.findChild<QLineEdit *>();
    auto *tree = outline.findChild<QTreeWidget *>();
    QVERIFY(!filter->accessibleName().isEmpty() && !tree->accessibleName().isEmpty());
    QCOMPARE(itemNamed(outline, QStringLiteral("单击"))->data(0, Qt::AccessibleTextRole).toString(),
             QStringLiteral("事件 单击"));
    filter->setFocus();
    QSignalSpy activated(&outline, &CodeOutline::lineActivated);
    QTest::keyClicks(filter, QStringLiteral("djs")); // nothing
    QTest::keyClick(filter, Qt::Key_Return);
    QCOMPARE(activated.size(), 0);
    QTest::keyClick(filter, Qt::Key_Escape);
    QCOMPARE(filter->text(), QString());
    QTest::keyClicks(filter, QStringLiteral("dj"));
    QTest::keyClick(filter, Qt::Key_Return); // not the component, which only holds it
    QCOMPARE(activated.takeFirst().at(0).toInt(), 7);
    QTest::keyClick(filter, Qt::Key_Down);
    QVERIFY(tree->hasFocus());
    QCOMPARE(seen(outline), QStringLiteral("按钮1 [单击]"));
}

QTEST_MAIN(CodeOutlineTest)
#include "code_outline_test.moc"
