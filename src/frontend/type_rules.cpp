// Reading and asking the table behind type_rules.h.
#include "frontend/type_rules.h"

#include "catalog/json_table.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

constexpr struct
{
    TypePair pair;
    const char *key;
} pairKeys[] = {{TypePair::Assign, "assign"},
                {TypePair::Initialize, "initialize"},
                {TypePair::Add, "add"},
                {TypePair::Calculate, "calculate"},
                {TypePair::Compare, "compare"},
                {TypePair::AddTo, "addTo"},
                {TypePair::CalculateWith, "calculateWith"}};

constexpr struct
{
    TypeUse use;
    const char *key;
} useKeys[] = {{TypeUse::Condition, "condition"},
               {TypeUse::Step, "step"},
               {TypeUse::Negate, "negate"},
               {TypeUse::Elements, "elements"}};

int typeNumber(const QString &word)
{
    // A handle is a type of its own here, elsewhere its word stands for an integer.
    return int(word == QStringLiteral("句柄") ? ValueType::Handle : valueTypeOf(word));
}

QSet<int> readTypes(const QJsonValue &value)
{
    QSet<int> types;
    const QJsonArray words = value.toArray();
    for (const QJsonValue &word : words)
        types.insert(typeNumber(word.toString()));
    return types;
}

} // namespace

const TypeRules &TypeRules::instance()
{
    static const TypeRules rules;
    return rules;
}

TypeRules::TypeRules()
{
    const QJsonObject tables = jsonTable(QStringLiteral(":/frontend/type_rules.json")).object();
    for (const auto &key : pairKeys) {
        const QJsonObject rows = tables.value(QLatin1String(key.key)).toObject();
        for (auto row = rows.begin(); row != rows.end(); ++row)
            m_pairs[int(key.pair)].insert(typeNumber(row.key()), readTypes(*row));
    }
    for (const auto &key : useKeys)
        m_uses.insert(int(key.use), readTypes(tables.value(QLatin1String(key.key))));
}

bool TypeRules::fits(TypePair pair, ValueType first, ValueType second) const
{
    if (first == ValueType::Unknown || second == ValueType::Unknown)
        return true;
    return m_pairs.value(int(pair)).value(int(first)).contains(int(second));
}

bool TypeRules::fits(TypeUse use, ValueType type) const
{
    return type == ValueType::Unknown || m_uses.value(int(use)).contains(int(type));
}

int TypeRules::agreement(const QList<ValueType> &parameters,
                         const QList<ValueType> &arguments) const
{
    int equal = 0;
    for (int i = 0; i < arguments.size() && i < parameters.size(); ++i) {
        const ValueType wanted = parameters.at(i);
        const ValueType given = arguments.at(i);
        const bool areObjects = wanted == ValueType::Object && given == ValueType::Object;
        if (!areObjects && !fits(TypePair::Initialize, wanted, given))
            return -1;
        equal += wanted == given ? 1 : 0;
    }
    return equal;
}
