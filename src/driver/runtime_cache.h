// RuntimeCache: the emitted runtime compiled once, so that a build compiles the user's part alone.
#pragma once

#include "codegen/program_text.h"
#include "driver/build_listener.h"

#include <QString>
#include <QStringList>

// The tools of one platform, by full path.
struct GccTools
{
    QString compiler;
    QString archiver;
    QString resourceCompiler;
    QString prefix; // "x86_64-w64-mingw32"
};

// What a build takes from the cache.
struct PreparedRuntime
{
    enum class State
    {
        Ready,
        Unusable,
        Cancelled
    };

    State state = State::Unusable;
    QString includeFolder; // holds the header and its precompiled form
    QString header;        // file name for `#include`
    QString archive;       // full path of the definitions
    QString error;         // why it is unusable
};

// Kept under one folder, for every compiler, platform and text of the runtime apart. Several
// processes may use it at the same time; what a crash leaves behind is made anew.
class RuntimeCache
{
public:
    explicit RuntimeCache(const QString &folder = defaultFolder());

    // $VOREL_CACHE_DIR, else a folder among the user's caches.
    static QString defaultFolder();

    // Makes what is missing. The first time takes most of a minute.
    PreparedRuntime prepare(const ProgramText &program, const GccTools &tools, bool isDebug,
                            BuildListener &listener) const;

private:
    QString m_folder;
};
