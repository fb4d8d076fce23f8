// The statements of generated C++ ahead of which a call can be put, and what can be read there.
#pragma once

#include <QList>
#include <QString>
#include <QVector>

// A local variable or a parameter of a generated function.
struct GeneratedVariable
{
    QString name;
    QString type; // without "const" and "&"; empty for a pointer, a C array and the like
};

// A statement that begins a line and carries the number of a source line.
struct GeneratedStatement
{
    int begin = 0; // offset of its line
    int sourceLine = 0;
    QVector<int> blocks;                // the blocks around it by number, the function's first
    QList<GeneratedVariable> variables; // declared ahead of it and in scope; a name stands once
};

// All of them in the order of the text. Lines in the middle of a statement, ahead of "else" or
// outside of functions are left out: nothing can be put there.
QList<GeneratedStatement> readStatements(const QString &text);
