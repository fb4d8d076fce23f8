// Where names are declared and used in the texts of a project.
#pragma once

#include "editor/code_declarations.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QVector>

#include <optional>

// A name in a file. Line and column count from 1; a place that is none has line 0.
struct CodePlace
{
    QString file;
    int line = 0;
    int column = 0;
    int length = 0;

    bool operator==(const CodePlace &other) const
    {
        return file == other.file && line == other.line && column == other.column &&
               length == other.length;
    }
};

// What renaming has to change, or a Chinese sentence why it must not be done.
struct CodeRename
{
    QVector<CodePlace> edits; // in the order of files and lines
    QString refusal;
};

// Reads all texts when it is made; a value to be made anew when a text has changed. Names are
// compared as the language compares them. What is a component, a command or of unknown type means
// nothing here.
class CodeNavigation
{
public:
    explicit CodeNavigation(const QMap<QString, QString> &texts);

    // The declaration that the name at a place, or right before it, means: of overloads the first,
    // of the same file before others.
    std::optional<CodeSymbol> symbolAt(const QString &file, int line, int column) const;
    // Where it is declared; line 0 without one.
    CodePlace definitionOf(const QString &file, int line, int column) const;
    // All places of that name with that meaning, its declarations included.
    QVector<CodePlace> usagesOf(const QString &file, int line, int column) const;
    CodeRename renameEdits(const QString &file, int line, int column, const QString &newName) const;

private:
    // A token or a declaration: which source, and the index there.
    struct Ref
    {
        int source = -1;
        int index = -1;

        bool isValid() const { return source >= 0; }
        bool operator==(const Ref &other) const
        {
            return source == other.source && index == other.index;
        }
    };
    using Refs = QVector<Ref>;
    struct Source
    {
        QString file;
        QString text;
        QVector<CodeToken> tokens;
        QVector<CodeDeclaration> declarations;
        QHash<int, int> declarationAt; // by the token that is its name
        // Indices of declarations, in the order of the text.
        QHash<QString, QVector<int>> variables; // parameters and locals, by name in NFKC
        QVector<int> routines;                  // functions of all sorts
    };

    static QString memberKey(const QString &className, const QString &name);
    void read(int source);
    const CodeDeclaration &declaration(const Ref &ref) const
    {
        return m_sources.at(ref.source).declarations.at(ref.index);
    }
    const CodeToken &token(const Ref &ref) const
    {
        return m_sources.at(ref.source).tokens.at(ref.index);
    }

    // Tokens to declarations, of those that share a meaning the first; invalid without one.
    Ref tokenAt(const QString &file, int line, int column) const;
    Ref meaning(const Ref &name, int depth = 0) const;
    Ref plainMeaning(const Ref &name) const;
    Ref variable(const Ref &name, const QString &form) const;
    Ref routineAround(const Ref &name) const;
    Ref firstGlobal(const QString &form, bool ofClasses) const;
    QString typeEndingAt(const Ref &end, int depth) const;
    QString typeOfValue(const Ref &declared, int depth) const;
    Ref partner(const Ref &bracket) const;

    // All declarations with the meaning of this one.
    Refs sharing(const Ref &declared) const;
    Ref shared(const Ref &declared) const;
    Ref bestDeclaration(const Ref &name) const;

    Refs usages(const Ref &declared) const;
    CodePlace place(const Ref &name) const;
    QString refusal(const Ref &declared, const QString &newName) const;
    Refs namedAlike(const Ref &declared, const QString &newName) const;
    bool keepsMeanings(const Refs &names, const QString &newName) const;

    QVector<Source> m_sources;
    QHash<QString, int> m_sourceByFile;
    QHash<QString, Refs> m_globals; // what stands at file scope, by name in NFKC
    QHash<QString, Refs> m_members; // by "类.成员" in NFKC
};
