// The dialogs around the operations on project files, used with keys.
#include "shell/project_file_dialogs.h"

#include "project/project_manager.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <functional>

namespace {

// Answers the dialogs that come up, in their order, and notes what they said.
class Answers
{
public:
    // Types `text` into the dialog; a null text cancels it.
    void type(const QString &text)
    {
        m_answers << [text](QWidget *widget) {
            auto *dialog = qobject_cast<QInputDialog *>(widget);
            if (!dialog)
                return widget->close(), QString("no question");
            const QString said =
                dialog->windowTitle() + '|' + dialog->labelText() + '|' + dialog->textValue();
            dialog->setTextValue(text);
            text.isNull() ? dialog->reject() : dialog->accept();
            return said;
        };
    }
    void press(const QString &button)
    {
        m_answers << [button](QWidget *widget) {
            auto *box = qobject_cast<QMessageBox *>(widget);
            if (!box)
                return widget->close(), QString("no box");
            const QString said = box->windowTitle() + '|' + box->text();
            for (QAbstractButton *choice : box->buttons()) {
                if (choice->text() == button)
                    return choice->click(), said;
            }
            return box->close(), "no button " + button;
        };
    }
    void run(const std::function<void()> &action)
    {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
            QWidget *widget = QApplication::activeModalWidget();
            if (!widget)
                return;
            if (m_answers.isEmpty())
                m_said << "unexpected: " + widget->windowTitle(), widget->close();
            else
                m_said << m_answers.takeFirst()(widget);
        });
        timer.start(1);
        action();
    }
    const QStringList &said() const { return m_said; }
    bool isEmpty() const { return m_answers.isEmpty(); }

private:
    QList<std::function<QString(QWidget *)>> m_answers;
    QStringList m_said;
};

struct Fixture
{
    explicit Fixture(bool withProject = true)
    {
        NewProject wanted;
        wanted.kind = ProjectKind::Gui;
        wanted.name = "甲";
        wanted.folder = dir.path();
        isReady = !withProject || manager.createProject(wanted);
        operations.setDiscard([](const QString &file) { return QFile::remove(file); });
    }

    QString path(const QString &relative) const { return dir.filePath("甲/" + relative); }

    QTemporaryDir dir;
    ProjectManager manager;
    ProjectFileOperations operations{manager};
    QWidget window;
    ProjectFileDialogs dialogs{operations, &window};
    QSignalSpy opened{&dialogs, &ProjectFileDialogs::openRequested};
    QSignalSpy status{&dialogs, &ProjectFileDialogs::statusChanged};
    QSignalSpy removed{&dialogs, &ProjectFileDialogs::filesRemoved};
    Answers answers;
    bool isReady = false;
};

} // namespace

class ProjectFileDialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void newFile();
    void cancelledNameMakesNothing();
    void newWindow();
    void needsAProject();
    void asksBeforeRemoving();
    void tellsWhatToSelect();
    void renames();
};

void ProjectFileDialogsTest::newFile()
{
    Fixture f;
    QVERIFY(f.isReady);
    f.answers.type("工具");
    f.answers.run([&] { f.dialogs.newFile(); });
    QCOMPARE(f.answers.said(), QStringList{"新建文件|请输入文件名（不需要扩展名）：|新文件"});
    QCOMPARE(f.opened, QList<QVariantList>{{f.path("source/工具.vc")}});
    QCOMPARE(f.status, QList<QVariantList>{{"已创建并添加到项目: 工具.vc"}});

    f.answers.type("工具");
    f.answers.press("确定");
    f.answers.run([&] { f.dialogs.newFile(); });
    QCOMPARE(f.answers.said().last(),
             QString("文件已存在|文件 工具.vc 已经存在，请使用其他名称。"));
    QCOMPARE(f.opened.count(), 1);
}

void ProjectFileDialogsTest::cancelledNameMakesNothing()
{
    Fixture f;
    f.answers.type(QString());
    f.answers.run([&] { f.dialogs.newClassFile(); });
    QCOMPARE(f.answers.said(),
             QStringList{"新建类文件|请输入类名（将作为文件名，不需要扩展名）：|"});
    QVERIFY(f.opened.isEmpty());
    QVERIFY(f.status.isEmpty());
}

void ProjectFileDialogsTest::newWindow()
{
    Fixture f;
    f.answers.type("设置");
    f.answers.press("打开");
    f.answers.type("关于");
    f.answers.press("不打开");
    f.answers.run([&] {
        f.dialogs.newWindow();
        f.dialogs.newWindow();
    });
    QCOMPARE(f.answers.said().mid(0, 2),
             QStringList({"新建窗口|请输入窗口名称|",
                          "打开窗口|是否打开新创建的窗口 \"设置\" 进行设计？"}));
    QCOMPARE(f.opened, QList<QVariantList>{{f.path("ui/设置.vui")}});
    QVERIFY(QFileInfo::exists(f.path("ui/关于.vui")));
}

void ProjectFileDialogsTest::needsAProject()
{
    Fixture f(false);
    f.answers.press("确定");
    f.answers.press("确定");
    f.answers.press("确定");
    f.answers.run([&] {
        f.dialogs.newClassFile();
        f.dialogs.newWindow();
        f.dialogs.addExistingFile();
    });
    const QString told = "警告|请先打开或创建一个项目。";
    QCOMPARE(f.answers.said(), QStringList({told, "警告|请先创建或打开一个项目。", told}));
}

void ProjectFileDialogsTest::asksBeforeRemoving()
{
    Fixture f;
    QVERIFY(f.operations.newCodeFile("工具").succeeded);
    const QString file = f.path("source/工具.vc");
    f.answers.press("取消");
    f.answers.run([&] { f.dialogs.removeFile(file); });
    QVERIFY(f.answers.said().last().startsWith("确认删除|确定要删除文件 \"工具.vc\" 吗？\n\n"));
    QVERIFY(QFileInfo::exists(file));
    f.answers.press("删除");
    f.answers.run([&] { f.dialogs.removeFile(file); });
    QVERIFY(!QFileInfo::exists(file));
    QCOMPARE(f.removed, QList<QVariantList>{{QStringList{file}}});
    QCOMPARE(f.status, QList<QVariantList>{{"已删除文件: 工具.vc"}});
}

void ProjectFileDialogsTest::tellsWhatToSelect()
{
    Fixture f;
    for (int box = 0; box < 3; ++box)
        f.answers.press("确定");
    f.answers.run([&] {
        f.dialogs.removeSelected(ProjectFileDialogs::Selection::Nothing, {});
        f.dialogs.removeSelected(ProjectFileDialogs::Selection::Folder, {});
        f.dialogs.removeSelected(ProjectFileDialogs::Selection::File, f.path("source/main.vc"));
    });
    QCOMPARE(f.answers.said(),
             QStringList({"警告|请先选择要移除的文件", "警告|请选择一个文件，而不是文件夹",
                          "警告|无法删除系统文件: main.vc\n此文件是项目必需的核心文件。"}));
}

void ProjectFileDialogsTest::renames()
{
    Fixture f;
    QVERIFY(f.operations.newCodeFile("工具").succeeded);
    f.answers.type("帮手");
    f.answers.run([&] { f.dialogs.renameFile(f.path("source/工具.vc")); });
    QCOMPARE(f.answers.said(), QStringList{"重命名|请输入新的名称：|工具"});
    QVERIFY(QFileInfo::exists(f.path("source/帮手.vc")));
    QCOMPARE(f.status, QList<QVariantList>{{"已重命名: 工具.vc → 帮手.vc"}});
}

QTEST_MAIN(ProjectFileDialogsTest)
#include "project_file_dialogs_test.moc"
