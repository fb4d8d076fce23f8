// The settings store and the lists of what was opened last.
#include "settings/recent_list.h"
#include "settings/settings_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <filesystem>
#include <memory>

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void defaults();
    void reads_data();
    void reads();
    void unfitFiles_data();
    void unfitFiles();
    void keepsWhatABrokenLineLeaves();
    void writes();
    void refusesInvalidValues();
    void keepsUnknownKeys();
    void failedWriteLeavesTheFile();
    void writesAside();
    void folderOfTheFile();
    void importsOldStores();
    void recentList();
    void recentListFromFile();

private:
    QString path() const { return m_dir->filePath(QStringLiteral("conf/vlide.ini")); }
    void writeFile(const QByteArray &bytes) const;
    QByteArray readFile(const QString &path) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

void SettingsTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void SettingsTest::cleanup()
{
    m_dir.reset();
}

void SettingsTest::writeFile(const QByteArray &bytes) const
{
    QDir().mkpath(QFileInfo(path()).path());
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QByteArray SettingsTest::readFile(const QString &path) const
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Reading alone makes no file.
void SettingsTest::defaults()
{
    SettingsStore store(path());
    QCOMPARE(store.get(Setting::Editor::fontFamily), QStringLiteral("Consolas"));
    QCOMPARE(store.get(Setting::Editor::fontSize), 12);
    QCOMPARE(store.get(Setting::Editor::colorScheme), QStringLiteral("VS Code 暗色"));
    QCOMPARE(store.get(Setting::Compiler::chineseError), true);
    QCOMPARE(store.get(Setting::Compiler::defaultCompiler), QStringLiteral("MSVC"));
    QCOMPARE(store.get(Setting::General::autoSaveInterval), 300);
    QCOMPARE(store.get(Setting::MainWindow::geometry), QByteArray());
    QCOMPARE(store.get(Setting::Color::BracketMatch), QStringLiteral("#FFD700"));
    QVERIFY(store.get(Setting::Project::defaultPath).endsWith(QLatin1String("/Vorel_sources")));
    QVERIFY(store.save());
    QVERIFY(!QFileInfo::exists(m_dir->filePath(QStringLiteral("conf"))));
}

void SettingsTest::reads_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("font");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("warnings");
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QString>("scheme");
    const auto row = [](const char *name, const QByteArray &file) -> QTestData & {
        return QTest::addRow("%s", name) << file;
    };
    const QString font = QStringLiteral("Consolas");
    const QString color = QStringLiteral("#569CD6");
    const QString scheme = QStringLiteral("VS Code 暗色");
    row("all given", "[Editor]\nfontFamily=宋体\nfontSize=16\ncolor_keyword=#0a0B0c\n"
                     "colorScheme=浅色\n[Compiler]\nshowWarnings=false\n")
        << QStringLiteral("宋体") << 16 << false << QStringLiteral("#0a0B0c")
        << QStringLiteral("浅色");
    row("bom and cr lf", "\xEF\xBB\xBF[Editor]\r\nfontFamily=\"宋体\"\r\nfontSize=16\r\n")
        << QStringLiteral("宋体") << 16 << true << color << scheme;
    row("scheme of the next start", "[Editor]\ndefaultColorScheme=浅色\n")
        << font << 12 << true << color << QStringLiteral("浅色");
    row("other types", "[Editor]\nfontFamily=a, b\nfontSize=big\ncolor_keyword=@ByteArray(x)\n"
                       "[Compiler]\nshowWarnings=maybe\n")
        << font << 12 << true << color << scheme;
    row("beyond ranges", "[Editor]\nfontSize=5000\ncolor_keyword=#12345\n"
                         "[Compiler]\nshowWarnings=2\n")
        << font << 12 << true << color << scheme;
    row("beyond an int", "[Editor]\nfontSize=99999999999999999999\ncolor_keyword=#gg0000\n")
        << font << 12 << true << color << scheme;
    row("numbers as switches", "[Editor]\nfontSize=+8\n[Compiler]\nshowWarnings=0\n")
        << font << 8 << false << color << scheme;
}

void SettingsTest::reads()
{
    QFETCH(QByteArray, file);
    writeFile(file);
    SettingsStore store(path());
    QTEST(store.get(Setting::Editor::fontFamily), "font");
    QTEST(store.get(Setting::Editor::fontSize), "size");
    QTEST(store.get(Setting::Compiler::showWarnings), "warnings");
    QTEST(store.get(Setting::Color::Keyword), "keyword");
    QTEST(store.get(Setting::Editor::colorScheme), "scheme");
}

void SettingsTest::unfitFiles_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray group = "[Editor]\nfontSize=20\n";
    QTest::addRow("zero byte") << group + QByteArray("\0", 1);
    QTest::addRow("huge") << group + QByteArray(SettingsFile::maxBytes, ' ');
    // A list of two thousand million texts, in several spellings.
    const QByteArray list = "\\0\\0\\0\\xb\\x7f\\xff\\xff\\xf0)\n";
    QTest::addRow("serialised list") << group + "tabWidth=@Variant(" + list;
    QTest::addRow("escaped") << group + "tabWidth=\\x40V\\x61riant(" + list;
    QTest::addRow("escaped with overflow") << group + "tabWidth=\\x10040Variant(" + list;
    QTest::addRow("octal") << group + "tabWidth=\\100Variant(" + list;
    QTest::addRow("quoted in parts") << group + "tabWidth=@Var\"ian\"t(" + list;
    QTest::addRow("on two lines") << group + "tabWidth=@Vari\\\nant(" + list;
    QTest::addRow("on two lines with cr") << group + "tabWidth=@Vari\\\r\nant(" + list;
    QTest::addRow("idle escapes") << group + "tabWidth=@\\zVari\\x\\x61nt(" + list;
    QTest::addRow("date") << group + "tabWidth=@DateTime(" + list;
}

// Defaults, no error, and the file is kept aside by the first write.
void SettingsTest::unfitFiles()
{
    QFETCH(QByteArray, file);
    writeFile(file);
    SettingsStore store(path());
    QCOMPARE(store.get(Setting::Editor::fontSize), 12);
    QVERIFY(store.save());
    QCOMPARE(readFile(path()), file);

    QVERIFY(store.set(Setting::Editor::tabWidth, 8));
    QVERIFY(store.save());
    QCOMPARE(readFile(path() + QStringLiteral(".bak")), file);
    SettingsStore again(path());
    QCOMPARE(again.get(Setting::Editor::tabWidth), 8);
    QCOMPARE(again.get(Setting::Editor::fontSize), 12);
}

void SettingsTest::keepsWhatABrokenLineLeaves()
{
    const QByteArray file = "[Editor]\nnonsense\nfontSize=14\n\xFF\xFE\n[Other]\nx=甲\n";
    writeFile(file);
    SettingsStore store(path());
    QCOMPARE(store.get(Setting::Editor::fontSize), 14);
    QVERIFY(store.set(Setting::Editor::tabWidth, 2));
    QVERIFY(store.save());
    QCOMPARE(readFile(path() + QStringLiteral(".bak")), file);
    QVERIFY(readFile(path()).contains("x=甲"));
    SettingsStore again(path());
    QCOMPARE(again.get(Setting::Editor::fontSize), 14);
    QCOMPARE(again.get(Setting::Editor::tabWidth), 2);
}

void SettingsTest::writes()
{
    const QStringList files{QStringLiteral("/家/一, 二.vc"), QStringLiteral("@Variant(x")};
    const QByteArray bytes("\0\xff@)\n", 5);
    {
        SettingsStore store(path());
        QVERIFY(store.set(Setting::Editor::fontFamily, QStringLiteral("微软雅黑")));
        QVERIFY(store.set(Setting::recentFiles, files));
        QVERIFY(store.set(Setting::Compiler::msvcPath, files.last()));
        QVERIFY(store.set(Setting::General::assocVc, true));
        QVERIFY(store.set(Setting::MainWindow::geometry, bytes));
        QVERIFY(store.set(Setting::Color::Text, QStringLiteral("#000000")));
        QVERIFY(store.set(Setting::Compiler::buildConfig, QStringLiteral("debug")));
        QVERIFY(store.save());
    }
    QVERIFY(readFile(path()).contains("fontFamily=微软雅黑"));
    SettingsStore store(path());
    QCOMPARE(store.get(Setting::Editor::fontFamily), QStringLiteral("微软雅黑"));
    QCOMPARE(store.get(Setting::recentFiles), files);
    QCOMPARE(store.get(Setting::Compiler::msvcPath), files.last());
    QCOMPARE(store.get(Setting::General::assocVc), true);
    QCOMPARE(store.get(Setting::MainWindow::geometry), bytes);
    QCOMPARE(store.get(Setting::Color::Text), QStringLiteral("#000000"));
    QCOMPARE(store.get(Setting::Compiler::buildConfig), QStringLiteral("debug"));
    store.reset(Setting::Compiler::buildConfig);
    store.reset(Setting::Color::Text);
    QVERIFY(store.save());
    QCOMPARE(SettingsStore(path()).get(Setting::Compiler::buildConfig), QStringLiteral("release"));
    QCOMPARE(store.get(Setting::Color::Text), QStringLiteral("#D4D4D4"));
}

void SettingsTest::refusesInvalidValues()
{
    SettingsStore store(path());
    QVERIFY(!store.set(Setting::Editor::fontSize, 5));
    QVERIFY(!store.set(Setting::Editor::backgroundOpacity, 101));
    QVERIFY(!store.set(Setting::Compiler::buildConfig, QStringLiteral("fast")));
    QVERIFY(!store.set(Setting::Compiler::defaultArch, QString()));
    QVERIFY(!store.set(Setting::Color::Text, QStringLiteral("#12345x")));
    QVERIFY(store.save());
    QVERIFY(!QFileInfo::exists(path()));
}

void SettingsTest::keepsUnknownKeys()
{
    writeFile("[Editor]\nnewKey=明天, 后天\n[%U660E%U5929]\n%U94A5=1\n[%General]\nassocVc=true\n");
    SettingsStore store(path());
    QCOMPARE(store.get(Setting::General::assocVc), true);
    QVERIFY(store.set(Setting::Editor::fontSize, 20));
    QVERIFY(store.save());
    QVERIFY(!QFileInfo::exists(path() + QStringLiteral(".bak")));
    QSettings plain(path(), QSettings::IniFormat);
    plain.setIniCodec("UTF-8");
    QCOMPARE(plain.value(QStringLiteral("Editor/newKey")).toStringList(),
             (QStringList{QStringLiteral("明天"), QStringLiteral("后天")}));
    QCOMPARE(plain.value(QStringLiteral("明天/钥")).toInt(), 1);
    QCOMPARE(plain.value(QStringLiteral("Editor/fontSize")).toInt(), 20);
}

void SettingsTest::failedWriteLeavesTheFile()
{
    const auto message = [](SettingsStore &store) {
        QString error;
        store.set(Setting::Editor::fontSize, 20);
        return store.save(&error) ? QString() : error;
    };
    // A file where the folder should be, and a folder where the file should be.
    writeFile("[Editor]\nfontSize=14\n");
    SettingsStore below(path() + QStringLiteral("/vlide.ini"));
    QVERIFY(message(below).startsWith(QStringLiteral("设置无法写入：")));
    QCOMPARE(readFile(path()), QByteArray("[Editor]\nfontSize=14\n"));
    QVERIFY(QFile::remove(path()));
    QVERIFY(below.save());
    QCOMPARE(SettingsStore(below.path()).get(Setting::Editor::fontSize), 20);

    const QString folder = m_dir->filePath(QStringLiteral("folder"));
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/keep")));
    SettingsStore onFolder(folder);
    QVERIFY(message(onFolder).contains(QLatin1String("folder")));
    QVERIFY(QFileInfo(folder + QStringLiteral("/keep")).isDir());
}

// The old file is replaced, never written into: another name for it keeps the old text.
void SettingsTest::writesAside()
{
    const QByteArray old = "[Editor]\nfontSize=14\n";
    writeFile(old);
    const QString other = m_dir->filePath(QStringLiteral("other"));
    std::filesystem::create_hard_link(path().toStdString(), other.toStdString());
    SettingsStore store(path());
    QVERIFY(store.set(Setting::Editor::fontSize, 20));
    QVERIFY(store.save());
    QCOMPARE(readFile(other), old);
    QVERIFY(readFile(path()).contains("fontSize=20"));
}

void SettingsTest::folderOfTheFile()
{
    const QString folder = m_dir->path();
    QVERIFY(SettingsFile::canWriteBeside(folder));
    QVERIFY(QDir(folder).isEmpty());
    QVERIFY(!SettingsFile::canWriteBeside(folder + QStringLiteral("/none")));
#ifndef Q_OS_WIN
    QVERIFY(!SettingsFile::canWriteBeside(QStringLiteral("/usr/bin")));
#endif
    QFile blocked(m_dir->filePath(QStringLiteral("conf")));
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    QVERIFY(!SettingsFile::canWriteBeside(folder));

    qputenv("VOREL_SETTINGS", "relative/甲.ini");
    QCOMPARE(SettingsFile::defaultPath(),
             QDir::current().filePath(QStringLiteral("relative/甲.ini")));
    qunsetenv("VOREL_SETTINGS");
}

void SettingsTest::importsOldStores()
{
#ifdef Q_OS_WIN
    QSKIP("would touch the registry of whoever runs the test");
#endif
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_dir->path());
    {
        QSettings old(QStringLiteral("Vorel Studio"), QStringLiteral("VorelDesk"));
        old.setValue(QStringLiteral("Editor/fontSize"), 22);
        old.setValue(QStringLiteral("Editor/odd"), QVariantMap{{QStringLiteral("a"), 1}});
        QSettings skin(QStringLiteral("Vorel Studio"), QStringLiteral("VorelDesk Skin"));
        skin.setValue(QStringLiteral("Editor/defaultColorScheme"), QStringLiteral("浅色"));
    }
    SettingsStore store(path());
    store.importOldStores();
    QVERIFY(store.save());
    QVERIFY(!readFile(path()).contains("@Variant"));
    SettingsStore again(path());
    QCOMPARE(again.get(Setting::Editor::colorScheme), QStringLiteral("浅色"));
    QCOMPARE(again.importOldStores(), 0);
}

void SettingsTest::recentList()
{
    writeFile({});
    SettingsStore store(path());
    RecentList recent(store, Setting::recentProjects);
    QCOMPARE(recent.paths(), QStringList());
    QVERIFY(recent.add(path()));
    QVERIFY(!recent.add(m_dir->filePath(QStringLiteral("conf/../conf/./vlide.ini"))));
    QVERIFY(!recent.add(QString()));
    const QString canonical = QFileInfo(path()).canonicalFilePath();
    QCOMPARE(recent.paths(), QStringList{canonical});
#ifndef Q_OS_WIN
    const QString link = m_dir->filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(path(), link));
    QVERIFY(!recent.add(link));
#endif
    for (int i = 0; i < 30; ++i)
        recent.add(QStringLiteral("/不存在/%1").arg(i));
    QCOMPARE(recent.paths().size(), 20);
    QVERIFY(recent.paths().first().endsWith(QLatin1String("/29")));
    QVERIFY(recent.add(QStringLiteral("/不存在/20")));
    QVERIFY(recent.paths().first().endsWith(QLatin1String("/20")));
    QCOMPARE(recent.paths().size(), 20);
    QVERIFY(recent.remove(QStringLiteral("/不存在/20")));
    QVERIFY(!recent.remove(QStringLiteral("/不存在/20")));
    QVERIFY(store.save());

    SettingsStore again(path());
    RecentList same(again, Setting::recentProjects);
    QCOMPARE(same.paths(), recent.paths());
    QCOMPARE(RecentList(again, Setting::recentFiles).paths(), QStringList());
    QVERIFY(same.clear());
    QVERIFY(again.save());
    SettingsStore empty(path());
    QCOMPARE(RecentList(empty, Setting::recentProjects).paths(), QStringList());
}

void SettingsTest::recentListFromFile()
{
    writeFile("[General]\nRecentProjects=/甲/a.vlproj, relative, /甲/./a.vlproj, , /乙\n"
              "[RecentFiles]\nfiles=/one.vc\n");
    SettingsStore store(path());
    QStringList expected{QStringLiteral("/甲/a.vlproj"), QStringLiteral("/乙")};
    QCOMPARE(RecentList(store, Setting::recentProjects).paths(), expected);
    QCOMPARE(RecentList(store, Setting::recentFiles).paths(),
             QStringList{QStringLiteral("/one.vc")});
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "settings_test.moc"
