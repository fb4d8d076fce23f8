// What stands in a line of generated C++ where a compiler points.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

class PointedCode
{
public:
    // `column` as the compiler tells it, 1-based. Some count bytes, others the cells that the line
    // takes on a screen; where these differ both are tried.
    PointedCode(const QString &line, int column);

    // The sign of the operator that stands there; empty when there is none.
    QString sign() const;
    // The function that is called there: its name, or the bracket behind it, is pointed at.
    QString callee() const;

    struct Argument
    {
        QString function; // empty when no call is around that place
        int number = 0;   // 1-based; 0 when it is not sure
    };
    // The call around that place, and which of its arguments it is in.
    Argument argument() const;

private:
    bool isLikely(int place) const;
    bool isInText(int at) const;
    bool isOfName(int at) const;
    bool isCallee(int at) const;
    QString nameBefore(int end) const;
    int beginOfText(int end) const;
    Argument argumentAt(int at) const;

    QByteArray m_line;
    QVector<int> m_places; // offsets in bytes
};
