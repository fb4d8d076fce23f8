#include "shell/difference_column.h"

#include <QFontDatabase>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>

#include <algorithm>

namespace {

constexpr int padding = 8;         // pixels beside a number and before a text
constexpr int lineOpacity = 50;    // of 255
constexpr int wordOpacity = 110;   // of 255, on top of the line's
constexpr int maxShownLine = 5000; // characters
const QColor numberColor(0x85, 0x85, 0x85);
const QColor fillerColor(255, 255, 255, 24);

QFont codeFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    return font;
}

// All of its text in one line.
QTextLine layOut(QTextLayout &layout, const QFontMetricsF &metrics)
{
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTabStopDistance(4 * metrics.horizontalAdvance(QLatin1Char(' ')));
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return line;
}

} // namespace

DifferenceColumn::DifferenceColumn(const QColor &color, QWidget *parent)
    : QAbstractScrollArea(parent), m_color(color)
{
    setFont(codeFont());
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Base);
    // Chinese letters come from a font of another height.
    QTextLayout sample(QStringLiteral("中Ag"), font());
    m_rowHeight = int(layOut(sample, QFontMetricsF(font())).height()) + 2;
}

void DifferenceColumn::setLines(const QVector<DifferenceLine> &lines)
{
    m_lines = lines;
    int largestNumber = 0;
    int longest = 0;
    for (DifferenceLine &line : m_lines) {
        line.text.truncate(maxShownLine);
        largestNumber = std::max(largestNumber, line.number);
        longest = std::max(longest, line.text.size());
    }
    m_marginWidth = fontMetrics().horizontalAdvance(QString::number(largestNumber)) + 2 * padding;
    // As if all of its letters were wide.
    m_textWidth = longest * fontMetrics().horizontalAdvance(QStringLiteral("中"));
    updateScrollBars();
    viewport()->update();
}

void DifferenceColumn::updateScrollBars()
{
    const int rows = viewport()->height() / m_rowHeight;
    verticalScrollBar()->setPageStep(rows);
    verticalScrollBar()->setRange(0, std::max(0, m_lines.size() - rows));
    const int width = viewport()->width() - m_marginWidth - 2 * padding;
    horizontalScrollBar()->setPageStep(std::max(1, width));
    horizontalScrollBar()->setSingleStep(m_rowHeight);
    horizontalScrollBar()->setRange(0, std::max(0, m_textWidth - width));
}

void DifferenceColumn::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
}

void DifferenceColumn::paintRow(QPainter &painter, const DifferenceLine &line,
                                const QRect &row) const
{
    if (line.number == 0) {
        painter.fillRect(row, QBrush(fillerColor, Qt::BDiagPattern));
        return;
    }
    QTextLayout layout(line.text, font());
    const QTextLine laid = layOut(layout, QFontMetricsF(font()));
    const int left = row.left() + padding - horizontalScrollBar()->value();
    if (line.isChanged) {
        QColor color = m_color;
        color.setAlpha(lineOpacity);
        painter.fillRect(row, color);
        color.setAlpha(wordOpacity);
        for (const TextSpan &span : line.words) {
            const qreal start = laid.cursorToX(span.start);
            const qreal end = laid.cursorToX(span.start + span.length);
            painter.fillRect(QRectF(left + start, row.top(), end - start, row.height()), color);
        }
    }
    painter.setPen(palette().color(QPalette::Text));
    laid.draw(&painter, QPointF(left, row.top() + (row.height() - laid.height()) / 2));
}

void DifferenceColumn::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    const int width = viewport()->width();
    const QRect margin(0, 0, m_marginWidth, viewport()->height());
    painter.fillRect(margin, palette().color(QPalette::Window));
    int y = 0;
    for (int i = verticalScrollBar()->value(); i < m_lines.size() && y < margin.height(); ++i) {
        const DifferenceLine &line = m_lines.at(i);
        const QRect row(m_marginWidth, y, width - m_marginWidth, m_rowHeight);
        painter.setClipRect(row);
        paintRow(painter, line, row);
        painter.setClipping(false);
        if (line.number > 0) {
            painter.setPen(numberColor);
            painter.drawText(QRect(0, y, m_marginWidth - padding, m_rowHeight),
                             Qt::AlignRight | Qt::AlignVCenter, QString::number(line.number));
        }
        y += m_rowHeight;
    }
}
