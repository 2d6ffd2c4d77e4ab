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
    void watch(QGraphicsObject *child);
    void unwatch(QGraphicsObject *child);
    void update(const QGraphicsObject *except = nullptr);
    QRectF enclose(const QGraphicsObject *except = nullptr) const;
    void setRect(const QRectF &);

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemChildAdded(QDeclarativeItem *, QGraphicsObject *child) override;
    void itemChildRemoved(QDeclarativeItem *, QGraphicsObject *child) override;
    void itemDestroyed(QDeclarativeItem *) override;

    QDeclarativeItem *const m_item;
    QRectF m_rect;
};
