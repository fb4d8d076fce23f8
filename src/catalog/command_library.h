// CommandLibrary: the catalogue of built-in commands.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// One command as its record tells it. `syntax` has one line for each overload.
struct CommandInfo
{
    QString name;
    QString category;
    QString description;
    QString syntax;
    QString returnType;
    QString example;
    QString output; // what the example prints; null where it cannot run unattended
    QString note;
    QStringList parameters;
    QString cppFunction;
    QString type; // "常量", "语法", "属性", "方法" or "事件" where the record is no command
    QString memberOf; // the component type whose member the record describes
    QStringList aliases;
    bool noPinyinCompletion = false; // completion finds it by its own letters alone

    // Whether a program can call it by its name alone.
    bool isCallable() const;
    bool isConstant() const { return type == QStringLiteral("常量"); }
};

// Reads the embedded catalogue at construction. A broken catalogue is logged and leaves an empty
// library; nothing else fails.
class CommandLibrary
{
public:
    CommandLibrary();
    explicit CommandLibrary(const QString &path);

    // The library of the program, read on first use; safe from any thread.
    static const CommandLibrary &builtin();

    // The record of `name` or of the command that has it as an alias; null if there is none.
    const CommandInfo *commandInfo(const QString &name) const;
    const QList<CommandInfo> &allCommands() const { return m_commands; }

private:
    bool load(const QString &path);

    QList<CommandInfo> m_commands;
    QHash<QString, int> m_indexByName;
};
