#include "VTItemWatch_p.h"

#include "VTVideoComponent.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtWidgets/QGraphicsObject>

namespace Vidtips {

VTItemWatch::VTItemWatch(QGraphicsObject *item)
    : m_item(item)
{
    if (const auto *const clip = qobject_cast<const VTVideoComponent *>(item)) {
        connect(clip, &VTVideoComponent::stateChanged, this, &VTItemWatch::stateHasChanged);
        return;
    }
    const QMetaObject *const meta = item->metaObject();
    const QMetaProperty text = meta->property(meta->indexOfProperty("text"));
    if (text.hasNotifySignal())
        connect(item, text.notifySignal(), this,
                metaObject()->method(metaObject()->indexOfSlot("textHasChanged()")));
}

void VTItemWatch::textHasChanged()
{
    QAccessibleEvent event(m_item, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void VTItemWatch::stateHasChanged()
{
    QAccessible::State changed;
    changed.animated = true;
    QAccessibleStateChangeEvent event(m_item, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace Vidtips
