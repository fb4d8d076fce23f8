// Measures the main window with everything that belongs to it: opening large files, each key typed
// in them, the memory they take, and how long its event loop stands still. Prints a table.
#include "editor/code_editor.h"
#include "editor/completion_popup.h"
#include "loop_watch.h"
#include "project_source.h"
#include "settings/settings_store.h"
#include "shell/build_flow.h"
#include "shell/dark_theme.h"
#include "shell/editor_tabs.h"
#include "shell/frameless_main_window.h"
#include "shell/mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextStream>
#include <QtTest>

#include <algorithm>
#include <ctime>
#include <functional>
#include <vector>

namespace {

constexpr int largeFile = 20000; // lines
constexpr int commonFile = 2000;
constexpr int commonFiles = 10;
constexpr int longestWait = 600000; // milliseconds

double milliseconds(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

QString text(double number)
{
    return QString::number(number, 'f', 1);
}

void write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qUtf8Printable(path));
}

// Turns the loop until `done`; false when that takes too long.
bool turnUntil(const std::function<bool()> &done)
{
    QElapsedTimer time;
    time.start();
    QTimer wake;
    wake.start(1);
    while (!done()) {
        if (time.elapsed() > longestWait)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void turnFor(int milliseconds)
{
    QElapsedTimer time;
    time.start();
    turnUntil([&] { return time.hasExpired(milliseconds); });
}

// The kilobytes of memory that the process holds.
long residentMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').first().toLong();
    }
    return 0;
}

class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget *watched) { watched->installEventFilter(this); }
    bool hasPainted() const { return m_hasPainted; }

    bool eventFilter(QObject *, QEvent *event) override
    {
        m_hasPainted |= event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_hasPainted = false;
};

// What the calling thread has used of the processor, in milliseconds: other programs on the machine
// do not lengthen it.
double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

// The times of single keys.
class Keys
{
public:
    void strike(QWidget &widget, QChar sign)
    {
        const bool isReturn = sign == QLatin1Char('\n');
        const Qt::Key key = isReturn                ? Qt::Key_Return
                            : sign.unicode() < 0x80 ? Qt::Key(sign.toUpper().unicode())
                                                    : Qt::Key_unknown;
        const double before = processorTime();
        QElapsedTimer timer;
        timer.start();
        QTest::sendKeyEvent(QTest::Click, &widget, key, isReturn ? QStringLiteral("\r") : sign,
                            Qt::NoModifier);
        QCoreApplication::processEvents();
        m_times.push_back(milliseconds(timer));
        m_processor.push_back(processorTime() - before);
    }

    QString told() const
    {
        return QStringLiteral("%1 keys, %2; processor: %3")
            .arg(m_times.size())
            .arg(told(m_times), told(m_processor));
    }

private:
    static QString told(std::vector<double> times)
    {
        std::sort(times.begin(), times.end());
        return QStringLiteral("median %1 ms, worst %2 ms")
            .arg(text(times[times.size() / 2]), text(times.back()));
    }

    std::vector<double> m_times;
    std::vector<double> m_processor;
};

class Bench
{
public:
    Bench(MainWindow &window, const QString &folder, QTextStream &out)
        : m_window(window), m_tabs(*window.findChild<EditorTabs *>()), m_folder(folder), m_out(out)
    {}

    void measureMemory()
    {
        const long before = residentMemory();
        for (int i = 0; i < commonFiles; ++i) {
            const QString path = m_folder + QStringLiteral("/files/%1.vc").arg(i);
            write(path, projectSource(commonFile).toUtf8());
            m_window.openPath(path);
            turnFor(700);
        }
        m_out << "memory: " << before / 1024 << " MB with an empty window, "
              << residentMemory() / 1024 << " MB with " << commonFiles << " files of " << commonFile
              << " lines\n";
        m_out.flush();
        m_tabs.closeAll();
        turnFor(500);
    }

    void openLargeFile()
    {
        const QString path = m_folder + QStringLiteral("/large.vc");
        write(path, projectSource(largeFile).toUtf8());
        const LoopWatch watch;
        QElapsedTimer timer;
        timer.start();
        m_window.openPath(path);
        m_editor = m_tabs.currentEditor();
        const PaintWatch paint(m_editor->viewport());
        turnUntil([&] { return paint.hasPainted(); });
        const double shown = milliseconds(timer);
        QTextBlock last = m_editor->document()->lastBlock();
        while (!last.text().contains(QStringLiteral("输出")))
            last = last.previous();
        turnUntil([&] { return !last.layout()->formats().isEmpty(); });
        const double highlighted = milliseconds(timer);
        turnFor(3000);
        m_out << "opening " << m_editor->blockCount() << " lines: shown after " << text(shown)
              << " ms, coloured to the end after " << text(highlighted)
              << " ms, longest gap of the loop " << text(watch.longest()) << " ms\n";
        m_out.flush();
    }

    void typeAt(const char *title, int line)
    {
        m_editor->goToLine(line);
        m_editor->moveCursor(QTextCursor::EndOfBlock);
        turnFor(1000);
        Keys keys;
        const LoopWatch watch;
        for (int i = 0; i < 8; ++i) {
            const QString typed = QStringLiteral("\n整数 数量%1 = 12 + (甲 * 3) // 一些").arg(i);
            for (const QChar sign : typed) {
                keys.strike(*m_editor, sign);
                turnFor(15);
            }
            // A check begins, and the typing goes on while it is at work.
            turnFor(500);
        }
        turnFor(3000);
        m_out << "typing " << title << ": " << keys.told() << ", longest gap of the loop "
              << text(watch.longest()) << " ms\n";
        m_out.flush();
    }

    void searchWhileTyping()
    {
        m_window.onFind();
        QTest::keyClicks(m_editor->window()->focusWidget(), QStringLiteral("12"));
        turnFor(500);
        m_editor->setFocus();
        typeAt("with the find bar open", largeFile / 2);
        QTest::keyClick(m_editor, Qt::Key_Escape);
    }

    void completeAt(const char *title, int line)
    {
        m_editor->goToLine(line);
        m_editor->moveCursor(QTextCursor::EndOfBlock);
        const auto *list = m_editor->findChild<CompletionPopup *>();
        Keys keys;
        Keys others;
        for (const char *word : {"qwbcd", "jsonjx", "xswj", "取文本长度", "统计订单"}) {
            for (const QChar sign : QLatin1Char('\n') + QString::fromUtf8(word)) {
                if (sign == QLatin1Char('\n')) {
                    QTest::keyClick(m_editor, Qt::Key_Escape);
                    others.strike(*m_editor, sign);
                } else {
                    keys.strike(*m_editor, sign);
                }
                turnFor(15);
            }
            if (!list->isVisible())
                m_out << "no list for " << word << '\n';
            turnFor(400);
        }
        QTest::keyClick(m_editor, Qt::Key_Escape);
        m_out << "completion " << title << ": " << keys.told() << '\n';
        m_out.flush();
    }

    void measureCheckedProject()
    {
        openProject();
        const LoopWatch watch;
        m_editor->goToLine(largeFile / 2);
        Keys().strike(*m_editor, QLatin1Char('\n'));
        turnFor(5000);
        m_out << "check of a project of " << m_editor->blockCount()
              << " lines: longest gap of the loop " << text(watch.longest()) << " ms\n";
        m_out.flush();
    }

    void measureBuild()
    {
        auto *flow = m_window.findChild<BuildFlow *>();
        QString ending;
        QObject::connect(flow, &BuildFlow::statusChanged, &m_window,
                         [&ending](const QString &status) { ending = status; });
        QElapsedTimer timer;
        timer.start();
        const LoopWatch watch;
        m_window.onBuild();
        turnUntil([flow] { return !flow->isBuilding(); });
        turnFor(500);
        m_out << "build of it (" << ending << "): " << timer.elapsed()
              << " ms, longest gap of the loop " << text(watch.longest()) << " ms\n";
    }

private:
    void openProject()
    {
        m_tabs.currentEditor()->document()->setModified(false);
        m_tabs.closeAll();
        const QString folder = m_folder + QStringLiteral("/project");
        write(folder + QStringLiteral("/source/main.vc"), projectSource(largeFile).toUtf8());
        const QJsonObject project{
            {QStringLiteral("name"), QStringLiteral("large")},
            {QStringLiteral("targetPlatform"), QStringLiteral("x64")},
            {QStringLiteral("compiler"), QStringLiteral("MinGW")},
            {QStringLiteral("sourceFiles"), QJsonArray{QStringLiteral("source/main.vc")}}};
        write(folder + QStringLiteral("/large.vlproj"), QJsonDocument(project).toJson());
        m_window.openPath(folder + QStringLiteral("/large.vlproj"));
        turnFor(3000);
        m_editor = m_tabs.currentEditor();
    }

    MainWindow &m_window;
    EditorTabs &m_tabs;
    QString m_folder;
    QTextStream &m_out;
    CodeEditor *m_editor = nullptr;
};

void measure(SettingsStore &settings, const QString &folder, QTextStream &out)
{
    FramelessMainWindow frame;
    auto *window = new MainWindow(settings);
    frame.setContent(window);
    window->attachFrame(frame);
    frame.resize(1200, 900);
    frame.show();
    turnFor(1500);
    Bench bench(*window, folder, out);
    bench.measureMemory();
    bench.openLargeFile();
    bench.typeAt("at the end", largeFile + 100);
    bench.typeAt("in the middle", largeFile / 2);
    bench.completeAt("at the end", largeFile + 200);
    bench.completeAt("in the middle", largeFile / 2);
    bench.searchWhileTyping();
    bench.measureCheckedProject();
    bench.measureBuild();
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    // What users have stays untouched.
    for (const char *name : {"HOME", "TMPDIR"})
        qputenv(name, folder.path().toUtf8());
    QApplication application(argc, argv);
    applyDarkTheme(application);
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    SettingsStore settings(folder.filePath(QStringLiteral("settings.ini")));
    measure(settings, folder.path(), out);
    return 0;
}
