#include "shell/component_list.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMenu>

namespace {

constexpr int fileRole = Qt::UserRole; // of the rows of windows

} // namespace

ComponentList::ComponentList(QWidget *parent) : QTreeWidget(parent)
{
    setHeaderLabels({QStringLiteral("名称"), QStringLiteral("类型")});
    setAccessibleName(QStringLiteral("组件列表"));
    setUniformRowHeights(true);
    setContextMenuPolicy(Qt::CustomContextMenu);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem *item) {
        const QString file = item->data(0, fileRole).toString();
        if (file.isEmpty())
            emit nameChosen(item->text(0));
        else
            emit formActivated(file);
    });
    connect(this, &QTreeWidget::customContextMenuRequested, this, &ComponentList::showMenu);
}

void ComponentList::setWindows(const QVector<WindowComponents> &windows)
{
    clear();
    for (const WindowComponents &window : windows) {
        auto *top = new QTreeWidgetItem(this, {window.name, QStringLiteral("窗口")});
        top->setData(0, fileRole, window.file);
        top->setToolTip(0, QStringLiteral("双击打开界面文件"));
        QVector<QTreeWidgetItem *> path{top};
        for (const WindowComponent &component : window.components) {
            path.resize(component.depth + 1);
            auto *item = new QTreeWidgetItem(path.last(), {component.name, component.typeName});
            item->setToolTip(0, QStringLiteral("双击将名称插入代码"));
            path << item;
        }
    }
    expandAll();
}

void ComponentList::showMenu(const QPoint &position)
{
    QTreeWidgetItem *item = itemAt(position);
    if (!item)
        return;
    QMenu menu(this);
    menu.addAction(QStringLiteral("复制名称(&C)"), this,
                   [item] { QApplication::clipboard()->setText(item->text(0)); });
    menu.addAction(QStringLiteral("插入名称(&I)"), this,
                   [this, item] { emit nameChosen(item->text(0)); });
    menu.exec(viewport()->mapToGlobal(position));
}
