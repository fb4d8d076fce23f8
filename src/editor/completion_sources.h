// CompletionSources: everything that may be offered at a place of a document.
#pragma once

#include "editor/code_symbols.h"
#include "editor/completion_vocabulary.h"

#include <QString>
#include <QStringList>
#include <QVector>

// `typeKey` is the toolbox key of its type, or a Chinese word for it.
struct CompletionComponent
{
    QString name;
    QString typeKey;
};

// What an expression before a dot stands for: a component's type or a class; else empty.
struct CompletionTarget
{
    QString componentType;
    QString className;

    bool isEmpty() const { return componentType.isEmpty() && className.isEmpty(); }
};

// Where in the document something is asked for. `addedLines` are those that the document has more
// than when its symbols were read: bodies may be longer by them. `code` is the masked text up to
// the place, in which declarations are looked for that the symbols do not know yet.
struct CompletionPlace
{
    QString code;
    int line = 1; // from 1
    int addedLines = 0;
};

class CompletionSources
{
public:
    void setComponents(const QVector<CompletionComponent> &components);
    // Of the other files of the project.
    void setProjectSymbols(const CodeSymbols &symbols);
    void setDocumentSymbols(const CodeSymbols &symbols);

    // What can stand alone: names that are declared here first, then the vocabulary. Valid until
    // the next call of any function.
    const CompletionCandidates &words(const CompletionPlace &place);
    // The functions of the document and the project.
    CompletionCandidates userFunctions();

    // What the names before a dot stand for, the outermost first.
    CompletionTarget target(const QStringList &path, const CompletionPlace &place) const;
    CompletionCandidates members(const CompletionTarget &target);

    // The call forms of the function, method or command that `path` names; empty for others.
    QStringList callForms(const QStringList &path, const CompletionPlace &place) const;
    // The name in the command catalogue of what `path` names; empty for others.
    QString record(const QStringList &path, const CompletionPlace &place) const;

private:
    // The first symbol that `isWanted` says yes to, in the document, then in the project; else
    // null.
    template <typename Wanted>
    const CodeSymbol *findSymbol(Wanted isWanted) const;
    // Calls `visit` with every symbol, those of the document first.
    template <typename Visit>
    void visitSymbols(Visit visit) const;
    // The function or method around the place; null outside.
    const CodeSymbol *routineAt(const CompletionPlace &place) const;
    const CompletionComponent *component(const QString &name) const;
    QString typeOfName(const QString &name, const CompletionPlace &place) const;
    QString declaredType(const QString &name, const QString &code) const;
    bool isClass(const QString &name) const;
    CompletionTarget targetOfType(const QString &type) const;
    CompletionTarget firstTarget(const QString &name, const CompletionPlace &place) const;
    CompletionTarget memberTarget(const CompletionTarget &owner, const QString &member) const;
    const CodeSymbol *memberSymbol(const QString &className, const QString &member) const;
    // The function, or the method of `owner`, that `path` names; null for others.
    const CodeSymbol *calledSymbol(const QStringList &path, const CompletionTarget &owner,
                                   const CompletionPlace &place) const;
    CompletionCandidate symbolCandidate(const CodeSymbol &symbol);
    void buildWords(const CodeSymbol *routine);

    QVector<CompletionComponent> m_components;
    CodeSymbols m_projectSymbols;
    CodeSymbols m_documentSymbols;
    CompletionNames m_names;
    CompletionCandidates m_words;
    const CodeSymbol *m_wordsRoutine = nullptr; // the one that m_words is for
    bool m_hasWords = false;
};
