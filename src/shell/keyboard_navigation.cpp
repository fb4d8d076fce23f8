#include "shell/keyboard_navigation.h"

#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/output_panel.h"

#include <QAbstractItemView>
#include <QDockWidget>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QMainWindow>
#include <QShortcut>

namespace {

bool takesKeys(const QWidget *widget)
{
    return widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus);
}

// What a user comes for: a list or a text before the buttons beside it.
QWidget *mainPart(QWidget *panel)
{
    if (panel->focusProxy())
        return panel->focusProxy();
    if (takesKeys(panel))
        return panel;
    const QList<QAbstractScrollArea *> areas = panel->findChildren<QAbstractScrollArea *>();
    for (QAbstractScrollArea *area : areas) {
        if (takesKeys(area) && area->isVisible())
            return area;
    }
    const QList<QWidget *> parts = panel->findChildren<QWidget *>();
    for (QWidget *part : parts) {
        if (takesKeys(part) && part->isVisible())
            return part;
    }
    return panel;
}

void focusMainPart(QWidget *panel)
{
    QWidget *part = mainPart(panel);
    part->window()->activateWindow();
    part->setFocus(Qt::ShortcutFocusReason);
    auto *rows = qobject_cast<QAbstractItemView *>(part);
    // Without a current row the first press of an arrow key would seem to do nothing.
    if (rows && !rows->currentIndex().isValid())
        rows->setCurrentIndex(rows->model()->index(0, 0));
}

} // namespace

KeyboardNavigation::KeyboardNavigation(QMainWindow &window, const DockLayout &docks,
                                       EditorTabs &tabs, OutputPanel &output)
    : QObject(&window), m_docks(docks), m_tabs(tabs), m_output(output)
{
    addKeys(window);
    for (QDockWidget *dock : docks.docks())
        dock->installEventFilter(this);
}

void KeyboardNavigation::addKeys(QMainWindow &window)
{
    QFile file(QStringLiteral(":/shell/editor_shortcuts.json"));
    if (!file.open(QIODevice::ReadOnly))
        qCritical("cannot read %s", qUtf8Printable(file.fileName()));
    const QJsonArray rows = QJsonDocument::fromJson(file.readAll()).array();
    const auto lead = [&window](const QJsonObject &row, auto there) {
        const QString keys = row.value(QLatin1String("keys")).toString();
        auto *shortcut = new QShortcut(QKeySequence(keys), &window);
        connect(shortcut, &QShortcut::activated, there);
    };
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        const QString dock = row.value(QLatin1String("dock")).toString();
        const int page = row.value(QLatin1String("tab")).toInt(-1);
        if (row.value(QLatin1String("editor")).toBool())
            lead(row, [this] { focusEditor(); });
        else if (page >= 0)
            lead(row, [this, page] { focusOutput(page); });
        else if (!dock.isEmpty())
            lead(row, [this, dock] { focusDock(dock); });
    }
}

void KeyboardNavigation::focusEditor()
{
    if (QWidget *page = m_tabs.currentWidget())
        focusMainPart(page);
}

void KeyboardNavigation::focusDock(const QString &name)
{
    QDockWidget *dock = m_docks.dock(name);
    if (!dock)
        return;
    m_docks.raise(name);
    focusMainPart(dock->widget());
}

void KeyboardNavigation::focusOutput(int page)
{
    m_docks.raise(QStringLiteral("OutputDock"));
    m_output.setCurrentIndex(page);
    focusMainPart(m_output.currentWidget());
}

bool KeyboardNavigation::eventFilter(QObject *watched, QEvent *event)
{
    // A dock gets the keys that nothing in it wanted.
    const bool leaves = event->type() == QEvent::KeyPress &&
                        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (!leaves)
        return QObject::eventFilter(watched, event);
    focusEditor();
    return true;
}
