#include "shell/frame_geometry.h"

namespace {

// A corner is easier to hit than the frame is wide.
constexpr int cornerLength = 16;

qint64 area(const QRect &rect)
{
    return qint64(rect.width()) * rect.height();
}

} // namespace

Qt::Edges FrameGeometry::edgesAt(const QPoint &position, const QSize &size, int border)
{
    const QRect window(QPoint(0, 0), size);
    const QRect inner = window.adjusted(border, border, -border, -border);
    if (!window.contains(position) || inner.contains(position))
        return {};
    Qt::Edges edges;
    if (position.x() < cornerLength)
        edges |= Qt::LeftEdge;
    else if (position.x() >= size.width() - cornerLength)
        edges |= Qt::RightEdge;
    if (position.y() < cornerLength)
        edges |= Qt::TopEdge;
    else if (position.y() >= size.height() - cornerLength)
        edges |= Qt::BottomEdge;
    return edges;
}

Qt::CursorShape FrameGeometry::cursorFor(Qt::Edges edges)
{
    const bool isHorizontal = edges & (Qt::LeftEdge | Qt::RightEdge);
    const bool isVertical = edges & (Qt::TopEdge | Qt::BottomEdge);
    if (isHorizontal && isVertical) {
        const bool isLeft = edges & Qt::LeftEdge;
        const bool isTop = edges & Qt::TopEdge;
        return isLeft == isTop ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    if (isHorizontal)
        return Qt::SizeHorCursor;
    return isVertical ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

QRect FrameGeometry::keptOnScreens(const QRect &wanted, const QVector<QRect> &screens)
{
    if (screens.isEmpty())
        return wanted;
    QRect screen = screens.first();
    for (const QRect &other : screens) {
        if (area(other.intersected(wanted)) > area(screen.intersected(wanted)))
            screen = other;
    }
    QRect kept(wanted.topLeft(), wanted.size().boundedTo(screen.size()));
    kept.moveLeft(qBound(screen.left(), kept.left(), screen.right() - kept.width() + 1));
    kept.moveTop(qBound(screen.top(), kept.top(), screen.bottom() - kept.height() + 1));
    return kept;
}
