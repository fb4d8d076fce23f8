#include "shell/difference_column.h"

#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>

namespace {

constexpr int marginPadding = 8; // pixels on both sides of a number
constexpr int lineOpacity = 50;  // of 255
constexpr int wordOpacity = 110; // of 255, on top of the line's
const QColor numberColor(0x85, 0x85, 0x85);
const QColor fillerColor(255, 255, 255, 14);

// The characters that begin a new block would tear the two columns apart.
QString shown(QString line)
{
    for (QChar &c : line) {
        if (c == QLatin1Char('\r') || c == QChar::ParagraphSeparator || c == QChar(0xfdd0) ||
            c == QChar(0xfdd1))
            c = QLatin1Char(' ');
    }
    return line;
}

} // namespace

class DifferenceColumn::Margin : public QWidget
{
public:
    explicit Margin(DifferenceColumn *column) : QWidget(column), m_column(column) {}

protected:
    void paintEvent(QPaintEvent *event) override { m_column->paintMargin(event); }

private:
    DifferenceColumn *m_column;
};

DifferenceColumn::DifferenceColumn(const QColor &color, QWidget *parent)
    : QPlainTextEdit(parent), m_color(color), m_margin(new Margin(this))
{
    setReadOnly(true);
    setLineWrapMode(NoWrap);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabStopDistance(4 * fontMetrics().horizontalAdvance(QLatin1Char(' ')));
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    connect(this, &QPlainTextEdit::updateRequest, m_margin, [this](const QRect &, int dy) {
        if (dy)
            m_margin->scroll(0, dy);
        else
            m_margin->update();
    });
}

void DifferenceColumn::setLines(const QVector<DifferenceLine> &lines)
{
    m_lines = lines;
    m_largestNumber = 0;
    QStringList texts;
    for (const DifferenceLine &line : lines) {
        texts << shown(line.text);
        m_largestNumber = qMax(m_largestNumber, line.number);
    }
    setPlainText(texts.join(QLatin1Char('\n')));
    setViewportMargins(marginWidth(), 0, 0, 0);
    placeMargin();
}

int DifferenceColumn::marginWidth() const
{
    return fontMetrics().horizontalAdvance(QString::number(m_largestNumber)) + 2 * marginPadding;
}

void DifferenceColumn::placeMargin()
{
    const QRect inner = contentsRect();
    m_margin->setGeometry(inner.left(), inner.top(), marginWidth(), inner.height());
}

void DifferenceColumn::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    placeMargin();
}

template <typename Paint>
void DifferenceColumn::forVisibleRows(const QRect &area, const Paint &paint) const
{
    for (QTextBlock block = firstVisibleBlock();
         block.isValid() && block.blockNumber() < m_lines.size(); block = block.next()) {
        const QRect place =
            blockBoundingGeometry(block).translated(contentOffset()).toAlignedRect();
        if (place.top() > area.bottom())
            return;
        paint(block, place);
    }
}

void DifferenceColumn::paintRow(QPainter &painter, const QTextBlock &block,
                                const QRect &place) const
{
    const DifferenceLine &line = m_lines.at(block.blockNumber());
    const QRect row(0, place.top(), viewport()->width(), place.height());
    if (line.number == 0) {
        painter.fillRect(row, QBrush(fillerColor, Qt::BDiagPattern));
        return;
    }
    if (!line.isChanged)
        return;
    QColor color = m_color;
    color.setAlpha(lineOpacity);
    painter.fillRect(row, color);
    color.setAlpha(wordOpacity);
    const QTextLine layout = block.layout()->lineAt(0);
    if (!layout.isValid())
        return;
    for (const TextSpan &span : line.words) {
        const qreal left = place.left() + layout.cursorToX(span.start);
        const qreal right = place.left() + layout.cursorToX(span.start + span.length);
        painter.fillRect(QRectF(left, place.top(), right - left, place.height()), color);
    }
}

// The text is drawn over it.
void DifferenceColumn::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(viewport());
        forVisibleRows(event->rect(), [&](const QTextBlock &block, const QRect &place) {
            paintRow(painter, block, place);
        });
    }
    QPlainTextEdit::paintEvent(event);
}

void DifferenceColumn::paintMargin(QPaintEvent *event)
{
    QPainter painter(m_margin);
    painter.setFont(font());
    painter.fillRect(event->rect(), palette().color(QPalette::Window));
    painter.setPen(numberColor);
    forVisibleRows(event->rect(), [&](const QTextBlock &block, const QRect &place) {
        const int number = m_lines.at(block.blockNumber()).number;
        if (number > 0) {
            painter.drawText(
                QRect(0, place.top(), m_margin->width() - marginPadding, place.height()),
                Qt::AlignRight | Qt::AlignVCenter, QString::number(number));
        }
    });
}
