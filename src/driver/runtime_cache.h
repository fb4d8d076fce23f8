// RuntimeCache: the emitted runtime compiled once, so that a build compiles the user's part alone.
#pragma once

#include "codegen/program_text.h"
#include "driver/build_listener.h"
#include "driver/cpp_tools.h"

#include <QString>
#include <QStringList>

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
    QString key;           // another one whenever units must be compiled again
    QString includeFolder; // holds the header and its precompiled form
    QString header;        // file name for `#include`
    QString precompiled;   // full path
    QString archive;       // full path of the definitions
    QString error;         // why it is unusable
};

// Kept under one folder, for every set of tools and text of the runtime apart. Several processes
// may use it at the same time; what a crash leaves behind is made anew. Runtimes that came with
// VorelDesk are used from where they lie.
class RuntimeCache
{
public:
    explicit RuntimeCache(const QString &folder = defaultFolder(),
                          const QString &shippedFolder = defaultShippedFolder());

    // $VOREL_CACHE_DIR, else a folder among the user's caches.
    static QString defaultFolder();
    // $VOREL_RUNTIME_DIR, else a folder of the installation; it need not exist.
    static QString defaultShippedFolder();

    // Makes what is missing. The first time takes most of a minute.
    PreparedRuntime prepare(const ProgramText &program, const CppTools &tools, bool isDebug,
                            BuildListener &listener) const;
    // Reads everything that `runtime` names. False when something is damaged; `prepare` then makes
    // it anew.
    bool verify(const PreparedRuntime &runtime) const;

private:
    QString m_folder;
    QString m_shippedFolder;
};
