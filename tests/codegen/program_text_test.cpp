// Cutting and joining the generated text, and the places where the driver inserts.
#include "codegen/program_text.h"

#include <QtTest>

class ProgramTextTest : public QObject
{
    Q_OBJECT

private slots:
    void oneFileAndProgramOnly();
    void libraryTextGoesBehindTheArrayTypes();
    void libraryTextWithoutRuntime();
    void leadingBlock_data();
    void leadingBlock();

private:
    static ProgramText sample();
};

static const char kTypedef[] =
    "typedef std::vector<std::vector<std::vector<VL_Any>>> VL_Array3D;\n";

ProgramText ProgramTextTest::sample()
{
    ProgramText text;
    text.appendRuntime(ProgramText::PartKind::RuntimeHeader, QStringLiteral("20_constants"),
                       QLatin1String(kTypedef));
    text.appendRuntime(ProgramText::PartKind::RuntimeSource, QStringLiteral("20_constants"),
                       QStringLiteral("int source;\n"));
    text.append(QStringLiteral("int user;\n"));
    return text;
}

void ProgramTextTest::oneFileAndProgramOnly()
{
    const ProgramText text = sample();
    QCOMPARE(text.oneFile(), QLatin1String(kTypedef) + QStringLiteral("int source;\nint user;\n"));
    QCOMPARE(text.programOnly(), QStringLiteral("int user;\n"));
    QCOMPARE(text.runtimeSections(), QStringList{QStringLiteral("20_constants")});
    QVERIFY(text.programContains(QStringLiteral("user")));
    QVERIFY(!text.programContains(QStringLiteral("source")));
}

void ProgramTextTest::libraryTextGoesBehindTheArrayTypes()
{
    ProgramText text = sample();
    text.insertLibraryText(QStringLiteral("int library;\n"));
    QCOMPARE(text.programOnly(), QStringLiteral("int library;\nint user;\n"));
    QVERIFY(text.oneFile().indexOf(QStringLiteral("VL_Array3D")) <
            text.oneFile().indexOf(QStringLiteral("library")));
}

void ProgramTextTest::libraryTextWithoutRuntime()
{
    ProgramText text;
    text.append(QStringLiteral("int a;\nint WINAPI wWinMain() {}\n"));
    text.insertLibraryText(QStringLiteral("int library;\n"));
    QCOMPARE(text.oneFile(), QStringLiteral("int a;\nint library;\nint WINAPI wWinMain() {}\n"));
}

void ProgramTextTest::leadingBlock_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("directives") << QStringLiteral("#include <a>\n\n// b\nint c;\n")
                                << QStringLiteral("#include <a>\n\n// b\nX\nint c;\n");
    QTest::newRow("conditional") << QStringLiteral("#ifdef A\nint a;\n#endif\nint c;\n")
                                 << QStringLiteral("#ifdef A\nint a;\n#endif\nX\nint c;\n");
    QTest::newRow("nothing") << QStringLiteral("int c;\n") << QStringLiteral("X\nint c;\n");
    QTest::newRow("only directives")
        << QStringLiteral("#define A") << QStringLiteral("#define AX\n");
}

void ProgramTextTest::leadingBlock()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    ProgramText text;
    text.append(before);
    text.insertBehindLeadingBlock(QStringLiteral("X\n"));
    QCOMPARE(text.oneFile(), after);
}

QTEST_GUILESS_MAIN(ProgramTextTest)
#include "program_text_test.moc"
