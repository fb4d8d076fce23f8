// A child process that behaves as badly as tools and programs can; what to do is its first
// argument, or $VOREL_FAKE when it plays a compiler.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string outputFile(int argc, char *argv[])
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], "-o") == 0)
            return argv[i + 1];
    }
    return std::string();
}

int writeOutput(int argc, char *argv[])
{
    const std::string path = outputFile(argc, argv);
    std::FILE *file = path.empty() ? nullptr : std::fopen(path.c_str(), "w");
    if (!file)
        return 3;
    std::fputs("\x64\x86 made", file); // an object file, to whoever looks at its beginning
    std::fclose(file);
    return 0;
}

// As such it does its work, whatever the compiler does.
bool isResourceCompiler(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "app_resource.rc") == 0)
            return true;
    }
    return false;
}

void waitForEver()
{
    for (;;)
        pause();
}

int printALot()
{
    const std::string line(1000, 'x');
    for (int i = 0; i < 20000; ++i)
        std::puts(line.c_str());
    return 0;
}

int echoLines()
{
    char line[256];
    while (std::fgets(line, sizeof line, stdin)) {
        if (std::strcmp(line, "完\n") == 0)
            return 0;
        std::printf("<%s>", line);
        std::fflush(stdout);
    }
    return 1;
}

// A child of its own that has left the group and the session.
int startGrandchild()
{
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        if (fork() == 0)
            waitForEver();
        std::exit(0);
    }
    // From here on there are two processes, no more and no less.
    waitpid(child, nullptr, 0);
    std::puts("started");
    std::fflush(stdout);
    waitForEver();
    return 0;
}

int printBytes()
{
    // Half a character now, the other half later.
    std::fputs("\xE4\xBD", stdout);
    std::fflush(stdout);
    usleep(200000);
    std::fputs("\xA0\xE5\xA5\xBD|", stdout);
    std::fputs("err|", stderr);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const char *chosen = std::getenv("VOREL_FAKE");
    const std::string mode = chosen ? chosen : argc > 1 ? argv[1] : "";
    if (mode == "make" || isResourceCompiler(argc, argv))
        return writeOutput(argc, argv);
    if (mode == "exit")
        return std::atoi(argv[2]);
    if (mode == "error") {
        std::puts("main.cpp:3:1: error: '_u7532' was not declared in this scope");
        return 1;
    }
    if (mode == "warn") {
        std::puts("main.cpp:3:1: warning: 'VL_Old' is deprecated");
        return writeOutput(argc, argv);
    }
    if (mode == "crash")
        std::raise(SIGSEGV);
    if (mode == "huge")
        return printALot();
    if (mode == "echo")
        return echoLines();
    if (mode == "bytes")
        return printBytes();
    if (mode == "invalid") {
        std::puts("main.cpp:1:1: error: \xFF\xFE\xC3( bad");
        return 1;
    }
    if (mode == "sleep" || mode == "grandchild") {
        if (mode == "grandchild")
            return startGrandchild();
        waitForEver();
    }
    if (mode == "busy") {
        for (volatile long i = 0;; ++i) {
        }
    }
    if (mode == "env") {
        std::puts(std::getenv("LC_ALL") ? std::getenv("LC_ALL") : "");
        return 0;
    }
    return 0;
}
