// The words behind value_type.h, read from ":/frontend/value_types.json".
#include "frontend/value_type.h"

#include "catalog/json_table.h"

#include <QHash>
#include <QJsonObject>

namespace {

// C++ type texts and type words to the ten words that the types go by.
QHash<QString, QString> readWords()
{
    QHash<QString, QString> words;
    const QJsonObject rows = jsonTable(QStringLiteral(":/frontend/value_types.json")).object();
    for (auto row = rows.begin(); row != rows.end(); ++row)
        words.insert(row.key(), row.value().toString());
    return words;
}

} // namespace

ValueType valueTypeOf(const QString &typeText)
{
    static const QHash<QString, ValueType> types{
        {QStringLiteral("整数"), ValueType::Int},
        {QStringLiteral("小数"), ValueType::Double},
        {QStringLiteral("文本"), ValueType::Text},
        {QStringLiteral("逻辑"), ValueType::Bool},
        {QStringLiteral("数组"), ValueType::Array},
        {QStringLiteral("二维数组"), ValueType::Array2D},
        {QStringLiteral("三维数组"), ValueType::Array3D},
        {QStringLiteral("字节集"), ValueType::Bytes},
        {QStringLiteral("通用"), ValueType::Any},
        {QStringLiteral("空"), ValueType::Void},
    };
    static const QHash<QString, QString> words = readWords();
    return types.value(words.value(typeText), ValueType::Unknown);
}

QString wordOf(ValueType type)
{
    switch (type) {
    case ValueType::Int:
        return QStringLiteral("整数");
    case ValueType::Double:
        return QStringLiteral("小数");
    case ValueType::Text:
        return QStringLiteral("文本");
    case ValueType::Bool:
        return QStringLiteral("逻辑");
    case ValueType::Array:
        return QStringLiteral("数组");
    case ValueType::Array2D:
        return QStringLiteral("二维数组");
    case ValueType::Array3D:
        return QStringLiteral("三维数组");
    case ValueType::Bytes:
        return QStringLiteral("字节集");
    case ValueType::Any:
        return QStringLiteral("通用");
    case ValueType::Handle:
        return QStringLiteral("句柄");
    case ValueType::Void:
        return QStringLiteral("空");
    case ValueType::Unknown:
    case ValueType::Object:
        break;
    }
    return QString();
}
