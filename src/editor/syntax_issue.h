// VlSyntaxIssue: one finding of the check that runs while the user types.
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

// Line and column count from 1; column 0 and length 0: the whole line.
struct VlSyntaxIssue
{
    QString message;
    int line = 0;
    int column = 0;
    int length = 0;
    bool isWarning = false;

    bool operator==(const VlSyntaxIssue &other) const
    {
        return message == other.message && line == other.line && column == other.column &&
               length == other.length && isWarning == other.isWarning;
    }
};

Q_DECLARE_METATYPE(VlSyntaxIssue)
Q_DECLARE_METATYPE(QList<VlSyntaxIssue>)
