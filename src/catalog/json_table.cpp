#include "catalog/json_table.h"

#include <QFile>

QJsonDocument jsonTable(const QString &path)
{
    QFile file(path);
    QJsonDocument table;
    if (file.open(QIODevice::ReadOnly))
        table = QJsonDocument::fromJson(file.readAll());
    if (table.isNull())
        qCritical("The table %s is missing from the program", qUtf8Printable(path));
    return table;
}
