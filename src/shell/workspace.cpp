#include "shell/workspace.h"

#include "project/project_manager.h"
#include "shell/editor_tabs.h"
#include "shell/text_file.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Relative to the folder; empty for a path outside of it, as one on another drive is.
QString pathIn(const QString &folder, const QString &path)
{
    const QString relative = QDir(folder).relativeFilePath(path);
    const bool isOutside = QFileInfo(relative).isAbsolute() || relative == QLatin1String("..") ||
                           relative.startsWith(QLatin1String("../"));
    return isOutside ? QString() : relative;
}

} // namespace

Workspace::Workspace(const ProjectManager &projects, const EditorTabs &tabs)
    : m_projects(projects), m_tabs(tabs)
{}

QString Workspace::diskText(const QString &path)
{
    const QFileInfo info(path);
    KnownFile &known = m_known[path];
    if (known.size != info.size() || known.changed != info.lastModified())
        known = {info.lastModified(), info.size(), TextFile::read(path).text};
    return known.text;
}

QMap<QString, QString> Workspace::sourceTexts()
{
    QMap<QString, QString> texts;
    if (!m_projects.hasOpenProject()) {
        const CodeEditor *current = m_tabs.currentEditor();
        if (current && EditorTabs::isSourceFile(current->filePath()))
            texts.insert(current->filePath(), current->text());
        return texts;
    }
    for (const QString &file : m_projects.currentProject().sourceFiles) {
        const QString path = absolutePath(file);
        const CodeEditor *editor = m_tabs.editorOf(path);
        texts.insert(path, editor ? editor->text() : diskText(path));
    }
    return texts;
}

LiveState Workspace::liveState() const
{
    LiveState live;
    if (!m_projects.hasOpenProject())
        return live;
    const QDir folder(m_projects.currentProject().path);
    for (const CodeEditor *editor : m_tabs.modifiedEditors()) {
        if (isInProject(editor->filePath()))
            live.sources.insert(folder.relativeFilePath(editor->filePath()), editor->text());
    }
    return live;
}

QList<SearchFile> Workspace::searchFiles() const
{
    QHash<QString, QString> live;
    QList<SearchFile> open;
    for (const CodeEditor *editor : m_tabs.editors()) {
        live.insert(editor->filePath(), editor->text());
        open << SearchFile{editor->filePath(), displayName(editor->filePath()), editor->text()};
    }
    return m_projects.hasOpenProject() ? searchFilesOf(m_projects.currentProject(), live) : open;
}

bool Workspace::isInProject(const QString &path) const
{
    if (path.isEmpty() || !m_projects.hasOpenProject())
        return false;
    const VL::ProjectInfo &project = m_projects.currentProject();
    return !pathIn(project.path, path).isEmpty() || project.sourceFiles.contains(path);
}

QString Workspace::absolutePath(const QString &name) const
{
    if (name.isEmpty() || QFileInfo(name).isAbsolute() || !m_projects.hasOpenProject())
        return name;
    return QDir::cleanPath(QDir(m_projects.currentProject().path).absoluteFilePath(name));
}

QString Workspace::displayName(const QString &path) const
{
    if (path.isEmpty())
        return path;
    if (!m_projects.hasOpenProject())
        return QDir::toNativeSeparators(path);
    const QString relative = pathIn(m_projects.currentProject().path, path);
    return relative.isEmpty() ? QDir::toNativeSeparators(path) : relative;
}
