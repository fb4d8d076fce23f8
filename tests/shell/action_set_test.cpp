// The commands of the main window: all of them work or tell why not, and all can be reached.
#include "shell/action_set.h"
#include "shell/desk.h"

#include <QAccessible>
#include <QDockWidget>
#include <QJsonDocument>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QToolBar>

using Shell::Desk;

namespace {

QJsonObject table()
{
    QFile file(QStringLiteral(":/shell/actions.json"));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

void collect(const QList<QAction *> &actions, QSet<QString> &names)
{
    for (const QAction *action : actions) {
        if (action->menu())
            collect(action->menu()->actions(), names);
        names.insert(action->objectName());
    }
}

} // namespace

class ActionSetTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyRowWorksOrTellsWhyNot();
    void everyActionCanBeReached();
    void actions_data();
    void actions();
    void docksAndToolBars_data();
    void docksAndToolBars();
    void tipTellsTheReason_data();
    void tipTellsTheReason();
    void checkItemsFollowTheDocks();
    void everythingWithFocusHasAName();

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Desk> m_desk;
};

void ActionSetTest::initTestCase()
{
    Shell::useFolders(m_folder.path());
    m_desk = std::make_unique<Desk>(m_folder.path());
}

void ActionSetTest::everyRowWorksOrTellsWhyNot()
{
    const QJsonArray rows = table().value(QLatin1String("actions")).toArray();
    const QJsonObject conditions = table().value(QLatin1String("conditions")).toObject();
    QVERIFY(!rows.isEmpty());
    QSet<QString> names;
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        const QString name = row.value(QLatin1String("name")).toString();
        QVERIFY2(!names.contains(name), qPrintable(name));
        names.insert(name);
        const QByteArray slot = row.value(QLatin1String("slot")).toString().toLatin1() + "()";
        const bool hasSlot = MainWindow::staticMetaObject.indexOfSlot(slot) >= 0;
        const bool hasReason = !row.value(QLatin1String("unavailable")).toString().isEmpty();
        QVERIFY2(hasSlot != hasReason, qPrintable(name));
        const QJsonArray needs = row.value(QLatin1String("needs")).toArray();
        for (const QJsonValue &need : needs)
            QVERIFY2(conditions.contains(need.toString()), qPrintable(need.toString()));
        const QAction *action = m_desk->action(qPrintable(name));
        QVERIFY2(action, qPrintable(name));
        if (row.contains(QLatin1String("icon")))
            QVERIFY2(!action->icon().pixmap(18, 18).isNull(), qPrintable(name));
    }
}

void ActionSetTest::everyActionCanBeReached()
{
    QSet<QString> reachable;
    collect(m_desk->window->menuBar()->actions(), reachable);
    for (const QToolBar *bar : m_desk->window->findChildren<QToolBar *>())
        collect(bar->actions(), reachable);
    const QJsonArray rows = table().value(QLatin1String("actions")).toArray();
    for (const QJsonValue &row : rows) {
        const QString name = row.toObject().value(QLatin1String("name")).toString();
        QVERIFY2(reachable.contains(name), qPrintable(name));
    }
}

void ActionSetTest::actions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shortcut");
    const auto row = [](const char *name, const char *text, const char *shortcut) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromLatin1(shortcut);
    };
    row("actionNewProject", "新建项目(&N)...", "Ctrl+Shift+N");
    row("actionOpenProject", "打开项目(&O)...", "Ctrl+Shift+O");
    row("actionSaveAll", "保存项目(&L)", "Ctrl+Shift+S");
    row("actionGotoLine", "转到行(&G)...", "Ctrl+G");
    row("actionToggleComment", "切换注释(&/)", "Ctrl+/");
    row("actionFormatCode", "格式化代码(&M)", "Ctrl+Shift+F");
    row("actionFormatVcFile", "格式化当前源码(&I)", "Ctrl+I");
    row("actionDupLine", "向下复制行(&K)", "Ctrl+Shift+D");
    row("actionSwitchToDesign", "设计视图(&D)", "F6");
    row("actionZoomReset", "重置缩放(&0)", "Ctrl+0");
    row("actionFullScreen", "全屏(&F)", "F11");
    row("actionBuild", "编译(&B)", "F7");
    row("actionRebuild", "重新编译(&R)", "Ctrl+F7");
    row("actionRun", "运行(&U)", "Ctrl+F5");
    row("actionDebug", "调试(&D)", "F5");
    row("actionStop", "停止(&S)", "Shift+F5");
    row("actionToggleBreakpoint", "切换断点", "F8");
    row("actionShortcuts", "快捷键速查(&K)...", "Ctrl+Alt+K");
}

// What people have learnt by heart.
void ActionSetTest::actions()
{
    QFETCH(QString, text);
    QFETCH(QString, shortcut);
    const QAction *action = m_desk->action(QTest::currentDataTag());
    QVERIFY(action);
    QCOMPARE(action->text(), text);
    QCOMPARE(action->shortcut().toString(), shortcut);
}

void ActionSetTest::docksAndToolBars_data()
{
    QTest::addColumn<QString>("title");
    const auto row = [](const char *name, const char *title) {
        QTest::newRow(name) << QString::fromUtf8(title);
    };
    row("CommandLibDock", "支持库");
    row("ToolboxDock", "工具箱");
    row("ProjectExplorerDock", "项目");
    row("ComponentListDock", "组件列表");
    row("PropertiesDock", "属性");
    row("CodeOutlineDock", "代码结构");
    row("OutputDock", "输出");
    row("MainToolBar", "主工具栏");
    row("BuildToolBar", "编译工具栏");
    row("DesignToolBar", "设计工具栏");
}

void ActionSetTest::docksAndToolBars()
{
    QFETCH(QString, title);
    const auto *part = m_desk->window->findChild<QWidget *>(QLatin1String(QTest::currentDataTag()));
    QVERIFY(part);
    QCOMPARE(part->windowTitle(), title);
}

void ActionSetTest::tipTellsTheReason_data()
{
    QTest::addColumn<QStringList>("holding");
    QTest::addColumn<QString>("tip");
    QTest::newRow("actionSave") << QStringList() << "保存当前文件 (Ctrl+S)\n请先打开一个文件。";
    QTest::newRow("actionBuild") << QStringList{"source"} << "编译 (F7)\n正在编译中，请等待...";
    QTest::newRow("actionRun") << QStringList{"source", "idle"} << "运行 (Ctrl+F5)";
    // The first of two reasons, and one that never ends.
    QTest::newRow("actionUndo") << QStringList() << "撤销 (Ctrl+Z)\n请先打开一个文件。";
    QTest::newRow("actionPluginManager")
        << QStringList{"source"} << "插件管理\n本版本还不支持插件。";
}

void ActionSetTest::tipTellsTheReason()
{
    QFETCH(QStringList, holding);
    QFETCH(QString, tip);
    auto *set = m_desk->window->findChild<ActionSet *>();
    set->update(QSet<QString>(holding.cbegin(), holding.cend()));
    const QAction *action = m_desk->action(QTest::currentDataTag());
    QCOMPARE(action->toolTip(), tip);
    QCOMPARE(action->isEnabled(), !tip.contains('\n'));
    m_desk->window->updateActions();
}

void ActionSetTest::checkItemsFollowTheDocks()
{
    QAction *toggle = m_desk->action("actionToggleOutput");
    auto *dock = m_desk->window->findChild<QDockWidget *>("OutputDock");
    QVERIFY(QTest::qWaitForWindowExposed(&m_desk->frame));
    QTRY_VERIFY(toggle->isChecked() && dock->isVisible());
    toggle->trigger();
    QVERIFY(!dock->isVisible() && !toggle->isChecked());
    m_desk->action("actionResetLayout")->trigger();
    QVERIFY(dock->isVisible() && toggle->isChecked());
    dock->close();
    QTRY_VERIFY(!toggle->isChecked());
}

// A screen reader has nothing else to say of it.
void ActionSetTest::everythingWithFocusHasAName()
{
    m_desk->action("actionNewFile")->trigger();
    m_desk->action("actionReplace")->trigger();
    QStringList nameless;
    for (QWidget *widget : m_desk->frame.findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->focusProxy())
            continue;
        const auto *tabs = qobject_cast<QTabBar *>(widget);
        if (tabs && tabs->count() == 0) // kept for docks to come
            continue;
        QAccessibleInterface *told = QAccessible::queryAccessibleInterface(widget);
        if (told && told->text(QAccessible::Name).isEmpty()) {
            nameless << QStringLiteral("%1 %2 in %3 %4")
                            .arg(widget->metaObject()->className(), widget->objectName(),
                                 widget->parentWidget()->metaObject()->className(),
                                 widget->parentWidget()->objectName());
        }
    }
    QVERIFY2(nameless.isEmpty(), qPrintable(nameless.join('\n')));
}

QTEST_MAIN(ActionSetTest)
#include "action_set_test.moc"
