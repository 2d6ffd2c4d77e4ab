#include "qdeclarativeparentchange_p.h"

#include "qdeclarativeanchorchanges_p.h"

#include <QtCore/QtMath>
#include <QtQml/qqmlinfo.h>

#include <private/qqmlbinding_p.h>
#include <private/qqmlproperty_p.h>
#include <private/qquickstate_p_p.h>

#include <cmath>

QDeclarativeParentChange::QDeclarativeParentChange(QObject *parent)
    : QQuickStateOperation(*new QQuickStateOperationPrivate, parent)
{
}

void QDeclarativeParentChange::addAction(ActionList *actions, const char *name,
                                         const QQmlScriptString &script) const
{
    if (script.isEmpty())
        return;
    bool isNumber = false;
    const qreal number = script.numberLiteral(&isNumber);
    if (isNumber) {
        *actions << QQuickStateAction(m_target, QString::fromLatin1(name), number);
        return;
    }
    const QQmlProperty property(m_target, QString::fromLatin1(name));
    auto *binding =
        QQmlBinding::create(&QQmlPropertyPrivate::get(property)->core, script, m_target, qmlContext(this));
    binding->setTarget(property);
    QQuickStateAction action;
    action.property = property;
    action.toBinding = binding;
    action.fromValue = property.read();
    action.deletableToBinding = true;
    *actions << action;
}

QQuickStateOperation::ActionList QDeclarativeParentChange::actions()
{
    if (!m_target || !m_parent)
        return {};
    QQuickStateAction change;
    change.event = this;
    ActionList actions{change};
    addAction(&actions, "x", m_x);
    addAction(&actions, "y", m_y);
    addAction(&actions, "scale", m_scale);
    addAction(&actions, "rotation", m_rotation);
    addAction(&actions, "width", m_width);
    addAction(&actions, "height", m_height);
    return actions;
}

void QDeclarativeParentChange::reparent(QDeclarativeItem *item, QDeclarativeItem *parent,
                                        const QObject *reporter)
{
    const QGraphicsItem *from = item->QGraphicsItem::parentItem();
    const QTransform across = from ? from->itemTransform(parent)
        : parent                   ? parent->sceneTransform().inverted()
                                   : QTransform();
    const QTransform change = from && !parent ? from->sceneTransform() : across;
    const QPointF origin = QDeclarativeItemPrivate::get(item)->computeTransformOrigin();
    const QPointF position = change.map(item->pos() + origin) - origin;
    const qreal scale = std::hypot(change.m11(), change.m12());
    const auto same = [](qreal a, qreal b) { return qAbs(a - b) < 1e-6 * (1 + qAbs(a)); };
    const bool isUniform = same(change.m11(), change.m22()) && same(change.m12(), -change.m21());
    item->setParentItem(parent);
    if (!change.isAffine()) {
        qmlWarning(reporter) << tr("Unable to preserve appearance under complex transform");
    } else if (scale == 0) {
        qmlWarning(reporter) << tr("Unable to preserve appearance under scale of 0");
    } else if (!isUniform) {
        qmlWarning(reporter) << tr("Unable to preserve appearance under non-uniform scale");
    } else {
        const qreal turn = qRadiansToDegrees(std::atan2(change.m12(), change.m11()));
        item->setPos(position);
        item->setRotation(item->rotation() + turn);
        item->setScale(item->scale() * scale);
    }
}

QGraphicsItem *QDeclarativeParentChange::siblingAbove(const QDeclarativeItem *item)
{
    const QGraphicsItem *parent = item->QGraphicsItem::parentItem();
    if (!parent)
        return nullptr;
    const QList<QGraphicsItem *> siblings = parent->childItems();
    const int index = siblings.indexOf(const_cast<QDeclarativeItem *>(item));
    return siblings.value(index + 1);
}

void QDeclarativeParentChange::moveBack(QDeclarativeItem *parent, QGraphicsItem *above)
{
    if (!m_target)
        return;
    if (m_target->parentItem() != parent)
        reparent(m_target, parent, this);
    if (above && above->parentItem() == m_target->QGraphicsItem::parentItem())
        m_target->stackBefore(above);
}

void QDeclarativeParentChange::saveOriginals()
{
    saveCurrentValues();
    m_originalParent = m_currentParent;
    m_originalAbove = m_currentAbove;
}

void QDeclarativeParentChange::saveCurrentValues()
{
    m_wasTakenBack = false;
    if (!m_target)
        return;
    m_currentParent = m_target->parentItem();
    QGraphicsItem *above = siblingAbove(m_target);
    m_currentAbove = above ? above->toGraphicsObject() : nullptr;
}

/** Whether the state changes the target's anchors before it changes its parent. */
bool QDeclarativeParentChange::followsAnchorChanges() const
{
    for (int i = 0; i < state()->operationCount(); ++i) {
        const QQuickStateOperation *operation = state()->operationAt(i);
        if (operation == this)
            return false;
        const auto *changes = qobject_cast<const QDeclarativeAnchorChanges *>(operation);
        if (changes && changes->target() == m_target)
            return true;
    }
    return false;
}

void QDeclarativeParentChange::execute()
{
    if (!m_target || !m_parent || m_target->parentItem() == m_parent)
        return;
    const QPointF position = m_target->pos();
    reparent(m_target, m_parent, this);
    keepPosition(position);
}

/**
 * QML 1 applies a state with anchors, takes it back and applies it again. The anchors' turn to go back came
 * while the item was in its new parent, so that its place in the old one became that in the new one. Qt does
 * so for transitions only.
 */
void QDeclarativeParentChange::keepPosition(const QPointF &position)
{
    if (!m_wasTakenBack && followsAnchorChanges())
        m_target->setPos(position);
}

void QDeclarativeParentChange::reverse()
{
    const QPointF position = m_target ? m_target->pos() : QPointF();
    const bool moves = m_target && m_target->parentItem() != m_originalParent;
    moveBack(m_originalParent, m_originalAbove);
    if (moves)
        keepPosition(position);
}

void QDeclarativeParentChange::rewind()
{
    m_wasTakenBack = true;
    moveBack(m_currentParent, m_currentAbove);
}

bool QDeclarativeParentChange::mayOverride(QQuickStateActionEvent *other)
{
    return other->type() == ParentChange
        && static_cast<QDeclarativeParentChange *>(other)->m_target == m_target;
}
