#include "driver/runtime_cache.h"

#include "driver/build_messages.h"
#include "driver/gcc_command.h"
#include "driver/tool_process.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMap>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

namespace {

using BuildMessage::text;

const QString kHeader = QStringLiteral("vl_runtime.h");
const QString kPrecompiled = QStringLiteral("vl_runtime.h.gch");

QString hashOf(const QStringList &texts)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &part : texts) {
        hash.addData(part.toUtf8());
        hash.addData("\0", 1);
    }
    return QString::fromLatin1(hash.result().toHex().left(16));
}

// Another compiler under the same name must not meet objects of the old one.
QString identityOf(const QString &program)
{
    const QFileInfo info(QFileInfo(program).canonicalFilePath());
    return info.filePath() + QLatin1Char('|') + QString::number(info.size()) + QLatin1Char('|') +
           QString::number(info.lastModified().toMSecsSinceEpoch());
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

// A stamp beside a file tells its size: a file without one, or of another size, is not whole.
QString stampOf(const QString &path)
{
    return path + QLatin1String(".ok");
}

bool isWhole(const QString &path)
{
    QFile stamp(stampOf(path));
    const QFileInfo info(path);
    return info.isFile() && stamp.open(QIODevice::ReadOnly) &&
           stamp.readAll() == QByteArray::number(info.size());
}

bool stampFile(const QString &path)
{
    return writeFile(stampOf(path), QByteArray::number(QFileInfo(path).size()));
}

bool moveInto(const QString &from, const QString &to)
{
    QFile::remove(to);
    return QFile::rename(from, to) && stampFile(to);
}

// When a runtime was last used; told by the time of a file, set at most once a day.
void noteUse(const QString &folder)
{
    const QString path = folder + QLatin1String("/used");
    const QFileInfo info(path);
    if (!info.exists() || info.lastModified().daysTo(QDateTime::currentDateTime()) > 0)
        writeFile(path, QByteArray());
}

// A precompiled header is large: of the runtimes of older versions only the last used ones stay.
void dropOldRuntimes(const QString &root)
{
    constexpr int kept = 4;
    QMap<QDateTime, QString> byUse;
    const QFileInfoList folders = QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        const QFileInfo used(folder.filePath() + QLatin1String("/used"));
        if (used.exists())
            byUse.insert(used.lastModified(), folder.filePath());
    }
    while (byUse.size() > kept)
        QDir(byUse.take(byUse.firstKey())).removeRecursively();
}

// Work folders of processes that were killed; called with the lock held, so nobody is in them.
void dropAbandonedWork(const QString &folder)
{
    const QFileInfoList folders =
        QDir(folder).entryInfoList({QStringLiteral("work-*")}, QDir::Dirs);
    for (const QFileInfo &abandoned : folders)
        QDir(abandoned.filePath()).removeRecursively();
}

// One pass over the cache for one program; holds the lock while it makes something.
class Preparation
{
public:
    Preparation(const QString &root, const ProgramText &program, const GccTools &tools,
                bool isDebug, BuildListener &listener);

    PreparedRuntime run();

private:
    struct Object
    {
        QString name;
        QString source;
        QString path;
    };

    bool isReady() const;
    PreparedRuntime ready() const;
    PreparedRuntime failed(const QString &error) const;
    bool lock(QLockFile &lock);
    bool makeHeader(const QString &workFolder, const QString &folder, bool isDebug);
    bool makeObjects(const QString &workFolder);
    bool makeArchive(const QString &workFolder);
    bool runStep(const QList<ToolCommand> &commands, const std::function<void(int)> &finished);
    void announce(const QString &message) { m_listener.progress(80, message); }

    const GccTools &m_tools;
    BuildListener &m_listener;
    QString m_headerText;
    QString m_folder;        // of this runtime's declarations and compiler
    QString m_includeFolder; // one for each level of optimisation
    QString m_archive;
    QList<Object> m_objects;
    QString m_error;
    bool m_isDebug;
    bool m_cancelled = false;
};

Preparation::Preparation(const QString &root, const ProgramText &program, const GccTools &tools,
                         bool isDebug, BuildListener &listener)
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
    const QString declarations = hashOf({m_headerText, identityOf(tools.compiler), tools.prefix,
                                         GccCommand::runtimeFlags().join(QLatin1Char(' '))});
    m_folder = root + QLatin1Char('/') + declarations;
    m_includeFolder = m_folder + (isDebug ? QLatin1String("/debug") : QLatin1String("/release"));
    QStringList objectNames;
    for (Object &object : m_objects) {
        object.path =
            QStringLiteral("%1/%2-%3.o").arg(m_folder, object.name, hashOf({object.source}));
        objectNames << object.path;
    }
    m_archive = QStringLiteral("%1/libvlruntime-%2.a").arg(m_folder, hashOf(objectNames));
}

bool Preparation::isReady() const
{
    return isWhole(m_archive) && isWhole(m_includeFolder + QLatin1Char('/') + kHeader) &&
           isWhole(m_includeFolder + QLatin1Char('/') + kPrecompiled);
}

PreparedRuntime Preparation::ready() const
{
    noteUse(m_folder);
    return {PreparedRuntime::State::Ready, m_includeFolder, kHeader, m_archive, QString()};
}

PreparedRuntime Preparation::failed(const QString &error) const
{
    return {m_cancelled ? PreparedRuntime::State::Cancelled : PreparedRuntime::State::Unusable,
            QString(), QString(), QString(), error};
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
    for (int i = 0; i < runs.size(); ++i) {
        const ToolRun &run = runs.at(i);
        if (run.succeeded() || run.end == ToolRun::End::Cancelled)
            continue;
        const QString firstLine = run.output.section(QLatin1Char('\n'), 0, 0).left(200);
        m_error = run.end == ToolRun::End::NotStarted ? run.error : firstLine;
        m_listener.output(run.output);
        return false;
    }
    return !m_cancelled;
}

bool Preparation::makeHeader(const QString &workFolder, const QString &folder, bool isDebug)
{
    const QString header = folder + QLatin1Char('/') + kHeader;
    const QString precompiled = folder + QLatin1Char('/') + kPrecompiled;
    if (isWhole(header) && isWhole(precompiled))
        return true;
    announce(text(BuildMessage::preparingHeader));
    if (!QDir().mkpath(folder) || !writeFile(header, m_headerText.toUtf8()) || !stampFile(header))
        return false;
    QFile::remove(stampOf(precompiled));
    const QString made = workFolder + QLatin1Char('/') + kPrecompiled;
    const QStringList arguments = GccCommand::compileFlags(isDebug) +
                                  QStringList{QStringLiteral("-x"), QStringLiteral("c++-header"),
                                              header, QStringLiteral("-o"), made};
    return runStep({{m_tools.compiler, arguments, workFolder}}, {}) && moveInto(made, precompiled);
}

bool Preparation::makeObjects(const QString &workFolder)
{
    QList<ToolCommand> commands;
    QList<Object> missing;
    for (const Object &object : qAsConst(m_objects)) {
        if (isWhole(object.path))
            continue;
        const QString source = QStringLiteral("%1/%2.cpp").arg(workFolder, object.name);
        if (!writeFile(source,
                       (QStringLiteral("#include \"%1\"\n").arg(kHeader) + object.source).toUtf8()))
            return false;
        commands << ToolCommand{m_tools.compiler,
                                GccCommand::runtimeFlags() +
                                    QStringList{QStringLiteral("-I"),
                                                m_folder + QLatin1String("/release"),
                                                QStringLiteral("-c"), source, QStringLiteral("-o"),
                                                source + QLatin1String(".o")},
                                workFolder};
        missing << object;
    }
    if (missing.isEmpty())
        return true;
    int done = 0;
    const auto tell = [&] {
        announce(text(BuildMessage::preparingRuntime).arg(done).arg(missing.size()));
    };
    tell();
    const bool made = runStep(commands, [&](int index) {
        ++done;
        const Object &object = missing.at(index);
        moveInto(QStringLiteral("%1/%2.cpp.o").arg(workFolder, object.name), object.path);
        tell();
    });
    return made;
}

bool Preparation::makeArchive(const QString &workFolder)
{
    if (isWhole(m_archive))
        return true;
    const QString made = workFolder + QLatin1String("/made.a");
    QStringList arguments{QStringLiteral("crs"), made};
    for (const Object &object : qAsConst(m_objects))
        arguments << object.path;
    return runStep({{m_tools.archiver, arguments, workFolder}}, {}) && moveInto(made, m_archive);
}

PreparedRuntime Preparation::run()
{
    if (isReady())
        return ready();
    if (!QDir().mkpath(m_folder))
        return failed(QDir::toNativeSeparators(m_folder));
    const QString lockPath = m_folder + QLatin1String("/lock");
    QLockFile lockFile(lockPath);
    if (!lock(lockFile))
        return failed(QDir::toNativeSeparators(lockPath));
    if (isReady())
        return ready();
    dropAbandonedWork(m_folder);
    const QTemporaryDir work(m_folder + QLatin1String("/work-XXXXXX"));
    if (!work.isValid())
        return failed(work.errorString());
    const QString releaseFolder = m_folder + QLatin1String("/release");
    // The objects are compiled through the header of the release form, whoever links them.
    const bool made = (isWhole(m_archive) || makeHeader(work.path(), releaseFolder, false)) &&
                      makeObjects(work.path()) && makeArchive(work.path()) &&
                      makeHeader(work.path(), m_includeFolder, m_isDebug);
    if (!made || !isReady())
        return failed(m_error);
    dropOldRuntimes(QFileInfo(m_folder).path());
    return ready();
}

} // namespace

RuntimeCache::RuntimeCache(const QString &folder) : m_folder(folder) {}

QString RuntimeCache::defaultFolder()
{
    const QString chosen = qEnvironmentVariable("VOREL_CACHE_DIR");
    if (!chosen.isEmpty())
        return QDir(chosen).absoluteFilePath(QStringLiteral("runtime"));
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QLatin1String("/voreldesk/runtime");
}

PreparedRuntime RuntimeCache::prepare(const ProgramText &program, const GccTools &tools,
                                      bool isDebug, BuildListener &listener) const
{
    return Preparation(m_folder, program, tools, isDebug, listener).run();
}
