// Plays a program that crashes, warns, or keeps a text for later: shell_child WHAT [FOLDER]
#include "shell/crash_record.h"
#include "shell/log_file.h"
#include "shell/recovery_store.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

namespace {

// Not to be seen through by the optimiser.
volatile int zero = 0;

int overflowStack(int depth)
{
    volatile char frame[4096];
    frame[0] = char(depth);
    return zero == 0 ? overflowStack(depth + 1) + frame[0] : 0;
}

void crash(const char *how)
{
    if (std::strcmp(how, "address") == 0)
        *reinterpret_cast<volatile int *>(std::uintptr_t(0x1230 + zero)) = 1;
    else if (std::strcmp(how, "overflow") == 0)
        overflowStack(0);
    else if (std::strcmp(how, "abort") == 0)
        std::abort();
    else if (std::strcmp(how, "fatal") == 0)
        qFatal("the end");
    else
        std::raise(std::atoi(how));
}

// Runs until it is killed.
int keepText(const QString &folder)
{
    RecoveryStore store(folder);
    RecoveredText content;
    content.title = QStringLiteral("未命名1");
    content.text = QStringLiteral("整数 甲 = 1");
    if (!store.note(QStringLiteral("1"), content))
        return EXIT_FAILURE;
    std::puts("kept");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
#ifdef Q_OS_UNIX
    const rlimit noDump = {0, 0};
    setrlimit(RLIMIT_CORE, &noDump);
#endif
    installCrashRecord();
    keepWarningsHarmless();
    QCoreApplication application(argc, argv);
    const char *const what = argc > 1 ? argv[1] : "";
    if (std::strcmp(what, "keep") == 0)
        return keepText(application.arguments().at(2));
    if (std::strcmp(what, "warn") != 0)
        crash(what);
    const LogFile log;
    qWarning("first");
    qWarning("second");
    return EXIT_SUCCESS;
}
