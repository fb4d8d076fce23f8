// The declarations and definitions that a generated program consists of, one by one.
#pragma once

#include <QList>
#include <QString>

struct CppItem
{
    enum class Kind
    {
        Always,      // every unit needs it: includes, templates, constants
        Declaration, // a unit that mentions `name` needs it, as often as there are units
        Function,    // defined in one unit; others see `declaration`
        Variable,    // the same
    };

    bool isDefinition() const { return kind == Kind::Function || kind == Kind::Variable; }

    Kind kind = Kind::Always;
    QString name;
    QString text;
    QString declaration; // of a definition; empty when something else declares it
    int sourceLine = 0;  // the first line of the merged source that it carries; 0 without one
};

// What cutting a text gave. It fails on text that the cut cannot be sure of (a namespace, a
// definition inside a conditional block, several variables in one line, ...).
struct CppItems
{
    bool succeeded = false;
    QList<CppItem> items; // in the order of the text
};

// Member functions whose body spans lines become definitions behind their class.
CppItems readCppItems(const QString &text);
