// Type files: their type blocks become classes, line for line.
#pragma once

#include <QList>
#include <QString>

enum class TypeSourceKind
{
    BlocksOnly,  // .vd: nothing but type blocks
    WithClasses, // .vt: other declarations stand as they are
};

struct TypeSource
{
    struct Fault
    {
        int line;
        QString text;
    };

    QString text; // with as many lines as the original, what it says in the same lines
    QList<Fault> faults;
};

// Translates the type blocks ("类型 点 { … }") at the top level of a text whose line ends are LF.
// With faults the text is not to be used. Any text is accepted.
TypeSource translateTypeSource(const QString &text, TypeSourceKind kind);
