// Reads the call form of a command as its record writes it.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// One parameter of a call form.
struct CommandParameter
{
    QString name;
    QStringList types; // type words, "通用" where the form names none
    bool optional = false;
    bool callback = false;  // written `&函数名`: a function passed by name
    bool reference = false; // written `类型 &名称`: the variable handed over is changed
};

// One line of a `syntax` text.
struct CommandOverload
{
    QList<CommandParameter> parameters;
    bool variadic = false; // the last parameter repeats

    int requiredCount() const;
    // What the argument at `position` (from 0) is for; null for one too many.
    const CommandParameter *parameterAt(int position) const;
};

// All overloads that `syntax` lists; a line without parentheses has no parameter list and is left
// out, so an empty result means "do not check the arguments".
QList<CommandOverload> readCommandSyntax(const QString &syntax);
