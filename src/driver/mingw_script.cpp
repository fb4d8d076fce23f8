#include "driver/mingw_script.h"

namespace {

const char scriptHead[] = "@echo off\n"
                          "setlocal EnableDelayedExpansion\n"
                          "chcp 65001 >nul 2>&1\n"
                          "set \"PATH=%1;%PATH%\"\n"
                          "if not exist \"%2\" (\n"
                          "    echo [FATAL ERROR] g++.exe not found at: %2\n"
                          "    exit /b 254\n"
                          ")\n"
                          "cd /d \"%3\"\n"
                          "if errorlevel 1 (\n"
                          "    echo [ERROR] Cannot change to build directory: %3\n"
                          "    exit /b 253\n"
                          ")\n"
                          "del /q *.o 2>nul\n";

const char resourceStep[] = "echo [WINDRES] Compiling resource file...\n"
                            "\"%1\" -i \"%2\" -o \"%3\" 2>&1\n"
                            "if errorlevel 1 (\n"
                            "    echo [WINDRES_ERROR] Resource compilation failed\n"
                            "    exit /b 252\n"
                            ")\n"
                            "echo [WINDRES] Resource compiled successfully\n";

const char scriptTail[] = "set \"COMPILE_RESULT=%ERRORLEVEL%\"\n"
                          "echo.\n"
                          "echo [COMPILE_EXIT_CODE] %COMPILE_RESULT%\n"
                          "if exist \"%1\" (\n"
                          "    echo [OUTPUT_FILE] EXISTS\n"
                          ") else (\n"
                          "    echo [OUTPUT_FILE] NOT_FOUND\n"
                          ")\n"
                          "endlocal & exit /b %COMPILE_RESULT%\n";

const char toldLibraries[] = " -lgdi32 -luser32 -lcomctl32 -lcomdlg32 -lole32 -loleaut32 -luuid "
                             "-lws2_32 -lwininet -lwinhttp";

// A path inside quotes: the script would expand "%" and "!".
QString quotable(const QString &path)
{
    QString result = path;
    result.remove(QLatin1Char('"'));
    result.replace(QLatin1Char('%'), QLatin1String("%%"));
    return result.replace(QLatin1Char('!'), QLatin1String("^!"));
}

// A path outside quotes.
QString echoable(const QString &path)
{
    QString result;
    for (const QChar c : quotable(path)) {
        if (QStringLiteral("&|<>()").contains(c))
            result += QLatin1Char('^');
        result += c;
    }
    return result;
}

QString quoted(const QString &path)
{
    return QLatin1Char('"') + quotable(path) + QLatin1Char('"');
}

QString compileLine(const MinGwScript &script)
{
    QString line = quoted(script.compiler) + QLatin1Char(' ');
    if (script.staticLink)
        line += QLatin1String("-static ");
    line += QLatin1String("-mwindows -O2 ");
    for (const QString &folder : script.includeFolders)
        line += QLatin1String("-I ") + quoted(folder) + QLatin1Char(' ');
    line += QLatin1String("-o ") + quoted(script.output) + QLatin1Char(' ');
    line += quoted(script.source) + QLatin1Char(' ');
    if (!script.resourceObject.isEmpty())
        line += quoted(script.resourceObject);
    for (const QString &folder : script.libraryFolders)
        line += QLatin1String(" -L ") + quoted(folder);
    for (const QString &archive : script.archives)
        line += QLatin1Char(' ') + quoted(archive);
    line += QLatin1String(toldLibraries);
    for (const QString &library : script.libraries)
        line += QLatin1String(" -l") + library;
    for (const QString &flag : script.extraFlags)
        line += QLatin1Char(' ') + flag;
    return line + QLatin1String(" 2>&1\n");
}

} // namespace

QString mingwScriptText(const MinGwScript &script)
{
    // Placeholders one by one: a path may hold "%2".
    QString text = QLatin1String(scriptHead);
    text.replace(QLatin1String("\"PATH=%1;"),
                 QLatin1String("\"PATH=") + quotable(script.binFolder) + QLatin1Char(';'));
    text.replace(QLatin1String("at: %2"), QLatin1String("at: ") + echoable(script.compiler));
    text.replace(QLatin1String("exist \"%2\""), QLatin1String("exist ") + quoted(script.compiler));
    text.replace(QLatin1String("directory: %3"),
                 QLatin1String("directory: ") + echoable(script.folder));
    text.replace(QLatin1String("cd /d \"%3\""), QLatin1String("cd /d ") + quoted(script.folder));
    if (!script.resourceScript.isEmpty()) {
        text += QString::fromLatin1(resourceStep)
                    .arg(quotable(script.resourceCompiler), quotable(script.resourceScript),
                         quotable(script.resourceObject));
    }
    text += QLatin1String("echo [G++] Starting compilation...\n");
    text += compileLine(script);
    QString tail = QLatin1String(scriptTail);
    return text + tail.replace(QLatin1String("exist \"%1\""),
                               QLatin1String("exist ") + quoted(script.output));
}

QStringList mingwSearchFolders(const QString &applicationFolder, const QStringList &pathFolders)
{
    QStringList folders;
    for (const char *inside : {"/compiler/mingw64/bin", "/compiler/mingw32/bin",
                               "/../compiler/mingw64/bin", "/../compiler/mingw32/bin"})
        folders << applicationFolder + QLatin1String(inside);
    for (const char *folder : {"C:/Qt/Tools/mingw810_64/bin", "C:/Qt/Tools/mingw810_32/bin",
                               "C:/Qt/Tools/mingw730_64/bin", "C:/Qt/Tools/mingw730_32/bin",
                               "C:/Qt/Tools/mingw530_32/bin", "C:/Qt/5.15.2/mingw81_64/bin",
                               "C:/Qt/5.15.2/mingw81_32/bin", "C:/MinGW/bin", "C:/mingw64/bin",
                               "C:/mingw32/bin", "C:/msys64/mingw64/bin", "C:/msys64/mingw32/bin"})
        folders << QLatin1String(folder);
    return folders + pathFolders;
}

QString findMinGw(const QStringList &folders,
                  const std::function<bool(const QString &folder)> &holdsCompiler)
{
    for (const QString &folder : folders) {
        if (!folder.isEmpty() && holdsCompiler(folder))
            return folder;
    }
    return QString();
}
