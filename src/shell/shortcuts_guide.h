// The guide of all keyboard shortcuts.
#pragma once

#include <QDialog>
#include <QString>
#include <QVector>

class QAction;
class QLineEdit;
class QTreeWidget;

struct ShortcutRow
{
    QString group;
    QString name;
    QString keys; // as the user's keyboard names them
};

// The keys of the code editor, from ":/shell/editor_shortcuts.json".
QVector<ShortcutRow> editorShortcuts();
// Those of the actions that have a shortcut, under the heading `group`.
QVector<ShortcutRow> actionShortcuts(const QString &group, const QList<QAction *> &actions);

// A table with a line to filter it by name or key.
class ShortcutsGuide : public QDialog
{
    Q_OBJECT

public:
    // Shows the editor's own keys behind those of the actions.
    explicit ShortcutsGuide(const QList<QAction *> &actions, QWidget *parent = nullptr);

private:
    void fill(const QVector<ShortcutRow> &rows);
    void filter(const QString &text);

    QLineEdit *m_filter;
    QTreeWidget *m_table;
};
