#include "qdeclarativecontents_p.h"

namespace {

constexpr QDeclarativeItemChanges childChanges = QDeclarativeItemChanges(GeometryChange) | DestroyedChange;

QRectF geometryOf(const QGraphicsObject *object)
{
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(object);
    return QRectF(object->pos(), QSizeF(d->width(), d->height()));
}

} // namespace

/** Takes note of a child that reaches to @p place; an edge further out has a lower place. */
void QDeclarativeContents::Edge::add(qreal place)
{
    if (children == 0 || place < at) {
        at = place;
        children = 1;
    } else if (place == at) {
        ++children;
    }
}

void QDeclarativeContents::Edge::remove(qreal place)
{
    if (place == at)
        --children;
}

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

QRectF QDeclarativeContents::enclose(const QGraphicsObject *except)
{
    // The origin counts towards right and bottom.
    m_left = m_top = Edge();
    m_right = m_bottom = Edge{0, 1};
    const auto children = QDeclarativeItemPrivate::childObjects(m_item);
    for (const QGraphicsObject *child : children) {
        if (child != except)
            add(geometryOf(child));
    }
    return enclosed();
}

QRectF QDeclarativeContents::enclosed() const
{
    // The last place stays when the children are gone.
    if (m_left.children == 0)
        return QRectF(m_rect.topLeft(), QSizeF(0, 0));
    const QSizeF size(-m_right.at - m_left.at, -m_bottom.at - m_top.at);
    return QRectF(QPointF(m_left.at, m_top.at), size.expandedTo(QSizeF(0, 0)));
}

void QDeclarativeContents::add(const QRectF &rect)
{
    m_left.add(rect.left());
    m_top.add(rect.top());
    m_right.add(-rect.right());
    m_bottom.add(-rect.bottom());
}

void QDeclarativeContents::remove(const QRectF &rect)
{
    m_left.remove(rect.left());
    m_top.remove(rect.top());
    m_right.remove(-rect.right());
    m_bottom.remove(-rect.bottom());
}

/** Takes over what has changed, after a look at all children where the last one has left an edge. */
void QDeclarativeContents::follow(const QGraphicsObject *except)
{
    const bool isKnown =
        m_left.children > 0 && m_top.children > 0 && m_right.children > 0 && m_bottom.children > 0;
    if (isKnown)
        setRect(enclosed());
    else
        update(except);
}

void QDeclarativeContents::setRect(const QRectF &rect)
{
    if (rect == m_rect)
        return;
    m_rect = rect;
    Q_EMIT m_item->childrenRectChanged(rect);
}

void QDeclarativeContents::itemGeometryChanged(QDeclarativeItem *item, const QRectF &now,
                                               const QRectF &before)
{
    // Where others who heard of it first have changed the child again, that was told before this.
    if (geometryOf(item) != now) {
        update();
        return;
    }
    // First the new place, which keeps an edge that the child moves outwards.
    add(now);
    remove(before);
    follow();
}

void QDeclarativeContents::itemChildAdded(QDeclarativeItem *, QGraphicsObject *child)
{
    if (!child) {
        update();
        return;
    }
    watch(child);
    add(geometryOf(child));
    follow();
}

void QDeclarativeContents::itemChildRemoved(QDeclarativeItem *, QGraphicsObject *child)
{
    if (!child) {
        update();
        return;
    }
    unwatch(child);
    remove(geometryOf(child));
    follow(child);
}

void QDeclarativeContents::itemDestroyed(QDeclarativeItem *child)
{
    update(child);
}
