// The C++ compilers, linkers and their helpers that a host without Windows has for Windows
// programs.
#pragma once

#include "driver/tool_process.h"

#include <QList>
#include <QString>
#include <QStringList>

// One set of tools that work together, by full path, and how they are called.
class CppTools
{
public:
    enum class Family
    {
        Gcc,   // g++ and GNU ld, sufficient alone
        Clang, // clang++ and lld, quicker, with the headers and libraries of GCC
    };

    // What is installed for "x86" or "x64", the best first; empty without a g++. With
    // VOREL_TOOLS=gcc in the environment only GCC counts.
    static QList<CppTools> installed(const QString &platform);
    // A set of GCC's that is found elsewhere than on PATH.
    static CppTools gccAt(const QString &compiler, const QString &archiver,
                          const QString &resourceCompiler, const QString &prefix);
    // "x86_64-w64-mingw32" for "x64".
    static QString prefixOf(const QString &platform);

    Family family() const { return m_family; }
    // A short name for folders: "x86_64-clang".
    QString name() const;
    const QString &compiler() const { return m_compiler; }
    const QString &archiver() const { return m_archiver; }
    const QString &resourceCompiler() const { return m_resourceCompiler; }

    // Another text whenever the tools, or the system headers and libraries behind them, have
    // changed.
    QString identity() const;

    // Everything that a precompiled header and the units that use it must agree on.
    QStringList compileFlags(bool isDebug) const;
    // For the runtime's own definitions, which no build changes.
    QStringList runtimeFlags() const;
    // For the program's own text.
    QStringList unitFlags(bool isDebug) const;
    // Makes `header` into the file `output`.
    QStringList headerArguments(const QString &header, const QString &output, bool isDebug) const;
    // What a precompiled header's name ends with.
    QString precompiledSuffix() const;
    // For a text that begins with an include of `header`, precompiled in `folder`.
    QStringList precompiledArguments(const QString &folder, const QString &header) const;
    // Links `objects` and `libraries` (names as for "-l") into `output`.
    ToolCommand linkCommand(const QString &folder, const QStringList &objects,
                            const QString &output, const QStringList &libraryFolders,
                            const QStringList &libraries) const;

private:
    bool findLibraries(const QString &gcc);

    Family m_family = Family::Gcc;
    QString m_prefix;
    QString m_compiler;
    QString m_linker;
    QString m_archiver;
    QString m_resourceCompiler;
    QString m_gccFolder;    // GCC's own libraries
    QString m_systemFolder; // import libraries and start files
};
