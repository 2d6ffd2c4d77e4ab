#pragma once

#include "qdeclarativeitem_p.h"

#include <QtCore/QHash>

#include <map>

/** Keeps the rectangle that encloses the direct children of an item, for `childrenRect`. */
class QDeclarativeContents final : private QDeclarativeItemChangeListener
{
public:
    explicit QDeclarativeContents(QDeclarativeItem *item);
    ~QDeclarativeContents();

    QRectF rect() const { return m_rect; }

private:
    /** How far out the children reach in one direction, and how many reach that far; further out is lower. */
    using Edge = std::map<qreal, int>;

    void watch(QGraphicsObject *child);
    void unwatch(QGraphicsObject *child);
    void note(const QGraphicsObject *child);
    void forget(const QGraphicsObject *child);
    void count(const QRectF &, int times);
    QRectF enclosed() const;
    void update();

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemChildAdded(QDeclarativeItem *, QGraphicsObject *child) override;
    void itemChildRemoved(QDeclarativeItem *, QGraphicsObject *child) override;
    void itemDestroyed(QDeclarativeItem *) override;

    QDeclarativeItem *const m_item;
    QRectF m_rect;
    QHash<const QGraphicsObject *, QRectF> m_children; ///< with what is counted of each
    Edge m_left;
    Edge m_top;
    Edge m_right; ///< with the sign changed, as is the next
    Edge m_bottom;
};
