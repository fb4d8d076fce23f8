#include "shell/code_outline.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace {

enum ItemRole
{
    LineRole = Qt::UserRole,
    EndLineRole,
    KeyRole,
    NameRole,
};

QString wordOf(CompletionKind kind)
{
    CompletionItem item;
    item.kind = kind;
    return item.kindWord();
}

int numberOf(const QTreeWidgetItem *item, ItemRole role)
{
    return item->data(0, role).toInt();
}

QString textOf(const QTreeWidgetItem *item, ItemRole role)
{
    return item->data(0, role).toString();
}

} // namespace

CodeOutline::CodeOutline(QWidget *parent)
    : QWidget(parent), m_filter(new QLineEdit(this)), m_tree(new QTreeWidget(this))
{
    m_filter->setPlaceholderText(QStringLiteral("筛选符号"));
    m_filter->setAccessibleName(QStringLiteral("筛选符号"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_tree->setAccessibleName(QStringLiteral("代码大纲"));
    m_tree->setColumnCount(2);
    m_tree->setHeaderLabels({QStringLiteral("符号"), QStringLiteral("行范围")});
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setStretchLastSection(false);
    m_tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_tree->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_filter);
    layout->addWidget(m_tree);
    setFocusProxy(m_tree);

    connect(m_filter, &QLineEdit::textChanged, this, &CodeOutline::applyFilter);
    connect(m_filter, &QLineEdit::returnPressed, this, &CodeOutline::activateFromFilter);
    connect(m_tree, &QTreeWidget::itemActivated, this,
            [this](const QTreeWidgetItem *item) { activate(item); });
    connect(m_tree, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem *item) { rememberFolding(item, true); });
    connect(m_tree, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem *item) { rememberFolding(item, false); });
}

void CodeOutline::setSymbols(const CodeSymbols &symbols)
{
    if (symbols == m_symbols)
        return;
    m_symbols = symbols;
    m_line = 0;
    const QTreeWidgetItem *current = m_tree->currentItem();
    const QString currentKey = current ? textOf(current, KeyRole) : QString();
    const int scrolled = m_tree->verticalScrollBar()->value();
    m_tree->setUpdatesEnabled(false);
    {
        const QScopedValueRollback<bool> updating(m_isUpdating, true);
        m_tree->clear();
        addNodes(m_tree->invisibleRootItem(), outlineOf(symbols));
    }
    applyFilter();
    for (QTreeWidgetItemIterator item(m_tree); *item && !currentKey.isEmpty(); ++item) {
        if (textOf(*item, KeyRole) == currentKey) {
            m_tree->setCurrentItem(*item);
            break;
        }
    }
    m_tree->verticalScrollBar()->setValue(scrolled);
    m_tree->setUpdatesEnabled(true);
}

void CodeOutline::addNodes(QTreeWidgetItem *parent, const QVector<OutlineNode> &nodes)
{
    for (const OutlineNode &node : nodes) {
        auto *item = new QTreeWidgetItem(parent, {node.text, node.range()});
        item->setData(0, LineRole, node.line);
        item->setData(0, EndLineRole, node.endLine);
        item->setData(0, KeyRole, node.key);
        item->setData(0, NameRole, node.name);
        item->setData(0, Qt::AccessibleTextRole, wordOf(node.kind) + QLatin1Char(' ') + node.name);
        item->setToolTip(0, node.text);
        addNodes(item, node.children);
    }
}

// Folding is the user's as long as nothing is sought; what is found is shown unfolded.
void CodeOutline::applyFilter()
{
    const QScopedValueRollback<bool> updating(m_isUpdating, true);
    const QString query = m_filter->text().trimmed();
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem *item = m_tree->topLevelItem(i);
        showMatches(item, query, false);
        item->setExpanded(!query.isEmpty() || !m_folded.contains(textOf(item, KeyRole)));
    }
}

// The members of a class that matches are all of interest.
bool CodeOutline::showMatches(QTreeWidgetItem *item, const QString &query, bool parentMatches)
{
    const bool matches = parentMatches || meansOutlineName(query, textOf(item, NameRole));
    bool isShown = matches;
    for (int i = 0; i < item->childCount(); ++i)
        isShown = showMatches(item->child(i), query, matches) || isShown;
    item->setHidden(!isShown);
    return isShown;
}

void CodeOutline::rememberFolding(QTreeWidgetItem *item, bool isFolded)
{
    if (m_isUpdating || !m_filter->text().trimmed().isEmpty())
        return;
    if (isFolded)
        m_folded.insert(textOf(item, KeyRole));
    else
        m_folded.remove(textOf(item, KeyRole));
}

void CodeOutline::setCurrentLine(int line)
{
    // Most moves of a cursor stay in their line.
    if (line == m_line)
        return;
    m_line = line;
    QTreeWidgetItem *innermost = nullptr;
    for (QTreeWidgetItemIterator item(m_tree, QTreeWidgetItemIterator::NotHidden); *item; ++item) {
        const int begin = numberOf(*item, LineRole);
        const bool holds = begin <= line && line <= numberOf(*item, EndLineRole);
        if (holds && (!innermost || begin >= numberOf(innermost, LineRole)))
            innermost = *item;
    }
    QTreeWidgetItem *parent = innermost ? innermost->parent() : nullptr;
    if (parent && !parent->isExpanded())
        innermost = parent;
    if (m_tree->currentItem() != innermost)
        m_tree->setCurrentItem(innermost);
}

void CodeOutline::activate(const QTreeWidgetItem *item)
{
    if (item)
        emit lineActivated(numberOf(item, LineRole));
}

QTreeWidgetItem *CodeOutline::firstMatch() const
{
    const QString query = m_filter->text().trimmed();
    for (QTreeWidgetItemIterator item(m_tree, QTreeWidgetItemIterator::NotHidden); *item; ++item) {
        if (meansOutlineName(query, textOf(*item, NameRole)))
            return *item;
    }
    return nullptr;
}

void CodeOutline::activateFromFilter()
{
    QTreeWidgetItem *match = firstMatch();
    m_tree->setCurrentItem(match);
    activate(match);
}

bool CodeOutline::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_filter || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Down:
        m_tree->setCurrentItem(firstMatch());
        m_tree->setFocus(Qt::ShortcutFocusReason);
        return true;
    case Qt::Key_Escape:
        if (m_filter->text().isEmpty())
            break;
        m_filter->clear();
        return true;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}
