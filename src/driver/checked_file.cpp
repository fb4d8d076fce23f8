#include "driver/checked_file.h"

#include "driver/output_files.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QList>

namespace CheckedFile {

namespace {

QString stampPath(const QString &path)
{
    return path + QLatin1String(".ok");
}

// Empty when the file cannot be read. The hash guards against faults, not against enemies.
QByteArray contentHash(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result().toHex()
                                                                 : QByteArray();
}

bool stamp(const QString &path, const QString &note)
{
    const QByteArray hash = contentHash(path);
    return !hash.isEmpty() &&
           OutputFiles::write(stampPath(path), QByteArray::number(QFileInfo(path).size()) + '\n' +
                                                   hash + '\n' + note.toUtf8());
}

// Size, hash and note; empty without a stamp.
QList<QByteArray> readStamp(const QString &path)
{
    QFile file(stampPath(path));
    const QList<QByteArray> lines =
        file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
    return lines.size() == 3 ? lines : QList<QByteArray>();
}

} // namespace

bool write(const QString &path, const QByteArray &bytes)
{
    QFile::remove(stampPath(path));
    return OutputFiles::write(path, bytes) && stamp(path, QString());
}

bool moveInto(const QString &from, const QString &to, const QString &note)
{
    QFile::remove(stampPath(to));
    return OutputFiles::replace(from, to) && stamp(to, note);
}

bool isWhole(const QString &path, const QString &note)
{
    const QList<QByteArray> told = readStamp(path);
    const QFileInfo info(path);
    if (told.isEmpty() || told.at(0) != QByteArray::number(info.size()) ||
        told.at(2) != note.toUtf8())
        return false;
    const bool touched = info.lastModified() > QFileInfo(stampPath(path)).lastModified();
    return !touched || told.at(1) == contentHash(path);
}

bool verify(const QString &path)
{
    const QList<QByteArray> told = readStamp(path);
    if (!told.isEmpty() && told.at(1) == contentHash(path))
        return true;
    QFile::remove(stampPath(path));
    return false;
}

} // namespace CheckedFile
