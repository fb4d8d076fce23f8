#include "editor/popup_place.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

constexpr int gap = 2; // pixels

QRect keptOn(const QRect &screen, QRect place)
{
    place.setSize(place.size().boundedTo(screen.size()));
    place.moveLeft(qBound(screen.left(), place.left(), screen.right() + 1 - place.width()));
    place.moveTop(qBound(screen.top(), place.top(), screen.bottom() + 1 - place.height()));
    return place;
}

QRect below(const QRect &caret, const QSize &size)
{
    return {QPoint(caret.left(), caret.bottom() + 1 + gap), size};
}

QRect above(const QRect &caret, const QSize &size)
{
    return {QPoint(caret.left(), caret.top() - gap - size.height()), size};
}

} // namespace

QRect PopupPlace::screenAt(const QPoint &place)
{
    const QScreen *screen = QGuiApplication::screenAt(place);
    return (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
}

QRect PopupPlace::list(const QRect &caret, const QSize &size, const QRect &screen)
{
    const int roomBelow = screen.bottom() - caret.bottom() - gap;
    const int roomAbove = caret.top() - screen.top() - gap;
    const bool isBelow = roomBelow >= size.height() || roomBelow >= roomAbove;
    const QSize fitting = size.boundedTo(QSize(screen.width(), isBelow ? roomBelow : roomAbove));
    return keptOn(screen, isBelow ? below(caret, fitting) : above(caret, fitting));
}

QRect PopupPlace::help(const QRect &list, const QSize &size, const QRect &screen)
{
    const int right = list.right() + 1 + gap;
    const int left = list.left() - gap - size.width();
    if (right + size.width() <= screen.right() + 1)
        return keptOn(screen, {QPoint(right, list.top()), size});
    return left < screen.left() ? QRect() : keptOn(screen, {QPoint(left, list.top()), size});
}

QRect PopupPlace::hint(const QRect &caret, const QSize &size, const QRect &list,
                       const QRect &screen)
{
    const QRect beyond = list.top() > caret.top() ? below(list, size) : above(list, size);
    for (QRect place : {above(caret, size), below(caret, size), beyond}) {
        place.moveLeft(qBound(screen.left(), caret.left(), screen.right() + 1 - size.width()));
        if (screen.top() <= place.top() && place.bottom() <= screen.bottom() &&
            !place.intersects(list))
            return keptOn(screen, place);
    }
    return keptOn(screen, above(caret, size));
}
