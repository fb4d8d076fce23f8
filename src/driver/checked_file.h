// Files of a cache that are told whole from damaged ones before they are used.
#pragma once

#include <QByteArray>
#include <QString>

// Beside each file stands a stamp with its size, the hash of its content and a note of the
// caller's. A file without a stamp was never finished.
namespace CheckedFile {

bool write(const QString &path, const QByteArray &bytes);
// Puts the finished file `from` in place. Both must lie on one volume.
bool moveInto(const QString &from, const QString &to, const QString &note = QString());

// Reads the content only when the file was touched after it was stamped.
bool isWhole(const QString &path, const QString &note = QString());
// Reads the content. What is damaged loses its stamp, so that it is made anew; false then.
bool verify(const QString &path);

} // namespace CheckedFile
