#include "driver/runtime_cache.h"

#include "driver/build_hashes.h"
#include "driver/build_messages.h"
#include "driver/checked_file.h"
#include "driver/output_files.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMap>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

namespace {

using BuildMessage::text;

const QString kHeader = QStringLiteral("vl_runtime.h");
// In a folder of the user's cache: the shipped runtime of that name is damaged.
const QString kDistrusted = QStringLiteral("/shipped-is-damaged");

// The runtimes of older versions and other tools go, those unused for longest first, when all
// together take more than this.
constexpr qint64 maxCacheBytes = qint64(768) << 20;

// Long enough to tell all that ever lie together apart, short enough for a file name.
QString hashOf(const QStringList &texts)
{
    return BuildHash::digestOfTexts(texts).left(16);
}

// When a runtime was last used; told by the time of a file, set at most once a day.
void noteUse(const QString &folder)
{
    const QString path = folder + QLatin1String("/used");
    const QFileInfo info(path);
    if (!info.exists() || info.lastModified().daysTo(QDateTime::currentDateTime()) > 0)
        OutputFiles::write(path, QByteArray());
}

qint64 bytesUnder(const QString &folder)
{
    qint64 bytes = 0;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        bytes += files.fileInfo().size();
    }
    return bytes;
}

void dropOldRuntimes(const QString &root, const QString &kept)
{
    QMultiMap<QDateTime, QString> byUse;
    qint64 bytes = 0;
    const QFileInfoList folders = QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        bytes += bytesUnder(folder.filePath());
        const QFileInfo used(folder.filePath() + QLatin1String("/used"));
        if (used.exists() && folder.fileName() != kept)
            byUse.insert(used.lastModified(), folder.filePath());
    }
    for (auto oldest = byUse.begin(); oldest != byUse.end() && bytes > maxCacheBytes; ++oldest) {
        bytes -= bytesUnder(*oldest);
        QDir(*oldest).removeRecursively();
    }
}

// Work folders of processes that were killed; called with the lock held, so nobody is in them.
void dropAbandonedWork(const QString &folder)
{
    const QFileInfoList folders =
        QDir(folder).entryInfoList({QStringLiteral("work-*")}, QDir::Dirs);
    for (const QFileInfo &abandoned : folders)
        QDir(abandoned.filePath()).removeRecursively();
}

// The files of one runtime in one folder.
struct RuntimeFiles
{
    QString include(bool isDebug) const
    {
        return folder + (isDebug ? QLatin1String("/debug") : QLatin1String("/release"));
    }
    QString header(bool isDebug) const { return include(isDebug) + QLatin1Char('/') + kHeader; }
    QString precompiled(bool isDebug) const { return header(isDebug) + suffix; }
    QString archive() const { return folder + QLatin1Char('/') + archiveName; }
    // What a precompiled header must be stamped with.
    QString place(bool isDebug) const { return knowsPlace ? header(isDebug) : QString(); }
    bool hasHeader(bool isDebug) const
    {
        return CheckedFile::isWhole(header(isDebug)) &&
               CheckedFile::isWhole(precompiled(isDebug), place(isDebug));
    }
    bool hasArchive() const { return CheckedFile::isWhole(archive()); }

    QString folder;
    QString suffix;
    QString archiveName;
    bool knowsPlace = false; // Clang's form tells where its header lies and must not be moved
};

// One pass over the cache for one program; holds the lock while it makes something.
class Preparation
{
public:
    Preparation(const QString &root, const QString &shippedRoot, const ProgramText &program,
                const CppTools &tools, bool isDebug, BuildListener &listener);

    PreparedRuntime run();

private:
    struct Object
    {
        QString name;
        QString source;
        QString path;
    };

    bool isReady();
    PreparedRuntime ready() const;
    PreparedRuntime failed(const QString &error) const;
    bool lock(QLockFile &lock);
    bool makeAll();
    bool makeHeader(const QString &workFolder, bool isDebug);
    bool makeObjects(const QString &workFolder);
    bool makeArchive(const QString &workFolder);
    bool runStep(const QList<ToolCommand> &commands, const std::function<void(int)> &finished);
    void announce(const QString &message) { m_listener.progress(80, message); }

    const CppTools &m_tools;
    BuildListener &m_listener;
    QString m_headerText;
    QString m_name; // of the folder: tells the tools and the declarations
    RuntimeFiles m_own;
    RuntimeFiles m_shipped;
    // Where each part is taken from; null: it is still to be made.
    const RuntimeFiles *m_headerFrom = nullptr;
    const RuntimeFiles *m_archiveFrom = nullptr;
    QList<Object> m_objects;
    QString m_error;
    bool m_isDebug;
    bool m_cancelled = false;
};

Preparation::Preparation(const QString &root, const QString &shippedRoot,
                         const ProgramText &program, const CppTools &tools, bool isDebug,
                         BuildListener &listener)
    : m_tools(tools), m_listener(listener), m_isDebug(isDebug)
{
    m_headerText = QStringLiteral("#ifndef VL_RUNTIME_H\n#define VL_RUNTIME_H\n");
    for (const ProgramText::Part &part : program.parts()) {
        if (part.kind == ProgramText::PartKind::RuntimeHeader)
            m_headerText += part.text;
        else if (part.kind == ProgramText::PartKind::RuntimeSource)
            m_objects << Object{part.name, part.text, QString()};
    }
    m_headerText += QStringLiteral("\n#endif\n");
    const QString flags = (tools.runtimeFlags() + tools.compileFlags(true)).join(QLatin1Char(' '));
    m_name = tools.name() + QLatin1Char('-') + hashOf({m_headerText, tools.identity(), flags});
    m_own.folder = root + QLatin1Char('/') + m_name;
    m_own.suffix = tools.precompiledSuffix();
    m_own.knowsPlace = tools.family() == CppTools::Family::Clang;
    QStringList objectNames;
    for (Object &object : m_objects) {
        const QString name = QStringLiteral("%1-%2.o").arg(object.name, hashOf({object.source}));
        object.path = m_own.folder + QLatin1Char('/') + name;
        objectNames << name;
    }
    m_own.archiveName = QStringLiteral("libvlruntime-%1.a").arg(hashOf(objectNames));
    m_shipped = m_own;
    m_shipped.folder = shippedRoot + QLatin1Char('/') + m_name;
}

// Each part that was shipped and serves is taken from there.
bool Preparation::isReady()
{
    const bool trusts = !QFileInfo::exists(m_own.folder + kDistrusted);
    m_headerFrom = m_archiveFrom = nullptr;
    for (const RuntimeFiles *files : {&m_shipped, &m_own}) {
        if (files == &m_shipped && !trusts)
            continue;
        if (!m_headerFrom && files->hasHeader(m_isDebug))
            m_headerFrom = files;
        if (!m_archiveFrom && files->hasArchive())
            m_archiveFrom = files;
    }
    return m_headerFrom && m_archiveFrom;
}

PreparedRuntime Preparation::ready() const
{
    PreparedRuntime runtime;
    runtime.state = PreparedRuntime::State::Ready;
    runtime.key = m_name;
    runtime.includeFolder = m_headerFrom->include(m_isDebug);
    runtime.header = kHeader;
    runtime.precompiled = m_headerFrom->precompiled(m_isDebug);
    runtime.archive = m_archiveFrom->archive();
    return runtime;
}

PreparedRuntime Preparation::failed(const QString &error) const
{
    PreparedRuntime runtime;
    runtime.state =
        m_cancelled ? PreparedRuntime::State::Cancelled : PreparedRuntime::State::Unusable;
    runtime.error = error.isEmpty() ? QDir::toNativeSeparators(m_own.folder) : error;
    return runtime;
}

// Whoever else is at it makes what is wanted here too: waiting is right, however long it takes.
bool Preparation::lock(QLockFile &lock)
{
    lock.setStaleLockTime(0);
    bool told = false;
    while (!lock.tryLock(100)) {
        if (lock.error() != QLockFile::LockFailedError)
            return false;
        if (m_listener.isCancelled()) {
            m_cancelled = true;
            return false;
        }
        if (!told)
            announce(text(BuildMessage::busyCache));
        told = true;
    }
    return true;
}

bool Preparation::runStep(const QList<ToolCommand> &commands,
                          const std::function<void(int)> &finished)
{
    ToolWatch watch;
    watch.goOn = [this](qint64) { return !m_listener.isCancelled(); };
    watch.finished = finished;
    const QList<ToolRun> runs = runTools(commands, QThread::idealThreadCount(), watch);
    m_cancelled = m_listener.isCancelled();
    for (const ToolRun &run : runs) {
        if (run.succeeded() || run.end == ToolRun::End::Cancelled)
            continue;
        const QString firstLine = run.output.section(QLatin1Char('\n'), 0, 0).left(200);
        m_error = run.end == ToolRun::End::NotStarted ? run.error : firstLine;
        m_listener.output(run.output);
        return false;
    }
    return !m_cancelled;
}

bool Preparation::makeHeader(const QString &workFolder, bool isDebug)
{
    if (m_own.hasHeader(isDebug))
        return true;
    announce(text(BuildMessage::preparingHeader));
    const QString header = m_own.header(isDebug);
    if (!QDir().mkpath(m_own.include(isDebug)) ||
        !CheckedFile::write(header, m_headerText.toUtf8()))
        return false;
    const QString made = workFolder + QLatin1Char('/') + kHeader + m_own.suffix;
    const ToolCommand command{m_tools.compiler(), m_tools.headerArguments(header, made, isDebug),
                              workFolder};
    return runStep({command}, {}) &&
           CheckedFile::moveInto(made, m_own.precompiled(isDebug), m_own.place(isDebug));
}

bool Preparation::makeObjects(const QString &workFolder)
{
    QList<ToolCommand> commands;
    QList<Object> missing;
    for (const Object &object : qAsConst(m_objects)) {
        if (CheckedFile::isWhole(object.path))
            continue;
        const QString source = QStringLiteral("%1/%2.cpp").arg(workFolder, object.name);
        const QString include = QStringLiteral("#include \"%1\"\n").arg(kHeader);
        if (!OutputFiles::write(source, (include + object.source).toUtf8()))
            return false;
        commands << ToolCommand{m_tools.compiler(),
                                m_tools.runtimeFlags() +
                                    m_tools.precompiledArguments(m_own.include(false), kHeader) +
                                    QStringList{QStringLiteral("-c"), source, QStringLiteral("-o"),
                                                source + QLatin1String(".o")},
                                workFolder};
        missing << object;
    }
    int done = 0;
    const auto tell = [&] {
        announce(text(BuildMessage::preparingRuntime).arg(done).arg(missing.size()));
    };
    if (!missing.isEmpty())
        tell();
    return runStep(commands, [&](int index) {
        ++done;
        const Object &object = missing.at(index);
        CheckedFile::moveInto(QStringLiteral("%1/%2.cpp.o").arg(workFolder, object.name),
                              object.path);
        tell();
    });
}

bool Preparation::makeArchive(const QString &workFolder)
{
    // The objects are compiled through the header of the release form, whoever links them.
    if (!makeHeader(workFolder, false) || !makeObjects(workFolder))
        return false;
    const QString made = workFolder + QLatin1String("/made.a");
    QStringList arguments{QStringLiteral("crs"), made};
    for (const Object &object : qAsConst(m_objects))
        arguments << object.path;
    return runStep({{m_tools.archiver(), arguments, workFolder}}, {}) &&
           CheckedFile::moveInto(made, m_own.archive());
}

bool Preparation::makeAll()
{
    dropAbandonedWork(m_own.folder);
    const QTemporaryDir work(m_own.folder + QLatin1String("/work-XXXXXX"));
    m_error = work.errorString();
    return work.isValid() && (m_archiveFrom || makeArchive(work.path())) &&
           (m_headerFrom || makeHeader(work.path(), m_isDebug)) && isReady();
}

PreparedRuntime Preparation::run()
{
    if (!isReady()) {
        if (!QDir().mkpath(m_own.folder))
            return failed(QDir::toNativeSeparators(m_own.folder));
        const QString lockPath = m_own.folder + QLatin1String("/lock");
        QLockFile lockFile(lockPath);
        if (!lock(lockFile))
            return failed(QDir::toNativeSeparators(lockPath));
        if (!isReady() && !makeAll())
            return failed(m_error);
        dropOldRuntimes(QFileInfo(m_own.folder).path(), m_name);
    }
    if (m_headerFrom == &m_own || m_archiveFrom == &m_own)
        noteUse(m_own.folder);
    return ready();
}

} // namespace

RuntimeCache::RuntimeCache(const QString &folder, const QString &shippedFolder)
    : m_folder(folder), m_shippedFolder(shippedFolder)
{}

QString RuntimeCache::defaultFolder()
{
    const QString chosen = qEnvironmentVariable("VOREL_CACHE_DIR");
    if (!chosen.isEmpty())
        return QDir(chosen).absoluteFilePath(QStringLiteral("runtime"));
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QLatin1String("/voreldesk/runtime");
}

QString RuntimeCache::defaultShippedFolder()
{
    if (qEnvironmentVariableIsSet("VOREL_RUNTIME_DIR"))
        return QDir(qEnvironmentVariable("VOREL_RUNTIME_DIR")).absolutePath();
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QLatin1String("/../share/voreldesk/runtime"));
}

PreparedRuntime RuntimeCache::prepare(const ProgramText &program, const CppTools &tools,
                                      bool isDebug, BuildListener &listener) const
{
    return Preparation(m_folder, m_shippedFolder, program, tools, isDebug, listener).run();
}

bool RuntimeCache::verify(const PreparedRuntime &runtime) const
{
    bool whole = true;
    for (const QString &file : {runtime.includeFolder + QLatin1Char('/') + runtime.header,
                                runtime.precompiled, runtime.archive})
        whole = CheckedFile::verify(file) && whole;
    const QString shipped = m_shippedFolder + QLatin1Char('/');
    if (!whole &&
        (runtime.archive.startsWith(shipped) || runtime.precompiled.startsWith(shipped))) {
        const QString folder = m_folder + QLatin1Char('/') + runtime.key;
        QDir().mkpath(folder);
        OutputFiles::write(folder + kDistrusted, QByteArray());
    }
    return whole;
}
