// IssueFilterBar: which kinds of issues the error list shows.
#pragma once

#include "shell/error_list_model.h"

#include <QWidget>

class QToolButton;

// One button for each kind, with the number of its issues; pressed: the kind is shown.
class IssueFilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit IssueFilterBar(QWidget *parent = nullptr);

    QToolButton *button(IssueKind kind) const;

public slots:
    void setCounts(int errors, int warnings, int infos);

signals:
    void kindToggled(IssueKind kind, bool shown);

private:
    std::array<QToolButton *, allIssueKinds.size()> m_buttons{};
};
