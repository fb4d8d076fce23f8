// From names and types of generated C++ back to the words of the user's source.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// What a name of C++ stands for. All texts are empty for a name that means nothing to the user.
struct KnownName
{
    QString command;       // "取子串", "定时器类.启动"
    QString constant;      // "信息", without its "#"
    QString name;          // of the user's: a variable, a function, "动物类.叫", a component
    bool internal = false; // of the runtime or the generator, without a word of its own
};

// What the user wrote; decides where a name of C++ may stand for several words. May be empty.
struct UserText
{
    QString line;  // the line that a message is about
    QString whole; // all files
};

// The tables that lead back, made on first use; safe from any thread.
class ToolchainNames
{
public:
    static const ToolchainNames &instance();

    // `cppName`: an identifier, a qualified name, a declaration or the symbol of a linker, mangled
    // or not. Where several commands share a function the one that the user wrote is meant.
    KnownName find(const QString &cppName, const UserText &user) const;
    // The user's word for a type, empty without one.
    QString typeWord(const QString &cppType, const UserText &user) const;

    // The bare identifier in a name, a declaration or a symbol: "f" in "int A::f(int)".
    static QString identifierOf(const QString &cppName);
    // "_u4e3b_u7a97" and "\u4e3b" become the characters they stand for; the prefix of a handle and
    // the frame of a class's name are taken off.
    static QString decoded(const QString &name);

private:
    ToolchainNames();
    void addCommands();
    void addConstants();
    void addClasses();
    KnownName findMember(const QString &name, const UserText &user) const;
    QString classWord(const QString &cppClass, const UserText &user) const;

    QHash<QString, QStringList> m_commands; // by C++ name; the best one first
    QHash<QString, QStringList> m_constants;
    QHash<QString, QString> m_classes;
};
