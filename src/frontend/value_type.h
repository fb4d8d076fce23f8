// The types that checks and generator tell apart, and their Chinese words.
#pragma once

#include <QString>

enum class ValueType
{
    Unknown,
    Int,
    Double,
    Text,
    Bool,
    Array,
    Array2D,
    Array3D,
    Bytes,
    Any,
    Handle,
    Void,
    Object,
};

// The type that a C++ type text or a Chinese type word stands for; Unknown for anything else.
ValueType valueTypeOf(const QString &typeText);
// The Chinese word; empty for Unknown and Object.
QString wordOf(ValueType type);
