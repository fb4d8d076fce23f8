// The title bar that VorelDesk draws itself.
#pragma once

#include <QWidget>

class QLabel;
class TitleBarButton;

// Icon, title and the buttons of a window. It tells what the user wants and does nothing to the
// window itself.
class CustomTitleBar : public QWidget
{
    Q_OBJECT

public:
    explicit CustomTitleBar(QWidget *parent = nullptr);

    QString title() const { return m_title; }

    QSize sizeHint() const override;

public slots:
    // As it is to be shown; what does not fit is cut off with "…".
    void setTitle(const QString &title);
    void setIcon(const QIcon &icon);
    // Whether the button in the middle restores the window.
    void setMaximized(bool isMaximized);
    // The title of a window that is not active is dimmed.
    void setActive(bool isActive);

signals:
    void minimizeClicked();
    void maximizeClicked();
    void closeClicked();
    void skinButtonClicked();
    void doubleClicked();
    // The mouse began to drag the bar.
    void moveStarted();
    void systemMenuRequested(const QPoint &globalPosition);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void showTitle();

    QLabel *m_icon;
    QLabel *m_text;
    TitleBarButton *m_maximize;
    QString m_title;
    bool m_isActive = true;
    bool m_isPressed = false;
    QPoint m_pressedAt;
};
