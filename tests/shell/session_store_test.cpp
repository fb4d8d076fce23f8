// What was open when VorelDesk was left.
#include "shell/session_store.h"

#include "test_files.h"

#include <QTemporaryDir>

class SessionStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void comesBackWhole();
    void anyBytesGiveASession_data();
    void anyBytesGiveASession();
    void unreadableFileIsKept();
};

namespace {

QString written(const Session &session)
{
    QStringList parts;
    for (const SessionFile &file : session.files) {
        QStringList marks;
        for (const int line : file.bookmarks)
            marks << QString::number(line);
        parts << QStringLiteral("%1@%2/%3[%4]")
                     .arg(file.path)
                     .arg(file.cursorPosition)
                     .arg(file.firstVisibleLine)
                     .arg(marks.join(','));
    }
    return parts.join(' ') + '|' + session.activeFile + '|' + session.projects.join(' ') + '|' +
           session.activeProject;
}

} // namespace

void SessionStoreTest::comesBackWhole()
{
    const QTemporaryDir folder;
    const SessionStore store(SessionStore::pathBeside(folder.path() + "/conf/vlide.ini"));
    QCOMPARE(store.load(), Session());
    Session session;
    session.projects = QStringList{"/p/甲.vlproj", "/q/b.vlproj"};
    session.activeProject = "/q/b.vlproj";
    session.files = {{"/p/a \"1\".vc", 17, 5, {3, 9}}, {"/x.vc", 0, 1, {}}};
    session.activeFile = "/x.vc";
    QVERIFY(store.save(session));
    QCOMPARE(store.load(), session);
    QVERIFY(QFile::exists(folder.path() + "/conf/session.json"));
}

void SessionStoreTest::anyBytesGiveASession_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("session");
    const QString empty = QStringLiteral("|||");
    QTest::addRow("empty") << QByteArray() << empty;
    QTest::addRow("binary") << QByteArray(4000, '\xfe') << empty;
    QTest::addRow("cut off") << QByteArray(R"({"files":[{"path":"/a")") << empty;
    QTest::addRow("array") << QByteArray("[1,2]") << empty;
    QTest::addRow("deep") << QByteArray(100000, '[') << empty;
    QTest::addRow("other types") << QByteArray(
                                        R"({"files":{"a":1},"projects":"x","activeFile":[]})")
                                 << empty;
    QTest::addRow("numbers out of range")
        << QByteArray(R"({"files":[{"path":"/a","cursorPosition":-5,"firstVisibleLine":1e300,)"
                      R"("bookmarks":[0,-1,"x",9,2,9,1.5]}]})")
        << "/a@0/1[2,9]|||";
    QTest::addRow("names") << QByteArray(
                                  R"({"files":[{"path":"a"},{"path":"/a"},{"path":"/a"},7,{}],)"
                                  R"("projects":["/p","",null,"/p","q"],)"
                                  R"("activeFile":"/b","activeProject":"/p"})")
                           << "/a@0/1[]||/p|/p";
}

void SessionStoreTest::anyBytesGiveASession()
{
    QFETCH(QByteArray, bytes);
    const QTemporaryDir folder;
    const QString path = folder.path() + "/session.json";
    TestFiles::writeFile(path, bytes);
    QTEST(written(SessionStore(path).load()), "session");
}

void SessionStoreTest::unreadableFileIsKept()
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/session.json";
    TestFiles::writeFile(path, "{ a slip of the pen");
    QVERIFY(SessionStore(path).save(Session()));
    QCOMPARE(TestFiles::readFile(path + ".bak"), QByteArray("{ a slip of the pen"));
    QVERIFY(SessionStore(path).save(Session()));
    QCOMPARE(TestFiles::readFile(path + ".bak"), QByteArray("{ a slip of the pen"));
    // A folder in the place of the file.
    QVERIFY(!SessionStore(folder.path()).save(Session()));
}

QTEST_GUILESS_MAIN(SessionStoreTest)
#include "session_store_test.moc"
