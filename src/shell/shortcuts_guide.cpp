#include "shell/shortcuts_guide.h"

#include "catalog/json_table.h"
#include "shell/action_set.h"

#include <QAction>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

QVector<ShortcutRow> editorShortcuts()
{
    QVector<ShortcutRow> rows;
    const QJsonArray table = jsonTable(QStringLiteral(":/shell/editor_shortcuts.json")).array();
    for (const QJsonValue &value : table) {
        const QJsonObject row = value.toObject();
        rows.append({row.value(QStringLiteral("group")).toString(),
                     row.value(QStringLiteral("name")).toString(),
                     row.value(QStringLiteral("keys")).toString()});
    }
    return rows;
}

QVector<ShortcutRow> actionShortcuts(const QString &group, const QList<QAction *> &actions)
{
    QVector<ShortcutRow> rows;
    for (const QAction *action : actions) {
        QStringList keys;
        for (const QKeySequence &sequence : action->shortcuts())
            keys.append(sequence.toString(QKeySequence::NativeText));
        if (!keys.isEmpty())
            rows.append({group, plainActionName(action->text()), keys.join(QStringLiteral("、"))});
    }
    return rows;
}

ShortcutsGuide::ShortcutsGuide(const QList<QAction *> &actions, QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("快捷键速查"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *rows = new QVBoxLayout(this);
    m_filter = new QLineEdit(this);
    m_filter->setPlaceholderText(QStringLiteral("按名称或按键筛选"));
    m_filter->setClearButtonEnabled(true);
    m_table = new QTreeWidget(this);
    m_table->setHeaderLabels({QStringLiteral("功能"), QStringLiteral("快捷键")});
    m_table->setRootIsDecorated(false);
    m_table->setIndentation(14);
    rows->addWidget(m_filter);
    rows->addWidget(m_table);
    connect(m_filter, &QLineEdit::textChanged, this, &ShortcutsGuide::filter);
    fill(actionShortcuts(QStringLiteral("菜单"), actions) + editorShortcuts());
    resize(520, 600);
    m_table->header()->resizeSection(0, 300);
}

void ShortcutsGuide::fill(const QVector<ShortcutRow> &rows)
{
    QTreeWidgetItem *group = nullptr;
    for (const ShortcutRow &row : rows) {
        if (!group || group->text(0) != row.group) {
            group = new QTreeWidgetItem(m_table, {row.group});
            group->setFirstColumnSpanned(true);
            group->setFlags(Qt::ItemIsEnabled);
            QFont bold = font();
            bold.setBold(true);
            group->setFont(0, bold);
        }
        new QTreeWidgetItem(group, {row.name, row.keys});
    }
    m_table->expandAll();
}

void ShortcutsGuide::filter(const QString &text)
{
    const QString wanted = text.trimmed();
    for (int i = 0; i < m_table->topLevelItemCount(); ++i) {
        QTreeWidgetItem *group = m_table->topLevelItem(i);
        bool isShown = false;
        for (int j = 0; j < group->childCount(); ++j) {
            QTreeWidgetItem *row = group->child(j);
            const bool matches = row->text(0).contains(wanted, Qt::CaseInsensitive) ||
                                 row->text(1).contains(wanted, Qt::CaseInsensitive);
            row->setHidden(!matches);
            isShown = isShown || matches;
        }
        group->setHidden(!isShown);
    }
}
