// The score of a name for what was typed, rule by rule.
#include "editor/completion_score.h"

#include <QtTest>

class CompletionScoreTest : public QObject
{
    Q_OBJECT

private slots:
    void scores_data();
    void scores();
    void scoresWithoutPinyin_data();
    void scoresWithoutPinyin();
    void scoresAliases();
    void countsMistakes_data();
    void countsMistakes();
    void preparesNamesOnce();
};

// `fuzzy` is the score with fuzzy matching.
void CompletionScoreTest::scores_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("plain");
    QTest::addColumn<int>("fuzzy");
    const auto row = [](const char *query, const char *name, int plain, int fuzzy) {
        QTest::addRow("%s in %s", query, name)
            << QString::fromUtf8(query) << QString::fromUtf8(name) << plain << fuzzy;
    };
    const auto both = [&row](const char *query, const char *name, int points) {
        row(query, name, points, points);
    };
    // The name itself, or how it begins.
    both("取文本", "取文本", 100);
    both("md5加密", "MD5加密", 100);
    both("取文", "取文本", 94);
    both("取文", "取文本长度", 92);
    both("MD", "md5加密", 92);
    both("", "取文本", 92);
    // Latin letters first, then initials.
    both("jsonjx", "JSON解析", 92);
    both("jsonj", "JSON解析", 91);
    both("md5jm", "MD5加密", 92);
    both("jsonq", "JSON解析", 50);
    // Initials.
    both("qwb", "取文本", 100);
    both("QWB", "取文本", 100);
    both("qw", "取文本", 89);
    both("q", "取文本", 88);
    both("q", "取文本长度", 86);
    both("ht", "绘图_画线", 88);
    both("bm", "#编码_UTF8", 86);
    // Another reading than the usual one, and letters in order past a silent character.
    both("x", "行数", 85);
    both("hs", "行数", 100);
    both("zd", "长度", 85);
    both("hx", "绘图_画线", 85);
    // One or two mistakes.
    both("qwv", "取文本", 64);
    both("qwbb", "取文本", 64);
    both("wqb", "取文本", 50);
    both("qvv", "取文本", 50);
    row("xyz", "取文本", 0, 0);
    both("qwbxyz", "取文本", 0);
    row("wb", "取文本", 0, 49);
    // Fuzzy: within the name, within the initials, in order.
    row("文本", "取文本", 0, 59);
    row("count", "myBigCounter", 0, 55);
    row("wbcd", "批量取文本长度", 0, 47);
    row("qwcd", "批量取文本长度之", 0, 17);
    row("qd", "取一个很长很长很长很长很长很长很长很长很长很长的", 0, 1);
    row("dq", "取一个很长的", 0, 0);
    // Constants.
    both("#", "#编码_UTF8", 88);
    both("#", "取文本", 0);
    both("#编码_UTF8", "#编码_UTF8", 97);
    both("#编码_u", "#编码_UTF8", 94);
    both("#编码_", "#编码_UTF8", 88);
    both("#编", "#编码_UTF8", 91);
    both("#换行", "#换行符", 96);
    both("#hh", "#换行符", 89);
    both("#hx", "#换行符", 89);
    both("#mb_y", "#MB_YESNO", 93);
    both("#颜色_h", "#颜色_红色", 89);
    both("#颜色_hs", "#颜色_红色", 90);
    both("#ys_h", "#颜色_红色", 89);
    both("#颜色_x", "#颜色_红色", 0);
    both("#尺寸_h", "#颜色_红色", 0);
    row("#行", "#换行符", 0, 58);
    both("#换行", "换行", 0);
}

void CompletionScoreTest::scores()
{
    QFETCH(QString, query);
    QFETCH(QString, name);
    const auto offered = [](int points) { return qMax(points, 0); };
    QTEST(offered(score(query, name)), "plain");
    QTEST(offered(score(query, name, FuzzyMatching::On)), "fuzzy");
}

void CompletionScoreTest::scoresWithoutPinyin_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<int>("expected");
    QTest::newRow("initials") << "qwb" << 0;
    QTest::newRow("Latin first") << "jsonqw" << 0;
    QTest::newRow("beginning") << "json" << 94;
    QTest::newRow("within") << QString::fromUtf8("取") << 56;
}

void CompletionScoreTest::scoresWithoutPinyin()
{
    QFETCH(QString, query);
    const CompletionName name(QString::fromUtf8("JSON取"), PinyinMatching::No);
    QTEST(score(query, name, FuzzyMatching::On), "expected");
}

void CompletionScoreTest::scoresAliases()
{
    const QString alias = QString::fromUtf8("Substr");
    QCOMPARE(aliasScore(QStringLiteral("sub"), alias), 89);
    QCOMPARE(aliasScore(QStringLiteral("SUBSTR"), alias), 86);
    QCOMPARE(aliasScore(QStringLiteral("str"), alias), 0);
    QCOMPARE(aliasScore(QStringLiteral("substring"), alias), 0);
}

void CompletionScoreTest::countsMistakes_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("expected");
    QTest::newRow("same") << "qwb"
                          << "qwb" << 0;
    QTest::newRow("changed") << "qwb"
                             << "qxb" << 1;
    QTest::newRow("left out") << "qwb"
                              << "wb" << 1;
    QTest::newRow("wrong order") << "qwb"
                                 << "wqb" << 2;
    QTest::newRow("long way") << "kitten"
                              << "sitting" << 3;
    QTest::newRow("to nothing") << "abc"
                                << "" << 3;
    QTest::newRow("nothing") << ""
                             << "" << 0;
    QTest::newRow("more than fits on the stack")
        << QString(200, QLatin1Char('a')) << QString(150, QLatin1Char('a')) << 50;
}

void CompletionScoreTest::countsMistakes()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QTEST(levenshtein(a, b), "expected");
    QTEST(levenshtein(b, a), "expected");
}

void CompletionScoreTest::preparesNamesOnce()
{
    CompletionNames names;
    const QString name = QString::fromUtf8("取文本");
    const CompletionName first = names.prepared(name);
    const CompletionName second = names.prepared(name);
    QCOMPARE(first.initials(), QStringLiteral("qwb"));
    QVERIFY(first.initials().constData() == second.initials().constData());
    // Far more names than are kept.
    for (int i = 0; i < 50000; ++i)
        QCOMPARE(names.prepared(QString::number(i)).lower(), QString::number(i));
}

QTEST_GUILESS_MAIN(CompletionScoreTest)
#include "completion_score_test.moc"
