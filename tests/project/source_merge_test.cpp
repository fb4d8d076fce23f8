// Merging: the order, the places of lines, limits, and files that must not be read.
#include "project/source_merge.h"

#include "driver/driver_test.h"
#include "driver/message_location.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using DriverTest::writeFile;

namespace {

const QLatin1Char newline('\n');

QString at(const QTemporaryDir &dir, const char *name)
{
    return dir.filePath(QString::fromUtf8(name));
}

// The sources of a project in `dir`, by names relative to it.
ProjectSources project(const QTemporaryDir &dir, const QStringList &files)
{
    ProjectSources sources;
    sources.projectPath = dir.path();
    sources.files = files;
    return sources;
}

QStringList texts(const MergedSource &merged)
{
    QStringList result;
    for (const BuildDiagnostic &error : merged.errors)
        result << QStringLiteral("%1:%2: %3").arg(error.file).arg(error.line).arg(error.text);
    return result;
}

// The place of the first merged line that holds `word`, as "file:line".
QString placeOf(const MergedSource &merged, const QString &word)
{
    const int offset = merged.text.indexOf(word);
    if (offset < 0)
        return QString();
    const SourceLocation place =
        merged.lineMap.value(merged.text.leftRef(offset).count(newline) + 1);
    return QStringLiteral("%1:%2").arg(place.file).arg(place.line);
}

} // namespace

class SourceMergeTest : public QObject
{
    Q_OBJECT

private slots:
    void mergesInOrder();
    void takesTheMainSourceByItsPlace_data();
    void takesTheMainSourceByItsPlace();
    void namesTheLineOfTheFile_data();
    void namesTheLineOfTheFile();
    void mapsEveryLine_data();
    void mapsEveryLine();
    void completesReferencesOfFurtherWindows();
    void translatesTypeFiles();
    void takesLiveTexts();
    void readsEachFileOnce();
    void endsAtTheLimit_data();
    void endsAtTheLimit();
    void refusesLargeFiles();
    void staysInsideTheProject_data();
    void staysInsideTheProject();
    void readsWhatIsListedByItsAbsolutePath();
    void refusesWhatIsNoFile();
    void reportsEveryBrokenFile();
    void isNeverEmpty();
};

void SourceMergeTest::mergesInOrder()
{
    QTemporaryDir dir;
    const QStringList names{
        QStringLiteral("z.vt"),      QStringLiteral("a.vpp"), QStringLiteral("b.vc"),
        QStringLiteral("主窗口.vc"), QStringLiteral("a.vc"),  QStringLiteral("b.vpp"),
        QStringLiteral("窗口2.vc"),  QStringLiteral("空.vc"), QStringLiteral("Main.vc"),
        QStringLiteral("说明.txt"),  QStringLiteral("vc"),    QStringLiteral("b.vpi")};
    QStringList files;
    for (const QString &name : names) {
        files << QStringLiteral("source/") + name;
        const QString text = name == QStringLiteral("空.vc")
                                 ? QStringLiteral(" \n\n")
                                 : QStringLiteral("\n// %1\n\n").arg(name);
        writeFile(dir.filePath(files.last()), text.toUtf8());
    }
    writeFile(at(dir, "source/c.vd"), "类型 点 {\n}\n");
    files << QStringLiteral("source/c.vd");
    ProjectSources sources = project(dir, files);
    sources.windows << ProjectWindow{QStringLiteral("窗口2"), false, std::nullopt}
                    << ProjectWindow{QStringLiteral("无源"), false, std::nullopt}
                    << ProjectWindow{QStringLiteral("主窗口"), true, std::nullopt};
    const MergedSource merged = mergeSources(sources);
    QCOMPARE(texts(merged), QStringList());
    QString expected = QStringLiteral("\n// Main.vc\n\n");
    for (const char *name : {"窗口2.vc", "主窗口.vc", "a.vc", "b.vc", "a.vpp", "b.vpp"}) {
        expected += QStringLiteral("\n\n// [FILE_BOUNDARY] ==========%1 ==========\n// %1")
                        .arg(QString::fromUtf8(name));
    }
    expected += QStringLiteral("\n\n// [FILE_BOUNDARY] ==========c.vd ==========\n类 点 {\n}"
                               "\n\n// [FILE_BOUNDARY] ==========z.vt ==========\n// z.vt");
    QCOMPARE(merged.text, expected);
}

void SourceMergeTest::takesTheMainSourceByItsPlace_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("first");
    const auto list = [](const char *names) {
        return QString::fromUtf8(names).split(QLatin1Char(' '));
    };
    QTest::addRow("plain") << list("source/a.vc source/main.vc") << "source/main.vc:1";
    QTest::addRow("case") << list("source/a.vc source/MAIN.VC") << "source/MAIN.VC:1";
    QTest::addRow("exact wins") << list("source/MAIN.vc source/main.vc") << "source/main.vc:1";
    QTest::addRow("folder below") << list("source/b/main.vc source/c.vc") << ":0";
    QTest::addRow("beside") << list("main.vc") << ":0";
    QTest::addRow("other kind") << list("source/main.vpp") << ":0";
    QTest::addRow("through a dot path")
        << list("source/a.vc ./source/x/../main.vc") << "source/main.vc:1";
}

void SourceMergeTest::takesTheMainSourceByItsPlace()
{
    QFETCH(QStringList, files);
    QTemporaryDir dir;
    for (const QString &file : files)
        writeFile(QDir::cleanPath(dir.filePath(file)), "甲 = 1");
    const MergedSource merged = mergeSources(project(dir, files));
    QCOMPARE(texts(merged), QStringList());
    const SourceLocation place = merged.lineMap.value(1);
    QTEST(QStringLiteral("%1:%2").arg(place.file).arg(place.line), "first");
}

void SourceMergeTest::namesTheLineOfTheFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    QTest::addRow("plain") << QByteArray("目标\n") << 1;
    QTest::addRow("blank lines ahead") << QByteArray("\n \t\n\n目标\n\n\n") << 4;
    QTest::addRow("crlf") << QByteArray("\r\n\r\n甲\r\n目标\r\n") << 4;
    QTest::addRow("lone cr") << QByteArray("\r\r甲\r目标") << 4;
    QTest::addRow("mixed") << QByteArray("甲\r\n\r目标\n") << 3;
    QTest::addRow("mark") << QByteArray("\xEF\xBB\xBF\n目标") << 2;
    QTest::addRow("no last newline") << QByteArray("甲\n目标") << 2;
    QTest::addRow("in a string over lines") << QByteArray("\n输出(\"甲\n\n目标\")\n") << 4;
    QTest::addRow("wide blanks ahead") << QByteArray("\n　\n　目标") << 3;
}

// At every place in the order of files.
void SourceMergeTest::namesTheLineOfTheFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, line);
    const QString target = QStringLiteral("目标");
    for (const char *name : {"main.vc", "甲.vc", "z.vc", "m.vpp", "n.vt"}) {
        QTemporaryDir dir;
        const QString file = QStringLiteral("source/") + QString::fromUtf8(name);
        writeFile(at(dir, "source/main.vc"), "\n\n始\n\n");
        writeFile(at(dir, "source/k.vc"), "中\n");
        writeFile(at(dir, "source/z.vt"), "终");
        writeFile(dir.filePath(file), bytes);
        const MergedSource merged = mergeSources(
            project(dir, {file, QStringLiteral("source/main.vc"), QStringLiteral("source/k.vc"),
                          QStringLiteral("source/z.vt")}));
        QCOMPARE(texts(merged), QStringList());
        QCOMPARE(placeOf(merged, target), QStringLiteral("%1:%2").arg(file).arg(line));
    }
}

void SourceMergeTest::mapsEveryLine_data()
{
    QTest::addColumn<uint>("seed");
    for (uint seed = 1; seed <= 20; ++seed)
        QTest::addRow("%u", seed) << seed;
}

// Random files: each merged line with a place holds what that line of the file says, and each line
// of a file that says something is there exactly once.
void SourceMergeTest::mapsEveryLine()
{
    QFETCH(uint, seed);
    QRandomGenerator random(seed);
    const QStringList pieces{QString(),
                             QString(),
                             QStringLiteral("  "),
                             QStringLiteral("\t甲 = 1"),
                             QStringLiteral("// 注释 "),
                             QStringLiteral("按钮1.标题 = \"按钮1.标题\""),
                             QStringLiteral("函数 标签2.单击() {"),
                             QStringLiteral("/* */ }"),
                             QStringLiteral("　输出(按钮1.标题)")};
    const QStringList ends{QStringLiteral("\n"), QStringLiteral("\r\n"), QStringLiteral("\r")};
    const QStringList suffixes{QStringLiteral("vc"), QStringLiteral("vpp"), QStringLiteral("vt")};
    QTemporaryDir dir;
    QHash<QString, QStringList> lines;
    ProjectSources sources = project(dir, {});
    for (int i = 0; i < 12; ++i) {
        const QString base = i == 0 ? QStringLiteral("main") : QStringLiteral("窗口%1").arg(i);
        const QString suffix = i < 6 ? suffixes.first() : suffixes.at(int(random.bounded(3)));
        const QString name = QStringLiteral("source/%1.%2").arg(base, suffix);
        const QString end = ends.at(int(random.bounded(3)));
        QStringList &content = lines[name];
        for (int count = int(random.bounded(12)); count > 0; --count)
            content << pieces.at(int(random.bounded(pieces.size())));
        const QString mark = random.bounded(2) ? QString(QChar(0xFEFF)) : QString();
        writeFile(dir.filePath(name), (mark + content.join(end)).toUtf8());
        sources.files << name;
        if (random.bounded(2))
            sources.windows << ProjectWindow{base, random.bounded(4) == 0, std::nullopt};
    }
    const MergedSource merged = mergeSources(sources);
    QCOMPARE(texts(merged), QStringList());
    const QStringList mergedLines = merged.text.split(newline);
    static const QRegularExpression prefix(QStringLiteral("窗口\\d+\\."));
    QSet<QString> seen;
    for (int line = 1; line <= mergedLines.size(); ++line) {
        const QString text = mergedLines.at(line - 1);
        const SourceLocation place = merged.lineMap.value(line);
        QCOMPARE(place.file.isEmpty(), !merged.lineMap.contains(line));
        if (place.file.isEmpty()) {
            QVERIFY2(text.isEmpty() || text.contains(QStringLiteral("[FILE_BOUNDARY]")),
                     qPrintable(text));
            continue;
        }
        const QString original = lines.value(place.file).value(place.line - 1);
        QCOMPARE(QString(text).remove(prefix).trimmed(), original.trimmed());
        const QString key = place.file + QString::number(place.line);
        QVERIFY2(!seen.contains(key), qPrintable(key));
        seen.insert(key);
    }
    for (auto file = lines.cbegin(); file != lines.cend(); ++file) {
        for (int i = 0; i < file->size(); ++i) {
            const bool isBlank = file->at(i).trimmed().isEmpty();
            QVERIFY(isBlank || seen.contains(file.key() + QString::number(i + 1)));
        }
    }
}

void SourceMergeTest::completesReferencesOfFurtherWindows()
{
    QTemporaryDir dir;
    const QStringList files{QStringLiteral("source/主窗口.vc"), QStringLiteral("source/窗口2.vc"),
                            QStringLiteral("source/其它.vc"), QStringLiteral("source/main.vc"),
                            QStringLiteral("source/窗口2.vpp")};
    for (const QString &file : files)
        writeFile(dir.filePath(file), "// 行\n按钮1.标题 = 按钮7.标题");
    ProjectSources sources = project(dir, files);
    sources.windows << ProjectWindow{QStringLiteral("主窗口"), true, std::nullopt}
                    << ProjectWindow{QStringLiteral("窗口2"), false,
                                     QSet<QString>{QStringLiteral("按钮1")}};
    const MergedSource merged = mergeSources(sources);
    QCOMPARE(merged.text.count(QStringLiteral("窗口2.按钮")), 1);
    QVERIFY(!merged.text.contains(QStringLiteral("主窗口.按钮")));
    QCOMPARE(placeOf(merged, QStringLiteral("\n窗口2.按钮1.标题 = 按钮7.标题")),
             QStringLiteral("source/窗口2.vc:1"));
}

void SourceMergeTest::translatesTypeFiles()
{
    QTemporaryDir dir;
    writeFile(at(dir, "source/a.vt"), "\n\n类型 点\n{\n\n整数 横\n}\n类 圆\n{\n}\n");
    writeFile(at(dir, "source/b.vd"), "类型 线 {\n// 注\n小数 长\n}\n");
    const QStringList files{QStringLiteral("source/a.vt"), QStringLiteral("source/b.vd"),
                            QStringLiteral("source/c.vd")};
    const MergedSource merged = mergeSources(project(dir, files.mid(0, 2)));
    QCOMPARE(texts(merged), QStringList());
    QCOMPARE(placeOf(merged, QStringLiteral("属性 整数 横")), QStringLiteral("source/a.vt:6"));
    QCOMPARE(placeOf(merged, QStringLiteral("类 圆")), QStringLiteral("source/a.vt:8"));
    QCOMPARE(placeOf(merged, QStringLiteral("属性 小数 长")), QStringLiteral("source/b.vd:3"));
    writeFile(at(dir, "source/c.vd"), "\r\n类型 面 {\r\n哦 甲\r\n}\r\n");
    const QStringList errors = texts(mergeSources(project(dir, files)));
    QCOMPARE(errors.size(), 1);
    QVERIFY2(errors.first().startsWith(QStringLiteral("source/c.vd:3: 第 3 行")),
             qPrintable(errors.first()));
}

void SourceMergeTest::takesLiveTexts()
{
    QTemporaryDir dir;
    writeFile(at(dir, "source/main.vc"), "旧");
    writeFile(at(dir, "source/b.vc"), "旧");
    ProjectSources sources =
        project(dir, {QStringLiteral("source/main.vc"), QStringLiteral("source/b.vc"),
                      QStringLiteral("source/新.vc")});
    sources.liveTexts.insert(at(dir, "source/main.vc"), QStringLiteral("一\r\n二\r三"));
    sources.liveTexts.insert(QStringLiteral("source/./b.vc"), QStringLiteral(" \n四"));
    sources.liveTexts.insert(QStringLiteral("source/新.vc"), QStringLiteral("五"));
    sources.liveTexts.insert(QStringLiteral("source/不在.vc"), QStringLiteral("六"));
    const MergedSource merged = mergeSources(sources);
    QCOMPARE(texts(merged), QStringList());
    QVERIFY(!merged.text.contains(QStringLiteral("旧")));
    QVERIFY(!merged.text.contains(QStringLiteral("六")));
    QCOMPARE(placeOf(merged, QStringLiteral("三")), QStringLiteral("source/main.vc:3"));
    QCOMPARE(placeOf(merged, QStringLiteral("四")), QStringLiteral("source/b.vc:2"));
    QCOMPARE(placeOf(merged, QStringLiteral("五")), QStringLiteral("source/新.vc:1"));
}

void SourceMergeTest::readsEachFileOnce()
{
    QTemporaryDir dir;
    writeFile(at(dir, "source/a.vc"), "唯一");
    const MergedSource merged =
        mergeSources(project(dir, {QStringLiteral("source/a.vc"), QStringLiteral("./source//a.vc"),
                                   QStringLiteral("source\\a.vc"), at(dir, "source/a.vc")}));
    QCOMPARE(texts(merged), QStringList());
    QCOMPARE(merged.text.count(QStringLiteral("唯一")), 1);
    QCOMPARE(placeOf(merged, QStringLiteral("唯一")), QStringLiteral("source/a.vc:1"));
}

void SourceMergeTest::endsAtTheLimit_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::addRow("main") << "main.vc"
                          << "合并源码已超过本 IDE 上限（约 0.0 千万字符），请删减。";
    QTest::addRow("code") << "b.vc"
                          << "合并源码将超过 IDE 上限（约 0.0 千万字符），已中止。请拆分工程";
    QTest::addRow("class file") << "b.vpp"
                                << "合并源码将超过 IDE 上限，已中止。请删减 .vpp";
    QTest::addRow("type file") << "b.vt"
                               << "合并源码将超过 IDE 上限，已中止。请删减 .vt";
    QTest::addRow("type blocks") << "b.vd"
                                 << "合并源码将超过 IDE 上限，已中止。请删减 .vt";
}

// A text of just the size passes, one character more does not.
void SourceMergeTest::endsAtTheLimit()
{
    QFETCH(QString, name);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString file = QStringLiteral("source/") + name;
    const bool isMain = name.startsWith(QLatin1String("main"));
    writeFile(at(dir, "source/main.vc"), "甲 = 1\n");
    writeFile(dir.filePath(file), QByteArray(100, '/') + (isMain ? "" : "\n\n"));
    const ProjectSources sources = project(dir, {QStringLiteral("source/main.vc"), file});
    MergeLimits limits;
    const int size = mergeSources(sources).text.size();
    limits.mergedChars = size;
    QCOMPARE(texts(mergeSources(sources, limits)), QStringList());
    --limits.mergedChars;
    const MergedSource merged = mergeSources(sources, limits);
    QCOMPARE(merged.errors.size(), 1);
    QVERIFY2(merged.errors.first().text.startsWith(message),
             qPrintable(merged.errors.first().text));
    QCOMPARE(merged.errors.first().file, file);
}

void SourceMergeTest::refusesLargeFiles()
{
    QTemporaryDir dir;
    writeFile(at(dir, "source/a.vc"), QByteArray(5 << 20, '/'));
    writeFile(at(dir, "source/b.vc"), "甲");
    ProjectSources sources =
        project(dir, {QStringLiteral("source/a.vc"), QStringLiteral("source/b.vc")});
    sources.liveTexts.insert(QStringLiteral("source/b.vc"), QString(2 << 20, QLatin1Char('/')));
    MergeLimits limits;
    limits.fileBytes = 1 << 20;
    QCOMPARE(texts(mergeSources(sources, limits)),
             (QStringList{
                 QStringLiteral("source/a.vc:0: 源文件过大（5 MB）：source/a.vc。单文件上限约 1 "
                                "MB；请拆分或误用二进制勿放入 source。"),
                 QStringLiteral("source/b.vc:0: 源文件过大：source/b.vc")}));
}

void SourceMergeTest::staysInsideTheProject_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("isRead");
    QTest::addRow("parent") << "../外.vc" << false;
    QTest::addRow("through source") << "source/../../外.vc" << false;
    QTest::addRow("backslashes") << "source\\..\\..\\外.vc" << false;
    QTest::addRow("sibling with the same begin") << "../工程二/外.vc" << false;
    QTest::addRow("back inside") << "source/../source/内.vc" << true;
    QTest::addRow("out and in") << "../工程/source/内.vc" << true;
#ifdef Q_OS_UNIX
    QTest::addRow("link to a file outside") << "source/链.vc" << false;
    QTest::addRow("through a linked folder") << "source/夹/外.vc" << false;
    QTest::addRow("link to a file inside") << "source/内链.vc" << true;
#endif
}

void SourceMergeTest::staysInsideTheProject()
{
    QFETCH(QString, entry);
    QFETCH(bool, isRead);
    QTemporaryDir dir;
    writeFile(at(dir, "外.vc"), "秘密");
    writeFile(at(dir, "工程二/外.vc"), "秘密");
    writeFile(at(dir, "工程/source/内.vc"), "公开的");
    QFile::link(at(dir, "外.vc"), at(dir, "工程/source/链.vc"));
    QFile::link(dir.path(), at(dir, "工程/source/夹"));
    QFile::link(at(dir, "工程/source/内.vc"), at(dir, "工程/source/内链.vc"));
    ProjectSources sources;
    sources.projectPath = at(dir, "工程");
    sources.files << entry;
    const MergedSource merged = mergeSources(sources);
    QVERIFY(!merged.text.contains(QStringLiteral("秘密")));
    QCOMPARE(merged.text.contains(QStringLiteral("公开的")), isRead);
    if (!isRead) {
        QCOMPARE(merged.errors.size(), 1);
        QVERIFY(merged.errors.first().text.startsWith(
            QStringLiteral("源文件“%1”位于工程文件夹之外").arg(entry)));
    }
}

void SourceMergeTest::readsWhatIsListedByItsAbsolutePath()
{
    QTemporaryDir dir;
    writeFile(at(dir, "公用.vc"), "\n公用的");
    ProjectSources sources;
    sources.projectPath = at(dir, "工程");
    sources.files << at(dir, "公用.vc");
    const MergedSource merged = mergeSources(sources);
    QCOMPARE(texts(merged), QStringList());
    QCOMPARE(placeOf(merged, QStringLiteral("公用的")), at(dir, "公用.vc") + QStringLiteral(":2"));
}

void SourceMergeTest::refusesWhatIsNoFile()
{
    QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("source/夹.vc"));
    QStringList files{QStringLiteral("source/夹.vc"), QStringLiteral("source/无.vc")};
    QStringList expected{QStringLiteral("source/夹.vc:0: “source/夹.vc”是文件夹，不是源文件"),
                         QStringLiteral("source/无.vc:0: 找不到文件：source/无.vc")};
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(qPrintable(at(dir, "source/管.vc")), 0600), 0);
    files << QStringLiteral("source/管.vc");
    expected << QStringLiteral("source/管.vc:0: “source/管.vc”不是普通文件，无法作为源文件读取");
#endif
    QCOMPARE(texts(mergeSources(project(dir, files))), expected);
}

void SourceMergeTest::reportsEveryBrokenFile()
{
    QTemporaryDir dir;
    writeFile(at(dir, "source/a.vc"), "x\n\xFF");
    writeFile(at(dir, "source/b.vpp"), QByteArray("甲\n\n乙\0", 9));
    writeFile(at(dir, "source/c.vt"), "类型 甲 {\n");
    const MergedSource merged =
        mergeSources(project(dir, {QStringLiteral("source/c.vt"), QStringLiteral("source/b.vpp"),
                                   QStringLiteral("source/a.vc")}));
    QStringList places;
    for (const BuildDiagnostic &error : merged.errors)
        places << QStringLiteral("%1:%2").arg(error.file).arg(error.line);
    QCOMPARE(places, (QStringList{QStringLiteral("source/a.vc:2"), QStringLiteral("source/b.vpp:3"),
                                  QStringLiteral("source/c.vt:1")}));
}

// The build gathers files of its own when it is given no text.
void SourceMergeTest::isNeverEmpty()
{
    QTemporaryDir dir;
    QCOMPARE(mergeSources(project(dir, {})).errors.size(), 1);
    writeFile(at(dir, "source/main.vc"), " \r\n");
    const MergedSource merged = mergeSources(project(dir, {QStringLiteral("source/main.vc")}));
    QCOMPARE(texts(merged), QStringList());
    QVERIFY(!merged.text.isEmpty() && merged.text.trimmed().isEmpty());
}

QTEST_GUILESS_MAIN(SourceMergeTest)
#include "source_merge_test.moc"
