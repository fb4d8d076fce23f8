// Measures builds from outside, as a user sees them, and prints tables: VorelDesk, and beside it
// what a user would take instead.
#include "builds/build_rounds.h"
#include "builds/build_table.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTextStream>

namespace {

void print(FILE *file, const QString &text)
{
    QTextStream stream(file);
    stream.setCodec("UTF-8");
    stream << text;
}

// The vorelc of the build tree that this program lies in.
QString ownVorelc()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../bin/vorelc"));
}

struct Settings
{
    RoundOptions rounds;
    QString vorelc;
    QString help; // asked for; nothing is measured then
    QString error;
};

// The parser's own words are English.
QString chineseHelp(const QCommandLineParser &parser)
{
    return parser.helpText()
        .replace(QLatin1String("Usage:"), QStringLiteral("用法："))
        .replace(QLatin1String("[options]"), QStringLiteral("[选项]"))
        .replace(QLatin1String("Options:"), QStringLiteral("选项："));
}

QString usageError(const QCommandLineParser &parser, bool parsed)
{
    if (!parser.unknownOptionNames().isEmpty())
        return QStringLiteral("未知的选项：%1").arg(parser.unknownOptionNames().first());
    if (!parsed)
        return QStringLiteral("选项缺少值");
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("多余的参数：%1").arg(parser.positionalArguments().first());
    return QString();
}

int readRuns(const QString &text, QString *error)
{
    bool ok = false;
    const int runs = text.toInt(&ok);
    if (!ok || runs < 1 || runs > 1000)
        *error = QStringLiteral("--runs 应当是 1 到 1000 的整数");
    return runs;
}

Settings readSettings(const QStringList &arguments)
{
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("显示这份帮助"));
    const QCommandLineOption runs(QStringLiteral("runs"), QStringLiteral("每一步测 N 次，默认 5"),
                                  QStringLiteral("N"));
    const QCommandLineOption quick(
        QStringLiteral("quick"),
        QStringLiteral("只测一行的问候程序，每步 3 次，略去空缓存的第一次编译"));
    const QCommandLineOption noPeers(QStringLiteral("no-peers"), QStringLiteral("不测对照的工具"));
    const QCommandLineOption keep(QStringLiteral("keep"), QStringLiteral("留下生成的项目"));
    const QCommandLineOption vorelc(QStringLiteral("vorelc"), QStringLiteral("要测的 vorelc"),
                                    QStringLiteral("路径"), ownVorelc());
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("从外面测量编译时间，与其他工具对照；全部约需半小时。"));
    parser.addOptions({help, runs, quick, noPeers, keep, vorelc});
    const bool parsed = parser.parse(arguments);

    Settings settings;
    settings.error = usageError(parser, parsed);
    if (parser.isSet(help))
        settings.help = chineseHelp(parser);
    settings.rounds.quick = parser.isSet(quick);
    settings.rounds.peers = !parser.isSet(noPeers);
    settings.rounds.keep = parser.isSet(keep);
    settings.rounds.runs = settings.rounds.quick ? 3 : 5;
    if (parser.isSet(runs))
        settings.rounds.runs = readRuns(parser.value(runs), &settings.error);
    settings.vorelc = QFileInfo(parser.value(vorelc)).absoluteFilePath();
    if (settings.error.isEmpty() && !QFileInfo(settings.vorelc).isExecutable())
        settings.error =
            QStringLiteral("找不到 vorelc：%1。请先构建，或用 --vorelc 指明").arg(settings.vorelc);
    return settings;
}

bool allSucceeded(const BuildResults &results)
{
    for (const Cell &cell : results.cells) {
        if (!cell.median.error.isEmpty())
            return false;
    }
    return true;
}

int measure(const Settings &settings)
{
    if (!settings.help.isEmpty()) {
        print(stdout, settings.help);
        return 0;
    }
    DisplayServer display;
    QString error = settings.error.isEmpty() ? display.start() : settings.error;
    QTemporaryDir folder(QDir::tempPath() + QLatin1String("/vorel-builds-XXXXXX"));
    folder.setAutoRemove(!settings.rounds.keep);
    if (error.isEmpty() && !folder.isValid())
        error = folder.errorString();
    if (!error.isEmpty()) {
        print(stderr, QStringLiteral("错误: %1\n").arg(error));
        return 2;
    }
    const Workplace place{folder.path(), settings.vorelc};
    const QDateTime built = QFileInfo(settings.vorelc).lastModified();
    const BuildResults results = BuildRounds(settings.rounds, place).run();
    print(stdout, resultTables(results) + goalTable(results) + installHints(results));
    if (QFileInfo(settings.vorelc).lastModified() != built)
        print(stderr, QStringLiteral("警告: 测量期间 vorelc 被重新构建，结果不可靠。\n"));
    if (settings.rounds.keep)
        print(stderr, QStringLiteral("生成的项目：%1\n").arg(folder.path()));
    return !isInterrupted() && allSucceeded(results) ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    // File names are UTF-8, whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QCoreApplication application(argc, argv);
    catchInterrupts();
    return measure(readSettings(QCoreApplication::arguments()));
}
