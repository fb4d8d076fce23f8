#include "shell/dock_layout.h"

#include "catalog/json_table.h"

#include <QDockWidget>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QMainWindow>

namespace {

// Of a window at its usual size, in logical pixels.
constexpr int sideWidth = 250;
constexpr int outputHeight = 260;

Qt::DockWidgetArea areaOf(const QString &word)
{
    if (word == QLatin1String("left"))
        return Qt::LeftDockWidgetArea;
    return word == QLatin1String("right") ? Qt::RightDockWidgetArea : Qt::BottomDockWidgetArea;
}

QLabel *hintLabel(const QString &hint)
{
    auto *label = new QLabel(hint);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    label->setMargin(12);
    label->setEnabled(false);
    return label;
}

} // namespace

DockLayout::DockLayout(QMainWindow &window) : m_window(window)
{
    const QJsonArray rows = jsonTable(QStringLiteral(":/shell/docks.json")).array();
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        const QString name = row.value(QLatin1String("name")).toString();
        auto *dock = new QDockWidget(row.value(QLatin1String("title")).toString(), &window);
        dock->setObjectName(name);
        const QString hint = row.value(QLatin1String("hint")).toString();
        if (!hint.isEmpty())
            dock->setWidget(hintLabel(hint));
        m_docks.insert(name, dock);
        m_places << Place{name, areaOf(row.value(QLatin1String("area")).toString()),
                          row.value(QLatin1String("hidden")).toBool()};
    }
    window.setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    window.setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    window.setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    reset();
}

void DockLayout::setContent(const QString &name, QWidget *content)
{
    m_docks.value(name)->setWidget(content);
}

void DockLayout::reset()
{
    QHash<Qt::DockWidgetArea, QDockWidget *> first;
    for (const Place &place : qAsConst(m_places)) {
        QDockWidget *dock = m_docks.value(place.name);
        dock->setFloating(false);
        m_window.addDockWidget(place.area, dock);
        if (QDockWidget *front = first.value(place.area))
            m_window.tabifyDockWidget(front, dock);
        else
            first.insert(place.area, dock);
        dock->setVisible(!place.isHidden);
    }
    for (QDockWidget *front : qAsConst(first))
        front->raise();
    sizeDocks();
}

void DockLayout::sizeDocks()
{
    QList<QDockWidget *> sides;
    QList<QDockWidget *> bottoms;
    for (const Place &place : qAsConst(m_places)) {
        (place.area == Qt::BottomDockWidgetArea ? bottoms : sides) << m_docks.value(place.name);
    }
    QList<int> widths;
    for (int i = 0; i < sides.size(); ++i)
        widths << sideWidth;
    m_window.resizeDocks(sides, widths, Qt::Horizontal);
    m_window.resizeDocks(bottoms, {outputHeight}, Qt::Vertical);
}

void DockLayout::raise(const QString &name) const
{
    QDockWidget *dock = m_docks.value(name);
    dock->show();
    dock->raise();
}
