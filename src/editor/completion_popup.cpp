#include "editor/completion_popup.h"

#include "editor/auto_completer.h"
#include "editor/completion_delegate.h"
#include "editor/popup_place.h"

#include <QAbstractListModel>
#include <QLabel>

namespace {

constexpr int minWidth = 260; // pixels
constexpr int maxWidth = 620;
constexpr int helpWidth = 340;
constexpr int measuredRows = 40; // rows that decide on the width

} // namespace

class CompletionModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void setItems(const QVector<CompletionItem> &items)
    {
        beginResetModel();
        m_items = items;
        endResetModel();
    }

    const QVector<CompletionItem> &items() const { return m_items; }

    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : m_items.size();
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        const CompletionItem &item = m_items.at(index.row());
        switch (role) {
        case Qt::DisplayRole:
            return item.display;
        case Qt::ToolTipRole:
            return AutoCompleter::help(item);
        case CompletionKindRole:
            return int(item.kind);
        case CompletionMarkRole:
            return item.prefix();
        case CompletionDetailRole:
            return item.detail;
        default:
            return {};
        }
    }

private:
    QVector<CompletionItem> m_items;
};

CompletionPopup::CompletionPopup(QWidget *owner)
    : QListView(owner),
      m_model(new CompletionModel(this)),
      m_delegate(new CompletionDelegate(this)),
      m_help(new QLabel(this, Qt::ToolTip))
{
    setWindowFlags(Qt::ToolTip);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setModel(m_model);
    setItemDelegate(m_delegate);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerItem);
    m_help->setAttribute(Qt::WA_ShowWithoutActivating);
    m_help->setTextFormat(Qt::RichText);
    m_help->setWordWrap(true);
    m_help->setMargin(6);
    m_help->setAutoFillBackground(true);
    connect(this, &QListView::clicked, this, &CompletionPopup::picked);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            &CompletionPopup::showHelp);
    setColors(SyntaxColors());
}

void CompletionPopup::setColors(const SyntaxColors &colors)
{
    m_delegate->setColors(colors);
    const QColor base = colors[Setting::Color::Background];
    const bool isDark = qGray(base.rgb()) < 128;
    QPalette palette = this->palette();
    palette.setColor(QPalette::Base, isDark ? base.lighter(130) : base.darker(103));
    palette.setColor(QPalette::Window, palette.color(QPalette::Base));
    palette.setColor(QPalette::Text, colors[Setting::Color::Text]);
    palette.setColor(QPalette::WindowText, colors[Setting::Color::Text]);
    palette.setColor(QPalette::Highlight,
                     isDark ? QColor(0x09, 0x47, 0x71) : QColor(0x00, 0x60, 0xC0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(palette);
    m_help->setPalette(palette);
}

const QVector<CompletionItem> &CompletionPopup::items() const
{
    return m_model->items();
}

const CompletionItem *CompletionPopup::currentItem() const
{
    const int row = currentIndex().row();
    return row < 0 ? nullptr : &items().at(row);
}

QSize CompletionPopup::sizeForItems() const
{
    const QFontMetrics metrics(font());
    int width = minWidth;
    for (int i = 0; i < qMin(items().size(), measuredRows); ++i) {
        const CompletionItem &item = items().at(i);
        width = qMax(width, metrics.horizontalAdvance(item.prefix() + item.display + item.detail) +
                                3 * sizeHintForRow(0));
    }
    const int rows = qMin(items().size(), int(maxVisibleRows));
    return {qMin(width, maxWidth), rows * sizeHintForRow(0) + 2 * frameWidth()};
}

void CompletionPopup::showItems(const QVector<CompletionItem> &items, const QRect &caret)
{
    m_model->setItems(items);
    setGeometry(PopupPlace::list(caret, sizeForItems(), PopupPlace::screenAt(caret.center())));
    show();
    setCurrentIndex(m_model->index(0, 0));
    showHelp();
}

bool CompletionPopup::moveBy(int key)
{
    const int count = items().size();
    const int row = currentIndex().row();
    int target = row;
    switch (key) {
    case Qt::Key_Up:
        target = row > 0 ? row - 1 : count - 1;
        break;
    case Qt::Key_Down:
        target = row + 1 < count ? row + 1 : 0;
        break;
    case Qt::Key_PageUp:
        target = qMax(0, row - maxVisibleRows);
        break;
    case Qt::Key_PageDown:
        target = qMin(count - 1, row + maxVisibleRows);
        break;
    default:
        return false;
    }
    setCurrentIndex(m_model->index(target, 0));
    return true;
}

void CompletionPopup::showHelp()
{
    const CompletionItem *item = isVisible() ? currentItem() : nullptr;
    m_help->setText(item ? AutoCompleter::help(*item) : QString());
    const QSize size(helpWidth, m_help->heightForWidth(helpWidth));
    const QRect place =
        PopupPlace::help(geometry(), size, PopupPlace::screenAt(geometry().center()));
    m_help->setGeometry(place);
    m_help->setVisible(!m_help->text().isEmpty() && !place.isNull());
}

void CompletionPopup::hideEvent(QHideEvent *event)
{
    QListView::hideEvent(event);
    m_help->hide();
}
