// The commands of a script.
#pragma once

#include "input.h"

class Commands
{
public:
    explicit Commands(Program &program) : m_program(program), m_input(program) {}

    // What the command says; a fault of the command itself is a line in brackets.
    Lines run(const std::wstring &command);
    // Whether it only reads, and may be run again.
    bool isReading(const std::wstring &command) const;
    // Runs a reading command again. What the program printed is added to the lines that are there.
    // Gives whether anything is new.
    bool runAgain(const std::wstring &command, Lines *lines);

private:
    using Words = std::vector<std::wstring>;
    struct Command;

    static const Command *find(const std::wstring &name);

    Lines window(HWND, const Words &words);
    Lines windows(HWND, const Words &);
    Lines log(HWND, const Words &);
    Lines gone(HWND, const Words &);
    Lines text(HWND control, const Words &);
    Lines set(HWND control, const Words &words);
    Lines type(HWND, const Words &words);
    Lines key(HWND, const Words &words);
    Lines click(HWND control, const Words &words);
    Lines doubleClick(HWND control, const Words &words);
    Lines rightClick(HWND control, const Words &words);
    Lines hover(HWND control, const Words &words);
    Lines press(HWND control, const Words &words);
    Lines release(HWND, const Words &);
    Lines drag(HWND control, const Words &words);
    Lines wheel(HWND control, const Words &words);
    Lines focus(HWND control, const Words &);
    Lines focused(HWND, const Words &);
    Lines pick(HWND control, const Words &words);
    Lines items(HWND control, const Words &);
    Lines rows(HWND control, const Words &);
    Lines columns(HWND control, const Words &);
    Lines tree(HWND control, const Words &);
    Lines value(HWND control, const Words &);
    Lines menu(HWND, const Words &);
    Lines place(HWND control, const Words &);
    Lines places(HWND, const Words &);
    Lines client(HWND, const Words &);
    Lines state(HWND control, const Words &);
    Lines style(HWND control, const Words &);
    Lines className(HWND control, const Words &);
    Lines pixel(HWND control, const Words &words);
    Lines resize(HWND, const Words &words);
    Lines move(HWND, const Words &words);
    Lines close(HWND, const Words &);
    Lines objects(HWND, const Words &);
    Lines grown(HWND, const Words &words);
    Lines shot(HWND, const Words &words);

    Lines clickTimes(HWND control, const Words &words, MouseButton button, int times);

    Program &m_program;
    Input m_input;
    HeldObjects m_held;
};
