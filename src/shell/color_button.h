// ColorButton: shows a colour and lets the user choose another one.
#pragma once

#include <QColor>
#include <QPushButton>

class ColorButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ColorButton(QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    // Does nothing for an invalid one.
    void setColor(const QColor &color);

signals:
    // By the user.
    void colorChosen(const QColor &color);

private:
    void choose();

    QColor m_color;
};
