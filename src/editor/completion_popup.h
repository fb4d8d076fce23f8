// CompletionPopup: the list of what completion offers.
#pragma once

#include "editor/completion_item.h"
#include "editor/syntax_colors.h"

#include <QListView>
#include <QVector>

class CompletionDelegate;
class CompletionModel;
class QLabel;

// A window without frame that never takes the focus: its owner hands over the keys that move in it.
// Beside it stands what explains the current row.
class CompletionPopup : public QListView
{
    Q_OBJECT

public:
    static constexpr int maxVisibleRows = 10;

    explicit CompletionPopup(QWidget *owner);

    void setColors(const SyntaxColors &colors);

    // Shows the items at a caret (global); the first row is the current one.
    void showItems(const QVector<CompletionItem> &items, const QRect &caret);
    const QVector<CompletionItem> &items() const;
    // Null where no row is current.
    const CompletionItem *currentItem() const;
    // Up, Down, Page Up and Page Down; false for other keys.
    bool moveBy(int key);

signals:
    // The user has clicked on the current item.
    void picked();

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QSize sizeForItems() const;
    void showHelp();

    CompletionModel *m_model;
    CompletionDelegate *m_delegate;
    QLabel *m_help;
};
