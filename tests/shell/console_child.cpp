// A console program for Windows that does what its standard input says: "exit N", "flood", or a
// line that it repeats.
#include <cstdio>
#include <cstdlib>
#include <cstring>

int main()
{
    std::printf("ready\n");
    std::fflush(stdout);
    char line[1024];
    while (std::fgets(line, sizeof line, stdin)) {
        if (std::strncmp(line, "exit ", 5) == 0)
            return std::atoi(line + 5);
        if (std::strncmp(line, "flood", 5) == 0) {
            for (long number = 0;; ++number)
                std::printf("line %ld\n", number);
        }
        std::printf("<%s", line);
        std::fflush(stdout);
    }
    return 1;
}
