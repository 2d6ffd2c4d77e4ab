#pragma once

#include "qdeclarativeitem_p.h"

/** Keeps the rectangle that encloses the direct children of an item, for `childrenRect`. */
class QDeclarativeContents final : private QDeclarativeItemChangeListener
{
public:
    explicit QDeclarativeContents(QDeclarativeItem *item);
    ~QDeclarativeContents();

    QRectF rect() const { return m_rect; }

private:
    /** How far out the children reach in one direction, and how many reach that far. */
    struct Edge
    {
        void add(qreal place);
        void remove(qreal place);

        qreal at = 0;
        int children = 0;
    };

    void watch(QGraphicsObject *child);
    void unwatch(QGraphicsObject *child);
    void update(const QGraphicsObject *except = nullptr);
    void follow(const QGraphicsObject *except = nullptr);
    void add(const QRectF &);
    void remove(const QRectF &);
    QRectF enclose(const QGraphicsObject *except = nullptr);
    QRectF enclosed() const;
    void setRect(const QRectF &);

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemChildAdded(QDeclarativeItem *, QGraphicsObject *child) override;
    void itemChildRemoved(QDeclarativeItem *, QGraphicsObject *child) override;
    void itemDestroyed(QDeclarativeItem *) override;

    QDeclarativeItem *const m_item;
    QRectF m_rect;
    Edge m_left;
    Edge m_top;
    Edge m_right; ///< with the sign changed, as is the next
    Edge m_bottom;
};
