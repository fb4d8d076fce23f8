// Type words: which token names a type where, and the C++ type it stands for.
#pragma once

#include <QString>

enum class TypePlace
{
    // A variable. "数组" is not among them: array declarations have a rule of their own.
    Variable,
    // "属性" in a class, as the class parser reads it.
    Property,
    // A member as the class pre-scan reads it.
    PreScan,
    MethodReturn,
    // The three places that keep the Chinese word as written; the text is empty, but not null.
    FunctionParameter,
    FunctionReturn,
    MethodParameter,
};

// The C++ type text of a token kind; null where such a type word cannot stand.
QString typeText(int tokenKind, TypePlace place);

inline bool isTypeWord(int tokenKind, TypePlace place)
{
    return !typeText(tokenKind, place).isNull();
}

// Whether a declaration "type name, name" can start with this token: every type but "数组".
bool startsDeclaration(int tokenKind);
