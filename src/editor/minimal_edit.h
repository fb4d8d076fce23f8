// Changing a text only where it differs.
#pragma once

#include <QString>

class QTextDocument;

// Makes `after` of `before`, which stands at `position` of the document. What is the same at both
// ends stays untouched, so that marks and cursors stay there too.
void replaceWhereDifferent(QTextDocument &document, int position, const QString &before,
                           const QString &after);
