// The table behind type_words.h.
#include "frontend/type_words.h"

#include "frontend/lexer.h"

namespace {

struct TypeWord
{
    // Null where the word names no type.
    QString variable;
    QString property;
    QString preScan;
    QString methodReturn;
    int kind;
    bool functionParameter;
    bool functionReturn;
    bool methodParameter;
};

// In the order of the token kinds, which run without a gap from `Int` to `Void`.
const TypeWord *typeWords()
{
    const QString none;
    const QString intptr = QStringLiteral("intptr_t");
    const QString dbl = QStringLiteral("double");
    const QString text = QStringLiteral("wstring");
    const QString logic = QStringLiteral("bool");
    const QString bytes = QStringLiteral("VL_ByteArray");
    const QString any = QStringLiteral("VL_Any");
    const QString nothing = QStringLiteral("void");
    const QString array = QStringLiteral("VL_Array");
    const QString array2 = QStringLiteral("VL_Array2D");
    const QString array3 = QStringLiteral("VL_Array3D");
    const QString flt = QStringLiteral("float");
    static const TypeWord table[] = {
        {intptr, intptr, intptr, intptr, Lexer::Int, true, true, true},
        {dbl, dbl, dbl, dbl, Lexer::Double, true, true, true},
        {flt, flt, dbl, flt, Lexer::Float, true, true, true},
        {text, text, text, text, Lexer::Text, true, true, true},
        {logic, logic, logic, logic, Lexer::Bool, true, true, true},
        {none, array, array, none, Lexer::Array, false, false, false},
        {array2, none, array2, none, Lexer::Array2D, false, false, false},
        {array3, none, array3, none, Lexer::Array3D, false, false, false},
        {bytes, bytes, bytes, bytes, Lexer::ByteArray, true, true, false},
        {any, any, any, any, Lexer::Any, true, true, true},
        {none, nothing, nothing, nothing, Lexer::Void, false, true, false},
    };
    static_assert(sizeof(table) / sizeof(table[0]) == Lexer::Void - Lexer::Int + 1,
                  "one row for each type word");
    return table;
}

QString presence(bool present)
{
    return present ? QLatin1String("") : QString();
}

} // namespace

QString typeText(int tokenKind, TypePlace place)
{
    static const QString inferred = QStringLiteral("auto");
    if (tokenKind == Lexer::Var)
        return place == TypePlace::Variable ? inferred : QString();
    if (tokenKind < Lexer::Int || tokenKind > Lexer::Void)
        return QString();
    static const TypeWord *const table = typeWords();
    const TypeWord &word = table[tokenKind - Lexer::Int];
    Q_ASSERT(word.kind == tokenKind);
    switch (place) {
    case TypePlace::Variable:
        return word.variable;
    case TypePlace::Property:
        return word.property;
    case TypePlace::PreScan:
        return word.preScan;
    case TypePlace::MethodReturn:
        return word.methodReturn;
    case TypePlace::FunctionParameter:
        return presence(word.functionParameter);
    case TypePlace::FunctionReturn:
        return presence(word.functionReturn);
    case TypePlace::MethodParameter:
        return presence(word.methodParameter);
    }
    return QString();
}

bool startsDeclaration(int tokenKind)
{
    return isTypeWord(tokenKind, TypePlace::Variable);
}
