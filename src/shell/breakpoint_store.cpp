#include "shell/breakpoint_store.h"

#include "shell/json_file.h"
#include "shell/user_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>

namespace {

const QLatin1String breakpointsKey("breakpoints");

// One name for each file, whichever way it was reached.
QString canonical(const QString &path)
{
    const QFileInfo info(path);
    const QString found = info.canonicalFilePath();
    return found.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : found;
}

QList<int> sorted(const QSet<int> &lines)
{
    QList<int> list = lines.values();
    std::sort(list.begin(), list.end());
    return list;
}

} // namespace

BreakpointStore::BreakpointStore(const QString &dataFolder, QObject *parent)
    : QObject(parent), m_dataFolder(dataFolder)
{
    m_folders.insert(QString(), read(QString()));
}

QString BreakpointStore::defaultFolder()
{
    return userDataFolder();
}

QString BreakpointStore::projectFile(const QString &projectFolder)
{
    return projectFolder + QStringLiteral("/.voreldesk/user.json");
}

QString BreakpointStore::storeFileOf(const QString &folder) const
{
    return folder.isEmpty() ? m_dataFolder + QStringLiteral("/breakpoints.json")
                            : projectFile(folder);
}

void BreakpointStore::openProject(const QString &projectFolder)
{
    const QString folder = canonical(projectFolder);
    m_folders.insert(folder, read(folder));
}

void BreakpointStore::closeProject(const QString &projectFolder)
{
    m_folders.remove(canonical(projectFolder));
}

// The innermost open project; empty: none.
QString BreakpointStore::folderOf(const QString &file) const
{
    QString innermost;
    for (auto it = m_folders.begin(); it != m_folders.end(); ++it) {
        if (it.key().size() > innermost.size() && file.startsWith(it.key() + QLatin1Char('/')))
            innermost = it.key();
    }
    return innermost;
}

BreakpointStore::Lines BreakpointStore::read(const QString &folder) const
{
    const QJsonObject files = JsonFile::read(storeFileOf(folder))[breakpointsKey].toObject();
    Lines lines;
    for (auto file = files.begin(); file != files.end(); ++file) {
        // A name must not lead out of the project.
        const bool isInside = QDir::isRelativePath(file.key()) &&
                              !QDir::cleanPath(file.key()).startsWith(QLatin1String(".."));
        if (isInside == folder.isEmpty())
            continue;
        const QJsonArray array = file.value().toArray();
        for (const QJsonValue &line : array) {
            if (line.toInt() > 0)
                lines[file.key()].insert(line.toInt());
        }
    }
    return lines;
}

// What else the file holds stays.
bool BreakpointStore::write(const QString &folder) const
{
    const QString path = storeFileOf(folder);
    QJsonObject object = JsonFile::read(path);
    QJsonObject files;
    const Lines lines = m_folders.value(folder);
    for (auto file = lines.begin(); file != lines.end(); ++file) {
        QJsonArray array;
        for (const int line : sorted(file.value()))
            array.append(line);
        files.insert(file.key(), array);
    }
    object.remove(breakpointsKey);
    if (!files.isEmpty())
        object.insert(breakpointsKey, files);
    const QString ignored = QFileInfo(path).path() + QStringLiteral("/.gitignore");
    if (object.isEmpty()) {
        const bool isGone = !QFile::exists(path) || QFile::remove(path);
        if (!folder.isEmpty()) {
            QFile::remove(ignored);
            QDir().rmdir(QFileInfo(path).path()); // only when nothing is in it
        }
        return isGone;
    }
    if (!JsonFile::write(path, object))
        return false;
    QFile ignore(ignored);
    if (!folder.isEmpty() && !ignore.exists() && ignore.open(QIODevice::WriteOnly))
        ignore.write("*\n");
    return true;
}

QSet<int> BreakpointStore::breakpoints(const QString &file) const
{
    const QString path = canonical(file);
    const QString folder = folderOf(path);
    return m_folders.value(folder).value(folder.isEmpty() ? path
                                                          : QDir(folder).relativeFilePath(path));
}

void BreakpointStore::setBreakpoints(const QString &file, const QSet<int> &lines)
{
    if (breakpoints(file) == lines)
        return;
    const QString path = canonical(file);
    const QString folder = folderOf(path);
    const QString name = folder.isEmpty() ? path : QDir(folder).relativeFilePath(path);
    if (lines.isEmpty())
        m_folders[folder].remove(name);
    else
        m_folders[folder].insert(name, lines);
    if (!write(folder)) {
        emit writeFailed(QStringLiteral("断点无法保存到：%1")
                             .arg(QDir::toNativeSeparators(storeFileOf(folder))));
    }
}

CompilerDebugBreakpointsMap BreakpointStore::all() const
{
    CompilerDebugBreakpointsMap map;
    for (auto folder = m_folders.begin(); folder != m_folders.end(); ++folder) {
        for (auto file = folder->begin(); file != folder->end(); ++file)
            map.insert(folder.key().isEmpty() ? file.key()
                                              : folder.key() + QLatin1Char('/') + file.key(),
                       sorted(file.value()));
    }
    return map;
}

CompilerDebugBreakpointsMap BreakpointStore::all(const QString &projectFolder) const
{
    const QString folder = canonical(projectFolder);
    CompilerDebugBreakpointsMap map = all();
    for (auto file = map.begin(); file != map.end();)
        file = folderOf(file.key()) == folder ? std::next(file) : map.erase(file);
    return map;
}
