// The record that a crash leaves behind.
#include "test_files.h"

#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

#include <unistd.h>

class CrashRecordTest : public QObject
{
    Q_OBJECT

private slots:
    void isWritten_data();
    void isWritten();
    void keepsEarlierRecords();
    void liesInTheDataFolder();
};

namespace {

const QString recordName = QStringLiteral("/VorelDesk_seh.log");

// A child of its own in `folder`, run to its end; returns the signal that ended it.
int crashIn(const QString &folder, const QString &how, const QString &dataFolder = QString())
{
    const QString program = folder + QStringLiteral("/child");
    if (!QFile::exists(program) && !QFile::copy(QStringLiteral(VOREL_SHELL_CHILD), program))
        return -1;
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DATA_HOME"), dataFolder);
    child.setProcessEnvironment(environment);
    child.start(program, {how});
    child.waitForFinished(60000);
    return child.exitStatus() == QProcess::CrashExit ? child.exitCode() : 0;
}

} // namespace

void CrashRecordTest::isWritten_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("signalNumber");
    QTest::addColumn<QString>("address");
    const QString none(16, QLatin1Char('0'));
    QTest::addRow("address") << "address" << SIGSEGV << "0000000000001230";
    QTest::addRow("stack overflow") << "overflow" << SIGSEGV << "[0-9A-F]{16}";
    QTest::addRow("abort") << "abort" << SIGABRT << none;
    QTest::addRow("fatal message") << "fatal" << SIGABRT << none;
    for (const int number : {SIGSEGV, SIGFPE, SIGILL, SIGBUS})
        QTest::addRow("signal %d", number) << QString::number(number) << number << none;
}

void CrashRecordTest::isWritten()
{
    QFETCH(QString, how);
    QFETCH(int, signalNumber);
    QFETCH(QString, address);
    const QTemporaryDir folder;
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    QCOMPARE(crashIn(folder.path(), how), signalNumber);
    const QString text = QString::fromUtf8(TestFiles::readFile(folder.path() + recordName));
    const QRegularExpression form(
        QStringLiteral("^\r\n\\[([0-9: -]{19})\\] SEH code=0x%1 addr=%2 info0=0x[0-9A-F]{16} "
                       "info1=0x0{16}\r\n")
            .arg(QString::number(signalNumber, 16).toUpper(), 8, QLatin1Char('0'))
            .arg(address));
    const QRegularExpressionMatch match = form.match(text);
    QVERIFY2(match.hasMatch(), qPrintable(text));
    const QDateTime time =
        QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    QVERIFY2(time >= before && time <= QDateTime::currentDateTime(), qPrintable(text));
    const QStringList calls = text.mid(match.capturedEnd()).split('\n', Qt::SkipEmptyParts);
    QVERIFY2(calls.size() > 2, qPrintable(text));
    QVERIFY2(calls.last().contains(QLatin1String("child")) || how == QLatin1String("overflow"),
             qPrintable(text));
}

void CrashRecordTest::keepsEarlierRecords()
{
    const QTemporaryDir folder;
    QCOMPARE(crashIn(folder.path(), QStringLiteral("abort")), SIGABRT);
    QCOMPARE(crashIn(folder.path(), QStringLiteral("abort")), SIGABRT);
    QCOMPARE(TestFiles::readFile(folder.path() + recordName).count("SEH code="), 2);
}

void CrashRecordTest::liesInTheDataFolder()
{
    if (geteuid() == 0)
        QSKIP("for the administrator every folder is writable");
    const QTemporaryDir folder;
    const QString programFolder = folder.path() + QStringLiteral("/program");
    QVERIFY(QDir().mkpath(programFolder));
    QVERIFY(QFile::copy(QStringLiteral(VOREL_SHELL_CHILD), programFolder + "/child"));
    QVERIFY(QFile::setPermissions(programFolder, QFile::ReadOwner | QFile::ExeOwner));
    QCOMPARE(crashIn(programFolder, QStringLiteral("abort"), folder.path()), SIGABRT);
    QVERIFY(QFile::setPermissions(programFolder,
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(!QFile::exists(programFolder + recordName));
    QVERIFY(TestFiles::readFile(folder.path() + "/voreldesk" + recordName).contains("SEH code="));
}

QTEST_GUILESS_MAIN(CrashRecordTest)
#include "crash_record_test.moc"
