#include "shell/welcome_page.h"

#include "shell/recent_projects_list.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

constexpr int contentWidth = 860; // pixels at most
constexpr int actionsWidth = 260;
constexpr int logoSize = 56;
constexpr int iconSize = 22;

QLabel *createLabel(const QString &text, const char *role)
{
    auto *label = new QLabel(text);
    label->setObjectName(QLatin1String(role));
    label->setIndent(0);
    return label;
}

QVBoxLayout *columnLayout(QWidget *column)
{
    auto *layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    return layout;
}

} // namespace

WelcomePage::WelcomePage(QWidget *parent)
    : QWidget(parent),
      m_recent(new RecentProjectsList),
      m_noRecent(createLabel(QStringLiteral("还没有打开过项目。\n新建一个项目，或者从示例开始。"),
                             "welcomeHint")),
      m_clearRecent(new QPushButton(QStringLiteral("清空列表")))
{
    setObjectName(QStringLiteral("welcomePage"));
    setAttribute(Qt::WA_StyledBackground);
    auto *columns = new QHBoxLayout;
    columns->setSpacing(48);
    columns->addWidget(createActions());
    columns->addWidget(createRecent(), 1);
    auto *content = new QWidget;
    content->setMaximumWidth(contentWidth);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(32, 56, 32, 32);
    layout->setSpacing(36);
    layout->addWidget(createHeader());
    layout->addLayout(columns, 1);
    auto *page = new QWidget;
    page->setObjectName(QStringLiteral("welcomePage"));
    auto *row = new QHBoxLayout(page);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch(1);
    row->addWidget(content, 1000);
    row->addStretch(1);
    // So that a low window is not forced to the height of the page.
    auto *area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(page);
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
    setRecentProjects({});
}

QWidget *WelcomePage::createHeader()
{
    auto *header = new QWidget;
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(18);
    auto *logo = new QLabel;
    logo->setPixmap(QIcon(QStringLiteral(":/icons/vl_ide_v2.svg")).pixmap(logoSize, logoSize));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(createLabel(QStringLiteral("Vorel VorelDesk"), "welcomeTitle"));
    texts->addWidget(createLabel(QStringLiteral("全中文可视化开发环境"), "welcomeHint"));
    layout->addWidget(logo);
    layout->addLayout(texts);
    layout->addStretch();
    return header;
}

void WelcomePage::addAction(QVBoxLayout *layout, const QString &text, const QString &hint,
                            const QString &icon, void (WelcomePage::*signal)())
{
    auto *button = new QPushButton(text);
    button->setObjectName(QStringLiteral("welcomeAction"));
    button->setIcon(QIcon(QStringLiteral(":/icons/welcome_%1.svg").arg(icon)));
    button->setIconSize({iconSize, iconSize});
    button->setToolTip(hint);
    button->setAccessibleDescription(hint);
    button->setCursor(Qt::PointingHandCursor);
    connect(button, &QPushButton::clicked, this, signal);
    layout->addWidget(button);
}

QWidget *WelcomePage::createActions()
{
    auto *column = new QWidget;
    column->setFixedWidth(actionsWidth);
    QVBoxLayout *layout = columnLayout(column);
    layout->addWidget(createLabel(QStringLiteral("开始"), "welcomeHeading"));
    addAction(layout, QStringLiteral("新建项目"), QStringLiteral("选择种类，做一个新程序"),
              QStringLiteral("new"), &WelcomePage::newProjectRequested);
    addAction(layout, QStringLiteral("打开项目"), QStringLiteral("打开一个 .vlproj 项目文件"),
              QStringLiteral("open"), &WelcomePage::openProjectRequested);
    addAction(layout, QStringLiteral("打开文件"), QStringLiteral("打开一个源代码文件或窗口文件"),
              QStringLiteral("file"), &WelcomePage::openFileRequested);
    layout->addSpacing(18);
    layout->addWidget(createLabel(QStringLiteral("学习"), "welcomeHeading"));
    addAction(layout, QStringLiteral("示例"), QStringLiteral("打开做好的程序，看看怎么写"),
              QStringLiteral("examples"), &WelcomePage::viewExamplesRequested);
    addAction(layout, QStringLiteral("使用文档"), QStringLiteral("阅读语言和界面的说明"),
              QStringLiteral("docs"), &WelcomePage::openDocumentationRequested);
    layout->addStretch();
    return column;
}

QWidget *WelcomePage::createRecent()
{
    auto *column = new QWidget;
    QVBoxLayout *layout = columnLayout(column);
    auto *title = new QHBoxLayout;
    title->addWidget(createLabel(QStringLiteral("最近项目"), "welcomeHeading"));
    title->addStretch();
    title->addWidget(m_clearRecent);
    m_clearRecent->setObjectName(QStringLiteral("welcomeLink"));
    m_clearRecent->setCursor(Qt::PointingHandCursor);
    m_clearRecent->setToolTip(QStringLiteral("从列表中移除所有项目，项目本身不会被删除"));
    layout->addLayout(title);
    layout->addWidget(m_recent, 1);
    layout->addWidget(m_noRecent, 1);
    m_noRecent->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    connect(m_clearRecent, &QPushButton::clicked, this,
            &WelcomePage::clearAllRecentProjectsRequested);
    connect(m_recent, &RecentProjectsList::openRequested, this,
            &WelcomePage::openRecentProjectRequested);
    // Later: the answer fills the list anew, which must not happen in the midst of its event.
    connect(m_recent, &RecentProjectsList::removeRequested, this,
            &WelcomePage::removeRecentProjectRequested, Qt::QueuedConnection);
    return column;
}

void WelcomePage::setRecentProjects(const QStringList &projectFiles)
{
    m_recent->setProjects(projectFiles);
    m_recent->setVisible(!projectFiles.isEmpty());
    m_clearRecent->setVisible(!projectFiles.isEmpty());
    m_noRecent->setVisible(projectFiles.isEmpty());
}
