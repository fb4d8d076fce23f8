#include "shell/difference_view.h"

#include "driver/source_text.h"
#include "shell/difference_column.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QToolButton>

namespace {

const QColor removedColor(0xe0, 0x50, 0x50);
const QColor addedColor(0x4c, 0xb0, 0x50);
constexpr int maxComparedLine = 4000; // characters; longer lines are not compared by words

// Texts that differ only in the ends of their lines have the same lines.
QStringList linesOf(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    }
    return lines;
}

DifferenceLine lineFor(const QStringList &lines, int index, bool isChanged,
                       const QVector<TextSpan> &words)
{
    if (index < 0)
        return {};
    return {index + 1, lines.at(index), isChanged, words};
}

void couple(QScrollBar *one, QScrollBar *other)
{
    QObject::connect(one, &QScrollBar::valueChanged, other, &QScrollBar::setValue);
    QObject::connect(other, &QScrollBar::valueChanged, one, &QScrollBar::setValue);
}

} // namespace

DifferenceView::DifferenceView(QWidget *parent)
    : QWidget(parent),
      m_leftTitle(new QLabel(this)),
      m_rightTitle(new QLabel(this)),
      m_summary(new QLabel(this)),
      m_previous(new QToolButton(this)),
      m_next(new QToolButton(this)),
      m_left(new DifferenceColumn(removedColor, this)),
      m_right(new DifferenceColumn(addedColor, this))
{
    m_previous->setText(QStringLiteral("↑ 上一处"));
    m_previous->setToolTip(QStringLiteral("上一处不同 (Shift+F8)"));
    m_previous->setShortcut(QKeySequence(Qt::SHIFT + Qt::Key_F8));
    m_next->setText(QStringLiteral("↓ 下一处"));
    m_next->setToolTip(QStringLiteral("下一处不同 (F8)"));
    m_next->setShortcut(QKeySequence(Qt::Key_F8));
    connect(m_previous, &QToolButton::clicked, this, &DifferenceView::goToPrevious);
    connect(m_next, &QToolButton::clicked, this, &DifferenceView::goToNext);
    couple(m_left->verticalScrollBar(), m_right->verticalScrollBar());
    couple(m_left->horizontalScrollBar(), m_right->horizontalScrollBar());
    // With a bar below only one of them, they would not have the same height.
    for (DifferenceColumn *column : {m_left, m_right})
        column->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);

    auto *tools = new QHBoxLayout;
    tools->addWidget(m_summary, 1);
    tools->addWidget(m_previous);
    tools->addWidget(m_next);
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(4);
    grid->addLayout(tools, 0, 0, 1, 2);
    grid->addWidget(m_leftTitle, 1, 0);
    grid->addWidget(m_rightTitle, 1, 1);
    grid->addWidget(m_left, 2, 0);
    grid->addWidget(m_right, 2, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    setTexts({}, {});
}

DifferenceView::Side DifferenceView::fileOnDisk(const QString &path)
{
    if (!QFileInfo::exists(path))
        return {QStringLiteral("磁盘上没有这个文件"), QString()};
    const SourceText source = readSourceFile(path, QFileInfo(path).fileName());
    if (!source.isValid())
        return {source.error, QString()};
    return {QStringLiteral("磁盘上的内容"), source.text};
}

void DifferenceView::setTexts(const Side &left, const Side &right)
{
    m_leftTitle->setText(left.title);
    m_rightTitle->setText(right.title);
    m_isSameText = left.text == right.text;
    const QStringList leftLines = linesOf(left.text);
    const QStringList rightLines = linesOf(right.text);
    const QVector<DifferenceRow> rows = differenceRows(lineDifference(leftLines, rightLines));
    m_differences.clear();
    for (int row = 0; row < rows.size(); ++row) {
        const auto isEqual = [&](int i) { return rows.at(i).kind == DifferenceRow::Kind::Equal; };
        if (!isEqual(row) && (row == 0 || isEqual(row - 1)))
            m_differences << row;
    }
    fillColumns(leftLines, rightLines, rows);
    showDifference(m_differences.isEmpty() ? -1 : 0);
}

void DifferenceView::fillColumns(const QStringList &left, const QStringList &right,
                                 const QVector<DifferenceRow> &rows)
{
    QVector<DifferenceLine> leftColumn, rightColumn;
    for (const DifferenceRow &row : rows) {
        const bool isChanged = row.kind != DifferenceRow::Kind::Equal;
        ChangedWords words;
        if (row.kind == DifferenceRow::Kind::Changed &&
            left.at(row.left).size() + right.at(row.right).size() <= maxComparedLine)
            words = wordDifference(left.at(row.left), right.at(row.right));
        leftColumn << lineFor(left, row.left, isChanged, words.left);
        rightColumn << lineFor(right, row.right, isChanged, words.right);
    }
    m_left->setLines(leftColumn);
    m_right->setLines(rightColumn);
}

void DifferenceView::goToNext()
{
    if (m_current + 1 < m_differences.size())
        showDifference(m_current + 1);
}

void DifferenceView::goToPrevious()
{
    if (m_current > 0)
        showDifference(m_current - 1);
}

void DifferenceView::showDifference(int difference)
{
    m_current = difference;
    m_previous->setEnabled(difference > 0);
    m_next->setEnabled(difference + 1 < m_differences.size());
    if (difference >= 0) {
        m_summary->setText(
            QStringLiteral("第 %1 处，共 %2 处不同").arg(difference + 1).arg(m_differences.size()));
        // With some lines before it.
        m_left->verticalScrollBar()->setValue(m_differences.at(difference) - 3);
    } else {
        m_summary->setText(m_isSameText ? QStringLiteral("内容相同")
                                        : QStringLiteral("只有换行符不同"));
    }
}
