// Where the main window lies and how its docks are laid out.
#include "shell/window_state.h"

#include "settings/settings_store.h"
#include "shell/frameless_main_window.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QtTest>

class WindowStateTest : public QObject
{
    Q_OBJECT

private slots:
    void comesBack_data();
    void comesBack();
    void invalidDataIsIgnored_data();
    void invalidDataIsIgnored();
};

namespace {

constexpr int layoutVersion = 3;

struct Window
{
    Window()
    {
        dock->setObjectName("OutputDock");
        main->addDockWidget(Qt::BottomDockWidgetArea, dock);
        frame.setContent(main);
    }

    FramelessMainWindow frame;
    QMainWindow *main = new QMainWindow;
    QDockWidget *dock = new QDockWidget(main);
};

} // namespace

void WindowStateTest::comesBack_data()
{
    QTest::addColumn<int>("version"); // of the program that starts next
    QTest::addColumn<Qt::DockWidgetArea>("area");
    QTest::addRow("same layout") << layoutVersion << Qt::LeftDockWidgetArea;
    QTest::addRow("newer layout") << layoutVersion + 1 << Qt::BottomDockWidgetArea;
    QTest::addRow("older layout") << layoutVersion - 1 << Qt::BottomDockWidgetArea;
}

void WindowStateTest::comesBack()
{
    QFETCH(int, version);
    const QTemporaryDir folder;
    SettingsStore store(folder.path() + "/a.ini");
    {
        Window window;
        window.main->addDockWidget(Qt::LeftDockWidgetArea, window.dock);
        window.frame.setGeometry(40, 50, 500, 400);
        WindowState(store, layoutVersion).save(window.frame, *window.main);
    }
    QVERIFY(store.save());
    Window window;
    WindowState(store, version).restore(window.frame, *window.main);
    QCOMPARE(window.frame.geometry(), QRect(40, 50, 500, 400));
    QTEST(window.main->dockWidgetArea(window.dock), "area");
}

void WindowStateTest::invalidDataIsIgnored_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isLogged");
    QTest::addRow("none") << QByteArray() << false;
    QTest::addRow("text") << QByteArray("not a geometry") << true;
    QTest::addRow("binary") << QByteArray(66, '\xff') << true;
    QTest::addRow("cut off") << QWidget().saveGeometry().left(20) << true;
}

void WindowStateTest::invalidDataIsIgnored()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isLogged);
    const QTemporaryDir folder;
    SettingsStore store(folder.path() + "/a.ini");
    store.set(Setting::MainWindow::geometry, bytes);
    store.set(Setting::MainWindow::state, bytes);
    store.set(Setting::MainWindow::dockLayoutVersion, layoutVersion);
    store.set(Setting::MainWindow::windowWidth, 700);
    store.set(Setting::MainWindow::windowHeight, 500);
    if (isLogged) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Invalid geometry data detected"));
    }
    Window window;
    WindowState(store, layoutVersion).restore(window.frame, *window.main);
    QCOMPARE(window.frame.size(), QSize(700, 500));
    QCOMPARE(window.main->dockWidgetArea(window.dock), Qt::BottomDockWidgetArea);
}

QTEST_MAIN(WindowStateTest)
#include "window_state_test.moc"
