// JSON texts: what is read, refused, kept and changed.
#include "designer/model/json_tree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <limits>

Q_DECLARE_METATYPE(JsonFault)

class JsonTreeTest : public QObject
{
    Q_OBJECT

private slots:
    void keepsEveryByte_data();
    void keepsEveryByte();
    void tellsWhereATextIsWrong_data();
    void tellsWhereATextIsWrong();
    void readsValues_data();
    void readsValues();
    void writesLikeQJsonDocument_data();
    void writesLikeQJsonDocument();
    void changesOnlyWhatIsChanged_data();
    void changesOnlyWhatIsChanged();
    void limits();
    void theLastOfEqualKeysCounts();
};

void JsonTreeTest::keepsEveryByte_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addRow("scalar") << QByteArray(" -0.00e+07 ");
    QTest::addRow("blanks") << QByteArray("\t{ \r\n\"a\"\t:[ ] ,\"b\" : [\n1 , 2\n]}\n\n ");
    QTest::addRow("equal keys") << QByteArray("{\"a\":1,\"a\":{},\"\":null}");
    QTest::addRow("mark") << QByteArray("\xef\xbb\xbf[true,false]");
    QTest::addRow("escapes") << QByteArray(R"(["\/\u00e9\ud800 \uDC00\u0000"])");
    QTest::addRow("wrong bytes") << QByteArray("[\"\xff\xc0\x80\"]");
    QTest::addRow("control characters") << QByteArray("[\"a\0b\n\x01\"]", 9);
}

void JsonTreeTest::keepsEveryByte()
{
    QFETCH(QByteArray, text);
    JsonTree tree;
    QVERIFY(tree.parse(text));
    QCOMPARE(tree.toBytes(), text);
    // The pieces together are the text, too.
    if (tree.root().isContainer()) {
        std::vector<int> order;
        for (int i = int(tree.root().members.size()) - 1; i >= 0; --i)
            order.push_back(i);
        if (tree.root().kind == JsonKind::Array && order.size() > 1) {
            tree.reorder(tree.root(), order);
            QVERIFY(tree.toBytes() != text);
            tree.reorder(tree.root(), order);
        }
        QCOMPARE(tree.toBytes(), text);
    }
}

void JsonTreeTest::tellsWhereATextIsWrong_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<JsonFault>("fault");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    const auto row = [](const char *text, JsonFault fault, int line, int column) {
        QTest::addRow("%s", text) << QByteArray(text) << fault << line << column;
    };
    row("", JsonFault::UnexpectedEnd, 1, 1);
    row("{\n\"a\": 1\n", JsonFault::UnexpectedEnd, 3, 1);
    row("{\"a\":}", JsonFault::UnexpectedText, 1, 6);
    row("{\"a\" 1}", JsonFault::MissingColon, 1, 6);
    row("{\"a\":1\n \"b\":2}", JsonFault::MissingComma, 2, 2);
    row("{\"a\":1,}", JsonFault::MissingKey, 1, 8);
    row("{a:1}", JsonFault::MissingKey, 1, 2);
    row("[1,]", JsonFault::UnexpectedText, 1, 4);
    row("[1}", JsonFault::MissingComma, 1, 3);
    row("[01]", JsonFault::BadNumber, 1, 2);
    row("[1.]", JsonFault::BadNumber, 1, 2);
    row("[1e+]", JsonFault::BadNumber, 1, 2);
    row("[.5]", JsonFault::UnexpectedText, 1, 2);
    row("[NaN]", JsonFault::UnexpectedText, 1, 2);
    row("[-Infinity]", JsonFault::UnexpectedText, 1, 2);
    row("[nul", JsonFault::UnexpectedText, 1, 2);
    row("['a']", JsonFault::UnexpectedText, 1, 2);
    row("[\n\"abc]", JsonFault::UnclosedString, 2, 1);
    row("[\"\\u12g4\"]", JsonFault::BadEscape, 1, 3);
    row("[\"\\x\"]", JsonFault::BadEscape, 1, 3);
    row("[\"\\", JsonFault::BadEscape, 1, 3);
    row("[\"\\u00", JsonFault::BadEscape, 1, 3);
    row("{}\n{}", JsonFault::TextAfterEnd, 2, 1);
    row("<<<<<<< HEAD\n{}", JsonFault::UnexpectedText, 1, 1);
    row("\xff\xfe{", JsonFault::NotUtf8, 1, 1);
    QTest::addRow("zero bytes") << QByteArray(16, '\0') << JsonFault::UnexpectedText << 1 << 1;
    QTest::addRow("zero behind") << QByteArray("{}\0", 3) << JsonFault::TextAfterEnd << 1 << 3;
}

void JsonTreeTest::tellsWhereATextIsWrong()
{
    QFETCH(QByteArray, text);
    QFETCH(JsonFault, fault);
    QFETCH(int, line);
    QFETCH(int, column);
    JsonTree tree;
    JsonError error;
    QVERIFY(tree.parse("[7]"));
    QVERIFY(!tree.parse(text, &error));
    QCOMPARE(int(error.fault), int(fault));
    QCOMPARE(error.line, line);
    QCOMPARE(error.column, column);
    QVERIFY(error.message().startsWith(QStringLiteral("第 %1 行").arg(line)));
    QCOMPARE(tree.toBytes(), QByteArray("[7]"));
}

void JsonTreeTest::readsValues_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char *text, const QVariant &value) {
        QTest::addRow("%s", text) << QByteArray(text) << value;
    };
    row("12", 12);
    row("12.0", 12);
    row("1.2e1", 12);
    row("12.5", 12.5);
    row("-2147483648", std::numeric_limits<int>::min());
    row("2147483648", 2147483648.0);
    row("1e400", QVariant());
    row("-1e400", QVariant());
    row("1e-400", 0);
    row("true", true);
    row("null", QVariant());
    row("\"12\"", QStringLiteral("12"));
    row("\"按\\u94ae\\n\\\"\"", QStringLiteral("按钮\n\""));
    row("\"\\ud83d\\ude00\"", QString::fromUtf8("\xf0\x9f\x98\x80"));
    row("\"\\ud83d\"", QString(QChar(0xd83d)));
    row("[1,\"a\"]", QVariantList{1, QStringLiteral("a")});
    row("{\"b\":[],\"a\":0.5}",
        QVariantMap{{QStringLiteral("a"), 0.5}, {QStringLiteral("b"), QVariantList()}});
}

void JsonTreeTest::readsValues()
{
    QFETCH(QByteArray, text);
    QFETCH(QVariant, value);
    JsonTree tree;
    QVERIFY(tree.parse(text));
    const QVariant read = tree.variant(tree.root());
    QCOMPARE(int(read.type()), int(value.type()));
    QCOMPARE(read, value);
}

void JsonTreeTest::writesLikeQJsonDocument_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text :
         {"{}", "[]", "{\"a\":{},\"b\":[],\"c\":[[],{\"d\":1}]}",
          "{\"按钮\":\"值\",\"Z\":true,\"a\":null,\"_\":1.5,\"n\":-12,\"e\":1e300,\"s\":0.1}",
          "[\"\\\" \\\\ / \\b\\f\\n\\r\\t\\u0001\\u007f é 按 \\ud83d\\ude00\"]",
          "[9007199254740992, 2147483648, 123456.789, 1e21]"})
        QTest::addRow("%s", text) << QByteArray(text);
}

void JsonTreeTest::writesLikeQJsonDocument()
{
    QFETCH(QByteArray, text);
    const QJsonDocument document = QJsonDocument::fromJson(text);
    QVERIFY(!document.isNull());
    const QJsonValue value =
        document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    QCOMPARE(formatJson(value, JsonLayout()) + '\n', document.toJson(QJsonDocument::Indented));
    JsonLayout inLine;
    inLine.indent = QByteArray();
    inLine.colon = ":";
    QCOMPARE(formatJson(value, inLine), document.toJson(QJsonDocument::Compact));
}

// Each row does one thing to the value of "o": "+key" sets a member to 7, "-key" removes it, and
// for an array "+2" inserts 7 at place 2 and "-2" removes what is there.
void JsonTreeTest::changesOnlyWhatIsChanged_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *before, const char *change, const char *after) {
        QTest::addRow("%s %s", before, change)
            << QByteArray(before) << QString::fromUtf8(change) << QByteArray(after);
    };
    row("{\"o\":{\"a\" : 1 }}", "+a", "{\"o\":{\"a\" : 7 }}");
    row("{\"o\":{}}", "+a", "{\"o\":{\"a\":7}}");
    row("{\"o\": {}}", "+a", "{\"o\": {\"a\": 7}}");
    row("{\"o\": {\"a\": 1}}", "+b", "{\"o\": {\"a\": 1, \"b\": 7}}");
    row("{\"o\": {\"a\": 1, \"c\": 3}}", "+b", "{\"o\": {\"a\": 1, \"b\": 7, \"c\": 3}}");
    row("{\"o\": {\"b\": 1, \"c\": 3}}", "+a", "{\"o\": {\"a\": 7, \"b\": 1, \"c\": 3}}");
    row("{\"o\":{\"c\":1,\"b\":3}}", "+a", "{\"o\":{\"c\":1,\"b\":3,\"a\":7}}");
    row("{\"o\":{\"a\":1,\"b\":3}}", "-a", "{\"o\":{\"b\":3}}");
    row("{\"o\":{ \"a\":1, \"b\":3 }}", "-b", "{\"o\":{ \"a\":1 }}");
    row("{\"o\":{\"a\":1,\"b\":2,\"a\":3}}", "-a", "{\"o\":{\"b\":2}}");
    row("{\"o\":{\"a\":1,\"b\":2,\"a\":3}}", "+a", "{\"o\":{\"a\":1,\"b\":2,\"a\":7}}");
    row("{\"o\":{\"\\u0061\":1}}", "+a", "{\"o\":{\"\\u0061\":7}}");
    row("{\"o\":{\"a\":1}}", "-x", "{\"o\":{\"a\":1}}");
    row("{\n  \"o\": {\n  }\n}", "+a", "{\n  \"o\": {\n    \"a\": 7\n  }\n}");
    row("{\r\n\t\"o\": {}\r\n}", "+a", "{\r\n\t\"o\": {\r\n\t\t\"a\": 7\r\n\t}\r\n}");
    row("{\n  \"o\": {\n    \"a\": 1\n  }\n}", "+b",
        "{\n  \"o\": {\n    \"a\": 1,\n    \"b\": 7\n  }\n}");
    row("{\n  \"o\": {\n    \"a\": 1\n  }\n}", "-a", "{\n  \"o\": {\n  }\n}");
    row("{\n  \"o\": {\n    \"a\": 1,\n    \"b\": 2\n  }\n}", "-b",
        "{\n  \"o\": {\n    \"a\": 1\n  }\n}");
    row("{ \"o\": {\n    \"a\": 1\n  , \"b\": 2\n  }}", "+c",
        "{ \"o\": {\n    \"a\": 1\n  , \"b\": 2\n  , \"c\": 7\n  }}");
    row("{\"o\":[1,2]}", "+0", "{\"o\":[7,1,2]}");
    row("{\"o\":[1, 2]}", "+0", "{\"o\":[7, 1, 2]}");
    row("{\"o\":[ 1 , 2 ]}", "+2", "{\"o\":[ 1 , 2 , 7 ]}");
    row("{\n \"o\":[\n  1,\n  2\n ]}", "+1", "{\n \"o\":[\n  1,\n  7,\n  2\n ]}");
    row("{\n \"o\":[\n  1,\n  2\n ]}", "-0", "{\n \"o\":[\n  2\n ]}");
}

void JsonTreeTest::changesOnlyWhatIsChanged()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, change);
    QFETCH(QByteArray, after);
    JsonTree tree;
    QVERIFY(tree.parse(before));
    JsonMember &holder = tree.root().members.front();
    JsonNode &node = holder.value;
    const QString what = change.mid(1);
    const bool adds = change.startsWith(QLatin1Char('+'));
    if (node.kind == JsonKind::Object && adds) {
        tree.setMember(node, tree.indentOf(holder), what, 7);
    } else if (node.kind == JsonKind::Object) {
        tree.removeMember(node, what);
    } else if (adds) {
        tree.insertElement(node, tree.indentOf(holder), what.toInt(), 7);
    } else {
        std::vector<bool> kept(node.members.size(), true);
        kept[size_t(what.toInt())] = false;
        tree.retain(node, kept);
    }
    QCOMPARE(tree.toBytes(), after);
    JsonTree again;
    QVERIFY(again.parse(tree.toBytes()));
}

void JsonTreeTest::limits()
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    JsonTree tree;
    JsonError error;
    QVERIFY(tree.parse(nested(JsonTree::maxDepth)));
    QVERIFY(!tree.parse(nested(JsonTree::maxDepth + 1), &error));
    QCOMPARE(int(error.fault), int(JsonFault::TooDeep));
    QVERIFY(!tree.parse(QByteArray(20'000'000, '['), &error));
    QCOMPARE(int(error.fault), int(JsonFault::TooDeep));

    QByteArray many("[0");
    for (int i = 2; i < JsonTree::maxValues; ++i)
        many += ",0";
    QVERIFY(tree.parse(many + ']'));
    QVERIFY(!tree.parse(many + ",0]", &error));
    QCOMPARE(int(error.fault), int(JsonFault::TooManyValues));

    // What is written can be read again, however deep it is.
    QJsonValue deep = 1;
    for (int i = 0; i < JsonTree::maxDepth; ++i)
        deep = QJsonArray{deep};
    QVERIFY(tree.parse("{\"a\":{\"b\":{\"c\":{}}}}"));
    JsonNode &inner = *tree.find(*tree.find(*tree.find(tree.root(), "a"), "b"), "c");
    tree.setMember(inner, QByteArray(), QStringLiteral("d"), deep);
    QVERIFY(tree.parse(tree.toBytes()));
}

void JsonTreeTest::theLastOfEqualKeysCounts()
{
    JsonTree tree;
    QVERIFY(tree.parse("{\"a\":1,\"\\u0061\":2}"));
    QCOMPARE(tree.variant(*tree.find(tree.root(), "a")), QVariant(2));
    QVERIFY(!tree.find(tree.root(), "A"));
    QVERIFY(!tree.find(*tree.find(tree.root(), "a"), "a"));
}

QTEST_APPLESS_MAIN(JsonTreeTest)
#include "json_tree_test.moc"
