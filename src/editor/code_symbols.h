// What a source file declares, as outline, completion and navigation need it.
#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>

enum class SymbolKind
{
    Function,
    EventFunction, // "按钮1.单击"
    Class,
    TypeBlock, // a type of fields
    Method,
    Property,
    Global,
    Parameter,
    Local,
};

// One declaration. Lines and columns count from 1.
struct CodeSymbol
{
    SymbolKind kind = SymbolKind::Function;
    QString name;  // of an event function the event, "单击"
    QString owner; // the class of a member, the component of an event function, the function of a
                   // parameter or local ("类.方法" for a method's); else empty
    QString type; // the type word of a variable or property, the result of a function; may be empty
    QString signature; // the call form of functions and methods: "相加(整数 甲, 整数 乙) 整数"
    int line = 0;      // of the name
    int column = 0;  // of the name
    int endLine = 0; // the last line of a body; `line` for what has none

    bool operator==(const CodeSymbol &other) const
    {
        return kind == other.kind && name == other.name && owner == other.owner &&
               type == other.type && signature == other.signature && line == other.line &&
               column == other.column && endLine == other.endLine;
    }
};

// In the order of the text.
using CodeSymbols = QVector<CodeSymbol>;

// Reads the declarations of a text, however broken it is; what cannot be read is left out.
CodeSymbols readCodeSymbols(const QString &text);

Q_DECLARE_METATYPE(CodeSymbols)
