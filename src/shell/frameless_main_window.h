// The outermost window: VorelDesk's own frame around any widget.
#pragma once

#include <QPointer>
#include <QWidget>

class CustomTitleBar;
class QMenu;
class QVBoxLayout;

// Holds the content below a title bar. Title and mark of unsaved changes follow the content; the
// window closes only when the content does, and with it. Moved by the title bar, sized by its
// border, both through the window manager.
class FramelessMainWindow : public QWidget
{
    Q_OBJECT

public:
    explicit FramelessMainWindow(QWidget *parent = nullptr);

    // Takes `content` over; once.
    void setContent(QWidget *content);
    QWidget *content() const { return m_content; }
    CustomTitleBar *titleBar() const { return m_titleBar; }

    // What `QWidget::saveGeometry` gave, applied so that the window lies on the screens there are.
    // False, and nothing changes, when the data is not valid.
    [[nodiscard]] bool restoreFrame(const QByteArray &geometry);

    // The menu of Alt+Space, as the state of the window allows.
    QMenu *systemMenu() const { return m_systemMenu; }

public slots:
    void onMinimizeClicked();
    void onMaximizeClicked();
    void onCloseClicked();
    void onSkinButtonClicked();
    void onTitleBarDoubleClicked();
    // The palette is another one.
    void onSkinChanged();

signals:
    // Where a menu of skins should open, in global coordinates.
    void skinMenuRequested(const QPoint &globalPosition);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool canResize() const;
    void connectTitleBar();
    void makeSystemMenu();
    void followState();
    void followTitle();
    void showSystemMenu(const QPoint &globalPosition);

    CustomTitleBar *m_titleBar;
    QVBoxLayout *m_column;
    QPointer<QWidget> m_content;
    QMenu *m_systemMenu;
    QAction *m_restoreAction = nullptr;
    QAction *m_maximizeAction = nullptr;
    bool m_isClosing = false;
};
