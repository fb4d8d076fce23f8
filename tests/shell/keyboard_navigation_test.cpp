// The ways between editor and panels without a mouse.
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/keyboard_navigation.h"
#include "shell/output_panel.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTest>
#include <QTreeWidget>

class KeyboardNavigationTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void keyLeadsToPanel_data();
    void keyLeadsToPanel();
    void escapeLeadsBack();
    void listHasCurrentRow();
    void controlTabTurnsPages();

private:
    struct Parts
    {
        QMainWindow window;
        DockLayout docks{window};
        EditorTabs *tabs = new EditorTabs(&window);
        OutputPanel *output = new OutputPanel(&window);
        QTreeWidget *project = new QTreeWidget(&window);
    };

    // Whether the keyboard is in `widget`.
    static bool isFocused(const QWidget *widget)
    {
        const QWidget *focused = QApplication::focusWidget();
        return focused && (focused == widget || widget->isAncestorOf(focused));
    }

    std::unique_ptr<Parts> m_parts;
};

void KeyboardNavigationTest::init()
{
    m_parts = std::make_unique<Parts>();
    Parts &parts = *m_parts;
    parts.window.setCentralWidget(parts.tabs);
    parts.docks.setContent(QStringLiteral("OutputDock"), parts.output);
    parts.docks.setContent(QStringLiteral("ProjectExplorerDock"), parts.project);
    for (const char *name : {"CommandLibDock", "CodeOutlineDock", "ComponentListDock"})
        parts.docks.setContent(QString::fromLatin1(name), new QTreeWidget);
    for (const char *row : {"甲", "乙"})
        new QTreeWidgetItem(parts.project, {QString::fromUtf8(row)});
    new KeyboardNavigation(parts.window, parts.docks, *parts.tabs, *parts.output);
    parts.tabs->openUntitled(QStringLiteral("文本 甲"));
    parts.window.resize(900, 700);
    parts.window.show();
    QVERIFY(QTest::qWaitForWindowActive(&parts.window));
    parts.tabs->currentEditor()->setFocus();
}

void KeyboardNavigationTest::keyLeadsToPanel_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("dock");
    QTest::addColumn<int>("page");
    QTest::addRow("project") << Qt::Key_1 << "ProjectExplorerDock" << -1;
    QTest::addRow("commands") << Qt::Key_2 << "CommandLibDock" << -1;
    QTest::addRow("outline") << Qt::Key_3 << "CodeOutlineDock" << -1;
    QTest::addRow("components") << Qt::Key_4 << "ComponentListDock" << -1;
    QTest::addRow("build") << Qt::Key_5 << "OutputDock" << int(OutputPanel::CompileTab);
    QTest::addRow("run") << Qt::Key_6 << "OutputDock" << int(OutputPanel::RunTab);
    QTest::addRow("errors") << Qt::Key_7 << "OutputDock" << int(OutputPanel::ErrorTab);
    QTest::addRow("search") << Qt::Key_8 << "OutputDock" << int(OutputPanel::SearchTab);
    QTest::addRow("help") << Qt::Key_9 << "OutputDock" << int(OutputPanel::HelpTab);
}

// From whichever side, and though the panel was hidden.
void KeyboardNavigationTest::keyLeadsToPanel()
{
    QFETCH(Qt::Key, key);
    QFETCH(QString, dock);
    QFETCH(int, page);
    Parts &parts = *m_parts;
    parts.docks.dock(dock)->hide();
    QTest::keyClick(parts.tabs->currentEditor(), key, Qt::AltModifier);
    QTRY_VERIFY(isFocused(parts.docks.dock(dock)->widget()));
    if (page >= 0) {
        QCOMPARE(parts.output->currentIndex(), page);
        QVERIFY(isFocused(parts.output->currentWidget()));
        QVERIFY(qobject_cast<QAbstractScrollArea *>(QApplication::focusWidget()));
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_0, Qt::AltModifier);
    QTRY_VERIFY(isFocused(parts.tabs));
    QCOMPARE(parts.tabs->currentEditor()->toPlainText(), QStringLiteral("文本 甲"));
}

void KeyboardNavigationTest::escapeLeadsBack()
{
    Parts &parts = *m_parts;
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_5, Qt::Key_7}) {
        QTest::keyClick(parts.tabs->currentEditor(), key, Qt::AltModifier);
        QTRY_VERIFY(!isFocused(parts.tabs));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(isFocused(parts.tabs));
    }
}

// The row that the user has been at stays the current one.
void KeyboardNavigationTest::listHasCurrentRow()
{
    Parts &parts = *m_parts;
    QTest::keyClick(parts.tabs->currentEditor(), Qt::Key_1, Qt::AltModifier);
    QCOMPARE(parts.project->currentItem(), parts.project->topLevelItem(0));
    QTest::keyClick(parts.project, Qt::Key_Down);
    QTest::keyClick(parts.project, Qt::Key_Escape);
    QTest::keyClick(parts.tabs->currentEditor(), Qt::Key_1, Qt::AltModifier);
    QCOMPARE(parts.project->currentItem(), parts.project->topLevelItem(1));
}

// Of the editor and of the output, whichever has the keyboard.
void KeyboardNavigationTest::controlTabTurnsPages()
{
    Parts &parts = *m_parts;
    parts.tabs->openUntitled(QStringLiteral("整数 乙"));
    parts.tabs->currentEditor()->setFocus();
    QCOMPARE(parts.tabs->currentIndex(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(parts.tabs->currentIndex(), 0);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab,
                    Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(parts.tabs->currentIndex(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_5, Qt::AltModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(parts.output->currentIndex(), int(OutputPanel::RunTab));
}

QTEST_MAIN(KeyboardNavigationTest)
#include "keyboard_navigation_test.moc"
