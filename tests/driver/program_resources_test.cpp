// Icon, version data and manifest: what is chosen, when it is made again, and what the system sees.
#include "driver/driver_test.h"
#include "driver/program_resources.h"
#include "driver/program_runner.h"
#include "driver/resource_build.h"
#include "driver/resource_script.h"
#include "driver/wine_prefix.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <memory>

using DriverTest::readFile;
using DriverTest::writeFile;

namespace {

const char embeddedIcon[] = ":/icons/default/fa.ico";

QByteArray goodIcon()
{
    return readFile(QLatin1String(embeddedIcon));
}

QByteArray bitmapOf(int width)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage image(width, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.save(&buffer, "BMP");
    return bytes;
}

VL::DesignComponent windowWith(const char *property, const QString &value)
{
    VL::DesignComponent window;
    window.type = VL::Window;
    window.properties.insert(QLatin1String(property), value);
    return window;
}

// A menu whose second item, in a submenu, has its picture inside the program.
QString menuWith(const QString &fileName, int id, const char *mode = "embed")
{
    const QJsonObject icon{{"mode", QLatin1String(mode)}, {"fileName", fileName}, {"embedId", id}};
    const QJsonObject item{{"kind", "item"}, {"text", "打开"}, {"handler", "打开"}, {"icon", icon}};
    const QJsonObject submenu{{"kind", "submenu"}, {"items", QJsonArray{item}}};
    const QJsonObject menu{{"version", 1},
                           {"items", QJsonArray{QJsonObject{{"kind", "separator"}}, submenu}}};
    return QString::fromUtf8(QJsonDocument(menu).toJson());
}

QString windres(const QString &prefix)
{
    return QStandardPaths::findExecutable(prefix + QLatin1String("-w64-mingw32-windres"));
}

} // namespace

class ProgramResourcesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void readsVersions_data();
    void readsVersions();
    void choosesTheIcon_data();
    void choosesTheIcon();
    void findsMenuPictures_data();
    void findsMenuPictures();
    void namesProgramsWithoutSettings();
    void keysDiffer();
    void literalsHoldAnyText_data();
    void literalsHoldAnyText();
    void writesTheScript();
    void isMadeOnlyWhenChanged();
    void failuresLeaveNothingBehind_data();
    void failuresLeaveNothingBehind();
    void theSystemSeesEverything_data();
    void theSystemSeesEverything();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    GatheredResources gather() const
    {
        return gatherProgramResources(m_request, path(QStringLiteral("程序.exe")));
    }
    // Brings the object up to date; true when the resource compiler had to run.
    bool make(const ProgramResources &resources);
    QMap<QString, QString> probe(const QString &prefix, const ProgramResources &resources);

    std::unique_ptr<QTemporaryDir> m_dir;
    CompilerBuildRequest m_request;
};

void ProgramResourcesTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_request = CompilerBuildRequest();
    m_request.hasProject = true;
    m_request.projectPath = m_dir->path();
    m_request.projectName = QStringLiteral("记账");
}

void ProgramResourcesTest::readsVersions_data()
{
    QTest::addColumn<QString>("told");
    QTest::addColumn<QString>("read");
    QTest::addRow("none") << " "
                          << "1.0.0.0";
    QTest::addRow("short") << "2.5"
                           << "2.5.0.0";
    QTest::addRow("long") << "1.2.3.4.5"
                          << "1.2.3.4";
    QTest::addRow("words") << "v1.2beta.x. 7 "
                           << "0.2.0.7";
    QTest::addRow("too large") << "65536.99999999999999999999.-1"
                               << "65535.65535.0.0";
    QTest::addRow("hostile") << "1\nEND\n.\"2"
                             << "1.0.0.0";
    QTest::addRow("other digits") << QStringLiteral("٣.１.0.0") << "0.0.0.0";
}

void ProgramResourcesTest::readsVersions()
{
    QFETCH(QString, told);
    QTEST(fourPartVersion(told), "read");
}

void ProgramResourcesTest::choosesTheIcon_data()
{
    QTest::addColumn<QString>("ofWindow");
    QTest::addColumn<QString>("ofProject");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QStringList>("warnings");
    const QString none;
    QTest::addRow("none") << none << none << "fa.ico" << QStringList();
    QTest::addRow("project") << none << "图 标.ico"
                             << "图 标.ico" << QStringList();
    QTest::addRow("window first") << "sub\\b.ico"
                                  << "图 标.ico"
                                  << "b.ico" << QStringList();
    QTest::addRow("missing") << none << "gone.ico"
                             << "fa.ico"
                             << QStringList{"程序图标“gone.ico”不存在，已改用默认图标。"};
    QTest::addRow("project instead of window's")
        << "text.ico"
        << "图 标.ico"
        << "图 标.ico"
        << QStringList{"程序图标“text.ico”不是有效的 .ico 图标文件，已改用工程图标。"};
    for (const char *bad : {"cut.ico", "outside.ico", "sub", "empty.ico", "picture.ico"}) {
        QTest::addRow("%s", bad) << none << bad << "fa.ico"
                                 << QStringList{
                                        QStringLiteral("程序图标“%1”不是有效的 .ico 图标文件"
                                                       "，已改用默认图标。")
                                            .arg(QLatin1String(bad))};
    }
}

void ProgramResourcesTest::choosesTheIcon()
{
    QByteArray outside = goodIcon();
    outside[6 + 12 + 3] = '\x7f'; // an image that starts behind the end
    writeFile(path(QStringLiteral("图 标.ico")), goodIcon());
    writeFile(path(QStringLiteral("sub/b.ico")), goodIcon());
    writeFile(path(QStringLiteral("text.ico")), "icon");
    writeFile(path(QStringLiteral("cut.ico")), goodIcon().left(1000));
    writeFile(path(QStringLiteral("outside.ico")), outside);
    writeFile(path(QStringLiteral("empty.ico")), "");
    writeFile(path(QStringLiteral("picture.ico")), bitmapOf(16));
    QFETCH(QString, ofWindow);
    QFETCH(QString, ofProject);
    CompilerWindowBuildSpec other;
    other.components << windowWith("icon", QStringLiteral("other.ico"));
    CompilerWindowBuildSpec main;
    main.isMain = true;
    main.components << windowWith("icon", ofWindow);
    m_request.windowSpecs << other << main;
    m_request.identity.icon = ofProject;
    const GatheredResources gathered = gather();
    QTEST(QFileInfo(gathered.resources.icon.path).fileName(), "chosen");
    QTEST(gathered.warnings, "warnings");
    QVERIFY(gathered.resources.icon.size > 0);
}

void ProgramResourcesTest::findsMenuPictures_data()
{
    QTest::addColumn<QStringList>("menus");
    QTest::addColumn<QString>("found"); // "id:file …"
    QTest::addColumn<int>("warnings");
    const QString a = QStringLiteral("vl_cm_a_1.bmp");
    const QString b = QStringLiteral("vl_cm_b_2.bmp");
    QTest::addRow("one") << QStringList{menuWith(a, 300)} << "300:vl_cm_a_1.bmp" << 0;
    QTest::addRow("the same again")
        << QStringList{menuWith(a, 300), menuWith(a, 300)} << "300:vl_cm_a_1.bmp" << 0;
    QTest::addRow("number taken") << QStringList{menuWith(a, 300), menuWith(b, 300)}
                                  << "300:vl_cm_a_1.bmp 20000:vl_cm_b_2.bmp" << 0;
    QTest::addRow("number impossible")
        << QStringList{menuWith(a, 70000)} << "20000:vl_cm_a_1.bmp" << 0;
    QTest::addRow("beside the program") << QStringList{menuWith(a, 300, "resource")} << "" << 0;
    QTest::addRow("other names") << QStringList{menuWith("../../secret.bmp", 300)} << "" << 0;
    QTest::addRow("only the name counts")
        << QStringList{menuWith("..\\..\\vl_cm_a_1.bmp", 300)} << "300:vl_cm_a_1.bmp" << 0;
    QTest::addRow("missing") << QStringList{menuWith("vl_cm_c_3.bmp", 300)} << "" << 1;
    QTest::addRow("no picture") << QStringList{menuWith("vl_cm_text.bmp", 300)} << "" << 1;
    QTest::addRow("no menu") << QStringList{"{", "[]", "7", "{\"items\":[[],{\"icon\":3}]}"} << ""
                             << 0;
}

void ProgramResourcesTest::findsMenuPictures()
{
    writeFile(path(QStringLiteral("resource/vl_cm_a_1.bmp")), bitmapOf(3));
    writeFile(path(QStringLiteral("resource/vl_cm_b_2.bmp")), bitmapOf(5));
    writeFile(path(QStringLiteral("resource/vl_cm_text.bmp")), "BM, but nothing more");
    QFETCH(QStringList, menus);
    VL::DesignComponent window;
    for (const QString &menu : menus)
        window.children << windowWith("designContextMenu", menu);
    m_request.components << window;
    const GatheredResources gathered = gather();
    QStringList found;
    for (const DesignBitmap &bitmap : gathered.resources.bitmaps)
        found << QStringLiteral("%1:%2").arg(bitmap.id).arg(QFileInfo(bitmap.file.path).fileName());
    QTEST(found.join(QLatin1Char(' ')), "found");
    QTEST(gathered.warnings.size(), "warnings");
}

void ProgramResourcesTest::namesProgramsWithoutSettings()
{
    QCOMPARE(gather().resources.productName, QStringLiteral("记账"));
    QCOMPARE(gather().resources.internalName, QStringLiteral("程序"));
    QCOMPARE(gather().resources.version, QStringLiteral("1.0.0.0"));
    m_request.hasProject = false;
    QCOMPARE(gather().resources.productName, QStringLiteral("VLProgram"));
}

void ProgramResourcesTest::keysDiffer()
{
    ProgramResources one = gather().resources;
    one.productName = QStringLiteral("a|b");
    one.fileDescription = QStringLiteral("c");
    QList<ProgramResources> others{one, one, one, one};
    others[0].productName = QStringLiteral("a");
    others[0].fileDescription = QStringLiteral("b|c");
    others[1].productName = QStringLiteral("a\\|b");
    ++others[2].icon.modified;
    others[3].bitmaps << DesignBitmap{1, one.icon};
    QSet<QString> keys{resourceKey(one)};
    for (const ProgramResources &other : qAsConst(others))
        keys << resourceKey(other);
    QCOMPARE(keys.size(), 1 + others.size());
}

void ProgramResourcesTest::literalsHoldAnyText_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("literal");
    QTest::addRow("quotes") << "a\"b\""
                            << "\"a\"\"b\"\"\\0\"";
    QTest::addRow("backslash") << "c:\\n\\"
                               << "\"c:\\\\n\\\\\\0\"";
    QTest::addRow("lines") << "a\r\nEND\t1"
                           << "\"a  END 1\\0\"";
    QTest::addRow("separator") << QString("a\u2028b") << "\"a b\\0\"";
    QTest::addRow("NUL and control") << QString::fromLatin1("a\0b\x1b\x85 c", 7) << "\"ab c\\0\"";
    QTest::addRow("half a character") << QString(QStringLiteral("x") + QChar(0xd83d)) << "\"x\\0\"";
    QTest::addRow("whole character") << QStringLiteral("😀") << QStringLiteral("\"😀\\0\"");
}

void ProgramResourcesTest::literalsHoldAnyText()
{
    QFETCH(QString, value);
    QTEST(scriptLiteral(value, QStringLiteral("\\0")), "literal");
}

void ProgramResourcesTest::writesTheScript()
{
    ProgramResources resources;
    resources.icon.path = QStringLiteral("/a/图.ico");
    resources.productName = QStringLiteral("记账");
    resources.internalName = QStringLiteral("prog");
    resources.version = QStringLiteral("1.2.3.4");
    resources.bitmaps << DesignBitmap{300, {QStringLiteral("/a/vl_cm_1.bmp"), 1, 1}};
    const QString script = resourceScript(resources);
    for (const char *part :
         {"#include <windows.h>\r\n\r\n// Application Icon\r\n1 ICON \"/a/图.ico\"\r\n\r\n",
          "1 VERSIONINFO\r\nFILEVERSION 1,2,3,4\r\nPRODUCTVERSION 1,2,3,4\r\n",
          "            VALUE \"FileDescription\", \"记账\\0\"\r\n",
          "            VALUE \"OriginalFilename\", \"prog.exe\\0\"\r\n",
          "1 24 \"app_dpi_aware.manifest\"\r\n", "300 BITMAP \"/a/vl_cm_1.bmp\"\r\n"}) {
        QVERIFY2(script.contains(QString::fromUtf8(part)), part);
    }
    QVERIFY(!script.contains(QLatin1String("CompanyName")));
    QCOMPARE(script.count(QLatin1Char('\n')), script.count(QLatin1String("\r\n")));
    const QByteArray wide = encodeScript(script, ScriptEncoding::Utf16);
    QCOMPARE(wide.left(4), QByteArray("\xff\xfe#\0", 4));
    QCOMPARE(QTextCodec::codecForName("UTF-16LE")->toUnicode(wide.mid(2)), script);
}

bool ProgramResourcesTest::make(const ProgramResources &resources)
{
    ResourceBuild build(m_dir->path(), resources, windres(QStringLiteral("x86_64")));
    const bool prepared = build.prepare();
    const bool ran = build.mustRun();
    const bool finished = !ran || build.finish(runTool(build.command(), {}));
    if (!prepared || !finished || !QFileInfo::exists(path(ResourceBuild::object())))
        qWarning() << "resources were not made:" << build.error();
    return ran;
}

void ProgramResourcesTest::isMadeOnlyWhenChanged()
{
    if (windres(QStringLiteral("x86_64")).isEmpty())
        QSKIP("windres is not installed");
    ProgramResources first = gather().resources;
    ProgramResources second = first;
    second.version = QStringLiteral("2.0.0.0");
    const auto stored = [this] { return readFile(path(ResourceBuild::object())); };
    QVERIFY(make(first));
    const QByteArray object = stored();
    QVERIFY(!object.isEmpty());
    QCOMPARE(readFile(path(QStringLiteral("rc.hash"))),
             QByteArray::number(qHash(resourceKey(first).toUtf8())));
    // The script is none of the things that a later build needs.
    QVERIFY(QFile::remove(path(QStringLiteral("app_resource.rc"))));
    QVERIFY(!make(first));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("app_resource.rc"))));
    QVERIFY(make(second));
    QVERIFY(stored() != object);
    // A build that ended in the middle has spoilt what is there.
    ResourceBuild interrupted(m_dir->path(), first, windres(QStringLiteral("x86_64")));
    QVERIFY(interrupted.prepare());
    QVERIFY(make(second));
    // A damaged object.
    writeFile(path(ResourceBuild::object()), QByteArray());
    QFile(path(ResourceBuild::object())).resize(0);
    QVERIFY(make(second));
    QVERIFY(!make(second));
}

void ProgramResourcesTest::failuresLeaveNothingBehind_data()
{
    QTest::addColumn<int>("end");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("error");
    const QString icon = QStringLiteral("windres: can't open icon file `a.ico': No such file\n");
    QTest::addRow("refused") << int(ToolRun::End::Finished) << icon
                             << "界面资源编译失败：无法使用图标文件“a.ico”";
    QTest::addRow("crashed") << int(ToolRun::End::Crashed) << "line 1: bad\n"
                             << "界面资源编译失败";
    QTest::addRow("cancelled") << int(ToolRun::End::Cancelled) << icon << "";
}

void ProgramResourcesTest::failuresLeaveNothingBehind()
{
    QFETCH(int, end);
    QFETCH(QString, output);
    ResourceBuild missing(m_dir->path(), gather().resources, QString());
    QVERIFY(!missing.prepare());
    QVERIFY(missing.error().contains(QLatin1String("windres")));
    ResourceBuild build(m_dir->path(), gather().resources, QStringLiteral("/bin/windres"));
    QVERIFY(build.prepare());
    // The tool got so far.
    const QString unfinished = path(build.command().arguments.last());
    writeFile(unfinished, "\x64\x86 half an object");
    const ToolRun run{ToolRun::End(end), 1, output, QString()};
    QVERIFY(!build.finish(run));
    QTEST(build.error().section(QLatin1Char('\n'), 0, 0), "error");
    QVERIFY(!QFileInfo::exists(unfinished));
    QVERIFY(!QFileInfo::exists(path(ResourceBuild::object())));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("rc.hash"))));
    // Success that left no object is none.
    QVERIFY(!build.finish({ToolRun::End::Finished, 0, QString(), QString()}));
}

void ProgramResourcesTest::theSystemSeesEverything_data()
{
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("folder");
    QTest::addRow("64 bits") << "x86_64"
                             << "a b'c $(x) &";
    QTest::addRow("32 bits") << "i686"
                             << "我的工程";
}

// Builds a program with these resources and returns what it reads of them; nothing when this host
// cannot run it.
QMap<QString, QString> ProgramResourcesTest::probe(const QString &prefix,
                                                   const ProgramResources &resources)
{
    QMap<QString, QString> told;
    const QString folder = m_request.projectPath;
    ResourceBuild build(folder, resources, windres(prefix));
    if (!build.prepare() || !build.finish(runTool(build.command(), {}))) {
        told.insert(QStringLiteral("error"), build.error());
        return told;
    }
    const ToolRun compiled =
        runTool({prefix + QStringLiteral("-w64-mingw32-gcc"),
                 {QStringLiteral("-municode"), QStringLiteral("-Wall"),
                  QStringLiteral(VOREL_SOURCE_DIR "/tests/driver/data/resource_probe.c"),
                  ResourceBuild::object(), QStringLiteral("-lversion"), QStringLiteral("-lgdi32"),
                  QStringLiteral("-o"), QStringLiteral("probe.exe")},
                 folder},
                {});
    if (!compiled.succeeded() || !compiled.output.isEmpty())
        told.insert(QStringLiteral("error"), compiled.output + compiled.error);
    const QString program = folder + QStringLiteral("/probe.exe");
    if (prefix == QLatin1String("i686") && !WinePrefix::runs32Bit())
        return told;
    ProgramRunner runner;
    QString text;
    connect(&runner, &ProgramRunner::outputReady, this, [&](const QString &part) { text += part; });
    const QString error = runner.start(program, {}, folder, ProgramRunner::Channels::Captured);
    if (error.contains(QLatin1String("sudo apt install")))
        return told;
    if (!QTest::qWaitFor([&] { return !runner.isRunning(); }, 60000) || !error.isEmpty())
        told.insert(QStringLiteral("error"), QStringLiteral("did not run: ") + error);
    told.insert(QStringLiteral("exit code"), QString::number(runner.exitCode()));
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.contains(QLatin1Char('=')))
            told.insert(line.section(QLatin1Char('='), 0, 0),
                        line.section(QLatin1Char('='), 1).remove(QLatin1Char('\r')));
    }
    return told;
}

void ProgramResourcesTest::theSystemSeesEverything()
{
    QFETCH(QString, prefix);
    QFETCH(QString, folder);
    if (windres(prefix).isEmpty())
        QSKIP("windres is not installed");
    m_request.projectPath = path(folder);
    writeFile(m_request.projectPath + QStringLiteral("/图 \"标\".ico"), goodIcon());
    writeFile(m_request.projectPath + QStringLiteral("/resource/vl_cm_图_1.bmp"), bitmapOf(7));
    m_request.components << windowWith("designContextMenu",
                                       menuWith(QStringLiteral("vl_cm_图_1.bmp"), 300));
    m_request.identity = {
        QStringLiteral("图 \"标\".ico"), QStringLiteral("“记账”本 \"2\" C:\\new\\0 %s ?\?/ // /*"),
        QStringLiteral("😀 管理\n收支"),  QStringLiteral("某某公司\\"),
        QStringLiteral("© 2024 \"我\""), QStringLiteral("2.10")};
    const GatheredResources gathered =
        gatherProgramResources(m_request, QStringLiteral("/x/程\"序.exe"));
    QCOMPARE(gathered.warnings, QStringList());
    const QMap<QString, QString> told = probe(prefix, gathered.resources);
    QCOMPARE(told.value(QStringLiteral("error")), QString());
    if (told.isEmpty())
        QSKIP("built, but cannot run here");
    const QMap<QString, QString> expected{
        {"exit code", "0"},
        {"themed", "1"},
        {"dpiAwareness", "PerMonitorV2, PerMonitor"},
        {"dpiAware", "true"},
        {"systems", "2"},
        {"aware", "1"},
        {"icon", "32"},
        {"bitmap", "7"},
        {"fixed", "2.10.0.0"},
        {"CompanyName", "某某公司\\"},
        {"FileDescription", "😀 管理 收支"},
        {"FileVersion", "2.10.0.0"},
        {"InternalName", "程\"序"},
        {"LegalCopyright", "© 2024 \"我\""},
        {"OriginalFilename", "程\"序.exe"},
        {"ProductName", "“记账”本 \"2\" C:\\new\\0 %s ?\?/ // /*"},
        {"ProductVersion", "2.10.0.0"},
    };
    QCOMPARE(told.keys(), expected.keys());
    QCOMPARE(told.values(), expected.values());
}

QTEST_GUILESS_MAIN(ProgramResourcesTest)
#include "program_resources_test.moc"
