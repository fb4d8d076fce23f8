// collapsedSource: equal results mean equal tokens, and layout and comments do not count.
#include "driver/driver_test.h"
#include "driver/source_collapser.h"
#include "frontend/lexer.h"

#include <QHash>
#include <QRandomGenerator>

namespace {

// What the parser sees of a text, places left out.
QByteArray tokensOf(const QString &source)
{
    QByteArray tokens;
    const QList<Lexer::Token> list = Lexer(source).tokenize();
    for (const Lexer::Token &token : list) {
        const QByteArray text(reinterpret_cast<const char *>(token.text.utf16()),
                              token.text.size() * int(sizeof(ushort)));
        tokens +=
            QByteArray::number(token.type) + ' ' + QByteArray::number(text.size()) + ' ' + text;
    }
    return tokens;
}

const QStringList &gaps()
{
    static const QStringList texts{QStringLiteral(" "),
                                   QStringLiteral("\t  "),
                                   QStringLiteral("\n"),
                                   QStringLiteral("\r\n \n"),
                                   QStringLiteral(" // 注释 \"未完 /* ' \n"),
                                   QStringLiteral(" ／／ 全角\n"),
                                   QStringLiteral("/* 多行\n\"引号 /* 嵌套 */ 注释 */"),
                                   QStringLiteral("\n// =====甲.vc =====\n")};
    return texts;
}

} // namespace

class SourceCollapserTest : public QObject
{
    Q_OBJECT

private slots:
    void collapses_data();
    void collapses();
    void sameResultMeansSameTokens();
    void ignoresLayoutOfPrograms_data();
    void ignoresLayoutOfPrograms();
    void takesLinearTime();
};

void SourceCollapserTest::collapses_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("result");
    QTest::addRow("layout") << " 甲 =\t1\r\n\n  乙\n"
                            << "甲 = 1 乙";
    QTest::addRow("comments") << "// 一\n甲 /* 二 */ 乙 ／／ 三\n丙// 四"
                              << "甲 乙 丙";
    QTest::addRow("nested comment") << "甲 /* /* */ 乙 */ 丙"
                                    << "甲 丙";
    QTest::addRow("comment without an end") << "甲 /* 乙"
                                            << "甲";
    QTest::addRow("strings") << "输出( \"a  b\n // c\" , 'd\t\te' )"
                             << "输出( \"a  b\n // c\" , 'd\t\te' )";
    QTest::addRow("escaped quote") << "\"a\\\"  // b\"  c"
                                   << "\"a\\\"  // b\" c";
    QTest::addRow("raw string") << "甲 = r \"-(a\"  )\"  b)-\"  乙"
                                << "甲 = r\"-(a\"  )\"  b)-\" 乙";
    QTest::addRow("raw string in a comment's place") << "r/**/\"(a  b)\""
                                                     << "r \"(a  b)\"";
    QTest::addRow("no raw string in a word") << "xr\"(a\"  b)"
                                             << "xr\"(a\" b)";
    QTest::addRow("raw string behind a number") << "1r\"(a\"  b)\""
                                                << "1r\"(a\"  b)\"";
    QTest::addRow("wide slashes in a word") << "甲／／乙  丙"
                                            << "甲／／乙 丙";
    QTest::addRow("wide blank is a word") << "甲　　乙"
                                          << "甲　　乙";
    QTest::addRow("string without an end") << "甲  \"乙  丙\n"
                                           << "甲 \"乙  丙\n";
    QTest::addRow("division") << "甲 / 乙 / *丙"
                              << "甲 / 乙 / *丙";
    QTest::addRow("nothing") << " \n/* */ //"
                             << "";
}

void SourceCollapserTest::collapses()
{
    QFETCH(QString, source);
    QTEST(collapsedSource(source), "result");
}

// Short random texts meet all corners, and many of them collapse to the same.
void SourceCollapserTest::sameResultMeansSameTokens()
{
    const QStringList pieces{
        " ",  "\n", "\"", "'",  "\\",   "(",   ")",    "-",  "/",  "*",
        "／", "//", "/*", "*/", "0x",   "1",   ".",    "r",  "R",  "#",
        "x",  "甲", "　", "=",  "r\"(", ")\"", "如果", "１", "\t", QString(QChar(0))};
    QRandomGenerator random(7);
    QHash<QString, QPair<QString, QByteArray>> known;
    int met = 0;
    for (int round = 0; round < 60000; ++round) {
        QString source;
        for (int count = random.bounded(1, 8); count > 0; --count)
            source += pieces.at(random.bounded(pieces.size()));
        const QString result = collapsedSource(source);
        const QByteArray tokens = tokensOf(source);
        const auto other = known.constFind(result);
        if (other == known.constEnd()) {
            known.insert(result, {source, tokens});
            continue;
        }
        met += other->first != source ? 1 : 0;
        QVERIFY2(other->second == tokens,
                 qPrintable(QStringLiteral("[%1] and [%2]").arg(source, other->first)));
    }
    QVERIFY(met > 5000);
}

void SourceCollapserTest::ignoresLayoutOfPrograms_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(VOREL_SOURCE_DIR "/tests/programs"));
    const QStringList names = folder.entryList({QStringLiteral("*.vc")}, QDir::Files);
    QVERIFY(!names.isEmpty());
    for (const QString &name : names)
        QTest::addRow("%s", qPrintable(name)) << folder.filePath(name);
}

void SourceCollapserTest::ignoresLayoutOfPrograms()
{
    QFETCH(QString, path);
    const QString source = QString::fromUtf8(DriverTest::readFile(path));
    const QString result = collapsedSource(source);
    QCOMPARE(tokensOf(result), tokensOf(source));
    // The tokens begin and end where the blanks of the result are; each run becomes another one.
    QRandomGenerator random(11);
    const QList<Lexer::Token> tokens = Lexer(result).tokenize();
    QString edited = gaps().at(2);
    int copied = 0;
    for (const Lexer::Token &token : tokens) {
        // Columns serve as offsets only while no string has spanned lines.
        if (token.line > 1)
            break;
        const int begin = token.column - 1;
        if (begin == 0 || result.at(begin - 1) != QLatin1Char(' ') || begin > result.size())
            continue;
        edited += result.midRef(copied, begin - 1 - copied);
        edited += gaps().at(random.bounded(gaps().size()));
        copied = begin;
    }
    edited += result.midRef(copied);
    edited += gaps().last();
    QCOMPARE(collapsedSource(edited), result);
    QCOMPARE(tokensOf(edited), tokensOf(source));
}

void SourceCollapserTest::takesLinearTime()
{
    // Each would take minutes if one piece looked at all that follows it.
    for (const char *piece : {"r ", "r\"-", "/*", "\"\\", "r\"-(", "r          ", "// \n"}) {
        const QString text = QString::fromLatin1(piece).repeated(400000);
        QVERIFY(collapsedSource(text).size() <= text.size());
    }
}

QTEST_GUILESS_MAIN(SourceCollapserTest)
#include "source_collapser_test.moc"
