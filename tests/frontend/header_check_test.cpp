// Headers of functions and statements that are written wrong.
#include "frontend/header_check.h"
#include "frontend/marked_source.h"

#include <QtTest>

class HeaderCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void finds_data();
    void finds();
};

void HeaderCheckTest::finds_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("text"); // how the message begins behind its line; empty: none
    const auto row = [](const char *name, const char *marked, const char *text) {
        QTest::addRow("%s", name) << QString::fromUtf8(marked) << QString::fromUtf8(text);
    };
    row("no name", "\n¦函数 () {\n}\n", "“函数”后面缺少函数名");
    row("a dot for a name", "¦函数 .按钮1单击() {\n}\n", "“函数”后面缺少函数名");
    row("misspelt branch", "函数 甲() {\n    ¦如里 (真) {\n    }\n}\n",
        "「如里」后面不能接 { }（是否指 如果？）");
    row("unknown word", "函数 甲() {\n    ¦倘若 (真) {\n    }\n}\n", "「倘若」后面不能接 { }。");
    row("name left out", "函数 甲() {\n    ¦()\n}\n", "括号前面缺少函数名");
    row("name left out behind a sign", "函数 甲() {\n    整数 乙 = ¦()\n}\n", "括号前面缺少函数名");
    row("no word ahead of a condition", "函数 甲() {\n    ¦(真) {\n    }\n}\n",
        "括号前面缺少 如果");
    row("methods and events", "类 乙 {\n    方法 丙() { }\n}\n函数 按钮1.单击() { }\n", "");
    row("calls", "函数 甲() {\n    输出(取时间())\n    跳出()\n    返回()\n}\n", "");
    row("a block behind a call", "函数 甲() {\n    输出(1)\n    如果 (真) { }\n}\n", "");
    row("unclosed", "函数 甲(", "");
}

void HeaderCheckTest::finds()
{
    QFETCH(QString, marked);
    QFETCH(QString, text);
    const MarkedSource source(marked);
    const QList<SourceMessage> messages = checkHeaders(Lexer(source.text).tokenize());
    QCOMPARE(messages.size(), text.isEmpty() ? 0 : 1);
    if (messages.isEmpty())
        return;
    QCOMPARE(messages.first().line, source.line);
    QCOMPARE(messages.first().column, source.column);
    const QString expected = QStringLiteral("第 %1 行：").arg(source.line) + text;
    QVERIFY2(messages.first().text.startsWith(expected), qPrintable(messages.first().text));
}

QTEST_GUILESS_MAIN(HeaderCheckTest)
#include "header_check_test.moc"
