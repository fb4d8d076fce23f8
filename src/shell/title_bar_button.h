// A flat button of the title bar whose sign is drawn as lines, sharp at every scale.
#pragma once

#include <QAbstractButton>

class TitleBarButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Sign
    {
        Skin,
        Minimize,
        Maximize,
        Restore,
        Close,
    };

    explicit TitleBarButton(Sign sign, QWidget *parent = nullptr);

    // Name for the tool tip and for assistive programs follow.
    void setSign(Sign sign);

    QSize sizeHint() const override;

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Sign m_sign;
};
