#include "qdeclarativeflipable_p.h"

#include "item/qdeclarativeitem_p.h"

#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtQml/QQmlInfo>

class QDeclarativeFlipablePrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeFlipable)

public:
    void transformChanged() override;
    void watchTransforms();
    void updateSide();
    void showSide();
    void turnBack(const QPolygonF &corners);

    QList<QGraphicsTransform *> watched; ///< the transforms listened to; only ever compared
    QPointer<QGraphicsObject> front;
    QPointer<QGraphicsObject> back;
    QDeclarativeFlipable::Side side = QDeclarativeFlipable::Front;
};

void QDeclarativeFlipablePrivate::transformChanged()
{
    QDeclarativeItemPrivate::transformChanged();
    watchTransforms();
    updateSide();
}

/** Transforms in the list tell nobody but by their signals that they changed. */
void QDeclarativeFlipablePrivate::watchTransforms()
{
    Q_Q(QDeclarativeFlipable);
    const auto transforms = q->transformations();
    if (transforms == watched)
        return;
    watched = transforms;
    const QMetaObject &own = QDeclarativeFlipable::staticMetaObject;
    const QMetaMethod update = own.method(own.indexOfSlot("updateSide()"));
    for (QGraphicsTransform *transform : transforms) {
        const QMetaObject *meta = transform->metaObject();
        for (int i = QGraphicsTransform::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
            if (meta->property(i).hasNotifySignal())
                QObject::connect(transform, meta->property(i).notifySignal(), q, update,
                                 Qt::UniqueConnection);
        }
    }
}

/** Finds the side from the way round in which three corners of the item come in the scene. */
void QDeclarativeFlipablePrivate::updateSide()
{
    Q_Q(QDeclarativeFlipable);
    const QTransform inScene = q->sceneTransform();
    const QPolygonF corners{
        {inScene.map(QPointF(0, 0)), inScene.map(QPointF(1, 0)), inScene.map(QPointF(1, 1))}};
    const QPointF along = corners.at(1) - corners.at(0), across = corners.at(2) - corners.at(0);
    const bool turned = along.x() * across.y() - along.y() * across.x() < 0;
    const auto now = turned ? QDeclarativeFlipable::Back : QDeclarativeFlipable::Front;
    if (turned)
        turnBack(corners);
    if (now == side)
        return;
    side = now;
    showSide();
    Q_EMIT q->sideChanged();
}

void QDeclarativeFlipablePrivate::showSide()
{
    if (front)
        front->setOpacity(side == QDeclarativeFlipable::Front ? 1 : 0);
    if (back)
        back->setOpacity(side == QDeclarativeFlipable::Back ? 1 : 0);
}

/** Turns the back over the axis that the item was turned over, about its own centre. */
void QDeclarativeFlipablePrivate::turnBack(const QPolygonF &corners)
{
    if (!back)
        return;
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(back);
    const bool overX = d->width() > 0 && corners.at(0).x() >= corners.at(1).x();
    const bool overY = d->height() > 0 && corners.at(1).y() >= corners.at(2).y();
    const QPointF centre(d->width() / 2, d->height() / 2);
    QTransform turn = QTransform::fromTranslate(centre.x(), centre.y());
    turn.scale(overX ? -1 : 1, overY ? -1 : 1);
    turn.translate(-centre.x(), -centre.y());
    back->setTransform(turn);
}

QDeclarativeFlipable::QDeclarativeFlipable(QDeclarativeItem *parent)
    : QDeclarativeItem(*new QDeclarativeFlipablePrivate, parent)
{
}

QDeclarativeFlipable::~QDeclarativeFlipable() = default;

QGraphicsObject *QDeclarativeFlipable::front() const
{
    Q_D(const QDeclarativeFlipable);
    return d->front;
}

void QDeclarativeFlipable::setFront(QGraphicsObject *front)
{
    Q_D(QDeclarativeFlipable);
    if (d->front) {
        qmlWarning(this) << tr("front is a write-once property");
        return;
    }
    d->front = front;
    if (front)
        front->setParentItem(this);
    d->showSide();
    Q_EMIT frontChanged();
}

QGraphicsObject *QDeclarativeFlipable::back() const
{
    Q_D(const QDeclarativeFlipable);
    return d->back;
}

void QDeclarativeFlipable::setBack(QGraphicsObject *back)
{
    Q_D(QDeclarativeFlipable);
    if (d->back) {
        qmlWarning(this) << tr("back is a write-once property");
        return;
    }
    d->back = back;
    if (back) {
        back->setParentItem(this);
        // It turns about its centre, which is not where it was.
        connect(back, &QGraphicsObject::widthChanged, this, [d] { d->updateSide(); });
        connect(back, &QGraphicsObject::heightChanged, this, [d] { d->updateSide(); });
    }
    d->showSide();
    d->updateSide();
    Q_EMIT backChanged();
}

QDeclarativeFlipable::Side QDeclarativeFlipable::side() const
{
    Q_D(const QDeclarativeFlipable);
    return d->side;
}

void QDeclarativeFlipable::updateSide()
{
    Q_D(QDeclarativeFlipable);
    d->updateSide();
}

void QDeclarativeFlipable::componentComplete()
{
    Q_D(QDeclarativeFlipable);
    QDeclarativeItem::componentComplete();
    d->watchTransforms();
    d->updateSide();
}

QVariant QDeclarativeFlipable::itemChange(GraphicsItemChange change, const QVariant &value)
{
    Q_D(QDeclarativeFlipable);
    if (change == ItemSceneHasChanged || change == ItemParentHasChanged)
        d->updateSide();
    return QDeclarativeItem::itemChange(change, value);
}
