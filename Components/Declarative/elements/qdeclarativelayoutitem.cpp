#include "qdeclarativelayoutitem_p.h"

#include <QtWidgets/QGraphicsLayout>

#include <limits>

constexpr int unlimited = std::numeric_limits<int>::max();

QDeclarativeLayoutItem::QDeclarativeLayoutItem(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , m_maximumSize(unlimited, unlimited)
    , m_minimumSize(0, 0)
    , m_preferredSize(0, 0)
{
    setGraphicsItem(this);
}

void QDeclarativeLayoutItem::setMaximumSize(const QSizeF &size)
{
    if (size == m_maximumSize)
        return;
    m_maximumSize = size;
    announceHints();
    Q_EMIT maximumSizeChanged();
}

void QDeclarativeLayoutItem::setMinimumSize(const QSizeF &size)
{
    if (size == m_minimumSize)
        return;
    m_minimumSize = size;
    announceHints();
    Q_EMIT minimumSizeChanged();
}

void QDeclarativeLayoutItem::setPreferredSize(const QSizeF &size)
{
    if (size == m_preferredSize)
        return;
    m_preferredSize = size;
    announceHints();
    Q_EMIT preferredSizeChanged();
}

/** Drops what is cached of the hints, and lets the layout that the item is in place it anew. */
void QDeclarativeLayoutItem::announceHints()
{
    updateGeometry();
    QGraphicsLayoutItem *parent = parentLayoutItem();
    if (parent && parent->isLayout())
        static_cast<QGraphicsLayout *>(parent)->invalidate();
}

void QDeclarativeLayoutItem::setGeometry(const QRectF &rect)
{
    QGraphicsLayoutItem::setGeometry(rect);
    const QRectF bounded = QGraphicsLayoutItem::geometry();
    setPos(bounded.topLeft());
    setSize(bounded.size());
}

QSizeF QDeclarativeLayoutItem::sizeHint(Qt::SizeHint which, const QSizeF &) const
{
    switch (which) {
    case Qt::MinimumSize:
        return m_minimumSize;
    case Qt::PreferredSize:
        return m_preferredSize;
    case Qt::MaximumSize:
        return m_maximumSize;
    default:
        return {};
    }
}
