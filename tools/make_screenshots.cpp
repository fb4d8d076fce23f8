// make_screenshots FOLDER PROJECTS: leads the main window through the states that the documents
// show and writes a picture of each into FOLDER. Works on copies of the examples in PROJECTS; run
// it through tools/screenshots, which gives it a screen and settings of its own.
#include "editor/code_editor.h"
#include "editor/syntax_issue.h"
#include "settings/settings_store.h"
#include "shell/app_identity.h"
#include "shell/dark_theme.h"
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/find_in_files_dialog.h"
#include "shell/frameless_main_window.h"
#include "shell/mainwindow.h"
#include "shell/output_panel.h"
#include "shell/recovery_dialog.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFile>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QToolTip>
#include <QTreeWidget>

#include <cstdio>
#include <functional>

namespace {

constexpr int settleTime = 900;    // milliseconds, until checks and delayed popups are done
constexpr int buildTime = 120'000; // milliseconds
const QSize frameSize(1180, 800);

class Photographer
{
public:
    Photographer(MainWindow &window, FramelessMainWindow &frame, QString folder, QString projects)
        : m_window(window),
          m_frame(frame),
          m_tabs(*window.findChild<EditorTabs *>()),
          m_output(*window.findChild<OutputPanel *>()),
          m_folder(std::move(folder)),
          m_projects(std::move(projects))
    {}

    // False when a picture could not be made.
    bool run()
    {
        welcome();
        project();
        completion();
        issues();
        find();
        findInFiles();
        commandHelp();
        dialogs();
        recovery();
        output();
        breakpoints();
        return m_isComplete;
    }

private:
    void welcome() { save("welcome"); }

    void project()
    {
        open(QStringLiteral("计算器"), QStringLiteral("主窗口.vc"));
        save("project");
    }

    void completion()
    {
        CodeEditor *editor = m_tabs.currentEditor();
        editor->goToLine(17);
        QTest::keyClick(editor, Qt::Key_End);
        QTest::keyClick(editor, Qt::Key_Return);
        type(editor, QStringLiteral("qwb"));
        save("completion");
        QTest::keyClick(editor, Qt::Key_Return);
        save("parameter_hint");
        undoAll();
    }

    void issues()
    {
        CodeEditor *editor = m_tabs.currentEditor();
        editor->goToLine(17);
        QTest::keyClick(editor, Qt::Key_End);
        QTest::keyClick(editor, Qt::Key_Return);
        type(editor, QStringLiteral("当前数 = 合计 + 1"));
        QTest::keyClick(editor, Qt::Key_Escape);
        m_output.showTab(OutputPanel::ErrorTab);
        QTest::qWait(settleTime);
        QTextCursor cursor = editor->textCursor();
        cursor.movePosition(QTextCursor::Left, QTextCursor::MoveAnchor, 5);
        const QPoint place = editor->cursorRect(cursor).center();
        QHelpEvent help(QEvent::ToolTip, place, editor->viewport()->mapToGlobal(place));
        QApplication::sendEvent(editor->viewport(), &help);
        save("errors");
        QToolTip::hideText();
        undoAll();
    }

    void find()
    {
        m_window.onReplace();
        type(QApplication::focusWidget(), QStringLiteral("当前数"));
        save("find");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    }

    void findInFiles()
    {
        open(QStringLiteral("图书借阅"), QStringLiteral("main.vc"));
        m_window.onFindInFiles();
        auto *dialog = m_window.findChild<FindInFilesDialog *>();
        dialog->setSearchText(QStringLiteral("书"));
        QTest::keyClick(dialog, Qt::Key_Return);
        save("find_in_files");
        dialog->close();
    }

    void commandHelp()
    {
        auto *dock = m_window.findChild<QDockWidget *>(QStringLiteral("CommandLibDock"));
        dock->raise();
        m_window.onCommandSelected(QStringLiteral("取文本左边"));
        save("commands");
        m_window.findChild<QDockWidget *>(QStringLiteral("ProjectExplorerDock"))->raise();
    }

    void dialogs()
    {
        const QList<QPair<const char *, void (MainWindow::*)()>> rows{
            {"settings", &MainWindow::onSettings},
            {"colors", &MainWindow::onThemeManager},
            {"new_project", &MainWindow::onNewProject},
            {"project_settings", &MainWindow::onProjectSettings},
            {"shortcuts", &MainWindow::onShortcutsGuide},
        };
        for (const auto &[name, show] : rows) {
            // The dialog runs a loop of its own.
            QTimer::singleShot(settleTime, &m_window, [this, name = name] {
                save(name);
                for (QWidget *widget : QApplication::topLevelWidgets()) {
                    if (qobject_cast<QDialog *>(widget) && widget->isVisible())
                        widget->close();
                }
            });
            (m_window.*show)();
            QTest::qWait(2 * settleTime);
        }
    }

    void recovery()
    {
        const CodeEditor *editor = m_tabs.currentEditor();
        QString text = editor->toPlainText();
        const int firstBreak = text.indexOf(QLatin1Char('\n'));
        text.insert(firstBreak + 1, QStringLiteral("// 还没有保存的一行\n"));
        RecoveredText content{editor->filePath(), {}, text, 0, QDateTime::currentDateTime(), {}};
        RecoveryDialog dialog({RecoveryEntry{QString(), content}}, &m_window);
        dialog.show();
        save("recovery");
    }

    void output()
    {
        open(QStringLiteral("图书借阅"), QStringLiteral("main.vc"));
        QAction *stop = m_window.findChild<QAction *>(QStringLiteral("actionStop"));
        m_window.onRun();
        if (!QTest::qWaitFor([stop] { return stop->isEnabled(); }, settleTime) ||
            !QTest::qWaitFor([stop] { return !stop->isEnabled(); }, buildTime))
            fail("the program did not end");
        m_output.showTab(OutputPanel::RunTab);
        auto *dock = m_window.findChild<QDockWidget *>(QStringLiteral("OutputDock"));
        m_window.resizeDocks({dock}, {frameSize.height() / 2}, Qt::Vertical);
        save("run");
    }

    void breakpoints()
    {
        m_tabs.currentEditor()->goToLine(8);
        m_window.onToggleBreakpoint();
        m_tabs.currentEditor()->goToLine(12);
        m_window.onToggleBreakpoint();
        save("breakpoints");
    }

    void open(const QString &project, const QString &source)
    {
        const QString folder = m_projects + QLatin1Char('/') + project;
        if (!m_window.openPath(QStringLiteral("%1/%2.vlproj").arg(folder, project)) ||
            !m_window.openPath(folder + QStringLiteral("/source/") + source))
            fail("cannot open an example");
    }

    static void type(QWidget *widget, const QString &text)
    {
        for (const QChar letter : text) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, letter);
            QApplication::sendEvent(widget, &press);
        }
    }

    void undoAll()
    {
        CodeEditor *editor = m_tabs.currentEditor();
        while (editor->document()->isUndoAvailable())
            editor->undo();
    }

    // With what lies above the frame, such as lists and tool tips.
    void save(const char *name)
    {
        QTest::qWait(settleTime);
        const QRect place = m_frame.frameGeometry();
        const QPixmap picture =
            m_frame.screen()->grabWindow(0, place.x(), place.y(), place.width(), place.height());
        const QString file = QStringLiteral("%1/%2.png").arg(m_folder, QLatin1String(name));
        if (!picture.toImage().convertToFormat(QImage::Format_RGB888).save(file, "PNG", 0))
            fail(qPrintable(QStringLiteral("cannot write ") + file));
    }

    void fail(const char *reason)
    {
        std::fprintf(stderr, "make_screenshots: %s\n", reason);
        m_isComplete = false;
    }

    MainWindow &m_window;
    FramelessMainWindow &m_frame;
    EditorTabs &m_tabs;
    OutputPanel &m_output;
    QString m_folder;
    QString m_projects;
    bool m_isComplete = true;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fprintf(stderr, "usage: make_screenshots FOLDER PROJECTS\n");
        return 2;
    }
    qRegisterMetaType<VlSyntaxIssue>();
    qRegisterMetaType<QList<VlSyntaxIssue>>();
    AppIdentity::apply();
    applyDarkTheme(application);
    SettingsStore settings;
    FramelessMainWindow frame;
    auto *window = new MainWindow(settings);
    frame.setContent(window);
    window->attachFrame(frame);
    // Away from the window, where it would close tool tips.
    QCursor::setPos(0, 0);
    frame.show();
    const QRect screen = frame.screen()->availableGeometry();
    frame.setGeometry({(screen.width() - frameSize.width()) / 2,
                       (screen.height() - frameSize.height()) / 2, frameSize.width(),
                       frameSize.height()});
    return Photographer(*window, frame, arguments[1], arguments[2]).run() ? 0 : 1;
}
