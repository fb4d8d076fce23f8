// A day of a beginner: from a new project to a running program, and the same place the next day.
#include "editor/editor_keys.h"
#include "shell/desk.h"
#include "shell/error_list_widget.h"
#include "shell/new_project_dialog.h"
#include "shell/output_panel.h"
#include "shell/output_text_edit.h"
#include "test_files.h"

#include <QLineEdit>
#include <QToolButton>

using Shell::Desk;

namespace {

constexpr int buildTime = 240000; // milliseconds, with all of the runtime to compile

} // namespace

class MainWindowSessionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fromNewProjectToNextStart();

private:
    void createProject(Desk &desk);
    void writeFaultyProgram(Desk &desk);
    void followTheError(Desk &desk);
    void runProgram(Desk &desk);
    void stopProgram(Desk &desk);
    void leave(Desk &desk);
    void findEverythingBack(Desk &desk);

    QTemporaryDir m_folder;
};

void MainWindowSessionTest::initTestCase()
{
    QVERIFY(m_folder.isValid());
    Shell::useFolders(m_folder.path());
}

void MainWindowSessionTest::createProject(Desk &desk)
{
    Shell::inNext<NewProjectDialog>([](NewProjectDialog *dialog) {
        auto *card = Shell::withText<QToolButton>(dialog, QStringLiteral("控制台应用"));
        auto *name = Shell::withName<QLineEdit>(dialog, QStringLiteral("项目名称"));
        auto *create = Shell::withText<QPushButton>(dialog, QStringLiteral("创建"));
        QVERIFY(card && name && create);
        QTest::mouseClick(card, Qt::LeftButton);
        name->setText(QStringLiteral("第一个"));
        QTest::mouseClick(create, Qt::LeftButton);
    });
    desk.press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(desk.editor());
    QCOMPARE(desk.editor()->filePath(),
             m_folder.filePath(QStringLiteral("projects/第一个/source/main.vc")));
    QVERIFY(desk.window->windowTitle().startsWith(QStringLiteral("第一个 - ")));
}

// Brackets and quotes close themselves, and the block makes its indentation.
void MainWindowSessionTest::writeFaultyProgram(Desk &desk)
{
    CodeEditor &editor = *desk.editor();
    editor.setFocus();
    EditorKeys::press(editor, QStringLiteral("<Ctrl+A><Delete><commit:函数 主函数>() {<Return>"
                                             "<commit:输处>(\"<commit:你好>"));
    QCOMPARE(EditorKeys::marked(editor), QStringLiteral("函数 主函数() {\n    输处(\"你好|\")\n}"));
}

void MainWindowSessionTest::followTheError(Desk &desk)
{
    desk.press(Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(desk.tabs->editors().size(), 2);
    desk.press(Qt::Key_F7);
    QVERIFY(!desk.action("actionBuild")->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(desk.action("actionBuild")->isEnabled(), buildTime);
    auto *errors = desk.find<ErrorListWidget>(QStringLiteral("错误列表"));
    QVERIFY(errors->isVisible());
    QCOMPARE(errors->topLevelItemCount(), 1);
    const QTreeWidgetItem *row = errors->topLevelItem(0);
    QVERIFY2(row->text(1).contains(QStringLiteral("输处")), qPrintable(row->text(1)));
    QCOMPARE(row->text(2), QStringLiteral("source/main.vc"));
    QCOMPARE(row->text(3), QStringLiteral("2"));
    QVERIFY(desk.editor()->filePath().isEmpty());
    const QPoint place = errors->visualItemRect(row).center();
    QTest::mouseClick(errors->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(errors->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(desk.editor()->title(), QStringLiteral("main.vc"));
    QCOMPARE(desk.editor()->textCursor().blockNumber() + 1, 2);
    QVERIFY(desk.editor()->hasFocus());
}

void MainWindowSessionTest::runProgram(Desk &desk)
{
    EditorKeys::press(*desk.editor(),
                      QStringLiteral("<End><Home><Shift+End><commit:输出>(\"<commit:"
                                     "你好>"));
    desk.press(Qt::Key_F5, Qt::ControlModifier);
    auto *output = desk.find<OutputTextEdit>(QStringLiteral("运行输出"));
    QTRY_VERIFY_WITH_TIMEOUT(output->toPlainText().contains(QStringLiteral("程序已结束")),
                             buildTime);
    QVERIFY2(output->toPlainText().startsWith(QStringLiteral("你好\n")),
             qPrintable(output->toPlainText()));
    QVERIFY(output->isVisible());
    QVERIFY(!desk.action("actionStop")->isEnabled());
    QCOMPARE(desk.find<ErrorListWidget>(QStringLiteral("错误列表"))->topLevelItemCount(), 0);
}

void MainWindowSessionTest::stopProgram(Desk &desk)
{
    CodeEditor &editor = *desk.editor();
    EditorKeys::press(editor,
                      QStringLiteral("<End><Home><Shift+End><commit:当>(<commit:真>) {<Return>"
                                     "<commit:输出>(\"<commit:还在跑>"));
    desk.press(Qt::Key_F5, Qt::ControlModifier);
    auto *output = desk.find<OutputTextEdit>(QStringLiteral("运行输出"));
    QTRY_VERIFY_WITH_TIMEOUT(output->toPlainText().startsWith(QStringLiteral("还在跑\n")),
                             buildTime);
    QVERIFY(desk.action("actionStop")->isEnabled());
    desk.press(Qt::Key_F5, Qt::ShiftModifier);
    QTRY_VERIFY_WITH_TIMEOUT(!desk.action("actionStop")->isEnabled(), 10000);
    QVERIFY(desk.action("actionRun")->isEnabled());
}

void MainWindowSessionTest::leave(Desk &desk)
{
    CodeEditor &editor = *desk.editor();
    editor.setFocus();
    editor.goToLine(3);
    desk.press(Qt::Key_F8);
    QCOMPARE(editor.breakpoints(), QSet<int>{3});
    EditorKeys::press(editor, QStringLiteral("<End>"));
    desk.press(Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!desk.frame.isVisible());
}

void MainWindowSessionTest::findEverythingBack(Desk &desk)
{
    desk.window->restoreSession();
    QVERIFY(desk.window->windowTitle().startsWith(QStringLiteral("第一个 - ")));
    QCOMPARE(desk.tabs->editors().size(), 1);
    QCOMPARE(EditorKeys::marked(*desk.editor()),
             QStringLiteral("函数 主函数() {\n    当(真) {\n        输出(\"还在跑\")|\n    }\n}"));
    QCOMPARE(desk.editor()->breakpoints(), QSet<int>{3});
    QVERIFY(!desk.window->isWindowModified());
}

void MainWindowSessionTest::fromNewProjectToNextStart()
{
    {
        Desk desk(m_folder.path());
        QVERIFY(QTest::qWaitForWindowActive(&desk.frame));
        const auto go = [&](void (MainWindowSessionTest::*step)(Desk &)) {
            if (!QTest::currentTestFailed())
                (this->*step)(desk);
        };
        go(&MainWindowSessionTest::createProject);
        go(&MainWindowSessionTest::writeFaultyProgram);
        go(&MainWindowSessionTest::followTheError);
        go(&MainWindowSessionTest::runProgram);
        go(&MainWindowSessionTest::stopProgram);
        go(&MainWindowSessionTest::leave);
        if (QTest::currentTestFailed())
            return;
    }
    Desk desk(m_folder.path());
    findEverythingBack(desk);
}

QTEST_MAIN(MainWindowSessionTest)
#include "main_window_session_test.moc"
