#include "shell/recovery_dialog.h"

#include "shell/difference_view.h"
#include "shell/message_dialogs.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

enum Column
{
    FileColumn,
    TimeColumn,
    StateColumn,
};

QString stateOf(const RecoveredText &content)
{
    if (content.path.isEmpty())
        return QStringLiteral("从未保存");
    const QByteArray now = RecoveryStore::hashOf(content.path);
    if (now.isEmpty())
        return QStringLiteral("文件已不存在");
    return now == content.baseHash ? QStringLiteral("文件未变")
                                   : QStringLiteral("文件后来又被修改");
}

} // namespace

RecoveryDialog::RecoveryDialog(const QList<RecoveryEntry> &entries, QWidget *parent)
    : QDialog(parent),
      m_entries(entries),
      m_list(makeList()),
      m_difference(new DifferenceView(this))
{
    setWindowTitle(QStringLiteral("恢复未保存的内容"));
    resize(980, 620);
    auto *text = new QLabel(
        QStringLiteral("VorelDesk 上次没有正常退出。下面的内容当时还没有保存，可以恢复。"), this);
    text->setWordWrap(true);
    auto *splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_list);
    splitter->addWidget(m_difference);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({140, 400});
    splitter->setChildrenCollapsible(false);
    auto *column = new QVBoxLayout(this);
    column->addWidget(text);
    column->addWidget(splitter, 1);
    column->addLayout(makeButtons());
    connect(m_list, &QTreeWidget::currentItemChanged, this, &RecoveryDialog::showCurrent);
    m_list->setCurrentItem(m_list->topLevelItem(0));
    showCurrent();
}

QString RecoveryDialog::nameOf(const RecoveredText &content)
{
    return content.path.isEmpty() ? content.title : QFileInfo(content.path).fileName();
}

QTreeWidget *RecoveryDialog::makeList()
{
    auto *list = new QTreeWidget(this);
    list->setHeaderLabels(
        {QStringLiteral("文件"), QStringLiteral("保留时间"), QStringLiteral("状态")});
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    for (const RecoveryEntry &entry : qAsConst(m_entries)) {
        const RecoveredText &content = entry.content;
        auto *item = new QTreeWidgetItem(list);
        item->setText(FileColumn, nameOf(content));
        item->setToolTip(FileColumn, QDir::toNativeSeparators(content.path));
        item->setText(TimeColumn, content.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
        item->setText(StateColumn, stateOf(content));
    }
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(FileColumn, QHeaderView::Stretch);
    return list;
}

QLayout *RecoveryDialog::makeButtons()
{
    auto *row = new QHBoxLayout;
    const auto add = [&](const QString &text, const QString &toolTip, auto slot) {
        auto *button = new QPushButton(text, this);
        button->setToolTip(toolTip);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, slot);
        row->addWidget(button);
        return button;
    };
    m_restore = add(QStringLiteral("恢复"), QStringLiteral("在编辑器中打开，保存之前不改动磁盘"),
                    &RecoveryDialog::restoreCurrent);
    m_discard = add(QStringLiteral("保留磁盘上的内容"), QStringLiteral("丢弃这份未保存的内容"),
                    &RecoveryDialog::discardCurrent);
    row->addStretch();
    QPushButton *all = add(QStringLiteral("全部恢复"), QStringLiteral("恢复列表中的所有内容"),
                           &RecoveryDialog::restoreAll);
    all->setDefault(true);
    add(QStringLiteral("稍后"), QStringLiteral("下次启动时再决定"), &QDialog::reject);
    return row;
}

void RecoveryDialog::showCurrent()
{
    const int row = m_list->indexOfTopLevelItem(m_list->currentItem());
    m_restore->setEnabled(row >= 0);
    m_discard->setEnabled(row >= 0);
    if (row < 0)
        return m_difference->setTexts({}, {});
    const RecoveredText &content = m_entries.at(row).content;
    const DifferenceView::Side disk =
        content.path.isEmpty() ? DifferenceView::Side{QStringLiteral("从未保存到磁盘"), QString()}
                               : DifferenceView::fileOnDisk(content.path);
    m_difference->setTexts(disk, {QStringLiteral("可以恢复的内容"), content.text});
}

void RecoveryDialog::restoreCurrent()
{
    const int row = m_list->indexOfTopLevelItem(m_list->currentItem());
    const RecoveryEntry entry = m_entries.at(row);
    takeOut(row);
    emit restoreRequested(entry);
}

void RecoveryDialog::discardCurrent()
{
    const int row = m_list->indexOfTopLevelItem(m_list->currentItem());
    const RecoveryEntry entry = m_entries.at(row);
    const int answer = MessageDialogs::choose(
        this, QMessageBox::Question, windowTitle(),
        QStringLiteral("“%1” 未保存的内容将被删除，无法再恢复。").arg(nameOf(entry.content)),
        {QStringLiteral("删除"), QStringLiteral("取消")}, 1);
    if (answer != 0)
        return;
    takeOut(row);
    emit discardRequested(entry);
}

void RecoveryDialog::restoreAll()
{
    while (!m_entries.isEmpty()) {
        const RecoveryEntry entry = m_entries.first();
        takeOut(0);
        emit restoreRequested(entry);
    }
}

void RecoveryDialog::takeOut(int row)
{
    {
        // The list moves its current row before the row is gone.
        const QSignalBlocker blocker(m_list);
        delete m_list->takeTopLevelItem(row);
    }
    m_entries.removeAt(row);
    if (m_entries.isEmpty())
        accept();
    else
        showCurrent();
}
