// Nothing in the editors gets lost: neither by a crash nor by another program.
#include "project/project_manager.h"
#include "shell/desk.h"
#include "shell/document_guard.h"
#include "shell/external_change_dialog.h"
#include "shell/recovery_dialog.h"
#include "test_files.h"

using TestFiles::readFile;
using TestFiles::writeFile;

namespace {

// What guards the editors of one running program.
struct Program
{
    Program() { tabs.show(); }

    QWidget window;
    ProjectManager projects;
    EditorTabs tabs;
    DocumentGuard guard{tabs, projects, &window};
};

// Presses the button of the next dialog of this type.
template <typename Dialog>
void choose(const QString &button, int *asked = nullptr)
{
    Shell::inNext<Dialog>([button, asked](QDialog *dialog) {
        if (asked)
            ++*asked;
        auto *found = Shell::withText<QPushButton>(dialog, button);
        if (found)
            found->click();
        if (dialog->isVisible())
            dialog->reject();
        QVERIFY2(found, qPrintable(button));
    });
}

} // namespace

class DocumentGuardTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void crashLosesNothing();
    void laterAsksAgain();
    void whatIsSavedIsNotOffered_data();
    void whatIsSavedIsNotOffered();
    void anotherProgramChanges_data();
    void anotherProgramChanges();
    void ownWritesAskNothing();

private:
    QString file(const QString &name) const { return m_folder->filePath(name); }
    void crash();

    std::unique_ptr<QTemporaryDir> m_folder;
};

void DocumentGuardTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    Shell::useFolders(m_folder->path());
}

// A program that ends without having closed its editors: a named one and one without a name.
void DocumentGuardTest::crash()
{
    writeFile(file("甲.vc"), "旧");
    Program program;
    program.tabs.open(file("甲.vc"))->insertPlainText("新");
    program.tabs.openUntitled(QString())->insertPlainText("未存");
    program.guard.keepNow();
}

void DocumentGuardTest::crashLosesNothing()
{
    crash();
    Program program;
    choose<RecoveryDialog>("全部恢复");
    program.guard.offerRecovered();
    QMap<QString, QString> texts;
    for (const CodeEditor *editor : program.tabs.modifiedEditors())
        texts.insert(editor->filePath(), editor->text());
    QCOMPARE(texts, (QMap<QString, QString>{{file("甲.vc"), "新旧"}, {QString(), "未存"}}));
    QCOMPARE(program.tabs.editorOf(file("甲.vc"))->textCursor().position(), 1);
    QCOMPARE(readFile(file("甲.vc")), QByteArray("旧"));
}

// Whoever cannot decide now is asked at the next start.
void DocumentGuardTest::laterAsksAgain()
{
    crash();
    int asked = 0;
    for (int start = 0; start < 2; ++start) {
        Program program;
        choose<RecoveryDialog>("稍后", &asked);
        program.guard.offerRecovered();
        QVERIFY(program.tabs.editors().isEmpty());
    }
    QCOMPARE(asked, 2);
}

void DocumentGuardTest::whatIsSavedIsNotOffered_data()
{
    QTest::addColumn<bool>("isSaved"); // else closed without saving
    QTest::addRow("saved") << true;
    QTest::addRow("closed") << false;
}

void DocumentGuardTest::whatIsSavedIsNotOffered()
{
    QFETCH(bool, isSaved);
    writeFile(file("甲.vc"), "旧");
    {
        Program program;
        CodeEditor *editor = program.tabs.open(file("甲.vc"));
        editor->insertPlainText("新");
        program.guard.keepNow();
        if (isSaved)
            QVERIFY(program.tabs.save(editor));
        else
            program.tabs.closeWithoutSaving(editor);
    }
    RecoveryStore next;
    QVERIFY(next.pending().isEmpty());
}

void DocumentGuardTest::anotherProgramChanges_data()
{
    QTest::addColumn<bool>("isModified");
    QTest::addColumn<QByteArray>("disk"); // none: the file is removed
    QTest::addColumn<QString>("button");  // empty: nobody asks
    QTest::addColumn<QString>("text");    // none: closed
    QTest::addColumn<bool>("isUnsaved");
    const QByteArray gone;
    QTest::addRow("nothing to lose") << false << QByteArray("外") << ""
                                     << "外" << false;
    QTest::addRow("keep mine") << true << QByteArray("外") << "保留我的"
                               << "新旧" << true;
    QTest::addRow("take theirs") << true << QByteArray("外") << "使用磁盘上的"
                                 << "外" << false;
    QTest::addRow("both wrote the same") << true << QByteArray("新旧") << ""
                                         << "新旧" << false;
    QTest::addRow("removed, keep") << false << gone << "保留在编辑器中"
                                   << "旧" << true;
    QTest::addRow("removed, close") << false << gone << "关闭" << QString() << false;
}

void DocumentGuardTest::anotherProgramChanges()
{
    QFETCH(bool, isModified);
    QFETCH(QByteArray, disk);
    QFETCH(QString, button);
    QFETCH(QString, text);
    QFETCH(bool, isUnsaved);
    const QString path = file("甲.vc");
    writeFile(path, "旧");
    Program program;
    CodeEditor *editor = program.tabs.open(path);
    if (isModified)
        editor->insertPlainText("新");
    int asked = 0;
    if (!button.isEmpty())
        choose<ExternalChangeDialog>(button, &asked);
    if (disk.isNull())
        QVERIFY(QFile::remove(path));
    else
        writeFile(path, disk);
    const auto isDecided = [&] {
        if (asked == (button.isEmpty() ? 1 : 0))
            return false;
        const CodeEditor *open = program.tabs.editorOf(path);
        return open ? open->text() == text && open->document()->isModified() == isUnsaved
                    : text.isNull();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isDecided(), 15000);
    if (!text.isNull() && isModified && !isUnsaved && button.size() > 0) {
        editor->undo();
        QCOMPARE(editor->text(), QString("新旧"));
    }
}

void DocumentGuardTest::ownWritesAskNothing()
{
    const QString path = file("甲.vc");
    writeFile(path, "旧");
    Program program;
    CodeEditor *editor = program.tabs.open(path);
    editor->insertPlainText("新");
    QSignalSpy notices(&program.guard, &DocumentGuard::noticeGiven);
    QVERIFY(program.tabs.save(editor));
    editor->insertPlainText("更");
    // A change of another file comes after that of the own one.
    writeFile(file("乙.vc"), "旧");
    CodeEditor *other = program.tabs.open(file("乙.vc"));
    writeFile(file("乙.vc"), "外");
    QTRY_COMPARE_WITH_TIMEOUT(other->text(), QString("外"), 15000);
    QCOMPARE(notices.size(), 1);
    QCOMPARE(editor->text(), QString("新更旧"));
    QVERIFY(!QApplication::activeModalWidget());
}

QTEST_MAIN(DocumentGuardTest)
#include "document_guard_test.moc"
