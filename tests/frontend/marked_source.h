// Sources of tests with a mark "¦" where something is expected.
#pragma once

#include <QString>

struct MarkedSource
{
    // The mark is no part of `text`; line and column, 1-based, are those of what follows it, 0
    // without a mark.
    explicit MarkedSource(const QString &marked) : text(marked)
    {
        const int at = marked.indexOf(QChar(u'¦'));
        if (at < 0)
            return;
        text.remove(at, 1);
        line = marked.leftRef(at).count(QLatin1Char('\n')) + 1;
        column = at - (marked.leftRef(at).lastIndexOf(QLatin1Char('\n')) + 1) + 1;
    }

    QString text;
    int line = 0;
    int column = 0;
};
