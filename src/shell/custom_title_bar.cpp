#include "shell/custom_title_bar.h"

#include "shell/title_bar_button.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMouseEvent>

namespace {

constexpr int barHeight = 32; // logical pixels
constexpr int iconSize = 16;

TitleBarButton *addButton(CustomTitleBar *bar, QHBoxLayout *row, TitleBarButton::Sign sign,
                          void (CustomTitleBar::*clicked)())
{
    auto *const button = new TitleBarButton(sign, bar);
    QObject::connect(button, &QAbstractButton::clicked, bar, clicked);
    row->addWidget(button);
    return button;
}

} // namespace

CustomTitleBar::CustomTitleBar(QWidget *parent)
    : QWidget(parent), m_icon(new QLabel(this)), m_text(new QLabel(this))
{
    using Sign = TitleBarButton::Sign;
    setAccessibleName(QStringLiteral("标题栏"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_text->setTextFormat(Qt::PlainText);
    // The title never keeps the window from being narrow.
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(8, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_icon);
    row->addSpacing(8);
    row->addWidget(m_text, 1);
    row->addSpacing(8);
    addButton(this, row, Sign::Skin, &CustomTitleBar::skinButtonClicked);
    addButton(this, row, Sign::Minimize, &CustomTitleBar::minimizeClicked);
    m_maximize = addButton(this, row, Sign::Maximize, &CustomTitleBar::maximizeClicked);
    addButton(this, row, Sign::Close, &CustomTitleBar::closeClicked);
}

QSize CustomTitleBar::sizeHint() const
{
    return {QWidget::sizeHint().width(), barHeight};
}

void CustomTitleBar::setTitle(const QString &title)
{
    m_title = title;
    m_text->setAccessibleName(title);
    showTitle();
}

void CustomTitleBar::setIcon(const QIcon &icon)
{
    m_icon->setPixmap(icon.pixmap(window()->windowHandle(), QSize(iconSize, iconSize)));
    m_icon->setVisible(!icon.isNull());
}

void CustomTitleBar::setMaximized(bool isMaximized)
{
    m_maximize->setSign(isMaximized ? TitleBarButton::Sign::Restore
                                    : TitleBarButton::Sign::Maximize);
}

void CustomTitleBar::setActive(bool isActive)
{
    m_isActive = isActive;
    QPalette dimmed = palette();
    if (!isActive)
        dimmed.setColor(QPalette::WindowText, palette().color(QPalette::Disabled, QPalette::Text));
    m_text->setPalette(dimmed);
}

void CustomTitleBar::showTitle()
{
    m_text->setText(m_text->fontMetrics().elidedText(m_title, Qt::ElideRight, m_text->width()));
}

void CustomTitleBar::mousePressEvent(QMouseEvent *event)
{
    m_isPressed = event->button() == Qt::LeftButton;
    m_pressedAt = event->pos();
}

void CustomTitleBar::mouseMoveEvent(QMouseEvent *event)
{
    // Not at the press itself: the window manager would take the second click of a double click.
    const int distance = (event->pos() - m_pressedAt).manhattanLength();
    if (!m_isPressed || distance < QApplication::startDragDistance())
        return;
    m_isPressed = false;
    emit moveStarted();
}

void CustomTitleBar::mouseReleaseEvent(QMouseEvent *)
{
    m_isPressed = false;
}

void CustomTitleBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        emit doubleClicked();
}

void CustomTitleBar::contextMenuEvent(QContextMenuEvent *event)
{
    emit systemMenuRequested(event->globalPos());
}

void CustomTitleBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The layout has given the label its width only now.
    layout()->activate();
    showTitle();
}

void CustomTitleBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setActive(m_isActive);
    else if (event->type() == QEvent::FontChange)
        showTitle();
}
