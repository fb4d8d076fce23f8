#include "driver/cpp_tools.h"

#include "driver/gcc_command.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace {

QString find(const QString &name)
{
    return QStandardPaths::findExecutable(name);
}

QString stamp(const QString &path)
{
    const QFileInfo info(QFileInfo(path).canonicalFilePath());
    return info.filePath() + QLatin1Char('|') + QString::number(info.size()) + QLatin1Char('|') +
           QString::number(info.lastModified().toMSecsSinceEpoch());
}

// The answer of a compiler to "where is that file of yours".
QString toldPath(const QString &gcc, const QString &question)
{
    const ToolRun run = runTool({gcc, {question}, QString()}, ToolWatch());
    const QString path = run.succeeded() ? run.output.trimmed() : QString();
    return QFileInfo(path).isAbsolute() ? QFileInfo(path).canonicalFilePath() : QString();
}

} // namespace

QString CppTools::prefixOf(const QString &platform)
{
    return platform == QLatin1String("x86") ? QStringLiteral("i686-w64-mingw32")
                                            : QStringLiteral("x86_64-w64-mingw32");
}

CppTools CppTools::gccAt(const QString &compiler, const QString &archiver,
                         const QString &resourceCompiler, const QString &prefix)
{
    CppTools tools;
    tools.m_prefix = prefix;
    tools.m_compiler = compiler;
    tools.m_archiver = archiver;
    tools.m_resourceCompiler = resourceCompiler;
    return tools;
}

QList<CppTools> CppTools::installed(const QString &platform)
{
    const QString prefix = prefixOf(platform);
    CppTools gcc = gccAt(find(prefix + QLatin1String("-g++")), find(prefix + QLatin1String("-ar")),
                         find(prefix + QLatin1String("-windres")), prefix);
    if (gcc.m_compiler.isEmpty() || gcc.m_archiver.isEmpty())
        return {};
    const bool knowsLibraries = gcc.findLibraries(gcc.m_compiler);
    CppTools clang = gcc;
    clang.m_family = Family::Clang;
    clang.m_compiler = find(QStringLiteral("clang++"));
    clang.m_linker = find(QStringLiteral("ld.lld"));
    // The exceptions of 32-bit programs differ between builds of GCC.
    const bool usable = knowsLibraries && platform != QLatin1String("x86") &&
                        !clang.m_compiler.isEmpty() && !clang.m_linker.isEmpty() &&
                        qEnvironmentVariable("VOREL_TOOLS") != QLatin1String("gcc");
    return usable ? QList<CppTools>{clang, gcc} : QList<CppTools>{gcc};
}

bool CppTools::findLibraries(const QString &gcc)
{
    m_gccFolder = QFileInfo(toldPath(gcc, QStringLiteral("-print-libgcc-file-name"))).path();
    m_systemFolder = QFileInfo(toldPath(gcc, QStringLiteral("-print-file-name=crt2u.o"))).path();
    return QFileInfo(m_gccFolder + QLatin1String("/crtbegin.o")).isFile() &&
           QFileInfo(m_systemFolder + QLatin1String("/crt2u.o")).isFile();
}

QString CppTools::name() const
{
    return m_prefix.section(QLatin1Char('-'), 0, 0) +
           (m_family == Family::Clang ? QLatin1String("-clang") : QLatin1String("-gcc"));
}

QString CppTools::identity() const
{
    const QStringList files{m_compiler, m_gccFolder + QLatin1String("/libstdc++.a"),
                            m_systemFolder + QLatin1String("/libmingwex.a"),
                            m_systemFolder + QLatin1String("/../include/_mingw.h")};
    QStringList stamps{name()};
    for (const QString &file : files)
        stamps << stamp(file);
    return stamps.join(QLatin1Char('\n'));
}

QStringList CppTools::compileFlags(bool isDebug) const
{
    QStringList flags = GccCommand::compileFlags(isDebug);
    if (m_family == Family::Gcc)
        return flags;
    // A division by 0 must end the program, and a loop without end must not, as with GCC.
    flags << QStringLiteral("-fsanitize=integer-divide-by-zero")
          << QStringLiteral("-fsanitize-trap=integer-divide-by-zero")
          << QStringLiteral("-fno-finite-loops");
    const QString includes = m_gccFolder + QLatin1String("/include/c++");
    flags << QLatin1String("--target=") + m_prefix << QStringLiteral("-nostdinc++")
          << QStringLiteral("-nostdlibinc") << QStringLiteral("-ffunction-sections")
          << QStringLiteral("-fdata-sections");
    for (const QString &folder :
         {includes, includes + QLatin1Char('/') + m_prefix, includes + QLatin1String("/backward"),
          QFileInfo(m_systemFolder + QLatin1String("/../include")).canonicalFilePath()})
        flags << QStringLiteral("-isystem") << folder;
    return flags;
}

QStringList CppTools::runtimeFlags() const
{
    return compileFlags(false);
}

QStringList CppTools::unitFlags(bool isDebug) const
{
    QStringList flags = compileFlags(isDebug);
    // Texts and variants in line made the programs a third larger and twice as long to compile, and
    // no faster.
    if (m_family == Family::Clang && !isDebug)
        flags << QStringLiteral("-mllvm") << QStringLiteral("-inline-threshold=10");
    return flags;
}

QStringList CppTools::headerArguments(const QString &header, const QString &output,
                                      bool isDebug) const
{
    QStringList arguments = compileFlags(isDebug);
    if (m_family == Family::Clang)
        arguments << QStringLiteral("-fpch-instantiate-templates");
    return arguments << QStringLiteral("-x") << QStringLiteral("c++-header") << header
                     << QStringLiteral("-o") << output;
}

QString CppTools::precompiledSuffix() const
{
    return m_family == Family::Clang ? QStringLiteral(".pch") : QStringLiteral(".gch");
}

QStringList CppTools::precompiledArguments(const QString &folder, const QString &header) const
{
    // The first folder: nothing else may answer to the header's name.
    QStringList arguments{QStringLiteral("-I"), folder};
    if (m_family == Family::Clang) {
        arguments << QStringLiteral("-include-pch")
                  << folder + QLatin1Char('/') + header + precompiledSuffix();
    }
    return arguments;
}

ToolCommand CppTools::linkCommand(const QString &folder, const QStringList &objects,
                                  const QString &output, const QStringList &libraryFolders,
                                  const QStringList &libraries) const
{
    QStringList folders;
    for (const QString &path : libraryFolders)
        folders << QLatin1String("-L") + path;
    const QStringList named = GccCommand::libraryFlags(libraries);
    if (m_family == Family::Gcc) {
        return {m_compiler,
                objects + GccCommand::linkFlags() + QStringList{QStringLiteral("-o"), output} +
                    folders + named,
                folder};
    }
    QStringList arguments{QStringLiteral("-m"),
                          QStringLiteral("i386pep"),
                          QStringLiteral("--subsystem"),
                          QStringLiteral("windows"),
                          QStringLiteral("-Bstatic"),
                          QStringLiteral("--stack"),
                          GccCommand::stackSize(),
                          QStringLiteral("-s"),
                          QStringLiteral("--gc-sections"),
                          QStringLiteral("-o"),
                          output,
                          m_systemFolder + QLatin1String("/crt2u.o"),
                          m_gccFolder + QLatin1String("/crtbegin.o")};
    arguments << folders << QLatin1String("-L") + m_gccFolder
              << QLatin1String("-L") + m_systemFolder << objects << named;
    for (const char *library : {"stdc++", "mingw32", "gcc", "gcc_eh", "moldname", "mingwex",
                                "msvcrt", "kernel32", "user32"})
        arguments << QLatin1String("-l") + QLatin1String(library);
    arguments << m_gccFolder + QLatin1String("/crtend.o");
    return {m_linker, arguments, folder};
}
