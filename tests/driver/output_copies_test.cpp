// What is copied beside a finished program, what is never touched, and what is removed.
#include "driver/driver_test.h"
#include "driver/output_copies.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <memory>

using DriverTest::readFile;
using DriverTest::writeFile;

namespace {

const char synced[] = "已同步工程 resource 到输出目录（与 exe 同级）:";

QStringList filesUnder(const QString &folder)
{
    QStringList names;
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        names << QDir(folder).relativeFilePath(files.next());
    names.sort();
    return names;
}

} // namespace

class OutputCopiesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void mirrorsTheResources();
    void leavesUnchangedFilesAlone();
    void followsLinksWithinTheProjectOnly_data();
    void followsLinksWithinTheProjectOnly();
    void endsInEveryMazeOfLinks();
    void writesThroughNoLink();
    void tellsWhatItCannotCopy();
    void copiesLibraries();
    void removesWhatOnlyToolsNeed();

private:
    QString project(const QString &name = QString()) const
    {
        return m_dir->filePath(QStringLiteral("工程/") + name);
    }
    QString output(const QString &name = QString()) const
    {
        return project(QStringLiteral("build/x64/debug/") + name);
    }
    QStringList copy() const { return OutputCopies::copyProjectResources(project(), output()); }
    void link(const QString &target, const QString &name) const
    {
        QDir().mkpath(QFileInfo(project(name)).path());
        QVERIFY(QFile::link(target, project(name)));
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void OutputCopiesTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(output()));
    writeFile(m_dir->filePath(QStringLiteral("outside/secret.txt")), "secret");
}

void OutputCopiesTest::mirrorsTheResources()
{
    QCOMPARE(copy(), QStringList());
    QVERIFY(QDir().mkpath(project(QStringLiteral("resource/空"))));
    QCOMPARE(copy(), QStringList());
    writeFile(project(QStringLiteral("resource/图 片/a b.png")), QByteArray(100000, 'x'));
    writeFile(project(QStringLiteral("resource/.hidden")), "h");
    writeFile(output(QStringLiteral("resource/written by the program.ini")), "kept");
    writeFile(output(QStringLiteral("resource/.hidden")), "old");
    const QStringList lines = copy();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith(QString::fromUtf8(synced)), qPrintable(lines.first()));
    QCOMPARE(filesUnder(output(QStringLiteral("resource"))),
             (QStringList{".hidden", "written by the program.ini", "图 片/a b.png"}));
    QCOMPARE(readFile(output(QStringLiteral("resource/.hidden"))), QByteArray("h"));
    QCOMPARE(readFile(output(QStringLiteral("resource/图 片/a b.png"))).size(), 100000);
}

void OutputCopiesTest::leavesUnchangedFilesAlone()
{
    const QString from = project(QStringLiteral("resource/a.txt"));
    const QString to = output(QStringLiteral("resource/a.txt"));
    writeFile(from, "one");
    QVERIFY(QFile::setPermissions(from, QFile::ReadOwner));
    copy();
    const QDateTime time = QFileInfo(from).lastModified();
    QCOMPARE(QFileInfo(to).lastModified(), time);
    QVERIFY(QFileInfo(to).isWritable());
    // The same size and time: nobody looks inside.
    const auto stamp = [](const QString &path, const QDateTime &when) {
        QFile file(path);
        return file.open(QIODevice::ReadWrite) &&
               file.setFileTime(when, QFileDevice::FileModificationTime);
    };
    writeFile(to, "two");
    QVERIFY(stamp(to, time));
    copy();
    QCOMPARE(readFile(to), QByteArray("two"));
    // An older file takes the place of a newer one too.
    QVERIFY(QFile::setPermissions(from, QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(stamp(from, time.addDays(-1)));
    copy();
    QCOMPARE(readFile(to), QByteArray("one"));
}

void OutputCopiesTest::followsLinksWithinTheProjectOnly_data()
{
    QTest::addColumn<QString>("target"); // relative to the folder with the project
    QTest::addColumn<QString>("copied"); // below the link; empty: it is refused
    QTest::addRow("file outside") << "outside/secret.txt"
                                  << "";
    QTest::addRow("folder outside") << "outside"
                                    << "";
    QTest::addRow("nothing") << "nowhere"
                             << "";
    QTest::addRow("file inside") << "工程/shared/s.txt"
                                 << "link";
    QTest::addRow("folder inside") << "工程/shared"
                                   << "link/s.txt";
    QTest::addRow("sibling whose name goes on") << "工程2"
                                                << "";
    QTest::addRow("itself") << "工程/resource"
                            << "";
    QTest::addRow("project") << "工程"
                             << "";
    QTest::addRow("output") << "工程/build/x64/debug"
                            << "";
    QTest::addRow("other builds") << "工程/build/x86"
                                  << "";
}

void OutputCopiesTest::followsLinksWithinTheProjectOnly()
{
    writeFile(project(QStringLiteral("shared/s.txt")), "s");
    writeFile(project(QStringLiteral("build/x86/o.txt")), "o");
    writeFile(m_dir->filePath(QStringLiteral("工程2/x.txt")), "x");
    writeFile(project(QStringLiteral("resource/plain.txt")), "p");
    QFETCH(QString, target);
    QFETCH(QString, copied);
    link(m_dir->filePath(target), QStringLiteral("resource/link"));
    for (int round = 0; round < 2; ++round) {
        const QStringList lines = copy();
        QCOMPARE(lines.mid(1),
                 copied.isEmpty() ? QStringList{"[警告] 无法复制 resource\\link"} : QStringList());
        QStringList expected{QStringLiteral("plain.txt")};
        if (!copied.isEmpty())
            expected.prepend(copied);
        QCOMPARE(filesUnder(output(QStringLiteral("resource"))), expected);
    }
    // The folder itself may be a link as well.
    QVERIFY(QFile::rename(project(QStringLiteral("resource")), project(QStringLiteral("kept"))));
    link(m_dir->filePath(QStringLiteral("outside")), QStringLiteral("resource"));
    copy();
    QVERIFY(!QFileInfo::exists(output(QStringLiteral("resource/secret.txt"))));
}

void OutputCopiesTest::endsInEveryMazeOfLinks()
{
    // Each of these folders leads to all others: the ways through them are without number.
    constexpr int folders = 12;
    for (int i = 0; i < folders; ++i)
        writeFile(project(QStringLiteral("resource/%1/f").arg(i)), "f");
    for (int i = 0; i < folders; ++i) {
        for (int j = 0; j < folders; ++j)
            link(project(QStringLiteral("resource/%1").arg(j)),
                 QStringLiteral("resource/%1/to%2").arg(i).arg(j));
    }
    const QStringList lines = copy();
    QVERIFY(lines.size() > 2 && lines.size() < 30);
    QVERIFY2(lines.last().contains(QStringLiteral("个资源文件无法复制")), qPrintable(lines.last()));
    for (int i = 0; i < folders; ++i)
        QCOMPARE(readFile(output(QStringLiteral("resource/%1/f").arg(i))), QByteArray("f"));
    QVERIFY(filesUnder(output()).size() < 1000);
}

void OutputCopiesTest::writesThroughNoLink()
{
    const QString secret = m_dir->filePath(QStringLiteral("outside/secret.txt"));
    writeFile(project(QStringLiteral("resource/sub/secret.txt")), "changed");
    writeFile(project(QStringLiteral("resource/file.txt")), "changed");
    writeFile(output(QStringLiteral("resource/x")), "");
    QVERIFY(QFile::link(secret, output(QStringLiteral("resource/file.txt"))));
    QVERIFY(QFile::link(QFileInfo(secret).path(), output(QStringLiteral("resource/sub"))));
    QVERIFY(QFile::link(secret, output(QStringLiteral("resource/.vl_copy.tmp"))));
    QCOMPARE(copy().size(), 1);
    QCOMPARE(readFile(secret), QByteArray("secret"));
    QCOMPARE(filesUnder(output(QStringLiteral("resource"))),
             (QStringList{"file.txt", "sub/secret.txt", "x"}));
    QCOMPARE(readFile(output(QStringLiteral("resource/sub/secret.txt"))), QByteArray("changed"));
}

void OutputCopiesTest::tellsWhatItCannotCopy()
{
    writeFile(project(QStringLiteral("resource/a/b.txt")), "b");
    writeFile(project(QStringLiteral("resource/c")), "c");
    writeFile(project(QStringLiteral("resource/d")), "d");
    // Something of another kind stands in the way.
    writeFile(output(QStringLiteral("resource/a")), "file");
    writeFile(output(QStringLiteral("resource/c/file")), "x");
    const QStringList lines = copy();
    QCOMPARE(lines.mid(1),
             (QStringList{"[警告] 无法复制 resource\\a", "[警告] 无法复制 resource\\c"}));
    QCOMPARE(readFile(output(QStringLiteral("resource/d"))), QByteArray("d"));
}

void OutputCopiesTest::copiesLibraries()
{
    const QString engine = m_dir->filePath(QStringLiteral("引擎"));
    writeFile(engine + QStringLiteral("/lib/libquickjs.dll"), "first");
    writeFile(engine + QStringLiteral("/bin/libquickjs.dll"), "second");
    writeFile(engine + QStringLiteral("/bin/help.DLL"), "h");
    writeFile(engine + QStringLiteral("/bin/readme.txt"), "r");
    QCOMPARE(OutputCopies::copyLibraries(
                 {engine + QStringLiteral("/bin/help.DLL"), engine + QStringLiteral("/none.dll")},
                 output()),
             (QStringList{"已复制扩展库 DLL 到输出目录: help.DLL",
                          "[警告] 无法复制扩展库 DLL: none.dll"}));
    const QStringList lines = OutputCopies::copyScriptEngine(engine, output());
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines.first().contains(
                 QStringLiteral("（3 个 DLL）：libquickjs.dll, quickjs.dll, help.DLL")),
             qPrintable(lines.first()));
    QCOMPARE(filesUnder(output()), (QStringList{"help.DLL", "libquickjs.dll", "quickjs.dll"}));
    QCOMPARE(readFile(output(QStringLiteral("quickjs.dll"))), QByteArray("first"));
    QCOMPARE(OutputCopies::copyScriptEngine(QString(), output()), QStringList());
}

void OutputCopiesTest::removesWhatOnlyToolsNeed()
{
    const QStringList kept{".code_hash",     ".obj_cache/app_resource.o",
                           "data.json",      "rc.hash",
                           "resource/a.lib", "程序.exe"};
    for (const QString &name : kept)
        writeFile(output(name), "k");
    for (const char *name :
         {"app_resource.rc", "app_dpi_aware.manifest", "a.exp", "b.LIB", "main.o"})
        writeFile(output(QLatin1String(name)), "x");
    OutputCopies::removeIntermediates(output(), output());
    QCOMPARE(filesUnder(output()), kept);
    // The folder of the executable, when it is another, loses the linker's files only.
    writeFile(project(QStringLiteral("out/x.manifest")), "x");
    writeFile(project(QStringLiteral("out/mine.rc")), "k");
    OutputCopies::removeIntermediates(output(), project(QStringLiteral("out")));
    QCOMPARE(filesUnder(project(QStringLiteral("out"))), QStringList{"mine.rc"});
}

QTEST_GUILESS_MAIN(OutputCopiesTest)
#include "output_copies_test.moc"
