// How two texts differ.
#include "shell/text_difference.h"

#include <QRandomGenerator>
#include <QtTest>

class TextDifferenceTest : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void givesBothTextsBack_data();
    void givesBothTextsBack();
    void words_data();
    void words();
    void rows();
};

namespace {

// "=a -b +c": one word for each line.
QString written(const QStringList &left, const QStringList &right)
{
    QStringList result;
    for (const DifferenceRun &run : lineDifference(left, right)) {
        for (int i = 0; i < run.count; ++i) {
            if (run.kind == DifferenceRun::Kind::Added)
                result << '+' + right.at(run.right + i);
            else
                result << (run.kind == DifferenceRun::Kind::Equal ? '=' : '-') +
                              left.at(run.left + i);
        }
    }
    return result.join(' ');
}

QStringList charactersOf(const QString &text)
{
    return text.split(QString(), Qt::SkipEmptyParts);
}

QStringList randomLines(int count, int kinds, quint32 seed)
{
    QRandomGenerator random(seed);
    QStringList result;
    for (int i = 0; i < count; ++i)
        result << QString::number(random.bounded(kinds));
    return result;
}

QString marked(const QString &line, const QVector<TextSpan> &spans)
{
    QString result = line;
    for (int i = spans.size() - 1; i >= 0; --i) {
        result.insert(spans.at(i).start + spans.at(i).length, ']');
        result.insert(spans.at(i).start, '[');
    }
    return result;
}

} // namespace

void TextDifferenceTest::lines_data()
{
    QTest::addColumn<QString>("left"); // a character is a line
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("difference");
    QTest::addRow("nothing") << ""
                             << ""
                             << "";
    QTest::addRow("same") << "abc"
                          << "abc"
                          << "=a =b =c";
    QTest::addRow("all new") << ""
                             << "ab"
                             << "+a +b";
    QTest::addRow("all gone") << "ab"
                              << ""
                              << "-a -b";
    QTest::addRow("nothing in common") << "ab"
                                       << "xy"
                                       << "-a -b +x +y";
    QTest::addRow("inserted") << "abd"
                              << "abcd"
                              << "=a =b +c =d";
    QTest::addRow("removed") << "abcd"
                             << "abd"
                             << "=a =b -c =d";
    QTest::addRow("replaced") << "abc"
                              << "axc"
                              << "=a -b +x =c";
    QTest::addRow("at both ends") << "abc"
                                  << "xabcy"
                                  << "+x =a =b =c +y";
    QTest::addRow("repeated") << "aaa"
                              << "aa"
                              << "=a =a -a";
    QTest::addRow("twice") << "abcdef"
                           << "axcdyf"
                           << "=a -b +x =c =d -e +y =f";
    QTest::addRow("swapped") << "ab"
                             << "ba"
                             << "-a =b +a";
}

void TextDifferenceTest::lines()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QTEST(written(charactersOf(left), charactersOf(right)), "difference");
}

void TextDifferenceTest::givesBothTextsBack_data()
{
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QStringList>("right");
    QTest::addColumn<int>("leastEqual");
    for (const int kinds : {2, 5, 50, 1000000}) {
        for (const int count : {7, 60, 20000}) {
            QTest::addRow("%d lines of %d kinds", count, kinds)
                << randomLines(count, kinds, 1) << randomLines(count + 3, kinds, 2) << 0;
        }
    }
    const QStringList text = randomLines(20000, 1000000, 3);
    QStringList edited = text;
    for (int i = 0; i < edited.size(); i += 100)
        edited[i] = "changed";
    edited.insert(5000, "inserted");
    QTest::addRow("few edits") << text << edited << 19800;
    // Further apart than one search goes.
    const QStringList block = randomLines(6000, 1000000, 4);
    QTest::addRow("large insertion") << text << text.mid(0, 9000) + block + text.mid(9000) << 20000;
}

// Also a guard against a search that takes minutes: then the test runs into its time limit.
void TextDifferenceTest::givesBothTextsBack()
{
    QFETCH(QStringList, left);
    QFETCH(QStringList, right);
    QFETCH(int, leastEqual);
    QStringList gotLeft, gotRight;
    int equal = 0;
    for (const DifferenceRun &run : lineDifference(left, right)) {
        QVERIFY(run.count > 0);
        if (run.kind != DifferenceRun::Kind::Added) {
            QCOMPARE(run.left, gotLeft.size());
            gotLeft += left.mid(run.left, run.count);
        }
        if (run.kind != DifferenceRun::Kind::Removed) {
            QCOMPARE(run.right, gotRight.size());
            gotRight += right.mid(run.right, run.count);
        }
        if (run.kind == DifferenceRun::Kind::Equal) {
            QCOMPARE(left.mid(run.left, run.count), right.mid(run.right, run.count));
            equal += run.count;
        }
    }
    QCOMPARE(gotLeft, left);
    QCOMPARE(gotRight, right);
    QVERIFY2(equal >= leastEqual, qPrintable(QString::number(equal)));
}

void TextDifferenceTest::words_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("markedLeft");
    QTest::addColumn<QString>("markedRight");
    QTest::addRow("same") << "a = 1"
                          << "a = 1"
                          << "a = 1"
                          << "a = 1";
    QTest::addRow("number") << "a = 12"
                            << "a = 13"
                            << "a = [12]"
                            << "a = [13]";
    QTest::addRow("Chinese") << "整数 甲 = 1"
                             << "整数 乙丙 = 1"
                             << "整数 [甲] = 1"
                             << "整数 [乙丙] = 1";
    QTest::addRow("added word") << "f(a)"
                                << "f(a, b)"
                                << "f(a)"
                                << "f(a[, b])";
    QTest::addRow("empty") << ""
                           << "x"
                           << ""
                           << "[x]";
}

void TextDifferenceTest::words()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    const ChangedWords changed = wordDifference(left, right);
    QTEST(marked(left, changed.left), "markedLeft");
    QTEST(marked(right, changed.right), "markedRight");
}

void TextDifferenceTest::rows()
{
    QString text;
    const auto runs = lineDifference(charactersOf("abcdgh"), charactersOf("axyzdvgk"));
    for (const DifferenceRow &row : differenceRows(runs))
        text += QStringLiteral("%1%2%3 ")
                    .arg(QLatin1Char("=~-+"[int(row.kind)]))
                    .arg(row.left)
                    .arg(row.right);
    QCOMPARE(text, QStringLiteral("=00 ~11 ~22 +-13 =34 +-15 =46 ~57 "));
}

QTEST_GUILESS_MAIN(TextDifferenceTest)
#include "text_difference_test.moc"
