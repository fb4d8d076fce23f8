// Forms as values: what is read, what stays and what a change does to the text.
#include "designer_test.h"

#include "designer/model/component_types.h"
#include "designer/model/form_file.h"

#include <QColor>
#include <QFont>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

using Designer::changedLines;
using Designer::sample;

namespace {

VL::DesignComponent button(const QString &name)
{
    VL::DesignComponent component;
    component.id = name;
    component.originalName = name;
    component.type = VL::Button;
    component.x = 1;
    component.y = 2;
    component.width = 80;
    component.height = 28;
    component.properties = {{QStringLiteral("name"), name}, {QStringLiteral("text"), name}};
    return component;
}

QStringList ids(const QList<VL::DesignComponent> &components)
{
    QStringList list;
    for (const VL::DesignComponent &component : components)
        list << component.id;
    return list;
}

} // namespace

using Change = std::function<void(VuiDocument &)>;
Q_DECLARE_METATYPE(Change)

class FormDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void typeTablesAgree();
    void samplesStayAsTheyAre_data();
    void samplesStayAsTheyAre();
    void readsAClassicForm();
    void readsTabPages();
    void readsASelfDrawnForm_data();
    void readsASelfDrawnForm();
    void anOlderReaderKeepsWhatANewerWrote();
    void newFormsLookLikeQJsonDocument();
    void oneChangeTouchesItsLines_data();
    void oneChangeTouchesItsLines();
    void updateWithTheSameChangesNothing_data();
    void updateWithTheSameChangesNothing();
    void updateFollowsTheDesigner();
    void selfDrawnPositionsFollowTheWindow();
    void propertyValuesAreEncoded();
};

void FormDocumentTest::typeTablesAgree()
{
    int last = -1;
    for (const VL::ComponentTypeInfo &info : VL::componentTypes()) {
        QVERIFY(info.type > last);
        last = info.type;
        QCOMPARE(VL::componentTypeByKey(QString::fromLatin1(info.key)), &info);
        QCOMPARE(VL::componentType(info.type), &info);
    }
    for (const int gap : {-1, 16, 17, 20, 23, 25, 31, 36, 1000})
        QVERIFY(!VL::componentType(gap));
    QCOMPARE(VL::usableComponentType(20), int(VL::ListView));
    QCOMPARE(VL::componentDisplayName(17), QStringLiteral("未知"));
    for (size_t i = 0; i < VL::vlwinControlTypes().size(); ++i) {
        const VL::VLWinControlTypeInfo &info = VL::vlwinControlTypes()[i];
        QCOMPARE(info.type, int(i));
        QVERIFY(VL::usableComponentType(info.classicType) != VL::NoComponentType);
        QVERIFY(info.minimumWidth <= info.width && info.minimumHeight <= info.height);
    }
    QCOMPARE(VL::classicTypeOfVlwin(11), int(VL::NoComponentType));
}

void FormDocumentTest::samplesStayAsTheyAre_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : Designer::sampleNames())
        QTest::addRow("%s", qPrintable(name)) << name;
}

void FormDocumentTest::samplesStayAsTheyAre()
{
    QFETCH(QString, name);
    const QByteArray bytes = Designer::bytesOf(Designer::dataFolder() + QLatin1Char('/') + name);
    QVERIFY(!bytes.isEmpty());
    const FormReadResult form = readFormBytes(name, bytes);
    QVERIFY2(form.document, qPrintable(form.message));
    QCOMPARE(form.document->toBytes(), bytes);
    // Two changes that undo each other leave every byte outside of them.
    VL::DesignComponent extra = button(QStringLiteral("临时"));
    form.document->append(extra);
    QCOMPARE(form.document->indexOf(extra.id), form.document->entryCount() - 1);
    form.document->remove(form.document->entryCount() - 1);
    QCOMPARE(form.document->toBytes(), bytes);
}

void FormDocumentTest::readsAClassicForm()
{
    VuiDocument form;
    QVERIFY(form.read(sample("classic.vui")));
    QCOMPARE(form.canvasSize(), QSize(640, 480));
    QStringList warnings;
    const QList<VL::DesignComponent> components = form.buildComponents(&warnings);
    QCOMPARE(warnings, QStringList());
    QCOMPARE(ids(components).join(QLatin1Char(' ')),
             QStringLiteral("主窗口 分组框1 按钮1 选项卡1 标签1 文本框1"));
    const VL::DesignComponent &button = components[2];
    QCOMPARE(button.type, int(VL::Button));
    QCOMPARE(QRect(button.x, button.y, button.width, button.height), QRect(40, 80, 80, 28));
    QCOMPARE(button.properties.value(QStringLiteral("ratio")), QVariant(0.5));
    QCOMPARE(button.properties.value(QStringLiteral("fontBold")), QVariant(true));
    QCOMPARE(button.properties.value(QStringLiteral("_parentGroupBox")).toString(),
             QStringLiteral("分组框1"));
    QCOMPARE(button.eventHandlers.value(QStringLiteral("单击")), QStringLiteral("确定_单击"));
    QVERIFY(components[1].locked);
    QVERIFY(!button.locked);
    QCOMPARE(components[5].properties.value(QStringLiteral("text")).toString(),
             QStringLiteral("第一行\n\"引号\"\\"));
}

void FormDocumentTest::readsTabPages()
{
    VuiDocument form;
    QVERIFY(form.read(sample("classic.vui")));
    const QList<VL::DesignComponent> components = form.buildComponents();
    const auto value = [&](int index, const char *key) {
        return components[index].properties.value(QString::fromLatin1(key));
    };
    QCOMPARE(value(3, "tabCount"), QVariant(2));
    QCOMPARE(value(3, "currentIndex"), QVariant(1));
    QCOMPARE(value(3, "tabTitles"), QVariant(QStringLiteral("一般;高级")));
    QCOMPARE(value(4, "_parentId"), QVariant(QStringLiteral("选项卡1")));
    // This one is known by the page list alone.
    QCOMPARE(value(5, "_parentTabWidget"), QVariant(QStringLiteral("选项卡1")));
    QCOMPARE(value(5, "_tabPageIndex"), QVariant(1));

    auto pages = form.tabPages(3);
    QVERIFY(pages && !form.tabPages(2));
    pages->children = {{}, {QStringLiteral("文本框1"), QStringLiteral("标签1")}};
    const QByteArray before = form.toBytes();
    form.setTabPages(3, *pages);
    QCOMPARE(form.component(4)->properties.value(QStringLiteral("_tabPageIndex")), QVariant(1));
    QVERIFY(!changedLines(before, form.toBytes())
                 .join(QString())
                 .contains(QStringLiteral("tabTitles")));
    QVERIFY(*form.tabPages(3) == *pages);
}

void FormDocumentTest::readsASelfDrawnForm_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QPoint>("button");
    QTest::addRow("local") << QStringLiteral("local.vlwin") << QPoint(40, 15);
    QTest::addRow("scene") << QStringLiteral("scene.vlwin") << QPoint(30, -5);
}

void FormDocumentTest::readsASelfDrawnForm()
{
    QFETCH(QString, name);
    QFETCH(QPoint, button);
    VlwinDocument form;
    QVERIFY(form.read(sample(qPrintable(name))));
    QStringList warnings;
    const QList<VL::DesignComponent> components = form.buildComponents(&warnings);
    QCOMPARE(warnings, QStringList());
    QCOMPARE(components.size(), 3);
    const VL::DesignComponent &window = components[form.indexOf(QStringLiteral("c1"))];
    const VL::DesignComponent &control = components[form.indexOf(QStringLiteral("c2"))];
    const VL::DesignComponent &table = components[form.indexOf(QStringLiteral("c3"))];
    QCOMPARE(window.type, int(VL::Window));
    QCOMPARE(QPoint(window.x, window.y), QPoint(10, 20));
    QCOMPARE(control.type, int(VL::Button));
    QCOMPARE(control.name(), QStringLiteral("按钮1"));
    QCOMPARE(QPoint(control.x, control.y), button);
    QCOMPARE(control.properties.value(QStringLiteral("_vlwin_type")), QVariant(1));
    QCOMPARE(control.properties.value(QStringLiteral("alignment")),
             QVariant(QStringLiteral("居中")));
    QCOMPARE(table.type, 20);
}

void FormDocumentTest::anOlderReaderKeepsWhatANewerWrote()
{
    VuiDocument form;
    const QByteArray before = sample("newer.vui");
    QVERIFY(form.read(before));
    QCOMPARE(form.entryCount(), 6);
    QCOMPARE(form.canvasSize(), QSize(800, 600));
    const QList<VL::DesignComponent> components = form.components();
    QCOMPARE(ids(components).join(QLatin1Char(' ')), QStringLiteral("按钮1 列表视图1"));
    const VL::DesignComponent &first = components[0];
    QCOMPARE(QRect(first.x, first.y, first.width, first.height), QRect(15, 0, 80, 28));
    QCOMPARE(first.properties.value(QStringLiteral("text")), QVariant(QStringLiteral("b")));
    QCOMPARE(int(first.properties.value(QStringLiteral("whole")).type()), int(QVariant::Int));
    QCOMPARE(int(first.properties.value(QStringLiteral("half")).type()), int(QVariant::Double));
    QCOMPARE(components[1].type, int(VL::ListView));
    QCOMPARE(QSize(components[1].width, components[1].height), QSize(32767, 0));

    form.setGeometry(1, QRect(15, 0, 90, 28));
    QByteArray after = before;
    after.replace("80.4", "90");
    QCOMPARE(form.toBytes(), after);
    form.setProperty(1, QStringLiteral("text"), QStringLiteral("c"));
    after.replace("\"text\": \"b\"", "\"text\": \"c\"");
    QCOMPARE(form.toBytes(), after);
}

void FormDocumentTest::newFormsLookLikeQJsonDocument()
{
    VuiDocument classic;
    classic.setCanvasSize(QSize(500, 300));
    VL::DesignComponent child = button(QStringLiteral("按钮1"));
    child.eventHandlers.insert(QStringLiteral("单击"), QStringLiteral("按钮1_单击"));
    child.properties.insert(QStringLiteral("_parentTabWidget"), QStringLiteral("选项卡1"));
    child.properties.insert(QStringLiteral("_tabPageIndex"), 0);
    classic.append(child);
    classic.append(button(QStringLiteral("按钮2")));
    VlwinDocument selfDrawn;
    selfDrawn.append(button(QStringLiteral("按钮1")));
    for (const FormDocument *form : {static_cast<const FormDocument *>(&classic),
                                     static_cast<const FormDocument *>(&selfDrawn)}) {
        const QByteArray bytes = form->toBytes();
        QCOMPARE(bytes, QJsonDocument::fromJson(bytes).toJson(QJsonDocument::Indented));
    }
    const QJsonObject entry = QJsonDocument::fromJson(classic.toBytes())
                                  .object()[QStringLiteral("components")]
                                  .toArray()[0]
                                  .toObject();
    QCOMPARE(entry[QStringLiteral("parentId")].toString(), QStringLiteral("选项卡1"));
    VlwinDocument again;
    QVERIFY(again.read(selfDrawn.toBytes()));
    QCOMPARE(again.components().value(0).name(), QStringLiteral("按钮1"));
    QCOMPARE(again.components().value(0).type, int(VL::Button));
    QVERIFY(again.hasLocalPositions());
}

void FormDocumentTest::oneChangeTouchesItsLines_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *name, const Change &change, const QStringList &lines) {
        QTest::addRow("%s", name) << change << lines;
    };
    row("property",
        [](VuiDocument &form) {
            form.setProperty(2, QStringLiteral("text"), QStringLiteral("取消"));
        },
        {QStringLiteral("-\"text\": \"确定\""), QStringLiteral("+\"text\": \"取消\"")});
    row("same property",
        [](VuiDocument &form) {
            form.setProperty(2, QStringLiteral("fontSize"), 9);
            form.setGeometry(2, QRect(40, 80, 80, 28));
            form.setLocked(2, false);
            form.setCanvasSize(QSize(640, 480));
            form.setTabPages(3, *form.tabPages(3));
        },
        {});
    row("new property",
        [](VuiDocument &form) { form.setProperty(2, QStringLiteral("note"), true); },
        {QStringLiteral("+\"note\": true,")});
    row("removed property",
        [](VuiDocument &form) { form.removeProperty(2, QStringLiteral("fontSize")); },
        {QStringLiteral("-\"fontSize\": 9,")});
    row("position", [](VuiDocument &form) { form.setGeometry(2, QRect(41, 80, 80, 28)); },
        {QStringLiteral("-\"x\": 40,"), QStringLiteral("+\"x\": 41,")});
    row("handler",
        [](VuiDocument &form) {
            form.setEventHandler(1, QStringLiteral("单击"), QStringLiteral("分组框1_单击"));
        },
        {QStringLiteral("+\"单击\": \"分组框1_单击\"")});
    row("removed handler",
        [](VuiDocument &form) { form.setEventHandler(2, QStringLiteral("单击"), QString()); },
        {QStringLiteral("-\"单击\": \"确定_单击\"")});
    row("canvas", [](VuiDocument &form) { form.setCanvasSize(QSize(641, 480)); },
        {QStringLiteral("-\"canvas_width\": 640,"), QStringLiteral("+\"canvas_width\": 641,")});
    row("page left",
        [](VuiDocument &form) { form.removeProperty(4, QStringLiteral("_parentTabWidget")); },
        {QStringLiteral("-\"parentId\": \"选项卡1\","), QStringLiteral("-\"properties\": {"),
         QStringLiteral("-\"_parentTabWidget\": \"选项卡1\","),
         QStringLiteral("+\"properties\": {")});
    row("beyond the end",
        [](VuiDocument &form) {
            form.setProperty(99, QStringLiteral("text"), 1);
            form.setGeometry(-1, QRect());
            form.remove(6);
        },
        {});
}

void FormDocumentTest::oneChangeTouchesItsLines()
{
    QFETCH(Change, change);
    QFETCH(QStringList, lines);
    for (const char *name : {"classic.vui", "crlf.vui", "bom.vui"}) {
        VuiDocument form;
        QVERIFY(form.read(sample(name)));
        change(form);
        QStringList found = changedLines(sample(name), form.toBytes());
        // A form keeps its own indentation, also in new lines.
        QCOMPARE(found, lines);
        QCOMPARE(form.toBytes().count("\r\n") > 0, qstrcmp(name, "crlf.vui") == 0);
    }
}

void FormDocumentTest::updateWithTheSameChangesNothing_data()
{
    samplesStayAsTheyAre_data();
}

void FormDocumentTest::updateWithTheSameChangesNothing()
{
    QFETCH(QString, name);
    const QByteArray bytes = Designer::bytesOf(Designer::dataFolder() + QLatin1Char('/') + name);
    const FormReadResult form = readFormBytes(name, bytes);
    form.document->update(form.document->components());
    QCOMPARE(form.document->toBytes(), bytes);
}

void FormDocumentTest::updateFollowsTheDesigner()
{
    VuiDocument form;
    QVERIFY(form.read(sample("newer.vui")));
    QList<VL::DesignComponent> components = form.components();
    // Renamed, sent behind the other, and a new one in between.
    components[0].originalName = QStringLiteral("按钮1");
    form.update(components);
    components[0].id = QStringLiteral("确定");
    components[0].properties.insert(QStringLiteral("name"), QStringLiteral("确定"));
    std::swap(components[0], components[1]);
    components.insert(1, button(QStringLiteral("按钮2")));
    form.update(components);
    QCOMPARE(ids(form.components()).join(QLatin1Char(' ')), QStringLiteral("列表视图1 按钮2 确定"));
    const QByteArray text = form.toBytes();
    for (const char *kept : {"\"tooltips\" : null", "12345678901234567890", "9.81e0", "1e400",
                             "\"not a component\", 17, null", "\"x\": 1.5e1"})
        QVERIFY2(text.contains(kept), kept);
    QCOMPARE(form.entryCount(), 7);

    VuiDocument again;
    QVERIFY(again.read(text));
    QCOMPARE(ids(again.components()), ids(form.components()));
    again.update({});
    QCOMPARE(again.entryCount(), 4);
    QVERIFY(again.toBytes().contains("9.81e0"));
}

void FormDocumentTest::selfDrawnPositionsFollowTheWindow()
{
    for (const char *name : {"local.vlwin", "scene.vlwin"}) {
        const bool local = qstrcmp(name, "local.vlwin") == 0;
        VlwinDocument form;
        QVERIFY(form.read(sample(name)));
        const int window = form.indexOf(QStringLiteral("c1"));
        const int control = form.indexOf(QStringLiteral("c2"));
        const QPoint shift = local ? QPoint(10, 20) : QPoint();
        form.setGeometry(control, QRect(QPoint(50, 60) + shift, QSize(100, 32)));
        QVERIFY(form.toBytes().contains("\"x\": 50"));
        form.setGeometry(window, QRect(0, 0, 640, 480));
        QCOMPARE(form.component(control)->x, 50);

        // The whole design moved at once: a local file changes in the window alone.
        QList<VL::DesignComponent> components = form.components();
        for (VL::DesignComponent &component : components)
            component.x += 7;
        const QByteArray before = form.toBytes();
        form.update(components);
        QCOMPARE(form.toBytes().contains("\"x\": 50"), local);
        QCOMPARE(form.component(control)->x, 57);
        QVERIFY(form.toBytes() != before);
        form.setProperty(control, QStringLiteral("name"), QStringLiteral("好"));
        QVERIFY(form.toBytes().contains("\"_vlwin_instance\": \"好\""));
        QCOMPARE(form.component(control)->name(), QStringLiteral("好"));
    }
}

void FormDocumentTest::propertyValuesAreEncoded()
{
    VuiDocument form;
    form.append(button(QStringLiteral("按钮1")));
    const QFont font(QStringLiteral("宋体"), 12);
    const QVector<QPair<QVariant, QVariant>> values = {
        {font, font.toString()},
        {QColor(255, 0, 16), QStringLiteral("#ff0010")},
        {QStringList{QStringLiteral("a"), QStringLiteral("b")},
         QVariantList{QStringLiteral("a"), QStringLiteral("b")}},
        {QVariant(), QVariant()},
        {qQNaN(), QVariant()},
        {12.0, 12},
    };
    for (const auto &value : values) {
        form.setProperty(0, QStringLiteral("p"), value.first);
        VuiDocument again;
        QVERIFY(again.read(form.toBytes()));
        const QVariant read = again.component(0)->properties.value(QStringLiteral("p"));
        QCOMPARE(int(read.type()), int(value.second.type()));
        QCOMPARE(read, value.second);
    }
}

QTEST_APPLESS_MAIN(FormDocumentTest)
#include "form_document_test.moc"
