// What the outline of a source file shows, without a widget.
#pragma once

#include "editor/code_symbols.h"
#include "editor/completion_item.h"

#include <QString>
#include <QVector>

// Lines count from 1. A component stands for the functions of its events and has no range of its
// own: its line is that of the first one, `endLine` is 0.
struct OutlineNode
{
    CompletionKind kind = CompletionKind::UserFunction;
    QString key;  // the same for the same declaration of another text
    QString name; // by what it is found
    QString text; // how it is shown
    int line = 0;
    int endLine = 0;
    QVector<OutlineNode> children;

    // "3-8", or "3" for a single line; empty without a range.
    QString range() const;
};

// Functions, globals, classes with their members and components with their events, in the order of
// the text. Parameters and locals are left out.
QVector<OutlineNode> outlineOf(const CodeSymbols &symbols);

// Whether the user means `name`: by a part of it, or by the pinyin initials it begins with. An
// empty query means everything.
bool meansOutlineName(const QString &query, const QString &name);
