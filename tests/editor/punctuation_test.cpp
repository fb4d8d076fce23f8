// Chinese punctuation turned into ASCII where it is code.
#include "editor/punctuation.h"

#include <QtTest>

class PunctuationTest : public QObject
{
    Q_OBJECT

private slots:
    void converts_data();
    void converts();
};

void PunctuationTest::converts_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("code");
    const auto row = [](const char *name, const char *typed, const char *code) {
        QTest::addRow("%s", name) << QString::fromUtf8(typed) << QString::fromUtf8(code);
    };
    row("every sign", "（），、；：【】［］｛｝‘’", "(),,;:[][]{}''");
    row("inside a string", "输出（\"你好，（世界）\"，甲）", "输出(\"你好，（世界）\",甲)");
    row("an escaped quote goes on", "输出（\"甲\\\"，乙\"，丙）", "输出(\"甲\\\"，乙\",丙)");
    row("Chinese quotes open no string", "输出（“你好，世界”）", "输出(\"你好,世界\")");
    row("nothing to do", "输出(\"a\", 1)", "输出(\"a\", 1)");
    row("signs that stay", "甲 ≠ 乙 × 2 ？！", "甲 ≠ 乙 × 2 ？！");
    row("empty", "", "");
}

void PunctuationTest::converts()
{
    QFETCH(QString, typed);
    QTEST(withAsciiPunctuation(typed), "code");
}

QTEST_GUILESS_MAIN(PunctuationTest)
#include "punctuation_test.moc"
