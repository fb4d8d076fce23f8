// What is offered in which order, and how earlier picks change it.
#include "editor/completion_ranking.h"

#include <QTemporaryDir>
#include <QtTest>

class CompletionRankingTest : public QObject
{
    Q_OBJECT

private slots:
    void marksItems_data();
    void marksItems();
    void ranks_data();
    void ranks();
    void picksBreakTies();
    void remembersPicks();
    void forgetsTheOldest();
    void readsAnyBytes_data();
    void readsAnyBytes();
};

namespace {

CompletionCandidate candidate(const char *name, const QStringList &aliases = {})
{
    CompletionItem item;
    item.text = item.display = QString::fromUtf8(name);
    return {item, item.soughtName(), aliases};
}

QStringList names(const QVector<CompletionItem> &items)
{
    QStringList result;
    for (const CompletionItem &item : items)
        result << item.text;
    return result;
}

QString missingFile()
{
    return QStringLiteral("/nonexistent/history.json");
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

void CompletionRankingTest::marksItems_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("takesParameters");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("prefix");
    const auto row = [](CompletionKind kind, bool takesParameters, const char *word,
                        const char *prefix) {
        QTest::addRow("%s %d", word, takesParameters)
            << int(kind) << takesParameters << QString::fromUtf8(word) << QString::fromUtf8(prefix);
    };
    row(CompletionKind::Function, true, "函数", "◆ ");
    row(CompletionKind::Function, false, "函数", "◇ ");
    row(CompletionKind::UserFunction, false, "用户函数", "◇ ");
    row(CompletionKind::Method, false, "方法", "▸ ");
    row(CompletionKind::Snippet, true, "代码片段", "✦ ");
    row(CompletionKind::Constant, true, "常量", "# ");
}

void CompletionRankingTest::marksItems()
{
    QFETCH(int, kind);
    QFETCH(bool, takesParameters);
    CompletionItem item;
    item.kind = CompletionKind(kind);
    item.takesParameters = takesParameters;
    QTEST(item.kindWord(), "word");
    QTEST(item.prefix(), "prefix");
}

void CompletionRankingTest::ranks_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *query, const char *expected) {
        QTest::addRow("%s", query) << QString::fromUtf8(query) << QString::fromUtf8(expected);
    };
    row("qwb", "取文本 取文本长度 写文本 取中间");
    row("取文", "取文本 取文本长度");
    row("q", "取文本 取中间 取文本长度");
    row("subs", "取中间");
    row("mid", "取中间");
    row("z", "长度");
    row("vvvv", "");
}

void CompletionRankingTest::ranks()
{
    const QVector<CompletionCandidate> candidates{
        candidate("取文本长度"),
        candidate("写文本"),
        candidate("取文本"),
        candidate("取中间", {QStringLiteral("mid"), QStringLiteral("substr")}),
        candidate("长度"),
    };
    QFETCH(QString, query);
    const CompletionHistory history(missingFile());
    QTEST(names(rankedCompletions(query, candidates, FuzzyMatching::Off, history))
              .join(QLatin1Char(' ')),
          "expected");
}

void CompletionRankingTest::picksBreakTies()
{
    const QVector<CompletionCandidate> candidates{candidate("甲一"), candidate("甲二"),
                                                  candidate("甲三"), candidate("甲三四")};
    CompletionHistory history(missingFile());
    history.addPick(QString::fromUtf8("甲二"));
    history.addPick(QString::fromUtf8("甲三"));
    history.addPick(QString::fromUtf8("甲三四")); // a lower score stays lower
    const auto items =
        rankedCompletions(QString::fromUtf8("甲"), candidates, FuzzyMatching::Off, history);
    QCOMPARE(names(items).join(QLatin1Char(' ')), QString::fromUtf8("甲三 甲二 甲一 甲三四"));
    QCOMPARE(items.first().score, 94);
    QCOMPARE(items.last().score, 93);
}

void CompletionRankingTest::remembersPicks()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("conf/history.json"));
    {
        CompletionHistory history(path);
        QVERIFY(history.save());
        QVERIFY(!QFile::exists(path)); // nothing to tell
        for (const char *name : {"甲", "乙", "丙", "甲"})
            history.addPick(QString::fromUtf8(name));
        QVERIFY(history.save());
    }
    const CompletionHistory history(path);
    QVERIFY(history.rank(QString::fromUtf8("甲")) > history.rank(QString::fromUtf8("丙")));
    QVERIFY(history.rank(QString::fromUtf8("丙")) > history.rank(QString::fromUtf8("乙")));
    QCOMPARE(history.rank(QString::fromUtf8("丁")), 0);

    CompletionHistory unwritable(path + QStringLiteral("/history.json"));
    unwritable.addPick(QStringLiteral("a"));
    QVERIFY(!unwritable.save());
}

void CompletionRankingTest::forgetsTheOldest()
{
    CompletionHistory history(missingFile());
    history.addPick(QString(CompletionHistory::maxNameLength + 1, QLatin1Char('a')));
    for (int i = 0; i <= CompletionHistory::maxNames; ++i)
        history.addPick(QString::number(i));
    QCOMPARE(history.rank(QStringLiteral("0")), 0);
    QVERIFY(history.rank(QStringLiteral("1")) > 0);
    QCOMPARE(history.rank(QString(CompletionHistory::maxNameLength + 1, QLatin1Char('a'))), 0);
}

void CompletionRankingTest::readsAnyBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("[\"a\"");
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("no text") << QByteArray("\xff\xfe\x80[\"a\"]");
    QTest::newRow("an object") << QByteArray("{\"a\": 1}");
    QTest::newRow("other values") << QByteArray("[1, null, [\"a\"], {\"a\": \"a\"}, \"\"]");
    QTest::newRow("deep") << QByteArray(100000, '[');
    QTest::newRow("huge") << QByteArray("[\"a\"]").leftJustified(2000000, ' ');
}

void CompletionRankingTest::readsAnyBytes()
{
    QFETCH(QByteArray, bytes);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("history.json"));
    write(path, bytes);
    CompletionHistory history(path);
    QCOMPARE(history.rank(QStringLiteral("a")), 0);
    history.addPick(QStringLiteral("b"));
    QVERIFY(history.save());
    QVERIFY(CompletionHistory(path).rank(QStringLiteral("b")) > 0);
}

QTEST_GUILESS_MAIN(CompletionRankingTest)
#include "completion_ranking_test.moc"
