#include "shell/command_library_panel.h"

#include "catalog/command_library.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTextDocument>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace {

// So many hits can be seen at once.
constexpr int mostOpen = 60;

// A row that is filled from its category when it is opened.
class CategoryItem : public QTreeWidgetItem
{
public:
    static constexpr int type = UserType + 1;

    CategoryItem(QTreeWidgetItem *parent, const CommandCategory &category, const QIcon &icon)
        : QTreeWidgetItem(parent, type), category(category)
    {
        setText(0, QStringLiteral("%1 (%2)").arg(category.title).arg(category.commandCount()));
        setIcon(0, icon);
        setChildIndicatorPolicy(ShowIndicator);
    }

    const CommandCategory &category;
    bool isFilled = false;
};

class CommandItem : public QTreeWidgetItem
{
public:
    static constexpr int type = UserType + 2;

    CommandItem(QTreeWidgetItem *parent, const CommandInfo &command)
        : QTreeWidgetItem(parent, type), name(command.name)
    {
        setText(0, commandCaption(command));
        const QString tip = command.syntax.isEmpty() ? command.name : command.syntax;
        setToolTip(0, Qt::convertFromPlainText(tip));
    }

    const QString name;
};

// Null for a category.
const CommandItem *commandOf(const QTreeWidgetItem *item)
{
    return item && item->type() == CommandItem::type ? static_cast<const CommandItem *>(item)
                                                     : nullptr;
}

} // namespace

CommandLibraryPanel::CommandLibraryPanel(const CommandLibrary &library, QWidget *parent)
    : QWidget(parent),
      m_library(library),
      m_categoryIcon(QStringLiteral(":/icons/tree_folder.svg")),
      m_filter(new QLineEdit),
      m_tree(new QTreeWidget),
      m_nothing(new QLabel(QStringLiteral("没有找到这样的命令。")))
{
    m_filter->setPlaceholderText(QStringLiteral("查找命令：名称或拼音首字母"));
    m_filter->setAccessibleName(QStringLiteral("查找命令"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_nothing->setObjectName(QStringLiteral("hint"));
    m_nothing->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    createTree();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->setSpacing(4);
    layout->addWidget(m_filter);
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_nothing, 1);
    connect(m_filter, &QLineEdit::textChanged, this, &CommandLibraryPanel::showFilter);
    showFilter(QString());
}

void CommandLibraryPanel::createTree()
{
    m_tree->setHeaderHidden(true);
    m_tree->setAccessibleName(QStringLiteral("支持库命令"));
    m_tree->setUniformRowHeights(true);
    m_tree->setFrameShape(QFrame::NoFrame);
    connect(m_tree, &QTreeWidget::itemExpanded, this, &CommandLibraryPanel::fill);
    connect(m_tree, &QTreeWidget::itemClicked, this, [this](const QTreeWidgetItem *item) {
        if (const CommandItem *command = commandOf(item))
            emit commandSelected(command->name);
    });
    connect(m_tree, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem *item) {
        // A button that goes down will come up as a click.
        const CommandItem *command = commandOf(item);
        if (command && m_tree->hasFocus() && QApplication::mouseButtons() == Qt::NoButton)
            emit commandSelected(command->name);
    });
    connect(m_tree, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem *item) {
        if (const CommandItem *command = commandOf(item))
            emit commandDoubleClicked(command->name);
    });
}

void CommandLibraryPanel::showFilter(const QString &text)
{
    if (text.trimmed().isEmpty()) {
        showCommands(commandsByCategory(m_library), false);
        return;
    }
    if (!m_search)
        m_search.emplace(m_library);
    const QList<const CommandInfo *> found = m_search->find(text);
    showCommands(found, found.size() <= mostOpen);
    if (found.size() > mostOpen)
        openFirst();
}

void CommandLibraryPanel::showCommands(const QList<const CommandInfo *> &commands, bool openAll)
{
    m_tree->clear(); // its rows refer to the categories
    m_top = commandTree(commands);
    addCategories(m_tree->invisibleRootItem(), m_top);
    if (openAll)
        m_tree->expandAll();
    m_tree->setVisible(!commands.isEmpty());
    m_nothing->setVisible(commands.isEmpty());
}

void CommandLibraryPanel::addCategories(QTreeWidgetItem *parent, const CommandCategory &category)
{
    for (const CommandCategory &child : category.children)
        new CategoryItem(parent, child, m_categoryIcon);
}

void CommandLibraryPanel::fill(QTreeWidgetItem *item)
{
    if (item->type() != CategoryItem::type)
        return;
    auto *row = static_cast<CategoryItem *>(item);
    if (row->isFilled)
        return;
    row->isFilled = true;
    addCategories(row, row->category);
    for (const CommandInfo *command : row->category.commands)
        new CommandItem(row, *command);
}

// Down to the first command, which is the best hit.
void CommandLibraryPanel::openFirst()
{
    QTreeWidgetItem *item = m_tree->topLevelItem(0);
    while (item && item->type() == CategoryItem::type) {
        item->setExpanded(true);
        item = item->child(0);
    }
}

void CommandLibraryPanel::goToFirstCommand()
{
    openFirst();
    for (QTreeWidgetItemIterator item(m_tree); *item; ++item) {
        if (commandOf(*item)) {
            m_tree->setFocus();
            m_tree->setCurrentItem(*item);
            return;
        }
    }
}

bool CommandLibraryPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter) {
            goToFirstCommand();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
