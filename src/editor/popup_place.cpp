#include "editor/popup_place.h"

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
    const bool fitsRight = list.right() + 1 + gap + size.width() <= screen.right() + 1;
    const int left = fitsRight ? list.right() + 1 + gap : list.left() - gap - size.width();
    return keptOn(screen, {QPoint(left, list.top()), size});
}

QRect PopupPlace::hint(const QRect &caret, const QSize &size, const QRect &list,
                       const QRect &screen)
{
    const QRect top = above(caret, size);
    const bool fitsAbove = top.top() >= screen.top() && !top.intersects(list);
    QRect place = keptOn(screen, fitsAbove ? top : below(caret, size));
    if (place.intersects(list)) // neither side is free: beyond the list
        place.moveTop(list.top() >= caret.bottom() ? list.bottom() + 1 + gap
                                                   : list.top() - gap - size.height());
    return keptOn(screen, place);
}
