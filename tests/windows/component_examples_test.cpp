// The examples in the records of window components do what they say.
//
// A form with one component of each type under the name that a designer gives it; the examples of
// all records as one program. VOREL_SHOW_EXAMPLES=1 writes what the program printed.
#include "test_files.h"

#include "designer/model/component_types.h"
#include "designer/model/form_file.h"
#include "designer/model/vlwin_document.h"
#include "designer/model/vui_document.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace {

const int kLimitMs = 600000;
const QString kMark = QStringLiteral("== ");
const QString kEvent = QStringLiteral("事件");

// A project of one family of component types.
struct Family
{
    QString form; // its file
    QString backEnd;
    QStringList types; // as the records name them
};

QString text(const QJsonObject &record, const char *key)
{
    return record.value(QLatin1String(key)).toString();
}

bool isSelfDrawn(const Family &family)
{
    return family.form.endsWith(QLatin1String(".vlwin"));
}

// The records of the family's members; its events, or all else.
QList<QJsonObject> recordsOf(const Family &family, bool events)
{
    QFile file(QStringLiteral(":/commands/builtin_commands.json"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonArray commands =
        QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String("commands")).toArray();
    QList<QJsonObject> records;
    for (const QJsonValue &value : commands) {
        const QJsonObject record = value.toObject();
        if (family.types.contains(text(record, "memberOf")) &&
            (text(record, "type") == kEvent) == events)
            records << record;
    }
    return records;
}

VL::DesignComponent component(int type, const QString &name, const QRect &place)
{
    VL::DesignComponent component;
    component.id = name;
    component.originalName = name;
    component.type = type;
    component.x = place.x();
    component.y = place.y();
    component.width = place.width();
    component.height = place.height();
    component.properties.insert(QStringLiteral("name"), name);
    // What the examples of lists and trees with check boxes and of a slider's marks ask for.
    component.properties.insert(QStringLiteral("checkBoxes"), true);
    component.properties.insert(QStringLiteral("tickStyle"), QStringLiteral("下方/右侧"));
    return component;
}

std::unique_ptr<FormDocument> formOf(const Family &family)
{
    std::unique_ptr<FormDocument> form;
    if (isSelfDrawn(family))
        form = std::make_unique<VlwinDocument>();
    else
        form = std::make_unique<VuiDocument>();
    form->append(component(VL::Window, QStringLiteral("主窗口"), {10, 10, 1000, 700}));
    int count = 0;
    const auto add = [&](int type, const QString &base, int width, int height) {
        if (type == VL::Window || (type >= VL::HorizontalLayout && type < VL::NoComponentType))
            return;
        const QPoint corner(20 + count % 4 * 240, 50 + count / 4 * 130);
        form->append(component(VL::usableComponentType(type), base + QLatin1Char('1'),
                               {corner, QSize(width, height)}));
        ++count;
    };
    if (isSelfDrawn(family)) {
        for (const VL::VLWinControlTypeInfo &type : VL::vlwinControlTypes())
            add(type.classicType, type.nameBase, type.width, type.height);
    } else {
        for (const VL::ComponentTypeInfo &type : VL::componentTypes())
            add(type.type, type.name, type.width, type.height);
    }
    return form;
}

// A project in `folder` with the family's form and that source.
QString writeProject(const QString &folder, const Family &family, const QString &source)
{
    const auto path = [&folder](const QString &name) { return folder + QLatin1Char('/') + name; };
    TestFiles::writeFile(path(QStringLiteral("source/main.vc")), source.toUtf8());
    const FormSaveResult saved = saveFormFile(path(family.form), *formOf(family));
    if (saved.status != FormStatus::Done)
        return QString();
    TestFiles::writeFile(path(QStringLiteral("resource/图片.png")),
                         TestFiles::readFile(QStringLiteral(
                             VOREL_SOURCE_DIR "/tests/windows/menus/resource/图标.png")));
    const QJsonObject project{
        {QStringLiteral("name"), QStringLiteral("examples")},
        {QStringLiteral("version"), QStringLiteral("1.0.0")},
        {QStringLiteral("targetPlatform"), QStringLiteral("x64")},
        {QStringLiteral("compiler"), QStringLiteral("MinGW")},
        {QStringLiteral("sourceFiles"), QJsonArray{QStringLiteral("source/main.vc")}},
        {QStringLiteral("windowFiles"), QJsonArray{family.form}},
        {QStringLiteral("startupWindowFile"), family.form},
        {QStringLiteral("uiBackend"), family.backEnd},
    };
    const QString file = path(QStringLiteral("examples.vlproj"));
    TestFiles::writeFile(file, QJsonDocument(project).toJson());
    return file;
}

// The example of the event that begins a program, with further lines at its end.
QString startOf(const Family &family, const QString &lines)
{
    for (const QJsonObject &record : recordsOf(family, true)) {
        if (text(record, "name").endsWith(QStringLiteral(".创建完毕")))
            return text(record, "example").chopped(1) + lines +
                   QStringLiteral("    主窗口.关闭()\n}\n");
    }
    return QString();
}

QString shownLines(const QString &lines)
{
    return lines.trimmed().replace(QLatin1Char('\n'), QLatin1String(" | "));
}

} // namespace

class ComponentExamplesTest : public QObject
{
    Q_OBJECT

private slots:
    void members_data();
    void members();
    void events_data();
    void events();

private:
    static Family family(const QString &form);
    static void familyRows();
    // What the program printed behind each mark, by what the mark names.
    static QMap<QString, QString> run(const Family &family, const QString &source);
};

Family ComponentExamplesTest::family(const QString &form)
{
    Family family{form, QString(), {}};
    if (isSelfDrawn(family)) {
        family.backEnd = QStringLiteral("vlwin");
        for (const VL::VLWinControlTypeInfo &type : VL::vlwinControlTypes())
            family.types << VL::vlwinControlDisplayName(type.type);
    } else {
        family.backEnd = QStringLiteral("win32");
        for (const VL::ComponentTypeInfo &type : VL::componentTypes())
            family.types << type.name;
    }
    return family;
}

void ComponentExamplesTest::familyRows()
{
    QTest::addColumn<QString>("form");
    QTest::addRow("classic") << QStringLiteral("ui/主窗口.vui");
    QTest::addRow("self-drawn") << QStringLiteral("ui/主窗口.vlwin");
}

QMap<QString, QString> ComponentExamplesTest::run(const Family &family, const QString &source)
{
    const QTemporaryDir folder;
    const QString project = writeProject(folder.path(), family, source);
    QProcess process;
    process.start(QStringLiteral(VORELC),
                  {QStringLiteral("run"), QStringLiteral("--quiet"), QStringLiteral("--config"),
                   QStringLiteral("debug"), project});
    if (!process.waitForFinished(kLimitMs)) {
        qWarning("out of time");
        return {};
    }
    const QString output = QString::fromUtf8(process.readAllStandardOutput());
    if (qEnvironmentVariableIsSet("VOREL_SHOW_EXAMPLES"))
        qInfo().noquote() << output;
    if (process.exitCode() != 0)
        qWarning().noquote() << process.readAllStandardError();
    QMap<QString, QString> sections;
    QString section;
    for (const QString &line : QString(output).remove(QLatin1Char('\r')).split(QLatin1Char('\n'))) {
        if (line.startsWith(kMark))
            sections[section = line.mid(kMark.size())];
        else
            sections[section] += line + QLatin1Char('\n');
    }
    return sections;
}

void ComponentExamplesTest::members_data()
{
    familyRows();
}

// Every property and method: its example prints exactly what its record says.
void ComponentExamplesTest::members()
{
    QFETCH(QString, form);
    const Family types = family(form);
    const QList<QJsonObject> records = recordsOf(types, false);
    QVERIFY(!records.isEmpty());
    QString calls;
    QString functions;
    QStringList unattended;
    QMap<QString, QString> expected;
    for (const QJsonObject &record : records) {
        const QString key = text(record, "name") + text(record, "type");
        const QString function = QStringLiteral("示例%1").arg(expected.size() + unattended.size());
        functions += QStringLiteral("函数 %1() {\n%2\n}\n").arg(function, text(record, "example"));
        if (!record.value(QLatin1String("unattended")).toBool(true)) {
            unattended << key;
            continue;
        }
        calls += QStringLiteral("    输出(\"%1%2\")\n    %3()\n").arg(kMark, key, function);
        expected.insert(key, text(record, "output"));
    }
    qInfo().noquote() << records.size() << "examples, only compiled:" << unattended;
    const QMap<QString, QString> actual = run(types, startOf(types, calls) + functions);
    QStringList wrong;
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const QString printed = actual.value(it.key(), QStringLiteral("(not reached)"));
        if (printed.trimmed() != it.value())
            wrong << it.key() + QStringLiteral(": ") + shownLines(printed) +
                         QStringLiteral(" instead of ") + shownLines(it.value());
    }
    for (const QString &line : qAsConst(wrong))
        qWarning().noquote() << line;
    QCOMPARE(wrong.size(), 0);
}

void ComponentExamplesTest::events_data()
{
    familyRows();
}

// Every event: its example is a function that compiles. Where the record tells how code causes the
// event, the function runs and prints what the record says, among what other events may print.
void ComponentExamplesTest::events()
{
    QFETCH(QString, form);
    const Family types = family(form);
    QString calls;
    QString functions;
    int compiledOnly = 0;
    QMap<QString, QString> expected;
    for (const QJsonObject &record : recordsOf(types, true)) {
        const QString name = text(record, "name");
        if (name.endsWith(QStringLiteral(".创建完毕"))) {
            expected.insert(QString(), text(record, "output"));
            continue;
        }
        functions += text(record, "example") + QLatin1Char('\n');
        if (!record.contains(QLatin1String("cause"))) {
            ++compiledOnly;
            continue;
        }
        const QString cause = QStringLiteral("原因%1").arg(expected.size());
        functions += QStringLiteral("函数 %1() {\n%2\n}\n").arg(cause, text(record, "cause"));
        calls += QStringLiteral("    输出(\"%1%2\")\n    %3()\n").arg(kMark, name, cause);
        expected.insert(name, text(record, "output"));
    }
    qInfo().noquote() << compiledOnly << "examples of events are only compiled";
    const QMap<QString, QString> actual = run(types, startOf(types, calls) + functions);
    QStringList wrong;
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const QString printed = actual.value(it.key(), QStringLiteral("(not reached)"));
        if (!printed.startsWith(it.value() + QLatin1Char('\n')) &&
            !printed.contains(QLatin1Char('\n') + it.value() + QLatin1Char('\n')))
            wrong << it.key() + QStringLiteral(": ") + shownLines(printed) +
                         QStringLiteral(" without ") + shownLines(it.value());
    }
    for (const QString &line : qAsConst(wrong))
        qWarning().noquote() << line;
    QCOMPARE(wrong.size(), 0);
}

QTEST_GUILESS_MAIN(ComponentExamplesTest)
#include "component_examples_test.moc"
