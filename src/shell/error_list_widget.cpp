#include "shell/error_list_widget.h"

#include "shell/issue_colors.h"

#include <QHeaderView>
#include <QMenu>
#include <QTextDocument>

namespace {

enum Column
{
    KindColumn,
    TextColumn,
    FileColumn,
    LineColumn,
    ColumnColumn
};

} // namespace

ErrorListWidget::ErrorListWidget(QWidget *parent)
    : RowList({QStringLiteral("类型"), QStringLiteral("说明"), QStringLiteral("文件"),
               QStringLiteral("行"), QStringLiteral("列")},
              parent)
{
    setAccessibleName(QStringLiteral("错误列表"));
    setContextMenuPolicy(Qt::CustomContextMenu);
    // The place is read before the message.
    header()->moveSection(header()->visualIndex(TextColumn), ColumnColumn);
    header()->moveSection(header()->visualIndex(ColumnColumn), LineColumn);
    header()->setStretchLastSection(true);
    const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    setColumnWidth(KindColumn, 9 * digit);
    setColumnWidth(FileColumn, 24 * digit);
    setColumnWidth(LineColumn, 8 * digit);
    setColumnWidth(ColumnColumn, 6 * digit);
    connect(this, &QTreeWidget::itemActivated, this, &ErrorListWidget::onItemActivated);
    connect(this, &QWidget::customContextMenuRequested, this, &ErrorListWidget::showContextMenu);
}

void ErrorListWidget::addIssue(const Issue &issue)
{
    const int row = m_model.add(issue);
    if (row == topLevelItemCount())
        addTopLevelItem(new QTreeWidgetItem);
    fillRow(row);
    applyFilter(row);
    tellCounts();
}

void ErrorListWidget::fillRow(int row)
{
    const Issue &issue = m_model.at(row);
    QTreeWidgetItem *item = topLevelItem(row);
    const QStringList cells = issue.cells();
    const QBrush color(issueColor(issue.kind));
    for (int column = 0; column < cells.size(); ++column) {
        item->setText(column, cells.at(column));
        item->setForeground(column, color);
    }
    // A tool tip guesses whether it is HTML; a program's text never is.
    item->setToolTip(TextColumn, Qt::convertFromPlainText(issue.text));
    item->setToolTip(FileColumn, Qt::convertFromPlainText(issue.file));
}

void ErrorListWidget::applyFilter(int row)
{
    QTreeWidgetItem *item = topLevelItem(row);
    const bool hidden = !isKindShown(m_model.at(row).kind);
    item->setHidden(hidden);
    // Neither Ctrl+C nor Enter may reach a row that cannot be seen.
    if (hidden && currentItem() == item)
        setCurrentItem(nullptr);
    if (hidden)
        item->setSelected(false);
}

void ErrorListWidget::removeIssues(const QString &file, const QString &prefix)
{
    const QVector<int> rows = m_model.remove(file, prefix);
    for (const int row : rows)
        delete takeTopLevelItem(row);
    if (!rows.isEmpty())
        tellCounts();
}

void ErrorListWidget::clearIssues()
{
    m_model.clear();
    clear();
    tellCounts();
}

void ErrorListWidget::setKindShown(IssueKind kind, bool shown)
{
    m_shown[static_cast<std::size_t>(kind)] = shown;
    for (int row = 0; row < m_model.count(); ++row)
        applyFilter(row);
}

void ErrorListWidget::onItemActivated(QTreeWidgetItem *item)
{
    const int row = indexOfTopLevelItem(item);
    if (row < 0)
        return;
    // A copy: whoever goes there may start a check that changes the list.
    const Issue issue = m_model.at(row);
    emit itemLocationClicked(issue.file, issue.line, issue.column, issue.text);
}

void ErrorListWidget::showContextMenu(const QPoint &position)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("复制全部"), this, &RowList::copyAll);
    menu->addAction(QStringLiteral("清除所有"), this, &ErrorListWidget::clearIssues);
    for (QAction *action : menu->actions())
        action->setEnabled(m_model.count() > 0);
    menu->popup(viewport()->mapToGlobal(position));
}

void ErrorListWidget::tellCounts()
{
    const IssueCounts now = counts();
    emit countsChanged(now.errors, now.warnings, now.infos);
}
