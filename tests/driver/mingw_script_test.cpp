// The build script of Windows, and where its compiler is looked for.
#include "driver/driver_test.h"
#include "driver/gcc_command.h"
#include "driver/mingw_script.h"

class MinGwScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void wholeScript();
    void quotesPaths();
    void searchOrder();
    void linksWhatTheTextNeeds();
};

void MinGwScriptTest::wholeScript()
{
    MinGwScript script;
    script.binFolder = QStringLiteral("C:/MinGW/bin");
    script.compiler = QStringLiteral("C:/MinGW/bin/g++.exe");
    script.resourceCompiler = QStringLiteral("C:/MinGW/bin/windres.exe");
    script.folder = QStringLiteral("C:/T/VL_IDE_Build");
    script.source = QStringLiteral("C:/T/main.cpp");
    script.output = QStringLiteral("C:/T/a.exe");
    script.resourceScript = QStringLiteral("C:/T/app_resource.rc");
    script.resourceObject = QStringLiteral("C:/T/app_resource.o");
    script.staticLink = true;
    script.includeFolders = QStringList{QStringLiteral("C:/inc")};
    script.libraryFolders = QStringList{QStringLiteral("C:/lib")};
    script.libraries = QStringList{QStringLiteral("z")};
    script.extraFlags = QStringList{QStringLiteral("-municode")};
    const QByteArray golden = DriverTest::readFile(
        QStringLiteral(VOREL_SOURCE_DIR "/tests/driver/data/mingw_compile.bat"));
    QCOMPARE(mingwScriptText(script), QString::fromUtf8(golden));
}

void MinGwScriptTest::quotesPaths()
{
    MinGwScript script;
    script.compiler = QStringLiteral("C:/a & b/100%/g++.exe");
    script.source = QStringLiteral("C:/你 好/%1!.cpp");
    const QString text = mingwScriptText(script);
    QVERIFY(text.contains(QStringLiteral("if not exist \"C:/a & b/100%%/g++.exe\" (\n")));
    QVERIFY(text.contains(QStringLiteral("not found at: C:/a ^& b/100%%/g++.exe\n")));
    QVERIFY(text.contains(QStringLiteral("\"C:/你 好/%%1^!.cpp\" ")));
    QVERIFY(!text.contains(QStringLiteral("-static ")));
    QVERIFY(!text.contains(QStringLiteral("WINDRES")));
}

void MinGwScriptTest::searchOrder()
{
    const QStringList folders =
        mingwSearchFolders(QStringLiteral("C:/App"), {QStringLiteral("D:/path"), QString()});
    QCOMPARE(folders.first(), QStringLiteral("C:/App/compiler/mingw64/bin"));
    const auto found = [&](const QStringList &present) {
        return findMinGw(folders, [&](const QString &folder) { return present.contains(folder); });
    };
    QCOMPARE(found({QStringLiteral("D:/path"), QStringLiteral("C:/MinGW/bin")}),
             QStringLiteral("C:/MinGW/bin"));
    QCOMPARE(found({QStringLiteral("C:/MinGW/bin"), QStringLiteral("C:/Qt/5.15.2/mingw81_32/bin")}),
             QStringLiteral("C:/Qt/5.15.2/mingw81_32/bin"));
    QCOMPARE(found({QStringLiteral("D:/path")}), QStringLiteral("D:/path"));
    QCOMPARE(found({}), QString());
}

void MinGwScriptTest::linksWhatTheTextNeeds()
{
    const QStringList flags = GccCommand::libraryFlags({QStringLiteral("own")});
    QCOMPARE(flags.first(), QStringLiteral("-lown"));
    for (const char *name : {"-lgdi32", "-lshlwapi", "-lcrypt32", "-lwinmm"})
        QVERIFY2(flags.contains(QLatin1String(name)), name);
    QCOMPARE(QSet<QString>(flags.begin(), flags.end()).size(), flags.size());
    QVERIFY(GccCommand::compileFlags(true).contains(QStringLiteral("-fwrapv")));
    QVERIFY(GccCommand::linkFlags().contains(QStringLiteral("-static")));
}

QTEST_GUILESS_MAIN(MinGwScriptTest)
#include "mingw_script_test.moc"
