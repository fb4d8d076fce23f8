#include "shell/session_store.h"

#include "shell/json_file.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QSet>

#include <algorithm>

namespace {

constexpr int maxEntries = 1000; // of files and of projects

QJsonArray written(const QList<int> &lines)
{
    QJsonArray array;
    for (const int line : lines)
        array.append(line);
    return array;
}

QList<int> linesIn(const QJsonValue &value)
{
    QSet<int> lines;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &line : array) {
        if (line.toInt() > 0)
            lines.insert(line.toInt());
    }
    QList<int> sorted = lines.values();
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

QJsonObject written(const SessionFile &file)
{
    return {{QStringLiteral("path"), file.path},
            {QStringLiteral("cursorPosition"), file.cursorPosition},
            {QStringLiteral("firstVisibleLine"), file.firstVisibleLine},
            {QStringLiteral("bookmarks"), written(file.bookmarks)}};
}

SessionFile fileIn(const QJsonObject &object)
{
    SessionFile file;
    file.path = object[QLatin1String("path")].toString();
    file.cursorPosition = std::max(0, object[QLatin1String("cursorPosition")].toInt());
    file.firstVisibleLine = std::max(1, object[QLatin1String("firstVisibleLine")].toInt());
    file.bookmarks = linesIn(object[QLatin1String("bookmarks")]);
    return file;
}

// Notes the path, too.
bool isNew(const QString &path, QSet<QString> &known)
{
    if (!QDir::isAbsolutePath(path) || known.contains(path) || known.size() >= maxEntries)
        return false;
    known.insert(path);
    return true;
}

} // namespace

bool SessionFile::operator==(const SessionFile &other) const
{
    return path == other.path && cursorPosition == other.cursorPosition &&
           firstVisibleLine == other.firstVisibleLine && bookmarks == other.bookmarks;
}

bool Session::operator==(const Session &other) const
{
    return projects == other.projects && activeProject == other.activeProject &&
           files == other.files && activeFile == other.activeFile;
}

QString SessionStore::pathBeside(const QString &settingsFile)
{
    return QFileInfo(settingsFile).path() + QStringLiteral("/session.json");
}

Session SessionStore::load() const
{
    const QJsonObject object = JsonFile::read(m_path);
    Session session;
    QSet<QString> projects, files;
    const QJsonArray projectArray = object[QLatin1String("projects")].toArray();
    for (const QJsonValue &value : projectArray) {
        if (isNew(value.toString(), projects))
            session.projects << value.toString();
    }
    const QJsonArray fileArray = object[QLatin1String("files")].toArray();
    for (const QJsonValue &value : fileArray) {
        const SessionFile file = fileIn(value.toObject());
        if (isNew(file.path, files))
            session.files << file;
    }
    const QString activeProject = object[QLatin1String("activeProject")].toString();
    const QString activeFile = object[QLatin1String("activeFile")].toString();
    if (projects.contains(activeProject))
        session.activeProject = activeProject;
    if (files.contains(activeFile))
        session.activeFile = activeFile;
    return session;
}

bool SessionStore::save(const Session &session) const
{
    QJsonArray files;
    for (const SessionFile &file : session.files)
        files.append(written(file));
    return JsonFile::write(
        m_path, {{QStringLiteral("projects"), QJsonArray::fromStringList(session.projects)},
                 {QStringLiteral("activeProject"), session.activeProject},
                 {QStringLiteral("files"), files},
                 {QStringLiteral("activeFile"), session.activeFile}});
}
