// The breakpoints of all files.
#include "shell/breakpoint_store.h"

#include "test_files.h"

#include <QTemporaryDir>

class BreakpointStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void comeBack();
    void nothingIsWrittenForNothing();
    void belongToTheirProject();
    void projectsMove();
    void anyBytesAreRead_data();
    void anyBytesAreRead();
    void otherContentStays();
    void failureIsTold();

private:
    QString path(const QString &name) const { return m_folder->path() + '/' + name; }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

QString written(const CompilerDebugBreakpointsMap &map, const QString &folder)
{
    QStringList files;
    for (auto file = map.begin(); file != map.end(); ++file) {
        QStringList lines;
        for (const int line : file.value())
            lines << QString::number(line);
        files << QDir(folder).relativeFilePath(file.key()) + ':' + lines.join(',');
    }
    return files.join(' ');
}

} // namespace

// A project "p" with another one in it, and a file outside.
void BreakpointStoreTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    for (const char *file : {"p/source/main.vc", "p/inner/main.vc", "outside.vc"})
        TestFiles::writeFile(path(file), "1\n2\n3\n");
}

void BreakpointStoreTest::comeBack()
{
    {
        BreakpointStore store(path("data"));
        store.openProject(path("p"));
        store.setBreakpoints(path("p/source/main.vc"), {7, 3});
        store.setBreakpoints(path("p/source/../source/not yet.vc"), {1});
        store.setBreakpoints(path("outside.vc"), {2});
    }
    BreakpointStore store(path("data"));
    QCOMPARE(written(store.all(), path("")), QStringLiteral("outside.vc:2"));
    store.openProject(path("p"));
    QCOMPARE(store.breakpoints(path("p/source/main.vc")), (QSet<int>{3, 7}));
    QCOMPARE(written(store.all(), path("")),
             QStringLiteral("outside.vc:2 p/source/main.vc:3,7 p/source/not yet.vc:1"));
    QCOMPARE(TestFiles::readFile(path("p/.voreldesk/.gitignore")), QByteArray("*\n"));
    store.closeProject(path("p"));
    QCOMPARE(store.breakpoints(path("p/source/main.vc")), QSet<int>());
}

void BreakpointStoreTest::nothingIsWrittenForNothing()
{
    BreakpointStore store(path("data"));
    store.openProject(path("p"));
    for (const QSet<int> &lines : {QSet<int>(), QSet<int>{4}, QSet<int>()}) {
        store.setBreakpoints(path("p/source/main.vc"), lines);
        store.setBreakpoints(path("outside.vc"), lines);
        QCOMPARE(QFile::exists(path("p/.voreldesk")), !lines.isEmpty());
        QCOMPARE(QFile::exists(path("data/breakpoints.json")), !lines.isEmpty());
    }
}

void BreakpointStoreTest::belongToTheirProject()
{
    BreakpointStore store(path("data"));
    store.openProject(path("p"));
    store.openProject(path("p/inner"));
    store.setBreakpoints(path("p/source/main.vc"), {1});
    store.setBreakpoints(path("p/inner/main.vc"), {2});
    QCOMPARE(written(store.all(path("p")), path("")), QStringLiteral("p/source/main.vc:1"));
    QCOMPARE(written(store.all(path("p/inner")), path("")), QStringLiteral("p/inner/main.vc:2"));
}

void BreakpointStoreTest::projectsMove()
{
    {
        BreakpointStore store(path("data"));
        store.openProject(path("p"));
        store.setBreakpoints(path("p/source/main.vc"), {1});
    }
    QVERIFY(QDir().rename(path("p"), path("moved")));
    BreakpointStore store(path("data"));
    store.openProject(path("moved"));
    QCOMPARE(store.breakpoints(path("moved/source/main.vc")), QSet<int>{1});
}

void BreakpointStoreTest::anyBytesAreRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("found");
    QTest::addColumn<bool>("isKeptAside");
    QTest::addRow("empty") << QByteArray() << "" << true;
    QTest::addRow("binary") << QByteArray(4000, '\xfe') << "" << true;
    QTest::addRow("cut off") << QByteArray(R"({"breakpoints":{"a.vc":[1)") << "" << true;
    QTest::addRow("other types") << QByteArray(R"({"breakpoints":[1]})") << "" << false;
    QTest::addRow("lines") << QByteArray(R"({"breakpoints":{"a.vc":[0,-3,"2",5,5,1e99,4]}})")
                           << "a.vc:4,5" << false;
    QTest::addRow("names out of the project")
        << QByteArray(R"({"breakpoints":{"../x.vc":[1],"/x.vc":[1],"a/../../x.vc":[1]}})") << ""
        << false;
}

void BreakpointStoreTest::anyBytesAreRead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isKeptAside);
    const QString file = BreakpointStore::projectFile(path("p"));
    TestFiles::writeFile(file, bytes);
    BreakpointStore store(path("data"));
    store.openProject(path("p"));
    QTEST(written(store.all(), path("p")), "found");
    store.setBreakpoints(path("p/source/main.vc"), {1});
    QCOMPARE(TestFiles::readFile(file + ".bak"), isKeptAside ? bytes : QByteArray());
    BreakpointStore next(path("data"));
    next.openProject(path("p"));
    QCOMPARE(next.breakpoints(path("p/source/main.vc")), QSet<int>{1});
}

void BreakpointStoreTest::otherContentStays()
{
    const QString file = BreakpointStore::projectFile(path("p"));
    TestFiles::writeFile(file, R"({"notes":[1]})");
    BreakpointStore store(path("data"));
    store.openProject(path("p"));
    store.setBreakpoints(path("p/source/main.vc"), {1});
    QVERIFY(TestFiles::readFile(file).contains("breakpoints"));
    store.setBreakpoints(path("p/source/main.vc"), {});
    const QByteArray left = TestFiles::readFile(file).simplified();
    QCOMPARE(left, QByteArray(R"({ "notes": [ 1 ] })"));
}

void BreakpointStoreTest::failureIsTold()
{
    TestFiles::writeFile(path("data"), "a file where the folder should be");
    BreakpointStore store(path("data"));
    QSignalSpy failed(&store, &BreakpointStore::writeFailed);
    store.setBreakpoints(path("outside.vc"), {1});
    QCOMPARE(failed.size(), 1);
    QCOMPARE(store.breakpoints(path("outside.vc")), QSet<int>{1});
}

QTEST_GUILESS_MAIN(BreakpointStoreTest)
#include "breakpoint_store_test.moc"
