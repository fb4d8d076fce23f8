#include "shell/status_line.h"

#include <QLabel>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolButton>

namespace {

constexpr int progressWidth = 160; // logical pixels

} // namespace

StatusLine::StatusLine(QStatusBar *bar)
    : QObject(bar),
      m_message(new QLabel(QStringLiteral("就绪"), bar)),
      m_progress(new QProgressBar(bar)),
      m_issues(new QToolButton(bar)),
      m_position(new QLabel(bar))
{
    m_message->setObjectName(QStringLiteral("statusMessage"));
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_progress->setObjectName(QStringLiteral("buildProgress"));
    m_progress->setAccessibleName(QStringLiteral("编译进度"));
    m_progress->setFixedWidth(progressWidth);
    m_progress->setMaximumHeight(m_message->sizeHint().height());
    m_progress->hide();
    m_issues->setAutoRaise(true);
    m_issues->setAccessibleName(QStringLiteral("错误和警告"));
    m_issues->setToolTip(QStringLiteral("显示错误列表"));
    m_position->setObjectName(QStringLiteral("cursorPosition"));
    m_position->setContentsMargins(8, 0, 8, 0);
    bar->addWidget(m_message, 1);
    bar->addPermanentWidget(m_progress);
    bar->addPermanentWidget(m_issues);
    bar->addPermanentWidget(m_position);
    setIssueCounts(0, 0);
    connect(m_issues, &QToolButton::clicked, this, &StatusLine::issuesClicked);
}

void StatusLine::showMessage(const QString &sentence)
{
    m_message->setText(sentence);
    m_message->setToolTip(sentence);
}

void StatusLine::showProgress(int percent, const QString &stage)
{
    m_progress->show();
    m_progress->setValue(percent);
    showMessage(stage);
}

void StatusLine::hideProgress()
{
    m_progress->hide();
}

void StatusLine::setPosition(int line, int column)
{
    m_position->setText(QStringLiteral("行 %1，列 %2").arg(line).arg(column));
}

void StatusLine::clearPosition()
{
    m_position->clear();
}

void StatusLine::setIssueCounts(int errors, int warnings)
{
    m_issues->setText(QStringLiteral("错误 %1  警告 %2").arg(errors).arg(warnings));
}
