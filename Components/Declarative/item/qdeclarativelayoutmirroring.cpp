#include "qdeclarativelayoutmirroring_p.h"

#include "qdeclarativeanchors_p.h"

#include <QtQml/qqmlinfo.h>

QDeclarativeLayoutMirroring::QDeclarativeLayoutMirroring(QObject *parent)
    : QObject(parent)
    , m_item(qobject_cast<QDeclarativeItem *>(parent))
{
    if (m_item)
        QDeclarativeItemPrivate::get(m_item)->extra().mirroring = this;
}

QDeclarativeLayoutMirroring *QDeclarativeLayoutMirroring::qmlAttachedProperties(QObject *object)
{
    if (!qobject_cast<QDeclarativeItem *>(object))
        qmlWarning(object) << tr("LayoutDirection attached property only works with Items");
    return new QDeclarativeLayoutMirroring(object);
}

bool QDeclarativeLayoutMirroring::isEnabled() const
{
    return m_item && QDeclarativeItemPrivate::get(m_item)->isMirrored();
}

void QDeclarativeLayoutMirroring::setEnabled(bool enabled)
{
    if (!m_item)
        return;
    auto *d = QDeclarativeItemPrivate::get(m_item);
    d->mirrorIsSet = true;
    d->mirrorValue = enabled;
    d->resolveMirroring();
}

void QDeclarativeLayoutMirroring::resetEnabled()
{
    if (!m_item)
        return;
    auto *d = QDeclarativeItemPrivate::get(m_item);
    d->mirrorIsSet = false;
    d->resolveMirroring();
}

bool QDeclarativeLayoutMirroring::childrenInherit() const
{
    return m_item && QDeclarativeItemPrivate::get(m_item)->childrenInheritMirror;
}

void QDeclarativeLayoutMirroring::setChildrenInherit(bool inherit)
{
    if (!m_item || inherit == childrenInherit())
        return;
    auto *d = QDeclarativeItemPrivate::get(m_item);
    d->childrenInheritMirror = inherit;
    d->resolveMirroring();
    Q_EMIT childrenInheritChanged();
}

/** Takes over what the parent passes on, and tells the item and its children when that changes anything. */
void QDeclarativeItemPrivate::resolveMirroring()
{
    Q_Q(QDeclarativeItem);
    const QDeclarativeItem *above = q->parentItem();
    const QDeclarativeItemPrivate *parent = above ? get(above) : nullptr;
    inheritsMirror = parent && parent->passesMirrorOn();
    inheritedMirror = inheritsMirror && parent->mirrorForChildren();
    const bool mirrored = mirrorIsSet ? mirrorValue : bool(inheritedMirror);
    if (mirrored != effectiveMirror) {
        effectiveMirror = mirrored;
        mirrorChange();
        if (extraData && extraData->mirroring)
            Q_EMIT extraData->mirroring->enabledChanged();
    }
    const bool passes = passesMirrorOn();
    const bool passed = mirrorForChildren();
    if (passes == passedMirrorOn && passed == passedMirror)
        return;
    passedMirrorOn = passes;
    passedMirror = passed;
    const auto children = q->childItems();
    for (QGraphicsItem *child : children) {
        if (auto *item = qobject_cast<QDeclarativeItem *>(child->toGraphicsObject()))
            get(item)->resolveMirroring();
    }
}

void QDeclarativeItemPrivate::mirrorChange()
{
    if (itemAnchors)
        itemAnchors->updateAll();
}
