// RowList: a flat list whose rows can be activated and copied.
#pragma once

#include <QTreeWidget>

// Enter or a double click activates a row, Ctrl+C copies the selected ones. A copied row is its
// cells with tabs between, in the order of the columns whatever order they are shown in.
class RowList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit RowList(const QStringList &titles, QWidget *parent = nullptr);

    // Copies the selected rows, or all of them when none is selected.
    void copySelectedOrAll();

public slots:
    // Leaves the clipboard alone when no row is selected.
    void copySelected();
    void copyAll();

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
