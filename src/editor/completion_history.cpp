#include "editor/completion_history.h"

#include "settings/settings_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>

namespace {

// Room for the longest names in UTF-8 with all signs escaped.
constexpr qint64 maxFileBytes =
    qint64(CompletionHistory::maxNames) * (CompletionHistory::maxNameLength * 6 + 10);

} // namespace

CompletionHistory::CompletionHistory(const QString &path) : m_path(path)
{
    load();
    m_hasUnsaved = false;
}

QString CompletionHistory::defaultPath()
{
    return QFileInfo(SettingsFile::defaultPath()).path() +
           QStringLiteral("/completion_history.json");
}

void CompletionHistory::addPick(const QString &name)
{
    if (name.isEmpty() || name.size() > maxNameLength)
        return;
    m_ranks.insert(name, ++m_lastRank);
    if (m_ranks.size() > maxNames)
        dropOldest();
    m_hasUnsaved = true;
}

bool CompletionHistory::save()
{
    if (!m_hasUnsaved)
        return true;
    QSaveFile file(m_path);
    const QByteArray bytes =
        QJsonDocument(QJsonArray::fromStringList(oldestFirst())).toJson(QJsonDocument::Compact);
    if (!QDir().mkpath(QFileInfo(m_path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size() || !file.commit())
        return false;
    m_hasUnsaved = false;
    return true;
}

void CompletionHistory::load()
{
    const QFileInfo info(m_path);
    QFile file(m_path);
    if (!info.isFile() || info.size() > maxFileBytes || !file.open(QIODevice::ReadOnly))
        return;
    const QJsonArray names = QJsonDocument::fromJson(file.readAll()).array();
    for (const QJsonValue &name : names)
        addPick(name.toString());
}

void CompletionHistory::dropOldest()
{
    const auto oldest = std::min_element(m_ranks.begin(), m_ranks.end());
    m_ranks.erase(oldest);
}

QStringList CompletionHistory::oldestFirst() const
{
    QStringList names = m_ranks.keys();
    std::sort(names.begin(), names.end(), [this](const QString &a, const QString &b) {
        return m_ranks.value(a) < m_ranks.value(b);
    });
    return names;
}
