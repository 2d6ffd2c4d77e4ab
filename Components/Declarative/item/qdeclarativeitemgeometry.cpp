#include "qdeclarativeitem.h"

#include "qdeclarativeanchors_p.h"
#include "qdeclarativeitem_p.h"

#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlInfo>

QRectF QDeclarativeItemPrivate::geometry() const
{
    return QRectF(pos, QSizeF(itemWidth, itemHeight));
}

void QDeclarativeItemPrivate::changeSize(const QSizeF &size, bool announce)
{
    Q_Q(QDeclarativeItem);
    if (qIsNaN(size.width()) || qIsNaN(size.height()))
        return;
    const QRectF before = geometry();
    // QSizeF compares with a tolerance, in which what is infinite differs from itself.
    if (before.width() == size.width() && before.height() == size.height())
        return;
    q->prepareGeometryChange();
    itemWidth = size.width();
    itemHeight = size.height();
    // Content can tell: each side that changes signals twice when both are set at once.
    if (announce && itemHeight != before.height())
        Q_EMIT q->heightChanged();
    if (announce && itemWidth != before.width())
        Q_EMIT q->widthChanged();
    q->geometryChanged(geometry(), before);
}

void QDeclarativeItemPrivate::setWidth(qreal width)
{
    widthIsSet = true;
    changeSize(QSizeF(width, itemHeight));
}

void QDeclarativeItemPrivate::resetWidth()
{
    widthIsSet = false;
    // Before the height is read: some items find out about both only now.
    const qreal width = implicitWidth();
    changeSize(QSizeF(width, itemHeight));
}

void QDeclarativeItemPrivate::setHeight(qreal height)
{
    heightIsSet = true;
    changeSize(QSizeF(itemWidth, height));
}

void QDeclarativeItemPrivate::resetHeight()
{
    heightIsSet = false;
    const qreal height = implicitHeight();
    changeSize(QSizeF(itemWidth, height));
}

void QDeclarativeItemPrivate::setPosHelper(const QPointF &position)
{
    Q_Q(QDeclarativeItem);
    const QRectF before = geometry();
    QGraphicsItemPrivate::setPosHelper(position);
    if (pos != before.topLeft())
        q->geometryChanged(geometry(), before);
}

QPointF QDeclarativeItemPrivate::computeTransformOrigin() const
{
    const qreal across = (origin % 3) / 2.0;
    const qreal down = (origin / 3) / 2.0;
    const QSizeF extent = originExtent();
    return QPointF(extent.width() * across, extent.height() * down);
}

QSizeF QDeclarativeItemPrivate::originExtent() const
{
    return QSizeF(itemWidth, itemHeight);
}

void QDeclarativeItemPrivate::updateTransformOrigin()
{
    Q_Q(QDeclarativeItem);
    q->setTransformOriginPoint(computeTransformOrigin());
}

QRectF QDeclarativeItem::boundingRect() const
{
    Q_D(const QDeclarativeItem);
    return QRectF(0, 0, d->itemWidth, d->itemHeight);
}

qreal QDeclarativeItem::width() const
{
    return d_func()->width();
}

void QDeclarativeItem::setWidth(qreal width)
{
    d_func()->setWidth(width);
}

void QDeclarativeItem::resetWidth()
{
    d_func()->resetWidth();
}

qreal QDeclarativeItem::height() const
{
    return d_func()->height();
}

void QDeclarativeItem::setHeight(qreal height)
{
    d_func()->setHeight(height);
}

void QDeclarativeItem::resetHeight()
{
    d_func()->resetHeight();
}

qreal QDeclarativeItem::implicitWidth() const
{
    return d_func()->implicitWidth();
}

qreal QDeclarativeItem::implicitHeight() const
{
    return d_func()->implicitHeight();
}

void QDeclarativeItem::setImplicitWidth(qreal width)
{
    Q_D(QDeclarativeItem);
    const bool changed = width != d->itemImplicitWidth;
    d->itemImplicitWidth = width;
    if (!d->widthIsSet)
        d->changeSize(QSizeF(width, d->itemHeight));
    if (changed)
        Q_EMIT implicitWidthChanged();
}

void QDeclarativeItem::setImplicitHeight(qreal height)
{
    Q_D(QDeclarativeItem);
    const bool changed = height != d->itemImplicitHeight;
    d->itemImplicitHeight = height;
    if (!d->heightIsSet)
        d->changeSize(QSizeF(d->itemWidth, height));
    if (changed)
        Q_EMIT implicitHeightChanged();
}

bool QDeclarativeItem::widthValid() const
{
    return d_func()->widthIsSet;
}

bool QDeclarativeItem::heightValid() const
{
    return d_func()->heightIsSet;
}

void QDeclarativeItem::setSize(const QSizeF &size)
{
    Q_D(QDeclarativeItem);
    d->widthIsSet = true;
    d->heightIsSet = true;
    d->changeSize(size, true);
}

QDeclarativeItem::TransformOrigin QDeclarativeItem::transformOrigin() const
{
    return d_func()->origin;
}

void QDeclarativeItem::setTransformOrigin(TransformOrigin origin)
{
    Q_D(QDeclarativeItem);
    if (origin == d->origin)
        return;
    d->origin = origin;
    d->updateTransformOrigin();
    Q_EMIT transformOriginChanged(origin);
}

void QDeclarativeItem::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    Q_D(QDeclarativeItem);
    const bool resized = newGeometry.size() != oldGeometry.size();
    if (resized && d->transformData)
        d->updateTransformOrigin();
    if (d->itemAnchors)
        d->itemAnchors->ownGeometryChanged(newGeometry, oldGeometry);
    d->notifyListeners(GeometryChange, [&](QDeclarativeItemChangeListener *listener) {
        listener->itemGeometryChanged(this, newGeometry, oldGeometry);
    });
    if (newGeometry.width() != oldGeometry.width())
        Q_EMIT widthChanged();
    if (newGeometry.height() != oldGeometry.height())
        Q_EMIT heightChanged();
}

static QJSValue pointValue(const QObject *object, const QPointF &point)
{
    QJSEngine *engine = qmlEngine(object);
    if (!engine)
        return {};
    QJSValue value = engine->newObject();
    value.setProperty(QStringLiteral("x"), point.x());
    value.setProperty(QStringLiteral("y"), point.y());
    return value;
}

/** The item that @p value names, null for the scene; tells through @p ok whether it is one of both. */
static QDeclarativeItem *itemOf(const QJSValue &value, bool *ok)
{
    auto *item = qobject_cast<QDeclarativeItem *>(value.toQObject());
    *ok = item || value.isNull();
    return item;
}

QJSValue QDeclarativeItem::mapFromItem(const QJSValue &item, qreal x, qreal y) const
{
    bool ok = false;
    const QDeclarativeItem *source = itemOf(item, &ok);
    if (!ok) {
        qmlWarning(this) << "mapFromItem() given argument \"" << item.toString()
                         << "\" which is neither null nor an Item";
        return {};
    }
    return pointValue(this, QGraphicsItem::mapFromItem(source, x, y));
}

QJSValue QDeclarativeItem::mapToItem(const QJSValue &item, qreal x, qreal y) const
{
    bool ok = false;
    const QDeclarativeItem *target = itemOf(item, &ok);
    if (!ok) {
        qmlWarning(this) << "mapToItem() given argument \"" << item.toString()
                         << "\" which is neither null nor an Item";
        return {};
    }
    return pointValue(this, QGraphicsItem::mapToItem(target, x, y));
}

QDeclarativeItem *QDeclarativeItem::childAt(qreal x, qreal y) const
{
    const QList<QGraphicsItem *> children = childItems();
    for (auto it = children.crbegin(); it != children.crend(); ++it) {
        auto *child = qobject_cast<QDeclarativeItem *>((*it)->toGraphicsObject());
        if (!child || !child->isVisible())
            continue;
        const bool across = child->x() <= x && x <= child->x() + child->width();
        if (!across || child->y() > y || y > child->y() + child->height())
            continue;
        // Scripts must not come to own an item that only its parent item keeps.
        if (!child->QObject::parent())
            QQmlEngine::setObjectOwnership(child, QQmlEngine::CppOwnership);
        return child;
    }
    return nullptr;
}
