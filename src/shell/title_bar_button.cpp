#include "shell/title_bar_button.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int signSize = 10; // logical pixels, as wide as high

QString nameOf(TitleBarButton::Sign sign)
{
    switch (sign) {
    case TitleBarButton::Sign::Skin:
        return QStringLiteral("更换皮肤");
    case TitleBarButton::Sign::Minimize:
        return QStringLiteral("最小化");
    case TitleBarButton::Sign::Maximize:
        return QStringLiteral("最大化");
    case TitleBarButton::Sign::Restore:
        return QStringLiteral("还原");
    case TitleBarButton::Sign::Close:
        break;
    }
    return QStringLiteral("关闭");
}

// The signs within a square from (0, 0) to (signSize, signSize).

// A shirt.
QPainterPath skinSign()
{
    QPainterPath path;
    path.moveTo(3, 0);
    path.quadTo(5, 2.5, 7, 0);
    path.lineTo(10, 2);
    path.lineTo(9, 4.5);
    path.lineTo(7.75, 4);
    path.lineTo(7.75, 10);
    path.lineTo(2.25, 10);
    path.lineTo(2.25, 4);
    path.lineTo(1, 4.5);
    path.lineTo(0, 2);
    path.closeSubpath();
    return path;
}

QPainterPath restoreSign()
{
    QPainterPath path;
    path.addRect(0, 2, 8, 8);
    path.moveTo(2, 2);
    path.lineTo(2, 0);
    path.lineTo(10, 0);
    path.lineTo(10, 8);
    path.lineTo(8, 8);
    return path;
}

QPainterPath pathOf(TitleBarButton::Sign sign)
{
    QPainterPath path;
    switch (sign) {
    case TitleBarButton::Sign::Skin:
        return skinSign();
    case TitleBarButton::Sign::Restore:
        return restoreSign();
    case TitleBarButton::Sign::Minimize:
        path.moveTo(0, 5);
        path.lineTo(10, 5);
        break;
    case TitleBarButton::Sign::Maximize:
        path.addRect(0, 0, signSize, signSize);
        break;
    case TitleBarButton::Sign::Close:
        path.moveTo(0, 0);
        path.lineTo(10, 10);
        path.moveTo(10, 0);
        path.lineTo(0, 10);
        break;
    }
    return path;
}

} // namespace

TitleBarButton::TitleBarButton(Sign sign, QWidget *parent) : QAbstractButton(parent)
{
    setSign(sign);
    // The keyboard reaches what the buttons do through the window's menu.
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

void TitleBarButton::setSign(Sign sign)
{
    m_sign = sign;
    setAccessibleName(nameOf(sign));
    setToolTip(nameOf(sign));
    update();
}

QSize TitleBarButton::sizeHint() const
{
    return {46, 32};
}

void TitleBarButton::enterEvent(QEvent *event)
{
    update();
    QAbstractButton::enterEvent(event);
}

void TitleBarButton::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

void TitleBarButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor ink = palette().color(foregroundRole());
    const bool isClose = m_sign == Sign::Close;
    if (isEnabled() && (isDown() || underMouse())) {
        QColor ground = isClose ? QColor(0xc4, 0x2b, 0x1c) : ink;
        ground.setAlphaF(isClose ? (isDown() ? 0.8 : 1.0) : (isDown() ? 0.2 : 0.1));
        painter.fillRect(rect(), ground);
        if (isClose)
            ink = Qt::white;
    }
    // One pixel of the screen, or the nearest whole number of them, through their middles.
    const qreal ratio = devicePixelRatioF();
    const qreal width = qMax(1, qRound(ratio)) / ratio;
    const QPointF corner((rect().width() - signSize) / 2, (rect().height() - signSize) / 2);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(corner + QPointF(width / 2, width / 2));
    painter.setPen(QPen(ink, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawPath(pathOf(m_sign));
}
