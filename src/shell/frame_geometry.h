// Where the frame of a window is grasped, and where a remembered window may lie.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>
#include <Qt>

namespace FrameGeometry {

// The edges that the mouse at `position` drags in a window of `size` whose frame is `border` wide
// (all in logical pixels); none in its middle. Near a corner, two.
Qt::Edges edgesAt(const QPoint &position, const QSize &size, int border);

// The pointer that shows what dragging `edges` does.
Qt::CursorShape cursorFor(Qt::Edges edges);

// `wanted`, made no larger than the screen that shows most of it (the first of `screens` when none
// shows any) and moved until it lies within. `screens` without the room of panels; with none of
// them, `wanted` as it is.
QRect keptOnScreens(const QRect &wanted, const QVector<QRect> &screens);

} // namespace FrameGeometry
