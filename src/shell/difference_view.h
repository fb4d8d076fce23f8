// DifferenceView: two texts side by side, with what is different in them.
#pragma once

#include "shell/text_difference.h"

#include <QVector>
#include <QWidget>

class DifferenceColumn;
class QLabel;
class QToolButton;

// The columns scroll together.
class DifferenceView : public QWidget
{
    Q_OBJECT

public:
    explicit DifferenceView(QWidget *parent = nullptr);

    struct Side
    {
        QString title;
        QString text;
    };
    // What a file holds now; its title tells when it does not exist or holds no text.
    static Side fileOnDisk(const QString &path);

    // Shows the first difference.
    void setTexts(const Side &left, const Side &right);

    // Neighbouring lines that differ are one difference.
    int differenceCount() const { return m_differences.size(); }
    // Counted from 0; -1: none is.
    int currentDifference() const { return m_current; }

public slots:
    // They stay at the last and at the first one.
    void goToNext();
    void goToPrevious();

private:
    void showDifference(int difference);
    void fillColumns(const QStringList &left, const QStringList &right,
                     const QVector<DifferenceRow> &rows);

    QLabel *m_leftTitle;
    QLabel *m_rightTitle;
    QLabel *m_summary;
    QToolButton *m_previous;
    QToolButton *m_next;
    DifferenceColumn *m_left;
    DifferenceColumn *m_right;
    QVector<int> m_differences; // the first row of each
    int m_current = -1;
    bool m_isSameText = true;
};
