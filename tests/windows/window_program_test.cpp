// Builds programs with windows and uses them from outside like a user.
//
// Each folder here with a steps.txt is a project and what happens to it: commands ("> click 按钮1")
// with the lines expected of each. probe/ is the program that carries them out.
// VOREL_UPDATE_GOLDEN=1 rewrites the expected lines.
#include "golden.h"
#include "test_files.h"

#include "designer/model/component_types.h"
#include "designer/model/form_file.h"
#include "driver/virtual_display.h"
#include "driver/wine_prefix.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace {

const int kBuildLimitMs = 600000;
const int kRunLimitMs = 110000;
const QString kFolder = QStringLiteral(VOREL_SOURCE_DIR "/tests/windows");

// A file of the host as a program in wine names it.
QString windowsPath(const QString &path)
{
    return QLatin1String("Z:") + path;
}

QString projectIn(const QString &folder)
{
    const QDir dir(folder);
    const QStringList projects = dir.entryList({QStringLiteral("*.vlproj")});
    return projects.isEmpty() ? QString() : dir.filePath(projects.first());
}

// The components of the project's windows, that of the start first.
QList<QList<VL::DesignComponent>> formsOf(const QString &project)
{
    const QJsonObject info = QJsonDocument::fromJson(TestFiles::readFile(project)).object();
    QStringList files;
    for (const char *key : {"startupWindowFile", "mainWindowFile"})
        files << info.value(QLatin1String(key)).toString();
    files << info.value(QLatin1String("windowFiles")).toVariant().toStringList();
    files.removeDuplicates();
    files.removeAll(QString());
    QList<QList<VL::DesignComponent>> forms;
    for (const QString &file : qAsConst(files)) {
        const FormReadResult form = readFormFile(QFileInfo(project).dir().filePath(file));
        if (form.document)
            forms << form.document->buildComponents();
    }
    return forms;
}

bool isLayout(int type)
{
    return type >= VL::HorizontalLayout && type <= VL::VerticalSpacer;
}

// Controls are numbered from here on, one window after the other.
const int kFirstControl = 1001;

QMap<QString, int> controlNumbers(const QString &project)
{
    QMap<QString, int> numbers;
    int next = kFirstControl;
    const auto forms = formsOf(project);
    for (const auto &form : forms) {
        for (const VL::DesignComponent &component : form) {
            if (component.type != VL::Window && !isLayout(component.type))
                numbers.insert(component.name(), next++);
        }
    }
    return numbers;
}

} // namespace

class WindowProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void program_data();
    void program();
    void geometry_data();
    void geometry();

private:
    void build(const QString &folder);
    enum class Mode
    {
        Check, // waits for what the steps expect
        Learn  // takes what comes
    };
    // What the probe found, or what went wrong.
    QString use(const QString &steps, Mode mode);
    void useResolution(int dpi);

    VirtualDisplay m_display;
    QProcessEnvironment m_environment;
    std::unique_ptr<QTemporaryDir> m_copy;
    QString m_project;
    QString m_executable;
};

void WindowProgramTest::initTestCase()
{
    const WinePrefix prefix;
    QVERIFY2(!prefix.loader().isEmpty(), "wine is missing");
    QCOMPARE(prefix.ensureExists({}), QString());
    m_environment = prefix.environment();
    // One of its own: tests that run side by side would share the mouse.
    QCOMPARE(m_display.start(), QString());
    m_environment.insert(QStringLiteral("DISPLAY"), m_display.name());
    prefix.wakeServer(m_environment);
}

void WindowProgramTest::build(const QString &folder)
{
    m_executable.clear();
    m_copy = std::make_unique<QTemporaryDir>();
    TestFiles::copyProject(folder, m_copy->path());
    m_project = projectIn(m_copy->path());
    QVERIFY2(!m_project.isEmpty(), qPrintable(folder));
    QProcess process;
    process.start(QStringLiteral(VORELC),
                  {QStringLiteral("build"), QStringLiteral("--quiet"), QStringLiteral("--config"),
                   QStringLiteral("debug"), m_project});
    QVERIFY(process.waitForFinished(kBuildLimitMs));
    const QByteArray messages = process.readAllStandardError();
    QVERIFY2(process.exitCode() == 0, messages.constData());
    m_executable =
        QFileInfo(QString::fromUtf8(process.readAllStandardOutput()).trimmed()).absoluteFilePath();
    QVERIFY2(QFileInfo::exists(m_executable), qPrintable(m_executable));
}

QString WindowProgramTest::use(const QString &steps, Mode mode)
{
    const auto path = [this](const char *name) { return m_copy->filePath(QLatin1String(name)); };
    QByteArray names;
    const QMap<QString, int> numbers = controlNumbers(m_project);
    for (auto it = numbers.begin(); it != numbers.end(); ++it)
        names += it.key().toUtf8() + ' ' + QByteArray::number(it.value()) + '\n';
    TestFiles::writeFile(path("names.txt"), names);
    TestFiles::writeFile(path("steps.txt"), steps.toUtf8());
    QProcess probe;
    QProcessEnvironment environment = m_environment;
    if (mode == Mode::Learn)
        environment.insert(QStringLiteral("VOREL_PROBE_LEARNS"), QStringLiteral("1"));
    probe.setProcessEnvironment(environment);
    probe.setWorkingDirectory(QFileInfo(m_executable).path());
    probe.setStandardInputFile(QProcess::nullDevice());
    // Helpers that wine starts keep the channels open.
    probe.setStandardOutputFile(path("probe.txt"));
    probe.setStandardErrorFile(path("probe.txt"));
    probe.start(WinePrefix().loader(),
                {QStringLiteral(VOREL_WINDOW_PROBE), windowsPath(m_executable),
                 windowsPath(path("steps.txt")), windowsPath(path("result.txt")),
                 windowsPath(path("names.txt"))});
    if (!probe.waitForFinished(kRunLimitMs)) {
        probe.kill();
        probe.waitForFinished();
        return QStringLiteral("out of time");
    }
    if (probe.exitCode() != 0)
        return QStringLiteral("the probe failed: ") + Golden::read(path("probe.txt"));
    return Golden::read(path("result.txt"));
}

void WindowProgramTest::program_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("path");
    const QDir folders(kFolder);
    for (const QString &name : folders.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString steps = folders.filePath(name + QStringLiteral("/steps.txt"));
        if (QFileInfo::exists(steps))
            QTest::addRow("%s", qPrintable(name)) << folders.filePath(name) << steps;
    }
    const QDir examples(kFolder + QStringLiteral("/examples"));
    for (const QFileInfo &steps : examples.entryInfoList({QStringLiteral("*.txt")}, QDir::Files)) {
        const QString name = steps.completeBaseName();
        QTest::addRow("example %s", qPrintable(name))
            << QStringLiteral(VOREL_SOURCE_DIR "/examples/") + name << steps.filePath();
    }
}

void WindowProgramTest::program()
{
    QFETCH(QString, folder);
    QFETCH(QString, path);
    build(folder);
    if (QTest::currentTestFailed())
        return;
    const bool updates = qEnvironmentVariableIsSet("VOREL_UPDATE_GOLDEN");
    const QString result = use(Golden::read(path), updates ? Mode::Learn : Mode::Check);
    if (result != Golden::read(path) && !updates)
        qInfo().noquote() << "What happened:\n" + result;
    Golden::compare(path, result);
}

// In a prefix of its own: what a change of the resolution sets off stays with the prefix. Its files
// are those of the other one but for the registry, which wine writes in place where it is shared.
void WindowProgramTest::useResolution(int dpi)
{
    const QString folder =
        WinePrefix().folder() + QLatin1Char('-') + QString::number(dpi) + QLatin1String("-dpi");
    if (!QFileInfo::exists(folder + QStringLiteral("/own-registry"))) {
        const QString copy =
            QStringLiteral("rm -rf \"$2\" && cp -al \"$1\" \"$2\" && rm \"$2\"/*.reg "
                           "&& cp \"$1\"/*.reg \"$2\" && touch \"$2/own-registry\"");
        QCOMPARE(QProcess::execute(QStringLiteral("sh"),
                                   {QStringLiteral("-c"), copy, QStringLiteral("copy"),
                                    WinePrefix().folder(), folder}),
                 0);
    }
    m_environment.insert(QStringLiteral("WINEPREFIX"), folder);
    WinePrefix().wakeServer(m_environment);
    QProcess registry;
    registry.setProcessEnvironment(m_environment);
    registry.setStandardInputFile(QProcess::nullDevice());
    registry.setStandardOutputFile(QProcess::nullDevice());
    registry.setStandardErrorFile(QProcess::nullDevice());
    registry.start(WinePrefix().loader(),
                   {QStringLiteral("reg.exe"), QStringLiteral("add"),
                    QStringLiteral("HKCU\\Control Panel\\Desktop"), QStringLiteral("/v"),
                    QStringLiteral("LogPixels"), QStringLiteral("/t"), QStringLiteral("REG_DWORD"),
                    QStringLiteral("/d"), QString::number(dpi), QStringLiteral("/f")});
    QVERIFY(registry.waitForFinished(kRunLimitMs));
    QCOMPARE(registry.exitCode(), 0);
}

void WindowProgramTest::geometry_data()
{
    QTest::addColumn<int>("dpi");
    QTest::addRow("96 dpi") << 96;
    QTest::addRow("144 dpi") << 144;
}

// Every control stands where it was drawn, the client area is the drawn one.
void WindowProgramTest::geometry()
{
    QFETCH(int, dpi);
    build(kFolder + QStringLiteral("/geometry"));
    if (QTest::currentTestFailed())
        return;
    const QProcessEnvironment usual = m_environment;
    if (dpi != 96)
        useResolution(dpi);
    const QString result = use(QStringLiteral("> client\n> places\n"), Mode::Learn);
    m_environment = usual;
    const auto scaled = [dpi](int length) { return qRound(length * dpi / 96.0); };
    QMap<QString, QStringList> found;
    for (const QString &line : result.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.size() == 2 && words.first() != QLatin1String(">"))
            found.insert(QStringLiteral("client"), words);
        else
            found.insert(words.first(), words.mid(1));
    }
    const auto form = formsOf(m_project).value(0);
    const VL::DesignComponent window = form.value(0);
    QCOMPARE(window.type, int(VL::Window));
    QCOMPARE(found.value(QStringLiteral("client")).join(QLatin1Char(' ')),
             QStringLiteral("%1 %2").arg(scaled(window.width)).arg(scaled(window.height)));
    for (const VL::DesignComponent &component : form) {
        if (component.type == VL::Window || isLayout(component.type))
            continue;
        const QStringList place = found.value(component.name());
        QVERIFY2(place.size() == 4, qPrintable(component.name() + QLatin1Char('\n') + result));
        // The classic designer draws a title bar of 30 pixels ahead of the client area.
        const int wanted[] = {component.x - window.x, component.y - window.y - 30, component.width,
                              component.height};
        for (int i = 0; i < 4; ++i) {
            QVERIFY2(qAbs(place.at(i).toInt() - scaled(wanted[i])) <= 1,
                     qPrintable(QStringLiteral("%1: %2, drawn at %3 %4 %5 %6")
                                    .arg(component.name(), place.join(QLatin1Char(' ')))
                                    .arg(scaled(wanted[0]))
                                    .arg(scaled(wanted[1]))
                                    .arg(scaled(wanted[2]))
                                    .arg(scaled(wanted[3]))));
        }
    }
}

QTEST_GUILESS_MAIN(WindowProgramTest)
#include "window_program_test.moc"
