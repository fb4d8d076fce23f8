// CodeOutline: the declarations of the source at hand as a tree to move in.
#pragma once

#include "shell/outline_tree.h"

#include <QSet>
#include <QWidget>

class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

// Keeps what is folded, selected and sought when the symbols change.
class CodeOutline : public QWidget
{
    Q_OBJECT

public:
    explicit CodeOutline(QWidget *parent = nullptr);

    void setSymbols(const CodeSymbols &symbols);
    // Selects the innermost declaration around the line, or the folded one that holds it; nothing
    // outside of all. Emits nothing.
    void setCurrentLine(int line);

signals:
    // The user wants to go to a declaration.
    void lineActivated(int line);

protected:
    // Keys of the filter that move in the tree.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addNodes(QTreeWidgetItem *parent, const QVector<OutlineNode> &nodes);
    void applyFilter();
    bool showMatches(QTreeWidgetItem *item, const QString &query, bool parentMatches);
    void rememberFolding(QTreeWidgetItem *item, bool isFolded);
    void activate(const QTreeWidgetItem *item);
    void activateFromFilter();
    QTreeWidgetItem *firstMatch() const;

    QLineEdit *m_filter;
    QTreeWidget *m_tree;
    CodeSymbols m_symbols;
    QSet<QString> m_folded; // keys
    int m_line = 0;         // of the cursor, as last told; 0: find it anew
    bool m_isUpdating = false;
};
