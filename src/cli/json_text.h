// JSON written piece by piece, in the order that the caller chooses.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

namespace JsonText {

// A text with its quotes, as UTF-8.
QByteArray string(const QString &text);
QByteArray strings(const QStringList &texts);
QByteArray object(const QMap<QString, QString> &values);

} // namespace JsonText
