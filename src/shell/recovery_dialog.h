// RecoveryDialog: offers the texts that a crash has left behind.
#pragma once

#include "shell/recovery_store.h"

#include <QDialog>

class DifferenceView;
class QPushButton;
class QTreeWidget;

// Only asks: whoever shows it does what the signals say. What is neither restored nor discarded
// when it closes stays for the next time.
class RecoveryDialog : public QDialog
{
    Q_OBJECT

public:
    explicit RecoveryDialog(const QList<RecoveryEntry> &entries, QWidget *parent = nullptr);

    // Of the entry, as the list shows it.
    static QString nameOf(const RecoveredText &content);

signals:
    // The text is to be opened as one that is not saved.
    void restoreRequested(const RecoveryEntry &entry);
    void discardRequested(const RecoveryEntry &entry);

private:
    QTreeWidget *makeList();
    QLayout *makeButtons();
    void showCurrent();
    void restoreCurrent();
    void discardCurrent();
    void restoreAll();
    void takeOut(int row);

    QList<RecoveryEntry> m_entries;
    QTreeWidget *m_list;
    DifferenceView *m_difference;
    QPushButton *m_restore = nullptr;
    QPushButton *m_discard = nullptr;
};
