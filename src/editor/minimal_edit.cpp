#include "editor/minimal_edit.h"

#include <QTextCursor>
#include <QTextDocument>

void replaceWhereDifferent(QTextDocument &document, int position, const QString &before,
                           const QString &after)
{
    if (before == after)
        return;
    const int shorter = qMin(before.size(), after.size());
    int same = 0;
    while (same < shorter && before.at(same) == after.at(same))
        ++same;
    int sameEnd = 0;
    while (sameEnd < shorter - same &&
           before.at(before.size() - 1 - sameEnd) == after.at(after.size() - 1 - sameEnd))
        ++sameEnd;
    QTextCursor cursor(&document);
    cursor.setPosition(position + same);
    cursor.setPosition(position + before.size() - sameEnd, QTextCursor::KeepAnchor);
    cursor.insertText(after.mid(same, after.size() - same - sameEnd));
}
