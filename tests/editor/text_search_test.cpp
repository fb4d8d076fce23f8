// What searching finds in a text, what replacing makes of it, and that no expression hangs it.
#include "editor/text_search.h"

#include <QElapsedTimer>
#include <QtTest>

class TextSearchTest : public QObject
{
    Q_OBJECT

private slots:
    void finds_data();
    void finds();
    void replaces_data();
    void replaces();
    void refusesBadExpressions_data();
    void refusesBadExpressions();
    void givesUpOnEndlessExpressions();
    void goesFromHitToHit();
    void keepsToItsRange();
};

namespace {

// Letters: c = case, w = whole words, e = expression.
SearchOptions optionsOf(const QString &letters)
{
    return {letters.contains(QLatin1Char('c')), letters.contains(QLatin1Char('w')),
            letters.contains(QLatin1Char('e'))};
}

} // namespace

void TextSearchTest::finds_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("marked"); // hits in « »
    const auto row = [](const char *name, const char *pattern, const char *options,
                        const char *text, const char *marked) {
        QTest::addRow("%s", name) << QString(pattern) << QString(options) << QString(text)
                                  << QString(marked);
    };
    row("nothing", "", "", "甲", "甲");
    row("any case", "abc", "", "ABC abc", "«ABC» «abc»");
    row("same case", "abc", "c", "ABC abc", "ABC «abc»");
    row("signs as they are", "a.(", "", "axx a.(", "axx «a.(»");
    row("without overlaps", "aa", "", "aaaaa", "«aa»«aa»a");
    row("word in a Chinese name", "求和", "w", "求和 求和2 总求和 求和(求和)",
        "«求和» 求和2 总求和 «求和»(«求和»)");
    row("word beside '_'", "a", "w", "a_ _a a", "a_ _a «a»");
    row("alternatives as words", "甲|乙丙", "we", "甲丁 乙丙 甲", "甲丁 «乙丙» «甲»");
    row("beginnings of lines", "^.", "e", "ab\n\nc", "«a»b\n\n«c»");
    row("ends of lines", "\\w$", "e", "甲乙\nab", "甲«乙»\na«b»");
    row("ends of lines with returns", "\\w$", "e", "甲乙\r\nab\r\n", "甲«乙»\r\na«b»\r\n");
    row("never over a line end", "a\\s*b", "e", "a\nb a b", "a\nb «a b»");
    row("empty places", "x*", "e", "axx", "«»a«xx»«»");
}

void TextSearchTest::finds()
{
    QFETCH(QString, pattern);
    QFETCH(QString, options);
    QFETCH(QString, text);
    const QVector<SearchHit> hits = TextSearch(pattern, optionsOf(options)).all(text);
    for (int i = hits.size() - 1; i >= 0; --i)
        text.insert(hits.at(i).end(), QStringLiteral("»"))
            .insert(hits.at(i).start, QStringLiteral("«"));
    QTEST(text, "marked");
}

void TextSearchTest::replaces_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("with");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *pattern, const char *options,
                        const char *with, const char *text, const char *after) {
        QTest::addRow("%s", name) << QString(pattern) << QString(options) << QString(with)
                                  << QString(text) << QString(after);
    };
    row("plain", "甲", "", "\\1乙", "甲甲", "\\1乙\\1乙");
    row("captures", "(\\w+)=(\\w+)", "e", "\\2=\\1[\\0]", "a=1", "1=a[a=1]");
    row("missing capture", "a", "e", "<\\7>", "a", "<>");
    row("escapes", ",", "e", "\\n\\t\\\\\\q\\", "a,b", "a\n\t\\\\q\\b");
    row("in front of lines", "^", "e", "//", "甲\n乙", "//甲\n//乙");
    row("removal", "b", "", "", "abcb", "ac");
}

void TextSearchTest::replaces()
{
    QFETCH(QString, pattern);
    QFETCH(QString, options);
    QFETCH(QString, with);
    QFETCH(QString, text);
    const auto changes = TextSearch(pattern, optionsOf(options)).replacements(text, with);
    for (int i = changes.size() - 1; i >= 0; --i)
        text.replace(changes.at(i).start, changes.at(i).length, changes.at(i).text);
    QTEST(text, "after");
}

void TextSearchTest::refusesBadExpressions_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("options");
    QTest::newRow("open bracket") << "(a"
                                  << "e";
    QTest::newRow("brackets the wrong way round") << "a)(b"
                                                  << "we";
    QTest::newRow("nothing to repeat") << "*"
                                       << "e";
}

void TextSearchTest::refusesBadExpressions()
{
    QFETCH(QString, pattern);
    QFETCH(QString, options);
    const TextSearch search(pattern, optionsOf(options));
    QVERIFY(search.error().startsWith("正则表达式有误：第 "));
    QString error;
    QVERIFY(search.all("ab(a*", {}, &error).isEmpty());
    QCOMPARE(error, search.error());
}

void TextSearchTest::givesUpOnEndlessExpressions()
{
    const QString text = QString(60, QLatin1Char('a')) + "!\n甲";
    QElapsedTimer time;
    time.start();
    QString error;
    TextSearch("(a+)+$", optionsOf("e")).all(text, {}, &error);
    QCOMPARE(error, QString("表达式太复杂，查找已中止"));
    QVERIFY(TextSearch("(a+)+$|甲", optionsOf("e")).replacements(text, "x", {}, &error).isEmpty());
    QVERIFY(!error.isEmpty());
    QVERIFY(time.elapsed() < 20000);
}

void TextSearchTest::goesFromHitToHit()
{
    const QVector<SearchHit> hits{{2, 2}, {6, 2}};
    const auto next = [&](int position) { return TextSearch::next(hits, position); };
    const auto previous = [&](int position) { return TextSearch::previous(hits, position); };
    QCOMPARE(QList<int>({next(0), next(2), next(3), next(7)}), QList<int>({0, 0, 1, 0}));
    QCOMPARE(QList<int>({previous(9), previous(7), previous(4), previous(3)}),
             QList<int>({1, 0, 0, 1}));
    QCOMPARE(TextSearch::next({}, 0), -1);
    QCOMPARE(TextSearch::previous({}, 0), -1);
}

void TextSearchTest::keepsToItsRange()
{
    const QString text = "aa\naba\na";
    const QVector<SearchHit> expected{{1, 1}, {3, 1}};
    QCOMPARE(TextSearch("a").all(text, {1, 5}), expected);
    // What stands outside of the range is still seen.
    QVERIFY(TextSearch("a", optionsOf("w")).all(text, {1, 5}).isEmpty());
}

QTEST_GUILESS_MAIN(TextSearchTest)
#include "text_search_test.moc"
