// References to components: which are completed with the window's name, and which stay.
#include "project/window_prefix.h"

#include "codegen/generator_tables.h"

#include <QtTest>

class WindowPrefixTest : public QObject
{
    Q_OBJECT

private slots:
    void completes_data();
    void completes();
    void leaves_data();
    void leaves();
    void takesOnlyKnownComponents();
    void needsAWindowThatIsAWord();
    void knowsTheKindsOfTheGenerator();
    void keepsEveryLine();
    void repeatsWithoutChange();
    void takesLargeTexts();
};

void WindowPrefixTest::completes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::addRow("handler") << "函数 按钮1.单击()\n{\n}"
                             << "函数 窗口2.按钮1.单击()\n{\n}";
    QTest::addRow("handler, blanks") << "函数\t  按钮12.单击  ("
                                     << "函数\t  窗口2.按钮12.单击  (";
    QTest::addRow("write") << "按钮1.标题 = \"甲\""
                           << "窗口2.按钮1.标题 = \"甲\"";
    QTest::addRow("write without blanks") << "按钮1.标题=1"
                                          << "窗口2.按钮1.标题=1";
    QTest::addRow("read") << "甲=标签3.标题"
                          << "甲=窗口2.标签3.标题";
    QTest::addRow("keyword as member") << "甲 = 文本框1.文本"
                                       << "甲 = 窗口2.文本框1.文本";
    QTest::addRow("latin member") << "甲 = 表格1.text\n"
                                  << "甲 = 窗口2.表格1.text\n";
    QTest::addRow("longest kind") << "多行文本框1.文本 = 甲"
                                  << "窗口2.多行文本框1.文本 = 甲";
    QTest::addRow("argument") << "输出(按钮1.标题,标签2.标题)"
                              << "输出(窗口2.按钮1.标题,窗口2.标签2.标题)";
    QTest::addRow("index") << "甲[滑块1.值]"
                           << "甲[窗口2.滑块1.值]";
    QTest::addRow("call") << "列表框1.添加项目(列表框2.取项目文本(1))"
                          << "窗口2.列表框1.添加项目(窗口2.列表框2.取项目文本(1))";
    QTest::addRow("full-width signs") << "输出（按钮1.标题，标签1.标题）"
                                      << "输出（窗口2.按钮1.标题，窗口2.标签1.标题）";
    QTest::addRow("behind a string") << "输出(\"a\\\"b\", 按钮1.标题)"
                                     << "输出(\"a\\\"b\", 窗口2.按钮1.标题)";
    QTest::addRow("behind a comment") << "/* 甲\n乙 */ 按钮1.标题 = 1 // 丙\n\t按钮2.标题 = 1"
                                      << "/* 甲\n乙 */ 窗口2.按钮1.标题 = 1 // 丙\n\t窗口2.按钮2."
                                         "标题 = 1";
    QTest::addRow("behind a raw string") << "输出(r\"-(a\n\")-\")\n按钮1.标题 = 1"
                                         << "输出(r\"-(a\n\")-\")\n窗口2.按钮1.标题 = 1";
    QTest::addRow("class of one name as value") << "返回 整数(按钮1.宽度)"
                                                << "返回 整数(窗口2.按钮1.宽度)";
    QTest::addRow("declared with a reference as value")
        << "整数 甲 = 按钮1.宽度, 乙 = 按钮2.宽度 "
        << "整数 甲 = 窗口2.按钮1.宽度, 乙 = 窗口2.按钮2.宽度 ";
    QTest::addRow("other name declared") << "整数 按钮2\n按钮1.标题 = 1"
                                         << "整数 按钮2\n窗口2.按钮1.标题 = 1";
    QTest::addRow("at the end") << "甲 = 按钮1.标题"
                                << "甲 = 窗口2.按钮1.标题";
    QTest::addRow("beyond the first plane") << "\"😀\" 按钮1.标题"
                                            << "\"😀\" 窗口2.按钮1.标题";
}

void WindowPrefixTest::completes()
{
    QFETCH(QString, text);
    QTEST(withWindowPrefix(text, QStringLiteral("窗口2")), "expected");
}

void WindowPrefixTest::leaves_data()
{
    QTest::addColumn<QString>("text");
    QTest::addRow("string") << "输出(\" 按钮1.标题 \")";
    QTest::addRow("single quotes") << "输出(' 按钮1.标题 ')";
    QTest::addRow("string over lines") << "输出(\"甲\n按钮1.标题 = 1\n\")";
    QTest::addRow("escaped quote") << "输出(\"\\\" 按钮1.标题 \")";
    QTest::addRow("raw string") << "输出(r\"( 按钮1.标题 \" 按钮1.标题 )\")";
    QTest::addRow("unclosed string") << "输出(\"甲\n按钮1.标题 = 1";
    QTest::addRow("line comment") << "// 按钮1.标题 = 1";
    QTest::addRow("full-width line comment") << "／／ 按钮1.标题 = 1";
    QTest::addRow("nested comment") << "/* /* */ 按钮1.标题 = 1 */";
    QTest::addRow("unclosed comment") << "/* 按钮1.标题 = 1";
    QTest::addRow("prefix is there") << "窗口2.按钮1.标题 = 1\n函数 窗口2.按钮1.单击(";
    QTest::addRow("other window") << "主窗口.按钮1.标题 = 窗口3. 按钮1.标题 ";
    QTest::addRow("no number") << "按钮.标题 = 1";
    QTest::addRow("part of a name") << "大按钮1.标题 = 1\n按钮1号.标题 = 1\n按钮１.标题 = 1";
    QTest::addRow("own name") << "确定.标题 = 1\n窗口1.标题 = 1";
    QTest::addRow("no member") << "按钮1 = 1\n按钮1. = 1\n按钮1.5 = 1";
    QTest::addRow("blank at the dot") << "按钮1 .标题 = 1\n按钮1. 标题 = 1";
    QTest::addRow("variable") << "整数 按钮1\n按钮1.标题 = 1";
    QTest::addRow("second variable") << "点 甲 = f(1, 2), 按钮1\n按钮1.标题 = 1";
    QTest::addRow("instance") << "点 按钮1\n按钮1.标题 = 1";
    QTest::addRow("array") << "数组 按钮1[3]\n按钮1.标题 = 1";
    QTest::addRow("parameter") << "函数 甲(整数 乙, 点 按钮1)\n{\n按钮1.标题 = 1\n}";
    QTest::addRow("function") << "函数 按钮1()\n{\n}\n甲 = 按钮1.标题";
    QTest::addRow("loop variable") << "遍历(甲, 序, 按钮1) {\n按钮1.标题 = 1\n}";
    QTest::addRow("nothing") << "";
}

void WindowPrefixTest::leaves()
{
    QFETCH(QString, text);
    QCOMPARE(withWindowPrefix(text, QStringLiteral("窗口2")), text);
}

void WindowPrefixTest::takesOnlyKnownComponents()
{
    const QString text = QStringLiteral("按钮1.标题 = 按钮2.标题\n");
    const QString window = QStringLiteral("窗口2");
    const QSet<QString> one{QStringLiteral("按钮2")};
    QCOMPARE(withWindowPrefix(text, window, one),
             QStringLiteral("按钮1.标题 = 窗口2.按钮2.标题\n"));
    QCOMPARE(withWindowPrefix(text, window, QSet<QString>()), text);
}

void WindowPrefixTest::needsAWindowThatIsAWord()
{
    const QString text = QStringLiteral("按钮1.标题 = 1");
    const char *windows[] = {"", "窗口 2", "窗口.2", "2", "文本", "a\nb", "//", "甲(", "\"甲\""};
    for (const char *window : windows)
        QCOMPARE(withWindowPrefix(text, QString::fromUtf8(window)), text);
}

// A kind that the generator knows by its default name and this table does not would never be
// completed.
void WindowPrefixTest::knowsTheKindsOfTheGenerator()
{
    for (const QString &word : GeneratorTables::instance().componentWords)
        QVERIFY2(componentKinds().contains(word), qPrintable(word));
    QVERIFY(!componentKinds().contains(QStringLiteral("窗口")));
}

void WindowPrefixTest::keepsEveryLine()
{
    QString text;
    for (int i = 0; i < 200; ++i)
        text += QStringLiteral("甲 = \"多\n行\" + 按钮%1.宽度 + 1 // 按钮%1.宽度\n\n").arg(i);
    const QString fixed = withWindowPrefix(text, QStringLiteral("窗口2"));
    QCOMPARE(fixed.count(QLatin1Char('\n')), text.count(QLatin1Char('\n')));
    QCOMPARE(fixed.count(QStringLiteral("窗口2.")), 200);
    QCOMPARE(QString(fixed).remove(QStringLiteral("窗口2.")), text);
}

void WindowPrefixTest::repeatsWithoutChange()
{
    const QString window = QStringLiteral("窗口2");
    const QString once =
        withWindowPrefix(QStringLiteral("函数 按钮1.单击()\n标签1.标题 = 列表框1.项目数 "), window);
    QCOMPARE(once.count(window), 3);
    QCOMPARE(withWindowPrefix(once, window), once);
}

// What is not linear would not come back from these lines.
void WindowPrefixTest::takesLargeTexts()
{
    for (const char *piece : {"甲 ", "整数 甲(", "整数 甲,", "遍历, ", "甲1."}) {
        const QString text =
            QStringLiteral("按钮1.标题 = 1\n") + QString::fromUtf8(piece).repeated(100000);
        QCOMPARE(withWindowPrefix(text, QStringLiteral("窗口2")), QStringLiteral("窗口2.") + text);
    }
}

QTEST_GUILESS_MAIN(WindowPrefixTest)
#include "window_prefix_test.moc"
