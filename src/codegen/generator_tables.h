// The generator's tables, read from ":/codegen".
#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

// Read on first use, never changed; a test checks that every file is complete.
struct GeneratorTables
{
    static const GeneratorTables &instance();

    // The C++ text of a command or constant, looked up as written and in NFKC; empty without one.
    QString commandText(const QString &name) const;
    // The catalogue's main name of a command, from a name that a table of synonyms rewrites.
    QString canonicalCommand(const QString &name) const { return synonyms.value(name, name); }

    QHash<QString, QString> commandMap;
    QHash<QString, QStringList> defaultArguments; // by C++ function
    QHash<QString, QString> synonyms;
    QHash<QString, QString> variableTypes;  // `varType` to C++
    QHash<QString, QString> returnTypes;    // `returnType` and types of properties to C++
    QHash<QString, QString> parameterTypes; // `paramType` to C++
    QHash<QString, QString> callTypes;      // command to the Chinese word of what it returns
    QHash<QString, QString> conversions;    // type word called as a function to C++ function
    QStringList builtinNames;               // what the editor colours as built-in
    QStringList componentWords;             // names of component types, as in default names
    QStringList integerCommandPrefixes;     // C++ functions that give integers
    QSet<QString> cppReserved;              // words of C++ and macros of its headers
    QSet<QString> cppGlobals;               // global names of its headers
    QSet<QString> windowNameFunctions;      // first argument may be a window written as a name
    QSet<QString> controlTextFunctions;     // a control as an argument stands for its text
    QSet<QString> arrayCommands;            // first argument is changed in place
    QSet<QString> effectFunctions;          // change or read what lies outside the call
    QSet<QString> displayedFirstArgument;   // first argument goes through VL_ToOutputStr
    // Methods of built-in classes under further names: class to name to C++ member and type.
    QHash<QString, QHash<QString, QStringList>> classMethods;
    QHash<QString, QString> narrowCodePages; // functions on bytes, with the code page of the bytes

private:
    GeneratorTables();
};
