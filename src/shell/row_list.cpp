#include "shell/row_list.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>

namespace {

// The rows of `list` for which `wanted` holds, as text; null without any.
template <typename Predicate>
QString rowsText(const QTreeWidget &list, Predicate wanted)
{
    QStringList rows;
    for (int row = 0; row < list.topLevelItemCount(); ++row) {
        const QTreeWidgetItem *item = list.topLevelItem(row);
        if (!wanted(*item))
            continue;
        QStringList cells;
        for (int column = 0; column < list.columnCount(); ++column)
            cells << item->text(column);
        rows << cells.join(QLatin1Char('\t'));
    }
    return rows.isEmpty() ? QString() : rows.join(QLatin1Char('\n'));
}

void copyText(const QString &text)
{
    if (!text.isNull())
        QApplication::clipboard()->setText(text);
}

} // namespace

RowList::RowList(const QStringList &titles, QWidget *parent) : QTreeWidget(parent)
{
    setHeaderLabels(titles);
    setRootIsDecorated(false);
    setAlternatingRowColors(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(ExtendedSelection);
    setFrameShape(NoFrame);
    // Tab leaves the list; the arrow keys move in it.
    setTabKeyNavigation(false);
    header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void RowList::copySelectedOrAll()
{
    if (selectedItems().isEmpty())
        copyAll();
    else
        copySelected();
}

void RowList::copySelected()
{
    copyText(rowsText(*this, [](const QTreeWidgetItem &item) { return item.isSelected(); }));
}

void RowList::copyAll()
{
    copyText(rowsText(*this, [](const QTreeWidgetItem &) { return true; }));
}

void RowList::keyPressEvent(QKeyEvent *event)
{
    if (!event->matches(QKeySequence::Copy)) {
        QTreeWidget::keyPressEvent(event);
        return;
    }
    copySelected();
    event->accept();
}
