// DifferenceColumn: one of the two texts that a DifferenceView shows.
#pragma once

#include "shell/text_difference.h"

#include <QPlainTextEdit>

// What one row of the column shows.
struct DifferenceLine
{
    int number = 0; // from 1; 0: the row is empty because only the other text has a line here
    QString text;
    bool isChanged = false;
    QVector<TextSpan> words; // what has changed within the line
};

// Only for reading. Changed lines have a background of the column's colour, changed words a
// stronger one; lines are not wrapped, so that the rows of two columns stand side by side.
class DifferenceColumn : public QPlainTextEdit
{
public:
    DifferenceColumn(const QColor &color, QWidget *parent = nullptr);

    void setLines(const QVector<DifferenceLine> &lines);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    class Margin;

    int marginWidth() const;
    void placeMargin();
    void paintMargin(QPaintEvent *event);
    // Calls `paint` with each visible row and its place in the viewport.
    template <typename Paint>
    void forVisibleRows(const QRect &area, const Paint &paint) const;
    void paintRow(QPainter &painter, const QTextBlock &block, const QRect &place) const;

    QColor m_color;
    QVector<DifferenceLine> m_lines;
    int m_largestNumber = 0;
    Margin *m_margin;
};
