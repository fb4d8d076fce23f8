// How two texts differ, by lines and by words.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// Lines that both texts have, or that only one has. Lines are counted from 0.
struct DifferenceRun
{
    enum class Kind
    {
        Equal,
        Removed, // only in the left text
        Added,   // only in the right text
    };

    Kind kind;
    int left;  // its first line; of an added run, the line before which it would stand
    int right; // the same in the right text
    int count; // of lines, at least 1

    bool operator==(const DifferenceRun &other) const;
};

// A part of a line, in characters.
struct TextSpan
{
    int start;
    int length;

    bool operator==(const TextSpan &other) const;
};

struct ChangedWords
{
    QVector<TextSpan> left;
    QVector<TextSpan> right;
};

// One line of a view that shows both texts side by side.
struct DifferenceRow
{
    enum class Kind
    {
        Equal,
        Changed, // one line stands for another
        Removed,
        Added,
    };

    Kind kind;
    int left;  // -1: none
    int right; // -1: none
};

// All lines of both texts in their order; what was removed stands before what was added in its
// place. A shortest difference for texts that have something in common; for long texts that have
// little in common a longer one, in good time.
QVector<DifferenceRun> lineDifference(const QStringList &left, const QStringList &right);

// The words of two lines that differ; a Chinese character is a word.
ChangedWords wordDifference(const QString &left, const QString &right);

QVector<DifferenceRow> differenceRows(const QVector<DifferenceRun> &runs);
