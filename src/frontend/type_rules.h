// TypeRules: which types meet in operations and assignments, read from
// ":/frontend/type_rules.json". The rules are those of the generated programs.
#pragma once

#include "frontend/value_type.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

// Two types on the sides of an operation.
enum class TypePair
{
    Assign,        // variable, value
    Initialize,    // declared type or parameter, value
    Add,           // + : left, right
    Calculate,     // - * / %
    Compare,       // == != < > <= >=
    AddTo,         // += : variable, value
    CalculateWith, // -= *= /=
};

// One type alone.
enum class TypeUse
{
    Condition, // can be true or false
    Step,      // ++ --
    Negate,    // -
    Elements,  // [ ]
};

// Read on first use, never changed. A type that is not known fits everywhere; what gives nothing
// and objects fit nowhere.
class TypeRules
{
public:
    static const TypeRules &instance();

    bool fits(TypePair pair, ValueType first, ValueType second) const;
    bool fits(TypeUse use, ValueType type) const;
    // How many arguments are of the very types of the parameters, as many of them as there are
    // arguments; -1 when one does not fit. The overload with the highest number is meant.
    int agreement(const QList<ValueType> &parameters, const QList<ValueType> &arguments) const;

private:
    TypeRules();

    QHash<int, QHash<int, QSet<int>>> m_pairs;
    QHash<int, QSet<int>> m_uses;
};
