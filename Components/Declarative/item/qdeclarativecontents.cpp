#include "qdeclarativecontents_p.h"

namespace {

constexpr QDeclarativeItemChanges childChanges = QDeclarativeItemChanges(GeometryChange) | DestroyedChange;

QRectF geometryOf(const QGraphicsObject *object)
{
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(object);
    return QRectF(object->pos(), QSizeF(d->width(), d->height()));
}

/** Encloses both, also where one of them has no area. */
QRectF united(const QRectF &a, const QRectF &b)
{
    const qreal left = qMin(a.left(), b.left()), top = qMin(a.top(), b.top());
    const qreal right = qMax(a.right(), b.right()), bottom = qMax(a.bottom(), b.bottom());
    return QRectF(left, top, right - left, bottom - top);
}

} // namespace

QDeclarativeContents::QDeclarativeContents(QDeclarativeItem *item)
    : m_item(item)
{
    QDeclarativeItemPrivate::get(item)->addChangeListener(this, ChildrenChange);
    const auto children = QDeclarativeItemPrivate::childObjects(item);
    for (QGraphicsObject *child : children)
        watch(child);
    // Made while a binding reads the rectangle, which is no change of it.
    m_rect = enclose();
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
    const auto changed = [this] { update(); };
    QObject::connect(child, &QGraphicsObject::xChanged, m_item, changed);
    QObject::connect(child, &QGraphicsObject::yChanged, m_item, changed);
    QObject::connect(child, &QGraphicsObject::widthChanged, m_item, changed);
    QObject::connect(child, &QGraphicsObject::heightChanged, m_item, changed);
    QObject::connect(child, &QObject::destroyed, m_item, changed);
}

void QDeclarativeContents::unwatch(QGraphicsObject *child)
{
    if (auto *item = qobject_cast<QDeclarativeItem *>(child))
        QDeclarativeItemPrivate::get(item)->removeChangeListener(this, childChanges);
    else
        QObject::disconnect(child, nullptr, m_item, nullptr);
}

void QDeclarativeContents::update(const QGraphicsObject *except)
{
    setRect(enclose(except));
}

QRectF QDeclarativeContents::enclose(const QGraphicsObject *except) const
{
    // The origin counts towards right and bottom, and the last place stays when the children are gone.
    QPointF start, end;
    bool first = true;
    const auto children = QDeclarativeItemPrivate::childObjects(m_item);
    for (const QGraphicsObject *child : children) {
        if (child == except)
            continue;
        const QRectF rect = geometryOf(child);
        start = first ? rect.topLeft() : QPointF(qMin(start.x(), rect.left()), qMin(start.y(), rect.top()));
        end = QPointF(qMax(end.x(), rect.right()), qMax(end.y(), rect.bottom()));
        first = false;
    }
    if (first)
        return QRectF(m_rect.topLeft(), QSizeF(0, 0));
    return QRectF(start, QSizeF(end.x() - start.x(), end.y() - start.y()).expandedTo(QSizeF(0, 0)));
}

void QDeclarativeContents::setRect(const QRectF &rect)
{
    if (rect == m_rect)
        return;
    m_rect = rect;
    Q_EMIT m_item->childrenRectChanged(rect);
}

void QDeclarativeContents::itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before)
{
    const bool wasInside = before.left() > m_rect.left() && before.top() > m_rect.top()
        && before.right() < m_rect.right() && before.bottom() < m_rect.bottom();
    // One that did not touch an edge can only widen the rectangle, so the others need no look.
    if (wasInside)
        setRect(united(m_rect, now));
    else
        update();
}

void QDeclarativeContents::itemChildAdded(QDeclarativeItem *, QGraphicsObject *child)
{
    if (child)
        watch(child);
    update();
}

void QDeclarativeContents::itemChildRemoved(QDeclarativeItem *, QGraphicsObject *child)
{
    if (child)
        unwatch(child);
    update(child);
}

void QDeclarativeContents::itemDestroyed(QDeclarativeItem *child)
{
    update(child);
}
