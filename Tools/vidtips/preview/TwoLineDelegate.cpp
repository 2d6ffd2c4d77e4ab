#include "TwoLineDelegate.h"

#include <QtGui/QPainter>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QApplication>

namespace {

constexpr int margin = 6; // pixels
constexpr int alignment = Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignTop;
constexpr double detailSize = 0.88; // of the text
constexpr double detailStrength = 0.72;

QFont detailFont(const QStyleOptionViewItem &option)
{
    QFont font = option.font;
    font.setPointSizeF(font.pointSizeF() * detailSize);
    return font;
}

QString detailOf(const QModelIndex &index)
{
    return index.data(TwoLineDelegate::detailRole).toString();
}

int iconRoom(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    return index.data(Qt::DecorationRole).isValid() ? option.decorationSize.width() + margin : 0;
}

QRect textRect(const QStyleOptionViewItem &option, const QModelIndex &index, int width)
{
    const QRect room(0, 0, qMax(1, width - 2 * margin - iconRoom(option, index)), 10000);
    return option.fontMetrics.boundingRect(room, alignment | Qt::TextWordWrap, index.data().toString());
}

} // namespace

void TwoLineDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    item.icon = QIcon();
    const QStyle *const style = item.widget ? item.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    painter->save();
    const bool isSelected = item.state.testFlag(QStyle::State_Selected);
    painter->setPen(item.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    const QRect room =
        option.rect.adjusted(margin + iconRoom(option, index), margin / 2, -margin, -margin / 2);
    const QIcon icon = index.data(Qt::DecorationRole).value<QIcon>();
    icon.paint(painter, QRect(option.rect.topLeft() + QPoint(margin, margin / 2), option.decorationSize));
    const int height = textRect(option, index, option.rect.width()).height();
    // The application has the direction of the tips.
    painter->setLayoutDirection(Qt::LayoutDirectionAuto);
    painter->drawText(room, alignment | Qt::TextWordWrap, index.data().toString());
    const QFont small = detailFont(option);
    painter->setFont(small);
    painter->setOpacity(detailStrength);
    painter->drawText(room.adjusted(0, height, 0, 0), alignment | Qt::TextDontClip,
                      QFontMetrics(small).elidedText(detailOf(index), Qt::ElideMiddle, room.width()));
    painter->restore();
}

QSize TwoLineDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto *const view = qobject_cast<const QAbstractScrollArea *>(option.widget);
    const int width = view ? view->viewport()->width() : option.rect.width();
    const int detail = detailOf(index).isEmpty() ? 0 : QFontMetrics(detailFont(option)).lineSpacing() + 1;
    return {width, textRect(option, index, width).height() + detail + margin};
}
