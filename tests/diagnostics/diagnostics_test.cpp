// What a user is told about a faulty program: NAME.report is the whole report of `vorelc check
// --plain` about NAME.vc or the project in the folder NAME, and NAME.excerpts, for some, the one
// with source lines.
#include "cli/cli_test.h"
#include "golden.h"

class DiagnosticsTest : public QObject
{
    Q_OBJECT

private slots:
    void reports_data();
    void reports();
    void excerpts_data();
    void excerpts();
};

namespace {

const QString &folder()
{
    static const QString path = QStringLiteral(VOREL_SOURCE_DIR "/tests/diagnostics");
    return path;
}

// The lines on standard error. Whatever the source is, the check itself does not fail.
QString reportAbout(const QString &input, const QStringList &options)
{
    const CliTest::Result result = CliTest::vorelc(
        QStringList{QStringLiteral("check"), QStringLiteral("--quiet"), input} + options, folder());
    return result.code == 0 || result.code == 1 ? result.err : QString();
}

} // namespace

void DiagnosticsTest::reports_data()
{
    QTest::addColumn<QString>("input");
    // The folders are projects.
    const QFileInfoList inputs = QDir(folder()).entryInfoList(
        {QStringLiteral("*.vc")}, QDir::Files | QDir::AllDirs | QDir::NoDotAndDotDot, QDir::Name);
    QVERIFY(!inputs.isEmpty());
    for (const QFileInfo &input : inputs)
        QTest::addRow("%s", qPrintable(input.completeBaseName())) << input.fileName();
}

void DiagnosticsTest::reports()
{
    QFETCH(QString, input);
    const QString report = reportAbout(input, {QStringLiteral("--plain")});
    QVERIFY(!report.isEmpty());
    const QString name = QFileInfo(input).completeBaseName();
    Golden::compare(folder() + QLatin1Char('/') + name + QStringLiteral(".report"), report);
}

void DiagnosticsTest::excerpts_data()
{
    QTest::addColumn<QString>("input");
    QTest::addRow("calls") << QStringLiteral("calls.vc");
    QTest::addRow("window_project") << QStringLiteral("window_project");
}

void DiagnosticsTest::excerpts()
{
    QFETCH(QString, input);
    const QString name = QFileInfo(input).completeBaseName();
    Golden::compare(folder() + QLatin1Char('/') + name + QStringLiteral(".excerpts"),
                    reportAbout(input, {}));
}

QTEST_GUILESS_MAIN(DiagnosticsTest)
#include "diagnostics_test.moc"
