// What stands above the typed line is masked once: that must not show.
#include "editor/masked_code.h"

#include <QtTest>

class MaskedCodeTest : public QObject
{
    Q_OBJECT

private slots:
    void typedIsAsWhole_data();
    void typedIsAsWhole();
};

void MaskedCodeTest::typedIsAsWhole_data()
{
    QTest::addColumn<QString>("source");
    const auto row = [](const char *name, const char *source) {
        QTest::addRow("%s", name) << QString::fromUtf8(source);
    };
    row("code and comments", "甲 = 1 // 一\n乙 = \"二\\\"\" // 三\n丙(");
    row("string over lines", "甲 = \"一\n二\" + 乙\n丙 = 'x\ny'\n丁");
    row("comment over lines", "甲 /* 一\n二 */ 乙\n丙");
    row("raw string", "甲 = r\"--(一\n)\"--\n)--\" + 乙\n丙");
    row("raw string begun above", "甲 = r\n\"--(一)\"二)--\"\n丙");
    row("Chinese quotes", "甲 = “一\n乙 = “二” // 三\n丙");
}

// Typed sign by sign, then erased again.
void MaskedCodeTest::typedIsAsWhole()
{
    QFETCH(QString, source);
    TypedCodeMask mask;
    for (int step = -source.size(); step <= source.size(); ++step) {
        const QString typed = source.left(source.size() - qAbs(step));
        const MaskedCode whole = maskedCode(typed);
        const MaskedCode actual = mask.masked(typed);
        QCOMPARE(actual.text, whole.text);
        QCOMPARE(actual.endsInCode, whole.endsInCode);
    }
}

QTEST_MAIN(MaskedCodeTest)
#include "masked_code_test.moc"
