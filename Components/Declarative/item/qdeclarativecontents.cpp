#include "qdeclarativecontents_p.h"

#include <cmath>

namespace {

constexpr QDeclarativeItemChanges childChanges = QDeclarativeItemChanges(GeometryChange) | DestroyedChange;

QRectF geometryOf(const QGraphicsObject *object)
{
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(object);
    return QRectF(object->pos(), QSizeF(d->width(), d->height()));
}

} // namespace

QDeclarativeContents::QDeclarativeContents(QDeclarativeItem *item)
    : m_item(item)
{
    QDeclarativeItemPrivate::get(item)->addChangeListener(this, ChildrenChange);
    // The origin counts towards right and bottom.
    m_right[0] = m_bottom[0] = 1;
    const auto children = QDeclarativeItemPrivate::childObjects(item);
    for (QGraphicsObject *child : children) {
        watch(child);
        note(child);
    }
    // Made while a binding reads the rectangle, which is no change of it.
    m_rect = enclosed();
}

QDeclarativeContents::~QDeclarativeContents()
{
    QDeclarativeItemPrivate::get(m_item)->removeChangeListener(this, ChildrenChange);
    const auto children = QDeclarativeItemPrivate::childObjects(m_item);
    for (QGraphicsObject *child : children)
        unwatch(child);
}

void QDeclarativeContents::watch(QGraphicsObject *child)
{
    if (auto *item = qobject_cast<QDeclarativeItem *>(child)) {
        QDeclarativeItemPrivate::get(item)->addChangeListener(this, childChanges);
        return;
    }
    const auto changed = [this, child] {
        note(child);
        update();
    };
    QObject::connect(child, &QGraphicsObject::xChanged, m_item, changed);
    QObject::connect(child, &QGraphicsObject::yChanged, m_item, changed);
    QObject::connect(child, &QGraphicsObject::widthChanged, m_item, changed);
    QObject::connect(child, &QGraphicsObject::heightChanged, m_item, changed);
    QObject::connect(child, &QObject::destroyed, m_item, [this, child] {
        forget(child);
        update();
    });
}

void QDeclarativeContents::unwatch(QGraphicsObject *child)
{
    if (auto *item = qobject_cast<QDeclarativeItem *>(child))
        QDeclarativeItemPrivate::get(item)->removeChangeListener(this, childChanges);
    else
        QObject::disconnect(child, nullptr, m_item, nullptr);
}

/** Counts @p child with the geometry that it has now, and no longer with the one that it had. */
void QDeclarativeContents::note(const QGraphicsObject *child)
{
    forget(child);
    const QRectF rect = geometryOf(child);
    count(rect, 1);
    m_children.insert(child, rect);
}

void QDeclarativeContents::forget(const QGraphicsObject *child)
{
    const auto known = m_children.constFind(child);
    if (known == m_children.constEnd())
        return;
    count(*known, -1);
    m_children.erase(known);
}

void QDeclarativeContents::count(const QRectF &rect, int times)
{
    const auto reach = [times](Edge &edge, qreal place) {
        // What is no number would have no place among the others.
        if (!std::isnan(place) && (edge[place] += times) == 0)
            edge.erase(place);
    };
    reach(m_left, rect.left());
    reach(m_top, rect.top());
    reach(m_right, -rect.right());
    reach(m_bottom, -rect.bottom());
}

QRectF QDeclarativeContents::enclosed() const
{
    // The last place stays when the children are gone.
    if (m_left.empty() || m_top.empty())
        return QRectF(m_rect.topLeft(), QSizeF(0, 0));
    const QPointF from(m_left.begin()->first, m_top.begin()->first);
    const QSizeF size(-m_right.begin()->first - from.x(), -m_bottom.begin()->first - from.y());
    return QRectF(from, size.expandedTo(QSizeF(0, 0)));
}

void QDeclarativeContents::update()
{
    const QRectF rect = enclosed();
    if (rect == m_rect)
        return;
    m_rect = rect;
    Q_EMIT m_item->childrenRectChanged(rect);
}

void QDeclarativeContents::itemGeometryChanged(QDeclarativeItem *item, const QRectF &, const QRectF &)
{
    // Others who heard of it first may have changed the child again: as it is now counts.
    note(item);
    update();
}

void QDeclarativeContents::itemChildAdded(QDeclarativeItem *, QGraphicsObject *child)
{
    if (!child)
        return;
    watch(child);
    note(child);
    update();
}

void QDeclarativeContents::itemChildRemoved(QDeclarativeItem *, QGraphicsObject *child)
{
    if (!child)
        return;
    unwatch(child);
    forget(child);
    update();
}

void QDeclarativeContents::itemDestroyed(QDeclarativeItem *child)
{
    forget(child);
    update();
}
