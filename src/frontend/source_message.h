// SourceMessage: a sentence about one place of a source text.
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

// `line` and `column` are 1-based and those of the text that was read, 0 if unknown; `nearText` is
// the token there as the lexer gives it, or what stands at that column.
struct SourceMessage
{
    int line = 0;
    int column = 0;
    QString nearText = {};
    QString text; // a Chinese sentence, perhaps of several lines
    bool isWarning = false;
};

Q_DECLARE_METATYPE(QList<SourceMessage>)
