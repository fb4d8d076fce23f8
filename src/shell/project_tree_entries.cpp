#include "shell/project_tree_entries.h"

#include "project/project_info.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <tuple>

namespace {

ProjectTreeKind sourceKind(const QString &file)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    if (suffix == QLatin1String("vpp"))
        return ProjectTreeKind::Class;
    return suffix == QLatin1String("vt") ? ProjectTreeKind::Type : ProjectTreeKind::Source;
}

QString caption(const VL::ProjectInfo &info, const QString &file)
{
    QStringList roles;
    if (file == info.mainWindowFile)
        roles << QStringLiteral("主窗口");
    if (file == info.startupWindowFile)
        roles << QStringLiteral("启动");
    const QString name = QFileInfo(file).fileName();
    return roles.isEmpty() ? name
                           : QStringLiteral("%1（%2）").arg(name, roles.join(QStringLiteral("、")));
}

} // namespace

QString projectGroupTitle(ProjectTreeKind kind)
{
    switch (kind) {
    case ProjectTreeKind::Source:
        return QStringLiteral("源代码");
    case ProjectTreeKind::Class:
        return QStringLiteral("类");
    case ProjectTreeKind::Type:
        return QStringLiteral("类型");
    case ProjectTreeKind::Window:
        return QStringLiteral("窗口");
    case ProjectTreeKind::Resource:
        return QStringLiteral("资源");
    case ProjectTreeKind::None:
    case ProjectTreeKind::Project:
    case ProjectTreeKind::Group:
        break;
    }
    return QString();
}

QList<ProjectTreeEntry> projectTreeEntries(const VL::ProjectInfo &info)
{
    QList<ProjectTreeEntry> entries;
    const QDir folder(info.path);
    const auto add = [&](const QString &file, ProjectTreeKind kind) {
        const QString path = QDir::cleanPath(folder.absoluteFilePath(file));
        entries << ProjectTreeEntry{kind, path, caption(info, file), !QFileInfo(path).isFile()};
    };
    for (const QString &file : info.sourceFiles)
        add(file, sourceKind(file));
    for (const QString &file : info.windowFiles)
        add(file, ProjectTreeKind::Window);
    for (const QString &file : info.uiFiles) {
        if (!info.windowFiles.contains(file))
            add(file, ProjectTreeKind::Window);
    }
    for (const QString &file : info.resourceFiles)
        add(file, ProjectTreeKind::Resource);
    const QString mainWindow = QDir::cleanPath(folder.absoluteFilePath(info.mainWindowFile));
    const auto rank = [&mainWindow](const ProjectTreeEntry &entry) {
        const bool isMain = entry.path == mainWindow || entry.caption == QLatin1String("main.vc");
        return std::make_tuple(entry.kind, !isMain);
    };
    std::sort(entries.begin(), entries.end(), [&rank](const auto &a, const auto &b) {
        if (rank(a) != rank(b))
            return rank(a) < rank(b);
        const int order = a.caption.localeAwareCompare(b.caption);
        return order != 0 ? order < 0 : a.path < b.path;
    });
    return entries;
}
