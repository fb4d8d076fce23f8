// CompletionDelegate: draws the rows of the completion list.
#pragma once

#include "editor/syntax_colors.h"

#include <QStyledItemDelegate>

// What the rows of the model tell beside their text.
enum CompletionRole
{
    CompletionKindRole = Qt::UserRole, // a CompletionKind as int
    CompletionMarkRole,                // stands before the text
    CompletionDetailRole,              // stands at the right end, dim
};

// The icon of the kind, its mark, the text, and at the right end the detail, which gives way. All
// is painted, so that it is sharp on every screen.
class CompletionDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setColors(const SyntaxColors &colors) { m_colors = colors; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintIcon(QPainter *painter, const QRect &square, int kind) const;

    SyntaxColors m_colors;
};
