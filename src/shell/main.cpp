// The program voreldesk: what happens before the first window and after the last.
#include "editor/color_schemes.h"
#include "editor/syntax_issue.h"
#include "settings/settings_store.h"
#include "shell/app_identity.h"
#include "shell/crash_record.h"
#include "shell/dark_theme.h"
#include "shell/frameless_main_window.h"
#include "shell/log_file.h"
#include "shell/mainwindow.h"
#include "shell/native_process.h"
#include "shell/start_arguments.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

namespace {

// By then the window of the last session stands.
constexpr int openDelay = 400; // milliseconds

int refuse(const QString &reason)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(reason));
    return 2;
}

// The texts of Qt's own dialogs. Beside the program, or where Qt keeps them.
void loadTranslation(QApplication &application, QTranslator &translator)
{
    for (const QString &folder :
         {QCoreApplication::applicationDirPath() + QStringLiteral("/translations"),
          QLibraryInfo::location(QLibraryInfo::TranslationsPath)}) {
        if (translator.load(QStringLiteral("qtbase_zh_CN"), folder)) {
            application.installTranslator(&translator);
            return;
        }
    }
    qWarning("no Chinese texts for the dialogs of Qt");
}

int runWindow(SettingsStore &settings, const QString &fileToOpen)
{
    useDefaultColorScheme(settings);
    FramelessMainWindow frame;
    auto *window = new MainWindow(settings);
    frame.setContent(window);
    window->attachFrame(frame);
    frame.show();
    QTimer::singleShot(0, window, &MainWindow::restoreSession);
    if (!fileToOpen.isEmpty())
        QTimer::singleShot(openDelay, window,
                           [window, fileToOpen] { window->openPath(fileToOpen); });
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    installCrashRecord();
    NativeProcess::useMonitorScaling();
    keepWarningsHarmless();
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    SettingsStore settings;
    settings.importOldStores();
    qRegisterMetaType<VlSyntaxIssue>();
    qRegisterMetaType<QList<VlSyntaxIssue>>();
    const StartArguments arguments = readStartArguments(QCoreApplication::arguments());
    if (!arguments.refusal.isEmpty())
        return refuse(arguments.refusal);
    // Told ahead of the log, whose second place is in the folder of that name.
    AppIdentity::apply();
    LogFile log;
    QTranslator translator;
    loadTranslation(application, translator);
    applyDarkTheme(application);
    const int code = runWindow(settings, arguments.fileToOpen);
    log.write(QStringLiteral("INFO: app.exec() returned %1").arg(code));
    std::fprintf(stderr, "VorelDesk: app.exec() returned %d\n", code);
    return code;
}
