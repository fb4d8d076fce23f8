// ErrorListWidget: the errors, warnings and informations of builds and checks.
#pragma once

#include "shell/error_list_model.h"
#include "shell/row_list.h"

class ErrorListWidget : public RowList
{
    Q_OBJECT

public:
    explicit ErrorListWidget(QWidget *parent = nullptr);

    // Adds a row at the end, or renews the row of the issue that `issue` replaces.
    void addIssue(const Issue &issue);
    // Takes out the issues of `file` whose text starts with `prefix`.
    void removeIssues(const QString &file, const QString &prefix);
    void clearIssues();
    IssueCounts counts() const { return m_model.counts(); }

    // Shows or hides the rows of `kind`, those that come later too. All are shown at first.
    void setKindShown(IssueKind kind, bool shown);

public slots:
    void onItemActivated(QTreeWidgetItem *item);
    // `position` is in the coordinates of the viewport.
    void showContextMenu(const QPoint &position);

signals:
    // The user wants to go to a row's place.
    void itemLocationClicked(const QString &file, int line, int column, const QString &message);
    void countsChanged(int errors, int warnings, int infos);

private:
    void fillRow(int row);
    void applyFilter(int row);
    void tellCounts();
    bool isKindShown(IssueKind kind) const { return m_shown[static_cast<std::size_t>(kind)]; }

    ErrorListModel m_model;
    std::array<bool, allIssueKinds.size()> m_shown{true, true, true};
};
