#include "shell/issue_filter_bar.h"

#include "shell/issue_colors.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

namespace {

QIcon dotIcon(const QColor &color)
{
    QPixmap picture(32, 32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(6, 6, 20, 20);
    return QIcon(picture);
}

} // namespace

IssueFilterBar::IssueFilterBar(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(4);
    for (const IssueKind kind : allIssueKinds) {
        auto *button = new QToolButton(this);
        button->setCheckable(true);
        button->setChecked(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setIcon(dotIcon(issueColor(kind)));
        button->setToolTip(QStringLiteral("显示或隐藏%1").arg(issueKindName(kind)));
        connect(button, &QToolButton::toggled, this,
                [this, kind](bool shown) { emit kindToggled(kind, shown); });
        layout->addWidget(button);
        m_buttons[static_cast<std::size_t>(kind)] = button;
    }
    layout->addStretch();
    setCounts(0, 0, 0);
}

QToolButton *IssueFilterBar::button(IssueKind kind) const
{
    return m_buttons[static_cast<std::size_t>(kind)];
}

void IssueFilterBar::setCounts(int errors, int warnings, int infos)
{
    const std::array<int, allIssueKinds.size()> counts{errors, warnings, infos};
    for (const IssueKind kind : allIssueKinds) {
        const int count = counts[static_cast<std::size_t>(kind)];
        const QString text = QStringLiteral("%1 %2").arg(issueKindName(kind)).arg(count);
        button(kind)->setText(text);
        button(kind)->setAccessibleName(text);
    }
}
