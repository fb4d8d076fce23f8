// Drives a program with windows from outside like a user, by a script of steps.
//
// window_probe PROGRAM STEPS RESULT NAMES
// STEPS holds commands, "> click 按钮1", with the lines expected of each below it. RESULT gets the
// commands with the lines that came. What a command reads is read again until it is what is
// expected or the time is over, so that no script needs a pause. NAMES has a line "name id" for
// each control. The output of the program is kept beside RESULT. With VOREL_PROBE_LEARNS set
// nothing is expected, and what comes is taken.
#include "commands.h"

#include <cstdio>

namespace {

// The whole script must end in this time.
const ULONGLONG kScriptLimit = 60000;
// Once something is wrong nothing is waited for as long as before.
const DWORD kLimitAfterFault = 400;
// What comes late, such as the news that the mouse has left, is learnt too.
const DWORD kQuietTime = 600;

struct Step
{
    std::wstring command;
    Lines expected;
};

std::vector<Step> readSteps(const std::wstring &path)
{
    std::vector<Step> steps;
    const std::wstring text = fromUtf8(readFile(path));
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find(L'\n', begin), text.size());
        const std::wstring line = text.substr(begin, end - begin);
        begin = end + 1;
        if (line.compare(0, 2, L"> ") == 0)
            steps.push_back({line.substr(2), {}});
        else if (!steps.empty())
            steps.back().expected.push_back(line);
    }
    return steps;
}

void readNames(const std::wstring &path, std::map<std::wstring, int> *names)
{
    const std::vector<std::wstring> words = splitWords([&] {
        std::wstring text = fromUtf8(readFile(path));
        for (wchar_t &c : text)
            c = c == L'\n' ? L' ' : c;
        return text;
    }());
    for (size_t i = 0; i + 1 < words.size(); i += 2)
        (*names)[words[i]] = _wtoi(words[i + 1].c_str());
}

class Script
{
public:
    Script(Program &program, bool learning) : m_commands(program), m_learning(learning) {}

    std::string run(const std::vector<Step> &steps)
    {
        std::wstring result;
        for (const Step &step : steps) {
            result += L"> " + step.command + L"\n";
            for (const std::wstring &line : linesOf(step))
                result += line + L"\n";
        }
        return toUtf8(result);
    }

private:
    Lines linesOf(const Step &step)
    {
        if (GetTickCount64() > m_end)
            return {L"(out of time)"};
        Lines lines = m_commands.run(step.command);
        const bool repeats = m_commands.isReading(step.command);
        if (m_learning) {
            if (repeats) {
                Sleep(kQuietTime);
                m_commands.runAgain(step.command, &lines);
            }
            return lines;
        }
        if (repeats && lines != step.expected) {
            waitUntil(
                [&] {
                    m_commands.runAgain(step.command, &lines);
                    return lines == step.expected;
                },
                m_limit);
        }
        if (lines != step.expected)
            m_limit = kLimitAfterFault;
        return lines;
    }

    Commands m_commands;
    bool m_learning;
    DWORD m_limit = Program::kLimit;
    ULONGLONG m_end = GetTickCount64() + kScriptLimit;
};

bool writeFile(const std::wstring &path, const std::string &bytes)
{
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    const bool done = file != INVALID_HANDLE_VALUE &&
                      WriteFile(file, bytes.data(), DWORD(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return done;
}

} // namespace

int wmain(int argc, wchar_t **argv)
{
    if (argc < 5) {
        std::fputs("window_probe PROGRAM STEPS RESULT NAMES\n", stderr);
        return 2;
    }
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    const std::wstring result = argv[3];
    Program program;
    readNames(argv[4], &program.names);
    if (!program.start(argv[1], result + L".log")) {
        std::fputs("the program does not start\n", stderr);
        return 1;
    }
    const bool learning = GetEnvironmentVariableW(L"VOREL_PROBE_LEARNS", nullptr, 0) > 0;
    Script script(program, learning);
    return writeFile(result, script.run(readSteps(argv[2]))) ? 0 : 1;
}
