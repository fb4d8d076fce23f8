// The source line below a problem and the mark under its place.
#include "cli/cell_width.h"
#include "cli/source_excerpt.h"

#include <QtTest>

class SourceExcerptTest : public QObject
{
    Q_OBJECT

private slots:
    void widths_data();
    void widths();
    void marks_data();
    void marks();
    void cutsLongLines_data();
    void cutsLongLines();
    void survivesHugeLines();
};

void SourceExcerptTest::widths_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("cells");
    QTest::addRow("empty") << QString() << 0;
    QTest::addRow("letters") << QStringLiteral("Az 9") << 4;
    QTest::addRow("accents") << QStringLiteral("éß") << 2;
    QTest::addRow("Chinese") << QStringLiteral("输出") << 4;
    QTest::addRow("full-width signs") << QStringLiteral("（，。）") << 8;
    QTest::addRow("kana and Hangul") << QStringLiteral("かな한글") << 8;
    QTest::addRow("half-width kana") << QStringLiteral("ｶﾅ") << 2;
    QTest::addRow("beyond 16 bits") << QStringLiteral("𠀀😀") << 4;
    QTest::addRow("combining") << QStringLiteral("e\u0301\u20DD") << 1;
    QTest::addRow("invisible") << QStringLiteral("a\u200Db") << 2;
}

void SourceExcerptTest::widths()
{
    QFETCH(QString, text);
    QTEST(cellWidth(text), "cells");
}

void SourceExcerptTest::marks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("nearText");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("mark");
    const auto row = [](const char *name, const char *text, int column, const char *nearText,
                        const char *source, const char *mark) {
        QTest::addRow("%s", name) << QString::fromUtf8(text) << column
                                  << QString::fromUtf8(nearText) << QString::fromUtf8(source)
                                  << QString::fromUtf8(mark);
    };
    row("at its column", "    输出(计树)", 8, "计树", "   12 |     输出(计树)",
        "      |          ^~~~");
    row("the second of two", "甲 = 甲", 5, "甲", "   12 | 甲 = 甲", "      |      ^~");
    row("one cell", "a = 1", 3, "=", "   12 | a = 1", "      |   ^");
    row("tabs stay", "\t甲\t= 1", 4, "=", "   12 | \t甲\t= 1", "      | \t  \t^");
    row("moved, but there once", "按钮1.标题 = 甲", 16, "甲", "   12 | 按钮1.标题 = 甲",
        "      |              ^~");
    row("moved, and there twice", "甲 = 甲", 9, "甲", "   12 | 甲 = 甲", "");
    row("part of other words only", "按钮1.标题1", 20, "1", "   12 | 按钮1.标题1", "");
    row("a word among longer ones", "甲乙 + 甲 + 甲_", 1, "甲", "   12 | 甲乙 + 甲 + 甲_",
        "      |        ^~");
    row("not in the line", "输出(1)", 4, "计树", "   12 | 输出(1)", "");
    row("no column", "输出(计树)", 0, "计树", "   12 | 输出(计树)", "");
    row("behind the end", "输出(1)", 80, "", "   12 | 输出(1)", "");
    row("whole text", "输出(\"甲)", 4, "\"甲)", "   12 | 输出(\"甲)", "      |      ^~~~");
    row("blank", " \t ", 1, "x", "", "");
    row("control characters", "a\x1b[2Jb = 1", 8, "=", "   12 | a�[2Jb = 1", "      |        ^");
    row("text that turns round", "输出(\"\u202E\", 甲)", 9, "甲", "   12 | 输出(\"�\", 甲)",
        "      |           ^~");
}

void SourceExcerptTest::marks()
{
    QFETCH(QString, text);
    QFETCH(int, column);
    QFETCH(QString, nearText);
    const SourceExcerpt excerpt = sourceExcerpt(text, {12, column, nearText}, 80);
    QTEST(excerpt.source, "source");
    QTEST(excerpt.mark, "mark");
}

void SourceExcerptTest::cutsLongLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("nearText");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("mark");
    const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz").repeated(3);
    QTest::addRow("at the start") << QStringLiteral("输出(甲) + ") + letters << QStringLiteral("甲")
                                  << "    7 | 输出(甲) + abcdefghijklmnopqrs…"
                                  << "      |      ^~";
    QTest::addRow("in the middle")
        << letters + QStringLiteral(" + 甲 + ") + letters << QStringLiteral("甲")
        << "    7 | …opqrstuvwxyz + 甲 + abcdefghij…"
        << "      |                 ^~";
    QTest::addRow("at the end") << letters + QStringLiteral(" + 甲") << QStringLiteral("甲")
                                << "    7 | …bcdefghijklmnopqrstuvwxyz + 甲"
                                << "      |                              ^~";
    QTest::addRow("nowhere") << letters << QStringLiteral("甲")
                             << "    7 | abcdefghijklmnopqrstuvwxyzabcd…"
                             << "";
    QTest::addRow("a long place") << QStringLiteral("甲 = \"") + letters
                                  << QLatin1Char('"') + letters
                                  << "    7 | 甲 = \"abcdefghijklmnopqrstuvwx…"
                                  << "      |      ^~~~~~~~~~~~~~~~~~~~~~~~~";
}

void SourceExcerptTest::cutsLongLines()
{
    QFETCH(QString, text);
    QFETCH(QString, nearText);
    constexpr int cells = 40;
    const SourceExcerpt excerpt = sourceExcerpt(text, {7, 1, nearText}, cells);
    QTEST(excerpt.source, "source");
    QTEST(excerpt.mark, "mark");
    QVERIFY(cellWidth(excerpt.source) <= cells);
}

// Neither a line without an end nor one without any width is printed whole.
void SourceExcerptTest::survivesHugeLines()
{
    const QString endless = QStringLiteral("甲").repeated(1000000);
    const QString flat = QStringLiteral("a") + QString(1000000, QChar(u'\u0301'));
    QVERIFY(sourceExcerpt(endless, {1, 500000, endless}, 100).source.size() < 1000);
    QVERIFY(sourceExcerpt(flat, {1, 1, QStringLiteral("a")}, 100).source.size() < 1000);
}

QTEST_APPLESS_MAIN(SourceExcerptTest)
#include "source_excerpt_test.moc"
