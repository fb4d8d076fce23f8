// Which name a misspelt one is taken for.
#include "frontend/name_suggestion.h"

#include <QtTest>

class NameSuggestionTest : public QObject
{
    Q_OBJECT

private slots:
    void closest_data();
    void closest();
};

void NameSuggestionTest::closest_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("candidates"); // separated by blanks
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *test, const char *name, const char *candidates,
                        const char *expected) {
        QTest::addRow("%s", test) << QString::fromUtf8(name) << QString::fromUtf8(candidates)
                                  << QString::fromUtf8(expected);
    };
    row("one letter changed", "计树", "总和 计数", "计数");
    row("one letter left out", "按钮标", "按钮标题 按钮", "按钮标题");
    row("one letter too much", "计数数", "计数", "计数");
    row("neighbours swapped", "度长", "宽度 长度", "长度");
    row("case of letters", "Count", "total count", "count");
    row("the closest of several", "取长度x", "取宽度y 取长度", "取长度");
    row("the first of equals", "计人", "计数 计算", "计数");
    row("two letters of a long name", "总销售额统记", "总消售额统计", "总消售额统计");
    row("nothing alike", "成绩", "计数 总和", "");
    row("one letter tells nothing", "甲", "乙", "");
    row("the end of a letter is too far", "计数", "甲", "");
    row("no candidates", "计数", "", "");
}

void NameSuggestionTest::closest()
{
    QFETCH(QString, name);
    QFETCH(QString, candidates);
    QTEST(closestName(name, candidates.split(QLatin1Char(' '), Qt::SkipEmptyParts)), "expected");
}

QTEST_GUILESS_MAIN(NameSuggestionTest)
#include "name_suggestion_test.moc"
