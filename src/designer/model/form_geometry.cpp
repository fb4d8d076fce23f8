#include "designer/model/form_geometry.h"

#include <algorithm>

namespace VL {

const DesignComponent *windowComponent(const QList<DesignComponent> &components)
{
    const auto window =
        std::find_if(components.begin(), components.end(),
                     [](const DesignComponent &component) { return component.type == Window; });
    return window == components.end() ? nullptr : &*window;
}

bool isSelfDrawn(const QList<DesignComponent> &components)
{
    return std::any_of(components.begin(), components.end(), [](const DesignComponent &component) {
        return component.properties.contains(QStringLiteral("_vlwin_type"));
    });
}

QPoint clientOrigin(const QList<DesignComponent> &components)
{
    const DesignComponent *window = windowComponent(components);
    if (!window)
        return {};
    const QPoint corner(window->x, window->y);
    if (isSelfDrawn(components))
        return corner;
    const QPoint origin = corner + QPoint(0, designTitleHeight);
    const bool drawn =
        std::all_of(components.begin(), components.end(), [&](const DesignComponent &component) {
            return component.type == Window ||
                   (component.x >= origin.x() && component.y >= origin.y());
        });
    return drawn ? origin : QPoint();
}

QRect tabPageArea(const DesignComponent &tabWidget)
{
    const QString position = tabWidget.properties.value(QStringLiteral("tabPosition")).toString();
    QRect area(0, 0, tabWidget.width, tabWidget.height);
    if (position == QStringLiteral("下方"))
        area.adjust(0, 0, 0, -designTabBarHeight);
    else if (position == QStringLiteral("左侧"))
        area.adjust(designTabBarWidth, 0, 0, 0);
    else if (position == QStringLiteral("右侧"))
        area.adjust(0, 0, -designTabBarWidth, 0);
    else
        area.adjust(0, designTabBarHeight, 0, 0);
    return area;
}

} // namespace VL
