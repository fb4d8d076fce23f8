// The open files: opening, saving, closing and reading again.
#include "editor/syntax_highlighter.h"
#include "shell/desk.h"
#include "test_files.h"

#include <QFileDialog>
#include <QLineEdit>

using TestFiles::readFile;
using TestFiles::writeFile;

namespace {

void type(CodeEditor *editor, const QString &text)
{
    editor->insertPlainText(text);
}

// Gives this name to the next file that is saved under a new one.
void chooseFile(const QString &path)
{
    Shell::inNext<QFileDialog>([path](QFileDialog *dialog) {
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

} // namespace

class EditorTabsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void oneTabForOneFile_data();
    void oneTabForOneFile();
    void refusesWithAMessage();
    void savesUntitledUnderAName();
    void saveAsSparesOpenFiles();
    void savesAllThatCanBeSaved();
    void closeAsks_data();
    void closeAsks();
    void givingUpKeepsEverything();
    void reloadIsOneStep();
    void everySignSurvives();
    void formsAreText_data();
    void formsAreText();
    void recoveredTextIsNotSaved_data();
    void recoveredTextIsNotSaved();

private:
    QString file(const QString &name) const { return m_folder->filePath(name); }
    CodeEditor *openNew(const QString &name, const QByteArray &bytes)
    {
        writeFile(file(name), bytes);
        return m_tabs->open(file(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<EditorTabs> m_tabs;
};

void EditorTabsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_tabs = std::make_unique<EditorTabs>();
    m_tabs->show();
}

void EditorTabsTest::cleanup()
{
    m_tabs.reset();
}

void EditorTabsTest::oneTabForOneFile_data()
{
    QTest::addColumn<QString>("again");
    QTest::addRow("same") << "夹/甲.vc";
    QTest::addRow("dots") << "夹/../夹/./甲.vc";
    QTest::addRow("link") << "连.vc";
}

void EditorTabsTest::oneTabForOneFile()
{
    QFETCH(QString, again);
    CodeEditor *first = openNew("夹/甲.vc", "甲");
    openNew("乙.vc", "乙");
    QFile::link(file("夹/甲.vc"), file("连.vc"));
    QCOMPARE(m_tabs->open(file(again)), first);
    QCOMPARE(m_tabs->count(), 2);
    QCOMPARE(m_tabs->currentEditor(), first);
    QVERIFY(!m_tabs->open(file("夹/甲.vc"))->document()->isModified());
}

void EditorTabsTest::refusesWithAMessage()
{
    writeFile(file("程序.vc"), QByteArray("MZ\0\1", 4));
    QString message;
    Shell::answerNextBox("确定", &message);
    QVERIFY(!m_tabs->open(file("程序.vc")));
    QVERIFY2(message.contains("程序.vc"), qPrintable(message));
    QCOMPARE(m_tabs->count(), 0);
}

void EditorTabsTest::savesUntitledUnderAName()
{
    CodeEditor *editor = m_tabs->openUntitled("新\n");
    QVERIFY(m_tabs->tabText(0).startsWith("未命名1.vc"));
    QVERIFY(m_tabs->openUntitled(QString())->title().startsWith("未命名2.vc"));
    chooseFile(file("新.vc"));
    QVERIFY(m_tabs->save(editor));
    QCOMPARE(editor->filePath(), file("新.vc"));
    QCOMPARE(m_tabs->tabText(0), QString("新.vc"));
    QCOMPARE(readFile(file("新.vc")), QByteArray("新\n"));
    type(editor, "更");
    QCOMPARE(m_tabs->tabText(0), QString("新.vc ●"));
    QVERIFY(m_tabs->save(editor));
    QCOMPARE(readFile(file("新.vc")), QByteArray("更新\n"));
}

// Two editors of one file would overwrite each other.
void EditorTabsTest::saveAsSparesOpenFiles()
{
    openNew("甲.vc", "甲");
    CodeEditor *second = openNew("乙.vc", "乙");
    QString message;
    Shell::inNext<QFileDialog>([&](QFileDialog *dialog) {
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(file("甲.vc"));
        Shell::inNext<QMessageBox>([&](QMessageBox *box) {
            box->button(QMessageBox::Yes)->click();
            Shell::answerNextBox("确定", &message);
        });
        QMetaObject::invokeMethod(dialog, "accept");
    });
    QVERIFY(!m_tabs->saveAs(second));
    QVERIFY2(message.contains("已在另一个标签页中打开"), qPrintable(message));
    QCOMPARE(readFile(file("甲.vc")), QByteArray("甲"));
    QCOMPARE(second->filePath(), file("乙.vc"));
}

void EditorTabsTest::savesAllThatCanBeSaved()
{
    CodeEditor *good = openNew("好.vc", "1");
    CodeEditor *lost = openNew("夹/失.vc", "2");
    CodeEditor *untitled = m_tabs->openUntitled("3");
    for (CodeEditor *editor : {good, lost, untitled})
        type(editor, "新");
    QVERIFY(QDir(file("夹")).removeRecursively());
    const QStringList failures = m_tabs->saveModified();
    QCOMPARE(failures.size(), 1);
    QVERIFY2(failures.first().contains("失.vc"), qPrintable(failures.first()));
    QCOMPARE(m_tabs->modifiedEditors(), (QList<CodeEditor *>{lost, untitled}));
    QCOMPARE(readFile(file("好.vc")), QByteArray("新1"));
}

void EditorTabsTest::closeAsks_data()
{
    QTest::addColumn<QString>("answer"); // empty: nothing has changed, nobody asks
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QByteArray>("onDisk");
    QTest::addRow("unchanged") << "" << true << QByteArray("旧");
    QTest::addRow("save") << "保存" << true << QByteArray("新旧");
    QTest::addRow("discard") << "不保存" << true << QByteArray("旧");
    QTest::addRow("cancel") << "取消" << false << QByteArray("旧");
}

void EditorTabsTest::closeAsks()
{
    QFETCH(QString, answer);
    QFETCH(bool, isClosed);
    CodeEditor *editor = openNew("甲.vc", "旧");
    if (!answer.isEmpty()) {
        type(editor, "新");
        Shell::answerNextBox(answer);
    }
    QCOMPARE(m_tabs->close(editor), isClosed);
    QCOMPARE(m_tabs->count(), isClosed ? 0 : 1);
    QTEST(readFile(file("甲.vc")), "onDisk");
}

// Whoever gives up at the second file has not lost the first.
void EditorTabsTest::givingUpKeepsEverything()
{
    for (const char *name : {"甲.vc", "乙.vc"})
        type(openNew(name, "旧"), "新");
    Shell::inNext<QMessageBox>([](QMessageBox *box) {
        Shell::withText<QPushButton>(box, "不保存")->click();
        Shell::answerNextBox("取消");
    });
    QVERIFY(!m_tabs->closeAll());
    QCOMPARE(m_tabs->modifiedEditors().size(), 2);
}

void EditorTabsTest::reloadIsOneStep()
{
    CodeEditor *editor = openNew("甲.vc", "1\n2\n3\n4\n");
    editor->setBreakpoints({4});
    editor->goToLine(4);
    type(editor, "我");
    writeFile(file("甲.vc"), "1\r\n又\r\n2\r\n3\r\n我4\r\n");
    m_tabs->reload(editor, TextFile::read(file("甲.vc")));
    QCOMPARE(editor->text(), QString("1\n又\n2\n3\n我4\n"));
    QVERIFY(!editor->document()->isModified());
    QCOMPARE(editor->textCursor().blockNumber() + 1, 5);
    QCOMPARE(editor->breakpoints(), QSet<int>{5});
    editor->undo();
    QCOMPARE(editor->text(), QString("1\n2\n3\n我4\n"));
    QVERIFY(editor->document()->isModified());
    // What it lies as now counts.
    QVERIFY(m_tabs->save(editor));
    QCOMPARE(readFile(file("甲.vc")), QByteArray("1\r\n2\r\n3\r\n我4\r\n"));
}

void EditorTabsTest::everySignSurvives()
{
    const QByteArray bytes("\xEF\xBB\xBF甲\u00A0乙\r\n\"一\u2028二\"\t\r\n😀\r\n");
    CodeEditor *editor = openNew("甲.vc", bytes);
    type(editor, "x");
    QVERIFY(m_tabs->save(editor));
    QCOMPARE(readFile(file("甲.vc")), QByteArray(bytes).insert(3, 'x'));
}

void EditorTabsTest::formsAreText_data()
{
    QTest::addColumn<bool>("isSource");
    for (const char *name : {"甲.vc", "甲.VPP", "甲.vt", "甲.vd", "甲.vpi", "甲.vl"})
        QTest::addRow("%s", name) << true;
    for (const char *name : {"甲.vui", "甲.vlwin", "甲.txt", "甲"})
        QTest::addRow("%s", name) << false;
}

void EditorTabsTest::formsAreText()
{
    QFETCH(bool, isSource);
    CodeEditor *editor = openNew(QTest::currentDataTag(), "{}");
    QVERIFY(editor);
    QCOMPARE(editor->document()->findChildren<SyntaxHighlighter *>().size(), isSource ? 1 : 0);
}

void EditorTabsTest::recoveredTextIsNotSaved_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("exists");
    QTest::addRow("changed file") << "甲.vc" << true;
    QTest::addRow("file that is gone") << "甲.vc" << false;
    QTest::addRow("never saved") << "" << false;
}

void EditorTabsTest::recoveredTextIsNotSaved()
{
    QFETCH(QString, name);
    QFETCH(bool, exists);
    if (exists)
        writeFile(file(name), "旧");
    const QString path = name.isEmpty() ? QString() : file(name);
    CodeEditor *editor = m_tabs->openRecovered(path, "新");
    QCOMPARE(editor->text(), QString("新"));
    QCOMPARE(editor->filePath(), path);
    QVERIFY(editor->document()->isModified());
    QVERIFY(m_tabs->tabText(0).endsWith(" ●"));
    QCOMPARE(readFile(file("甲.vc")), exists ? QByteArray("旧") : QByteArray());
}

QTEST_MAIN(EditorTabsTest)
#include "editor_tabs_test.moc"
