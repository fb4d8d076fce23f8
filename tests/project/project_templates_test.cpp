// New projects: their files check without a complaint, whatever the project is called.
#include "driver/build_pipeline.h"
#include "driver/driver_test.h"
#include "driver/source_merger.h"
#include "project/project_templates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QThread>

#include <memory>

Q_DECLARE_METATYPE(ProjectKind)

namespace {

QByteArray bytesOf(const QList<TemplateFile> &files, const QString &path)
{
    for (const TemplateFile &file : files) {
        if (file.path == path)
            return file.bytes;
    }
    return {};
}

// The window as a build sees it; none for a form that is no JSON.
QList<CompilerWindowBuildSpec> windowsOf(const QList<TemplateFile> &files)
{
    QList<CompilerWindowBuildSpec> windows;
    for (const TemplateFile &file : files) {
        if (!file.path.startsWith(QLatin1String("ui/")) || file.path.endsWith(QLatin1String("xml")))
            continue;
        CompilerWindowBuildSpec window;
        window.name = QStringLiteral("主窗口");
        window.isMain = window.isStartup = true;
        const QJsonObject form = QJsonDocument::fromJson(file.bytes).object();
        for (const QJsonValue &value : form.value(QLatin1String("components")).toArray()) {
            VL::DesignComponent component;
            component.id = component.originalName = value[QLatin1String("id")].toString();
            component.type = value[QLatin1String("type")].toInt(VL::NoComponentType);
            component.properties = value[QLatin1String("properties")].toObject().toVariantMap();
            window.components << component;
        }
        windows << window;
    }
    return windows;
}

// What the user may add before he writes a word; a class brings a beginning to a program that has
// none.
void addNewFiles(const QString &folder, bool classBegins)
{
    for (const char *ending : {"vc", "vt", "vpi"}) {
        const QString name = QStringLiteral("新文件.") + QLatin1String(ending);
        const QByteArray text = newSourceText(name, QDateTime::currentDateTime()).toUtf8();
        DriverTest::writeFile(folder + QStringLiteral("/source/") + name, text);
    }
    const auto example = classBegins ? ClassExample::AsProgram : ClassExample::AsComment;
    DriverTest::writeFile(folder + QStringLiteral("/source/学生.vpp"),
                          newClassText(QStringLiteral("学生"), example).toUtf8());
}

// Sources nest, so that a build wants a deep stack.
BuildOutcome check(const CompilerBuildRequest &request, BuildListener &listener)
{
    BuildOutcome outcome;
    std::unique_ptr<QThread> thread(
        QThread::create([&] { outcome = BuildPipeline().run(request, listener); }));
    thread->setStackSize(64 * 1024 * 1024);
    thread->start();
    thread->wait();
    return outcome;
}

} // namespace

class ProjectTemplatesTest : public QObject
{
    Q_OBJECT

private slots:
    void files_data();
    void files();
    void checks_data();
    void checks();
    void namesStayText_data();
    void namesStayText();
    void names_data();
    void names();
};

void ProjectTemplatesTest::files_data()
{
    QTest::addColumn<ProjectKind>("kind");
    QTest::addColumn<QString>("windowType");
    QTest::addColumn<QString>("form"); // empty: none
    const auto row = [](ProjectKind kind, const char *type, const char *form) {
        QTest::addRow("%d %s", int(kind), type)
            << kind << QString::fromLatin1(type) << QString::fromUtf8(form);
    };
    row(ProjectKind::Gui, "win32", "ui/主窗口.vui");
    row(ProjectKind::Gui, "vlwin", "ui/主窗口.vlwin");
    row(ProjectKind::Gui, "d2dwin", "ui/主窗口.vlwin");
    row(ProjectKind::Gui, "vlui", "ui/主窗口.xml");
    row(ProjectKind::Gui, "", "ui/主窗口.vui");
    row(ProjectKind::Console, "vlwin", "");
    row(ProjectKind::Empty, "win32", "");
    row(ProjectKind::Single, "win32", "");
}

void ProjectTemplatesTest::files()
{
    QFETCH(ProjectKind, kind);
    QFETCH(QString, windowType);
    QFETCH(QString, form);
    const QDateTime created(QDate(2026, 3, 5), QTime(7, 8, 9));
    const QList<TemplateFile> files =
        filesForNewProject(kind, QStringLiteral("我的程序"), windowType, created);
    QStringList paths;
    for (const TemplateFile &file : files) {
        paths << file.path;
        QVERIFY2(!file.bytes.contains("%1") && !file.bytes.contains('\r'), qPrintable(file.path));
    }
    QStringList expected{QStringLiteral("source/globals.vc"), QStringLiteral("source/constants.vc"),
                         QStringLiteral("source/main.vc")};
    if (!form.isEmpty())
        expected << form;
    if (kind == ProjectKind::Single)
        expected = QStringList{QStringLiteral("main.vc")};
    QCOMPARE(paths, expected);
    QVERIFY(bytesOf(files, expected.value(2, expected.first()))
                .startsWith("// 我的程序 - 主程序\n// 创建时间: 2026-03-05 07:08:09\n\n"));
    QVERIFY(form.isEmpty() || files.last().bytes.contains("\"我的程序\""));
}

void ProjectTemplatesTest::checks_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("windowType");
    QTest::addColumn<QString>("name");
    const QString hostile =
        QStringLiteral("it's \"x\\\n返回 */ /* r\"( ===== ===VL_CODE=== %2 </a>");
    for (const char *kind : {"gui", "empty", "console", "single"}) {
        for (const char *type : {"win32", "vlwin"}) {
            const QString word = QString::fromLatin1(kind);
            const QString window = QString::fromLatin1(type);
            QTest::addRow("%s %s", kind, type) << word << window << QStringLiteral("我的程序");
            if (qstrcmp(type, "win32") == 0)
                QTest::addRow("%s hostile name", kind) << word << window << hostile;
            if (word != QLatin1String("gui"))
                break;
        }
    }
}

void ProjectTemplatesTest::checks()
{
    QFETCH(QString, kind);
    QFETCH(QString, windowType);
    QFETCH(QString, name);
    const QList<TemplateFile> files = filesForNewProject(*projectKindFromWord(kind), name,
                                                         windowType, QDateTime::currentDateTime());
    QTemporaryDir folder;
    for (const TemplateFile &file : files)
        DriverTest::writeFile(folder.filePath(file.path), file.bytes);
    if (kind != QLatin1String("single"))
        addNewFiles(folder.path(), kind == QLatin1String("gui"));
    const MergedSource merged = mergeProject(folder.path());
    QVERIFY(merged.errors.isEmpty());

    CompilerBuildRequest request;
    request.goal = BuildGoal::Check;
    request.hasProject = true;
    request.projectPath = folder.path();
    request.projectName = QStringLiteral("test");
    request.uiBackend = windowType;
    request.compilerType = QStringLiteral("MinGW");
    request.sourceText = merged.text;
    request.lineMap = merged.lineMap;
    request.windowSpecs = windowsOf(files);
    DriverTest::RecordingListener listener;
    const BuildOutcome outcome = check(request, listener);
    QCOMPARE(listener.errors(), QStringList());
    QVERIFY2(outcome.success, qPrintable(outcome.output));
}

void ProjectTemplatesTest::namesStayText_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("comment"); // the first line of main.vc without "// " and ending
    QTest::addColumn<QString>("title");
    const auto row = [](const char *name, const QString &text, const QString &comment,
                        const QString &title) {
        QTest::addRow("%s", name) << text << comment << title;
    };
    const QString two = QStringLiteral("甲%2乙");
    row("placeholder", two, two, two);
    row("quotes", QStringLiteral("a\"b'c\\"), QStringLiteral("a”b’c\\"),
        QStringLiteral("a\"b'c\\"));
    row("lines", QStringLiteral("a\r\nb") + QChar(0x2028) + QStringLiteral("c"),
        QStringLiteral("a  b c"), QStringLiteral("a  b c"));
    row("marks", QStringLiteral("===VL_UI=== [FILE_BOUNDARY]"),
        QStringLiteral("＝＝＝VL_UI＝＝＝ 【FILE_BOUNDARY】"),
        QStringLiteral("===VL_UI=== [FILE_BOUNDARY]"));
}

void ProjectTemplatesTest::namesStayText()
{
    QFETCH(QString, name);
    for (const char *type : {"win32", "vlwin"}) {
        const QList<TemplateFile> files = filesForNewProject(
            ProjectKind::Gui, name, QString::fromLatin1(type), QDateTime::currentDateTime());
        const QString main = QString::fromUtf8(bytesOf(files, QStringLiteral("source/main.vc")));
        const QString first = main.section(QLatin1Char('\n'), 0, 0);
        QTEST(first.mid(3).remove(QStringLiteral(" - 主程序")), "comment");
        const CompilerWindowBuildSpec window = windowsOf(files).value(0);
        QVERIFY(!window.components.isEmpty());
        const QMap<QString, QVariant> properties = window.components.first().properties;
        QTEST(properties.value(QStringLiteral("text")).toString(), "title");
        QVERIFY(properties.value(QStringLiteral("isMainWindow")).toBool());
    }
}

void ProjectTemplatesTest::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("part"); // of the message; empty: a good name
    const auto row = [](const QString &name, const char *part) {
        QTest::addRow("%s", qPrintable(name.left(20).toHtmlEscaped()))
            << name << QString::fromUtf8(part);
    };
    for (const char *good : {"我的程序", "a", "My Project 2.0", "it's", "com", "CON1", "COM10",
                             "nul-2", "a.con", "汉字（一）#1"})
        row(QString::fromUtf8(good), "");
    row(QString(), "不能为空");
    row(QStringLiteral(" \t　"), "不能为空");
    row(QStringLiteral("."), "不能用作");
    row(QStringLiteral(".."), "不能用作");
    for (const char *edge : {" a", "a ", "a.", ".a", "...", "　a"})
        row(QString::fromUtf8(edge), "开头和结尾");
    for (const char c : QByteArray("<>:\"/\\|?*"))
        row(QStringLiteral("a%1b").arg(QLatin1Char(c)), "不能有字符");
    row(QStringLiteral("a\nb"), "控制字符");
    row(QStringLiteral("a") + QChar(0), "控制字符");
    row(QStringLiteral("a") + QChar(0xD800) + QLatin1Char('b'), "残缺");
    for (const char *device : {"CON", "nul", "Com1", "LPT9", "com¹", "nul.txt", "aux .x", "CONIN$"})
        row(QString::fromUtf8(device), "保留");
    row(QString(100, QLatin1Char('x')), "");
    row(QString(101, QLatin1Char('x')), "太长");
    row(QString(76, QChar(0x4E00)), "太长");
}

void ProjectTemplatesTest::names()
{
    QFETCH(QString, name);
    QFETCH(QString, part);
    const QString error = projectNameError(name);
    QCOMPARE(error.isEmpty(), part.isEmpty());
    QVERIFY2(error.contains(part), qPrintable(error));
}

QTEST_GUILESS_MAIN(ProjectTemplatesTest)
#include "project_templates_test.moc"
