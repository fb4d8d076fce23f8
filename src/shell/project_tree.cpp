#include "shell/project_tree.h"

#include "project/project_manager.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QTextDocument>
#include <QTimer>
#include <QTreeWidgetItemIterator>

namespace {

enum Role
{
    KindRole = Qt::UserRole,
    PathRole,
    KeyRole, // tells an item from all others
    CaptionRole,
};

ProjectTreeKind kindOf(const QTreeWidgetItem *item)
{
    return item ? item->data(0, KindRole).value<ProjectTreeKind>() : ProjectTreeKind::None;
}

QString pathOf(const QTreeWidgetItem *item)
{
    return item ? item->data(0, PathRole).toString() : QString();
}

QString keyOf(const QTreeWidgetItem *item)
{
    return item ? item->data(0, KeyRole).toString() : QString();
}

bool isFile(const QTreeWidgetItem *item)
{
    return kindOf(item) >= ProjectTreeKind::Source;
}

QString shownPath(const QString &path)
{
    return Qt::convertFromPlainText(QDir::toNativeSeparators(path));
}

} // namespace

// Reading a picture for each row would take long.
void ProjectTree::readIcons()
{
    static const struct
    {
        ProjectTreeKind kind;
        const char *name;
    } names[] = {
        {ProjectTreeKind::Project, "project"},   {ProjectTreeKind::Group, "folder"},
        {ProjectTreeKind::Source, "source"},     {ProjectTreeKind::Class, "class"},
        {ProjectTreeKind::Type, "type"},         {ProjectTreeKind::Window, "window"},
        {ProjectTreeKind::Resource, "resource"},
    };
    for (const auto &icon : names) {
        m_icons[icon.kind] =
            QIcon(QStringLiteral(":/icons/tree_%1.svg").arg(QLatin1String(icon.name)));
    }
}

void ProjectTree::describe(QTreeWidgetItem *item, ProjectTreeKind kind, const QString &path,
                           const QString &key) const
{
    item->setIcon(0, m_icons.value(kind));
    item->setData(0, KindRole, QVariant::fromValue(kind));
    item->setData(0, PathRole, path);
    item->setData(0, KeyRole, key);
}

ProjectTree::ProjectTree(ProjectManager &manager, QWidget *parent)
    : QTreeWidget(parent), m_manager(manager)
{
    setHeaderHidden(true);
    setAccessibleName(QStringLiteral("项目文件"));
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(true);
    setFrameShape(QFrame::NoFrame);
    connect(this, &QTreeWidget::itemActivated, this, &ProjectTree::activate);
    connect(this, &QTreeWidget::itemExpanded, this,
            [this](const QTreeWidgetItem *item) { m_collapsed.remove(keyOf(item)); });
    connect(this, &QTreeWidget::itemCollapsed, this, [this](const QTreeWidgetItem *item) {
        if (!m_isRebuilding)
            m_collapsed.insert(keyOf(item));
    });
    readIcons();
    followManager();
    rebuild();
}

void ProjectTree::followManager()
{
    const auto follow = [this](auto signal) {
        connect(&m_manager, signal, this, &ProjectTree::scheduleRebuild);
    };
    follow(&ProjectManager::projectCreated);
    follow(&ProjectManager::projectOpened);
    follow(&ProjectManager::projectSaved);
    follow(qOverload<>(&ProjectManager::projectClosed));
    follow(&ProjectManager::activeProjectChanged);
    follow(&ProjectManager::fileAdded);
    follow(&ProjectManager::fileRemoved);
    follow(&ProjectManager::fileRenamed);
    follow(&ProjectManager::fileChanged);
    follow(&ProjectManager::mainWindowChanged);
    follow(&ProjectManager::startupWindowChanged);
}

// Several signals of one operation make one rebuilding.
void ProjectTree::scheduleRebuild()
{
    if (m_isScheduled)
        return;
    m_isScheduled = true;
    QTimer::singleShot(0, this, &ProjectTree::rebuild);
}

void ProjectTree::rebuild()
{
    m_isScheduled = false;
    m_isRebuilding = true;
    const QString selected = keyOf(currentItem());
    clear();
    const QString active = QFileInfo(m_manager.currentProject().path).canonicalFilePath();
    for (const QString &folder : m_manager.openProjects())
        addProject(folder, folder == active);
    if (QTreeWidgetItem *item = findItem(selected))
        setCurrentItem(item);
    m_isRebuilding = false;
}

void ProjectTree::addProject(const QString &folder, bool isActive)
{
    const VL::ProjectInfo info = m_manager.project(folder);
    auto *project = new QTreeWidgetItem(this);
    describe(project, ProjectTreeKind::Project, folder, folder);
    project->setText(0, info.name.isEmpty() ? QFileInfo(folder).fileName() : info.name);
    project->setToolTip(0, shownPath(folder));
    QFont font = project->font(0);
    font.setBold(isActive);
    project->setFont(0, font);
    QTreeWidgetItem *group = nullptr;
    ProjectTreeKind groupKind = ProjectTreeKind::None;
    for (const ProjectTreeEntry &entry : projectTreeEntries(info)) {
        if (entry.kind != groupKind) {
            groupKind = entry.kind;
            const QString title = projectGroupTitle(groupKind);
            group = new QTreeWidgetItem(project, {title});
            describe(group, ProjectTreeKind::Group, {}, folder + QLatin1Char('|') + title);
            group->setExpanded(!m_collapsed.contains(keyOf(group)));
        }
        addFile(group, entry);
    }
    project->setExpanded(!m_collapsed.contains(folder));
}

void ProjectTree::addFile(QTreeWidgetItem *group, const ProjectTreeEntry &entry)
{
    auto *item = new QTreeWidgetItem(group);
    // Two projects may share a file.
    describe(item, entry.kind, entry.path, keyOf(group) + QLatin1Char('|') + entry.path);
    item->setData(0, CaptionRole, entry.caption);
    QString tip = shownPath(entry.path);
    if (entry.isMissing) {
        item->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
        tip += QStringLiteral("<p>磁盘上没有这个文件。</p>");
    }
    item->setToolTip(0, tip);
    markFile(item);
}

void ProjectTree::markFile(QTreeWidgetItem *item) const
{
    const QString caption = item->data(0, CaptionRole).toString();
    item->setText(0, m_modified.contains(pathOf(item)) ? caption + QStringLiteral(" •") : caption);
}

void ProjectTree::setModifiedFiles(const QSet<QString> &files)
{
    m_modified = files;
    for (QTreeWidgetItemIterator item(this); *item; ++item) {
        if (isFile(*item))
            markFile(*item);
    }
}

QTreeWidgetItem *ProjectTree::findItem(const QString &key) const
{
    for (QTreeWidgetItemIterator item(const_cast<ProjectTree *>(this)); *item; ++item) {
        if (keyOf(*item) == key)
            return *item;
    }
    return nullptr;
}

QString ProjectTree::selectedPath() const
{
    return pathOf(currentItem());
}

ProjectTreeKind ProjectTree::selectedKind() const
{
    return kindOf(currentItem());
}

QString ProjectTree::selectedProject() const
{
    const QTreeWidgetItem *item = currentItem();
    while (item && item->parent())
        item = item->parent();
    return pathOf(item);
}

void ProjectTree::selectPath(const QString &path)
{
    const QString wanted = QDir::cleanPath(path);
    if (selectedPath() == wanted)
        return;
    for (QTreeWidgetItemIterator item(this); *item; ++item) {
        if (isFile(*item) && pathOf(*item) == wanted) {
            setCurrentItem(*item);
            scrollToItem(*item);
            return;
        }
    }
}

void ProjectTree::activate(const QTreeWidgetItem *item)
{
    if (isFile(item))
        emit fileActivated(pathOf(item));
    else if (kindOf(item) == ProjectTreeKind::Project)
        emit projectActivated(pathOf(item));
}

void ProjectTree::keyPressEvent(QKeyEvent *event)
{
    const bool plain = event->modifiers() == Qt::NoModifier;
    if (plain && isFile(currentItem()) && event->key() == Qt::Key_F2)
        emit renameRequested(selectedPath());
    else if (plain && isFile(currentItem()) && event->key() == Qt::Key_Delete)
        emit removeRequested(selectedPath());
    else
        QTreeWidget::keyPressEvent(event);
}

void ProjectTree::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QTreeWidgetItem *item =
        byKey ? currentItem() : itemAt(viewport()->mapFromGlobal(event->globalPos()));
    const QPoint place =
        byKey && item ? viewport()->mapToGlobal(visualItemRect(item).center()) : event->globalPos();
    emit contextMenuRequested(pathOf(item), kindOf(item), place);
}
