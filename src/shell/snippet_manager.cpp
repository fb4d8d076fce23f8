#include "shell/snippet_manager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace {

constexpr qint64 kMaxBytes = qint64(4) * 1024 * 1024;

} // namespace

SnippetManager::SnippetManager(const QString &path) : m_path(path)
{
    load();
}

void SnippetManager::load()
{
    if (!QFileInfo::exists(m_path))
        return;
    QFile file(m_path);
    m_isBroken = true;
    if (!QFileInfo(m_path).isFile() || file.size() > kMaxBytes || !file.open(QIODevice::ReadOnly))
        return;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    m_isBroken = !document.isArray();
    for (const QJsonValue &value : document.array()) {
        const QJsonObject object = value.toObject();
        const Snippet snippet{object.value(QStringLiteral("name")).toString().trimmed(),
                              object.value(QStringLiteral("description")).toString(),
                              object.value(QStringLiteral("text")).toString()};
        if (snippet.name.isEmpty() || find(snippet.name))
            m_isBroken = true;
        else
            m_snippets.append(snippet);
    }
}

int SnippetManager::indexOf(const QString &name) const
{
    for (int i = 0; i < m_snippets.size(); ++i) {
        if (m_snippets.at(i).name == name)
            return i;
    }
    return -1;
}

const Snippet *SnippetManager::find(const QString &name) const
{
    const int index = indexOf(name);
    return index < 0 ? nullptr : &m_snippets.at(index);
}

QString SnippetManager::put(const QString &oldName, const Snippet &snippet)
{
    Snippet kept = snippet;
    kept.name = kept.name.trimmed();
    if (kept.name.isEmpty())
        return QStringLiteral("请填写片段的名称");
    if (kept.name != oldName && find(kept.name))
        return QStringLiteral("已经有名为“%1”的片段").arg(kept.name);
    QVector<Snippet> snippets = m_snippets;
    const int index = indexOf(oldName);
    if (index < 0)
        snippets.append(kept);
    else
        snippets[index] = kept;
    return save(snippets);
}

QString SnippetManager::remove(const QString &name)
{
    const int index = indexOf(name);
    if (index < 0)
        return {};
    QVector<Snippet> snippets = m_snippets;
    snippets.removeAt(index);
    return save(snippets);
}

QString SnippetManager::save(const QVector<Snippet> &snippets)
{
    QJsonArray array;
    for (const Snippet &snippet : snippets)
        array.append(QJsonObject{{QStringLiteral("name"), snippet.name},
                                 {QStringLiteral("description"), snippet.description},
                                 {QStringLiteral("text"), snippet.text}});
    const QString problem =
        QStringLiteral("无法保存代码片段：%1").arg(QDir::toNativeSeparators(m_path));
    if (!QDir().mkpath(QFileInfo(m_path).path()))
        return problem;
    if (m_isBroken) {
        const QString backup = m_path + QStringLiteral(".bak");
        QFile::remove(backup);
        if (!QFile::copy(m_path, backup))
            return problem;
    }
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(array).toJson()) < 0 ||
        !file.commit())
        return problem;
    m_isBroken = false;
    m_snippets = snippets;
    return {};
}
