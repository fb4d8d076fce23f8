// Where the components of a form stand inside the windows of the running program.
#pragma once

#include "designer/model/design_component.h"

#include <QPoint>
#include <QRect>

namespace VL {

// The title bar that the classic designer paints above a window's client area.
constexpr int designTitleHeight = 30;
// The tab bar of a design: its height at the top or bottom, its width at the left or right.
constexpr int designTabBarHeight = 25;
constexpr int designTabBarWidth = 60;

// The first component of type Window, or null.
const DesignComponent *windowComponent(const QList<DesignComponent> &components);
// Whether the form was drawn with the self-drawn designer.
bool isSelfDrawn(const QList<DesignComponent> &components);
// The point of the form's coordinates that is the upper left corner of the window's client area.
//
// In a form of the classic designer all components lie in the drawn client area, below the drawn
// title bar. A form with a component above or to the left of that area was written by hand, with
// positions that count from the client area itself.
QPoint clientOrigin(const QList<DesignComponent> &components);
// The area of a tab widget's pages, from its own upper left corner.
QRect tabPageArea(const DesignComponent &tabWidget);

} // namespace VL
