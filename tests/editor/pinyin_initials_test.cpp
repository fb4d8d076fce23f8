// Pinyin initials of names, and names found by them.
#include "editor/pinyin_initials.h"

#include "catalog/command_library.h"

#include <QtTest>

class PinyinInitialsTest : public QObject
{
    Q_OBJECT

private slots:
    void initials_data();
    void initials();
    void everyCommonCharacterHasAnInitial();
    void everyCommandIsFoundByItsInitials();
    void latinOnly_data();
    void latinOnly();
    void matches_data();
    void matches();
};

void PinyinInitialsTest::initials_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *text, const char *expected) {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << expected;
    };
    row("取文本", "qwb");
    row("基", "j");
    row("弹窗", "tc");
    row("校验和", "jyh");
    row("写到文件", "xdwj");
    row("设置窗口标题", "szckbt");
    row("安卓欧二女额", "azoene");
    row("信息框绿色", "xxkls");
    row("MD5加密", "md5jm");
    row("绘图_画线", "hthx");
    row("#编码_UTF8", "bmutf8");
    row("Ａ，。、 ×", "");
    row("", "");
    // The usual readings of characters with several.
    row("行长重数度中", "hccsdz");
    row("调间乐还种率", "tjlhzl");
    row("差空处为作", "ckcwz");
}

void PinyinInitialsTest::initials()
{
    QFETCH(QString, text);
    QTEST(toPinyinInitials(text), "expected");
}

// Up to U+9FA5, where those end that are in use; the exceptions are Japanese.
void PinyinInitialsTest::everyCommonCharacterHasAnInitial()
{
    QString missing;
    for (ushort code = 0x4E00; code <= 0x9FA5; ++code) {
        if (toPinyinInitials(QChar(code)).isEmpty())
            missing.append(QChar(code));
    }
    QCOMPARE(missing, QString::fromUtf8("兙兡嗧桛烪瓧瓰瓱瓼甅"));
}

void PinyinInitialsTest::everyCommandIsFoundByItsInitials()
{
    for (const CommandInfo &command : CommandLibrary::builtin().allCommands()) {
        if (!command.isCallable())
            continue;
        const QString initials = toPinyinInitials(command.name);
        QVERIFY2(!initials.isEmpty(), qPrintable(command.name));
        QVERIFY2(matchesPinyin(initials, command.name), qPrintable(command.name));
    }
}

void PinyinInitialsTest::latinOnly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("letters") << "qWb" << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("digit") << "md5" << false;
    QTest::newRow("Chinese") << QString::fromUtf8("q文") << false;
    QTest::newRow("accent") << QString::fromUtf8("é") << false;
}

void PinyinInitialsTest::latinOnly()
{
    QFETCH(QString, text);
    QTEST(isLatinOnly(text), "expected");
}

void PinyinInitialsTest::matches_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *query, const char *name, bool expected) {
        QTest::addRow("%s in %s", query, name)
            << QString::fromUtf8(query) << QString::fromUtf8(name) << expected;
    };
    row("qwb", "取文本", true);
    row("QW", "取文本", true);
    row("qb", "取文本", false); // nothing is passed over where all characters have initials
    row("qwbx", "取文本", false);
    row("取", "取文本", false);
    row("", "取文本", true);
    row("q", "", false);
    row("", "", false);
    row("md5j", "MD5加密", true);
    row("hthx", "绘图_画线", true);
    row("hx", "绘图_画线", true);
    row("xh", "绘图_画线", false);
    row("_", "绘图_画线", false);
    // Each reading, also of several such characters at once.
    row("h", "行数", true);
    row("x", "行数", true);
    row("cd", "长度", true);
    row("zd", "长度", true);
    row("zxyl", "重行音乐", true);
    row("cxyy", "重行音乐", true);
    row("zxyz", "重行音乐", false);
    row("dy", "调用", true);
    row("ty", "调用", true);
    row("yx", "绘图_音_行", true);
}

void PinyinInitialsTest::matches()
{
    QFETCH(QString, query);
    QFETCH(QString, name);
    QTEST(matchesPinyin(query, name), "expected");
}

QTEST_GUILESS_MAIN(PinyinInitialsTest)
#include "pinyin_initials_test.moc"
