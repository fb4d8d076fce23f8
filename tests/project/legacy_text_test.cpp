// The old form of a program: code and design in one text.
#include "project/legacy_text.h"

#include <QtTest>

class LegacyTextTest : public QObject
{
    Q_OBJECT

private slots:
    void splits_data();
    void splits();
};

void LegacyTextTest::splits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("design");
    QTest::addRow("both") << "甲\n===VL_CODE===\n 乙 \n===VL_UI===\n{丙}\n"
                          << "乙"
                          << "\n{丙}\n";
    QTest::addRow("code only") << "===VL_CODE===\n乙\n"
                               << "乙"
                               << "";
    QTest::addRow("no marker") << "\n乙\n"
                               << "\n乙\n"
                               << "";
    QTest::addRow("design marker only") << "乙\n===VL_UI===\n丙"
                                        << "乙\n===VL_UI===\n丙"
                                        << "";
    QTest::addRow("design first") << "===VL_UI===\n丙\n===VL_CODE===\n乙"
                                  << "乙"
                                  << "";
    QTest::addRow("empty parts") << "===VL_CODE======VL_UI==="
                                 << ""
                                 << "";
    QTest::addRow("nothing") << ""
                             << ""
                             << "";
}

void LegacyTextTest::splits()
{
    QFETCH(QString, text);
    const LegacyText parts = splitLegacyText(text);
    QTEST(parts.code, "code");
    QTEST(parts.design, "design");
}

QTEST_APPLESS_MAIN(LegacyTextTest)
#include "legacy_text_test.moc"
