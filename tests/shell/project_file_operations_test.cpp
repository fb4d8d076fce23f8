// What adding, removing and renaming files does to a project and to the disk.
#include "shell/project_file_operations.h"

#include "project/project_manager.h"
#include "test_files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

// A project of its own for each test.
struct Project
{
    explicit Project(ProjectKind kind = ProjectKind::Gui)
    {
        NewProject wanted;
        wanted.kind = kind;
        wanted.name = "甲";
        wanted.folder = dir.path();
        isOpen = manager.createProject(wanted);
        operations.setDiscard([this](const QString &file) {
            return !stubborn.contains(QFileInfo(file).fileName()) && QFile::remove(file);
        });
    }

    QString path(const QString &relative) const { return dir.filePath("甲/" + relative); }
    QByteArray content(const QString &relative) const
    {
        return TestFiles::readFile(path(relative));
    }
    QStringList sources() const { return manager.currentProject().sourceFiles; }

    QTemporaryDir dir;
    ProjectManager manager;
    ProjectFileOperations operations{manager};
    QStringList stubborn; // files that cannot be removed
    bool isOpen = false;
};

using Operation = FileOperation (ProjectFileOperations::*)(const QString &);

// What the user is told, in one line.
QString toldBy(const FileOperation &done)
{
    return QStringList{done.title, done.message, done.status}.join('|');
}

} // namespace

Q_DECLARE_METATYPE(Operation)

class ProjectFileOperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void needsAProject();
    void creates_data();
    void creates();
    void refusesNames_data();
    void refusesNames();
    void fillsSources_data();
    void fillsSources();
    void classExampleIsTheOnlyBeginning();
    void newWindowIsEmpty();
    void addsExistingFiles();
    void removes_data();
    void removes();
    void tellsWhatCouldNotBeRemoved();
    void keepsFilesOfOthers();
    void renames_data();
    void renames();
};

void ProjectFileOperationsTest::needsAProject()
{
    ProjectManager manager;
    ProjectFileOperations operations(manager);
    const QString wanted = "警告|请先打开或创建一个项目。|";
    QCOMPARE(toldBy(operations.newCodeFile("甲")), wanted);
    QCOMPARE(toldBy(operations.newClassFile("甲")), wanted);
    QCOMPARE(toldBy(operations.newWindow("甲")), QString("警告|请先创建或打开一个项目。|"));
    QCOMPARE(toldBy(operations.addExistingFile("/甲.vc")), wanted);
    QCOMPARE(toldBy(operations.planRemoval("甲.vc").refusal), wanted);
}

void ProjectFileOperationsTest::creates_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file"); // empty: nothing is made
    QTest::addColumn<QString>("told");

    const Operation code = &ProjectFileOperations::newCodeFile;
    const Operation classFile = &ProjectFileOperations::newClassFile;
    const Operation window = &ProjectFileOperations::newWindow;
    QTest::newRow("code") << code << "工具"
                          << "source/工具.vc"
                          << "||已创建并添加到项目: 工具.vc";
    QTest::newRow("ending kept") << code << "工具.VC"
                                 << "source/工具.VC"
                                 << "||已创建并添加到项目: 工具.VC";
    QTest::newRow("declarations") << code << " a.vpi "
                                  << "source/a.vpi"
                                  << "||已创建并添加到项目: a.vpi";
    QTest::newRow("other ending") << code << "a.txt"
                                  << "source/a.txt.vc"
                                  << "||已创建并添加到项目: a.txt.vc";
    QTest::newRow("code exists") << code << "main"
                                 << ""
                                 << "文件已存在|文件 main.vc 已经存在，请使用其他名称。|";
    QTest::newRow("class") << classFile << "学生"
                           << "source/学生.vpp"
                           << "||已创建类文件: 学生.vpp";
    QTest::newRow("digits") << classFile << "123"
                            << "source/123.vpp"
                            << "新建类文件|类名\"123\"为纯数字，已允许创建；建议使用字母或汉字"
                               "开头的名称以便阅读。|已创建类文件: 123.vpp";
    QTest::newRow("window") << window << "设置"
                            << "ui/设置.vui"
                            << "||已创建窗口: 设置";
    QTest::newRow("window exists") << window << "主窗口"
                                   << ""
                                   << "新建窗口|窗口 \"主窗口\" 已存在|";
}

void ProjectFileOperationsTest::creates()
{
    QFETCH(Operation, operation);
    QFETCH(QString, name);
    QFETCH(QString, file);
    QFETCH(QString, told);
    Project project;
    QVERIFY(project.isOpen);
    const QByteArray before = project.content("甲.vlproj");
    const FileOperation done = (project.operations.*operation)(name);
    QCOMPARE(toldBy(done), told);
    QCOMPARE(done.succeeded, !file.isEmpty());
    QVERIFY(!project.manager.isModified());
    if (file.isEmpty()) {
        QCOMPARE(project.content("甲.vlproj"), before);
        return;
    }
    QCOMPARE(done.file, project.path(file));
    QVERIFY(!project.content(file).isEmpty());
    QVERIFY(project.content("甲.vlproj").contains(file.toUtf8()));
}

void ProjectFileOperationsTest::refusesNames_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("name");
    const Operation code = &ProjectFileOperations::newCodeFile;
    const Operation classFile = &ProjectFileOperations::newClassFile;
    const Operation window = &ProjectFileOperations::newWindow;
    for (const char *name : {"", "..", "../甲", "a/b", "a\\b", "C:甲", "CON", "a?", "a\nb"}) {
        const QByteArray shown = QByteArray(name).toPercentEncoding();
        QTest::addRow("code %s", shown.constData()) << code << QString(name);
        QTest::addRow("class %s", shown.constData()) << classFile << QString(name);
        QTest::addRow("window %s", shown.constData()) << window << QString(name);
    }
    QTest::newRow("class with a blank") << classFile << "我 的";
    QTest::newRow("class with a digit first") << classFile << "1班";
    QTest::newRow("window with a dot") << window << "设置.二";
}

void ProjectFileOperationsTest::refusesNames()
{
    QFETCH(Operation, operation);
    QFETCH(QString, name);
    Project project;
    const QStringList sources = project.sources();
    const FileOperation done = (project.operations.*operation)(name);
    QVERIFY(!done.succeeded);
    QCOMPARE(done.notice, FileOperation::Notice::Warning);
    QVERIFY(!done.message.isEmpty());
    QCOMPARE(project.sources(), sources);
    QCOMPARE(QDir(project.dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"甲"});
    QCOMPARE(QDir(project.path("ui")).entryList(QDir::Files), QStringList{"主窗口.vui"});
}

void ProjectFileOperationsTest::fillsSources_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("body");
    QTest::newRow("code") << "工'具.vc"
                          << QStringList{"// 此文件会自动引入到项目中，可直接调用其中的函数",
                                         "// 在这里定义你的函数", "// 函数 示例函数() {",
                                         "//     输出(\"这是一个示例函数\")", "// }"};
    QTest::newRow("types") << "a.vt"
                           << QStringList{"// .vt 文件：定义项目自定义类型，编译时会自动合并",
                                          "// 可在这里编写类型声明"};
    QTest::newRow("declarations")
        << "a.VPI"
        << QStringList{"// .vpi 文件：声明可在 .vc 中直接调用的 WinAPI 函数",
                       "// 写法示例（末尾不用写分号；支持多行）：",
                       "// HWND FindWindow(LPCTSTR lpClassName, LPCTSTR lpWindowName)",
                       "// BOOL ShowWindow(HWND hWnd, INT nCmdShow)"};
}

void ProjectFileOperationsTest::fillsSources()
{
    QFETCH(QString, name);
    QFETCH(QStringList, body);
    Project project;
    const FileOperation done = project.operations.newCodeFile(name);
    QVERIFY(done.succeeded);
    QStringList lines = QString::fromUtf8(TestFiles::readFile(done.file)).split('\n');
    QVERIFY(lines.size() > 3);
    const QString created = lines.takeAt(2);
    QVERIFY(QRegularExpression("^// 创建时间: \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$")
                .match(created)
                .hasMatch());
    const QString frame = "// ============================================";
    // A quote would open a text even in a comment.
    const QStringList head{frame, "// " + QString(name).replace('\'', "’")};
    const QStringList tail{frame, "", ""};
    QCOMPARE(lines, head + body + tail);
}

void ProjectFileOperationsTest::classExampleIsTheOnlyBeginning()
{
    Project window;
    QVERIFY(window.operations.newClassFile("学生").succeeded);
    const QString text = QString::fromUtf8(window.content("source/学生.vpp"));
    QVERIFY(text.contains("类 学生 {\n    // 成员变量（属性）\n    属性 文本 姓名\n"));
    QVERIFY(text.contains("\n函数 主函数() 整数 {\n    学生 对象1 = 学生(\"张三\", 25)\n"));
    QVERIFY(text.endsWith("    返回(0)\n}\n"));

    Project console(ProjectKind::Console);
    QVERIFY(console.operations.newClassFile("学生").succeeded);
    const QString shown = QString::fromUtf8(console.content("source/学生.vpp"));
    QVERIFY(shown.contains("\n// 函数 主函数() 整数 {\n//     学生 对象1"));
    QVERIFY(shown.endsWith("\n//     返回(0)\n// }\n"));
}

void ProjectFileOperationsTest::newWindowIsEmpty()
{
    Project project;
    QVERIFY(project.operations.newWindow("设置").succeeded);
    const QJsonArray components =
        QJsonDocument::fromJson(project.content("ui/设置.vui")).object()["components"].toArray();
    QCOMPARE(components.size(), 1);
    QCOMPARE(components[0]["id"].toString(), QString("设置"));
    QCOMPARE(components[0]["properties"]["text"].toString(), QString("设置"));
    QCOMPARE(components[0]["properties"]["isMainWindow"].toBool(true), false);
}

void ProjectFileOperationsTest::addsExistingFiles()
{
    Project project;
    ProjectFileOperations &operations = project.operations;
    TestFiles::writeFile(project.path("杂/内.vc"), "输出(1)\n");
    QVERIFY(operations.liesInProject(project.path("杂/内.vc")));
    QCOMPARE(toldBy(operations.addExistingFile(project.path("杂/内.vc"))),
             QString("||已添加文件到项目: 杂/内.vc"));
    QCOMPARE(toldBy(operations.addExistingFile(project.path("source/../杂/内.vc"))),
             QString("||文件已在项目中: 杂/内.vc"));

    const QString outside = project.dir.filePath("甲乙/外.vc");
    TestFiles::writeFile(outside, "输出(2)\n");
    QVERIFY(!operations.liesInProject(outside));
    QCOMPARE(toldBy(operations.copyExistingFile(outside)), QString("||已复制文件到项目: 外.vc"));
    QCOMPARE(project.content("source/外.vc"), QByteArray("输出(2)\n"));
    QCOMPARE(toldBy(operations.copyExistingFile(outside)),
             QString("文件已存在|目标文件已存在: 外.vc|"));
    QCOMPARE(toldBy(operations.copyExistingFile(project.dir.filePath("没有.vc"))),
             QString("复制失败|无法复制文件到项目目录|"));
    QCOMPARE(operations.addByAbsolutePath(outside).status,
             "已添加外部文件（绝对路径）: " + outside + "\n注意：如果移动项目或文件，需要重新添加");
    QCOMPARE(operations.addByAbsolutePath(outside).status, "文件已在项目中: " + outside);
    QCOMPARE(project.sources().mid(3), QStringList({"杂/内.vc", "source/外.vc", outside}));
    // Only sources may lie anywhere.
    TestFiles::writeFile(project.dir.filePath("外.png"), "x");
    QVERIFY(!operations.addByAbsolutePath(project.dir.filePath("外.png")).succeeded);
}

void ProjectFileOperationsTest::removes_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("told"); // the refusal, or how the question begins
    QTest::addColumn<QStringList>("gone");
    QTest::newRow("core") << "source/main.vc"
                          << "无法删除系统文件: main.vc\n此文件是项目必需的核心文件。"
                          << QStringList();
    QTest::newRow("folder") << "source"
                            << "请选择一个文件，而不是文件夹" << QStringList();
    QTest::newRow("no path") << ""
                             << "无法获取文件路径" << QStringList();
    QTest::newRow("source") << "source/工具.vc"
                            << "确定要删除文件 \"工具.vc\" 吗？\n\n"
                            << QStringList{"source/工具.vc"};
    QTest::newRow("window with source") << "ui/设置.vui"
                                        << "确定要删除界面文件 \"设置.vui\" 吗？\n\n"
                                        << QStringList{"ui/设置.vui", "source/设置.vc"};
    QTest::newRow("window without source") << "ui/关于.vui"
                                           << "确定要删除文件 \"关于.vui\" 吗？\n\n"
                                           << QStringList{"ui/关于.vui"};
    QTest::newRow("missing on disk") << "source/没了.vc"
                                     << "确定要删除文件 \"没了.vc\" 吗？\n\n"
                                     << QStringList{"source/没了.vc"};
}

void ProjectFileOperationsTest::removes()
{
    QFETCH(QString, file);
    QFETCH(QString, told);
    QFETCH(QStringList, gone);
    Project project;
    for (const char *name : {"工具", "设置", "没了"})
        QVERIFY(project.operations.newCodeFile(name).succeeded);
    for (const char *name : {"设置", "关于"})
        QVERIFY(project.operations.newWindow(name).succeeded);
    QVERIFY(QFile::remove(project.path("source/没了.vc")));
    const QByteArray before = project.content("甲.vlproj");

    const FileRemoval plan = project.operations.planRemoval(file);
    QCOMPARE(plan.isAllowed(), !gone.isEmpty());
    const FileOperation done = project.operations.remove(plan);
    if (gone.isEmpty()) {
        QCOMPARE(done.title, QString("警告"));
        QCOMPARE(done.message, told);
        QCOMPARE(project.content("甲.vlproj"), before);
        return;
    }
    QVERIFY2(plan.question.startsWith(told), qPrintable(plan.question));
    QVERIFY(done.succeeded);
    QVERIFY(done.status.startsWith("已删除文件: " + QFileInfo(file).fileName()));
    QStringList removed;
    for (const QString &relative : gone) {
        QVERIFY(!QFileInfo::exists(project.path(relative)));
        QVERIFY(!project.content("甲.vlproj").contains(relative.toUtf8()));
        removed << project.path(relative);
    }
    QCOMPARE(done.removedFiles, removed);
}

void ProjectFileOperationsTest::tellsWhatCouldNotBeRemoved()
{
    Project project;
    QVERIFY(project.operations.newCodeFile("设置").succeeded);
    QVERIFY(project.operations.newWindow("设置").succeeded);
    project.stubborn = QStringList{"设置.vc"};
    const FileOperation done =
        project.operations.remove(project.operations.planRemoval("ui/设置.vui"));
    QVERIFY(!done.succeeded);
    QCOMPARE(done.message, QString("部分文件删除失败:\n已删除: 设置.vui\n删除失败: 设置.vc"));
    QVERIFY(QFileInfo::exists(project.path("source/设置.vc")));
}

void ProjectFileOperationsTest::keepsFilesOfOthers()
{
    Project project;
    const QString outside = project.dir.filePath("外.vc");
    TestFiles::writeFile(outside, "输出(2)\n");
    QVERIFY(project.operations.addByAbsolutePath(outside).succeeded);
    const FileOperation done = project.operations.remove(project.operations.planRemoval(outside));
    QCOMPARE(toldBy(done), QString("||已从项目中移除: 外.vc"));
    QVERIFY(QFileInfo::exists(outside));
    QVERIFY(!project.sources().contains(outside));
}

void ProjectFileOperationsTest::renames_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("told");
    QTest::addColumn<QStringList>("files");
    QTest::newRow("source") << "source/工具.vc"
                            << "帮手"
                            << "||已重命名: 工具.vc → 帮手.vc" << QStringList{"source/帮手.vc"};
    QTest::newRow("with ending") << "source/工具.vc"
                                 << "帮手.VC"
                                 << "||已重命名: 工具.vc → 帮手.vc"
                                 << QStringList{"source/帮手.vc"};
    QTest::newRow("window") << "ui/设置.vui"
                            << "选项"
                            << "||已重命名: 设置.vui → 选项.vui"
                            << QStringList{"ui/选项.vui", "source/选项.vc"};
    QTest::newRow("same") << "source/工具.vc"
                          << "工具"
                          << "||" << QStringList{"source/工具.vc"};
    QTest::newRow("taken") << "source/工具.vc"
                           << "main"
                           << "文件已存在|文件 main.vc 已经存在，请使用其他名称。|"
                           << QStringList{"source/工具.vc"};
    QTest::newRow("source taken") << "ui/设置.vui"
                                  << "工具"
                                  << "文件已存在|文件 工具.vc 已经存在，请使用其他名称。|"
                                  << QStringList{"ui/设置.vui"};
    QTest::newRow("core") << "source/main.vc"
                          << "开始"
                          << "警告|无法重命名系统文件: main.vc\n此文件是项目必需的核心文件。|"
                          << QStringList{"source/main.vc"};
    QTest::newRow("outside") << "source/工具.vc"
                             << "../帮手"
                             << "重命名失败|文件名中不能有字符“/”。|"
                             << QStringList{"source/工具.vc"};
}

void ProjectFileOperationsTest::renames()
{
    QFETCH(QString, file);
    QFETCH(QString, name);
    QFETCH(QString, told);
    QFETCH(QStringList, files);
    Project project;
    QVERIFY(project.operations.newCodeFile("工具").succeeded);
    QVERIFY(project.operations.newCodeFile("设置").succeeded);
    QVERIFY(project.operations.newWindow("设置").succeeded);
    QCOMPARE(toldBy(project.operations.rename(file, name)), told);
    for (const QString &relative : files) {
        QVERIFY2(QFileInfo::exists(project.path(relative)), qPrintable(relative));
        QVERIFY(project.content("甲.vlproj").contains(relative.toUtf8()));
    }
    QCOMPARE(QFileInfo::exists(project.path(file)), files.contains(file));
}

QTEST_GUILESS_MAIN(ProjectFileOperationsTest)
#include "project_file_operations_test.moc"
