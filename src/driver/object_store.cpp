#include "driver/object_store.h"

#include "driver/build_hashes.h"
#include "driver/output_files.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const QString kFolder = QStringLiteral(".obj_cache");
const QString kUnitPrefix = QStringLiteral("unit_");
const QString kUnfinished = QStringLiteral(".part");
const QString kLinkNote = QStringLiteral("/.obj_cache/link.hash");

QByteArray linkNote(const QString &executable, const QStringList &inputs)
{
    const QFileInfo info(executable);
    const QStringList all =
        inputs + QStringList{QString::number(info.size()),
                             QString::number(info.lastModified().toMSecsSinceEpoch())};
    return BuildHash::digestOfTexts(all).toLatin1();
}

} // namespace

ObjectStore::ObjectStore(const QString &buildFolder) : m_buildFolder(buildFolder)
{
    QDir(buildFolder).mkdir(kFolder);
}

QString ObjectStore::objectName(const QString &unit, const QStringList &inputs) const
{
    return QStringLiteral("%1/%2%3-%4.o")
        .arg(kFolder, kUnitPrefix, unit, BuildHash::digestOfTexts(inputs));
}

bool ObjectStore::has(const QString &objectName) const
{
    return QFileInfo(m_buildFolder + QLatin1Char('/') + objectName).size() > 0;
}

QString ObjectStore::unfinished(const QString &objectName)
{
    return objectName + kUnfinished;
}

bool ObjectStore::finish(const QString &objectName)
{
    const QString path = m_buildFolder + QLatin1Char('/') + objectName;
    return OutputFiles::replace(unfinished(path), path);
}

bool ObjectStore::isLinked(const QString &executable, const QStringList &inputs) const
{
    QFile file(m_buildFolder + kLinkNote);
    return QFileInfo(executable).isFile() && file.open(QIODevice::ReadOnly) &&
           file.readAll() == linkNote(executable, inputs);
}

void ObjectStore::noteLinked(const QString &executable, const QStringList &inputs) const
{
    OutputFiles::write(m_buildFolder + kLinkNote, linkNote(executable, inputs));
}

QStringList ObjectStore::unitFiles() const
{
    QStringList names;
    const QStringList found = QDir(m_buildFolder + QLatin1Char('/') + kFolder)
                                  .entryList({kUnitPrefix + QLatin1Char('*')}, QDir::Files);
    for (const QString &name : found)
        names << kFolder + QLatin1Char('/') + name;
    return names;
}

void ObjectStore::keepOnly(const QStringList &objectNames) const
{
    const QStringList files = unitFiles();
    for (const QString &name : files) {
        if (!objectNames.contains(name))
            QFile::remove(m_buildFolder + QLatin1Char('/') + name);
    }
}

void ObjectStore::dropUnfinished() const
{
    const QStringList files = unitFiles();
    for (const QString &name : files) {
        if (name.endsWith(kUnfinished))
            QFile::remove(m_buildFolder + QLatin1Char('/') + name);
    }
}
