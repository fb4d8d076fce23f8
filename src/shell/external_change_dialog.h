// ExternalChangeDialog: asks about open files that another program has changed or removed.
#pragma once

#include "shell/external_changes.h"

#include <QDialog>

class DifferenceView;
class QPushButton;
class QTreeWidget;

// One dialog for all of them. It only asks: whoever shows it does what the signals say. Closing it
// keeps the editor's text of all files that are not decided.
class ExternalChangeDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ExternalChangeDialog(const QList<ExternalChange> &changes, QWidget *parent = nullptr);

    void done(int result) override;

signals:
    // The text stays in the editor, as one that is not saved; also when its file is gone.
    void keepRequested(const QString &path);
    // The file's content is to replace the text, so that undoing brings it back.
    void reloadRequested(const QString &path);
    // The editor of the removed file is to be closed.
    void closeRequested(const QString &path);

private:
    QTreeWidget *makeList();
    QLayout *makeButtons();
    int currentRow() const;
    void showCurrent();
    void keepCurrent();
    void useDiskForCurrent();
    void useDiskForAll();
    void setComparing(bool isComparing);
    ExternalChange takeOut(int row);
    void closeWhenDone();

    QList<ExternalChange> m_changes;
    QTreeWidget *m_list;
    DifferenceView *m_difference;
    QPushButton *m_keep = nullptr;
    QPushButton *m_useDisk = nullptr;
    QPushButton *m_compare = nullptr;
    QPushButton *m_useDiskForAll = nullptr;
};
