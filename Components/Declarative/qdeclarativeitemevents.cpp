#include "qdeclarativeitem.h"

#include "qdeclarativeitem_p.h"
#include "qdeclarativekeys_p.h"

#include <QtQml/qqmlinfo.h>

/** The focus scope that the item belongs to, null at the top. */
static const QGraphicsItem *scopeOf(const QGraphicsItem *item)
{
    const QGraphicsItem *scope = item->parentItem();
    while (scope && !(scope->flags() & QGraphicsItem::ItemIsFocusScope))
        scope = scope->parentItem();
    return scope;
}

bool QDeclarativeItemPrivate::hasSubFocus() const
{
    // Graphics View tells every ancestor; only a focus scope is active on behalf of an item inside.
    return subFocusItem == q_ptr || (subFocusItem && (flags & QGraphicsItem::ItemIsFocusScope));
}

void QDeclarativeItemPrivate::subFocusItemChange()
{
    Q_Q(QDeclarativeItem);
    // What is not in a scene yet may still come to lie in a scope that gives the focus to another item.
    const bool active = hasSubFocus() && scene;
    if (active == hasActiveFocus)
        return;
    hasActiveFocus = active;
    Q_EMIT q->activeFocusChanged(active);
    // Outside every scope both are the same.
    if (!scopeOf(q))
        Q_EMIT q->focusChanged(active);
}

bool QDeclarativeItem::hasFocus() const
{
    const QGraphicsItem *scope = scopeOf(this);
    return scope ? QGraphicsItemPrivate::get(scope)->focusScopeItem == this : d_func()->hasSubFocus();
}

void QDeclarativeItem::setFocus(bool focus)
{
    if (focus)
        QGraphicsItem::setFocus(Qt::OtherFocusReason);
    else
        QGraphicsItem::clearFocus();
}

bool QDeclarativeItem::hasActiveFocus() const
{
    return d_func()->hasActiveFocus;
}

void QDeclarativeItem::forceActiveFocus()
{
    setFocus(true);
    for (QGraphicsItem *above = QGraphicsItem::parentItem(); above; above = above->parentItem()) {
        if (!(above->flags() & ItemIsFocusScope))
            continue;
        if (auto *item = qobject_cast<QDeclarativeItem *>(above->toGraphicsObject()))
            item->setFocus(true);
        else
            above->setFocus(Qt::OtherFocusReason);
    }
}

bool QDeclarativeItem::keepMouseGrab() const
{
    return d_func()->keepMouse;
}

void QDeclarativeItem::setKeepMouseGrab(bool keep)
{
    Q_D(QDeclarativeItem);
    d->keepMouse = keep;
}

static bool isTabulator(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
}

bool QDeclarativeItem::sceneEvent(QEvent *event)
{
    QDeclarativeKeyFilter *filter = d_func()->keyFilter();
    if (!filter)
        return QGraphicsObject::sceneEvent(event);
    switch (event->type()) {
    case QEvent::KeyPress:
        event->ignore();
        filter->keyPressed(static_cast<QKeyEvent *>(event), false);
        break;
    case QEvent::KeyRelease:
        event->ignore();
        filter->keyReleased(static_cast<QKeyEvent *>(event), false);
        break;
    case QEvent::InputMethod:
        event->ignore();
        filter->inputMethodEvent(static_cast<QInputMethodEvent *>(event), false);
        break;
    default:
        return QGraphicsObject::sceneEvent(event);
    }
    if (event->isAccepted())
        return true;
    event->accept();
    // Graphics View keeps the tabulator keys from keyPressEvent(), for its own chain of widgets.
    if (event->type() == QEvent::KeyPress && isTabulator(static_cast<QKeyEvent *>(event))) {
        keyPressEvent(static_cast<QKeyEvent *>(event));
        if (event->isAccepted())
            return true;
    }
    return QGraphicsObject::sceneEvent(event);
}

void QDeclarativeItem::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
    if (QDeclarativeKeyFilter *filter = d_func()->keyFilter())
        filter->keyPressed(event, true);
}

void QDeclarativeItem::keyReleaseEvent(QKeyEvent *event)
{
    event->ignore();
    if (QDeclarativeKeyFilter *filter = d_func()->keyFilter())
        filter->keyReleased(event, true);
}

void QDeclarativeItem::inputMethodEvent(QInputMethodEvent *event)
{
    event->ignore();
    if (QDeclarativeKeyFilter *filter = d_func()->keyFilter())
        filter->inputMethodEvent(event, true);
}

QVariant QDeclarativeItem::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const QDeclarativeKeyFilter *filter = d_func()->keyFilter();
    const QVariant answer = filter ? filter->inputMethodQuery(query) : QVariant();
    return answer.isValid() ? answer : QGraphicsObject::inputMethodQuery(query);
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
