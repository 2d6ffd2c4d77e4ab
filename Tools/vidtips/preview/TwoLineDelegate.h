#pragma once

#include <QtWidgets/QStyledItemDelegate>

/** Draws items of two lines: the text, and below it, smaller and paler, a detail. */
class TwoLineDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /** The role of the second line. */
    static constexpr int detailRole = Qt::UserRole + 1;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
