#include "shell/action_set.h"

#include "catalog/json_table.h"
#include "shell/tool_bars.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QToolBar>

namespace {

constexpr int toolBarIcon = 18; // logical pixels

QString text(const QJsonObject &row, const char *key)
{
    return row.value(QLatin1String(key)).toString();
}

} // namespace

QString plainActionName(QString text)
{
    static const QRegularExpression accessKey(QStringLiteral("\\(&.\\)|&"));
    static const QRegularExpression dots(QStringLiteral("\\.\\.\\.$"));
    return text.remove(accessKey).remove(dots).trimmed();
}

ActionSet::ActionSet(QWidget *receiver)
    : QObject(receiver), m_table(jsonTable(QStringLiteral(":/shell/actions.json")).object())
{
    const QJsonObject reasons = m_table.value(QLatin1String("conditions")).toObject();
    for (auto reason = reasons.begin(); reason != reasons.end(); ++reason)
        m_reasons.insert(reason.key(), reason.value().toString());
    const QJsonArray rows = m_table.value(QLatin1String("actions")).toArray();
    for (const QJsonValue &row : rows)
        addAction(row.toObject(), receiver);
}

void ActionSet::addAction(const QJsonObject &row, QWidget *receiver)
{
    auto *action = new QAction(text(row, "text"), receiver);
    action->setObjectName(text(row, "name"));
    const QString icon = text(row, "icon");
    if (!icon.isEmpty())
        action->setIcon(QIcon(QStringLiteral(":/icons/actions/%1.svg").arg(icon)));
    Entry entry{action, text(row, "shortcut"), text(row, "tip"), {}, text(row, "unavailable")};
    if (entry.tip.isEmpty())
        entry.tip = plainActionName(action->text());
    const QJsonArray needs = row.value(QLatin1String("needs")).toArray();
    for (const QJsonValue &need : needs)
        entry.needs << need.toString();
    const QString dock = text(row, "dock");
    if (!dock.isEmpty()) {
        action->setCheckable(true);
        m_docks.insert(action->objectName(), dock);
    }
    if (entry.unavailable.isEmpty())
        connectSlot(entry, text(row, "slot"), receiver);
    receiver->addAction(action);
    m_byName.insert(action->objectName(), action);
    m_entries << entry;
}

void ActionSet::connectSlot(Entry &entry, const QString &slot, QWidget *receiver)
{
    const QByteArray signature = slot.toLatin1() + "()";
    const QMetaObject *type = receiver->metaObject();
    const int method = type->indexOfSlot(signature);
    if (method < 0) {
        qCritical("no slot %s for %s", signature.constData(),
                  qUtf8Printable(entry.action->objectName()));
        entry.unavailable = QStringLiteral("此功能暂不可用。");
        return;
    }
    const QMetaObject *actionType = &QAction::staticMetaObject;
    connect(entry.action, actionType->method(actionType->indexOfSignal("triggered()")), receiver,
            type->method(method));
}

QAction *ActionSet::action(const QString &name) const
{
    return m_byName.value(name);
}

QList<QAction *> ActionSet::actions() const
{
    QList<QAction *> actions;
    for (const Entry &entry : m_entries)
        actions << entry.action;
    return actions;
}

void ActionSet::fillMenu(QMenu *menu, const QJsonArray &items)
{
    menu->setToolTipsVisible(true);
    for (const QJsonValue &item : items) {
        if (item.isObject()) {
            const QJsonObject row = item.toObject();
            QMenu *inner = menu->addMenu(text(row, "title"));
            m_menus.insert(text(row, "name"), inner);
            fillMenu(inner, row.value(QLatin1String("items")).toArray());
        } else if (QAction *known = action(item.toString())) {
            menu->addAction(known);
        } else {
            menu->addSeparator();
        }
    }
}

void ActionSet::fillMenuBar(QMainWindow &window)
{
    const QJsonArray menus = m_table.value(QLatin1String("menus")).toArray();
    for (const QJsonValue &value : menus) {
        const QJsonObject row = value.toObject();
        fillMenu(window.menuBar()->addMenu(text(row, "title")),
                 row.value(QLatin1String("items")).toArray());
    }
}

void ActionSet::fillToolBars(QMainWindow &window)
{
    const QJsonArray bars = m_table.value(QLatin1String("toolBars")).toArray();
    for (const QJsonValue &value : bars) {
        const QJsonObject row = value.toObject();
        QToolBar *bar = window.addToolBar(text(row, "title"));
        bar->setObjectName(text(row, "name"));
        bar->setIconSize(QSize(toolBarIcon, toolBarIcon));
        nameExtension(*bar);
        const QJsonArray items = row.value(QLatin1String("items")).toArray();
        for (const QJsonValue &item : items) {
            const QString label = text(item.toObject(), "text");
            const QString name =
                item.isObject() ? text(item.toObject(), "action") : item.toString();
            QAction *known = action(name);
            if (!known) {
                bar->addSeparator();
                continue;
            }
            if (!label.isEmpty())
                known->setIconText(label);
            bar->addAction(known);
        }
    }
}

QString ActionSet::obstacle(const Entry &entry, const QSet<QString> &holding) const
{
    for (const QString &need : entry.needs) {
        if (!holding.contains(need))
            return m_reasons.value(need, need);
    }
    return entry.unavailable;
}

void ActionSet::update(const QSet<QString> &holding)
{
    QSet<QString> taken;
    for (const Entry &entry : qAsConst(m_entries)) {
        const QString reason = obstacle(entry, holding);
        entry.action->setEnabled(reason.isEmpty());
        const bool hasShortcut =
            !entry.shortcut.isEmpty() && (!reason.isEmpty() || !taken.contains(entry.shortcut));
        if (reason.isEmpty())
            taken.insert(entry.shortcut);
        entry.action->setShortcut(hasShortcut ? QKeySequence(entry.shortcut) : QKeySequence());
        QString tip = entry.tip;
        if (hasShortcut)
            tip += QStringLiteral(" (%1)").arg(entry.shortcut);
        if (!reason.isEmpty())
            tip += QLatin1Char('\n') + reason;
        entry.action->setToolTip(tip);
    }
}
