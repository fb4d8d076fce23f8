// Where the small windows of completion stand around the line that is being written.
#pragma once

#include <QRect>
#include <QSize>

// All rectangles are global, in logical pixels. Nothing leaves the screen.
namespace PopupPlace {

// What windows may cover of the screen at a place, or of the first one.
QRect screenAt(const QPoint &place);

// The list: below the caret, above it where there is more room.
QRect list(const QRect &caret, const QSize &size, const QRect &screen);
// The help: beside the list, right of it where there is room; null where there is none on either
// side.
QRect help(const QRect &list, const QSize &size, const QRect &screen);
// The parameter hint: above the caret's line, below it where the list or the screen's edge leaves
// no room; a null `list` is none.
QRect hint(const QRect &caret, const QSize &size, const QRect &list, const QRect &screen);

} // namespace PopupPlace
