#include "shell/color_button.h"

#include <QColorDialog>
#include <QPainter>

ColorButton::ColorButton(QWidget *parent) : QPushButton(parent)
{
    setAutoDefault(false);
    setIconSize(QSize(28, 16));
    setMinimumWidth(iconSize().width() +
                    fontMetrics().horizontalAdvance(QStringLiteral("#DDDDDD")) + 24);
    connect(this, &QPushButton::clicked, this, &ColorButton::choose);
}

void ColorButton::setColor(const QColor &color)
{
    if (!color.isValid() || color == m_color)
        return;
    m_color = color;
    QPixmap swatch(iconSize());
    swatch.fill(color);
    QPainter painter(&swatch);
    painter.setPen(QColor(255, 255, 255, 90));
    painter.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    setIcon(swatch);
    setText(color.name().toUpper());
}

void ColorButton::choose()
{
    const QColor chosen = QColorDialog::getColor(m_color, this, accessibleName());
    if (!chosen.isValid() || chosen == m_color)
        return;
    setColor(chosen);
    emit colorChosen(chosen);
}
