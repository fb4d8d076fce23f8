// Form files that are wrong by accident or on purpose: a message or a default, nothing worse.
#include "designer_test.h"

#include "designer/model/form_file.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <random>

namespace {

QByteArray formOf(const QByteArray &entries)
{
    return "{\"components\":[" + entries + "]}";
}

// Everything that a user of a form would call.
void exercise(FormDocument &form)
{
    QStringList warnings;
    const QList<VL::DesignComponent> components = form.components();
    form.buildComponents(&warnings);
    form.indexOf(QStringLiteral("按钮1"));
    if (!form.component(0))
        return;
    form.setProperty(0, QStringLiteral("text"), 1);
    form.setEventHandler(0, QStringLiteral("单击"), QStringLiteral("f"));
    form.update(components);
    form.remove(0);
}

} // namespace

class FormInputTest : public QObject
{
    Q_OBJECT

private slots:
    void brokenFilesNameTheLine_data();
    void brokenFilesNameTheLine();
    void wrongTypesHaveDefaults_data();
    void wrongTypesHaveDefaults();
    void warnsOfWhatIsWrong_data();
    void warnsOfWhatIsWrong();
    void numbersStayWithinBounds();
    void textsAreFitForUse();
    void parentCirclesAreCut_data();
    void parentCirclesAreCut();
    void longParentChainsAreWalked();
    void namelessComponentsGetFreeNames();
    void hugeFormsAreReadInOneGo();
    void anyDamageIsSurvived_data();
    void anyDamageIsSurvived();
};

void FormInputTest::brokenFilesNameTheLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("part");
    const auto row = [](const char *name, const QByteArray &bytes, FormStatus status,
                        const char *part) {
        QTest::addRow("%s", name) << bytes << int(status) << QString::fromUtf8(part);
    };
    row("nothing", "", FormStatus::Empty, "窗口文件为空");
    row("blanks", "\xef\xbb\xbf \r\n\t", FormStatus::Empty, "窗口文件为空");
    row("array", "[]", FormStatus::Broken, "最外层应为对象");
    row("cut", "{\n\"components\": [\n{", FormStatus::Broken, "第 3 行");
    row("conflict", "{\n<<<<<<< HEAD\n}", FormStatus::Broken, "第 2 行");
    row("xml", "<Window/>", FormStatus::Broken, "第 1 行");
    row("zeros", QByteArray(4096, '\0'), FormStatus::Broken, "第 1 行");
    row("utf-16", QByteArray("\xff\xfe{\0}\0", 6), FormStatus::Broken, "UTF-8");
    row("deep", QByteArray(100'000, '['), FormStatus::Broken, "嵌套");
    row("large", QByteArray(largestFormFile + 1, ' '), FormStatus::TooLarge, "64 MB");
}

void FormInputTest::brokenFilesNameTheLine()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, status);
    QFETCH(QString, part);
    for (const char *path : {"a.vui", "a.vlwin"}) {
        const FormReadResult form = readFormBytes(QString::fromLatin1(path), bytes);
        QCOMPARE(int(form.status), status);
        QVERIFY(!form.document);
        QVERIFY2(form.message.contains(part), qPrintable(form.message));
    }
}

void FormInputTest::wrongTypesHaveDefaults_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("count");
    const auto row = [](const char *bytes, int count) {
        QTest::addRow("%s", bytes) << QByteArray(bytes) << count;
    };
    row(R"({})", 0);
    row(R"({"components":{}})", 0);
    row(R"({"components":null,"canvas_width":[],"canvas_height":"x"})", 0);
    row(R"({"components":[[],1,"a",null,true,{}]})", 0);
    row(R"({"components":[{"type":"4"},{"type":4.5},{"type":1e99},{"type":-1},{"type":36}]})", 0);
    row(R"({"components":[{"type":4,"id":5,"x":"1","y":[],"width":{},"height":null,"locked":1}]})",
        1);
    row(R"({"components":[{"type":4,"properties":[1],"eventHandlers":"单击"}]})", 1);
    row(R"({"components":[{"type":4,"properties":{"name":7},"eventHandlers":{"a":1,"b":{}}}]})", 1);
    row(R"({"components":[{"type":2,"id":"t","tabData":7}]})", 1);
    row(R"({"components":[{"type":2,"id":"t","tabData":{"tabCount":"x","tabTitles":{},)"
        R"("currentIndex":-5,"tabChildren":[1,"t",{},["t",2,[]]]}}]})",
        1);
    row(R"({"components":[{"type":4,"parentId":{},"children":[{"type":4},[],{"type":99}]}]})", 1);
}

void FormInputTest::wrongTypesHaveDefaults()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, count);
    VuiDocument form;
    QVERIFY(form.read(bytes));
    QCOMPARE(form.buildComponents().size(), count);
    QVERIFY(form.canvasSize() == QSize(800, 600));
    QCOMPARE(form.toBytes(), bytes);
    exercise(form);
    VlwinDocument selfDrawn;
    QVERIFY(selfDrawn.read(bytes.replace("\"type\":", "\"_vlwin_type\":")));
    QCOMPARE(selfDrawn.buildComponents().size(), count);
    exercise(selfDrawn);
}

void FormInputTest::warnsOfWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QString>("warning");
    const auto row = [](const char *entries, const char *warning) {
        QTest::addRow("%s", warning) << QByteArray(entries) << QString::fromUtf8(warning);
    };
    row("\n{\"type\":77,\"id\":\"甲\"}", "第 2 行: 组件“甲”的类型未知，已跳过");
    row("\n\n5", "第 3 行: 组件应为对象，已跳过");
    row(R"({"type":4,"id":"甲","width":-1})", "第 1 行: 组件“甲”的 width 超出 0 到 32767");
    row(R"({"type":4,"id":"甲","x":"1"})", "第 1 行: 组件“甲”的 x 应为数字");
    row(R"({"type":4,"id":"甲","eventHandlers":{"单击":1}})", "第 1 行: 事件 单击 的处理应为文字");
    row(R"({"type":4,"id":"甲","properties":{"max":1e400}})", "第 1 行: 属性 max 的数字太大");
    row(R"({"type":4,"id":"a b"})", "组件名称“a b”不能用作标识符，改用“a_b”");
    row(R"({"type":4,"id":"甲"},{"type":5,"id":"甲"})", "组件名称重复: 甲");
    row("{\"type\":4,\"id\":\"甲\",\"properties\":{\"text\":\"\xc0\"}}",
        "第 1 行: 文字不是 UTF-8 编码");
    row(R"({"type":2,"id":"甲","tabData":{"tabCount":1,"tabChildren":[[],[]]}})",
        "第 1 行: 选项卡“甲”的组件分在 2 页上，但只有 1 页");
}

void FormInputTest::warnsOfWhatIsWrong()
{
    QFETCH(QByteArray, entries);
    QFETCH(QString, warning);
    VuiDocument form;
    QVERIFY(form.read(formOf(entries)));
    QStringList warnings;
    form.buildComponents(&warnings);
    QCOMPARE(warnings, QStringList(warning));
}

void FormInputTest::numbersStayWithinBounds()
{
    VuiDocument form;
    const QByteArray bytes = formOf(R"({"type":4,"id":"甲","x":-1e400,"y":99999999999,)"
                                    R"("width":1e400,"height":-3,"properties":{"v":1e400}})");
    QVERIFY(form.read(bytes));
    const VL::DesignComponent component = *form.component(0);
    QCOMPARE(component.x, -32767);
    QCOMPARE(component.y, 32767);
    QCOMPARE(component.width, 32767);
    QCOMPARE(component.height, 0);
    QVERIFY(!component.properties.value(QStringLiteral("v")).isValid());
    QCOMPARE(form.toBytes(), bytes);
}

void FormInputTest::textsAreFitForUse()
{
    VuiDocument form;
    QVERIFY(form.read(formOf("{\"type\":4,\"id\":\"a\\u0000b\",\"properties\":{\"text\":"
                             "\"x\\ud800y\\udc00\\u0000\",\"list\":[\"\\udfff\"]}}")));
    const VL::DesignComponent component = *form.component(0);
    QCOMPARE(component.id, QStringLiteral("ab"));
    QCOMPARE(component.properties.value(QStringLiteral("text")).toString(),
             QStringLiteral("x\ufffdy\ufffd"));
    QCOMPARE(component.properties.value(QStringLiteral("list")).toList(),
             QVariantList{QStringLiteral("\ufffd")});

    // What reaches source code as a name is one.
    const struct
    {
        const char *id;
        QString name;
    } names[] = {
        {"按钮1", QStringLiteral("按钮1")},
        {"1号", QStringLiteral("_1号")},
        {"a;system(\\\"x\\\")", QStringLiteral("a_system__x__")},
        {"a\\nb", QStringLiteral("a_b")},
        {"😀", QStringLiteral("_")},
        {"\xf0\xa0\x80\x80", QString::fromUtf8("\xf0\xa0\x80\x80")}, // a letter beyond 16 bits
    };
    for (const auto &row : names) {
        QVERIFY(form.read(formOf(QByteArray("{\"type\":4,\"id\":\"") + row.id + "\"}")));
        QCOMPARE(form.buildComponents().value(0).name(), row.name);
    }
}

void FormInputTest::parentCirclesAreCut_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<int>("left"); // parent keys
    const auto row = [](const char *name, const char *entries, int left) {
        QTest::addRow("%s", name) << QByteArray(entries) << left;
    };
    row("no circle",
        R"({"type":1,"id":"a","properties":{"_parentLayout":"b"}},{"type":26,"id":"b"})", 1);
    row("itself", R"({"type":1,"id":"a","properties":{"_parentGroupBox":"a"}})", 0);
    row("two kinds",
        R"({"type":1,"id":"a","properties":{"_parentLayout":"b"}},)"
        R"({"type":26,"id":"b","properties":{"_parentGroupBox":"a"}})",
        1);
    row("three",
        R"({"type":1,"id":"a","properties":{"_parentGroupBox":"b"}},)"
        R"({"type":1,"id":"b","properties":{"_parentGroupBox":"c"}},)"
        R"({"type":1,"id":"c","properties":{"_parentGroupBox":"a"}})",
        2);
    row("pages of each other",
        R"({"type":2,"id":"a","tabData":{"tabChildren":[["b","a"]]}},)"
        R"({"type":2,"id":"b","tabData":{"tabChildren":[["a"]]}})",
        1);
    row("parentId", R"({"type":4,"id":"a","parentId":"a"})", 0);
    row("equal ids",
        R"({"type":1,"id":"a"},{"type":1,"id":"a","properties":{"_parentGroupBox":"a"}})", 1);
    row("unknown parent", R"({"type":4,"id":"a","properties":{"_parentGroupBox":"z"}})", 1);
}

void FormInputTest::parentCirclesAreCut()
{
    QFETCH(QByteArray, entries);
    QFETCH(int, left);
    VuiDocument form;
    QVERIFY(form.read(formOf(entries)));
    int found = 0;
    for (const VL::DesignComponent &component : form.buildComponents()) {
        for (const char *key :
             {"_parentLayout", "_parentGroupBox", "_parentTabWidget", "_parentId"})
            found += component.properties.contains(QString::fromLatin1(key));
    }
    QCOMPARE(found, left);
    QCOMPARE(form.toBytes(), formOf(entries));
}

void FormInputTest::longParentChainsAreWalked()
{
    constexpr int count = 100'000;
    QByteArray entries;
    for (int i = 0; i < count; ++i) {
        const QByteArray parent = QByteArray::number((i + 1) % count);
        entries += (i > 0 ? ",{\"type\":1,\"id\":\"a" : "{\"type\":1,\"id\":\"a") +
                   QByteArray::number(i) + "\",\"properties\":{\"_parentGroupBox\":\"a" + parent +
                   "\"}}";
    }
    VuiDocument form;
    QVERIFY(form.read(formOf(entries)));
    QStringList warnings;
    QCOMPARE(form.buildComponents(&warnings).size(), count);
    QCOMPARE(warnings.size(), 1);
}

void FormInputTest::namelessComponentsGetFreeNames()
{
    VuiDocument form;
    QVERIFY(form.read(formOf(R"({"type":4},{"type":4,"id":"按钮1"},{"type":4},{"type":5})")));
    QStringList names;
    for (const VL::DesignComponent &component : form.buildComponents())
        names << component.name();
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("按钮2 按钮1 按钮3 标签1"));
}

void FormInputTest::hugeFormsAreReadInOneGo()
{
    // Many entries with one id, one page that claims them all, and warnings without end.
    QByteArray children;
    QByteArray entries;
    for (int i = 0; i < 50'000; ++i) {
        children += ",\"x\"";
        entries += ",{\"type\":4,\"id\":\"x\",\"width\":-1,\"properties\":{\"a\":1e999}}";
    }
    VuiDocument form;
    QVERIFY(form.read(formOf("{\"type\":2,\"id\":\"t\",\"tabData\":{\"tabChildren\":[[\"x\"" +
                             children + "]]}}" + entries)));
    QStringList warnings;
    QCOMPARE(form.buildComponents(&warnings).size(), 50'001);
    QVERIFY(warnings.size() <= 101);
    QVERIFY(warnings.last().contains(QStringLiteral("未列出")));
    form.update(form.components());
    QVERIFY(!form.isModified());
    form.update(form.components().mid(25'000));
    QCOMPARE(form.entryCount(), 25'001);
}

void FormInputTest::anyDamageIsSurvived_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : Designer::sampleNames())
        QTest::addRow("%s", qPrintable(name)) << name;
}

// Random damage, the same in each run: what is still read is written back as it was.
void FormInputTest::anyDamageIsSurvived()
{
    QFETCH(QString, name);
    const QByteArray whole = Designer::bytesOf(Designer::dataFolder() + QLatin1Char('/') + name);
    std::mt19937 random(20240607);
    const auto below = [&random](int limit) { return int(random() % unsigned(limit)); };
    int survived = 0;
    for (int round = 0; round < 400; ++round) {
        QByteArray bytes = whole;
        for (int i = below(4); i >= 0; --i) {
            const int at = below(bytes.size());
            switch (below(5)) {
            case 0:
                bytes[at] = char(below(256));
                break;
            case 1:
                bytes[at] = "{}[]\",:0-eE\\u"[below(13)];
                break;
            case 2:
                bytes.remove(at, below(30));
                break;
            case 3:
                bytes.insert(at, bytes.mid(below(bytes.size()), below(60)));
                break;
            default:
                if (round % 4 == 0)
                    bytes.truncate(at + 1);
            }
            if (bytes.isEmpty())
                bytes = "{";
        }
        const FormReadResult form = readFormBytes(name, bytes);
        QCOMPARE(form.message.isEmpty(), bool(form.document));
        if (!form.document)
            continue;
        ++survived;
        QCOMPARE(form.document->toBytes(), bytes);
        form.document->update(form.document->components());
        QCOMPARE(Designer::changedLines(bytes, form.document->toBytes()), QStringList());
        exercise(*form.document);
        VuiDocument again;
        QVERIFY(again.read(form.document->toBytes()));
    }
    QVERIFY(survived > 10);
}

QTEST_APPLESS_MAIN(FormInputTest)
#include "form_input_test.moc"
