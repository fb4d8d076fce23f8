// Snippets outlive the program, whatever their file holds; colours in all ways of writing them.
#include "shell/color_picker_tool.h"
#include "shell/snippet_dialog.h"
#include "shell/snippet_manager.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class SnippetsTest : public QObject
{
    Q_OBJECT

private slots:
    void keepsSnippets();
    void refusesNames_data();
    void refusesNames();
    void keepsABrokenFileAside_data();
    void keepsABrokenFileAside();
    void tellsWhatCannotBeWritten();
    void dialogWritesAndInserts();
    void readsAndWritesColors_data();
    void readsAndWritesColors();
    void pickerFollowsItsFields();
};

void SnippetsTest::keepsSnippets()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("conf/snippets.json");
    SnippetManager manager(path);
    QCOMPARE(manager.put(QString(), {" 甲 ", "说明", "输出(1)\n"}), QString());
    QCOMPARE(manager.put(QString(), {"乙", "", "输出(2)"}), QString());
    QCOMPARE(manager.put("乙", {"丙", "", "输出(3)"}), QString());
    const QVector<Snippet> expected{{"甲", "说明", "输出(1)\n"}, {"丙", "", "输出(3)"}};
    QCOMPARE(SnippetManager(path).snippets(), expected);
    QCOMPARE(manager.remove("甲"), QString());
    QVERIFY(!SnippetManager(path).find("甲"));
    QVERIFY(!QFile::exists(path + ".bak"));
}

void SnippetsTest::refusesNames_data()
{
    QTest::addColumn<QString>("oldName");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("problem");
    QTest::newRow("none") << ""
                          << "  "
                          << "请填写片段的名称";
    QTest::newRow("taken") << ""
                           << "甲"
                           << "已经有名为“甲”的片段";
    QTest::newRow("taken by another") << "乙"
                                      << "甲"
                                      << "已经有名为“甲”的片段";
    QTest::newRow("its own") << "甲"
                             << "甲"
                             << "";
}

void SnippetsTest::refusesNames()
{
    QFETCH(QString, oldName);
    QFETCH(QString, name);
    QTemporaryDir folder;
    SnippetManager manager(folder.filePath("snippets.json"));
    QVERIFY(manager.put(QString(), {"甲", "", "1"}).isEmpty());
    QVERIFY(manager.put(QString(), {"乙", "", "2"}).isEmpty());
    QTEST(manager.put(oldName, {name, "", "3"}), "problem");
    QCOMPARE(manager.snippets().size(), 2);
}

void SnippetsTest::keepsABrokenFileAside_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("readable");
    QTest::newRow("no JSON") << QByteArray("\x00\xFF{", 3) << 0;
    QTest::newRow("not a list") << QByteArray("{\"name\":1}") << 0;
    QTest::newRow("one bad row") << QByteArray("[{\"name\":\"a\",\"text\":\"b\"},7]") << 1;
    QTest::newRow("a name twice") << QByteArray("[{\"name\":\"a\"},{\"name\":\"a\"}]") << 1;
}

void SnippetsTest::keepsABrokenFileAside()
{
    QFETCH(QByteArray, content);
    QFETCH(int, readable);
    QTemporaryDir folder;
    const QString path = folder.filePath("snippets.json");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    SnippetManager manager(path);
    QCOMPARE(manager.snippets().size(), readable);
    QVERIFY(manager.put(QString(), {"新", "", "1"}).isEmpty());
    QFile backup(path + ".bak");
    QVERIFY(backup.open(QIODevice::ReadOnly));
    QCOMPARE(backup.readAll(), content);
    QCOMPARE(SnippetManager(path).snippets().size(), readable + 1);
}

void SnippetsTest::tellsWhatCannotBeWritten()
{
    QTemporaryDir folder;
    SnippetManager manager(folder.path()); // a folder is no file
    QVERIFY(manager.put(QString(), {"甲", "", "1"}).startsWith("无法保存代码片段："));
    QVERIFY(manager.snippets().isEmpty());
}

void SnippetsTest::dialogWritesAndInserts()
{
    QTemporaryDir folder;
    SnippetManager manager(folder.filePath("snippets.json"));
    SnippetDialog dialog(manager);
    const auto click = [&](const char *text) {
        for (auto *button : dialog.findChildren<QPushButton *>()) {
            if (button->text() == text)
                button->click();
        }
    };
    dialog.beginNew("输出(1)");
    click("保存");
    QVERIFY(manager.snippets().isEmpty());
    dialog.findChildren<QLineEdit *>().first()->setText("甲");
    click("保存");
    QCOMPARE(manager.find("甲")->text, QString("输出(1)"));
    QSignalSpy inserted(&dialog, &SnippetDialog::insertRequested);
    click("插入到编辑器");
    QCOMPARE(inserted.value(0).value(0).toString(), QString("输出(1)"));
    click("删除");
    QVERIFY(manager.snippets().isEmpty());
    QCOMPARE(dialog.findChild<QListWidget *>()->count(), 0);
}

void SnippetsTest::readsAndWritesColors_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("hex"); // empty: no colour
    QTest::addColumn<int>("value");
    QTest::newRow("hex") << " #ff8000"
                         << "#FF8000" << 0x0080FF;
    QTest::newRow("parts") << "255，128, 0"
                           << "#FF8000" << 0x0080FF;
    QTest::newRow("red as commands take it") << "255"
                                             << "#FF0000" << 255;
    QTest::newRow("blue as commands take it") << "16711680"
                                              << "#0000FF" << 16711680;
    QTest::newRow("a part too large") << "256,0,0"
                                      << "" << 0;
    QTest::newRow("a number too large") << "16777216"
                                        << "" << 0;
    QTest::newRow("a name") << "red"
                            << "" << 0;
}

void SnippetsTest::readsAndWritesColors()
{
    QFETCH(QString, text);
    QFETCH(QString, hex);
    const QColor color = ColorText::parsed(text);
    QCOMPARE(color.isValid(), !hex.isEmpty());
    if (hex.isEmpty())
        return;
    QCOMPARE(ColorText::hex(color), hex);
    QTEST(ColorText::value(color), "value");
    QCOMPARE(ColorText::parsed(ColorText::rgb(color)), color);
}

void SnippetsTest::pickerFollowsItsFields()
{
    ColorPickerTool tool;
    const auto field = [&](const char *name) -> QLineEdit * {
        for (auto *edit : tool.findChildren<QLineEdit *>()) {
            if (edit->accessibleName() == name)
                return edit;
        }
        return nullptr;
    };
    tool.setColor(QColor(1, 2, 3));
    QCOMPARE(field("#RRGGBB")->text(), QString("#010203"));
    field("整数")->setText("255");
    emit field("整数")->editingFinished();
    QCOMPARE(field("红, 绿, 蓝")->text(), QString("255, 0, 0"));
    field("#RRGGBB")->setText("#12");
    emit field("#RRGGBB")->editingFinished();
    QCOMPARE(field("#RRGGBB")->text(), QString("#FF0000"));
}

QTEST_MAIN(SnippetsTest)
#include "snippets_test.moc"
