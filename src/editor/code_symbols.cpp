#include "editor/code_symbols.h"

#include "editor/code_declarations.h"

CodeSymbols readCodeSymbols(const QString &text)
{
    const QVector<CodeDeclaration> declarations = readDeclarations(text, codeTokens(text));
    CodeSymbols symbols;
    symbols.reserve(declarations.size());
    for (const CodeDeclaration &declaration : declarations)
        symbols.append(declaration.symbol);
    return symbols;
}
