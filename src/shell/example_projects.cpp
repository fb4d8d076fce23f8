#include "shell/example_projects.h"

#include "shell/message_dialogs.h"

#include <QCoreApplication>
#include <QDir>
#include <QInputDialog>

namespace {

// What a build has left there is not copied.
const QStringList leftOut{QStringLiteral("build"), QStringLiteral("output")};

QString projectFileIn(const QString &folder)
{
    const QStringList files = QDir(folder).entryList({QStringLiteral("*.vlproj")}, QDir::Files);
    return files.isEmpty() ? QString() : QDir(folder).filePath(files.first());
}

bool copyFolder(const QString &from, const QString &to)
{
    if (!QDir().mkpath(to))
        return false;
    const QFileInfoList entries =
        QDir(from).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        const QString target = QDir(to).filePath(entry.fileName());
        if (entry.isDir() && leftOut.contains(entry.fileName()))
            continue;
        const bool isCopied = entry.isDir() ? copyFolder(entry.filePath(), target)
                                            : QFile::copy(entry.filePath(), target);
        if (!isCopied)
            return false;
        // What is shipped may be only for reading.
        if (!entry.isDir())
            QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner);
    }
    return true;
}

} // namespace

QString ExampleProjects::folder()
{
    const QString shipped =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/voreldesk/examples");
    return QFileInfo(shipped).isDir() ? QDir::cleanPath(shipped) : QString();
}

QStringList ExampleProjects::names()
{
    const QString root = folder();
    QStringList names;
    if (root.isEmpty())
        return names;
    const QStringList folders = QDir(root).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : folders) {
        if (!projectFileIn(QDir(root).filePath(name)).isEmpty())
            names << name;
    }
    return names;
}

QString ExampleProjects::openCopy(const QString &name, const QString &targetFolder, QString *error)
{
    const QString target = QDir(targetFolder).filePath(name);
    const QString known = projectFileIn(target);
    if (!known.isEmpty())
        return known;
    if (QFileInfo::exists(target) || !copyFolder(QDir(folder()).filePath(name), target)) {
        *error = QStringLiteral("无法将示例复制到 %1").arg(QDir::toNativeSeparators(target));
        return {};
    }
    return projectFileIn(target);
}

QString ExampleProjects::choose(const QString &targetFolder, QWidget *parent)
{
    const QString title = QStringLiteral("示例项目");
    const QStringList all = names();
    if (all.isEmpty()) {
        MessageDialogs::tell(parent, QMessageBox::Information, title,
                             QStringLiteral("没有找到随程序提供的示例项目。"));
        return {};
    }
    bool isAccepted = false;
    const QString name =
        QInputDialog::getItem(parent, title,
                              QStringLiteral("选择一个示例，它将复制到 %1 后打开：")
                                  .arg(QDir::toNativeSeparators(targetFolder)),
                              all, 0, false, &isAccepted);
    if (!isAccepted)
        return {};
    QString error;
    const QString project = openCopy(name, targetFolder, &error);
    if (project.isEmpty())
        MessageDialogs::warn(parent, title, error);
    return project;
}
