// A program's output in pieces: nothing is lost of what one can read, a flood is cut down.
#include "driver/output_throttle.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

class OutputThrottleTest : public QObject
{
    Q_OBJECT

private slots:
    void passesTheFirstTextAtOnce();
    void gathersWhatFollows();
    void cutsIntoPieces_data();
    void cutsIntoPieces();
    void leavesOutTheOldest();
    void finishesAtOnce();

private:
    static QString textOf(const QSignalSpy &pieces)
    {
        QString text;
        for (const QList<QVariant> &piece : pieces)
            text += piece.first().toString();
        return text;
    }
};

void OutputThrottleTest::passesTheFirstTextAtOnce()
{
    OutputThrottle throttle;
    QSignalSpy pieces(&throttle, &OutputThrottle::ready);
    throttle.add(QStringLiteral("请输入："));
    QCOMPARE(textOf(pieces), QStringLiteral("请输入："));
    QTest::qWait(3 * OutputThrottle::interval);
    throttle.add(QStringLiteral("又"));
    QCOMPARE(pieces.size(), 2);
}

void OutputThrottleTest::gathersWhatFollows()
{
    OutputThrottle throttle;
    QSignalSpy pieces(&throttle, &OutputThrottle::ready);
    QString expected;
    for (int i = 0; i < 1000; ++i) {
        const QString line = QStringLiteral("第 %1 行\n").arg(i);
        expected += line;
        throttle.add(line);
    }
    QTRY_COMPARE(textOf(pieces), expected);
    QCOMPARE(pieces.size(), 2);
}

void OutputThrottleTest::cutsIntoPieces_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<bool>("endsLines");
    QTest::addRow("lines") << QStringLiteral("一行文字\n") << true;
    QTest::addRow("one line") << QStringLiteral("字") << false;
    QTest::addRow("pairs") << QStringLiteral("a😀") << false;
}

void OutputThrottleTest::cutsIntoPieces()
{
    QFETCH(QString, unit);
    QFETCH(bool, endsLines);
    OutputThrottle throttle;
    QSignalSpy pieces(&throttle, &OutputThrottle::ready);
    const QString text = unit.repeated(3 * OutputThrottle::maxPiece / unit.size());
    throttle.add(text);
    QVERIFY(throttle.hasMore());
    QTRY_COMPARE(textOf(pieces), text);
    QVERIFY(!throttle.hasMore());
    for (const QList<QVariant> &piece : pieces) {
        const QString part = piece.first().toString();
        QVERIFY(part.size() <= OutputThrottle::maxPiece);
        QVERIFY(!part.at(0).isLowSurrogate());
        QCOMPARE(part.endsWith(QLatin1Char('\n')), endsLines);
    }
}

void OutputThrottleTest::leavesOutTheOldest()
{
    OutputThrottle throttle;
    QSignalSpy pieces(&throttle, &OutputThrottle::ready);
    for (int i = 0; i < 400000; ++i)
        throttle.add(QStringLiteral("第 %1 行\n").arg(i, 6, 10, QLatin1Char('0')));
    QTRY_VERIFY(textOf(pieces).endsWith(QStringLiteral("第 399999 行\n")));
    const QString text = textOf(pieces);
    QVERIFY(text.startsWith(QStringLiteral("第 000000 行\n")));
    QVERIFY(text.size() <= OutputThrottle::maxWaiting + 100);
    // Every line is either whole or among those that were left out.
    static const QRegularExpression note(QStringLiteral("…（输出过多，省略了 (\\d+) 个字符）\n"));
    const QRegularExpressionMatch match = note.match(text);
    QVERIFY(match.hasMatch());
    QCOMPARE(text.size() - match.capturedLength() + match.captured(1).toInt(), 400000 * 11);
}

void OutputThrottleTest::finishesAtOnce()
{
    OutputThrottle throttle;
    QSignalSpy pieces(&throttle, &OutputThrottle::ready);
    throttle.add(QStringLiteral("甲"));
    throttle.add(QStringLiteral("乙"));
    throttle.finish();
    QCOMPARE(textOf(pieces), QStringLiteral("甲乙"));
    throttle.finish();
    QCOMPARE(pieces.size(), 2);
}

QTEST_GUILESS_MAIN(OutputThrottleTest)
#include "output_throttle_test.moc"
