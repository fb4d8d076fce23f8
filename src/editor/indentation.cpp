#include "editor/indentation.h"

QString Indentation::leading(int depth) const
{
    if (usesBlanks)
        return QString(depth, QLatin1Char(' '));
    return QString(depth / width, QLatin1Char('\t')) + QString(depth % width, QLatin1Char(' '));
}

int Indentation::depth(const QString &line) const
{
    int columns = 0;
    for (int i = 0; i < leadingLength(line); ++i)
        columns += line.at(i) == QLatin1Char('\t') ? width : 1;
    return columns;
}

int leadingLength(const QString &line)
{
    int length = 0;
    while (length < line.size() && line.at(length).isSpace())
        ++length;
    return length;
}
