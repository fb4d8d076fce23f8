#include "shell/frameless_main_window.h"

#include "shell/custom_title_bar.h"
#include "shell/frame_geometry.h"
#include "shell/native_frame.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

namespace {

constexpr int borderWidth = 5;  // logical pixels; what the mouse can grasp
constexpr int frameShade = 115; // percent

QVector<QRect> availableScreens()
{
    QVector<QRect> screens;
    // The primary screen comes first.
    for (const QScreen *screen : QGuiApplication::screens())
        screens += screen->availableGeometry();
    return screens;
}

} // namespace

FramelessMainWindow::FramelessMainWindow(QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                          Qt::WindowMinMaxButtonsHint),
      m_titleBar(new CustomTitleBar(this)),
      m_column(new QVBoxLayout(this)),
      m_systemMenu(new QMenu(this))
{
    setMouseTracking(true);
    m_column->setSpacing(0);
    m_column->addWidget(m_titleBar);
    // Children would inherit the pointer of the border.
    m_titleBar->setCursor(Qt::ArrowCursor);
    m_titleBar->setIcon(windowIcon());
    connectTitleBar();
    makeSystemMenu();
    followState();
}

void FramelessMainWindow::connectTitleBar()
{
    using Bar = CustomTitleBar;
    using Window = FramelessMainWindow;
    connect(m_titleBar, &Bar::minimizeClicked, this, &Window::onMinimizeClicked);
    connect(m_titleBar, &Bar::maximizeClicked, this, &Window::onMaximizeClicked);
    connect(m_titleBar, &Bar::closeClicked, this, &Window::onCloseClicked);
    connect(m_titleBar, &Bar::skinButtonClicked, this, &Window::onSkinButtonClicked);
    connect(m_titleBar, &Bar::doubleClicked, this, &Window::onTitleBarDoubleClicked);
    connect(m_titleBar, &Bar::systemMenuRequested, this, &Window::showSystemMenu);
    connect(m_titleBar, &Bar::moveStarted, this, [this] { windowHandle()->startSystemMove(); });
    connect(this, &QWidget::windowTitleChanged, this, &Window::followTitle);
    connect(this, &QWidget::windowIconChanged, m_titleBar, &Bar::setIcon);
}

void FramelessMainWindow::makeSystemMenu()
{
    m_restoreAction = m_systemMenu->addAction(QStringLiteral("还原(&R)"), this,
                                              &FramelessMainWindow::onMaximizeClicked);
    m_systemMenu->addAction(QStringLiteral("最小化(&N)"), this,
                            &FramelessMainWindow::onMinimizeClicked);
    m_maximizeAction = m_systemMenu->addAction(QStringLiteral("最大化(&X)"), this,
                                               &FramelessMainWindow::onMaximizeClicked);
    m_systemMenu->addSeparator();
    m_systemMenu->addAction(QStringLiteral("关闭(&C)"), this, &FramelessMainWindow::onCloseClicked);
    auto *const shortcut = new QShortcut(QKeySequence(Qt::ALT + Qt::Key_Space), this);
    connect(shortcut, &QShortcut::activated, this,
            [this] { showSystemMenu(m_titleBar->mapToGlobal(m_titleBar->rect().bottomLeft())); });
}

void FramelessMainWindow::setContent(QWidget *content)
{
    m_content = content;
    m_column->addWidget(content, 1);
    content->setCursor(Qt::ArrowCursor);
    content->setAutoFillBackground(true);
    content->installEventFilter(this);
    connect(content, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    setWindowTitle(content->windowTitle());
    setWindowModified(content->isWindowModified());
}

bool FramelessMainWindow::restoreFrame(const QByteArray &geometry)
{
    // From data that is cut off the widget would read zeros.
    if (geometry.size() != saveGeometry().size() || !restoreGeometry(geometry))
        return false;
    if (!isMaximized() && !isFullScreen())
        setGeometry(FrameGeometry::keptOnScreens(this->geometry(), availableScreens()));
    return true;
}

void FramelessMainWindow::onMinimizeClicked()
{
    showMinimized();
}

void FramelessMainWindow::onMaximizeClicked()
{
    if (isMaximized())
        showNormal();
    else
        showMaximized();
}

void FramelessMainWindow::onCloseClicked()
{
    close();
}

void FramelessMainWindow::onSkinButtonClicked()
{
    emit skinMenuRequested(m_titleBar->mapToGlobal(m_titleBar->rect().bottomRight()));
}

void FramelessMainWindow::onTitleBarDoubleClicked()
{
    onMaximizeClicked();
}

void FramelessMainWindow::onSkinChanged()
{
    update();
    if (windowHandle())
        NativeFrame::dress(winId(), palette().color(QPalette::Window).lightness() < 128);
}

bool FramelessMainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_content && event->type() == QEvent::ModifiedChange)
        setWindowModified(m_content->isWindowModified());
    // A content that closed itself leaves no empty frame behind.
    if (watched == m_content && event->type() == QEvent::HideToParent && !m_isClosing)
        close();
    return QWidget::eventFilter(watched, event);
}

void FramelessMainWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::WindowStateChange:
        followState();
        break;
    case QEvent::ActivationChange:
        m_titleBar->setActive(isActiveWindow());
        break;
    case QEvent::ModifiedChange:
        followTitle();
        break;
    case QEvent::PaletteChange:
        onSkinChanged();
        break;
    default:
        break;
    }
}

void FramelessMainWindow::closeEvent(QCloseEvent *event)
{
    const QScopedValueRollback<bool> closing(m_isClosing, true);
    event->setAccepted(!m_content || m_content->isHidden() || m_content->close());
}

void FramelessMainWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    onSkinChanged();
}

void FramelessMainWindow::mousePressEvent(QMouseEvent *event)
{
    const Qt::Edges edges = FrameGeometry::edgesAt(event->pos(), size(), borderWidth);
    if (event->button() == Qt::LeftButton && edges && canResize())
        windowHandle()->startSystemResize(edges);
}

void FramelessMainWindow::mouseMoveEvent(QMouseEvent *event)
{
    const Qt::Edges edges = FrameGeometry::edgesAt(event->pos(), size(), borderWidth);
    setCursor(canResize() ? FrameGeometry::cursorFor(edges) : Qt::ArrowCursor);
}

void FramelessMainWindow::leaveEvent(QEvent *)
{
    unsetCursor();
}

void FramelessMainWindow::paintEvent(QPaintEvent *)
{
    // Title bar and border are of one shade, a little off the content.
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window).darker(frameShade));
    if (!canResize())
        return;
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(0.25);
    painter.setPen(line);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

bool FramelessMainWindow::canResize() const
{
    return !isMaximized() && !isFullScreen();
}

void FramelessMainWindow::followState()
{
    const int margin = canResize() ? borderWidth : 0;
    m_column->setContentsMargins(margin, margin, margin, margin);
    m_titleBar->setMaximized(isMaximized());
    m_titleBar->setVisible(!isFullScreen());
    m_restoreAction->setEnabled(isMaximized());
    m_maximizeAction->setEnabled(!isMaximized());
}

void FramelessMainWindow::followTitle()
{
    QString title = windowTitle();
    title.replace(QStringLiteral("[*]"), isWindowModified() ? QStringLiteral("*") : QString());
    m_titleBar->setTitle(title);
}

void FramelessMainWindow::showSystemMenu(const QPoint &globalPosition)
{
    m_systemMenu->popup(globalPosition);
}
