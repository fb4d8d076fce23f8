// The log of Qt's messages.
#include "shell/log_file.h"

#include "test_files.h"

#include <QProcess>
#include <QTemporaryDir>

#include <thread>

class LogFileTest : public QObject
{
    Q_OBJECT

private slots:
    void prefixesByLevel();
    void handlerIsRestored();
    void fallsBack();
    void worksWithoutAnyFile();
    void staysBounded_data();
    void staysBounded();
    void threadsDoNotMixLines();
    void warningsAreHarmless();
};

namespace {

// Without the opening lines.
QList<QByteArray> messagesIn(const QString &path)
{
    QList<QByteArray> lines = TestFiles::readFile(path).split('\n');
    lines.removeLast();
    return lines.mid(2);
}

QStringList seenByOther;

void otherHandler(QtMsgType, const QMessageLogContext &, const QString &message)
{
    seenByOther += message;
}

} // namespace

void LogFileTest::prefixesByLevel()
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/a.log";
    TestFiles::writeFile(path, "earlier\n");
    {
        const LogFile log({path});
        QCOMPARE(log.path(), path);
        qDebug("d");
        qInfo("i");
        qWarning("%s", "警告");
        qCritical("c");
    }
    const QList<QByteArray> lines = TestFiles::readFile(path).split('\n');
    QCOMPARE(lines.at(0), QByteArray("earlier"));
    QVERIFY(lines.at(1).startsWith("INFO: VorelDesk main() logging init, logPath=" + path.toUtf8() +
                                   ", time=2"));
    QCOMPARE(lines.mid(3),
             (QList<QByteArray>{"INFO: d", "INFO: i", "WARNING: 警告", "CRITICAL: c", ""}));
}

void LogFileTest::handlerIsRestored()
{
    const QTemporaryDir folder;
    const QtMessageHandler original = qInstallMessageHandler(otherHandler);
    {
        const LogFile log({folder.path() + "/a.log"});
        qInfo("inside");
    }
    qInfo("after");
    qInstallMessageHandler(original);
    QCOMPARE(seenByOther, QStringList{"after"});
    QCOMPARE(messagesIn(folder.path() + "/a.log"), QList<QByteArray>{"INFO: inside"});
}

void LogFileTest::fallsBack()
{
    const QTemporaryDir folder;
    // A folder in the place of the file cannot be opened, not even by the administrator.
    QVERIFY(QDir().mkpath(folder.path() + "/taken.log"));
    const LogFile log({folder.path() + "/taken.log", folder.path() + "/data/b.log"});
    qInfo("kept");
    QCOMPARE(log.path(), folder.path() + "/data/b.log");
    QCOMPARE(messagesIn(log.path()), QList<QByteArray>{"INFO: kept"});
}

void LogFileTest::worksWithoutAnyFile()
{
    const QTemporaryDir folder;
    const LogFile log({folder.path(), folder.path() + "/."});
    qInfo("lost");
    QCOMPARE(log.path(), QString());
}

void LogFileTest::staysBounded_data()
{
    QTest::addColumn<int>("messageLength");
    QTest::newRow("many messages") << 100;
    QTest::newRow("messages longer than the file") << 5000;
}

void LogFileTest::staysBounded()
{
    QFETCH(int, messageLength);
    const QTemporaryDir folder;
    const QString path = folder.path() + "/a.log";
    constexpr qint64 maxBytes = 2000;
    {
        LogFile log({path}, maxBytes);
        for (int i = 0; i < 100; ++i)
            log.write(QString(messageLength, 'x'));
        log.write(QStringLiteral("last"));
    }
    const qint64 bound = qMax(maxBytes, qint64(messageLength) + 1);
    QVERIFY(TestFiles::readFile(path).endsWith("last\n"));
    QVERIFY(QFileInfo(path).size() <= bound);
    QVERIFY(QFileInfo(path + ".1").size() <= bound);
    QVERIFY(TestFiles::readFile(path + ".1").contains("xxxx"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 2);
}

void LogFileTest::threadsDoNotMixLines()
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/a.log";
    constexpr int perThread = 200;
    {
        LogFile log({path});
        std::vector<std::thread> threads;
        for (const char c : {'a', 'b', 'c'})
            threads.emplace_back([&log, c] {
                for (int i = 0; i < perThread; ++i)
                    log.write(QString(50, QLatin1Char(c)));
            });
        for (std::thread &thread : threads)
            thread.join();
    }
    QMap<QByteArray, int> counts;
    for (const QByteArray &line : messagesIn(path))
        ++counts[line];
    QCOMPARE(counts, (QMap<QByteArray, int>{{QByteArray(50, 'a'), perThread},
                                            {QByteArray(50, 'b'), perThread},
                                            {QByteArray(50, 'c'), perThread}}));
}

void LogFileTest::warningsAreHarmless()
{
    const QTemporaryDir folder;
    const QString program = folder.path() + "/child";
    QVERIFY(QFile::copy(VOREL_SHELL_CHILD, program));
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_FATAL_WARNINGS", "1");
    child.setProcessEnvironment(environment);
    child.start(program, {"warn"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(messagesIn(folder.path() + "/VorelDesk_debug.log"),
             (QList<QByteArray>{"WARNING: first", "WARNING: second"}));
    QVERIFY(child.readAllStandardError().endsWith("WARNING: first\nWARNING: second\n"));
}

QTEST_GUILESS_MAIN(LogFileTest)
#include "log_file_test.moc"
