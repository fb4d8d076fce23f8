// Reads what compilers, linkers and resource compilers print: lines in, records out. Knows g++,
// clang, cl, windres, rc, ld, lld and link, and the script of the Windows build.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// One thing that a tool has to say, with what it says about it on further lines.
struct ToolMessage
{
    enum class Severity
    {
        Error,
        Warning,
        Unclear, // the line does not tell; its words must
    };
    enum class Tool
    {
        Compiler,
        Linker,
        ResourceCompiler,
        Script,
    };
    // Lines and columns are 1-based, 0 without; what a column counts differs by tool.
    struct Place
    {
        QString file; // as the tool wrote it
        int line = 0;
        int column = 0;
    };

    Severity severity = Severity::Error;
    Tool tool = Tool::Compiler;
    Place place;
    QString code;        // "C2065"; empty with tools that have no codes
    QString text;        // what is said, without place and severity
    QStringList notes;   // the texts of the notes that belong to it
    QList<Place> causes; // where that was asked for which failed, the innermost first
};

// The messages in `output`, in order. Notes and what explains why a candidate was passed over are
// no messages of their own; quoted source is none at all. Takes any text, in linear time.
QList<ToolMessage> readToolOutput(const QString &output);
