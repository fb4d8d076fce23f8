#include "editor/completion_delegate.h"

#include "editor/completion_item.h"

#include <QPainter>

namespace {

constexpr int padding = 4;    // pixels
constexpr int detailGap = 16; // pixels

constexpr Setting::Color iconColors[] = {
    Setting::Color::CompletionCommand,        // Function
    Setting::Color::UserFunction,             // UserFunction
    Setting::Color::CompletionVariable,       // Property
    Setting::Color::CompletionMethod,         // Method
    Setting::Color::MemberEvent,              // Event
    Setting::Color::Keyword,                  // Keyword
    Setting::Color::Keyword,                  // Type
    Setting::Color::CompletionVariable,       // Variable
    Setting::Color::CompletionGlobalVariable, // Component
    Setting::Color::CompletionConstant,       // Snippet
    Setting::Color::CompletionGlobalConstant, // Constant
};
static_assert(sizeof(iconColors) / sizeof(iconColors[0]) == std::size_t(CompletionKind::Count));

QColor mixed(const QColor &a, const QColor &b)
{
    return {(a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2};
}

} // namespace

// A tile with the first character of the kind's word.
void CompletionDelegate::paintIcon(QPainter *painter, const QRect &square, int kind) const
{
    if (kind < 0 || kind >= int(CompletionKind::Count))
        return;
    const QColor color = m_colors[iconColors[kind]];
    painter->setPen(Qt::NoPen);
    painter->setBrush(color);
    painter->drawRoundedRect(square, 3, 3);
    QFont font = painter->font();
    font.setPixelSize(qMax(6, square.height() * 3 / 4));
    painter->setFont(font);
    painter->setPen(qGray(color.rgb()) > 128 ? Qt::black : Qt::white);
    painter->drawText(square, Qt::AlignCenter,
                      QString::fromUtf16(completionKinds[kind].word).left(1));
}

void CompletionDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                               const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setFont(option.font);
    const bool isCurrent = option.state.testFlag(QStyle::State_Selected);
    const QColor text =
        option.palette.color(isCurrent ? QPalette::HighlightedText : QPalette::Text);
    const QColor back = option.palette.color(isCurrent ? QPalette::Highlight : QPalette::Base);
    painter->fillRect(option.rect, back);

    QRect rest = option.rect.adjusted(padding, 0, -padding, 0);
    const int side = rest.height() - 2 * padding;
    paintIcon(painter, QRect(rest.left(), rest.top() + padding, side, side),
              index.data(CompletionKindRole).toInt());
    rest.setLeft(rest.left() + side + padding);

    painter->setFont(option.font);
    painter->setPen(text);
    // Marks are of different widths; the names behind them stand below each other.
    painter->drawText(QRect(rest.left(), rest.top(), side, rest.height()), Qt::AlignCenter,
                      index.data(CompletionMarkRole).toString().trimmed());
    rest.setLeft(rest.left() + side + padding);
    const QFontMetrics &metrics = option.fontMetrics;
    const QString name = metrics.elidedText(index.data().toString(), Qt::ElideRight, rest.width());
    painter->drawText(rest, Qt::AlignLeft | Qt::AlignVCenter, name);
    rest.setLeft(rest.left() + metrics.horizontalAdvance(name) + detailGap);
    if (rest.width() > 0) {
        painter->setPen(mixed(text, back));
        painter->drawText(rest, Qt::AlignRight | Qt::AlignVCenter,
                          metrics.elidedText(index.data(CompletionDetailRole).toString(),
                                             Qt::ElideRight, rest.width()));
    }
    painter->restore();
}

QSize CompletionDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {0, option.fontMetrics.height() + 2 * padding};
}
