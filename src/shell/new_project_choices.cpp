#include "shell/new_project_choices.h"

#include "catalog/json_table.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

namespace {

QJsonObject choices()
{
    return jsonTable(QStringLiteral(":/shell/new_project.json")).object();
}

QString text(const QJsonValue &record, const char *key)
{
    return record[QLatin1String(key)].toString();
}

QList<ProjectKindChoice> readKinds()
{
    QList<ProjectKindChoice> kinds;
    for (const QJsonValue record : choices()[QLatin1String("kinds")].toArray()) {
        if (const auto kind = projectKindFromWord(text(record, "kind"))) {
            kinds << ProjectKindChoice{*kind, text(record, "label"), text(record, "tip"),
                                       QStringLiteral(":/icons/") + text(record, "icon")};
        }
    }
    return kinds;
}

QList<WindowTypeChoice> readWindowTypes()
{
    QList<WindowTypeChoice> types;
    for (const QJsonValue record : choices()[QLatin1String("windowTypes")].toArray()) {
        types << WindowTypeChoice{text(record, "uiBackend"), text(record, "label"),
                                  text(record, "tip"), record[QLatin1String("canBuild")].toBool()};
    }
    return types;
}

// The folder itself, or the nearest one above it that exists.
QFileInfo existingPart(const QString &folder)
{
    QFileInfo part(folder);
    while (!part.exists() && !part.isRoot() && part.path() != part.filePath())
        part = QFileInfo(part.path());
    return part;
}

} // namespace

const QList<ProjectKindChoice> &projectKindChoices()
{
    static const QList<ProjectKindChoice> kinds = readKinds();
    return kinds;
}

const QList<WindowTypeChoice> &windowTypeChoices()
{
    static const QList<WindowTypeChoice> types = readWindowTypes();
    return types;
}

QString NewProjectRules::target(const NewProject &project)
{
    const QString ending = project.kind == ProjectKind::Single ? QStringLiteral(".vl") : QString();
    return QDir::cleanPath(project.folder + QLatin1Char('/') + project.name + ending);
}

QString NewProjectRules::nameError(const NewProject &project)
{
    const QString error = projectNameError(project.name);
    if (!error.isEmpty() || !QDir::isAbsolutePath(project.folder))
        return error;
    const QFileInfo made(target(project));
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    const bool isFree = !made.exists() || (project.kind != ProjectKind::Single && made.isDir() &&
                                           QDir(made.filePath()).isEmpty(everything));
    return isFree ? QString()
                  : QStringLiteral("这个位置已经有“%1”，请换一个名称。").arg(made.fileName());
}

QString NewProjectRules::folderError(const NewProject &project)
{
    if (project.folder.trimmed().isEmpty())
        return QStringLiteral("请选择项目放在哪个文件夹里。");
    if (!QDir::isAbsolutePath(project.folder))
        return QStringLiteral("请写出完整的路径，或用“浏览...”选择文件夹。");
    const QFileInfo part = existingPart(project.folder);
    if (!part.isDir())
        return QStringLiteral("“%1”不是文件夹。").arg(QDir::toNativeSeparators(part.filePath()));
    if (!part.isWritable()) {
        return QStringLiteral("没有在“%1”中新建文件的权限。")
            .arg(QDir::toNativeSeparators(part.filePath()));
    }
    return QString();
}

QString NewProjectRules::freeName(const QString &folder)
{
    const QString name = QStringLiteral("MyProject");
    QString free = name;
    for (int number = 2; QFileInfo::exists(folder + QLatin1Char('/') + free); ++number)
        free = name + QString::number(number);
    return free;
}
