// The indentation of lines: its unit, and how deep a line is.
#pragma once

#include <QString>

// `width`: the columns of one level and of a tab character, at least 1.
struct Indentation
{
    int width = 4;
    bool usesBlanks = true; // false: tab characters

    // What one level is written as.
    QString unit() const { return leading(width); }
    // White space of `depth` columns; blanks fill up what is no whole tab.
    QString leading(int depth) const;
    // The columns of the white space that the line begins with.
    int depth(const QString &line) const;
};

// How many characters of white space the line begins with.
int leadingLength(const QString &line);
