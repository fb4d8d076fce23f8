#include "shell/external_change_dialog.h"

#include "shell/difference_view.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize plainSize(620, 260);
constexpr QSize comparingSize(980, 640);

} // namespace

ExternalChangeDialog::ExternalChangeDialog(const QList<ExternalChange> &changes, QWidget *parent)
    : QDialog(parent),
      m_changes(changes),
      m_list(makeList()),
      m_difference(new DifferenceView(this))
{
    setWindowTitle(QStringLiteral("文件已在外部更改"));
    auto *text = new QLabel(
        QStringLiteral("下面的文件被其他程序更改，而编辑器中的内容与磁盘上的不同。"), this);
    text->setWordWrap(true);
    auto *column = new QVBoxLayout(this);
    column->addWidget(text);
    column->addWidget(m_list, 1);
    column->addWidget(m_difference, 4);
    column->addLayout(makeButtons());
    connect(m_list, &QTreeWidget::currentItemChanged, this, &ExternalChangeDialog::showCurrent);
    setComparing(false);
    m_list->setCurrentItem(m_list->topLevelItem(0));
    showCurrent();
}

QTreeWidget *ExternalChangeDialog::makeList()
{
    auto *list = new QTreeWidget(this);
    list->setHeaderLabels(
        {QStringLiteral("文件"), QStringLiteral("更改"), QStringLiteral("文件夹")});
    list->setRootIsDecorated(false);
    for (const ExternalChange &change : qAsConst(m_changes)) {
        const QFileInfo info(change.path);
        new QTreeWidgetItem(
            list, {info.fileName(),
                   change.isRemoved ? QStringLiteral("已被删除") : QStringLiteral("内容已改"),
                   QDir::toNativeSeparators(info.path())});
    }
    list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    return list;
}

QLayout *ExternalChangeDialog::makeButtons()
{
    using Dialog = ExternalChangeDialog;
    auto *row = new QHBoxLayout;
    const auto add = [&](const QString &text, auto slot) {
        auto *button = new QPushButton(text, this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, slot);
        row->addWidget(button);
        return button;
    };
    m_keep = add(QString(), &Dialog::keepCurrent);
    m_keep->setDefault(true);
    m_useDisk = add(QString(), &Dialog::useDiskForCurrent);
    m_compare = add(QStringLiteral("比较"), &Dialog::setComparing);
    m_compare->setCheckable(true);
    row->addStretch();
    // What is not decided is kept.
    QPushButton *keepAll = add(QStringLiteral("全部保留我的"), &QDialog::accept);
    m_useDiskForAll = add(QStringLiteral("全部使用磁盘上的"), &Dialog::useDiskForAll);
    m_useDiskForAll->setToolTip(QStringLiteral("已被删除的文件除外"));
    for (QPushButton *button : {keepAll, m_useDiskForAll})
        button->setVisible(m_changes.size() > 1);
    return row;
}

int ExternalChangeDialog::currentRow() const
{
    return m_list->indexOfTopLevelItem(m_list->currentItem());
}

void ExternalChangeDialog::showCurrent()
{
    const int row = currentRow();
    for (QPushButton *button : {m_keep, m_useDisk, m_compare})
        button->setEnabled(row >= 0);
    m_useDiskForAll->setEnabled(
        std::any_of(m_changes.begin(), m_changes.end(),
                    [](const ExternalChange &change) { return !change.isRemoved; }));
    if (row < 0)
        return;
    const ExternalChange &change = m_changes.at(row);
    m_keep->setText(change.isRemoved ? QStringLiteral("保留在编辑器中")
                                     : QStringLiteral("保留我的"));
    m_useDisk->setText(change.isRemoved ? QStringLiteral("关闭") : QStringLiteral("使用磁盘上的"));
    if (m_compare->isChecked()) {
        m_difference->setTexts(DifferenceView::fileOnDisk(change.path),
                               {QStringLiteral("编辑器中的内容"), change.text});
    }
}

void ExternalChangeDialog::setComparing(bool isComparing)
{
    m_difference->setVisible(isComparing);
    resize(isComparing ? comparingSize : plainSize);
    showCurrent();
}

void ExternalChangeDialog::keepCurrent()
{
    emit keepRequested(takeOut(currentRow()).path);
    closeWhenDone();
}

void ExternalChangeDialog::useDiskForCurrent()
{
    const ExternalChange change = takeOut(currentRow());
    if (change.isRemoved)
        emit closeRequested(change.path);
    else
        emit reloadRequested(change.path);
    closeWhenDone();
}

// A removed file's text is the only one left: it is closed only on its own.
void ExternalChangeDialog::useDiskForAll()
{
    for (int row = m_changes.size() - 1; row >= 0; --row) {
        if (!m_changes.at(row).isRemoved)
            emit reloadRequested(takeOut(row).path);
    }
    closeWhenDone();
}

ExternalChange ExternalChangeDialog::takeOut(int row)
{
    const QSignalBlocker blocker(m_list);
    delete m_list->takeTopLevelItem(row);
    return m_changes.takeAt(row);
}

void ExternalChangeDialog::closeWhenDone()
{
    if (m_changes.isEmpty())
        accept();
    else
        showCurrent();
}

void ExternalChangeDialog::done(int result)
{
    while (!m_changes.isEmpty())
        emit keepRequested(takeOut(0).path);
    QDialog::done(result);
}
