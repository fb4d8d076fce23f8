// The dialog of a new project: what it offers, refuses and hands over.
#include "shell/new_project_dialog.h"

#include "settings/settings_store.h"
#include "shell/new_project_choices.h"
#include "test_files.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QToolButton>

namespace {

struct Fixture
{
    template <typename Widget>
    Widget *named(const QString &accessibleName)
    {
        for (auto *widget : dialog.findChildren<Widget *>()) {
            if (widget->accessibleName() == accessibleName)
                return widget;
        }
        return nullptr;
    }
    template <typename Button>
    Button *button(const QString &text)
    {
        for (auto *button : dialog.findChildren<Button *>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }
    QStringList errors() const
    {
        QStringList texts;
        for (const QLabel *label : dialog.findChildren<QLabel *>("fieldError"))
            texts << label->text();
        texts.removeAll(QString());
        return texts;
    }

    QTemporaryDir dir;
    SettingsStore settings{dir.filePath("vlide.ini")};
    // The default place is the test's own folder.
    bool isSet = settings.set(Setting::Project::defaultPath, dir.path());
    NewProjectDialog dialog{settings};
    QLineEdit *name = named<QLineEdit>("项目名称");
    QLineEdit *folder = named<QLineEdit>("位置");
    QComboBox *windowType = named<QComboBox>("界面类型");
    QComboBox *platform = named<QComboBox>("平台");
    QPushButton *create = button<QPushButton>("创建");
};

} // namespace

class NewProjectDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void startsWithDefaults();
    void proposesAFreeName();
    void kinds_data();
    void kinds();
    void offersOnlyWindowsThatCanBeBuilt();
    void refuses_data();
    void refuses();
    void seesWhatAppearsLater();
    void storesTheDefaultPlace();
};

void NewProjectDialogTest::startsWithDefaults()
{
    Fixture f;
    QVERIFY(f.isSet);
    const NewProject project = f.dialog.project();
    QCOMPARE(project.kind, ProjectKind::Gui);
    QCOMPARE(project.name, QString("MyProject"));
    QCOMPARE(project.folder, f.dir.path());
    QCOMPARE(project.windowType, QString("win32"));
    QCOMPARE(project.platform, QString("x64"));
    QVERIFY(f.create->isEnabled());
    QCOMPARE(f.errors(), QStringList());
}

void NewProjectDialogTest::proposesAFreeName()
{
    const QTemporaryDir dir;
    for (const char *taken : {"MyProject/a.txt", "MyProject2/a.txt"})
        TestFiles::writeFile(dir.filePath(taken), "x");
    QCOMPARE(NewProjectRules::freeName(dir.path()), QString("MyProject3"));
}

void NewProjectDialogTest::kinds_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("hasWindow");
    QTest::newRow("gui") << "图形界面应用" << int(ProjectKind::Gui) << true;
    QTest::newRow("empty") << "空项目" << int(ProjectKind::Empty) << false;
    QTest::newRow("console") << "控制台应用" << int(ProjectKind::Console) << false;
    QTest::newRow("single") << "单文件 (.vl)" << int(ProjectKind::Single) << false;
}

void NewProjectDialogTest::kinds()
{
    QFETCH(QString, label);
    QFETCH(int, kind);
    QFETCH(bool, hasWindow);
    Fixture f;
    f.windowType->setCurrentText("VL窗口");
    auto *card = f.button<QToolButton>(label);
    QVERIFY(card);
    QVERIFY(!card->icon().pixmap(48, 48).isNull());
    card->click();
    QCOMPARE(int(f.dialog.project().kind), kind);
    QCOMPARE(f.windowType->isEnabled(), hasWindow);
    QCOMPARE(f.dialog.project().windowType, QString(hasWindow ? "vlwin" : "win32"));
}

void NewProjectDialogTest::offersOnlyWindowsThatCanBeBuilt()
{
    Fixture f;
    const auto *model = qobject_cast<QStandardItemModel *>(f.windowType->model());
    QStringList offered;
    for (int row = 0; row < model->rowCount(); ++row) {
        if (model->item(row)->isEnabled())
            offered << model->item(row)->text();
        else
            QVERIFY(model->item(row)->toolTip().contains("还不能编译"));
    }
    QCOMPARE(model->rowCount(), 5);
    QCOMPARE(offered, QStringList({"标准窗口", "VL窗口"}));
}

void NewProjectDialogTest::refuses_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder"); // "%1" is the test's folder
    QTest::addColumn<QString>("error");
    const QString gui = "图形界面应用";
    QTest::newRow("no name") << gui << " "
                             << "%1"
                             << "项目名称不能为空。";
    QTest::newRow("path as name") << gui << "a/b"
                                  << "%1"
                                  << "项目名称中不能有字符“/”。";
    QTest::newRow("taken") << gui << "旧项目"
                           << "%1"
                           << "这个位置已经有“旧项目”，请换一个名称。";
    QTest::newRow("empty folder is free") << gui << "空的"
                                          << "%1"
                                          << "";
    QTest::newRow("file taken") << "单文件 (.vl)"
                                << "脚本"
                                << "%1"
                                << "这个位置已经有“脚本.vl”，请换一个名称。";
    QTest::newRow("folder beside a file") << gui << "脚本"
                                          << "%1"
                                          << "";
    QTest::newRow("no folder") << gui << "甲"
                               << ""
                               << "请选择项目放在哪个文件夹里。";
    QTest::newRow("relative") << gui << "甲"
                              << "项目"
                              << "请写出完整的路径，或用“浏览...”选择文件夹。";
    QTest::newRow("new folders") << gui << "甲"
                                 << "%1/一/二"
                                 << "";
    QTest::newRow("below a file") << gui << "甲"
                                  << "%1/脚本.vl/二"
                                  << "“%1/脚本.vl”不是文件夹。";
}

void NewProjectDialogTest::refuses()
{
    QFETCH(QString, kind);
    QFETCH(QString, name);
    QFETCH(QString, folder);
    QFETCH(QString, error);
    Fixture f;
    TestFiles::writeFile(f.dir.filePath("旧项目/a.txt"), "x");
    TestFiles::writeFile(f.dir.filePath("脚本.vl"), "x");
    QVERIFY(QDir(f.dir.path()).mkdir("空的"));
    f.button<QToolButton>(kind)->click();
    f.name->setText(name);
    f.folder->setText(folder.replace("%1", f.dir.path()));
    const QString wanted = error.replace("%1", f.dir.path());
    QCOMPARE(f.errors().join("|"), wanted);
    QCOMPARE(f.create->isEnabled(), wanted.isEmpty());
}

void NewProjectDialogTest::seesWhatAppearsLater()
{
    Fixture f;
    QVERIFY(f.create->isEnabled());
    TestFiles::writeFile(f.dir.filePath("MyProject/a.txt"), "x");
    f.create->click();
    QCOMPARE(f.dialog.result(), int(QDialog::Rejected));
    QCOMPARE(f.errors(), QStringList{"这个位置已经有“MyProject”，请换一个名称。"});
}

void NewProjectDialogTest::storesTheDefaultPlace()
{
    Fixture f;
    const QString other = f.dir.filePath("别处");
    f.folder->setText(other);
    f.dialog.reject();
    QCOMPARE(f.settings.get(Setting::Project::defaultPath), f.dir.path());
    f.button<QCheckBox>("设为默认路径")->setChecked(true);
    f.create->click();
    QCOMPARE(f.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(f.settings.get(Setting::Project::defaultPath), other);
}

QTEST_MAIN(NewProjectDialogTest)
#include "new_project_dialog_test.moc"
