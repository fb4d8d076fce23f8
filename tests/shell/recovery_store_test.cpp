// Texts that are kept for the case of a crash.
#include "shell/recovery_store.h"

#include "test_files.h"

#include <QProcess>
#include <QTemporaryDir>

class RecoveryStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void killedProcessLeavesItsTexts();
    void textsComeBackWhole();
    void writesOnlyWhatChanged();
    void forgottenTextsAreGone();
    void waitsForTheNextStart();
    void adoptedTextKeepsItsBase();
    void foreignBytesStay_data();
    void foreignBytesStay();
    void failureIsToldOnce();
    void timerFollowsTheTexts();
};

namespace {

RecoveredText textOf(const QString &path, const QString &text, int cursor = 0)
{
    RecoveredText content;
    content.path = path;
    content.text = text;
    content.cursorPosition = cursor;
    return content;
}

// The files with kept texts of all processes.
QStringList keptFiles(const QString &folder)
{
    QStringList files;
    QDirIterator all(folder, {"*.recovery"}, QDir::Files, QDirIterator::Subdirectories);
    while (all.hasNext())
        files << all.next();
    return files;
}

QStringList texts(const QList<RecoveryEntry> &entries)
{
    QStringList result;
    for (const RecoveryEntry &entry : entries)
        result << entry.content.text;
    result.sort();
    return result;
}

} // namespace

void RecoveryStoreTest::killedProcessLeavesItsTexts()
{
    const QTemporaryDir folder;
    QProcess child;
    child.start(QStringLiteral(VOREL_SHELL_CHILD), {"keep", folder.path()});
    QVERIFY(child.waitForReadyRead(30000));
    QCOMPARE(child.readAll().trimmed(), QByteArray("kept"));

    RecoveryStore store(folder.path());
    QVERIFY(store.pending().isEmpty());
    child.kill();
    QVERIFY(child.waitForFinished(30000));
    const QList<RecoveryEntry> left = store.pending();
    QCOMPARE(texts(left), QStringList{"整数 甲 = 1"});
    QCOMPARE(left.first().content.title, QStringLiteral("未命名1"));
    QVERIFY(left.first().content.time.secsTo(QDateTime::currentDateTime()) < 60);
    // A second program that starts now does not take what the first one offers.
    RecoveryStore other(folder.path());
    QVERIFY(other.pending().isEmpty());
}

void RecoveryStoreTest::textsComeBackWhole()
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/源 码.vc";
    TestFiles::writeFile(path, "old");
    const QString text = QStringLiteral("\n第一行\r\n\t\"甲\"\0 \U0001F600\n").append(QChar(0));
    {
        RecoveryStore store(folder.path());
        QVERIFY(store.note("a", textOf(path, text, 5)));
        QVERIFY(store.note("b", textOf(QString(), QString())));
    }
    RecoveryStore next(folder.path());
    const QList<RecoveryEntry> left = next.pending();
    QCOMPARE(texts(left), (QStringList{QString(), text}));
    const RecoveredText &whole = left.at(left.at(0).content.text.isEmpty() ? 1 : 0).content;
    QCOMPARE(whole.path, path);
    QCOMPARE(whole.cursorPosition, 5);
    QCOMPARE(whole.baseHash, RecoveryStore::hashOf(path));
    QVERIFY(!whole.baseHash.isEmpty());
}

void RecoveryStoreTest::writesOnlyWhatChanged()
{
    const QTemporaryDir folder;
    RecoveryStore store(folder.path());
    QVERIFY(store.note("a", textOf("/x/a.vc", "1")));
    const QStringList files = keptFiles(folder.path());
    QCOMPARE(files.size(), 1);
    QVERIFY(QFile::remove(files.first()));
    QVERIFY(store.note("a", textOf("/x/a.vc", "1")));
    QVERIFY(keptFiles(folder.path()).isEmpty());
    QVERIFY(store.note("a", textOf("/x/a.vc", "2")));
    QCOMPARE(keptFiles(folder.path()), files);
    QVERIFY(QFile::remove(files.first()));
    QVERIFY(store.note("a", textOf("/x/b.vc", "2")));
    QCOMPARE(keptFiles(folder.path()), files);
}

void RecoveryStoreTest::forgottenTextsAreGone()
{
    const QTemporaryDir folder;
    {
        RecoveryStore store(folder.path());
        for (const char *id : {"a", "b", "c"})
            QVERIFY(store.note(id, textOf("/x", id)));
        store.forget("a");
        store.forget("unknown");
        store.keepOnly({"c", "d"});
    }
    RecoveryStore next(folder.path());
    const QList<RecoveryEntry> left = next.pending();
    QCOMPARE(texts(left), QStringList{"c"});
    next.discard(left.first());
    QVERIFY(next.pending().isEmpty());
}

void RecoveryStoreTest::waitsForTheNextStart()
{
    const QTemporaryDir folder;
    {
        RecoveryStore store(folder.path());
        QVERIFY(store.note("a", textOf("/x", "1")));
    }
    for (int start = 0; start < 3; ++start) {
        RecoveryStore store(folder.path());
        QCOMPARE(texts(store.pending()), QStringList{"1"});
    }
    {
        RecoveryStore store(folder.path());
        store.discard(store.pending().first());
    }
    QVERIFY(QDir(folder.path()).isEmpty());
}

void RecoveryStoreTest::adoptedTextKeepsItsBase()
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/a.vc";
    TestFiles::writeFile(path, "first");
    const QByteArray base = RecoveryStore::hashOf(path);
    {
        RecoveryStore store(folder.path());
        QVERIFY(store.note("a", textOf(path, "mine")));
    }
    TestFiles::writeFile(path, "second");
    {
        RecoveryStore store(folder.path());
        store.adopt("tab 7", store.pending().first());
        QVERIFY(store.pending().isEmpty());
        QCOMPARE(keptFiles(folder.path()).size(), 1);
        QVERIFY(store.note("tab 7", textOf(path, "mine too")));
    }
    RecoveryStore store(folder.path());
    const QList<RecoveryEntry> left = store.pending();
    QCOMPARE(texts(left), QStringList{"mine too"});
    QCOMPARE(left.first().content.baseHash, base);
    store.adopt("1", left.first());
    store.forget("1");
    QVERIFY(keptFiles(folder.path()).isEmpty());
}

void RecoveryStoreTest::foreignBytesStay_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("found"); // texts beside the good one
    const QByteArray good("{\"version\":1,\"path\":\"/x\",\"textHash\":"
                          "\"356a192b7913b04c54574d18c28d46e6395428ab\"}\n1");
    QTest::addRow("good") << "111/a.recovery" << good << 1;
    QTest::addRow("empty") << "111/a.recovery" << QByteArray() << 0;
    QTest::addRow("binary") << "111/a.recovery" << QByteArray(5000, '\xff') << 0;
    QTest::addRow("cut off") << "111/a.recovery" << good.chopped(1) << 0;
    QTest::addRow("array") << "111/a.recovery" << QByteArray("[1]\n1") << 0;
    QTest::addRow("other version")
        << "111/a.recovery" << QByteArray(good).replace("\"version\":1", "\"version\":2") << 0;
    QTest::addRow("other name") << "111/a.txt" << good << 0;
    QTest::addRow("folder of another kind") << "notes/a.recovery" << good << 0;
    QTest::addRow("broken lock") << "111/lock" << QByteArray() << 0;
}

void RecoveryStoreTest::foreignBytesStay()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(int, found);
    const QTemporaryDir folder;
    {
        RecoveryStore store(folder.path());
        QVERIFY(store.note("a", textOf("/x", "good")));
    }
    const QString number = QString::number(QCoreApplication::applicationPid());
    QVERIFY(QDir(folder.path()).rename(number, "111"));
    TestFiles::writeFile(folder.path() + '/' + name, bytes);
    QTest::qSleep(5); // a lock counts as broken only after a moment
    {
        RecoveryStore store(folder.path());
        QCOMPARE(store.pending().size(), 1 + found);
    }
    if (!name.endsWith("lock"))
        QCOMPARE(TestFiles::readFile(folder.path() + '/' + name), bytes);
}

void RecoveryStoreTest::failureIsToldOnce()
{
    const QTemporaryDir folder;
    const QString blocked = folder.path() + "/recovery";
    TestFiles::writeFile(blocked, "a file where the folder should be");
    RecoveryStore store(blocked);
    QSignalSpy failed(&store, &RecoveryStore::writeFailed);
    QVERIFY(!store.note("a", textOf("/x", "1")));
    QVERIFY(!store.note("a", textOf("/x", "1")));
    QCOMPARE(failed.size(), 1);
    QVERIFY(failed.first().first().toString().contains(QStringLiteral("无法备份")));
    QVERIFY(QFile::remove(blocked));
    QVERIFY(store.note("a", textOf("/x", "1")));
}

void RecoveryStoreTest::timerFollowsTheTexts()
{
    const QTemporaryDir folder;
    RecoveryStore store(folder.path());
    QHash<QString, RecoveredText> changed{{"a", textOf("/a", "1")}, {"b", textOf("/b", "2")}};
    RecoveryTimer timer(store, [&] { return changed; });
    timer.run();
    QCOMPARE(keptFiles(folder.path()).size(), 2);
    changed.remove("a");
    timer.run();
    QCOMPARE(keptFiles(folder.path()).size(), 1);
}

QTEST_GUILESS_MAIN(RecoveryStoreTest)
#include "recovery_store_test.moc"
