#include "shell/search_results_widget.h"

#include <QTextDocument>

namespace {

enum Column
{
    FileColumn,
    LineColumn,
    TextColumn
};

} // namespace

SearchResultsWidget::SearchResultsWidget(QWidget *parent)
    : RowList({QStringLiteral("文件"), QStringLiteral("行"), QStringLiteral("内容")}, parent)
{
    setAccessibleName(QStringLiteral("搜索结果列表"));
    setUniformRowHeights(true);
    const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    setColumnWidth(FileColumn, 36 * digit);
    setColumnWidth(LineColumn, 8 * digit);
    connect(this, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem *item) {
        emit resultActivated(item->text(FileColumn), item->text(LineColumn).toInt());
    });
}

void SearchResultsWidget::addResult(const QString &file, int line, const QString &text)
{
    auto *item = new QTreeWidgetItem({file, QString::number(line), text.trimmed()});
    item->setToolTip(FileColumn, Qt::convertFromPlainText(file));
    addTopLevelItem(item);
}
