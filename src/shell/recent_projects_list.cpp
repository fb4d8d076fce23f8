#include "shell/recent_projects_list.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTextDocument>

namespace {

enum Role
{
    FileRole = Qt::UserRole,
    FolderRole,
    MissingRole,
};

constexpr int margin = 12; // pixels
constexpr int rowGap = 3;
constexpr int crossSize = 9;

const QColor hoverColor(0x3c, 0x3c, 0x3c);
const QColor focusColor(0x2a, 0x82, 0xda);
const QColor nameColor(0x4f, 0xc3, 0xf7);
const QColor folderColor(0x9d, 0x9d, 0x9d);
const QColor missingColor(0x70, 0x70, 0x70);

QRect crossArea(const QRect &row)
{
    const int size = crossSize + 2 * margin;
    return QRect(row.right() - size, row.top(), size, row.height());
}

QFont nameFont(const QFont &font)
{
    QFont result = font;
    result.setPointSizeF(font.pointSizeF() * 1.1);
    return result;
}

// Two lines: the name, and the folder below.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override
    {
        const int name = QFontMetrics(nameFont(option.font)).height();
        return {0, name + rowGap + option.fontMetrics.height() + 2 * 8};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const bool isHovered = option.state & QStyle::State_MouseOver;
        const bool isCurrent =
            (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_Selected);
        if (isHovered || isCurrent) {
            painter->setBrush(hoverColor);
            painter->setPen(isCurrent ? QPen(focusColor) : QPen(Qt::NoPen));
            painter->drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -1.5), 5, 5);
            paintCross(painter, option.rect);
        }
        paintTexts(painter, option, index);
        painter->restore();
    }

private:
    static void paintCross(QPainter *painter, const QRect &row)
    {
        QRectF cross(0, 0, crossSize, crossSize);
        cross.moveCenter(QRectF(crossArea(row)).center());
        painter->setPen(QPen(folderColor, 1.5));
        painter->drawLine(cross.topLeft(), cross.bottomRight());
        painter->drawLine(cross.topRight(), cross.bottomLeft());
    }

    static void paintTexts(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index)
    {
        const bool isMissing = index.data(MissingRole).toBool();
        QRect line = option.rect.adjusted(margin, 8, 0, -8);
        line.setRight(crossArea(option.rect).left());
        const QFont name = nameFont(option.font);
        painter->setFont(name);
        painter->setPen(isMissing ? missingColor : nameColor);
        const QString shown =
            QFontMetrics(name).elidedText(index.data().toString(), Qt::ElideRight, line.width());
        painter->drawText(line, Qt::AlignLeft | Qt::AlignTop, shown);
        painter->setFont(option.font);
        painter->setPen(isMissing ? missingColor : folderColor);
        // The end of a path tells more than its middle.
        const QString folder = option.fontMetrics.elidedText(index.data(FolderRole).toString(),
                                                             Qt::ElideMiddle, line.width());
        painter->drawText(line, Qt::AlignLeft | Qt::AlignBottom, folder);
    }
};

QString fileOf(const QListWidgetItem *item)
{
    return item ? item->data(FileRole).toString() : QString();
}

} // namespace

RecentProjectsList::RecentProjectsList(QWidget *parent) : QListWidget(parent)
{
    setObjectName(QStringLiteral("recentProjects"));
    setAccessibleName(QStringLiteral("最近项目"));
    setItemDelegate(new RowDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &RecentProjectsList::showContextMenu);
}

void RecentProjectsList::setProjects(const QStringList &projectFiles)
{
    const int row = currentRow();
    clear();
    for (const QString &file : projectFiles) {
        const QFileInfo info(file);
        const QString folder = QDir::toNativeSeparators(info.path());
        const bool isMissing = !info.isFile();
        auto *item = new QListWidgetItem(info.completeBaseName(), this);
        item->setData(FileRole, file);
        item->setData(FolderRole, folder);
        item->setData(MissingRole, isMissing);
        const QString tip = QDir::toNativeSeparators(file);
        item->setToolTip(
            Qt::convertFromPlainText(isMissing ? tip + QStringLiteral("\n项目不在这里了。") : tip));
        item->setData(Qt::AccessibleDescriptionRole,
                      isMissing ? folder + QStringLiteral("，项目不在这里了") : folder);
    }
    // Removing goes on with the next row.
    if (count() > 0)
        setCurrentRow(qBound(0, row, count() - 1));
}

bool RecentProjectsList::isOnCross(const QPoint &place) const
{
    const QListWidgetItem *item = itemAt(place);
    return item && crossArea(visualItemRect(item)).contains(place);
}

void RecentProjectsList::keyPressEvent(QKeyEvent *event)
{
    const QString file = fileOf(currentItem());
    const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (file.isEmpty() || (!opens && event->key() != Qt::Key_Delete))
        QListWidget::keyPressEvent(event);
    else if (opens)
        emit openRequested(file);
    else
        emit removeRequested(file);
}

void RecentProjectsList::mouseMoveEvent(QMouseEvent *event)
{
    QListWidget::mouseMoveEvent(event);
    viewport()->setCursor(itemAt(event->pos()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void RecentProjectsList::mouseReleaseEvent(QMouseEvent *event)
{
    const QString file = fileOf(itemAt(event->pos()));
    // Only where the button was pressed too.
    const bool isClick = event->button() == Qt::LeftButton && itemAt(event->pos()) == currentItem();
    QListWidget::mouseReleaseEvent(event);
    if (file.isEmpty() || !isClick)
        return;
    if (isOnCross(event->pos()))
        emit removeRequested(file);
    else
        emit openRequested(file);
}

void RecentProjectsList::showContextMenu(const QPoint &place)
{
    const QString file = fileOf(itemAt(place));
    if (file.isEmpty())
        return;
    QMenu menu;
    const QAction *open = menu.addAction(QStringLiteral("打开"));
    const QAction *remove = menu.addAction(QStringLiteral("从列表中移除"));
    const QAction *chosen = menu.exec(viewport()->mapToGlobal(place));
    if (chosen == open)
        emit openRequested(file);
    else if (chosen == remove)
        emit removeRequested(file);
}
