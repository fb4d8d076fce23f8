// The crash record by a handler of signals; nothing but async-signal-safe calls within it.
#include "shell/crash_record.h"

#include "settings/settings_file.h"
#include "shell/user_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <ctime>

#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int crashSignals[] = {SIGSEGV, SIGABRT, SIGFPE, SIGILL, SIGBUS};
constexpr int maxFrames = 128;
constexpr unsigned secondsToWrite = 5;

char recordPath[4096];
long secondsEastOfUtc = 0;
alignas(16) char handlerStack[64 * 1024];
std::atomic_flag isCrashing = ATOMIC_FLAG_INIT;

// A text of fixed capacity; what does not fit is dropped. (printf may take locks.)
class Line
{
public:
    Line &operator<<(const char *text)
    {
        while (*text)
            put(*text++);
        return *this;
    }

    Line &number(std::uintmax_t value, int digits, unsigned base)
    {
        char reversed[20];
        int count = 0;
        for (; count < digits; ++count, value /= base)
            reversed[count] = "0123456789ABCDEF"[value % base];
        while (count > 0)
            put(reversed[--count]);
        return *this;
    }

    Line &address(std::uintptr_t value) { return number(value, int(sizeof value) * 2, 16); }

    void writeTo(int file) const
    {
        // Nobody is left to tell of a failure.
        [[maybe_unused]] const ssize_t written = ::write(file, m_text, m_size);
    }

private:
    void put(char c)
    {
        if (m_size < sizeof m_text)
            m_text[m_size++] = c;
    }

    char m_text[512];
    std::size_t m_size = 0;
};

// Days since 1970-01-01 as a date, counted in years that begin in March. (localtime takes locks.)
void putDate(Line &line, long days)
{
    const long shifted = days + 719468;
    const long era = shifted / 146097;
    const long dayOfEra = shifted % 146097;
    const long yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long monthFromMarch = (5 * dayOfYear + 2) / 153;
    const long day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    const long month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const long year = era * 400 + yearOfEra + (month <= 2 ? 1 : 0);
    line.number(std::uintmax_t(year), 4, 10) << "-";
    line.number(std::uintmax_t(month), 2, 10) << "-";
    line.number(std::uintmax_t(day), 2, 10);
}

void putTime(Line &line)
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const long seconds = long(now.tv_sec) + secondsEastOfUtc;
    putDate(line, seconds / 86400);
    const long ofDay = seconds % 86400;
    line << " ";
    line.number(std::uintmax_t(ofDay / 3600), 2, 10) << ":";
    line.number(std::uintmax_t(ofDay / 60 % 60), 2, 10) << ":";
    line.number(std::uintmax_t(ofDay % 60), 2, 10);
}

void writeRecord(int signalNumber, const siginfo_t &info)
{
    // Only a fault that the processor raised has an address.
    const bool isFault = info.si_code > 0 && signalNumber != SIGABRT;
    Line line;
    line << "\r\n[";
    putTime(line);
    line << "] SEH code=0x";
    line.number(std::uintmax_t(signalNumber), 8, 16) << " addr=";
    line.address(isFault ? reinterpret_cast<std::uintptr_t>(info.si_addr) : 0) << " info0=0x";
    line.address(std::uintptr_t(info.si_code)) << " info1=0x";
    line.address(0) << "\r\n";
    line.writeTo(STDERR_FILENO);
    const int file = ::open(recordPath, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0)
        return;
    line.writeTo(file);
    void *frames[maxFrames];
    backtrace_symbols_fd(frames, backtrace(frames, maxFrames), file);
    ::close(file);
}

void onCrash(int signalNumber, siginfo_t *info, void *)
{
    // The crash of a second thread waits for the end that the first brings.
    while (isCrashing.test_and_set())
        ::pause();
    // Walking a broken stack may hang; the process then ends by the alarm.
    std::signal(SIGALRM, SIG_DFL);
    ::alarm(secondsToWrite);
    writeRecord(signalNumber, *info);
    // The signal is blocked until this function returns; then the default action takes it.
    std::signal(signalNumber, SIG_DFL);
    std::raise(signalNumber);
}

// Decided now: a crash is no time to look for folders.
void choosePath()
{
    const QString programFolder = QFileInfo(QFile::symLinkTarget("/proc/self/exe")).path();
    QString folder = programFolder;
    if (SettingsFile::isSystemFolder(folder) || !QFileInfo(folder).isWritable()) {
        folder = userDataFolder();
        QDir().mkpath(folder);
    }
    const QByteArray path = QFile::encodeName(folder + QStringLiteral("/VorelDesk_seh.log"));
    if (std::size_t(path.size()) < sizeof recordPath)
        std::memcpy(recordPath, path.constData(), std::size_t(path.size()) + 1);
}

} // namespace

void installCrashRecord()
{
    choosePath();
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    secondsEastOfUtc = local.tm_gmtoff;
    // The first call loads a library, which a handler must not do.
    void *frame = nullptr;
    backtrace(&frame, 1);

    stack_t stack = {};
    stack.ss_sp = handlerStack;
    stack.ss_size = sizeof handlerStack;
    sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_sigaction = onCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    for (const int signalNumber : crashSignals)
        sigaddset(&action.sa_mask, signalNumber);
    for (const int signalNumber : crashSignals)
        sigaction(signalNumber, &action, nullptr);
}
