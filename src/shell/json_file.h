// Small files of JSON that VorelDesk keeps for itself.
#pragma once

#include <QJsonObject>
#include <QString>

namespace JsonFile {

// Empty for a file that is missing, too large, or no JSON object.
QJsonObject read(const QString &path);

// Makes the folder too. The file is written as a whole, so that a failure leaves the old one; one
// that `read` cannot make out is kept as "<file>.bak".
[[nodiscard]] bool write(const QString &path, const QJsonObject &object);

} // namespace JsonFile
