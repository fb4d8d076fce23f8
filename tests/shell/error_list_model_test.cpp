// The rows of the error list: what is rewritten, what replaces what, what is taken out.
#include "shell/error_list_model.h"

#include <QtTest>

namespace {

Issue error(const char *text, const char *file = "main.vc", int line = 3)
{
    return {IssueKind::Error, QString::fromUtf8(text), QString::fromUtf8(file), line, 0};
}

QStringList shownTexts(const ErrorListModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.count(); ++row)
        texts << model.at(row).text;
    return texts;
}

} // namespace

Q_DECLARE_METATYPE(Issue)

class ErrorListModelTest : public QObject
{
    Q_OBJECT

private slots:
    void rewrites_data();
    void rewrites();
    void replaces_data();
    void replaces();
    void renewsTheRowInItsPlace();
    void takesTheLineFromTheText();
    void removes_data();
    void removes();
    void cells();
};

void ErrorListModelTest::rewrites_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *given, const char *shown) {
        QTest::addRow("%s", name) << QString::fromUtf8(given) << QString::fromUtf8(shown);
    };
    row("return type", "第10行：求和() 返回值类型应为整数，不能返回文本",
        "求和() 返回值类型应为整数，不能返回文本");
    row("blanks", "第 10 行：设置.关闭()返回值类型应为逻辑", "设置.关闭() 返回值类型应为逻辑");
    row("something before", "[检查] 第7行：求和() 返回值类型应为整数", "求和() 返回值类型应为整数");
    row("without a line", "求和() 返回值类型应为整数", "求和() 返回值类型应为整数");
    row("repeated variable", "第16行：变量 成绩 重复定义", "变量 成绩 重复定义");
    row("repeated global", "第30行：全局变量 总和  重复定义", "变量 总和 重复定义");
    row("repeated member", "第31行：类「学生」的成员「姓名」重复定义",
        "第31行：类「学生」的成员「姓名」重复定义");
    row("marks of arguments", "第2行：变量 %1%2 重复定义", "变量 %1%2 重复定义");
    row("empty", "", "");
}

void ErrorListModelTest::rewrites()
{
    QFETCH(QString, given);
    ErrorListModel model;
    model.add({IssueKind::Error, given, "main.vc", 1, 1});
    QTEST(model.at(0).text, "shown");
}

void ErrorListModelTest::replaces_data()
{
    QTest::addColumn<Issue>("first");
    QTest::addColumn<Issue>("second");
    QTest::addColumn<QStringList>("shown");
    QTest::addRow("the type wanted has changed")
        << error("第1行：甲() 返回值类型应为整数") << error("第2行：甲() 返回值类型应为文本")
        << QStringList{"甲() 返回值类型应为文本"};
    QTest::addRow("another function")
        << error("第1行：甲() 返回值类型应为整数") << error("第1行：乙() 返回值类型应为整数")
        << QStringList{"甲() 返回值类型应为整数", "乙() 返回值类型应为整数"};
    QTest::addRow("another file") << error("变量 甲 重复定义")
                                  << error("变量 甲 重复定义", "other.vc")
                                  << QStringList{"变量 甲 重复定义", "变量 甲 重复定义"};
    QTest::addRow("the same file, written otherwise")
        << error("变量 甲 重复定义", "source/main.vc")
        << error("变量 甲 重复定义", "source/./x/../main.vc") << QStringList{"变量 甲 重复定义"};
    QTest::addRow("no key") << error("缺少括号") << error("缺少括号")
                            << QStringList{"缺少括号", "缺少括号"};
}

void ErrorListModelTest::replaces()
{
    QFETCH(Issue, first);
    QFETCH(Issue, second);
    ErrorListModel model;
    model.add(first);
    model.add(second);
    QTEST(shownTexts(model), "shown");
    QCOMPARE(model.counts().errors, model.count());
}

void ErrorListModelTest::renewsTheRowInItsPlace()
{
    ErrorListModel model;
    QCOMPARE(model.add(error("变量 甲 重复定义", "main.vc", 5)), 0);
    QCOMPARE(model.add(error("缺少括号")), 1);
    Issue warning = error("变量 甲 重复定义", "main.vc", 9);
    warning.kind = IssueKind::Warning;
    QCOMPARE(model.add(warning), 0);
    QCOMPARE(model.at(0).line, 9);
    QCOMPARE(model.counts().errors, 1);
    QCOMPARE(model.counts().warnings, 1);
}

void ErrorListModelTest::takesTheLineFromTheText()
{
    ErrorListModel model;
    model.add(error("第12行：甲() 返回值类型应为整数", "main.vc", 0));
    model.add(error("第12行：乙() 返回值类型应为整数", "main.vc", 4));
    QCOMPARE(model.at(0).line, 12);
    QCOMPARE(model.at(1).line, 4);
}

void ErrorListModelTest::removes_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QStringList>("left");
    const QString one = "[检查] 一";
    const QString two = "求和() 返回值类型应为整数";
    const QString three = "别的";
    const QString four = "[检查] 四";
    QTest::addRow("rewritten rows too")
        << "main.vc"
        << "[检查]" << QVector<int>{1, 0} << QStringList{three, four};
    QTest::addRow("all of a file") << "main.vc"
                                   << "" << QVector<int>{2, 1, 0} << QStringList{four};
    QTest::addRow("not in the middle of a text")
        << "main.vc"
        << "查]" << QVector<int>{} << QStringList{one, two, three, four};
    QTest::addRow("an unknown file") << "none.vc"
                                     << "" << QVector<int>{} << QStringList{one, two, three, four};
}

void ErrorListModelTest::removes()
{
    ErrorListModel model;
    model.add(error("[检查] 一"));
    model.add(error("[检查] 第7行：求和() 返回值类型应为整数"));
    model.add({IssueKind::Warning, "别的", "main.vc", 0, 0});
    model.add({IssueKind::Info, "[检查] 四", "other.vc", 0, 0});
    QFETCH(QString, file);
    QFETCH(QString, prefix);
    QTEST(model.remove(file, prefix), "rows");
    QTEST(shownTexts(model), "left");
    const IssueCounts counts = model.counts();
    QCOMPARE(counts.errors + counts.warnings + counts.infos, model.count());
    QCOMPARE(counts.infos, 1);
}

void ErrorListModelTest::cells()
{
    const Issue placed{IssueKind::Warning, "甲", "main.vc", 3, 5};
    QCOMPARE(placed.cells(), QStringList({"警告", "甲", "main.vc", "3", "5"}));
    const Issue nowhere{IssueKind::Info, "乙", {}, 0, 0};
    QCOMPARE(nowhere.cells(), QStringList({"信息", "乙", "", "", ""}));
}

QTEST_GUILESS_MAIN(ErrorListModelTest)
#include "error_list_model_test.moc"
