// ErrorListModel: the rows of the error list, without a widget.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <array>

enum class IssueKind
{
    Error,
    Warning,
    Info
};

inline constexpr std::array<IssueKind, 3> allIssueKinds{IssueKind::Error, IssueKind::Warning,
                                                        IssueKind::Info};

// The word the user reads for `kind`.
QString issueKindName(IssueKind kind);

// One problem. Line and column count from 1; 0 and an empty file where the place is unknown.
struct Issue
{
    IssueKind kind = IssueKind::Error;
    QString text;
    QString file;
    int line = 0;
    int column = 0;

    bool operator==(const Issue &other) const
    {
        return kind == other.kind && text == other.text && file == other.file &&
               line == other.line && column == other.column;
    }

    // Type, text, file, line, column as the list shows and copies them; an unknown number is empty.
    QStringList cells() const;
};

struct IssueCounts
{
    int errors = 0;
    int warnings = 0;
    int infos = 0;
};

// Rows stand in the order in which they came. A check that runs while the user types finds the same
// problem again and again on a line that moves; such a problem keeps its row.
class ErrorListModel
{
public:
    // The row where `issue` stands now: the last one, or the row of the issue that it replaces.
    int add(Issue issue);
    // Takes out the issues of `file` whose text, as it was given to add(), starts with `prefix`.
    // The rows they had, the highest first.
    QVector<int> remove(const QString &file, const QString &prefix);
    void clear();

    int count() const { return m_entries.size(); }
    // As it is shown. `row` must be below count().
    const Issue &at(int row) const { return m_entries.at(row).shown; }
    IssueCounts counts() const;

private:
    struct Entry
    {
        Issue shown;
        QString given; // the text before it was rewritten
        QString key;   // empty: replaces nothing
    };

    static Entry rewritten(Issue issue);
    int rowToReplace(const Entry &entry) const;
    int &countOf(IssueKind kind) { return m_counts[static_cast<std::size_t>(kind)]; }

    QVector<Entry> m_entries;
    std::array<int, allIssueKinds.size()> m_counts{};
};
