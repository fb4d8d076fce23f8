#include "shell/json_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

namespace {

constexpr qint64 maxBytes = qint64(8) << 20;

QJsonDocument documentIn(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > maxBytes || !file.open(QIODevice::ReadOnly))
        return QJsonDocument();
    return QJsonDocument::fromJson(file.readAll());
}

} // namespace

QJsonObject JsonFile::read(const QString &path)
{
    return documentIn(path).object();
}

bool JsonFile::write(const QString &path, const QJsonObject &object)
{
    if (QFileInfo(path).isFile() && !documentIn(path).isObject()) {
        const QString backup = path + QStringLiteral(".bak");
        QFile::remove(backup);
        if (!QFile::rename(path, backup))
            return false;
    }
    QSaveFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(QJsonDocument(object).toJson()) >= 0 && file.commit();
}
