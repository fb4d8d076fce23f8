// DifferenceColumn: one of the two texts that a DifferenceView shows.
#pragma once

#include "shell/text_difference.h"

#include <QAbstractScrollArea>
#include <QColor>

// What one row of the column shows.
struct DifferenceLine
{
    int number = 0; // from 1; 0: the row is empty because only the other text has a line here
    QString text;
    bool isChanged = false;
    QVector<TextSpan> words; // what has changed within the line
};

// Changed lines have a background of the column's colour, changed words a stronger one. All rows
// are of one height, whatever letters they hold, so that the rows of two columns stand side by
// side. The vertical scroll bar counts rows.
class DifferenceColumn : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit DifferenceColumn(const QColor &color, QWidget *parent = nullptr);

    void setLines(const QVector<DifferenceLine> &lines);
    int lineCount() const { return m_lines.size(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void updateScrollBars();
    void paintRow(QPainter &painter, const DifferenceLine &line, const QRect &row) const;

    QColor m_color;
    QVector<DifferenceLine> m_lines;
    int m_rowHeight;
    int m_marginWidth = 0;
    int m_textWidth = 0; // that the longest line can have
};
