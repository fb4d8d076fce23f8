#include "driver/gcc_command.h"

#include "codegen/runtime_library.h"

namespace GccCommand {

namespace {

// "-fwrapv": arithmetic that overflows gives the same result at every level of optimisation.
const char *const languageFlags[] = {"-std=c++17", "-municode", "-mwindows",
                                     "-fwrapv",    "-w",        "-pipe"};

// What every generated program needs, in the order in which the script of the Windows build has it.
const char *const systemLibraries[] = {"gdi32",    "user32", "comctl32", "comdlg32", "ole32",
                                       "oleaut32", "uuid",   "ws2_32",   "wininet",  "winhttp"};

QStringList withLanguage(const QString &optimisation)
{
    QStringList flags;
    for (const char *flag : languageFlags)
        flags << QLatin1String(flag);
    return flags << optimisation;
}

} // namespace

QStringList compileFlags(bool isDebug)
{
    return withLanguage(isDebug ? QStringLiteral("-O0") : QStringLiteral("-O2"));
}

QString stackSize()
{
    return QStringLiteral("16777216");
}

QStringList linkFlags()
{
    return {QStringLiteral("-municode"),
            QStringLiteral("-mwindows"),
            QStringLiteral("-static"),
            QStringLiteral("-static-libgcc"),
            QStringLiteral("-static-libstdc++"),
            QLatin1String("-Wl,--stack,") + stackSize(),
            QStringLiteral("-s")};
}

QStringList libraryFlags(const QStringList &extra)
{
    QStringList names = extra;
    for (const char *name : systemLibraries)
        names << QLatin1String(name);
    names << RuntimeLibrary::instance().importLibraries();
    names.removeDuplicates();
    QStringList flags;
    for (const QString &name : qAsConst(names))
        flags << QLatin1String("-l") + name;
    return flags;
}

} // namespace GccCommand
