#include "shell/error_list_model.h"

#include <QDir>
#include <QRegularExpression>

namespace {

QString numberText(int number)
{
    return number > 0 ? QString::number(number) : QString();
}

bool isSameFile(const QString &a, const QString &b)
{
    const auto cleaned = [](const QString &path) {
        return QDir::cleanPath(QDir::fromNativeSeparators(path));
    };
    return a == b || cleaned(a) == cleaned(b);
}

} // namespace

QString issueKindName(IssueKind kind)
{
    switch (kind) {
    case IssueKind::Error:
        return QStringLiteral("错误");
    case IssueKind::Warning:
        return QStringLiteral("警告");
    case IssueKind::Info:
        return QStringLiteral("信息");
    }
    return {};
}

QStringList Issue::cells() const
{
    return {issueKindName(kind), text, file, numberText(line), numberText(column)};
}

ErrorListModel::Entry ErrorListModel::rewritten(Issue issue)
{
    static const QRegularExpression returnType(
        QStringLiteral("第\\s*(\\d+)\\s*行：(.+?)\\(\\)\\s*返回值类型应为"));
    static const QRegularExpression repeated(QStringLiteral("变量\\s+(.+?)\\s+重复定义"));
    Entry entry;
    entry.given = issue.text;
    if (const auto match = returnType.match(issue.text); match.hasMatch()) {
        entry.key = match.captured(2) + QStringLiteral("() 返回值类型应为");
        issue.text = entry.key + entry.given.mid(match.capturedEnd());
        // The number leaves the text, so the row must have it.
        if (issue.line <= 0)
            issue.line = match.captured(1).toInt();
    } else if (const auto twice = repeated.match(issue.text); twice.hasMatch()) {
        entry.key = QStringLiteral("变量 %1 重复定义").arg(twice.captured(1));
        issue.text = entry.key;
    }
    entry.shown = std::move(issue);
    return entry;
}

int ErrorListModel::rowToReplace(const Entry &entry) const
{
    if (entry.key.isEmpty())
        return -1;
    for (int row = 0; row < m_entries.size(); ++row) {
        const Entry &other = m_entries.at(row);
        if (other.key == entry.key && isSameFile(other.shown.file, entry.shown.file))
            return row;
    }
    return -1;
}

int ErrorListModel::add(Issue issue)
{
    Entry entry = rewritten(std::move(issue));
    ++countOf(entry.shown.kind);
    const int row = rowToReplace(entry);
    if (row < 0) {
        m_entries.append(std::move(entry));
        return m_entries.size() - 1;
    }
    --countOf(m_entries.at(row).shown.kind);
    m_entries[row] = std::move(entry);
    return row;
}

QVector<int> ErrorListModel::remove(const QString &file, const QString &prefix)
{
    QVector<int> rows;
    for (int row = m_entries.size() - 1; row >= 0; --row) {
        const Entry &entry = m_entries.at(row);
        if (!entry.given.startsWith(prefix) || !isSameFile(entry.shown.file, file))
            continue;
        --countOf(entry.shown.kind);
        m_entries.removeAt(row);
        rows.append(row);
    }
    return rows;
}

void ErrorListModel::clear()
{
    m_entries.clear();
    m_counts.fill(0);
}

IssueCounts ErrorListModel::counts() const
{
    return {m_counts[0], m_counts[1], m_counts[2]};
}
